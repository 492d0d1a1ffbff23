"""A table of MariaDB whose partitions the Spider engine finds in two databases of another server."""

import pathlib

import data
from servers import MariaDb

PLUGIN = next(iter(pathlib.Path("/usr/lib").glob("**/mysql/plugin/ha_spider.so")), None)


class Spider(MariaDb):
    def __init__(self):
        super().__init__("spider", ("--plugin-load-add=ha_spider",))
        try:
            self.node = MariaDb("node")
        except BaseException:
            self.stop()
            raise

    def stop(self, *how):
        super().stop(*how)
        if hasattr(self, "node"):
            self.node.stop(*how)

    def fill(self, made):
        """The table d, in partitions by its column region."""
        columns = data.declared(data.MARIADB)
        place = data.NAMES.index("region")
        for number, regions in ((1, ("north",)), (2, ("south", "east"))):
            self.node.sql(f"CREATE DATABASE part{number} CHARACTER SET utf8mb4", database="")
            self.node.sql(f"CREATE TABLE d ({columns});\n" + data.inserts([row for row in made if row[place] in regions]), f"part{number}")
            self.sql(f"CREATE SERVER part{number} FOREIGN DATA WRAPPER mysql OPTIONS (HOST '127.0.0.1', PORT {self.node.port}, "
                     f"DATABASE 'part{number}', USER 'tester', PASSWORD {data.literal(self.node.password)})", database="")
        self.sql(f"CREATE TABLE d ({columns}) ENGINE=SPIDER COMMENT='wrapper \"mysql\", table \"d\"' "
                 "PARTITION BY LIST COLUMNS (region) (PARTITION one VALUES IN ('north') COMMENT = 'srv \"part1\"', "
                 "PARTITION two VALUES IN ('south', 'east') COMMENT = 'srv \"part2\"')")

"""Two PostgreSQL servers with a part of the data each, and a third that joins them as partitions."""

import json

import data
from servers import Postgres

PARTITIONWISE = ("enable_partitionwise_aggregate=on", "enable_partitionwise_join=on")


class Cluster:
    def __init__(self):
        self.parts = []
        try:
            for name in ("part1", "part2"):
                self.parts.append(Postgres(name))
            self.head = Postgres("head", PARTITIONWISE)
        except BaseException:
            self.stop()
            raise
        self.password = self.head.password

    def fill(self, made):
        """The table d, in partitions by its column region."""
        place = data.NAMES.index("region")
        self.head.sql(f"CREATE EXTENSION postgres_fdw; CREATE TABLE d ({data.declared(data.POSTGRES)}) PARTITION BY LIST (region)")
        for number, (server, regions) in enumerate(zip(self.parts, (("north",), ("south", "east"))), 1):
            server.sql(f"CREATE TABLE d ({data.declared(data.POSTGRES)});\n" +
                       data.inserts([row for row in made if row[place] in regions]) + "ANALYZE d;")
            values = ", ".join(map(data.literal, regions))
            self.head.sql(f"CREATE SERVER part{number} FOREIGN DATA WRAPPER postgres_fdw OPTIONS "
                          f"(host '127.0.0.1', port '{server.port}', dbname 'postgres');"
                          f"CREATE USER MAPPING FOR tester SERVER part{number} OPTIONS "
                          f"(user 'tester', password {data.literal(server.password)});"
                          f"CREATE FOREIGN TABLE d{number} PARTITION OF d FOR VALUES IN ({values}) SERVER part{number} "
                          "OPTIONS (table_name 'd')")
        self.head.sql("ANALYZE d")

    def plan(self, statement):
        """What runs where: for each foreign scan the statement that it sends."""
        found = []

        def visit(node):
            if node["Node Type"] == "Foreign Scan":
                found.append(node["Remote SQL"])
            for child in node.get("Plans", ()):
                visit(child)

        visit(json.loads(self.head.sql(f"EXPLAIN (VERBOSE, FORMAT JSON) {statement}"))[0]["Plan"])
        return found

    def data(self):
        return self.head.data()

    def stop(self):
        for server in [*self.parts, *([self.head] if hasattr(self, "head") else [])]:
            server.stop()

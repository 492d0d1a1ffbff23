"""Past one machine: what the partitions of the two servers do by themselves."""

import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "program"))

import data
from cluster import Cluster
from program import ProgramTest


class Grouping(ProgramTest):
    @classmethod
    def setUpClass(cls):
        cls.cluster = Cluster()
        cls.addClassCleanup(cls.cluster.stop)
        cls.cluster.fill(data.rows())

    def remote(self, command, *options):
        """What the two servers with the data are sent for a command."""
        self.write("password", self.cluster.password + "\n")
        told = self.run_program(self.cluster.data(), "--password-file", "password", "--table", "d", *options, "--explain",
                                "-c", command).stdout.decode()
        return self.cluster.plan(told.rstrip(";\n").rsplit(";\n", 1)[-1])

    def test_runs_at_the_partitions_when_they_are_by_a_variable_of_the_run(self):
        for command, options in (("PROPORTIONS /INDEPENDENTSAMPLES yes BY region SELECT=LEVEL('north' 'south').", ()),
                                 ("PROPORTIONS /ONESAMPLE yes flag.", ("--split", "region")),
                                 ("PROPORTIONS /ONESAMPLE yes day.", ("--split", "region", "--weight", "w"))):
            sent = self.remote(command, *options)
            self.assertEqual(len(sent), 2, sent)
            for statement in sent:
                self.assertIn("count(*)", statement)
                self.assertIn("GROUP BY", statement)

    def test_rows_travel_when_they_are_not(self):
        for statement in self.remote("PROPORTIONS /ONESAMPLE yes flag."):
            self.assertNotIn("GROUP BY", statement)

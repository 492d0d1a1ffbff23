"""Data of ten thousands of columns: what they cost grows with their number, and no faster."""

import json
import os
import subprocess
import unittest

from engine import execute
from program import PROGRAM, ProgramTest


def cell(row, column):
    """Of three different kinds of columns: two values, every row another one, texts."""
    return (f"{(row * 7 + column) % 3 % 2}", f"{row * 31 + column}", f"t{(row + column) % 5}")[column % 3]


class WideData(ProgramTest):
    def make(self, columns, rows):
        lines = [",".join(f"v{column}" for column in range(columns))]
        lines += [",".join(cell(row, column) for column in range(columns)) for row in range(rows)]
        return self.write(f"d{columns}.csv", "\n".join(lines) + "\n")

    def cost(self, *arguments):
        """Processor seconds and MiB of a run."""
        child = subprocess.Popen([PROGRAM, *arguments, "-o", "out.json"], cwd=self.folder)
        _, status, used = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(child.returncode, 0)
        return used.ru_utime + used.ru_stime, used.ru_maxrss / 1024

    def refuse_more_than_linear(self, times, *arguments):
        """Of 120,000 columns beside 30,000: four times as much, and sixteen if it grew with the square."""
        few = min(self.cost(self.make(30000, 3), *arguments)[0] for _ in range(2))
        many = min(self.cost(self.make(120000, 3), *arguments)[0] for _ in range(2))
        self.assertLess(many, times * max(few, 0.1))

    def test_one_variable_of_many(self):
        self.refuse_more_than_linear(9, "-c", "ONESAMPLE v5")

    def test_a_list_of_many(self):
        self.refuse_more_than_linear(9, "--list")

    def test_memory_of_a_list(self):
        # Twenty values of each of 40,000 variables, and as many that are not listed.
        lines = [",".join(f"v{column}" for column in range(40000))]
        lines += [",".join(str(row * 1009 + column) for column in range(40000)) for row in range(40)]
        self.write("d.csv", "\n".join(lines) + "\n")
        self.assertLess(self.cost("d.csv", "--list")[1], 400)

    def test_memory_of_a_command(self):
        self.assertLess(self.cost(self.make(30000, 3), "--advice", "never", "-c", "ONESAMPLE ALL CITYPES=WALD TESTTYPES=NONE")[1], 400)

    def test_a_list_is_whole(self):
        """Also where it takes several readings."""
        columns, rows = 9000, 30
        self.make(columns, rows)
        with open(self.folder / "d.jsonl", "w", encoding="ascii") as file:
            for row in range(rows):
                case = {f"v{column}": cell(row, column) if column % 3 == 2 else int(cell(row, column)) for column in range(columns)}
                print(json.dumps(case), file=file)
        expected = []
        for column in range(columns):
            text = column % 3 == 2
            cells = [cell(row, column) if text else int(cell(row, column)) for row in range(rows)]
            expected.append({"name": f"v{column}", "kind": "string" if text else "number", "label": None,
                             "values": [{"value": value, "label": None, "count": cells.count(value)} for value in sorted(set(cells))[:20]],
                             "missing": 0})
        for data in (f"d{columns}.csv", "d.jsonl"):
            listed = json.loads(self.run_program(data, "--list", "--format", "json").stdout)
            self.assertEqual(listed, {"schema": "proportions-variables/1", "variables": expected}, data)

    def test_a_list_of_a_parquet_file(self):
        names = [f"v{column}" for column in range(4200)]
        execute([f"COPY (SELECT {', '.join(f'{column} + i AS {name}' for column, name in enumerate(names))} FROM range(2) t(i)) "
                 f"TO '{self.folder}/d.parquet'"])
        listed = json.loads(self.run_program("d.parquet", "--list", "--format", "json").stdout)["variables"]
        self.assertEqual([(v["name"], [value["value"] for value in v["values"]]) for v in listed],
                         [(name, [column, column + 1]) for column, name in enumerate(names)])


if __name__ == "__main__":
    unittest.main()

"""Data of ten thousands of columns: they are read right, and in little memory."""

import csv
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

    def memory(self, *arguments):
        """MiB of a run."""
        # Freed memory that the address sanitizer keeps back is not the program's.
        surroundings = {**os.environ, "ASAN_OPTIONS": "quarantine_size_mb=1"}
        child = subprocess.Popen([PROGRAM, *arguments, "-o", "out.json"], cwd=self.folder, env=surroundings)
        _, status, used = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(child.returncode, 0)
        return used.ru_maxrss / 1024

    def test_one_variable_of_many(self):
        columns, rows = 120000, 3
        name = self.make(columns, rows)
        for column in (0, 1, 2, columns - 1):
            values = [cell(row, column) for row in range(rows)]
            success = max(values, key=str if column % 3 == 2 else int)
            shown = self.run_program(name, "-c", f"ONESAMPLE v{column} CITYPES=WALD TESTTYPES=NONE", "--format", "csv").stdout
            row, = csv.DictReader(shown.decode().splitlines())
            self.assertEqual((row["success"], row["successes"], row["trials"]),
                             (success, str(values.count(success)), str(rows)), column)

    def test_memory_of_a_list(self):
        # Twenty values of each of 40,000 variables, and as many that are not listed.
        lines = [",".join(f"v{column}" for column in range(40000))]
        lines += [",".join(str(row * 1009 + column) for column in range(40000)) for row in range(40)]
        self.write("d.csv", "\n".join(lines) + "\n")
        self.assertLess(self.memory("d.csv", "--list"), 400)

    def test_memory_of_a_command(self):
        name = self.make(30000, 3)
        self.assertLess(self.memory(name, "--advice", "never", "-c", "ONESAMPLE ALL CITYPES=WALD TESTTYPES=NONE"), 400)

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

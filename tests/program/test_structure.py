"""What depends on what, read from the sources and from the built libraries, and how documents are set."""

import os
import pathlib
import re
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["PROPORTIONS"]).parents[1]


# Each row uses only itself and the rows above it; folders of one row do not use each other.
FLOORS = {
    "module": [
        ["math"],
        ["model"],
        ["data", "output", "diag"],
        ["onesample", "paired", "independent"],
        ["syntax"],
        ["driver"],
    ],
    "workbench": [
        ["system", "text", "distributions", "session", "catalogue", "counting", "manual", "resampling"],
        ["values", "display"],
        ["engine", "delimited", "statfiles", "odbc"],
        ["json"],
        ["dataset"],
        ["output"],
        ["parser", "results"],
        ["render", "advice", "pooling"],
        ["listing", "bootstrap"],
        ["cli"],
    ],
}


def includes(folder):
    for path in sorted((ROOT / folder).rglob("*")):
        if path.suffix in (".h", ".cpp"):
            for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.M):
                yield path, name


class Structure(unittest.TestCase):
    def test_module_includes_module_and_host_only(self):
        for path, name in includes("module"):
            self.assertRegex(name, r"^(module|host)/", path)

    def test_host_includes_host_only(self):
        for path, name in includes("host"):
            self.assertRegex(name, r"^host/", path)

    def test_workbench_never_includes_the_module(self):
        for path, name in includes("workbench"):
            self.assertRegex(name, r"^(workbench|host)/", path)

    def test_every_folder_stands_on_a_floor(self):
        for half, floors in FLOORS.items():
            folders = {path.name for path in (ROOT / half).iterdir() if path.is_dir()}
            self.assertEqual(folders, set(sum(floors, [])), f"{half}: add the folder to FLOORS, or take it out")

    def test_no_include_leads_up(self):
        for half, floors in FLOORS.items():
            floor_of = {folder: floor for floor, folders in enumerate(floors) for folder in folders}
            for path, name in includes(half):
                parts = name.split("/")
                user = path.relative_to(ROOT / half).parts[0]
                if parts[0] != half or not {user, parts[1]} <= floor_of.keys() or parts[1] == user:
                    continue
                self.assertLess(floor_of[parts[1]], floor_of[user], f"{path} includes {name}")

    def test_formulas_include_no_other_host_header_than_distributions(self):
        for design in ("onesample", "paired", "independent"):
            for file in ("counts", "estimates", "intervals", "significance"):
                for path in (ROOT / "module" / design).glob(file + ".*"):
                    text = path.read_text()
                    self.assertLessEqual(set(re.findall(r'#include "host/([^"]+)"', text)), {"distributions.h"})

    def test_module_exports_its_entry_point_alone(self):
        out = subprocess.run(["nm", "-D", "--defined-only", BUILD / "lib/proportions.so"], capture_output=True, text=True, check=True).stdout
        self.assertEqual([line.split()[-1] for line in out.splitlines()], ["PROPORTI"])

    def test_module_needs_the_host_and_the_standard_library_alone(self):
        out = subprocess.run(["readelf", "-d", BUILD / "lib/proportions.so"], capture_output=True, text=True, check=True).stdout
        needed = set(re.findall(r"NEEDED.*\[(.*)\]", out))
        self.assertIn("libworkbench.so", needed)
        sanitizers = {"libasan.so.8", "libubsan.so.1"}
        self.assertLessEqual(needed - sanitizers, {"libworkbench.so", "libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6"})

    def test_prose_is_wrapped(self):
        """Tables, and code that is set in by four blanks, are as wide as they are."""
        folders = ("bench", "docs", "examples", "host", "module", "packaging", "tests", "workbench")
        documents = [*ROOT.glob("*.md"), *(p for f in folders for p in (ROOT / f).rglob("*.md") if "golden" not in p.parts)]
        self.assertGreater(len(documents), 20)
        for document in documents:
            for number, line in enumerate(document.read_text(encoding="utf-8").splitlines(), 1):
                if not line.startswith(("|", "    ")):
                    self.assertLessEqual(len(line), 100, f"{document.relative_to(ROOT)}:{number}")

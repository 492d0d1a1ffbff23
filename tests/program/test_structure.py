"""What depends on what: read from the sources and from the built libraries."""

import os
import pathlib
import re
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["PROPORTIONS"]).parents[1]


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

    def test_formulas_include_no_other_host_header_than_distributions(self):
        for design in ("onesample", "paired", "independent"):
            for file in ("intervals", "significance"):
                for suffix in (".h", ".cpp"):
                    text = (ROOT / "module" / design / (file + suffix)).read_text()
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

"""Every method of the module's tables has all that a method needs: reference values, a section that
explains it, its place in the command reference and a displayed name."""

import json
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
DESIGNS = {"onesample": "ONESAMPLE", "paired": "PAIREDSAMPLES", "independent": "INDEPENDENTSAMPLES"}
#: Source file, parameter, heading in docs/methods and name in the reference files of each family.
FAMILIES = {"intervals": ("CITYPES", "Intervals"), "tests": ("TESTTYPES", "Tests")}
SOURCES = {"intervals": "intervals", "tests": "significance"}
NUMBER = r"-?\d+(\.\d+)?(e[-+]?\d+)?"
METHOD = re.compile(r'\{\s*"([A-Z_0-9]+)",\s*"([^"]+)",\s*(true|false)\b')


def families():
    """Design, family and the methods of its table: (keyword, label, whether it is a default)."""
    for design in DESIGNS:
        for family, source in SOURCES.items():
            text = "".join(file.read_text() for file in sorted((ROOT / "module" / design).glob(f"{source}.*")))
            methods = [(keyword, label, default == "true") for keyword, label, default in METHOD.findall(text)]
            yield design, family, methods


def reference_rows(design, family):
    """The keyword of each reference row and its first result."""
    lines = (ROOT / "tests" / "reference" / f"{design}_{family}.csv").read_text().splitlines()
    names = next(line for line in lines if re.match("# (test|method),", line)).split(",")
    result = next(place for place, name in enumerate(names) if name in ("lower", "one_sided"))
    for line in lines:
        if not line.startswith("#"):
            fields = line.split(",")
            yield fields[0], fields[result]


def section(text, heading):
    """What stands below a heading, up to the next one of its rank or higher."""
    rank = heading.split()[0]
    start = re.search(rf"^{re.escape(heading)}$", text, re.M)
    if start is None:
        return ""
    rest = text[start.end() :]
    end = re.search(rf"^#{{1,{len(rank)}}} ", rest, re.M)
    return rest[: end.start()] if end else rest


class Methods(unittest.TestCase):
    def test_each_family_has_its_table(self):
        found = {(design, family): len(methods) for design, family, methods in families()}
        self.assertEqual(len(found), 6)
        self.assertGreaterEqual(min(found.values()), 5, found)

    def test_each_method_has_reference_values_with_numbers(self):
        for design, family, methods in families():
            computed = {row[0] for row in reference_rows(design, family) if re.fullmatch(NUMBER, row[1])}
            for keyword, _, _ in methods:
                with self.subTest(design=design, family=family, method=keyword):
                    self.assertIn(keyword, computed)

    def test_each_method_has_its_section_and_each_section_its_method(self):
        for design, family, methods in families():
            text = section((ROOT / "docs" / "methods" / f"{design}.md").read_text(), f"## {FAMILIES[family][1]}")
            with self.subTest(design=design, family=family):
                self.assertEqual(re.findall(r"^### (\S+)$", text, re.M), [keyword for keyword, _, _ in methods])
            for keyword, _, _ in methods:
                with self.subTest(design=design, family=family, method=keyword):
                    self.assertGreater(len(section(text, f"### {keyword}").split()), 5, "a section that explains it")

    def test_the_command_reference_lists_each_method_and_the_defaults(self):
        reference = (ROOT / "docs" / "command.md").read_text()
        for design, family, methods in families():
            text = section(reference, f"## {DESIGNS[design]}")
            item = re.search(rf"^- `{FAMILIES[family][0]}`: (.*?)(?=^- |^\s*$|\Z)", text, re.M | re.S)
            with self.subTest(design=design, family=family):
                self.assertIsNotNone(item)
                listed, _, defaults = item.group(1).partition("default")
                self.assertEqual(re.findall(r"`([^`]+)`", listed), [keyword for keyword, _, _ in methods])
                self.assertEqual(
                    re.findall(r"[A-Z_0-9]+", defaults), [keyword for keyword, _, default in methods if default]
                )

    def test_each_label_is_in_the_catalogue(self):
        catalogue = json.loads((ROOT / "workbench" / "catalogue" / "en.json").read_text())
        for design, family, methods in families():
            for keyword, label, _ in methods:
                with self.subTest(design=design, family=family, method=keyword):
                    self.assertIn(label, catalogue)


if __name__ == "__main__":
    unittest.main()

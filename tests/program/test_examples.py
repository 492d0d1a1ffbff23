"""The examples give the output that is kept beside them, and the documents describe every method."""

import pathlib
import re

from program import ProgramTest

ROOT = pathlib.Path(__file__).resolve().parents[2]
OPTIONS = {"physicians_health": ["--weight", "freq"], "admissions": ["--weight", "freq"]}


class Examples(ProgramTest):
    def test_output(self):
        commands = sorted((ROOT / "examples").glob("*.txt"))
        self.assertGreaterEqual(len(commands), 5)
        for command in commands:
            with self.subTest(command.stem):
                done = self.run_program(str(command.with_suffix(".csv")), "-f", str(command), *OPTIONS.get(command.stem, []))
                self.assertEqual(done.stdout.decode(), (ROOT / "examples" / "output" / command.name).read_text())

    def test_every_method_has_its_section(self):
        for design in ("onesample", "paired", "independent"):
            page = (ROOT / "docs" / "methods" / f"{design}.md").read_text()
            intervals, tests = page.split("## Tests")
            for source, part in (("intervals", intervals), ("significance", tests)):
                header = (ROOT / "module" / design / f"{source}.h").read_text()
                keywords = re.findall(r'^ *\{"([A-Z_0-9]+)",', header, re.M)
                self.assertGreater(len(keywords), 4)
                self.assertEqual(re.findall(r"^### (.*)$", part, re.M), keywords, design)

    def test_every_text_of_the_module_is_in_the_catalogue(self):
        catalogue = (ROOT / "workbench" / "catalogue" / "en.json").read_text()
        texts = (ROOT / "module" / "output" / "texts.h").read_text()
        found = re.findall(r'\] =\s*"([^"]+)";', texts)
        self.assertGreater(len(found), 80)
        for text in found:
            if text not in ("PROPORTIONS", "Proportions"):
                self.assertIn(f'"{text}":', catalogue)

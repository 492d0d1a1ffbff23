"""The examples give the output that is kept beside them, and the documents describe every method."""

import pathlib
import re

from program import ProgramTest

ROOT = pathlib.Path(__file__).resolve().parents[2]
OPTIONS = {
    "physicians_health": ["--weight", "freq"],
    "admissions": ["--weight", "freq"],
    "plebiscite": ["--weight", "freq", "--split", "Imputation_"],
}
BOOTSTRAP = ["--bootstrap", "2000", "--seed", "1990"]


class Examples(ProgramTest):
    def test_output(self):
        commands = sorted((ROOT / "examples").glob("*.txt"))
        self.assertGreaterEqual(len(commands), 5)
        for command in commands:
            with self.subTest(command.stem):
                done = self.run_program(str(command.with_suffix(".csv")), "-f", str(command), *OPTIONS.get(command.stem, []))
                self.assertEqual(done.stdout.decode(), (ROOT / "examples" / "output" / command.name).read_text())

    def test_output_of_a_bootstrap(self):
        done = self.run_program(str(ROOT / "examples" / "complete_response.csv"), "-c",
                                "PROPORTIONS /PAIREDSAMPLES before WITH after (PAIRED) "
                                "TESTTYPES=NONE CITYPES=BONETT_PRICE NEWCOMBE.", *BOOTSTRAP)
        kept = ROOT / "examples" / "output" / "complete_response_bootstrap.txt"
        self.assertEqual(done.stdout.decode(), kept.read_text())

    def test_every_method_has_its_section(self):
        for design in ("onesample", "paired", "independent"):
            page = (ROOT / "docs" / "methods" / f"{design}.md").read_text()
            intervals, tests = page.split("## Tests")
            for source, part in (("intervals", intervals), ("significance", tests)):
                header = (ROOT / "module" / design / f"{source}.h").read_text()
                keywords = re.findall(r'^ *\{"([A-Z_0-9]+)",', header, re.M)
                self.assertGreater(len(keywords), 4)
                self.assertEqual(re.findall(r"^### (.*)$", part, re.M), keywords, design)

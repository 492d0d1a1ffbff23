"""Commands that are wrong, and commands that are unusual but right."""

from program import ProgramTest, keys, table


class Commands(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("d.csv", "smoker,drinker,name,with\n1,0,a,1\n0,1,b,0\n")

    def syntax_error(self, command):
        error = self.refused(command)
        self.assertTrue(error["key"].startswith("Syntax error"), error)
        return error

    def test_place_and_suggestion(self):
        error = self.syntax_error("PROPORTIONS\n  /ONESAMPLE smoker TESTYPES=ALL.")
        self.assertIn("2", error["text"])
        self.assertIn("  /ONESAMPLE smoker TESTYPES=ALL", error["text"])
        self.assertIn("TESTTYPES", error["text"])
        lines = error["text"].split("\n")
        caret = next(i for i, line in enumerate(lines) if line.strip() == "^")
        self.assertEqual(lines[caret].index("^"), lines[caret - 1].index("TESTYPES"))

    def test_syntax_errors(self):
        for command, said in (("PROPORTION /ONESAMPLE smoker.", "PROPORTIONS"),
                              ("PROPORTIONS /ONESAMPEL smoker.", "ONESAMPLE"),
                              ("PROPORTIONS /ONESAMPLE smoker TESTTYPES=WILSON.", "SCORE"),
                              ("PROPORTIONS /ONESAMPLE smoker TESTTYPES=.", "missing"),
                              ("PROPORTIONS /ONESAMPLE smoker TESTVAL=1.", "below 1"),
                              ("PROPORTIONS /ONESAMPLE smoker TESTVAL=0.", "above 0"),
                              ("PROPORTIONS /ONESAMPLE smoker TESTVAL='a'.", "number"),
                              ("PROPORTIONS /ONESAMPLE smoker /CRITERIA CILEVEL=100.", "below 100"),
                              ("PROPORTIONS /ONESAMPLE smoker /CRITERIA CILEVEL=-1.", "at least 0"),
                              ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=LEVEL(1 2.", ")"),
                              ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=LEVEL.", "LEVEL"),
                              ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=LEVEL().", "LEVEL"),
                              ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=CUTPOINT.", "CUTPOINT"),
                              ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=MIDDLE.", "MIDPOINT"),
                              ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=LEVEL('a).", "quote"),
                              ("PROPORTIONS /ONESAMPLE smoker /ONESAMPLE drinker.", "twice"),
                              ("PROPORTIONS /ONESAMPLE smoker TESTVAL=0.1 TESTVAL=0.2.", "twice"),
                              ("PROPORTIONS /ONESAMPLE smokr.", "smoker"),
                              ("PROPORTIONS /ONESAMPLE.", "variable"),
                              ("PROPORTIONS /ONESAMPLE 5.", "variable"),
                              ("PROPORTIONS /ONESAMPLE drinker TO smoker.", "TO"),
                              ("PROPORTIONS /ONESAMPLE smoker TO.", "TO"),
                              ("PROPORTIONS /ONESAMPLE with.", "reserved"),
                              ("PROPORTIONS /ONESAMPLE smoker ; drinker.", ";")):
            with self.subTest(command):
                self.assertIn(said.lower(), self.syntax_error(command)["text"].lower())

    def test_module_messages(self):
        for command, key in (("PROPORTIONS.", "Command ^1 without subcommand"),
                             ("PROPORTIONS /CRITERIA CILEVEL=90.", "Exactly one test option ..."),
                             ("PROPORTIONS /ONESAMPLE smoker /PAIREDSAMPLES smoker drinker.", "Exactly one test option ..."),
                             ("PROPORTIONS /ONESAMPLE smoker TESTTYPES=NONE SCORE.", "Param ^1, subcom ^2, excludes any other"),
                             ("PROPORTIONS /ONESAMPLE name /SUCCESS VALUE=MIDPOINT.", "Numeric var SUCCESS option ^1 ..."),
                             ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=LEVEL('x').", "Invalid SUCCESS LEVEL ..."),
                             ("PROPORTIONS /ONESAMPLE name /SUCCESS VALUE=LEVEL('too long').", "Invalid SUCCESS LEVEL ...")):
            with self.subTest(command):
                self.assertEqual(self.refused(command)["key"], key)

    def test_warnings(self):
        for command, wanted in (("PROPORTIONS /ONESAMPLE smoker smoker.", ["Subcom ^1, duplicate var names ..."]),
                                ("PROPORTIONS /ONESAMPLE smoker TESTTYPES=WALD WALD.", ["Param ^1, subcom ^2, duplicate options ..."]),
                                ("PROPORTIONS /ONESAMPLE smoker TESTTYPES=NONE NONE.", ["Param ^1, subcom ^2, duplicate options ..."]),
                                ("PROPORTIONS /ONESAMPLE smoker TESTTYPES=NONE CITYPES=NONE.", ["No table requested"]),
                                ("PROPORTIONS /ONESAMPLE smoker /SUCCESS VALUE=LEVEL(1 1.0).", ["Duplicate SUCCESS LEVEL values ..."]),
                                ("PROPORTIONS /ONESAMPLE name /SUCCESS VALUE=LEVEL('a' 'A').", []),
                                ("PROPORTIONS /ONESAMPLE smoker TESTTYPES=ALL WALD.", [])):
            with self.subTest(command):
                self.assertEqual(keys(self.procedure(command, "d.csv")), wanted)

    def test_unusual_but_right(self):
        for command in ("proportions onesample smoker", "Proportions\n\n/OneSample SMOKER, drinker # a comment.\n citypes=wald.",
                        "PROPORTIONS /ONESAMPLE \"with\".", "PROPORTIONS /ONESAMPLE smoker TO drinker.",
                        "PROPORTIONS /ONESAMPLE smoker /MISSING /CRITERIA CILEVEL=99.", "PROPORTIONS /ONESAMPLE smoker TESTVAL=.5"):
            with self.subTest(command):
                self.assertEqual(self.procedure(command, "d.csv")["status"], "ok")

    def test_commands_after_unreadable_data_are_counted(self):
        self.write("b.csv", "x,y\n1,0\n0,01\n1,1\n")
        self.schema("b.schema.json", {"name": "x", "type": "integer"}, {"name": "y", "type": "integer"})
        for after, said in (("", None), ("ONESAMPLE x.\n", "1 command was not run"),
                            ("ONESAMPLE x.\nONESAMPLE x.\n", "2 commands were not run")):
            for form in ("json", "text"):
                done = self.run_program("b.csv", "-c", "ONESAMPLE x.\nONESAMPLE y.\n" + after,
                                        "--format", form, status=2)
                if said:
                    self.assertIn(said, done.stderr.decode())
                else:
                    self.assertNotIn("not run", done.stderr.decode())

    def test_all_leaves_out_weight_and_split(self):
        p = self.procedure("PROPORTIONS /ONESAMPLE ALL.", "d.csv", "--weight", "drinker", "--split", "with")
        names = {c["label"].split(" ")[0] for c in table(p, "Intervals")["dimensions"][1]["categories"]}
        self.assertEqual(names, {"smoker", "name"})

    def test_all_takes_names_of_any_beginning(self):
        self.write("s.csv", "$x,_y,z\n1,1,0\n0,1,1\n")
        p = self.procedure("PROPORTIONS /ONESAMPLE ALL.", "s.csv")
        labels = [c["label"] for c in table(p, "Intervals")["dimensions"][0]["categories"]]
        self.assertEqual(labels, ["$x = 1", "_y = 1", "z = 1"])

    def test_weight_cannot_be_analysed(self):
        error = self.refused("PROPORTIONS /ONESAMPLE smoker drinker.", arguments=("--weight", "drinker"))
        self.assertIn("drinker", error["text"])

    def test_string_weight(self):
        self.refused("PROPORTIONS /ONESAMPLE smoker.", arguments=("--weight", "name"))

    def test_several_commands(self):
        text = "PROPORTIONS /ONESAMPLE smoker.\nPROPORTIONS /ONESAMPLE nobody.\nPROPORTIONS /ONESAMPLE drinker.\n"
        procedures = self.run_json(text, "d.csv", status=1)
        self.assertEqual([p["status"] for p in procedures], ["ok", "failed", "ok"])

    def test_command_file_and_standard_input(self):
        self.write("c.txt", "PROPORTIONS /ONESAMPLE smoker.")
        by_file = self.run_program("d.csv", "-f", "c.txt").stdout
        by_stdin = self.run_program("d.csv", "-f", "-", stdin=b"PROPORTIONS /ONESAMPLE smoker.").stdout
        self.assertEqual(by_file, by_stdin)
        self.assertIn(b"Wilson Score", by_file)

    def test_line_ends_of_any_system(self):
        text = "PROPORTIONS /ONESAMPLE smoker\n  TESTVAL=0.2.\nPROPORTIONS\n  /ONESAMPLE drinkr.\n"
        outputs = set()
        for ends in ("\n", "\r\n", "\r"):
            for mark in (b"", b"\xef\xbb\xbf"):
                self.write("c.txt", mark + text.replace("\n", ends).encode())
                done = self.run_program("d.csv", "-f", "c.txt", status=1)
                outputs.add(done.stdout + done.stderr)
        self.assertEqual(len(outputs), 1)
        self.assertIn(b"Line 4, column 14", outputs.pop())

    def test_usage(self):
        for arguments in ((), ("d.csv",), ("d.csv", "-c", "x", "-f", "y"), ("d.csv", "-f", "nothing.txt"), ("d.csv", "-f", "."),
                          ("-", "-f", "-"), ("d.csv", "-c", " # only a comment"), ("d.csv", "-c", "x", "--format", "docx"),
                          ("d.csv", "-c", "x", "--collapse", "maybe"), ("d.csv", "-c", "x", "--no-such-option"),
                          ("d.csv", "-c", "PROPORTIONS /ONESAMPLE smoker", "--weight", "nobody"),
                          ("d.csv", "-c", "PROPORTIONS /ONESAMPLE smoker", "--split", "nobody")):
            with self.subTest(arguments):
                self.assertTrue(self.unusable(*arguments).startswith("proportions: "))

    def test_help_and_version(self):
        self.assertIn(b"--collapse", self.run_program("--help").stdout)
        self.assertRegex(self.run_program("--version").stdout, rb"^proportions \d+\.\d+\.\d+")

    def test_nonsense_is_survived(self):
        for command in ("(" * 10000, "/" * 1000, "=" * 50, "\"" * 7, "PROPORTIONS " + "/ONESAMPLE smoker " * 200,
                        "PROPORTIONS /ONESAMPLE " + "smoker " * 10000 + "nobody", "\x01\x02", "PROPORTIONS /ONESAMPLE \u202e."):
            with self.subTest(command[:30]):
                self.refused(command)

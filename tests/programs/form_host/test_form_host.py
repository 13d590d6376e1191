"""The form host from outside: forms good and broken, changes, saving and loading again, exit codes."""

from programs import MODULE, SAMPLE, ProgramTest, crc, register_module, unregister_module

DEFAULTS = ['  ServerAddress = ""', "  ServerPort = 80", '  ServerFile = ""', "  UseProxy = False",
            '  ProxyServer = ""', '  UserName = ""', '  Password = ""']


def setUpModule():
    register_module()


def tearDownModule():
    unregister_module()


class FormHostTest(ProgramTest):
    def form_host(self, *arguments):
        return self.run_program("form_host", *arguments)

    def host(self, form, *arguments):
        """Runs it on a form with this text; saves to saved.form."""
        self.write("a.form", form)
        return self.form_host(*arguments, "--save", "saved.form", "a.form")

    def saved(self):
        return (self.folder / "saved.form").read_bytes().decode("utf-8")

    def loaded(self, outcome):
        start = outcome.lines.index("settings as loaded:") + 1
        return outcome.lines[start:start + 7]


class Road(FormHostTest):
    def test_the_sample_goes_all_the_way(self):
        outcome = self.form_host(SAMPLE)
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertEqual(self.loaded(outcome), [
            '  ServerAddress = "reports.example.com"', "  ServerPort = 8080",
            '  ServerFile = "/scripts/collect.asp"', "  UseProxy = True",
            '  ProxyServer = "proxy.example.com:3128"', '  UserName = "Łucja"', '  Password = "********"'])
        for line in ("control: 420 x 420 twips, 28 x 28 pixels",
                     "  the control reports a change of ServerPort", "the form needs saving",
                     "saved in memory only: 7 entries", "  ServerPort = 8081",
                     "reloaded into a new control: all seven settings are as saved"):
            self.assertIn(line, outcome.lines)
        self.assertEqual(outcome.lines[-1], f"GetCRCValue={crc(MODULE.read_bytes())}")

    def test_waits_no_longer_than_there_is_input(self):
        outcome = self.form_host("--wait", SAMPLE)
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertEqual(outcome.lines[-1], f"GetCRCValue={crc(MODULE.read_bytes())}")

    def test_an_empty_form_has_the_defaults(self):
        outcome = self.host("", "--set", "ServerPort=80")
        self.assertEqual(self.loaded(outcome), DEFAULTS)
        self.assertEqual((outcome.code, self.saved()), (0, ""))

    def test_saves_what_differs_from_the_defaults_only(self):
        outcome = self.host('ServerPort = 8080\nUseProxy = True\nServerFile = "x"\n', "--set", "ServerPort=80",
                            "--set", "UseProxy=False", "--set", "ServerFile=", "--set", "ServerAddress=a:81")
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertEqual(self.saved(), 'ServerAddress = "a:81"\n')

    def test_a_saved_form_loads_again_and_saves_the_same(self):
        self.host(SAMPLE.read_bytes(), "--set", "ServerPort=-1")
        first = self.saved()
        self.host(first, "--set", "ServerPort=-1")
        self.assertEqual(self.saved(), first)
        self.assertIn("ServerPort = -1\n", first)

    def test_the_user_name_is_saved_as_username(self):
        self.host("", "--set", "UserName=Łucja", "--set", "ServerPort=80")
        self.assertEqual(self.saved(), 'Username = "Łucja"\n')

    def test_every_16_bit_character_survives(self):
        form = 'ServerFile = "\\u0001\\t\\r\\n\\"\\\\ \\uD83D \\uDE00\\uD83D x"\n'
        outcome = self.host(form, "--set", "ServerPort=80")
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertEqual(self.saved(), form)

    def test_a_password_never_shows(self):
        outcome = self.host('Password = "s3cret"\n', "--set", "Password=s4cret")
        self.assertEqual(outcome.code, 0)
        self.assertNotIn("cret", outcome.out)
        self.assertIn('Password = "s4cret"\n', self.saved())

    def test_saves_onto_the_form_itself_and_leaves_nothing_beside_it(self):
        self.write("ä 日.form", '﻿ServerAddress = "a"\r\n')
        outcome = self.form_host("--save", "ä 日.form", "ä 日.form")
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertIn("saved to ä 日.form: 2 entries", outcome.lines)
        self.assertEqual([path.name for path in self.folder.iterdir()], ["ä 日.form"])
        self.assertEqual((self.folder / "ä 日.form").read_bytes(), b'ServerAddress = "a"\nServerPort = 8081\n')

    def test_other_kinds_are_converted_on_loading(self):
        outcome = self.host('ServerAddress = 17\nServerPort = " 81 "\nServerFile = 70000\nUseProxy = 7\n',
                            "--set", "ServerPort=82")
        self.assertEqual(self.loaded(outcome)[:4], ['  ServerAddress = "17"', "  ServerPort = 81",
                                                    '  ServerFile = "70000"', "  UseProxy = True"])
        self.assertEqual(self.saved(),
                         'ServerAddress = "17"\nServerPort = 82\nServerFile = "70000"\nUseProxy = True\n')

    def test_a_port_that_is_no_number_ends_the_loading_without_an_error(self):
        for port in ('"many"', "70000"):
            with self.subTest(port):
                outcome = self.host(f'ServerAddress = "a"\nServerPort = {port}\nServerFile = "f"\n')
                self.assertEqual((outcome.code, outcome.err), (0, ""))
                self.assertEqual(self.loaded(outcome)[:3],
                                 ['  ServerAddress = "a"', "  ServerPort = 0", '  ServerFile = ""'])
                self.assertIn("note: the control has not read the entry ServerFile", outcome.lines)

    def test_an_entry_of_another_name_is_noted_and_dropped(self):
        outcome = self.host('UserName = "not the spelling of a saved form"\n', "--set", "ServerPort=80")
        self.assertIn("note: the control has not read the entry UserName", outcome.lines)
        self.assertEqual(self.saved(), "")


class Failures(FormHostTest):
    def test_a_broken_form_is_refused_by_its_line(self):
        for form, message in {
            "\n\nServerPort": 'a.form: line 3: a name must be followed by "="',
            "= 1": "a.form: line 1: an entry must start with a name",
            "A = ": "a.form: line 1: a value must be",
            'A = "x': "a.form: line 1: the text lacks its closing quote",
            'A = "x" y': "a.form: line 1: nothing may follow the value",
            "A = 12x": "a.form: line 1: a number must be whole",
            "A = 2147483648": "a.form: line 1: the number lies outside",
            "A = true": "a.form: line 1: a value must be",
            'A = "\\q"': "a.form: line 1: behind a backslash must stand",
            "A = 1\r\n' comment\r\nA = 2": "a.form: line 3: the entry A stands twice",
            b'A = "\xff"': "a.form: line 1: the line is not UTF-8",
            b'A = "\x00"': "a.form: line 1: a control character",
        }.items():
            with self.subTest(form):
                outcome = self.host(form)
                self.assert_fails(outcome, "form_host: " + message)
                self.assertEqual(outcome.bytes, b"")
                self.assertFalse((self.folder / "saved.form").exists())

    def test_a_form_that_is_no_file_is_refused(self):
        (self.folder / "folder").mkdir()
        self.assert_fails(self.form_host("missing-ä.form"), "form_host: missing-ä.form: there is no such file")
        self.assert_fails(self.form_host("folder"), "form_host: folder: it is not a file")

    def test_a_place_that_cannot_take_the_form_is_refused(self):
        self.write("a.form", "")
        (self.folder / "folder").mkdir()
        self.assert_fails(self.form_host("--save", "none/b.form", "a.form"),
                          "form_host: none/b.form: no file can be made beside it")
        self.assert_fails(self.form_host("--save", "folder", "a.form"), "form_host: folder: it is not a file")
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["a.form", "folder"])

    def test_a_value_that_does_not_fit_is_an_error_and_nothing_is_saved(self):
        for value, message in {"70000": "error 6: Overflow", "many": "error 13: Type mismatch"}.items():
            with self.subTest(value):
                self.assert_fails(self.host("", "--set", f"ServerPort={value}"), "form_host: " + message)
                self.assertFalse((self.folder / "saved.form").exists())

    def test_wrong_usage_says_what_is_wrong(self):
        self.write("a.form", "")
        for words, message in {
            (): "form_host: too few arguments: FORM is wanted",
            ("a.form", "b.form"): "form_host: too many arguments, from 'b.form' on",
            ("--nope", "a.form"): "form_host: unknown option '--nope'",
            ("a.form", "--save"): "form_host: option '--save' wants a value",
            ("--save", "x", "--save=y", "a.form"): "form_host: option '--save' is given twice",
            ("--set", "ServerPort", "a.form"): "form_host: --set wants NAME=VALUE: 'ServerPort'",
            ("--set", "Username=x", "a.form"): "form_host: --set knows no setting 'Username', only ServerAddress,",
        }.items():
            with self.subTest(words):
                self.assert_usage_error(self.form_host(*words), message)

    def test_help_is_no_failure(self):
        outcome = self.form_host("--help")
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertTrue(outcome.out.startswith("usage: form_host "))

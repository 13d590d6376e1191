"""What people expect of any command line: short options, lists that are checked, JSON, limits told at once."""

import json
import os
import signal
import subprocess

from programs import ON_WINDOWS, ProgramTest, command, crc

LIMIT = 2147475455


class ConventionTest(ProgramTest):
    def quorvane(self, *arguments, stdin=b""):
        # Not the user's own stores.
        return self.run_program("quorvane", *arguments, stdin=stdin, XDG_DATA_HOME=str(self.folder / "data"),
                                XDG_CONFIG_HOME=str(self.folder / "config"))


class ShortForms(ConventionTest):
    def test_the_help_and_the_version_have_them(self):
        self.assertEqual(self.quorvane("-h").bytes, self.quorvane("--help").bytes)
        self.assertEqual(self.quorvane("-V").bytes, self.quorvane("--version").bytes)
        self.assertEqual(self.quorvane("crc", "-h").bytes, self.quorvane("help", "crc").bytes)
        self.assertEqual(self.quorvane("registry", "read", "-h").bytes, self.quorvane("help", "registry", "read").bytes)

    def test_a_question_mark_asks_for_help_on_windows_alone(self):
        if ON_WINDOWS:
            self.assertEqual(self.quorvane("/?").bytes, self.quorvane("--help").bytes)
            self.assertEqual(self.quorvane("crc", "/?").bytes, self.quorvane("help", "crc").bytes)
        else:
            self.assert_usage_error(self.quorvane("/?"), "unknown command '/?'")

    def test_options_have_them(self):
        self.write("digits", b"123456789")
        self.assertEqual(self.quorvane("crc", "-u", "digits").out, "3421780262\tdigits\n")
        self.assertEqual(self.quorvane("gradient", "900", "900", "-bs0,0,0").out,
                         self.quorvane("gradient", "900", "900", "--bands", "--start", "0,0,0").out)

    def test_an_operation_is_found_behind_the_options_too(self):
        self.assertEqual(self.quorvane("text", "--batch", "base36", stdin=b"36\n").out, "10\n")


class Description(ConventionTest):
    def test_tells_all_that_the_help_tells(self):
        described = json.loads(self.quorvane("--describe").out)
        self.assertEqual(f"quorvane {described['version']}\n", self.quorvane("--version").out)
        for entry in described["commands"]:
            if entry["is_group"]:
                continue
            with self.subTest(entry["name"]):
                text = self.quorvane("help", *entry["name"].split()).out
                self.assertIn(entry["details"], text)
                self.assertTrue(all(len(line) <= 80 for line in entry["details"].splitlines()))
                for option in entry["options"]:
                    self.assertIn(option["name"], text)
                self.assertIn(f"quorvane {entry['name']}", text)
                self.assertIn(entry["operands"], text)

    def test_no_line_of_the_help_is_wider_than_a_terminal(self):
        for entry in json.loads(self.quorvane("--describe").out)["commands"]:
            for line in self.quorvane("help", *entry["name"].split()).lines:
                self.assertLessEqual(len(line), 80, line)


class Forms(ConventionTest):
    def test_crc_in_other_forms(self):
        self.write("digits", b"123456789")
        self.write("empty", b"")
        self.assertEqual(self.quorvane("crc", "--hex", "digits", "empty").out,
                         "0xCBF43926\tdigits\n0x00000000\tempty\n")
        self.assertEqual(self.quorvane("crc", "--unsigned", "digits").out, "3421780262\tdigits\n")

    def test_crc_as_json(self):
        self.write("digits", b"123456789")
        outcome = self.quorvane("crc", "--json", "digits", "missing")
        self.assertEqual(outcome.code, 1)
        self.assertEqual(json.loads(outcome.out), [
            {"file": "digits", "crc": -873187034, "hex": "0xCBF43926"},
            {"file": "missing", "error": "error 53: File not found (quorvane.File)"}])
        self.assertIn("missing", outcome.err)

    def test_adapters_as_json(self):
        listed = self.quorvane("adapters").out.split()
        self.assertEqual(json.loads(self.quorvane("adapters", "--json").out), listed)

    def test_profile_values_as_json(self):
        self.write("a.ini", '[s]\r\nk=say "\\x" and more\r\n')
        file = self.folder / "a.ini"
        name = "Z:" + str(file).replace("/", "\\") if ON_WINDOWS else str(file)
        self.assertEqual(json.loads(self.quorvane("profile", "read", "s", "k", "--json", "--file", name).out),
                         {"value": 'say "\\x" and more'})


class Check(ConventionTest):
    def check(self, listing, *words):
        self.write("list", listing)
        return self.quorvane("crc", "--check", "list", *words)

    def test_a_list_of_each_form_is_right_about_files_that_did_not_change(self):
        names = [self.write(name, os.urandom(10)) for name in ("a", "b c", "ä")]
        for form in ((), ("--hex",), ("--unsigned",)):
            with self.subTest(form):
                outcome = self.check(self.quorvane("crc", *form, *names).bytes)
                self.assertEqual((outcome.code, outcome.out, outcome.err), (0, "a: OK\nb c: OK\nä: OK\n", ""))

    def test_a_changed_and_a_missing_file_fail(self):
        for name in ("same", "changed", "gone"):
            self.write(name, b"before")
        listing = self.quorvane("crc", "same", "changed", "gone").bytes
        self.write("changed", b"after")
        (self.folder / "gone").unlink()
        outcome = self.check(listing)
        self.assertEqual((outcome.code, outcome.out), (1, "same: OK\nchanged: FAILED\ngone: FAILED to read\n"))
        self.assertEqual(outcome.err.splitlines(), ["quorvane: error 53: File not found (quorvane.File): gone",
                                                    "quorvane: 2 of 3 files FAILED"])

    def test_quietly_only_the_others_are_told(self):
        for name in ("same", "changed"):
            self.write(name, b"before")
        listing = self.quorvane("crc", "same", "changed").bytes
        outcome = self.check(listing, "--quiet")
        self.assertEqual((outcome.code, outcome.out, outcome.err), (0, "", ""))
        self.write("changed", b"after")
        outcome = self.check(listing, "-q")
        self.assertEqual((outcome.code, outcome.out), (1, "changed: FAILED\n"))

    def test_the_list_may_come_from_standard_input_and_end_its_lines_as_windows_does(self):
        self.write("digits", b"123456789")
        outcome = self.quorvane("crc", "-c", "-", stdin=b"-873187034\tdigits\r\n3421780262\tdigits")
        self.assertEqual((outcome.code, outcome.out), (0, "digits: OK\ndigits: OK\n"))

    def test_a_line_that_is_none_is_named_and_fails(self):
        self.write("digits", b"123456789")
        outcome = self.check("-873187034\tdigits\nx\tdigits\n4294967296\tdigits\n1 digits\n0x\tdigits\n1\t\n")
        self.assertEqual((outcome.code, outcome.out), (1, "digits: OK\n"))
        self.assertEqual([line.split(": ")[1] for line in outcome.err.splitlines()],
                         ["list:2", "list:3", "list:4", "list:5", "list:6"])

    def test_an_empty_list_fails_and_so_does_none(self):
        self.assert_fails(self.check(""), "list lists no file")
        self.assert_fails(self.quorvane("crc", "--check", "missing"), "'missing' cannot be read")
        (self.folder / "folder").mkdir()
        self.assert_fails(self.quorvane("crc", "--check", "folder"), "'folder' ")


class Limits(ConventionTest):
    def test_crc_tells_at_once_of_a_file_that_is_too_large(self):
        for size in (LIMIT + 1, 3 << 30, (4 << 30) + 5):
            with open(self.folder / "huge", "wb") as huge:
                huge.truncate(size)
            with self.subTest(size):
                self.assert_fails(self.quorvane("crc", "huge"), "quorvane: error 6: Overflow: the file has "
                                  f"{size} bytes, and the limit is {LIMIT}: huge")

    def refuses_while_more_may_come(self, *words, start=b"a" * 200000):
        """The program ends although its input stays open."""
        program = subprocess.Popen(command("quorvane", *words), cwd=self.folder, stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        try:
            program.stdin.write(start)
            program.stdin.flush()
        except BrokenPipeError:
            pass
        code = program.wait(timeout=60)
        output, errors = program.stdout.read(), program.stderr.read().decode()
        for stream in (program.stdout, program.stderr):
            stream.close()
        try:
            program.stdin.close()
        except BrokenPipeError:
            pass
        self.assertEqual((code, output), (1, b""))
        self.assertIn("more than 32766 characters", errors)

    def test_a_text_that_is_too_long_is_refused_before_it_has_ended(self):
        self.refuses_while_more_may_come("encode")
        self.refuses_while_more_may_come("post", "127.0.0.1", "1", "/", "-", "--encode")

    def test_the_longest_text_is_encoded_however_many_bytes_it_has(self):
        self.assertEqual(self.quorvane("encode", stdin="\u20AC".encode() * 32766).out, "%80" * 32766 + "\n")

    def test_overflow_says_of_what(self):
        self.assert_fails(self.quorvane("text", "base36", "2147483648"),
                          "quorvane: error 6: Overflow: VALUE is '2147483648'")
        self.assertEqual(self.quorvane("text", "base36", "--batch", stdin=b"2147483648\n").out,
                         "!error 6: Overflow: VALUE is '2147483648'\n")
        self.assert_fails(self.quorvane("registry", "write", "HKCU", r"Software\Quorvane", "n", "2147483648", "-t",
                                        "dword"),
                          "nothing was written: VALUE is no integer from -2147483648 to 2147483647")


class CoProcess(ConventionTest):
    def test_batch_answers_each_line_before_the_next_is_there(self):
        with subprocess.Popen(command("quorvane", "text", "base36", "--batch"), stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as program:
            for value, answer in ((b"36\n", b"10\n"), (b"x\n", b"!error 13"), (b"35\n", b"Z\n")):
                program.stdin.write(value)
                program.stdin.flush()
                self.assertTrue(program.stdout.readline().startswith(answer))
            program.stdin.close()
            self.assertEqual(program.wait(timeout=60), 1)

    def test_a_last_line_needs_no_end(self):
        self.assertEqual(self.quorvane("text", "base36", "--batch", stdin=b"36\r\n\n35").lines[0::2], ["10", "Z"])


class Interrupt(ConventionTest):
    def test_ends_the_program_with_its_code(self):
        with subprocess.Popen(command("quorvane", "text", "empty", "--batch"), stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as program:
            program.stdin.write(b"\n")
            program.stdin.flush()
            self.assertEqual(program.stdout.readline(), b"True\n")
            program.send_signal(signal.SIGINT)  # Wine makes the interrupt key of it
            self.assertEqual(program.wait(timeout=60), 130)
            self.assertEqual(program.stderr.read(), b"")


class Picture(ConventionTest):
    def test_goes_to_the_output_as_it_goes_to_a_file(self):
        self.assertEqual(self.quorvane("gradient", 900, 900, "--picture", "a.png").code, 0)
        outcome = self.run_bytes("gradient", 900, 900, "--picture", "-")
        self.assertEqual(outcome, (self.folder / "a.png").read_bytes())

    def run_bytes(self, *arguments):
        return subprocess.run(command("quorvane", *arguments), cwd=self.folder, capture_output=True, check=True,
                              timeout=200).stdout


class Reasons(ConventionTest):
    def test_a_refused_write_says_why(self):
        outcome = self.quorvane("registry", "write", "12345", "k", "n", "v")
        self.assert_fails(outcome, "quorvane: nothing was written: ")
        self.assertIn("nvalid handle" if ON_WINDOWS else "the hive is not one of the registry's", outcome.err)
        outcome = self.quorvane("profile", "write", "s", "k", "v", "--file", "none/sub/x.ini")
        self.assert_fails(outcome, "quorvane: nothing was written: ")
        self.assertRegex(outcome.err, r"(?i)path|No such file or directory")


class Doctor(ConventionTest):
    def test_shows_what_the_program_stands_on_and_changes_nothing(self):
        outcome = self.quorvane("doctor")
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        shown = {finding["name"]: finding for finding in json.loads(self.quorvane("doctor", "--json").out)}
        self.assertEqual([line[2:].split("  ")[0] for line in outcome.lines], list(shown))
        self.assertLessEqual({"program", "system", "web client", "code page", "locale", "registry", "profile", "account",
                              "adapters"}, set(shown))
        self.assertEqual(shown["program"]["value"] + "\n", self.quorvane("--version").out)
        self.assertFalse(any(finding["fault"] for finding in shown.values()))
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_tells_a_store_that_cannot_be_used(self):
        if ON_WINDOWS:
            return  # the registry and the profile of Windows are not the program's to spoil
        (self.folder / "data").write_bytes(b"")
        (self.folder / "config/quorvane/profile.ini").mkdir(parents=True)
        outcome = self.quorvane("doctor")
        self.assertEqual(outcome.code, 1)
        faults = [line for line in outcome.lines if line.startswith("! ")]
        self.assertEqual([line.split()[1] for line in faults], ["registry", "profile"])
        self.assertIn("profile.ini: is no file", faults[1])


class WildCards(ConventionTest):
    def test_stand_for_the_names_that_match_on_windows(self):
        for name in ("b.txt", "a.txt", "c.doc"):
            self.write(name, name)
        (self.folder / "d.txt").mkdir()
        outcome = self.quorvane("crc", "*.txt")
        if ON_WINDOWS:
            self.assertEqual(outcome.out, "".join(f"{crc(n.encode())}\t{n}\n" for n in ("a.txt", "b.txt")))
            (self.folder / "sub").mkdir()
            self.write("sub/e.txt", b"e")
            self.assertEqual(self.quorvane("crc", r"sub\?.txt").out, f"{crc(b'e')}\tsub\\e.txt\n")
            self.assert_fails(self.quorvane("crc", "*.none"), "error 53")
        else:
            self.assertEqual(outcome.code, 1)

    def test_in_a_text_are_characters(self):
        self.write("a.txt", b"a")
        self.assertEqual(self.quorvane("text", "last-position", "x*.txt", "*.txt").out, "2\n")

"""The program quorvane from outside: its help, its usage errors, its exit codes, and the subcommand crc."""

import os

from programs import ProgramTest, crc


class QuorvaneTest(ProgramTest):
    def quorvane(self, *arguments, stdin=b""):
        return self.run_program("quorvane", *arguments, stdin=stdin)


class Help(QuorvaneTest):
    def commands(self):
        listing = self.quorvane("--help").out.split("commands:\n")[1].split("\n\n")[0]
        return [line.split()[0] for line in listing.splitlines()]

    def test_lists_the_commands(self):
        outcome = self.quorvane("--help")
        self.assertEqual((outcome.code, outcome.err), (0, ""))
        self.assertIn("crc", self.commands())
        self.assertEqual(self.quorvane("help").out, outcome.out)

    def test_every_command_explains_itself_in_two_ways(self):
        for command in self.commands():
            with self.subTest(command):
                outcome = self.quorvane("help", command)
                self.assertEqual((outcome.code, outcome.err), (0, ""))
                self.assertTrue(outcome.out.startswith(f"usage: quorvane {command}"), outcome.out)
                self.assertTrue(outcome.out.endswith("\n"))
                self.assertEqual(self.quorvane(command, "--help").bytes, outcome.bytes)

    def test_version_is_that_of_the_module(self):
        outcome = self.quorvane("--version")
        self.assertEqual((outcome.code, outcome.bytes), (0, b"quorvane 3.09.0001\n"))


class Crc(QuorvaneTest):
    def test_gives_the_signed_value_a_tab_and_the_name(self):
        self.write("digits", b"123456789")
        self.assertEqual(self.quorvane("crc", "digits").bytes, b"-873187034\tdigits\n")

    def test_agrees_with_an_independent_implementation_around_block_limits(self):
        names, expected = [], ""
        for size in (0, 1, 8191, 8192, 8193, 16384, 100000):
            data = os.urandom(size)
            names.append(self.write(f"{size}.bin", data))
            expected += f"{crc(data)}\t{size}.bin\n"
        outcome = self.quorvane("crc", *names)
        self.assertEqual((outcome.code, outcome.err, outcome.out), (0, "", expected))

    def test_takes_and_shows_names_of_any_script(self):
        name = self.write("ä 日本 Ł.bin", b"abc")
        outcome = self.quorvane("crc", name)
        self.assertEqual((outcome.code, outcome.out), (0, f"{crc(b'abc')}\t{name}\n"))

    def test_goes_on_after_a_failing_file_and_fails_in_the_end(self):
        self.write("first", b"1")
        self.write("last", b"2")
        (self.folder / "folder").mkdir()
        outcome = self.quorvane("crc", "first", "missing-ä", "folder", "last")
        self.assertEqual(outcome.code, 1)
        self.assertEqual(outcome.out, f"{crc(b'1')}\tfirst\n{crc(b'2')}\tlast\n")
        self.assertEqual(outcome.err.splitlines(), [
            "quorvane: error 53: File not found (quorvane.File): missing-ä",
            "quorvane: error 53: File not found (quorvane.File): folder"])

    def test_an_empty_name_is_not_found(self):
        self.assert_fails(self.quorvane("crc", ""), "quorvane: error 5")

    def test_reads_standard_input(self):
        for size in (0, 8192, 100000):
            data = os.urandom(size)
            with self.subTest(size):
                outcome = self.quorvane("crc", "-", stdin=data)
                self.assertEqual((outcome.code, outcome.out), (0, f"{crc(data)}\t-\n"))

    def test_control_z_and_newlines_in_standard_input_are_bytes(self):
        data = b"a\r\nb\n\x1a\x00c"
        self.assertEqual(self.quorvane("crc", "-", stdin=data).out, f"{crc(data)}\t-\n")

    def test_two_dashes_end_the_options(self):
        self.write("--help", b"x")
        self.assertEqual(self.quorvane("crc", "--", "--help").out, f"{crc(b'x')}\t--help\n")

    def test_shows_no_bar_when_nobody_looks(self):
        data = bytes(17 * 1024 * 1024)
        outcome = self.quorvane("crc", self.write("large", data))
        self.assertEqual((outcome.out, outcome.err), (f"{crc(data)}\tlarge\n", ""))

"""What only a Linux system shows of the programs: terminals, full disks, readers that go away, permissions."""

import os
import pty
import subprocess

from programs import MODULE, ProgramTest, command, crc


class Terminal(ProgramTest):
    def errors_on_terminal(self, *arguments):
        """What the program writes to a terminal as its standard error; its output."""
        reader, terminal = pty.openpty()
        program = subprocess.Popen(command("quorvane", *arguments), cwd=self.folder,
                                   stdout=subprocess.PIPE, stderr=terminal)
        os.close(terminal)
        shown = b""
        while True:
            try:
                piece = os.read(reader, 65536)
            except OSError:  # the far end is closed
                break
            if not piece:
                break
            shown += piece
        os.close(reader)
        output = program.communicate(timeout=60)[0]
        self.assertEqual(program.returncode, 0)
        return shown.decode(), output.decode()

    def test_a_large_file_has_a_bar_that_wipes_itself_away(self):
        data = bytes(16 * 1024 * 1024)
        self.write("large", data)
        shown, output = self.errors_on_terminal("crc", "large")
        self.assertEqual(output, f"{crc(data)}\tlarge\n")
        self.assertIn(" 50 %", shown)
        self.assertLess(shown.count("%"), 120)
        self.assertRegex(shown, r"\r +\r$")

    def test_a_smaller_file_has_no_bar(self):
        self.write("small", bytes(16 * 1024 * 1024 - 1))
        self.assertEqual(self.errors_on_terminal("crc", "small")[0], "")


class Output(ProgramTest):
    def run_into(self, output, *arguments):
        return subprocess.run(command(*arguments), cwd=self.folder, stdout=output,
                              stderr=subprocess.PIPE, timeout=60)

    def test_a_full_disk_is_a_failure(self):
        self.write("file", b"x")
        for words in (("quorvane", "crc", "file"), ("quorvane", "--help"), ("form_host", "--help")):
            with self.subTest(words), open("/dev/full", "wb") as full:
                finished = self.run_into(full, *words)
                self.assertEqual(finished.returncode, 1)
                self.assertEqual(finished.stderr.decode(), f"{words[0]}: the output cannot be written: "
                                 "No space left on device\n")

    def test_a_reader_that_went_away_is_a_failure(self):
        reader, writer = os.pipe()
        os.close(reader)
        with open(writer, "wb") as pipe:
            finished = self.run_into(pipe, "quorvane", "--help")
        self.assertEqual(finished.returncode, 1)
        self.assertIn(b"Broken pipe", finished.stderr)


class Form(ProgramTest):
    def test_a_saved_form_keeps_its_permissions(self):
        form = self.folder / self.write("a.form", "Password = \"x\"\n")
        form.chmod(0o600)
        outcome = self.run_program("form_host", "--save", "a.form", "a.form")
        self.assertEqual(outcome.code, 0, outcome.err)
        self.assertEqual(form.stat().st_mode & 0o777, 0o600)

    def test_a_link_stays_a_link(self):
        self.write("real.form", "")
        (self.folder / "link.form").symlink_to("real.form")
        self.assertEqual(self.run_program("form_host", "--save", "link.form", "link.form").code, 0)
        self.assertTrue((self.folder / "link.form").is_symlink())
        self.assertEqual((self.folder / "real.form").read_text(), "ServerPort = 8081\n")

    def test_asks_the_module_for_its_own_file(self):
        self.write("a.form", "")
        outcome = self.run_program("form_host", "a.form")
        self.assertEqual(outcome.lines[-1], f"GetCRCValue={crc(MODULE.read_bytes())}")

    def test_has_no_container_for_people(self):
        self.write("a.form", "")
        for words, option in {("--interactive", "a.form"): "--interactive", ("--interactive",): "--interactive",
                              ("--log", "x.log", "a.form"): "--log"}.items():
            with self.subTest(words):
                self.assert_usage_error(self.run_program("form_host", *words),
                                        f"form_host: {option} is for form_host on Windows only")
        self.assertEqual([path.name for path in self.folder.iterdir()], ["a.form"])

"""What only a Linux system shows of quorvane: terminals, the interrupt key, names of any bytes, the list of processes."""

import os
import pty
import signal
import socket
import subprocess
import time
from pathlib import Path

from programs import ProgramTest, command, crc


class TerminalTest(ProgramTest):
    def start(self, *arguments, terminal_for=(), **streams):
        """The program with some of its streams on a terminal; gives the program and the terminal's other side."""
        other_side, terminal = pty.openpty()
        self.addCleanup(os.close, other_side)
        streams.update({stream: terminal for stream in terminal_for})
        program = subprocess.Popen(command("quorvane", *arguments), cwd=self.folder, start_new_session=True, **streams)
        os.close(terminal)
        self.addCleanup(self.end, program)
        return program, other_side

    @staticmethod
    def end(program):
        if program.poll() is None:
            program.kill()
        program.wait(timeout=60)
        for stream in (program.stdin, program.stdout, program.stderr):
            if stream:
                stream.close()

    def read_until(self, other_side, wanted, most=60):
        shown = b""
        until = time.monotonic() + most
        while wanted not in shown:
            self.assertLess(time.monotonic(), until, shown)
            shown += os.read(other_side, 65536)
        return shown

    def read_rest(self, other_side):
        shown = b""
        while True:
            try:
                piece = os.read(other_side, 65536)
            except OSError:  # the far end is closed
                return shown
            if not piece:
                return shown
            shown += piece


class Interrupt(TerminalTest):
    def test_ends_with_its_code_and_a_clean_line(self):
        program, other_side = self.start("text", "empty", "--batch", terminal_for=("stdin", "stderr"),
                                         stdout=subprocess.PIPE)
        self.read_until(other_side, b"ends the input")
        program.send_signal(signal.SIGINT)
        self.assertEqual(program.wait(timeout=60), 130)
        self.assertTrue(self.read_rest(other_side).endswith(b"\r\n"))

    def test_wipes_the_bar_away(self):
        with open(self.folder / "large", "wb") as large:
            large.truncate(2147475455)
        program, other_side = self.start("crc", "large", terminal_for=("stderr",), stdout=subprocess.PIPE)
        self.read_until(other_side, b" 2 %")
        program.send_signal(signal.SIGINT)
        self.assertEqual(program.wait(timeout=60), 130)
        self.assertRegex(self.read_rest(other_side), rb"\r {52}\r$")

    def test_stays_ignored_where_it_was(self):
        program, _ = self.start("text", "empty", "--batch", stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN))
        program.stdin.write(b"\n")
        program.stdin.flush()
        self.assertEqual(program.stdout.readline(), b"True\n")
        program.send_signal(signal.SIGINT)
        self.assertEqual(program.communicate(b"x\n", timeout=60)[0], b"False\n")
        self.assertEqual(program.returncode, 0)


class Waiting(TerminalTest):
    def test_for_the_terminal_is_said_once_and_the_end_key_ends_it(self):
        program, other_side = self.start("encode", terminal_for=("stdin", "stderr"), stdout=subprocess.PIPE)
        shown = self.read_until(other_side, b"input\r\n")
        self.assertEqual(shown, b"quorvane: reading from the terminal; Ctrl-D ends the input\r\n")
        os.write(other_side, b"a b\n\x04")
        self.assertEqual(program.stdout.read(), b"a+b%0A\n")
        self.assertEqual(program.wait(timeout=60), 0)
        self.assertNotIn(b"reading", self.read_rest(other_side))

    def test_for_a_pipe_is_not_said(self):
        self.assertEqual(self.run_program("quorvane", "encode", stdin=b"a").err, "")


class Output(TerminalTest):
    def shown(self, *arguments, **environment):
        program, other_side = self.start(*arguments, terminal_for=("stdout", "stderr"),
                                         env={**os.environ, **environment})
        shown = self.read_rest(other_side)
        return program.wait(timeout=60), shown

    def test_the_text_of_a_failed_post_ends_its_line(self):
        code, shown = self.shown("post", "127.0.0.1", "1", "/", "a=b")
        self.assertEqual(code, 1)
        self.assertTrue(shown.startswith(b"Error : Unable to connect to the Internet\r\nquorvane: no answer: "), shown)

    def test_a_picture_is_not_put_on_it(self):
        code, shown = self.shown("gradient", "900", "900", "--picture", "-")
        self.assertEqual(code, 2)
        self.assertIn(b"not a terminal", shown)

    def test_has_no_colours_to_switch_off(self):
        for environment in ({"TERM": "xterm-256color"}, {"NO_COLOR": "1"}, {"TERM": "dumb"}):
            for words in (("--help",), ("nope",), ("crc", "missing")):
                self.assertNotIn(b"\x1b", self.shown(*words, **environment)[1])


class Names(ProgramTest):
    NAME = b"\xff\xe4 \xed\xa0\x80.bin"

    def run_bytes(self, *words):
        words = [word if isinstance(word, bytes) else word.encode() for word in words]
        return subprocess.run([*map(str.encode, command("quorvane")), *words], cwd=self.folder, capture_output=True,
                              timeout=60)

    def test_of_any_bytes_are_reached_shown_and_checked(self):
        (Path(os.fsdecode(os.fsencode(self.folder) + b"/" + self.NAME))).write_bytes(b"abc")
        done = self.run_bytes("crc", self.NAME)
        self.assertEqual((done.stdout, done.stderr), (str(crc(b"abc")).encode() + b"\t" + self.NAME + b"\n", b""))
        (self.folder / "list").write_bytes(done.stdout)
        self.assertEqual(self.run_bytes("crc", "-c", "list").stdout, self.NAME + b": OK\n")
        (self.folder / self.NAME.decode("latin-1")).write_bytes(b"another")
        self.assertEqual(self.run_bytes("crc", self.NAME).stdout, done.stdout)

    def test_of_any_bytes_name_what_is_written_too(self):
        self.assertEqual(self.run_bytes("gradient", "900", "900", "--picture", self.NAME).returncode, 0)
        self.assertEqual(os.listdir(os.fsencode(self.folder)), [self.NAME])

    def test_of_any_bytes_are_those_of_profiles_too(self):
        for name in (self.NAME, "日本.ini".encode()):
            with self.subTest(name):
                written = self.run_bytes("profile", "write", "s", "k", "v", "--file", b"./" + name)
                self.assertEqual((written.returncode, written.stderr), (0, b""))
                self.assertEqual(os.listdir(os.fsencode(self.folder)), [name])
                self.assertEqual(self.run_bytes("profile", "read", "s", "k", "-f", b"./" + name).stdout, b"v\n")
                os.unlink(os.fsencode(self.folder) + b"/" + name)

    def test_with_a_line_end_stay_one_line_of_a_list(self):
        (self.folder / "a\nb\r").write_bytes(b"x")
        done = self.run_bytes("crc", "a\nb\r")
        self.assertEqual(done.stdout, b"\\%d\ta\\nb\\r\n" % crc(b"x"))
        (self.folder / "list").write_bytes(done.stdout)
        self.assertEqual(self.run_bytes("crc", "-c", "list").stdout, b"\\a\\nb\\r: OK\n")


class Password(ProgramTest):
    def test_is_not_in_the_list_of_processes(self):
        with socket.create_server(("127.0.0.1", 0)) as silent:
            proxy = f"127.0.0.1:{silent.getsockname()[1]}"
            for words in (("--password", "very-secret"), ("--password=very-secret",)):
                program = subprocess.Popen(command("quorvane", "post", "host", "80", "/", "a=b", "--proxy", proxy,
                                                   "--user", "anna", *words), stdout=subprocess.DEVNULL,
                                           stderr=subprocess.DEVNULL)
                try:
                    with silent.accept()[0]:
                        listed = Path(f"/proc/{program.pid}/cmdline").read_bytes()
                finally:
                    program.wait(timeout=60)
                self.assertIn(b"anna", listed)
                self.assertNotIn(b"very-secret", listed)
                self.assertIn(b"***********", listed)

"""Proves `quorvane encode` and `quorvane post` as a shell sees them: bytes in and out, exit codes.

The program to test is the words of the command line; runs beside the servers of tests/web/real_servers.py.
"""

import os
import socket
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv[1:]
IS_WINDOWS = PROGRAM[-1].endswith(".exe")


def run(*words, given=b""):
    return subprocess.run([*PROGRAM, *words], input=given, capture_output=True, check=False, timeout=120)


def port(name):
    return os.environ[f"QUORVANE_TEST_{name}"]


class Encode(unittest.TestCase):
    def test_encodes_the_word(self):
        done = run("encode", "name=value&other=x y%")
        self.assertEqual((done.stdout, done.stderr, done.returncode), (b"name=value&other=x+y%25\n", b"", 0))

    def test_takes_text_as_utf_8_into_the_code_page(self):
        self.assertEqual(run("encode", "é€ж").stdout, b"%E9%80%3F\n")

    def test_encodes_standard_input_as_it_stands(self):
        self.assertEqual(run("encode", given=b"a b\n").stdout, b"a+b%0A\n")
        self.assertEqual(run("encode").stdout, b"\n")

    def test_refuses_more_than_32766_characters(self):
        self.assertEqual(run("encode", given=b"a" * 32766).stdout, b"a" * 32766 + b"\n")
        done = run("encode", given=b"a" * 32767)
        self.assertEqual((done.stdout, done.returncode), (b"", 1))
        self.assertIn(b"32766", done.stderr)

    def test_takes_another_code_page_on_linux(self):
        done = run("encode", "--code-page", "932", "日本")
        if IS_WINDOWS:
            self.assertEqual((done.stdout, done.returncode), (b"", 2))
        else:
            self.assertEqual(done.stdout, b"%93FA%967B\n")


class Post(unittest.TestCase):
    def check(self, done, output, failed, code):
        self.assertEqual(done.stdout, output, done.stderr)
        self.assertEqual(done.stderr.splitlines()[-1], b"InternetFailed=%d" % failed)
        self.assertEqual(done.returncode, code)

    def body_sent(self, done):
        return bytes.fromhex(done.stdout.decode()).partition(b"\r\n\r\n")[2]

    def test_writes_the_reply_as_it_came(self):
        self.check(run("post", "127.0.0.1", port("NGINX"), "/size-1", "a=b"), b"!", 0, 0)
        self.check(run("post", "127.0.0.1", port("NGINX"), "/none", "a=b"), b"no such form", 0, 0)

    def test_sends_the_word_or_standard_input(self):
        done = run("post", "127.0.0.1", port("PEER"), "/raw", "a=b c")
        self.assertEqual(self.body_sent(done), b"a=b c")
        done = run("post", "127.0.0.1", port("PEER"), "/raw", "-", given=b"a=b\n\nc")
        self.assertEqual(self.body_sent(done), b"a=b\n\nc")

    def test_encodes_first_when_asked_to(self):
        done = run("post", "127.0.0.1", port("PEER"), "/raw", "a=b c", "--encode")
        self.assertEqual(self.body_sent(done), b"a=b+c")
        done = run("post", "127.0.0.1", port("PEER"), "/raw", "-", "--encode", given=b"a" * 40000)
        self.assertEqual((done.stdout, done.returncode), (b"", 1))

    def test_goes_through_the_proxy(self):
        done = run("post", "127.0.0.1", port("PEER"), "/raw", "a=b", "--proxy", "127.0.0.1:" + port("PROXY"))
        self.assertIn(b"quorvane-open", bytes.fromhex(done.stdout.decode()))

    def test_takes_user_and_password_to_a_server_that_asks(self):
        words = ("--proxy", "127.0.0.1:" + port("PROXY"), "--user", "anna", "--password", "secret")
        done = run("post", "127.0.0.1", port("PEER"), "/locked", "a=b", *words)
        self.check(done, b"open after 1: a=b", 0, 0)

    def test_takes_the_password_from_a_file_or_standard_input(self):
        words = ("post", "127.0.0.1", port("PEER"), "/locked", "a=b", "-p", "127.0.0.1:" + port("PROXY"), "-u", "anna")
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "password")
            with open(file, "wb") as written:
                written.write(b"secret\r\nanother line\n")
            name = "Z:" + file.replace("/", "\\") if IS_WINDOWS else file
            self.check(run(*words, "--password-file", name), b"open after 1: a=b", 0, 0)
        self.check(run(*words, "--password-file", "-", given=b"secret\n"), b"open after 1: a=b", 0, 0)
        done = run(*words, "--password-file", "none")
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertIn(b"'none' cannot be read", done.stderr)

    def test_tells_failures_apart(self):
        # The library of Wine 8 takes its own time-out for an end of the connection (12030, not 12002).
        time_out = b"the server has ended the connection" if IS_WINDOWS else b"the time is up"
        with socket.create_server(("127.0.0.1", 0)) as silent:
            for words, reason in (
                    (("127.0.0.1", port("NOBODY")), b"the connection is refused, or there is no way to the server"),
                    (("no-such-host.invalid", "80"), b"the name of the server or the proxy is not known"),
                    (("127.0.0.1", str(silent.getsockname()[1]), "-t", "1"), time_out),
                    (("http://127.0.0.1", port("NGINX")), b"SERVER is a host's name, without http://"),
                    (("https://127.0.0.1", port("NGINX")), b"SERVER is a host's name, without https://")):
                with self.subTest(reason):
                    done = run("post", *words[:2], "/", "a=b", *words[2:])
                    self.check(done, b"Error : Unable to connect to the Internet", 1, 1)
                    self.assertEqual(done.stderr.splitlines()[0].rstrip(), b"quorvane: no answer: " + reason)
        done = run("post", "127.0.0.1", port("NGINX"), "/size-0", "a=b")
        self.assertIn(b"quorvane: no answer: the answer is empty", done.stderr)

    def test_tells_a_failure(self):
        text = b"Error : Unable to connect to the Internet"
        self.check(run("post", "127.0.0.1", port("NOBODY"), "/", "a=b"), text, 1, 1)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

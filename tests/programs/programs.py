"""Runs the built programs from outside, as a shell would: the native ones as they are, the Windows ones in Wine.

The environment variable QUORVANE_BUILD names the folder that holds them (build/native or build/windows).
"""

import os
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["QUORVANE_BUILD"]).resolve()
MODULE = BUILD / "QuorvaneSecurity.ocx"
ON_WINDOWS = (BUILD / "quorvane.exe").exists()
SAMPLE = SOURCES / "programs/form_host/sample.form"


def command(program, *arguments):
    if ON_WINDOWS:
        return [str(SOURCES / "scripts/wine"), str(BUILD / f"{program}.exe"), *map(str, arguments)]
    return [str(BUILD / program), *map(str, arguments)]


def crc(data):
    """The CRC-32 of an independent implementation, signed as the programs show it."""
    value = zlib.crc32(data)
    return value - (1 << 32) if value >> 31 else value


def wine(*arguments, check=True):
    return subprocess.run([str(SOURCES / "scripts/wine"), *map(str, arguments)], check=check,
                          capture_output=True, timeout=200)


def register_module():
    if ON_WINDOWS:
        wine("regsvr32", "/s", MODULE)


def unregister_module():
    if ON_WINDOWS:
        wine("regsvr32", "/s", "/u", MODULE)


class Outcome:
    def __init__(self, finished):
        self.code = finished.returncode
        self.bytes = finished.stdout
        self.out = finished.stdout.decode("utf-8")
        self.err = finished.stderr.decode("utf-8")
        self.lines = self.out.splitlines()


class ProgramTest(unittest.TestCase):
    """Each test has an empty folder of its own, in which the programs run."""

    def setUp(self):
        # Not under /tmp, which a Wine in a root of its own may not see.
        holder = tempfile.TemporaryDirectory(prefix="program-", dir=BUILD)
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)

    def run_program(self, program, *arguments, stdin=b"", **environment):
        finished = subprocess.run(command(program, *arguments), cwd=self.folder, input=stdin,
                                  capture_output=True, timeout=200, env={**os.environ, **environment})
        return Outcome(finished)

    def write(self, name, data):
        (self.folder / name).write_bytes(data if isinstance(data, bytes) else data.encode("utf-8"))
        return name

    def assert_fails(self, outcome, message):
        """A failure at run time: one line, by name; exit code 1."""
        self.assertEqual(outcome.code, 1, outcome.err)
        self.assertEqual(outcome.err.count("\n"), 1, outcome.err)
        self.assertIn(message, outcome.err)

    def assert_usage_error(self, outcome, message):
        """Wrong usage: a line and a hint at the help, nothing on the output; exit code 2."""
        self.assertEqual(outcome.code, 2, outcome.err)
        self.assertEqual(outcome.bytes, b"")
        first, hint, *rest = outcome.err.split("\n")
        self.assertIn(message, first)
        self.assertRegex(hint, r"^Try '.* --help'\.$")
        self.assertEqual(rest, [""])


if __name__ == "__main__":
    sys.exit("the tests stand in test_*.py")

"""The marks of the files for Linux: what the loader makes read-only, and the tests that the compiler put in."""

import re
import subprocess
import unittest

from programs import BUILD

FILES = ("quorvane", "form_host", "QuorvaneSecurity.ocx")


def readelf(option, name):
    return subprocess.run(["readelf", "--wide", option, str(BUILD / name)], check=True, capture_output=True,
                          text=True).stdout


class Hardening(unittest.TestCase):
    def test_addresses_of_other_libraries_are_read_only(self):
        for name in FILES:
            with self.subTest(name):
                self.assertIn("GNU_RELRO", readelf("--program-headers", name))
                self.assertRegex(readelf("--dynamic", name), r"\(FLAGS_1\).*\bNOW\b")

    def test_an_overrun_buffer_ends_the_process(self):
        for name in FILES:
            with self.subTest(name):
                self.assertIn("__stack_chk_fail@", readelf("--symbols", name))

    def test_copies_into_a_known_room_are_tested(self):
        tested = re.findall(r"__\w+_chk@GLIBC", readelf("--symbols", "QuorvaneSecurity.ocx"))
        self.assertTrue(tested, "the module for Linux calls none of the C library's tested copies")

    def test_the_stack_is_not_executable(self):
        for name in FILES:
            with self.subTest(name):
                self.assertRegex(readelf("--program-headers", name), r"GNU_STACK .* RW +0x")


if __name__ == "__main__":
    unittest.main()

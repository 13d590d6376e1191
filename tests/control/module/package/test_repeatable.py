"""The program that writes the module's resources gives the same bytes at every run, from every folder, and those
are in the module. QUORVANE_MAKE_RESOURCES names the program."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from module_under_test import SOURCES, resource

PROGRAM = os.environ["QUORVANE_MAKE_RESOURCES"]
VERSION = "3.09.0001"
PICTURES = SOURCES / "control/resources"
FILES = ["QuorvaneSecurity.idl", "QuorvaneSecurity.tlb", "control.ico", "control/interface/security_ctrl.h",
         "control/object/security_ctrl_members.h", "identities.rh", "interface_ids.bin", "marshalling.tlb", "source_ids.bin",
         "toolbox.bmp"]


def run(*arguments):
    return subprocess.run([PROGRAM, *arguments], check=False, stderr=subprocess.PIPE, text=True)


def made(folder):
    result = run(VERSION, PICTURES, folder)
    if result.returncode:
        raise RuntimeError(result.stderr)
    return {str(path.relative_to(folder)): path.read_bytes() for path in Path(folder).rglob("*") if path.is_file()}


class MakeResources(unittest.TestCase):
    def test_gives_the_same_bytes_twice(self):
        with tempfile.TemporaryDirectory() as one, tempfile.TemporaryDirectory() as other:
            files = made(one)
            self.assertEqual(sorted(files), FILES)
            self.assertEqual(made(other), files)

    def test_gives_what_the_module_carries(self):
        with tempfile.TemporaryDirectory() as folder:
            files = made(folder)
        self.assertEqual(files["QuorvaneSecurity.tlb"], resource("TYPELIB", 1))
        self.assertEqual(files["marshalling.tlb"], resource("TYPELIB", 2))
        self.assertEqual(files["interface_ids.bin"], resource("_IID_SECURITYCTRL", 1))
        self.assertEqual(files["source_ids.bin"], resource("_SRCIID_SECURITYCTRL", 1))

    def test_says_what_is_missing_and_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            for arguments, reason in (((VERSION, folder, folder), "cannot read"),
                                      ((VERSION, PICTURES, folder + "/none"), "cannot write"),
                                      (("3.9.1", PICTURES, folder), "is not of the form"),
                                      (("3.09.00012", PICTURES, folder), "is not of the form")):
                result = run(*arguments)
                self.assertEqual(result.returncode, 1)
                self.assertIn(reason, result.stderr)
        self.assertEqual((run().returncode, run().stderr), (2, "usage: make_resources VERSION IMAGES OUTPUT\n"))

    def test_sees_that_a_file_could_not_be_written_whole(self):
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "interface_ids.bin").symlink_to("/dev/full")  # told when the file is closed
            result = run(VERSION, PICTURES, folder)
        self.assertEqual((result.returncode, result.stderr), (1, "make_resources: cannot write interface_ids.bin\n"))


if __name__ == "__main__":
    unittest.main()

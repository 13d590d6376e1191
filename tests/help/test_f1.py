"""F1 in the form host's window opens the help file that the type library names, in the system's viewer. Another program
presses the key, as a keyboard does."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import help_file
from help_file import TREE
from test_check_install import MODULE, must, wine

FORM = TREE / "programs/form_host/sample.form"
PRESS = next(iter((MODULE.parent / "tests").rglob("press_f1.exe")), None)
DRIVE = next(iter((MODULE.parent / "tests").rglob("drive_window.exe")), None)
F1_KEY, ALT_E = "112", "18 69"


class F1(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(dir=TREE / "build")
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name) / "Mit Hilfe"
        self.folder.mkdir()
        self.module = Path(shutil.copy(MODULE, self.folder))
        must(wine("regsvr32", "/s", self.module))
        self.addCleanup(lambda: must(wine("regsvr32", "/s", "/u", self.module)))

    def press(self):
        """What press_f1 tells; the form stays until it has."""
        # What the second program starts must not hold the first one's input open.
        road = 'exec 3> >(exec "$1" "$2" --wait "$3" >"$5"); "$1" "$4" 3>&-; code=$?; exec 3>&-; wait "$!"; exit $code'
        done = subprocess.run(
            [str(TREE / "scripts/with-display"), "bash", "-c", road, "-", str(TREE / "scripts/wine"),
             str(MODULE.parent / "form_host.exe"), str(FORM), str(PRESS), str(self.folder / "form_host.out")],
            capture_output=True, timeout=200, check=False)
        lines = (self.folder / "form_host.out").read_text(encoding="utf-8").splitlines()
        self.assertTrue(lines and lines[-1].startswith("GetCRCValue="), done.stderr)
        return done.returncode, done.stdout.decode().replace("\r\n", "\n")

    def test_opens_the_help_file_beside_the_module(self):
        shutil.copy(help_file.built(), self.folder)
        self.assertEqual(self.press(), (0, "viewer QuorvaneSecurity\n"))

    def test_the_window_for_people_opens_the_page_of_the_setting(self):
        shutil.copy(help_file.built(), self.folder)
        orders = self.folder / "orders"
        orders.write_text(f"find\nkeys {ALT_E}\nsleep 500\nfocus\nkeys {F1_KEY}\nviewer\nclose\n")
        road = '"$1" "$2" --interactive --log "$5" "$3" & "$1" "$4" <"$6"; code=$?; wait; exit $code'
        log = self.folder / "calls.log"
        done = subprocess.run(
            [str(TREE / "scripts/with-display"), "bash", "-c", road, "-", str(TREE / "scripts/wine"),
             str(MODULE.parent / "form_host.exe"), str(FORM), str(DRIVE), str(log), str(orders)],
            capture_output=True, timeout=200, check=False)
        self.assertEqual(done.stdout.decode().split("\r\n" if b"\r" in done.stdout else "\n"),
                         ["Form host - sample.form", "ok", "ok", "203", "ok", "QuorvaneSecurity", "ok", ""], done.stderr)
        told = log.read_text(encoding="utf-8").splitlines()
        self.assertIn("-- help context 600", told)
        self.assertFalse([line for line in told if line.startswith("-- error")])

    def test_says_which_file_is_missing(self):
        code, told = self.press()
        self.assertEqual(code, 0)
        self.assertTrue(told.startswith("message File not found\n"), told)
        self.assertTrue(told.rstrip().endswith("Mit Hilfe\\SecurityOCX.chm"), told)


if __name__ == "__main__":
    unittest.main()

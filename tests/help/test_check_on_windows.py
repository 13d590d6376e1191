"""check-on-windows.cmd, which the public forge runs on real Windows, as far as Wine can tell: it counts what passes and
what fails, and leaves nothing registered. The forge's definition names files that exist."""

import re
import shutil
import tempfile
import unittest
from pathlib import Path

from test_check_install import MODULE, TREE, wine

DEFINITION = TREE / ".github/workflows/checks.yml"


class CheckOnWindows(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory(dir=TREE / "build")
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name)
        for source in (MODULE, TREE / "packaging/check-install/check-install.cmd",
                       TREE / "packaging/check-install/check-install.vbs", TREE / "examples/vbscript/client.vbs"):
            shutil.copy(source, self.folder)
        (self.folder / "SecurityOCX.chm").write_bytes(b"looked for, not into")
        (self.folder / "tests").mkdir()

    def run_it(self):
        done = wine("cmd", "/c", r"scripts\windows\check-on-windows.cmd", self.folder.relative_to(TREE), folder=TREE)
        self.output = done.stdout.decode("utf-8", "replace").replace("\r\n", "\n")
        return done.returncode, self.output.partition("== summary\n")[2]

    def test_passes_where_all_is_well(self):
        self.assertEqual(self.run_it(), (0, "passed  regsvr32\npassed  check-install\npassed  client.vbs\n"
                                            "passed  unregistering\n4 passed, 0 failed\n"), self.output)
        self.assertNotEqual(wine("reg", "query", r"HKCR\QuorvaneSecurity.SecurityCtrl").returncode, 0)

    def test_counts_a_test_program_that_fails_and_a_script_that_breaks_off(self):
        # Does not know the option that test programs are called with.
        shutil.copy(MODULE.parent / "quorvane.exe", self.folder / "tests/odd_tests.exe")
        with open(self.folder / "client.vbs", "a", encoding="ascii") as script:
            script.write("\nSub\n")
        code, summary = self.run_it()
        self.assertEqual(code, 1, self.output)
        self.assertIn("FAILED  client.vbs  exit code 1\n", summary)
        self.assertIn("FAILED  odd_tests  exit code 2\n", summary)
        self.assertIn("3 passed, 2 failed\n", summary)

    def test_wants_a_folder_with_the_module(self):
        (self.folder / MODULE.name).unlink()
        code, _ = self.run_it()
        self.assertEqual(code, 2)
        self.assertIn("usage: check-on-windows.cmd FOLDER", self.output)


class Definition(unittest.TestCase):
    def test_names_files_of_the_repository(self):
        text = DEFINITION.read_text(encoding="utf-8")
        for name in ("scripts/windows/collect", "./test"):
            self.assertIn(name, text)
            self.assertTrue((TREE / name).is_file(), name)
        self.assertIn("check-on-windows.cmd", text)
        collect = (TREE / "scripts/windows/collect").read_text(encoding="utf-8")
        for name in re.findall(r"(?:packaging|examples|scripts)/[\w/.-]+\.(?:cmd|vbs)", collect):
            self.assertTrue((TREE / name).is_file(), name)


if __name__ == "__main__":
    unittest.main()

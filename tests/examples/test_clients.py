"""The clients that a user copies, against the registered module: the scripts as they stand, the C++ ones built by
their own build lines."""

import subprocess
import tempfile
import unittest
from pathlib import Path

from programs import BUILD, MODULE, SOURCES, Outcome, crc, register_module, unregister_module, wine


class RegisteredModule(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        register_module()
        cls.addClassCleanup(unregister_module)


class Scripts(RegisteredModule):
    """The script host tells of a failed script by its missing last line only."""

    def client(self, script):
        outcome = Outcome(wine("cscript", "//nologo", SOURCES / script, check=False))
        self.assertEqual(outcome.lines[-1:], ["done"], outcome.out + outcome.err)
        return outcome.lines

    def check(self, lines):
        for line in ("ServerAddress=reports.example.com", "ServerPort=8080", "UseProxy=-1", "UserName=clerk",
                     "Password=******** (16 characters)"):
            self.assertIn(line, lines)
        self.assertEqual(lines.count("ServerPort=8080"), 2)
        self.assertEqual(lines[-2], f"GetCRCValue={crc(MODULE.read_bytes())}")

    def test_the_vbscript_client_runs_to_its_end(self):
        lines = self.client("examples/vbscript/client.vbs")
        self.check(lines)
        self.assertIn("ServerPort=70000 gives error 6", lines)

    def test_the_jscript_client_runs_to_its_end(self):
        lines = self.client("examples/jscript/client.js")
        self.check(lines)
        self.assertIn("ServerPort=70000 is refused", lines)


class CppClients(RegisteredModule):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # Not under /tmp, which a Wine in a root of its own may not see.
        holder = tempfile.TemporaryDirectory(prefix="clients-", dir=BUILD)
        cls.addClassCleanup(holder.cleanup)
        cls.folder = Path(holder.name)
        subprocess.run([SOURCES / "examples/cpp/build", cls.folder], check=True, timeout=200)

    def run_client(self, client):
        outcome = Outcome(wine(self.folder / f"{client}.exe", check=False))
        self.assertEqual(outcome.code, 0, outcome.out + outcome.err)
        self.assertEqual(outcome.lines[-1], f"GetCRCValue={crc(MODULE.read_bytes())}")
        return outcome.lines

    def test_late_bound(self):
        self.assertEqual(self.run_client("late_bound")[0], "ServerPort=8080")

    def test_early_bound(self):
        self.assertEqual(self.run_client("early_bound")[0], "ServerAddress=reports.example.com")

    def test_early_bound_stands_on_the_header_that_the_build_writes(self):
        made = BUILD / "control/module/resources/control/interface/security_ctrl.h"
        self.assertEqual((SOURCES / "examples/cpp/security_ctrl.h").read_bytes(), made.read_bytes(),
                         f"copy it anew: cp {made} examples/cpp/")


class CppClientsWithoutTheModule(unittest.TestCase):
    def test_say_so(self):
        unregister_module()
        with tempfile.TemporaryDirectory(prefix="clients-", dir=BUILD) as folder:
            subprocess.run([SOURCES / "examples/cpp/build", folder], check=True, timeout=200)
            for client in ("late_bound", "early_bound"):
                outcome = Outcome(wine(Path(folder) / f"{client}.exe", check=False))
                self.assertEqual((outcome.code, outcome.lines[0][:15]), (1, "no control: 0x8"))


if __name__ == "__main__":
    unittest.main()

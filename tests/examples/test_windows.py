"""What only Windows shows: the form in a window, the registration, the script clients."""

import subprocess
import unittest

from programs import (MODULE, SAMPLE, SOURCES, Outcome, ProgramTest, command, crc, register_module,
                      unregister_module, wine)


class Form(ProgramTest):
    def test_without_the_registered_module_it_says_how_to_register(self):
        unregister_module()
        self.assert_fails(self.run_program("form_host", SAMPLE), "form_host: error -2147221164: The control is not "
                          "registered; do so by regsvr32 QuorvaneSecurity.ocx (CoCreateInstance)")

    def test_shows_the_control_in_a_window_where_there_is_a_display(self):
        register_module()
        self.addCleanup(unregister_module)
        with_display = [str(SOURCES / "scripts/with-display"), *command("form_host", SAMPLE)]
        outcome = Outcome(subprocess.run(with_display, capture_output=True, timeout=200))
        self.assertEqual(outcome.code, 0, outcome.err)
        self.assertIn("on screen: a window of 320 x 200 pixels, in it the control's, 28 x 28 at 24, 24",
                      outcome.lines)

    def test_says_so_where_there_is_none(self):
        register_module()
        self.addCleanup(unregister_module)
        outcome = self.run_program("form_host", SAMPLE, DISPLAY="")
        self.assertEqual(outcome.code, 0, outcome.err)
        self.assertIn("on screen: nothing, as no window can be made", outcome.out)


class Scripts(unittest.TestCase):
    """The script host tells of a failed script by its missing last line only."""

    @classmethod
    def setUpClass(cls):
        register_module()
        cls.addClassCleanup(unregister_module)

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

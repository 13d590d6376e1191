"""check-install.cmd as a user starts it, in Wine: each thing that can be wrong is named, with what to do about it.

QUORVANE_WINEPREFIX names the prefix; the module is registered in it and removed again."""

import os
import shutil
import subprocess
import tempfile
import unittest
import zlib
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
MODULE = Path(os.environ.get("QUORVANE_MODULE", TREE / "build/windows/QuorvaneSecurity.ocx"))
CLASS = "{D87A57E7-81C3-11D5-97D8-0050BA8CAAD8}"
LIBRARY = r"HKCR\TypeLib\{D87A57E5-81C3-11D5-97D8-0050BA8CAAD8}"
DICTIONARY = "{EE09B103-97E0-11CF-978F-00A02463E06F}"  # Scripting.Dictionary: a class that is not ours
ALL_IS_WELL, SOMETHING_IS_WRONG, WRONG_ARGUMENTS, BROKE_OFF = 0, 1, 2, 3


def wine(*words, folder=None):
    return subprocess.run([str(TREE / "scripts/wine"), *map(str, words)], stdin=subprocess.DEVNULL, capture_output=True,
                          cwd=folder, check=False)


def must(done):
    if done.returncode:
        raise RuntimeError(done.stdout + done.stderr)


def published():
    return zlib.crc32(MODULE.read_bytes())


def signed(number):
    return number - 2**32 if number >> 31 else number


class CheckInstall(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory(dir=TREE / "build")
        cls.addClassCleanup(scratch.cleanup)
        cls.folder = Path(scratch.name) / "Unsere Programme"
        shutil.copytree(TREE / "packaging/check-install", cls.folder)
        cls.module = cls.folder / "QuorvaneSecurity.ocx"
        shutil.copy(MODULE, cls.module)
        cls.help = cls.folder / "SecurityOCX.chm"
        cls.help.write_bytes(b"looked for, not into")
        wine("reg", "delete", LIBRARY, "/f")  # of an earlier registration, which may not be there
        must(wine("regsvr32", "/s", cls.module))
        cls.addClassCleanup(lambda: must(wine("regsvr32", "/s", "/u", cls.module)))

    def check(self, *words, before=""):
        command = "&& ".join(filter(None, [before, " ".join(["check-install.cmd", *words])]))
        done = wine("cmd", "/c", command, folder=self.folder)
        self.output = done.stdout.decode("utf-8", "replace").replace("\r\n", "\n")
        self.rows = {line[:18].rstrip(): (line[18:26].rstrip(), line[26:]) for line in self.output.splitlines()
                     if line[18:26].rstrip() in ("ok", "WRONG", "--")}
        return done.returncode

    def wrong_rows(self):
        return [what for what, (result, _) in self.rows.items() if result == "WRONG"]

    def test_all_is_well(self):
        self.assertEqual(self.check(str(signed(published()))), ALL_IS_WELL, self.output)
        self.assertEqual([(what, result) for what, (result, _) in self.rows.items()],
                         [(what, "ok") for what in ("Script host", "Registration", "Type library", "Creation",
                                                    "Seven properties", "CRC", "Help file")])
        self.assertTrue(self.rows["Registration"][1].endswith("\\Unsere Programme\\QuorvaneSecurity.ocx"))
        self.assertIn("All is well.", self.output)

    def test_takes_the_number_in_every_form(self):
        for form in (str(published()), f"0x{published():08X}"):
            self.assertEqual(self.check(form), ALL_IS_WELL, self.output)
            self.assertEqual(self.rows["CRC"], ("ok", f"{signed(published())}, as published"))

    def test_takes_the_numbers_of_the_list_beside_it(self):
        numbers = self.folder / "published-crc.txt"
        self.addCleanup(numbers.unlink)
        numbers.write_bytes(b"12345  unsigned\r\n\r\n%d\tsigned\r\n" % published())
        self.assertEqual(self.check(), ALL_IS_WELL, self.output)
        self.assertEqual(self.rows["CRC"][0], "ok")
        numbers.write_bytes(b"12345  unsigned\r\n")
        self.assertEqual(self.check(), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.rows["CRC"], ("WRONG", f"{signed(published())}; published: 12345"))

    def test_compares_with_nothing_where_nothing_is_published(self):
        self.assertEqual(self.check(), ALL_IS_WELL, self.output)
        self.assertEqual(self.rows["CRC"][0], "--")

    def test_another_number_is_wrong(self):
        self.assertEqual(self.check(str(signed(published() ^ 1))), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.wrong_rows(), ["CRC"])
        self.assertIn("This is not the published file", self.output)

    def test_refuses_what_is_no_number(self):
        for words in (["12x"], ["0x123456789"], ["4294967296"], ["1", "2"]):
            self.assertEqual(self.check(*words), WRONG_ARGUMENTS, self.output)
            self.assertIn("usage: check-install.cmd [CRC]", self.output)

    def test_tells_the_64_bit_script_host_in_plain_words(self):
        self.assertEqual(self.check(before="set PROCESSOR_ARCHITECTURE=AMD64"), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.rows, {"Script host": ("WRONG", "64 bits (AMD64)")})
        self.assertIn("Start scripts with the\n  32-bit one: C:\\windows\\SysWOW64\\cscript.exe", self.output)

    def test_misses_the_help_file(self):
        self.help.rename(self.folder / "away.chm")
        self.addCleanup(lambda: (self.folder / "away.chm").rename(self.help))
        self.assertEqual(self.check(), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.wrong_rows(), ["Help file"])
        self.assertIn("Copy SecurityOCX.chm into that folder.", self.output)

    def test_misses_the_modules_file(self):
        self.module.rename(self.folder / "away.ocx")
        self.addCleanup(lambda: (self.folder / "away.ocx").rename(self.module))
        self.assertEqual(self.check(), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.wrong_rows(), ["Registration", "Creation"])
        self.assertIn("The module is not where it was registered.", self.output)

    def test_misses_the_registration(self):
        must(wine("regsvr32", "/s", "/u", self.module))
        self.addCleanup(lambda: must(wine("regsvr32", "/s", self.module)))
        self.assertEqual(self.check(), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.wrong_rows(), ["Registration", "Creation"])
        self.assertIn("SysWOW64\\regsvr32 QuorvaneSecurity.ocx", self.output)

    def test_sees_a_help_folder_of_an_earlier_registration(self):
        key = LIBRARY + r"\1bb.10\HELPDIR"
        done = wine("reg", "query", key, "/ve")
        must(done)
        folder = done.stdout.decode().split("REG_SZ")[1].strip()
        must(wine("reg", "add", key, "/ve", "/d", r"C:\nowhere", "/f"))
        self.addCleanup(lambda: must(wine("reg", "add", key, "/ve", "/d", folder, "/f")))
        self.assertEqual(self.check(), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.rows["Help file"], ("WRONG", r"registered in C:\nowhere"))
        self.assertIn("Unregister", self.output)

    def test_sees_a_damaged_module(self):
        whole = self.module.read_bytes()
        self.addCleanup(lambda: self.module.write_bytes(whole))
        self.module.write_bytes(whole.replace(b"ServerFile", b"ServerFilm"))
        self.assertEqual(self.check(str(published())), SOMETHING_IS_WRONG, self.output)
        self.assertEqual(self.wrong_rows(), ["Seven properties", "CRC"])
        self.assertEqual(self.rows["Seven properties"][1], "not kept: ServerFile (error 438)")

    def test_sees_another_class_under_its_name(self):
        key = r"HKCR\QuorvaneSecurity.SecurityCtrl\CLSID"
        must(wine("reg", "add", key, "/ve", "/d", DICTIONARY, "/f"))
        self.addCleanup(lambda: must(wine("reg", "add", key, "/ve", "/d", CLASS, "/f")))
        self.assertEqual(self.check(), SOMETHING_IS_WRONG, self.output)
        self.assertIn("Registration", self.wrong_rows())

    def test_says_when_there_is_no_script_host(self):
        self.assertEqual(self.check(before=r"set SystemRoot=C:\nowhere"), BROKE_OFF, self.output)
        self.assertIn("this Windows has no script host", self.output)

    def test_says_when_the_script_breaks_off(self):
        script = self.folder / "check-install.vbs"
        whole = script.read_bytes()
        self.addCleanup(lambda: script.write_bytes(whole))
        script.write_bytes(whole.replace(b"Sub CheckProperties()", b"Sub CheckProperties("))
        self.assertEqual(self.check(), BROKE_OFF, self.output)

    def test_ends_its_lines_as_windows_does(self):
        for name in ("check-install.cmd", "check-install.vbs"):
            text = (TREE / "packaging/check-install" / name).read_bytes()
            text.decode("ascii")
            self.assertEqual(text.count(b"\n"), text.count(b"\r\n"))


if __name__ == "__main__":
    unittest.main()

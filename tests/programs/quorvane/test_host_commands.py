"""Proves the host services with other programs as witnesses, through `quorvane` as a shell sees it.

On Windows (in Wine) the registry is seen by the system's own reg.exe and the account by whoami.exe; on Linux by
a reader of the store's text and id. Profile files are seen by Python's configparser, adapters by `ip`.
The program to test is the words of the command line.
"""

import configparser
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = sys.argv[1:]
IS_WINDOWS = PROGRAM[-1].endswith(".exe")
KEY = r"Software\QuorvaneWitness"
REG = r"C:\windows\system32\reg.exe"
WHOAMI = r"C:\windows\system32\whoami.exe"


def run(*words):
    return subprocess.run([*PROGRAM, *words], capture_output=True, check=False, timeout=120)


def output(*words):
    done = run(*words)
    if done.returncode != 0:
        raise AssertionError(f"{words}: exit code {done.returncode}: {done.stderr.decode()}")
    return done.stdout.decode()


def witness(*words):
    """What another program says; a Windows one through the same Wine as the program."""
    return subprocess.run([*PROGRAM[:-1], *words] if IS_WINDOWS else words, capture_output=True, check=True,
                          timeout=120).stdout.decode()


def read(name, hive="HKCU"):
    return output("registry", "read", hive, KEY, name).rstrip("\n")


def write(name, *words):
    output("registry", "write", "HKCU", KEY, name, *words)


class Stores(unittest.TestCase):
    """Each test has a folder of its own for profile files and, on Linux, for the stand-ins' stores."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        os.environ["XDG_DATA_HOME"] = str(self.folder / "data")
        os.environ["XDG_CONFIG_HOME"] = str(self.folder / "config")


class BesideReg:
    """For Windows, where reg.exe looks at the same registry."""

    def setUp(self):
        super().setUp()
        self.addCleanup(witness, REG, "delete", rf"HKCU\{KEY}", "/f")

    def add(self, name, kind, data):
        witness(REG, "add", rf"HKCU\{KEY}", "/v", name, "/t", kind, "/d", data, "/f")

    def test_reads_what_reg_adds(self):
        for kind, data, seen in (("REG_SZ", "hello world", 'string "hello world"'),
                                 ("REG_DWORD", "0xffffffff", "integer -1"),
                                 ("REG_DWORD", "12", "integer 12"),
                                 ("REG_BINARY", "01020384", "integer -2080177663"),
                                 ("REG_BINARY", "ff", "integer 255"),
                                 ("REG_BINARY", "010203040506", "integer 67305985"),
                                 ("REG_EXPAND_SZ", "%PATH%", "empty"),
                                 ("REG_MULTI_SZ", r"one\0two", "empty"),
                                 ("REG_NONE", "00", "empty")):
            self.add("v", kind, data)
            self.assertEqual(read("v"), seen, (kind, data))

    def test_reg_sees_what_is_written(self):
        write("text", "hello world")
        write("number", "--type", "dword", "-1")
        write("nothing", "--type", "binary", "abc")
        listing = [line.split(None, 2) for line in witness(REG, "query", rf"HKCU\{KEY}").splitlines() if "REG_" in line]
        self.assertEqual(sorted(listing), [["number", "REG_DWORD", "0xffffffff"], ["text", "REG_SZ", "hello world"]])

    def test_a_write_of_another_type_makes_the_key_alone(self):
        write("nothing", "--type", "3", "abc")
        self.assertNotIn("nothing", witness(REG, "query", rf"HKCU\{KEY}"))


class BesideText:
    """For the stand-in, whose store is a text file."""

    @property
    def store(self):
        return self.folder / "data/quorvane/registry.txt"

    def test_the_store_shows_what_is_written(self):
        write("Text", "hello")
        write("Number", "--type", "dword", "-2")
        write("nothing", "--type", "binary", "abc")
        self.assertEqual(self.store.read_text(encoding="utf-8"),
                         "quorvane registry 1\n[HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\Software]\n"
                         "[HKEY_CURRENT_USER\\Software\\QuorvaneWitness]\n"
                         "Number=4:%FE%FF%FF%FF\nText=1:hello%00\nend\n")

    def test_reads_what_an_editor_changes(self):
        write("v", "x")
        for line, seen in (("1:five5%00", 'string "five5"'), ("1:cut", 'string "cu"'), ("1:", 'string ""'),
                           ("3:%01%02", "integer 513"), ("3:", "integer 0"), ("4:%FF%FF%FF%FF", "integer -1"),
                           ("2:x%00", "empty"), ("7:x%00%00", "empty")):
            text = self.store.read_text(encoding="utf-8")
            self.store.write_text(re.sub("(?m)^v=.*$", "v=" + line, text), encoding="utf-8")
            self.assertEqual(read("v"), seen, line)

    def test_damage_is_no_absence(self):
        write("v", "x")
        text = self.store.read_bytes()
        for damaged in (b"", text[:-5], text.replace(b"1:", b"one:"), b"\0" * len(text)):
            self.store.write_bytes(damaged)
            self.assertEqual(run("registry", "write", "HKCU", KEY, "v", "y").returncode, 1, damaged)
            self.assertEqual(self.store.read_bytes(), damaged)

    def test_writers_at_a_time_lose_nothing(self):
        writers = [subprocess.Popen([*PROGRAM, "registry", "write", "HKCU", KEY, f"n{i}", str(i)]) for i in range(12)]
        self.assertEqual([writer.wait(timeout=60) for writer in writers], [0] * 12)
        self.assertEqual([read(f"n{i}") for i in range(12)], [f'string "{i}"' for i in range(12)])


class RegistryWitnessed(BesideReg if IS_WINDOWS else BesideText, Stores):
    """Either of them."""


class RegistryByItself(Stores):
    def test_shows_the_kind_of_the_result(self):
        self.assertEqual(read("none", hive="HKEY_CURRENT_USER"), "empty")
        write("quoted", 'say "a\\b"')
        self.assertEqual(read("quoted"), r'string "say \"a\\b\""')
        write("quoted", "--", "")
        self.assertEqual(read("quoted"), 'string ""')

    def test_tells_a_failed_write(self):
        done = run("registry", "write", "HKCU", KEY, "n", "--type", "dword", "twelve")
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertIn(b"nothing was written", done.stderr)


class KeptRegistry(Stores):
    """What the tests of list, delete, export and import share: the registry without the 8-bit calls."""

    ALL_KINDS = (
        "Windows Registry Editor Version 5.00\n\n"
        "[HKEY_CURRENT_USER\\Software\\QuorvaneWitness]\n"
        '@="the default \u20ac"\n'
        '"a \\"b\\" \\\\c"="x\\\\y \\"z\\""\n'
        '"bytes"=hex:00,ff,10\n'
        '"expand"=hex(2):25,00,50,00,25,00,00,00\n'
        '"list"=hex(7):61,00,00,00,62,00,00,00,00,00\n'
        '"number"=dword:fffffffe\n'
        "\n[HKEY_CURRENT_USER\\Software\\QuorvaneWitness\\Below]\n"
        '"none"=hex(0):\n')

    def setUp(self):
        super().setUp()
        run("registry", "delete", "HKCU", KEY, "--tree")  # what other tests have left
        self.addCleanup(run, "registry", "delete", "HKCU", KEY, "--tree")

    def own_name(self, file):
        return "Z:" + str(file).replace("/", "\\") if IS_WINDOWS else str(file)

    def import_bytes(self, data):
        (self.folder / "in.reg").write_bytes(data)
        return run("registry", "import", self.own_name(self.folder / "in.reg"))

    def exported(self):
        return output("registry", "export", "-", "HKCU", KEY)


class RegistryAsItIsKept(KeptRegistry):
    def test_what_is_imported_is_exported(self):
        for data in (self.ALL_KINDS.encode(), b"\xef\xbb\xbf" + self.ALL_KINDS.replace("\n", "\r\n").encode(),
                     b"\xff\xfe" + self.ALL_KINDS.replace("\n", "\r\n").encode("utf-16-le")):
            done = self.import_bytes(data)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
            self.assertEqual(sorted(self.exported().splitlines()), sorted(self.ALL_KINDS.splitlines()))
            output("registry", "delete", "HKCU", KEY, "--tree")

    def test_a_file_is_written_as_windows_writes_it(self):
        self.import_bytes(self.ALL_KINDS.encode())
        file = self.folder / "out.reg"
        output("registry", "export", self.own_name(file), "HKEY_CURRENT_USER", KEY)
        data = file.read_bytes()
        self.assertEqual(data[:2], b"\xff\xfe")
        self.assertEqual(data[2:].decode("utf-16-le"), self.exported().replace("\n", "\r\n"))

    def test_the_calls_see_what_is_imported(self):
        self.import_bytes(self.ALL_KINDS.encode())
        self.assertEqual([read(name) for name in ("", "number", "bytes", "expand")],
                         ['string "the default \u20ac"', "integer -2", "integer 1113856", "empty"])

    def test_an_old_file_and_long_lines_are_read(self):
        old = (b'REGEDIT4\r\n\r\n; a comment\r\n[HKEY_CURRENT_USER\\' + KEY.encode() + b']\r\n"e"=hex(2):25,\\\r\n'
               b'  80,00\r\n"t"="\x80"\r\n')
        self.assertEqual(self.import_bytes(old).returncode, 0)
        self.assertIn('"e"=hex(2):25,00,ac,20,00,00\n', self.exported())
        self.assertEqual(read("t"), 'string "\u20ac"')

    def test_a_file_takes_values_and_keys_away(self):
        self.import_bytes(self.ALL_KINDS.encode())
        head = "Windows Registry Editor Version 5.00\n"
        self.import_bytes(f'{head}[HKCU\\{KEY}]\n"number"=-\n@=-\n[-HKCU\\{KEY}\\Below]\n'.encode())
        listing = output("registry", "list", "HKCU", KEY)
        for gone in ('"number"', '  "" ', "Below"):
            self.assertNotIn(gone, listing)
        self.assertIn('  "bytes" type 3 00 FF 10\n', listing)

    def test_a_wrong_file_changes_nothing_and_names_the_line(self):
        head = f"Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\{KEY}]\n\"good\"=\"x\"\n"
        for wrong in ('"a"=hex:0z', '"a"=dword:100000000', '"a"', '"a=1', '"a"="x" y', "[HKXX\\a]", "[HKCU\\a",
                      '"a"=octal:7', '"a"=hex(g):00', "[-HKEY_CURRENT_USER]"):
            with self.subTest(wrong):
                done = self.import_bytes((head + wrong + "\n").encode())
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertIn(b"line 4: ", done.stderr)
        self.assertEqual(run("registry", "list", "HKCU", KEY).returncode, 1)
        for data in (b"", b"[HKCU\\x]\n", b"\x00\x01"):
            done = self.import_bytes(data)
            self.assertEqual(done.returncode, 1)
            self.assertIn(b"line 1: this is no .reg file", done.stderr)

    def test_list_shows_keys_and_values(self):
        self.import_bytes(self.ALL_KINDS.encode())
        lines = output("registry", "list", "hkcu", KEY.upper()).splitlines()
        self.assertEqual([line.lower() for line in lines if not line.startswith(" ")],
                         ["hkey_current_user\\software\\quorvanewitness",
                          "hkey_current_user\\software\\quorvanewitness\\below"])
        self.assertIn('  "number" integer -2', lines)
        keys = json.loads(output("registry", "list", "HKCU", KEY, "--json"))
        self.assertEqual({value["name"]: (value["type"], value["value"]) for value in keys[0]["values"]},
                         {"": (1, "the default \u20ac"), 'a "b" \\c': (1, 'x\\y "z"'), "bytes": (3, "00 FF 10"),
                          "expand": (2, "25 00 50 00 25 00 00 00"), "list": (7, "61 00 00 00 62 00 00 00 00 00"),
                          "number": (4, -2)})
        self.assertEqual(keys[1]["values"], [{"name": "none", "type": 0, "value": ""}])

    def test_delete_takes_a_value_or_a_key_and_says_what_is_not_there(self):
        write("a", "x")
        write("b", "y")
        output("registry", "delete", "HKCU", KEY, "A")
        self.assertEqual([read("a"), read("b")], ["empty", 'string "y"'])
        for words, reason in (((KEY, "a"), b"there is no such value: a"), ((KEY + "x", "a"), b"there is no such key"),
                              ((KEY + "x", "--tree"), b"there is no such key")):
            done = run("registry", "delete", "HKCU", *words)
            self.assertEqual((done.returncode, done.stdout), (1, b""))
            self.assertIn(reason, done.stderr)
        output("registry", "delete", "HKCU", KEY, "--tree")
        self.assertEqual(run("registry", "list", "HKCU", KEY).returncode, 1)

    def test_values_read_as_json(self):
        self.import_bytes(self.ALL_KINDS.encode())
        for name, shown in (("number", {"kind": "integer", "value": -2}), ("nothing", {"kind": "empty", "value": None}),
                            ('a "b" \\c', {"kind": "string", "value": 'x\\y "z"'})):
            self.assertEqual(json.loads(output("registry", "read", "HKCU", KEY, name, "--json")), shown)


if IS_WINDOWS:
    class RegistryFilesBesideReg(KeptRegistry):
        """For Windows, whose reg.exe reads and writes the same files."""

        def test_reg_reads_our_file_and_we_read_its(self):
            self.import_bytes(self.ALL_KINDS.encode())
            ours, theirs = self.folder / "ours.reg", self.folder / "theirs.reg"
            output("registry", "export", self.own_name(ours), "HKCU", KEY)
            output("registry", "delete", "HKCU", KEY, "--tree")
            witness(REG, "import", self.own_name(ours))
            again = self.exported()
            self.assertEqual(sorted(again.splitlines()), sorted(self.ALL_KINDS.splitlines()))
            witness(REG, "export", rf"HKCU\{KEY}", self.own_name(theirs), "/y")
            output("registry", "delete", "HKCU", KEY, "--tree")
            output("registry", "import", self.own_name(theirs))
            self.assertEqual(self.exported(), again)


class Profiles(Stores):
    def setUp(self):
        super().setUp()
        self.file = self.folder / "a.ini"

    def name(self):
        return "Z:" + str(self.file).replace("/", "\\") if IS_WINDOWS else str(self.file)

    def write(self, *words):
        output("profile", "write", *words, "--file", self.name())

    def read(self, section, key):
        return output("profile", "read", section, key, "--file", self.name()).rstrip("\n")

    def test_another_reader_sees_what_is_written(self):
        self.write("First", "key", "value")
        self.write("Second", "key", "1 = 2")
        self.write("First", "other", "x")
        seen = configparser.ConfigParser(interpolation=None)
        seen.read(self.file)
        self.assertEqual({name: dict(seen[name]) for name in seen.sections()},
                         {"First": {"key": "value", "other": "x"}, "Second": {"key": "1 = 2"}})

    def test_reads_what_another_writer_wrote(self):
        written = configparser.ConfigParser(interpolation=None)
        written["Some Section"] = {"key": "value", "long": "v" * 300, "quoted": '" x "'}
        with open(self.file, "w", encoding="ascii") as file:
            written.write(file)
        self.assertEqual(self.read("some section", "KEY"), "value")
        self.assertEqual(self.read("Some Section", "long"), "v" * 255)
        self.assertEqual(self.read("Some Section", "quoted"), " x ")
        self.assertEqual(self.read("Some Section", "none"), "")

    def test_leaves_other_lines_alone(self):
        before = "; mine\n[a]\nk=1\n; also mine\n[b]\nk=2\n"
        self.file.write_text(before, encoding="ascii")
        self.write("b", "k", "3")
        after = self.file.read_text(encoding="ascii")
        self.assertEqual(after, before.replace("k=2", "k=3"))

    def test_takes_a_key_away(self):
        self.file.write_text("[a]\nk=1\nl=2\n", encoding="ascii")
        self.write("a", "k")
        self.assertEqual(self.file.read_text(encoding="ascii").split(), ["[a]", "l=2"])

    def test_keeps_the_systems_own_profile(self):
        self.assertEqual(output("profile", "write", "QuorvaneWitness", "key", "value"), "")
        self.assertEqual(output("profile", "read", "quorvanewitness", "KEY"), "value\n")
        if not IS_WINDOWS:
            self.assertEqual((self.folder / "config/quorvane/profile.ini").read_text(encoding="ascii"),
                             "[QuorvaneWitness]\nkey=value\n")

    def test_tells_a_failed_write(self):
        done = run("profile", "write", "a", "k", "v", "--file", self.name() + "/none/x.ini")
        self.assertEqual((done.returncode, done.stdout), (1, b""))


class Machine(unittest.TestCase):
    def test_adapters_are_those_of_ip_in_reverse(self):
        links = json.loads(subprocess.run(["ip", "-j", "link"], capture_output=True, check=True).stdout)
        addresses = [link["address"].replace(":", "").upper() for link in links if "LOOPBACK" not in link["flags"]]
        found = output("adapters").split()
        if IS_WINDOWS:  # Wine lists only adapters that it can bring up as such
            self.assertTrue(found or not addresses)
            self.assertEqual(found, [address for address in reversed(addresses) if address in found])
        else:
            self.assertEqual(found, [address[:12] for address in reversed(addresses)])

    def test_the_account_is_the_one_that_others_name(self):
        name = output("user").rstrip("\n")
        sid = output("sid").rstrip("\n")
        if IS_WINDOWS:
            self.assertEqual(name.lower(), witness(WHOAMI).split("\\")[-1].strip().lower())
            self.assertRegex(sid, r"^S15\d+$")
        else:
            self.assertEqual(name, witness("id", "-un").strip())
            self.assertEqual(sid, "S1221" + witness("id", "-u").strip())

    def test_the_platform_and_its_directory(self):
        self.assertEqual(output("platform"), "Windows NT\n")
        directory = output("system-directory").rstrip("\n")
        if IS_WINDOWS:
            self.assertEqual(directory.lower(), r"c:\windows\system32")
        else:
            maps = Path("/proc/self/maps").read_text(encoding="ascii")
            libraries = {Path(line.split()[-1]).resolve().parent for line in maps.splitlines() if "/libc.so" in line}
            self.assertEqual({Path(directory)}, libraries)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

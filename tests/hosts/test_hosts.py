"""The module in hosts that others wrote. `build` beside this file has built them into build/hosts; QUORVANE_HOSTS names the
folder of scripts/fetch-hosts, QUORVANE_WINE_SUITE the generation of Wine."""

import os
import subprocess
import tempfile
import unittest
import zlib
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
MODULE = TREE / "build/windows/QuorvaneSecurity.ocx"
BUILT = TREE / "build/hosts"
NODE = Path(os.environ["QUORVANE_HOSTS"]) / "node/node_modules"
# The module counts nothing of its own as used, and the system unloads it.
GONE = ["unused", "unloaded"]


def wine(*words, **options):
    return subprocess.run([str(TREE / "scripts/wine"), *map(str, words)], check=True, capture_output=True, timeout=300,
                          **options).stdout.decode()


def seen_by_wine(path):
    return wine("--path", path).strip()


def crc():
    value = zlib.crc32(MODULE.read_bytes())
    return value - (1 << 32) if value >> 31 else value


class Hosts(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        wine("regsvr32", "/s", MODULE)
        cls.addClassCleanup(wine, "--end")
        cls.addClassCleanup(wine, "regsvr32", "/s", "/u", MODULE)

    def test_atl_loads_activates_resizes_and_listens(self):
        self.assertEqual(
            ["the same control", "ServerAddress=saved.example.com", "a window of 28 x 28 in one of 60 x 40",
             "a window of 28 x 28 in one of 200 x 100", "told of a change", "ServerAddress=changed.again.example.com",
             "references on the sink: 0", *GONE],
            wine(BUILT / "atl.exe").splitlines())

    def test_the_helpers_of_ole32_embed_save_run_draw_and_marshal(self):
        self.assertEqual(
            ["ServerAddress=in.a.file.example.com", "ServerAddress=in.a.stream.example.com",
             "ServerAddress=in.a.stream.example.com", "run, contained, locked and unlocked", "drawn",
             "from another apartment: ServerAddress=apart.example.com", *GONE],
            wine(BUILT / "ole.exe").splitlines())

    def test_a_pascal_client_binds_early_late_and_by_the_dispinterface(self):
        self.assertEqual(
            ["early: ServerAddress=early.example.com ServerPort=8080 UseProxy=TRUE", f"GetCRCValue={crc()}",
             "late: ServerAddress=late.example.com ServerPort=8080", "late: a port of 70000 gives 8002000A",
             "dispinterface: ServerAddress=dispinterface.example.com", f"GetCRCValue={crc()}", *GONE],
            wine(BUILT / "client.exe").splitlines())

    def test_the_unit_that_the_importer_made_declares_every_property(self):
        [unit] = BUILT.glob("*_TLB.pas")
        for name, kind in {"ServerAddress": "WideString", "ServerPort": "Smallint", "ServerFile": "WideString",
                           "UseProxy": "WordBool", "ProxyServer": "WideString", "UserName": "WideString",
                           "Password": "WideString"}.items():
            self.assertIn(f"property {name}:{kind} read Get_{name} write Set_{name};", unit.read_text())
        self.assertIn("procedure Set_ServerPort(const int_New_ServerPort:Smallint)", unit.read_text())

    def test_node_calls_the_virtual_table(self):
        with tempfile.TemporaryDirectory(dir=BUILT) as folder:
            told, output = Path(folder) / "told", Path(folder) / "output"
            # Node looks at the version of Windows, which it does not like in Wine 8, and cannot start on pipes of Wine.
            words = [NODE / "node-win-x86/bin/node.exe", TREE / "tests/hosts/client.js", told, NODE / "koffi"]
            call = " ".join(f'"{seen_by_wine(word)}"' for word in words)
            (Path(folder) / "node_client.cmd").write_text(f"@set NODE_SKIP_PLATFORM_CHECK=1\n@{call}\n")
            with output.open("wb") as file:
                done = subprocess.run([TREE / "scripts/wine", "cmd", "/c", "node_client.cmd"], cwd=folder,
                                      check=False, stdin=subprocess.DEVNULL, stdout=file, stderr=file, timeout=300)
            self.assertEqual(0, done.returncode, output.read_text())
            self.assertEqual(["ServerAddress=node.example.com", "ServerPort=8080", f"GetCRCValue={crc()}",
                              "references left: 0", *GONE], told.read_text().splitlines())


class Fetching(unittest.TestCase):
    def test_what_cannot_be_fetched_is_named_and_leaves_nothing(self):
        with tempfile.TemporaryDirectory() as folder:
            npm = Path(folder) / "npm"
            npm.write_text('#!/bin/sh\nmkdir -p "$3/node_modules"\necho registry not reachable >&2\nexit 1\n')
            npm.chmod(0o755)
            done = subprocess.run([TREE / "scripts/fetch-hosts"], capture_output=True, check=False, timeout=60, env={
                **os.environ, "XDG_CACHE_HOME": folder + "/cache", "PATH": f"{folder}:{os.environ['PATH']}"})
            self.assertEqual(1, done.returncode)
            self.assertIn(b"could not make node", done.stderr)
            self.assertIn(b"registry not reachable", done.stderr)
            self.assertEqual(["lock", "node.log"],
                             sorted(file.name for file in Path(folder, "cache/quorvane").glob("hosts-*/*")))


if __name__ == "__main__":
    unittest.main()

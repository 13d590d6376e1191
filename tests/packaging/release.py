"""What the tests of the release share: the release folder that QUORVANE_RELEASE names, and a Windows to try it in."""

import os
import re
import subprocess
import zipfile
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
FOLDER = Path(os.environ.get("QUORVANE_RELEASE", TREE / "build/release"))
if not FOLDER.is_dir():
    raise SystemExit(f"there is no release in {FOLDER}: make it by ./release")
VERSION = re.search(r"project\(QuorvaneSecurity VERSION ([0-9.]+)", (TREE / "CMakeLists.txt").read_text()).group(1)
MODULE = FOLDER / "QuorvaneSecurity.ocx"
INSTALLER = FOLDER / f"QuorvaneSecurity-{VERSION}.msi"
PORTABLE = FOLDER / f"QuorvaneSecurity-{VERSION}-portable.zip"
SOURCES = FOLDER / f"quorvane-{VERSION}.tar.gz"


def run(*command, **others):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, errors="replace",
                          timeout=300, **others)


def must(*command, **others):
    done = run(*command, **others)
    if done.returncode != 0:
        raise AssertionError(f"{command}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def published_crc(folder=FOLDER):
    return [int(line.split("\t")[0]) for line in (folder / "published-crc.txt").read_text().splitlines()]


def unzip(archive, folder):
    with zipfile.ZipFile(archive) as opened:
        opened.extractall(folder)
    (top,) = folder.iterdir()
    return top


def make_registration(*words):
    return must(TREE / "build/native/make_registration", *words)


class Windows:
    """A fresh Wine prefix of its own."""

    def __init__(self, folder):
        self.folder = folder
        self.environment = os.environ | {"QUORVANE_WINEPREFIX": str(folder)}
        self.drive = folder / "drive_c"

    def run(self, *command, **others):
        done = run(TREE / "scripts/wine", *command, env=self.environment, **others)
        done.stdout = done.stdout.replace("\r\n", "\n")
        return done

    def must(self, *command, **others):
        done = self.run(*command, **others)
        if done.returncode != 0:
            raise AssertionError(f"{command}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
        return done.stdout

    def start(self, *command):
        """A program that goes on beside the test, which ends it."""
        return subprocess.Popen([str(word) for word in (TREE / "scripts/wine", *command)], env=self.environment,
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)

    def end(self):
        run(TREE / "scripts/wine", "--end", env=self.environment)

    def classes(self):
        """{key: {name: text}}: all below HKEY_CLASSES_ROOT, as the registry's own file has it when Wine has ended."""
        self.end()
        found, values = {}, {}
        for line in (self.folder / "system.reg").read_text(encoding="utf-8", errors="replace").splitlines():
            if line.startswith("["):
                key = line[1:line.index("]")] if "] " in line else line[1:-1]
                values = {}
                if key.startswith("Software\\\\Classes"):
                    found[key.replace("\\\\", "\\").removeprefix("Software\\Classes\\")] = values
            elif match := re.match(r'(@|"(?P<name>[^"]*)")=(?P<data>.*)', line):
                values[match["name"] or ""] = match["data"].strip('"').replace("\\\\", "\\")
        return found

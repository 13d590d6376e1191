"""The help file as the tests see it: made afresh, and taken apart by programs that share nothing with its writer."""

import functools
import struct
import subprocess
import tempfile
from html.parser import HTMLParser
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
NAME = "SecurityOCX.chm"
_scratch = tempfile.TemporaryDirectory()
SCRATCH = Path(_scratch.name)


def run(*command, **others):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, encoding="utf-8", **others)


def make(folder, **others):
    """The help file that scripts/make-help leaves in a folder."""
    done = run(TREE / "scripts/make-help", folder, **others)
    if done.returncode:
        raise RuntimeError(done.stderr)
    return Path(folder) / NAME


@functools.cache
def built():
    return make(SCRATCH / "built")


def files_below(folder):
    return {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


@functools.cache
def read_by_chmlib():
    out = SCRATCH / "chmlib"
    done = run("extract_chmLib", built(), out)
    if done.returncode:
        raise RuntimeError(done.stdout + done.stderr)
    return files_below(out)


@functools.cache
def read_by_7z():
    out = SCRATCH / "7z"
    done = run("7z", "x", f"-o{out}", built())
    if done.returncode:
        raise RuntimeError(done.stdout + done.stderr)
    return files_below(out)


def text_at(table, offset):
    return table[offset:table.index(b"\0", offset)].decode("ascii")


def contexts():
    """{number: page}, from the reader's table of numbers."""
    table, texts = read_by_chmlib()["#IVB"], read_by_chmlib()["#STRINGS"]
    (size,) = struct.unpack_from("<I", table)
    if size != len(table) - 4 or size % 8:
        raise ValueError("the table of contexts has a wrong size")
    return {number: text_at(texts, offset) for number, offset in struct.iter_unpack("<II", table[4:])}


def system_entries():
    """{type: bytes}: what the reader looks at first."""
    data, at, entries = read_by_chmlib()["#SYSTEM"], 4, {}
    while at < len(data):
        kind, size = struct.unpack_from("<HH", data, at)
        entries[kind] = data[at + 4:at + 4 + size]
        at += 4 + size
    return entries


class Page(HTMLParser):
    """Links, pictures, anchors and title of a page; entries of a site map."""

    def __init__(self, text):
        super().__init__()
        self.links, self.sources, self.anchors, self.entries = [], [], [], []
        self.title, self.heading, self._inside = "", "", None
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        if tag == "a":
            self.links.append(values["href"])
        if tag in ("img", "link"):
            self.sources.append(values.get("src") or values.get("href"))
        if "id" in values:
            self.anchors.append(values["id"])
        if tag == "object":
            self.entries.append({})
        if tag == "param":
            self.entries[-1][values["name"]] = values["value"]
        if tag in ("title", "h1"):
            self._inside = tag

    def handle_endtag(self, tag):
        if tag == self._inside:
            self._inside = None

    def handle_data(self, data):
        if self._inside == "title":
            self.title += data
        if self._inside == "h1":
            self.heading += data


@functools.cache
def pages():
    """{name: Page} of all pages."""
    return {name: Page(data.decode("utf-8")) for name, data in read_by_7z().items() if name.endswith(".html")}


@functools.cache
def site_map(name):
    return Page(read_by_7z()[name].decode("ascii"))

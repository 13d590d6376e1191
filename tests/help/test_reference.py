"""The reference: whole, the same bytes each time, and it refuses a public member without a comment."""

import re
import shutil
import tempfile
import unittest
from pathlib import Path

from help_file import TREE, files_below, run


class Reference(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.scratch = Path(scratch.name)
        done = run(TREE / "scripts/make-reference", cls.scratch / "site")
        if done.returncode:
            raise RuntimeError(done.stderr)
        cls.site = files_below(cls.scratch / "site")

    def copy_of_sources(self, name):
        copy = self.scratch / name
        names = run("git", "-C", TREE, "ls-files", "--cached", "--others", "--exclude-standard").stdout.splitlines()
        for path in names:
            if (TREE / path).is_file() and (path.endswith((".h", ".md", ".dox", ".png", ".svg", "Doxyfile", "CMakeLists.txt", "rooms.txt"))
                                            or path.startswith("scripts/")):
                (copy / path).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(TREE / path, copy / path)
        return copy

    def test_holds_classes_functions_and_pages(self):
        text = b"".join(data for name, data in self.site.items() if name.endswith(".html")).decode("utf-8")
        for wanted in ("cBinaryFileStream", "PostFormRequest", "DrawGradient", "GetSystemDirectoryPath",
                       "Limits and kept oddities", "Where does my line go?"):
            self.assertIn(wanted, text)

    def test_every_link_inside_leads_somewhere(self):
        anchors = {name: set(re.findall(rb'(?:id|name)="([^"]*)"', data)) for name, data in self.site.items()
                   if name.endswith(".html")}
        count = 0
        for name, data in self.site.items():
            if not name.endswith(".html"):
                continue
            for target in set(re.findall(rb'<a [^>]*href="([^"]*)"', data)):
                if re.match(rb"https?:|javascript:|mailto:", target):
                    continue
                page, _, fragment = target.partition(b"#")
                page = page.decode() or name
                self.assertIn(page, self.site, name)
                # Doxygen's own pages link to members that it shows nowhere, such as defaulted constructors.
                if fragment and name.startswith(("md_", "index")):
                    self.assertIn(fragment, anchors[page], f"{name} leads to {target}")
                count += 1
        self.assertGreater(count, 1000)

    def test_is_the_same_wherever_the_sources_lie(self):
        copy = self.copy_of_sources("elsewhere")
        done = run(copy / "scripts/make-reference", self.scratch / "again", cwd="/")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(files_below(self.scratch / "again"), self.site)

    def test_refuses_a_member_without_a_comment_and_leaves_nothing(self):
        copy = self.copy_of_sources("bare")
        header = copy / "checksum/cCRC32.h"
        text = header.read_text(encoding="utf-8")
        header.write_text(text.replace(" public:\n", " public:\n  void Bare();\n\n", 1), encoding="utf-8")
        done = run(copy / "scripts/make-reference", self.scratch / "none")
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"checksum/cCRC32.h:\d+: error: Member Bare\(\)")
        self.assertFalse((self.scratch / "none").exists())


if __name__ == "__main__":
    unittest.main()

"""The help file SecurityOCX.chm: two independent readers agree on it, what the type library asks for is there, and
every link leads somewhere."""

import os
import re
import shutil
import sys
import unittest
from pathlib import Path

import help_file
from help_file import SCRATCH, TREE, contexts, pages, read_by_7z, read_by_chmlib, site_map, system_entries

MODULE = Path(os.environ.get("QUORVANE_MODULE", TREE / "build/windows/QuorvaneSecurity.ocx"))


def members():
    """{name: help context} of the type library inside the built module."""
    os.environ["QUORVANE_MODULE"] = str(MODULE)
    sys.path.insert(0, str(TREE / "tests/control/module/package"))
    from module_under_test import resource
    from msft_reader import TypeLibrary
    library = TypeLibrary(resource("TYPELIB", 1))
    return {function.name: function.help_context for entry in library.types for function in entry.functions}


class Readers(unittest.TestCase):
    def test_agree_on_every_file(self):
        self.assertEqual(sorted(read_by_chmlib()), sorted(read_by_7z()))
        for name, data in read_by_chmlib().items():
            self.assertEqual(data, read_by_7z()[name], name)

    def test_find_the_bytes_that_went_in(self):
        self.assertEqual(read_by_7z()["style.css"], (TREE / "help/style.css").read_bytes())
        self.assertEqual(read_by_7z()["docs-form.png"], (TREE / "docs/form.png").read_bytes())

    def test_are_told_first_page_contents_index_and_title(self):
        entries = system_entries()
        self.assertEqual([entries[kind].rstrip(b"\0").decode("ascii") for kind in (0, 1, 2, 3)],
                         ["contents.hhc", "index.hhk", "welcome.html", "QuorvaneSecurity"])

    def test_can_search_the_full_text(self):
        self.assertGreater(len(read_by_7z()["$FIftiMain"]), 1000)


class WhatTheTypeLibraryAsksFor(unittest.TestCase):
    def test_each_context_leads_to_the_page_of_its_member(self):
        asked = {context: name for name, context in members().items() if context}
        self.assertEqual(asked, {600: "ServerFile"})
        self.assertEqual({number: pages()[page].heading for number, page in contexts().items()}, asked)

    def test_each_member_has_a_page_an_entry_in_the_contents_and_one_in_the_index(self):
        self.assertEqual(len(members()), 8)
        for name in members():
            page = name.lower() + ".html"
            self.assertEqual((pages()[page].title, pages()[page].heading), (name, name))
            entry = {"Name": name, "Local": page}
            self.assertIn(entry, site_map("contents.hhc").entries)
            self.assertIn(entry, site_map("index.hhk").entries)


class Pages(unittest.TestCase):
    def follow(self, name, target):
        page, _, fragment = target.partition("#")
        self.assertIn(page or name, read_by_7z(), f"{name} leads to {target}")
        if fragment:
            self.assertIn(fragment, pages()[page or name].anchors, f"{name} leads to {target}")

    def test_every_link_leads_somewhere(self):
        count = 0
        for name, page in pages().items():
            for target in page.links + page.sources:
                if not re.match(r"https?://", target):
                    self.follow(name, target)
                    count += 1
        self.assertGreater(count, 100)

    def test_every_entry_of_contents_and_index_leads_to_a_page(self):
        for navigation in ("contents.hhc", "index.hhk"):
            for entry in site_map(navigation).entries:
                self.assertIn(entry["Local"], pages(), entry)

    def test_the_index_holds_the_words_that_a_page_names(self):
        for word, page in (("overflow", "errors.html"), ("ActiveX component can't create object", "troubleshooting.html")):
            self.assertIn({"Name": word, "Local": page}, site_map("index.hhk").entries)

    def test_the_contents_hold_every_page_once(self):
        self.assertEqual(sorted(entry["Local"] for entry in site_map("contents.hhc").entries), sorted(pages()))

    def test_every_picture_is_shown_on_some_page(self):
        shown = {source for page in pages().values() for source in page.sources}
        pictures = {name for name in read_by_7z() if name.endswith(".png")}
        self.assertGreaterEqual(len(pictures), 2)
        self.assertLessEqual(pictures, shown)

    def test_name_nothing_of_the_building_machine(self):
        data = help_file.built().read_bytes() + b"".join(read_by_7z().values())
        for trace in (str(TREE), str(SCRATCH)):
            self.assertNotIn(trace.encode(), data)


class Making(unittest.TestCase):
    def test_gives_the_same_bytes_at_another_time_in_another_folder(self):
        environment = {**os.environ, "TZ": "Asia/Tokyo", "LANG": "de_DE.UTF-8"}
        again = help_file.make(SCRATCH / "mit Leerzeichen und \u00fc", cwd="/", env=environment)
        self.assertEqual(again.read_bytes(), help_file.built().read_bytes())

    def copy_of_sources(self, name):
        copy = SCRATCH / name
        for part in ("help", "docs", "scripts/make-help", "SECURITY.md"):
            (copy / part).parent.mkdir(parents=True, exist_ok=True)
            (shutil.copytree if (TREE / part).is_dir() else shutil.copy)(TREE / part, copy / part)
        return copy

    def refusal(self, copy, out, **others):
        done = help_file.run(copy / "scripts/make-help", out, **others)
        self.assertEqual(done.returncode, 1, done.stdout)
        self.assertEqual(list(Path(out).glob("*")) if Path(out).is_dir() else [], [])
        return done.stderr

    def test_refuses_a_link_that_leads_nowhere(self):
        copy = self.copy_of_sources("broken")
        with open(copy / "help/pages/errors.md", "a", encoding="utf-8") as page:
            page.write("\nSee [this](nowhere.md).\n")
        self.assertIn("help/pages/errors.md: a link leads nowhere: nowhere.md", self.refusal(copy, SCRATCH / "none"))

    def test_refuses_one_context_for_two_pages(self):
        copy = self.copy_of_sources("twice")
        contents = copy / "help/contents.md"
        contents.write_text(contents.read_text().replace("serverport.md)", "serverport.md) 600"))
        self.assertIn("more than one page with the context 600", self.refusal(copy, SCRATCH / "none"))

    def test_says_which_program_is_missing(self):
        tools = SCRATCH / "tools"
        tools.mkdir()
        (tools / "python3").symlink_to(sys.executable)
        error = self.refusal(TREE, SCRATCH / "none", env={"PATH": str(tools)})
        self.assertIn("cmark-gfm is not installed; `scripts/setup --release` installs it", error)

    def test_refuses_a_folder_that_cannot_be(self):
        done = help_file.run(TREE / "scripts/make-help", "/dev/null/out")
        self.assertEqual(done.returncode, 1)
        self.assertIn("make-help: ", done.stderr)


if __name__ == "__main__":
    unittest.main()

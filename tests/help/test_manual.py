"""The manual pages and the completions of `quorvane`: made of its own help, read by the programs that they are for."""

import os
import re
import shlex
import subprocess
import tempfile
import unittest
from pathlib import Path

from help_file import TREE, files_below, run

PROGRAM = Path(os.environ.get("QUORVANE_PROGRAM", TREE / "build/native/quorvane"))


def told(*words):
    return run(PROGRAM, *words).stdout


def commands():
    """{name: summary} as the program lists them; a summary may go on in the next line."""
    listed = told("--help").partition("commands:\n")[2].partition("\n\n")[0]
    joined = re.sub(r"\n {8,}", " ", listed)
    return dict(re.findall(r"^  (\S+) +(.*)$", joined, re.MULTILINE))


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(scratch.cleanup)
        cls.scratch = Path(scratch.name)
        cls.share = cls.make("one") / "share"
        cls.pages = sorted((cls.share / "man/man1").glob("*.1"))

    @classmethod
    def make(cls, name):
        done = run(TREE / "scripts/make-manual", cls.scratch / name, PROGRAM)
        if done.returncode:
            raise RuntimeError(done.stderr)
        return cls.scratch / name

    # --- manual pages ---------------------------------------------------------------------------------

    def test_every_subcommand_has_a_page_that_bears_its_summary(self):
        self.assertGreaterEqual(len(commands()), 12)
        for name, summary in commands().items():
            text = run("mandoc", "-T", "utf8", "-O", "width=200", self.share / f"man/man1/quorvane-{name}.1").stdout
            plain = re.sub(".\x08", "", text)  # overstruck for bold
            self.assertIn(summary.replace("'", "\u2019"), plain.replace("'", "\u2019"), name)

    def test_every_option_of_the_help_stands_on_its_page(self):
        count = 0
        for page in self.pages:
            source = page.read_text(encoding="utf-8")
            question = re.match(r'\.\\" Made by scripts/make-manual from `quorvane (.*)`\.', source)[1]
            listed = re.findall(r"^ +(?:-\w, )?(--[a-z-]+)", told(*question.split()), re.MULTILINE)
            for option in listed:
                self.assertIn(option.replace("-", "\\-"), source, page.name)
                count += 1
        self.assertGreaterEqual(count, 5)

    def test_a_formatter_has_nothing_to_say_against_them(self):
        # None bears a date: the version in its footer says more.
        found = run("mandoc", "-T", "lint", "-W", "warning", *self.pages).stdout.splitlines()
        self.assertEqual([line for line in found if "missing date" not in line], [])

    def test_each_page_that_one_points_to_is_there(self):
        names = {page.stem for page in self.pages}
        for page in self.pages:
            for other in re.findall(r"^\.BR (\S+) \(1\)", page.read_text(encoding="utf-8"), re.MULTILINE):
                self.assertIn(other.replace("\\-", "-"), names, page.name)

    def test_the_same_help_gives_the_same_bytes(self):
        self.assertEqual(files_below(self.make("two")), files_below(self.scratch / "one"))

    def test_refuses_a_program_that_tells_no_help(self):
        for program, reason in (("/bin/false", "gave no help"), ("/bin/echo", "does not begin with its usage"),
                                (self.scratch / "none", "No such file")):
            done = run(TREE / "scripts/make-manual", self.scratch / "bad", program)
            self.assertEqual(done.returncode, 1)
            self.assertIn(reason, done.stderr)
            self.assertFalse((self.scratch / "bad").exists())

    # --- completions ----------------------------------------------------------------------------------

    def by_bash(self, *words):
        script = self.share / "bash-completion/completions/quorvane"
        line = " ".join(shlex.quote(word) for word in ("quorvane", *words))
        return self.answers("bash", "--norc", "-c", f"source {script}; COMP_WORDS=({line}); COMP_CWORD={len(words)}; "
                            '_quorvane; printf "%s\\n" "${COMPREPLY[@]}"')

    def by_zsh(self, *words):
        # The shell's own collectors, reduced to what they are given.
        script = self.share / "zsh/vendor-completions/_quorvane"
        line = " ".join(shlex.quote(word) for word in ("quorvane", *words))
        collectors = ("compadd() { shift; print -l -- $@ }; _files() { print -l -- *(N) }; "
                      "_describe() { print -l -- ${${(P)2}%%:*} }; ")
        found = self.answers("zsh", "-f", "-c", f"{collectors} words=({line}); CURRENT={len(words) + 1}; source {script}")
        return [word for word in found if word.startswith(words[-1])]

    def by_fish(self, *words):
        script = self.share / "fish/vendor_completions.d/quorvane.fish"
        line = " ".join(("quorvane", *words))
        found = self.answers("fish", "--no-config", "-c", f"source {script}; complete -C {shlex.quote(line)}")
        return [word.partition("\t")[0] for word in found]

    def answers(self, *command):
        done = subprocess.run(list(map(str, command)), cwd=self.folder, capture_output=True, text=True, check=False,
                              env={**os.environ, "HOME": str(self.scratch)})
        self.assertEqual(done.stderr, "")
        return [line for line in done.stdout.splitlines() if line]

    def setUp(self):
        self.folder = self.scratch / "folder"
        self.folder.mkdir(exist_ok=True)
        (self.folder / "some file").touch()

    def test_complete_subcommands_operations_options_and_files(self):
        for shell in (self.by_bash, self.by_zsh, self.by_fish):
            with self.subTest(shell=shell.__name__):
                self.assertLessEqual(set(commands()), set(shell("")))
                self.assertEqual(sorted(shell("pro")), ["profile"])
                self.assertEqual(sorted(shell("help", "gra")), ["gradient"])
                self.assertEqual(sorted(shell("registry", "w")), ["write"])
                self.assertEqual(sorted(shell("post", "--pro")), ["--proxy"])
                self.assertIn("some file", [word.replace("\\ ", " ") for word in shell("crc", "so")])
                self.assertEqual(shell("user", "so"), [])

    def test_complete_the_file_of_an_option_and_no_other_value(self):
        for shell in (self.by_bash, self.by_zsh, self.by_fish):
            with self.subTest(shell=shell.__name__):
                found = shell("gradient", "100", "100", "--picture", "so")
                self.assertIn("some file", [word.replace("\\ ", " ") for word in found])
                self.assertEqual(shell("post", "--user", "so"), [])


if __name__ == "__main__":
    unittest.main()

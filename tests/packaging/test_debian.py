"""The Debian packages: installed into a fresh Debian, which is made once by debootstrap and kept outside the work tree."""

import os
import shlex
import tempfile
import unittest
from pathlib import Path

from release import FOLDER, MODULE, TREE, VERSION, must, published_crc

MACHINE = must("dpkg", "--print-architecture").strip()
MULTIARCH = must("dpkg-architecture", "-qDEB_HOST_MULTIARCH").strip()
PROGRAM = FOLDER / f"quorvane_{VERSION}_{MACHINE}.deb"
LIBRARY = FOLDER / f"quorvane-dev_{VERSION}_{MACHINE}.deb"
CACHE = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "quorvane"


def as_root(*command, **others):
    return must(*([] if os.geteuid() == 0 else ["sudo", "-n"]), *command, **others)


def fresh_debian():
    """A root that holds a small Debian and what our program depends on, but not our packages."""
    root = CACHE / "debian-bookworm-libcurl4"
    if not root.exists():
        CACHE.mkdir(parents=True, exist_ok=True)
        mirror = must("bash", "-c", f". {shlex.quote(str(TREE))}/scripts/lib/common.sh && "
                      "debian_archives | awk '$2 == \"bookworm\" && $3 == \"main\" { print $1; exit }'").strip()
        part = root.with_name(root.name + f".part.{os.getpid()}")
        as_root("unshare", "--mount", "debootstrap", "--variant=minbase", "--include=libcurl4", "bookworm", part, mirror)
        as_root("mv", part, root)
    return root


class Program(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.mkdtemp(prefix="quorvane-debian-")
        cls.root = Path(cls.scratch) / "root"
        as_root("cp", "-a", "--reflink=auto", fresh_debian(), cls.root)

    @classmethod
    def tearDownClass(cls):
        as_root("rm", "-rf", "--one-file-system", cls.scratch)

    def inside(self, *command):
        return as_root("chroot", self.root, *command)

    def test_installs_runs_and_goes_away_again(self):
        def everything():
            return {path for path in as_root("find", self.root, "-xdev", "-not", "-path", "*/var/*").splitlines()}
        before = everything()
        for path in (PROGRAM, MODULE):
            as_root("cp", path, self.root / "tmp")
        self.inside("dpkg", "-i", "/tmp/" + PROGRAM.name)
        shown = self.inside("quorvane", "crc", "/tmp/QuorvaneSecurity.ocx")
        self.assertEqual(shown, f"{published_crc()[0]}\t/tmp/QuorvaneSecurity.ocx\n")
        added = {path.removeprefix(str(self.root)) for path in everything() - before}
        for name in ("/usr/bin/quorvane", "/usr/share/man/man1/quorvane.1.gz", "/usr/share/man/man1/quorvane-crc.1.gz",
                     "/usr/share/bash-completion/completions/quorvane", "/usr/share/zsh/vendor-completions/_quorvane",
                     "/usr/share/fish/vendor_completions.d/quorvane.fish"):
            self.assertIn(name, added)
        self.inside("dpkg", "--verify", "quorvane")
        self.inside("dpkg", "--purge", "quorvane")
        for path in (PROGRAM, MODULE):
            as_root("rm", self.root / "tmp" / path.name)
        self.assertEqual(everything() - before, set())


class Contents(unittest.TestCase):
    def listing(self, package):
        return {line.split()[5].removeprefix(".") for line in must("dpkg-deb", "--contents", package).splitlines()}

    def test_the_program_comes_with_a_page_for_each_subcommand_and_completions(self):
        listing = self.listing(PROGRAM)
        for name in ("", "-crc", "-encode", "-post", "-text", "-gradient", "-registry", "-profile"):
            self.assertIn(f"/usr/share/man/man1/quorvane{name}.1.gz", listing)
        for name in ("bash-completion/completions/quorvane", "zsh/vendor-completions/_quorvane",
                     "fish/vendor_completions.d/quorvane.fish", "doc/quorvane/copyright", "doc/quorvane/changelog.gz"):
            self.assertIn("/usr/share/" + name, listing)

    def test_files_belong_to_root(self):
        for package in (PROGRAM, LIBRARY):
            owners = {line.split()[1] for line in must("dpkg-deb", "--contents", package).splitlines()}
            self.assertEqual(owners, {"root/root"})

    def test_the_library_is_found_in_the_package(self):
        with tempfile.TemporaryDirectory() as folder:
            must("dpkg-deb", "--extract", LIBRARY, folder)
            environment = os.environ | {"PKG_CONFIG_PATH": f"{folder}/usr/lib/{MULTIARCH}/pkgconfig"}
            words = shlex.split(must("pkg-config", "--cflags", "--libs", "quorvane-security", env=environment))
            must("g++", TREE / "tests/support/library_consumer/consumer.cpp", "-o", f"{folder}/consumer", *words)
            project = Path(folder) / "project"
            project.mkdir()
            (project / "CMakeLists.txt").write_text(
                "cmake_minimum_required(VERSION 3.25)\nproject(p CXX)\nfind_package(QuorvaneSecurity 3.9 REQUIRED)\n"
                "if(NOT TARGET Quorvane::checksum)\n  message(FATAL_ERROR none)\nendif()\n")
            must("cmake", "-S", project, "-B", project, f"-DCMAKE_PREFIX_PATH={folder}/usr",
                 f"-DCMAKE_LIBRARY_ARCHITECTURE={MULTIARCH}")

    def test_depends_on_what_its_user_s_programs_link(self):
        self.assertIn("libcurl4", must("dpkg-deb", "-f", PROGRAM, "Depends"))
        self.assertIn("libcurl4-openssl-dev", must("dpkg-deb", "-f", LIBRARY, "Depends"))


if __name__ == "__main__":
    unittest.main()

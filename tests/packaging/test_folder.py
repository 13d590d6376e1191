"""The release folder as a whole: what is in it, that its sums, its bill of materials and its notices are right, and
that a second run made the same bytes (in the folder that QUORVANE_RELEASE_AGAIN names)."""

import hashlib
import json
import os
import re
import subprocess
import tarfile
import unittest
import zipfile
import zlib
from pathlib import Path

from release import FOLDER, INSTALLER, MODULE, PORTABLE, SOURCES, TREE, VERSION, must, published_crc, run

MACHINE = must("dpkg", "--print-architecture").strip()
FILES = {
    "QuorvaneSecurity.ocx", "published-crc.txt", "SecurityOCX.chm", INSTALLER.name, PORTABLE.name, SOURCES.name,
    f"quorvane-{VERSION}-windows.zip", f"quorvane_{VERSION}_{MACHINE}.deb", f"quorvane-dev_{VERSION}_{MACHINE}.deb",
    f"quorvane-devel-{VERSION}-linux-{MACHINE}.tar.gz", f"quorvane-devel-{VERSION}-windows-i686.tar.gz",
    "SHA256SUMS", "sbom.spdx.json", "NOTICES"}


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


class Folder(unittest.TestCase):
    def test_holds_every_file_of_a_release_and_no_other(self):
        self.assertEqual({path.name for path in FOLDER.iterdir()}, FILES)

    def test_a_second_run_from_another_folder_makes_the_same_bytes(self):
        again = Path(os.environ["QUORVANE_RELEASE_AGAIN"])
        self.assertFalse(again.samefile(FOLDER))
        self.assertEqual({path.name: sha256(path) for path in again.iterdir()},
                         {path.name: sha256(path) for path in FOLDER.iterdir()})

    def test_the_sums_are_those_of_all_other_files(self):
        must("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=FOLDER)
        listed = {line.split(maxsplit=1)[1] for line in (FOLDER / "SHA256SUMS").read_text().splitlines()}
        self.assertEqual(listed, FILES - {"SHA256SUMS"})

    def test_the_published_number_is_that_of_the_module(self):
        value = zlib.crc32(MODULE.read_bytes())
        self.assertEqual(published_crc(), [value - (value >> 31 << 32)])

    def test_nothing_inside_names_the_building_machine(self):
        def contents():
            for path in FOLDER.iterdir():
                if path.suffix == ".zip":
                    archive = zipfile.ZipFile(path)
                    yield from ((f"{path.name}: {name}", archive.read(name)) for name in archive.namelist())
                elif path.suffix == ".gz":
                    archive = tarfile.open(path)
                    yield from ((f"{path.name}: {entry.name}", archive.extractfile(entry).read())
                                for entry in archive if entry.isfile())
                elif path.suffix == ".deb":
                    yield path.name, subprocess.run(["dpkg-deb", "--fsys-tarfile", path], capture_output=True,
                                                    check=True).stdout
                else:
                    yield path.name, path.read_bytes()
        seen = 0
        for name, content in contents():
            self.assertNotIn(str(TREE).encode(), content, name)
            self.assertNotIn(str(FOLDER).encode(), content, name)
            seen += 1
        self.assertGreater(seen, 100)

    def test_the_archive_of_the_sources_holds_what_git_knows(self):
        if not (TREE / ".git").exists():
            self.skipTest("this is no clone")
        tracked = must("git", "ls-files", cwd=TREE).split("\n")
        with tarfile.open(SOURCES) as archive:
            packed = {entry.name.removeprefix(f"quorvane-{VERSION}/") for entry in archive if not entry.isdir()}
            for entry in archive:
                self.assertEqual((entry.uid, entry.gid, entry.uname), (0, 0, ""), entry.name)
        self.assertEqual(packed, {name for name in tracked if name and (TREE / name).is_file()})

    def test_the_notices_name_the_compiler_s_run_time_parts_and_are_in_the_windows_packages(self):
        notices = (FOLDER / "NOTICES").read_text(errors="replace")
        for word in ("GCC Runtime Library Exception", "gcc-mingw-w64", "mingw-w64-i686-dev", "libstdc++"):
            self.assertIn(word, notices)
        for path in (PORTABLE, FOLDER / f"quorvane-{VERSION}-windows.zip"):
            with zipfile.ZipFile(path) as archive:
                (name,) = [name for name in archive.namelist() if name.endswith("NOTICES.txt")]
                self.assertEqual(archive.read(name).replace(b"\r\n", b"\n").decode(errors="replace"), notices)
        self.assertIn("NOTICES.txt", must("msiextract", "--list", INSTALLER))


class BillOfMaterials(unittest.TestCase):
    """The rules of SPDX 2.3 that apply to what make-sbom writes, and that the bill tells the truth."""

    @classmethod
    def setUpClass(cls):
        cls.bill = json.loads((FOLDER / "sbom.spdx.json").read_text())

    def test_the_document_is_well_formed(self):
        self.assertEqual((self.bill["spdxVersion"], self.bill["dataLicense"], self.bill["SPDXID"]),
                         ("SPDX-2.3", "CC0-1.0", "SPDXRef-DOCUMENT"))
        self.assertRegex(self.bill["documentNamespace"], r"^https://[^#]+$")
        self.assertRegex(self.bill["creationInfo"]["created"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        for creator in self.bill["creationInfo"]["creators"]:
            self.assertRegex(creator, r"^(Person|Organization|Tool): .+")

    def test_ids_are_valid_and_unique_and_every_relationship_leads_to_one(self):
        ids = [entry["SPDXID"] for entry in self.bill["packages"] + self.bill["files"]] + ["SPDXRef-DOCUMENT"]
        self.assertEqual(len(ids), len(set(ids)))
        for one in ids:
            self.assertRegex(one, r"^SPDXRef-[A-Za-z0-9.-]+$")
        kinds = {"DESCRIBES", "CONTAINS", "STATIC_LINK", "DYNAMIC_LINK"}
        for relation in self.bill["relationships"]:
            self.assertIn(relation["spdxElementId"], ids)
            self.assertIn(relation["relatedSpdxElement"], ids)
            self.assertIn(relation["relationshipType"], kinds)
        self.assertIn("DESCRIBES", {relation["relationshipType"] for relation in self.bill["relationships"]})

    def test_packages_have_what_the_format_demands(self):
        licence = re.compile(r"NOASSERTION|[A-Za-z0-9.+-]+( WITH [A-Za-z0-9.+-]+)?")
        for package in self.bill["packages"]:
            for field in ("name", "versionInfo", "downloadLocation", "copyrightText"):
                self.assertTrue(package[field], package)
            for field in ("licenseConcluded", "licenseDeclared"):
                self.assertIsNotNone(licence.fullmatch(package[field]), package)
            self.assertIs(package["filesAnalyzed"], False)

    def test_the_files_and_their_sums_are_those_of_the_folder(self):
        sums = {entry["fileName"].removeprefix("./"): {one["algorithm"]: one["checksumValue"] for one in entry["checksums"]}
                for entry in self.bill["files"]}
        self.assertEqual(set(sums), FILES - {"SHA256SUMS", "sbom.spdx.json"})
        for name, values in sums.items():
            content = (FOLDER / name).read_bytes()
            self.assertEqual(values, {"SHA1": hashlib.sha1(content).hexdigest(),
                                      "SHA256": hashlib.sha256(content).hexdigest()}, name)

    def test_names_what_is_linked_in_with_its_version(self):
        packages = {package["name"]: package["versionInfo"] for package in self.bill["packages"]}
        for name in ("mingw-w64-i686-dev", "libc6"):
            self.assertEqual(packages[name], must("dpkg-query", "-W", "-f", "${Version}", name))
        self.assertTrue(any(name.startswith(("gcc-mingw", "g++-mingw")) for name in packages))


class BadInput(unittest.TestCase):
    def test_a_folder_with_other_things_in_it_is_left_alone(self):
        import tempfile
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "mine").write_text("mine")
            done = run(TREE / "release", folder)
            self.assertEqual(done.returncode, 1)
            self.assertIn("no release", done.stderr)
            self.assertEqual([path.name for path in Path(folder).iterdir()], ["mine"])

    def test_a_place_where_nothing_can_be_written(self):
        # /proc takes no folder, whoever asks.
        done = run(TREE / "release", "/proc/quorvane-release")
        self.assertEqual(done.returncode, 1)
        self.assertIn("cannot write", done.stderr)

    def test_a_missing_tool_is_named_with_its_package(self):
        path = ":".join(str(folder) for folder in (TREE / "tests/packaging/empty",))
        done = subprocess.run(["/usr/bin/python3", TREE / "packaging/make-installer", "a", "b", "c"],
                              env={"PATH": path}, capture_output=True, text=True)
        self.assertEqual(done.returncode, 1)
        self.assertIn("wixl is missing; it comes with the Debian package wixl", done.stderr)

    def test_a_full_disk_leaves_no_half_made_release(self):
        if os.geteuid() != 0:
            self.skipTest("a small disk wants root")
        import tempfile
        with tempfile.TemporaryDirectory() as folder:
            done = run("unshare", "--mount", "sh", "-c",
                       'mount -t tmpfs -o size=300k tmpfs "$1" && { "$2" "$1/release"; code=$?; echo LEFT:; ls -A "$1"; exit $code; }',
                       "sh", folder, TREE / "release")
        self.assertEqual(done.returncode, 1, done.stdout)
        self.assertIn("No space left on device", done.stderr)
        self.assertIn("LEFT:\n", done.stdout)
        self.assertNotIn("part", done.stdout.split("LEFT:")[1])


if __name__ == "__main__":
    unittest.main()

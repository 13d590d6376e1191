"""The portable package and the command line for Windows, in a fresh Windows where nothing is registered."""

import shutil
import tempfile
import unittest
from pathlib import Path

from release import FOLDER, PORTABLE, TREE, VERSION, Windows, make_registration, must, published_crc, unzip

DEPENDENCY = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <dependency>
    <dependentAssembly>
      <assemblyIdentity type="win32" name="QuorvaneSecurity" version="{version}.0" processorArchitecture="x86"/>
    </dependentAssembly>
  </dependency>
</assembly>
"""


class Portable(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="quorvane portabel ü ")
        cls.folder = Path(cls.scratch.name)
        cls.windows = Windows(cls.folder / "prefix")
        cls.package = unzip(PORTABLE, cls.folder / "unpacked")
        cls.answer = f"GetCRCValue={published_crc()[0]}\n"

    @classmethod
    def tearDownClass(cls):
        cls.windows.end()
        cls.scratch.cleanup()

    def place(self, name, *files):
        folder = self.folder / name
        folder.mkdir(parents=True)
        for file in files:
            shutil.copy(self.package / file, folder)
        return folder

    def assert_answers(self, program):
        self.assertIn(self.answer + "done\n", self.windows.must(program))

    def test_nothing_is_registered(self):
        self.windows.must("cmd", "/c", "exit 0")
        self.assertNotIn("QuorvaneSecurity.SecurityCtrl", self.windows.classes())
        lonely = self.place("lonely", "QuorvaneSecurity.ocx", "use_control.exe")
        done = self.windows.run(lonely / "use_control.exe")
        self.assertEqual(done.returncode, 1)
        self.assertIn("finding the class fails", done.stderr)

    def test_the_package_works_as_it_is_unpacked(self):
        self.assert_answers(self.package / "use_control.exe")

    def test_holds_what_its_readme_names_in_ten_lines(self):
        readme = (self.package / "README.txt").read_bytes().decode("ascii")
        self.assertLessEqual(readme.count("\r\n"), 10)
        self.assertEqual(readme.count("\n"), readme.count("\r\n"))
        for name in ("QuorvaneSecurity.ocx", "SecurityOCX.chm", "use_control.exe", "use_control.exe.manifest",
                     "check-install.cmd", "LICENSE.txt", "NOTICES.txt"):
            self.assertTrue((self.package / name).exists(), name)
            self.assertIn(name.split(".")[0], readme)
        self.assertIn(str(published_crc()[0]), readme)

    def test_with_the_module_in_a_folder_below(self):
        folder = self.place("below", "use_control.exe")
        (folder / "lib").mkdir()
        shutil.copy(self.package / "QuorvaneSecurity.ocx", folder / "lib")
        (folder / "use_control.exe.manifest").write_text(make_registration("manifest", "lib\\QuorvaneSecurity.ocx"))
        self.assert_answers(folder / "use_control.exe")

    def test_as_a_private_assembly(self):
        folder = self.place("private", "use_control.exe")
        assembly = folder / "QuorvaneSecurity"
        assembly.mkdir()
        shutil.copy(self.package / "QuorvaneSecurity.ocx", assembly)
        (assembly / "QuorvaneSecurity.manifest").write_text(make_registration("assembly"))
        (folder / "use_control.exe.manifest").write_text(DEPENDENCY.format(version=VERSION))
        self.assert_answers(folder / "use_control.exe")

    def test_with_the_manifest_inside_the_program(self):
        folder = self.place("embedded", "QuorvaneSecurity.ocx")
        (folder / "app.manifest").write_text(make_registration("manifest"))
        (folder / "app.rc").write_text('1 24 "app.manifest"\n')
        must("i686-w64-mingw32-windres", "app.rc", "app.o", cwd=folder)
        must("i686-w64-mingw32-g++-win32", "-static", "-o", folder / "program.exe",
             TREE / "examples/use_control/windows/use_control.cpp", folder / "app.o", "-lole32", "-loleaut32", "-luuid")
        self.assert_answers(folder / "program.exe")

    def test_from_another_apartment(self):
        folder = self.place("apartment", "QuorvaneSecurity.ocx")
        shutil.copy(self.package / "use_control.exe.manifest", folder / "program.exe.manifest")
        must("i686-w64-mingw32-g++-win32", "-static", "-o", folder / "program.exe",
             TREE / "tests/packaging/other_apartment_windows.cpp", "-lole32", "-loleaut32", "-luuid")
        self.assertEqual(self.windows.must(folder / "program.exe"), self.answer + "outcome 0x00000000\n")

    def test_in_a_container_for_forms(self):
        folder = self.place("container", "QuorvaneSecurity.ocx")
        content = self.folder / "installer"
        must("msiextract", "-C", content, FOLDER / f"QuorvaneSecurity-{VERSION}.msi")
        (host,) = content.glob("**/form_host.exe")
        shutil.copy(host, folder)
        shutil.copy(self.package / "use_control.exe.manifest", folder / "form_host.exe.manifest")
        shown = self.windows.must(folder / "form_host.exe", TREE / "programs/form_host/sample.form")
        self.assertIn(self.answer, shown)
        self.assertIn("all seven settings are as saved", shown)


class CommandLine(unittest.TestCase):
    def test_runs_from_where_it_is_unpacked(self):
        with tempfile.TemporaryDirectory() as folder:
            folder = Path(folder)
            windows = Windows(folder / "prefix")
            top = unzip(FOLDER / f"quorvane-{VERSION}-windows.zip", folder / "unpacked")
            shown = windows.must(top / "quorvane.exe", "crc", FOLDER / "QuorvaneSecurity.ocx")
            windows.end()
            self.assertTrue(shown.startswith(f"{published_crc()[0]}\t"), shown)
            content = (top / "quorvane.exe").read_bytes()
            self.assertIn(b"requestedExecutionLevel", content)
            self.assertIn(f"FileVersion\0{VERSION}".encode("utf-16-le")[:22], content)


if __name__ == "__main__":
    unittest.main()

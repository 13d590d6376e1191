"""The installer, in a fresh Windows: what it leaves, and what it takes away again."""

import os
import shutil
import tempfile
import unittest
from pathlib import Path

from release import INSTALLER, MODULE, TREE, VERSION, Windows, make_registration, must, published_crc, run

PROGRAM_FOLDER = "Program Files/QuorvaneSecurity"
FATAL = 1603 & 0xFF  # of a program in Wine, eight bits of the exit code come through


def installer_of(folder, version, name, note=None):
    """The release's installer under another version number."""
    content = folder / "content"
    if not content.exists():
        must("msiextract", "-C", content, INSTALLER)
    (root,) = content.glob("**/QuorvaneSecurity.ocx")
    if note:
        (root.parent / "README.txt").write_text(note)
    rows = folder / "rows"
    rows.write_text(make_registration("rows"))
    must(TREE / "packaging/make-installer", root.parent, rows, folder / name,
         env=os.environ | {"QUORVANE_VERSION": version, "SOURCE_DATE_EPOCH": "1700000000"})
    return folder / name


def plain(entries):
    """Registry entries without what differs by road: the place of the module, and the bit of the flags that Wine adds."""
    def text(data):
        data = data.lower()
        for place in ("c:\\program files\\quorvanesecurity", "z:" + str(MODULE.parent).replace("/", "\\").lower()):
            data = data.replace(place, "<folder>")
        return data.rstrip("\\")
    return {key: {name: str(int(data) & 2) if key.endswith("FLAGS") else text(data) for name, data in values.items()}
            for key, values in entries.items()}


# What Wine's own installer leaves when the last product is gone.
CONTAINERS = {"Installer\\Features", "Installer\\Products", "Installer\\UpgradeCodes"}


def added(after, before):
    return {key: values for key, values in after.items()
            if before.get(key) != values and not (key in CONTAINERS and not values)}


class Installer(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.folder = Path(cls.scratch.name)
        cls.windows = Windows(cls.folder / "prefix")
        # The script host registers something of its own when it runs for the first time.
        cls.windows.run("cscript", "//nologo", TREE / "examples/vbscript/client.vbs")
        cls.fresh = cls.windows.classes()
        cls.older = installer_of(cls.folder, "3.8.7", "older.msi")
        cls.newer = installer_of(cls.folder, "99.1.0", "newer.msi")

    @classmethod
    def tearDownClass(cls):
        cls.windows.end()
        cls.scratch.cleanup()

    def setUp(self):
        self.installed = []

    def tearDown(self):
        for installer in self.installed:
            self.remove(installer)

    def install(self, installer=INSTALLER, *words):
        code = self.windows.run("msiexec", "/i", installer, "/qn", *words).returncode
        if code == 0:
            self.installed = [installer]
        return code

    def remove(self, installer=INSTALLER):
        self.windows.must("msiexec", "/x", installer, "/qn")
        self.installed = []

    def files(self):
        root = self.windows.drive / PROGRAM_FOLDER
        return sorted(path.relative_to(root).as_posix() for path in root.rglob("*") if path.is_file())

    def script(self):
        return self.windows.run("cscript", "//nologo", TREE / "examples/vbscript/client.vbs").stdout

    def assert_clean(self):
        self.assertEqual(added(self.windows.classes(), self.fresh), {})
        self.assertFalse((self.windows.drive / PROGRAM_FOLDER).exists())

    def test_installs_quietly_and_a_script_uses_the_control(self):
        self.assertEqual(self.install(), 0)
        for name in ("QuorvaneSecurity.ocx", "SecurityOCX.chm", "check-install.cmd", "NOTICES.txt", "LICENSE.txt",
                     "examples/client.vbs", "examples/client.js", "examples/form_host.exe", "examples/use_control.exe"):
            self.assertIn(name, self.files())
        self.assertIn(f"GetCRCValue={published_crc()[0]}\ndone", self.script())

    def test_the_check_of_the_installation_passes(self):
        self.assertEqual(self.install(), 0)
        done = self.windows.run("cmd", "/c", "C:\\Program Files\\QuorvaneSecurity\\check-install.cmd")
        self.assertEqual(done.returncode, 0, done.stdout)

    def test_writes_what_self_registration_writes(self):
        self.windows.must("regsvr32", "/s", MODULE)
        registered = added(self.windows.classes(), self.fresh)
        self.windows.must("regsvr32", "/s", "/u", MODULE)
        self.assertEqual(self.install(), 0)
        installed = added(self.windows.classes(), self.fresh)
        installed = {key: values for key, values in installed.items() if not key.startswith("Installer")}
        self.assertEqual(plain(installed), plain(registered))
        self.assertGreater(len(registered), 15)

    def test_removal_leaves_nothing(self):
        self.assertEqual(self.install(), 0)
        self.assertNotEqual(added(self.windows.classes(), self.fresh), {})
        self.remove()
        self.assert_clean()
        self.assertNotIn("done", self.script())

    def test_replaces_an_older_version_and_saved_forms_keep_their_settings(self):
        self.assertEqual(self.install(self.older), 0)
        host = "C:\\Program Files\\QuorvaneSecurity\\examples\\form_host.exe"
        form = self.folder / "saved.form"
        self.windows.must(host, "--set", "ServerAddress=kept.example.com", "--set", "ServerPort=4711", "--save", form,
                          TREE / "programs/form_host/sample.form")
        self.assertEqual(self.install(), 0)
        shown = self.windows.must(host, form)
        self.assertIn('ServerAddress = "kept.example.com"', shown)
        self.assertIn("ServerPort = 4711", shown)
        products = self.windows.run("reg", "query", "HKCR\\Installer\\Products").stdout
        self.assertEqual(products.count("Installer\\Products\\"), 1, products)
        self.remove()
        self.assert_clean()

    def test_refuses_a_version_that_is_not_higher(self):
        self.assertEqual(self.install(self.newer), 0)
        self.assertEqual(self.install(), FATAL)
        self.remove(self.newer)
        rebuilt = installer_of(self.folder, VERSION, "rebuilt.msi", note="another build")
        self.assertEqual(self.install(), 0)
        self.assertEqual(self.install(rebuilt), FATAL)
        self.assertIn("done", self.script())
        conditions = must("msiinfo", "export", INSTALLER, "LaunchCondition")
        self.assertIn("A newer version of QuorvaneSecurity", conditions)

    def test_mends_a_damaged_installation(self):
        self.assertEqual(self.install(), 0)
        (self.windows.drive / PROGRAM_FOLDER / "QuorvaneSecurity.ocx").unlink()
        self.windows.must("reg", "delete", "HKCR\\CLSID\\{D87A57E7-81C3-11D5-97D8-0050BA8CAAD8}", "/f")
        self.assertNotIn("done", self.script())
        self.assertEqual(self.install(INSTALLER, "REINSTALL=ALL", "REINSTALLMODE=amus"), 0)
        self.assertIn("done", self.script())

    def test_takes_over_from_a_module_that_was_registered_by_hand(self):
        self.windows.must("regsvr32", "/s", MODULE)
        self.assertEqual(self.install(), 0)
        self.assertIn("done", self.script())
        classes = self.windows.classes()
        self.assertTrue(classes["CLSID\\{D87A57E7-81C3-11D5-97D8-0050BA8CAAD8}\\InprocServer32"][""]
                        .startswith("C:\\Program Files"))
        self.remove()
        self.assert_clean()

    def test_installs_into_a_folder_with_blanks_and_umlauts(self):
        self.assertEqual(self.install(INSTALLER, "INSTALLDIR=C:\\Prüfung der Übergabe"), 0)
        self.assertTrue((self.windows.drive / "Prüfung der Übergabe/QuorvaneSecurity.ocx").exists())
        self.assertIn(f"GetCRCValue={published_crc()[0]}\ndone", self.script())

    def test_removal_while_a_host_has_the_module_loaded(self):
        self.assertEqual(self.install(), 0)
        shutil.copy(self.windows.drive / PROGRAM_FOLDER / "examples/form_host.exe", self.folder)
        host = self.windows.start(self.folder / "form_host.exe", "--wait", TREE / "programs/form_host/sample.form")
        for line in host.stdout:
            if line.startswith("on screen:"):
                break
        self.remove()
        self.assertIsNone(host.poll(), "the host goes on")
        # Windows takes a file in use away at its next start; Wine leaves it.
        self.assertLessEqual(set(self.files()), {"QuorvaneSecurity.ocx"})
        host.communicate()
        self.assertEqual(added(self.windows.classes(), self.fresh), {})
        # What was left is in nobody's way.
        self.assertEqual(self.install(), 0)
        self.assertIn("done", self.script())
        self.remove()
        self.assert_clean()

    def test_a_folder_without_a_module_makes_no_installer(self):
        with tempfile.TemporaryDirectory() as empty:
            done = run(TREE / "packaging/make-installer", empty, self.folder / "rows", self.folder / "none.msi",
                       env=os.environ | {"QUORVANE_VERSION": VERSION, "SOURCE_DATE_EPOCH": "0"})
        self.assertEqual(done.returncode, 1)
        self.assertIn("holds no QuorvaneSecurity.ocx", done.stderr)
        self.assertFalse((self.folder / "none.msi").exists())


if __name__ == "__main__":
    unittest.main()

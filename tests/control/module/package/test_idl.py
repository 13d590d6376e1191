"""The interface text QuorvaneSecurity.idl says what the type library inside the module says.

The text is compiled by widl, whose result is read like the module's library. Where widl cannot express
something, the text itself is looked at. QUORVANE_WIDL names the compiler.
"""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from identities import MEMBERS
from module_under_test import SOURCES, resource
from msft_reader import TypeLibrary

TEXT = SOURCES / "docs/QuorvaneSecurity.idl"
STUBS = Path(__file__).parent / "idl"


def compiled(source, folder):
    """The library that widl makes of a text, with stand-ins for what it imports."""
    result = Path(folder) / (source.stem + ".tlb")
    subprocess.run([os.environ["QUORVANE_WIDL"], "--win32", "-I", STUBS, "-L", folder, "-t", "-o", result, source],
                   check=True, stdin=subprocess.DEVNULL)
    return result.read_bytes()


def without_argument_names(function):
    """widl drops the names of put arguments; the nameless return values have one for readers."""
    return function._replace(arguments=tuple(a._replace(name=None) for a in function.arguments))


def shape(entry):
    """A type without its functions and their place in the file."""
    return entry._replace(functions=(), members_at=0)


class InterfaceText(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            compiled(STUBS / "stdole2.idl", folder)
            cls.text = TypeLibrary(compiled(TEXT, folder))
        cls.module = TypeLibrary(resource("TYPELIB", 1))

    def test_library(self):
        for field in ("library_name", "library_id", "version", "locales", "system", "flags", "traits", "help_text",
                      "help_file", "help_contexts", "bucket_counts", "dispatch"):
            self.assertEqual(getattr(self.text, field), getattr(self.module, field), field)

    def test_imports(self):
        (text,), (module,) = self.text.imports, self.module.imports
        # widl writes the locale of the importing library; the imported one is neutral.
        self.assertEqual(text._replace(locale=0), module)

    def test_types(self):
        self.assertEqual([entry.name for entry in self.text.types], [entry.name for entry in self.module.types])
        for text, module in zip(self.text.types, self.module.types):
            with self.subTest(module.name):
                if module.name == "__SecurityCtrl":  # its version and flag are beyond widl
                    self.assertEqual(text.flags | 0x80, module.flags)
                    text = text._replace(version=module.version, flags=module.flags)
                self.assertEqual(shape(text), shape(module))

    def test_members(self):
        text, module = (library.types[0].functions for library in (self.text, self.module))
        self.assertEqual([without_argument_names(f) for f in text], [without_argument_names(f) for f in module])

    def test_argument_names_of_the_puts(self):
        in_text = re.findall(r"propput[^]]*\]\s*HRESULT (\w+)\(\[in\] \w+ (\w+)\);", TEXT.read_text(encoding="ascii"))
        module = [(f.name, f.arguments[0].name) for f in self.module.types[0].functions if f.invoke == 4]
        self.assertEqual(in_text, module)
        self.assertEqual(in_text, [(m[0], m[4]) for m in MEMBERS if m[4]])

    def test_version_and_flag_of_the_source_interface(self):
        head = re.search(r"\[([^]]*)\]\s*dispinterface __SecurityCtrl", TEXT.read_text(encoding="ascii"))[1]
        self.assertIn("version(1.16)", head)
        self.assertIn("nonextensible", head)

    def test_hashes_of_the_names_in_both(self):
        text, module = ({name.text: name.hash for name in library.names.values()}
                        for library in (self.text, self.module))
        shared = text.keys() & module.keys()
        self.assertGreater(len(shared), 25)
        self.assertEqual({name: text[name] for name in shared}, {name: module[name] for name in shared})


if __name__ == "__main__":
    unittest.main()

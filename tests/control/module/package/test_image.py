"""The file of the module as the loader of Windows sees it: format, exports, imports, the marks in its header."""

import unittest
from pathlib import Path

from module_under_test import PATH, SOURCES, data, image, symbols

I386 = 0x14C
DLL = 0x2000
DYNAMIC_BASE, NX_COMPATIBLE, NO_SEH = 0x40, 0x100, 0x400

# Writable is what is written to: data, the table of imports at load. The linker knows no other
# rights for resources.
RIGHTS = {".text": "RX", ".data": "RW", ".rdata": "R", ".eh_fram": "R", ".bss": "RW", ".edata": "R", ".idata": "RW",
          ".CRT": "R", ".rsrc": "RW", ".reloc": "R"}
LOADED_ON_FIRST_USE = {"wininet.dll", "iphlpapi.dll"}


def allowed_imports():
    """{library: entry points} of allowed_imports.txt."""
    allowed = {}
    for line in (Path(__file__).parent / "allowed_imports.txt").read_text(encoding="ascii").splitlines():
        words = line.partition("#")[0].split()
        if words and words[0].endswith(":"):
            entry_points = allowed.setdefault(words.pop(0)[:-1], set())
        for word in words:
            entry_points.add(word)
    return allowed


class Format(unittest.TestCase):
    def test_is_a_32_bit_library_for_windows(self):
        self.assertEqual(image().FILE_HEADER.Machine, I386)
        self.assertEqual(image().OPTIONAL_HEADER.Magic, 0x10B)
        self.assertTrue(image().FILE_HEADER.Characteristics & DLL)
        self.assertEqual(PATH.name, "QuorvaneSecurity.ocx")

    def test_loads_from_windows_xp_on(self):
        header = image().OPTIONAL_HEADER
        self.assertEqual(header.Subsystem, 2)  # Windows, with windows
        self.assertLessEqual((header.MajorSubsystemVersion, header.MinorSubsystemVersion), (5, 1))
        self.assertLessEqual((header.MajorOperatingSystemVersion, header.MinorOperatingSystemVersion), (5, 1))

    def test_data_is_not_executable_and_any_address_will_do(self):
        marks = image().OPTIONAL_HEADER.DllCharacteristics
        self.assertEqual(marks & (DYNAMIC_BASE | NX_COMPATIBLE), DYNAMIC_BASE | NX_COMPATIBLE)
        self.assertTrue(image().DIRECTORY_ENTRY_BASERELOC, "without relocations it cannot move")
        self.assertFalse(image().FILE_HEADER.Characteristics & 1, "relocations are stripped")

    def test_no_section_is_writable_and_executable(self):
        for section in image().sections:
            self.assertFalse(section.IMAGE_SCN_MEM_WRITE and section.IMAGE_SCN_MEM_EXECUTE, section.Name)

    def test_only_what_is_written_to_is_writable(self):
        rights = {}
        for section in image().sections:
            name = section.Name.rstrip(b"\0").decode()
            rights[name] = ("R" * section.IMAGE_SCN_MEM_READ + "W" * section.IMAGE_SCN_MEM_WRITE
                            + "X" * section.IMAGE_SCN_MEM_EXECUTE)
        self.assertEqual(rights, RIGHTS)

    def test_virtual_tables_and_constants_are_read_only(self):
        tables = [address for address, symbol in symbols() if symbol.startswith("vtable for quorvane::")]
        self.assertTrue(tables)
        for address in tables:
            section = image().get_section_by_rva(address - image().OPTIONAL_HEADER.ImageBase)
            self.assertEqual(section.Name.rstrip(b"\0"), b".rdata")

    def test_no_handler_of_structured_exceptions_is_called(self):
        self.assertTrue(image().OPTIONAL_HEADER.DllCharacteristics & NO_SEH)

    def test_bears_no_time_and_no_path_of_the_building_machine(self):
        self.assertEqual(image().FILE_HEADER.TimeDateStamp, 0)
        self.assertEqual(image().DIRECTORY_ENTRY_EXPORT.struct.TimeDateStamp, 0)
        self.assertEqual(image().DIRECTORY_ENTRY_RESOURCE.struct.TimeDateStamp, 0)
        self.assertFalse(hasattr(image(), "DIRECTORY_ENTRY_DEBUG"))
        for place in (SOURCES, PATH.parent, Path.home()):
            for encoding in ("utf-8", "utf-16-le"):
                self.assertNotIn((str(place) + "/").encode(encoding), data())

    def test_is_stripped_and_small(self):
        self.assertEqual(image().FILE_HEADER.NumberOfSymbols, 0)
        self.assertFalse([s.Name for s in image().sections if s.Name.startswith((b".debug", b"/"))])
        self.assertLessEqual(len(data()), 180 * 1024)

    def test_its_checksum_is_right(self):
        self.assertTrue(image().verify_checksum())


class Exports(unittest.TestCase):
    def test_are_the_four_doors_by_name_and_ordinal(self):
        exports = [(symbol.ordinal, symbol.name.decode(), symbol.forwarder)
                   for symbol in image().DIRECTORY_ENTRY_EXPORT.symbols]
        self.assertEqual(exports, [(1, "DllCanUnloadNow", None), (2, "DllGetClassObject", None),
                                   (3, "DllRegisterServer", None), (4, "DllUnregisterServer", None)])

    def test_bear_the_name_of_the_module(self):
        self.assertEqual(image().DIRECTORY_ENTRY_EXPORT.name, b"QuorvaneSecurity.ocx")


class Imports(unittest.TestCase):
    def imports(self):
        for library in image().DIRECTORY_ENTRY_IMPORT:
            for entry_point in library.imports:
                yield library.dll.decode().lower(), entry_point

    def test_are_entry_points_that_windows_xp_has(self):
        allowed = allowed_imports()
        strangers = [f"{library}: {entry_point.name or entry_point.ordinal}"
                     for library, entry_point in self.imports()
                     if (entry_point.name or b"").decode() not in allowed.get(library, ())]
        self.assertEqual(strangers, [], "see the head of allowed_imports.txt")

    def test_web_and_adapter_libraries_are_left_for_first_use(self):
        libraries = {library for library, _ in self.imports()}
        self.assertEqual(libraries & LOADED_ON_FIRST_USE, set())
        self.assertFalse(hasattr(image(), "DIRECTORY_ENTRY_DELAY_IMPORT"))


if __name__ == "__main__":
    unittest.main()

"""What the module carries beside its code: the two id tables, the pictures and the version block."""

import re
import struct
import unittest
import uuid

from identities import GENERATIONS
from module_under_test import SOURCES, image, resource, resources

ENGLISH = 1033


def picture_text(name):
    """(colours by letter, rows) of a text picture in control/resources."""
    text = (SOURCES / "control/resources" / name).read_text(encoding="ascii")
    head, _, rows = text.partition("\npixels\n")
    words = [line.split() for line in head.splitlines()]
    return {word[1]: word[2] for word in words if word[:1] == ["colour"]}, rows.split()


def bgr(colour):
    return bytes.fromhex(colour)[::-1]


class ResourceDirectory(unittest.TestCase):
    def test_holds_exactly_these(self):
        self.assertEqual(set(resources()), {
            ("TYPELIB", 1), ("TYPELIB", 2), ("_IID_SECURITYCTRL", 1), ("_SRCIID_SECURITYCTRL", 1), ("BITMAP", 30000),
            ("ICON", 1), ("GROUP_ICON", 30001), ("VERSION", 1)})

    def test_is_english_only(self):
        for name, languages in resources().items():
            self.assertEqual(list(languages), [ENGLISH], name)


class IdTables(unittest.TestCase):
    def check(self, kind, column):
        table = resource(kind, 1)
        self.assertEqual(len(table), 276)
        self.assertEqual(table[:4], struct.pack("<I", 272))
        ids = b"".join(uuid.UUID(generation[column]).bytes_le for generation in GENERATIONS)
        self.assertEqual(table[4:], ids)

    def test_interface_ids_stand_oldest_first_behind_their_size(self):
        self.check("_IID_SECURITYCTRL", 2)

    def test_source_ids_stand_oldest_first_behind_their_size(self):
        self.check("_SRCIID_SECURITYCTRL", 3)


class Pictures(unittest.TestCase):
    def test_toolbox_bitmap_is_16_by_15_in_24_bits(self):
        bitmap = resource("BITMAP", 30000)
        self.assertEqual(struct.unpack_from("<IiiHHI", bitmap), (40, 16, 15, 1, 24, 0))
        self.assertEqual(len(bitmap), 40 + 15 * 16 * 3)

    def test_toolbox_bitmap_shows_its_text_picture(self):
        colours, rows = picture_text("toolbox.txt")
        expected = b"".join(bgr(colours[letter]) for row in reversed(rows) for letter in row)
        self.assertEqual(resource("BITMAP", 30000)[40:], expected)

    def test_icon_group_has_one_picture_32_by_32_in_16_colours(self):
        group = resource("GROUP_ICON", 30001)
        size = len(resource("ICON", 1))
        self.assertEqual(struct.unpack("<HHHBBBBHHIH", group), (0, 1, 1, 32, 32, 16, 0, 1, 4, size, 1))

    def test_icon_is_32_by_32_in_16_colours(self):
        icon = resource("ICON", 1)
        colours_and_mask = 2 * 32
        self.assertEqual(struct.unpack_from("<IiiHHI", icon), (40, 32, colours_and_mask, 1, 4, 0))
        self.assertEqual(len(icon), 40 + 16 * 4 + 32 * 16 + 32 * 4)

    def test_icon_shows_its_text_picture(self):
        icon = resource("ICON", 1)
        palette = [icon[40 + 4 * i:43 + 4 * i] for i in range(16)]
        pixels, mask = icon[104:104 + 512], icon[616:]
        colours, rows = picture_text("control.txt")
        self.assertEqual([len(row) for row in rows], [32] * 32)
        for y, row in enumerate(reversed(rows)):
            for x, letter in enumerate(row):
                colour = palette[pixels[16 * y + x // 2] >> (0 if x % 2 else 4) & 0x0F]
                is_masked = mask[4 * y + x // 8] >> (7 - x % 8) & 1
                if colours[letter] == "transparent":
                    self.assertEqual((colour, is_masked), (b"\0\0\0", 1), (x, y))
                else:
                    self.assertEqual((colour, is_masked), (bgr(colours[letter]), 0), (x, y))


class VersionBlock(unittest.TestCase):
    def strings(self):
        (table,) = [table for (group,) in [image().FileInfo] for info in group
                    if info.Key == b"StringFileInfo" for table in info.StringTable]
        self.assertEqual(table.LangID, b"040904B0")
        return {key.decode(): value.decode() for key, value in table.entries.items()}

    def test_numbers_of_file_and_product(self):
        (fixed,) = image().VS_FIXEDFILEINFO
        for high, low in ((fixed.FileVersionMS, fixed.FileVersionLS),
                          (fixed.ProductVersionMS, fixed.ProductVersionLS)):
            self.assertEqual((high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF), (3, 9, 0, 1))

    def test_says_a_released_library_for_32_bit_windows(self):
        (fixed,) = image().VS_FIXEDFILEINFO
        self.assertEqual((fixed.FileFlags, fixed.FileOS, fixed.FileType, fixed.FileSubtype), (0, 4, 2, 0))

    def test_texts(self):
        strings = self.strings()
        for key, text in {"FileVersion": "3.09.0001", "ProductVersion": "3.09.0001",
                          "InternalName": "QuorvaneSecurity",
                          "OriginalFilename": "QuorvaneSecurity.ocx"}.items():
            self.assertEqual(strings[key], text)
        for key in ("CompanyName", "FileDescription", "LegalCopyright", "LegalTrademarks", "ProductName"):
            self.assertTrue(strings[key], key)

    def test_is_that_of_the_build_and_of_the_latest_changes(self):
        major, minor, revision = re.search(r"VERSION (\d+)\.(\d+)\.(\d+) LANGUAGES",
                                           (SOURCES / "CMakeLists.txt").read_text(encoding="utf-8")).groups()
        version = self.strings()["FileVersion"]
        self.assertEqual(version, f"{major}.{minor:0>2}.{revision:0>4}")
        self.assertEqual(re.search(r"^## (\S+)", (SOURCES / "CHANGELOG.md").read_text(encoding="utf-8"), re.M)[1], version)

    def test_marks_a_self_registering_server_by_an_empty_entry(self):
        self.assertEqual(self.strings()["OLESelfRegister"], "")

    def test_translation_is_english_in_unicode(self):
        translations = [variable.entry for (group,) in [image().FileInfo] for info in group
                        if info.Key == b"VarFileInfo" for variable in info.Var]
        self.assertEqual(translations, [{b"Translation": "0x0409 0x04b0"}])


if __name__ == "__main__":
    unittest.main()

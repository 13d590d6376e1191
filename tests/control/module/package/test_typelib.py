"""The type library inside the module, row by row from its raw bytes: what a compiler or a browser reads there."""

import unittest

from identities import CLASS_ID, FUNCTION, GENERATIONS, LIBRARY_ID, MARSHALLING_ID, MEMBERS, PUT
from module_under_test import resource
from msft_reader import NONE, TypeLibrary

DISPATCH, CLASS, ALIAS = 4, 5, 6
HRESULT = 25
IDISPATCH = "00020400-0000-0000-C000-000000000046"
NAME_OF_TYPE = 0x38


def name_hash(name):
    """The low half of the system's name hash for English: case is folded, Y counts as U, W as V."""
    value = 0x0DEADBEE
    for character in name.upper().translate(str.maketrans("YW", "UV")):
        value = (value * 37 + ord(character)) % 2**32
    return value % 65599 % 65536


def id_bucket(text):
    halves = text.replace("-", "")
    groups = [int(halves[i:i + 4], 16) for i in range(0, 16, 4)]
    # The last eight bytes are stored as they are written, so their 16-bit words are read the other way round.
    groups += [int(halves[i + 2:i + 4] + halves[i:i + 2], 16) for i in range(16, 32, 4)]
    bucket = 0
    for group in groups:
        bucket ^= group
    return bucket % 32


class LibraryCase(unittest.TestCase):
    maxDiff = None
    number = 1

    @classmethod
    def setUpClass(cls):
        cls.library = TypeLibrary(resource("TYPELIB", cls.number))
        cls.types = {entry.name: entry for entry in cls.library.types}


class Library(LibraryCase):
    def test_identity_and_version(self):
        self.assertEqual(self.library.library_name, "QuorvaneSecurity")
        self.assertEqual(self.library.library_id, LIBRARY_ID)
        self.assertEqual(self.library.version, (443, 16))

    def test_locale_is_english(self):
        self.assertEqual(self.library.locales, (1033, 1033))

    def test_is_a_control_library_for_32_bit_windows(self):
        self.assertEqual(self.library.flags, 0x02)
        self.assertEqual(self.library.system, 1)

    def test_help_text_and_file(self):
        self.assertEqual(self.library.help_text, "QuorvaneSecurity")
        has_help_file, as_always = 0x10, 0x40
        self.assertEqual(self.library.traits, has_help_file | as_always)
        self.assertEqual(self.library.help_file, "SecurityOCX.chm")
        self.assertEqual(self.library.help_contexts, (0, 0))

    def test_imports_idispatch_of_the_automation_library_only(self):
        (only,) = self.library.imports
        self.assertEqual(only.library_id, "00020430-0000-0000-C000-000000000046")
        self.assertEqual((only.file, only.version, only.locale), ("stdole2.tlb", (2, 0), 0))
        self.assertEqual((only.type_id, only.kind), (IDISPATCH, 3))
        self.assertEqual(self.library.dispatch, 1)

    def test_has_the_three_types_and_sixteen_aliases(self):
        aliases = [name for name, *_ in GENERATIONS[:-1]]
        self.assertEqual([entry.name for entry in self.library.types],
                         ["_SecurityCtrl", "__SecurityCtrl", "SecurityCtrl"] + aliases)

    def test_carries_no_custom_data(self):
        self.assertEqual(self.library.custom_data, NONE)
        for segment in ("custom_data", "custom_ids", "arrays", "unused_13", "unused_14"):
            self.assertEqual(self.library.bytes_of(segment), b"", segment)
        for entry in self.library.types:
            self.assertEqual((entry.custom_data, entry.help_text), (NONE, None), entry.name)

    def test_types_have_the_sizes_of_32_bit_windows(self):
        for entry in self.library.types:
            with self.subTest(entry.name):
                self.assertEqual((entry.alignments[0], entry.instance_size), (4, 4))
                wide = entry.kind == CLASS or entry.is_dual
                self.assertEqual(entry.alignments[1], 8 if wide else 4)

    def test_interfaces_have_one_base_and_the_class_two_interfaces(self):
        counts = {DISPATCH: 1, CLASS: 2, ALIAS: 0}
        for entry in self.library.types:
            self.assertEqual(entry.implemented_count, counts[entry.kind], entry.name)

    def test_only_the_interface_has_members(self):
        for entry in self.library.types:
            if entry.name != "_SecurityCtrl":
                with self.subTest(entry.name):
                    self.assertEqual((entry.functions, entry.variable_count, entry.table_size), ((), 0, 0))
                    self.assertEqual(entry.members_at, len(self.library.data))
                    self.assertEqual((entry.size_hints, entry.inherited), ((0, NONE), (0, 0)))

    def test_segments_fill_the_file_without_gap_or_overlap(self):
        segments = sorted(place for place in self.library.segments.values() if place[1])
        end = self.library.body_start
        for start, size in segments:
            self.assertEqual(start, end)
            end = start + size
        # Behind them stands the block of functions, of the only interface that has some.
        self.assertEqual(end, self.types["_SecurityCtrl"].members_at)
        self.assertEqual(self.library.functions_end, len(self.library.data))


class Interfaces(LibraryCase):
    def test_the_interface(self):
        entry = self.types["_SecurityCtrl"]
        self.assertEqual(entry.id, "80A6F5ED-2A74-4AA0-BD7A-211CF85AECE2")
        self.assertEqual(entry.version, (1, 16))
        self.assertEqual((entry.kind, entry.is_dual, entry.base), (DISPATCH, True, IDISPATCH))
        # dispatchable, automation-compatible, non-extensible, dual, hidden
        self.assertEqual(entry.flags, 0x1000 | 0x100 | 0x80 | 0x40 | 0x10)
        self.assertEqual(entry.inherited, (2, 7))
        self.assertEqual(entry.table_size, 4 * (7 + 15))
        self.assertEqual(entry.variable_count, 0)

    def test_the_source_interface_is_pure_dispatch_and_empty(self):
        entry = self.types["__SecurityCtrl"]
        self.assertEqual(entry.id, "1D54DF39-6000-4448-ABCE-DA756E22FFF9")
        self.assertEqual(entry.version, (1, 16))
        self.assertEqual((entry.kind, entry.is_dual), (DISPATCH, False))
        self.assertEqual(entry.flags, 0x1000 | 0x80 | 0x10)  # dispatchable, non-extensible, hidden
        self.assertIsNone(entry.base)

    def test_class_is_a_control_without_the_can_create_flag(self):
        entry = self.types["SecurityCtrl"]
        self.assertEqual((entry.kind, entry.id, entry.version), (CLASS, CLASS_ID, (1, 16)))
        self.assertEqual(entry.flags, 0x20)

    def test_class_has_a_default_interface_and_a_default_source(self):
        default, source = 1, 2
        self.assertEqual(self.types["SecurityCtrl"].implemented,
                         (("_SecurityCtrl", default), ("__SecurityCtrl", default | source)))

    def test_each_earlier_generation_is_a_hidden_alias(self):
        for name, minor, interface_id, _ in GENERATIONS[:-1]:
            with self.subTest(name):
                entry = self.types[name]
                self.assertEqual((entry.kind, entry.id), (ALIAS, interface_id))
                self.assertEqual((entry.version, entry.flags), ((1, minor), 0x10))
                self.assertEqual(entry.alias_of, ("type", "_SecurityCtrl"))


class Members(LibraryCase):
    def functions(self):
        return zip(MEMBERS, self.types["_SecurityCtrl"].functions, strict=True)

    def test_members_stand_in_the_order_of_the_virtual_table(self):
        for position, (member, function) in enumerate(self.functions()):
            with self.subTest(position=position + 1, name=member[0]):
                name, invoke, dispatch_id, *_ = member
                self.assertEqual((function.name, function.invoke, function.dispatch_id),
                                 (name, invoke, dispatch_id))
                self.assertEqual((function.vtable_offset, function.index), (4 * (7 + position), position))

    def test_members_return_hresult_by_the_standard_call_of_a_virtual_table(self):
        pure_virtual, standard_call = 1, 4
        for _, function in self.functions():
            self.assertEqual((function.result, function.function_kind, function.calling),
                             (HRESULT, pure_virtual, standard_call))
            self.assertEqual((function.flags, function.optional), (0, 0))

    def test_a_put_takes_its_named_value(self):
        for (name, invoke, _, value_type, argument, _), function in self.functions():
            if invoke == PUT:
                with self.subTest(name):
                    self.assertEqual(function.arguments, ((argument, value_type, 1),))
                    self.assertEqual((function.has_return_value, function.size), (False, 52 + 16))

    def test_a_get_and_the_function_hand_out_a_return_value(self):
        """It has the name of the put's argument where the put comes later: readers ask by the dispatch id, and find the
        first of the two."""
        puts = set()
        for (name, invoke, _, value_type, _, _), function in self.functions():
            if invoke == PUT:
                puts.add(name)
            else:
                with self.subTest(name):
                    later = [m[4] for m in MEMBERS if m[:2] == (name, PUT) and name not in puts]
                    self.assertEqual(function.arguments, ((later[0] if later else None, ("pointer", value_type), 2 | 8),))
                    self.assertEqual((function.has_return_value, function.size), (True, 52 + 16 + 8))

    def test_help_contexts(self):
        for (name, *_, help_context), function in self.functions():
            self.assertEqual(function.help_context, help_context, name)

    def test_get_and_put_of_a_property_refer_to_each_other(self):
        for (_, invoke, *_), function in self.functions():
            partner = self.types["_SecurityCtrl"].functions[function.partner]
            self.assertEqual(partner.name, function.name)
            self.assertEqual(partner is function, invoke == FUNCTION)


class Marshalling(LibraryCase):
    """The second library: what is an alias in the first is an interface in this one, an heir of the present interface
    that adds nothing, so that the system's marshaller finds something to go by."""

    number = 2

    def test_identity(self):
        self.assertEqual(self.library.library_name, "QuorvaneSecurityMarshalling")
        self.assertEqual(self.library.library_id, MARSHALLING_ID)
        self.assertEqual((self.library.version, self.library.flags, self.library.system), ((1, 0), 4, 1))
        self.assertEqual((self.library.traits, self.library.help_file), (0x40, None))

    def test_imports_the_present_interface_from_the_first_library(self):
        (only,) = self.library.imports
        self.assertEqual((only.library_id, only.version), (LIBRARY_ID, (443, 16)))
        self.assertEqual((only.type_id, only.kind), (GENERATIONS[-1][2], DISPATCH))
        self.assertEqual(self.library.dispatch, NONE)

    def test_holds_an_empty_heir_for_each_earlier_generation(self):
        interface = 3
        self.assertEqual([entry.name for entry in self.library.types], [name for name, *_ in GENERATIONS[:-1]])
        for (name, minor, interface_id, _), entry in zip(GENERATIONS, self.library.types):
            with self.subTest(name):
                self.assertEqual((entry.kind, entry.is_dual, entry.id, entry.version),
                                 (interface, False, interface_id, (1, minor)))
                self.assertEqual(entry.flags, 0x1000 | 0x100 | 0x10)  # dispatchable, automation-compatible, hidden
                self.assertEqual((entry.base, entry.implemented_count), (GENERATIONS[-1][2], 1))
                self.assertEqual((entry.functions, entry.variable_count), ((), 0))
                self.assertEqual((entry.table_size, entry.inherited), (4 * (7 + 15), (3, 7 + 15)))


class HashTables(LibraryCase):
    others = {LIBRARY_ID: 0xFFFFFFFE, IDISPATCH: 1, "00020430-0000-0000-C000-000000000046": 2}

    def test_hash_of_names_known_from_elsewhere(self):
        # As the interface compiler of mingw-w64 stores them.
        for name, known in {"QuorvaneSecurity": 0xF66E, "ServerAddress": 0x2260, "UseProxy": 0x257E,
                            "Password": 0xCEF0, "SecurityCtrl___v15": 0x6CBF}.items():
            self.assertEqual(name_hash(name), known, name)

    def test_every_name_is_found_by_its_hash(self):
        buckets = self.library.buckets("name_hash")
        self.assertEqual(len(buckets), 128)
        for offset, name in self.library.names.items():
            self.assertEqual(name.hash, name_hash(name.text), name.text)
            chain = self.library.chain(buckets[name.hash % 128], self.library.names)
            self.assertIn(offset, chain, name.text)

    def test_every_id_is_found_by_its_hash(self):
        buckets = self.library.buckets("id_hash")
        self.assertEqual(len(buckets), 32)
        for offset, entry in self.library.ids.items():
            chain = self.library.chain(buckets[id_bucket(entry.id)], self.library.ids)
            self.assertIn(offset, chain, entry.id)

    def test_no_bucket_holds_a_stranger(self):
        for segment, entries in (("name_hash", self.library.names), ("id_hash", self.library.ids)):
            chained = [offset for head in self.library.buckets(segment)
                       for offset in self.library.chain(head, entries)]
            self.assertEqual(sorted(chained), sorted(entries), segment)
        self.assertEqual(self.library.bucket_counts, (32, 128))

    def test_names_are_counted_and_distinct(self):
        texts = [name.text for name in self.library.names.values()]
        self.assertEqual(len({text.lower() for text in texts}), len(texts))
        self.assertEqual(self.library.name_count, len(texts))
        self.assertEqual(self.library.name_characters, sum(map(len, texts)))

    def test_names_know_their_owner(self):
        entries = {name: offset for name, offset in zip(self.types, self.library.entries)}
        members = {name for name, *_ in MEMBERS}
        for name in self.library.names.values():
            with self.subTest(name.text):
                if name.text in entries:
                    self.assertEqual((name.owner, name.flags), (entries[name.text], NAME_OF_TYPE))
                elif name.text in members:
                    self.assertEqual((name.owner, name.flags), (entries["_SecurityCtrl"], 0))
                else:  # the library and the arguments
                    self.assertEqual((name.owner, name.flags), (NONE, 0))

    def test_ids_know_what_they_identify(self):
        expected = dict(self.others)
        for entry, offset in zip(self.library.types, self.library.entries):
            expected[entry.id] = offset
        self.assertEqual({entry.id: entry.reference for entry in self.library.ids.values()}, expected)


class MarshallingHashTables(HashTables):
    number = 2
    others = {MARSHALLING_ID: 0xFFFFFFFE, GENERATIONS[-1][2]: 1, LIBRARY_ID: 2}


if __name__ == "__main__":
    unittest.main()

"""Reads a type library file (MSFT format) from its raw bytes, for the package tests.

Written apart from the writer in control/resources and sharing nothing with it. It refuses with
ValueError what does not fit together; what the values are is for the tests to judge.
"""

import struct
import uuid
from typing import NamedTuple

NONE = 0xFFFFFFFF
SEGMENTS = ("types", "imported_types", "imported_libraries", "class_interfaces", "id_hash", "ids",
            "name_hash", "names", "texts", "descriptions", "arrays", "custom_data", "custom_ids",
            "unused_13", "unused_14")


class Name(NamedTuple):
    text: str
    owner: int
    next: int
    flags: int
    hash: int


class Id(NamedTuple):
    id: str
    reference: int
    next: int


class Function(NamedTuple):
    name: str
    dispatch_id: int
    invoke: int
    function_kind: int
    calling: int
    has_return_value: bool
    size: int  # of the platform's description of the function in memory
    flags: int
    vtable_offset: int
    result: object
    arguments: tuple
    optional: int
    help_context: int
    partner: int
    index: int


class Argument(NamedTuple):
    name: str  # None where it has none
    type: object
    flags: int


class Type(NamedTuple):
    name: str
    kind: int
    is_dual: bool
    id: str
    version: tuple
    flags: int
    alignments: tuple
    size_hints: tuple
    instance_size: int
    members_at: int
    table_size: int
    functions: tuple
    variable_count: int
    implemented_count: int
    implemented: tuple  # of a class: (name of the type, flags)
    base: object        # of an interface: name of the imported type
    inherited: tuple    # of an interface: depth, count of methods
    alias_of: object
    help_text: object
    custom_data: int


class Import(NamedTuple):
    library_id: str
    version: tuple
    locale: int
    file: str
    type_id: str
    kind: int


class TypeLibrary:
    def __init__(self, data):
        self.data = data
        if self.u32(0) != 0x5446534D or self.u32(4) != 0x00010002:
            raise ValueError("not a type library")
        self.type_count = self.u32(0x20)
        directory = 0x54 + 4 * self.type_count
        self.segments = {}
        for number, segment in enumerate(SEGMENTS):
            start, size, mark, kind = struct.unpack_from("<4I", data, directory + 16 * number)
            if (mark, kind) != (NONE, 0x0F) or (start == NONE) != (size == 0):
                raise ValueError(f"segment {segment} has a wrong directory entry")
            self.segments[segment] = (start, size)
        self.body_start = directory + 16 * len(SEGMENTS)
        self.names = dict(self.read_names())
        self.ids = dict(self.read_ids())
        self.read_header()
        self.imports = tuple(self.read_import(i) for i in range(self.u32(0x50)))
        self.entries = [self.u32(0x54 + 4 * i) for i in range(self.type_count)]
        self.types = tuple(self.read_type(i) for i in range(self.type_count))

    # --- raw access -----------------------------------------------------------------------------------

    def u16(self, at):
        return struct.unpack_from("<H", self.data, at)[0]

    def u32(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def place(self, segment, offset):
        """The place in the file of an offset into a segment."""
        start, size = self.segments[segment]
        if not 0 <= offset < size:
            raise ValueError(f"offset {offset:#x} is outside segment {segment}")
        return start + offset

    def bytes_of(self, segment):
        start, size = self.segments[segment]
        return b"" if start == NONE else self.data[start:start + size]

    def text(self, offset):
        if offset == NONE:
            return None
        at = self.place("texts", offset)
        self.check_filling(at + 2 + self.u16(at))
        return self.data[at + 2:at + 2 + self.u16(at)].decode("ascii")

    def check_filling(self, at):
        if self.data[at:(at + 3) // 4 * 4].strip(b"W"):
            raise ValueError(f"the text before {at:#x} is not filled up with W")

    def name(self, offset):
        return None if offset == NONE else self.names[offset].text

    def id(self, offset):
        return self.ids[offset].id

    # --- tables ---------------------------------------------------------------------------------------

    def read_names(self):
        offset, size = 0, self.segments["names"][1]
        while offset < size:
            at = self.place("names", offset)
            length = self.data[at + 8]
            text = self.data[at + 12:at + 12 + length].decode("ascii")
            self.check_filling(at + 12 + length)
            yield offset, Name(text, self.u32(at), self.u32(at + 4), self.data[at + 9], self.u16(at + 10))
            offset += 12 + (length + 3) // 4 * 4
        if offset != size:
            raise ValueError("the last name is cut off")

    def read_ids(self):
        size = self.segments["ids"][1]
        if size % 24:
            raise ValueError("the last id is cut off")
        for offset in range(0, size, 24):
            at = self.place("ids", offset)
            text = str(uuid.UUID(bytes_le=self.data[at:at + 16])).upper()
            yield offset, Id(text, self.u32(at + 16), self.u32(at + 20))

    def buckets(self, segment):
        return struct.unpack(f"<{self.segments[segment][1] // 4}I", self.bytes_of(segment))

    @staticmethod
    def chain(head, entries):
        """The offsets of one bucket, in order."""
        offsets = []
        while head != NONE:
            if head in offsets:
                raise ValueError("a hash chain runs in a circle")
            offsets.append(head)
            head = entries[head].next
        return offsets

    def read_header(self):
        self.library_id = self.id(self.u32(0x08))
        self.locales = (self.u32(0x0C), self.u32(0x10))
        traits = self.u32(0x14)
        self.system = traits & 0x0F
        self.traits = traits & ~0x0F
        self.version = (self.u16(0x18), self.u16(0x1A))
        self.flags = self.u32(0x1C)
        self.help_text = self.text(self.u32(0x24))
        self.help_contexts = (self.u32(0x28), self.u32(0x2C))
        self.name_count = self.u32(0x30)
        self.name_characters = self.u32(0x34)
        self.library_name = self.name(self.u32(0x38))
        self.help_file = self.text(self.u32(0x3C))
        self.custom_data = self.u32(0x40)
        self.bucket_counts = (self.u32(0x44), self.u32(0x48))
        self.dispatch = self.u32(0x4C)

    def read_import(self, index):
        at = self.place("imported_types", 12 * index)
        head = self.u32(at)
        if not head & 0x10000:
            raise ValueError("an import is not by id")
        if head & 0xFFFF:
            raise ValueError("an import has an unknown mark")
        library = self.place("imported_libraries", self.u32(at + 4))
        length, mark = self.u16(library + 12) >> 2, self.u16(library + 12) & 3
        if mark != 1:
            raise ValueError("an imported library has an unknown mark")
        self.check_filling(library + 14 + length)
        file = self.data[library + 14:library + 14 + length].decode("ascii")
        return Import(self.id(self.u32(library)), (self.u16(library + 8), self.u16(library + 10)),
                      self.u32(library + 4), file, self.id(self.u32(at + 8)), head >> 24)

    # --- types ----------------------------------------------------------------------------------------

    def named_type(self, reference):
        """The name of a type of this library, or the id of an imported one."""
        if reference & 1:
            return self.imports[(reference & ~3) // 12].type_id
        at = self.place("types", reference)
        return self.name(self.u32(at + 0x34))

    def described(self, description):
        """A VARTYPE, ("pointer", VARTYPE) or ("type", name)."""
        if description & 0x80000000:
            if description >> 16 & 0x7FFF != description & 0xFFFF:
                raise ValueError(f"odd simple type {description:#x}")
            return description & 0xFFFF
        at = self.place("descriptions", description)
        kind, mark = self.u16(at), self.u16(at + 2)
        if kind == 26:
            target = self.described(self.u32(at + 4))
            if mark != 0x4000 | target:
                raise ValueError("a pointer is not marked as one to its target")
            return ("pointer", target)
        if kind == 29 and mark == 0x7FFF:
            return ("type", self.named_type(self.u32(at + 4)))
        raise ValueError(f"unknown description {kind}")

    def read_type(self, index):
        at = self.place("types", self.entries[index])
        head = self.u32(at)
        if head >> 16 != index or self.u32(at + 0x10) != 3:
            raise ValueError(f"type {index} has a wrong head")
        unused = [self.u32(at + place) for place in (0x14, 0x1C, 0x20, 0x24, 0x28, 0x40, 0x44, 0x5C)]
        if any(unused) or self.u32(at + 0x60) != NONE:
            raise ValueError(f"type {index} has something in a field without use")
        kind = head & 0x0F
        implemented_count, table_size = self.u16(at + 0x4C), self.u16(at + 0x4E)
        first, second = self.u32(at + 0x54), self.u32(at + 0x58)
        implemented, base, alias_of = (), None, None
        if kind == 5:
            implemented = tuple(self.read_implemented(first, implemented_count))
        elif kind == 6:
            alias_of = self.described(first)
        elif first != NONE:
            base = self.named_type(first)
        return Type(
            name=self.name(self.u32(at + 0x34)), kind=kind, is_dual=bool(head & 0x10),
            id=self.id(self.u32(at + 0x2C)), version=(self.u16(at + 0x38), self.u16(at + 0x3A)),
            flags=self.u32(at + 0x30), alignments=(head >> 11 & 0x1F, head >> 6 & 0x1F),
            size_hints=(self.u32(at + 0x08), self.u32(at + 0x0C)), instance_size=self.u32(at + 0x50),
            members_at=self.u32(at + 4), table_size=table_size,
            functions=tuple(self.read_functions(self.u32(at + 4), self.u16(at + 0x18))),
            variable_count=self.u16(at + 0x1A), implemented_count=implemented_count,
            implemented=implemented, base=base,
            inherited=(second & 0xFFFF, second >> 16), alias_of=alias_of,
            help_text=self.text(self.u32(at + 0x3C)), custom_data=self.u32(at + 0x48))

    def read_implemented(self, offset, count):
        for left in range(count, 0, -1):
            at = self.place("class_interfaces", offset)
            if self.u32(at + 8) != NONE:
                raise ValueError("custom data is not expected")
            yield self.named_type(self.u32(at)), self.u32(at + 4)
            offset = self.u32(at + 12)
            if (offset == NONE) != (left == 1):
                raise ValueError("the interfaces of a class are not as many as it says")

    def read_functions(self, at, count):
        if count == 0:
            return
        records_size = self.u32(at)
        records = at + 4
        columns = records + records_size
        at = records
        for i in range(count):
            if self.u32(columns + 4 * (2 * count + i)) != at - records:
                raise ValueError(f"function {i} is not where its column says")
            yield self.read_function(at, self.u32(columns + 4 * i), self.name(self.u32(columns + 4 * (count + i))))
            at += self.u16(at)
        if at != columns:
            raise ValueError("the functions are not as long as they say")
        self.functions_end = columns + 12 * count

    def read_function(self, at, dispatch_id, name):
        size, index = self.u16(at), self.u16(at + 2)
        calling = self.u32(at + 0x10)
        argument_count, optional = self.u16(at + 0x14), self.u16(at + 0x16)
        if calling & 0xB080:
            raise ValueError("custom data and default values are not expected")
        arguments_at = at + size - 12 * argument_count
        arguments = []
        for argument in range(arguments_at, at + size, 12):
            arguments.append(Argument(self.name(self.u32(argument + 4)), self.described(self.u32(argument)),
                                      self.u32(argument + 8)))
        help_context = self.u32(at + 0x18) if arguments_at - at > 0x18 else 0
        return Function(
            name=name, dispatch_id=dispatch_id, invoke=calling >> 3 & 0x0F, function_kind=calling & 7,
            calling=calling >> 8 & 0x0F, has_return_value=bool(calling & 0x4000), size=self.u16(at + 0x0E), flags=self.u32(at + 8), vtable_offset=self.u16(at + 0x0C),
            result=self.described(self.u32(at + 4)), arguments=tuple(arguments), optional=optional,
            help_context=help_context, partner=calling >> 16, index=index)

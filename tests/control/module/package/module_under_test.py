"""The module that the package tests look at: the file that the environment variable QUORVANE_MODULE names."""

import functools
import os
import re
from pathlib import Path

import pefile

PATH = Path(os.environ["QUORVANE_MODULE"])
SOURCES = Path(__file__).resolve().parents[4]

TYPES = {2: "BITMAP", 3: "ICON", 14: "GROUP_ICON", 16: "VERSION"}


@functools.cache
def data():
    return PATH.read_bytes()


@functools.cache
def image():
    return pefile.PE(data=data())


@functools.cache
def symbols():
    """[(address, symbol)] of what the linker put into the image, by the map beside it."""
    lines = PATH.with_suffix(".map").read_text(encoding="utf-8").splitlines()
    found = [re.fullmatch(r" +0x([0-9a-f]{8,16}) +(\S.*)", line) for line in lines]
    placed = [(int(match[1], 16), match[2]) for match in found if match]
    return [(address, symbol) for address, symbol in placed if address >= image().OPTIONAL_HEADER.ImageBase]


@functools.cache
def resources():
    """{(type, id): {language: bytes}}; system types by the name that a script gives them."""
    found = {}
    for kind in image().DIRECTORY_ENTRY_RESOURCE.entries:
        type_name = str(kind.name) if kind.name is not None else TYPES.get(kind.id, kind.id)
        for item in kind.directory.entries:
            item_id = str(item.name) if item.name is not None else item.id
            for language in item.directory.entries:
                place = language.data.struct
                found.setdefault((type_name, item_id), {})[language.id] = image().get_data(
                    place.OffsetToData, place.Size)
    return found


def resource(kind, number):
    """The bytes of a resource that exists in one language only."""
    (content,) = resources()[kind, number].values()
    return content

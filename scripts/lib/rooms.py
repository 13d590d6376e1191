"""The rooms of the house, as rooms.txt in the root of the repository lists them."""

from typing import NamedTuple


class Room(NamedTuple):
    """A row of the list."""

    name: str
    kind: str
    stands_on: list  # as the row says
    line: int


def read_rooms(root):
    """{name: Room}, in the order of the list."""
    rooms = {}
    for number, line in enumerate((root / "rooms.txt").read_text(encoding="utf-8").splitlines(), 1):
        words = line.split("#")[0].split()
        if words:
            name, kind, *stands_on = words
            rooms[name] = Room(name, kind, stands_on, number)
    return rooms


def names_of(rooms, *kinds):
    """The names of the rooms of these kinds."""
    return [room.name for room in rooms.values() if room.kind in kinds]


def portable_folders(rooms):
    """The folders that hold the portable library, with what lies in them: no room inside another one."""
    return [name for name in names_of(rooms, "library") if "/" not in name]

"""The painter's bands worked out by themselves: in floating point, each stored value rounded to 32 bits by struct."""

import struct

START = (196, 219, 249)
END = (255, 255, 255)


def single(value):
    """The nearest 32-bit float."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def bands(width, height, start=START, end=END, direction=1):
    """The bands of a surface of that many twips, as lists: left, top, right, bottom, red, green, blue."""
    if direction not in (0, 1):
        return []
    width, height = (size if -32768 <= size <= 32767 else 0 for size in (width, height))
    along, across = (height, width) if direction == 1 else (width, height)
    steps = [single((to - begin) / (along - 60) * 15) if along != 60 else 0.0 for begin, to in zip(start, end)]
    running = [float(channel) for channel in start]
    side = round(across / 15 - 2)
    made = []
    for index in range(round(along / 15 - 5) + 1):
        band = [0, index, side, index + 3] if direction == 1 else [index, 0, index + 3, side]
        made.append(band + [round(channel) for channel in running])
        running = [single(channel + step) for channel, step in zip(running, steps)]
    return made


def pixels(width, height, painted):
    """What bands leave on a surface of that many pixels: a colour, or None where nothing was painted, by (x, y)."""
    surface = {(x, y): None for x in range(width) for y in range(height)}
    for left, top, right, bottom, *colour in painted:
        for x in range(max(left, 0), min(right, width)):
            for y in range(max(top, 0), min(bottom, height)):
                surface[x, y] = tuple(colour)
    return surface

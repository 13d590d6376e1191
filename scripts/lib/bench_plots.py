"""The plots of ./bench as SVG: speed against size, and cost against length."""

import html
import math
import re
from typing import NamedTuple

WIDTH, HEIGHT = 560, 320
LEFT, RIGHT, TOP, BOTTOM = 64, 150, 34, 44
OURS, BASE, LIMIT = "#c02020", "#606060", "#000000"
PEERS = {"zlib": "#2060b0", "boost": "#208050", "icu": "#7040a0", "curl_easy_escape": "#2060b0"}
OTHER = "#a06000"


class Family(NamedTuple):
    """Groups whose names are a word and a size."""

    title: str
    names: tuple
    unit: str
    ours: str
    limit: str = ""  # the variant that does nothing but what cannot be spared


FAMILIES = (
    Family("CRC-32 of an array", ("Array",), "bytes", "GetByteArrayCrc32", "copy_alone"),
    Family("CRC-32 of a file", ("File", "LargeFile"), "bytes", "GetFileCrc32", "reads_alone"),
    Family("Form encoding of a form's body", ("Form",), "characters", "FormEncode", "copy_alone"),
    Family("Replace-all, a match at each character", ("Each",), "characters", "ReplaceAll", "copy_alone"),
    Family("Replace-all, no match", ("None",), "characters", "ReplaceAll", "copy_alone"),
    Family("Painting a surface, 400 pixels wide", ("Surface",), "twips", "DrawGradient", "base_three_calls"),
    Family("Form post, by the length of the reply", ("Reply",), "bytes", "PostFormRequest", "base_bare_sequence"),
)


class Line(NamedTuple):
    label: str
    points: list  # (x, y)
    colour: str
    dashed: bool = False


def size_of(group, names):
    """The size at the end of a group's name; None if it is of another family."""
    found = re.fullmatch(r"([A-Za-z]+?)(\d+)([KM]?)", group)
    if not found or found[1] not in names:
        return None
    return int(found[2]) << {"": 0, "K": 10, "M": 20}[found[3]]


def sweep(run, where, family):
    """{variant: [(size, nanoseconds)]}, by size, of variants that were measured for more than one."""
    lines = {}
    for (place, name), sample in run.items():
        group, variant = name.split("/")
        size = size_of(group, family.names)
        if place == where and size is not None:
            lines.setdefault(variant, []).append((size, sample.median))
    return {variant: sorted(points) for variant, points in lines.items() if len(points) > 1}


def colour_of(variant, family):
    if variant in (family.ours, family.limit):
        return OURS if variant == family.ours else LIMIT
    return BASE if variant.startswith("base") else PEERS.get(variant, OTHER)


def label_of(variant, family):
    label = variant.removeprefix("base_").replace("_", " ")
    return f"{label} (limit)" if variant == family.limit else label


def speed_plot(run, where, family):
    """Sizes a microsecond against the size, both by powers of ten; None if this was not measured."""
    lines = [Line(label_of(variant, family), [(size, size * 1e3 / time) for size, time in points], colour_of(variant, family),
                  variant == family.limit) for variant, points in sorted(sweep(run, where, family).items())]
    unit = "MB/s" if family.unit == "bytes" else f"{family.unit} a microsecond"
    return draw(f"{family.title}, {where}", family.unit, unit, lines, LogAxis) if lines else None


def cost_plot(run, where, family):
    """Milliseconds against the length, and the straight line to the longest; None if this was not measured."""
    points = [(size, time / 1e6) for size, time in sweep(run, where, family).get(family.ours, [])]
    if not points:
        return None
    lines = [Line("straight", [(0, 0), points[-1]], LIMIT, True), Line(family.ours, points, OURS)]
    return draw(f"{family.title}, {where}", family.unit, "milliseconds", lines, LinearAxis)


class LogAxis:
    def __init__(self, values):
        self.low, self.high = math.log10(min(values)), math.log10(max(values))
        if self.high - self.low < 1e-9:
            self.high = self.low + 1

    def place(self, value):
        return (math.log10(value) - self.low) / (self.high - self.low)

    def ticks(self):
        digits = (1, 2, 5) if self.high - self.low < 2 else (1,)
        values = [digit * 10.0 ** power for power in range(math.floor(self.low), math.ceil(self.high) + 1) for digit in digits]
        return [value for value in values if -1e-9 <= self.place(value) <= 1 + 1e-9]


class LinearAxis:
    def __init__(self, values):
        self.high = max(values)

    def place(self, value):
        return value / self.high

    def ticks(self):
        step = 10.0 ** math.floor(math.log10(self.high))
        step = next(part for part in (step / 5, step / 2, step, 2 * step) if self.high / part <= 6)
        return [step * count for count in range(math.floor(self.high / step + 1e-9) + 1)]


def tick_label(value):
    for unit, size in (("G", 1e9), ("M", 1e6), ("k", 1e3)):
        if value >= size:
            return f"{value / size:g} {unit}"
    return f"{value:g}"


def draw(title, x_label, y_label, lines, axis):
    x_axis = axis([x for line in lines for x, _ in line.points])
    y_axis = axis([y for line in lines for _, y in line.points])
    right, bottom = WIDTH - RIGHT, HEIGHT - BOTTOM

    def place(x, y):
        return LEFT + x_axis.place(x) * (right - LEFT), bottom - y_axis.place(y) * (bottom - TOP)

    def text(x, y, words, anchor="middle", more=""):
        parts.append(f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" {more}>{html.escape(words)}</text>')

    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" width="{WIDTH}" height="{HEIGHT}" '
             'font-family="sans-serif" font-size="11">', f"<title>{html.escape(title)}</title>",
             f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
             f'<path d="M{LEFT},{TOP}V{bottom}H{right}" fill="none" stroke="black"/>']
    text(LEFT, 18, title, "start", 'font-size="13" font-weight="bold"')
    text((LEFT + right) / 2, HEIGHT - 8, x_label)
    text(12, (TOP + bottom) / 2, y_label, more=f'transform="rotate(-90 12 {(TOP + bottom) / 2:.1f})"')
    for value in x_axis.ticks():
        x = LEFT + x_axis.place(value) * (right - LEFT)
        parts.append(f'<path d="M{x:.1f},{TOP}V{bottom}" stroke="#e4e4e4"/>')
        text(x, bottom + 15, tick_label(value))
    for value in y_axis.ticks():
        y = bottom - y_axis.place(value) * (bottom - TOP)
        parts.append(f'<path d="M{LEFT},{y:.1f}H{right}" stroke="#e4e4e4"/>')
        text(LEFT - 5, y + 4, tick_label(value), "end")
    for line in lines:
        places = [place(*point) for point in line.points]
        path = "L".join(f"{x:.1f},{y:.1f}" for x, y in places)
        parts.append(f'<path d="M{path}" fill="none" stroke="{line.colour}" stroke-width="{2 if line.colour == OURS else 1.2}"'
                     + (' stroke-dasharray="5 4"' if line.dashed else "") + "/>")
        if not line.dashed:
            parts += [f'<circle cx="{x:.1f}" cy="{y:.1f}" r="2" fill="{line.colour}"/>' for x, y in places]
    ends = sorted((place(*line.points[-1])[1], line) for line in lines)
    lowest = TOP - 14
    for y, line in ends:  # labels where the lines end, none over another
        lowest = max(y, lowest + 14)
        text(right + 6, lowest + 4, line.label, "start", f'fill="{line.colour}"')
    return "\n".join([*parts, "</svg>\n"])

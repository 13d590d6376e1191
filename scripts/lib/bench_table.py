"""What ./bench measured, beside the goals (benchmarks/goals.csv) and the recorded run (benchmarks/recorded.csv).

A variant is named GROUP/VARIANT, as its program does. Ratios are speeds: how many times as fast as what it stands beside.
Where a goal is an upper bound, ratios are shown as times instead: how many times as long.
"""

import csv
import io
import json
import math
import os
import re
from typing import NamedTuple

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
BY_HAND = "by hand"
PLACES = ("native", "wine", BY_HAND)
GOAL_COLUMNS = ["work", "where", "variant", "beside", "goal", "unit", "limit"]
RECORD_COLUMNS = ["where", "variant", "beside", "value", "spread", "date"]


class BadInput(Exception):
    """A file that is not what it should be; the text says which and why."""


class Sample(NamedTuple):
    """The repetitions of one variant."""

    median: float  # nanoseconds
    spread: float  # from the 10th to the 90th percentile, as a share of the median


class Ratio(NamedTuple):
    value: float
    spread: float  # a share of the value


class Record(NamedTuple):
    value: float
    spread: float
    date: str


class Goal(NamedTuple):
    """A row of the goals."""

    work: str
    where: str
    variant: str
    beside: str
    is_upper: bool  # a time that is not to be exceeded; else a speed to be reached
    bound: float
    unit: str
    limit: str  # why it is not met, if it is not

    @property
    def text(self):
        return f"{'<=' if self.is_upper else '>='} {self.bound:g}" + (f" {self.unit}" if self.unit != "x" else "")

    @property
    def key(self):
        return (self.where, self.variant, self.beside)


class Row(NamedTuple):
    """A row of the table that is shown."""

    work: str
    variant: str
    now: str
    goal: str
    recorded: str
    verdict: str
    limit: str = ""


# --- reading


def percentile(values, share):
    return sorted(values)[int(share * (len(values) - 1) + 0.5)]


def sample_of(times):
    median = percentile(times, 0.5)
    return Sample(median, (percentile(times, 0.9) - percentile(times, 0.1)) / median)


def read_samples(text, name):
    """{variant: Sample} of a program's output. `name` is for messages."""
    try:
        runs = json.loads(text)["benchmarks"]
        times = {}
        for run in runs:
            if run.get("error_occurred"):
                raise BadInput(f"{name}: {run['run_name']} failed: {run.get('error_message', '')}")
            if run["run_type"] == "iteration":
                group, variant = run["run_name"].split("/")[:2]
                times.setdefault(f"{group}/{variant}", []).append(float(run["real_time"]) * NANOSECONDS[run["time_unit"]])
    except (ValueError, KeyError, TypeError, AttributeError) as error:
        raise BadInput(f"{name}: its results cannot be read ({error!r})") from error
    if not times:
        raise BadInput(f"{name}: it measured nothing")
    for variant, values in times.items():
        if not all(math.isfinite(value) and value > 0 for value in values):
            raise BadInput(f"{name}: {variant} took no time, or none that is a number")
    return {variant: sample_of(values) for variant, values in times.items()}


def read_rows(path, columns):
    with open(path, encoding="utf-8", newline="") as file:
        rows = csv.DictReader(file)
        if rows.fieldnames != columns:
            raise BadInput(f"{path}: its columns are not {','.join(columns)}")
        for row in rows:
            if None in row or None in row.values():
                raise BadInput(f"{path}:{rows.line_num}: not {len(columns)} columns")
            if row["where"] not in PLACES:
                raise BadInput(f"{path}:{rows.line_num}: {row['where']} is none of {', '.join(PLACES)}")
            yield rows.line_num, row


def read_goals(path):
    goals = []
    for line, row in read_rows(path, GOAL_COLUMNS):
        goal = re.fullmatch(r"(<=|>=) (\d+(?:\.\d+)?)", row["goal"])
        if not goal or not float(goal[2]):
            raise BadInput(f"{path}:{line}: {row['goal']} is no goal; one reads `>= 7`, or `<= 3` for a time")
        if row["where"] == BY_HAND:
            row["variant"], row["beside"] = row["work"], ""
        elif "/" not in row["variant"] or "/" not in row["beside"]:
            raise BadInput(f"{path}:{line}: a variant is named GROUP/VARIANT")
        goals.append(Goal(row["work"], row["where"], row["variant"], row["beside"], goal[1] == "<=", float(goal[2]),
                          row["unit"], row["limit"]))
    return goals


def read_recorded(path):
    """{(where, variant, beside): Record}; none where there is no such file yet."""
    if not os.path.exists(path):
        return {}
    recorded = {}
    for line, row in read_rows(path, RECORD_COLUMNS):
        try:
            record = Record(float(row["value"]), float(row["spread"] or 0), row["date"])
        except ValueError as error:
            raise BadInput(f"{path}:{line}: {error}") from error
        if not record.value > 0:
            raise BadInput(f"{path}:{line}: {row['value']} is no ratio")
        recorded[row["where"], row["variant"], row["beside"]] = record
    return recorded


# --- comparing


def in_order(key):
    """Array64 comes before Array256."""
    return [[int(part) if part.isdigit() else part for part in re.split(r"(\d+)", word)] for word in key]


def group_of(variant):
    return variant.split("/")[0]


def speed(run, where, variant, beside):
    """How many times as fast as `beside`; None unless both were measured. `run` is {(where, variant): Sample}."""
    mine, other = run.get((where, variant)), run.get((where, beside))
    if mine is None or other is None:
        return None
    return Ratio(other.median / mine.median, math.hypot(mine.spread, other.spread))


def pairs(run, goals):
    """{(where, variant, beside): Ratio} of all that was measured: beside the base of its group, and as the goals want."""
    bases = {(where, group_of(variant)): variant for where, variant in run if variant.split("/")[1].startswith("base")}
    wanted = [(where, variant, bases.get((where, group_of(variant)), variant)) for where, variant in run]
    wanted += [goal.key for goal in goals]
    return {key: ratio for key in sorted(wanted, key=in_order) if key[1] != key[2] and (ratio := speed(run, *key))}


def change(now, recorded):
    """What became of a recorded ratio. A difference counts when it is larger than the spread of either run."""
    if recorded is None:
        return "not recorded"
    difference = now.value / recorded.value - 1
    if abs(difference) <= max(now.spread, recorded.spread):
        return "as recorded"
    return f"{'faster' if difference > 0 else 'slower'} than recorded by {abs(difference):.0%}"


def is_met(goal, value):
    """Of a value as it is shown: a time for an upper bound."""
    return value <= goal.bound if goal.is_upper else value >= goal.bound


def verdict(goal, value, spread):
    met = "met" if is_met(goal, value) else "not met"
    return f"{met}, within the spread" if abs(value / goal.bound - 1) <= spread else met


def number(value):
    return f"{value:.3g}" if value < 1000 else f"{value:.0f}"


def shown(value, spread=None):
    return number(value) + (f" ({spread:.0%})" if spread is not None else "")


def goal_row(goal, ratios, recorded):
    """The row of a goal; None where this run did not measure it."""
    record = recorded.get(goal.key)
    if goal.where == BY_HAND:
        verdict_of_record = f"{verdict(goal, record.value, 0)}, {record.date}" if record else "not recorded"
        value = shown(record.value) + f" {goal.unit}" if record else "-"
        return Row(goal.work, "by hand", "-", goal.text, value, verdict_of_record, goal.limit)
    now = ratios.get(goal.key)
    if now is None:
        return None
    turned = (lambda value: 1 / value) if goal.is_upper else (lambda value: value)
    return Row(goal.work, f"{goal.where} {goal.variant}", shown(turned(now.value), now.spread), goal.text,
               shown(turned(record.value)) if record else "-",
               f"{verdict(goal, turned(now.value), now.spread)}; {change(now, record)}", goal.limit)


def table(goals, ratios, recorded, with_all):
    """The rows: those of the goals, then other variants, all of them or those that are not as recorded."""
    rows = [row for goal in goals if (row := goal_row(goal, ratios, recorded))]
    seen = {goal.key for goal in goals}
    for key, ratio in ratios.items():
        record = recorded.get(key)
        what = change(ratio, record)
        if key not in seen and (with_all or "than recorded" in what):
            where, variant, beside = key
            rows.append(Row(f"beside {beside}", f"{where} {variant}", shown(ratio.value, ratio.spread), "-",
                            shown(record.value) if record else "-", what))
    return rows


def unmeasured(goals, ratios):
    """The goals that a whole run should have measured and did not."""
    return [f"{goal.where} {goal.variant} beside {goal.beside}" for goal in goals
            if goal.where != BY_HAND and goal.key not in ratios]


def as_text(rows):
    lines = [Row("work", "variant", "now", "goal", "recorded", "verdict"), *rows]
    widths = [max(len(line[column]) for line in lines) for column in range(5)]
    return "\n".join("  ".join([*(line[column].ljust(width) for column, width in enumerate(widths)), line.verdict])
                     for line in lines)


# --- writing


def write_whole(path, text):
    """All of the file or nothing."""
    part = f"{path}.part"
    with open(part, "w", encoding="utf-8", newline="\n") as file:
        file.write(text)
    os.replace(part, path)


def recorded_text(ratios, recorded, date):
    """The recorded table after this run: its ratios, and what was recorded by hand."""
    kept = {key: record for key, record in recorded.items() if key[0] == BY_HAND}
    new = {key: Record(ratio.value, ratio.spread, date) for key, ratio in ratios.items()}
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(RECORD_COLUMNS)
    for key, record in (kept | new).items():
        writer.writerow([*key, f"{record.value:.4g}", f"{record.spread:.2f}", record.date])
    return text.getvalue()

#!/usr/bin/env python3
"""Prints the table of ratios of a benchmark run, and writes docs/performance.md and its chart.

usage: report.py [--docs DIRECTORY] MEMORY.json DISK.json [SCALING.json]

The files are what brimlet_bench wrote on a memory file system, on a disk, and for its scaling run. Without --docs
nothing is written.
"""
import argparse
import datetime
import json
import math
import pathlib
import statistics

HERE = pathlib.Path(__file__).parent

# The targets: the greatest ratios to the baselines, in processor time on a memory file system.
TARGETS = {  # workload: (of qt, of floor)
    "addEvents of 1,000": (1.00, 3.2),
    "addEvents of 20,000": (1.00, 3.2),
    "getEvents returning 1,000": (1.10, 3.3),
    "getEvents returning 100,000": (1.10, 3.3),
    "addDevices of 200": (1.00, 3.6),
    "getDevices of 200": (1.50, 6.0),
    "getDevice": (1.25, None),
    "addUsers of 10,000": (1.05, 4.0),
    "getUsers of 10,000": (1.05, 4.0),
    "getUser": (1.25, None),
    "getSites of 5,000": (1.05, 3.0),
    "getSite": (1.25, None),
}
# The same for single writes on a disk, in elapsed time.
DISK_TARGETS = {
    "addEvent": (1.10, 1.80),
    "updateUser": (1.10, 1.80),
}
PEAK_TARGETS = {"getEvents returning 100,000": 1.2}

GROWTH_LIMIT = 2.3  # of an operation on all rows, for twice the rows
GROUPS = [  # of the scaling run: title, what the size counts, the operations on all rows, those of a fixed amount
    ("Events", "events in the store",
     ["getEvents, all", "clearEventsBeforeDateExceptAffects, half"],
     ["addEvents of 1,000", "addEvent", "getEvents returning 1,000"]),
    ("Devices", "devices",
     ["addDevices, all", "getDevices, all"],
     ["getDevice"]),
    ("Users", "users",
     ["addUsers, all", "getUsers, all", "getUsersWithParams, 1 of all"],
     ["getUser", "updateUser"]),
    ("Sites", "sites",
     ["getSites, all"],
     ["getSite"]),
]


def median(result, name, clock):
    return statistics.median(result[name][clock])


def ratio(result, other, clock):
    return median(result, "brimlet", clock) / median(result, other, clock)


def time_text(seconds):
    for unit, factor in (("s", 1), ("ms", 1e3), ("µs", 1e6)):
        if seconds * factor >= 1 or unit == "µs":
            value = seconds * factor
            return f"{value:.3g} {unit}" if value < 1000 else f"{value:.0f} {unit}"


def size_text(kib):
    return f"{kib / 1024:.1f} MiB" if kib >= 1024 else f"{kib} KiB"


def against(value, target):
    """A ratio with its target, and a mark if it is missed."""
    if target is None:
        return f"{value:.2f}"
    return f"{value:.2f} (≤ {target:.2f})" + ("" if round(value, 2) <= target else " ✗")


def markdown(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|---" + "|---:" * (len(head) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def plain(head, rows):
    widths = [max(len(row[i]) for row in [head, *rows]) for i in range(len(head))]
    def line(row):
        return "  ".join(cell.ljust(w) if i == 0 else cell.rjust(w) for i, (cell, w) in enumerate(zip(row, widths)))
    return "\n".join(line(row).rstrip() for row in [head, *rows])


def ratio_table(run, clock, targets):
    head = ["work", "brimlet", "x qt", "x floor"]
    rows = []
    for result in run["results"]:
        of_qt, of_floor = targets.get(result["workload"], (None, None))
        rows.append([
            result["workload"],
            time_text(median(result, "brimlet", clock)),
            against(ratio(result, "qt", clock), of_qt),
            against(ratio(result, "floor", clock), of_floor),
        ])
    return head, rows


def peak_table(run):
    head = ["work", "brimlet", "qt", "floor", "x qt"]
    rows = []
    for result in run["results"]:
        peaks = {name: result[name]["peak"] for name in ("brimlet", "qt", "floor")}
        target = PEAK_TARGETS.get(result["workload"])
        rows.append([result["workload"], *map(size_text, peaks.values()),
                     against(peaks["brimlet"] / max(peaks["qt"], 1), target)])
    return head, rows


# ---- Scaling ----

def series(run, workload, name="brimlet"):
    """(size, seconds) of an operation, by size."""
    return sorted((result["size"], median(result, name, "cpu"))
                  for result in run["results"] if result["workload"] == workload)


def doubling(first, second):
    """The factor by which the time grows for twice the size, between two points."""
    return (second[1] / first[1]) ** (math.log(2) / math.log(second[0] / first[0]))


def list_growth(run):
    head = ["operation on all rows", "sizes", "brimlet", "x for twice the rows", "floor's"]
    rows = []
    for _, counted, lists, _ in GROUPS:
        for workload in lists:
            points, floor = series(run, workload), series(run, workload, "floor")
            for a, b, c, d in zip(points, points[1:], floor, floor[1:]):
                rows.append([workload, f"{a[0]:,} to {b[0]:,} {counted}", f"{time_text(a[1])} to {time_text(b[1])}",
                             against(doubling(a, b), GROWTH_LIMIT), f"{doubling(c, d):.2f}"])
    return head, rows


def single_growth(run):
    head = ["operation of a fixed amount", "sizes", "brimlet", "growth", "floor's"]
    rows = []
    for _, counted, _, singles in GROUPS:
        for workload in singles:
            points, floor = series(run, workload), series(run, workload, "floor")
            if len(points) < 2:
                continue
            (small, start), (large, end) = points[0], points[-1]
            rows.append([workload, f"{small:,} to {large:,} {counted}", f"{time_text(start)} to {time_text(end)}",
                         against(end / start, math.log(large) / math.log(small)),
                         f"{floor[-1][1] / floor[0][1]:.2f}"])
    return head, rows


# ---- Chart ----

COLOURS = ["#3b82c4", "#d9822b", "#3a9d5d", "#b65fcf", "#c9483b"]  # readable on white and on black
GREY = "#8a8a8a"
PANEL_WIDTH, PANEL_HEIGHT = 560, 360
LEFT, RIGHT, TOP, BOTTOM = 62, 210, 34, 46


class Axis:
    """A logarithmic scale from a range of values to a range of pixels."""

    def __init__(self, low, high, start, end):
        self.low, self.high = math.floor(math.log10(low) + 1e-9), math.ceil(math.log10(high) - 1e-9)
        self.high = max(self.high, self.low + 1)
        self.start, self.end = start, end

    def at(self, value):
        part = (math.log10(value) - self.low) / (self.high - self.low)
        return self.start + part * (self.end - self.start)

    def decades(self):
        return [10.0 ** i for i in range(self.low, self.high + 1)]


def apart(positions, least):
    """The positions in ascending order, moved so that any two differ by at least `least`."""
    moved = []
    for position in sorted(positions):
        moved.append(max(position, moved[-1] + least) if moved else position)
    return moved


def text(x, y, words, anchor="middle", colour=GREY, weight="normal"):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" fill="{colour}" font-weight="{weight}">'
            f"{words}</text>")


def path(x, y, points, colour, style):
    steps = " L".join(f"{x.at(size):.1f} {y.at(seconds):.1f}" for size, seconds in points)
    return f'<path d="M{steps}" fill="none" stroke="{colour}" {style}/>'


def panel(run, left, top, group):
    title, counted, lists, singles = group
    drawn = [(workload, series(run, workload), series(run, workload, "floor")) for workload in lists + singles]
    drawn = [each for each in drawn if each[1]]
    values = [point for _, ours, floor in drawn for point in ours + floor]
    x = Axis(min(p[0] for p in values), max(p[0] for p in values), left + LEFT, left + PANEL_WIDTH - RIGHT)
    y = Axis(min(p[1] for p in values), max(p[1] for p in values), top + PANEL_HEIGHT - BOTTOM, top + TOP)
    parts = [text(left + LEFT, top + 18, title, "start", GREY, "bold")]
    for size in x.decades():
        parts.append(f'<path d="M{x.at(size):.1f} {y.start} V{y.end}" stroke="{GREY}" stroke-opacity="0.25"/>')
        parts.append(text(x.at(size), y.start + 18, f"{size:,.0f}"))
    for seconds in y.decades():
        parts.append(f'<path d="M{x.start} {y.at(seconds):.1f} H{x.end}" stroke="{GREY}" stroke-opacity="0.25"/>')
        parts.append(text(x.start - 8, y.at(seconds) + 4, time_text(seconds), "end"))
    parts.append(text((x.start + x.end) / 2, y.start + 36, counted))
    by_height = sorted(range(len(drawn)), key=lambda i: y.at(drawn[i][1][-1][1]))
    heights = apart([y.at(drawn[i][1][-1][1]) for i in by_height], 15)
    for i, height in zip(by_height, heights):
        workload, ours, floor = drawn[i]
        colour = COLOURS[i % len(COLOURS)]
        parts.append(path(x, y, floor, colour, 'stroke-width="1" stroke-dasharray="4 4"'))
        parts.append(path(x, y, ours, colour, 'stroke-width="2"'))
        parts += [f'<circle cx="{x.at(p[0]):.1f}" cy="{y.at(p[1]):.1f}" r="3" fill="{colour}"/>' for p in ours]
        label = workload.replace("clearEventsBeforeDateExceptAffects", "clearEvents…")
        parts.append(text(x.end + 10, height + 4, label, "start", colour))
    return parts


def drawing(run):
    width, height = 2 * PANEL_WIDTH, 2 * PANEL_HEIGHT + 26
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
             f'height="{height}" font-family="sans-serif" font-size="12">',
             "<title>Processor time of an operation against the size of the store</title>"]
    for i, group in enumerate(GROUPS):
        parts += panel(run, i % 2 * PANEL_WIDTH, i // 2 * PANEL_HEIGHT, group)
    parts.append(text(LEFT, height - 10, "Processor time of one call. Solid: brimlet; dashed: floor.", "start"))
    return "\n".join(parts + ["</svg>", ""])


# ---- The page ----

def page(memory, disk, scaling):
    on = memory["conditions"]
    parts = [
        "# Performance",
        "`scripts/bench` runs these benchmarks and writes this page. `scripts/bench --quick` runs them with few "
        "repetitions,\nwithout the scaling run, and writes nothing.",
        markdown(["measured", ""], [
            ["date", datetime.date.today().isoformat()],
            ["machine", f"{on['processor']}, {on['cores']} cores, {on['system']}, kernel {on['kernel']}"],
            ["versions", f"Qt {on['qt']}, SQLite {on['sqlite']}, simdjson {on['simdjson']}, {on['compiler']}"],
        ]).replace("---:", "---"),
        (HERE / "method.md").read_text().strip(),
        "## On a memory file system",
        "Processor time, with the target in parentheses; ✗ marks a target that is missed.",
        markdown(*ratio_table(memory, "cpu", TARGETS)),
        "## On a disk",
        "Elapsed time, which includes waiting for the disk.",
        markdown(*ratio_table(disk, "wall", DISK_TARGETS)),
        "## Peak memory",
        "The growth of a process that does the work once, measured before it releases the result.",
        markdown(*peak_table(memory)),
    ]
    if scaling:
        parts += [
            "## Scaling",
            "![Processor time of the operations against the size of the store](scaling.svg)",
            "Devices of the scaling run have 4 sections of 4 zones and 2 users of 2 links each.",
            markdown(*list_growth(scaling)),
            f"For twice the rows, the time of an operation on all rows may grow by a factor of {GROWTH_LIMIT}, that of "
            "the others by no more than\nthe logarithm of the size.",
            markdown(*single_growth(scaling)),
        ]
    parts.append((HERE / "findings.md").read_text().strip())
    return "\n\n".join(parts) + "\n"


def main():
    arguments = argparse.ArgumentParser(description="Reports a benchmark run.")
    arguments.add_argument("--docs", type=pathlib.Path)
    arguments.add_argument("runs", nargs="+", type=pathlib.Path)
    given = arguments.parse_args()
    memory, disk, *rest = [json.loads(run.read_text()) for run in given.runs]
    scaling = rest[0] if rest else None
    print("== on a memory file system, processor time (target in parentheses)")
    print(plain(*ratio_table(memory, "cpu", TARGETS)))
    print("== on a disk, elapsed time")
    print(plain(*ratio_table(disk, "wall", DISK_TARGETS)))
    print("== peak memory")
    print(plain(*peak_table(memory)))
    if scaling:
        print("== growth")
        print(plain(*list_growth(scaling)))
        print(plain(*single_growth(scaling)))
    if given.docs:
        if scaling:
            (given.docs / "scaling.svg").write_text(drawing(scaling))
        (given.docs / "performance.md").write_text(page(memory, disk, scaling))


if __name__ == "__main__":
    main()

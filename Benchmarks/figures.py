#!/usr/bin/env python3
"""What scripts/bench does with the figures of Bench.exe: compares them, keeps them, draws them.

  figures.py check BENCH [OPTION...]   runs BENCH; fails if a row has lost more than its spread in three tries
  figures.py keep BENCH [OPTION...]    runs BENCH three times and writes the figures of its rows into baseline.json
  figures.py plot                      draws baseline.json into docs/images/performance.png

BENCH is the command that runs Bench.exe, in one word. baseline.json holds ratios only, with the lowest and the
highest of the pairs of samples in all three runs: times depend on the machine, and one run is more even than
several. Drawing needs python3-matplotlib, which nothing else
does.
"""
import json
import pathlib
import re
import statistics
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
BASELINE = HERE / "baseline.json"
PICTURE = HERE.parent / "docs" / "images" / "performance.png"
TRIES = 3
RUNS_TO_KEEP = 3
ROW = re.compile(r"\| (\S+) \| [^|]* \| ([\d.]+) \| ([\d.]+) to ([\d.]+) \| [^|]* \| [\d.]+ (\S+) \|")
# Rows that measure the same with more and more of something.
GROWTH = {
    "one view repainted": {100: "one-100", 1000: "one", 10000: "one-10000"},
    "mouse move": {100: "move-100", 1000: "move", 10000: "move-10000"},
    "tick": {1000: "tick", 10000: "tick-10000"},
}


def rows_in(lines):
    rows = {}
    for line in lines:
        if found := ROW.match(line):
            name, ratio, lowest, highest, unit = found.groups()
            rows[name] = {"ratio": float(ratio), "lowest": float(lowest), "highest": float(highest)}
            if not unit.endswith("/s"):
                rows[name]["lowerIsBetter"] = True
    return rows


def measure(command):
    """The rows that a run prints, which are shown as they come."""
    lines = []
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as run:
        for line in run.stdout:
            print(line, end="", flush=True)
            lines.append(line)
    if run.returncode != 0:
        sys.exit(f"the measurement ended with code {run.returncode}")
    return rows_in(lines)


def merged(runs):
    """Each row with the median of its ratios and the widest spread."""
    rows = {}
    for name in dict.fromkeys(name for run in runs for name in run):
        seen = [run[name] for run in runs if name in run]
        rows[name] = {**seen[0], "ratio": round(statistics.median(row["ratio"] for row in seen), 2),
                      "lowest": min(row["lowest"] for row in seen), "highest": max(row["highest"] for row in seen)}
    return rows


def has_lost(row, kept):
    """Whether a row lies beyond what was seen when its figures were kept."""
    if kept.get("lowerIsBetter"):
        return row["ratio"] > kept["highest"]
    return row["ratio"] < kept["lowest"]


def check(bench, options):
    baseline = json.loads(BASELINE.read_text())
    command = [bench, *options]
    for attempt in range(1, TRIES + 1):
        rows = measure(command)
        unknown = sorted(set(rows) - set(baseline))
        lost = sorted(name for name in set(rows) & set(baseline) if has_lost(rows[name], baseline[name]))
        if unknown:
            print("not in the baseline:", ", ".join(unknown))
        if not rows:
            sys.exit("no rows were measured")
        if not lost:
            print(f"{len(rows) - len(unknown)} rows, none has lost")
            return
        for name in lost:
            kept = baseline[name]
            print(f"try {attempt} of {TRIES}: {name} {rows[name]['ratio']:.2f}, "
                  f"kept {kept['ratio']:.2f} ({kept['lowest']:.2f} to {kept['highest']:.2f})")
        command = [bench, *without_rows(options), "--rows", ",".join(lost)]
    sys.exit("lost in all tries: " + ", ".join(lost))


def without_rows(options):
    """The options but for the choice of rows."""
    at = options.index("--rows") if "--rows" in options else len(options)
    return options[:at] + options[at + 2:]


def keep(bench, options):
    write_baseline(merged([measure([bench, *options]) for _ in range(RUNS_TO_KEEP)]))


def write_baseline(rows):
    """The rows in their order, and those that were kept before after them."""
    kept = json.loads(BASELINE.read_text()) if BASELINE.exists() else {}
    BASELINE.write_text(json.dumps({**rows, **{name: kept[name] for name in kept if name not in rows}}, indent=2) + "\n")
    print(f"{len(kept | rows)} rows are in {BASELINE.name}")


def plot():
    import matplotlib
    matplotlib.use("Agg")
    from matplotlib import pyplot

    rows = json.loads(BASELINE.read_text())
    # As speed everywhere: how many times as fast as the platform alone.
    speed = {}
    for name, row in rows.items():
        middle, low, high = row["ratio"], row["lowest"], row["highest"]
        speed[name] = (1 / middle, 1 / high, 1 / low) if row.get("lowerIsBetter") else (middle, low, high)
    # Beside a procedure that does nothing a ratio says nothing.
    names = [name for name in speed if speed[name][0] >= 0.02]

    figure, (bars, curves) = pyplot.subplots(
        1, 2, figsize=(13, 0.27 * len(names) + 1.4), width_ratios=[3, 2], layout="constrained")
    middles = [speed[name][0] for name in names]
    below = [max(0, speed[name][0] - speed[name][1]) for name in names]
    above = [max(0, speed[name][2] - speed[name][0]) for name in names]
    bars.barh(names, middles, xerr=(below, above), color="#7fa7d4", ecolor="#444444", capsize=2, height=0.7)
    bars.axvline(1, color="#888888", linewidth=1)
    bars.invert_yaxis()
    bars.set_xlabel("speed; the platform alone doing the same work is 1 (bars: medians, lines: lowest to highest)")
    for title, row_of in GROWTH.items():
        points = [(count, speed[row][0]) for count, row in row_of.items() if row in speed]
        if points:
            curves.plot(*zip(*points), marker="o", label=title)
    curves.set_xscale("log")
    curves.set_ylim(bottom=0)
    curves.axhline(1, color="#888888", linewidth=1)
    curves.set_xlabel("views")
    curves.legend()
    figure.savefig(PICTURE, dpi=80)
    print(f"drawn into {PICTURE.relative_to(HERE.parent)}")


if __name__ == "__main__":
    action, *arguments = sys.argv[1:] or [""]
    if action == "check" and arguments:
        check(arguments[0], arguments[1:])
    elif action == "keep" and arguments:
        keep(arguments[0], arguments[1:])
    elif action == "plot" and not arguments:
        plot()
    else:
        sys.exit(__doc__)

#!/usr/bin/env python3
"""Measures how the cost of a job grows with its entries and with the input's rate, and draws it.

    python3 bench/end_to_end/scaling.py [options]; --help shows them

Cuts recordings of 16 bit in storage that is memory, and writes docs/pictures/cost-entries.png and cost-rates.png:
processor time for each input sample, beside what copying the samples and one forward transform take. Needs matplotlib
and build/release/bin/bench_spectrum.
"""

import argparse
import json
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

import matplotlib

from cutting import CARVELLO, HERE, NARROW, RATE, cut_with_carvello, make_recording, narrow_channels

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402  (the backend comes first)

ENTRIES = (1, 2, 4, 8, 16, 32, 64, 100, 200, 500, 1000)
MOST_BY_LIBRARY = 100  # entries; a further point tells nothing new and takes minutes
RATES = (1_000_000, 2_000_000, 5_000_000, 10_000_000, 20_000_000, 50_000_000, 100_000_000)
ENTRIES_AT_RATES = (8, 100)
ROADS = {"chosen by itself": ("auto", "o-", "tab:blue"), "library": ("library", "s--", "tab:orange"),
         "spectrum": ("spectrum", "^:", "tab:green")}


def limits(programs):
    """ns per input sample: copying its eight bytes in memory, and its share of the forward transforms."""
    told = subprocess.run([programs / "bench_spectrum", "--benchmark_filter=Road/(Memcpy|Frames)", "--benchmark_format=json"],
                          capture_output=True, check=True).stdout
    costs = {run["name"].split("/")[1]: run["ns/sample"] for run in json.loads(told)["benchmarks"]}
    return {"copying the samples in memory": costs["Memcpy"], "forward transforms": costs["Frames"]}


def cost(programs, recording, frames, outputs, channels, engine, repeats):
    """The least processor time in ns for each input sample."""
    costs = []
    for _ in range(repeats):
        outputs.mkdir()
        run = cut_with_carvello(programs, recording, frames, outputs, channels, options=("--engine", engine))
        shutil.rmtree(outputs)
        costs.append(run["cpu"] / frames * 1e9)
    return min(costs)


def draw(path, xlabel, curves, floor, title):
    figure, axes = plt.subplots(figsize=(8, 5))
    for label, (style, colour, points) in curves.items():
        axes.loglog(*zip(*points), style, color=colour, label=label)
    for label, value in floor.items():
        axes.axhline(value, color="grey", linewidth=0.8)
        axes.annotate(f"{label}: {value:.2f} ns", (0.01, value), xycoords=("axes fraction", "data"), va="bottom",
                      fontsize=8, color="dimgrey")
    axes.set(xlabel=xlabel, ylabel="processor time for each input sample, ns", title=title)
    axes.grid(True, which="both", alpha=0.3)
    axes.legend()
    figure.tight_layout()
    figure.savefig(path, dpi=100)
    print(path)


def main():
    parser = argparse.ArgumentParser(description="Measures how the cost of a job grows, and draws it.")
    parser.add_argument("--programs", type=Path, default=HERE.parents[1] / "build/release/bin")
    parser.add_argument("--storage", type=Path, default="/dev/shm" if os.access("/dev/shm", os.W_OK) else None)
    parser.add_argument("--pictures", type=Path, default=HERE.parents[1] / "docs/pictures")
    parser.add_argument("--frames", type=int, default=50_000_000, help="of each recording (default: %(default)s)")
    parser.add_argument("--repeats", type=int, default=3, help="of which the quickest counts (default: %(default)s)")
    options = parser.parse_args()

    floor = limits(options.programs)
    with tempfile.TemporaryDirectory(prefix="carvello-bench-", dir=options.storage) as folder:
        folder = Path(folder)
        outputs = folder / "outputs"

        def measure(recording, channels, engine):
            return cost(options.programs, recording, options.frames, outputs, channels, engine, options.repeats)

        recording = make_recording(options.programs, folder, options.frames / RATE)
        curves = {}
        for label, (engine, style, colour) in ROADS.items():
            points = [(entries, measure(recording, narrow_channels(entries), engine)) for entries in ENTRIES
                      if engine != "library" or entries <= MOST_BY_LIBRARY]
            curves[label] = (style, colour, points)
            print(f"{CARVELLO} --engine {engine}: " + ", ".join(f"{n}: {value:.2f} ns" for n, value in points))
        recording.unlink()
        draw(options.pictures / "cost-entries.png", f"entries of {NARROW // 1000} kHz out of {RATE / 1e6:g} MS/s", curves,
             floor, "Cost of a job by its entries")

        curves = {}
        for rate in RATES:
            recording = make_recording(options.programs, folder, options.frames / rate, rate)
            for entries, colour in zip(ENTRIES_AT_RATES, ("tab:blue", "tab:red")):
                # Within a tenth of the slowest recording's rate, apart by less than their width where they are many.
                channels = [(NARROW, -40_007 + 80_000 * i // entries) for i in range(entries)]
                value = measure(recording, channels, "auto")
                curves.setdefault(f"{entries} entries", ("o-", colour, []))[2].append((rate / 1e6, value))
                print(f"{entries} entries at {rate / 1e6:g} MS/s: {value:.2f} ns")
            recording.unlink()
        draw(options.pictures / "cost-rates.png", "rate of the input, MS/s", curves, floor, "Cost of a job by the input's rate")


main()

#!/usr/bin/env python3
"""Measures cutting a recording as a whole: carvello-cli beside programs that do the same with GNU Radio and liquid-dsp.

    python3 bench/end_to_end [options]; --help shows them

Makes a recording of 10,000,000 samples/s and 16 bit in storage that is memory and cuts it with each program in turn,
several times: 1 and 8 entries, 100 and 1,000 of 10 kHz. Checks each output's length and the level of the stations in
their channels, and prints a table and the ratios. Peers that are not installed are left out and named. bench/README.md
tells how to install them.
"""

import argparse
import os
import platform
import shutil
import statistics
import tempfile
from pathlib import Path

from cutting import (CARVELLO, CHANNELS, HERE, LIQUID, NARROW, PEERS, RATE, check_output, cut_with_carvello,
                     make_recording, narrow_channels, peers_on)

ENGINES = ("library", "spectrum")
FAST_RATES = (61_440_000, 122_880_000)  # samples/s of today's wide-band receivers
ONE_PROCESSOR = ("taskset", "--cpu-list", "0")
ON_ONE = f"{CARVELLO}, one processor"


def with_engine(engine):
    return f"{CARVELLO} --engine {engine}"


def at_rate(rate):
    return f"{CARVELLO}, {rate / 1e6:g} MS/s"


def print_table(label, entries, frames, runs):
    print(f"\n{label}:")
    print(f"{'':34}{'wall s':>9}{'median':>9}{'CPU s':>9}{'Msamples/s':>12}{'ns/sample':>11}{'/entry':>9}{'peak MB':>9}")
    for name, results in runs.items():
        wall = min(run["wall"] for run in results)
        print(f"{name:34}{wall:9.3f}{statistics.median(run['wall'] for run in results):9.3f}"
              f"{min(run['cpu'] for run in results):9.3f}{frames / wall / 1e6:12.1f}{wall / frames * 1e9:11.3f}"
              f"{wall / frames / entries * 1e9:9.4f}{max(run['memory'] for run in results) / 1e6:9.0f}")


def figures(results):
    """Shortest wall, median wall and least CPU time."""
    walls = [run["wall"] for run in results]
    return min(walls), statistics.median(walls), min(run["cpu"] for run in results)


def print_ratio(label, ratios, verdict=""):
    print(f"{label:62}" + "".join(f"{ratio:9.3f}" for ratio in ratios) + (f"  {verdict}" if verdict else ""))


def judged(ratio, target, at_most=False):
    reached = ratio <= target if at_most else ratio >= target
    return f"at {'most' if at_most else 'least'} {target}: {'reached' if reached else 'missed'}"


def better_form(runs, names):
    """The figures of whichever of these peers is the quicker, one by one."""
    return [min(column) for column in zip(*(figures(runs[name]) for name in names))]


def print_ratios(jobs, runs):
    print("\nRatios of shortest wall, median wall and least CPU time, and what is asked for of the first:")
    targets = {("8", "GNU Radio"): 20, ("8", LIQUID): 20, ("100 x 10 kHz", "GNU Radio"): 100}
    for label in jobs:
        ours = figures(runs[label][CARVELLO])
        # Buffers of another size are not what GNU Radio chooses by itself.
        plain, tuned = list(PEERS)[:2], list(PEERS)[2:]
        for peer, names in (("GNU Radio", plain), (tuned[0], tuned), (LIQUID, [LIQUID])):
            names = [name for name in names if name in runs[label]]
            if not names:
                continue
            ratios = [theirs / own for theirs, own in zip(better_form(runs[label], names), ours)]
            target = targets.get((label, peer))
            form = ", the better form" if len(names) > 1 else ""
            print_ratio(f"{label}: {peer}{form}, over {CARVELLO}", ratios, judged(ratios[0], target) if target else "")
        for engine in ENGINES:
            if with_engine(engine) in runs[label]:
                ratios = [theirs / own for theirs, own in zip(figures(runs[label][with_engine(engine)]), ours)]
                verdict = judged(ratios[0], 0.97) if label == "1" and engine == "library" else ""
                print_ratio(f"{label}: --engine {engine}, over the choice by itself", ratios, verdict)
        if ON_ONE in runs[label]:
            ratios = [one / both for one, both in zip(figures(runs[label][ON_ONE]), ours)]
            print_ratio(f"{label}: one processor over {os.cpu_count()}", ratios, judged(ratios[0], 1.8))
        for rate in FAST_RATES:
            if at_rate(rate) in runs[label]:
                ratios = [fast / own for fast, own in zip(figures(runs[label][at_rate(rate)]), ours)]
                print_ratio(f"{label}: a sample at {rate / 1e6:g} MS/s over one at {RATE / 1e6:g}", ratios,
                            judged(ratios[0], 1.3, at_most=True))
    many, fewer = "1000 x 10 kHz", "100 x 10 kHz"
    if many in runs and fewer in runs and "8" in runs:
        further = [(most - some) / 900 / eight for most, some, eight in zip(*(
            figures(runs[label][CARVELLO]) for label in (many, fewer, "8")))]
        print_ratio("each entry from 100 to 1000, over the job of 8", further, judged(further[0], 0.02, at_most=True))


def make_jobs(single):
    return {"1": [channel for channel in CHANNELS if channel[0] == single], "8": CHANNELS,
            "100 x 10 kHz": narrow_channels(100), "1000 x 10 kHz": narrow_channels(1000)}


def main():
    parser = argparse.ArgumentParser(
        description="Measures carvello-cli beside GNU Radio and liquid-dsp at cutting a recording.")
    parser.add_argument("--programs", type=Path, default=HERE.parents[1] / "build/release/bin",
                        help="where carvello-cli and liquid_peer are (default: %(default)s)")
    parser.add_argument("--storage", type=Path, default="/dev/shm" if os.access("/dev/shm", os.W_OK) else None,
                        help="folder for recordings, better in memory (default: /dev/shm, or the temporary folder)")
    parser.add_argument("--seconds", type=float, default=20, help="length of the recording (default: %(default)s)")
    parser.add_argument("--repeats", type=int, default=3, help="runs of each program (default: %(default)s)")
    parser.add_argument("--single", type=int, default=NARROW, choices=[width for width, _ in CHANNELS],
                        help="width in Hz of the entry that is cut alone (default: %(default)s)")
    parser.add_argument("--only", action="append", metavar="TEXT", help="of the peers, only those whose names hold this")
    parser.add_argument("--jobs", nargs="+", metavar="JOB", choices=list(make_jobs(NARROW)),
                        help="of the jobs, only these (%(choices)s)")
    options = parser.parse_args()

    peers = peers_on(options.programs)
    if options.only:
        peers = {name: cut for name, cut in peers.items() if any(text.lower() in name.lower() for text in options.only)}
    jobs = make_jobs(options.single)
    if options.jobs:
        jobs = {label: jobs[label] for label in options.jobs}

    def ours(**how):
        return lambda *job: cut_with_carvello(options.programs, *job, **how)

    def contenders_for(label, round_number):
        found = {CARVELLO: ours()}
        if label != "1000 x 10 kHz":
            found |= {with_engine(engine): ours(options=("--engine", engine)) for engine in ENGINES}
            # By the hundred, one run of a peer takes minutes.
            if len(jobs[label]) <= 8 or round_number == 0:
                found |= peers
        if label != "1":
            found[ON_ONE] = ours(before=ONE_PROCESSOR)
        return found

    runs = {label: {} for label in jobs}
    frames = round(options.seconds * RATE)

    with tempfile.TemporaryDirectory(prefix="carvello-bench-", dir=options.storage) as folder:
        folder = Path(folder)
        recordings = {RATE: make_recording(options.programs, folder, options.seconds)}
        if "8" in jobs:
            for rate in FAST_RATES:
                recordings[rate] = make_recording(options.programs, folder, frames / rate, rate)

        def measure(label, name, cut, rate=RATE):
            outputs = folder / "outputs"
            outputs.mkdir()
            run = cut(recordings[rate], frames, outputs, jobs[label])
            for channel, (path, offset) in zip(jobs[label], run["outputs"]):
                check_output(name, path, offset, channel, frames, rate)
            shutil.rmtree(outputs)
            runs[label].setdefault(name, []).append(run)

        print(f"{frames:,} samples of 16 bit at {RATE:,}/s in {folder.parent}; "
              f"{os.cpu_count()} processors, {platform.machine()}; {options.repeats} runs each, in turn")
        for round_number in range(options.repeats):
            for label in jobs:
                for name, cut in contenders_for(label, round_number).items():
                    measure(label, name, cut)
            if "8" in jobs:
                for rate in FAST_RATES:
                    measure("8", at_rate(rate), ours(), rate)
        for label, channels in jobs.items():
            print_table(label, len(channels), frames, runs[label])
    print_ratios(jobs, runs)


main()

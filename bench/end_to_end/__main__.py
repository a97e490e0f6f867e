#!/usr/bin/env python3
"""Measures cutting a recording as a whole: carvello-cli beside programs that do the same with GNU Radio and liquid-dsp.

    python3 bench/end_to_end [options]; --help shows them

Makes a recording of 10,000,000 samples/s and 16 bit in storage that is memory, cuts 1 and 8 entries out of it with each
program in turn, several times, checks each output's length and the level of the station in its channel, and prints a
table and the ratios. Peers that are not installed are left out and named. bench/README.md tells how to install them.
"""

import argparse
import array
import cmath
import json
import math
import os
import platform
import shutil
import statistics
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
RATE = 10_000_000
CENTRE = 100_000_000
NOISE = -40  # dBFS
STATION = -20  # dBFS, one in every channel
STATION_OFFSET = 0.2  # of the channel's width, above its centre

# Width and shift in Hz. Bands apart from each other, and shifts that are no simple fraction of the rate.
CHANNELS = [
    (10_000, 1_234_567), (12_500, -2_345_678), (25_000, 3_456_789), (50_000, -456_791),
    (100_000, 2_100_043), (200_000, -3_210_987), (250_000, 4_321_099), (1_000_000, -1_423_457)]

CARVELLO = "carvello-cli"
PEERS = {
    "GNU Radio, xlating": "xlating",
    "GNU Radio, stages": "stages",
    "GNU Radio, stages, large buffers": "stages-buffers",
}
LIQUID = "liquid-dsp"


def data_offset(path):
    """Where the samples of a WAV or RF64 file begin."""
    with open(path, "rb") as file:
        file.seek(12)
        while True:
            name, size = struct.unpack("<4sI", file.read(8))
            if name == b"data":
                return file.tell()
            file.seek(size, os.SEEK_CUR)


def make_recording(programs, folder, seconds):
    path = folder / "wide.wav"
    stations = []
    for width, shift in CHANNELS:
        stations += ["--station", f"{CENTRE + shift + round(STATION_OFFSET * width)}:{STATION}"]
    subprocess.run(
        [programs / "carvello-cli", "synth", path, "--rate", str(RATE), "--centre", str(CENTRE),
         "--seconds", str(seconds), "--noise", str(NOISE), "--quiet", *stations], check=True)
    return path


def run_measured(command):
    """Wall and CPU seconds and peak memory in bytes of a program's run, and its standard output."""
    start = time.perf_counter()
    process = subprocess.Popen([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    # Both texts are a few lines, which fit the pipes.
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    output, errors = process.stdout.read(), process.stderr.read()
    if process.returncode != 0:
        sys.exit(f"{command[0]} failed with {process.returncode}: {errors.decode()}")
    return {"wall": wall, "cpu": usage.ru_utime + usage.ru_stime, "memory": usage.ru_maxrss * 1024}, output


def cut_with_carvello(programs, recording, frames, folder, channels):
    del frames  # it cuts to the end
    command = [programs / "carvello-cli", "cut", recording, "--output", folder, "--json", "--quiet"]
    for width, shift in channels:
        command += ["--entry", f"f={CENTRE + shift},bw={width},size=RF64"]
    run, output = run_measured(command)
    files = {entry["bandwidth"]: entry["files"][0] for entry in json.loads(output)["outputs"]}
    run["outputs"] = [(Path(files[width]), data_offset(files[width])) for width, _ in channels]
    return run


def cut_with_peer(program, recording, frames, folder, channels):
    outputs = [folder / f"{width}.iq" for width, _ in channels]
    command = program + [recording, data_offset(recording), frames, RATE]
    command += [f"{shift}:{width}:{path}" for (width, shift), path in zip(channels, outputs)]
    run, output = run_measured(command)
    if output:  # a peer with a start-up that does not count tells its own times, after what its library says
        run.update(json.loads(output.splitlines()[-1]))
    run["outputs"] = [(path, 0) for path in outputs]
    return run


def check_output(name, path, offset, width, frames):
    """Exits when an output is not what the channel holds: too short, or its station's level wrong by more than 0.5 dB."""
    expected = frames * width / RATE
    cut = (path.stat().st_size - offset) // 4
    if abs(cut - expected) > 600:  # a trailer more, or a filter's delay less
        sys.exit(f"{name}: {path} has {cut} frames instead of about {expected:.0f}")
    values = array.array("h")
    count = min(5000, int(expected) // 2)
    with open(path, "rb") as file:
        file.seek(offset + int(expected) // 4 * 4)
        values.frombytes(file.read(count * 4))
    step = cmath.exp(-2j * math.pi * round(STATION_OFFSET * width) / width)
    level, turn = 0j, 1 + 0j
    for re, im in zip(values[::2], values[1::2]):
        level += complex(re, im) * turn
        turn *= step
    level = 20 * math.log10(abs(level) / count / 32768 + 1e-9)
    if abs(level - STATION) > 0.5:
        sys.exit(f"{name}: the station in {path} has {level:.2f} dBFS instead of {STATION}")


def contenders_on(programs):
    """The programs that are there, by name, each with the function that cuts with it."""
    found = {CARVELLO: lambda *job: cut_with_carvello(programs, *job)}
    for python in dict.fromkeys([sys.executable, "/usr/bin/python3"]):
        if subprocess.run([python, "-c", "import gnuradio.filter"], capture_output=True).returncode == 0:
            for name, form in PEERS.items():
                command = [python, HERE / "gnuradio_peer.py", form]
                found[name] = lambda *job, command=command: cut_with_peer(command, *job)
            break
    else:
        print("GNU Radio is not installed and is left out")
    if (programs / "liquid_peer").exists():
        found[LIQUID] = lambda *job: cut_with_peer([programs / "liquid_peer"], *job)
    else:
        print("liquid-dsp was not installed when the benchmarks were built and is left out")
    return found


def print_table(entries, frames, runs):
    print(f"\n{entries} {'entry' if entries == 1 else 'entries'}:")
    print(f"{'':34}{'wall s':>9}{'median':>9}{'CPU s':>9}{'Msamples/s':>12}{'ns/sample/entry':>17}{'peak MB':>9}")
    for name, results in runs.items():
        wall = min(run["wall"] for run in results)
        print(f"{name:34}{wall:9.3f}{statistics.median(run['wall'] for run in results):9.3f}"
              f"{min(run['cpu'] for run in results):9.3f}{frames / wall / 1e6:12.1f}{wall / frames / entries * 1e9:17.3f}"
              f"{max(run['memory'] for run in results) / 1e6:9.0f}")


def print_ratios(runs):
    targets = {("GNU Radio", 1): 4, ("GNU Radio", 8): 5, (LIQUID, 8): 20}
    print("\nThe peer's time over carvello-cli's (shortest wall, median wall, least CPU), and what is asked for of the first:")
    for entries, results in runs.items():
        for label, names in (("GNU Radio", list(PEERS)[:2]), (list(PEERS)[2], list(PEERS)[2:]), (LIQUID, [LIQUID])):
            names = [name for name in names if name in results]
            if not names:
                continue
            ratios = []
            for kind, typical in (("wall", min), ("wall", statistics.median), ("cpu", min)):
                peer = min(typical(run[kind] for run in results[name]) for name in names)
                ratios.append(peer / typical(run[kind] for run in results[CARVELLO]))
            target = targets.get((label, entries))
            if target is None:
                verdict = ""
            else:
                verdict = f"  at least {target}: {'reached' if ratios[0] >= target else 'missed'}"
            name = label + ", the better form" if label == "GNU Radio" else label
            print(f"{entries} x {name:34}{ratios[0]:7.2f}{ratios[1]:7.2f}{ratios[2]:7.2f}{verdict}")


def main():
    parser = argparse.ArgumentParser(
        description="Measures carvello-cli beside GNU Radio and liquid-dsp at cutting a recording.")
    parser.add_argument("--programs", type=Path, default=HERE.parents[1] / "build/release/bin",
                        help="where carvello-cli and liquid_peer are (default: %(default)s)")
    parser.add_argument("--storage", type=Path, default="/dev/shm" if os.access("/dev/shm", os.W_OK) else None,
                        help="folder for recordings, better in memory (default: /dev/shm, or the temporary folder)")
    parser.add_argument("--seconds", type=float, default=20, help="length of the recording (default: %(default)s)")
    parser.add_argument("--repeats", type=int, default=3, help="runs of each program (default: %(default)s)")
    parser.add_argument("--single", type=int, default=10_000, choices=[width for width, _ in CHANNELS],
                        help="width in Hz of the entry that is cut alone (default: %(default)s)")
    parser.add_argument("--only", action="append", metavar="TEXT", help="of the peers, only those whose names hold this")
    options = parser.parse_args()

    contenders = contenders_on(options.programs)
    if options.only:
        contenders = {name: cut for name, cut in contenders.items()
                      if name == CARVELLO or any(text.lower() in name.lower() for text in options.only)}
    jobs = {1: [channel for channel in CHANNELS if channel[0] == options.single], 8: CHANNELS}
    runs = {entries: {name: [] for name in contenders} for entries in jobs}
    with tempfile.TemporaryDirectory(prefix="carvello-bench-", dir=options.storage) as folder:
        folder = Path(folder)
        recording = make_recording(options.programs, folder, options.seconds)
        frames = round(options.seconds * RATE)
        print(f"{frames:,} samples of 16 bit at {RATE:,}/s in {folder.parent}; "
              f"{os.cpu_count()} processors, {platform.machine()}; {options.repeats} runs each, in turn")
        for _ in range(options.repeats):
            for entries, channels in jobs.items():
                for name, cut in contenders.items():
                    outputs = folder / "outputs"
                    outputs.mkdir()
                    run = cut(recording, frames, outputs, channels)
                    for (width, _), (path, offset) in zip(channels, run["outputs"]):
                        check_output(name, path, offset, width, frames)
                    shutil.rmtree(outputs)
                    runs[entries][name].append(run)
        for entries in jobs:
            print_table(entries, frames, runs[entries])
    print_ratios(runs)


main()

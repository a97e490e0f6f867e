#!/usr/bin/python3
"""How long many machines take for many recordings: figures of this machine, and a simulation of a night with them.

    CARVELLO_CLI=build/release/bin/carvello-cli /usr/bin/python3 bench/cluster/night.py [--entries 20] [--nodes 100] ...

Measured here: processor time for each frame of the input (a short cut of a recording without samples, whose reading
costs no disk), the time that a task takes beside its samples (one that is done already), and what the disk reads.
Simulated: nodes like this machine, one task at a time each, in the order of the plan; each node reads no faster than its
own disk or network does, and all together no faster than the storage. Tasks vary, and some are killed and repeated.
"""
import argparse
import heapq
import json
import os
import random
import struct
import subprocess
import tempfile
import time
from pathlib import Path

CLI = os.environ["CARVELLO_CLI"]
RATE = 10_000_000
BYTES_PER_FRAME = 4
SECONDS = 40


def program(*arguments):
    done = subprocess.run([CLI, *map(str, arguments)], capture_output=True, text=True, check=True)
    return done.stdout


def write_recording(path):
    size = RATE * SECONDS * BYTES_PER_FRAME
    with open(path, "wb") as file:
        file.write(struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + size, b"WAVE", b"fmt ", 16, 1, 2, RATE,
                               RATE * BYTES_PER_FRAME, BYTES_PER_FRAME, 16, b"data", size))
        file.truncate(44 + size)


def measure(entries):
    """Nanoseconds of processor time for each frame, seconds that a task takes beside them, bytes/s of disk and outputs."""
    with tempfile.TemporaryDirectory(prefix="carvello-night-") as name:
        folder = Path(name)
        recording = folder / "2026-03-01T000000Z 10000000Hz.wav"
        write_recording(recording)
        options = []
        for i in range(entries):
            options += ["--entry", f"f={10_000_000 + (i - entries // 2) * 300_000},bw=12k"]
        common = ["--output", folder, "--centre", "10M", "--start-time", "2026-03-01T00:00:00Z", *options]
        told = json.loads(program("cut", recording, *common, "--json", "--quiet"))
        for file in folder.glob("*kHz*.wav"):
            file.unlink()
        program("plan", recording, *common, "--shard", SECONDS // 2, "--plan", folder / "plan.json")
        for task in (0, 1):
            program("run", folder / "plan.json", "--task", task, "--quiet")
        begun = time.perf_counter()
        for _ in range(3):
            program("run", folder / "plan.json", "--task", 0, "--quiet")
        beside = (time.perf_counter() - begun) / 3
        begun = time.perf_counter()
        program("join", folder / "plan.json", "--quiet")
        joining = (time.perf_counter() - begun) / (entries * 12_000 * 4 * SECONDS)
    disk = json.loads(program("doctor", "--json", tempfile.gettempdir()))
    return {"ns": told["cpuSeconds"] * 1e9 / (RATE * SECONDS), "beside": beside, "join": joining,
            "disk": find(disk, "readBytesPerSecond")}


def find(value, key):
    if isinstance(value, dict):
        if key in value:
            return value[key]
        value = list(value.values())
    for each in value if isinstance(value, list) else []:
        found = find(each, key)
        if found is not None:
            return found
    return None


def simulate(options, figures, storage):
    """Hours until the last task ends, share of the time that nodes wait for reading, and tasks done."""
    chance = random.Random(1)
    frames = options.gigabytes * 1e9 / BYTES_PER_FRAME
    shard = min(options.shard * RATE, frames)
    tasks_each = int(-(-frames // shard))
    reading = min(figures["disk"], storage / options.nodes)
    processors = options.processors
    free = [(0.0, node) for node in range(options.nodes)]
    heapq.heapify(free)
    speed = [chance.uniform(0.9, 1.1) for _ in range(options.nodes)]
    waited = worked = 0.0
    tasks = 0
    queue = [min(shard, frames - shard * part) for _ in range(options.recordings) for part in range(tasks_each)]
    queue.reverse()
    while queue:
        length = queue.pop()
        at, node = heapq.heappop(free)
        read = length * BYTES_PER_FRAME / reading
        compute = length * figures["ns"] * 1e-9 / processors
        took = max(read, compute) / speed[node] + figures["beside"]
        tasks += 1
        if chance.random() < options.killed:
            took *= chance.random()
            queue.append(length)
        worked += took
        waited += max(0.0, read - compute) / speed[node]
        heapq.heappush(free, (at + took, node))
    return max(at for at, _ in free) / 3600, waited / worked, tasks


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--entries", type=int, default=20)
    parser.add_argument("--nodes", type=int, default=100)
    parser.add_argument("--recordings", type=int, default=10_000)
    parser.add_argument("--gigabytes", type=float, default=60.0)
    parser.add_argument("--shard", type=int, default=300, help="seconds")
    parser.add_argument("--processors", type=int, default=len(os.sched_getaffinity(0)), help="of a node")
    parser.add_argument("--killed", type=float, default=0.01, help="share of tasks that are killed and repeated")
    options = parser.parse_args()
    figures = measure(options.entries)
    seconds = options.gigabytes * 1e9 / BYTES_PER_FRAME / RATE
    print(f"Measured: {figures['ns']:.2f} ns of a processor a frame for {options.entries} entries of 12 kHz out of 10 MHz; "
          f"{figures['beside'] * 1000:.0f} ms a task beside that; disk {figures['disk'] / 1e6:.0f} MB/s; "
          f"join {1e-6 / figures['join']:.0f} MB/s of outputs")
    outputs = options.recordings * options.entries * seconds * 12_000 * 4
    print(f"{options.recordings} recordings of {options.gigabytes:.0f} GB ({seconds / 60:.0f} min each): "
          f"{options.recordings * options.gigabytes / 1000:.0f} TB in, {outputs / 1e12:.1f} TB out; "
          f"{options.nodes} nodes of {options.processors} processors, tasks of {options.shard} s\n")
    print(f"{'storage, all nodes':>20} {'a node':>10} {'hours':>8} {'nodes wait':>11} {'tasks':>8}")
    for storage in (1e9, 5e9, 10e9, 20e9, 40e9, float("inf")):
        hours, waiting, tasks = simulate(options, figures, storage)
        told = "disks of their own" if storage == float("inf") else f"{storage / 1e9:.0f} GB/s"
        each = min(figures["disk"], storage / options.nodes)
        print(f"{told:>20} {each / 1e6:>5.0f} MB/s {hours:>8.1f} {waiting:>10.0%} {tasks:>8}")
    print(f"\nJoining on one node, at the rate measured: {outputs * figures['join'] / 3600:.1f} hours; "
          "a plan for each night, or for each hundred recordings, lets many joins run side by side.")


if __name__ == "__main__":
    main()

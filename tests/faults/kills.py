"""Kills the job at random moments and checks what it leaves.

    kills.py COUNT [--seed N] [--slow SHARE] [--parallel N] [--engine NAME]

The job, of three outputs, runs as fast as it can; of a share of the kills it reads as from a slow disk and takes some
40 seconds, so that the outputs that grow slowly get their turn. The moments are spread evenly over the job. A kill
passes when every file that is left
- can be read up to the sizes that it claims,
- holds the samples of the undisturbed run, those that no size covers yet included,
- claims everything but what was written last: at most one buffer.
A file without a byte was killed between its creation and its first write.
"""
import argparse
import concurrent.futures
import os
import random
import re
import shutil
import signal
import sys
import time

import numpy

import job

ENTRIES = ("f=7.1M,bw=10k", "f=7.1M,bw=200k,bits=32,size=1MB", "f=7.2M,bw=50k,size=RF64",
           "f=7.15M,bw=100k,bits=32,format=sigmf")
FILES, SECONDS_EACH = 3, 32
BUFFER = 16 << 20
PAUSE = 150_000  # microseconds; reads are of half a megabyte
# What tells when and where a file was written, in its metadata.
MOMENT = re.compile('(Created|InternalTag|Folder)="[^"]*"')


def plain(header):
    if isinstance(header, dict):  # of a meta file; how long a header is goes by the name of the folder
        captures = [{key: capture[key] for key in capture if key != "core:header_bytes"} for capture in header["captures"]]
        return {**header, "captures": captures}
    if len(header) == 1:
        return header
    form, fields = header
    return form, [(name, MOMENT.sub("", body.decode("utf-16-le")) if name == b"auxi" else body)
                  for name, body in fields]


class Tally:
    def __init__(self):
        self.kills, self.too_late, self.files, self.empty, self.claim_nothing = 0, 0, 0, 0, 0
        self.problems = []

    def add(self, other):
        for name, value in vars(other).items():
            setattr(self, name, getattr(self, name) + value)


def problem_of(path, expected):
    """What is wrong with a file, and the sample bytes that it claims."""
    if path.name not in expected:
        return "there should be no such file", 0
    try:
        found = job.read_output(path)
    except AssertionError as problem:
        return str(problem), 0
    full = expected[path.name]
    if isinstance(found, job.SigMfMeta) and not found.is_right(path.parent, path.name):
        return "tells of an end that its samples have not come to", 0
    if plain(found.header) != plain(full.header):
        return "another header", 0
    if found.data_bytes > full.data_bytes or not numpy.array_equal(found.data, full.data[:found.data_bytes]):
        return "other samples", found.data_bytes
    unclaimed = full.data[found.data_bytes:found.data_bytes + len(found.rest)]
    if not numpy.array_equal(found.rest[:len(unclaimed)], unclaimed):
        return "other samples behind those that it claims", found.data_bytes
    if len(unclaimed) > BUFFER:
        return f"{len(unclaimed)} bytes of samples that no size covers", found.data_bytes
    return None, found.data_bytes


def kill_once(folder, number, source, expected, moment, slow, engine):
    """Kills the job after `moment` seconds; gives the tally of that."""
    tally = Tally()
    output = folder / f"output-{number}"
    output.mkdir()
    try:
        with job.start(source, output, ENTRIES, "--quiet", "--engine", engine,
                       **({"FAULT_PAUSE": str(PAUSE)} if slow else {})) as process:
            time.sleep(moment)
            process.send_signal(signal.SIGKILL)
            process.communicate()
        tally.kills = int(process.returncode == -signal.SIGKILL)
        tally.too_late = 1 - tally.kills
        if process.returncode not in (0, -signal.SIGKILL):
            tally.problems.append(f"ended with {process.returncode} before it was killed after {moment:.3f} s")
        for path in sorted(output.iterdir()):
            tally.files += 1
            if path.stat().st_size == 0:
                tally.empty += 1
                continue
            problem, claimed = problem_of(path, expected)
            tally.claim_nothing += claimed == 0
            if problem:
                speed = "slow" if slow else "fast"
                tally.problems.append(f"{path.name}: {problem} ({speed} job, killed after {moment:.3f} s)")
    finally:
        shutil.rmtree(output)
    return tally


def undisturbed(folder, source, engine):
    """The files of a run that nobody kills, and how long it takes."""
    output = folder / "undisturbed"
    output.mkdir()
    begun = time.monotonic()
    with job.start(source, output, ENTRIES, "--quiet", "--engine", engine) as process:
        out, err = process.communicate()
    seconds = time.monotonic() - begun
    if process.returncode != 0:
        raise SystemExit(f"the undisturbed job ended with {process.returncode}\n{err.decode()}")
    expected = {path.name: job.read_output(path) for path in output.iterdir()}
    shutil.rmtree(output)
    return expected, seconds


def kill_many(folder, source, expected, count, moment, slow, parallel, engine):
    """Kills at moments that `moment` gives, until `count` of them met the job at work."""
    tally = Tally()
    with concurrent.futures.ThreadPoolExecutor(parallel) as pool:
        while tally.kills < count and tally.too_late < 10 * count:
            missing = range(count - tally.kills)
            kills = [pool.submit(kill_once, folder, f"{slow:d}-{number}", source, expected, moment(), slow, engine)
                     for number in missing]
            for each in kills:
                tally.add(each.result())
    return tally


def report(name, tally):
    print(f"{name}: {tally.kills} kills (and {tally.too_late} that came too late), {tally.files} files, "
          f"{tally.empty} without a byte, {tally.claim_nothing} with a header that claims no samples, "
          f"{len(tally.problems)} wrong", *tally.problems, sep="\n  ")
    return not tally.problems


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("count", type=int)
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 32))
    parser.add_argument("--slow", type=float, default=0.0, help="share of the kills that meet a slow disk")
    parser.add_argument("--parallel", type=int, default=os.cpu_count())
    parser.add_argument("--engine", default="library")
    options = parser.parse_args()
    print(f"seed {options.seed}", flush=True)
    choose = random.Random(options.seed)
    folder = job.work_folder()
    try:
        inputs = folder / "input"
        inputs.mkdir()
        source = job.make_input(inputs, seconds=(SECONDS_EACH,) * FILES)
        expected, seconds = undisturbed(folder, source, options.engine)
        reads = sum(path.stat().st_size for path in inputs.iterdir()) / (1 << 19)
        slow_seconds = seconds + reads * PAUSE / 1e6
        slow = round(options.count * options.slow)
        right = True
        for name, count, length, is_slow, parallel in (
                ("as fast as it can", options.count - slow, seconds, False, options.parallel),
                ("from a slow disk", slow, slow_seconds, True, 8 * options.parallel)):
            if count:
                tally = kill_many(folder, source, expected, count, lambda length=length: choose.uniform(0, length),
                                  is_slow, parallel, options.engine)
                right = report(f"{name}, {length:.1f} s", tally) and tally.kills == count and right
        return right
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(0 if main() else 1)

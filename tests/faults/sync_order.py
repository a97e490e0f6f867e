"""Holds the order in which a job's outputs come to the disk against what a power cut may find there.

A size in a file's head must never tell of samples that do not stand on the disk; and when a file counts as written, all
of it stands there, and then its name. So, call by call:
- no write in front of the samples without a sync between it and the last write at or behind their begin;
- no sample of a SigMF recording without a sync of its meta file before it, and the end of a meta file is written when
  the samples stand there;
- behind the last write of a file a sync of it, and behind that one of its folder.
With --no-sync nothing is promised, and nothing is found: that tells that the look at it finds something.
"""
import shutil
import sys

import job


class TracedFile:
    """One output, by the writes and syncs of it."""

    def __init__(self, path):
        self.name = path.name
        self.has_sizes = path.suffix == ".wav"
        self.begin = path.read_bytes().index(b"data") + 8 if self.has_sizes else 0
        self.meta = None
        self.unsynced = False  # samples, or what follows them
        self.written = False  # anything since the last sync
        self.named = False  # its folder was synced behind its last write
        self.patches = 0
        self.problems = []

    def write(self, offset, size):
        self.written, self.named = True, False
        if offset + size > self.begin:
            self.unsynced = True
        if 0 < offset < self.begin:
            self.patches += 1
            if self.unsynced:
                self.problems.append(f"{self.name}: sizes are written before the samples that they tell of are synced")

    def sync(self):
        if not self.meta.synced:
            self.problems.append(f"{self.name}: is synced before the meta file that tells of it is")
        self.unsynced = self.written = False

    def check_end(self):
        if self.has_sizes and not self.patches:
            self.problems.append(f"{self.name}: no sizes were ever written")
        if self.written:
            self.problems.append(f"{self.name}: its end is not synced")
        if not self.named:
            self.problems.append(f"{self.name}: its folder is not synced when it is")
        return self.problems


class TracedMeta:
    """The meta file of an output."""

    def __init__(self, path, of):
        self.name, self.of = path.name, of
        self.written = self.synced = self.named = self.ended = False
        self.problems = []

    def write(self, offset, _size):
        self.written, self.named = True, False
        if offset > 0:
            self.ended = True
            if self.of.written:
                self.problems.append(f"{self.name}: tells the end of samples that are not synced")

    def sync(self):
        self.written, self.synced = False, True

    def check_end(self):
        if not self.ended:
            self.problems.append(f"{self.name}: its end was never written")
        if self.written:
            self.problems.append(f"{self.name}: its end is not synced")
        return self.problems


def trace_files(folder):
    """By the numbers of the files."""
    files = {path.stem: TracedFile(path) for path in folder.iterdir() if path.suffix != ".sigmf-meta"}
    traced = {}
    for path in folder.iterdir():
        file = files[path.stem]
        if path.suffix == ".sigmf-meta":
            file.meta = file.meta or TracedMeta(path, file)
        traced[path.stat().st_ino] = file
    for path in folder.iterdir():
        if path.suffix == ".sigmf-meta":
            traced[path.stat().st_ino] = files[path.stem].meta
    return traced


def problems_of(folder, source, *arguments):
    """What is wrong with the order in an undisturbed job."""
    output, trace = folder / "output", folder / "trace"
    output.mkdir()
    ended = job.run(source, output, arguments=arguments, trace=trace)
    assert ended.code == 0, ended.err
    files = trace_files(output)
    outputs = output.stat().st_ino
    for line in trace.read_text().splitlines():
        what, number, offset, size = line.split()
        if what == "sync" and int(number) == outputs:
            for file in files.values():
                file.named = not file.written
        elif int(number) in files and what == "sync":
            files[int(number)].sync()
        elif int(number) in files:
            files[int(number)].write(int(offset), int(size))
    shutil.rmtree(output)
    trace.unlink()
    assert len(files) >= 10, files
    return [problem for file in files.values() for problem in file.check_end()]


def main():
    folder = job.work_folder()
    try:
        source = folder / "input"
        source.mkdir()
        source = job.make_input(source)
        careful = problems_of(folder, source) + problems_of(folder, source, "--engine", "spectrum")
        careless = problems_of(folder, source, "--no-sync")
    finally:
        shutil.rmtree(folder, ignore_errors=True)
    print(*careful, f"{len(careful)} problems; {len(careless)} with --no-sync", sep="\n")
    return not careful and careless


if __name__ == "__main__":
    sys.exit(0 if main() else 1)

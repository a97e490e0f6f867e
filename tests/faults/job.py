"""The job that everything here is done to: a set of three files cut into a WAV output, one that splits, an RF64 one and
a SigMF one, each WAV file with a meta file beside it.

CARVELLO_CLI is the program (carvello-cli that splits at a megabyte, too), CARVELLO_FAULTS the library that is loaded
before it (call_faults.cpp).
"""
import errno
import hashlib
import json
import mmap
import os
import re
import resource
import signal
import struct
import subprocess
import tempfile
from pathlib import Path

import numpy

from makers import Layout

CLI = os.environ["CARVELLO_CLI"]
FAULTS = os.environ["CARVELLO_FAULTS"]
KINDS = ("open", "read", "write", "seek", "truncate", "sync", "close", "rename", "remove", "stat", "folder", "lock",
         "memory", "thread")
CLOCK = 1_600_000_000  # where the clock stands, so that headers are equal

# The buffer of 16 MiB and the block of 2,097,152 frames decide where parts end: the second output has two.
RATE = 750_000
SECONDS = (1, 1, 1)
ENTRIES = ("f=7.1M,bw=10k", "f=7.1M,bw=750k,bits=32,size=1MB", "f=7.2M,bw=50k,size=RF64", "f=7.15M,bw=20k,format=sigmf")


def work_folder():
    """In memory where there is room, for a run writes tens of megabytes."""
    shared = Path("/dev/shm")
    try:
        volume = os.statvfs(shared)
        if os.access(shared, os.W_OK) and volume.f_bavail * volume.f_frsize > 1 << 30:
            return Path(tempfile.mkdtemp(prefix="carvello-faults-", dir=shared))
    except OSError:
        pass
    return Path(tempfile.mkdtemp(prefix="carvello-faults-"))


def make_input(folder, rate=RATE, seconds=SECONDS):
    """A set of noise, no stretch of which is like another; gives its first file."""
    layout = Layout(rate, form="s8", info={"INAM": "Faults"})
    noise = numpy.random.default_rng(1)
    paths, first = [], 0
    for number, length in enumerate(seconds):
        path = folder / f"in {number:03d}.wav"
        header, trailer = layout.header(path, length * rate, "in 000.wav", first)
        path.write_bytes(header + noise.bytes(length * rate * layout.frame_bytes) + trailer)
        paths.append(path)
        first += length
    return paths[0]


class Fault:
    """What fails: see call_faults.cpp. `error`: a name, EIO and so on for those of the system; `times` 0: for good."""

    def __init__(self, kind, error, at, times=1):
        self.kind, self.error, self.at, self.times = kind, error, at, times

    def environment(self):
        return {"FAULT_KIND": self.kind, "FAULT_ERROR": str(getattr(errno, self.error, self.error)), "FAULT_AT": str(self.at),
                "FAULT_TIMES": str(self.times)}


def run_command(folder, *arguments, fault=None):
    """Any command: its exit code, what it says on stderr, and how many of its calls failed. `folder` takes the counts."""
    environment = {"LC_ALL": "C.UTF-8", "TZ": "UTC", "LD_PRELOAD": FAULTS, "FAULT_CLOCK": str(CLOCK)}
    counts = folder / "counts"
    if fault:
        counts.write_bytes(bytes(mmap.PAGESIZE))
        environment |= {**fault.environment(), "FAULT_COUNTS": str(counts)}
    done = subprocess.run([CLI, *map(str, arguments)], env=environment, capture_output=True, timeout=120,
                          stdin=subprocess.DEVNULL)
    failed = struct.unpack_from("<Q", counts.read_bytes(), 8 * len(KINDS))[0] if fault else 0
    return done.returncode, done.stderr.decode(errors="replace"), failed


def try_places(attempt, errors, step, rarer, once=False, name=""):
    """Calls attempt(fault) with every `step`-th place of each kind, until nothing fails there; it tells whether anything
    did, and raises AssertionError for what must not be, which is printed. Kinds in `rarer` have longer steps by that
    factor. Gives how many places there were, and how many of them wrong."""
    places = wrong = 0
    for kind, kinds_errors in errors.items():
        for error in kinds_errors:
            for times in (0,) if error == "full" else (1,) if error == "kill" or once else (1, 0):
                at, failed = 1, True
                while failed:
                    try:
                        failed = attempt(Fault(kind, error, at, times))
                    except (AssertionError, subprocess.TimeoutExpired) as problem:
                        wrong += 1
                        print(f"{attempt.__name__} {name} {kind} {error} {times} --at {at}: {problem}", flush=True)
                    places += 1
                    at += step * rarer.get(kind, 1)
    return places, wrong


class Ended:
    """How a run ended: exit code (negative: the signal; None: it had to be killed), texts, calls made and failed."""

    def __init__(self, code, out, err, counts, failed):
        self.code, self.out, self.err, self.counts, self.failed = code, out, err, counts, failed

    def outputs(self):
        """The list of outputs that --json tells of; None where nothing was printed."""
        return json.loads(self.out)["outputs"] if self.out.strip() else None


def start(source, output, entries, *arguments, memory=None, **environment):
    """The job, begun, into the folder `output`; with so many bytes of address space where `memory` tells."""
    options = [argument for entry in entries for argument in ("--entry", entry)]
    return subprocess.Popen([CLI, "cut", str(source), "--output", str(output), "--json", "--sigmf-meta", *options, *arguments],
                            env={"LC_ALL": "C.UTF-8", "TZ": "UTC", "LD_PRELOAD": FAULTS, **environment},
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                            preexec_fn=lambda: memory and resource.setrlimit(resource.RLIMIT_AS, (memory, memory)))


def run(source, output, fault=None, timeout=60, arguments=(), memory=None, trace=None):
    """The job from its start to its end, with one fault or none. `trace`: a file for its writes and syncs."""
    with tempfile.NamedTemporaryFile(dir=output.parent) as file:
        file.truncate(mmap.PAGESIZE)
        process = start(source, output, ENTRIES, *arguments, FAULT_COUNTS=file.name, FAULT_CLOCK=str(CLOCK), memory=memory,
                        **(fault.environment() if fault else {}), **({"FAULT_TRACE": str(trace)} if trace else {}))
        try:
            out, err = process.communicate(timeout=timeout)
            code = process.returncode
        except subprocess.TimeoutExpired:
            process.send_signal(signal.SIGKILL)
            out, err = process.communicate()
            code = None
        *calls, failed = struct.unpack(f"<{len(KINDS) + 1}Q", Path(file.name).read_bytes()[:8 * (len(KINDS) + 1)])
        return Ended(code, out.decode(), err.decode(errors="replace"), dict(zip(KINDS, calls)), failed)


class Recording:
    """The parts of one file that a run leaves behind, by the rules of RIFF and RF64. Raises AssertionError on a file
    that cannot be read up to the sizes that it claims."""

    def __init__(self, path):
        raw = path.read_bytes()
        assert len(raw) >= 12, f"{len(raw)} bytes are no header"
        form, riff_size, kind = struct.unpack_from("<4sI4s", raw)
        assert form in (b"RIFF", b"RF64") and kind == b"WAVE", f"begins with {raw[:12]!r}"
        # Everything in front of the samples but the sizes, which follow them.
        fields, position, self.data_bytes, large = [], 12, None, 0
        while self.data_bytes is None:
            assert position + 8 <= len(raw), "ends within its header"
            identifier, size = struct.unpack_from("<4sI", raw, position)
            position += 8
            if identifier == b"data":
                self.data_bytes = large if form == b"RF64" else size
            else:
                assert position + size <= len(raw), "ends within its header"
                body = raw[position:position + size]
                position += size
                if identifier == b"ds64":
                    riff_size, large, _, _ = struct.unpack("<QQQI", body)
                else:
                    fields.append((identifier, body))
        self.header = (form, fields)
        end = position + self.data_bytes
        assert end <= len(raw), f"claims samples up to {end} of {len(raw)} bytes"
        assert self.data_bytes == 0 or riff_size + 8 <= len(raw), f"claims {riff_size + 8} of {len(raw)} bytes"
        values = numpy.frombuffer(raw, dtype=numpy.uint8)
        self.data = values[position:end]
        self.rest = values[end:]  # the trailer, or samples that no size covers yet


class SigMfData:
    """Samples and nothing else."""

    def __init__(self, path):
        raw = path.read_bytes()
        self.header = ("sigmf-data",)
        self.data_bytes = len(raw) - len(raw) % 4
        values = numpy.frombuffer(raw, dtype=numpy.uint8)
        self.data, self.rest = values[:self.data_bytes], values[self.data_bytes:]


class SigMfMeta:
    """A meta file; what it tells only when its recording is whole stands in `end`."""

    END = ("carvello:sample_count", "core:sha512", "core:trailing_bytes")

    def __init__(self, path):
        try:
            meta = json.loads(path.read_bytes())
        except ValueError as problem:
            raise AssertionError(f"no JSON: {problem}") from problem
        self.end = {key: meta["global"].pop(key) for key in self.END if key in meta["global"]}
        self.header = meta
        self.data_bytes = 0
        self.data = self.rest = numpy.empty(0, dtype=numpy.uint8)

    def is_right(self, folder, name):
        """Whether an end that it tells is that of its samples; when it tells none they have not come to it."""
        if not self.end:
            return True
        path = folder / self.header["global"].get("core:dataset", name.replace("-meta", "-data"))
        samples = read_output(path)
        frame_bytes = 8 if self.header["global"]["core:datatype"] == "cf32_le" else 4
        expected = {"carvello:sample_count": samples.data_bytes // frame_bytes}
        if isinstance(samples, SigMfData):
            expected["core:sha512"] = hashlib.sha512(path.read_bytes()).hexdigest()
        else:
            expected["core:trailing_bytes"] = len(samples.rest)
        return self.end == expected


def read_output(path):
    return {".sigmf-data": SigMfData, ".sigmf-meta": SigMfMeta}.get(path.suffix, Recording)(path)


PART = re.compile(r" \d{3}(?=\.wav$)")


class Expected:
    """The outputs of the undisturbed run, which files of other runs are held against. They name their folder, so all
    runs write to the same one."""

    def __init__(self, folder):
        self.files = {path.name: path.read_bytes() for path in sorted(folder.iterdir())}
        self.recordings = {path.name: read_output(path) for path in sorted(folder.iterdir())}

    def is_whole(self, path):
        return path.name in self.files and path.read_bytes() == self.files[path.name]

    def samples_from(self, name):
        """The samples of an output from one of its files on. Where a part ends depends on what comes behind: in a job
        that ends too early the last one can go on a little longer."""
        stem = PART.sub("", name)
        return numpy.concatenate([recording.data for other, recording in self.recordings.items()
                                  if PART.sub("", other) == stem and other >= name and len(recording.data)]
                                 or [numpy.empty(0, dtype=numpy.uint8)])

    def stretch_problem(self, path):
        """Why a file is not a beginning of what the undisturbed run wrote from there on; None when it is."""
        if path.name not in self.recordings:
            return f"{path.name}: there should be no such file"
        expected = self.recordings[path.name]
        try:
            found = read_output(path)
        except AssertionError as problem:
            return f"{path.name}: {problem}"
        if found.header != expected.header:
            return f"{path.name}: another header"
        if isinstance(found, SigMfMeta) and not found.is_right(path.parent, path.name):
            return f"{path.name}: tells of an end that its samples have not come to"
        samples = self.samples_from(path.name)
        if found.data_bytes > len(samples):
            return f"{path.name}: {found.data_bytes} bytes of samples, where there are {len(samples)} in all"
        differ = numpy.flatnonzero(found.data != samples[:found.data_bytes])
        if len(differ):
            return f"{path.name}: other samples from byte {differ[0]} of {found.data_bytes} on"
        return None

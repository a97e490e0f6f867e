"""The job that everything here is done to: a set of three files cut into a WAV output, one that splits and an RF64 one.

CARVELLO_CLI is the program (carvello-cli that splits at a megabyte, too), CARVELLO_FAULTS the library that is loaded
before it (call_faults.cpp).
"""
import errno
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
ENTRIES = ("f=7.1M,bw=10k", "f=7.1M,bw=750k,bits=32,size=1MB", "f=7.2M,bw=50k,size=RF64")


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
    return subprocess.Popen([CLI, "cut", str(source), "--output", str(output), "--json", *options, *arguments],
                            env={"LC_ALL": "C.UTF-8", "TZ": "UTC", "LD_PRELOAD": FAULTS, **environment},
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                            preexec_fn=lambda: memory and resource.setrlimit(resource.RLIMIT_AS, (memory, memory)))


def run(source, output, fault=None, timeout=60, arguments=(), memory=None):
    """The job from its start to its end, with one fault or none."""
    with tempfile.NamedTemporaryFile(dir=output.parent) as file:
        file.truncate(mmap.PAGESIZE)
        process = start(source, output, ENTRIES, *arguments, FAULT_COUNTS=file.name, FAULT_CLOCK=str(CLOCK), memory=memory,
                        **(fault.environment() if fault else {}))
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


PART = re.compile(r" \d{3}(?=\.wav$)")


class Expected:
    """The outputs of the undisturbed run, which files of other runs are held against. They name their folder, so all
    runs write to the same one."""

    def __init__(self, folder):
        self.files = {path.name: path.read_bytes() for path in sorted(folder.iterdir())}
        self.recordings = {path.name: Recording(path) for path in sorted(folder.iterdir())}

    def is_whole(self, path):
        return path.name in self.files and path.read_bytes() == self.files[path.name]

    def samples_from(self, name):
        """The samples of an output from one of its files on. Where a part ends depends on what comes behind: in a job
        that ends too early the last one can go on a little longer."""
        stem = PART.sub("", name)
        return numpy.concatenate([recording.data for other, recording in self.recordings.items()
                                  if PART.sub("", other) == stem and other >= name])

    def stretch_problem(self, path):
        """Why a file is not a beginning of what the undisturbed run wrote from there on; None when it is."""
        if path.name not in self.recordings:
            return f"{path.name}: there should be no such file"
        expected = self.recordings[path.name]
        try:
            found = Recording(path)
        except AssertionError as problem:
            return f"{path.name}: {problem}"
        if found.header != expected.header:
            return f"{path.name}: another header"
        samples = self.samples_from(path.name)
        if found.data_bytes > len(samples):
            return f"{path.name}: {found.data_bytes} bytes of samples, where there are {len(samples)} in all"
        differ = numpy.flatnonzero(found.data != samples[:found.data_bytes])
        if len(differ):
            return f"{path.name}: other samples from byte {differ[0]} of {found.data_bytes} on"
        return None

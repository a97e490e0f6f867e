"""What the benchmarks of whole jobs share: recordings, the programs that cut them, and the check of what they make."""

import array
import cmath
import json
import math
import os
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

# Width and shift in Hz at RATE. Bands apart from each other, and shifts that are no simple fraction of the rate.
CHANNELS = [
    (10_000, 1_234_567), (12_500, -2_345_678), (25_000, 3_456_789), (50_000, -456_791),
    (100_000, 2_100_043), (200_000, -3_210_987), (250_000, 4_321_099), (1_000_000, -1_423_457)]
NARROW = 10_000  # Hz, the width of the channels that come by the hundred


def narrow_channels(count):
    """`count` channels of 10 kHz: the one of CHANNELS, and others spread over the band beside it."""
    step = 9_400_000 // max(count, 1)
    spread = [(NARROW, -4_700_011 + step * i) for i in range(count - 1)]
    return [CHANNELS[0], *spread]


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


def make_recording(programs, folder, seconds, rate=RATE):
    """A 16-bit recording with a station in each of CHANNELS; at another rate only those that it holds are heard."""
    path = folder / f"wide-{rate}.wav"
    stations = []
    for width, shift in CHANNELS:
        if 2 * abs(shift) + width >= rate:
            continue
        stations += ["--station", f"{CENTRE + shift + round(STATION_OFFSET * width)}:{STATION}"]
    subprocess.run(
        [programs / "carvello-cli", "synth", path, "--rate", str(rate), "--centre", str(CENTRE),
         "--seconds", f"{seconds:.6g}", "--noise", str(NOISE), "--quiet", "--rf64", *stations], check=True)
    return path


def run_measured(command):
    """Wall and CPU seconds and peak memory in bytes of a program's run, and its standard output."""
    with tempfile.TemporaryFile() as told, tempfile.TemporaryFile() as complaints:
        start = time.perf_counter()
        process = subprocess.Popen([str(part) for part in command], stdout=told, stderr=complaints)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        output, errors = (file.seek(0) or file.read() for file in (told, complaints))
    if process.returncode != 0:
        sys.exit(f"{command[0]} failed with {process.returncode}: {errors.decode()}")
    return {"wall": wall, "cpu": usage.ru_utime + usage.ru_stime, "memory": usage.ru_maxrss * 1024}, output


def cut_with_carvello(programs, recording, frames, folder, channels, options=(), before=()):
    """`options`: more of them for carvello-cli; `before`: what is put in front of the command."""
    del frames  # it cuts to the end
    command = [*before, programs / "carvello-cli", "cut", recording, "--output", folder, "--json", "--quiet", *options]
    for width, shift in channels:
        command += ["--entry", f"f={CENTRE + shift},bw={width},size=RF64"]
    run, output = run_measured(command)
    files = {(entry["bandwidth"], entry["frequency"]): entry["files"][0] for entry in json.loads(output)["outputs"]}
    paths = [Path(files[width, CENTRE + shift]) for width, shift in channels]
    run["outputs"] = [(path, data_offset(path)) for path in paths]
    return run


def cut_with_peer(program, recording, frames, folder, channels):
    outputs = [folder / f"{number}.iq" for number in range(len(channels))]
    command = program + [recording, data_offset(recording), frames, RATE]
    command += [f"{shift}:{width}:{path}" for (width, shift), path in zip(channels, outputs)]
    run, output = run_measured(command)
    if output:  # a peer with a start-up that does not count tells its own times, after what its library says
        run.update(json.loads(output.splitlines()[-1]))
    run["outputs"] = [(path, 0) for path in outputs]
    return run


def check_output(name, path, offset, channel, frames, rate=RATE):
    """Exits when an output is not what the channel holds: too short, or its station's level wrong by more than 0.5 dB."""
    width = channel[0]
    expected = frames * width / rate
    cut = (path.stat().st_size - offset) // 4
    if abs(cut - expected) > 600:  # a trailer more, or a filter's delay less
        sys.exit(f"{name}: {path} has {cut} frames instead of about {expected:.0f}")
    if channel not in CHANNELS:
        return  # no station in it
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


def peers_on(programs):
    """The peers that are there, by name, each with the function that cuts with it."""
    found = {}
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

#!/usr/bin/env python3
"""Measures the downconverter's response through the library's entry points and draws it.

    python3 bench/response.py [--library FILE] [--pictures FOLDER] [IN:OUT...]

For each pair of rates it feeds tones over all of the input's band, and impulses, writes a picture with the passband,
the aliases and the impulse response to docs/pictures, and prints a line of numbers for the table in docs/dsp.md. Needs
numpy and matplotlib (Debian: python3-numpy python3-matplotlib).
"""

import argparse
import ctypes
from pathlib import Path

import matplotlib
import numpy as np

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402  (the backend comes first)

PROJECT = Path(__file__).resolve().parents[1]
PAIRS = ["2000000:10000", "2400000:192000", "10000000:975000", "192000:190000"]
SETTLED = 64  # outputs that may still see the signal's beginning, at most
MEASURED = 48  # outputs of a tone that are looked at
GOLDEN_RATIO = 0.5 * (5**0.5 - 1.0)  # its multiples, less the whole parts, fill 0..1 evenly
PASS_EDGE = 0.45  # of the output rate
STOP_EDGE = 0.55
FLOOR = -180.0  # dB, the lowest that is drawn


def decibel(amplitude):
    return 20.0 * np.log10(np.maximum(amplitude, 10.0 ** (FLOOR / 20.0)))


class Downconverter:
    """An instance of the library for one pair of rates."""

    def __init__(self, library, rate_in, rate_out):
        self.library = ctypes.CDLL(str(library))
        self.library.AllocInstance.argtypes = [ctypes.c_wchar_p]
        self.handle = ctypes.c_uint32(self.library.AllocInstance("response"))
        self.rate_in, self.rate_out = rate_in, rate_out
        self.ratio = rate_in / rate_out

    def __call__(self, samples):
        """The output for these samples, from a new start."""
        samples = np.ascontiguousarray(samples, np.complex64)
        output = np.empty_like(samples)
        given = ctypes.c_uint32(0)
        self.library.DownconvertInit(self.handle, ctypes.c_uint32(self.rate_in), ctypes.c_uint32(self.rate_out))
        self.library.DownconvertRun(
            self.handle, ctypes.c_void_p(samples.ctypes.data), ctypes.c_uint32(samples.size),
            ctypes.c_void_p(output.ctypes.data), ctypes.byref(given))
        return output[:given.value].astype(complex)

    def stages(self):
        """What decimates by how much, from the library's own description."""
        text = ctypes.create_string_buffer(4096)
        self.library.DownconvertInit(self.handle, ctypes.c_uint32(self.rate_in), ctypes.c_uint32(self.rate_out))
        self.library.Diagnostics(self.handle, text, ctypes.c_uint32(len(text)))
        parts = [line.split(", ") for line in text.value.decode().splitlines() if line.startswith("stage ")]
        return ", ".join(part[1].removeprefix("decimation by ").removeprefix("resampling by ") for part in parts)

    def tone(self, frequency):
        """The settled output for a tone of amplitude 1 at `frequency` output rates."""
        count = int((2 * SETTLED + MEASURED) * self.ratio)
        turns = np.mod(frequency / self.ratio * np.arange(count), 1.0)
        return self(np.exp(2j * np.pi * turns))[SETTLED:]


def measure_passband(downconverter):
    """Frequencies in output rates, the gain in dB and what is left beside the tone in dB."""
    frequencies = np.linspace(-PASS_EDGE, PASS_EDGE, 181)
    frequencies = frequencies[np.abs(frequencies) <= 0.5 * downconverter.ratio]
    gains, rests = [], []
    for frequency in frequencies:
        output = downconverter.tone(frequency)
        expected = np.exp(2j * np.pi * frequency * (SETTLED + np.arange(output.size)))
        gain = np.mean(output / expected)
        gains.append(abs(gain))
        rests.append(np.max(np.abs(output - gain * expected)))
    return frequencies, decibel(np.array(gains)), decibel(np.array(rests))


def measure_aliases(downconverter, tones):
    """Frequencies in output rates from the stop edge to half the input's rate, both signs, and the largest sample in dB
    that a tone there leaves in the output. Spread evenly and shaken, so that no zone's edge is met or missed every time.
    """
    half = 0.5 * downconverter.ratio
    if half <= STOP_EDGE:
        return np.empty(0), np.empty(0)
    shaken = (np.arange(tones) + np.random.default_rng(1).random(tones)) / tones
    frequencies = STOP_EDGE + shaken * (half - STOP_EDGE)
    # The edges of every zone: where a tone folds to the ends and the middle of the passband.
    zones = np.arange(1, int(half) + 1)
    edges = (zones[:, None] + np.array([-PASS_EDGE, -0.2, 0.0, 0.2, PASS_EDGE])).ravel()
    frequencies = np.concatenate([frequencies, edges[(edges >= STOP_EDGE) & (edges <= half)]])
    frequencies = np.sort(np.concatenate([-frequencies, frequencies]))
    return frequencies, decibel(np.array([np.max(np.abs(downconverter.tone(f))) for f in frequencies]))


def impulse_responses(downconverter, count):
    """For impulses at `count` input samples all over a stretch of outputs: times in output samples from the impulse on,
    and the output."""
    ratio = downconverter.ratio
    for place in np.mod(np.arange(count) * GOLDEN_RATIO, 1.0):
        number = int((1.0 + place) * SETTLED * ratio)
        samples = np.zeros(int(4 * SETTLED * ratio), np.complex64)
        samples[number] = 1.0
        output = downconverter(samples) * ratio
        yield np.arange(output.size) - number / ratio, output


def measure_impulse(downconverter):
    """Many impulses together show the continuous response: times in output samples and its values."""
    times, outputs = zip(*impulse_responses(downconverter, 64))
    return np.concatenate(times), np.concatenate(outputs)


def impulse_time_error(downconverter):
    """The largest distance in output samples between an impulse's time and where its response stands, by the slope of
    its phase over the passband."""
    worst = 0.0
    frequencies = np.linspace(-0.4, 0.4, 17)
    for times, output in impulse_responses(downconverter, 40):
        phases = np.angle(np.exp(-2j * np.pi * np.outer(frequencies, times)) @ output)
        worst = max(worst, abs(np.polyfit(-2.0 * np.pi * frequencies, phases, 1)[0]))
    return worst


def draw(path, downconverter, passband, aliases, impulse):
    figure, (top, middle, bottom) = plt.subplots(3, 1, figsize=(10, 12), constrained_layout=True)
    figure.suptitle(f"{downconverter.rate_in:,} to {downconverter.rate_out:,} samples/s\n"
                    f"stages: {downconverter.stages()}")

    frequencies, gains, rests = passband
    top.plot(frequencies, gains)
    top.set(title="Passband", xlabel="frequency / output rate", ylabel="gain / dB", ylim=(-0.012, 0.012),
            xlim=(-0.5, 0.5))
    top.axhline(0.01, color="tab:red", linewidth=0.8)
    top.axhline(-0.01, color="tab:red", linewidth=0.8)

    kilohertz = downconverter.rate_out / 1e3
    middle.plot(frequencies * kilohertz, gains, color="tab:blue", label="passband")
    middle.plot(frequencies * kilohertz, rests, ".", markersize=2, color="tab:green", label="beside a tone in the passband")
    tones, levels = aliases
    if tones.size:
        folds = np.abs(tones - np.round(tones)) <= PASS_EDGE
        middle.plot(tones[~folds] * kilohertz, levels[~folds], ".", markersize=2, color="tab:gray",
                    label="folds beside the passband")
        middle.plot(tones[folds] * kilohertz, levels[folds], ".", markersize=2, color="tab:orange",
                    label="folds into the passband")
    half = 0.5 * downconverter.rate_in / 1e3
    middle.axhline(-110.0, color="tab:red", linewidth=0.8)
    middle.set(title="What tones of 0 dB leave in the output", xlabel="frequency / kHz", ylabel="dB",
               ylim=(FLOOR, 5), xlim=(-half, half))
    middle.legend(loc="upper right", markerscale=4)

    times, values = impulse
    bottom.plot(times, decibel(np.abs(values)), ".", markersize=2)
    bottom.set(title="Impulse", xlabel="time from the impulse on / output samples", ylabel="response / dB",
               ylim=(FLOOR, 5), xlim=(-SETTLED, SETTLED))
    for axes in (top, middle, bottom):
        axes.grid(alpha=0.3)
    path.parent.mkdir(parents=True, exist_ok=True)
    figure.savefig(path, dpi=80, metadata={"Software": None})
    plt.close(figure)


def main():
    parser = argparse.ArgumentParser(description="Measures and draws the downconverter's response.")
    parser.add_argument("pairs", nargs="*", default=PAIRS, metavar="IN:OUT", help=f"default: {' '.join(PAIRS)}")
    parser.add_argument("--library", type=Path, default=PROJECT / "build/release/bin/libVantrel.so",
                        help="default: %(default)s")
    parser.add_argument("--pictures", type=Path, default=PROJECT / "docs/pictures", help="default: %(default)s")
    parser.add_argument("--tones", type=int, default=3000, help="of either sign, in the aliases' sweep")
    options = parser.parse_args()

    print("| rates | stages | passband | gain at 0 Hz | beside the tone | aliases | impulse |")
    print("|---|---|---|---|---|---|---|")
    for pair in options.pairs:
        rate_in, rate_out = map(int, pair.split(":"))
        downconverter = Downconverter(options.library, rate_in, rate_out)
        passband = measure_passband(downconverter)
        aliases = measure_aliases(downconverter, options.tones)
        draw(options.pictures / f"response-{rate_in}-{rate_out}.png", downconverter, passband, aliases,
             measure_impulse(downconverter))
        constant = abs(np.mean(downconverter.tone(0.0)) - 1.0)
        worst_alias = f"{np.max(aliases[1]):.0f} dB ({aliases[1].size} tones)" if aliases[1].size else "none can fold"
        print(f"| {rate_in:,} → {rate_out:,} | {downconverter.stages()} | {np.max(np.abs(passband[1])):.5f} dB | "
              f"1 ± {constant:.0e} | {np.max(passband[2]):.0f} dB | {worst_alias} | "
              f"{impulse_time_error(downconverter):.0e} |", flush=True)


main()

"""Reads WAV and RF64 files and measures what is in them, independently of Carvello's own reader."""
import dataclasses
import struct
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import numpy as np


class WaveFile:
    """Every chunk of one file by the rules of RIFF and RF64 (EBU Tech 3306). Raises AssertionError on a broken file."""

    def __init__(self, path):
        self.path = Path(path)
        self.length = self.path.stat().st_size
        self.chunks = []  # (identifier, offset of the body, size of the body)
        with open(self.path, "rb") as file:
            self.form, self.riff_size, kind = struct.unpack("<4sI4s", file.read(12))
            assert self.form in (b"RIFF", b"RF64") and kind == b"WAVE", f"{path}: {self.form} {kind}"
            self.ds64 = None
            position = 12
            while position + 8 <= self.length:
                file.seek(position)
                identifier, size = struct.unpack("<4sI", file.read(8))
                if identifier == b"ds64":
                    self.ds64 = struct.unpack("<QQQI", file.read(28))
                if identifier == b"data" and size == 0xFFFFFFFF:
                    size = self.ds64[1]
                self.chunks.append((identifier, position + 8, size))
                position += 8 + size + size % 2
            self.end = position
            self.header = b""
            if self.has(b"data"):
                file.seek(0)
                self.header = file.read(self.data_offset)
        self.tag, self.channels, self.rate, self.bytes_per_second, self.block_align, self.bits = struct.unpack(
            "<HHIIHH", self.body(b"fmt ")[:16])

    def has(self, identifier):
        return any(name == identifier for name, _, _ in self.chunks)

    def place(self, identifier):
        found = [(offset, size) for name, offset, size in self.chunks if name == identifier]
        assert len(found) == 1, f"{self.path}: {len(found)} chunks {identifier}"
        return found[0]

    def body(self, identifier):
        offset, size = self.place(identifier)
        with open(self.path, "rb") as file:
            file.seek(offset)
            return file.read(size)

    @property
    def data_offset(self):
        return self.place(b"data")[0]

    @property
    def data_bytes(self):
        return self.place(b"data")[1]

    @property
    def frames(self):
        return self.data_bytes // self.block_align

    @property
    def identifiers(self):
        return [name for name, _, _ in self.chunks]

    def check_complete(self):
        """Sizes as they must be in a file that was closed properly."""
        assert self.end == self.length, f"{self.path}: chunks end at {self.end} of {self.length}"
        riff_size = self.ds64[0] if self.form == b"RF64" else self.riff_size
        assert riff_size == self.length - 8, f"{self.path}: RIFF size {riff_size}, file {self.length}"
        assert self.identifiers[-1] == b"LIST", f"{self.path}: {self.identifiers}"
        assert self.data_bytes % self.block_align == 0, f"{self.path}: {self.data_bytes} data bytes"

    def metadata_text(self):
        raw = self.body(b"auxi")
        assert raw.endswith(b"\0\0")
        return raw[:-2].decode("utf-16-le")

    def metadata(self):
        definition = ElementTree.fromstring(self.metadata_text()).find("Definition")
        return dict(definition.attrib)

    def info(self):
        """The texts of the LIST/INFO chunk in the order of the file."""
        body = self.body(b"LIST")
        assert body[:4] == b"INFO"
        texts, position = {}, 4
        while position < len(body):
            identifier, size = struct.unpack_from("<4sI", body, position)
            texts[identifier.decode()] = body[position + 8:position + 8 + size].split(b"\0")[0].decode()
            position += 8 + size + size % 2
        return texts

    def data(self):
        """The sample bytes; mapped, not read."""
        if self.data_bytes == 0:
            return np.zeros(0, dtype=np.uint8)
        return np.memmap(self.path, dtype=np.uint8, mode="r", offset=self.data_offset, shape=(self.data_bytes,))

    def samples(self):
        """Complex samples as they stand in the file: no scaling, 8-bit values signed."""
        raw = self.data()
        if self.bits == 24:
            raw = np.pad(raw.reshape(-1, 3), ((0, 0), (1, 0)))  # 32-bit values 256 times as large
        kind = {(1, 8): "i1", (1, 16): "<i2", (1, 24): "<i4", (1, 32): "<i4", (3, 32): "<f4"}[self.tag, self.bits]
        values = np.frombuffer(raw.tobytes(), dtype=kind) / (256 if self.bits == 24 else 1)
        return values[0::2] + 1j * values[1::2]


@dataclasses.dataclass
class MeasuredTone:
    frequency: float  # Hz from the centre
    amplitude: float
    phase: float  # radians at sample 0


def _window(count):
    """Blackman-Harris: what is more than four bins away disappears (-92 dB)."""
    turn = 2 * np.pi * np.arange(count) / count
    return 0.35875 - 0.48829 * np.cos(turn) + 0.14128 * np.cos(2 * turn) - 0.01168 * np.cos(3 * turn)


def spectrum(samples, rate):
    """Amplitudes of the lines in the samples, within 0.83 dB between two lines, and the frequencies they stand at."""
    window = _window(len(samples))
    return np.abs(np.fft.fft(samples * window)) / np.sum(window), np.fft.fftfreq(len(samples), 1 / rate)


def measure_tone(samples, rate, near, within=5.0):
    """The strongest tone within `within` Hz of `near`: a peak of the spectrum first, then the phase that the signal
    gains between its two halves at that frequency, repeated until it gains none. Well below 0.001 Hz for a second or
    more."""
    step = 1 << max(1, len(samples).bit_length() - 6)
    count = len(samples) // step * step  # a length that the Fourier transform is fast for
    half = count // 2
    samples = samples[:count]
    amplitudes, frequencies = spectrum(samples, rate)
    amplitudes[np.abs(frequencies - near) > within] = 0
    frequency = frequencies[np.argmax(amplitudes)]
    window, index = _window(half), np.arange(count)
    for _ in range(4):
        turned = samples * np.exp(-2j * np.pi * frequency / rate * index)
        early, late = np.sum(turned[:half] * window), np.sum(turned[half:] * window)
        frequency += np.angle(late * np.conj(early)) / (2 * np.pi * half / rate)
    window = _window(count)
    value = np.sum(samples * np.exp(-2j * np.pi * frequency / rate * index) * window) / np.sum(window)
    return MeasuredTone(frequency, abs(value), np.angle(value))


def pulse_middle(samples, expected, reach):
    """The middle of the energy within `reach` samples of the expected place."""
    first = max(0, int(round(expected)) - reach)
    power = np.abs(samples[first:int(round(expected)) + reach + 1]) ** 2
    return first + np.sum(power * np.arange(len(power))) / np.sum(power)


def decibels(ratio):
    return 20 * np.log10(ratio)


def wrapped(angle):
    """An angle brought to -pi .. pi."""
    return (angle + np.pi) % (2 * np.pi) - np.pi

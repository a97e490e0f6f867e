"""Makes input recordings byte by byte.

Nothing here knows Carvello's code: headers are laid out with struct, the metadata text is put together as a string, and
signals are computed from their definition. Amplitudes are in units of 16-bit full scale = 32768 throughout, whatever
the sample size of the file.
"""
import dataclasses
import datetime
import struct
from pathlib import Path
from xml.sax.saxutils import quoteattr

import numpy as np

START = 1604275140  # 2020-11-01 23:59:00 UTC, one minute before a new day
PCM, FLOAT, EXTENSIBLE = 1, 3, 0xFFFE


# ---- signals ---------------------------------------------------------------------------------------------------------

@dataclasses.dataclass
class Tone:
    offset: int  # Hz from the recording's centre
    amplitude: float
    phase: float = 0.0  # radians at the recording's first frame


@dataclasses.dataclass
class Pulse:
    """A Gaussian burst of a carrier: short in time and in frequency, so that its middle can be found exactly."""
    offset: int
    amplitude: float
    middle: float  # frames from the recording's first frame, fractions allowed
    sigma: float  # frames


def signal(sources, rate, first, count):
    """Frames first .. first + count - 1 of the sum of the sources. Phases are reduced in whole numbers, so that they
    are as exact an hour into a recording as at its start."""
    index = np.arange(first, first + count, dtype=np.int64)
    total = np.zeros(count, dtype=np.complex128)
    for source in sources:
        turns = (index * source.offset) % rate / rate
        if isinstance(source, Tone):
            total += source.amplitude * np.exp(1j * (2 * np.pi * turns + source.phase))
            continue
        low = max(0, int(source.middle - 8 * source.sigma) - first)
        high = min(count, int(source.middle + 8 * source.sigma) + 1 - first)
        if low < high:
            envelope = np.exp(-0.5 * ((index[low:high] - source.middle) / source.sigma) ** 2)
            total[low:high] += source.amplitude * envelope * np.exp(2j * np.pi * turns[low:high])
    return total


def encode(samples, form):
    """Interleaved I/Q bytes. `form`: "s8", "s16", "s24", "s32" or "f32". 8-bit samples hold the value as it stands."""
    values = np.empty(2 * len(samples))
    values[0::2] = samples.real
    values[1::2] = samples.imag
    if form == "f32":
        return (values / 32768).astype("<f4").tobytes()
    if form == "s8":
        return np.clip(np.rint(values), -128, 127).astype("i1").tobytes()
    if form == "s16":
        return np.clip(np.rint(values), -32768, 32767).astype("<i2").tobytes()
    if form == "s24":
        whole = np.clip(np.rint(values * 256), -2**23, 2**23 - 1).astype("<i4")
        return whole.view("u1").reshape(-1, 4)[:, :3].tobytes()
    if form == "s32":
        return np.clip(np.rint(values * 65536), -2**31, 2**31 - 1).astype("<i4").tobytes()
    raise ValueError(form)


def bits_of(form):
    return int(form[1:])


# ---- chunks ----------------------------------------------------------------------------------------------------------

def chunk(identifier, body):
    return identifier + struct.pack("<I", len(body)) + body


def format_body(rate, form, extensible=False, channels=2, bits=None):
    bits = bits or bits_of(form)
    tag = FLOAT if form.startswith("f") else PCM
    align = bits // 8 * channels
    head = struct.pack("<HIIHH", channels, rate, rate * align, align, bits)
    if extensible:
        guid = struct.pack("<IHH", tag, 0, 0x10) + bytes.fromhex("800000aa00389b71")
        return struct.pack("<H", EXTENSIBLE) + head + struct.pack("<HHI", 22, bits, 3) + guid
    return struct.pack("<H", tag) + head


def metadata_text(attributes):
    inner = " ".join(f"{name}={quoteattr(str(value))}" for name, value in attributes.items())
    return ('<?xml version="1.0"?><SDR-XML-Root Description="Saved recording data" Created="01-Nov-2020 23:59">'
            f"<Definition {inner} /></SDR-XML-Root>")


def auxi_chunk(text):
    return chunk(b"auxi", (text + "\0").encode("utf-16-le"))


def info_chunk(texts):
    body = b"INFO"
    for identifier, text in texts.items():
        raw = text.encode() + b"\0"
        body += identifier.encode() + struct.pack("<I", len(raw)) + raw + b"\0" * (len(raw) % 2)
    return chunk(b"LIST", body)


def riff_file(chunks, data_bytes, trailer=b""):
    """Everything in front of the samples of a RIFF file whose `trailer` follows them."""
    body = b"WAVE" + b"".join(chunks) + b"data" + struct.pack("<I", data_bytes)
    return b"RIFF" + struct.pack("<I", len(body) + data_bytes + len(trailer)) + body


def rf64_file(chunks, data_bytes, frames, trailer=b""):
    body = b"".join(chunks) + b"data" + b"\xff" * 4
    riff_bytes = 4 + 36 + len(body) + data_bytes + len(trailer)
    ds64 = struct.pack("<QQQI", riff_bytes, data_bytes, frames, 0)
    return b"RF64" + b"\xff" * 4 + b"WAVE" + chunk(b"ds64", ds64) + body


# ---- recordings ------------------------------------------------------------------------------------------------------

@dataclasses.dataclass
class Layout:
    """How a recording is stored; the defaults are a plain 16-bit WAV file with XML metadata."""
    rate: int
    centre: int = 7_100_000
    start: int = START
    form: str = "s16"
    rf64: bool = False
    extensible: bool = False
    metadata: bool = True
    attributes: dict = dataclasses.field(default_factory=dict)  # added to, or in the place of, the usual ones
    info: dict = dataclasses.field(default_factory=dict)
    chunks: list = dataclasses.field(default_factory=list)  # further ones in front of the samples

    @property
    def frame_bytes(self):
        return bits_of(self.form) // 8 * 2

    def header(self, path, frames, first_file=None, offset_seconds=0, data_bytes=None):
        chunks = [chunk(b"fmt ", format_body(self.rate, self.form, self.extensible))]
        if self.metadata:
            start = self.start + offset_seconds
            when = datetime.datetime.fromtimestamp(start, datetime.timezone.utc).strftime("%d-%m-%Y %H:%M:%S")
            attributes = {
                "CurrentTimeUTC": when, "Filename": Path(path).name, "FirstFile": first_file or Path(path).name,
                "RadioModel": "Test Radio", "RadioSerial": "SN-0042", "SoftwareName": "Recording Program", "UTC": when,
                "XMLLevel": "XMLLevel003", "ADFrequency": 122880000, "BitsPerSample": bits_of(self.form),
                "BytesPerSecond": self.rate * self.frame_bytes, "RadioCenterFreq": self.centre,
                "SampleRate": self.rate, "UTCSeconds": start}
            attributes.update(self.attributes)
            chunks.append(auxi_chunk(metadata_text(attributes)))
        chunks += self.chunks
        data_bytes = frames * self.frame_bytes if data_bytes is None else data_bytes
        trailer = info_chunk(self.info) if self.info else b""
        if self.rf64:
            return rf64_file(chunks, data_bytes, frames, trailer), trailer
        return riff_file(chunks, data_bytes, trailer), trailer


def write_recording(path, layout, samples, first_file=None, offset_seconds=0):
    header, trailer = layout.header(path, len(samples), first_file, offset_seconds)
    Path(path).write_bytes(header + encode(samples, layout.form) + trailer)
    return Path(path)


def write_set(folder, name, layout, sources, seconds):
    """A numbered sequence "name 000.wav", "name 001.wav", … whose n-th file holds seconds[n] whole seconds."""
    paths, first = [], 0
    for number, length in enumerate(seconds):
        path = Path(folder) / f"{name} {number:03d}.wav"
        samples = signal(sources, layout.rate, first, length * layout.rate)
        paths.append(write_recording(path, layout, samples, f"{name} 000.wav", first // layout.rate))
        first += len(samples)
    return paths


def write_sparse(path, layout, frames, patches=(), first_file=None, offset_seconds=0):
    """A recording of zeros that takes hardly any disk. `patches`: (first frame, samples) written over the zeros."""
    header, trailer = layout.header(path, frames, first_file, offset_seconds)
    with open(path, "wb") as file:
        file.write(header)
        for first, samples in patches:
            file.seek(len(header) + first * layout.frame_bytes)
            file.write(encode(samples, layout.form))
        file.truncate(len(header) + frames * layout.frame_bytes)
        file.seek(0, 2)
        file.write(trailer)
    return Path(path)

"""Reads PNG files of 8 bits a channel by their definition (ISO/IEC 15948)."""
import struct
import zlib
from pathlib import Path

import numpy as np

CHANNELS = {0: 1, 2: 3, 6: 4}  # greys, colours, colours with alpha


def read_png(path):
    """Rows x columns of greys, or rows x columns x channels."""
    data = Path(path).read_bytes()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", data[:8]
    place, packed, header = 8, b"", None
    kind = None
    while kind != b"IEND":
        length, kind = struct.unpack(">I4s", data[place:place + 8])
        body = data[place + 8:place + 8 + length]
        checksum, = struct.unpack(">I", data[place + 8 + length:place + 12 + length])
        assert checksum == zlib.crc32(kind + body), kind
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
        place += 12 + length
    assert place == len(data), "something stands behind the end"
    width, height, bits, colour, _, _, interlaced = header
    assert bits == 8 and not interlaced, header
    channels = CHANNELS[colour]
    raw = np.frombuffer(zlib.decompress(packed), np.uint8).reshape(height, 1 + width * channels)
    rows = np.zeros((height, width * channels), np.uint8)
    above = np.zeros(width * channels, np.uint8)
    for y in range(height):
        above = rows[y] = unfiltered(raw[y, 0], raw[y, 1:], above, channels)
    return rows if channels == 1 else rows.reshape(height, width, channels)


def unfiltered(kind, line, above, channels):
    if kind == 0:
        return line
    if kind == 2:
        return line + above
    done = [0] * channels
    corner = [0] * channels + [int(value) for value in above]
    for x, value in enumerate(map(int, line)):
        left, up, before = done[x], corner[x + channels], corner[x]
        if kind == 1:
            guess = left
        elif kind == 3:
            guess = (left + up) // 2
        else:
            guess = min((left, up, before), key=lambda choice: abs(left + up - before - choice))
        done.append((value + guess) & 255)
    return np.array(done[channels:], np.uint8)

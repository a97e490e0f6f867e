"""Recordings of other programs, laid out byte by byte from what those programs write.

Dates are given as tuples (year, month, day, hour, minute, second) or with milliseconds as a seventh number, so that they
may be dates that no calendar has.
"""
import calendar
import struct
from pathlib import Path

from makers import chunk, format_body, riff_file

CLOCK = 122_880_000
NEVER = (0,) * 6


def system_time(date):
    """The 16 bytes of a Windows calendar record; the day of the week is left at 0."""
    year, month, day, hour, minute, second, *milliseconds = date
    return struct.pack("<8H", year, month, 0, day, hour, minute, second, *(milliseconds or [0]))


def utc_seconds(date):
    return calendar.timegm((*date[:6], 0, 0, 0))


def auxi_28(start, centre):
    """SpectraVue 1: start, centre frequency, clock of the converter, four further bytes."""
    return chunk(b"auxi", system_time(start) + struct.pack("<III", centre, CLOCK, 0))


def auxi(size, start, stop, centre):
    """SpectraVue 2 (44 bytes), 2.34 (68), 3.0 (72), Winrad and ELAD (164)."""
    body = system_time(start) + system_time(stop) + struct.pack("<II", centre, CLOCK)
    return chunk(b"auxi", body.ljust(size, b"\0"))


def elad():
    return chunk(b"elad", bytes(20))


def rcvr(centre, rate_index, start_seconds):
    """Perseus."""
    return chunk(b"rcvr", struct.pack("<IIq", centre, rate_index, start_seconds) + bytes(18))


def meta(signal_time, centre, rate, below_base=False, data_type="complex"):
    """go2MONITOR: elements below the root, or below `base` as other writers lay them."""
    elements = (f"<bandwidth>{rate * 0.9:.3f}</bandwidth><data_type>{data_type}</data_type>"
                f"<if_frequency>0</if_frequency><rf_frequency>{centre}.000</rf_frequency>"
                f"<sample_rate>{rate}.000</sample_rate><signaltime>{signal_time}</signaltime>")
    if below_base:
        elements = f"<base>{elements}</base>"
    return chunk(b"meta", ("<?xml version='1.0' encoding='UTF-8'?>\r\n"
                           f'<signalinfo xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">{elements}</signalinfo>')
                 .encode())


def sdrsharp_name(date, frequency="7050000Hz", prefix="SDRSharp"):
    return "{0}_{1:04}{2:02}{3:02}_{4:02}{5:02}{6:02}Z_{7}_IQ.wav".format(prefix, *date[:6], frequency)


def winradio_name(date, megahertz="7.050", end=""):
    return "G39DDC-{0}MHz_{1:02}-{2:02}-{3:02}_{4:02}'{5:02}'{6:02}{7}.ddc".format(megahertz, date[0] % 100,
                                                                                 *date[1:6], end)


def write(path, rate, data, chunks=(), behind=(), form="s16", bytes_per_second=None):
    """A WAV file whose `chunks` stand between format and samples, and `behind` behind the samples."""
    body = format_body(rate, form)
    if bytes_per_second is not None:
        body = body[:8] + struct.pack("<I", bytes_per_second) + body[12:]
    trailer = b"".join(behind)
    Path(path).write_bytes(riff_file([chunk(b"fmt ", body), *chunks], len(data), trailer) + data + trailer)
    return Path(path)

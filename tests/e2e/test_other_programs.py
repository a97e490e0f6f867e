"""Recordings of other programs, which say where and when they were made in ways of their own."""
import struct
import unittest

from makers import START, Layout, Tone, chunk, signal, write_recording
from program import EndToEndTest, local, native
from wavtools import WaveFile, measure_tone

RATE = 125_000
SECONDS = 4


def system_time(year, month, day, hour, minute, second):
    return struct.pack("<8H", year, month, 0, day, hour, minute, second, 0)


class TestRecordingsOfOtherPrograms(EndToEndTest):
    def check(self, name, source, centre, start, chunks=()):
        layout = Layout(RATE, metadata=False, chunks=list(chunks))
        path = write_recording(self.folder / name, layout, signal([Tone(12_345, 9000)], RATE, 0, SECONDS * RATE))
        info = self.info(path)
        self.assertEqual((info["source"], info["centreFrequency"], info["sampleRate"]), (source, centre, RATE))
        self.assertEqual(info["files"], [native(path)])
        self.assertEqual(info["metadata"], {})
        if start is not None:
            self.assertEqual((info["startUtc"], info["endUtc"]), (start, start + SECONDS))

        output, = self.cut(path, "--entry", f"f={centre + 12_000},bw=10k,start=+1,bits=32")
        file = WaveFile(local(output["files"][0]))
        file.check_complete()
        metadata = file.metadata()
        self.assertEqual(metadata["UTCSeconds"], str(info["startUtc"] + 1))
        self.assertEqual(metadata["RadioCenterFreq"], str(centre + 12_000))
        tone = measure_tone(file.samples()[2000:-2000], 10_000, 345)
        self.assertAlmostEqual(tone.frequency, 345, delta=0.01)
        self.assertAlmostEqual(tone.amplitude, 9000, delta=50)

    def test_perseus(self):
        receiver = struct.pack("<IIq", 7_050_000, 0, START) + bytes(18)
        self.check("perseus.wav", "Perseus", 7_050_000, START, [chunk(b"rcvr", receiver)])

    def test_winrad(self):
        times = system_time(2020, 11, 1, 23, 59, 0) + system_time(2020, 11, 1, 23, 59, SECONDS)
        block = (times + struct.pack("<I", 14_150_000)).ljust(164, b"\0")
        self.check("winrad.wav", "Winrad", 14_150_000, START, [chunk(b"auxi", block)])

    def test_sdrsharp(self):
        self.check("SDRSharp_20201101_235900Z_7050000Hz_IQ.wav", "SDRSharp", 7_050_000, START)

    def test_frequency_in_the_name_alone(self):
        self.check("rec_7050khz.wav", "UnknownFmt", 7_050_000, None)


if __name__ == "__main__":
    unittest.main()

"""An output in several parts, large enough for three parts of 100 MB, beside the same output in one file."""
import hashlib
import unittest

import numpy as np

from makers import START, Layout, Tone, signal, write_recording, write_sparse
from program import SLOW, EndToEndTest, local, native
from wavtools import WaveFile, decibels, measure_tone

LIMIT = 100_000_000
BUFFER = 16 << 20  # bytes that are written at a time: what a part may be longer than the limit


class TestSplitOutput(EndToEndTest):
    """8-bit input at a small rate keeps the input small; the 32-bit output at the full rate is four times as large."""

    RATE = 1_000_000
    TONE = Tone(151_234, 90)
    SECONDS = 27

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        # One second over and over: the tone has a whole number of turns in it.
        second = Layout(cls.RATE, form="s8")
        cls.source = write_recording(cls.shared / "in.wav", second, signal([cls.TONE], cls.RATE, 0, cls.RATE))
        samples = cls.source.read_bytes()[-2 * cls.RATE:]
        header, _ = second.header(cls.source, cls.SECONDS * cls.RATE)
        with open(cls.source, "wb") as file:
            file.write(header)
            for _ in range(cls.SECONDS):
                file.write(samples)

    def test_parts_continue_each_other_and_make_up_the_one_file_output(self):
        split, = self.cut(self.source, "--entry", "f=7.2M,bw=1M,bits=32")
        parts = [WaveFile(local(name)) for name in split["files"]]
        self.assertEqual(self.names(), [f"2020-11-01 2359z, f=7.200 MHz, bw=1 MHz {n:03d}.wav" for n in range(3)])
        self.assertEqual([part.path.name for part in parts], self.names())

        whole_hash, frames = hashlib.sha256(), 0
        for number, part in enumerate(parts):
            part.check_complete()
            metadata = part.metadata()
            self.assertEqual(metadata["Sequence"], str(number))
            self.assertEqual(metadata["FirstFile"], parts[0].path.name)
            self.assertEqual(metadata["Filename"], part.path.name)
            self.assertEqual(metadata["PreviousFile"], parts[number - 1].path.name if number else "")
            self.assertEqual(metadata["InternalTag"], parts[0].metadata()["InternalTag"])
            self.assertEqual(metadata["UTCSeconds"], str(START + frames // self.RATE))
            if number < 2:
                written = part.data_offset + part.data_bytes
                self.assertGreaterEqual(written, LIMIT)
                self.assertLess(written, LIMIT + BUFFER)
            whole_hash.update(part.data())
            frames += part.frames
        self.assertEqual(frames, split["frames"])
        self.assertEqual(split["bytes"], 8 * frames)
        self.assertEqual(frames, self.SECONDS * self.RATE)

        info = self.info(parts[2].path)
        self.assertEqual(info["files"], [native(part.path) for part in parts])
        self.assertEqual(info["totalBytes"], 8 * frames)
        # The tone runs through where one part ends and the next begins.
        edge = self.RATE // 2
        joint = np.concatenate([parts[0].samples()[-edge:], parts[1].samples()[:edge]])
        tone = measure_tone(joint, self.RATE, self.TONE.offset - 100_000)
        self.assertAlmostEqual(tone.frequency, self.TONE.offset - 100_000, delta=0.01)
        self.assertAlmostEqual(decibels(tone.amplitude / self.TONE.amplitude), 0, delta=0.05)
        residue = joint - tone.amplitude * np.exp(
            1j * (2 * np.pi * tone.frequency / self.RATE * np.arange(len(joint)) + tone.phase))
        self.assertLess(np.abs(residue).max(), 2)  # 8-bit noise; a lost frame would leave most of the tone

        for part in parts:
            part.path.unlink()  # room for the second output
        one, = self.cut(self.source, "--entry", "f=7.2M,bw=1M,bits=32,size=RF64")
        whole = WaveFile(local(one["files"][0]))
        whole.check_complete()
        self.assertEqual(whole.form, b"RF64")
        self.assertEqual(whole.frames, frames)
        self.assertEqual(hashlib.sha256(whole.data()).digest(), whole_hash.digest())

    def test_output_of_a_gigabyte_limit_stays_in_one_part(self):
        seconds = 13 if SLOW else 20
        output, = self.cut(self.source, "--entry", f"f=7.2M,bw=1M,bits=32,size=1GB,duration={seconds}")
        self.assertEqual(self.names(), ["2020-11-01 2359z, f=7.200 MHz, bw=1 MHz 000.wav"])
        part = WaveFile(local(output["files"][0]))
        part.check_complete()
        self.assertGreater(part.data_bytes, LIMIT)
        self.assertEqual(part.form, b"RIFF")


class TestEndsOfParts(EndToEndTest):
    """Samples join the 16 MiB that are written at a time by stretches of 2,097,152 input frames, and a part ends between
    two such writes. From 2 MHz to 300 kHz a stretch brings 314,572 or 314,573 samples of 4 bytes, 13 of which fit: the
    writes end with stretches 13, 26, ..., and the seventh, which brings the first part to 91 stretches, is the first
    beyond 100 MB."""

    RATE = 2_000_000
    STRETCH = 2_097_152
    SECONDS = 100

    def test_first_part_ends_and_second_begins_where_that_arithmetic_says(self):
        source = write_sparse(self.folder / "in.wav", Layout(self.RATE, form="s8"), self.SECONDS * self.RATE)
        output, = self.cut(source, "--entry", "f=7.1M,bw=300k")
        parts = [WaveFile(local(name)) for name in output["files"]]
        self.assertEqual(len(parts), 2)
        for part in parts:
            part.check_complete()
        self.assertEqual(sum(part.frames for part in parts), self.SECONDS * 300_000)
        # Filters are late, so a stretch's samples are those of a stretch that ends a little earlier.
        first = 7 * 13 * self.STRETCH * 3 / 20
        self.assertLessEqual(parts[0].frames, first)
        self.assertGreater(parts[0].frames, first - 100)
        self.assertAlmostEqual(parts[0].data_bytes, 114.5e6, delta=0.1e6)
        self.assertEqual(parts[1].metadata()["UTCSeconds"], str(START + 95))


if __name__ == "__main__":
    unittest.main()

"""Recordings beyond 4 GiB: sparse files, which take no room."""
import time
import unittest

from makers import START, Layout, Tone, signal, write_sparse
from program import EndToEndTest, local, run_ok
from wavtools import WaveFile, decibels, measure_tone


class TestAbove4GiB(EndToEndTest):
    RATE = 2_000_000
    SECONDS = 700  # 5.6 GB
    TONE = Tone(-123_456, 7000)

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.layout = Layout(cls.RATE, rf64=True, info={"INAM": "behind the samples"})
        first = (cls.SECONDS - 3) * cls.RATE
        cls.source = write_sparse(cls.shared / "large.wav", cls.layout, cls.SECONDS * cls.RATE,
                                  [(first, signal([cls.TONE], cls.RATE, first, 3 * cls.RATE))])

    def test_info_counts_everything(self):
        info = self.info(self.source)
        self.assertEqual(info["totalBytes"], self.SECONDS * self.RATE * 4)
        self.assertGreater(info["totalBytes"], 2**32)
        self.assertEqual(info["seconds"], self.SECONDS)
        self.assertEqual(info["endUtc"], START + self.SECONDS)
        self.assertTrue(info["rf64"])
        self.assertEqual(info["infoTexts"]["INAM"], "behind the samples")

    def test_stretch_near_the_end_is_found(self):
        output, = self.cut(self.source, "--entry", f"f=6.876M,bw=100k,start=+{self.SECONDS - 3},bits=32")
        self.assertAlmostEqual(output["frames"], 300_000, delta=64)
        file = WaveFile(local(output["files"][0]))
        self.assertEqual(file.metadata()["UTCSeconds"], str(START + self.SECONDS - 3))
        # The tone stands 100,544 Hz above this output's centre: outside. Around it the band is empty.
        self.assertLess(abs(file.samples()[1000:-1000]).max(), 1)
        output, = self.cut(self.source, "--entry", f"f=6.976M,bw=100k,start=+{self.SECONDS - 3},bits=32")
        tone = measure_tone(WaveFile(local(output["files"][0])).samples()[5000:-5000], 100_000, 544)
        self.assertAlmostEqual(tone.frequency, 544, delta=0.01)
        self.assertAlmostEqual(decibels(tone.amplitude / self.TONE.amplitude), 0, delta=0.05)

    def test_set_of_two_large_files_is_skipped_into_the_second(self):
        name = "set 000.wav"
        write_sparse(self.folder / name, self.layout, self.SECONDS * self.RATE, first_file=name)
        second = self.SECONDS * self.RATE
        samples = signal([self.TONE], self.RATE, second + 5 * self.RATE, self.RATE)
        write_sparse(self.folder / "set 001.wav", self.layout, second, [(5 * self.RATE, samples)], name, self.SECONDS)
        self.assertEqual(self.info(self.folder / name)["totalBytes"], 2 * second * 4)
        output, = self.cut(self.folder / name, "--entry",
                           f"f=6.976M,bw=100k,bits=32,start=+{self.SECONDS + 5},duration=1")
        tone = measure_tone(WaveFile(local(output["files"][0])).samples()[5000:-5000], 100_000, 544)
        self.assertAlmostEqual(decibels(tone.amplitude / self.TONE.amplitude), 0, delta=0.05)


class TestSixtyGigabytes(EndToEndTest):
    def test_walk_finds_what_stands_behind_the_samples(self):
        layout = Layout(2_000_000, rf64=True, info={"INAM": "the end"})
        source = write_sparse(self.folder / "huge.wav", layout, 15_000_000_000)
        self.assertGreater(source.stat().st_size, 60_000_000_000)
        began = time.monotonic()
        lines = [line.strip() for line in run_ok("chunks", source).out.splitlines()]
        print(f"chunks of a 60 GB recording: {1000 * (time.monotonic() - began):.1f} ms with the program's start")
        for line in ("RF64 marker", "ds64 Data size 60000000000", "data marker", "LIST Found INFO marker"):
            self.assertIn(line, lines)
        self.assertTrue([line for line in lines if line.startswith("LIST INFO Found INAM") and "the end" in line])
        self.assertEqual(self.info(source)["seconds"], 7500)


if __name__ == "__main__":
    unittest.main()

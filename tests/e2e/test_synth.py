"""Recordings that the program makes up itself, judged by the same arithmetic as everything else."""
import unittest

import numpy as np

from program import EndToEndTest, contents, native, run, run_ok
from wavtools import WaveFile, decibels, measure_tone

RATE = 100_000
SECONDS = 2
FULL_SCALE = {"8": 128, "16": 32768, "24": 2**23, "32": 2**31, "float": 1.0}


class TestSynth(EndToEndTest):
    def synth(self, *arguments, name="made.wav"):
        run_ok("synth", self.folder / name, "--rate", RATE, "--centre", "1M", "--seconds", SECONDS, *arguments)
        return self.folder / name

    def check_walk_has_no_warning(self, path):
        for line in run_ok("chunks", path).out.splitlines():
            self.assertNotIn("[WARNING]", line)

    def test_stations_of_every_sample_format_stand_where_they_were_put(self):
        for bits, full_scale in FULL_SCALE.items():
            for rf64 in ([], ["--rf64"]):
                with self.subTest(bits=bits, rf64=rf64):
                    path = self.synth("--bits", bits, "--station", "1.012345M:-12", "--station", "980k:-18:tone",
                                      "--overwrite", *rf64)
                    file = WaveFile(path)
                    self.assertEqual(file.form, b"RF64" if rf64 else b"RIFF")
                    self.assertEqual((file.frames, file.rate), (SECONDS * RATE, RATE))
                    samples = file.samples()
                    for offset, level in ((12_345, -12), (-20_000, -18)):
                        tone = measure_tone(samples, RATE, offset)
                        self.assertAlmostEqual(tone.frequency, offset, delta=0.001)
                        self.assertAlmostEqual(decibels(tone.amplitude / full_scale), level,
                                               delta=0.05 if bits == "8" else 0.001)
                    self.check_walk_has_no_warning(path)

    def test_metadata_describes_the_recording(self):
        path = self.synth("--start", "2020-11-01T23:59:00Z", "--bits", "24")
        info = self.info(path)
        self.assertEqual(info["startUtc"], 1604275140)
        self.assertEqual((info["sampleRate"], info["centreFrequency"]), (RATE, 1_000_000))
        self.assertEqual((info["bitsPerSample"], info["sampleFormat"]), (24, "pcm"))
        self.assertEqual(info["seconds"], SECONDS)

    def test_several_files_are_one_recording(self):
        tone = ["--station", "1.001M:-6", "--bits", "float", "--start", "2020-11-01T23:59:00Z"]
        whole = WaveFile(self.synth(*tone)).samples()
        self.synth(*tone, "--files", "3", name="set.wav")
        paths = [self.folder / f"set {number:03d}.wav" for number in range(3)]
        parts = [WaveFile(path) for path in paths]
        joined = np.concatenate([part.samples() for part in parts])
        self.assertEqual(len(joined), len(whole))
        self.assertLess(np.abs(joined - whole).max(), 1e-9)
        for number, part in enumerate(parts):
            self.check_walk_has_no_warning(part.path)
            before = sum(each.frames for each in parts[:number])
            self.assertEqual(int(part.metadata()["UTCSeconds"]), 1604275140 + before // RATE)
        info = self.info(paths[2])
        self.assertEqual(info["files"], [native(path) for path in paths])
        self.assertEqual(info["seconds"], SECONDS)

    def test_noise_has_the_level_asked_for_and_comes_from_its_seed(self):
        first = self.synth("--noise", "-40", "--bits", "float", "--seed", "7")
        samples = WaveFile(first).samples()
        self.assertAlmostEqual(decibels(np.sqrt(np.mean(np.abs(samples) ** 2))), -40, delta=0.1)
        # White: every tenth of the band holds a tenth of the power.
        power = np.abs(np.fft.fft(samples)) ** 2
        for part in np.array_split(power, 10):
            self.assertAlmostEqual(part.sum() / power.sum(), 0.1, delta=0.003)
        again = WaveFile(self.synth("--noise", "-40", "--bits", "float", "--seed", "7", name="b.wav")).samples()
        other = WaveFile(self.synth("--noise", "-40", "--bits", "float", "--seed", "8", name="c.wav")).samples()
        self.assertTrue(np.array_equal(again, samples))
        self.assertFalse(np.array_equal(other, samples))

    def test_am_station_has_a_carrier_and_two_sidebands(self):
        samples = WaveFile(self.synth("--station", "1.01M:-10:am", "--bits", "float")).samples()
        carrier = measure_tone(samples, RATE, 10_000)
        self.assertAlmostEqual(decibels(carrier.amplitude), -10, delta=0.001)
        for sideband in (9_000, 11_000):
            tone = measure_tone(samples, RATE, sideband)
            self.assertAlmostEqual(tone.frequency, sideband, delta=0.001)
            self.assertAlmostEqual(tone.amplitude / carrier.amplitude, 0.35, delta=0.001)

    def test_existing_file_is_left_alone(self):
        path = self.synth()
        before = contents(self.folder)
        self.assertEqual(run("synth", path).code, 4)
        self.assertEqual(contents(self.folder), before)

    def test_wrong_options_create_nothing(self):
        for arguments in (["--bits", "12"], ["--rate", "0"], ["--station", "7.1M"], ["--station", "7.1M:-10:fm"],
                          ["--files", "0"], ["--start", "now"], ["--colour", "1"], ["--station", "9M:-10"]):
            with self.subTest(arguments=arguments):
                result = run("synth", self.folder / "made.wav", *arguments)
                self.assertEqual(result.code, 2)
                self.assertIn(arguments[0], result.err)
                self.assertEqual(self.names(self.folder), ["output"])


if __name__ == "__main__":
    unittest.main()

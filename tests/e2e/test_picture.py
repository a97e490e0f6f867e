"""`picture`: every pixel against a spectrum of the samples computed here."""
import os
import unittest

import numpy as np

from makers import Layout, Tone, signal, write_recording
from pngtools import read_png
from program import EndToEndTest, contents, run, run_ok

RATE = 64_000
CENTRE = 7_100_000
SECONDS = 4


def level_of(shade, low, high):
    return low + shade / 255 * (high - low)


class TestPicture(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        rng = np.random.default_rng(1)
        cls.samples = signal([Tone(8_000, 3276.8), Tone(-20_000, 103.6)], RATE, 0, SECONDS * RATE)
        # 5 ms at 2.5 s, 12 kHz below the centre.
        first, count = int(2.5 * RATE), RATE // 200
        cls.samples[first:first + count] += signal([Tone(-12_000, 1036.2)], RATE, first, count)
        cls.samples += (rng.normal(size=SECONDS * RATE) + 1j * rng.normal(size=SECONDS * RATE)) * 2
        cls.source = write_recording(cls.shared / "in.wav", Layout(RATE), cls.samples)

    def plain(self, *options, size=(128, 40), levels=(-120, 0)):
        out = self.folder / "out.png"
        run_ok("picture", self.source, out, "--plain", "--palette", "grey", "--size", f"{size[0]}x{size[1]}",
               "--levels", f"{levels[0]}:{levels[1]}", "--overwrite", *options)
        picture = read_png(out)
        self.assertEqual(picture.shape, (size[1], size[0]))
        return picture.astype(float)

    def test_tones_stand_in_the_columns_of_their_frequencies_with_their_levels(self):
        picture = self.plain()
        # Column c begins at -32 kHz + c x 500 Hz.
        for column, level in ((80, -20.0), (24, -50.0)):
            with self.subTest(column=column):
                shown = level_of(picture[:, column], -120, 0)
                self.assertLess(np.abs(shown - level).max(), 0.35)
                self.assertGreater((picture[:, column].min() - picture[:, [column - 4, column + 4]].max()), 50)

    def test_finer_levels_tell_a_tone_to_a_tenth_of_a_decibel(self):
        picture = self.plain(levels=(-25, -15))
        self.assertLess(np.abs(level_of(picture[:, 80], -25, -15) - -20.0).max(), 0.1)
        self.assertEqual(picture[:, 24].max(), 0)
        picture = self.plain(levels=(-90, -55))
        self.assertEqual(picture[:, 80].min(), 255)

    def test_the_noise_has_the_level_of_its_density(self):
        picture = self.plain(levels=(-120, -60))
        quiet = np.ix_(np.r_[0:23, 28:40], np.r_[45:75, 90:128])  # far from the tones and the burst
        shown = level_of(picture[quiet], -120, -60)
        # 2 x 2 x 2 / 32768^2 in all of the band; windows of Hann are 1.5 bins wide, and there are 256 bins.
        expected = 10 * np.log10(8 / 32768**2 * 1.5 / 256)
        self.assertLess(abs(10 * np.log10(np.mean(10 ** (shown / 10))) - expected), 0.7)

    def test_a_short_burst_is_in_the_peak_at_its_row_and_column(self):
        picture = self.plain("--peak")
        row, column = 25, 40  # 2.5 s of 4 s in 40 rows; 20 kHz above the lowest
        self.assertLess(abs(level_of(picture[row, column], -120, 0) - -30.0), 1.5)
        self.assertLess(level_of(picture[:row - 1, column].max(), -120, 0), -70)
        self.assertLess(level_of(picture[row + 1:, column].max(), -120, 0), -70)
        mean = self.plain("--mean")
        self.assertGreater(picture[row, column], mean[row, column] + 10)
        np.testing.assert_array_equal(mean, self.plain())

    def test_pixels_are_the_spectrum_of_their_time_and_frequency(self):
        """Against windowed transforms of the same resolution at the middle of each row's time."""
        start, duration, low, high, width, height = 1, 2, -16_000, 16_000, 64, 20
        picture = self.plain("--start", f"+{start}", "--duration", str(duration), "--from", str(CENTRE + low),
                             "--to", str(CENTRE + high), size=(width, height), levels=(-110, -10))
        step = (high - low) / width
        length = 256
        window = np.hanning(length + 1)[:-1]
        frequencies = np.fft.fftshift(np.fft.fftfreq(length, 1 / RATE))
        for row in set(range(height)) - {14, 15, 16}:  # those around the burst
            begin = int((start + row * duration / height) * RATE)
            end = int((start + (row + 1) * duration / height) * RATE)
            powers = []
            for first in range(begin, end - length, length // 2):
                bins = np.fft.fftshift(np.fft.fft(self.samples[first:first + length] * window))
                powers.append(np.abs(bins / window.sum() / 32768) ** 2)
            power = np.mean(powers, axis=0)
            for column in range(width):
                inside = (frequencies >= low + column * step) & (frequencies < low + (column + 1) * step)
                expected = 10 * np.log10(power[inside].max())
                shown = level_of(picture[row, column], -110, -10)
                tolerance = 0.5 if expected > -60 else 4.0  # noise is noise
                self.assertLess(abs(shown - expected), tolerance, (row, column))

    def test_other_palettes_show_the_same_order(self):
        grey = self.plain()
        for palette in ("viridis", "turbo"):
            out = self.folder / f"{palette}.png"
            run_ok("picture", self.source, out, "--plain", "--palette", palette, "--size", "128x40", "--levels",
                   "-120:0")
            colours = read_png(out).astype(float) / 255
            self.assertEqual(colours.shape, (40, 128, 3))
            linear = np.where(colours <= 0.04045, colours / 12.92, ((colours + 0.055) / 1.055) ** 2.4)
            brightness = linear @ [0.2126, 0.7152, 0.0722]
            order = np.argsort(grey, axis=None, kind="stable")
            self.assertTrue((np.diff(brightness.reshape(-1)[order]) >= -1e-12).all())
            self.assertGreater(brightness.max(), brightness.min() + 0.3)

    def test_without_plain_axes_stand_around_the_same_pixels(self):
        plain = self.folder / "plain.png"
        framed = self.folder / "framed.png"
        options = ["--size", "100x60", "--levels", "-110:-10"]
        run_ok("picture", self.source, plain, "--plain", *options)
        run_ok("picture", self.source, framed, *options)
        inner, outer = read_png(plain), read_png(framed)
        height, width = outer.shape[:2]
        found = [(y, x) for y in range(height - 59) for x in range(width - 99)
                 if (outer[y, x:x + 100] == inner[0]).all() and (outer[y:y + 60, x:x + 100] == inner).all()]
        self.assertEqual(len(found), 1)
        self.assertGreater(found[0][0], 20)
        self.assertGreater(found[0][1], 40)

    def test_levels_by_themselves_begin_at_the_noise(self):
        out = self.folder / "out.png"
        run_ok("picture", self.source, out, "--plain", "--palette", "grey", "--size", "128x40")
        picture = read_png(out)
        self.assertLess(np.median(picture), 40)
        self.assertGreater(picture[:, 80].min(), 245)

    def test_fast_shows_the_same_tones(self):
        picture = self.plain("--fast")
        self.assertLess(np.abs(level_of(picture[:, 80], -120, 0) - -20.0).max(), 0.35)

    def test_a_set_is_one_picture_from_any_of_its_files(self):
        run_ok("synth", self.folder / "set.wav", "--rate", str(RATE), "--seconds", "3", "--files", "3", "--station",
               "7.11M:-20", "--noise", "-70")
        run_ok("synth", self.folder / "one.wav", "--rate", str(RATE), "--seconds", "3", "--station", "7.11M:-20",
               "--noise", "-70")
        pictures = []
        for name in ("set 000.wav", "set 001.wav", "one.wav"):
            out = self.folder / f"{name}.png"
            run_ok("picture", self.folder / name, out, "--plain", "--levels", "-100:0", "--size", "64x30")
            pictures.append(out.read_bytes())
        self.assertEqual(len(set(pictures)), 1)

    def test_all_instruction_sets_and_processors_give_the_same_picture(self):
        pictures = set()
        for name in ("plain", "avx2", "avx512"):
            out = self.folder / f"{name}.png"
            run_ok("picture", self.source, out, env={**os.environ, "CARVELLO_ISA": name, "LC_ALL": "C.UTF-8"})
            pictures.add(out.read_bytes())
        self.assertEqual(len(pictures), 1)


class TestPictureRefusals(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_recording(cls.shared / "in.wav", Layout(RATE), signal([Tone(500, 9000)], RATE, 0, RATE))

    def test_what_cannot_be_meant_is_a_wrong_command_line(self):
        out = self.folder / "out.png"
        for options in (["--size", "100"], ["--size", "0x5"], ["--size", "20000x1"], ["--levels", "-20:-100"],
                        ["--levels", "-20"], ["--palette", "red"], ["--peak", "--mean"], ["--from", "8M"],
                        ["--from", "7.11M", "--to", "7.1M"], ["--start", "+2"], ["--end", "+9"], ["--duration", "x"],
                        ["--end", "+1", "--duration", "1"], ["--to", "now"], ["--colour"]):
            with self.subTest(options=options):
                result = run("picture", self.source, out, *options)
                self.assertEqual(result.code, 2, result.err)
                self.assertIn("Accepted", result.err)
                self.assertEqual(contents(self.folder).keys(), {"output"})

    def test_an_existing_file_is_replaced_only_when_asked(self):
        out = self.folder / "out.png"
        out.write_bytes(b"something")
        result = run("picture", self.source, out)
        self.assertEqual(result.code, 4)
        self.assertIn("--overwrite", result.err)
        self.assertEqual(out.read_bytes(), b"something")
        run_ok("picture", self.source, out, "--overwrite")
        read_png(out)
        self.assertEqual(contents(self.folder).keys(), {"output", "out.png"})

    def test_a_file_of_the_input_is_never_replaced(self):
        before = contents(self.shared)
        for options in ([], ["--overwrite"]):
            self.assertEqual(run("picture", self.source, self.source, *options).code, 2)
        link = self.folder / "link.png"
        os.link(self.source, link)
        self.assertEqual(run("picture", self.source, link, "--overwrite").code, 2)
        self.assertEqual(contents(self.shared), before)

    def test_a_missing_folder_and_a_folder_in_its_place_are_failures_of_the_output(self):
        self.assertEqual(run("picture", self.source, self.folder / "none" / "out.png").code, 1)
        self.assertEqual(run("picture", self.source, self.output, "--overwrite").code, 1)
        self.assertEqual(contents(self.folder).keys(), {"output"})

    def test_an_input_that_is_no_recording_is_unreadable(self):
        other = self.folder / "other.wav"
        other.write_bytes(b"nothing")
        self.assertEqual(run("picture", other, self.folder / "out.png").code, 3)
        self.assertEqual(run("picture", self.folder / "none.wav", self.folder / "out.png").code, 3)


if __name__ == "__main__":
    unittest.main()

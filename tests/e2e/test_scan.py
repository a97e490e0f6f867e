"""`scan`: signals put into noise by arithmetic of its own are told with their places, levels and times."""
import json
import unittest

import numpy as np

from makers import START, Layout, Tone, signal, write_recording
from program import EndToEndTest, contents, local, run, run_ok
from wavtools import WaveFile

RATE = 100_000
CENTRE = 7_100_000
SECONDS = 6


class TestScan(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        rng = np.random.default_rng(3)
        count = SECONDS * RATE
        samples = (rng.normal(size=count) + 1j * rng.normal(size=count)) * 8
        samples += signal([Tone(10_013, 327.68), Tone(-30_000, 103.6)], RATE, 0, count)
        first = 2 * RATE
        samples[first:first + RATE] += signal([Tone(25_000, 327.68)], RATE, first, RATE)
        # A band of 8 kHz in the middle of which nothing stands out.
        wide = np.fft.fft(rng.normal(size=count) + 1j * rng.normal(size=count))
        frequencies = np.fft.fftfreq(count, 1 / RATE)
        wide[np.abs(frequencies + 15_000) > 4_000] = 0
        wide = np.fft.ifft(wide)
        samples += wide / np.sqrt(np.mean(np.abs(wide) ** 2)) * 327.68
        cls.source = write_recording(cls.shared / "in.wav", Layout(RATE), samples)
        cls.start = START

    def scan(self, *options):
        result = run_ok("scan", self.source, "--json", "--quiet", *options)
        self.assertEqual(result.err, "")
        return result.json()

    def test_tells_signals_as_they_were_put_in(self):
        found = self.scan()
        self.assertEqual(set(found), {"noise", "signals"})
        self.assertAlmostEqual(found["noise"], 10 * np.log10(2 * 8**2 / 32768**2 / RATE), delta=0.3)
        expected = [  # frequency, level, start, end, occupancy
            (CENTRE - 30_000, -50, 0, SECONDS, 1.0), (CENTRE - 15_000, -40, 0, SECONDS, 1.0),
            (CENTRE + 10_013, -40, 0, SECONDS, 1.0), (CENTRE + 25_000, -40, 2, 3, 1 / SECONDS)]
        self.assertEqual(len(found["signals"]), len(expected), found)
        for each, (frequency, level, start, end, occupancy) in zip(found["signals"], expected):
            with self.subTest(frequency=frequency):
                self.assertEqual(set(each), {"frequency", "bandwidth", "level", "snr", "start", "end", "occupancy"})
                self.assertAlmostEqual(each["frequency"], frequency, delta=200)
                self.assertAlmostEqual(each["level"], level, delta=0.4)
                self.assertAlmostEqual(each["start"] - self.start, start, delta=0.1)
                self.assertAlmostEqual(each["end"] - self.start, end, delta=0.1)
                self.assertAlmostEqual(each["occupancy"], occupancy, delta=0.03)
                self.assertAlmostEqual(each["snr"], each["level"] - found["noise"] - 10 * np.log10(each["bandwidth"]),
                                       delta=1)
        self.assertAlmostEqual(found["signals"][1]["bandwidth"], 8_000, delta=800)
        self.assertLess(found["signals"][0]["bandwidth"], 1_500)

    def test_the_table_tells_the_same(self):
        text = run_ok("scan", self.source, "--quiet").out
        self.assertIn("7110.0 kHz", text)
        self.assertIn("-40.0 dBFS", text)
        self.assertIn("4 signals", text)

    def test_options_narrow_the_list_down(self):
        self.assertEqual([each["frequency"] for each in self.scan("--raster", "5k")["signals"]],
                         [CENTRE - 30_000, CENTRE - 15_000, CENTRE + 10_000, CENTRE + 25_000])
        self.assertEqual(len(self.scan("--min-width", "4k")["signals"]), 1)
        self.assertEqual(len(self.scan("--start", "+4")["signals"]), 3)
        self.assertEqual(len(self.scan("--start", "+1.5", "--duration", "1")["signals"]), 4)
        self.assertLess(len(self.scan("--above", "50")["signals"]), 4)

    def test_cut_takes_the_job_file_as_it_is(self):
        jobs = self.folder / "jobs.json"
        found = self.scan("--jobs", jobs)["signals"]
        entries = json.loads(jobs.read_text())["entries"]
        self.assertEqual(len(entries), len(found))
        for entry, each in zip(entries, found):
            self.assertAlmostEqual(entry["frequency"], each["frequency"], delta=0.5)
            self.assertGreaterEqual(entry["bandwidth"], 1.1 * each["bandwidth"] - 1e-6)
        outputs = run_ok("cut", "--jobs", jobs, "--json", "--quiet", cwd=self.output).json()["outputs"]
        self.assertEqual(len(outputs), len(found))
        self.assertTrue(all(output["ok"] for output in outputs))
        self.assertEqual(len(list(self.output.glob("*.wav"))), len(found))

    def test_cuts_hold_the_signals_also_where_a_raster_moved_them(self):
        for raster in ((), ("--raster", "9k")):
            with self.subTest(raster=raster):
                found = self.scan("--jobs", self.folder / "jobs.json", "--overwrite", *raster)["signals"]
                output = self.folder / f"cuts {len(raster)}"
                output.mkdir()
                outputs = run_ok("cut", "--jobs", self.folder / "jobs.json", "--output", output, "--json",
                                 "--quiet").json()["outputs"]
                for each, cut in zip(found, outputs):
                    samples = WaveFile(local(cut["files"][0])).samples()
                    power = 10 * np.log10(np.mean(np.abs(samples) ** 2) / 32768**2)
                    on = each["level"] + 10 * np.log10(each["occupancy"])
                    self.assertAlmostEqual(power, on, delta=1.5, msg=str(each))

    def test_an_existing_job_file_is_replaced_only_when_asked(self):
        jobs = self.folder / "jobs.json"
        jobs.write_text("mine")
        result = run("scan", self.source, "--jobs", jobs)
        self.assertEqual((result.code, result.out), (4, ""))
        self.assertEqual(jobs.read_text(), "mine")
        run_ok("scan", self.source, "--jobs", jobs, "--overwrite")
        json.loads(jobs.read_text())
        self.assertEqual(run("scan", self.source, "--jobs", self.source, "--overwrite").code, 2)
        self.assertEqual(run("scan", self.source, "--jobs", self.folder / "none" / "x").code, 1)
        self.assertEqual(contents(self.folder).keys(), {"output", "jobs.json"})

    def test_what_cannot_be_meant_is_a_wrong_command_line(self):
        for options in (["--above", "loud"], ["--above", "0"], ["--raster", "0"], ["--raster", "-5k"],
                        ["--min-width", "wide"], ["--start", "+100"], ["--duration", "60"], ["--loud"]):
            with self.subTest(options=options):
                result = run("scan", self.source, *options)
                self.assertEqual((result.code, result.out), (2, ""), result.err)
                self.assertIn("Accepted", result.err)

    def test_noise_alone_has_no_signals(self):
        for seed in range(3):
            run_ok("synth", self.folder / "noise.wav", "--rate", "200k", "--seconds", "20", "--noise", "-50", "--seed",
                   str(seed), "--overwrite", "--station", "7.1M:-200")
            self.assertEqual(run_ok("scan", self.folder / "noise.wav", "--json").json()["signals"], [])

    def test_a_set_is_one_recording(self):
        run_ok("synth", self.folder / "set.wav", "--rate", "200k", "--seconds", "6", "--files", "3", "--station",
               "7.13M:-50", "--noise", "-60")
        for name in ("set 000.wav", "set 002.wav"):
            found = run_ok("scan", self.folder / name, "--json").json()["signals"]
            self.assertEqual(len(found), 1)
            self.assertAlmostEqual(found[0]["frequency"], 7_130_000, delta=200)
            self.assertEqual(found[0]["occupancy"], 1.0)
            self.assertAlmostEqual(found[0]["end"] - found[0]["start"], 6, delta=0.001)


if __name__ == "__main__":
    unittest.main()

"""Output names, the list of entries, sequences, job files and batches."""
import json
import re
import unittest

import numpy as np

from makers import START, Layout, Tone, signal, write_recording
from program import EndToEndTest, local, native, run, run_ok
from wavtools import WaveFile, measure_tone

RATE = 24_000


class NamesTest(EndToEndTest):
    """A short recording of two tones, 5 s from 2020-11-01 23:59:00 UTC."""

    TONES = [Tone(1_000, 5000), Tone(-4_000, 4000)]
    SECONDS = 5

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_recording(cls.shared / "in.wav", Layout(RATE),
                                     signal(cls.TONES, RATE, 0, cls.SECONDS * RATE))

    def cut_names(self, *arguments, **options):
        """The file names of the outputs in the order of the list."""
        outputs = self.cut(self.source, *arguments, **options)
        written = [local(path) for output in outputs for path in output["files"]]
        self.assertEqual(sorted(path.name for path in written), self.names())
        return [local(output["file"]).name for output in outputs]


class TestNames(NamesTest):
    def test_name_tells_start_frequency_and_bandwidth(self):
        self.assertEqual(self.cut_names("--entry", "f=7.1M,bw=10k"), ["2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav"])
        self.assertEqual(self.names(), ["2020-11-01 2359z, f=7.100 MHz, bw=10 kHz 000.wav"])

    def test_one_file_keeps_its_name_without_a_number(self):
        self.cut_names("--entry", "f=7.1M,bw=10k,size=RF64")
        self.assertEqual(self.names(), ["2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav"])

    def test_frequencies_below_and_between_whole_kilohertz(self):
        layout = Layout(RATE, centre=1_000)
        low = write_recording(self.folder / "low.wav", layout, signal(self.TONES, RATE, 0, 2 * RATE))
        outputs = self.cut(low, "--entry", "f=999,bw=999", "--entry", "f=-1500,bw=1500", "--entry", "f=5k,bw=12.5k")
        self.assertEqual([local(each["file"]).name for each in outputs],
                         ["2020-11-01 2359z, f=-1.500 kHz, bw=1.500 kHz.wav",
                          "2020-11-01 2359z, f=999 Hz, bw=999 Hz.wav",
                          "2020-11-01 2359z, f=5 kHz, bw=12.500 kHz.wav"])

    def test_megahertz_have_three_or_six_decimals(self):
        self.assertEqual(self.cut_names("--entry", "f=7100001,bw=8k", "--entry", "f=7M,bw=8k"),
                         ["2020-11-01 2359z, f=7.000 MHz, bw=8 kHz.wav",
                          "2020-11-01 2359z, f=7.100001 MHz, bw=8 kHz.wav"])

    def test_bandwidth_in_megahertz(self):
        wide = write_recording(self.folder / "wide.wav", Layout(2_000_000, form="s8"), np.zeros(2_000_000))
        outputs = self.cut(wide, "--entry", "f=7.1M,bw=2M", "--entry", "f=7.1M,bw=1.25M")
        self.assertEqual([local(each["file"]).name for each in outputs],
                         ["2020-11-01 2359z, f=7.100 MHz, bw=1.250 MHz.wav",
                          "2020-11-01 2359z, f=7.100 MHz, bw=2 MHz.wav"])

    def test_name_has_the_start_of_the_entry(self):
        layout = Layout(8_000)
        long = write_recording(self.folder / "long.wav", layout, np.zeros(80 * 8_000))
        outputs = self.cut(long, "--entry", "f=7.1M,bw=1k,start=2020-11-02T00:00:00Z")
        self.assertEqual(local(outputs[0]["file"]).name, "2020-11-02 0000z, f=7.100 MHz, bw=1 kHz.wav")

    def test_start_and_end_in_another_zone(self):
        outputs = self.cut(self.source, "--entry",
                           "f=7.1M,bw=8k,start=2020-11-02T01:59:01+02:00,end=2020-11-01T23:59:03Z")
        self.assertEqual(WaveFile(local(outputs[0]["files"][0])).metadata()["UTCSeconds"], str(START + 1))
        self.assertAlmostEqual(outputs[0]["frames"], 16_000, delta=64)

    def test_two_stretches_of_one_channel_within_a_minute_are_both_kept(self):
        names = self.cut_names("--entry", "f=7.1M,bw=10k,start=+1,duration=1", "--entry",
                               "f=7.1M,bw=10k,start=+2,duration=2", "--entry", "f=7.1M,bw=10k")
        self.assertEqual(names, ["2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav",
                                 "2020-11-01 2359z, f=7.100 MHz, bw=10 kHz (2).wav",
                                 "2020-11-01 2359z, f=7.100 MHz, bw=10 kHz (3).wav"])
        frames = [WaveFile(self.output / name.replace(".wav", " 000.wav")).frames for name in names]
        for found, seconds in zip(frames, (1, 2, 5)):
            self.assertAlmostEqual(found, seconds * 10_000, delta=64)

    def test_same_entry_twice_is_written_once(self):
        names = self.cut_names("--entry", "f=7.1M,bw=10k", "--entry", "f=7100k,bw=10000",
                               "--entry", "f=7.1M,bw=10k,bits=32", "--entry", "f=7.1M,bw=10k,size=RF64")
        self.assertEqual(names, ["2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav"])
        self.assertEqual(WaveFile(self.output / self.names()[0]).bits, 16)

    def test_order_is_by_frequency_then_bandwidth(self):
        names = self.cut_names("--entry", "f=7.105M,bw=8k", "--entry", "f=7.095M,bw=4k", "--entry", "f=7.105M,bw=2k")
        self.assertEqual([re.search("f=.*", name)[0] for name in names],
                         ["f=7.095 MHz, bw=4 kHz.wav", "f=7.105 MHz, bw=2 kHz.wav", "f=7.105 MHz, bw=8 kHz.wav"])

    def test_unicode_names_of_folder_and_file(self):
        folder = self.folder / "Прием Übung 日本 🎧"
        folder.mkdir()
        paths = []
        for number in range(2):
            name = f"Запись ñ 波 {number:03d}.wav"
            samples = signal(self.TONES, RATE, number * RATE, RATE)
            paths.append(write_recording(folder / name, Layout(RATE), samples, "Запись ñ 波 000.wav", number))
        self.assertEqual(self.info(paths[1])["files"], [native(path) for path in paths])
        outputs = self.cut(paths[0], "--entry", "f=7.1M,bw=8k", output=folder)
        self.assertAlmostEqual(outputs[0]["frames"], 16_000, delta=64)
        file = WaveFile(local(outputs[0]["files"][0]))
        self.assertEqual(file.path.parent, folder)
        file.check_complete()
        self.assertEqual(file.metadata()["Folder"], native(folder))


class TestSequences(NamesTest):
    def frequencies(self, *arguments):
        return [output["frequency"] for output in self.cut(self.source, *arguments)]

    def test_sequence_includes_both_ends(self):
        self.assertEqual(self.frequencies("--sequence", "7.095M:7.105M:5k", "--bw", "2k"),
                         [7_095_000, 7_100_000, 7_105_000])

    def test_sequence_stops_at_the_last_step_before_its_end(self):
        self.assertEqual(self.frequencies("--sequence", "7095000:7104999:5k", "--bw", "2k"), [7_095_000, 7_100_000])

    def test_sequence_and_entries_make_one_list(self):
        self.assertEqual(self.frequencies("--sequence", "7.1M:7.105M:5k", "--bw", "2k", "--entry", "f=7.102M,bw=2k",
                                          "--entry", "f=7.1M,bw=2k"), [7_100_000, 7_102_000, 7_105_000])

    def test_sequence_from_high_to_low(self):
        self.assertEqual(self.frequencies("--sequence", "7.105M:7.1M:5k", "--bw", "2k"), [7_100_000, 7_105_000])


class TestBatches(NamesTest):
    PASS = 1000  # entries that one pass takes

    def cut_many(self, count):
        result = run_ok("cut", self.source, "--output", self.output, "--json", "--bw", "4k", "--size", "RF64", "--no-sync",
                        "--sequence", f"7096000:{7_096_000 + count - 1}:1")
        outputs = result.json()["outputs"]
        self.assertEqual([each["frequency"] for each in outputs], [7_096_000 + n for n in range(count)])
        self.assertEqual([each for each in outputs if not each["ok"]], [])
        self.assertEqual(len(self.names()), count)
        for n in (0, count // 2, count - 1):
            tone = measure_tone(WaveFile(local(outputs[n]["files"][0])).samples()[2000:-2000], 4000, -n)
            self.assertAlmostEqual(tone.frequency, -n, delta=0.01)
            self.assertAlmostEqual(tone.amplitude, 4000, delta=20)
        return result

    def test_a_thousand_entries_are_one_pass(self):
        result = self.cut_many(self.PASS)
        self.assertEqual(result.json()["inputBytes"], self.SECONDS * RATE * 4)

    def test_more_entries_than_a_pass_takes_run_batch_after_batch(self):
        result = self.cut_many(self.PASS + 1)
        self.assertEqual(result.json()["inputBytes"], 2 * self.SECONDS * RATE * 4)
        self.assertIn("Batch 2/2", result.err)


class TestJobFiles(NamesTest):
    ENTRIES = [{"frequency": 7_100_000, "bandwidth": 8_000, "bits": 32, "size": "RF64", "start": "+1", "duration": 2},
               {"frequency": "7.105M", "bandwidth": "4k", "end": "2020-11-01T23:59:03Z"}]

    def write_jobs(self, content):
        path = self.folder / "jobs.json"
        path.write_text(content if isinstance(content, str) else json.dumps(content))
        return path

    def test_job_file_alone_says_everything(self):
        jobs = self.write_jobs({"input": native(self.source), "output": native(self.output), "entries": self.ENTRIES})
        outputs = run_ok("cut", "--jobs", jobs, "--json").json()["outputs"]
        self.assertEqual([(each["frequency"], each["bandwidth"], each["bits"]) for each in outputs],
                         [(7_100_000, 8_000, 32), (7_105_000, 4_000, 16)])
        self.assertAlmostEqual(outputs[0]["frames"], 16_000, delta=64)
        self.assertAlmostEqual(outputs[1]["frames"], 12_000, delta=64)
        self.assertEqual(self.names(), ["2020-11-01 2359z, f=7.100 MHz, bw=8 kHz.wav",
                                        "2020-11-01 2359z, f=7.105 MHz, bw=4 kHz 000.wav"])

    def test_input_and_output_of_the_command_line_win(self):
        jobs = self.write_jobs({"input": "nowhere.wav", "output": "nowhere", "entries": self.ENTRIES})
        self.cut(self.source, "--jobs", jobs)
        self.assertEqual(len(self.names()), 2)

    def test_job_files_that_are_wrong_are_named_and_create_nothing(self):
        for content, named in (("{", "jobs.json"), ([], "jobs.json"), ({"entries": [{"bandwidth": 8000}]}, "frequency"),
                               ({"entries": [{"frequency": 7e6, "bandwidth": 8000, "bits": 24}]}, "bits"),
                               ({"entries": [{"frequency": 7e6, "bandwidth": 8000, "colour": 1}]}, "colour"),
                               ({"entries": 5}, "entries")):
            with self.subTest(content=content):
                result = run("cut", self.source, "--output", self.output, "--jobs", self.write_jobs(content))
                self.assertEqual(result.code, 2)
                self.assertIn(named, result.err)
                self.assertEqual(self.names(), [])

    def test_missing_job_file(self):
        result = run("cut", self.source, "--output", self.output, "--jobs", self.folder / "none.json")
        self.assertEqual(result.code, 2)
        self.assertIn("none.json", result.err)


if __name__ == "__main__":
    unittest.main()

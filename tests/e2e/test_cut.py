"""What a cut is for: frequency, level, length and place in time of what lands in the outputs."""
import math
import struct
import unittest

import numpy as np

from makers import START, Layout, Pulse, Tone, signal, write_recording, write_set
from program import EndToEndTest, contents, local, run, run_ok
from wavtools import WaveFile, decibels, measure_tone, pulse_middle, spectrum, wrapped

BLOCK = 2_097_152  # frames that the engine handles at a time; entries are placed inside and across such blocks


class CutTest(EndToEndTest):
    """Compares outputs with the sources that the input was made of."""

    def check_length(self, output, seconds):
        self.assertEqual(output["frames"], math.ceil(seconds * output["bandwidth"]))

    def read(self, output):
        """The samples of all parts, after checking that every part is complete and of the promised format."""
        parts = []
        for name in output["files"]:
            file = WaveFile(local(name))
            file.check_complete()
            self.assertEqual((file.channels, file.rate, file.bits), (2, output["bandwidth"], output["bits"]))
            self.assertEqual(file.tag, 3 if output["bits"] == 32 else 1)
            parts.append(file.samples())
        samples = np.concatenate(parts)
        self.assertEqual(len(samples), output["frames"])
        self.assertEqual(output["bytes"], output["frames"] * output["bits"] // 8 * 2)
        return samples

    def check_tones(self, samples, rate, shift, start_seconds, tones):
        """Frequency to 0.01 Hz, level to 0.05 dB, and the tones' places in time relative to each other: a delay of the
        output by one sample would turn the phases of two tones apart."""
        edge = rate // 4  # the filters see the signal start and end abruptly
        inner = samples[edge:-edge]
        lags = []
        for tone in tones:
            measured = measure_tone(inner, rate, tone.offset - shift)
            self.assertAlmostEqual(measured.frequency, tone.offset - shift, delta=0.01)
            self.assertAlmostEqual(decibels(measured.amplitude / tone.amplitude), 0, delta=0.05)
            expected = tone.phase + 2 * np.pi * (tone.offset * start_seconds % 1)
            expected += 2 * np.pi * ((tone.offset - shift) * edge / rate % 1)
            lags.append(measured.phase - expected)
        for tone, lag in zip(tones[1:], lags[1:]):
            turn_of_one_sample = 2 * np.pi * (tone.offset - tones[0].offset) / rate
            self.assertAlmostEqual(wrapped(lag - lags[0]) / turn_of_one_sample, 0, delta=0.02)

    def check_pulses(self, samples, rate, input_rate, start_seconds, pulses):
        found = 0
        for pulse in pulses:
            expected = (pulse.middle - start_seconds * input_rate) * rate / input_rate
            reach = int(10 * pulse.sigma * rate / input_rate)
            if reach < expected < len(samples) - reach:
                self.assertAlmostEqual(pulse_middle(samples, expected, reach), expected, delta=0.02)
                found += 1
        self.assertGreater(found, 0)


class TestCutOfTwoFileSet(CutTest):
    """One job over a set of two files of 12 s, 1.37 blocks each."""

    RATE = 240_000
    CENTRE = 7_100_000
    FILE_SECONDS = [12, 12]
    TONES = [Tone(10_123, 5000, 0.3), Tone(10_140, 2500, -1.0), Tone(11_900, 3000, 2.0)]
    PULSES = [Pulse(-30_000, 8000, (second + 0.5) * 240_000 + 0.37 * second, 96) for second in range(24)]
    # bandwidth: (entry without f and bw, start, seconds)
    TONE_ENTRIES = {
        8_000: ("start=+13,duration=10", 13, 10),  # starts in the second file
        9_600: ("start=+5,duration=14", 5, 14),  # across the files
        10_000: ("start=+2,duration=4", 2, 4),  # inside one block
        11_025: ("bits=32,size=RF64", 0, 24),  # a rate that no whole-number decimation gives
        12_000: ("start=2020-11-01T23:59:03Z,end=2020-11-01T23:59:11Z,bits=32", 3, 8),  # across blocks
        16_000: ("start=+1", 1, 23),  # to the end
    }
    PULSE_ENTRIES = {8_000: ("start=+7,duration=0:00:09,bits=32", 7, 9), 10_000: ("size=1GB", 0, 24)}

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        sources = [*cls.TONES, *cls.PULSES]
        cls.files = write_set(cls.shared, "set", Layout(cls.RATE, cls.CENTRE), sources, cls.FILE_SECONDS)
        arguments = []
        for centre, entries in ((7_110_000, cls.TONE_ENTRIES), (7_070_000, cls.PULSE_ENTRIES)):
            for bandwidth, (rest, _, _) in entries.items():
                arguments += ["--entry", f"f={centre},bw={bandwidth},{rest}"]
        out = cls.shared / "out"
        out.mkdir()
        cls.result = run_ok("cut", cls.files[0], "--output", out, "--json", *arguments).json()
        cls.outputs = {(each["frequency"], each["bandwidth"]): each for each in cls.result["outputs"]}

    def check_tone_entry(self, bandwidth):
        _, start, seconds = self.TONE_ENTRIES[bandwidth]
        output = self.outputs[7_110_000, bandwidth]
        self.check_length(output, seconds)
        self.check_tones(self.read(output), bandwidth, 10_000, start, self.TONES)
        self.check_start_time(output, start)

    def check_pulse_entry(self, bandwidth):
        _, start, seconds = self.PULSE_ENTRIES[bandwidth]
        output = self.outputs[7_070_000, bandwidth]
        self.check_length(output, seconds)
        self.check_pulses(self.read(output), bandwidth, self.RATE, start, self.PULSES)
        self.check_start_time(output, start)

    def check_start_time(self, output, start):
        metadata = WaveFile(local(output["files"][0])).metadata()
        self.assertEqual(metadata["UTCSeconds"], str(START + start))
        self.assertEqual(metadata["RadioCenterFreq"], str(output["frequency"]))
        self.assertEqual(metadata["SampleRate"], str(output["bandwidth"]))

    def test_entry_inside_one_block(self):
        self.check_tone_entry(10_000)

    def test_entry_across_blocks(self):
        self.check_tone_entry(12_000)

    def test_entry_across_files(self):
        self.check_tone_entry(9_600)

    def test_entry_that_starts_in_the_second_file(self):
        self.check_tone_entry(8_000)

    def test_entry_to_the_end(self):
        self.check_tone_entry(16_000)

    def test_entry_with_a_fractional_ratio_of_rates_in_32_bit_rf64(self):
        self.check_tone_entry(11_025)

    def test_pulses_of_the_whole_recording_stay_in_their_places(self):
        self.check_pulse_entry(10_000)

    def test_pulses_of_an_entry_across_files_stay_in_their_places(self):
        self.check_pulse_entry(8_000)

    def test_result_tells_what_was_read_and_written(self):
        self.assertEqual(set(self.result), {"outputs", "engine", "inputBytes", "elapsedSeconds", "cpuSeconds"})
        self.assertEqual(self.result["inputBytes"], 24 * self.RATE * 4)
        self.assertGreater(self.result["elapsedSeconds"], 0)
        self.assertGreater(self.result["cpuSeconds"], 0)
        for output in self.result["outputs"]:
            self.assertLessEqual({"file", "files", "frequency", "bandwidth", "bits", "frames", "bytes", "ok", "error"},
                                 set(output))
            self.assertIs(output["ok"], True)
            self.assertFalse(output["error"])

    def test_outputs_are_ordered_by_frequency_then_bandwidth(self):
        order = [(each["frequency"], each["bandwidth"]) for each in self.result["outputs"]]
        self.assertEqual(order, sorted(order))

    def test_second_file_stands_for_its_set(self):
        output, = self.cut(self.files[1], "--entry", "f=7.11M,bw=10k,start=+5,duration=14")
        self.check_length(output, 14)
        self.check_tones(self.read(output), 10_000, 10_000, 5, self.TONES)

    def test_skip_into_the_second_file(self):
        # Alone, this entry makes the reader pass over the whole first file and seek in the second.
        output, = self.cut(self.files[0], "--entry", "f=7.07M,bw=8k,start=+14,duration=6,bits=32")
        self.check_length(output, 6)
        self.check_pulses(self.read(output), 8_000, self.RATE, 14, self.PULSES)


def seconds_marked_by_tones(rate, first, count):
    """One second after the other, second n with a tone at 100 + 50 n Hz."""
    return np.concatenate([signal([Tone(100 + 50 * second, 5000)], rate, second * rate, rate)
                           for second in range(first, first + count)])


def rewrite_with_frames(path, frames):
    """Makes a finished 16-bit WAV file one with another number of frames, finished as well."""
    file, raw = WaveFile(path), path.read_bytes()
    begin, end = file.data_offset, file.data_offset + file.data_bytes
    data = raw[begin:end][:4 * frames].ljust(4 * frames, b"\0")
    whole = bytearray(raw[:begin] + data + raw[end:])
    struct.pack_into("<I", whole, 4, len(whole) - 8)
    struct.pack_into("<I", whole, begin - 4, len(data))
    path.write_bytes(whole)


class TestStartAtFileBoundary(CutTest):
    """A deliberate oddity: when the smallest start of a job falls exactly on the first frame of a later file, the files
    before it are passed over, but the writers are not told and skip the same length once more."""

    RATE = 48_000

    def make_set(self, *lengths):
        first, paths = 0, []
        for number, length in enumerate(lengths):
            paths.append(write_recording(self.folder / f"set {number:03d}.wav", Layout(self.RATE),
                                         seconds_marked_by_tones(self.RATE, first, length), "set 000.wav", first))
            first += length
        return paths[0]

    def second_found(self, samples, rate):
        """Which second of the input the second after the output's start was cut from."""
        tone = measure_tone(samples[rate // 5:rate - rate // 5], rate, 500, within=450)
        return (tone.frequency - 100) / 50

    def test_output_begins_at_twice_the_offset(self):
        source = self.make_set(4, 10)
        output, = self.cut(source, "--entry", "f=7.1M,bw=8k,start=+4,duration=2")
        self.check_length(output, 2)
        self.assertAlmostEqual(self.second_found(self.read(output), 8000), 8, delta=0.01)

    def test_nothing_is_left_when_the_rest_is_not_longer_than_the_skipped_part(self):
        source = self.make_set(4, 4)
        result = run("cut", source, "--output", self.output, "--json", "--entry", "f=7.1M,bw=8k,start=+4,duration=2")
        self.assertEqual(result.code, 1)
        output, = result.json()["outputs"]
        self.assertEqual((output["ok"], output["frames"], output["files"]), (False, 0, []))
        self.assertIn("no samples of the input", output["error"])
        self.assertEqual(self.names(), [])

    def test_an_output_without_an_end_that_began_late_is_finished_and_not_done_again(self):
        source = self.make_set(4, 10)
        entries = ("--entry", "f=7.1M,bw=8k,start=+4", "--entry", "f=7.1M,bw=12k,start=+5", "--skip-existing")
        outputs = self.cut(source, *entries)
        self.assertEqual([output["frames"] for output in outputs], [(10 - 4) * 8000, (9 - 4) * 12000])
        before = contents(self.output)
        # The one that a job would begin late is finished by itself too, whatever job it is part of.
        for arguments in (entries, entries[:2] + entries[-1:], entries + ("--entry", "f=7.1M,bw=8k,duration=1")):
            result = run("cut", source, "--output", self.output, "--json", *arguments)
            self.assertEqual(result.code, 0, result.err)
            self.assertNotIn("done again", result.err)
            self.assertEqual({name: what for name, what in contents(self.output).items() if name in before}, before)

    def test_what_a_stop_left_of_such_an_output_is_done_again(self):
        source = self.make_set(4, 10)
        path = self.cut_one(source, "f=7.1M,bw=8k,start=+4")
        whole = contents(self.output)
        for frames in (6 * 8000 - 1, 6 * 8000 + 1):
            rewrite_with_frames(path, frames)
            result = run("cut", source, "--output", self.output, "--entry", "f=7.1M,bw=8k,start=+4", "--skip-existing")
            self.assertEqual(result.code, 0, result.err)
            self.assertIn(f"{frames} of {10 * 8000} frames", result.err)
            self.assertEqual(contents(self.output).keys(), whole.keys())
            self.assertEqual(WaveFile(path).frames, 6 * 8000)

    def test_another_entry_that_starts_earlier_keeps_the_start_right(self):
        source = self.make_set(4, 10)
        outputs = self.cut(source, "--entry", "f=7.1M,bw=8k,start=+4,duration=2", "--entry", "f=7.1M,bw=12k")
        self.assertAlmostEqual(self.second_found(self.read(outputs[0]), 8000), 4, delta=0.01)

    def test_start_one_second_behind_the_boundary_is_right(self):
        source = self.make_set(4, 4, 6)
        output, = self.cut(source, "--entry", "f=7.1M,bw=8k,start=+9,duration=2")
        self.check_length(output, 2)
        self.assertAlmostEqual(self.second_found(self.read(output), 8000), 9, delta=0.01)


class TestFilesOfWholeBlocks(CutTest):
    def test_reading_goes_on_with_the_next_file(self):
        rate = 1_048_576
        self.assertEqual(2 * rate, BLOCK)
        tones = [Tone(1_000, 60), Tone(2_500, 40)]
        first = write_set(self.folder, "set", Layout(rate, form="s8"), tones, [2, 2, 1])[0]
        output, = self.cut(first, "--entry", "f=7.1M,bw=16384,bits=32")
        self.check_length(output, 5)
        self.check_tones(self.read(output), 16_384, 0, 0, tones)


class TestWideOutputs(CutTest):
    """Outputs above 1 MHz come from whole-number decimation alone."""

    RATE = 2_500_000
    TONES = [Tone(250_123, 6000, 1.0), Tone(250_523, 3000, 0.0), Tone(400_000, 2000, -2.0)]

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        layout = Layout(cls.RATE, 100_000_000)
        cls.source = write_recording(cls.shared / "wide.wav", layout, signal(cls.TONES, cls.RATE, 0, 3 * cls.RATE))

    def check(self, entry, shift, start, seconds):
        output, = self.cut(self.source, "--entry", entry)
        self.check_length(output, seconds)
        self.check_tones(self.read(output), output["bandwidth"], shift, start, self.TONES)

    def test_half_the_input_rate(self):
        self.check("f=100.2M,bw=1.25M", 200_000, 0, 3)

    def test_the_whole_input_rate_around_another_centre(self):
        self.check("f=100.1M,bw=2.5M,start=+1,duration=1,bits=32", 100_000, 1, 1)

    def test_the_whole_input_rate_unshifted(self):
        self.check("f=100M,bw=2.5M,start=+1", 0, 1, 2)

    def test_exactly_one_megahertz(self):
        self.check("f=100.2M,bw=1M,start=+1,bits=32", 200_000, 1, 2)


class TestFrequencyOverTenSeconds(CutTest):
    def test_odd_frequencies_and_rates_are_exact(self):
        rate, tone = 192_000, Tone(-43_217, 7000)
        source = write_recording(self.folder / "in.wav", Layout(rate), signal([tone], rate, 0, 11 * rate))
        for frequency, bandwidth in ((7_056_789, 9_999), (7_056_781, 48_000), (7_056_001, 7_351), (7_056_783, 100)):
            with self.subTest(frequency=frequency, bandwidth=bandwidth):
                output, = self.cut(source, "--entry", f"f={frequency},bw={bandwidth},bits=32,size=RF64")
                self.check_length(output, 11)
                samples = self.read(output)[bandwidth // 2:]
                shift = frequency - 7_100_000
                measured = measure_tone(samples[:10 * bandwidth], bandwidth, tone.offset - shift)
                self.assertAlmostEqual(measured.frequency, tone.offset - shift, delta=0.01)


class TestEngines(CutTest):
    """Both ways to the same samples, chosen by the user or by the program."""

    RATE = 1_000_000
    ENTRIES = ("--entry", "f=7.05M,bw=10k,start=+1", "--entry", "f=7.2M,bw=25k", "--entry", "f=7.15M,bw=1M")

    def cut_by(self, engine, source):
        folder = self.folder / engine
        folder.mkdir()
        arguments = () if engine == "default" else ("--engine", engine)
        return run_ok("cut", source, "--output", folder, "--json", *self.ENTRIES, *arguments).json()

    def test_engine_is_taken_as_asked_for_told_and_leads_to_the_same_samples(self):
        tones = [Tone(-51_000, 6000), Tone(102_000, 4000), Tone(60_000, 2000)]
        source = write_recording(self.folder / "in.wav", Layout(self.RATE),
                                 signal(tones, self.RATE, 0, 3 * self.RATE))
        library, shared = self.cut_by("library", source), self.cut_by("spectrum", source)
        self.assertEqual(library["engine"], "library")
        self.assertEqual([output["engine"] for output in library["outputs"]], 3 * ["library"])
        # The one of the input's own rate leaves the spectrum nothing to do.
        self.assertEqual(shared["engine"], "mixed")
        self.assertEqual([output["engine"] for output in shared["outputs"]], ["spectrum", "library", "spectrum"])
        for one, other in zip(library["outputs"], shared["outputs"]):
            difference = self.read(one) - self.read(other)
            self.assertLessEqual(np.abs([difference.real, difference.imag]).max(), 1)

    def test_engine_is_chosen_by_the_program_unless_it_is_named(self):
        source = write_recording(self.folder / "in.wav", Layout(self.RATE), np.zeros(2 * self.RATE))
        engines = [[output["engine"] for output in self.cut_by(engine, source)["outputs"]]
                   for engine in ("default", "auto")]
        self.assertEqual(engines[0], engines[1])
        self.assertLessEqual(set(engines[0]), {"library", "spectrum"})

    def test_entries_that_were_left_out_have_no_engine(self):
        source = write_recording(self.folder / "in.wav", Layout(self.RATE), np.zeros(2 * self.RATE))
        self.cut(source, *self.ENTRIES)
        result = run_ok("cut", source, "--output", self.output, "--json", *self.ENTRIES, "--skip-existing").json()
        self.assertEqual([result["engine"], *(output["engine"] for output in result["outputs"])], 4 * [""])


class TestSuppression(CutTest):
    """What one strong signal leaves in outputs that do not hold it: nothing within 80 dB, wherever it would fold to."""

    RATE = 240_000
    TONE = Tone(-80_250, 20_000)

    def strongest(self, output):
        """The strongest line within the flat part of the band, up to 0.45 of the rate either side. Beside it the filter
        is only closing, and lets neighbours through by design."""
        rate = output["bandwidth"]
        samples = self.read(output)[rate:-rate]
        amplitudes, frequencies = spectrum(samples, rate)
        return amplitudes[np.abs(frequencies) <= 0.45 * rate].max()

    def test_strong_signal_outside_the_band_is_80_db_down(self):
        source = write_recording(self.folder / "in.wav", Layout(self.RATE),
                                 signal([self.TONE], self.RATE, 0, 6 * self.RATE))
        entries = [f"f={7_100_000 + shift},bw={bandwidth},bits=32" for shift, bandwidth in (
            (-70_000, 10_000), (-60_500, 20_000), (-60_000, 20_000), (20_000, 25_000), (0, 11_025), (19_000, 100_000),
            (-91_500, 20_000), (-80_000, 300))]
        outputs = self.cut(source, *(argument for entry in entries for argument in ("--entry", entry)))
        self.assertEqual(len(outputs), len(entries))
        for output in outputs:
            with self.subTest(frequency=output["frequency"], bandwidth=output["bandwidth"]):
                inside = abs(self.TONE.offset - (output["frequency"] - 7_100_000)) < output["bandwidth"] / 2
                level = decibels(self.strongest(output) / self.TONE.amplitude)
                if inside:  # the measure itself sees a signal that is there
                    self.assertAlmostEqual(level, 0, delta=1)
                else:
                    self.assertLess(level, -80)


if __name__ == "__main__":
    unittest.main()

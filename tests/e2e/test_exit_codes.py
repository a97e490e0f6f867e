"""What the program answers when it cannot do what it was asked to, and that it then leaves every file alone."""
import re
import shutil
import struct
import unittest

import numpy as np

from makers import (Layout, Tone, chunk, format_body, metadata_text, auxi_chunk, riff_file, signal, write_recording)
from program import CLI, WINDOWS, EndToEndTest, contents, local, native, run, run_ok
from wavtools import WaveFile

RATE = 24_000
ENTRY = "f=7.1M,bw=8k"


class ExitCodeTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = write_recording(self.folder / "in.wav", Layout(RATE),
                                      signal([Tone(500, 5000)], RATE, 0, 4 * RATE))

    def refused(self, code, *arguments, source=None, output=None, program=CLI):
        """Runs a cut that must end with the code, say why on stderr only and touch nothing; gives what it said."""
        before = contents(self.folder)
        result = run("cut", source or self.source, "--output", output or self.output, *arguments, program=program)
        self.assertEqual(result.code, code, result.err)
        self.assertEqual(contents(self.folder), before)
        self.assertEqual(result.out, "")
        self.assertTrue(result.err.strip())
        return result.err


class TestWrongCommandLines(ExitCodeTest):
    def test_entries_that_are_refused_are_named_with_what_is_accepted(self):
        for entry, accepted in (
                ("f=7.1M", "bw"), ("bw=8k", "f"), ("f=7.1M,bw=8k,colour=1", "bits"), ("f=7.1X,bw=8k", "7.1M"),
                ("f=7.1M,bw=8k,bits=24", "16"), ("f=7.1M,bw=8k,size=2GB", "RF64"), ("f=7.1M,bw=0.5", "Hz"),
                ("f=7100000.5,bw=8k", "Hz"), ("f=7.1M,bw=8k,start=noon", "2026-11-21T12:00:00Z"),
                ("f=7.1M,bw=8k,start=2026-11-21T12:00:00", "zone"), ("f=7.1M,bw=8k,duration=1:70", "H:MM"),
                ("f=7.1M,bw=8k,duration=1,end=+2", "one"), ("nonsense", "key=value")):
            with self.subTest(entry=entry):
                text = self.refused(2, "--entry", entry)
                self.assertIn(entry, text)
                self.assertIn(accepted, text)

    def test_bandwidth_outside_10_hz_to_the_input_rate(self):
        for bandwidth in (9, 0, RATE + 1):
            text = self.refused(2, "--entry", f"f=7.1M,bw={bandwidth}")
            self.assertIn("10", text)
            self.assertRegex(text, r"24000|24 kHz|24\.000")
        run_ok("cut", self.source, "--output", self.output, "--entry", "f=7.1M,bw=10", "--entry", f"f=7.1M,bw={RATE}")
        self.assertEqual(len(self.names()), 2)

    def test_times_outside_the_recording(self):
        for entry, text in (
                (ENTRY + ",start=2020-11-01T23:58:59Z", "The start time is out of range."),
                (ENTRY + ",start=+4", "The start time is out of range."),
                (ENTRY + ",end=+5", "The end time is out of range."),
                (ENTRY + ",duration=0", "End duration cannot be zero."),
                (ENTRY + ",duration=4", "The start time + end duration is past the end of file, change the duration."),
                (ENTRY + ",start=+2,duration=2",
                 "The start time + end duration is past the end of file, change the duration.")):
            with self.subTest(entry=entry):
                said = self.refused(2, "--entry", "f=7.1M,bw=4k", "--entry", entry)
                self.assertIn(text, said)
                self.assertIn(entry, said)
                self.assertRegex(said, "2020-11-01T23:59:0[04]Z")  # what is accepted

    def test_end_equal_to_the_recordings_end_is_accepted(self):
        output, = self.cut(self.source, "--entry", ENTRY + ",start=+1,end=+4")
        self.assertAlmostEqual(output["frames"], 3 * 8000, delta=64)

    def test_options_that_are_wrong(self):
        for arguments, named in (
                (["--entry", ENTRY, "--colour"], "--colour"), ([], "--entry"),
                (["--entry", ENTRY, "--overwrite", "--skip-existing"], "--skip-existing"),
                (["--entry", ENTRY, "--engine", "fast"], "auto, library, spectrum"),
                (["--sequence", "7M:8M:100k"], "--bw"), (["--sequence", "7M:8M:0", "--bw", "1k"], "7M:8M:0"),
                (["--sequence", "7M:8M", "--bw", "1k"], "7M:8M")):
            with self.subTest(arguments=arguments):
                self.assertIn(named, self.refused(2, *arguments))

    def test_no_command_and_unknown_command(self):
        for arguments in ([], ["slice"]):
            result = run(*arguments)
            self.assertEqual(result.code, 2)
            self.assertIn("cut", result.out + result.err)

    def test_help_is_no_error_and_names_everything(self):
        text = run_ok("--help").out
        for command in ("info", "cut", "chunks", "synth"):
            self.assertIn(command, text)
        text = run_ok("cut", "--help").out
        for option in ("--output", "--entry", "--jobs", "--overwrite", "--skip-existing", "--local-time", "--json",
                       "--quiet", "--verbose", "--sequence", "--bw", "--engine"):
            self.assertIn(option, text)


class TestUnreadableInputs(ExitCodeTest):
    def refused_input(self, source, *said):
        text = self.refused(3, "--entry", ENTRY, source=source)
        for each in (source.name, *said):
            self.assertIn(each, text)
        result = run("info", source)
        self.assertEqual((result.code, result.out), (3, ""))
        self.assertIn(source.name, result.err)

    def test_input_that_does_not_exist(self):
        self.refused_input(self.folder / "none.wav")

    def test_folder_as_input(self):
        self.refused_input(self.output)

    def test_empty_file(self):
        (self.folder / "empty.wav").touch()
        self.refused_input(self.folder / "empty.wav")

    def test_file_of_another_kind(self):
        (self.folder / "text.wav").write_text("This is no recording.\n" * 100)
        self.refused_input(self.folder / "text.wav")

    def test_mono_file(self):
        mono = format_body(RATE, "s16", channels=1)
        (self.folder / "mono.wav").write_bytes(riff_file([chunk(b"fmt ", mono)], 2000) + bytes(2000))
        self.refused_input(self.folder / "mono.wav")

    def test_recording_without_samples(self):
        self.refused_input(write_recording(self.folder / "none.wav", Layout(RATE), np.zeros(0)))

    def write_odd_format(self, form, bits):
        attributes = {"FirstFile": "odd.wav", "BytesPerSecond": RATE * bits // 4, "SampleRate": RATE,
                      "UTCSeconds": 1604275140, "RadioCenterFreq": 7_100_000, "BitsPerSample": bits,
                      "XMLLevel": "XMLLevel003"}
        body = format_body(RATE, form, bits=bits)
        chunks = [chunk(b"fmt ", body), auxi_chunk(metadata_text(attributes))]
        (self.folder / "odd.wav").write_bytes(riff_file(chunks, 96_000) + bytes(96_000))
        return self.folder / "odd.wav"

    def test_sample_sizes_that_nothing_converts(self):
        for form, bits in (("s", 12), ("s", 64), ("f", 16)):
            with self.subTest(form=form, bits=bits):
                text = self.refused(3, "--entry", ENTRY, source=self.write_odd_format(form, bits))
                self.assertIn("odd.wav", text)
                self.assertIn(str(bits), text)
                self.assertIn("16", text)  # what is accepted

    def test_info_and_cut_of_a_set_with_a_missing_middle_file_use_what_stands_before_it(self):
        for number in (0, 2):
            write_recording(self.folder / f"set {number:03d}.wav", Layout(RATE), np.zeros(2 * RATE), "set 000.wav",
                            2 * number)
        self.assertEqual(self.info(self.folder / "set 000.wav")["files"], [native(self.folder / "set 000.wav")])

    def test_truncated_input_is_read_to_its_true_end(self):
        for rf64 in (False, True):
            with self.subTest(rf64=rf64):
                short = write_recording(self.folder / f"short {rf64}.wav", Layout(RATE, rf64=rf64),
                                        signal([Tone(500, 5000)], RATE, 0, 4 * RATE))
                short.write_bytes(short.read_bytes()[:-RATE * 4 - 2])  # the last second and half a frame are gone
                self.assertEqual(self.info(short)["totalBytes"] // 4, 3 * RATE - 1)
                output, = self.cut(short, "--entry", ENTRY, "--overwrite")
                self.assertGreaterEqual(output["frames"], 3 * 8000 - 64)
                self.assertLessEqual(output["frames"], 3 * 8000)

    def test_hostile_sizes_end_with_a_message(self):
        body = format_body(RATE, "s16")
        bad = {
            "auxi.wav": riff_file([chunk(b"fmt ", body), b"auxi" + struct.pack("<I", 0xFFFFFFF0)], 0)[:-8],
            "list.wav": riff_file([chunk(b"fmt ", body), b"LIST" + struct.pack("<I", 0xFFFFFFFF) + b"INFOINAM"
                                   + struct.pack("<I", 0xFFFFFFFF)], 0)[:-8],
            "fmt.wav": b"RIFF\xff\xff\xff\xffWAVEfmt \xff\xff\xff\xff",
            "small.wav": riff_file([chunk(b"fmt ", body[:14])], 100) + bytes(100),
            "rf64.wav": b"RF64\xff\xff\xff\xffWAVEds64" + struct.pack("<IQQQI", 28, 2**63, 2**63 + 5, 2**63, 0)
                        + chunk(b"fmt ", body) + b"data\xff\xff\xff\xff",
        }
        for name, content in bad.items():
            with self.subTest(name=name):
                path = self.folder / name
                path.write_bytes(content)
                self.refused_input(path)


class TestExistingOutputs(ExitCodeTest):
    OTHER = "f=7.105M,bw=8k"

    def test_existing_outputs_are_not_touched_without_a_word(self):
        self.cut(self.source, "--entry", ENTRY)
        text = self.refused(4, "--entry", ENTRY, "--entry", self.OTHER)
        self.assertIn("--overwrite", text)
        self.assertIn("--skip-existing", text)
        self.assertIn("bw=8 kHz", text)

    def test_existing_one_file_output(self):
        self.cut(self.source, "--entry", ENTRY + ",size=RF64")
        self.refused(4, "--entry", ENTRY + ",size=RF64")

    def test_skip_existing_leaves_them_and_writes_the_others(self):
        self.cut(self.source, "--entry", ENTRY)
        before = contents(self.output)
        outputs = self.cut(self.source, "--entry", ENTRY, "--entry", self.OTHER, "--skip-existing")
        after = contents(self.output)
        self.assertEqual({name: after[name] for name in before}, before)
        self.assertEqual(set(after) - set(before), {"2020-11-01 2359z, f=7.105 MHz, bw=8 kHz 000.wav"})
        self.assertEqual([(output["frequency"], output["frames"] > 0, output["ok"]) for output in outputs],
                         [(7_100_000, False, True), (7_105_000, True, True)])

    def test_skip_existing_with_nothing_left_to_do(self):
        self.cut(self.source, "--entry", ENTRY)
        before = contents(self.output)
        run_ok("cut", self.source, "--output", self.output, "--entry", ENTRY, "--skip-existing")
        self.assertEqual(contents(self.output), before)

    def test_overwrite_writes_them_afresh(self):
        first = self.cut_one(self.source, ENTRY + ",bits=32")
        self.assertEqual(self.cut_one(self.source, ENTRY, "--overwrite"), first)
        self.assertEqual(WaveFile(first).bits, 16)
        WaveFile(first).check_complete()

    def test_overwrite_leaves_no_parts_of_a_longer_earlier_output(self):
        first = self.cut_one(self.source, ENTRY)
        for number in (1, 2, 1000):
            shutil.copy(first, str(first).replace(" 000.wav", f" {number:03d}.wav"))
        beside = first.with_name(first.name.replace(" 000.wav", " 000 notes.wav"))
        shutil.copy(first, beside)
        self.cut(self.source, "--entry", ENTRY, "--overwrite")
        self.assertEqual(self.names(), [beside.name, first.name])
        self.assertEqual(self.info(first)["files"], [native(first)])


class TestOutputsThatAreInputs(ExitCodeTest):
    def refused_over_input(self, source, entry):
        for option in ([], ["--overwrite"], ["--skip-existing"]):
            before = contents(self.folder)
            result = run("cut", source, "--output", self.output, "--entry", entry, *option)
            self.assertIn(result.code, (2, 4) if not option else (2,), result.err)
            self.assertEqual(contents(self.folder), before)
            self.assertIn(source.name, result.err)

    def test_one_file_output_in_the_place_of_the_input(self):
        source = self.output / "2020-11-01 2359z, f=7.100 MHz, bw=8 kHz.wav"
        shutil.copy(write_recording(source, Layout(RATE), np.zeros(4 * RATE)), self.folder / "copy")
        self.refused_over_input(source, ENTRY + ",size=RF64")

    def test_split_output_in_the_place_of_the_second_file_of_the_input(self):
        name = "2020-11-01 2359z, f=7.100 MHz, bw=8 kHz"
        for number in range(2):
            write_recording(self.output / f"{name} {number:03d}.wav", Layout(RATE), np.zeros(2 * RATE),
                            f"{name} 000.wav", 2 * number)
        self.refused_over_input(self.output / f"{name} 000.wav", ENTRY)


class TestUnusableOutputFolders(ExitCodeTest):
    def test_folder_that_does_not_exist(self):
        text = self.refused(1, "--entry", ENTRY, output=self.folder / "none")
        self.assertIn("none", text)
        if not WINDOWS:
            self.assertIn("No such file or directory", text)

    def test_file_in_the_place_of_the_folder(self):
        text = self.refused(1, "--entry", ENTRY, output=self.source)
        self.assertIn("in.wav", text)


class TestMissingLibrary(ExitCodeTest):
    def copy_program(self, wanted):
        alone = self.folder / "alone"
        alone.mkdir()
        for path in [CLI, *CLI.parent.glob("*.dll")]:
            if "vantrel" not in path.name.lower():
                shutil.copy(path, alone)
        return alone, alone / CLI.name

    def test_message_names_the_library_and_the_path_tried(self):
        alone, program = self.copy_program("")
        text = self.refused(3, "--entry", ENTRY, program=program)
        self.assertIn("Vantrel", text)
        self.assertIn(native(alone), text)

    def test_library_without_the_entry_points(self):
        alone, program = self.copy_program("")
        (alone / ("Vantrel.dll" if WINDOWS else "libVantrel.so")).write_bytes(b"no library")
        self.assertIn("Vantrel", self.refused(3, "--entry", ENTRY, program=program))

    def test_info_and_chunks_need_no_library(self):
        _, program = self.copy_program("")
        run_ok("info", self.source, program=program)
        run_ok("chunks", self.source, program=program)


class TestStreams(ExitCodeTest):
    def test_json_is_one_object_on_stdout_and_nothing_else(self):
        for option in ([], ["--quiet"], ["--verbose"]):
            with self.subTest(option=option):
                result = run_ok("cut", self.source, "--output", self.output, "--entry", ENTRY, "--json", "--overwrite",
                                *option)
                self.assertEqual(set(result.json()), {"outputs", "engine", "inputBytes", "elapsedSeconds", "cpuSeconds"})

    def test_quiet_says_nothing(self):
        result = run_ok("cut", self.source, "--output", self.output, "--entry", ENTRY, "--quiet")
        self.assertEqual((result.out, result.err), ("", ""))

    def test_without_json_the_outputs_are_listed_for_a_person(self):
        result = run_ok("cut", self.source, "--output", self.output, "--entry", ENTRY)
        self.assertIn("2020-11-01 2359z, f=7.100 MHz, bw=8 kHz", result.out + result.err)

    def test_verbose_prints_the_log_of_every_worker(self):
        result = run_ok("cut", self.source, "--output", self.output, "--entry", ENTRY, "--verbose")
        for line in ("Reader> Start, file = ", "Reader> Closing 1 writer threads", "Reader> Closed",
                     "Writer [0]> Downconverter .......: 24000 to 8000", "Writer [0]> Closing"):
            self.assertRegex(result.err, r"(?m)^\d\d:\d\d:\d\d> " + re.escape(line))

    def test_chunks_prints_the_walk_line_by_line(self):
        lines = run_ok("chunks", self.source).out.splitlines()
        for line in ("RIFF marker", "fmt  marker", "auxi marker", "data marker",
                     f"data Size = {4 * RATE * 4}"):
            self.assertIn(line, [each.strip() for each in lines])
        self.assertLess(lines.index("RIFF marker"), lines.index("data marker"))

    def test_failed_output_is_told_in_json(self):
        self.cut(self.source, "--entry", ENTRY + ",size=RF64")
        place = self.output / "2020-11-01 2359z, f=7.105 MHz, bw=8 kHz.wav"
        place.mkdir()  # a folder stands where the second output should go
        result = run("cut", self.source, "--output", self.output, "--json", "--overwrite", "--entry",
                     ENTRY + ",size=RF64", "--entry", "f=7.105M,bw=8k,size=RF64")
        self.assertEqual(result.code, 1, result.err)
        good, bad = result.json()["outputs"]
        self.assertEqual((good["ok"], bad["ok"]), (True, False))
        self.assertTrue(bad["error"])
        self.assertEqual(bad["frames"], 0)
        self.assertIn(place.name, result.err)
        WaveFile(local(good["files"][0])).check_complete()


if __name__ == "__main__":
    unittest.main()

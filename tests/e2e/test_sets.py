"""Sets of several files: what `info` finds from any member, and that a cut takes their samples as one stream. A cut of a
set must give the very bytes that the same cut of one file with all the samples gives."""
import unittest

import numpy as np

import foreign_makers as foreign
from makers import Layout, Tone, encode, signal, write_recording
from program import WINDOWS, EndToEndTest, contents, local, native, run, run_ok
from wavtools import WaveFile

RATE = 96_000
CENTRE = 7_050_000
NOON = (2023, 4, 15, 12, 0, 0)
START = foreign.utc_seconds(NOON)
TONES = [Tone(4_123, 6000), Tone(-9_750, 3000, 1.0), Tone(20_001, 2000)]


def at(seconds):
    """A date so many seconds behind noon."""
    return (*NOON[:3], 12 + seconds // 3600, seconds // 60 % 60, seconds % 60)


class SetTest(EndToEndTest):
    def check_found(self, members, start, end, others=()):
        """The whole set is found from any member, and from no other file."""
        for selected in members:
            info = self.info(selected)
            self.assertEqual(info["files"], [native(path) for path in members], selected.name)
            self.assertEqual(info["fileCount"], len(members))
            self.assertEqual((info["startUtc"], info["endUtc"]), (start, end))
        for other in others:
            self.assertNotIn(native(members[0]), self.info(other)["files"])
        return info

    def cut_samples(self, source, name, *entries):
        """The sample bytes of every output."""
        output = self.folder / name
        output.mkdir()
        arguments = [argument for entry in entries for argument in ("--entry", f"f=7.055M,bw={entry}")]
        outputs = self.cut(source, *arguments, output=output)
        return [b"".join(WaveFile(local(path)).data().tobytes() for path in each["files"]) for each in outputs]


class TestChainedSets(SetTest):
    """Winrad files, whose times stand in a block; lengths are no whole blocks of anything."""
    SECONDS = [7, 9, 8]
    ENTRIES = ["10k", "12k,bits=32,size=RF64", "8k,start=+5,duration=6", "9600,start=+3,end=+20,bits=32",
               "16k,start=+17"]

    def write_chain(self, gaps, seconds=None):
        """Files with so many seconds between them; gives their paths and all their samples in one file of its own."""
        seconds = seconds or self.SECONDS
        samples = encode(signal(TONES, RATE, 0, sum(seconds) * RATE), "s16")
        paths, begin, done = [], 0, 0
        for number, length in enumerate(seconds):
            data = samples[done * RATE * 4:(done + length) * RATE * 4]
            # Names that sort against the times.
            paths.append(foreign.write(self.folder / f"rec {9 - number}.wav", RATE, data,
                                       [foreign.auxi(164, at(begin), at(begin + length), CENTRE)]))
            begin += length + (gaps[number] if number < len(gaps) else 0)
            done += length
        whole = self.folder / "whole"
        whole.mkdir()
        one = foreign.write(whole / "one.wav", RATE, samples, [foreign.auxi(164, NOON, at(done), CENTRE)])
        return paths, one, begin

    def test_files_without_gaps_are_cut_as_one(self):
        paths, one, length = self.write_chain([0, 0])
        info = self.check_found(paths, START, START + 24)
        self.assertEqual((info["totalBytes"], info["seconds"]), (24 * RATE * 4, 24))
        self.assertEqual(length, 24)
        expected = self.cut_samples(one, "of one", *self.ENTRIES)
        self.assertGreater(min(map(len, expected)), 0)
        self.assertEqual(self.cut_samples(paths[0], "of all", *self.ENTRIES), expected)
        self.assertEqual(self.cut_samples(paths[1], "of the second", *self.ENTRIES), expected)

    def test_one_entry_alone_skips_whole_files_to_the_sample(self):
        paths, one, _ = self.write_chain([0, 0])
        for number, start in enumerate((1, 8, 15, 17, 23)):
            entry = f"10k,start=+{start},bits=32"
            self.assertEqual(self.cut_samples(paths[0], f"all {number}", entry),
                             self.cut_samples(one, f"one {number}", entry))

    def test_files_with_gaps_are_cut_as_one_stream(self):
        paths, one, _ = self.write_chain([5, 3])
        self.check_found(paths, START, START + 32)
        entries = self.ENTRIES[:4]
        self.assertEqual(self.cut_samples(paths[2], "of all", *entries), self.cut_samples(one, "of one", *entries))

    def test_files_with_gaps_are_drawn_and_searched_as_one_stream(self):
        paths, one, _ = self.write_chain([5, 3])
        pictures, lists = [], []
        for number, source in enumerate((one, paths[0], paths[2])):
            pictures.append([])
            for options in ([], ["--peak", "--start", "+6.9", "--end", "+16.2"], ["--fast", "--start", "+15"]):
                # Titles name the first file: without them.
                out = self.folder / f"{number} {len(pictures[-1])}.png"
                run_ok("picture", source, out, "--quiet", "--plain", "--size", "300x200", *options)
                pictures[-1].append(out.read_bytes())
            lists.append([run_ok("scan", source, "--json", "--quiet", *options).json()
                          for options in ([], ["--start", "+6.5", "--duration", "9.5"])])
        self.assertEqual(pictures[1:], pictures[:1] * 2)
        self.assertEqual(lists[1:], lists[:1] * 2)
        for found in lists[0]:
            frequencies = [each["frequency"] for each in found["signals"]]
            for tone in TONES:
                self.assertLess(min(abs(each - CENTRE - tone.offset) for each in frequencies), 100)

    def test_files_that_overlap_are_cut_as_one_stream(self):
        paths, one, _ = self.write_chain([-5, -2])
        self.check_found(paths, START, START + 17)
        entries = ["10k", "8k,start=+5,duration=6"]
        self.assertEqual(self.cut_samples(paths[0], "of all", *entries), self.cut_samples(one, "of one", *entries))

    def test_gap_of_six_seconds_ends_the_set(self):
        paths, _, _ = self.write_chain([5, 6])
        self.check_found(paths[:2], START, START + 21, paths[2:])

    def test_start_in_the_time_behind_the_samples_is_refused(self):
        paths, _, _ = self.write_chain([5, 3])
        for start in ("+24", "+31", "2023-04-15T12:00:24Z"):
            before = contents(self.folder)
            result = run("cut", paths[0], "--output", self.output, "--entry", "f=7.05M,bw=8k",
                         "--entry", f"f=7.055M,bw=8k,start={start}")
            self.assertEqual((result.code, result.out), (2, ""), result.err)
            self.assertIn(start, result.err)
            self.assertIn("behind the last sample", result.err)
            self.assertIn("+24", result.err)  # what is accepted
            self.assertEqual(contents(self.folder), before)

    def test_entry_that_ends_behind_the_samples_is_shorter_with_a_warning(self):
        paths, _, _ = self.write_chain([5, 3])
        result = run_ok("cut", paths[0], "--output", self.output, "--json", "--entry",
                        "f=7.055M,bw=8k,start=+20,end=+30")
        self.assertEqual(result.json()["outputs"][0]["frames"], 4 * 8000)
        self.assertIn("end 6.0 seconds before", result.err)

    def test_other_frequency_rate_and_program_are_not_taken(self):
        paths, _, _ = self.write_chain([0, 0])
        data = bytes(4 * RATE)
        others = [
            foreign.write(self.folder / "frequency.wav", RATE, data, [foreign.auxi(164, at(24), at(25), CENTRE + 1)]),
            foreign.write(self.folder / "rate.wav", 2 * RATE, data, [foreign.auxi(164, at(24), at(25), CENTRE)]),
            foreign.write(self.folder / "program.wav", RATE, data, [foreign.auxi(72, at(24), at(25), CENTRE)]),
            foreign.write(self.folder / foreign.winradio_name(at(24)), RATE, data),
        ]
        self.check_found(paths, START, START + 24, others)

    def test_folder_with_a_unicode_name(self):
        folder = self.folder / "Запись 📡 été"
        folder.mkdir()
        paths = [foreign.write(folder / f"ä {number}.wav", RATE, bytes(4 * RATE),
                               [foreign.auxi(164, at(number), at(number + 1), CENTRE)]) for number in range(3)]
        self.check_found(paths, START, START + 3)


class TestChainsOfEveryProgram(SetTest):
    """Two files of four seconds, the second three seconds behind the first: no program's way keeps them apart."""

    def check(self, make, seconds=11):
        paths = []
        for number, start in enumerate((0, 7)):
            name, chunks = make(number, at(start), at(start + 4))
            paths.append(foreign.write(self.folder / name, RATE, bytes(4 * 4 * RATE), chunks))
        self.check_found(paths, START, START + seconds)

    def check_block(self, size, *more):
        self.check(lambda number, start, stop: (f"{number}.wav", [*more, foreign.auxi(size, start, stop, CENTRE)]))

    def test_spectravue_1(self):
        self.check(lambda number, start, stop: (f"{number}.wav", [foreign.auxi_28(start, CENTRE)]))

    def test_spectravue_2(self):
        self.check_block(44)

    def test_spectravue_2_34(self):
        self.check_block(68)

    def test_spectravue_3_0(self):
        self.check_block(72)

    def test_winrad(self):
        self.check_block(164)

    def test_elad(self):
        self.check_block(164, foreign.elad())

    def test_perseus(self):
        self.check(lambda number, start, stop:
                   (f"{number}.wav", [foreign.rcvr(CENTRE, 99, foreign.utc_seconds(start))]))

    def test_go2monitor(self):
        time = "{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.000Z"
        self.check(lambda number, start, stop:
                   (f"{number}.wav", [foreign.meta(time.format(*start), CENTRE, RATE)]))

    def test_sdrsharp(self):
        self.check(lambda number, start, stop: (foreign.sdrsharp_name(start), []))

    def test_winradio(self):
        self.check(lambda number, start, stop: (foreign.winradio_name(start), []))

    def test_winradio_continuation_files(self):
        paths = [foreign.write(self.folder / foreign.winradio_name(NOON, end=end), RATE, bytes(4 * 4 * RATE))
                 for end in ("", "-^001", "-^002")]
        self.check_found(paths, START, START + 12)

    def test_versions_of_spectravue_are_one_program(self):
        self.check(lambda number, start, stop: (f"{number}.wav", [foreign.auxi((44, 72)[number], start, stop, CENTRE)]))


class TestNumberedSets(SetTest):
    SECONDS = [7, 9, 9, 4]

    def write_numbered(self, name="rec", ending="wav"):
        samples = signal(TONES, RATE, 0, sum(self.SECONDS) * RATE)
        layout = Layout(RATE, CENTRE, START)
        paths, done = [], 0
        for number, length in enumerate(self.SECONDS):
            paths.append(write_recording(self.folder / f"{name} {number:03}.{ending}", layout,
                                         samples[done * RATE:(done + length) * RATE], f"{name} 000.{ending}", done))
            done += length
        whole = self.folder / "whole"
        whole.mkdir()
        return paths, write_recording(whole / "one.wav", layout, samples)

    def test_files_are_cut_as_one(self):
        paths, one = self.write_numbered()
        self.check_found(paths, START, START + 29)
        entries = ["10k", "12k,bits=32,size=RF64", "8k,start=+5,duration=13", "9600,start=+3,end=+28,bits=32",
                   "16k,start=+24"]
        expected = self.cut_samples(one, "of one", *entries)
        self.assertGreater(min(map(len, expected)), 0)
        for number in (0, 2):
            self.assertEqual(self.cut_samples(paths[number], f"of all {number}", *entries), expected)

    def test_upper_case_names(self):
        paths, one = self.write_numbered("REC", "WAV")
        info = self.info(paths[3])
        # Where case does not matter, members are named as the set is searched for.
        self.assertEqual([name.upper() for name in info["files"]], [native(path).upper() for path in paths])
        if not WINDOWS:
            self.assertEqual(info["files"], [native(path) for path in paths])
        self.assertEqual(self.cut_samples(paths[1], "of all", "10k"), self.cut_samples(one, "of one", "10k"))

    def test_deleted_first_file_is_replaced_by_the_selected_one(self):
        paths, _ = self.write_numbered()
        paths[0].unlink()
        result = run_ok("info", paths[1], "--json")
        self.assertEqual(result.json()["files"], [native(path) for path in paths[1:]])
        self.assertEqual(result.json()["startUtc"], START + 7)
        self.assertIn("rec 000.wav", result.err)

    def test_set_ends_at_the_first_missing_number(self):
        paths, _ = self.write_numbered()
        paths[2].unlink()
        self.check_found(paths[:2], START, START + 16)

    def test_numbers_above_999_have_four_digits(self):
        layout = Layout(RATE, CENTRE, START)
        content = write_recording(self.folder / "rec 000.wav", layout, np.zeros(96), "rec 000.wav").read_bytes()
        for number in range(1, 1003):
            (self.folder / f"rec {number:03}.wav").write_bytes(content)
        info = self.info(self.folder / "rec 1002.wav")
        self.assertEqual((info["fileCount"], info["totalBytes"]), (1003, 1003 * 96 * 4))
        self.assertEqual(info["files"][-1], native(self.folder / "rec 1002.wav"))


if __name__ == "__main__":
    unittest.main()

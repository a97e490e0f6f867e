"""Recordings whose recorder could not end them: described and cut to their end, and set right by repair."""
import os
import struct
import unittest

import numpy as np

from program import EndToEndTest, contents, local, run, run_ok
from wavtools import WaveFile

RATE = 125_000
SECONDS = 4
CENTRE = 100_000_000
OFFSET = 12_345
NAME = "baseband_100000000Hz_22-13-20_14-11-2023.wav"
OLD_TIME = 1_400_000_000_123_456_700


def head(riff, data, rate=RATE, identifier=b"RIFF", before=b""):
    return (struct.pack("<4sI4s", identifier, riff, b"WAVE") + before +
            struct.pack("<4sIHHIIHH", b"fmt ", 16, 1, 2, rate, 4 * rate, 4, 16) + struct.pack("<4sI", b"data", data))


class TestBrokenFiles(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        tone = 0.25 * np.exp(2j * np.pi * OFFSET * np.arange(RATE * SECONDS) / RATE)
        values = np.round(np.stack([tone.real, tone.imag], axis=1).ravel() * 32768)
        cls.samples = values.astype("<i2").tobytes()
        cls.right = head(36 + len(cls.samples), len(cls.samples)) + cls.samples

    def write(self, content, name=NAME):
        path = self.folder / name
        path.write_bytes(content)
        os.utime(path, ns=(OLD_TIME, OLD_TIME))
        return path

    def samples_cut(self, path, *options):
        output, = self.cut(path, "--entry", f"f={CENTRE + 12_000},bw=10k,bits=32", "--overwrite", *options)
        file = WaveFile(local(output["files"][0]))
        file.check_complete()
        return file.samples()

    def test_broken_files_are_cut_to_the_same_samples_as_whole_ones(self):
        expected = self.samples_cut(self.write(self.right))
        dashes = int.from_bytes(b"----", "little")
        for broken, words in (
                (head(0, 0), "Data size 0 was never made final"),
                (head(36, 0), "Data size 0 was never made final"),
                (head(0xFFFFFFFF, 0xFFFFFFFF), "0xFFFFFFFF"),
                (head(0x7FFFF024, 0x7FFFF000), "0x7FFFF000"),
                (head(dashes, dashes), "0x2D2D2D2D"),
                (head(3_000_036, 3_000_000), "exceeds the 2000000 bytes"),
                (head(0xFFFFFFFF, 0xFFFFFFFF, identifier=b"RF64"), "ds64 chunk, which tells large sizes, is missing"),
                (head(0, 0, before=struct.pack("<4sI28x", b"JUNK", 28)), "never made final")):
            path = self.write(broken + self.samples)
            result = run_ok("info", path, "--json")
            self.assertEqual(result.json()["dataBytes"], [len(self.samples)])
            self.assertIn(words, result.err)
            np.testing.assert_array_equal(self.samples_cut(path), expected)

    def test_a_missing_rate_is_asked_for_and_taken(self):
        expected = self.samples_cut(self.write(self.right))
        path = self.write(head(0, 0, rate=0) + self.samples)
        refused = run("info", path)
        self.assertEqual(refused.code, 3)
        self.assertIn("Give --rate", refused.err)
        np.testing.assert_array_equal(self.samples_cut(path, "--rate", str(RATE)), expected)
        empty = bytearray(head(0, 0) + self.samples)
        empty[20:36] = bytes(16)
        path = self.write(bytes(empty), "AirSpy_20231114_221320Z_100000kHz_IQ.wav")
        refused = run("cut", path, "--output", self.output, "--entry", "f=100M,bw=10k")
        self.assertEqual(refused.code, 3)
        self.assertIn("Give --sample-type and --rate", refused.err)
        np.testing.assert_array_equal(self.samples_cut(path, "--rate", str(RATE), "--sample-type", "ci16"), expected)
        run_ok("repair", "--in-place", path, "--rate", str(RATE), "--sample-type", "ci16")
        self.assertEqual(path.read_bytes(), self.right)

    def test_in_place_the_head_alone_changes_and_the_time_stays(self):
        path = self.write(head(0, 0) + self.samples)
        run_ok("repair", "--in-place", path)
        self.assertEqual(path.read_bytes(), self.right)
        self.assertEqual(list(self.folder.glob("*.wav*")), [path])
        self.assertEqual(path.stat().st_mtime_ns // 100, OLD_TIME // 100)
        before = contents(self.folder)
        again = run_ok("repair", "--in-place", path, "--json")
        self.assertEqual([file["state"] for file in again.json()["files"]], ["sound"])
        self.assertEqual(contents(self.folder), before)
        self.assertEqual(run_ok("info", path).err, "")

    def test_a_right_copy_goes_into_a_folder_and_replaces_nothing(self):
        path = self.write(head(0, 0) + self.samples)
        run_ok("repair", "--to", self.output, path)
        copy = self.output / NAME
        self.assertEqual(copy.read_bytes(), self.right)
        self.assertEqual(copy.stat().st_mtime_ns // 100, OLD_TIME // 100)
        self.assertEqual(path.read_bytes(), head(0, 0) + self.samples)
        before = contents(self.output)
        refused = run("repair", "--to", self.output, path)
        self.assertEqual(refused.code, 4)
        self.assertIn("exists already", refused.err)
        self.assertEqual(contents(self.output), before)
        self.assertEqual(run("repair", "--to", self.folder / "gone", path).code, 1)

    def test_without_being_told_how_it_tells_what_it_would_do_and_changes_nothing(self):
        broken, sound = self.write(head(0, 0) + self.samples), self.write(self.right, "sound.wav")
        before = contents(self.folder)
        asked = run("repair", broken, sound)
        self.assertEqual(asked.code, 2)
        self.assertIn("say --in-place, or --to", asked.err)
        self.assertIn("the data size becomes 2000000 instead of 0", asked.out)
        self.assertEqual(run("repair", sound).code, 0)
        dry = run_ok("repair", "--dry-run", "--in-place", "--json", broken, sound).json()["files"]
        self.assertEqual([file["state"] for file in dry], ["broken", "sound"])
        self.assertTrue(dry[0]["inPlace"])
        self.assertEqual(run("repair", "--in-place", "--to", self.output, broken).code, 2)
        self.assertEqual(contents(self.folder), before)

    def test_each_file_gets_its_turn_whatever_becomes_of_the_others(self):
        text = self.write(b"no recording", "text.wav")
        path = self.write(head(0, 0) + self.samples)
        result = run("repair", "--in-place", text, self.folder / "gone.wav", path, "--json")
        self.assertEqual(result.code, 3)
        self.assertEqual([file["state"] for file in result.json()["files"]], ["refused", "refused", "repaired"])
        self.assertIn("text.wav: not a RIFF or RF64 file", result.err)
        self.assertEqual(path.read_bytes(), self.right)
        self.assertEqual(text.read_bytes(), b"no recording")

    def test_more_than_4_gib_become_rf64(self):
        size = (1 << 32) + 400_000
        for before, whole in ((b"", False), (struct.pack("<4sI28x", b"JUNK", 28), True)):
            broken = head((size + 36 + len(before)) % (1 << 32), size % (1 << 32), before=before)
            path = self.write(broken)
            with open(path, "r+b") as file:
                file.truncate(len(broken) + size)
            self.assertEqual(run_ok("info", path, "--json").json()["dataBytes"], [size])
            result = run("repair", "--in-place", path)
            if not whole:
                self.assertEqual(result.code, 3)
                self.assertIn("it can be repaired into another folder", result.err)
                continue
            self.assertEqual(result.code, 0, result.err)
            with open(path, "rb") as file:
                found = file.read(len(broken))
            self.assertEqual(found[:20], struct.pack("<4sI4s4sI", b"RF64", 0xFFFFFFFF, b"WAVE", b"ds64", 28))
            self.assertEqual(struct.unpack("<QQQI", found[20:48]), (len(broken) + size - 8, size, size // 4, 0))
            info = run_ok("info", path, "--json")
            self.assertEqual((info.json()["dataBytes"], info.json()["rf64"], info.err), ([size], True, ""))


if __name__ == "__main__":
    unittest.main()

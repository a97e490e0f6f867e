"""The Windows build writes what the Linux build writes, and what is the system's own in it is the system's."""
import base64
import os
import struct
import subprocess

import numpy as np

from makers import Layout, Tone, signal, write_recording
from program import EndToEndTest, environment, native, run_ok
from same_output import assert_same_output, assert_same_outputs
from wavtools import WaveFile

NATIVE_CLI = os.environ["CARVELLO_NATIVE_CLI"]
RATE = 2_400_000


def run_native(*arguments, **variables):
    subprocess.run([NATIVE_CLI, *map(str, arguments)], env=environment(**variables), check=True, capture_output=True)


class TestSameOutput(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        noise = np.random.default_rng(1)
        samples = signal([Tone(100_000, 9_000), Tone(-703_211, 3_000, 1.0), Tone(11, 500)], RATE, 0, 5 * RATE)
        samples += 200 * (noise.standard_normal(len(samples)) + 1j * noise.standard_normal(len(samples)))
        cls.source = write_recording(cls.shared / "in.wav", Layout(RATE), samples)

    def check(self, entries, **variables):
        arguments = [item for entry in entries for item in ("--entry", entry)] + ["--quiet"]
        linux, windows = (self.folder / "_".join([name, *variables.values()]) for name in ("linux", "windows"))
        linux.mkdir()
        windows.mkdir()
        run_native("cut", self.source, "--output", linux, *arguments, **variables)
        run_ok("cut", self.source, "--output", windows, *arguments, env=environment(**variables))
        self.assertEqual(len(list(linux.iterdir())), len(entries))
        assert_same_outputs(self, linux, windows)

    def test_every_kind_of_output(self):
        self.check(["f=7.2M,bw=10k", "f=7.2M,bw=9k,bits=32,size=RF64", "f=7.05M,bw=300k,bits=32",
                    "f=7.3M,bw=48k,start=+2,duration=2,size=1GB", "f=7.31M,bw=12345,bits=32", "f=7.1M,bw=1M,size=RF64",
                    "f=6.4M,bw=240,bits=32", "f=7.15M,bw=1500k,bits=32,size=RF64"])

    def test_every_instruction_set(self):
        for instructions in ("plain", "avx2", "avx512"):
            with self.subTest(instructions=instructions):
                self.check(["f=7.2M,bw=10k,bits=32", "f=7.0M,bw=250k,bits=32"], CARVELLO_ISA=instructions)

    def test_test_recordings(self):
        linux = self.folder / "linux"
        linux.mkdir()
        options = ["--rate", "250000", "--seconds", "2", "--files", "2", "--noise", "-40", "--station", "7.12M:-20:am",
                   "--station", "7.05M:-31", "--quiet"]
        run_native("synth", linux / "rec.wav", *options)
        run_ok("synth", self.output / "rec.wav", *options)
        assert_same_outputs(self, linux, self.output)

    def test_a_difference_of_one_sample_is_seen(self):
        run_ok("cut", self.source, "--output", self.output, "--entry", "f=7.2M,bw=10k", "--quiet")
        (path,) = self.output.iterdir()
        content = bytearray(path.read_bytes())
        content[WaveFile(path).data_offset + 1000] ^= 1
        other = self.folder / path.name
        other.write_bytes(content)
        with self.assertRaises(AssertionError):
            assert_same_output(self, path, other)


class TestDetailsOfTheSystem(EndToEndTest):
    """What the fields that may differ hold."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_recording(cls.shared / "in.wav", Layout(48_000), signal([Tone(1_000, 6_000)], 48_000, 0, 96_000))

    def test_time_zone_record_is_the_systems(self):
        path = self.cut_one(self.source, "f=7.1M,bw=8k", env=environment(TZ="Europe/Berlin"))
        values = WaveFile(path).metadata()
        record = base64.b64decode(values["TimeZoneInfo"])
        self.assertEqual(len(record), 172)
        bias, standard_bias, daylight_bias = (struct.unpack_from("<i", record, offset)[0] for offset in (0, 84, 168))
        self.assertEqual((bias, standard_bias, daylight_bias), (-60, 0, -60))
        self.assertEqual(struct.unpack_from("<8H", record, 68), (0, 10, 0, 5, 3, 0, 0, 0))  # last Sunday of October, 3:00
        self.assertEqual(struct.unpack_from("<8H", record, 152), (0, 3, 0, 5, 2, 0, 0, 0))
        self.assertIn(values["TimeZoneStatus"], "12")

    def test_info_texts_are_in_the_ansi_code_page(self):
        folder = self.folder / "Jörg 日本"
        folder.mkdir()
        path = self.cut_one(self.source, "f=7.1M,bw=8k", output=folder)
        body = WaveFile(path).body(b"LIST")
        self.assertIn(b"J\xf6rg ??\\2020-11-01", body)
        self.assertIn("Jörg 日本", WaveFile(path).metadata()["Folder"])

    def test_paths_beyond_260_characters(self):
        folder = self.folder
        for letter in "abcdef":
            folder = folder / (letter * 60)
        folder.mkdir(parents=True)
        source = write_recording(folder / "in ä.wav", Layout(48_000), signal([Tone(1_000, 6_000)], 48_000, 0, 48_000))
        self.assertGreater(len(native(source)), 360)
        path = self.cut_one(source, "f=7.1M,bw=8k", output=folder)
        WaveFile(path).check_complete()
        self.assertEqual(path.parent, folder)

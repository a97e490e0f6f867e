"""Files of other kinds than WAV: described, refused with what is missing, scanned and cut like the same samples as WAV."""
import struct
import unittest
import zlib

import numpy as np

from makers import Layout, signal, write_recording
from program import EndToEndTest, local, run, run_ok
from wavtools import WaveFile

RATE = 125_000
SECONDS = 4
CENTRE = 100_000_000
OFFSET = 12_345
START = 1_700_000_000
GIVEN = ("--rate", str(RATE), "--centre", str(CENTRE), "--start-time", "2023-11-14T22:13:20.5Z")


def raw(samples, kind):
    """Complex samples of full scale 1 as the bytes of a kind."""
    values = np.stack([samples.real, samples.imag], axis=1).ravel()
    order = ">" if kind.endswith("_be") else "<"
    kind = kind.split("_")[0]
    if kind.startswith("cf"):
        return values.astype(order + "f" + str(int(kind[2:]) // 8)).tobytes()
    bits = int(kind[2:])
    whole = np.round(values * 2.0 ** (bits - 1)).astype(np.int64)
    if kind == "cu8":
        whole = np.round(values * 127 + 127.5).astype(np.int64)
    elif kind.startswith("cu"):
        whole += 2 ** (bits - 1)
    if bits == 24:
        packed = (whole & 0xFFFFFF).astype("<u4").view(np.uint8).reshape(-1, 4)[:, :3]
        return (packed[:, ::-1] if order == ">" else packed).tobytes()
    return (whole & (2 ** bits - 1)).astype(f"{order}u{bits // 8}").tobytes()


class TestFileKinds(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        time = np.arange(RATE * SECONDS) / RATE
        cls.samples = 0.25 * np.exp(2j * np.pi * OFFSET * time)

    def write(self, name, data):
        path = self.folder / name
        path.write_bytes(data)
        return path

    def check_cut(self, path, *options, start=START):
        output, = self.cut(path, "--entry", f"f={CENTRE + 12_000},bw=10k,start=+1,bits=32", "--overwrite",
                           *options)
        file = WaveFile(local(output["files"][0]))
        file.check_complete()
        self.assertEqual(file.metadata()["UTCSeconds"], str(start + 1))
        self.assertEqual(file.metadata()["RadioCenterFreq"], str(CENTRE + 12_000))
        return file.samples()

    def test_every_kind_of_raw_samples_is_cut_to_the_same_tone(self):
        expected = 20 * np.log10(0.25 * 32_768)
        for kind in ("ci8", "cu8", "ci16", "ci16_be", "cu16", "ci24", "ci24_be", "cu24", "ci32", "ci32_be", "cu32", "cf32",
                     "cf32_be", "cf64", "cf64_be"):
            with self.subTest(kind=kind):
                path = self.write(f"{kind}.bin", raw(self.samples, kind))
                samples = self.check_cut(path, "--sample-type", kind, *GIVEN)
                level = 20 * np.log10(np.abs(samples[500:-500]).mean())
                self.assertAlmostEqual(level, expected, delta=0.1)

    def test_lengths_and_frequencies_that_cannot_be_are_refused(self):
        path = self.write("x.cu8", b"")
        with open(path, "r+b") as file:
            file.truncate(12 << 30)
        result = run("info", path, "--rate", "1", *GIVEN[2:])
        self.assertEqual(result.code, 3)
        self.assertIn("longer than a century", result.err)
        path.unlink()
        for centre in (2**63 - 1, -5):
            head = struct.pack("<IqqII", RATE, centre, START, 16, 0)
            path = self.write("x.sdriq", head + struct.pack("<I", zlib.crc32(head)) + bytes(4 * RATE))
            result = run("info", path)
            self.assertEqual(result.code, 3)
            self.assertIn("--centre", result.err)

    def test_name_of_an_sdrangel_file_tells_its_centre_before_the_time(self):
        data = raw(self.samples, "ci16")
        head = struct.pack("<4s4sIHHIIHH4sI", b"WAVE", b"fmt ", 16, 1, 2, RATE, 4 * RATE, 4, 16, b"data", len(data))
        path = self.write("rec_7100kHz_2023-11-14T22_13_20_500.wav",
                          struct.pack("<4sI", b"RIFF", len(head) + len(data)) + head + data)
        info = self.info(path)
        self.assertEqual((info["source"], info["centreFrequency"], info["startUtc"]), ("SDRangel", 7_100_000, START))

    def test_sdriq_is_described_and_cut(self):
        head = struct.pack("<IQQII", RATE, CENTRE, START * 1000 + 250, 16, 0)
        path = self.write("a.sdriq", head + struct.pack("<I", zlib.crc32(head)) + raw(self.samples, "ci16"))
        result = run_ok("info", path, "--json")
        info = result.json()
        self.assertEqual(result.err, "")
        self.assertEqual((info["source"], info["container"], info["sampleType"]), ("SDRangel", "sdriq", "ci16_le"))
        self.assertEqual((info["centreFrequency"], info["sampleRate"]), (CENTRE, RATE))
        self.assertEqual((info["startUtc"], info["startNanoseconds"], info["seconds"]), (START, 250_000_000, SECONDS))
        self.check_cut(path)

    def test_synth_makes_what_is_read(self):
        for kind in ("ci8", "cu8", "ci16", "ci24_be", "cu16", "cu32_be", "ci32", "cf32", "cf64_be"):
            with self.subTest(kind=kind):
                path = self.folder / f"synth {kind}.iq"
                run_ok("synth", path, "--sample-type", kind, "--rate", RATE, "--centre", CENTRE, "--seconds", "1",
                       "--station", f"{CENTRE + OFFSET}:-12:tone", "--quiet")
                self.assertEqual(path.stat().st_size, RATE * 2 * int(kind[2:].split("_")[0]) // 8)
                found = run_ok("scan", path, "--sample-type", kind, "--rate", RATE, "--centre-frequency", CENTRE,
                               "--start-time", "2026-01-01T00:00:00Z", "--above", "30", "--json").json()["signals"]
                loudest = max(found, key=lambda signal: signal["level"])
                self.assertAlmostEqual(loudest["frequency"], CENTRE + OFFSET, delta=500)
        path = self.folder / "synth.sdriq"
        run_ok("synth", path, "--rate", RATE, "--centre", CENTRE, "--seconds", "1", "--quiet")
        result = run_ok("info", path, "--json")
        self.assertEqual(result.err, "")
        self.assertEqual((result.json()["source"], result.json()["startUtc"]), ("SDRangel", 1_767_225_600))
        for refused in (("x.sdriq", "--sample-type", "cf32"), ("x.iq", "--sample-type", "ci12"),
                        ("x.iq", "--sample-type", "ci8", "--rf64"), ("x.wav", "--sample-type", "ci8", "--files", "2")):
            self.assertEqual(run("synth", self.folder / refused[0], *refused[1:]).code, 2, refused)

    def test_what_is_missing_is_named_with_its_option(self):
        path = self.write("capture.iq", raw(self.samples, "ci16"))
        for command in (("info", path), ("scan", path), ("picture", path, self.folder / "x.png"),
                        ("cut", path, "--output", self.folder, "--entry", "f=7.1M,bw=10k")):
            with self.subTest(command=command[0]):
                result = run(*command)
                self.assertEqual(result.code, 3)
                for option in ("--sample-type", "--rate", "--start-time",
                               "--centre-frequency" if command[0] == "scan" else "--centre"):
                    self.assertIn(option, result.err)
        self.assertEqual(run("info", path, "--sample-type", "ci16", *GIVEN[:4]).code, 3)
        self.assertEqual(run_ok("info", path, "--sample-type", "ci16", *GIVEN, "--json").json()["startMilliseconds"], 500)

    def test_kinds_that_nobody_reads_are_named(self):
        for name, words in (("a.cs12", "packed 12-bit"), ("a.CU12", "packed 12-bit"), ("a.ziq", "compressed")):
            path = self.write(name, bytes(range(256)) * 30)
            result = run("info", path, *GIVEN)
            self.assertEqual(result.code, 3)
            self.assertIn(words, result.err)
            # Whoever knows better says so.
            self.assertEqual(run_ok("info", path, *GIVEN, "--sample-type", "ci16", "--json").json()["sampleType"], "ci16_le")

    def test_chunks_of_what_has_none_says_so(self):
        for name, data in (("a.sigmf-meta", b'{"global": {}}'), ("a.raw", bytes(1000)), ("a.wav", b"RI"), ("b.wav", b"")):
            result = run("chunks", self.write(name, data))
            self.assertEqual(result.code, 3)
            self.assertIn("no RIFF or RF64 file", result.err)

    def test_options_that_cannot_be_read_are_refused(self):
        path = self.write("capture.iq", raw(self.samples, "ci16"))
        for option, value in (("--rate", "0"), ("--rate", "fast"), ("--centre", "here"), ("--sample-type", "ci12"),
                              ("--start-time", "2023-11-14"), ("--start-time", "2023-11-14T22:13.5Z"),
                              ("--start-time", "2023-11-14T22:13:20.0123456789Z"), ("--time-zone", "Mars")):
            with self.subTest(option=option, value=value):
                result = run("info", path, option, value)
                self.assertEqual(result.code, 2)
                self.assertIn(option, result.err)
                self.assertIn("Accepted", result.err)

    def test_given_facts_go_before_those_of_a_recording(self):
        path = write_recording(self.folder / "in.wav", Layout(RATE), signal([], RATE, 0, RATE))
        info = run_ok("info", path, *GIVEN, "--json").json()
        self.assertEqual((info["centreFrequency"], info["startUtc"]), (CENTRE, START))

    def test_name_that_tells_all_needs_nothing_given(self):
        path = self.write("gqrx_20231114_221320_100000000_125000_fc.raw", raw(self.samples, "cf32"))
        self.check_cut(path)


if __name__ == "__main__":
    unittest.main()

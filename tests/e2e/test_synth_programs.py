"""What `synth` makes of every program and as SigMF is read back as what was asked for."""
import hashlib
import json
import re
import struct
import subprocess
import tarfile
import unittest

import numpy as np

from program import WINDOWS, EndToEndTest, environment, run, run_ok

RATE = 125_000
SECONDS = 2
CENTRE = 7_100_000
START = 1_711_800_001  # 2024-03-30T12:00:01Z
OFFSET = 12_345
ASKED = ("--rate", RATE, "--centre", CENTRE, "--seconds", SECONDS, "--start", "2024-03-30T12:00:01Z",
         "--station", f"{CENTRE + OFFSET}:-12:tone")
# What `info` calls them, and the file's name.
PROGRAMS = {
    "halvarn": ("Halvarn", "halvarn 20240330 120001.wav"),
    "halvarn-2": ("Halvarn (V2)", "halvarn 20240330 120001.wav"),
    "halvarn-3": ("Halvarn (V3)", "halvarn 20240330 120001.wav"),
    "spectravue-1": ("SpectraVue 1", "spectravue-20240330-120001.wav"),
    "spectravue-2": ("SpectraVue 2", "spectravue-20240330-120001.wav"),
    "spectravue-2.34": ("SpectraVue 2.34", "spectravue-20240330-130001.wav"),
    "spectravue-3.0": ("SpectraVue 3.0", "spectravue-20240330-120001.wav"),
    "winrad": ("Winrad", "winrad-20240330-120001.wav"),
    "elad": ("ELAD", "elad-20240330-120001.wav"),
    "perseus": ("Perseus", "perseus-20240330-120001.wav"),
    "go2monitor": ("go2MONITOR", "go2monitor-20240330-120001.wav"),
    "winradio": ("Winradio", "G39DDC-7.1MHz_24-03-30_13'00'01.ddc"),
    "sdrsharp": ("SDRSharp", "SDRSharp_20240330_120001Z_7100000Hz_IQ.wav"),
    "airspy": ("SDRSharp", "AirSpy_20240330_130001Z_7100kHz_IQ.wav"),
    "hackrf": ("HackRF", "HackRF_20240330_130001Z_7100kHz_IQ.wav"),
    "sdr++": ("SDR++", "baseband_7100000Hz_13-00-01_30-03-2024.wav"),
    "sdrangel": ("SDRangel", "rec.2024-03-30T12_00_01_000.sdriq"),
    "sdrangel-4.2": ("SDRangel", "rec.2024-03-30T12_00_01_000.sdriq"),
    "sdrangel-wav": ("Winrad", "rec_2024-03-30T12_00_01_000.wav"),
    "gqrx": ("gqrx", "gqrx_20240330_120001_7100000_125000_fc.raw"),
    "kiwisdr": ("KiwiSDR", "20240330T120001Z_7100000_iq.wav"),
    "kiwisdr-wav": ("KiwiSDR", "20240330T120001Z_7100000_iq.wav"),
    "kiwisdr-browser": ("KiwiSDR", "kiwi.example_2024-03-30T12_00_01Z_7100_iq.wav"),
    "satdump": ("SatDump", "2024-03-30_12-00-01_125000SPS_7100000Hz.cf32"),
    "satdump-wav": ("SatDump", "2024-03-30_12-00-01_125000SPS_7100000Hz.wav"),
    "sdruno": ("SDRuno", "SDRuno_20240330_120001Z_7100kHz.wav"),
    "hdsdr": ("HDSDR", "HDSDR_20240330_120001Z_7100kHz_RF.wav"),
    "sdrconnect": ("SDRconnect", "SDRconnect_IQ_20240330_130001_7100000HZ.wav"),
    "wavviewdx": ("WavViewDX", "iq_pcm16_ch1_cf7100000_sr125000_dt20240330-120001z.raw"),
    "portapack": ("PortaPack", "BBD_0001.C16"),
    "rtl_433": ("Raw", "g001_7.1M_125k.cu8"),
}
# These take local time for UTC where nobody tells them, as docs/formats.md says.
TAKEN_AS_UTC = ("airspy", "sdrangel-wav")
TIMELESS = ("portapack", "rtl_433")
# An hour ahead on that day, so that no local time passes for UTC. Windows has one zone for the whole machine.
ZONE = environment(TZ="UTC" if WINDOWS else "Europe/Vienna")


def names_in_help():
    text = " ".join(run_ok("synth", "--help").out.split())
    return re.search(r"in the folder OUT: (.*?) --captures", text)[1].split(", ")


class SynthTest(EndToEndTest):
    def info_of(self, path, *arguments):
        return run_ok("info", path, "--json", *arguments, env=ZONE).json()

    def check_tone(self, path, *arguments):
        found = run_ok("scan", path, "--above", "30", "--json", *arguments, env=ZONE).json()["signals"]
        loudest = max(found, key=lambda signal: signal["level"])
        self.assertAlmostEqual(loudest["frequency"], CENTRE + OFFSET, delta=500)
        self.assertAlmostEqual(loudest["level"], -12, delta=0.2)


class TestSynthPrograms(SynthTest):
    def synth(self, program, *arguments):
        folder = self.folder / program
        folder.mkdir()
        result = run_ok("synth", folder, "--program", program, *ASKED, *arguments, env=ZONE)
        made = [path for path in folder.iterdir() if path.suffix != ".TXT"]
        self.assertEqual(len(made), 1)
        self.assertEqual(len(result.out.splitlines()), len(list(folder.iterdir())))
        return made[0]

    def test_info_tells_of_every_program_what_was_asked_for(self):
        self.assertEqual(sorted(names_in_help()), sorted(PROGRAMS))
        for program in names_in_help():
            with self.subTest(program=program):
                path = self.synth(program)
                given = ()
                if program in TIMELESS:
                    self.assertEqual(run("info", path).code, 3)
                    given = ("--start-time", "2024-03-30T12:00:01Z")
                if program in TAKEN_AS_UTC:
                    given = ("--time-zone", "local")
                info = self.info_of(path, *given)
                source, name = PROGRAMS[program]
                name = name.replace("13", "12") if WINDOWS else name  # the hour, in local time
                self.assertEqual((info["source"], path.name), (source, name))
                self.assertEqual((info["sampleRate"], info["centreFrequency"]), (RATE, CENTRE))
                self.assertEqual((info["startUtc"], info["startMilliseconds"], info["seconds"]), (START, 0, SECONDS))
                frame = 2 * int(re.search(r"\d+", info["sampleType"])[0]) // 8
                self.assertEqual(info["totalBytes"], RATE * SECONDS * frame)
                if "--time-zone" not in given:
                    self.check_tone(path, *given)

    def test_every_type_of_samples_that_a_program_writes(self):
        for program, type in (("sdr++", "cu8"), ("sdr++", "ci32"), ("sdr++", "cf32"), ("sdrangel", "ci32"),
                              ("satdump", "ci8"), ("satdump", "ci16"), ("satdump", "ci32"), ("portapack", "ci8"),
                              ("rtl_433", "cf32"), ("perseus", "ci16"), ("winrad", "ci24"), ("winrad", "cf32")):
            with self.subTest(program=program, type=type):
                given = ("--start-time", "2024-03-30T12:00:01Z") if program in TIMELESS else ()
                path = self.synth(program, "--sample-type", type)
                self.assertEqual(self.info_of(path, *given)["sampleType"].split("_")[0], type)
                self.check_tone(path, *given)
                for each in (path.with_suffix(".TXT"), path):
                    each.unlink(missing_ok=True)
                path.parent.rmdir()

    def test_24_bits_of_sdrangel_stay_within_24_bits(self):
        path = self.synth("sdrangel", "--sample-type", "ci32", "--station", f"{CENTRE + 1000}:6")
        values = np.frombuffer(path.read_bytes()[32:], "<i4")
        self.assertEqual((values.min(), values.max()), (-2**23, 2**23 - 1))

    def test_kiwi_blocks_stand_where_the_program_puts_them(self):
        body = self.synth("kiwisdr").read_bytes()
        frames = RATE * SECONDS
        blocks = -(-frames // 512)
        self.assertEqual(len(body), 36 + blocks * 26 + frames * 4)
        self.assertEqual(struct.unpack("<I", body[4:8])[0], len(body) - 8)
        for block in (0, 1, blocks - 1):
            head = body[36 + 2074 * block:][:26]
            self.assertEqual((head[:4], head[18:22]), (b"kiwi", b"data"))
            self.assertEqual(struct.unpack("<I", head[22:])[0], 4 * min(512, frames - 512 * block))
            # Saturday noon and a second, 18 leap seconds ahead.
            seconds, nanoseconds = struct.unpack("<II", head[10:18])
            ahead = 512 * block / RATE
            self.assertAlmostEqual(seconds + nanoseconds / 1e9, 6 * 86400 + 12 * 3600 + 1 + 18 + ahead, places=6)

    def test_what_a_program_cannot_tell_is_refused(self):
        folder = self.folder / "none"
        for arguments, words in ((("--program", "winrad", "--centre", "5G"), "--centre"),
                                 (("--program", "hackrf", "--centre", "7100001"), "steps of 1000"),
                                 (("--program", "rtl_433", "--rate", "250001"), "--rate"),
                                 (("--program", "gqrx", "--sample-type", "ci16"), "cf32"),
                                 (("--program", "gqrx", "--bits", "8"), "--bits"),
                                 (("--program", "gqrx", "--files", "2"), "--files"),
                                 (("--program", "winrad", "--rf64"), "--rf64"),
                                 (("--program", "winrad", "--seconds", "1000000", "--rate", "2M"), "--seconds"),
                                 (("--program", "nobody"), "gqrx")):
            with self.subTest(arguments=arguments):
                result = run("synth", self.output, *arguments)
                self.assertEqual(result.code, 2)
                self.assertIn(words, result.err)
                self.assertEqual(self.names(), [])
        result = run("synth", folder, "--program", "gqrx")
        self.assertEqual(result.code, 2)
        self.assertIn("folder", result.err)

    def test_existing_files_are_left_alone(self):
        path = self.synth("portapack")
        text = path.with_suffix(".TXT")
        text.write_text("mine")
        path.unlink()
        self.assertEqual(run("synth", path.parent, "--program", "portapack").code, 4)
        self.assertEqual(text.read_text(), "mine")
        self.assertFalse(path.exists())


class TestSynthSigMf(SynthTest):
    def synth(self, name, *arguments):
        path = self.folder / name
        run_ok("synth", path, *ASKED, *arguments)
        return path

    def check(self, path, seconds=SECONDS):
        info = self.info_of(path)
        self.assertEqual((info["container"], info["sampleRate"], info["centreFrequency"]), ("SigMF", RATE, CENTRE))
        self.assertEqual((info["startUtc"], info["startNanoseconds"]), (START, 0))
        self.assertAlmostEqual(info["seconds"], seconds, places=6)

    def test_pair_of_every_type(self):
        for type in ("ci8", "cu8", "ci16", "ci16_be", "cu16", "ci32", "cu32_be", "cf32", "cf64_be"):
            with self.subTest(type=type):
                path = self.synth(f"{type}.sigmf-data", "--sample-type", type)
                self.check(path.with_suffix(".sigmf-meta"))
                self.check_tone(path)
        self.assertEqual(run("synth", self.folder / "x.sigmf-data", "--sample-type", "ci24").code, 2)

    def test_captures_and_lost_samples_keep_the_time_of_the_signal(self):
        path = self.synth("a.sigmf-meta", "--captures", "3", "--lost", "1000")
        meta = json.loads(path.read_text())
        self.assertEqual([capture["core:sample_start"] for capture in meta["captures"]], [0, 83_333, 166_666])
        self.assertEqual([capture["core:global_index"] for capture in meta["captures"]], [0, 84_333, 168_666])
        self.assertEqual(meta["captures"][1]["core:datetime"], "2024-03-30T12:00:01.674664000Z")
        self.check(path, SECONDS + 2000 / RATE)
        self.assertIn("lost", run_ok("info", path).err)
        # The tone goes on behind what is missing.
        samples = np.frombuffer(path.with_suffix(".sigmf-data").read_bytes(), "<i2").astype(float)
        samples = samples[0::2] + 1j * samples[1::2]
        frames = np.concatenate([np.arange(83_333), np.arange(84_333, 167_666), np.arange(168_666, 252_000)])
        self.assertEqual(len(samples), RATE * SECONDS)
        amplitude = 32768 * 10 ** (-12 / 20)
        self.assertLess(np.abs(samples - amplitude * np.exp(2j * np.pi * OFFSET * frames / RATE)).max(), 0.8)

    def test_archive_is_a_tar_that_others_read(self):
        path = self.synth("a b.sigmf", "--captures", "2")
        self.check(path)
        pair = self.synth("a b.sigmf-data", "--captures", "2")
        with tarfile.open(path) as archive:
            self.assertEqual(archive.getnames(), ["a b/a b.sigmf-meta", "a b/a b.sigmf-data"])
            for member in archive.getmembers():
                beside = pair.with_suffix("." + member.name.rsplit(".", 1)[1])
                self.assertEqual(archive.extractfile(member).read(), beside.read_bytes())
        listed = subprocess.run(["tar", "tf", str(path)], capture_output=True)
        self.assertEqual((listed.returncode, listed.stderr), (0, b""))
        self.assertEqual(run("synth", self.folder / ("x" * 90 + ".sigmf")).code, 2)

    def test_collection_goes_on_from_recording_to_recording(self):
        path = self.synth("all.sigmf-collection", "--files", "2", "--captures", "2", "--lost", "500")
        streams = json.loads(path.read_text())["collection"]["core:streams"]
        metas = [self.folder / f"all {number:03d}.sigmf-meta" for number in range(2)]
        self.assertEqual(streams, [[meta.stem, hashlib.sha512(meta.read_bytes()).hexdigest()] for meta in metas])
        result = run_ok("info", path, "--json")
        self.assertNotIn("not as it was", result.err)
        parts = result.json()["parts"]
        self.assertEqual([part["name"] for part in parts], [meta.name for meta in metas])
        second = json.loads(metas[1].read_text())["captures"][0]
        self.assertEqual(second["core:datetime"], "2024-03-30T12:00:02.004000000Z")
        self.assertEqual(second["core:global_index"], 125_500)

    def test_what_does_not_go_together_is_refused(self):
        for name, arguments in (("a.wav", ("--captures", "2")), ("a.wav", ("--lost", "2")), ("a.iq", ("--captures", "0")),
                                ("a.sigmf-data", ("--captures", "1001")), ("a.sigmf-data", ("--lost", "-1")),
                                ("a.sigmf-data", ("--files", "2")), ("a.sigmf", ("--rf64",)),
                                ("a.sigmf-data", ("--captures", "1000", "--rate", "100", "--seconds", "1"))):
            with self.subTest(name=name, arguments=arguments):
                result = run("synth", self.output / name, *arguments)
                self.assertEqual(result.code, 2)
                self.assertIn(arguments[0], result.err)
                self.assertEqual(self.names(), [])


if __name__ == "__main__":
    unittest.main()

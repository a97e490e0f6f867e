"""The bytes of output files: headers, metadata, trailers; and that every input format is read at the right level."""
import base64
import datetime
import re
import struct
import unittest

import numpy as np

from makers import START, Layout, Tone, info_chunk, signal, write_recording
from program import WINDOWS, EndToEndTest, local, native, run_ok
from wavtools import WaveFile, decibels, measure_tone

RATE = 48_000
TONE = Tone(1_000, 6_000)

ATTRIBUTES = ["CurrentTimeUTC", "Filename", "FirstFile", "Folder", "InternalTag", "PreviousFile", "RadioModel",
              "RadioSerial", "SoftwareName", "SoftwareVersion", "UTC", "XMLLevel", "CreatedBy", "TimeZoneStatus",
              "TimeZoneInfo", "DualMode", "Sequence", "ADFrequency", "BitsPerSample", "BytesPerSecond",
              "RadioCenterFreq", "SampleRate", "UTCSeconds"]


def printed_folder(path):
    """The folder of a file as the program prints it."""
    return native(path.parent) if WINDOWS else str(path.parent)


class TestOutputBytes(EndToEndTest):
    """Everything of an output file but its samples, compared with bytes put together here."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_recording(cls.shared / "in.wav", Layout(RATE), signal([TONE], RATE, 0, 3 * RATE))
        out = cls.shared / "out"
        out.mkdir()
        cls.before = datetime.datetime.now(datetime.timezone.utc)
        result = run_ok("cut", cls.source, "--output", out, "--json", "--entry", "f=7.1M,bw=8k,start=+1",
                        "--entry", "f=7.1M,bw=12k,bits=32,size=1GB", "--entry", "f=7.1M,bw=16k,size=RF64",
                        "--entry", "f=7.1M,bw=24k,bits=32,size=RF64").json()
        cls.after = datetime.datetime.now(datetime.timezone.utc)
        cls.files = {each["bandwidth"]: WaveFile(local(each["files"][0])) for each in result["outputs"]}
        cls.frames = {each["bandwidth"]: each["frames"] for each in result["outputs"]}

    def times_of_the_run(self, pattern):
        """The present as the program may have printed it; the time zone is UTC."""
        seconds = int((self.after - self.before).total_seconds()) + 2
        return {(self.before + datetime.timedelta(seconds=second)).strftime(pattern) for second in range(seconds)}

    def check_metadata(self, bandwidth, bits, start, sequence_part):
        file = self.files[bandwidth]
        text, values = file.metadata_text(), file.metadata()
        self.assertEqual(list(values), ATTRIBUTES)
        name = f"2020-11-01 2359z, f=7.100 MHz, bw={bandwidth // 1000} kHz{sequence_part}.wav"
        when = f"01-11-2020 23:59:{start:02d}"
        align = bits // 8 * 2
        expected = {
            "CurrentTimeUTC": when, "Filename": name, "FirstFile": name, "Folder": printed_folder(file.path),
            "PreviousFile": "", "RadioModel": "Test Radio", "RadioSerial": "SN-0042", "SoftwareName": "Carvello",
            "UTC": when, "XMLLevel": "XMLLevel003", "DualMode": "0", "Sequence": "0", "ADFrequency": "122880000",
            "BitsPerSample": str(bits), "BytesPerSecond": str(align * bandwidth), "RadioCenterFreq": "7100000",
            "SampleRate": str(bandwidth), "UTCSeconds": str(START + start)}
        self.assertEqual({key: values[key] for key in expected}, expected)
        self.assertRegex(values["InternalTag"], r"^[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}$")
        seconds = int(values["InternalTag"][0:4] + values["InternalTag"][5:9], 16)
        self.assertLessEqual(int(self.before.timestamp()), seconds)
        self.assertLessEqual(seconds, int(self.after.timestamp()))
        self.assertLess(int(values["InternalTag"][10:], 16), 1000)  # milliseconds
        self.assertRegex(values["SoftwareVersion"], r"^Version \d+(\.\d+)* build \d+$")
        self.assertRegex(values["CreatedBy"], r"^.+ on .+$")
        self.assertIn(values["TimeZoneStatus"], "012")
        self.assertEqual(len(base64.b64decode(values["TimeZoneInfo"], validate=True)), 172)
        self.assertTrue(values["TimeZoneInfo"].endswith("=="))
        # The whole text, to the character.
        created = re.search(r' Created="([^"]*)"', text)[1]
        self.assertIn(created, self.times_of_the_run("%d-%b-%Y %H:%M"))
        written = " ".join(f'{key}="{value}"' for key, value in values.items())
        self.assertEqual(text, (
            f'<?xml version="1.0"?><SDR-XML-Root Description="Saved recording data" Created="{created}">'
            f'<Definition {written}/></SDR-XML-Root>'))
        return text

    def expected_format(self, bandwidth, bits):
        align = bits // 8 * 2
        return b"fmt " + struct.pack("<IHHIIHHH", 18, 3 if bits == 32 else 1, 2, bandwidth, align * bandwidth, align,
                                     bits, 0)

    def check_wav(self, bandwidth, bits, start):
        file = self.files[bandwidth]
        file.check_complete()
        text = (self.check_metadata(bandwidth, bits, start, " 000") + "\0").encode("utf-16-le")
        data_bytes = self.frames[bandwidth] * bits // 4
        self.assertEqual(file.header, (
            b"RIFF" + struct.pack("<I", file.length - 8) + b"WAVE" + self.expected_format(bandwidth, bits)
            + b"auxi" + struct.pack("<I", len(text)) + text + b"data" + struct.pack("<I", data_bytes)))
        self.check_trailer(file, bandwidth, data_bytes, "WAV")

    def check_rf64(self, bandwidth, bits, start):
        file = self.files[bandwidth]
        file.check_complete()
        text = (self.check_metadata(bandwidth, bits, start, "") + "\0").encode("utf-16-le")
        data_bytes = self.frames[bandwidth] * bits // 4
        # The ds64 chunk counts single I and Q values, deliberately: twice the frames.
        ds64 = struct.pack("<IQQQI", 28, file.length - 8, data_bytes, 2 * self.frames[bandwidth], 0)
        self.assertEqual(file.header, (
            b"RF64" + b"\xff" * 4 + b"WAVE" + b"ds64" + ds64 + self.expected_format(bandwidth, bits)
            + b"auxi" + struct.pack("<I", len(text)) + text + b"data" + b"\xff" * 4))
        self.check_trailer(file, bandwidth, data_bytes, "WAV RF64")

    def check_trailer(self, file, bandwidth, data_bytes, form):
        trailer = file.path.read_bytes()[file.data_offset + data_bytes:]
        texts = file.info()
        self.assertEqual(list(texts), ["IART", "ICMT", "ICOP", "INAM", "IPRD"])
        self.assertEqual(texts["IART"], "Halvarn, Test Radio")
        self.assertEqual(texts["IPRD"], f"SDR Data (IQ) Recordings, {form}")
        self.assertIn(texts["INAM"], {f"7.100 MHz, BW {bandwidth // 1000} kHz, {time}"
                                      for time in self.times_of_the_run("%Y-%m-%d %H:%M")})
        self.assertRegex(texts["ICOP"], r"^Software .+")
        comment = r"^Created by (.+\\.+) on (\d{4}-\d\d-\d\d \d\d:\d\d:\d\d), filename (.+)$"
        computer_user, when, name = re.match(comment, texts["ICMT"]).groups()
        self.assertEqual(name, native(file.path))
        self.assertIn(when, self.times_of_the_run("%Y-%m-%d %H:%M:%S"))
        user, computer = file.metadata()["CreatedBy"].split(" on ")
        self.assertEqual(computer_user, f"{computer}\\{user}")
        # A text's size covers its terminating zero and, for an even length, one more zero.
        body = b"INFO"
        for identifier, content in texts.items():
            raw = content.encode()
            size = (len(raw) + 2) // 2 * 2
            body += identifier.encode() + struct.pack("<I", size) + raw.ljust(size, b"\0")
        self.assertEqual(trailer, b"LIST" + struct.pack("<I", len(body)) + body)

    def test_wav_of_16_bits(self):
        self.check_wav(8_000, 16, 1)

    def test_wav_of_32_bits(self):
        self.check_wav(12_000, 32, 0)

    def test_rf64_of_16_bits(self):
        self.check_rf64(16_000, 16, 0)

    def test_rf64_of_32_bits(self):
        self.check_rf64(24_000, 32, 0)

    def test_rf64_counts_frames_where_they_are_asked_for(self):
        out = self.folder / "frames"
        out.mkdir()
        result = run_ok("cut", self.source, "--output", out, "--json", "--ds64-frames",
                        "--entry", "f=7.1M,bw=16k,size=RF64").json()
        file = WaveFile(local(result["outputs"][0]["files"][0]))
        frames = result["outputs"][0]["frames"]
        self.assertEqual(frames, self.frames[16_000])
        self.assertEqual(file.header[12:48], b"ds64" + struct.pack(
            "<IQQQI", 28, file.length - 8, frames * 4, frames, 0))

    def test_every_output_of_a_job_has_the_same_chunks_in_the_same_order(self):
        for bandwidth, file in self.files.items():
            rf64 = bandwidth in (16_000, 24_000)
            self.assertEqual(file.identifiers, [b"ds64"] * rf64 + [b"fmt ", b"auxi", b"data", b"LIST"])

    def test_info_reads_its_own_output(self):
        for bandwidth, file in self.files.items():
            with self.subTest(bandwidth=bandwidth):
                info = self.info(file.path)
                self.assertEqual(info["source"], "Halvarn (V3)")
                self.assertEqual(info["files"], [native(file.path)])
                self.assertEqual(info["dataBytes"], [file.data_bytes])
                self.assertEqual(info["totalBytes"], file.data_bytes)
                self.assertEqual((info["sampleRate"], info["bandwidth"]), (bandwidth, bandwidth))
                self.assertEqual(info["centreFrequency"], 7_100_000)
                self.assertEqual(info["bitsPerSample"], file.bits)
                self.assertEqual(info["sampleFormat"], "float" if file.bits == 32 else "pcm")
                self.assertEqual(info["rf64"], file.form == b"RF64")
                self.assertEqual(info["metadata"], file.metadata())
                self.assertEqual(info["infoTexts"], file.info())


class TestInputFormats(EndToEndTest):
    """Every sample format at the same level: amplitudes here are in units of 16-bit full scale = 32768."""

    def measure(self, path, bandwidth=8_000):
        samples = WaveFile(path).samples()[bandwidth // 4:-bandwidth // 4]
        return measure_tone(samples, bandwidth, TONE.offset)

    def check(self, layout, amplitude=TONE.amplitude):
        samples = signal([Tone(TONE.offset, amplitude)], RATE, 0, 3 * RATE)
        source = write_recording(self.folder / "in.wav", layout, samples)
        info = self.info(source)
        self.assertEqual(info["bitsPerSample"], int(layout.form[1:]))
        self.assertEqual(info["sampleFormat"], "float" if layout.form == "f32" else "pcm")
        self.assertEqual(info["rf64"], layout.rf64)
        self.assertEqual(info["totalBytes"], 3 * RATE * layout.frame_bytes)
        tone = self.measure(self.cut_one(source, "f=7.1M,bw=8k,bits=32"))
        self.assertAlmostEqual(decibels(tone.amplitude / amplitude), 0, delta=0.05)
        self.assertAlmostEqual(tone.frequency, TONE.offset, delta=0.01)

    def test_16_bit(self):
        self.check(Layout(RATE))

    def test_24_bit(self):
        self.check(Layout(RATE, form="s24"))

    def test_32_bit(self):
        self.check(Layout(RATE, form="s32"))

    def test_float(self):
        self.check(Layout(RATE, form="f32"))

    def test_8_bit_values_are_taken_as_they_stand(self):
        self.check(Layout(RATE, form="s8"), amplitude=100)

    def test_8_bit_rf64(self):
        self.check(Layout(RATE, form="s8", rf64=True), amplitude=100)

    def test_16_bit_rf64(self):
        self.check(Layout(RATE, rf64=True))

    def test_24_bit_rf64(self):
        self.check(Layout(RATE, form="s24", rf64=True))

    def test_32_bit_rf64(self):
        self.check(Layout(RATE, form="s32", rf64=True))

    def test_float_rf64(self):
        self.check(Layout(RATE, form="f32", rf64=True))

    def test_16_bit_extensible(self):
        self.check(Layout(RATE, extensible=True))

    def test_24_bit_extensible_rf64(self):
        self.check(Layout(RATE, form="s24", extensible=True, rf64=True))

    def test_float_extensible(self):
        self.check(Layout(RATE, form="f32", extensible=True))

    def test_quiet_signal_below_one_16_bit_step_survives_in_32_bits(self):
        self.check(Layout(RATE, form="s32"), amplitude=0.25)

    def test_float_output_cut_again_keeps_its_level(self):
        samples = signal([TONE], RATE, 0, 3 * RATE)
        source = write_recording(self.folder / "in.wav", Layout(RATE), samples)
        for size in ("100MB", "RF64"):
            with self.subTest(size=size):
                once = self.cut_one(source, f"f=7.1M,bw=24k,bits=32,size={size}")
                twice = self.cut_one(once, f"f=7.1M,bw=8k,bits=32,size={size}")
                thrice = self.cut_one(twice, f"f=7.1M,bw=4k,bits=16,size={size}")
                for path, bandwidth in ((once, 24_000), (twice, 8_000), (thrice, 4_000)):
                    amplitude = self.measure(path, bandwidth).amplitude
                    self.assertAlmostEqual(decibels(amplitude / TONE.amplitude), 0, delta=0.05)

    def test_16_bit_output_saturates_instead_of_wrapping(self):
        samples = np.full(2 * RATE, 0.9 * 32768 * (1 + 1j))
        samples += signal([Tone(500, 0.09 * 32768)], RATE, 0, 2 * RATE)
        source = write_recording(self.folder / "in.wav", Layout(RATE, form="f32"), 1.5 * samples)
        values = WaveFile(self.cut_one(source, "f=7.1M,bw=8k")).samples()[1000:-1000]
        self.assertEqual(values.real.min(), 32767)
        self.assertEqual(values.imag.min(), 32767)

    def test_info_texts_of_the_input_are_told(self):
        texts = {"IPRD": "A product", "IART": "Artist", "ICMT": "odd", "ICOP": "rights", "INAM": "?? name?"}
        source = write_recording(self.folder / "in.wav", Layout(RATE, info=texts), signal([TONE], RATE, 0, RATE))
        self.assertIn(info_chunk(texts), source.read_bytes())
        self.assertEqual(self.info(source)["infoTexts"], {**texts, "INAM": "name?"})


class TestInfo(EndToEndTest):
    def test_a_set_is_one_timeline(self):
        layout = Layout(RATE, centre=14_250_000)
        paths = [write_recording(self.folder / f"set {number:03d}.wav", layout, np.zeros(frames), "set 000.wav")
                 for number, frames in enumerate((2 * RATE, 3 * RATE, RATE // 2))]
        for selected in paths:
            info = self.info(selected)
            self.assertEqual(info["files"], [native(path) for path in paths])
            self.assertEqual(info["dataBytes"], [8 * RATE, 12 * RATE, 2 * RATE])
            self.assertEqual(info["totalBytes"], 22 * RATE)
            self.assertEqual((info["startUtc"], info["endUtc"]), (START, START + 5))
            self.assertAlmostEqual(info["seconds"], 5.5)
            self.assertEqual((info["sampleRate"], info["bandwidth"]), (RATE, RATE))
            self.assertEqual(info["centreFrequency"], 14_250_000)
            self.assertEqual(info["source"], "Halvarn (V3)")
            self.assertEqual(info["metadata"]["RadioModel"], "Test Radio")

    def test_keys_are_those_that_scripts_rely_on(self):
        source = write_recording(self.folder / "in.wav", Layout(RATE), np.zeros(RATE))
        self.assertEqual(set(self.info(source)), {
            "source", "files", "fileCount", "dataBytes", "totalBytes", "sampleRate", "centreFrequency", "bandwidth",
            "bitsPerSample", "sampleFormat", "sampleType", "container", "startUtc", "endUtc", "startMilliseconds",
            "endMilliseconds", "startNanoseconds", "seconds", "rf64", "infoTexts", "metadata", "unfinishedFiles"})

    def test_same_facts_for_a_person(self):
        source = write_recording(self.folder / "in.wav", Layout(RATE), np.zeros(RATE))
        text = run_ok("info", source).out
        for fact in ("Halvarn (V3)", "in.wav", "7.100", "48"):
            self.assertIn(fact, text)


if __name__ == "__main__":
    unittest.main()

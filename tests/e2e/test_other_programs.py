"""Recordings of other programs, which say where and when they were made in ways of their own."""
import unittest

import foreign_makers as foreign
from makers import Layout, Tone, encode, signal, write_recording
from program import EndToEndTest, local, native, run, run_ok
from wavtools import WaveFile, measure_tone

RATE = 125_000
SECONDS = 4
CENTRE = 7_050_000
FROM = (2020, 11, 1, 23, 58, 58)
TO = (2020, 11, 1, 23, 59, 2)
START = 1604275138


class ForeignRecordingTest(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.samples = encode(signal([Tone(12_345, 9000)], RATE, 0, SECONDS * RATE), "s16")

    def write(self, name, chunks=(), **options):
        return foreign.write(self.folder / name, RATE, self.samples, chunks, **options)


class TestRecordingsOfOtherPrograms(ForeignRecordingTest):
    """Every program's recording is described by `info` and cut; the end is compared where the program tells one."""

    def check(self, name, source, chunks=(), centre=CENTRE, start=START, bandwidth=RATE, warning=None, **options):
        path = self.write(name, chunks, **options)
        result = run_ok("info", path, "--json")
        info = result.json()
        if warning:
            self.assertIn(warning, result.err)
        else:
            self.assertEqual(result.err, "")
        self.assertEqual((info["source"], info["centreFrequency"], info["sampleRate"]), (source, centre, RATE))
        self.assertEqual((info["bandwidth"], info["bitsPerSample"], info["sampleFormat"]), (bandwidth, 16, "pcm"))
        self.assertEqual((info["files"], info["fileCount"]), ([native(path)], 1))
        self.assertEqual(info["totalBytes"], len(self.samples))
        self.assertEqual(info["metadata"], {})
        self.assertEqual((info["endUtc"] - info["startUtc"], info["seconds"]), (SECONDS, SECONDS))
        if start is not None:
            self.assertEqual(info["startUtc"], start)
        self.check_text(run_ok("info", path).out, source)
        self.check_cut(path, centre, info["startUtc"])

    def check_text(self, text, source):
        lines = dict(line.split(None, 1) for line in text.splitlines() if len(line.split(None, 1)) == 2)
        self.assertIn(source, lines["Source"])
        self.assertIn("16 bit PCM", lines["Samples"])
        self.assertEqual(lines["Total"].split(), ["files", "1"])
        self.assertEqual(lines["Duration"], f"0:0{SECONDS}")
        for field in ("Centre", "Sample", "Start", "End", "Size"):
            self.assertIn(field, lines)

    def check_cut(self, path, centre, start):
        output, = self.cut(path, "--entry", f"f={centre + 12_000},bw=10k,start=+1,bits=32")
        file = WaveFile(local(output["files"][0]))
        file.check_complete()
        metadata = file.metadata()
        self.assertEqual(metadata["UTCSeconds"], str(start + 1))
        self.assertEqual(metadata["RadioCenterFreq"], str(centre + 12_000))
        tone = measure_tone(file.samples()[2000:-2000], 10_000, 345)
        self.assertAlmostEqual(tone.frequency, 345, delta=0.01)
        self.assertAlmostEqual(tone.amplitude, 9000, delta=50)

    def test_spectravue_1(self):
        self.check("a.wav", "SpectraVue 1", [foreign.auxi_28(FROM, CENTRE)])

    def test_spectravue_2(self):
        self.check("a.wav", "SpectraVue 2", [foreign.auxi(44, FROM, TO, CENTRE)])

    def test_spectravue_2_34(self):
        self.check("a.wav", "SpectraVue 2.34", [foreign.auxi(68, FROM, TO, CENTRE)])

    def test_spectravue_3_0(self):
        self.check("a.wav", "SpectraVue 3.0", [foreign.auxi(72, FROM, TO, CENTRE)])

    def test_winrad(self):
        self.check("a.wav", "Winrad", [foreign.auxi(164, FROM, TO, CENTRE)])

    def test_block_behind_the_samples(self):
        self.check("a.wav", "Winrad", behind=[foreign.auxi(164, FROM, TO, CENTRE)])

    def test_elad(self):
        self.check("a.wav", "ELAD", [foreign.elad(), foreign.auxi(164, FROM, TO, CENTRE)])

    def test_perseus(self):
        self.check("a.wav", "Perseus", [foreign.rcvr(CENTRE, 0, START)])

    def test_go2monitor(self):
        self.check("a.wav", "go2MONITOR", [foreign.meta("2020-11-01T23:58:58.000Z", CENTRE, RATE)], bandwidth=112_500)

    def test_go2monitor_with_elements_below_base(self):
        self.check("a.wav", "go2MONITOR", [foreign.meta("2020-11-01T23:58:58.000Z", CENTRE, RATE, below_base=True)],
                   bandwidth=112_500)

    def test_winradio(self):
        self.check(foreign.winradio_name(FROM), "Winradio")

    def test_winradio_continuation_file_starts_later(self):
        self.check(foreign.winradio_name(FROM, "7.0505", "-^002"), "Winradio", centre=7_050_500,
                   start=START + 2 * SECONDS)

    def test_sdrsharp(self):
        self.check(foreign.sdrsharp_name(FROM), "SDRSharp")

    def test_airspy(self):
        self.check(foreign.sdrsharp_name(FROM, "145500kHz", "airspy"), "SDRSharp", centre=145_500_000,
                   warning="local time with a")

    def test_frequency_in_the_name_alone(self):
        self.check("rec_7050khz.wav", "UnknownFmt", start=None)

    def test_nothing_at_all(self):
        self.check("capture.wav", "UnknownFmt", centre=10_000_000, start=None)


class TestRecordingsWithXmlMetadata(EndToEndTest):
    def test_levels_of_the_metadata(self):
        for level, source in (("XMLLevel002", "Halvarn (V2)"), ("XMLLevel003", "Halvarn (V3)"), ("", "Halvarn")):
            with self.subTest(level=level):
                path = write_recording(self.folder / f"{level}.wav", Layout(RATE, attributes={"XMLLevel": level}),
                                       signal([], RATE, 0, RATE))
                info = self.info(path)
                self.assertEqual((info["source"], info["centreFrequency"]), (source, 7_100_000))
                self.assertEqual((info["endUtc"] - info["startUtc"], info["seconds"]), (1, 1.0))


class TestPrecision(ForeignRecordingTest):
    def test_milliseconds_are_shown_where_they_are_known(self):
        path = self.write("a.wav", [foreign.auxi(164, (*FROM, 250), (*TO, 375), CENTRE)])
        info = self.info(path)
        self.assertEqual((info["startUtc"], info["startMilliseconds"]), (START, 250))
        self.assertEqual((info["endUtc"], info["endMilliseconds"]), (START + SECONDS, 375))
        text = run_ok("info", path).out
        self.assertIn("2020-11-01T23:58:58.250Z", text)
        self.assertIn("2020-11-01T23:59:02.375Z", text)

    def test_end_of_a_perseus_recording_has_its_fraction(self):
        path = foreign.write(self.folder / "a.wav", RATE, self.samples[:RATE * 4 * 5 // 2],
                             [foreign.rcvr(CENTRE, 0, START)])
        info = self.info(path)
        self.assertEqual((info["endUtc"], info["endMilliseconds"]), (START + 2, 500))

    def test_end_that_was_never_written_comes_from_the_samples(self):
        info = self.info(self.write("a.wav", [foreign.auxi(164, FROM, foreign.NEVER, CENTRE)]))
        self.assertEqual((info["startUtc"], info["endUtc"]), (START, START + SECONDS))

    def test_wrong_bytes_per_second_change_nothing(self):
        info = self.info(self.write("a.wav", [foreign.auxi_28(FROM, CENTRE)], bytes_per_second=1))
        self.assertEqual((info["startUtc"], info["endUtc"]), (START, START + SECONDS))


class TestUnreadableMetadata(ForeignRecordingTest):
    def info_with_line(self, path, said):
        result = run_ok("info", path, "--json")
        self.assertIn(path.name, result.err)
        self.assertIn(said, result.err)
        return result.json()

    def test_signal_time_that_is_none_leaves_the_rest_readable(self):
        for number, time in enumerate(("", "yesterday", "2020-11")):
            folder = self.folder / str(number)
            folder.mkdir()
            info = self.info_with_line(self.write(f"{number}/a.wav", [foreign.meta(time, CENTRE, RATE)]), "signaltime")
            self.assertEqual((info["source"], info["centreFrequency"]), ("go2MONITOR", CENTRE))
            self.assertEqual((info["startUtc"], info["endUtc"]), (0, SECONDS))

    def test_auxi_chunk_of_100_bytes_leaves_the_name(self):
        info = self.info_with_line(self.write("rec_7050khz.wav", [foreign.chunk(b"auxi", bytes(100))]), "100 bytes")
        self.assertEqual((info["source"], info["centreFrequency"]), ("UnknownFmt", CENTRE))

    def test_real_samples_are_refused(self):
        path = self.write("a.wav", [foreign.meta("2020-11-01T23:58:58.000Z", CENTRE, RATE, data_type="real")])
        result = run("info", path)
        self.assertEqual(result.code, 3)
        self.assertIn("a.wav", result.err)


if __name__ == "__main__":
    unittest.main()

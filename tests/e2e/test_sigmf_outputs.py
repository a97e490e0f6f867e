"""SigMF outputs: their files, what those tell, and what becomes of them when they exist already."""
import hashlib
import json
import struct
import time
import unittest
from pathlib import Path

import numpy as np

from makers import START, Layout, Tone, signal, write_recording
from program import EndToEndTest, contents, local, run, start

try:
    import jsonschema
except ImportError:
    jsonschema = None

RATE = 48_000
NAME = "2020-11-01 2359z, f=7.100 MHz, bw=12 kHz"
SCHEMAS = next((folder / "shared/data/sigmf" for folder in Path(__file__).resolve().parents
                if (folder / "shared/data/sigmf/sigmf-schema.json").exists()), None)


def check_schema(value, name):
    """Against the published schema, where it lies beside the project."""
    if SCHEMAS and jsonschema:
        jsonschema.validate(value, json.loads((SCHEMAS / name).read_text()))


class SigMfTest(EndToEndTest):
    """Ten seconds of a tone 1 kHz above the centre, from 2020-11-01 23:59:00 UTC on."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_recording(cls.shared / "in.wav", Layout(RATE), signal([Tone(1_000, 8000)], RATE, 0, 10 * RATE))

    def meta(self, path, whole=True):
        """The content of a meta file, after what every one of them must hold was looked at."""
        value = json.loads(Path(path).read_text())
        check_schema(value, "sigmf-schema.json")
        self.assertEqual(sorted(value), ["annotations", "captures", "global"])
        self.assertEqual(value["global"]["core:version"], "1.2.5")
        self.assertIn(value["global"]["core:datatype"], ("ci16_le", "cf32_le"))
        self.assertRegex(value["global"]["core:recorder"], r"^Carvello Version ")
        self.assertEqual(value["global"]["core:hw"], "Test Radio SN-0042")
        self.assertEqual(value["global"]["core:extensions"], [{"name": "carvello", "version": "1.0.0", "optional": True}])
        self.assertEqual([capture["core:sample_start"] for capture in value["captures"]], [0])
        self.assertEqual("carvello:sample_count" in value["global"], whole)
        return value

    def cut_sigmf(self, entry, *arguments):
        outputs = self.cut(self.source, "--entry", entry, *arguments)
        self.assertTrue(outputs[0]["ok"])
        return [local(path) for path in outputs[0]["files"]]


class TestFiles(SigMfTest):
    def test_samples_and_meta_file_of_16_bits(self):
        data, meta = self.cut_sigmf("f=7.1M,bw=12k,start=+2,duration=5,format=sigmf")
        self.assertEqual((data.name, meta.name), (NAME + ".sigmf-data", NAME + ".sigmf-meta"))
        self.assertEqual(self.names(), [data.name, meta.name])
        value = self.meta(meta)
        self.assertEqual(value["global"]["core:datatype"], "ci16_le")
        self.assertEqual(value["global"]["core:sample_rate"], 12_000)
        self.assertEqual(value["global"]["core:sha512"], hashlib.sha512(data.read_bytes()).hexdigest())
        self.assertEqual(value["global"]["carvello:sample_count"], 60_000)
        self.assertNotIn("core:dataset", value["global"])
        self.assertEqual(value["global"]["carvello:source"], {
            "file": "in.wav", "sample_rate": RATE, "frequency": 7_100_000, "sample_start": 2 * RATE,
            "asked_start": START + 2})
        self.assertIn("in.wav", value["global"]["core:description"])
        self.assertEqual(value["captures"], [{
            "core:sample_start": 0, "core:frequency": 7_100_000, "core:datetime": "2020-11-01T23:59:02Z",
            "core:global_index": 24_000}])
        self.assertEqual(value["annotations"], [{
            "core:sample_start": 0, "core:freq_lower_edge": 7_094_000, "core:freq_upper_edge": 7_106_000,
            "core:label": "7.100 MHz, BW 12 kHz", "core:generator": value["global"]["core:recorder"]}])
        self.assertEqual(data.stat().st_size, 60_000 * 4)

    def test_samples_are_those_of_a_wav_output(self):
        data, _ = self.cut_sigmf("f=7.1M,bw=12k,format=sigmf")
        wav = self.cut_one(self.source, "f=7.1M,bw=12k", output=self.folder)
        raw = wav.read_bytes()
        begin = raw.index(b"data") + 8
        self.assertEqual(raw[begin:begin + data.stat().st_size], data.read_bytes())

    def test_floats_stand_at_full_scale_1(self):
        data, meta = self.cut_sigmf("f=7.1M,bw=12k,bits=32,format=sigmf")
        self.assertEqual(self.meta(meta)["global"]["core:datatype"], "cf32_le")
        wav = self.cut_one(self.source, "f=7.1M,bw=12k,bits=32,size=RF64", output=self.folder)
        raw = wav.read_bytes()
        begin = raw.index(b"data") + 8
        values = np.frombuffer(data.read_bytes(), "<f4")
        self.assertTrue(np.array_equal(values * np.float32(32768), np.frombuffer(raw[begin:begin + 4 * len(values)], "<f4")))
        self.assertAlmostEqual(float(np.abs(values[0::2][6000:-6000]).max()), 8000 / 32768, delta=0.001)

    def test_option_for_all_entries_wins(self):
        outputs = self.cut(self.source, "--format", "sigmf", "--entry", "f=7.1M,bw=12k", "--sequence",
                           "7.09M:7.091M:1k", "--bw", "10k")
        self.assertEqual([local(output["file"]).suffix for output in outputs], [".sigmf-data"] * 3)
        outputs = self.cut(self.source, "--format", "wav", "--entry", "f=7.1M,bw=12k,format=sigmf", output=self.folder)
        self.assertEqual(local(outputs[0]["file"]).suffix, ".wav")

    def test_job_file_takes_the_format(self):
        job = self.folder / "job.json"
        job.write_text(json.dumps({"entries": [{"frequency": 7_100_000, "bandwidth": 12_000, "format": "sigmf"}]}))
        outputs = self.cut(self.source, "--jobs", job)
        self.assertEqual(local(outputs[0]["file"]).name, NAME + ".sigmf-data")

    def test_what_excludes_each_other_is_refused(self):
        for arguments, words in ((("--entry", "f=7.1M,bw=12k,format=sigmf,size=1GB"), "size and format=sigmf exclude"),
                                 (("--entry", "f=7.1M,bw=12k,format=flac"), "wav or sigmf"),
                                 (("--entry", "f=7.1M,bw=12k", "--format", "x"), "wav or sigmf"),
                                 (("--entry", "f=7.1M,bw=12k", "--format", "sigmf", "--sigmf-meta"), "--sigmf-meta"),
                                 (("--entry", "f=7.1M,bw=12k", "--collection", "all"), "--format sigmf or --sigmf-meta"),
                                 (("--entry", "f=7.1M,bw=12k,format=sigmf", "--collection", "a/b"), "no name")):
            result = run("cut", self.source, "--output", self.output, *arguments)
            self.assertEqual(result.code, 2, arguments)
            self.assertIn(words, result.err)
            self.assertEqual(self.names(), [])


class TestMetaBesideWav(SigMfTest):
    def test_tells_where_the_samples_lie(self):
        outputs = self.cut(self.source, "--sigmf-meta", "--entry", "f=7.1M,bw=12k,start=+1")
        wav, meta = [local(path) for path in outputs[0]["files"]]
        self.assertEqual((wav.name, meta.name), (NAME + " 000.wav", NAME + " 000.sigmf-meta"))
        value = self.meta(meta)
        raw = wav.read_bytes()
        begin = raw.index(b"data") + 8
        data_bytes, = struct.unpack_from("<I", raw, begin - 4)
        self.assertEqual(value["global"]["core:dataset"], wav.name)
        self.assertEqual(value["captures"][0]["core:header_bytes"], begin)
        self.assertEqual(value["global"]["core:trailing_bytes"], len(raw) - begin - data_bytes)
        self.assertEqual(value["global"]["carvello:sample_count"] * 4, data_bytes)
        self.assertEqual(value["captures"][0]["core:datetime"], "2020-11-01T23:59:01Z")
        self.assertNotIn("core:sha512", value["global"])

    def test_wav_file_is_what_it_is_without(self):
        files = []
        for option in (("--sigmf-meta",), ()):
            wav = local(self.cut(self.source, *option, "--entry", "f=7.1M,bw=12k")[0]["files"][0])
            files.append(wav.read_bytes())
            for path in self.output.iterdir():
                path.unlink()
        begins = [raw.index(b"data") for raw in files]
        self.assertEqual(begins[0], begins[1])
        self.assertEqual(len(files[0]), len(files[1]))
        end = files[0].rindex(b"LIST")
        self.assertEqual(files[0][begins[0]:end], files[1][begins[0]:end])


class TestCollection(SigMfTest):
    def test_names_every_output_with_the_hash_of_its_meta_file(self):
        self.cut(self.source, "--format", "sigmf", "--collection", "night", "--entry", "f=7.1M,bw=12k", "--entry",
                 "f=7.102M,bw=10k")
        value = json.loads((self.output / "night.sigmf-collection").read_text())
        check_schema(value, "collection-schema.json")
        self.assertEqual(value["collection"]["core:version"], "1.2.5")
        self.assertEqual(value["collection"]["core:streams"],
                         [[meta.stem, hashlib.sha512(meta.read_bytes()).hexdigest()]
                          for meta in sorted(self.output.glob("*.sigmf-meta"))])
        self.assertEqual(len(value["collection"]["core:streams"]), 2)

    def test_one_that_exists_is_kept_without_consent(self):
        (self.output / "night.sigmf-collection").write_text("mine")
        arguments = ("cut", self.source, "--output", self.output, "--format", "sigmf", "--collection", "night",
                     "--entry", "f=7.1M,bw=12k")
        for option in ((), ("--skip-existing",)):
            result = run(*arguments, *option)
            self.assertEqual(result.code, 4)
            self.assertIn("--collection", result.err)
            self.assertEqual(self.names(), ["night.sigmf-collection"])
        self.assertEqual(run(*arguments, "--overwrite").code, 0)
        self.assertIn("core:streams", (self.output / "night.sigmf-collection").read_text())

    def test_outputs_that_were_finished_before_are_in_it_too(self):
        self.cut(self.source, "--format", "sigmf", "--entry", "f=7.1M,bw=12k")
        for _ in range(2):
            self.cut(self.source, "--format", "sigmf", "--skip-existing", "--collection", "night", "--entry",
                     "f=7.1M,bw=12k", "--entry", "f=7.102M,bw=10k")
        value = json.loads((self.output / "night.sigmf-collection").read_text())
        self.assertEqual(len(value["collection"]["core:streams"]), 2)


class TestExistingOutputs(SigMfTest):
    ENTRY = "f=7.1M,bw=12k,format=sigmf"

    def setUp(self):
        super().setUp()
        self.data, self.meta_file = self.cut_sigmf(self.ENTRY)

    def skip_existing(self):
        return run("cut", self.source, "--output", self.output, "--json", "--skip-existing", "--entry", self.ENTRY)

    def test_either_file_is_kept_without_consent(self):
        for gone in (None, self.data, self.meta_file):
            if gone:
                self.cut_sigmf(self.ENTRY, "--overwrite")
                gone.unlink()
            before = contents(self.output)
            result = run("cut", self.source, "--output", self.output, "--entry", self.ENTRY)
            self.assertEqual(result.code, 4)
            self.assertEqual(contents(self.output), before)

    def test_finished_one_is_left_out(self):
        before = contents(self.output)
        result = self.skip_existing()
        self.assertEqual(result.code, 0)
        self.assertEqual([local(path) for path in result.json()["outputs"][0]["files"]], [self.data, self.meta_file])
        self.assertEqual(contents(self.output), before)

    def test_what_a_killed_job_leaves_is_done_again(self):
        whole, meta = self.data.read_bytes(), self.meta_file.read_bytes()
        end = meta.index(b'"carvello:sample_count"'), meta.index(b'"core:datatype"')
        unfinished = meta[:end[0]] + b" " * (end[1] - end[0]) + meta[end[1]:]
        for data, left in ((whole[:1000], meta), (whole[:1001], unfinished), (whole, unfinished), (b"", b""), (None, meta),
                           (b"", None)):
            for path, content in ((self.data, data), (self.meta_file, left)):
                path.unlink(missing_ok=True)
                if content is not None:
                    path.write_bytes(content)
            result = self.skip_existing()
            self.assertEqual(result.code, 0, (data and len(data), result.err))
            self.assertIn("not finished", result.err)
            self.assertEqual(self.data.read_bytes(), whole)
            self.assertEqual(self.meta_file.read_bytes(), meta)

    def test_what_is_no_such_output_is_left_alone(self):
        whole, meta = self.data.read_bytes(), self.meta_file.read_text()
        other = {"frequency": meta.replace("7100000", "7100001"), "start": meta.replace(f"{START}", f"{START + 1}"),
                 "rate": meta.replace('"core:sample_rate": 12000,', '"core:sample_rate": 12001,'),
                 "nobody's": '{"global": {"core:datatype": "ci16_le", "core:version": "1.2.5"}, "captures": [], '
                             '"annotations": []}', "broken": meta[:-5]}
        for what, text in other.items():
            self.meta_file.write_text(text)
            before = contents(self.output)
            result = self.skip_existing()
            self.assertEqual(result.code, 1, what)
            self.assertEqual(contents(self.output), before, what)
        self.meta_file.unlink()
        self.assertEqual(self.skip_existing().code, 1)
        self.assertEqual(self.data.read_bytes(), whole)

    def test_overwrite_replaces_both(self):
        self.data.write_bytes(b"x" * 10_000_000)
        self.meta_file.write_text("y" * 10_000)
        self.cut_sigmf(self.ENTRY, "--overwrite")
        self.assertEqual(self.meta(self.meta_file)["global"]["core:sha512"],
                         hashlib.sha512(self.data.read_bytes()).hexdigest())

    def test_old_parts_and_their_meta_files_go(self):
        entry = ("--sigmf-meta", "--entry", "f=7.1M,bw=12k")
        self.cut(self.source, *entry)
        for number in ("001.wav", "001.sigmf-meta", "002.sigmf-meta"):
            (self.output / f"{NAME} {number}").write_text("old")
        self.cut(self.source, *entry, "--overwrite")
        self.assertEqual(self.names(), [NAME + " 000.sigmf-meta", NAME + " 000.wav", NAME + ".sigmf-data",
                                        NAME + ".sigmf-meta"])


class TestKilledJob(SigMfTest):
    def test_leaves_a_pair_that_can_be_read_up_to_what_was_written(self):
        rate = 2_000_000
        source = self.folder / "long.wav"
        layout = Layout(rate, form="s8")
        header, trailer = layout.header(source, 300 * rate)
        with source.open("wb") as file:
            file.write(header)
            file.truncate(len(header) + 300 * rate * 2)
        process = start("cut", source, "--output", self.output, "--quiet", "--entry", "f=7.1M,bw=1M,bits=32,format=sigmf")
        try:
            data = None
            while process.poll() is None and (data is None or data.stat().st_size == 0):
                time.sleep(0.01)
                data = next(self.output.glob("*.sigmf-data"), None)
                for meta in self.output.glob("*.sigmf-meta"):
                    if meta.stat().st_size:
                        self.meta(meta, whole=False)
            self.assertIsNone(process.poll(), "the job ended before it could be killed")
        finally:
            process.kill()
            process.wait()
        value = self.meta(data.with_suffix(".sigmf-meta"), whole=False)
        self.assertNotIn("core:sha512", value["global"])
        self.assertEqual(value["global"]["core:sample_rate"], 1_000_000)
        self.assertGreater(data.stat().st_size, 0)


if __name__ == "__main__":
    unittest.main()

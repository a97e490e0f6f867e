"""SigMF recordings as input: meta files and archives laid out here, and what becomes of them."""
import hashlib
import io
import json
import subprocess
import tarfile
import unittest

import numpy as np

from makers import START, Layout, Tone, signal, write_recording
from program import EndToEndTest, contents, local, run, run_ok

RATE = 48_000
GLOBAL = {"core:datatype": "ci16_le", "core:version": "1.2.5", "core:sample_rate": RATE}
CAPTURE = {"core:sample_start": 0, "core:frequency": 7_100_000, "core:datetime": "2020-11-01T23:59:00.25Z"}


def text(global_values=None, captures=None, annotations=None, **more):
    return json.dumps({"global": {**GLOBAL, **(global_values or {})}, "captures": [CAPTURE] if captures is None else captures,
                       "annotations": annotations or [], **more})


def samples(count, first=0):
    """16-bit pairs, each frame unlike every other."""
    frames = np.arange(first, first + count)
    return np.stack([frames % 30_000, -(frames // 30_000) - 1], axis=1).astype("<i2").tobytes()


class SigMfInputTest(EndToEndTest):
    def write(self, name="rec", data=None, **meta):
        path = self.folder / f"{name}.sigmf-meta"
        path.write_text(text(**meta))
        path.with_suffix(".sigmf-data").write_bytes(samples(4 * RATE) if data is None else data)
        return path

    def refusal(self, path, *arguments):
        result = run("info", path, *arguments)
        self.assertEqual(result.code, 3, result.out)
        return result.err


class TestDescription(SigMfInputTest):
    def test_either_file_may_be_selected(self):
        meta = self.write()
        for path in (meta, meta.with_suffix(".sigmf-data")):
            info = self.info(path)
            self.assertEqual((info["sampleRate"], info["centreFrequency"], info["startUtc"], info["startMilliseconds"]),
                             (RATE, 7_100_000, START, 250))
            self.assertEqual((info["seconds"], info["bitsPerSample"], info["sampleFormat"]), (4, 16, "pcm"))
            self.assertEqual([local(file) for file in info["files"]], [meta.with_suffix(".sigmf-data")])

    def test_times_have_any_fraction_and_zone(self):
        for told, expected in (("2020-11-01T23:59:00Z", (START, 0)), ("2020-11-01T23:59:00.123456789012Z", (START, 123)),
                               ("2020-11-02T00:59:00.5+01:00", (START, 500)), ("20201101T235900", (START, 0))):
            info = self.info(self.write(captures=[{**CAPTURE, "core:datetime": told}]))
            self.assertEqual((info["startUtc"], info["startMilliseconds"]), expected, told)

    def test_samples_of_every_type_are_read(self):
        wave = (np.arange(-100, 100) / 128).astype("f8")
        pairs = np.repeat(wave, 2 * RATE // 100)
        for name, scale, kind in (("ci8", 128, "i1"), ("cu8", 128, "u1"), ("ci16_le", 32768, "<i2"), ("ci16_be", 32768, ">i2"),
                                  ("cu16_le", 32768, "<u2"), ("ci32_be", 2**31, ">i4"), ("cu32_le", 2**31, "<u4"),
                                  ("cf32_le", 1, "<f4"), ("cf32_be", 1, ">f4"), ("cf64_le", 1, "<f8"), ("cf64_be", 1, ">f8")):
            zero = (127.5 if name == "cu8" else scale) if "u" in name else 0
            raw = np.round(pairs * scale + zero) if "f" not in name else pairs
            meta = self.write(data=raw.astype(kind).tobytes(), global_values={"core:datatype": name})
            wav = self.cut_one(meta, f"f=7.1M,bw={RATE},size=RF64,bits=32", "--overwrite")
            body = wav.read_bytes()
            begin = body.index(b"data") + 8
            values = np.frombuffer(body[begin:begin + 4 * len(pairs)], "<f4") / 32768
            # Steps of the signal make the filter ring; in the middle of each the value is the one written.
            middle = np.arange(0, len(pairs), 2 * RATE // 100) + RATE // 100
            self.assertLess(float(np.abs(values[middle][2:-2] - pairs[middle][2:-2]).max()), 0.02, name)

    def test_annotations_and_unknown_values_are_told(self):
        info = self.info(self.write(global_values={"other:key": {"deep": [1, "two"]}, "core:author": "somebody"},
                                    annotations=[{"core:sample_start": 10, "core:sample_count": 5, "core:label": "beacon",
                                                  "core:freq_lower_edge": 7.09e6, "core:freq_upper_edge": 7.11e6}]))
        self.assertEqual(info["annotations"], [{"firstFrame": 10, "frames": 5, "lowerEdge": 7.09e6, "upperEdge": 7.11e6,
                                                "label": "beacon", "comment": ""}])
        self.assertEqual(info["metadata"]["core:author"], "somebody")
        self.assertEqual(info["metadata"]["other:key.deep.1"], "two")

    def test_wav_file_with_a_meta_file_beside_it(self):
        source = write_recording(self.folder / "x.wav", Layout(RATE), signal([Tone(1_000, 8000)], RATE, 0, 4 * RATE))
        raw = source.read_bytes()
        begin = raw.index(b"data") + 8
        source.write_bytes(raw + b"behind")
        trailing = len(raw) + 6 - begin - 4 * RATE * 4
        meta = self.folder / "x.sigmf-meta"
        meta.write_text(text({"core:dataset": "x.wav", "core:trailing_bytes": trailing},
                             [{**CAPTURE, "core:header_bytes": begin}]))
        info = self.info(meta)
        self.assertEqual((info["seconds"], info["totalBytes"]), (4, 4 * RATE * 4))
        through_meta = self.cut_one(meta, "f=7.1M,bw=12k,size=RF64")
        directly = self.cut_one(source, "f=7.1M,bw=12k,size=RF64", output=self.folder)
        bodies = [path.read_bytes() for path in (through_meta, directly)]
        self.assertEqual(*[body[body.index(b"data") + 8:][:12_000 * 4 * 4] for body in bodies])


class TestCaptures(SigMfInputTest):
    def test_lost_samples_are_silence_and_keep_the_time(self):
        meta = self.write(data=samples(RATE) + samples(RATE, RATE), captures=[
            {**CAPTURE, "core:global_index": 1000},
            {"core:sample_start": RATE, "core:frequency": 7_100_000, "core:global_index": 1000 + 3 * RATE}])
        result = run_ok("info", meta, "--json")
        self.assertIn(f"{2 * RATE} samples were lost", result.err)
        self.assertEqual(result.json()["seconds"], 4)
        self.assertEqual(result.json()["totalBytes"], 4 * RATE * 4)

    def test_indices_count_on_behind_captures_that_tell_none(self):
        meta = self.write(captures=[{**CAPTURE, "core:global_index": 0}, {"core:sample_start": RATE},
                                    {"core:sample_start": 2 * RATE, "core:global_index": 3 * RATE}])
        result = run_ok("info", meta, "--json")
        self.assertIn(f"{RATE} samples were lost", result.err)
        self.assertEqual(result.json()["seconds"], 5)

    def test_what_contradicts_the_timeline_begins_another_part(self):
        for second in ({"core:global_index": 10**18}, {"core:global_index": 2**63 - 1}, {"core:global_index": 0},
                       {"core:datetime": "2020-11-01T22:00:00Z"}, {"core:datetime": "2022-11-01T22:00:00Z"}):
            meta = self.write(captures=[{**CAPTURE, "core:global_index": 10**9} if "core:global_index" in second else CAPTURE,
                                        {"core:sample_start": RATE, "core:frequency": 7_100_000, **second}])
            first = run_ok("info", meta, "--json").json()
            self.assertEqual([part["seconds"] for part in first["parts"]], [1, 3], second)
            if "core:datetime" in second:
                self.assertEqual(run_ok("info", meta, "--json", "--part", "2").json()["startUtc"] % 3600, 0)
            else:
                self.assertIn("--start-time", self.refusal(meta, "--part", "2"))

    def test_captures_that_overlap_a_little_are_told_of(self):
        meta = self.write(captures=[{**CAPTURE, "core:global_index": 0}, {"core:sample_start": RATE, "core:global_index": RATE - 7}])
        result = run_ok("info", meta, "--json")
        self.assertIn("up to 7 samples come twice", result.err)
        self.assertEqual(result.json()["seconds"], 4)

    def test_samples_that_are_left_out_are_told_of(self):
        for meta, seconds, words in (
                ({"captures": [{**CAPTURE, "core:sample_start": RATE}]}, 3, f"{RATE} samples in front of its first capture"),
                ({"captures": [CAPTURE, {"core:sample_start": RATE, "core:header_bytes": 10**18}]}, 1, "1 captures lie behind"),
                ({"captures": [CAPTURE, {"core:sample_start": 5 * RATE}, {"core:sample_start": 6 * RATE}]}, 4,
                 "2 captures lie behind"),
                ({"data": samples(RATE) + b"abc"}, 1, "3 bytes at its end are no whole frame"),
                ({"global_values": {"carvello:sample_count": 5 * RATE}}, 4, f"{5 * RATE} samples were written, {4 * RATE} are")):
            result = run_ok("info", self.write(**meta), "--json")
            self.assertEqual(result.json()["seconds"], seconds, meta)
            self.assertIn(words, result.err)
        self.assertEqual(run_ok("info", self.write(captures=[CAPTURE, {"core:sample_start": 4 * RATE}])).err, "")

    def test_other_frequency_is_another_part(self):
        meta = self.write(captures=[CAPTURE, {"core:sample_start": RATE, "core:frequency": 14_100_000,
                                              "core:datetime": "2020-11-02T01:00:00Z"}])
        result = run_ok("info", meta, "--json")
        self.assertIn("--part", result.err)
        first = result.json()
        self.assertEqual([(part["centreFrequency"], part["seconds"]) for part in first["parts"]],
                         [(7_100_000, 1), (14_100_000, 3)])
        self.assertEqual((first["part"], first["centreFrequency"], first["seconds"]), (1, 7_100_000, 1))
        second = run_ok("info", meta, "--json", "--part", "2").json()
        self.assertEqual((second["part"], second["centreFrequency"], second["seconds"], second["startUtc"]),
                         (2, 14_100_000, 3, START + 3660))
        self.assertIn("--part 1 to 2", self.refusal(meta, "--part", "3"))
        outputs = self.cut(meta, "--part", "2", "--entry", "f=14.1M,bw=10k")
        self.assertEqual(outputs[0]["frames"], 30_000)

    def test_header_bytes_offset_and_trailing_bytes(self):
        data = b"head" + samples(RATE) + b"mid!" + samples(RATE, RATE) + b"end"
        meta = self.write(data=data, global_values={"core:offset": 500, "core:trailing_bytes": 3}, captures=[
            {**CAPTURE, "core:sample_start": 500, "core:header_bytes": 4},
            {"core:sample_start": 500 + RATE, "core:frequency": 7_100_000, "core:header_bytes": 4}])
        self.assertEqual(self.info(meta)["totalBytes"], 2 * RATE * 4)
        plain = self.write("plain", data=samples(2 * RATE))
        bodies = []
        for path in (meta, plain):
            body = self.cut_one(path, "f=7.1M,bw=48k,size=RF64", "--overwrite").read_bytes()
            bodies.append(body[body.index(b"data") + 8:][:2 * RATE * 4])
        self.assertEqual(*bodies)

    def test_captures_behind_the_end_are_ignored(self):
        meta = self.write(captures=[CAPTURE, {"core:sample_start": 10**15, "core:frequency": 1}])
        self.assertEqual(len(self.info(meta)["parts"]), 1)

    def test_none_stands_for_one(self):
        meta = self.write(captures=[])
        error = self.refusal(meta)
        self.assertIn("--centre", error)
        self.assertIn("--start-time", error)
        info = run_ok("info", meta, "--json", "--centre", "7M", "--start-time", "2020-11-01T23:59:00.5Z").json()
        self.assertEqual((info["centreFrequency"], info["startUtc"], info["startMilliseconds"]), (7_000_000, START, 500))


class TestGivenFacts(SigMfInputTest):
    def test_given_rate_counts_times_and_lost_samples(self):
        captures = [CAPTURE, {"core:sample_start": RATE, "core:datetime": "2020-11-01T23:59:01.25Z"}]
        for rate in ({"core:sample_rate": 2 * RATE}, {"core:sample_rate": 0}):
            result = run_ok("info", self.write(global_values=rate, captures=captures), "--json", "--rate", RATE)
            info = result.json()
            self.assertEqual((info["startUtc"], info["startMilliseconds"], info["seconds"]), (START, 250, 4), rate)
            self.assertEqual(result.err, "")

    def test_zone_moves_the_start(self):
        self.assertEqual(run_ok("info", self.write(), "--json", "--time-zone", "+01:00").json()["startUtc"], START - 3600)

    def test_times_that_no_output_can_tell_are_refused_until_one_is_given(self):
        for told in ("0001-01-01T00:00:00Z", "1969-12-31T23:59:59.5Z", "2107-01-01T00:00:00Z", "9999-12-31T23:59:59Z"):
            meta = self.write(captures=[{**CAPTURE, "core:datetime": told}])
            self.assertIn("--start-time", self.refusal(meta))
            run_ok("info", meta, "--start-time", "2020-11-01T23:59:00Z")

    def test_full_scale_stays_when_the_same_type_is_given(self):
        meta = self.write(data=np.full(2 * RATE, 2**22, "<i4").tobytes(),
                          global_values={"core:datatype": "ci32_le", "sdrangel:rx_bits": 24})
        bodies = [self.cut_one(meta, f"f=7.1M,bw={RATE},size=RF64", "--overwrite", *more).read_bytes()
                  for more in ((), ("--sample-type", "ci32"))]
        self.assertEqual(*[body[body.index(b"data") + 8:][:4 * RATE] for body in bodies])

    def test_dataset_without_meta_file_is_what_is_given(self):
        meta = self.write()
        meta.unlink()
        data = meta.with_suffix(".sigmf-data")
        for option in ("--sample-type", "--rate", "--centre", "--start-time"):
            self.assertIn(option, self.refusal(data))
        info = run_ok("info", data, "--json", "--sample-type", "ci16", "--rate", RATE, "--centre", "7M",
                      "--start-time", "2020-11-01T23:59:00Z").json()
        self.assertEqual((info["seconds"], info["startUtc"]), (4, START))

    def test_part_of_a_recording_without_parts(self):
        source = write_recording(self.folder / "x.wav", Layout(RATE), signal([Tone(1_000, 8000)], RATE, 0, RATE))
        run_ok("info", source, "--part", "1")
        self.assertIn("no part 2", self.refusal(source, "--part", "2"))

    def test_other_frequencies_of_a_list_that_are_none(self):
        meta = self.write(captures=[CAPTURE, {"core:sample_start": RATE, "core:frequency": 1e300}])
        self.assertEqual([part["centreFrequency"] for part in self.info(meta)["parts"]], [7_100_000, 0])


class TestArchives(SigMfInputTest):
    def archive(self, members, format=tarfile.PAX_FORMAT):
        path = self.folder / "all.sigmf"
        with tarfile.open(path, "w", format=format) as tar:
            for name, content in members:
                info = tarfile.TarInfo(name)
                info.size = len(content)
                tar.addfile(info, io.BytesIO(content))
        return path

    def test_files_of_any_folder_and_length_of_name(self):
        data = samples(2 * RATE)
        for name in ("rec", "rec/rec", "a/" + "long" * 60 + "/rec", "täst/rec"):
            for format in (tarfile.PAX_FORMAT, tarfile.GNU_FORMAT):
                path = self.archive([("readme.txt", b"x"), (name + ".sigmf-meta", text().encode()),
                                     (name + ".sigmf-data", data)], format)
                self.assertEqual(self.info(path)["totalBytes"], len(data), name)
                body = self.cut_one(path, "f=7.1M,bw=48k,size=RF64", "--overwrite").read_bytes()
                archived = body[body.index(b"data") + 8:][:len(data)]
        body = self.cut_one(self.write(data=data), "f=7.1M,bw=48k,size=RF64", "--overwrite").read_bytes()
        self.assertEqual(archived, body[body.index(b"data") + 8:][:len(data)])

    def test_several_recordings_are_parts(self):
        path = self.archive([(f"{name}.sigmf-{kind}", content) for name in "ab"
                             for kind, content in (("meta", text().encode()), ("data", samples(RATE)))])
        self.assertEqual([part["name"] for part in self.info(path)["parts"]], ["a.sigmf-meta", "b.sigmf-meta"])

    def test_endings_in_upper_case(self):
        meta = self.write()
        for path in (meta, meta.with_suffix(".sigmf-data")):
            path.rename(self.folder / path.name.upper())
        for name in ("REC.SIGMF-META", "REC.SIGMF-DATA"):
            self.assertEqual(self.info(self.folder / name)["seconds"], 4)
        path = self.archive([("A.SIGMF-META", text().encode()), ("A.SIGMF-DATA", samples(RATE))])
        self.assertEqual(self.info(path)["seconds"], 1)

    def test_archive_that_was_cut_short(self):
        path = self.archive([("a.sigmf-meta", text().encode()), ("a.sigmf-data", samples(2 * RATE))])
        content = path.read_bytes()
        path.write_bytes(content[:content.index(samples(2 * RATE)) + 4 * RATE])
        result = run_ok("info", path, "--json")
        self.assertEqual(result.json()["seconds"], 1)
        self.assertIn(f"{4 * RATE} bytes of its samples are missing", result.err)

    def test_files_without_their_holes_are_refused(self):
        data = bytes(2**20) + samples(RATE) + bytes(2**20)
        for kind in ("--format=gnu", "--format=posix --sparse-version=0.0", "--format=posix --sparse-version=0.1",
                     "--format=posix --sparse-version=1.0"):
            self.write()
            with open(self.folder / "rec.sigmf-data", "wb") as file:
                for at in range(0, len(data), 4096):
                    file.seek(at)
                    if any(data[at:at + 4096]):
                        file.write(data[at:at + 4096])
                file.truncate(len(data))
            path = self.folder / "rec.sigmf"
            subprocess.run(["tar", "--sparse", *kind.split(), "-cf", path, "rec.sigmf-meta", "rec.sigmf-data"], check=True,
                           cwd=self.folder)
            self.assertLess(path.stat().st_size, len(data))
            self.assertIn("empty stretches", self.refusal(path), kind)

    def test_what_is_no_archive_is_refused(self):
        path = self.folder / "x.sigmf"
        for content, words in ((b"", "empty"), (b"\x1f\x8b" + bytes(1000), "not compressed"), (bytes(1024), "no files")):
            path.write_bytes(content)
            self.assertIn(words, self.refusal(path))
        self.assertIn("no meta file", self.refusal(self.archive([("readme.txt", b"x")])))
        self.assertIn("not in the archive", self.refusal(self.archive([("a.sigmf-meta", text().encode())])))

    def test_collections_are_sets_of_recordings(self):
        for name in "ab":
            self.write(name)
        hashes = [hashlib.sha512((self.folder / f"{name}.sigmf-meta").read_bytes()).hexdigest() for name in "ab"]
        path = self.folder / "all.sigmf-collection"
        for streams in ([["a", hashes[0]], ["b", hashes[1]]],
                        [{"name": "a", "hash": hashes[0]}, {"name": "b", "hash": hashes[1]}]):
            path.write_text(json.dumps({"collection": {"core:version": "1.2.5", "core:streams": streams}}))
            result = run_ok("info", path, "--json")
            self.assertEqual([part["name"] for part in result.json()["parts"]], ["a.sigmf-meta", "b.sigmf-meta"])
            self.assertNotIn("not as it was", result.err)
        (self.folder / "b.sigmf-meta").write_text(text({"core:author": "x"}))
        self.assertIn("not as it was", run_ok("info", path).err)


class TestRefusals(SigMfInputTest):
    def test_each_is_told_by_name(self):
        for meta, words in (({"global_values": {"core:datatype": "rf32_le"}}, "real"),
                            ({"global_values": {"core:datatype": "ci12_le"}}, "ci12_le"),
                            ({"global_values": {"core:num_channels": 2}}, "2 channels"),
                            ({"global_values": {"core:metadata_only": True}}, "core:metadata_only"),
                            ({"global_values": {"core:dataset": "../x"}}, "core:dataset"),
                            ({"global_values": {"core:dataset": "gone.wav"}}, "gone.wav"),
                            ({"global_values": {"core:sample_rate": "fast"}}, "core:sample_rate"),
                            ({"global_values": {"core:sample_rate": 0}}, "--rate"),
                            ({"global_values": {"core:extensions": [{"name": "secret", "version": "1.0.0",
                                                                      "optional": False}]}}, '"secret"'),
                            ({"captures": [{**CAPTURE, "core:sample_start": -1}]}, "core:sample_start"),
                            ({"data": b""}, "no samples")):
            self.assertIn(words, self.refusal(self.write(**meta)), meta)

    def test_what_is_no_meta_file(self):
        meta = self.write()
        for content, words in (("", "no JSON"), ("{", "no JSON"), ("[]", "no JSON object"), ("7", "no JSON object"),
                               ('{"captures": []}', "global"), ('{"global": {}}', "core:datatype"),
                               ('{"global": 7}', "global"), ("[" * 100_000, "no JSON object"),
                               ('{"a": ' * 1000, "nested")):
            meta.write_text(content)
            self.assertIn(words, self.refusal(meta), content[:40])
        meta.unlink()
        self.assertIn("rec.sigmf-meta", self.refusal(meta.with_suffix(".sigmf-data")))

    def test_optional_extensions_do_not_matter(self):
        self.info(self.write(global_values={"core:extensions": [{"name": "secret", "version": "1.0.0", "optional": True}]}))


class TestInputsThatOutputsWouldReplace(SigMfInputTest):
    def test_files_that_describe_the_input_are_kept(self):
        meta = self.write()
        outputs = self.cut(meta, "--entry", "f=7.1M,bw=10k,size=RF64", "--sigmf-meta", "--collection", "all")
        inputs = [local(outputs[0]["files"][1]), self.output / "all.sigmf-collection"]
        before = contents(self.output)
        again = ("--output", self.output, "--format", "sigmf", "--overwrite")
        self.assertEqual(run("cut", inputs[0], *again, "--entry", "f=7.1M,bw=10k").code, 2)
        self.assertEqual(run("cut", inputs[1], *again, "--entry", "f=7.1M,bw=5k", "--collection", "all").code, 2)
        self.assertEqual(contents(self.output), before)


class TestMetaFilesOfOthers(SigMfInputTest):
    def test_those_of_other_recordings_are_not_replaced(self):
        meta = self.write()
        kinds = (("--format", "sigmf"), ("--sigmf-meta",))
        for first, second in (kinds, kinds[::-1]):
            for path in self.output.iterdir():
                path.unlink()
            self.cut(meta, *first, "--entry", "f=7.1M,bw=10k,size=RF64")
            before = contents(self.output)
            result = run("cut", meta, "--output", self.output, *second, "--entry", "f=7.1M,bw=10k,size=RF64",
                         "--skip-existing")
            self.assertEqual(result.code, 1, result.err)
            self.assertEqual(contents(self.output), before)
        wav = self.cut_one(meta, "f=7.1M,bw=12k,size=RF64")
        foreign = wav.with_suffix(".sigmf-meta")
        foreign.write_text(text({"core:dataset": wav.name}))
        before = contents(self.output)
        result = run("cut", meta, "--output", self.output, "--sigmf-meta", "--entry", "f=7.1M,bw=12k,size=RF64", "--skip-existing")
        self.assertEqual(result.code, 1, result.err)
        self.assertEqual(contents(self.output), before)


class TestLevels(SigMfInputTest):
    def test_meta_files_beside_wav_files_lead_to_the_same_levels(self):
        tone = 8000 * np.exp(2j * np.pi * 1000 * np.arange(2 * RATE) / RATE)
        meta = self.write(data=np.stack([tone.real, tone.imag], axis=1).round().astype("<i2").tobytes())
        for bits in (16, 32):
            outputs = self.cut(meta, "--entry", f"f=7.1M,bw=12k,size=RF64,bits={bits}", "--sigmf-meta", "--overwrite")
            levels = []
            for path in outputs[0]["files"]:
                again = self.cut_one(local(path), "f=7.1M,bw=12k,size=RF64", "--overwrite", output=self.folder)
                body = again.read_bytes()
                begin = body.index(b"data") + 8
                levels.append(int(np.frombuffer(body[begin + 40_000:begin + 80_000], "<i2").max()))
            self.assertEqual(levels, [8000, 8000], bits)


class TestVerify(SigMfInputTest):
    def test_hash_is_checked(self):
        data = samples(RATE)
        right = hashlib.sha512(data).hexdigest()
        for told, code, verified in ((right, 0, "right"), (right.upper(), 0, "right"), ("0" * 128, 3, "wrong"),
                                     (None, 0, "no hash")):
            meta = self.write(data=data, global_values={"core:sha512": told} if told else {})
            result = run("info", meta, "--json", "--verify")
            self.assertEqual((result.code, json.loads(result.out)["verified"]), (code, verified))
        self.assertNotIn("verified", self.info(meta))


class TestRoundTrip(SigMfInputTest):
    def test_wav_to_sigmf_to_wav_keeps_samples_start_and_frequency(self):
        noise = np.random.default_rng(1).normal(scale=3000, size=(6 * RATE, 2)).round().clip(-32768, 32767)
        for form, bits in (("s16", "16"), ("s16", "32"), ("s24", "32"), ("s32", "16"), ("f32", "16"), ("f32", "32")):
            source = write_recording(self.folder / f"in {form}.wav", Layout(RATE, form=form), noise[:, 0] + 1j * noise[:, 1])
            sigmf = self.cut(source, "--format", "sigmf", "--entry", f"f=7.1M,bw=48k,start=+1,bits={bits}", "--overwrite")
            meta = local(sigmf[0]["files"][1])
            info = self.info(meta)
            self.assertEqual((info["startUtc"], info["centreFrequency"], info["sampleRate"]), (START + 1, 7_100_000, RATE))
            self.assertEqual(info["unfinishedFiles"], [])
            self.assertEqual(run("info", meta, "--verify").code, 0)
            back = self.cut_one(meta, f"f=7.1M,bw=48k,size=RF64,bits={bits}", output=self.folder)
            direct = self.cut_one(source, f"f=7.1M,bw=48k,start=+1,size=RF64,bits={bits}")
            bodies = [path.read_bytes() for path in (back, direct)]
            bodies = [body[body.index(b"data") + 8:][:5 * RATE * 4 * int(bits) // 16] for body in bodies]
            self.assertEqual(*bodies)
            for path in (back, direct):
                path.unlink()


if __name__ == "__main__":
    unittest.main()

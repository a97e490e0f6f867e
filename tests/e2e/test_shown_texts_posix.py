"""Nothing that a terminal or a log would obey gets out, wherever it comes from: names of files and folders, metadata,
job files, options."""
import json
import unicodedata
import unittest
from pathlib import Path

import numpy as np

import foreign_makers as foreign
from makers import Layout, chunk, info_chunk, write_recording
from program import EndToEndTest, run

RATE = 8_000
START = (2023, 4, 15, 19, 45, 10)
# Controls of both ranges, a line that pretends to be the program's own, other directions, separators, a byte order mark,
# a tag.
OBEYED = "\x1b[2J\r\n\tINJECTED\x07\x7f\x85\x9b31m\u202e\u2066\u200f\u061c\u2028\u2029\ufeff\U000e0041"
NAME = "evil" + OBEYED + "\udcff\udcc3"  # and two bytes that are no UTF-8
JOINERS = "\u200c\u200d"  # which scripts need


class TestShownTexts(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.evil = self.folder / NAME
        self.evil.mkdir()
        self.seen = ""

    def look(self, *arguments, code):
        """Runs the program and judges every character of what it says, with the tables of Python's own."""
        result = run(*arguments)  # which takes nothing but UTF-8
        self.assertEqual(result.code, code, result.err)
        for stream in (result.out, result.err):
            for character in stream:
                obeyed = unicodedata.category(character) in ("Cc", "Cf", "Zl", "Zp", "Cs", "Co")
                self.assertFalse(obeyed and character not in "\n" + JOINERS, f"{ascii(character)} in {ascii(stream)}")
            self.assertFalse([line for line in stream.split("\n") if line.strip().startswith("INJECTED")], stream)
        self.seen = result.out + result.err
        return result

    def told(self, *arguments, code):
        """The same, of which the text that is to be escaped must be a part."""
        result = self.look(*arguments, code=code)
        self.assertIn("INJECTED", self.seen)
        self.assertIn("\\x1B[2J", self.seen)
        return result

    def recording(self, path, **layout):
        """One that needs no name of its own in its metadata."""
        layout.setdefault("metadata", False)
        layout.setdefault("chunks", [foreign.auxi(164, START, START[:5] + (15,), 7_100_000)])
        return write_recording(path, Layout(RATE, **layout), np.zeros(5 * RATE))

    # ---- names -------------------------------------------------------------------------------------------------------

    def test_names_of_inputs(self):
        source = self.recording(self.evil / (NAME + ".wav"), info={"INAM": OBEYED, "ICMT": "a" + OBEYED})
        (self.evil / (NAME + " 2.wav")).write_bytes(b"")  # a neighbour that is worth a warning
        self.told("info", source, code=0)
        answer = self.told("chunks", source, code=0)
        self.assertIn("data", answer.out)
        text = self.look("info", "--json", source, code=0).json()
        self.assertEqual(text["infoTexts"]["ICMT"], "a" + OBEYED.rstrip())
        self.assertIn("INJECTED", text["files"][0])

    def test_names_of_what_is_no_input(self):
        for path, content in (("none", None), ("empty", b""), ("short", b"RIFF"), ("text", b"nothing" * 100)):
            source = self.evil / (path + NAME + ".wav")
            if content is not None:
                source.write_bytes(content)
            for command in ("info", "chunks"):
                self.told(command, source, code=3)
            self.told("cut", source, "--output", self.output, "--entry", "f=7.1M,bw=1k", code=3)
        self.told("info", self.evil, code=3)

    def test_names_of_outputs(self):
        source = self.recording(self.evil / (NAME + ".wav"))
        entries = ("--entry", "f=7.1M,bw=1k", "--entry", "f=7.101M,bw=1k,size=RF64")
        self.told("cut", source, "--output", self.evil, *entries, "--verbose", code=0)
        self.told("cut", source, "--output", self.evil, *entries, code=4)
        self.look("cut", source, "--output", self.evil, *entries, "--skip-existing", "--verbose", code=0)
        answer = self.look("cut", source, "--output", self.evil, *entries, "--overwrite", "--json", code=0)
        self.assertIn("INJECTED", json.loads(answer.out)["outputs"][0]["file"])
        self.told("cut", source, "--output", self.evil / ("none" + NAME), *entries, code=1)
        self.look("cut", source, "--output", self.evil / ("none" + NAME), *entries, "--json", code=1)

    def test_names_that_synth_makes(self):
        out = self.evil / (NAME + ".wav")
        arguments = ("synth", out, "--seconds", "1", "--rate", "1000", "--files", "2")
        self.told(*arguments, code=0)
        self.told(*arguments, code=4)
        self.told("synth", self.evil / NAME, "--files", "2", code=2)
        self.told("synth", self.evil / "none" / "a.wav", "--seconds", "1", "--rate", "1000", code=1)

    # ---- metadata ----------------------------------------------------------------------------------------------------

    def test_texts_of_the_metadata(self):
        source = self.recording(self.folder / "xml.wav", metadata=True, chunks=[], info={"IART": OBEYED},
                                attributes={"RadioModel": OBEYED, "SoftwareName": "x" + OBEYED, "SizeInBytes": "-1" + OBEYED})
        self.told("info", source, code=0)
        answer = self.look("info", "--json", source, code=0).json()
        self.assertEqual(answer["metadata"]["RadioModel"], OBEYED)
        self.told("chunks", source, code=0)
        self.told("cut", source, "--output", self.output, "--entry", "f=7.1M,bw=1k", "--verbose", code=0)

    def test_metadata_that_cannot_be_used(self):
        for attributes in ({"UTCSeconds": OBEYED}, {"FirstFile": OBEYED + ".wav"}, {"SampleRate": OBEYED}):
            source = self.recording(self.folder / "bad.wav", metadata=True, chunks=[], attributes=attributes)
            result = run("info", source)
            self.look("info", source, code=result.code)
            self.look("info", "--json", source, code=result.code)

    def test_names_of_chunks(self):
        chunks = [chunk(b"\x1b[2J", b"x" * 4), chunk(b"\n\x9b\xe2\x80", b""), chunk(b"LIST", b"\x1b[2J")]
        source = self.recording(self.folder / "chunks.wav", chunks=[*chunks, info_chunk({"\x1b[2J": "INJECTED"})])
        self.look("chunks", source, code=0)
        self.assertIn("\\x1B[2J", self.seen)

    # ---- job files and options ---------------------------------------------------------------------------------------

    def test_texts_of_job_files(self):
        jobs = self.evil / (NAME + ".json")
        source = str(self.recording(self.folder / "in.wav"))
        entry = {"frequency": 7_100_000, "bandwidth": 1_000}
        told = OBEYED + "\0"
        for job, code in (({told: 1}, 2), ({"input": told, "output": "."}, 2), ({"entries": [{told: 1}]}, 2),
                          ({"entries": [{**entry, "size": told}]}, 2), ({"entries": [{**entry, told: True}]}, 2),
                          ({"input": OBEYED, "output": ".", "entries": [entry]}, 3),
                          ({"input": source, "output": OBEYED, "entries": [entry]}, 1),
                          ({"input": source, "output": ".", "entries": [{**entry, "bandwidth": 5}]}, 2),
                          ({"input": source, "output": ".", "entries": [{**entry, "start": 99}]}, 2)):
            jobs.write_text(json.dumps(job))
            self.told("cut", "--jobs", jobs, code=code)
        for text in ("{" + OBEYED, '{"input": "' + OBEYED + '"}', "{\"input\": \"\\q" + OBEYED + "\"}"):
            jobs.write_text(text)
            self.told("cut", "--jobs", jobs, code=2)
        jobs.write_bytes(b"{\"\xff\x1b\"")
        self.told("cut", "--jobs", jobs, code=2)
        self.told("cut", "--jobs", self.evil / ("none" + NAME), code=2)

    def test_values_of_options(self):
        source = self.recording(self.folder / "in.wav")
        cut = ("cut", source, "--output", self.output)
        self.told(NAME, code=2)
        self.told("--" + NAME, code=2)
        self.told("info", source, NAME, code=2)
        self.told(*cut, "--" + NAME, code=2)
        self.told(*cut, "--entry", "f=7.1M,bw=1k", "extra" + NAME, code=2)
        self.told(*cut, "--quiet=" + NAME, code=2)
        for entry in (NAME, "f=" + NAME, "f=7.1M,bw=1k," + NAME + "=1", "f=7.1M,bw=" + NAME):
            self.told(*cut, "--entry", entry, code=2)
        for option in ("--bw", "--bits", "--size", "--start", "--end", "--duration"):
            others = () if option == "--bw" else ("--bw", "1k")
            self.told(*cut, "--sequence", "7.1M:7.2M:10k", *others, option, NAME, code=2)
            self.told(*cut, "--entry", "f=7.1M,bw=1k", option, NAME, code=2)
        self.told(*cut, "--sequence", NAME, "--bw", "1k", code=2)
        for option in ("--rate", "--centre", "--seconds", "--bits", "--files", "--start", "--station", "--noise", "--seed"):
            self.told("synth", self.folder / "made.wav", option, NAME, code=2)
        self.assertFalse(Path(self.folder / "made.wav").exists())


if __name__ == "__main__":
    unittest.main()

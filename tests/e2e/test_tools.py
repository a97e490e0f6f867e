"""sox and libsndfile open every kind of output and count the frames that Carvello counts."""
import json
import re
import shutil
import subprocess
import unittest

import numpy as np

from makers import Layout, Tone, signal, write_recording
from program import EndToEndTest, local, run_ok
from wavtools import WaveFile

RATE = 48_000
KINDS = {8_000: "bits=16", 12_000: "bits=32", 16_000: "bits=16,size=RF64", 24_000: "bits=32,size=RF64",
         6_000: "bits=16,size=1GB"}


def tool(*arguments):
    program = shutil.which(arguments[0])
    if program is None:
        raise AssertionError(f"{arguments[0]} is not installed; Debian's packages are sox and sndfile-programs")
    done = subprocess.run([program, *map(str, arguments[1:])], capture_output=True, timeout=120)
    text = (done.stdout + done.stderr).decode(errors="replace")
    assert done.returncode == 0, f"{arguments}: {text}"
    return text


class TestOtherPrograms(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        source = write_recording(cls.shared / "in.wav", Layout(RATE), signal([Tone(500, 9000)], RATE, 0, 3 * RATE))
        out = cls.shared / "out"
        out.mkdir()
        entries = [f"f=7.1M,bw={bandwidth},{rest}" for bandwidth, rest in KINDS.items()]
        arguments = [argument for entry in entries for argument in ("--entry", entry)]
        outputs = run_ok("cut", source, "--output", out, "--json", *arguments).json()["outputs"]
        assert len(outputs) == len(KINDS)
        cls.outputs = [(local(output["files"][0]), output) for output in outputs]

    def test_soxi_counts_the_same_frames(self):
        for path, output in self.outputs:
            with self.subTest(path=path.name):
                self.assertEqual(int(tool("soxi", "-s", path)), output["frames"])
                self.assertEqual(int(tool("soxi", "-r", path)), output["bandwidth"])
                self.assertEqual(int(tool("soxi", "-c", path)), 2)
                self.assertEqual(int(tool("soxi", "-b", path)), output["bits"])

    def test_sndfile_info_counts_the_same_frames(self):
        for path, output in self.outputs:
            with self.subTest(path=path.name):
                text = tool("sndfile-info", path)
                counted = int(re.search(r"(?m)^Frames\s*:\s*(\d+)", text)[1])
                if WaveFile(path).form == b"RF64":
                    # The ds64 chunk holds single I and Q values by design, and some releases believe it.
                    self.assertIn(counted, (output["frames"], 2 * output["frames"]))
                else:
                    self.assertEqual(counted, output["frames"])
                self.assertEqual(int(re.search(r"Sample Rate\s*:\s*(\d+)", text)[1]), output["bandwidth"])
                self.assertEqual(int(re.search(r"Channels\s*:\s*(\d+)", text)[1]), 2)

    def test_sox_reads_every_sample(self):
        for path, output in self.outputs:
            with self.subTest(path=path.name):
                text = tool("sox", "-D", path, "-n", "stat")
                self.assertEqual(int(re.search(r"Samples read:\s*(\d+)", text)[1]), 2 * output["frames"])
                if output["bits"] == 32:
                    continue  # sox clips floats beyond 1.0, and Carvello's full scale is 32768
                raw = self.folder / "samples.raw"
                tool("sox", "-D", path, "-t", "raw", "-e", "signed-integer", "-b", "16", raw)
                self.assertEqual(raw.read_bytes(), WaveFile(path).data().tobytes())

    def test_sox_reads_sigmf_samples_as_their_meta_file_tells(self):
        source = write_recording(self.folder / "in.wav", Layout(RATE), signal([Tone(500, 9000)], RATE, 0, 3 * RATE))
        for bits, entry in ((16, "f=7.1M,bw=8k"), (32, "f=7.1M,bw=12k,bits=32")):
            with self.subTest(bits=bits):
                output, = self.cut(source, "--entry", entry, "--format", "sigmf")
                data, meta = (local(path) for path in output["files"])
                told = json.loads(meta.read_text())["global"]
                kind = re.fullmatch(r"c([if])(\d+)_le", told["core:datatype"])
                encoding = {"i": "signed-integer", "f": "floating-point"}[kind[1]]
                wav = self.folder / "by sox.wav"
                tool("sox", "-D", "-t", "raw", "-L", "-e", encoding, "-b", kind[2], "-c", "2", "-r",
                     told["core:sample_rate"], data, wav)
                self.assertEqual(int(tool("soxi", "-s", wav)), output["frames"])
                direct = WaveFile(self.cut_one(source, entry)).samples()
                scale = 1 if bits == 16 else 32768
                self.assertLess(np.abs(WaveFile(wav).samples() * scale - direct).max(), 0.01)

    def test_libsndfile_reads_every_sample(self):
        for path, output in self.outputs:
            with self.subTest(path=path.name):
                copy = self.folder / "copy.wav"
                tool("sndfile-convert", path, copy)
                written, read = WaveFile(path).samples(), WaveFile(copy).samples()
                if output["bits"] == 32:
                    # It scales floats beyond 1.0 down to 1.0.
                    read = read * max(np.abs(written.real).max(), np.abs(written.imag).max())
                self.assertGreaterEqual(len(read), len(written))
                self.assertLess(np.abs(read[:len(written)] - written).max(), 0.01)


if __name__ == "__main__":
    unittest.main()

"""A disk that takes no more: a limit on file sizes, and a small volume of its own."""
import os
import resource
import signal as signals
import subprocess
import unittest

from makers import Layout, write_sparse
from program import EndToEndTest, local, run
from wavtools import WaveFile

RATE = 1_000_000
SECONDS = 12
BUFFER = 16 << 20
BLOCK_SECONDS = 2_097_152 / RATE
WIDE = "f=7.1M,bw=1M,bits=32"  # 96 MB in the end
NARROW = "f=7.2M,bw=10k,bits=32"  # 1 MB


class FullDiskTest(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_sparse(cls.shared / "in.wav", Layout(RATE, form="s8"), SECONDS * RATE)

    def check(self, result, reason):
        """The wide output has failed and what was written of it can be read. Gives both outputs and the wide file."""
        self.assertEqual(result.code, 1, result.err)
        outputs = {output["bandwidth"]: output for output in result.json()["outputs"]}
        wide, narrow = outputs[1_000_000], outputs[10_000]
        self.assertIs(wide["ok"], False)
        self.assertIn(reason, wide["error"])
        self.assertIn("bw=1 MHz", result.err)
        self.assertIn(reason, result.err)

        path = local(wide["files"][0])
        info = self.info(path)
        file = WaveFile(path)
        self.assertEqual(info["dataBytes"], [file.data_bytes])
        self.assertGreater(file.data_bytes, BUFFER // 2)
        self.assertLessEqual(file.data_bytes, file.length - file.data_offset)
        self.assertEqual(wide["frames"], file.frames)
        self.assertEqual(wide["bytes"], file.data_bytes)
        return wide, narrow, file

    def check_whole(self, narrow):
        self.assertIs(narrow["ok"], True)
        file = WaveFile(local(narrow["files"][0]))
        file.check_complete()
        self.assertAlmostEqual(file.frames, SECONDS * 10_000, delta=64)


class TestFileSizeLimit(FullDiskTest):
    def cut_limited(self, *entries):
        def limit():
            signals.signal(signals.SIGXFSZ, signals.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (40_000_000, 40_000_000))

        arguments = [argument for entry in entries for argument in ("--entry", entry)]
        return run("cut", self.source, "--output", self.output, "--json", *arguments, preexec_fn=limit)

    def test_wav_output_fails_and_the_other_goes_on(self):
        _, narrow, file = self.check(self.cut_limited(WIDE, NARROW), os.strerror(27))
        self.check_whole(narrow)
        self.assertGreater(file.length, 40_000_000 - 8, "all frames that fit")

    def test_rf64_output_fails_and_the_other_goes_on(self):
        _, narrow, file = self.check(self.cut_limited(WIDE + ",size=RF64", NARROW), os.strerror(27))
        self.check_whole(narrow)
        self.assertGreater(file.length, 40_000_000 - 8, "all frames that fit")


class TestSmallVolume(FullDiskTest):
    """Needs the right to mount: runs in a mount namespace of its own, which takes the volume away in the end."""

    def setUp(self):
        super().setUp()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=40m", "tmpfs", self.output], check=True)

    def tearDown(self):
        subprocess.run(["umount", "-l", self.output], check=True)

    def check_volume(self, wide_entry):
        """A full volume has room for nobody: the wide output keeps what it got, the narrow one tells its own state."""
        result = run("cut", self.source, "--output", self.output, "--json", "--entry", wide_entry, "--entry", NARROW)
        wide, narrow, _ = self.check(result, os.strerror(28))
        self.assertGreater(wide["bytes"], 38_000_000, "all frames that fit")
        if narrow["ok"]:
            self.check_whole(narrow)
        else:
            self.assertIn(os.strerror(28), narrow["error"])
            if narrow["files"] and narrow["frames"]:
                self.assertEqual(self.info(local(narrow["files"][0]))["dataBytes"], [narrow["bytes"]])

    def test_wav_output_keeps_what_fits(self):
        self.check_volume(WIDE)

    def test_rf64_output_keeps_what_fits(self):
        self.check_volume(WIDE + ",size=RF64")


if __name__ == "__main__":
    unittest.main()

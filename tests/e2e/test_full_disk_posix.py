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
        """The wide output has failed, the narrow one is whole, and what was written can be read."""
        self.assertEqual(result.code, 1, result.err)
        outputs = {output["bandwidth"]: output for output in result.json()["outputs"]}
        wide, narrow = outputs[1_000_000], outputs[10_000]
        self.assertIs(wide["ok"], False)
        self.assertIn(reason, wide["error"])
        self.assertIn("bw=1 MHz", result.err)
        self.assertIn(reason, result.err)

        self.assertIs(narrow["ok"], True)
        file = WaveFile(local(narrow["files"][0]))
        file.check_complete()
        self.assertAlmostEqual(file.frames, SECONDS * 10_000, delta=64)

        path = local(wide["files"][0])
        info = self.info(path)
        file = WaveFile(path)
        self.assertEqual(info["dataBytes"], [file.data_bytes])
        self.assertGreater(file.data_bytes, BUFFER // 2)
        self.assertLessEqual(file.data_bytes, file.length - file.data_offset)
        self.assertEqual(wide["frames"], file.frames)
        self.assertEqual(wide["bytes"], file.data_bytes)


class TestFileSizeLimit(FullDiskTest):
    def cut_limited(self, *entries):
        def limit():
            signals.signal(signals.SIGXFSZ, signals.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (40_000_000, 40_000_000))

        arguments = [argument for entry in entries for argument in ("--entry", entry)]
        return run("cut", self.source, "--output", self.output, "--json", *arguments, preexec_fn=limit)

    def test_wav_output_fails_and_the_other_goes_on(self):
        self.check(self.cut_limited(WIDE, NARROW), os.strerror(27))

    def test_rf64_output_fails_and_the_other_goes_on(self):
        self.check(self.cut_limited(WIDE + ",size=RF64", NARROW), os.strerror(27))


class TestSmallVolume(FullDiskTest):
    """Needs the right to mount: runs in a mount namespace of its own, which takes the volume away in the end."""

    def setUp(self):
        super().setUp()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=40m", "tmpfs", self.output], check=True)

    def tearDown(self):
        subprocess.run(["umount", "-l", self.output], check=True)

    def test_wav_output_fails_and_the_other_goes_on(self):
        self.check(run("cut", self.source, "--output", self.output, "--json", "--entry", WIDE, "--entry", NARROW),
                   os.strerror(28))

    def test_rf64_output_fails_and_the_other_goes_on(self):
        self.check(run("cut", self.source, "--output", self.output, "--json", "--entry", WIDE + ",size=RF64",
                       "--entry", NARROW), os.strerror(28))


if __name__ == "__main__":
    unittest.main()

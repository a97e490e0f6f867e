"""How much memory a job takes at its peak. Not for builds with sanitizers, which take several times as much."""
import os
import subprocess
import unittest

from makers import Layout, write_sparse
from program import EndToEndTest, start

RATE = 2_000_000
ENTRIES = 8


class TestPeakMemory(EndToEndTest):
    def peak(self, seconds):
        """Peak resident bytes of a cut of eight entries over so many seconds at 8 MB a second."""
        source = write_sparse(self.folder / "in.wav", Layout(RATE), seconds * RATE)
        arguments = []
        for number in range(ENTRIES):
            arguments += ["--entry", f"f={6_400_000 + 200_000 * number},bw={100_000 * (1 + number % 2)},size=1GB"]
        process = start("cut", source, "--output", self.output, "--overwrite", *arguments, stdout=subprocess.DEVNULL,
                        stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(process.returncode, 0)
        self.assertEqual(len(list(self.output.iterdir())), ENTRIES)
        return 1024 * usage.ru_maxrss

    def test_eight_entries_over_a_gigabyte(self):
        half, whole = self.peak(63), self.peak(126)
        print(f"peak memory: {half / 1e6:.0f} MB over 0.5 GB, {whole / 1e6:.0f} MB over 1 GB of input")
        self.assertLess(whole, 1e9)
        self.assertLess(whole, 1.1 * half)


if __name__ == "__main__":
    unittest.main()

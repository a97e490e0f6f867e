"""The program in every size of address space, from one that it cannot be loaded in to one that is enough: it ends with
an exit code of its own and a message. (tests/faults does the same with jobs.)"""
import json
import resource
import subprocess
import unittest

import numpy as np

from makers import Layout, write_recording
from program import SLOW, EndToEndTest, command, environment

PAGE = 4096
NOT_LOADED = 127  # the loader's exit code, with its own message
ENOUGH = 60 << 20


@unittest.skipIf(SLOW, "sanitizers take whole terabytes of address space")
class TestLittleMemory(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = write_recording(self.folder / "in.wav", Layout(8_000, info={"INAM": "name"}), np.zeros(8_000))
        self.jobs = self.folder / "jobs.json"
        entries = [{"frequency": 7_100_000 + number, "bandwidth": 1_000} for number in range(20_000)]
        self.jobs.write_text(json.dumps({"input": "none", "output": ".", "entries": entries}))

    def end(self, arguments, size):
        """The exit code within so many bytes. A signal, a hang and an end without a word are failures."""
        done = subprocess.run(command(*arguments), env=environment(), capture_output=True, timeout=120,
                              preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (size, size)))
        self.assertIn(done.returncode, (0, 1, 2, 3, NOT_LOADED), f"{arguments} in {size}: {done.stderr}")
        self.assertTrue(done.returncode == 0 or done.stderr, f"{arguments} in {size}")
        return done.returncode

    def smallest(self):
        """The size, to a page, in which the program is loaded."""
        low, high = 1 << 20, ENOUGH
        while high - low > PAGE:
            middle = (low + high) // 2 // PAGE * PAGE
            if self.end(["--version"], middle) == NOT_LOADED:
                low = middle
            else:
                high = middle
        return high

    def test_start_page_by_page(self):
        first = self.smallest()
        codes = {self.end(["info", self.source], first + pages * PAGE) for pages in range(-8, 64)}
        self.assertEqual(codes, {NOT_LOADED, 1})
        self.assertEqual(self.end(["info", self.source], ENOUGH), 0)

    def test_every_command(self):
        first = self.smallest()
        for arguments, last in ((["--version"], 0), (["cut", "--help"], 0), (["cut"], 2), (["info", self.source], 0),
                                (["info", "--json", self.source], 0), (["chunks", self.source], 0),
                                (["cut", "--jobs", self.jobs], 3)):
            codes = [self.end(arguments, size) for size in range(first, ENOUGH, ENOUGH // 64)]
            self.assertEqual(codes[-1], last)
            self.assertLessEqual(set(codes), {1, 3, last})

    def test_job_files_that_nobody_would_write_are_refused_in_half_a_gigabyte(self):
        most = 60_000_000
        keys = ",".join(f'"{number}":1' for number in range(1_000_000))
        entries = ",".join(['{"frequency":1,"bandwidth":10}'] * 1_900_000)
        for text in ("[" * most, '{"entries":' + "[" * most, '{"input":' + "[" * 100_000 + "]" * 100_000 + "}",
                     "{" + keys + "}", '{"entries":[{' + keys + "}]}", '{"entries":[' + entries + "]}",
                     '{"input":"' + "x" * most + '"}', '{"input":"' + "x" * most, '{"entries":[{"frequency":' + "1" * most,
                     " " * most):
            self.jobs.write_text(text)
            self.assertEqual(self.end(["cut", "--jobs", self.jobs], 500_000_000), 2, text[:40])


if __name__ == "__main__":
    unittest.main()

"""Files and folders that the user may not read or write."""
import shutil
import unittest

import numpy as np

from makers import Layout, write_recording
from program import EndToEndTest, as_plain_user, contents, run

RATE = 24_000


class TestPermissions(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = write_recording(self.folder / "in.wav", Layout(RATE), np.zeros(2 * RATE))
        self.program, self.options = as_plain_user(self.folder)
        self.output.chmod(0o777)

    def cut(self, output):
        return run("cut", self.source, "--output", output, "--entry", "f=7.1M,bw=8k", program=self.program,
                   **self.options)

    def test_everything_is_allowed_without_restrictions(self):
        self.assertEqual(self.cut(self.output).code, 0)

    def test_read_only_output_folder(self):
        self.output.chmod(0o555)
        before = contents(self.folder)
        result = self.cut(self.output)
        self.output.chmod(0o755)
        self.assertEqual(result.code, 1, result.err)
        self.assertIn(str(self.output), result.err)
        self.assertIn("ermission denied", result.err)
        self.assertEqual(self.names(), [])
        self.assertEqual(set(contents(self.folder)), set(before))

    def test_unreadable_input(self):
        self.source.chmod(0)
        for arguments in (("info", self.source), ("chunks", self.source)):
            result = run(*arguments, program=self.program, **self.options)
            self.assertEqual(result.code, 3, result.err)
            self.assertIn("in.wav", result.err + result.out)
        result = self.cut(self.output)
        self.source.chmod(0o644)
        self.assertEqual(result.code, 3, result.err)
        self.assertIn("in.wav", result.err)
        self.assertIn("ermission denied", result.err)
        self.assertEqual(self.names(), [])

    def test_unreadable_later_file_of_a_set_ends_everything_before_anything_is_written(self):
        rest = np.zeros(2 * RATE)
        paths = [write_recording(self.folder / f"set {number:03d}.wav", Layout(RATE), rest, "set 000.wav", 2 * number)
                 for number in range(3)]
        self.source = paths[0]
        self.assertEqual(self.cut(self.output).code, 0)
        shutil.rmtree(self.output)
        self.output.mkdir()
        self.output.chmod(0o777)
        paths[1].chmod(0)
        results = [run("info", path, program=self.program, **self.options) for path in (paths[0], paths[2])]
        results.append(self.cut(self.output))
        paths[1].chmod(0o644)
        for result in results:
            self.assertEqual(result.code, 3, result.err)
            self.assertIn("set 001.wav", result.err)
            self.assertIn("ermission denied", result.err)
            self.assertEqual(result.out, "")
        self.assertEqual(self.names(), [])


if __name__ == "__main__":
    unittest.main()

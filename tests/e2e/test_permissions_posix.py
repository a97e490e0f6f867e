"""Files and folders that the user may not read or write. Root may everything, so as root the program runs as nobody."""
import os
import shutil
import unittest

import numpy as np

from makers import Layout, write_recording
from program import CLI, EndToEndTest, contents, run

RATE = 24_000
NOBODY = 65534


class TestPermissions(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.source = write_recording(self.folder / "in.wav", Layout(RATE), np.zeros(2 * RATE))
        self.program, self.options = CLI, {}
        if os.geteuid() == 0:
            # The build may stand where nobody cannot look.
            programs = self.folder / "programs"
            programs.mkdir()
            for path in CLI.parent.glob("*"):
                if path.name == CLI.name or path.suffix == ".so":
                    shutil.copy(path, programs)
            self.program = programs / CLI.name
            self.options = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
            self.folder.chmod(0o755)
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


if __name__ == "__main__":
    unittest.main()

"""What is left on disk, and of the console, when a job is stopped by Ctrl-C in a console of Windows."""
import os
import re
import subprocess
import time
from pathlib import Path

from makers import Layout, write_sparse
from program import CLI, TIMEOUT, EndToEndTest, command, environment
from wavtools import WaveFile

CONSOLE_HOST = Path(os.environ["CARVELLO_CONSOLE_HOST"])
RATE = 1_000_000
SECONDS = 600


class TestStoppedInAConsole(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_sparse(cls.shared / "long.wav", Layout(RATE, form="s8"), SECONDS * RATE)

    def cut(self):
        process = subprocess.Popen(
            command(CLI, "cut", self.source, "--output", self.output, "--entry", "f=7.1M,bw=1M,bits=32,size=RF64",
                    "--entry", "f=7.1M,bw=100k,size=1GB", program=CONSOLE_HOST),
            env=environment(), stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def wait_for_growth(self, process):
        path = self.output / "2020-11-01 2359z, f=7.100 MHz, bw=1 MHz.wav"
        deadline = time.monotonic() + TIMEOUT
        while not (path.exists() and path.stat().st_size > 20_000_000):
            self.assertIsNone(process.poll(), "the program ended too early")
            self.assertLess(time.monotonic(), deadline, "the output does not grow")
            time.sleep(0.01)

    def check_stopped(self, process, err):
        self.assertEqual(process.returncode, 130, err)
        self.assertIn("stopping, finishing the files", err)
        files = [WaveFile(self.output / name) for name in self.names()]
        self.assertEqual(len(files), 2)
        for file in files:
            file.check_complete()
            self.assertLess(file.frames, SECONDS * file.rate)

    def test_ctrl_c_finishes_every_file(self):
        process = self.cut()
        self.wait_for_growth(process)
        _, err = process.communicate(b"\n", timeout=TIMEOUT)
        self.check_stopped(process, err.decode())

    def test_ctrl_c_again_does_no_harm(self):
        process = self.cut()
        self.wait_for_growth(process)
        _, err = process.communicate(b"\n" * 20, timeout=TIMEOUT)
        self.check_stopped(process, err.decode())

    def test_the_code_page_of_the_console_is_left_as_it_was(self):
        process = self.cut()
        self.wait_for_growth(process)
        _, err = process.communicate(b"\n", timeout=TIMEOUT)
        before, after = re.search(r"^code page (\d+) (\d+)\s*$", err.decode(), re.MULTILINE).groups()
        self.assertNotEqual(before, "0")
        self.assertNotEqual(before, "65001", "the check needs a console of another code page")
        self.assertEqual(after, before)

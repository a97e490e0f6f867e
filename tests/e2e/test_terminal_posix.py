"""Progress: a bar on a terminal, lines elsewhere."""
import os
import pty
import re
import subprocess
import threading
import time
import unittest

from makers import Layout, write_sparse
from program import SLOW, TIMEOUT, EndToEndTest, command, environment, run_ok

RATE = 1_000_000
SECONDS = 56 if SLOW else 120  # 26 or 57 blocks: every one is less than ten per cent


class TestProgress(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_sparse(cls.shared / "in.wav", Layout(RATE, form="s8"), SECONDS * RATE)

    def run_on_terminal(self, *arguments):
        """Gives everything that the program wrote to the terminal, its stdout, and the seconds it took."""
        master, slave = pty.openpty()
        written = bytearray()

        def collect():
            try:
                while data := os.read(master, 4096):
                    written.extend(data)
            except OSError:
                pass  # the other side is closed

        began = time.monotonic()
        process = subprocess.Popen(command("cut", self.source, "--output", self.output, *arguments),
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=slave,
                                   env=environment(TERM="xterm", COLUMNS="80"))
        os.close(slave)
        reader = threading.Thread(target=collect)
        reader.start()
        try:
            out, _ = process.communicate(timeout=TIMEOUT)
        finally:
            process.kill()
            process.wait()
            reader.join()
            os.close(master)
        self.assertEqual(process.returncode, 0, written)
        return written.decode(), out.decode(), time.monotonic() - began

    def test_bar_on_a_terminal(self):
        # Work for longer than the half second before which no speed is told.
        entries = [text for i in range(2 if SLOW else 24) for text in ("--entry", f"f={7_000_000 + 8_000 * i},bw=10k")]
        text, _, seconds = self.run_on_terminal("--engine", "library", *entries)
        states = [int(each) for each in re.findall(r"(\d+) %", text)]
        self.assertEqual(states, sorted(states))
        self.assertEqual(states[-1], 100)
        self.assertIn("\r", text)
        self.assertIn("MB/s", text)
        self.assertIn("left", text)
        # At most ten redraws a second, the first and the last one extra.
        self.assertLessEqual(len(states), 10 * seconds + 2)
        self.assertNotIn("\n", text[:text.rindex("\r")].replace("\r\n", ""))

    def test_bar_and_json_together_keep_stdout_clean(self):
        text, out, _ = self.run_on_terminal("--entry", "f=7.1M,bw=10k", "--json")
        self.assertTrue(out.startswith("{") and out.rstrip().endswith("}"), out)
        self.assertIn("100 %", text)

    def test_quiet_on_a_terminal(self):
        text, out, _ = self.run_on_terminal("--entry", "f=7.1M,bw=10k", "--quiet")
        self.assertEqual((text, out), ("", ""))

    def test_a_line_every_ten_per_cent_elsewhere(self):
        result = run_ok("cut", self.source, "--output", self.output, "--entry", "f=7.1M,bw=10k")
        self.assertEqual([int(each) for each in re.findall(r"(?m)^\s*(\d+) %", result.err)], list(range(10, 101, 10)))
        self.assertNotIn("\r", result.err)

    def test_progress_counts_the_stretch_that_is_cut(self):
        result = run_ok("cut", self.source, "--output", self.output, "--entry", f"f=7.1M,bw=10k,start=+{SECONDS // 2}")
        self.assertEqual([int(each) for each in re.findall(r"(?m)^\s*(\d+) %", result.err)], list(range(10, 101, 10)))


if __name__ == "__main__":
    unittest.main()

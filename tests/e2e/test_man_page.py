"""The manual page tells of every command and option that the program has, and of none that it has not."""
import re
import shutil
import subprocess
import unittest
from pathlib import Path

from program import run_ok

PAGE = Path(__file__).resolve().parents[2] / "docs" / "man" / "carvello-cli.1"


def commands():
    return re.findall(r"(?m)^  ([a-z]+) {2,}", run_ok("--help").out)


def options_of_help(command):
    """Those at the beginning of a line, and the second of two names that stand there."""
    lines = re.findall(r"(?m)^  (-\S+)", run_ok(command, "--help").out)
    return {name for line in lines for name in re.findall(r"--[a-z0-9-]+", line)} - {"--help"}


class TestManPage(unittest.TestCase):
    def setUp(self):
        self.text = PAGE.read_text()

    def options_of(self, section):
        body = re.search(rf"(?ms)^\.SH {section}\n(.*?)(?=^\.SH |\Z)", self.text)
        return set(re.findall(r"--[a-z0-9-]+", body[1].replace("\\-", "-"))) - {"--help"} if body else set()

    def test_every_command_is_told(self):
        self.assertIn("synth", commands())
        for command in commands():
            self.assertIn(f"\n.B carvello-cli {command}\n", self.text)

    def test_every_option_is_told_with_its_command(self):
        given = self.options_of("WHAT A RECORDING DOES NOT TELL")
        self.assertTrue(given)
        for command in commands():
            with self.subTest(command=command):
                told = self.options_of(f"OPTIONS OF {command.upper()}")
                options = options_of_help(command)
                takes_given = command in ("info", "cut", "picture", "scan", "plan")
                self.assertEqual(options - told - (given if takes_given else set()), set())
                self.assertEqual(told - options, set())

    @unittest.skipUnless(shutil.which("man"), "man is not installed: the page is NOT LOOKED AT")
    def test_page_has_no_mistake_that_man_finds(self):
        done = subprocess.run(["man", "--warnings", "-l", "-Tutf8", str(PAGE)], capture_output=True,
                              env={"PATH": "/usr/bin:/bin", "MANWIDTH": "100", "LC_ALL": "C.UTF-8", "MANPAGER": "cat"})
        self.assertEqual((done.returncode, done.stderr.decode()), (0, ""))
        self.assertIn("OPTIONS OF SYNTH", re.sub(".\b", "", done.stdout.decode()))


if __name__ == "__main__":
    unittest.main()

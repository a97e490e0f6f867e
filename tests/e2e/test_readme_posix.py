"""What the README tells a new user to type does what it says."""
import re
import shlex
import subprocess
import tempfile
import unittest
from pathlib import Path

from program import CLI, environment

README = (Path(__file__).resolve().parents[2] / "README.md").read_text()


class TestFirstCut(unittest.TestCase):
    def test_the_commands_behind_the_installation_make_a_first_cut(self):
        section = re.search(r"(?ms)^## From a package to the first cut\n(.*?)^## ", README)[1]
        lines = re.search(r"(?ms)^```\n(.*?)^```", section)[1].splitlines()
        self.assertTrue(lines[0].startswith("sudo apt install "))
        self.assertEqual(lines[-1].split()[0], "carvello")
        script = f"set -e; carvello-cli() {{ {shlex.quote(str(CLI))} \"$@\"; }}\n" + "\n".join(lines[1:-1])
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run(["bash", "-c", script], capture_output=True, text=True, env=environment(), cwd=folder)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual(len(list((Path(folder) / "cuts").glob("*.wav"))), 1)
        self.assertIn("7350.0 kHz", done.stdout)
        self.assertRegex(done.stdout, r"Sample rate +10 kHz")


if __name__ == "__main__":
    unittest.main()

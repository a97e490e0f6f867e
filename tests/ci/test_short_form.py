"""What the short forms of `./test` leave out: tests that are there, and never what stands for a whole part."""
import fnmatch
import os
import re
import subprocess
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]


def patterns(kind):
    script = f'. tests/short_form.sh; printf "%s\\n" "${{long_{kind}[@]}}"'
    return subprocess.run(["bash", "-c", script], cwd=PROJECT, capture_output=True, text=True,
                          check=True).stdout.splitlines()


class TestShortForm(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        listed = subprocess.run(["ctest", "--test-dir", os.environ["CARVELLO_BUILD"], "--show-only"], capture_output=True,
                                text=True, check=True).stdout
        cls.tests = re.findall(r"^ +Test +#\d+: (.+)$", listed, re.MULTILINE)

    def test_every_pattern_leaves_a_test_out(self):
        for kind in ("anywhere", "asan", "tsan", "windows"):
            self.assertTrue(patterns(kind))
            for pattern in patterns(kind):
                self.assertTrue(any(re.search(pattern, test) for test in self.tests), pattern)

    def test_every_pattern_of_cases_leaves_a_case_out(self):
        cases = patterns("cases_windows")
        self.assertTrue(cases)
        for pattern in cases:
            self.assertTrue(any(fnmatch.fnmatchcase(test, pattern) for test in self.tests), pattern)

    def test_four_of_five_tests_are_left(self):
        for kind in ("asan", "tsan", "windows"):
            left_out = re.compile("|".join(patterns("anywhere") + patterns(kind)))
            left = [test for test in self.tests if not left_out.search(test)]
            self.assertGreater(len(left), 0.8 * len(self.tests), kind)

    def test_another_form_is_refused(self):
        for arguments in (["asan", "shorter"], ["windows", "x"]):
            refused = subprocess.run([PROJECT / "test", *arguments], capture_output=True, text=True, check=False)
            self.assertEqual((refused.returncode, refused.stdout), (2, ""))
            self.assertIn(f"no form of ./test {arguments[0]}: {arguments[1]}. Accepted: short", refused.stderr)


if __name__ == "__main__":
    unittest.main()

"""What the short forms of `./test` leave out: tests that are there, and never what stands alone for a part."""
import fnmatch
import json
import os
import re
import subprocess
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
KINDS = ("asan", "tsan", "windows")


def patterns(array):
    script = f'. tests/short_form.sh; printf "%s\\n" "${{{array}[@]}}"'
    return subprocess.run(["bash", "-c", script], cwd=PROJECT, capture_output=True, text=True,
                          check=True).stdout.splitlines()


def left_out_of(kind):
    script = f". tests/short_form.sh; left_out_of_short {kind}"
    return re.compile(subprocess.run(["bash", "-c", script], cwd=PROJECT, capture_output=True, text=True,
                                     check=True).stdout.strip())


class TestShortForm(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        told = json.loads(subprocess.run(["ctest", "--test-dir", os.environ["CARVELLO_BUILD"], "--show-only=json-v1"],
                                         capture_output=True, text=True, check=True).stdout)
        cls.programs = {test["name"]: Path(test["command"][0]).name for test in told["tests"] if "command" in test}
        cls.tests = list(cls.programs)

    def test_every_pattern_leaves_a_test_out(self):
        for kind in ("anywhere", *KINDS):
            self.assertTrue(patterns(f"long_{kind}"))
            for pattern in patterns(f"long_{kind}"):
                self.assertTrue(any(re.search(pattern, test) for test in self.tests), pattern)

    def test_every_pattern_of_cases_leaves_a_case_out_and_none_leaves_a_program_without(self):
        cases = [test.split("  #")[0] for test, program in self.programs.items() if program.startswith("test_")]
        left_out = patterns("long_cases_windows")
        for pattern in left_out:
            self.assertTrue(fnmatch.filter(cases, pattern), pattern)
        for program in {name for name in self.programs.values() if name.startswith("test_")}:
            self.assertTrue([test for test, of in self.programs.items() if of == program and not any(
                fnmatch.fnmatchcase(test.split("  #")[0], pattern) for pattern in left_out)], program)

    def test_what_stands_alone_for_a_part_is_left_in_all(self):
        for kind in KINDS:
            left_out = left_out_of(kind)
            for pattern in patterns("never_left_out"):
                left = [test for test in self.tests if re.search(pattern, test) and not left_out.search(test)]
                self.assertTrue(left, (kind, pattern))

    def test_another_form_is_refused(self):
        for arguments in (["asan", "shorter"], ["windows", "x"]):
            refused = subprocess.run([PROJECT / "test", *arguments], capture_output=True, text=True, check=False)
            self.assertEqual((refused.returncode, refused.stdout), (2, ""))
            self.assertIn(f"no form of ./test {arguments[0]}: {arguments[1]}. Accepted: short", refused.stderr)


if __name__ == "__main__":
    unittest.main()

"""What .ci/run says at its end, on a project whose ./test runs small tests with the real CTest."""
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]

# The kinds of ./test: tests by name and the shell command that each is. Run in build/<kind>.
TEST = """#!/usr/bin/env bash
set -euo pipefail
cd "$(dirname "$0")"
case ${1-} in
  breaks) for i in {1..100}; do echo "compiling $i"; done; echo 'fatal: no such header'; exit 3 ;;
  ends-badly) ctest --test-dir build/good; exit 7 ;;
esac
ctest --test-dir "build/${1-release}" --output-on-failure "${@:2}"
"""


class TestCiRun(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = Path(folder.name) / "project"
        (self.project / ".ci").mkdir(parents=True)
        shutil.copy(PROJECT / ".ci/run", self.project / ".ci/run")
        (self.project / "test").write_text(TEST)
        (self.project / "test").chmod(0o755)
        for kind, tests in {
            "release": {"small.one": "true"},
            "good": {"small.one": "true", "small.two": "true"},
            "bad": {"small.one": "true", "small.two": "seq 1 500; echo what went wrong; exit 1", "small.three": "true"},
            "many": {f"m.{i}": f"seq 1 100; echo wrong in {i}; false" for i in range(20)},
        }.items():
            build = self.project / "build" / kind
            build.mkdir(parents=True)
            (build / "CTestTestfile.cmake").write_text(
                "".join(f'add_test([=[{name}]=] "sh" "-c" [=[{command}]=])\n' for name, command in tests.items()))

    def run_kinds(self, *kinds):
        result = subprocess.run([self.project / ".ci/run", *kinds], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                text=True, check=False)
        before, _, summary = result.stdout.rpartition("==== Summary\n")
        return result.returncode, before, summary.splitlines()

    def test_kinds_that_pass_are_told_with_their_tests_and_the_last_line_counts_all(self):
        code, _, summary = self.run_kinds("", "good")
        self.assertEqual(code, 0)
        self.assertEqual(len(summary), 3, summary)
        self.assertRegex(summary[0], r"^ok +\d+ s  \./test +100% tests passed, 0 tests failed out of 1$")
        self.assertRegex(summary[1], r"^ok +\d+ s  \./test good +100% tests passed, 0 tests failed out of 2$")
        self.assertEqual(summary[2], "100% tests passed, 0 tests failed out of 3")

    def test_a_test_that_failed_is_named_with_the_end_of_its_output_behind_the_last_kind(self):
        code, before, summary = self.run_kinds("bad", "good")
        self.assertEqual(code, 1)
        self.assertRegex(summary[0], r"^FAILED +\d+ s  \./test bad +67% tests passed, 1 tests failed out of 3")
        self.assertEqual(summary[1].strip(), "failed: small.two")
        self.assertRegex(summary[2], r"^ok +\d+ s  \./test good ")
        self.assertEqual(summary[3:], ["80% tests passed, 1 tests failed out of 5"])
        told = before.partition("==== ./test bad: small.two ended thus:\n")[2].splitlines()
        self.assertIn("what went wrong", told)
        self.assertIn("480", told)
        self.assertNotIn("400", told)

    def test_a_kind_that_did_not_come_to_its_tests_is_told_with_the_end_of_what_it_said(self):
        code, before, summary = self.run_kinds("breaks", "good")
        self.assertEqual(code, 1)
        self.assertRegex(summary[0], r"^FAILED +\d+ s  \./test breaks +no result of tests$")
        self.assertEqual(summary[1].strip(), "exit code 3")
        told = before.partition("==== ./test breaks ended thus:\n")[2].splitlines()
        self.assertEqual(told[-3:], ["compiling 100", "fatal: no such header", ""])
        self.assertNotIn("compiling 20", told)

    def test_a_kind_whose_tests_pass_but_which_fails_is_told_with_its_exit_code(self):
        code, before, summary = self.run_kinds("ends-badly")
        self.assertEqual(code, 1)
        self.assertRegex(summary[0], r"^FAILED .*100% tests passed, 0 tests failed out of 2")
        self.assertEqual(summary[1].strip(), "exit code 7")
        self.assertIn("==== ./test ends-badly ended thus:", before)

    def test_where_much_fails_everything_is_named_and_each_says_less(self):
        _, before, summary = self.run_kinds("many")
        self.assertEqual(len([line for line in summary if line.strip().startswith("failed: m.")]), 20)
        told = before.partition("ended thus:\n")[2]
        for i in range(20):
            self.assertIn(f"wrong in {i}\n", told)
        self.assertLess(len(told.splitlines()), 250)

    def test_kinds_of_one_preset_keep_their_own_results_and_failures_of_earlier_runs_are_forgotten(self):
        _, before, _ = self.run_kinds("bad", "bad -R one")
        self.assertIn("==== ./test bad: small.two ended thus:", before)
        self.assertNotIn("==== ./test bad -R one", before.rpartition("100% tests passed")[2])
        code, before, summary = self.run_kinds("bad -R one")
        self.assertEqual(code, 0)
        self.assertNotIn("small.two", before + "".join(summary))


if __name__ == "__main__":
    unittest.main()

"""Lets every call to the system that keeping an overview makes fail, with every error, and kills the program at each.

Whatever happens, the overview that was kept before or the new one is there and nothing that is neither; where the
program says that it kept the new one, that is it; and keeping goes on to work afterwards and leaves no other file.
"""
import errno
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRAM = os.environ["CARVELLO_KEEP_OVERVIEW"]
FAULTS = os.environ["CARVELLO_FAULTS"]
KINDS = {
    "open": [errno.EACCES, errno.ENOSPC, errno.EMFILE],
    "write": [errno.EIO, errno.ENOSPC, "short", "full"],
    "close": [errno.EIO, errno.ENOSPC],
    "rename": [errno.EACCES, errno.EIO],
    "remove": [errno.EACCES],
    "stat": [errno.EIO],
    "folder": [errno.EIO],
    "lock": [errno.EWOULDBLOCK, errno.ENOLCK],
}
MOST_CALLS = 40


class TestKeepOverview(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "cache" / "overviews"
        self.counts = Path(folder.name) / "counts"

    def run_program(self, *arguments, **fault):
        environment = os.environ | {f"FAULT_{name.upper()}": str(value) for name, value in fault.items()}
        if fault:
            self.counts.write_bytes(bytes(8 * 64))
            environment |= {"LD_PRELOAD": FAULTS, "FAULT_COUNTS": str(self.counts)}
        return subprocess.run([PROGRAM, *arguments], env=environment, capture_output=True, text=True, timeout=60)

    def failed_calls(self):
        return int.from_bytes(self.counts.read_bytes()[8 * 14:8 * 15], "little")

    def save(self, seed, **fault):
        return self.run_program("save", str(self.folder), str(seed), **fault).returncode

    def kept(self):
        done = self.run_program("load", str(self.folder))
        self.assertEqual(done.returncode, 0, "what is kept is neither of the two")
        return done.stdout.strip()

    def check(self, kind, error, times):
        """Until no call of that kind is left to fail."""
        for number in range(1, MOST_CALLS):
            with self.subTest(kind=kind, error=error, times=times, number=number):
                self.assertEqual(self.save(1), 0)
                result = self.save(2, kind=kind, at=number, times=times, error=error)
                hit = self.failed_calls() > 0
                self.assertIn(self.kept(), ("1", "2"))
                if result == 0:
                    self.assertEqual(self.kept(), "2")
                elif error != "kill":
                    self.assertEqual(self.kept(), "1")
                self.assertEqual(self.save(3), 0)
                self.assertEqual(self.kept(), "3")
                self.assertEqual(len(list(self.folder.iterdir())), 1)
                if not hit:
                    return number - 1
        self.fail("it never ends")

    def test_a_kill_at_any_call_leaves_the_old_overview_or_the_new_one(self):
        for kind in KINDS:
            with self.subTest(kind=kind):
                calls = self.check(kind, "kill", 1)
                if kind in ("open", "write", "close", "rename"):
                    self.assertGreater(calls, 0, "nothing was killed")

    def test_any_call_that_fails_leaves_the_old_overview_or_the_new_one(self):
        for kind, errors in KINDS.items():
            for error in errors:
                for times in (1, 0):
                    self.check(kind, error, times)

    def test_the_first_one_ever_kept_is_there_or_not(self):
        for number in range(1, MOST_CALLS):
            self.folder = self.folder.parent.parent / str(number) / "overviews"
            result = self.save(5, kind="write", at=number, times=1, error="kill")
            self.assertEqual(self.kept(), "5" if result == 0 else "none")
            if result == 0:
                return
        self.fail("it never ends")


if __name__ == "__main__":
    unittest.main()

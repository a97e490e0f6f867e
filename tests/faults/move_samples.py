"""Lets every call to the system fail while samples move from a part of an output to the next one, with every error, and
kills the program at each.

Whatever happens, every part that has a header can be read, its sizes stay within it, and what they tell of are the
samples that belong there; where the program says that all went well, they are all there, in finished files.
"""
import errno
import os
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRAM = os.environ["CARVELLO_MOVE_SAMPLES"]
FAULTS = os.environ["CARVELLO_FAULTS"]
KINDS = {
    "open": [errno.EACCES, errno.EMFILE],
    "read": [errno.EIO, "short", "end"],
    "write": [errno.EIO, errno.ENOSPC, "short", "kill"],
    "seek": [errno.EIO, "kill"],
    "truncate": [errno.EIO, "kill"],
    "sync": [errno.EIO, "kill"],
    "close": [errno.EIO, "kill"],
    "stat": [errno.EIO],
}
MOST_CALLS = 100
PART = 1_000_000
SAMPLES = bytes(ord("a") + i // 7 % 23 for i in range(2_400_000))
# Written but never told before a failure, samples whose part was not yet decided stay where they were.
UNDECIDED = 150_000


def samples_told(path):
    """What the sizes of a part tell of; None where it has no header yet."""
    content = path.read_bytes()
    place = 12
    while place + 8 <= len(content):
        identifier, size = struct.unpack_from("<4sI", content, place)
        if identifier == b"data":
            told = content[place + 8:place + 8 + size]
            assert len(told) == size, f"{path.name} tells of {size} bytes and has {len(told)}"
            assert struct.unpack_from("<I", content, 4)[0] + 8 <= len(content), f"{path.name} is said to be longer"
            return told
        place += 8 + size
    return None


def is_finished(path):
    """Whether the trailer stands behind the samples, and the file ends with it."""
    content = path.read_bytes()
    place = content.index(b"data", 12)
    trailer = place + 8 + struct.unpack_from("<I", content, place + 4)[0]
    whole = struct.unpack_from("<I", content, 4)[0] + 8 == len(content)
    return whole and content[trailer:trailer + 4] == b"LIST"


class TestMoveSamples(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name) / "out"
        self.folder.mkdir()
        self.counts = Path(folder.name) / "counts"

    def run_program(self, **fault):
        for path in self.folder.iterdir():
            path.unlink()
        self.counts.write_bytes(bytes(8 * 64))
        environment = os.environ | {f"FAULT_{name.upper()}": str(value) for name, value in fault.items()}
        environment |= {"LD_PRELOAD": FAULTS, "FAULT_COUNTS": str(self.counts)}
        return subprocess.run([PROGRAM, self.folder], env=environment, capture_output=True, text=True, timeout=60)

    def failed_calls(self):
        return int.from_bytes(self.counts.read_bytes()[8 * 14:8 * 15], "little")

    def check_parts(self, done, killed):
        total = 0
        parts = sorted(self.folder.iterdir())
        for number, path in enumerate(parts):
            told = samples_told(path)
            if told is None:
                self.assertTrue(killed, f"{path.name} has no header")
                continue
            begin = number * PART
            self.assertEqual(told, SAMPLES[begin:begin + len(told)], f"{path.name} has other samples")
            self.assertLessEqual(len(told), PART + UNDECIDED)
            total += len(told)
        if killed:
            return
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        result, told = done.stdout.split()
        self.assertEqual(int(told), total)
        if result == "ok":
            self.assertEqual([samples_told(path) for path in parts],
                             [SAMPLES[:PART], SAMPLES[PART:2 * PART], SAMPLES[2 * PART:]])
            self.assertTrue(all(is_finished(path) for path in parts))

    def test_samples_move_to_the_part_that_they_belong_to(self):
        done = self.run_program()
        self.assertEqual(done.stdout, f"ok {len(SAMPLES)}\n")
        self.check_parts(done, False)

    def test_any_call_that_fails_or_is_the_last_one_leaves_parts_that_hold_what_they_tell_of(self):
        for kind, errors in KINDS.items():
            for error in errors:
                for times in (1,) if error in ("short", "kill") else (1, 0):
                    self.check_calls(kind, error, times)

    def check_calls(self, kind, error, times):
        """Until no call of that kind is left to fail."""
        for number in range(1, MOST_CALLS):
            with self.subTest(kind=kind, error=error, times=times, number=number):
                done = self.run_program(kind=kind, at=number, times=times, error=error)
                hit = self.failed_calls() > 0
                self.check_parts(done, hit and error == "kill")
                if not hit:
                    self.assertGreater(number, 1, "nothing failed")
                    self.assertEqual(done.stdout[:2], "ok")
                    return
        self.fail("it never ends")


if __name__ == "__main__":
    unittest.main()

"""Two evenings of somebody who cuts a whole band: the built program, worked by keys alone, and read as a reader of the
screen reads it.

The recording is chosen, entries are added by hand and by sequence, for two disks, one of which will be full; the job is
saved and runs unattended, is stopped in the morning, and goes on the next evening from the list that was kept, in a new
run of the program. What failed is named, stays on the list, and is made once there is room.

CARVELLO_EVENING_HOURS makes the recording so long, and gives its user the pauses that people make. The small disk is a
volume of its own where CARVELLO_MAY_MOUNT=1 tells that the test has a mount namespace to itself; elsewhere it is a
folder that goes, and comes back.
"""
import json
import os
import random
import re
import subprocess
import time
import unittest

from makers import Layout, Tone, signal, write_sparse
from program import TIMEOUT, contents, run_ok
from screen_reader import ScreenReaderTest
from wavtools import WaveFile, decibels, measure_tone

HOURS = float(os.environ.get("CARVELLO_EVENING_HOURS", "0"))
MAY_MOUNT = os.environ.get("CARVELLO_MAY_MOUNT") == "1"
# How long a run over all entries may take, on a machine that is busy with others.
RUN_TIMEOUT = TIMEOUT + 3600 * 2 * HOURS


class TestEvening(ScreenReaderTest):
    RATE = 240_000
    CENTRE = 6_070_000
    SECONDS = int(HOURS * 3600) or 60
    TONES = [Tone(10_200, 3000), Tone(-30_300, 2000), Tone(100_100, 4000)]
    TONE_SECONDS = 20  # at the beginning; the rest is silence
    # What is added: centre frequency, bandwidth.
    BY_HAND = [(6_070_000, 12_500), (6_080_000, 10_000), (6_040_000, 5_000)]
    SEQUENCE = [(frequency, 500) for frequency in range(5_950_000, 6_190_001, 1_000)]
    FOR_THE_SMALL_DISK = [(frequency, 200) for frequency in range(5_950_000, 6_190_001, 20_000)]
    ALL = len(BY_HAND) + len(SEQUENCE) + len(FOR_THE_SMALL_DISK)

    def setUp(self):
        super().setUp()
        self.random = random.Random(1)
        self.small = self.folder / "small disk"
        self.small.mkdir()
        self.job = self.folder / "49 m.json"
        self.source = write_sparse(self.folder / "49 m evening.wav", Layout(self.RATE, self.CENTRE, rf64=True),
                                   self.SECONDS * self.RATE,
                                   patches=[(0, signal(self.TONES, self.RATE, 0, self.TONE_SECONDS * self.RATE))])
        # Some of the outputs that go there fit, and the others do not.
        expected = len(self.FOR_THE_SMALL_DISK) * self.SECONDS * 200 * 4
        self.little_room = expected * 4 // 10
        if MAY_MOUNT:
            subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={self.little_room}", "tmpfs", self.small], check=True)
            self.addCleanup(subprocess.run, ["umount", "-l", self.small], check=True)

    # ---- the small disk ----------------------------------------------------------------------------------------------

    def fail_the_small_disk(self):
        """A volume is too small already."""
        if not MAY_MOUNT:
            self.small.rmdir()

    def mend_the_small_disk(self):
        if MAY_MOUNT:
            subprocess.run(["mount", "-o", f"remount,size={self.little_room * 10}", self.small], check=True)
        else:
            self.small.mkdir()

    # ---- a person at the keys ----------------------------------------------------------------------------------------

    def pause(self, seconds=30):
        """What people take for looking and thinking."""
        if HOURS:
            time.sleep(self.random.random() * 2 * seconds)

    def press(self, *keys):
        self.pause()
        self.dialog.press(*keys)

    def type(self, text):
        self.dialog.type(text)

    def wait_for(self, happens, *what, timeout=TIMEOUT):
        """Until what is told is as wanted; gives it."""
        deadline = time.monotonic() + timeout
        while True:
            done = self.read(self.dialog, *what)  # windows come and go below the reader
            told = [tuple(line.split(" | ", 1)) for line in done.stdout.splitlines() if " | " in line]
            if done.returncode == 0 and happens(told):
                return told
            self.assertIsNone(self.dialog.process.poll(), "the program ended too early")
            if time.monotonic() > deadline:
                self.dialog.picture("late")
                self.fail(done.stderr + "\n".join(f"{role}: {name}" for role, name in told if role != "table cell"))
            time.sleep(5 if HOURS and timeout == RUN_TIMEOUT else 0.1)

    def wait_for_name(self, pattern, *what, **options):
        """The first name of something told that the pattern matches."""
        found = []

        def happens(told):
            found[:] = [match for _, name in told if (match := re.search(pattern, name))]
            return found

        self.wait_for(happens, *what, **options)
        return found[0]

    def wait_for_count(self, count):
        self.wait_for_name(rf"^Entries in the list: Maximum entries: \d+, current: {count}$")

    def cells(self):
        """Of all rows of the list: centre, bandwidth, start, finish, file name, state."""
        names = [name for role, name in self.told(self.dialog, "cells") if role == "table cell"]
        self.assertEqual(len(names) % 6, 0, names)
        return [names[at:at + 6] for at in range(0, len(names), 6)]

    # ---- the evening -------------------------------------------------------------------------------------------------

    def choose_input_and_folder(self):
        self.type(f'"{self.source}"')  # as file managers copy it
        self.press(*["Tab"] * 5)
        self.type(str(self.output))
        self.press("Tab")
        self.wait_for_name(r"^Centre frequency: 6\.070 MHz$")

    def add_by_hand(self):
        self.press("alt+w")
        self.type("12.5k")
        self.press("alt+c")
        self.type("6070")  # kHz, as everybody says who listens on short waves
        self.press("alt+a")
        self.wait_for_count(1)
        self.press("alt+i")  # "Is it 6.070 MHz?"
        self.wait_for_name(r"f=6\.070 MHz, bw=12\.500 kHz", "cells")
        self.press("alt+w")
        self.type("10 kHz")
        for frequency in (6_080_000, 6_040_000):
            self.press("alt+c")
            self.dialog.type_frequency(frequency)
            self.press("alt+a")
        self.wait_for_count(3)
        # The last one should have been narrower: its row is the selected one.
        self.press("F2", "alt+w")
        self.type("5")  # kHz
        self.press("alt+l")
        self.wait_for_name(r"f=6\.040 MHz, bw=5 kHz", "cells")
        self.wait_for_count(3)

    def add_sequence(self, bandwidth, step, count):
        self.press("alt+w")
        self.type(bandwidth)
        self.press("alt+q")
        self.dialog.find("Add Sequence")
        self.press("Tab", "Tab")  # over the ends of the band
        self.type(step)
        self.wait_for_name(f"^Summary: 5.950 MHz to 6.190 MHz in steps of {step}. Total entries {count}.$")
        self.pause()
        self.dialog.leave("Add Sequence", "Return")

    def choose_small_disk(self):
        self.press("alt+c", *["shift+Tab"] * 3)  # back over the buttons of the folder
        self.type(str(self.small))
        # What is on the list keeps its folder, which is told.
        self.wait_for_name(f"that keep the folder they were added with: {len(self.BY_HAND + self.SEQUENCE)}$")

    def save_job(self):
        self.press("ctrl+s")
        self.dialog.find("Save Job")
        self.type(str(self.job))
        self.pause()
        self.dialog.leave("Save Job", "Return")
        # Written on a thread of its own, under another name until it is whole.
        deadline = time.monotonic() + RUN_TIMEOUT
        while not self.job.exists() and time.monotonic() < deadline:
            time.sleep(0.1)

    def start(self):
        self.dialog.find("Carvello v")
        self.press("alt+s")

    def end_of_run(self):
        """The outcome, and the text of the box that tells what failed, which is closed; empty when there is none."""
        def ended(told):
            return ("button", "OK") in told or any(re.search("^Outcome: .* outputs (written|complete)", name) and
                                                        "failed" not in name for _, name in told)

        told = self.wait_for(ended, timeout=RUN_TIMEOUT)
        outcome = next(name.removeprefix("Outcome: ") for _, name in told if name.startswith("Outcome: "))
        box = "".join(name for role, name in told if role == "label" and " outputs failed:" in name)
        self.assertEqual(bool(box), "failed" in outcome, told)
        if box:
            self.pause(20)
            self.dialog.leave("Carvello$", "Return")
        return outcome, box

    def close(self):
        self.pause()
        self.assertEqual(self.dialog.close(), 0)

    def first_evening(self):
        self.dialog = self.open_told()
        self.choose_input_and_folder()
        self.add_by_hand()
        self.add_sequence("500 Hz", "1 kHz", len(self.SEQUENCE))
        self.wait_for_count(len(self.BY_HAND + self.SEQUENCE))
        self.choose_small_disk()
        self.add_sequence("200 Hz", "20 kHz", len(self.FOR_THE_SMALL_DISK))
        self.wait_for_count(self.ALL)
        if MAY_MOUNT:
            self.wait_for_name(f"^Sums of the list: Does not fit: .* in {re.escape(str(self.small))}$")
        self.save_job()
        self.assertEqual(len(json.loads(self.job.read_text())["entries"]), self.ALL)
        self.press("alt+e")
        self.fail_the_small_disk()
        self.start()

    def morning(self):
        """The computer is needed for something else once some batches are done. A quick one is through by then."""
        self.wait_for(lambda told: not any(f"current: {self.ALL}" in name for _, name in told), timeout=RUN_TIMEOUT)
        self.press("alt+t")
        outcome, _ = self.end_of_run()
        self.assertRegex(outcome, rf"^(Stopped: )?\d+ of {self.ALL} outputs (complete|written)")
        self.close()
        return int(re.search(r"\d+", outcome).group())

    def second_evening(self, made):
        self.dialog = self.open_told(self.source)
        offered = int(self.wait_for_name(r"^The list of .* can be put back\. Entries: (\d+)$").group(1))
        # What was done in the last batch is still on it.
        self.assertGreaterEqual(offered, self.ALL - made)
        self.assertLess(offered, self.ALL)
        self.press("alt+k")
        self.wait_for_count(offered)
        self.start()
        outcome, box = self.end_of_run()
        failed = int(re.search(r"(\d+) failed", outcome).group(1))
        self.check_failures_are_told(failed, box)
        self.mend_the_small_disk()
        self.start()
        outcome, box = self.end_of_run()
        self.assertRegex(outcome, f"^{failed} of ")
        self.assertEqual(box, "")
        self.close()

    def check_failures_are_told(self, failed, box):
        """In the box, and in the rows that stay."""
        self.assertGreater(failed, 0)
        self.assertTrue(box.startswith(f"{failed} of "), box)
        rows = [row for row in self.cells() if row[5].startswith("failed: ")]
        self.assertEqual(len(rows), failed)
        for row in rows:
            self.assertIn("bw=200 Hz", row[4])
        for row in rows[:10]:
            self.assertIn(row[4], box)

    def files_of(self, frequency, bandwidth, folder):
        """The parts of an output, which must be whole."""
        width = f"{bandwidth / 1000:.3f}".removesuffix(".000") + " kHz" if bandwidth >= 1000 else f"{bandwidth} Hz"
        paths = sorted(folder.glob(f"2020-11-01 2359z, f={frequency / 1e6:.3f} MHz, bw={width} [0-9][0-9][0-9].wav"))
        files = [WaveFile(path) for path in paths]
        for file in files:
            file.check_complete()
            self.assertEqual((file.rate, file.bits), (bandwidth, 16))
        self.assertEqual(sum(file.frames for file in files), self.SECONDS * bandwidth, paths)
        return files

    def check_outputs(self):
        for entries, folder in ((self.BY_HAND + self.SEQUENCE, self.output), (self.FOR_THE_SMALL_DISK, self.small)):
            count = sum(len(self.files_of(*entry, folder)) for entry in entries)
            self.assertEqual(len(self.names(folder)), count)
        for tone, entry in zip(self.TONES, [(6_080_000, 10_000), (6_040_000, 5_000), (6_170_000, 500)]):
            file = self.files_of(*entry, self.output)[0]
            samples = file.samples()[file.rate:(self.TONE_SECONDS - 1) * file.rate]
            expected = self.CENTRE + tone.offset - entry[0]
            measured = measure_tone(samples, file.rate, expected)
            self.assertAlmostEqual(measured.frequency, expected, delta=0.01)
            self.assertAlmostEqual(decibels(measured.amplitude / tone.amplitude), 0, delta=0.05)

    def check_job(self):
        """What was saved is what was cut: the command line finds nothing left to do."""
        before = contents(self.output), contents(self.small)
        result = run_ok("cut", "--jobs", self.job, "--skip-existing", "--json")
        self.assertEqual(len(result.json()["outputs"]), self.ALL)
        self.assertEqual((contents(self.output), contents(self.small)), before)

    def test_a_band_is_cut_in_two_evenings_with_a_disk_that_fails(self):
        self.first_evening()
        self.second_evening(self.morning())
        self.check_outputs()
        self.check_job()


if __name__ == "__main__":
    unittest.main()

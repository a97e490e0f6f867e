"""Jobs between the dialog and the command line, both ways, and what is left of a list when the dialog is killed."""
import json
import random
import time

from makers import Layout, Tone, signal, write_recording
from program import TIMEOUT, run_ok
from same_output import assert_same_output
from test_dialog_posix import DialogTest


class TestDialogJobs(DialogTest):
    RATE = 240_000
    SECONDS = 20

    def setUp(self):
        super().setUp()
        self.source = write_recording(self.folder / "40 m 000.wav", Layout(self.RATE, 7_100_000),
                                      signal([Tone(10_500, 5000), Tone(-9_300, 4000)], self.RATE, 0,
                                             self.SECONDS * self.RATE))
        self.other = self.folder / "other"
        self.other.mkdir()

    def open_ready(self):
        dialog = self.open(self.source)
        dialog.press(*["Tab"] * 5)
        dialog.type(str(self.output))
        dialog.press("alt+w", "Home", *["Down"] * 32)  # 10 kHz
        return dialog

    def add(self, dialog, *frequencies):
        for frequency in frequencies:
            dialog.press("alt+c")
            dialog.type_frequency(frequency)
            dialog.press("alt+a")

    def choose_file(self, dialog, keys, title, path):
        dialog.press(keys)
        dialog.find(title)
        dialog.type(str(path))
        dialog.leave(title, "Return")

    def assert_same_folders(self, *folders):
        names = [sorted(path.relative_to(folder) for path in folder.rglob("*.wav")) for folder in folders]
        self.assertEqual(names[0], names[1])
        for name in names[0]:
            assert_same_output(self, folders[0] / name, folders[1] / name)
        return [str(name) for name in names[0]]

    def test_a_list_that_the_dialog_saves_is_cut_alike_by_the_command_line(self):
        job = self.folder / "evening.json"
        dialog = self.open_ready()
        self.add(dialog, 7_110_000, 7_090_000)
        dialog.press("alt+3", "alt+z", "End", "Up")  # 32 bit, one file (RF64)
        self.add(dialog, 7_100_000)
        self.choose_file(dialog, "ctrl+s", "Save Job", job)
        dialog.press("alt+s")
        dialog.wait_for_log("Reader> Closed$")
        self.assertEqual(dialog.close(), 0)
        run_ok("cut", "--jobs", job, "--output", self.other)
        self.assertEqual(len(self.assert_same_folders(self.output, self.other)), 3)

    def test_a_job_that_the_command_line_takes_is_shown_and_cut_alike_by_the_dialog(self):
        entries = [{"frequency": "7.11M", "bandwidth": "10k"},
                   {"frequency": 7_090_000, "bandwidth": 10_000, "bits": 32, "size": "RF64", "start": 5, "end": "+15"},
                   {"frequency": 7_090_000, "bandwidth": 10_000, "start": "2020-11-01T23:59:02Z", "duration": "0:00:10"},
                   {"frequency": 7_100_000, "bandwidth": 20_000, "output": "sub", "number": 4}]
        folders = []
        for name in ("by the command line", "by the dialog"):
            folder = self.folder / name
            (folder / "out").mkdir(parents=True)
            (folder / "sub").mkdir()
            (folder / "job.json").write_text(json.dumps({"input": str(self.source), "output": "out",
                                                         "local_time": True, "entries": entries}))
            folders.append(folder)
        run_ok("cut", "--jobs", "job.json", cwd=folders[0])
        dialog = self.open(present=folders[1])
        self.choose_file(dialog, "ctrl+o", "Open Job", folders[1] / "job.json")
        dialog.wait_for_log("Ready")
        dialog.picture("job-opened")
        dialog.press("alt+s")
        dialog.wait_for_log("Reader> Closed$")
        self.assertEqual(dialog.close(), 0)
        names = self.assert_same_folders(*folders)
        self.assertEqual(names, ["out/2020-11-01 2359, f=7.090 MHz, bw=10 kHz (2) 000.wav",
                                 "out/2020-11-01 2359, f=7.090 MHz, bw=10 kHz.wav",
                                 "out/2020-11-01 2359, f=7.110 MHz, bw=10 kHz 000.wav",
                                 "sub/2020-11-01 2359, f=7.100 MHz, bw=20 kHz (4) 000.wav"])

    def lists(self):
        return sorted((self.folder / "data" / "Carvello" / "lists").glob("*"))

    def wait_for_entries(self, count):
        deadline = time.monotonic() + TIMEOUT
        while not any(path.suffix == ".json" and len(json.loads(path.read_text())["entries"]) == count
                      for path in self.lists()):
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.02)

    def test_a_dialog_that_is_killed_gives_its_list_back(self):
        dialog = self.open_ready()
        self.add(dialog, 7_110_000, 7_090_000, 7_100_000)
        self.wait_for_entries(3)
        dialog.kill()
        dialog = self.open()
        dialog.wait_for_log("Ready")
        dialog.picture("list-offered")
        dialog.press("alt+k")
        dialog.press("alt+s")
        dialog.wait_for_log("Reader> Closed$")
        self.assertEqual(dialog.close(), 0)
        self.assertEqual(len(self.names()), 3)

    def test_kills_at_any_moment_leave_whole_lists_only(self):
        generator = random.Random(1)
        for _ in range(6):
            dialog = self.open_ready()
            dialog.press("alt+q")
            dialog.find("Add Sequence")
            dialog.type_frequency(7_000_000)
            dialog.press("Tab")
            dialog.type_frequency(7_200_000)
            dialog.leave("Add Sequence", "Return")
            self.add(dialog, 7_000_500)
            time.sleep(generator.random() * 0.03)
            dialog.kill()
            for path in self.lists():
                if path.suffix == ".json":
                    self.assertGreaterEqual(len(json.loads(path.read_text())["entries"]), 1)
        dialog = self.open_ready()
        self.add(dialog, 7_000_500)
        self.wait_for_entries(1)
        others = [path for path in self.lists() if path.suffix != ".json"]
        self.assertEqual([path.suffix for path in others], [".lock"] * len(others))
        self.assertLessEqual(len(others), 1)  # of the window that is open, and of none that was killed

"""The dialog as a user works it: the built program on an X server of its own, driven by keys.

What it shows is read from the log that "View as text" writes, and from the files that it makes. Pictures of it are kept
when CARVELLO_PICTURES names a folder; the settings of Qt's platform theme apply to them.
"""
import os
import re
import shutil
import subprocess
import time
import unittest
from pathlib import Path

from makers import Layout, Tone, signal, write_recording, write_sparse
from program import TIMEOUT, EndToEndTest, environment
from wavtools import WaveFile, decibels, measure_tone

GUI = Path(os.environ["CARVELLO_GUI"])
PICTURES = os.environ.get("CARVELLO_PICTURES")


class Display:
    """An X server without a screen."""

    def __init__(self, size="1280x1024"):
        read, write = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{size}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            self.name = ":" + pipe.readline().strip()

    def close(self):
        self.process.terminate()
        self.process.wait(TIMEOUT)


class Dialog:
    """One run of the program."""

    def __init__(self, display, home, *arguments, program=GUI, title="Carvello v", environment_changes=None,
                 present=None):
        self.home = home
        self.opened = home / "opened"
        programs = home / "programs"
        programs.mkdir(exist_ok=True)
        # The desktop's opener, which only notes that it was asked.
        opener = programs / "xdg-open"
        opener.write_text('#!/bin/sh\necho "$1" >> "$HOME/opened"\n')
        opener.chmod(0o755)
        self.env = environment(
            DISPLAY=display.name, QT_QPA_PLATFORM="xcb", HOME=str(home), XDG_CONFIG_HOME=str(home / "config"),
            XDG_DATA_HOME=str(home / "data"), XDG_RUNTIME_DIR=str(home), TEMP=str(home),
            PATH=f"{programs}:{os.environ['PATH']}")
        self.env.pop("DBUS_SESSION_BUS_ADDRESS", None)
        self.env.update(environment_changes or {})
        # A library of the window system copies names without a terminating zero, with their length; the strict check
        # would have them end with one.
        self.env["ASAN_OPTIONS"] = self.env.get("ASAN_OPTIONS", "") + ":strict_string_checks=0"
        self.process = subprocess.Popen([str(program), *map(str, arguments)], env=self.env, cwd=present)
        self.window = self.find(title)

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *map(str, arguments)], env=self.env, capture_output=True, text=True,
                              timeout=TIMEOUT)

    def visible(self, title):
        """The windows of that title."""
        return self.xdotool("search", "--onlyvisible", "--all", "--pid", self.process.pid, "--name",
                            "^" + title).stdout.split()

    def find(self, title):
        """The visible window of that title, with the keyboard."""
        deadline = time.monotonic() + TIMEOUT
        while True:
            assert self.process.poll() is None, "the program ended too early"
            found = self.visible(title)
            if found and self.xdotool("windowfocus", "--sync", found[0]).returncode == 0:
                return found[0]
            assert time.monotonic() < deadline, f"no window {title}"
            time.sleep(0.05)

    def leave(self, title, *keys):
        """The window of that title, by these keys; then the keyboard is the main window's."""
        self.find(title)
        self.press(*keys)
        deadline = time.monotonic() + TIMEOUT
        while self.visible(title):
            assert time.monotonic() < deadline, f"{title} stays"
            time.sleep(0.05)
        self.find("Carvello v")

    def press(self, *keys):
        done = self.xdotool("key", "--delay", 20, *keys)
        assert done.returncode == 0, done.stderr

    def type(self, text):
        done = self.xdotool("type", "--delay", 10, text)
        assert done.returncode == 0, done.stderr

    def type_frequency(self, frequency):
        """Over what is in the field, as people write frequencies."""
        self.press("ctrl+a")
        self.type(f"{frequency // 1_000_000}.{frequency // 1000 % 1000:03d}.{frequency % 1000:03d}")

    def log(self):
        """The lines of the log, as "View as text" writes them."""
        before = len(self.opened.read_text().splitlines()) if self.opened.exists() else 0
        deadline = time.monotonic() + TIMEOUT
        pressed = 0.0
        while not self.opened.exists() or len(self.opened.read_text().splitlines()) <= before:
            if time.monotonic() > pressed + 5:  # a key is lost while another window is just going
                self.press("alt+v")
                pressed = time.monotonic()
            assert self.process.poll() is None, "the program ended too early"
            assert time.monotonic() < deadline, "the log is not opened"
            time.sleep(0.05)
        path = Path(self.opened.read_text().splitlines()[-1])
        assert path == self.home / "Carvello tmp.txt", path
        return path.read_text().splitlines()

    def wait_for_log(self, pattern):
        deadline = time.monotonic() + TIMEOUT
        while True:
            lines = self.log()
            if any(re.search(pattern, line) for line in lines):
                return lines
            assert time.monotonic() < deadline, "\n".join(lines)
            time.sleep(0.1)

    def picture(self, name, window=None):
        """A picture of the window as it is now; it must show something."""
        time.sleep(0.3)  # what was asked for last is drawn
        path = Path(PICTURES or self.home) / f"{name}.png"
        subprocess.run(["import", "-window", window or self.window, str(path)], env=self.env, check=True,
                       timeout=TIMEOUT, capture_output=True)
        colours = subprocess.run(["identify", "-format", "%k", str(path)], check=True, timeout=TIMEOUT,
                                 capture_output=True, text=True).stdout
        assert int(colours) > 20, f"{path} shows {colours} colours"

    def close(self):
        """Escape; the program's exit code."""
        self.find("Carvello v")
        self.press("Escape")
        return self.process.wait(TIMEOUT)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait(TIMEOUT)


class DialogTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.display = Display()
        self.addCleanup(self.display.close)

    def open(self, *arguments, **options):
        dialog = Dialog(self.display, self.folder, *arguments, **options)
        self.addCleanup(dialog.kill)
        return dialog


class TestDialog(DialogTest):
    RATE = 240_000
    CENTRE = 7_100_000
    SECONDS = 30
    TONES = [Tone(10_500, 5000), Tone(-9_300, 4000), Tone(1_700, 3000), Tone(100_250, 2000)]
    BANDWIDTH = 10_000
    # From the first choice, 240 kHz: 21 steps of 10 kHz to 30 kHz, one to 20 kHz, 10 of 1 kHz.
    STEPS_TO_BANDWIDTH = 32

    def output_of(self, frequency):
        return self.output / f"2020-11-01 2359z, f={frequency / 1e6:.3f} MHz, bw=10 kHz 000.wav"

    def check_tone(self, tone, frequency):
        file = WaveFile(self.output_of(frequency))
        file.check_complete()
        self.assertEqual((file.rate, file.bits), (self.BANDWIDTH, 16))
        self.assertEqual(file.frames, self.SECONDS * self.BANDWIDTH)
        self.assertEqual(file.metadata()["RadioCenterFreq"], str(frequency))
        expected = self.CENTRE + tone.offset - frequency
        edge = self.BANDWIDTH // 4  # the filters see the signal start and end abruptly
        measured = measure_tone(file.samples()[edge:-edge], self.BANDWIDTH, expected)
        self.assertAlmostEqual(measured.frequency, expected, delta=0.01)
        self.assertAlmostEqual(decibels(measured.amplitude / tone.amplitude), 0, delta=0.05)

    def test_cuts_three_entries_and_a_sequence_and_stops_a_second_run(self):
        source = write_recording(self.folder / "40 m 000.wav", Layout(self.RATE, self.CENTRE),
                                 signal(self.TONES, self.RATE, 0, self.SECONDS * self.RATE))
        dialog = self.open()
        dialog.picture("start")

        dialog.type(str(source))
        dialog.press("Tab", "Tab", "Tab", "Tab", "Tab")  # over the three buttons and the check box
        dialog.type(str(self.output))
        dialog.press("alt+w", "Home", *["Down"] * self.STEPS_TO_BANDWIDTH)
        for frequency in (7_110_000, 7_090_000, 7_100_000):
            dialog.press("alt+c")
            dialog.type_frequency(frequency)
            dialog.press("alt+a")
        dialog.press("alt+q")
        sequence = dialog.find("Add Sequence")
        dialog.type_frequency(7_200_000)
        dialog.press("Tab")
        dialog.type_frequency(7_100_000)
        dialog.picture("add-sequence", sequence)
        dialog.leave("Add Sequence", "Return")
        dialog.picture("filled")

        dialog.press("alt+s")
        log = dialog.wait_for_log("Reader> Closed$")
        dialog.picture("finished")
        self.assertRegex(log[0], r"^\d\d:\d\d:\d\d> Ready$")
        self.assertRegex(log[1], r"^\d\d:\d\d:\d\d> Processors: \d+, max threads: \d+$")
        self.assertEqual(dialog.close(), 0)

        # 7.1 MHz was entered twice and made once.
        frequencies = [7_110_000, 7_090_000, 7_100_000, 7_200_000]
        self.assertEqual(self.names(), sorted(self.output_of(frequency).name for frequency in frequencies))
        for tone, frequency in zip(self.TONES, frequencies):
            self.check_tone(tone, frequency)

        self.stop_a_run_half_way()

    def stop_a_run_half_way(self):
        """The folder and the choices are those of before; the input is one that takes long."""
        seconds, rate = 900, 1_000_000
        source = write_sparse(self.folder / "long.wav", Layout(rate, self.CENTRE, form="s8"), seconds * rate)
        before = set(self.names())
        dialog = self.open(source)
        for frequency in (7_150_000, 7_300_000):
            dialog.press("alt+c")
            dialog.type_frequency(frequency)
            dialog.press("alt+a")
        dialog.press("alt+s")
        dialog.wait_for_log(r"Writer \[1\]> Starting")
        dialog.picture("running")
        dialog.press("Escape")  # only beeps
        self.assertIsNone(dialog.process.poll())
        dialog.press("alt+t")
        dialog.wait_for_log("Reader> Closed$")
        self.assertEqual(dialog.close(), 0)
        made = sorted(set(self.names()) - before)
        self.assertEqual(len(made), 2)
        for name in made:
            file = WaveFile(self.output / name)
            file.check_complete()
            self.assertEqual(file.rate, self.BANDWIDTH)
            self.assertGreater(file.frames, 0)
            self.assertLess(file.frames, seconds * self.BANDWIDTH)


class TestSpectrumWindow(DialogTest):
    RATE = 240_000
    CENTRE = 7_100_000
    SECONDS = 20

    def centre_of(self, window):
        """Of the waterfall, on the screen: it is most of the window, to the left below the middle."""
        size = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window], env=self.dialog.env, check=True,
                              capture_output=True, text=True, timeout=TIMEOUT).stdout
        values = dict(line.split("=") for line in size.split())
        return (int(values["X"]) + int(values["WIDTH"]) * 4 // 10, int(values["Y"]) + int(values["HEIGHT"]) * 6 // 10)

    def spectrum(self, source):
        self.dialog = self.open(source)
        self.dialog.press("F6")
        return self.dialog.find("Spectrum - ")

    def wait_for_pictures(self, window, name, colours):
        """Until the window shows more than a picture of nothing."""
        path = self.folder / f"{name}.png"
        deadline = time.monotonic() + TIMEOUT
        while True:
            subprocess.run(["import", "-window", window, str(path)], env=self.dialog.env, check=True, timeout=TIMEOUT,
                           capture_output=True)
            shown = int(subprocess.run(["identify", "-format", "%k", str(path)], check=True, timeout=TIMEOUT,
                                       capture_output=True, text=True).stdout)
            if shown >= colours:
                return
            assert time.monotonic() < deadline, f"{path} shows {shown} colours"
            time.sleep(0.1)

    def remember_the_output_folder(self):
        dialog = self.open()
        dialog.type(str(self.source))
        dialog.press(*["Tab"] * 5)
        dialog.type(str(self.output))
        self.assertEqual(dialog.close(), 0)

    def test_a_band_that_is_dragged_and_one_that_is_chosen_by_keys_are_cut(self):
        self.source = write_recording(self.folder / "40 m 000.wav", Layout(self.RATE, self.CENTRE),
                                      signal([Tone(0, 5000)], self.RATE, 0, self.SECONDS * self.RATE))
        self.remember_the_output_folder()
        window = self.spectrum(self.source)
        self.wait_for_pictures(window, "whole", 200)
        x, y = self.centre_of(window)
        xdotool = self.dialog.xdotool
        xdotool("mousemove", x - 60, y, "mousedown", 1)
        for step in range(1, 7):  # along the frequencies only
            xdotool("mousemove", x - 60 + 10 * step, y)
        xdotool("mouseup", 1)
        self.dialog.press("Return")
        # By keys, from the cursor on to the right and down: a stretch of time.
        self.dialog.press(*["shift+Right"] * 8, *["shift+Down"] * 8, "Return")
        self.dialog.picture("spectrum-cut", window)
        self.dialog.press("F6")
        self.dialog.find("Carvello v")
        self.dialog.press("alt+s")
        self.dialog.wait_for_log("Reader> Closed$")
        self.assertEqual(self.dialog.close(), 0)

        made = [WaveFile(self.output / name) for name in self.names()]
        self.assertEqual(len(made), 2, self.names())
        for file in made:
            file.check_complete()
        seconds = sorted(file.frames / file.rate for file in made)
        self.assertEqual(seconds[1], self.SECONDS)
        self.assertLess(seconds[0], self.SECONDS)

    def test_a_set_of_60_gigabytes_is_looked_at_at_once_and_zoomed(self):
        rate, files = 10_000_000, 15
        frames = 1_000_000_000  # a file of 4 GB
        burst = signal([Tone(1_000_000, 8000)], rate, 0, 1 << 20)
        first = self.folder / "night 000.wav"
        for i in range(files):
            write_sparse(self.folder / f"night {i:03d}.wav", Layout(rate, self.CENTRE, form="s16"), frames,
                         patches=[(frames // 2, burst)] if i == 7 else [], first_file=first.name,
                         offset_seconds=i * frames // rate)
        self.source = first
        window = self.spectrum(first)
        self.dialog.press("plus", "plus", "ctrl+plus", "shift+i", "Page_Down", "shift+Page_Up", "Home")
        self.dialog.picture("spectrum-long", window)
        self.assertIsNone(self.dialog.process.poll())
        self.dialog.press("F6")
        self.assertEqual(self.dialog.close(), 0)  # also while the overview is being made


class TestDialogStart(DialogTest):
    def test_the_dialog_tells_its_version_without_a_screen(self):
        told = subprocess.run([str(GUI), "--version"], capture_output=True, text=True, timeout=300,
                              env={"PATH": os.environ["PATH"], "LANG": "C.UTF-8"})
        self.assertEqual((told.returncode, told.stderr), (0, ""))
        self.assertRegex(told.stdout, r"^Carvello .*\nRelease: ")

    def test_a_second_copy_runs_beside_the_first(self):
        first, second = self.open(), self.open()
        self.assertIsNone(first.process.poll())
        second.press("Escape")
        self.assertEqual(second.process.wait(TIMEOUT), 0)
        self.assertIsNone(first.process.poll())

    def test_a_missing_library_is_told_and_ends_the_program(self):
        program = self.folder / "alone" / GUI.name
        program.parent.mkdir()
        shutil.copy(GUI, program)
        dialog = self.open(program=program, title="Carvello$")
        dialog.press("Return")
        self.assertEqual(dialog.process.wait(TIMEOUT), 1)

    def test_an_input_that_is_no_recording_is_told_in_the_log(self):
        path = self.folder / "text.wav"
        path.write_text("this is no recording")
        dialog = self.open(path)
        self.assertIn(f"{path}: not recognised as an IQ recording", "\n".join(dialog.log()))
        self.assertEqual(dialog.close(), 0)

    def test_more_than_one_input_is_a_usage_error(self):
        environment_without_screen = environment(QT_QPA_PLATFORM="offscreen", HOME=str(self.folder))
        done = subprocess.run([str(GUI), "a.wav", "b.wav"], env=environment_without_screen, capture_output=True,
                              text=True, timeout=TIMEOUT)
        self.assertEqual(done.returncode, 2)
        self.assertIn("[INPUT]", done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()

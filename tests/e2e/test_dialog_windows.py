"""The built dialog program, worked by keys on a screen that nobody sees: one job, what it leaves in the registry, and what
it says without its library."""
import os
import shutil
import subprocess
import time

from makers import Layout, Tone, signal, write_recording
from program import CLI, EMULATOR, TIMEOUT, EndToEndTest, command, environment, native
from same_output import assert_same_outputs
from wavtools import WaveFile

DIALOG = CLI.with_name("carvello.exe")
NATIVE_CLI = os.environ["CARVELLO_NATIVE_CLI"]
KEY = "HKCU\\Software\\Halvarn (V3)\\Carvello"
TITLE = r"^Carvello v1\.0$"
RATE = 250_000


def on_screen(*arguments):
    """Runs xdotool on the programs' screen and gives what it prints."""
    screen = subprocess.run([*EMULATOR, "--screen"], check=True, capture_output=True, text=True).stdout.strip()
    done = subprocess.run(["xdotool", *map(str, arguments)], env={**os.environ, "DISPLAY": screen}, capture_output=True,
                          text=True, timeout=TIMEOUT)
    return done.stdout


def until(condition, what):
    """Waits for the condition's first true result and gives it."""
    for _ in range(TIMEOUT):
        result = condition()
        if result:
            return result
        time.sleep(0.2)
    raise AssertionError(f"waited in vain: {what}")


def registry(*arguments):
    return subprocess.run(command(*arguments, program="reg"), env=environment(), capture_output=True, timeout=TIMEOUT)


class TestDialogProgram(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        samples = signal([Tone(10_000, 9_000), Tone(12_345, 700)], RATE, 0, 4 * RATE)
        cls.source = write_recording(cls.shared / "in ä.wav", Layout(RATE), samples)

    def setUp(self):
        super().setUp()
        registry("delete", KEY, "/f")
        self.addCleanup(registry, "delete", KEY, "/f")

    def start(self, *arguments, program=DIALOG):
        process = subprocess.Popen(command(*arguments, program=program), env=environment(), stdin=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def windows(self, title):
        return on_screen("search", "--onlyvisible", "--name", title).split()

    def activate(self, window):
        """No window manager is there; Wine wants to see a click to believe that a window has the keyboard."""
        on_screen("windowraise", window, "windowfocus", window, "mousemove", "--window", window, 4, 4, "click", 1)

    def press(self, *keys):
        on_screen("key", "--delay", 50, *keys)

    def leaves(self, window):
        """Escape, and whether the window is gone. A window that has only just come up may miss the key."""
        self.activate(window)
        self.press("Escape")
        time.sleep(0.5)
        return window not in self.windows(TITLE)

    def stored(self):
        """Type and value of everything below the key, as reg prints them."""
        text = registry("query", KEY).stdout.decode("cp437")  # of the console
        values = [line.split("    ", 3)[1:] for line in text.splitlines() if line.startswith("    ")]
        return {name: (kind, value) for name, kind, value in values}

    def test_job_gives_the_output_of_the_linux_build_and_keeps_the_choices(self):
        for name, kind, value in [("OutputFolder", "REG_SZ", native(self.output)), ("Bandwidth", "REG_DWORD", "10000"),
                                  ("Format", "REG_DWORD", "0"), ("SampleSize", "REG_DWORD", "1"),
                                  ("CentreFreq", "REG_BINARY", "70e36c0000000000")]:  # 7,136,112
            self.assertEqual(registry("add", KEY, "/v", name, "/t", kind, "/d", value, "/f").returncode, 0)
        process = self.start(self.source)
        (window,) = until(lambda: self.windows(TITLE), "the dialog")
        self.activate(window)
        for utc in ("0x0", "0x1"):  # off and on again
            self.press("alt+u")
            until(lambda: self.stored().get("UTC") == ("REG_DWORD", utc), "the switch")
        self.press("alt+c", "ctrl+a")
        on_screen("type", "--delay", 20, "7.110.000")
        self.press("alt+a")
        until(lambda: self.stored()["CentreFreq"][1].startswith("707D6C"), "the entry")
        self.press("alt+s")

        def complete():
            paths = list(self.output.iterdir())
            try:
                return paths and WaveFile(paths[0]).check_complete() is None
            except AssertionError:
                return False
        until(complete, "the output")
        until(lambda: self.leaves(window), "its end")
        self.assertEqual(process.wait(timeout=TIMEOUT), 0)

        linux = self.folder / "linux"
        linux.mkdir()
        subprocess.run([NATIVE_CLI, "cut", self.source, "--output", linux, "--quiet", "--entry",
                        "f=7.11M,bw=10k,bits=32,size=RF64"], env=environment(), check=True)
        assert_same_outputs(self, linux, self.output)

        self.assertEqual(self.stored(), {
            "InputFile": ("REG_SZ", native(self.source)), "OutputFolder": ("REG_SZ", native(self.output)),
            "Bandwidth": ("REG_DWORD", "0x2710"), "Format": ("REG_DWORD", "0x0"), "SampleSize": ("REG_DWORD", "0x1"),
            "CentreFreq": ("REG_BINARY", "707D6C0000000000"), "UTC": ("REG_DWORD", "0x1")})

    def test_two_copies_run_at_the_same_time(self):
        first, second = self.start(), self.start()
        for window in until(lambda: len(self.windows(TITLE)) == 2 and self.windows(TITLE), "two dialogs"):
            until(lambda: self.leaves(window), "its end")
        self.assertEqual((first.wait(timeout=TIMEOUT), second.wait(timeout=TIMEOUT)), (0, 0))

    def test_without_the_library_it_says_so_and_ends(self):
        alone = self.folder / "alone"
        alone.mkdir()
        shutil.copy(DIALOG, alone)
        process = self.start(self.source, program=alone / DIALOG.name)
        (window,) = until(lambda: self.windows("^Carvello$"), "the message")
        self.assertEqual(self.windows(TITLE), [])
        self.activate(window)
        self.press("Return")
        self.assertEqual(process.wait(timeout=TIMEOUT), 1)

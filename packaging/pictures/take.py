#!/usr/bin/python3
"""Takes pictures of the windows on screens of four sizes, in light and dark, in every language, to be looked at.

    take.py FOLDER [--only PATTERN] [--programs FOLDER]

Makes FOLDER/<screen>-<theme>-<language>-<what>.png of whole screens; with --only, of names that the regular expression
is found in. The programs are those of build/release/bin unless another folder is named. Needs what the tests of the
dialog need, and the right to mount: the home that the pictures show stands in a mount namespace of the script's own.
"""
import argparse
import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import time
import xml.etree.ElementTree as ElementTree
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
HOME = Path("/home/anna")
SCREENS = {"1024x768": 1, "1366x768": 1.25, "1920x1080": 1, "3840x2160": 2}
THEMES = ("light", "dark")
LANGUAGES = ("en", "de", "fr")
WHAT = ("start", "list", "sequence", "spectrum", "question", "failed", "ended", "waiting")
RATE, CENTRE, SECONDS = 240_000, 6_070_000, 40

# A desktop's dark colours, as the toolkit reads them.
DARK = """[General]
widgetStyle=Fusion
[Colors:Window]
BackgroundNormal=42,46,50
BackgroundAlternate=49,54,59
ForegroundNormal=252,252,252
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
ForegroundLink=29,153,243
ForegroundVisited=155,89,182
[Colors:Button]
BackgroundNormal=49,54,59
BackgroundAlternate=30,87,116
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
"""


# A network folder that never answers.
DEAD_DISK = r"""
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>
static void wait_for(const char* path) { if (path && !strncmp(path, "/mnt/nas/", 9)) for (;;) pause(); }
int access(const char* path, int mode) {
  wait_for(path);
  return faccessat(AT_FDCWD, path, mode, 0);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) {
  wait_for(path);
  return ((int (*)(int, const char*, int, unsigned, struct statx*))dlsym(RTLD_NEXT, "statx"))(folder, path, flags, mask,
                                                                                              status);
}
"""


def letter(language, source):
    """The underlined letter of a text of the main window."""
    text = source
    if language != "en":
        root = ElementTree.parse(PROJECT / "resources" / "translations" / f"carvello_{language}.ts").getroot()
        text = next(message.findtext("translation") for message in root.iter("message")
                    if message.findtext("source") == source)
    return re.search("&(.)", text).group(1).lower()


class Desk:
    """The program on one screen, in one theme and language."""

    def __init__(self, folder, screen, theme, language, wanted):
        from test_dialog_posix import Display

        self.folder, self.wanted, self.language = folder, wanted, language
        self.name = f"{screen}-{theme}-{language}"
        self.display = Display(screen)
        self.changes = {"QT_SCALE_FACTOR": str(SCREENS[screen]), "CARVELLO_LANGUAGE": language, "TEMP": "/tmp"}
        if theme == "dark":
            self.changes.update(XDG_CURRENT_DESKTOP="KDE", KDE_SESSION_VERSION="5")
        for name in ("config", "data"):
            shutil.rmtree(HOME / name, ignore_errors=True)
        (HOME / "config" / "Carvello").mkdir(parents=True)
        (HOME / "config" / "kdeglobals").write_text(DARK)
        self.dialog = None

    def open(self, *arguments):
        from test_dialog_posix import Dialog

        self.dialog = Dialog(self.display, HOME, *arguments, environment_changes=self.changes)

    def press_letter(self, source):
        self.dialog.press("alt+" + letter(self.language, source))

    def other_window(self):
        """A window before the main one, with the keyboard."""
        deadline = time.monotonic() + 60
        while True:
            others = [window for window in self.dialog.visible("..") if window != self.dialog.window]
            if others and self.dialog.xdotool("windowfocus", "--sync", others[-1]).returncode == 0:
                return others[-1]
            assert time.monotonic() < deadline, "no other window"
            time.sleep(0.1)

    def leave(self, *keys):
        self.other_window()
        self.dialog.press(*keys)
        deadline = time.monotonic() + 60
        while [window for window in self.dialog.visible("..") if window != self.dialog.window]:
            assert time.monotonic() < deadline, "the window stays"
            time.sleep(0.1)
        self.dialog.find("Carvello v")

    def take(self, what):
        """The screen, once nothing on it changes any more."""
        path = self.folder / f"{self.name}-{what}.png"
        if not self.wanted(path.stem):
            return
        deadline, before = time.monotonic() + 20, None
        while True:
            subprocess.run(["import", "-window", "root", "-depth", "8", str(path)], env=self.dialog.env, check=True)
            now = hashlib.sha256(subprocess.run(["convert", str(path), "rgb:-"], check=True, capture_output=True).stdout)
            if now.digest() == before or time.monotonic() > deadline:
                return
            before = now.digest()
            time.sleep(0.4)

    def wait_for_file(self, folder):
        deadline = time.monotonic() + 60
        while not folder.is_dir() or not any(path.suffix == ".json" for path in folder.iterdir()):
            assert time.monotonic() < deadline, f"nothing in {folder}"
            time.sleep(0.1)

    def end(self):
        if self.dialog:
            self.dialog.kill()
        self.display.close()


def make_recording():
    """Stations of the 49 m band over noise."""
    import numpy
    from makers import START, Layout, write_recording

    generator = numpy.random.default_rng(1)
    time_of = numpy.arange(RATE * SECONDS) / RATE
    total = generator.normal(0, 40, (len(time_of), 2)) @ [1, 1j]
    for station, (offset, amplitude) in enumerate([(-100_000, 700), (-65_000, 300), (-40_000, 900), (0, 2000),
                                                   (25_000, 500), (55_000, 1500), (95_000, 250)]):
        speech = numpy.convolve(generator.normal(0, 1, len(time_of) // 200 + 400), numpy.hanning(30), "same")
        speech = numpy.interp(time_of * RATE / 200, numpy.arange(len(speech)), speech)
        carrier = numpy.exp(2j * numpy.pi * (offset * time_of % 1))
        tone = numpy.sin(2 * numpy.pi * (400 + 300 * station) * time_of)
        total += amplitude * (1 + 0.12 * speech * tone) * carrier
    return write_recording(HOME / "Recordings" / "49 m 000.wav", Layout(RATE, CENTRE, START), total)


def make_job():
    entries = [{"frequency": CENTRE + offset, "bandwidth": bandwidth} for offset, bandwidth in
               [(-100_000, 10_000), (-65_000, 10_000), (-40_000, 12_500), (0, 10_000), (25_000, 10_000), (95_000, 10_000)]]
    entries += [{"frequency": CENTRE + 55_000, "bandwidth": 20_000, "bits": 32, "size": "RF64",
                 "output": str(HOME / "USB disk")}]
    job = HOME / "Recordings" / "49 m.json"
    job.write_text(json.dumps({"input": "49 m 000.wav", "output": "cuts", "entries": entries}))
    return job


def make_dead_disk():
    library = HOME / "dead_disk.so"
    subprocess.run(["cc", "-shared", "-fPIC", "-x", "c", "-", "-o", str(library), "-ldl"], input=DEAD_DISK, text=True,
                   check=True)
    return library


def take_all(desk, job, dead_disk):
    """All windows, one after the other."""
    desk.open()
    desk.take("start")
    desk.dialog.press("ctrl+o")
    desk.other_window()
    desk.dialog.type(str(job))
    desk.leave("Return")
    desk.wait_for_file(HOME / "data" / "Carvello" / "lists")
    desk.press_letter("&Centre freq:")
    desk.dialog.type("6.115")
    desk.press_letter("Band&width:")
    desk.dialog.type("10k")
    desk.press_letter("&Add")
    desk.take("list")
    desk.press_letter("Add Se&quence")
    desk.other_window()
    desk.take("sequence")
    desk.leave("Escape")
    desk.dialog.press("Escape")
    desk.other_window()
    desk.take("question")
    desk.leave("Escape")
    (HOME / "USB disk").rmdir()
    desk.press_letter("Unatt&ended")
    desk.press_letter("▶ &Start")
    desk.other_window()
    desk.take("failed")
    desk.leave("Return")
    desk.take("ended")
    desk.dialog.press("F6")
    desk.other_window()
    time.sleep(2)  # the view begins with stretches of the recording
    desk.take("spectrum")
    desk.dialog.kill()
    desk.changes["LD_PRELOAD"] = str(dead_disk)
    desk.open("/mnt/nas/49 m 000.wav")
    desk.take("waiting")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=Path)
    parser.add_argument("--only", default="")
    parser.add_argument("--programs", type=Path, default=PROJECT / "build" / "release" / "bin")
    options = parser.parse_args()
    if os.environ.get("CARVELLO_IN_NAMESPACE") != "1":
        os.environ.update(CARVELLO_IN_NAMESPACE="1", CARVELLO_CLI=str(options.programs / "carvello-cli"),
                          CARVELLO_GUI=str(options.programs / "carvello"), PYTHONDONTWRITEBYTECODE="1")
        os.execvp("unshare", ["unshare", "--user", "--map-root-user", "--mount", sys.executable, *sys.argv])
    sys.path.insert(0, str(PROJECT / "tests" / "e2e"))
    options.folder.mkdir(parents=True, exist_ok=True)
    subprocess.run(["mount", "-t", "tmpfs", "tmpfs", "/home"], check=True)
    (HOME / "Recordings" / "cuts").mkdir(parents=True)
    source, job, dead_disk = make_recording(), make_job(), make_dead_disk()
    pattern = re.compile(options.only)
    for screen in SCREENS:
        for theme in THEMES:
            for language in LANGUAGES:
                names = [f"{screen}-{theme}-{language}-{what}" for what in WHAT]
                if not any(pattern.search(name) for name in names):
                    continue
                for path in (HOME / "Recordings" / "cuts").iterdir():
                    path.unlink()
                (HOME / "USB disk").mkdir(exist_ok=True)
                desk = Desk(options.folder, screen, theme, language, pattern.search)
                try:
                    take_all(desk, job, dead_disk)
                finally:
                    desk.end()
                print(desk.name, flush=True)


if __name__ == "__main__":
    main()

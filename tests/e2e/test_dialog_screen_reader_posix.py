"""The dialog as a reader of the screen gets it."""
import time
import unittest

from makers import Layout, Tone, signal, write_recording
from program import TIMEOUT
from screen_reader import ScreenReaderTest


class TestScreenReader(ScreenReaderTest):
    RATE = 240_000

    def test_values_and_outcome_are_told(self):
        source = write_recording(self.folder / "40 m.wav", Layout(self.RATE, 7_100_000),
                                 signal([Tone(10_500, 5000)], self.RATE, 0, 5 * self.RATE))
        dialog = self.open_told(source)
        told = self.told(dialog)
        self.assertIn(("label", "Centre frequency: 7.100 MHz"), told)
        self.assertIn(("label", "Bandwidth: 240 kHz"), told)
        self.assertIn(("label", "Number of files: 1"), told)
        roles = {role for role, _ in told}
        for role in ("button", "check box", "combo box", "text", "progress bar"):
            self.assertIn(role, roles)
        self.assertIn(("button", "Start"), told)
        self.assertIn(("text", "Output bandwidth"), told)
        self.assertEqual([entry for entry in told if entry[0] in ("button", "check box") and not entry[1]], [])

        # Over the buttons and the box to the folder; then an entry, and the run.
        dialog.press(*["Tab"] * 5)
        dialog.type(str(self.output))
        dialog.press("alt+w", "Home", *["Down"] * 32, "alt+a", "alt+s")
        # The cells of the row with what became of it, the line below, and what is said when it changes.
        deadline = time.monotonic() + TIMEOUT
        while True:
            told = self.told(dialog, "cells")
            if (("label", "Outcome: 1 of 1 outputs written") in told and any(name == "done" for _, name in told)
                    and any("1 of 1 outputs written" in name for role, name in told if role == "notification")):
                break
            self.assertLess(time.monotonic(), deadline, told)
            time.sleep(0.5)


if __name__ == "__main__":
    unittest.main()

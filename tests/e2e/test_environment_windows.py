"""What the Windows programs run in under Wine."""
import os
import unittest
from pathlib import Path

PREFIX = Path(__file__).resolve().parents[2] / "build/wine"


def processes_named(name):
    """Those of the environment."""
    for process in Path("/proc").glob("[0-9]*"):
        try:
            if (name in (process / "cmdline").read_text().replace("\0", " ")
                    and f"WINEPREFIX={PREFIX}" in (process / "environ").read_text(errors="replace").split("\0")):
                yield process
        except OSError:
            pass  # it has ended, or is another user's


class TestEnvironment(unittest.TestCase):
    def test_the_desktop_is_there_before_the_programs_and_holds_no_output_of_theirs(self):
        """Whoever reads such an output would wait until no program with windows is left."""
        desktops = list(processes_named("explorer.exe /desktop"))
        self.assertEqual(len(desktops), 1)
        for stream in ("1", "2"):
            self.assertFalse(os.readlink(desktops[0] / "fd" / stream).startswith("pipe:"), stream)


if __name__ == "__main__":
    unittest.main()

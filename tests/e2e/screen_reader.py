"""What the window tells readers of the screen, over AT-SPI, with message buses of the test's own: what is read here is
what a user of one hears. The buses and the registry go with the session's bus.
"""
import os
import subprocess
import sys

from program import TIMEOUT
from test_dialog_posix import DialogTest

# Run by a process of its own, for the library takes its bus from the environment. Prints role and name of everything
# that is showing; and of the list's cells, asked for "cells" of all of them, else of none.
READER = r"""
import sys
import time
import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi

CELLS = "cells" in sys.argv

def walk(item):
    yield item
    if not CELLS and item.get_role() in (Atspi.Role.TABLE, Atspi.Role.LIST):
        return
    for index in range(item.get_child_count()):
        child = item.get_child_at_index(index)
        if child is not None:
            yield from walk(child)

deadline = time.monotonic() + float(sys.argv[1])
while time.monotonic() < deadline:
    desktop = Atspi.get_desktop(0)
    programs = [desktop.get_child_at_index(i) for i in range(desktop.get_child_count())]
    programs = [program for program in programs if program is not None and program.get_name() == "Carvello"]
    if programs and programs[0].get_child_count() > 0:
        break
    time.sleep(0.2)
else:
    sys.exit("the program is not on the bus")
for item in walk(programs[0]):
    if item.get_role() != Atspi.Role.TABLE_CELL and not item.get_state_set().contains(Atspi.StateType.SHOWING):
        continue
    role = item.get_role_name().replace("push button", "button")  # as the library called it once, and calls it now
    print(role, "|", item.get_name().replace("\n", " "))
"""


class ScreenReaderTest(DialogTest):
    def setUp(self):
        super().setUp()
        self.bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address=1"],
                                    stdout=subprocess.PIPE, text=True,
                                    env={**os.environ, "HOME": str(self.folder), "XDG_RUNTIME_DIR": str(self.folder),
                                         "DISPLAY": self.display.name})
        self.addCleanup(self.end_bus)
        self.address = self.bus.stdout.readline().strip()
        self.assertTrue(self.address)

    def end_bus(self):
        self.bus.terminate()
        self.bus.wait(TIMEOUT)
        self.bus.stdout.close()

    def open_told(self, *arguments):
        """The dialog, telling readers of the screen."""
        (self.folder / "config").mkdir(exist_ok=True)
        return self.open(*arguments, environment_changes={
            "DBUS_SESSION_BUS_ADDRESS": self.address, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "QT_ACCESSIBILITY": "1"})

    def read(self, dialog, *what):
        return subprocess.run([sys.executable, "-c", READER, str(TIMEOUT / 2), *what], env=dialog.env,
                              capture_output=True, text=True, timeout=TIMEOUT)

    def told(self, dialog, *what):
        """Role and name of everything in the window, as a reader of the screen gets it."""
        done = self.read(dialog, *what)
        self.assertEqual(done.returncode, 0, done.stderr)
        return [tuple(line.split(" | ", 1)) for line in done.stdout.splitlines() if " | " in line]

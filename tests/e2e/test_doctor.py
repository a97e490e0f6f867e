"""doctor and --version: what a report about a fault needs."""
import os
import re
import tempfile
import unittest
from pathlib import Path

from program import environment, native, run, run_ok


class TestVersion(unittest.TestCase):
    def test_first_line_is_the_title_and_the_others_tell_what_it_is_made_of(self):
        lines = run_ok("--version").out.splitlines()
        self.assertRegex(lines[0], r"^Carvello version \d+\.\d+ build \d+$")
        facts = dict(line.split(": ", 1) for line in lines[1:])
        self.assertEqual(list(facts), ["Release", "Commit", "Compiler", "Instruction set", "Library"])
        self.assertRegex(facts["Release"], r"^\d+\.\d+\.\d+$")
        self.assertRegex(facts["Commit"], r"^([0-9a-f]{40,}(, modified)?|not known: .*)$")
        self.assertRegex(facts["Library"], rf"^Vantrel {re.escape(facts['Release'])}, \w+$")

    def test_instruction_set_is_the_one_in_use(self):
        lines = run_ok("--version", env=environment(CARVELLO_ISA="plain")).out.splitlines()
        self.assertRegex(lines[4], r"^Instruction set: plain \(this processor has plain")
        self.assertRegex(lines[5], r"^Library: Vantrel \S+, plain$")


class TestDoctor(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_tells_every_fact_as_text_and_as_json(self):
        text = run_ok("doctor", self.folder).out
        for title in ("Program", "Downconverter library", "System", "Folders in use", f"Disk of {native(self.folder)}",
                      "Short cut in memory"):
            self.assertIn(f"{title}\n  ", text)
        self.assertRegex(text, r"\n  result: +right: \d+ frames, as were due\n$")
        told = run_ok("doctor", self.folder, "--json").json()
        self.assertTrue(told["sound"])
        self.assertTrue(told["cut"]["right"])
        self.assertEqual(os.listdir(self.folder), [])

    def test_measures_nothing_when_asked_to(self):
        told = run_ok("doctor", self.folder, "--json", "--no-speed").json()
        self.assertNotIn("writeBytesPerSecond", told["disks"][0])
        self.assertIsNone(told["cut"]["framesPerSecond"])

    def test_measured_speeds_and_what_was_tried_are_told(self):
        told = run_ok("doctor", self.folder, "--json").json()
        self.assertEqual(told["disks"][0]["state"], "writable")
        self.assertGreater(told["disks"][0]["writeBytesPerSecond"], 0)
        self.assertGreater(told["disks"][0]["readBytesPerSecond"], 0)
        self.assertIsInstance(told["disks"][0]["readPastCache"], bool)
        self.assertGreater(told["cut"]["framesPerSecond"], 0)
        self.assertEqual(told["library"]["entryPoints"], 18)
        self.assertGreaterEqual(told["system"]["processorsAllowed"], 1)
        for key in ("system", "kernel", "runtime", "processor", "timeZone"):
            self.assertTrue(told["system"][key], key)

    def test_an_empty_name_of_a_folder_is_refused(self):
        refused = run("doctor", "--no-speed", "")
        self.assertEqual(refused.code, 2)
        self.assertIn("FOLDER: a name is empty", refused.err)

    def test_folders_that_are_not_there_are_no_failure(self):
        told = run_ok("doctor", self.folder / "gone", "--json").json()
        self.assertEqual(told["disks"][0]["state"], "does not exist")
        self.assertTrue(told["problems"]["disks[0].writeBytesPerSecond"])


if __name__ == "__main__":
    unittest.main()

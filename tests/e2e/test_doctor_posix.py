"""doctor where something is missing or refused: it tells so, and goes on."""
import json
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from program import CLI, as_plain_user, environment, run_ok

# The program under the file-size limit of a shell, whose signal it does not take for its end.
LIMITED = 'ulimit -f 64; exec "$0" "$@"'


class TestDoctorWithoutSomething(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def names(self):
        return sorted(os.listdir(self.folder))

    def test_looks_at_the_present_folder_unless_told_otherwise(self):
        told = run_ok("doctor", "--json", "--no-speed", cwd=self.folder).json()
        self.assertEqual([disk["folder"] for disk in told["disks"]], [os.path.realpath(self.folder)])

    def test_hides_the_home_folder(self):
        told = run_ok("doctor", self.folder / "x", "--json",
                      env=environment(HOME=str(self.folder), XDG_CONFIG_HOME="", XDG_CACHE_HOME="", XDG_DATA_HOME=""))
        self.assertNotIn(str(self.folder), told.out)
        self.assertEqual(told.json()["folders"]["settings"], "~/.config/Carvello, does not exist")
        self.assertEqual(told.json()["disks"][0]["folder"], "~/x")

    def test_without_the_library_it_tells_why_and_all_the_rest(self):
        program = self.folder / "carvello-cli"
        shutil.copy(CLI, program)
        told = run_ok("doctor", self.folder, "--json", program=program).json()
        self.assertIn("cannot open shared object file", told["problems"]["library.entryPoints"])
        self.assertEqual(told["problems"]["cut.framesPerSecond"], "there is no downconverter library")
        self.assertGreater(told["disks"][0]["writeBytesPerSecond"], 0)
        (self.folder / "libVantrel.so").write_bytes(b"no library")
        told = run_ok("doctor", self.folder, "--json", program=program).json()
        self.assertIn("file too short", told["problems"]["library.entryPoints"])
        self.assertIn("\nLibrary: not usable: ", run_ok("--version", program=program).out)

    def test_without_a_home_or_an_environment_it_tells_what_is_missing(self):
        told = run_ok("doctor", self.folder, "--json", env={"NOTHING": ""}).json()
        for key in ("folders.settings", "folders.overviews", "folders.lists"):
            self.assertIn(key, told["problems"])
        self.assertIn("system.locale", told["problems"])

    def test_folders_that_are_none_are_told_with_the_reason(self):
        (self.folder / "file").write_bytes(b"")
        told = run_ok("doctor", self.folder / "gone", self.folder / "file", "/proc", "--json").json()
        self.assertEqual([disk["state"] for disk in told["disks"][:2]], ["does not exist", "is a file"])
        for i in range(3):
            self.assertIn(f"disks[{i}].writeBytesPerSecond", told["problems"])

    def test_a_disk_that_takes_no_more_is_told_and_nothing_stays(self):
        done = subprocess.run(["bash", "-c", LIMITED, str(CLI), "doctor", str(self.folder), "--json"],
                              capture_output=True, env=environment(), timeout=300)
        self.assertEqual(done.returncode, 0, done.stderr)
        told = json.loads(done.stdout)
        self.assertIn("File too large", told["problems"]["disks[0].writeBytesPerSecond"])
        self.assertEqual(self.names(), [])

    def test_a_folder_that_may_not_be_written_to_is_told(self):
        program, user = as_plain_user(self.folder)
        folder = self.folder / "closed"
        folder.mkdir()
        folder.chmod(0o555)
        told = run_ok("doctor", folder, "--json", program=program, **user).json()
        self.assertEqual(told["disks"][0]["state"], "not writable: Permission denied")
        self.assertIn("Permission denied", told["problems"]["disks[0].writeBytesPerSecond"])
        self.assertGreater(told["disks"][0]["freeBytes"], 0)

    def test_limits_of_the_process_are_told(self):
        one = min(os.sched_getaffinity(0))
        told = json.loads(subprocess.run(["taskset", "-c", str(one), str(CLI), "doctor", "--no-speed", "--json"],
                                         check=True, capture_output=True, env=environment()).stdout)
        self.assertEqual(told["system"]["processorsAllowed"], 1)
        self.assertEqual(told["system"]["processors"], os.sysconf("SC_NPROCESSORS_ONLN"))

    def test_processors_that_slurm_grants_are_told_and_bound_the_threads(self):
        told = run_ok("doctor", "--json", env={"SLURM_CPUS_PER_TASK": "1"}).json()
        self.assertEqual(told["system"]["processorsGranted"], 1)
        self.assertNotIn("framesPerSecondTogether", told["cut"])  # with one processor there is no second figure
        told = run_ok("doctor", "--no-speed", "--json", env={"SLURM_CPUS_PER_TASK": "many"}).json()
        self.assertNotIn("processorsGranted", told["system"])

    def test_a_lost_report_is_told(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([str(CLI), "doctor", "--no-speed"], stdout=full, stderr=subprocess.PIPE,
                                  env=environment(), timeout=300)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"the result could not be written to stdout", done.stderr)


if __name__ == "__main__":
    unittest.main()

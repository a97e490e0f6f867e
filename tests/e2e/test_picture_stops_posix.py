"""`picture` and `scan`, stopped or without room: nothing half made is left."""
import resource
import shlex
import signal
import subprocess
import time
import unittest
from pathlib import Path

from makers import Layout, write_sparse
from program import TIMEOUT, EndToEndTest, command, contents, environment, run, run_ok, start


class TestPictureStops(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = cls.shared / "in.wav"
        run_ok("synth", cls.source, "--rate", "200k", "--seconds", "3", "--noise", "-50")
        cls.stations = cls.shared / "stations.wav"
        run_ok("synth", cls.stations, "--rate", "200k", "--seconds", "3", "--noise", "-60", "--station", "7.13M:-40",
               "--station", "7.05M:-30:am")
        cls.long = write_sparse(cls.shared / "long.wav", Layout(10_000_000), 120_000_000)

    @staticmethod
    def reads(process, path):
        """Whether it has come past the head of the file."""
        try:
            for link in Path(f"/proc/{process.pid}/fd").iterdir():
                if link.readlink() == path:
                    info = Path(f"/proc/{process.pid}/fdinfo/{link.name}").read_text()
                    return int(info.split()[1]) > 1_000_000
        except OSError:
            pass  # closed or ended by now
        return False

    def stop(self, number, *arguments):
        """Sends the signal while the program reads the long recording, which takes it a quarter of a second and more."""
        process = start(*arguments)
        while process.poll() is None and not self.reads(process, self.long):
            time.sleep(0.001)
        process.send_signal(number)
        return process.wait(60)

    def test_a_stop_leaves_nothing(self):
        out = self.folder / "out.png"
        jobs = self.folder / "jobs.json"
        for number in (signal.SIGINT, signal.SIGTERM):
            for arguments in (["picture", self.long, out, "--quiet", "--from", "7.1M", "--to", "7.11M"],
                              ["scan", self.long, "--quiet", "--jobs", jobs]):
                with self.subTest(number=number, command=arguments[0]):
                    self.assertEqual(self.stop(number, *arguments), 130)
                    self.assertEqual(contents(self.folder).keys(), {"output"})

    def test_a_kill_leaves_what_was_there(self):
        out = self.folder / "out.png"
        out.write_bytes(b"before")
        self.assertEqual(self.stop(signal.SIGKILL, "picture", self.long, out, "--quiet", "--overwrite", "--from", "7.1M",
                                   "--to", "7.11M"), -signal.SIGKILL)
        self.assertEqual(out.read_bytes(), b"before")

    def test_streams_that_are_closed_or_take_nothing_lose_no_file(self):
        jobs, whole, out = (self.folder / name for name in ("jobs.json", "whole.png", "out.png"))
        report = run_ok("scan", self.stations, "--json", "--jobs", jobs).out
        entries = jobs.read_bytes()
        run_ok("picture", self.stations, whole)
        for streams, code in (("2>&-", 0), ("2>/dev/full", 0), ("0<&- 2>&-", 0), ("1>&-", 1), (">/dev/full", 1),
                              ("0<&- 1>&- 2>&-", 1)):
            with self.subTest(streams=streams):
                # A picture has nothing to say on stdout.
                self.assertEqual(self.redirected(streams, "picture", self.stations, out, "--overwrite").returncode, 0)
                self.assertEqual(out.read_bytes(), whole.read_bytes())
                jobs.unlink()
                done = self.redirected(streams, "scan", self.stations, "--json", "--jobs", jobs)
                self.assertEqual(done.returncode, code)
                self.assertEqual(done.stdout.decode(), report if code == 0 else "")
                if code == 1 and "2>" not in streams:
                    self.assertIn("the result could not be written to stdout", done.stderr.decode())
                self.assertEqual(jobs.read_bytes(), entries)

    def redirected(self, streams, *arguments):
        return subprocess.run(["sh", "-c", f"{shlex.join(command(*arguments))} {streams}"], env=environment(),
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=TIMEOUT)

    def test_without_room_for_the_job_file_the_list_is_still_told(self):
        jobs = self.folder / "jobs.json"
        report = run_ok("scan", self.stations, "--json").out
        options = ("scan", self.stations, "--quiet", "--json", "--jobs", jobs)
        limit = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))}
        result = run(*options, **limit)
        self.assertEqual((result.code, result.out), (1, report))
        self.assertIn("jobs.json: ", result.err)
        self.assertEqual(contents(self.folder).keys(), {"output"})
        jobs.write_bytes(b"before")
        self.assertEqual(run(*options, "--overwrite", **limit).code, 1)
        self.assertEqual(jobs.read_bytes(), b"before")
        self.assertEqual(contents(self.folder).keys(), {"output", "jobs.json"})

    def test_without_room_the_reason_is_told_and_nothing_is_left(self):
        out = self.folder / "out.png"
        result = run("picture", self.source, out, "--quiet",
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (10_000, 10_000)))
        self.assertEqual(result.code, 1)
        self.assertIn("out.png: ", result.err)
        self.assertEqual(contents(self.folder).keys(), {"output"})
        out.write_bytes(b"before")
        result = run("picture", self.source, out, "--quiet", "--overwrite",
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (10_000, 10_000)))
        self.assertEqual(result.code, 1)
        self.assertEqual(out.read_bytes(), b"before")
        self.assertEqual(contents(self.folder).keys(), {"output", "out.png"})


if __name__ == "__main__":
    unittest.main()

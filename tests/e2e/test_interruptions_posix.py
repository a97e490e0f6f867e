"""What is left on disk when a job is killed, stopped, or loses its input: signals as POSIX has them."""
import json
import os
import signal as signals
import subprocess
import time
import unittest
from pathlib import Path

from makers import Layout, write_sparse
from program import SLOW, TIMEOUT, EndToEndTest, start
from wavtools import WaveFile

BUFFER = 16 << 20  # bytes that a writer collects before it writes them


class InterruptionTest(EndToEndTest):
    """An input that takes much longer than the tests need, cut 1:1 so that the outputs grow fast."""

    RATE = 1_000_000

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_sparse(cls.shared / "long.wav", Layout(cls.RATE, form="s8"), 600 * cls.RATE)

    def start_cut(self, *arguments, source=None, **options):
        process = start("cut", source or self.source, "--output", self.output, *arguments, **options)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
        process.communicate()

    def wait_for_growth(self, process, path, size):
        deadline = time.monotonic() + TIMEOUT
        while not (path.exists() and path.stat().st_size >= size):
            self.assertIsNone(process.poll(), "the program ended too early")
            self.assertLess(time.monotonic(), deadline, f"{path} does not grow")
            time.sleep(0.002)


class TestKilled(InterruptionTest):
    def killed(self, name, entry, size):
        process = self.start_cut("--entry", entry, stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        path = self.output / name
        self.wait_for_growth(process, path, size)
        process.send_signal(signals.SIGKILL)
        self.assertEqual(process.wait(TIMEOUT), -signals.SIGKILL)
        return WaveFile(path)

    def check_readable(self, file):
        info = self.info(file.path)
        self.assertEqual(info["dataBytes"], [file.data_bytes])
        self.assertEqual(info["seconds"], file.data_bytes / (8 * self.RATE))
        # The whole of what the sizes cover can be cut.
        out = self.folder / "again"
        out.mkdir()
        output, = self.cut(file.path, "--entry", "f=7.15M,bw=10k", output=out)
        self.assertAlmostEqual(output["frames"], file.frames // 100, delta=64)

    def test_wav_sizes_cover_every_block_up_to_the_last_one_written(self):
        file = self.killed("2020-11-01 2359z, f=7.150 MHz, bw=1 MHz 000.wav", "f=7.15M,bw=1M,bits=32,size=1GB",
                           5 * BUFFER)
        self.assertEqual(file.form, b"RIFF")
        on_disk = file.length - file.data_offset
        # The kill may have hit while a block was being written, or between a block and its sizes.
        self.assertLessEqual(file.data_bytes, on_disk)
        self.assertGreaterEqual(file.data_bytes, on_disk - BUFFER)
        self.assertGreaterEqual(file.data_bytes, 3 * BUFFER)
        self.assertEqual(file.riff_size, file.data_offset + file.data_bytes - 8)
        self.check_readable(file)

    def test_rf64_sizes_cover_everything_up_to_the_last_patch(self):
        file = self.killed("2020-11-01 2359z, f=7.150 MHz, bw=1 MHz.wav", "f=7.15M,bw=1M,bits=32,size=RF64",
                           5 * BUFFER)
        self.assertEqual(file.form, b"RF64")
        # The first block is always followed by its sizes; later ones at most every 16 seconds.
        self.assertGreater(file.data_bytes, BUFFER // 2)
        self.assertLessEqual(file.data_bytes, file.length - file.data_offset)
        riff_size, data_bytes, values, table = file.ds64
        self.assertEqual(riff_size, file.data_offset + data_bytes - 8)
        self.assertEqual((values, table), (data_bytes // 4, 0))
        self.check_readable(file)


class TestStopped(InterruptionTest):
    def wait_for_handler(self, process, number):
        deadline = time.monotonic() + TIMEOUT
        while True:
            status = Path(f"/proc/{process.pid}/status").read_text()
            caught = int(next(line for line in status.splitlines() if line.startswith("SigCgt")).split()[1], 16)
            if caught >> (number - 1) & 1:
                return
            self.assertIsNone(process.poll(), "the program ended too early")
            self.assertLess(time.monotonic(), deadline, "requests to stop are not looked at")
            time.sleep(0.002)

    def test_stop_before_the_job_has_begun_ends_at_once(self):
        for number in (signals.SIGINT, signals.SIGTERM, signals.SIGHUP):
            with self.subTest(number):
                # Looking through so many entries takes a while, even where nothing else runs.
                process = self.start_cut("--sequence", "7.1M:7190000:1", "--bw", "1k", "--json", "--skip-existing",
                                         stdout=subprocess.PIPE, stderr=subprocess.PIPE)
                self.wait_for_handler(process, number)
                process.send_signal(number)
                out, _ = process.communicate(timeout=TIMEOUT)
                self.assertEqual((process.returncode, out), (130, b""))
                self.assertEqual(self.names(), [])

    def stopped_by(self, number):
        process = self.start_cut("--entry", "f=7.15M,bw=1M,bits=32", "--entry", "f=7.2M,bw=100k,size=RF64", "--json",
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.wait_for_growth(process, self.output / "2020-11-01 2359z, f=7.150 MHz, bw=1 MHz 000.wav", BUFFER)
        process.send_signal(number)
        out, err = process.communicate(timeout=TIMEOUT)
        self.assertEqual(process.returncode, 130, err)
        self.assertNotIn(b"Sanitizer", err)
        frames = {}
        for name in self.names():
            file = WaveFile(self.output / name)
            file.check_complete()
            frames[file.rate] = frames.get(file.rate, 0) + file.frames
        outputs = json.loads(out)["outputs"]
        self.assertEqual({each["bandwidth"]: each["frames"] for each in outputs}, frames)
        self.assertEqual([(each["ok"], each["error"]) for each in outputs], [(False, "stopped")] * 2)
        self.assertGreater(frames[1_000_000], 0)
        self.assertLess(frames[1_000_000], 600 * self.RATE)
        # Both outputs end at the same place of the input.
        self.assertAlmostEqual(frames[1_000_000] / 10, frames[100_000], delta=64)

    def test_ctrl_c_finishes_every_file(self):
        self.stopped_by(signals.SIGINT)

    def test_request_to_terminate_finishes_every_file(self):
        self.stopped_by(signals.SIGTERM)

    def test_end_of_the_terminal_finishes_every_file(self):
        self.stopped_by(signals.SIGHUP)

    def test_started_with_nohup_it_outlives_the_terminal(self):
        process = self.start_cut("--entry", "f=7.15M,bw=1M,bits=32,size=RF64", "--quiet", stderr=subprocess.PIPE,
                                 preexec_fn=lambda: signals.signal(signals.SIGHUP, signals.SIG_IGN))
        path = self.output / "2020-11-01 2359z, f=7.150 MHz, bw=1 MHz.wav"
        self.wait_for_growth(process, path, BUFFER)
        process.send_signal(signals.SIGHUP)
        self.wait_for_growth(process, path, path.stat().st_size + 10 * BUFFER)
        process.send_signal(signals.SIGTERM)
        process.communicate(timeout=TIMEOUT)
        self.assertEqual(process.returncode, 130)

    def test_ctrl_c_between_batches_starts_no_further_one(self):
        count = 1001
        process = self.start_cut("--sequence", f"7.1M:{7_100_000 + count - 1}:1", "--bw", "1k", "--json",
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.wait_for_growth(process, self.output / "2020-11-01 2359z, f=7.100 MHz, bw=1 kHz 000.wav", 1)
        process.send_signal(signals.SIGINT)
        out, err = process.communicate(timeout=TIMEOUT)
        self.assertEqual(process.returncode, 130)
        self.assertLess(len(self.names()), count)
        # Told for some and counted for the rest: the terminal goes on showing what was said before.
        self.assertEqual(err.count(b": stopped"), 20)
        self.assertIn(b"... and 981 more", err)
        self.assertEqual([(each["ok"], each["error"]) for each in json.loads(out)["outputs"]],
                         [(False, "stopped")] * count)
        for name in self.names():
            WaveFile(self.output / name).check_complete()


class TestLostInput(InterruptionTest):
    def test_second_file_that_vanishes_ends_the_job_with_what_was_read(self):
        layout = Layout(self.RATE, form="s8")
        seconds = 20 if SLOW else 60
        first = write_sparse(self.folder / "set 000.wav", layout, seconds * self.RATE, first_file="set 000.wav")
        second = write_sparse(self.folder / "set 001.wav", layout, 10 * self.RATE, (), "set 000.wav", seconds)
        process = self.start_cut("--entry", "f=7.1M,bw=1M,size=RF64", "--json", source=first, stdout=subprocess.PIPE,
                                 stderr=subprocess.PIPE)
        self.wait_for_growth(process, self.output / "2020-11-01 2359z, f=7.100 MHz, bw=1 MHz.wav", BUFFER)
        second.unlink()
        out, err = process.communicate(timeout=TIMEOUT)
        self.assertEqual(process.returncode, 1, err)
        self.assertIn(b"set 001.wav", err)
        file = WaveFile(self.output / self.names()[0])
        file.check_complete()
        self.assertAlmostEqual(file.frames, seconds * self.RATE, delta=64)

    def test_file_that_describes_the_input_changes_while_that_is_read(self):
        seconds = 30 if SLOW else 100
        data = self.folder / "in.sigmf-data"
        data.touch()
        os.truncate(data, 4 * seconds * self.RATE)
        meta = data.with_suffix(".sigmf-meta")
        meta.write_text(json.dumps({"global": {"core:datatype": "ci16_le", "core:version": "1.2.5", "core:sample_rate": self.RATE},
                                    "captures": [{"core:sample_start": 0, "core:frequency": 7_100_000,
                                                  "core:datetime": "2020-11-01T23:59:00Z"}], "annotations": []}))
        process = self.start_cut("--entry", "f=7.1M,bw=1M,size=RF64", source=meta, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE)
        self.wait_for_growth(process, self.output / "2020-11-01 2359z, f=7.100 MHz, bw=1 MHz.wav", BUFFER)
        meta.write_text(meta.read_text().replace("7100000", "17100000"))
        _, err = process.communicate(timeout=TIMEOUT)
        self.assertEqual(process.returncode, 1, err)
        self.assertIn(b"in.sigmf-meta, which describes it, has changed since it was analysed", err)

    def test_file_that_shrinks_while_it_is_read(self):
        seconds = 30 if SLOW else 100
        source = write_sparse(self.folder / "in.wav", Layout(self.RATE, form="s8"), 2 * seconds * self.RATE)
        process = self.start_cut("--entry", "f=7.1M,bw=1M,size=RF64", source=source, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE)
        self.wait_for_growth(process, self.output / "2020-11-01 2359z, f=7.100 MHz, bw=1 MHz.wav", BUFFER)
        os.truncate(source, 2 * seconds * self.RATE)
        _, err = process.communicate(timeout=TIMEOUT)
        self.assertEqual(process.returncode, 1, err)
        self.assertIn(b"in.wav: it has changed since it was analysed", err)
        # Nothing that was read after the change counts, though some of it may be what it was.
        file = WaveFile(self.output / self.names()[0])
        file.check_complete()
        self.assertGreater(file.frames, 0)
        self.assertLessEqual(file.frames, seconds * self.RATE)


if __name__ == "__main__":
    unittest.main()

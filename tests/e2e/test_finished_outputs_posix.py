"""What --skip-existing, --overwrite and a second job make of what stands under an output's name."""
import signal as signals
import time

from makers import Layout, write_sparse
from program import SLOW, EndToEndTest, local, run, run_ok, start
from same_output import assert_same_outputs
from wavtools import WaveFile

RATE = 1_000_000
SECONDS = 20 if SLOW else 40
ENTRIES = ("--entry", "f=7.1M,bw=500k,bits=32", "--entry", "f=7.2M,bw=100k,size=RF64")


class TestFinishedOutputs(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_sparse(cls.shared / "in.wav", Layout(RATE, form="s8"), SECONDS * RATE)

    def again(self, *arguments):
        return run("cut", self.source, "--output", self.output, "--json", *ENTRIES, *arguments)

    def test_what_a_killed_job_left_is_done_again_and_what_is_finished_is_left_alone(self):
        full = self.folder / "full"
        full.mkdir()
        self.cut(self.source, *ENTRIES, output=full)
        process = start("cut", self.source, "--output", self.output, "--quiet", *ENTRIES)
        while not any(path.stat().st_size > 24_000_000 for path in self.output.iterdir()):
            self.assertIsNone(process.poll(), "the job was over before it could be killed")
            time.sleep(0.005)
        process.send_signal(signals.SIGKILL)
        process.wait()
        begun = [path.name for path in self.output.iterdir() if path.stat().st_size > 24_000_000]
        self.assertNotEqual(begun, [])
        for name in begun:
            self.assertIn("not finished", run_ok("info", self.output / name).out)
            self.assertEqual(self.info(self.output / name)["unfinishedFiles"], [str(self.output / name)])

        result = self.again("--skip-existing")
        self.assertEqual(result.code, 0, result.err)
        self.assertIn("done again, for an earlier job has not finished them", result.err)
        self.assertEqual([output["ok"] for output in result.json()["outputs"]], [True, True])
        assert_same_outputs(self, full, self.output)
        for name in self.names():
            self.assertNotIn("not finished", run_ok("info", self.output / name).out)

        before = {path: path.stat().st_mtime_ns for path in self.output.iterdir()}
        result = self.again("--skip-existing")
        self.assertEqual(result.code, 0, result.err)
        self.assertEqual(before, {path: path.stat().st_mtime_ns for path in self.output.iterdir()})

    def test_info_says_not_finished_of_an_output_without_samples_too(self):
        one = self.cut_one(self.source, "f=7.2M,bw=100k,size=RF64")
        header = WaveFile(one).data_offset
        stub = bytearray(one.read_bytes()[:header])
        stub[20:44] = bytes(24)  # sizes as they stand before the first samples
        one.write_bytes(stub)
        result = run("info", one)
        self.assertEqual(result.code, 3)
        self.assertIn("the file is not finished", result.err)

    def test_another_recording_of_that_name_is_neither_replaced_nor_called_ok(self):
        one = self.cut_one(self.source, "f=7.2M,bw=100k,size=RF64")
        before = one.read_bytes()
        result = run("cut", self.source, "--output", self.output, "--json", "--skip-existing",
                     "--entry", "f=7.2M,bw=100k,size=RF64,bits=32")
        self.assertEqual(result.code, 1)
        self.assertIs(result.json()["outputs"][0]["ok"], False)
        self.assertIn("another recording, 16 bits at 100000 Hz", result.err)
        self.assertEqual(one.read_bytes(), before)

    def test_of_two_jobs_with_one_name_exactly_one_succeeds(self):
        # Two names that nothing in a job could mix up: one file, and parts.
        for entry in ("f=7.2M,bw=1M,bits=32,size=RF64", "f=7.1M,bw=1M,bits=32"):
            for arguments in ((), ("--overwrite",)):
                with self.subTest(entry=entry, arguments=arguments):
                    for path in self.output.iterdir():
                        path.unlink()
                    if arguments:
                        self.cut(self.source, "--entry", entry)
                    jobs = [start("cut", self.source, "--output", self.output, "--quiet", "--entry", entry, *arguments)
                            for _ in range(2)]
                    codes = sorted(job.wait() for job in jobs)
                    self.assertEqual(codes[0], 0)
                    self.assertIn(codes[1], (1, 4))
                    frames = sum(self.whole(path).frames for path in self.output.iterdir())
                    self.assertEqual(frames, SECONDS * RATE)

    def whole(self, path):
        file = WaveFile(path)
        file.check_complete()
        return file

    def test_a_link_that_leads_nowhere_is_not_followed(self):
        one = self.cut_one(self.source, "f=7.2M,bw=100k,size=RF64")
        one.unlink()
        target = self.folder / "target"
        one.symlink_to(target)
        for option, code in (((), 4), (("--skip-existing",), 1)):
            result = run("cut", self.source, "--output", self.output, "--entry", "f=7.2M,bw=100k,size=RF64", *option)
            self.assertEqual(result.code, code, result.err)
            self.assertFalse(target.exists())
            self.assertTrue(one.is_symlink())

    def test_outputs_of_a_relative_folder_tell_the_whole_path(self):
        outputs = self.cut(self.source, "--entry", "f=7.2M,bw=100k,size=RF64", output="./output", cwd=self.folder)
        path = local(outputs[0]["files"][0])
        self.assertEqual(path.parent, self.output.resolve() if not self.output.is_absolute() else self.output)
        metadata = self.info(path)
        self.assertEqual(metadata["metadata"]["Folder"].replace("\\", "/"), str(self.output))
        self.assertIn(str(path), metadata["infoTexts"]["ICMT"])

    def test_without_waiting_for_the_disk_the_same_is_written(self):
        waited = self.folder / "waited"
        waited.mkdir()
        self.cut(self.source, *ENTRIES, output=waited)
        self.cut(self.source, *ENTRIES, "--no-sync")
        assert_same_outputs(self, waited, self.output)

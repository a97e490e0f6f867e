"""Folders that may be written to and not be listed, as those are that many drop their recordings into."""
import unittest

from program import EndToEndTest, as_plain_user, run, run_ok


class TestDropFolder(EndToEndTest):
    def test_outputs_go_there_and_are_found_again(self):
        recording = self.folder / "rec.wav"
        run_ok("synth", recording, "--rate", 250_000, "--centre", 7_100_000, "--seconds", 3)
        program, rights = as_plain_user(self.folder)
        recording.chmod(0o644)
        drop = self.folder / "drop"
        drop.mkdir()
        drop.chmod(0o333)
        self.addCleanup(drop.chmod, 0o755)
        arguments = ("cut", recording, "--output", drop, "--entry", "f=7.1M,bw=10k", "--entry", "f=7.15M,bw=10k,format=sigmf")

        def cut(*options):
            return run(*arguments, *options, program=program, **rights)

        self.assertEqual(cut().code, 0)
        for options, code in (((), 4), (("--skip-existing",), 0), (("--overwrite",), 0)):
            done = cut(*options)
            self.assertEqual(done.code, code, done.err)
        drop.chmod(0o755)
        self.assertEqual(len(list(drop.iterdir())), 3)

    def test_parts_of_a_longer_output_are_found_there_one_by_one(self):
        recording = self.folder / "rec.wav"
        run_ok("synth", recording, "--rate", 250_000, "--centre", 7_100_000, "--seconds", 3)
        run_ok("cut", recording, "--output", self.output, "--entry", "f=7.1M,bw=10k")
        part = next(self.output.glob("* 000.wav"))
        for number in (1, 2, 4):  # the last one is of none that goes on
            (self.output / part.name.replace(" 000.wav", f" {number:03d}.wav")).write_bytes(part.read_bytes())
        program, rights = as_plain_user(self.folder)
        recording.chmod(0o644)
        for path in self.output.iterdir():
            path.chmod(0o666)
        self.output.chmod(0o333)
        self.addCleanup(self.output.chmod, 0o755)
        done = run("cut", recording, "--output", self.output, "--entry", "f=7.1M,bw=10k", "--overwrite", program=program,
                   **rights)
        self.output.chmod(0o755)
        self.assertEqual(done.code, 0, done.err)
        self.assertEqual(sorted(path.name[-8:] for path in self.output.iterdir()), [" 000.wav", " 004.wav"])


if __name__ == "__main__":
    unittest.main()

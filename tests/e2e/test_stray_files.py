"""Files that belong to nobody: each is refused with a clear line when it is selected, gets a clear line when it lies
beside a recording, and never keeps a set from being found."""
import unittest

import foreign_makers as foreign
from program import EndToEndTest, native, run, run_ok

RATE = 1000
CENTRE = 7_050_000


def at(second):
    return (2023, 4, 15, 12, 0, second)


class StrayFileTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.members = [foreign.write(self.folder / f"member {number}.wav", RATE, bytes(4 * 4 * RATE),
                                      [foreign.auxi(164, at(4 * number), at(4 * number + 4), CENTRE)])
                        for number in range(2)]

    def check_neighbour(self, path, said, **options):
        for member in self.members:
            result = run_ok("info", member, "--json", **options)
            self.assertEqual(result.json()["files"], [native(each) for each in self.members])
            lines = [line for line in result.err.splitlines() if path.name in line]
            self.assertEqual(len(lines), 1, result.err)
            self.assertIn(said, lines[0])

    def check_refusal(self, path, said, **options):
        for arguments in (("info", path), ("chunks", path),
                          ("cut", path, "--output", self.output, "--entry", "f=7.05M,bw=100")):
            result = run(*arguments, **options)
            self.assertEqual(result.code, 3, result.err)
            self.assertIn(path.name, result.err)
            if arguments[0] != "chunks":
                self.assertIn(said, result.err)
        self.assertEqual(self.names(), [])

    def check(self, path, said, **options):
        self.check_neighbour(path, said, **options)
        self.check_refusal(path, said, **options)


class TestStrayFiles(StrayFileTest):
    def test_empty_file(self):
        path = self.folder / "empty.wav"
        path.touch()
        self.check(path, "empty")

    def test_text_file_named_wav(self):
        path = self.folder / "text.wav"
        path.write_text("This is no recording.\n" * 100)
        self.check(path, "not a RIFF or RF64 file")

    def test_folder_named_wav(self):
        path = self.folder / "x.wav"
        path.mkdir()
        self.check(path, "folder")

    def test_auxi_chunk_of_100_bytes(self):
        path = foreign.write(self.folder / "rec_7050khz.wav", RATE, bytes(4 * RATE),
                             [foreign.chunk(b"auxi", bytes(100))])
        self.check_neighbour(path, "100 bytes")
        result = run_ok("info", path, "--json")
        self.assertEqual((result.json()["source"], result.json()["centreFrequency"]), ("UnknownFmt", CENTRE))
        self.assertIn("100 bytes", result.err)

    def test_file_that_ends_in_its_header(self):
        path = self.folder / "short.wav"
        path.write_bytes(self.members[0].read_bytes()[:30])
        self.check(path, "fmt ")

    def test_all_of_them_at_once(self):
        (self.folder / "empty.wav").touch()
        (self.folder / "text.wav").write_text("text")
        (self.folder / "x.wav").mkdir()
        (self.folder / "notes.txt").write_text("text")
        result = run_ok("info", self.members[1], "--json")
        self.assertEqual(result.json()["files"], [native(each) for each in self.members])
        self.assertEqual(len(result.err.splitlines()), 3, result.err)
        output, = self.cut(self.members[1], "--entry", "f=7.05M,bw=100")
        self.assertEqual(output["frames"], 800)


if __name__ == "__main__":
    unittest.main()

"""Standard streams that whoever started the program has closed, or that take nothing."""
import json
import shlex
import subprocess

from makers import Layout, write_sparse
from program import TIMEOUT, EndToEndTest, command, environment
from same_output import assert_same_outputs

RATE = 200_000
ENTRIES = ("--entry", "f=7.1M,bw=100k", "--entry", "f=7.1M,bw=50k,size=RF64")


class TestClosedStreams(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.source = write_sparse(cls.shared / "in.wav", Layout(RATE, form="s8"), 3 * RATE)

    def cut_with(self, streams, output, *arguments):
        """The cut with the shell's redirections `streams`; what is left of its streams goes to files."""
        output.mkdir(exist_ok=True)
        words = shlex.join(command("cut", self.source, "--output", output, *ENTRIES, *arguments))
        files = [self.folder / "stdout", self.folder / "stderr"]
        with files[0].open("wb") as out, files[1].open("wb") as err:
            code = subprocess.run(["sh", "-c", f"{words} {streams}"], env=environment(), stdin=subprocess.DEVNULL,
                                  stdout=out, stderr=err, timeout=TIMEOUT).returncode
        return code, *(file.read_text() for file in files)

    def test_no_closed_stream_changes_a_sample(self):
        normal = self.folder / "normal"
        self.assertEqual(self.cut_with("", normal, "--verbose")[0], 0)
        for name, streams, expected in [("in", "0<&-", 0), ("err", "2>&-", 0), ("in-err", "0<&- 2>&-", 0),
                                        ("out", "1>&-", 1), ("all", "0<&- 1>&- 2>&-", 1)]:
            with self.subTest(streams=streams):
                output = self.folder / name
                # All that the program has to say goes to the streams that are closed.
                self.assertEqual(self.cut_with(streams, output, "--verbose")[0], expected)
                assert_same_outputs(self, normal, output)

    def test_a_report_that_cannot_be_delivered_is_told_on_stderr_and_by_the_exit_code(self):
        for streams in ("1>&-", ">/dev/full"):
            for kind in ((), ("--json",)):
                with self.subTest(streams=streams, kind=kind):
                    code, out, err = self.cut_with(streams, self.output, "--overwrite", *kind)
                    self.assertEqual(code, 1)
                    self.assertEqual(out, "")
                    self.assertIn("the result could not be written to stdout", err)

    def test_with_nothing_to_report_a_closed_stdout_is_no_failure(self):
        self.assertEqual(self.cut_with("1>&-", self.output, "--quiet"), (0, "", ""))

    def test_a_closed_stderr_leaves_the_report_whole(self):
        code, out, _ = self.cut_with("2>&-", self.output, "--json", "--verbose")
        self.assertEqual(code, 0)
        self.assertEqual([output["ok"] for output in json.loads(out)["outputs"]], [True, True])

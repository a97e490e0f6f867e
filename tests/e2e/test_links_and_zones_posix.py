"""Links and time zones as POSIX has them."""
import unittest

import numpy as np

from makers import Layout, write_recording
from program import EndToEndTest, contents, environment, run
from wavtools import WaveFile

RATE = 24_000


class TestLinks(EndToEndTest):
    def test_output_that_is_a_link_to_the_input_is_refused(self):
        source = write_recording(self.folder / "in.wav", Layout(RATE), np.zeros(2 * RATE))
        (self.output / "2020-11-01 2359z, f=7.100 MHz, bw=8 kHz.wav").symlink_to(source)
        before = contents(self.folder)
        result = run("cut", source, "--output", self.output, "--entry", "f=7.1M,bw=8k,size=RF64", "--overwrite")
        self.assertEqual(result.code, 2, result.err)
        self.assertIn("in.wav", result.err)
        self.assertEqual(contents(self.folder), before)


class TestTimeZones(EndToEndTest):
    def test_local_time_stands_in_names_only(self):
        source = write_recording(self.folder / "in.wav", Layout(RATE), np.zeros(2 * RATE))
        kolkata = environment(TZ="Asia/Kolkata")
        self.cut(source, "--entry", "f=7.1M,bw=10k", "--local-time", env=kolkata)
        self.assertEqual(self.names(), ["2020-11-02 0529, f=7.100 MHz, bw=10 kHz 000.wav"])
        metadata = WaveFile(self.output / self.names()[0]).metadata()
        self.assertEqual(metadata["UTC"], "01-11-2020 23:59:00")

    def test_names_are_in_utc_otherwise(self):
        source = write_recording(self.folder / "in.wav", Layout(RATE), np.zeros(2 * RATE))
        self.cut(source, "--entry", "f=7.1M,bw=10k", env=environment(TZ="Asia/Kolkata"))
        self.assertEqual(self.names(), ["2020-11-01 2359z, f=7.100 MHz, bw=10 kHz 000.wav"])


if __name__ == "__main__":
    unittest.main()

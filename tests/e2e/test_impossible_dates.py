"""Dates that no calendar has, in every place where a recording can tell its time: exit code 3 and a message that names
the file and the place; in a neighbour, the file is left out."""
import unittest

import numpy as np

import foreign_makers as foreign
from makers import Layout, write_recording
from program import EndToEndTest, native, run, run_ok

RATE = 1000
DATA = bytes(4 * RATE)
GOOD = (2023, 4, 15, 12, 0, 0)
END = (2023, 4, 15, 12, 0, 1)
CENTRE = 7_050_000
IMPOSSIBLE = [(2023, 13, 15, 12, 0, 0), (1955, 4, 15, 12, 0, 0), (2023, 2, 30, 12, 0, 0), (2023, 4, 15, 25, 0, 0)]


class ImpossibleDateTest(EndToEndTest):
    def refused(self, path, *said):
        for arguments in (("info", path), ("cut", path, "--output", self.output, "--entry", "f=7.05M,bw=100")):
            result = run(*arguments)
            self.assertEqual((result.code, result.out), (3, ""), result.err)
            for text in (path.name, *said):
                self.assertIn(text, result.err)
        self.assertEqual(self.names(), [])
        path.unlink()


class TestImpossibleDates(ImpossibleDateTest):
    def check(self, make, *said):
        """`make` gives the name and the chunks of a file with a date."""
        for date in IMPOSSIBLE:
            with self.subTest(date=date):
                name, chunks = make(date)
                self.refused(foreign.write(self.folder / name, RATE, DATA, chunks), *said,
                             "{:04}-{:02}-{:02}".format(*date))

    def test_block_of_28_bytes(self):
        self.check(lambda date: ("a.wav", [foreign.auxi_28(date, CENTRE)]), "start time")

    def test_start_in_longer_blocks(self):
        for size in (44, 68, 72, 164):
            self.check(lambda date, size=size: ("a.wav", [foreign.auxi(size, date, END, CENTRE)]), "start time")

    def test_stop_in_longer_blocks(self):
        for size in (44, 68, 72, 164):
            self.check(lambda date, size=size: ("a.wav", [foreign.auxi(size, GOOD, date, CENTRE)]), "stop time")

    def test_elad(self):
        self.check(lambda date: ("a.wav", [foreign.elad(), foreign.auxi(164, date, END, CENTRE)]), "start time")

    def test_sdrsharp_name(self):
        self.check(lambda date: (foreign.sdrsharp_name(date), []), "start time in the file's name")

    def test_winradio_name(self):
        for date in IMPOSSIBLE:
            if date[0] >= 2000:
                self.refused(foreign.write(self.folder / foreign.winradio_name(date), RATE, DATA),
                             "start time in the file's name", "{:04}-{:02}-{:02}".format(*date))

    def test_signal_time(self):
        time = "{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.000Z"
        self.check(lambda date: ("a.wav", [foreign.meta(time.format(*date), CENTRE, RATE)]), "signaltime")

    def test_perseus(self):
        for seconds in (-1, -441_763_200, 1 << 62):
            self.refused(foreign.write(self.folder / "a.wav", RATE, DATA, [foreign.rcvr(CENTRE, 0, seconds)]),
                         "start time of the rcvr chunk", str(seconds))

    def test_xml_metadata(self):
        for seconds in (-1, -441_763_200, 1 << 32, 1 << 70):
            self.refused(write_recording(self.folder / "a.wav", Layout(RATE, attributes={"UTCSeconds": seconds}),
                                         np.zeros(RATE)), "UTCSeconds", str(seconds))


class TestNeighboursWithImpossibleDates(EndToEndTest):
    def test_they_are_left_out_with_a_line_each(self):
        good = foreign.write(self.folder / "good.wav", RATE, DATA, [foreign.auxi(164, GOOD, END, CENTRE)])
        bad = [foreign.write(self.folder / f"bad {number}.wav", RATE, DATA, [foreign.auxi(164, date, END, CENTRE)])
               for number, date in enumerate(IMPOSSIBLE)]
        bad.append(foreign.write(self.folder / foreign.sdrsharp_name(IMPOSSIBLE[0]), RATE, DATA))
        bad.append(foreign.write(self.folder / foreign.winradio_name(IMPOSSIBLE[2]), RATE, DATA))
        result = run_ok("info", good, "--json")
        self.assertEqual(result.json()["files"], [native(good)])
        for path in bad:
            self.assertEqual(result.err.count(path.name), 1, result.err)


if __name__ == "__main__":
    unittest.main()

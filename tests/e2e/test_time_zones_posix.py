"""Times of recordings in the time zone that the environment sets, before, behind and on both sides of a change to or from
daylight saving. Windows has one zone for the whole machine, which a test cannot choose."""
import datetime
import os
import unittest
import zoneinfo

import numpy as np

import foreign_makers as foreign
from makers import Layout, write_recording
from program import EndToEndTest, environment, run_ok, some

RATE = 1000
SECONDS = 4
CENTRE = 7_050_000
# Wall-clock times: winter, summer, and both sides of the hours that are left out or come twice.
MOMENTS = {
    "UTC": [(2023, 1, 15, 12, 0, 0), (2023, 7, 15, 12, 0, 0), (2023, 3, 12, 2, 30, 0)],
    "America/New_York": [(2023, 1, 15, 12, 0, 0), (2023, 7, 15, 12, 0, 0), (2023, 3, 12, 1, 59, 50),
                         (2023, 3, 12, 3, 0, 0), (2023, 11, 5, 0, 59, 50), (2023, 11, 5, 2, 0, 0)],
    "Asia/Kolkata": [(2023, 1, 15, 12, 0, 0), (2023, 7, 15, 12, 0, 0), (2023, 3, 12, 2, 30, 0)],
    "Pacific/Auckland": [(2023, 1, 15, 12, 0, 0), (2023, 7, 15, 12, 0, 0), (2023, 4, 2, 1, 59, 50),
                         (2023, 4, 2, 3, 0, 0), (2023, 9, 24, 1, 59, 50), (2023, 9, 24, 3, 0, 0)],
}
UTC_MOMENTS = sorted({moment for moments in MOMENTS.values() for moment in moments})


def later(date, seconds=SECONDS):
    moved = datetime.datetime(*date) + datetime.timedelta(seconds=seconds)
    return moved.timetuple()[:6]


class TestTimesInEveryZone(EndToEndTest):
    def info_of(self, name, chunks, zone):
        folder = self.folder / f"{len(list(self.folder.iterdir()))}"
        folder.mkdir()
        path = foreign.write(folder / name, RATE, bytes(SECONDS * RATE * 4), chunks)
        return path, run_ok("info", path, "--json", env=environment(TZ=zone)).json()

    def check_local(self, make):
        """`make` gives name and chunks of a file that tells a local time."""
        for zone, moments in MOMENTS.items():
            for date in moments:
                with self.subTest(zone=zone, date=date):
                    expected = datetime.datetime(*date, tzinfo=zoneinfo.ZoneInfo(zone)).timestamp()
                    _, info = self.info_of(*make(date), zone)
                    self.assertEqual((info["startUtc"], info["endUtc"]), (expected, expected + SECONDS))

    def check_utc(self, make):
        """`make` gives name and chunks of a file that tells UTC: every zone reads the same."""
        for zone in MOMENTS:
            for date in some(UTC_MOMENTS, 4):
                expected = foreign.utc_seconds(date)
                _, info = self.info_of(*make(date), zone)
                self.assertEqual((info["startUtc"], info["endUtc"]), (expected, expected + SECONDS), (zone, date))

    def test_spectravue_2_34_is_local(self):
        self.check_local(lambda date: ("a.wav", [foreign.auxi(68, date, later(date), CENTRE)]))

    def test_winradio_names_are_local(self):
        self.check_local(lambda date: (foreign.winradio_name(date), []))

    def test_sdrsharp_names_are_utc(self):
        self.check_utc(lambda date: (foreign.sdrsharp_name(date), []))

    def test_other_blocks_are_utc(self):
        self.check_utc(lambda date: ("a.wav", [foreign.auxi_28(date, CENTRE)]))
        self.check_utc(lambda date: ("a.wav", [foreign.auxi(164, date, later(date), CENTRE)]))

    def test_perseus_is_utc(self):
        self.check_utc(lambda date: ("a.wav", [foreign.rcvr(CENTRE, 99, foreign.utc_seconds(date))]))

    def test_signal_times_are_utc(self):
        time = "{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.000Z"
        self.check_utc(lambda date: ("a.wav", [foreign.meta(time.format(*date), CENTRE, RATE)]))

    def test_creation_time_of_a_file_is_a_moment_whatever_the_zone(self):
        for name in ("capture.wav", "rec.ddc"):
            starts = set()
            path = foreign.write(self.folder / name, RATE, bytes(SECONDS * RATE * 4))
            for zone in MOMENTS:
                starts.add(run_ok("info", path, "--json", env=environment(TZ=zone)).json()["startUtc"])
            self.assertEqual(len(starts), 1)
            self.assertAlmostEqual(starts.pop(), os.stat(path).st_mtime, delta=3)  # written at once
            path.unlink()

    def test_metadata_of_a_cut_is_in_utc(self):
        date = (2023, 3, 12, 3, 0, 0)
        path, _ = self.info_of("a.wav", [foreign.auxi(68, date, later(date), CENTRE)], "America/New_York")
        outputs = self.cut(path, "--entry", "f=7.05M,bw=100,start=+1", env=environment(TZ="America/New_York"))
        self.assertEqual(len(outputs), 1)
        self.assertEqual(self.names(), ["2023-03-12 0700z, f=7.050 MHz, bw=100 Hz 000.wav"])

    def test_xml_metadata_is_in_utc(self):
        path = write_recording(self.folder / "a.wav", Layout(RATE, start=1_678_604_400), np.zeros(RATE))
        for zone in MOMENTS:
            text = run_ok("info", path, env=environment(TZ=zone)).out
            self.assertIn("2023-03-12T07:00:00Z", text)

    def test_chain_of_local_times_goes_on_across_a_change_of_the_clock(self):
        for zone, before, behind in (("America/New_York", (2023, 3, 12, 1, 59, 56), (2023, 3, 12, 3, 0, 0)),
                                     ("Pacific/Auckland", (2023, 9, 24, 1, 59, 56), (2023, 9, 24, 3, 0, 0)),
                                     ("Asia/Kolkata", (2023, 3, 12, 1, 59, 56), (2023, 3, 12, 2, 0, 0))):
            with self.subTest(zone=zone):
                folder = self.folder / zone.replace("/", " ")
                folder.mkdir()
                for name, start, stop in (("a.wav", before, behind), ("b.wav", behind, later(behind))):
                    foreign.write(folder / name, RATE, bytes(SECONDS * RATE * 4),
                                  [foreign.auxi(68, start, stop, CENTRE)])
                info = run_ok("info", folder / "b.wav", "--json", env=environment(TZ=zone)).json()
                self.assertEqual((info["fileCount"], info["endUtc"] - info["startUtc"]), (2, 2 * SECONDS))


if __name__ == "__main__":
    unittest.main()

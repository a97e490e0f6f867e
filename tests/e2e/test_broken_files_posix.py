"""Broken recordings that the user may not change."""
import unittest

from program import EndToEndTest, as_plain_user, contents, run
from test_broken_files import NAME, head


class TestRepairOfProtectedFiles(EndToEndTest):
    def test_a_file_or_folder_that_may_not_be_changed_stays_as_it_is(self):
        program, options = as_plain_user(self.folder)
        place = self.folder / "protected"
        place.mkdir()
        path = place / NAME
        path.write_bytes(head(0, 0) + bytes(4000))
        for file_mode, folder_mode in ((0o444, 0o777), (0o666, 0o555)):
            path.chmod(file_mode)
            place.chmod(folder_mode)
            before = contents(place)
            result = run("repair", "--in-place", path, program=program, **options)
            self.assertEqual(result.code, 1, result.out)
            self.assertRegex(result.err, "carvello-cli: .*baseband.*: .*(ermission denied|not permitted|access)")
            self.assertEqual(contents(place), before)
        place.chmod(0o777)


if __name__ == "__main__":
    unittest.main()

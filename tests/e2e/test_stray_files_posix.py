"""Files that belong to nobody as POSIX has them: links that lead in a circle, pipes, and files that may not be read."""
import os
import shutil
import unittest

from program import as_plain_user
from test_stray_files import StrayFileTest as Base


class TestStrayFilesOfPosix(Base):
    def test_loop_of_symbolic_links(self):
        path = self.folder / "loop.wav"
        path.symlink_to(path)
        self.check(path, "symbolic links")

    def test_pipe(self):
        path = self.folder / "pipe.wav"
        os.mkfifo(path)
        self.check(path, "pipe")

    def test_link_to_a_device(self):
        path = self.folder / "zero.wav"
        path.symlink_to("/dev/zero")
        self.check(path, "device")

    def test_link_that_leads_nowhere(self):
        path = self.folder / "nowhere.wav"
        path.symlink_to(self.folder / "gone.wav")
        self.check(path, "No such file")

    def test_file_that_may_not_be_read(self):
        path = self.folder / "secret.wav"
        shutil.copy(self.members[0], path)
        path.chmod(0)
        program, options = as_plain_user(self.folder)
        self.check(path, "ermission denied", program=program, **options)


if __name__ == "__main__":
    unittest.main()

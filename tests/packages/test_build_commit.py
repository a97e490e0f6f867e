"""The commit that programs tell: from the history, from an archive, or from nobody; and written only when it changes."""
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
SCRIPT = PROJECT / "cmake" / "build_commit.cmake"
TEMPLATE = "$Format:%H$\n"


class TestBuildCommit(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()
        self.sources = self.folder / "sources"
        (self.sources / "cmake").mkdir(parents=True)
        (self.sources / "cmake" / "commit.txt").write_text(TEMPLATE)
        (self.sources / ".gitattributes").write_text((PROJECT / ".gitattributes").read_text())
        (self.sources / "program.txt").write_text("1\n")
        self.out = self.folder / "build_commit.cpp"

    def git(self, *words, folder=None):
        names = {f"GIT_{role}_{what}": "a@b.example" for role in ("AUTHOR", "COMMITTER") for what in ("NAME", "EMAIL")}
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), **names}
        done = subprocess.run(["git", "-C", str(folder or self.sources), *words], check=True, capture_output=True,
                              env=environment)
        return done.stdout.decode().strip()

    def commit_all(self):
        self.git("init", "-q")
        self.git("add", ".")
        self.git("commit", "-qm", "x")
        return self.git("rev-parse", "HEAD")

    def told(self, sources=None, **environment):
        subprocess.run(["cmake", "-D", f"SOURCE={sources or self.sources}", "-D", f"OUT={self.out}", "-P", str(SCRIPT)],
                       check=True, env={**os.environ, **environment})
        return re.search(r'kBuildCommit = "(.*)";', self.out.read_text())[1]

    def test_history_tells_it_in_full(self):
        commit = self.commit_all()
        self.assertRegex(commit, "^[0-9a-f]{40}$")
        self.assertEqual(self.told(), commit)

    def test_changed_sources_are_called_so_and_files_that_git_does_not_know_are_no_change(self):
        commit = self.commit_all()
        (self.sources / "new.txt").write_text("")
        self.assertEqual(self.told(), commit)
        (self.sources / "program.txt").write_text("2\n")
        self.assertEqual(self.told(), commit + ", modified")
        self.git("add", "program.txt")
        self.assertEqual(self.told(), commit + ", modified")

    def test_archive_carries_it(self):
        commit = self.commit_all()
        self.git("archive", "--prefix=elsewhere/", f"--output={self.folder}/x.tar", "HEAD")
        subprocess.run(["tar", "-C", str(self.folder), "-xf", str(self.folder / "x.tar")], check=True)
        self.assertEqual(self.told(self.folder / "elsewhere"), commit)

    def test_sources_without_a_history_tell_nothing_of_the_one_that_they_lie_in(self):
        self.commit_all()
        inner = self.sources / "build" / "copy"
        (inner / "cmake").mkdir(parents=True)
        (inner / "cmake" / "commit.txt").write_text(TEMPLATE)
        self.assertEqual(self.told(inner), "")

    def test_history_that_a_hook_of_git_names_is_another_one(self):
        commit = self.commit_all()
        other = self.folder / "other"
        other.mkdir()
        self.git("init", "-q", folder=other)
        self.assertEqual(self.told(GIT_DIR=str(other / ".git")), commit)

    def test_history_without_a_commit_tells_nothing(self):
        self.git("init", "-q")
        self.assertEqual(self.told(), "")

    def test_file_is_touched_only_when_the_commit_changes(self):
        self.commit_all()
        self.told()
        os.utime(self.out, (1, 1))
        self.told()
        self.assertEqual(self.out.stat().st_mtime, 1)
        (self.sources / "program.txt").write_text("2\n")
        self.told()
        self.assertNotEqual(self.out.stat().st_mtime, 1)


if __name__ == "__main__":
    unittest.main()

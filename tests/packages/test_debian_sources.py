"""Of which files the Debian packages are made, in a clone and in an unpacked source archive. What builds them is a stand-in
here, which tells what it was given."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
COPIED = ("packaging/debian/package.sh", "packaging/debian/packages.sh", "packaging/debian/package/control",
          "cmake/build_commit.cmake", ".gitignore")
STAND_INS = {
    "dpkg-query": "#!/bin/sh\nprintf installed\n",
    "dpkg-buildpackage": "#!/bin/sh\nfind . -type f -o -type l > ../../../given\n"
                         "cat cmake/commit.txt > ../../../commit\n: > ../carvello_1.0.0_amd64.deb\n",
}
COMMIT = "0123456789012345678901234567890123456789"


class TestSourcesOfDebianPackages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = Path(folder.name).resolve()
        self.project = self.home / "a project"
        for name in COPIED:
            (self.project / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PROJECT / name, self.project / name)
        (self.project / "cmake" / "commit.txt").write_text(COMMIT + "\n")
        (self.project / "with a blank.txt").write_text("1")
        (self.home / "bin").mkdir()
        for name, text in STAND_INS.items():
            (self.home / "bin" / name).write_text(text)
            (self.home / "bin" / name).chmod(0o755)
        who = {f"GIT_{role}_{what}": "a@b.example" for role in ("AUTHOR", "COMMITTER") for what in ("NAME", "EMAIL")}
        self.environment = {"PATH": f"{self.home / 'bin'}:{os.environ['PATH']}", "HOME": str(self.home), **who}

    def commit_all(self):
        for words in (("init", "-q"), ("add", "."), ("commit", "-qm", "x")):
            subprocess.run(["git", "-C", str(self.project), *words], check=True, env=self.environment)

    def given(self):
        """What the packages were made of, without what Debian asks for."""
        done = subprocess.run([str(self.project / "packaging" / "debian" / "package.sh")], capture_output=True, text=True,
                              env=self.environment, stdin=subprocess.DEVNULL, cwd="/")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(done.stdout.endswith("/build/packages/carvello_1.0.0_amd64.deb\n"), done.stdout)
        names = (self.project / "build" / "given").read_text().splitlines()
        self.assertIn("./debian/control", names)
        return {name.removeprefix("./") for name in names if not name.startswith("./debian/")}

    def build_something(self):
        for name in ("build/release/program", "sample/rec.wav", ".flatpak-builder/cache", "tests/__pycache__/x.pyc"):
            (self.project / name).parent.mkdir(parents=True, exist_ok=True)
            (self.project / name).write_text("")

    def test_an_unpacked_source_archive_gives_all_but_what_was_built_and_its_commit(self):
        self.build_something()
        self.assertEqual(self.given(), {*COPIED, "cmake/commit.txt", "with a blank.txt"})
        self.assertEqual((self.project / "build" / "commit").read_text().strip(), COMMIT)

    def test_what_a_user_leaves_out_of_all_repositories_is_not_left_out(self):
        ignored = self.home / ".config" / "git" / "ignore"
        ignored.parent.mkdir(parents=True)
        ignored.write_text("*.txt\n")
        self.assertEqual(self.given(), {*COPIED, "cmake/commit.txt", "with a blank.txt"})

    def test_a_clone_gives_its_files_as_they_lie_there(self):
        self.commit_all()
        self.build_something()
        (self.project / "with a blank.txt").unlink()
        (self.project / "new.txt").write_text("")
        self.assertEqual(self.given(), {*COPIED, "cmake/commit.txt", "new.txt"})


if __name__ == "__main__":
    unittest.main()

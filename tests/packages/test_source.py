"""The archive of the sources: two are the same, and the two commands build it where there is no history."""
import hashlib
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          stdin=subprocess.DEVNULL, **options)
    assert done.returncode == 0, f"{command}: {done.stdout[-4000:]}"
    return done.stdout


class TestSourceArchive(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="carvello-source-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.commit = run("git", "-C", PROJECT, "rev-parse", "HEAD").strip()
        # A clone releases: what is being changed in this project is no hindrance, and its packages stay as they are.
        run("git", "clone", "-q", PROJECT, cls.folder / "clone")
        cls.archive = cls.make()
        run("tar", "-C", cls.folder, "-xf", cls.archive)
        cls.sources = next(path for path in cls.folder.iterdir() if path.name.startswith("carvello-"))

    @classmethod
    def make(cls):
        shutil.rmtree(cls.folder / "clone" / "build", ignore_errors=True)
        run(cls.folder / "clone" / "packaging" / "release.sh", "--without", "debian", "--without", "windows")
        archives = list((cls.folder / "clone" / "build" / "packages").glob("carvello-*.tar.xz"))
        assert len(archives) == 1, archives
        return archives[0]

    def test_a_second_making_gives_the_same_bytes(self):
        first = hashlib.sha256(self.archive.read_bytes()).hexdigest()
        self.assertEqual(hashlib.sha256(self.make().read_bytes()).hexdigest(), first)

    def test_it_builds_and_runs_without_a_history_and_knows_its_commit(self):
        self.assertFalse((self.sources / ".git").exists())
        # What lies above is none of its business.
        run("git", "init", "-q", self.folder)
        environment = {**os.environ, "TERM": "dumb"}
        self.assertIn(f"\nCommit: {self.commit}\n", run(self.sources / "run", "--version", env=environment))
        text = run(self.sources / "run", env=environment)
        self.assertIn("sample", text)
        self.assertTrue(any((self.sources / "sample").rglob("*.wav")))


if __name__ == "__main__":
    unittest.main()

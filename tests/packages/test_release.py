"""What makes a release: what it refuses, what it does not make twice, and what it leaves behind. The packages themselves
are small stand-ins here."""
import hashlib
import os
import shutil
import subprocess
import tarfile
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
COPIED = ("packaging/release.sh", "packaging/source_date.sh", "packaging/debian/packages.sh",
          "packaging/linux/other_systems.sh", "src/support/version_record.h", "CHANGELOG.md",
          ".gitattributes")
DEBIAN = """#!/bin/sh
echo debian >> build/calls
[ ! -e build/broken ] || exit 1
echo deb > build/packages/carvello_1.0.0_amd64.deb
"""
WINDOWS = """#!/bin/sh
echo windows >> build/calls
mkdir -p build/windows-package
echo zip > build/windows-package/Carvello-1.0-windows-x86_64.zip
mkdir -p build/packages
echo exe > build/packages/Carvello-1.0-windows-x86_64-setup.exe
"""
SOURCES = """#!/bin/sh
echo tar > build/windows-package/Carvello-1.0-sources.tar
"""
BILLS = """#!/bin/sh
for file; do sha256sum "$file" > "$file.spdx.json"; done
"""


class TestRelease(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = Path(folder.name).resolve()
        self.project = self.home / "project"
        for name in COPIED:
            (self.project / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PROJECT / name, self.project / name)
        (self.project / ".gitignore").write_text("/build/\n")
        # As it is committed: in an archive, which these sources may come from, it is filled in.
        (self.project / "cmake").mkdir()
        (self.project / "cmake" / "commit.txt").write_text("$Format:%H$\n")
        for name, text in (("debian/package.sh", DEBIAN), ("windows/installer.sh", WINDOWS),
                           ("windows/sources.sh", SOURCES), ("sbom.py", BILLS)):
            path = self.project / "packaging" / name
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
            path.chmod(0o755)
        self.out = self.project / "build" / "packages"
        self.git("init", "-q")
        self.commit()

    def environment(self):
        who = {f"GIT_{role}_{what}": "a@b.example" for role in ("AUTHOR", "COMMITTER") for what in ("NAME", "EMAIL")}
        return {"PATH": os.environ["PATH"], "HOME": str(self.home), "LC_ALL": "C.UTF-8", **who}

    def git(self, *words):
        done = subprocess.run(["git", "-C", str(self.project), *words], check=True, capture_output=True, text=True,
                              env=self.environment())
        return done.stdout.strip()

    def commit(self):
        self.git("add", ".")
        self.git("commit", "-qm", "x", "--allow-empty")

    def release(self, *options):
        done = subprocess.run([str(self.project / "packaging" / "release.sh"), *options], capture_output=True, text=True,
                              env=self.environment(), stdin=subprocess.DEVNULL, cwd="/")
        return done.returncode, done.stdout, done.stderr

    def assert_released(self, *options):
        code, out, err = self.release(*options)
        self.assertEqual(code, 0, err)
        return out.split()

    def assert_refused(self, *parts, options=()):
        code, out, err = self.release(*options)
        self.assertEqual((code, out), (1, ""))
        for part in parts:
            self.assertIn(part, err)
        self.assertFalse(self.out.exists())

    def calls(self):
        calls = self.project / "build" / "calls"
        return calls.read_text().split() if calls.exists() else []

    def change(self, name, before, after):
        path = self.project / name
        text = path.read_text()
        self.assertIn(before, text)
        path.write_text(text.replace(before, after, 1))

    def test_makes_everything_with_bills_and_checksums(self):
        names = self.assert_released()
        packages = ["Carvello-1.0-sources.tar", "Carvello-1.0-windows-x86_64-setup.exe",
                    "Carvello-1.0-windows-x86_64.zip",
                    "carvello-1.0.0.tar.xz", "carvello_1.0.0_amd64.deb"]
        bills = [name + ".spdx.json" for name in packages if name != "Carvello-1.0-sources.tar"]
        self.assertEqual(sorted(names), sorted([*packages, *bills, "SHA256SUMS"]))
        self.assertEqual(sorted(path.name for path in self.out.iterdir() if path.is_file()), sorted(names))
        sums = dict(reversed(line.split("  ")) for line in (self.out / "SHA256SUMS").read_text().splitlines())
        self.assertEqual(sums, {name: hashlib.sha256((self.out / name).read_bytes()).hexdigest()
                                for name in packages + bills})

    def test_source_archive_holds_the_commit_under_its_name_and_knows_it(self):
        self.assert_released("--without", "windows", "--without", "debian")
        self.assertEqual(self.calls(), [])
        with tarfile.open(self.out / "carvello-1.0.0.tar.xz") as archive:
            names = {member.name for member in archive if member.isfile()}
            commit = archive.extractfile("carvello-1.0.0/cmake/commit.txt").read().decode().strip()
        self.assertEqual(names, {f"carvello-1.0.0/{name}" for name in self.git("ls-files").splitlines()})
        self.assertEqual(commit, self.git("rev-parse", "HEAD"))

    def test_same_commit_gives_the_same_source_archive(self):
        self.assert_released("--without", "windows")
        first = (self.out / "carvello-1.0.0.tar.xz").read_bytes()
        shutil.rmtree(self.out)
        self.assert_released("--without", "windows")
        self.assertEqual((self.out / "carvello-1.0.0.tar.xz").read_bytes(), first)

    def test_what_is_there_is_not_made_again(self):
        self.assert_released()
        sums = (self.out / "SHA256SUMS").read_bytes()
        self.assert_released()
        self.assertEqual(self.calls(), ["debian", "windows"])
        self.assertEqual((self.out / "SHA256SUMS").read_bytes(), sums)

    def test_what_was_changed_or_is_of_another_commit_is_made_again(self):
        self.assert_released()
        (self.out / "carvello_1.0.0_amd64.deb").write_text("other")
        self.assert_released()
        self.assertEqual(self.calls(), ["debian", "windows", "debian"])
        self.commit()
        self.assert_released()
        self.assertEqual(self.calls(), ["debian", "windows", "debian", "debian", "windows"])

    def test_goes_on_where_it_failed(self):
        (self.project / "build").mkdir(exist_ok=True)
        (self.project / "build" / "broken").write_text("")
        code, out, err = self.release()
        self.assertNotEqual(code, 0)
        self.assertEqual(out, "")
        self.assertFalse((self.out / "SHA256SUMS").exists())
        (self.project / "build" / "broken").unlink()
        code, _, err = self.release()
        self.assertEqual(code, 0, err)
        self.assertIn("Already there: source", err)

    def test_packages_of_an_earlier_version_do_not_come_along(self):
        old = self.project / "build" / "windows-package" / "Carvello-0.9-windows-x86_64.zip"
        old.parent.mkdir(parents=True)
        old.write_text("old")
        self.out.mkdir(parents=True)
        for name in ("carvello_0.9.0_amd64.deb", "Carvello-0.9-setup.exe", "carvello-0.9.0.tar.xz.spdx.json"):
            (self.out / name).write_text("old")
        self.assertEqual([name for name in self.assert_released() if "0.9" in name], [])

    def test_changed_sources_are_refused_and_named(self):
        self.change("CHANGELOG.md", "first", "very first")
        self.assert_refused("not as committed", "CHANGELOG.md")
        self.git("checkout", "-q", ".")
        (self.project / "new.txt").write_text("")
        self.assert_refused("not as committed", "new.txt")

    def test_version_that_the_changes_do_not_begin_with_is_refused(self):
        self.change("CHANGELOG.md", "## 1.0.0", "## 1.0.1")
        self.commit()
        self.assert_refused("CHANGELOG.md begins with 1.0.1, and the version of these sources is 1.0.0")

    def test_tag_of_another_commit_is_refused_and_one_of_this_is_not(self):
        self.git("tag", "-a", "v1.0.0", "-m", "x")
        tagged = self.git("rev-parse", "HEAD")
        self.assertIn(f"Version 1.0.0 can be released from {tagged}", " ".join(self.assert_released("--check")))
        self.commit()
        self.assert_refused(f"the tag v1.0.0 is of commit {tagged}", "count the version up")

    def test_folder_without_a_history_is_refused(self):
        shutil.rmtree(self.project / ".git")
        self.assert_refused("no git repository")

    def test_unknown_options_are_explained(self):
        for options in (("--with", "windows"), ("--without",), ("--without", "sources")):
            code, _, err = self.release(*options)
            self.assertEqual(code, 2)
            self.assertIn("release.sh --without windows", err)

    def test_check_makes_nothing(self):
        self.assert_released("--check")
        self.assertFalse(self.out.exists())


if __name__ == "__main__":
    unittest.main()

"""The Debian packages: made twice, looked through, and installed on a system that has nothing but its base."""
import hashlib
import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import spdx

PROJECT = Path(__file__).resolve().parents[2]
MADE = PROJECT / "build" / "packages"


def run(*command, **options):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          stdin=subprocess.DEVNULL, **options)
    assert done.returncode == 0, f"{command}: {done.stdout[-4000:]}"
    return done.stdout


def make_packages():
    run(PROJECT / "packaging" / "debian" / "package.sh")
    return {path.name: path.read_bytes() for path in sorted(MADE.glob("*.deb"))}


class TestDebianPackages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.packages = make_packages()

    def test_both_are_there(self):
        self.assertEqual({name.split("_")[0] for name in self.packages}, {"carvello", "carvello-cli"})

    def test_lintian_finds_nothing(self):
        text = run("lintian", "--pedantic", "--allow-root", *(MADE / name for name in self.packages))
        self.assertEqual(text, "")

    def test_a_second_making_gives_the_same_bytes(self):
        again = make_packages()
        self.assertEqual({name: hashlib.sha256(data).hexdigest() for name, data in again.items()},
                         {name: hashlib.sha256(data).hexdigest() for name, data in self.packages.items()})

    def test_bills_of_materials_name_what_the_packages_depend_on(self):
        run(PROJECT / "packaging" / "sbom.py", *(MADE / name for name in self.packages))
        for name in self.packages:
            document = json.loads((MADE / f"{name}.spdx.json").read_text())
            self.assertEqual(list(spdx.problems(document)), [])
            # What the tools of Debian found that the programs need.
            depends = run("dpkg-deb", "-f", MADE / name, "Depends").strip()
            wanted = {re.split(r"[ :(]", package.strip())[0] for package in depends.split(",")}
            told = {**spdx.related(document, "DYNAMIC_LINK"), **spdx.related(document, "DEPENDS_ON")}
            self.assertEqual(told.keys(), wanted)

    def test_the_programs_tell_the_commit_that_they_are_made_of(self):
        told = run("git", "-C", PROJECT, "rev-parse", "HEAD").strip()
        if run("git", "-C", PROJECT, "status", "--porcelain", "--untracked-files=no"):
            told += ", modified"
        with tempfile.TemporaryDirectory() as folder:
            run("dpkg-deb", "--extract", next(MADE.glob("carvello-cli_*.deb")), folder)
            lines = run(next(Path(folder).glob("usr/lib/*/carvello/carvello-cli")), "--version").splitlines()
        self.assertIn(f"Commit: {told}", lines)
        self.assertRegex(lines[-1], r"^Library: Vantrel \d")

    def test_what_the_installed_documents_refer_to_is_installed_too(self):
        with tempfile.TemporaryDirectory() as folder:
            run("dpkg-deb", "--extract", next(MADE.glob("carvello-cli_*.deb")), folder)
            documents = Path(folder) / "usr" / "share" / "doc" / "carvello-cli"
            referred = [(path, target) for path in documents.rglob("*.md")
                        for target in re.findall(r"\]\(([^)#:]+)[^):]*\)", path.read_text())]
            self.assertGreater(len(referred), 20)
            # The licence is Debian's file "copyright"; the other two are for those who have the sources.
            only_in_sources = {"LICENSE", "packaging/flatpak/org.carvello.carvello.yml", "../bench/README.md",
                               "../.github/workflows/windows.yml"}
            self.assertEqual([(path.name, target) for path, target in referred
                              if target not in only_in_sources and not (path.parent / target).exists()], [])

    def test_no_path_of_the_machine_is_in_them(self):
        with tempfile.TemporaryDirectory() as folder:
            for name in self.packages:
                run("dpkg-deb", "--extract", MADE / name, folder)
            for path in Path(folder).rglob("*"):
                if path.is_file() and not path.is_symlink():
                    self.assertNotIn(str(PROJECT).encode(), path.read_bytes(), path)


@unittest.skipUnless(os.geteuid() == 0, "making a system to install on needs root")
class TestOnABareSystem(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.system = Path(tempfile.mkdtemp(prefix="carvello-system-"))
        cls.addClassCleanup(shutil.rmtree, cls.system)
        targets = run("apt-get", "indextargets", "--format", "$(REPO_URI) $(CODENAME) $(COMPONENT)",
                      "Created-By: Packages").splitlines()
        # The one that this system came from has no "-" in its name, as those of updates have.
        mirror, cls.release, _ = next(line.split() for line in targets if "-" not in line.split()[1])
        run("debootstrap", "--variant=minbase", cls.release, cls.system, mirror)
        shutil.copy("/etc/resolv.conf", cls.system / "etc" / "resolv.conf")
        run("mount", "-t", "proc", "proc", cls.system / "proc")
        cls.addClassCleanup(run, "umount", cls.system / "proc")
        if not any(MADE.glob("*.deb")):
            make_packages()
        for path in MADE.glob("*.deb"):
            shutil.copy(path, cls.system / "tmp")

    def inside(self, script):
        proxies = {name: value for name, value in os.environ.items() if "proxy" in name.lower()}
        environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND": "noninteractive", "HOME": "/root",
                       "LC_ALL": "C.UTF-8", **proxies}
        return run("chroot", self.system, "bash", "-euc", script, env=environment)

    def files(self):
        """Files, folders and links."""
        return set(self.inside("find / -xdev \\( -path /proc -o -path /sys \\) -prune -o -print").splitlines())

    def test_installed_run_and_removed(self):
        before = self.files()
        self.inside("apt-get -q -y install --no-install-recommends /tmp/carvello-cli_*.deb")
        self.inside("cd /tmp; carvello-cli synth band.wav --seconds 3; mkdir cuts;"
                    "carvello-cli cut band.wav --output cuts --entry f=7.35M,bw=10k; carvello-cli info cuts/*.wav")
        self.inside("apt-get -q -y install --no-install-recommends /tmp/carvello_*.deb")
        for program in ("carvello", "carvello-cli"):
            told = self.inside(f"QT_QPA_PLATFORM=offscreen {program} --version").splitlines()
            release = re.search(r"(?m)^## (\S+)", (PROJECT / "CHANGELOG.md").read_text())[1]
            self.assertIn(f"Release: {release}", told)
        # It shows its window, and is then ended from outside.
        self.inside("cd /tmp; status=0; QT_QPA_PLATFORM=offscreen timeout 5 carvello band.wav || status=$?;"
                    "[ $status = 124 ]")
        self.assertTrue([path for path in self.files() - before if path.endswith("/carvello.desktop")])
        self.inside("apt-get -q -y purge carvello carvello-cli; rm -rf /tmp/* /root/.config /root/.local /root/.cache")
        left = {path for path in self.files() - before if "carvello" in path.lower()}
        self.assertEqual(left, set())


if __name__ == "__main__":
    unittest.main()

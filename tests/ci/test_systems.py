"""./run and ./test on systems whose packages they do not install: what they say and whether they go on. The systems are
a file as /etc/os-release and a PATH; no header is there unless a compiler that finds all stands in it."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
SHELL_TOOLS = ("bash", "env", "dirname", "grep", "awk", "paste", "cat", "rm", "mktemp", "sed", "nproc")

SYSTEMS = {
    "fedora": 'NAME="Fedora Linux"\nID=fedora\nPRETTY_NAME="Fedora Linux 41 (Workstation Edition)"\n',
    "rocky": 'NAME="Rocky Linux"\nID="rocky"\nID_LIKE="rhel centos fedora"\nPRETTY_NAME="Rocky Linux 9.4"\n',
    "tumbleweed": 'ID="opensuse-tumbleweed"\nID_LIKE="opensuse suse"\nPRETTY_NAME="openSUSE Tumbleweed"\n',
    "arch": 'NAME="Arch Linux"\nPRETTY_NAME="Arch Linux"\nID=arch\n',
    "manjaro": 'ID=manjaro\nID_LIKE=arch\nPRETTY_NAME="Manjaro Linux"\n',
    "alpine": 'NAME="Alpine Linux"\nID=alpine\nPRETTY_NAME="Alpine Linux v3.20"\n',
    "other": 'ID=gentoo\nPRETTY_NAME="Gentoo Linux"\n',
}


class TestSystemsWithoutDebianPackages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.bin = self.folder / "bin"
        self.bin.mkdir()
        for tool in SHELL_TOOLS:
            (self.bin / tool).symlink_to(shutil.which(tool))
        self.project = self.folder / "project"
        for name in ("run", "test", "cmake/build.sh", "packaging/debian/packages.sh",
                     "packaging/linux/other_systems.sh", "tests/short_form.sh"):
            (self.project / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PROJECT / name, self.project / name)

    def program(self, name, text="#!/usr/bin/env bash\nexit 0\n"):
        (self.bin / name).write_text(text)
        (self.bin / name).chmod(0o755)

    def run_on(self, system, *command, **env):
        release = self.folder / "os-release"
        if system:
            release.write_text(SYSTEMS[system])
        return subprocess.run([self.project / command[0], *command[1:]], capture_output=True, text=True, check=False,
                              env={"PATH": str(self.bin), "HOME": str(self.folder), "CARVELLO_OS_RELEASE": str(release),
                                   "CMAKE_PREFIX_PATH": str(self.folder / "qt"), **env})

    def has_everything(self):
        """Programs that do nothing, but for CMake, which tells what it was asked, and makes what is then run."""
        for name in ("c++", "ninja", "lrelease"):
            self.program(name)
        self.program("cmake", f"""#!/usr/bin/env bash
echo "$*" >> '{self.folder}/asked'
case $1 in --build)
  mkdir -p build/release/bin
  printf '#!/usr/bin/env bash\\necho "cli $*"\\n' > build/release/bin/carvello-cli
  chmod +x build/release/bin/carvello-cli
esac
""")
        (self.bin / "mkdir").symlink_to(shutil.which("mkdir"))
        (self.bin / "chmod").symlink_to(shutil.which("chmod"))
        for name in ("lib/cmake/Qt6Widgets/Qt6WidgetsConfig.cmake", "translations/qtbase_de.qm"):
            (self.folder / "qt" / name).parent.mkdir(parents=True, exist_ok=True)
            (self.folder / "qt" / name).touch()

    def test_what_is_missing_is_named_with_the_system_s_own_command_and_names(self):
        for system, name, install in (
                ("fedora", "Fedora Linux 41 (Workstation Edition)",
                 "dnf install gcc-c++ cmake ninja-build pugixml-devel cli11-devel json-devel libpng-devel"),
                ("rocky", "Rocky Linux 9.4",
                 "dnf install gcc-c++ cmake ninja-build pugixml-devel cli11-devel json-devel libpng-devel"),
                ("tumbleweed", "openSUSE Tumbleweed",
                 "zypper install gcc-c++ cmake ninja pugixml-devel cli11-devel nlohmann_json-devel libpng16-devel"),
                ("arch", "Arch Linux", "pacman -S --needed gcc cmake ninja pugixml cli11 nlohmann-json libpng"),
                ("manjaro", "Manjaro Linux", "pacman -S --needed gcc cmake ninja pugixml cli11 nlohmann-json libpng"),
                ("alpine", "Alpine Linux v3.20",
                 "apk add g++ cmake samurai pugixml-dev cli11-dev nlohmann-json libpng-dev")):
            with self.subTest(system):
                result = self.run_on(system, "run", "--version")
                self.assertEqual(result.returncode, 1)
                self.assertEqual(result.stdout, "")
                lines = result.stderr.splitlines()
                self.assertIn(f"this is {name}.", lines[0])
                for line in ("  c++", "  cmake", "  pugixml.hpp", "  CLI/CLI.hpp", "  png.h"):
                    self.assertIn(line, lines)
                self.assertTrue(lines[-1].startswith(f"  {install}"), lines[-1])

    def test_on_a_system_that_is_not_known_debian_s_names_tell_what_is_meant(self):
        for system in ("other", None):
            with self.subTest(system):
                result = self.run_on(system, "run", "--version")
                self.assertEqual(result.returncode, 1)
                self.assertIn("Gentoo Linux" if system else "another system", result.stderr)
                self.assertIn("\n  g++ cmake ninja-build libpugixml-dev libcli11-dev nlohmann-json3-dev libpng-dev",
                              result.stderr)
                (self.folder / "os-release").unlink(missing_ok=True)

    def test_only_what_is_missing_is_named(self):
        self.has_everything()
        (self.bin / "ninja").unlink()
        result = self.run_on("fedora", "run", "--version")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.splitlines()[1:],
                         ["  ninja", "As root, and then try again:", "  dnf install ninja-build"])
        self.assertFalse((self.folder / "asked").exists())

    def test_a_header_that_the_compiler_does_not_find_is_missing(self):
        self.has_everything()
        self.program("c++", "#!/usr/bin/env bash\n! grep -q png.h\n")
        result = self.run_on("arch", "run", "--version")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.splitlines()[1:],
                         ["  png.h", "As root, and then try again:", "  pacman -S --needed libpng"])

    def test_where_everything_is_there_it_is_built_and_run_and_nothing_is_said_of_packages(self):
        self.has_everything()
        for system in (*SYSTEMS, None):
            with self.subTest(system):
                (self.folder / "os-release").unlink(missing_ok=True)
                result = self.run_on(system, "run", "info", "a b")
                self.assertEqual(result.stderr, "Building Carvello\n")
                self.assertEqual((result.returncode, result.stdout), (0, "cli info a b\n"))
                self.assertIn("--preset release", (self.folder / "asked").read_text())
                shutil.rmtree(self.project / "build")

    def test_the_tests_name_what_they_need_beyond_the_programs(self):
        self.has_everything()
        result = self.run_on("fedora", "test")
        self.assertEqual(result.returncode, 1)
        self.assertNotIn("gcc-c++", result.stderr)
        for name in (" sox", " libsndfile-utils", " xorg-x11-server-Xvfb", " desktop-file-utils"):
            self.assertIn(name, result.stderr.splitlines()[-1])

    def test_every_package_that_a_job_for_this_system_names_has_a_name_on_each_system(self):
        names = subprocess.run(
            ["bash", "-c", '. packaging/debian/packages.sh; . packaging/linux/other_systems.sh; printf "%s\\n" '
             '"${packages_test[@]}" "${packages_fuzz[@]}" "${packages_lint[@]}" "${packages_release[@]}"; echo; '
             'echo "$other_names"'],
            cwd=self.project, capture_output=True, text=True, check=True).stdout
        wanted, _, table = names.partition("\n\n")
        rows = {row.split()[0]: row.split() for row in table.splitlines() if row.strip()}
        self.assertGreater(len(wanted.split()), 20)
        self.assertEqual(sorted(set(wanted.split()) - rows.keys()), [])
        for row in rows.values():
            self.assertEqual(len(row), 6, row)


if __name__ == "__main__":
    unittest.main()

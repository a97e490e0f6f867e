"""What the folder for Windows is packed with and what is told of it. The build is a small stand-in that talks as a real
one does."""
import shutil
import subprocess
import tempfile
import unittest
import zipfile
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
COPIED = ("packaging/windows/package.sh", "packaging/source_date.sh", "src/support/version_record.h", "LICENSE")
STANDINS = {
    "packaging/debian/packages.sh": "packages_windows=(x)\ninstall_packages() { echo \"Installing $*\" >&2; }\n",
    "packaging/windows/build-dependencies.sh": "#!/bin/sh\necho Building >&2\n",
    "packaging/windows/third_party.sh": "third_party() { :; }\n",
    "cmake/build.sh": "configure() { :; }\n",
    "bin/cmake": """#!/bin/sh
case $1 in
  --build) echo 'ninja: no work to do.' ;;
  --install) mkdir -p "$4" && echo program > "$4/carvello-cli.exe" && echo 'Install the project...' ;;
esac
""",
}


class TestWindowsPackage(unittest.TestCase):
    def test_the_zip_is_all_that_is_told_on_stdout_which_the_setup_program_is_made_from(self):
        with tempfile.TemporaryDirectory() as folder:
            project = Path(folder).resolve()
            for name in COPIED:
                (project / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(PROJECT / name, project / name)
            for name, text in STANDINS.items():
                (project / name).parent.mkdir(parents=True, exist_ok=True)
                (project / name).write_text(text)
                (project / name).chmod(0o755)
            done = subprocess.run([str(project / "packaging" / "windows" / "package.sh")], capture_output=True, text=True,
                                  env={"PATH": f"{project / 'bin'}:/usr/bin:/bin", "SOURCE_DATE_EPOCH": "1000000000"},
                                  cwd="/", stdin=subprocess.DEVNULL)
            self.assertEqual(done.returncode, 0, done.stderr)
            told = done.stdout.splitlines()
            self.assertEqual(len(told), 1, done.stdout)
            with zipfile.ZipFile(told[0]) as archive:
                self.assertIn(f"{Path(told[0]).stem}/carvello-cli.exe", archive.namelist())


if __name__ == "__main__":
    unittest.main()

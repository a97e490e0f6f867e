"""What desktops, software centres and people who upgrade read about the program."""
import re
import shutil
import subprocess
import unittest
from pathlib import Path
from xml.etree import ElementTree

PROJECT = Path(__file__).resolve().parents[2]
METAINFO = PROJECT / "packaging" / "linux" / "carvello.metainfo.xml"
DESKTOP = PROJECT / "packaging" / "linux" / "carvello.desktop"


def checked(*command):
    if shutil.which(command[0]) is None:
        raise AssertionError(f"{command[0]} is not installed; Debian's packages are appstream and desktop-file-utils")
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=60)
    return done.returncode, done.stdout + done.stderr


class TestDescriptions(unittest.TestCase):
    def test_the_metadata_of_software_centres_has_nothing_to_complain_of(self):
        code, text = checked("appstreamcli", "validate", "--pedantic", "--no-net", METAINFO)
        complaints = set(re.findall(r"(?m)^[EWIP]: \S+ (\S+)$", text))
        if code != 0 or complaints:
            # What later validators say: their word for the developer is one that earlier ones refuse, and there is no page.
            self.assertLessEqual(complaints, {"developer-name-tag-deprecated", "developer-info-missing",
                                              "url-homepage-missing"}, text)
            self.assertTrue({"developer-name-tag-deprecated", "url-homepage-missing"} <= complaints, text)

    def test_the_entry_of_menus_is_valid(self):
        code, text = checked("desktop-file-validate", DESKTOP)
        self.assertEqual((code, text), (0, ""))

    def test_the_metadata_name_the_entry_of_menus(self):
        root = ElementTree.parse(METAINFO).getroot()
        self.assertEqual(root.find("launchable").text, DESKTOP.name)

    def test_all_tell_the_same_version(self):
        record = (PROJECT / "src" / "support" / "version_record.h").read_text()
        version = re.search(r'FILE_VERSION "(\d+\.\d+\.\d+)\.\d+"', record)[1]
        self.assertTrue(version.startswith(re.search(r'PRODUCT_VERSION "([\d.]+)"', record)[1]))
        release = ElementTree.parse(METAINFO).getroot().find("releases/release")
        self.assertEqual(release.get("version"), version)
        self.assertEqual(re.search(r"(?m)^## (\S+) - (\S+)$", (PROJECT / "CHANGELOG.md").read_text()).groups(),
                         (version, release.get("date")))
        changelog = (PROJECT / "packaging" / "debian" / "package" / "changelog").read_text()
        self.assertEqual(re.match(r"carvello \((\S+)\)", changelog)[1], version)


if __name__ == "__main__":
    unittest.main()

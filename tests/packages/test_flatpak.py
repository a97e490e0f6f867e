"""The Flatpak manifest, as far as that can be looked at without the runtime that it is built in."""
import json
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path
from xml.etree import ElementTree

PROJECT = Path(__file__).resolve().parents[2]
FOLDER = PROJECT / "packaging" / "flatpak"
INSTALL = (PROJECT / "cmake" / "install.cmake").read_text()


def manifest_text():
    paths = sorted(FOLDER.glob("*.yml"))
    assert len(paths) == 1, paths
    return paths[0], paths[0].read_text()


class TestFlatpak(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.path, cls.text = manifest_text()
        try:
            import yaml
        except ImportError as missing:
            raise unittest.SkipTest("no python3-yaml: the manifest is NOT LOOKED AT") from missing
        cls.manifest = yaml.safe_load(cls.text)

    def test_id_is_that_of_the_metadata_and_the_file(self):
        root = ElementTree.parse(PROJECT / "packaging" / "linux" / "carvello.metainfo.xml").getroot()
        self.assertEqual(self.manifest["id"], root.find("id").text)
        self.assertEqual(self.path.name, self.manifest["id"] + ".yml")
        self.assertIn(f"RENAME {self.manifest['id']}.metainfo.xml", INSTALL)

    def test_files_that_are_renamed_are_installed_by_these_names(self):
        self.assertTrue((PROJECT / "packaging" / "linux" / self.manifest["rename-desktop-file"]).is_file())
        self.assertIn(f"packaging/linux/{self.manifest['rename-desktop-file']}", INSTALL)
        desktop = (PROJECT / "packaging" / "linux" / self.manifest["rename-desktop-file"]).read_text()
        self.assertIn(f"\nIcon={self.manifest['rename-icon']}\n", desktop)
        self.assertIn(f"\nExec={self.manifest['command']} ", desktop)
        self.assertTrue((PROJECT / "resources" / f"{self.manifest['rename-icon']}.svg").is_file())
        self.assertIn(f"RENAME {self.manifest['rename-icon']}.png", INSTALL)

    def test_all_that_is_installed_exists(self):
        sizes = re.search(r"foreach\(size ([\d ]+)\)", INSTALL)[1].split()
        names = [name for name in re.findall(r"install\((?:FILES|DIRECTORY) ((?:packaging|resources|docs)\S*)", INSTALL)]
        self.assertGreater(len(names), 4)
        for name in names:
            for size in sizes if "${size}" in name else [""]:
                path = PROJECT / name.replace("${size}", size)
                self.assertTrue(path.exists(), path)
        self.assertTrue((FOLDER / self.manifest["modules"][-1]["sources"][0]["path"] / "CMakeLists.txt").is_file())

    def test_every_library_that_the_build_asks_for_is_a_module_or_of_the_runtime(self):
        wanted = set()
        for path in [PROJECT / "CMakeLists.txt", *(PROJECT / "src").rglob("CMakeLists.txt")]:
            wanted.update(re.findall(r"find_package\((\w+)", path.read_text()))
        modules = {"CLI11": "cli11", "nlohmann_json": "nlohmann-json", "pugixml": "pugixml"}
        of_the_runtime = {"Threads", "PNG", "Qt6"}
        self.assertEqual(wanted - of_the_runtime, set(modules))
        self.assertEqual([module["name"] for module in self.manifest["modules"]][:-1],
                         ["pugixml", "cli11", "nlohmann-json"])
        self.assertEqual(self.manifest["modules"][-1]["name"], "carvello")

    def test_libraries_are_taken_from_their_projects_in_fixed_versions(self):
        for module in self.manifest["modules"][:-1]:
            for source in module["sources"]:
                self.assertEqual(source["type"], "git")
                self.assertRegex(source["url"], r"^https://github\.com/.*\.git$")
                self.assertRegex(source["tag"], r"^v\d+\.\d+(\.\d+)?$")

    def test_options_of_the_build_are_ours(self):
        texts = (PROJECT / "CMakeLists.txt").read_text() + (PROJECT / "cmake" / "warnings.cmake").read_text()
        for option in self.manifest["modules"][-1]["config-opts"]:
            name = re.match(r"-D(\w+)=", option)[1]
            self.assertTrue(name.startswith("CMAKE_") or f"option({name} " in texts, option)

    def test_what_builds_leave_in_the_sources_is_neither_packed_nor_committed(self):
        ignored = re.findall(r"(?m)^/([\w.-]+)/$", (PROJECT / ".gitignore").read_text())
        self.assertIn(".flatpak-builder", ignored)
        self.assertEqual(self.manifest["modules"][-1]["sources"][0]["skip"], ignored)

    def test_the_host_can_be_read_and_only_one_folder_be_written_to(self):
        filesystems = [option.split("=", 1)[1] for option in self.manifest["finish-args"]
                       if option.startswith("--filesystem=")]
        self.assertEqual(filesystems, ["host:ro", "xdg-download"])
        self.assertNotIn("--share=network", self.manifest["finish-args"])

    def test_the_services_that_the_window_calls_may_be_called(self):
        called = set()
        for path in (PROJECT / "src" / "ui").glob("*_dbus.cpp"):
            called.update(re.findall(r'"((?:org\.freedesktop|com\.canonical)\.\w+)[".]', path.read_text()))
        told = {option.split("=", 1)[1] for option in self.manifest["finish-args"] if "talk-name=" in option}
        self.assertEqual(called, told)

    @unittest.skipUnless(shutil.which("flatpak-builder"), "no flatpak-builder: it is NOT ASKED about the manifest")
    def test_flatpak_builder_reads_it(self):
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run(["flatpak-builder", "--show-manifest", str(self.path)], capture_output=True, text=True,
                                  cwd=folder, timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertNotRegex(done.stderr, "(?i)unknown property|warning")
        self.assertEqual(json.loads(done.stdout)["id"], self.manifest["id"])


if __name__ == "__main__":
    unittest.main()

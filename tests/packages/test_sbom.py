"""The bills of materials: fields as SPDX wants them, the same bytes every time, and just what the programs load."""
import copy
import hashlib
import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
import zipfile
from pathlib import Path

import spdx

PROJECT = Path(__file__).resolve().parents[2]
SBOM = PROJECT / "packaging" / "sbom.py"
PROGRAMS = Path(os.environ.get("CARVELLO_PROGRAMS", PROJECT / "build" / "release" / "bin"))
EPOCH = 1_800_000_000  # 2027-01-15 08:00:00 UTC
THIRD_PARTY = """What is linked into Carvello 1.0 for Windows. The texts of the licences are the files beside this one.

Qt
  version: 6.4.2+dfsg-10
  licence: LGPL-3.0-only
  text:    Qt.txt

FreeType, in Qt
  version: 2.12.1
  licence: FTL OR GPL-2.0-only
  text:    Qt.txt

NSIS, in the setup program
  version: 3.08-3
  licence: Zlib
  text:    NSIS.txt
"""


def loaded_packages(program):
    """The Debian packages of all libraries that the loader itself says it would load for the program, also indirectly."""
    text = subprocess.run(["ldd", str(program)], check=True, capture_output=True, text=True).stdout
    paths = [name for path in re.findall(r"=> (/\S+)", text) for name in (path, os.path.realpath(path), "/usr" + path)]
    told = subprocess.run(["dpkg-query", "-S", *paths], capture_output=True, text=True).stdout
    return {line.split(":")[0] for line in told.splitlines()}


def directly_needed(program):
    text = subprocess.run(["readelf", "-d", str(program)], check=True, capture_output=True, text=True).stdout
    return set(re.findall(r"\(NEEDED\)\s+Shared library: \[(\S+)\]", text))


@unittest.skipUnless(shutil.which("dpkg-deb"), "no dpkg-deb: bills of Debian packages are NOT LOOKED AT")
class TestBillsOfMaterials(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def bill(self, path, expected=0):
        done = subprocess.run([str(SBOM), str(path)], capture_output=True, text=True,
                              env={**os.environ, "SOURCE_DATE_EPOCH": str(EPOCH), "PYTHONDONTWRITEBYTECODE": "1"})
        self.assertEqual(done.returncode, expected, done.stderr)
        if expected:
            return done.stderr
        return json.loads(path.with_name(path.name + ".spdx.json").read_text())

    def debian_package(self, name, *programs, depends=""):
        tree = self.folder / name
        (tree / "DEBIAN").mkdir(parents=True)
        (tree / "DEBIAN" / "control").write_text(
            f"Package: {name}\nVersion: 1.0.0\nArchitecture: amd64\nMaintainer: A <a@b.example>\n{depends}Description: x\n")
        for program in programs:
            (tree / "usr" / "lib").mkdir(parents=True, exist_ok=True)
            shutil.copy(program, tree / "usr" / "lib")
        path = self.folder / f"{name}_1.0.0_amd64.deb"
        subprocess.run(["dpkg-deb", "-Znone", "--root-owner-group", "--build", str(tree), str(path)], check=True,
                       stdout=subprocess.DEVNULL)
        return path

    def windows_package(self):
        path = self.folder / "Carvello-1.0-windows-x86_64.zip"
        with zipfile.ZipFile(path, "w") as archive:
            archive.writestr("Carvello-1.0-windows-x86_64/licences/THIRD-PARTY.txt", THIRD_PARTY)
        return path

    def assert_valid(self, document, path):
        self.assertEqual(list(spdx.problems(document)), [])
        main = document["packages"][0]
        self.assertEqual(document["creationInfo"]["created"], "2027-01-15T08:00:00Z")
        self.assertEqual(main["packageFileName"], path.name)
        self.assertIn({"algorithm": "SHA256", "checksumValue": hashlib.sha256(path.read_bytes()).hexdigest()},
                      main["checksums"])
        self.assertEqual(list(spdx.related(document, "DESCRIBES")), [main["name"]])

    def test_debian_package_names_just_the_libraries_that_its_programs_load(self):
        programs = [PROGRAMS / "carvello-cli", PROGRAMS / "libVantrel.so"]
        path = self.debian_package("carvello-cli", *programs)
        document = self.bill(path)
        self.assert_valid(document, path)
        told = spdx.related(document, "DYNAMIC_LINK")
        self.assertLessEqual({"libc6", "libstdc++6", "libpugixml1v5"}, told.keys())
        self.assertLessEqual(told.keys(), set.union(*(loaded_packages(program) for program in programs)))
        wanted = set.union(*(directly_needed(program) for program in programs)) - {"libVantrel.so"}
        owners = {}
        for package in told:
            files = subprocess.run(["dpkg-query", "-L", package], check=True, capture_output=True, text=True).stdout
            owners[package] = {Path(line).name for line in files.splitlines()} & wanted
        self.assertEqual(set.union(*owners.values()), wanted)
        self.assertEqual([package for package, sonames in owners.items() if not sonames], [])
        for package, version in {**told, **spdx.related(document, "STATIC_LINK")}.items():
            installed = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], check=True,
                                       capture_output=True, text=True).stdout
            self.assertEqual(version, installed)
        self.assertEqual(set(spdx.related(document, "STATIC_LINK")), {"libcli11-dev", "nlohmann-json3-dev"})

    def test_licences_of_all_that_is_loaded_are_known(self):
        document = self.bill(self.debian_package("carvello-cli", PROGRAMS / "carvello-cli"))
        unknown = [package["name"] for package in document["packages"] if package["licenseDeclared"] == "NOASSERTION"]
        self.assertEqual(unknown, [])

    def test_package_that_depends_on_another_of_ours_says_so(self):
        path = self.debian_package("carvello", depends="Depends: carvello-cli (= 1.0.0), libc6 (>= 2.34)\n")
        document = self.bill(path)
        self.assert_valid(document, path)
        self.assertEqual(spdx.related(document, "DEPENDS_ON"), {"carvello-cli": "1.0.0"})
        self.assertEqual(spdx.related(document, "DYNAMIC_LINK"), {})

    def test_same_package_gives_the_same_bytes_and_another_one_another_namespace(self):
        path = self.debian_package("carvello")
        first = self.bill(path)
        text = (self.folder / (path.name + ".spdx.json")).read_bytes()
        self.bill(path)
        self.assertEqual((self.folder / (path.name + ".spdx.json")).read_bytes(), text)
        path.write_bytes(path.read_bytes() + b"\n")
        self.assertNotEqual(self.bill(path)["documentNamespace"], first["documentNamespace"])

    def test_windows_packages_name_what_their_list_names(self):
        path = self.windows_package()
        document = self.bill(path)
        self.assert_valid(document, path)
        self.assertEqual(spdx.related(document, "STATIC_LINK"), {"Qt": "6.4.2+dfsg-10", "FreeType, in Qt": "2.12.1"})
        setup = self.folder / "Carvello-1.0-setup.exe"
        setup.write_bytes(b"MZ")
        document = self.bill(setup)
        self.assert_valid(document, setup)
        self.assertEqual(set(spdx.related(document, "STATIC_LINK")),
                         {"Qt", "FreeType, in Qt", "NSIS, in the setup program"})

    def test_setup_program_alone_is_refused(self):
        setup = self.folder / "Carvello-1.0-setup.exe"
        setup.write_bytes(b"MZ")
        self.assertIn("is not beside it", self.bill(setup, expected=1))

    def test_source_archive_has_nothing_in_it_but_itself(self):
        path = self.folder / "carvello-1.0.0.tar.xz"
        path.write_bytes(b"x")
        document = self.bill(path)
        self.assert_valid(document, path)
        self.assertEqual(len(document["packages"]), 1)
        self.assertEqual(document["packages"][0]["primaryPackagePurpose"], "SOURCE")

    def test_what_is_no_package_is_refused(self):
        path = self.folder / "x.txt"
        path.write_bytes(b"x")
        self.assertIn("neither", self.bill(path, expected=1))


class TestRulesOfSpdx(unittest.TestCase):
    """A check that finds nothing in a document that breaks the rules would be none."""
    PACKAGE = {"SPDXID": "SPDXRef-Package-x", "name": "x", "versionInfo": "1", "downloadLocation": "NOASSERTION",
               "filesAnalyzed": False, "licenseConcluded": "MIT", "licenseDeclared": "MIT",
               "copyrightText": "NOASSERTION", "primaryPackagePurpose": "APPLICATION"}
    DOCUMENT = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": "x",
                "documentNamespace": "https://a.example/x", "packages": [PACKAGE],
                "creationInfo": {"created": "2027-01-15T08:00:00Z", "creators": ["Tool: x-1"]},
                "relationships": [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                                   "relatedSpdxElement": "SPDXRef-Package-x"}]}

    def test_right_document_has_no_problem_and_every_wrong_one_has(self):
        self.assertEqual(list(spdx.problems(self.DOCUMENT)), [])
        changes = [
            lambda d: d.update(spdxVersion="SPDX-2.2"), lambda d: d.update(extra=1),
            lambda d: d.update(documentNamespace="https://a.example/x#y"),
            lambda d: d["creationInfo"].update(created="2027-01-15 08:00:00"),
            lambda d: d["creationInfo"].update(creators=["somebody"]),
            lambda d: d["packages"][0].update(SPDXID="SPDXRef-a+b"), lambda d: d["packages"][0].update(versionInfo=""),
            lambda d: d["packages"][0].update(licenseDeclared="Free"),
            lambda d: d["packages"][0].update(checksums=[{"algorithm": "SHA1", "checksumValue": "ab"}]),
            lambda d: d["packages"].append(copy.deepcopy(d["packages"][0])), lambda d: d["relationships"].clear(),
            lambda d: d["relationships"][0].update(relationshipType="LIKES"),
        ]
        for number, change in enumerate(changes):
            document = copy.deepcopy(self.DOCUMENT)
            change(document)
            self.assertNotEqual(list(spdx.problems(document)), [], number)


if __name__ == "__main__":
    unittest.main()

"""The folder that is handed out for Windows: what it holds, what it needs, and that it runs from anywhere."""
import os
import re
import shutil
import subprocess
import zipfile
from pathlib import Path

from makers import Layout, Tone, signal, write_recording
from program import EndToEndTest, native, run, run_ok

PROJECT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["CARVELLO_BUILD"])
OBJDUMP = "x86_64-w64-mingw32-objdump"

# Libraries that are part of every Windows 10, as are all whose names begin with "api-ms-win-core-".
SYSTEM_LIBRARIES = {
    "advapi32.dll", "authz.dll", "comdlg32.dll", "d3d11.dll", "d3d9.dll", "dwmapi.dll", "dwrite.dll", "dxgi.dll",
    "gdi32.dll", "imm32.dll", "kernel32.dll", "msvcrt.dll", "netapi32.dll", "ole32.dll", "oleaut32.dll", "shcore.dll",
    "shell32.dll", "shlwapi.dll", "user32.dll", "userenv.dll", "uxtheme.dll", "version.dll", "winmm.dll", "ws2_32.dll",
    "wtsapi32.dll"}

ENTRY_POINTS = {
    "Advanced", "AllocInstance", "Closedown", "Diagnostics", "DisableFractionalResampler", "DownconvertInit",
    "DownconvertRateIn", "DownconvertRateOut", "DownconvertResume", "DownconvertRun", "FirstStageExclude",
    "FirstStageOnly", "FractionalInit", "FractionalProcess", "IsAdvanced", "NCO", "PartionedFFTInit",
    "PartionedFFTProcess", "ReleaseInstance"}


def imports(path):
    """Names of the libraries without which the system does not start the program."""
    text = subprocess.run([OBJDUMP, "--private-headers", path], check=True, capture_output=True, text=True).stdout
    return {line.split()[-1].lower() for line in text.splitlines() if "DLL Name:" in line}


def exports(path):
    """Names that a library gives out, each as often as it does."""
    text = subprocess.run([OBJDUMP, "--private-headers", path], check=True, capture_output=True, text=True).stdout
    lines = iter(text.splitlines())
    names = []
    for line in lines:
        if line.startswith("[Ordinal/Name Pointer] Table"):
            break
    for line in lines:
        if not line.strip().startswith("["):
            break
        names.append(line.split()[-1])
    return names


def section_names(path):
    text = subprocess.run([OBJDUMP, "--section-headers", path], check=True, capture_output=True, text=True).stdout
    return {fields[1] for fields in map(str.split, text.splitlines()) if len(fields) == 7 and fields[0].isdigit()}


class TestPackage(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        printed = subprocess.run([PROJECT / "packaging/windows/package.sh", BUILD, cls.shared], check=True,
                                 capture_output=True, text=True).stdout
        cls.zip = Path(printed.strip())
        cls.package = cls.zip.with_suffix("")
        cls.programs = [cls.package / name for name in ("carvello.exe", "carvello-cli.exe", "Vantrel.dll")]

    def test_holds_programs_help_and_licences(self):
        for path in [*self.programs, self.package / "README.md", self.package / "Help.rtf",
                     self.package / "docs" / "cli.md", self.package / "docs" / "windows.md"]:
            self.assertTrue(path.is_file(), path)
        help_text = (self.package / "Help.rtf").read_bytes().strip()
        self.assertTrue(help_text.startswith(b"{\\rtf1"))
        self.assertTrue(help_text.endswith(b"}"), help_text[-40:])
        licences = {path.stem: path.read_text(errors="replace") for path in (self.package / "licences").iterdir()}
        for library in ("Carvello", "Qt", "pugixml", "CLI11", "nlohmann-json", "mingw-w64", "GCC", "LGPL-3", "GPL-3"):
            self.assertIn(library, licences)
        self.assertIn("GNU GENERAL PUBLIC LICENSE", licences["Carvello"])
        self.assertIn("LGPL-3", licences["Qt"])

    def test_names_the_libraries_that_are_linked_in_with_their_versions_and_licences(self):
        text = (self.package / "licences" / "THIRD-PARTY.txt").read_text()
        libraries = {}
        for block in text.split("\n\n")[1:]:
            name, *lines = block.strip().splitlines()
            libraries[name] = dict(line.strip().split(":", 1) for line in lines)
        self.assertGreaterEqual(libraries.keys(), {
            "Qt", "FreeType, in Qt", "PCRE2, in Qt", "pugixml", "zlib", "libpng", "CLI11", "JSON for Modern C++",
            "mingw-w64 runtime", "GCC runtime"})
        for name, facts in libraries.items():
            with self.subTest(library=name):
                self.assertRegex(facts["version"].strip(), r"^\d+[.:]\d+")
                self.assertTrue(facts["licence"].strip())
                self.assertGreater((self.package / "licences" / facts["text"].strip()).stat().st_size, 500)
        self.assertRegex(libraries["Qt"]["version"].strip(), r"^6\.\d+\.\d+")

    def test_the_same_build_gives_the_same_zip(self):
        again = subprocess.run([PROJECT / "packaging/windows/package.sh", BUILD, self.folder], check=True,
                               capture_output=True, text=True).stdout
        self.assertEqual(Path(again.strip()).read_bytes(), self.zip.read_bytes())

    def test_every_link_of_its_documents_leads_somewhere(self):
        links = 0
        for path in self.package.rglob("*.md"):
            for target in re.findall(r"\]\(([^)#:]+)\)", path.read_text()):
                # What is told to developers may lead into the sources.
                if path.name in ("windows.md", "architecture.md") and target.startswith("../"):
                    continue
                self.assertTrue((path.parent / target).exists(), f"{path.name}: {target}")
                links += 1
        self.assertGreater(links, 10)

    def test_the_version_that_it_tells_is_that_of_the_file(self):
        program = self.folder / "carvello-cli.exe"
        content = (self.package / "carvello-cli.exe").read_bytes()
        key = "ProductVersion\0".encode("utf-16-le")
        self.assertEqual(content.count(key), 1)
        at = content.index(key) + len(key)
        at = content.index("1.0\0".encode("utf-16-le"), at, at + 16)
        program.write_bytes(content[:at] + "7.3".encode("utf-16-le") + content[at + 6:])
        first = run_ok("--version", program=program).out.splitlines()[0]
        self.assertRegex(first, r"^Carvello version 7\.3 build \d+$")

    def test_holds_no_other_program(self):
        binaries = {path.name for path in self.package.rglob("*") if path.suffix in (".exe", ".dll")}
        self.assertEqual(binaries, {path.name for path in self.programs})

    def test_programs_need_windows_only(self):
        for path in self.programs:
            with self.subTest(program=path.name):
                needed = {name for name in imports(path) if not name.startswith("api-ms-win-core-")}
                self.assertIn("kernel32.dll", needed)
                self.assertEqual(needed - SYSTEM_LIBRARIES, set())

    def test_the_library_exports_its_entry_points_only(self):
        self.assertEqual(sorted(exports(self.package / "Vantrel.dll")), sorted(ENTRY_POINTS))

    def test_programs_are_stripped(self):
        for path in self.programs:
            with self.subTest(program=path.name):
                self.assertIn(".text", section_names(path))
                self.assertEqual({name for name in section_names(path) if name.startswith(".debug")}, set())
                symbols = subprocess.run([OBJDUMP, "--syms", path], check=True, capture_output=True, text=True).stdout
                self.assertIn("no symbols", symbols)

    def test_is_smaller_than_40_megabytes(self):
        size = sum(path.stat().st_size for path in self.package.rglob("*") if path.is_file())
        self.assertLess(size, 40_000_000)

    def test_zip_holds_the_folder(self):
        unpacked = self.folder / "unpacked"
        with zipfile.ZipFile(self.zip) as archive:
            archive.extractall(unpacked)
        (root,) = unpacked.iterdir()
        self.assertEqual(root.name, self.package.name)
        names = sorted(path.relative_to(root) for path in root.rglob("*"))
        self.assertEqual(names, sorted(path.relative_to(self.package) for path in self.package.rglob("*")))
        for name in names:
            if (root / name).is_file():
                self.assertEqual((root / name).read_bytes(), (self.package / name).read_bytes(), name)

    def test_runs_from_any_folder(self):
        elsewhere = self.folder / "Jörgs Programme"
        shutil.copytree(self.package, elsewhere)
        source = write_recording(self.folder / "in.wav", Layout(48_000), signal([Tone(1_000, 6_000)], 48_000, 0, 48_000))
        run_ok("cut", source, "--output", self.output, "--entry", "f=7.1M,bw=8k", "--quiet",
               program=elsewhere / "carvello-cli.exe", cwd=self.folder)
        self.assertEqual(len(self.names()), 1)

    def test_without_the_library_the_command_line_says_so(self):
        alone = self.folder / "alone"
        shutil.copytree(self.package, alone)
        (alone / "Vantrel.dll").unlink()
        source = write_recording(self.folder / "in.wav", Layout(48_000), signal([Tone(1_000, 6_000)], 48_000, 0, 48_000))
        result = run("cut", source, "--output", self.output, "--entry", "f=7.1M,bw=8k",
                     program=alone / "carvello-cli.exe")
        self.assertEqual(result.code, 3)
        self.assertIn("Vantrel", result.err)
        self.assertIn(native(alone), result.err)
        self.assertEqual(self.names(), [])

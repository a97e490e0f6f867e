"""The setup program for Windows: what it puts where, for whom, what it leaves alone, and that all of it goes again."""
import os
import resource
import shutil
import subprocess
import time
from pathlib import Path

from makers import Layout, Tone, signal, write_recording
from program import TIMEOUT, EndToEndTest, command, contents, environment, native, run, run_ok

PROJECT = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ["CARVELLO_BUILD"])
DISK = PROJECT / "build/wine/drive_c"
PROGRAMS = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"
UNINSTALL = PROGRAMS + "\\Carvello"
REGISTERED = "HKCU\\Software\\RegisteredApplications"
SETTINGS = "HKCU\\Software\\Halvarn (V3)\\Carvello"
ENDINGS = {".wav", ".rf64", ".sigmf-meta", ".sigmf-collection", ".sigmf", ".json"}

# What the setup program's exit code means.
DONE, REFUSED, IN_USE, FAILED = 0, 2, 4, 5


def reg(*arguments):
    return subprocess.run(command(*arguments, program="reg"), env=environment(), capture_output=True, timeout=TIMEOUT)


def registry(key):
    """Everything below a key: the values of each key by name, with their types."""
    found = {}
    done = reg("query", key, "/s", "/reg:64")
    if done.returncode != 0:
        return found  # there is no such key
    for line in done.stdout.decode("cp437").splitlines():
        if line.startswith("    "):
            name, kind, value = (line + "    ").split("    ", 4)[1:4]
            values[name] = (kind, value.strip())
        elif line:
            values = found.setdefault(line.strip(), {})
    return found


def users_registry():
    """All that is the user's own, but what Windows' shell notes by itself."""
    return {key: values for key, values in registry("HKCU").items() if "\\Explorer" not in key}


def machines_registry():
    """What setup might touch of what belongs to the whole machine."""
    return [registry(f"HKLM\\{key}") for key in (
        PROGRAMS, "Software\\Classes\\.wav", "Software\\Classes\\.json",
        "Software\\Classes\\Applications", "Software\\Classes\\Carvello.Recording", "Software\\Carvello",
        "Software\\RegisteredApplications", "SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment")]


def user_folder():
    """The folder of the user that the environment was made for."""
    (folder,) = (path for path in (DISK / "users").iterdir() if path.name != "Public")
    return folder


def shortcuts():
    return sorted(str(path.relative_to(DISK)) for path in DISK.rglob("*.lnk"))


def files_of(folder):
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class TestInstaller(EndToEndTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        made = subprocess.run([PROJECT / "packaging/windows/package.sh", BUILD, cls.shared], check=True,
                              capture_output=True, text=True).stdout
        cls.package = Path(made.strip()).with_suffix("")
        cls.program = cls.make_setup(cls.package, cls.shared / "setup")
        # An older version, which is small besides.
        cls.old_package = cls.shared / "old" / cls.package.name
        (cls.old_package / "docs").mkdir(parents=True)
        for name in ("carvello.exe", "carvello-cli.exe", "Vantrel.dll", "docs/dropped.md"):
            (cls.old_package / name).write_text("old")
        cls.old_program = cls.make_setup(cls.old_package, cls.shared / "old setup")
        # Wine gives itself out as an older Windows, except to this program.
        cls.as_windows_10 = f"HKCU\\Software\\Wine\\AppDefaults\\{cls.program.name}"
        reg("add", cls.as_windows_10, "/v", "Version", "/d", "win10", "/f")
        cls.addClassCleanup(reg, "delete", cls.as_windows_10, "/f")
        cls.own_folder = user_folder() / "AppData/Local/Programs/Carvello"
        cls.common_folder = DISK / "Program Files/Carvello"

    @staticmethod
    def make_setup(folder, out):
        made = subprocess.run([PROJECT / "packaging/windows/installer.sh", "--fast", folder, out], check=True,
                              capture_output=True, text=True).stdout
        return Path(made.strip())

    def setUp(self):
        super().setUp()
        self.addCleanup(self.clean)
        self.clean()

    def clean(self):
        for hive in ("HKCU", "HKLM"):
            for values in registry(f"{hive}\\{UNINSTALL}").values():
                folder = self.path_of(values["InstallLocation"][1])
                self.remove(folder, wait=True)
                shutil.rmtree(folder, ignore_errors=True)
        for folder in (self.own_folder, self.common_folder):
            shutil.rmtree(folder, ignore_errors=True)

    @staticmethod
    def path_of(name):
        return Path(name[2:].replace("\\", "/")) if name[0] in "Zz" else DISK / name[3:].replace("\\", "/")

    def setup(self, *options, folder=None, program=None, **others):
        """Its exit code. /D= takes the rest of the command line as it is, so that it must not be put in quotes."""
        rest = f"/D={folder if isinstance(folder, str) else native(folder)}".split(" ") if folder else []
        return run("/S", *options, *rest, program=program or self.program, **others).code

    def remove(self, folder, *options, wait=False):
        """Its exit code where it is waited for; it then leaves itself. Else it goes on behind the program's end."""
        if wait:
            return run("/S", *options, *f"_?={self.registered_name(folder)}".split(" "),
                       program=folder / "uninstall.exe").code
        code = run("/S", *options, program=folder / "uninstall.exe").code
        for _ in range(TIMEOUT):
            if not (folder / "uninstall.exe").exists():
                break
            time.sleep(0.2)
        return code

    @staticmethod
    def registered_name(folder):
        return "C:\\" + str(folder.relative_to(DISK)).replace("/", "\\") if DISK in folder.parents else native(folder)

    def assert_installed(self, folder, package=None):
        installed = files_of(folder)
        self.assertGreater(len(installed.pop("uninstall.exe")), 10_000)
        self.assertEqual(installed, files_of(package or self.package))

    def entry(self, hive="HKCU"):
        (values,) = registry(f"{hive}\\{UNINSTALL}").values()
        return values

    def test_for_one_user_it_installs_what_the_zip_holds_and_removes_all_of_it_again(self):
        before, machine, links = users_registry(), machines_registry(), shortcuts()
        self.assertEqual(self.setup(), DONE)
        self.assert_installed(self.own_folder)
        start = f"users/{user_folder().name}/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Carvello.lnk"
        self.assertEqual(set(shortcuts()) - set(links), {start})
        self.assertIn("carvello.exe".encode("utf-16-le"), (DISK / start).read_bytes())

        entry = self.entry()
        folder = self.registered_name(self.own_folder)
        self.assertEqual(entry["DisplayName"], ("REG_SZ", "Carvello"))
        self.assertRegex(entry["DisplayVersion"][1], r"^\d+\.\d+")
        self.assertIn(entry["DisplayVersion"][1], run_ok("--version", program=self.own_folder / "carvello-cli.exe").out)
        self.assertTrue(entry["Publisher"][1])
        self.assertEqual(entry["InstallLocation"], ("REG_SZ", folder))
        self.assertEqual(entry["UninstallString"], ("REG_SZ", f'"{folder}\\uninstall.exe"'))
        self.assertEqual(entry["QuietUninstallString"], ("REG_SZ", f'"{folder}\\uninstall.exe" /S'))
        size = sum(path.stat().st_size for path in self.package.rglob("*") if path.is_file()) / 1024
        self.assertAlmostEqual(int(entry["EstimatedSize"][1], 16) / size, 1, delta=0.05)

        source = write_recording(self.folder / "in.wav", Layout(48_000), signal([Tone(1_000, 6_000)], 48_000, 0, 48_000))
        run_ok("cut", source, "--output", self.output, "--entry", "f=7.1M,bw=8k", "--quiet",
               program=self.own_folder / "carvello-cli.exe")
        self.assertEqual(len(self.names()), 1)

        self.assertEqual(self.remove(self.own_folder), DONE)
        self.assertFalse(self.own_folder.exists())
        self.assertEqual(users_registry(), before)
        self.assertEqual(shortcuts(), links)
        self.assertEqual(machines_registry(), machine)

    def test_for_all_users_it_goes_where_all_find_it_and_leaves_it_clean(self):
        before, machine, links = users_registry(), machines_registry(), shortcuts()
        self.assertEqual(self.setup("/AllUsers", "/Desktop", "/Path", "/Associations"), DONE)
        self.assert_installed(self.common_folder)
        self.assertEqual(set(shortcuts()) - set(links), {
            "ProgramData/Microsoft/Windows/Start Menu/Programs/Carvello.lnk", "users/Public/Desktop/Carvello.lnk"})
        folder = self.registered_name(self.common_folder)
        self.assertEqual(self.entry("HKLM")["InstallLocation"], ("REG_SZ", folder))
        self.assertEqual(users_registry(), before)
        command_key = "HKLM\\Software\\Classes\\Carvello.Recording\\shell\\open\\command"
        self.assertIn(f'"{folder}\\carvello.exe" "%1"', str(registry(command_key)).replace("\\\\", "\\"))
        (path,) = registry("HKLM\\SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment").values()
        path = {name.lower(): value for name, value in path.items()}["path"][1]
        self.assertTrue(path.endswith(";" + folder), path)
        # Nothing tells for whom, and all have it: the next one is theirs, too.
        self.assertEqual(self.setup(), DONE)
        self.assertFalse(self.own_folder.exists())
        self.assertEqual(self.remove(self.common_folder), DONE)
        self.assertFalse(self.common_folder.exists())
        self.assertEqual(machines_registry(), machine)
        self.assertEqual(shortcuts(), links)

    def test_removal_leaves_settings_and_what_the_user_put_into_the_folder(self):
        self.addCleanup(reg, "delete", SETTINGS, "/f")
        reg("add", SETTINGS, "/v", "InputFile", "/d", "C:\\band.wav", "/f")
        folder = self.folder / "Jörgs Programme 日本" / "Carvello"
        self.assertEqual(self.setup(folder=folder), DONE)
        self.assert_installed(folder)
        mine = {folder / "band.wav": b"RIFF", folder / "docs" / "notes.md": b"mine"}
        for path, content in mine.items():
            path.write_bytes(content)
        self.assertEqual(self.remove(folder), DONE)
        self.assertEqual(files_of(folder), {"band.wav": b"RIFF", "docs/notes.md": b"mine"})
        self.assertEqual(registry(SETTINGS), {SETTINGS.replace("HKCU", "HKEY_CURRENT_USER"): {
            "InputFile": ("REG_SZ", "C:\\band.wav")}})

    def test_files_are_offered_to_it_only_if_asked_and_keep_what_opens_them(self):
        wav = "HKCU\\Software\\Classes\\.wav"
        self.addCleanup(reg, "delete", wav, "/f")
        reg("add", wav, "/ve", "/d", "Other.Player", "/f")
        reg("add", wav + "\\OpenWithProgids", "/v", "Other.Player", "/d", "", "/f")
        # No other program is there for this user alone, or has told what it opens: keys are missing that are usually there.
        reg("delete", f"HKCU\\{PROGRAMS}", "/f")
        reg("delete", REGISTERED, "/f")
        before = users_registry()

        self.assertEqual(self.setup(program=self.old_program), DONE)
        without = users_registry()
        self.assertEqual(self.setup("/Associations", "/Language=de", program=self.old_program), DONE)
        top = wav.replace("HKCU", "HKEY_CURRENT_USER")
        found = registry(wav)
        self.assertEqual(found[top]["(Default)"], ("REG_SZ", "Other.Player"))
        self.assertEqual(found[top + "\\OpenWithProgids"].keys(), {"Other.Player", "Carvello.Recording"})
        kind = registry("HKCU\\Software\\Classes\\Carvello.Recording")
        self.assertIn({"(Default)": ("REG_SZ", "IQ-Aufnahme")}, kind.values())
        self.assertIn(f'"{self.registered_name(self.own_folder)}\\carvello.exe" "%1"',
                      [values.get("(Default)", ("", ""))[1] for values in kind.values()])
        capabilities = registry("HKCU\\Software\\Carvello\\Capabilities\\FileAssociations")
        (capabilities,) = capabilities.values()
        self.assertEqual(capabilities.keys(), ENDINGS)
        self.assertEqual(capabilities[".json"][1], "Carvello.Job")
        for ending in ENDINGS - {".wav"}:  # for which nothing was there: offered, and still without a default
            found = registry(f"HKCU\\Software\\Classes\\{ending}")
            self.assertEqual([key.rsplit("\\", 1)[1] for key, values in found.items() if values], ["OpenWithProgids"])
        self.assertIn(("REG_SZ", "Software\\Carvello\\Capabilities"),
                      registry(REGISTERED).popitem()[1].values())

        # An upgrade keeps what was chosen, and an option takes it back.
        self.assertEqual(self.setup(program=self.old_program), DONE)
        self.assertEqual(self.entry()["Associations"], ("REG_DWORD", "0x1"))
        self.assertEqual(self.setup("/Associations=no", program=self.old_program), DONE)
        self.assertEqual(users_registry(), without)
        self.assertEqual(self.remove(self.own_folder), DONE)
        self.assertEqual(users_registry(), before)
        for ending in ENDINGS - {".wav"}:
            self.assertEqual(registry(f"HKCU\\Software\\Classes\\{ending}"), {})

    def test_what_other_programs_have_told_that_they_open_stays(self):
        self.addCleanup(reg, "delete", REGISTERED, "/f")
        reg("delete", REGISTERED, "/f")
        reg("add", REGISTERED, "/v", "Other", "/d", "Software\\Other\\Capabilities", "/f")
        before = users_registry()
        self.assertEqual(self.setup("/Associations", program=self.old_program), DONE)
        self.assertEqual(registry(REGISTERED).popitem()[1].keys(), {"Other", "Carvello"})
        self.assertEqual(self.remove(self.own_folder), DONE)
        self.assertEqual(users_registry(), before)

    def test_path_of_any_length_is_what_it_was_when_it_is_gone_again(self):
        self.addCleanup(reg, "delete", "HKCU\\Environment", "/v", "Path", "/f")
        own = self.registered_name(self.own_folder)

        def path():
            (values,) = registry("HKCU\\Environment").values()
            return values.get("Path")
        long = ";".join(f"C:\\Program Files\\number {number}" for number in range(200))
        self.assertGreater(len(long), 4_000)
        cases = [("REG_SZ", "C:\\a", "C:\\a;" + own),
                 ("REG_EXPAND_SZ", "%SystemRoot%\\x;C:\\b", "%SystemRoot%\\x;C:\\b;" + own),
                 ("REG_EXPAND_SZ", long, long + ";" + own), ("REG_SZ", f"{own}2;C:\\a", f"{own}2;C:\\a;{own}"),
                 # Whoever put it there himself keeps it.
                 ("REG_SZ", f"C:\\a;{own.upper()};C:\\b", f"C:\\a;{own.upper()};C:\\b")]
        for kind, before, after in cases:
            with self.subTest(before=before[:40]):
                reg("add", "HKCU\\Environment", "/v", "Path", "/t", kind, "/d", before, "/f")
                self.assertEqual(self.setup("/Path", program=self.old_program), DONE)
                self.assertEqual(path(), (kind, after))
                self.assertEqual(self.remove(self.own_folder), DONE)
                self.assertEqual(path(), (kind, before))
        reg("delete", "HKCU\\Environment", "/v", "Path", "/f")
        self.assertEqual(self.setup("/Path", program=self.old_program), DONE)
        self.assertEqual(path(), ("REG_EXPAND_SZ", own))
        self.assertEqual(self.remove(self.own_folder), DONE)
        self.assertIsNone(path())

    def test_an_older_version_is_replaced_in_its_folder_or_another(self):
        for folder in (None, self.folder / "moved"):
            with self.subTest(folder=folder):
                self.assertEqual(self.setup("/Desktop", "/StartMenu=no", program=self.old_program), DONE)
                self.assert_installed(self.own_folder, self.old_package)
                (self.own_folder / "docs" / "mine.md").write_text("mine")
                self.assertEqual(self.setup(folder=folder), DONE)
                if folder:
                    self.assertEqual(files_of(self.own_folder), {"docs/mine.md": b"mine"})
                else:
                    self.assertFalse((self.own_folder / "docs/dropped.md").exists())
                    (self.own_folder / "docs" / "mine.md").unlink()
                self.assert_installed(folder or self.own_folder)
                entry = self.entry()
                self.assertEqual((entry.get("Desktop"), entry.get("StartMenu")), (("REG_DWORD", "0x1"), None))
                self.clean()

    def test_while_carvello_runs_it_changes_nothing_and_says_so(self):
        self.assertEqual(self.setup(), DONE)
        before = contents(self.own_folder)
        process = subprocess.Popen(command(program=self.own_folder / "carvello.exe"), env=environment(),
                                   stdin=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        for _ in range(TIMEOUT):  # until Windows has it open
            maps = Path(f"/proc/{process.pid}/maps").read_text()
            if str(self.own_folder / "carvello.exe") in maps:
                break
            time.sleep(0.1)
        self.assertEqual(self.setup(), IN_USE)
        self.assertEqual(self.setup(folder=self.folder / "elsewhere"), IN_USE)
        self.assertEqual(self.remove(self.own_folder, wait=True), IN_USE)
        self.assertEqual(contents(self.own_folder), before)
        self.assertFalse((self.folder / "elsewhere").exists())

    def test_options_and_folders_that_it_cannot_use_leave_nothing(self):
        foreign = self.folder / "foreign"
        (foreign / "docs").mkdir(parents=True)
        (foreign / "docs" / "cli.md").write_text("mine")
        file = self.folder / "file"
        file.write_text("mine")
        before = users_registry()
        for options, folder in [
                (["/bogus"], None), (["/s"], None), (["/AllUsers", "/CurrentUser"], None), (["/Path=maybe"], None),
                (["/Language=xx"], None), ([], "relative"), ([], "C:"), ([], self.folder / ("x" * 200)),
                ([], foreign), ([], file), ([], file / "below")]:
            with self.subTest(options=options, folder=folder):
                self.assertEqual(self.setup(*options, folder=folder), REFUSED)
        self.assertEqual(files_of(self.folder), {"foreign/docs/cli.md": b"mine", "file": b"mine"})
        self.assertFalse(self.own_folder.exists())
        reg("delete", self.as_windows_10, "/f")
        try:
            self.assertEqual(self.setup(), REFUSED)
        finally:
            reg("add", self.as_windows_10, "/v", "Version", "/d", "win10", "/f")
        self.assertFalse(self.own_folder.exists())
        self.assertEqual(users_registry(), before)

    def test_a_folder_may_stand_in_quotes_and_be_as_long_as_the_shell_takes(self):
        longest = max(len(str(path.relative_to(self.package))) for path in self.package.rglob("*"))
        room = 259 - len("\\.carvello-setup\\") - longest
        folder = Path(native(self.folder).removeprefix("Z:").replace("\\", "/") + "/")
        folder = folder / ("ü x" * 100)[:room - len(native(folder)) - 1]
        self.assertEqual(self.setup(folder=folder.with_name(folder.name + "y")), REFUSED)
        # run() puts it into quotes.
        self.assertEqual(run("/S", f"/D={native(folder)}", program=self.program).code, DONE)
        self.assert_installed(folder)
        self.assertEqual(self.remove(folder), DONE)
        self.assertFalse(folder.exists())

    def test_where_it_cannot_write_it_leaves_nothing(self):
        before = users_registry()
        self.assertEqual(self.setup(folder=Path("/proc/carvello/x")), FAILED)  # where not even root makes a folder
        self.assertEqual(users_registry(), before)

    def test_a_full_disk_leaves_nothing_or_the_version_that_was_there(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (8_000_000, 8_000_000))
        full = dict(preexec_fn=limit, restore_signals=False)  # who is not killed sees the write fail
        before = users_registry()
        folder = self.folder / "made" / "for it"
        self.assertEqual(self.setup(folder=folder, **full), FAILED)
        self.assertEqual(list(self.folder.iterdir()), [self.output])
        self.assertEqual(users_registry(), before)

        self.assertEqual(self.setup(folder=folder), DONE)
        installed, registered = contents(folder), users_registry()
        self.assertEqual(self.setup(folder=folder, **full), FAILED)
        self.assertEqual(contents(folder), installed)
        self.assertEqual(users_registry(), registered)

    def test_killed_in_the_middle_it_can_be_run_again(self):
        staging = self.own_folder / ".carvello-setup"
        for _ in range(5):
            process = subprocess.Popen(command("/S", program=self.program), env=environment(), stdin=subprocess.DEVNULL)
            while process.poll() is None and not staging.exists():
                time.sleep(0.005)
            process.kill()
            process.wait()
            if staging.exists():
                break
        self.assertTrue(staging.exists())
        self.assertEqual(self.setup(), DONE)
        self.assert_installed(self.own_folder)

    def test_the_same_folder_gives_the_same_program(self):
        small = self.folder / "small"
        shutil.copytree(self.package / "docs", small / "docs")
        self.assertEqual(self.make_setup(small, self.folder / "one").read_bytes(),
                         self.make_setup(small, self.folder / "two").read_bytes())

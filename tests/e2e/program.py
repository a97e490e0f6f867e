"""Runs the carvello-cli under test and holds what all end-to-end tests share.

CARVELLO_CLI is the path of the program; CARVELLO_EMULATOR an optional program that runs it (wine for a Windows build);
CARVELLO_SLOW=1 tells that everything takes many times longer than usual (a build with sanitizers, or an emulator).
"""
import dataclasses
import hashlib
import json
import os
import shlex
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

CLI = Path(os.environ["CARVELLO_CLI"])
EMULATOR = shlex.split(os.environ.get("CARVELLO_EMULATOR", ""))
WINDOWS = CLI.suffix.lower() == ".exe"
SLOW = os.environ.get("CARVELLO_SLOW") == "1"
TIMEOUT = 1500 if SLOW and not WINDOWS else 300
NOBODY = 65534  # the user


def some(items, step):
    """All of them, or each step-th where everything is slow."""
    return items[::step] if SLOW else items


def native(value):
    """An argument as the program takes it: wine shows the whole file system as drive Z."""
    if WINDOWS and isinstance(value, Path):
        return "Z:" + str(value).replace("/", "\\")
    return str(value)


def local(text):
    """A path that the program printed, as this side names it."""
    if WINDOWS:
        text = text.removeprefix("Z:").removeprefix("z:").replace("\\", "/")
    return Path(text)


def environment(**changes):
    """A plain environment, so that locale and time zone of the machine change nothing."""
    return {**os.environ, "LC_ALL": "C.UTF-8", "TZ": "UTC", "WINEDEBUG": "-all", **changes}


def command(*arguments, program=CLI):
    return [*EMULATOR, str(program), *(native(argument) for argument in arguments)]


@dataclasses.dataclass
class Result:
    code: int
    out: str
    err: str

    def json(self):
        return json.loads(self.out)


def text(output):
    """What a program printed, with the line breaks that all systems but Windows have."""
    return output.decode().replace("\r\n", "\n") if WINDOWS else output.decode()


def run(*arguments, program=CLI, env=None, **options):
    def once():
        done = subprocess.run(command(*arguments, program=program), env=env or environment(), capture_output=True,
                              timeout=TIMEOUT, stdin=subprocess.DEVNULL, **options)
        return Result(done.returncode, text(done.stdout), text(done.stderr))

    result = once()
    # Now and then Wine ends before it has come to the program, without a word (its own are switched off). The program
    # never ends so: its 1 has a message.
    if WINDOWS and EMULATOR and result == Result(1, "", ""):
        result = once()
    assert "Sanitizer" not in result.err, result.err
    return result


def run_ok(*arguments, **options):
    result = run(*arguments, **options)
    assert result.code == 0, f"{arguments} ended with {result.code}\n{result.out}\n{result.err}"
    return result


def start(*arguments, env=None, **options):
    """The program in the background; the caller waits for it or kills it."""
    return subprocess.Popen(command(*arguments), env=env or environment(), stdin=subprocess.DEVNULL, **options)


def contents(folder):
    """Every file and folder below `folder`, with what would change if somebody touched it."""
    found = {}
    for path in sorted(Path(folder).rglob("*")):
        status = path.stat()
        digest = hashlib.sha256(path.read_bytes()).hexdigest() if path.is_file() else "folder"
        found[str(path.relative_to(folder))] = (status.st_size, status.st_mtime_ns, digest)
    return found


def temporary_folder():
    return Path(tempfile.mkdtemp(prefix="carvello-e2e-"))


def as_plain_user(folder):
    """The program, and options for `run`, of a user with no right but those that files give, who may look into `folder`.
    Root may do everything, so as root the program runs as nobody."""
    if os.geteuid() != 0:
        return CLI, {}
    # The build may stand where nobody cannot look.
    programs = folder / "programs"
    programs.mkdir()
    for path in CLI.parent.glob("*"):
        if path.name == CLI.name or path.suffix == ".so":
            shutil.copy(path, programs)
    folder.chmod(0o755)
    return programs / CLI.name, {"user": NOBODY, "group": NOBODY, "extra_groups": []}


class EndToEndTest(unittest.TestCase):
    """Gives every test class a folder `shared` and every test a folder `folder` with an empty `output` in it; both are
    removed afterwards."""

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.shared = temporary_folder()
        cls.addClassCleanup(shutil.rmtree, cls.shared, ignore_errors=True)

    def setUp(self):
        self.folder = temporary_folder()
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.output = self.folder / "output"
        self.output.mkdir()

    def cut(self, source, *arguments, output=None, **options):
        """Cuts and gives the list of outputs that --json tells of."""
        result = run_ok("cut", source, "--output", output or self.output, "--json", *arguments, **options)
        return result.json()["outputs"]

    def cut_one(self, source, entry, *arguments, **options):
        """Cuts one entry into one file and gives that file's path."""
        outputs = self.cut(source, "--entry", entry, *arguments, **options)
        self.assertEqual(len(outputs), 1)
        self.assertEqual(len(outputs[0]["files"]), 1)
        return local(outputs[0]["files"][0])

    def info(self, path):
        return run_ok("info", path, "--json").json()

    def names(self, folder=None):
        return sorted(path.name for path in (folder or self.output).iterdir())

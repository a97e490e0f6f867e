"""Lets calls of a plan, of a task, and of the join behind it, fail one after the other.

    cluster.py [STEP]     every STEP-th place of every kind (default 1), once and for good; beyond 100 once only

A plan passes when it ends with 0 and the undisturbed plan is written, or with 1 or 3 and a message, and there is no plan
or a whole one; a file that is no plan it never replaces. A task passes when it ends with 0, 75 or 3 (or with 1 where memory fails before it has begun, or for
good), with a message unless it is 0, and a task and a join that nothing fails make the undisturbed outputs from what it
left. So does a join, which ends with 0, 1, 3, 4 or 75: with 0 its outputs are the undisturbed ones, and otherwise another
join makes them so.
"""
import shutil
import sys

import numpy

import job
from makers import START, Layout, write_recording

ERRORS = {
    "open": ("EACCES", "EIO", "ENOSPC", "EMFILE"),
    "read": ("EIO", "short", "end"),
    "write": ("EIO", "ENOSPC", "short", "full", "kill"),
    "seek": ("EIO", "kill"),
    "truncate": ("EIO", "kill"),
    "sync": ("EIO", "kill"),
    "close": ("EIO", "kill"),
    "rename": ("EIO", "ENOSPC", "EACCES", "kill"),
    "remove": ("EIO", "EACCES"),
    "stat": ("EIO", "EACCES"),
    "folder": ("EIO", "EACCES"),
    "memory": ("ENOMEM",),
    "thread": ("EAGAIN",),
}
# Of these a step is so many times as long: there are thousands.
RARER = {"memory": 40, "stat": 4}
ENTRIES = ("f=7.1M,bw=10k", "f=7.15M,bw=20k,bits=32", "f=7.2M,bw=12345,format=sigmf")
RATE = 750_000


class Programs:
    def __init__(self, folder):
        self.folder = folder
        folder.mkdir()

    def program(self, *arguments, fault=None):
        code, err, failed = job.run_command(self.folder, *arguments, fault=fault)
        if fault is None and code != 0:
            raise AssertionError(f"{arguments[0]} ended with {code}: {err}")
        return code, err, failed


class Planning(Programs):
    """Of a folder with two recordings, so that a plan can lose one, and with what is none."""

    def __init__(self, folder):
        super().__init__(folder)
        self.recordings, self.plan = folder / "in", folder / "night.json"
        (self.recordings / "later").mkdir(parents=True)
        (folder / "out").mkdir()
        job.make_input(self.recordings, RATE, (1, 1))
        (self.recordings / "notes.txt").write_text("of the night\n")
        later = Layout(RATE, start=START + 3600)
        write_recording(self.recordings / "later" / "b.wav", later, numpy.zeros(RATE, complex))
        self.arguments = ("plan", self.recordings, "--plan", self.plan, "--output", folder / "out", "--shard", 1, "--entry",
                          ENTRIES[0])
        self.program(*self.arguments)
        self.wanted = self.plan.read_bytes()
        assert self.wanted.count(b".wav") == 5, self.wanted

    def try_plan(self, fault):
        """Whether anything failed; raises AssertionError for what must not be."""
        self.plan.unlink(missing_ok=True)
        code, err, failed = self.program(*self.arguments, fault=fault)
        killed = fault.error == "kill" and code == -9
        assert killed or code in (0, 1, 3), f"ended with {code}: {err}"
        assert killed or code == 0 or err.strip(), "no message"
        assert self.plan.exists() or code != 0, "no plan"
        # Folders that are closed to a user are left out of what is looked into, and named.
        closed = fault.error == "EACCES" and f"left out: {self.recordings / 'later'}: cannot be read: " in err
        assert closed or not self.plan.exists() or self.plan.read_bytes() == self.wanted, f"another plan: {err}"
        return failed > 0

    def try_plan_over_a_file(self, fault):
        """That is no plan, and is never replaced by one."""
        self.plan.write_text("notes\n")
        code, err, failed = self.program(*self.arguments, "--overwrite", fault=fault)
        killed = fault.error == "kill" and code == -9
        assert killed or code in (1, 2, 3), f"ended with {code}: {err}"
        assert killed or err.strip(), "no message"
        assert self.plan.read_text() == "notes\n", "replaced what is no plan"
        return failed > 0


class Night(Programs):
    def __init__(self, folder):
        super().__init__(folder)
        self.output, self.kept, self.plan = folder / "out", folder / "kept", folder / "night.json"
        self.output.mkdir()
        options = [word for entry in ENTRIES for word in ("--entry", entry)]
        source = job.make_input(folder, RATE, (1, 1, 1))
        self.program("plan", source, "--output", self.output, "--shard", 2, "--plan", self.plan, "--sigmf-meta", *options)
        for task in (0, 1):
            self.program("run", self.plan, "--task", task)
        shutil.copytree(self.output, self.kept)
        self.program("join", self.plan)
        self.wanted = self.samples()

    def samples(self):
        return {path.name: path.read_bytes() for path in self.output.iterdir() if path.is_file()}

    def restore(self, parts):
        shutil.rmtree(self.output)
        if parts:
            shutil.copytree(self.kept, self.output, copy_function=shutil.copy2)
        else:
            self.output.mkdir()

    def try_task(self, fault):
        """Whether anything failed; raises AssertionError for what must not be."""
        self.restore(parts=False)
        code, err, failed = self.program("run", self.plan, "--task", 0, fault=fault)
        killed = fault.error == "kill" and code == -9
        # Without memory before it is a task, or for the exception that tells of it, the program ends as all commands do.
        early = fault.kind == "memory" and code == 1 and (fault.times == 0 or not (self.output / "night.parts").exists())
        assert killed or early or code in (0, 75, 3), f"ended with {code}: {err}"
        assert killed or code == 0 or err.strip(), "no message"
        if code != 0:
            self.program("run", self.plan, "--task", 0)
        clean = fault.kind not in ("remove", "stat", "folder", "memory")
        left = {path.suffix for path in (self.output / "night.parts" / "r000000").iterdir()} - {".wav", ".json"}
        assert not (clean and left), f"left beside the parts: {left}"
        self.program("run", self.plan, "--task", 1)
        self.program("join", self.plan, "--remove-parts")
        assert self.samples() == self.wanted, "other outputs"
        if clean:
            assert {path.name for path in self.output.iterdir()} == set(self.wanted), "something is left over"
        return failed > 0

    def try_mending(self, fault):
        """A task one of whose parts was damaged, which its manifest does not tell."""
        self.restore(parts=True)
        part = min((self.output / "night.parts" / "r000000").glob("*.wav"))
        samples = bytearray(part.read_bytes())
        samples[-3000] ^= 1
        part.write_bytes(samples)
        code, err, failed = self.program("run", self.plan, "--task", 0, fault=fault)
        killed = fault.error == "kill" and code == -9
        early = fault.kind == "memory" and code == 1
        assert killed or early or code in (0, 75, 3), f"ended with {code}: {err}"
        assert killed or code == 0 or err.strip(), "no message"
        if code != 0:
            self.program("run", self.plan, "--task", 0)
        self.program("join", self.plan, "--remove-parts")
        assert self.samples() == self.wanted, "other outputs"
        return failed > 0

    def try_join(self, fault):
        self.restore(parts=True)
        code, err, failed = self.program("join", self.plan, fault=fault)
        killed = fault.error == "kill" and code == -9
        assert killed or code in (0, 1, 3, 4, 75), f"ended with {code}: {err}"
        assert killed or code == 0 or err.strip(), "no message"
        if code != 0:
            self.program("join", self.plan, "--skip-existing")
        assert self.samples() == self.wanted, "other outputs"
        return failed > 0


def main():
    step = int(sys.argv[1]) if len(sys.argv) > 1 else 1
    folder = job.work_folder()
    wrong = places = 0
    try:
        night = Night(folder / "night")
        planning = Planning(folder / "planning")
        for attempt in (planning.try_plan, planning.try_plan_over_a_file, night.try_task, night.try_mending, night.try_join):
            tried, bad = job.try_places(attempt, ERRORS, step, RARER, once=step > 100)
            places += tried
            wrong += bad
    finally:
        shutil.rmtree(folder)
    print(f"{places} places, {wrong} wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())

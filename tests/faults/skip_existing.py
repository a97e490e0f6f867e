"""Lets calls fail one after the other while a job looks at outputs that exist, whose names tell the minute only.

    skip_existing.py [STEP]     every STEP-th place of every kind (default 1), once and for good

Outputs of another start never pass for those of the job: it ends with another exit code than 0, and they stay as they are,
whatever could not be read. Finished outputs of the job itself stay as they are or are made again, to the same bytes.
"""
import shutil
import sys

import job

ERRORS = {
    "open": ("EACCES", "EIO", "EMFILE"),
    "read": ("EIO", "end"),
    "seek": ("EIO",),
    "stat": ("EIO", "EACCES"),
    "folder": ("EIO", "EACCES"),
    "memory": ("ENOMEM",),
}
RARER = {"memory": 40}
RATE = 750_000
ENTRY = "f=7.15M,bw=20k,start=+{start},duration=1"
FORMATS = ((), ("--sigmf-meta",), ("--format", "sigmf"))


class Outputs:
    def __init__(self, folder):
        self.folder, self.output = folder, folder / "out"
        self.output.mkdir()
        self.source = job.make_input(folder, RATE, (2, 2))

    def cut(self, start, *options, fault=None):
        return job.run_command(self.folder, "cut", self.source, "--output", self.output, "--entry",
                               ENTRY.format(start=start), *options, fault=fault)

    def files(self):
        return {path.name: path.read_bytes() for path in self.output.iterdir()}

    def begin(self, options):
        """Outputs of a start of one second, to which all that follows finds its way back."""
        shutil.rmtree(self.output)
        self.output.mkdir()
        code, err, _ = self.cut(1, *options)
        assert code == 0, err
        self.options, self.wanted = options, self.files()

    def restore(self):
        if self.files() != self.wanted:
            for path in self.output.iterdir():
                path.unlink()
            for name, content in self.wanted.items():
                (self.output / name).write_bytes(content)

    def try_other(self, fault):
        """Whether anything failed; raises AssertionError for what must not be."""
        self.restore()
        code, err, failed = self.cut(2, *self.options, "--skip-existing", fault=fault)
        assert code in (1, 3), f"ended with {code}: {err}"
        assert err.strip(), "no message"
        assert self.files() == self.wanted, "files of another job were changed"
        return failed > 0

    def try_same(self, fault):
        self.restore()
        code, err, failed = self.cut(1, *self.options, "--skip-existing", fault=fault)
        assert code in (0, 1, 3), f"ended with {code}: {err}"
        assert code == 0 or err.strip(), "no message"
        assert code != 0 or self.files() == self.wanted, "other outputs"
        return failed > 0


def main():
    step = int(sys.argv[1]) if len(sys.argv) > 1 else 1
    folder = job.work_folder()
    wrong = places = 0
    try:
        outputs = Outputs(folder)
        for options in FORMATS:
            outputs.begin(options)
            for attempt in (outputs.try_other, outputs.try_same):
                tried, bad = job.try_places(attempt, ERRORS, step, RARER, name=" ".join(options))
                places += tried
                wrong += bad
    finally:
        shutil.rmtree(folder)
    print(f"{places} places, {wrong} wrong")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())

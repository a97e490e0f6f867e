"""Lets calls of the job fail, one after the other, and checks how it ends.

    faults.py KIND [ERROR [TIMES]] [--shard I/N] [--overwrite]     every place of a kind
    faults.py KIND ERROR TIMES --at N    one place alone, telling all that the program says
    faults.py --thin [--shard I/N]       some hundred places, of every kind and with every error
    faults.py --limits [--shard I/N]     address space that ends at every megabyte (ulimit -v)
    faults.py --counts                   how many calls of each kind the job makes

KIND and ERROR as call_faults.cpp takes them, errors by their names; TIMES 0 is "for good". With --overwrite the job
finds its outputs, of an earlier job, in place. With --engine spectrum it cuts two of its outputs from a shared spectrum
and one, whose rate is the input's, by the library.

A run passes when it
- ends by itself, with exit code 0 or 1, or with 3 and nothing written;
- ended with 0: every output is equal to the undisturbed run's, byte for byte, and --json says so;
- ended otherwise: a message tells why, and names a file or, where memory or threads fail, what is short;
- leaves no file that is not readable up to the sizes that it claims and equal to that stretch of the undisturbed run;
- says "ok" in --json of whole outputs only, and gives every other one's reason.
"""
import argparse
import os
import shutil
import sys

import job

# What each kind of call can meet. EINTR and short transfers are no failures: the program has to go on. "Not there" is
# left out: a file that is said to be missing is missing, as far as a program can know.
ERRORS = {
    "open": ("EACCES", "EMFILE", "ENFILE", "EIO", "ENOSPC", "EDQUOT", "ENOMEM", "EROFS", "EINTR"),
    "read": ("EIO", "EBADF", "ENOMEM", "EINTR", "short", "end"),
    "write": ("EIO", "ENOSPC", "EDQUOT", "EFBIG", "EINTR", "short", "full", "kill"),
    "seek": ("EIO", "EOVERFLOW", "kill"),
    "truncate": ("EIO", "EFBIG", "EPERM", "EINTR", "kill"),
    "sync": ("EIO", "ENOSPC", "EDQUOT", "EINTR", "kill"),
    "close": ("EIO", "ENOSPC", "EDQUOT", "EINTR", "kill"),
    "remove": ("EIO", "EACCES", "EBUSY"),
    "stat": ("EIO", "EACCES", "ENOMEM", "ELOOP"),
    "folder": ("EIO", "EACCES", "EMFILE", "ENOMEM"),
    "lock": ("EWOULDBLOCK", "ENOLCK", "EINTR"),
    "memory": ("ENOMEM",),
    "thread": ("EAGAIN",),
}
NEVER_MADE = ("rename",)  # a job that begins to make such calls needs errors above
ONLY_WHEN_OVERWRITING = ("remove", "truncate")
HARMLESS = ("EINTR", "short")
BURST = 5  # interruptions in a row; for ever they would keep every program
LAST_PLACES = 3  # so many runs in a row in which nothing failed are behind the last call


def times_of(error):
    """Once, and for good."""
    if error == "EINTR":
        return (1, BURST)
    if error == "kill":
        return (1,)
    if error == "full":
        return (0,)
    return (1, 0)


class Checker:
    """Runs the job with faults, and judges how it ended."""

    def __init__(self, overwrite=False, engine="auto", timeout=60):
        self.folder = job.work_folder()
        self.timeout = timeout
        source = self.folder / "input"
        source.mkdir()
        self.source = job.make_input(source)
        self.output = self.folder / "output"
        self.arguments = ("--engine", engine, *(("--overwrite",) if overwrite else ()))
        self.earlier = {}
        self.expected = None
        self.counts = self.run_undisturbed()
        if overwrite:
            # What an earlier job left: other samples, and one part more.
            split = next(name for name in self.expected.files if "001" in name)
            names = [*self.expected.files, split.replace("001", "002")]
            self.earlier = {name: b"earlier " + name.encode() for name in names}
            self.counts = self.run_undisturbed()

    def run_undisturbed(self):
        self.fill_output()
        ended = job.run(self.source, self.output, None, self.timeout, self.arguments)
        if ended.code != 0 or not all(output["ok"] for output in ended.outputs()):
            raise SystemExit(f"the undisturbed job ended with {ended.code}\n{ended.err}")
        self.expected = job.Expected(self.output)
        shutil.rmtree(self.output)
        return ended.counts

    def fill_output(self):
        self.output.mkdir()
        for name, content in self.earlier.items():
            (self.output / name).write_bytes(content)

    def close(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def run(self, fault, memory=None):
        """Runs the job once; gives how it ended and what is wrong with that."""
        self.fill_output()
        try:
            ended = job.run(self.source, self.output, fault, self.timeout, self.arguments, memory)
            return ended, self.problems(fault, ended)
        finally:
            shutil.rmtree(self.output)

    def problems(self, fault, ended):
        if ended.code is None:
            return ["it hangs"]
        if ended.code < 0 and not (fault.error == "kill" and ended.failed):
            return [f"it died of signal {-ended.code}: {self.told(ended)}"]
        problems = [problem for path in sorted(self.output.iterdir())
                    if (problem := self.left_behind(fault, path, ended))]
        if ended.code == 0:
            problems += self.missing_for_success(ended)
        elif ended.code > 0:
            problems += self.missing_for_failure(fault, ended)
        return problems

    def is_earlier(self, path):
        return path.name in self.earlier and path.read_bytes() == self.earlier[path.name]

    def left_behind(self, fault, path, ended):
        if self.is_earlier(path):
            return None
        if path.stat().st_size == 0 and (ended.code < 0 or fault.error == "EWOULDBLOCK"):
            # Killed between its creation and its first byte, or locked by another program in that moment, whose file it
            # is then.
            return None
        return self.expected.stretch_problem(path)

    def missing_for_success(self, ended):
        names = sorted(path.name for path in self.output.iterdir())
        problems = []
        if names != sorted(self.expected.files):
            problems.append(f"exit code 0, but the files are {names}")
        problems += [f"exit code 0, but {path.name} is not whole" for path in sorted(self.output.iterdir())
                     if path.name in self.expected.files and not self.expected.is_whole(path)]
        outputs = ended.outputs()
        if outputs is None or len(outputs) != len(job.ENTRIES) or not all(output["ok"] for output in outputs):
            problems.append(f"exit code 0, but --json says {ended.out}")
        return problems

    def missing_for_failure(self, fault, ended):
        problems = []
        if ended.code == 3:
            if any(not self.is_earlier(path) for path in self.output.iterdir()):
                problems.append("exit code 3, but something was written")
        elif ended.code != 1:
            problems.append(f"exit code {ended.code}: {self.told(ended)}")
        if fault.error in HARMLESS and ended.failed:
            problems.append(f"{fault.error} ends it: {self.told(ended)}")
        if not self.names_something(fault, ended.err):
            problems.append(f"exit code {ended.code}, but no message names what failed: {self.told(ended)}")
        try:
            outputs = ended.outputs()
        except ValueError:
            return [*problems, f"half a --json: {ended.out[-300:]!r}"]
        for output in outputs or ():
            files = [self.output / os.path.basename(name) for name in output["files"]]
            if output["ok"] and not (files and all(file.exists() and self.expected.is_whole(file) for file in files)):
                problems.append(f"{output['file']} is not whole, but --json says ok")
            if not output["ok"] and not output["error"]:
                problems.append(f"{output['file']}: --json gives no reason")
        return problems

    @staticmethod
    def told(ended):
        """What was said on stderr, without the progress."""
        return " | ".join(line.strip() for line in ended.err.splitlines() if "%" not in line) or "nothing was said"

    @staticmethod
    def names_something(fault, text):
        messages = [line for line in text.splitlines() if line.startswith("carvello-cli: ")]
        if fault.kind == "memory":
            return any(line.removeprefix("carvello-cli: ") for line in messages)
        if fault.kind == "thread":
            return any("thread" in line.lower() for line in messages)
        return any("/" in line for line in messages)


def label(kind, error, times):
    return f"{kind} {error} {'for good' if times == 0 else f'{times} in a row' if times > 1 else 'once'}"


def enumerate_places(checker, kind, error, times, first=1, stride=1, last=None):
    """Every place from the first on, until no call is left that could fail. Gives how many failed, and of them how many
    runs ended well, and the faulty places with their problems."""
    at, unreached, tried, survived, faulty = first, 0, 0, 0, []
    while unreached < LAST_PLACES and (last is None or at <= last):
        ended, problems = checker.run(job.Fault(kind, error, at, times))
        unreached = 0 if ended.failed else unreached + 1
        if ended.failed:
            tried += 1
            survived += ended.code == 0
        if problems:
            faulty.append((at, problems))
        at += stride
    return tried, survived, faulty


def report(kind, error, times, tried, survived, faulty):
    print(f"{label(kind, error, times)}: {tried} places, {survived} ended with exit code 0, {len(faulty)} wrongly",
          flush=True)
    for at, problems in faulty:
        for problem in problems:
            print(f"  {kind} {error} {times} --at {at}: {problem}")
    sys.stdout.flush()


def cases_of(kind, errors=None, times=None):
    return [(kind, error, number) for error in errors or ERRORS[kind] for number in times or times_of(error)]


def thin(checker, share, shares):
    """Places spread evenly over all calls of a kind, and over all its errors."""
    places, wrong = 0, 0
    for kind in NEVER_MADE + ONLY_WHEN_OVERWRITING:
        if checker.counts[kind]:
            print(f"{checker.counts[kind]} calls of {kind}, which no test lets fail")
            wrong += 1
    made = [kind for kind in ERRORS if kind not in ONLY_WHEN_OVERWRITING]
    for index, (kind, error, times) in enumerate(case for kind in made for case in cases_of(kind)):
        if index % shares != share:
            continue
        count = checker.counts[kind]
        stride = max(1, count // (30 if kind == "memory" else 2))
        first = 1 + (index * 7) % stride  # other places for other errors
        tried, survived, faulty = enumerate_places(checker, kind, error, times, first, stride, count)
        report(kind, error, times, tried, survived, faulty)
        places += tried
        wrong += len(faulty) + (tried == 0)
    print(f"{places} places in all, {wrong} wrongly")
    return wrong == 0


def whole(checker, cases, share, shares):
    """Every place of these cases."""
    right = True
    for kind, error, times in cases:
        tried, survived, faulty = enumerate_places(checker, kind, error, times, 1 + share, shares)
        report(kind, error, times, tried, survived, faulty)
        if tried == 0:
            print("  nothing failed: the job makes no such call")
        right = right and tried > 0 and not faulty
    return right


def limits(checker, share, shares):
    """The job in more and more address space, until there is enough for it."""
    megabyte, tried, survived, wrong = 1 + share, 0, 0, 0
    while survived < LAST_PLACES:
        # A fault of the kind that is meant, behind the last call: nothing but the limit makes memory fail.
        ended, problems = checker.run(job.Fault("memory", "ENOMEM", 1 << 60), megabyte << 20)
        if any(ended.counts.values()):  # else the loader found too little for the program itself
            tried += 1
            survived += ended.code == 0
            for problem in problems:
                print(f"  {megabyte} MB: {problem}", flush=True)
            wrong += bool(problems)
        megabyte += shares
    print(f"{tried} limits, {wrong} wrongly")
    return tried > survived and not wrong


def one_place(checker, fault):
    ended, problems = checker.run(fault)
    print(f"exit code {ended.code}, {ended.failed} calls failed\n{ended.out}{ended.err}", *problems, sep="\n")
    return not problems


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("kind", nargs="?", choices=tuple(ERRORS))
    parser.add_argument("error", nargs="?")
    parser.add_argument("times", nargs="?", type=int)
    parser.add_argument("--at", type=int)
    parser.add_argument("--shard", default="0/1")
    parser.add_argument("--overwrite", action="store_true")
    parser.add_argument("--engine", default="auto")
    parser.add_argument("--thin", action="store_true")
    parser.add_argument("--limits", action="store_true")
    parser.add_argument("--counts", action="store_true")
    parser.add_argument("--timeout", type=float, default=60)
    options = parser.parse_args()
    share, shares = map(int, options.shard.split("/"))
    checker = Checker(options.overwrite, options.engine, options.timeout)
    try:
        if options.counts:
            print(checker.counts)
            return True
        if options.thin:
            return thin(checker, share, shares)
        if options.limits:
            return limits(checker, share, shares)
        errors = (options.error,) if options.error else None
        times = (options.times,) if options.times is not None else None
        if options.at is not None:
            return one_place(checker, job.Fault(options.kind, options.error, options.at, options.times))
        return whole(checker, cases_of(options.kind, errors, times), share, shares)
    finally:
        checker.close()


if __name__ == "__main__":
    sys.exit(0 if main() else 1)

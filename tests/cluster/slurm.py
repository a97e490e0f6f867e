"""A cluster of one node under real Slurm, on this machine and for a test alone: its folder, key, sockets and ports are
its own, and what it started is gone when it ends, however the test went.

    with Slurm() as cluster:
        job = cluster.sbatch("#!/bin/sh\\necho $SLURM_ARRAY_TASK_ID\\n", "--array=0-3")
        cluster.wait(job)
"""
import ctypes
import os
import pwd
import re
import shutil
import signal
import socket
import subprocess
import tempfile
import time
from contextlib import ExitStack
from pathlib import Path

PATIENCE = 180  # seconds for anything that a loaded machine takes one or two for
DAEMONS = ("munged", "slurmctld", "slurmd")
SBIN = "/usr/sbin:/sbin"
SET_CHILD_SUBREAPER = 36  # of prctl(2)


class SlurmError(Exception):
    pass


def is_installed():
    return all(shutil.which(name, path=os.environ["PATH"] + ":" + SBIN) for name in DAEMONS)


def free_ports(count):
    sockets = [socket.socket() for _ in range(count)]
    try:
        for each in sockets:
            each.bind(("127.0.0.1", 0))
        return [each.getsockname()[1] for each in sockets]
    finally:
        for each in sockets:
            each.close()


class Slurm:
    def __init__(self, processors=4, memory=4000):
        """What the node says that it has (memory in MB), whatever the machine has."""
        self.processors = processors
        self.memory = memory
        self.node = socket.gethostname().split(".")[0]
        self._stack = ExitStack()

    def __enter__(self):
        # Keepers of tasks leave the daemon that starts them. They come to this process then, which knows when they end,
        # and not to the first of the system, which in a container may be one that does not care for them.
        ctypes.CDLL(None).prctl(SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        with self._stack:  # what was started ends also when the next does not start
            self.folder = Path(self._stack.enter_context(tempfile.TemporaryDirectory(prefix="slurm-")))
            self.folder.chmod(0o755)  # munged wants its socket where everybody may go
            self.env = {**{name: value for name, value in os.environ.items() if not name.startswith("SLURM_")},
                        "SLURM_CONF": str(self.folder / "slurm.conf"), "PATH": os.environ["PATH"] + ":" + SBIN}
            self._stack.callback(self._end_what_is_left)
            self._start_munge()
            self._write_configuration()
            self._start("slurmctld", "-D", "-i")
            self._start("slurmd", "-D")
            self._stack.callback(self._cancel_all)
            self.until(lambda: self.node_state() == "idle", "the node to be idle")
            self._stack = self._stack.pop_all()
        return self

    def __exit__(self, *exception):
        self._stack.close()

    # What users of a cluster do.

    def sbatch(self, script, *options, **env):
        """Submits the text of a script, or a script by its path, and gives the job's number."""
        path = script
        if not isinstance(script, Path):
            path = self.folder / f"script-{time.monotonic_ns()}.sh"
            path.write_text(script)
        out = self.run("sbatch", "--parsable", f"--output={self.folder}/job-%A-%a.out", *options, str(path), env=env)
        return int(out.split(";")[0])

    def squeue(self, job=None):
        """The states of what waits or runs, by task: {"7_0": "RUNNING", "8": "PENDING"}; tasks that still wait stand as
        one range, "7_[2-3]"."""
        lines = self.run("squeue", "--noheader", "--format=%i %T").splitlines()
        states = dict(line.split() for line in lines)
        return {task: state for task, state in states.items() if job in (None, int(re.match(r"\d+", task)[0]))}

    def scancel(self, task):
        self.run("scancel", str(task))

    def drain(self, reason="test"):
        self.run("scontrol", "update", f"nodename={self.node}", "state=drain", f"reason={reason}")

    def resume(self):
        self.run("scontrol", "update", f"nodename={self.node}", "state=resume")

    # What a test asks.

    def node_state(self):
        return self.run("sinfo", "--noheader", "--format=%T", check=False).strip()

    def task_states(self, job):
        """How each task of a job stands or ended, by its number in the array, or "" for a job that is none."""
        states = {}
        for line in self.run("scontrol", "--oneliner", "--all", "show", "job", str(job)).splitlines():
            fields = dict(field.split("=", 1) for field in line.split() if "=" in field)
            states[fields.get("ArrayTaskId", "")] = fields["JobState"]
        return states

    def outputs(self, job):
        """What the tasks of a job said, for messages."""
        return "".join(f"{path.name}:\n{path.read_text(errors='replace')}"
                       for path in sorted(self.folder.glob(f"job-{job}-*.out")))

    def wait(self, *jobs, patience=PATIENCE):
        """Until none of the jobs waits or runs."""
        self.until(lambda: not any(self.squeue(job) for job in jobs), f"jobs {jobs} to end", patience)

    def until(self, condition, what, patience=PATIENCE):
        ends = time.monotonic() + patience
        while not condition():
            for process, name in self._processes:
                if process.poll() is not None:
                    raise SlurmError(f"{name} ended with {process.returncode}:\n{self.logs()}")
            if time.monotonic() > ends:
                raise SlurmError(f"waited in vain for {what}:\n{self.logs()}")
            time.sleep(0.1)

    def logs(self):
        return "".join(f"{path.name}:\n" + "".join(path.read_text(errors="replace").splitlines(True)[-30:])
                       for path in sorted(self.folder.glob("*.log")))

    def run(self, *arguments, check=True, env=None):
        done = subprocess.run(arguments, env={**self.env, **(env or {})}, capture_output=True, text=True,
                              timeout=PATIENCE, check=False)
        if check and done.returncode != 0:
            raise SlurmError(f"{' '.join(arguments)}: {done.stderr}\n{self.logs()}")
        return done.stdout

    # How it begins and ends.

    @property
    def _processes(self):
        return self.__dict__.setdefault("_started", [])

    def _start(self, name, *options):
        log = self._stack.enter_context(open(self.folder / f"{name}.log", "wb"))
        process = subprocess.Popen([name, *options], env=self.env, stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self._processes.append((process, name))
        self._stack.callback(self._stop, process)

    def _stop(self, process):
        if process.poll() is None:
            process.terminate()
        try:
            process.wait(20)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()

    def _start_munge(self):
        key = self.folder / "munge.key"
        key.write_bytes(os.urandom(128))
        key.chmod(0o400)
        self.munge_socket = self.folder / "munge.socket"
        self._start("munged", "--foreground", f"--socket={self.munge_socket}", f"--key-file={key}", "--num-threads=2",
                    f"--pid-file={self.folder}/munged.pid", f"--seed-file={self.folder}/munged.seed",
                    f"--log-file={self.folder}/munged-own.log")
        self.until(self.munge_socket.exists, "munged")

    def _write_configuration(self):
        controller, node = free_ports(2)
        for name in ("state", "spool"):
            (self.folder / name).mkdir()
        user = pwd.getpwuid(os.getuid()).pw_name
        (self.folder / "slurm.conf").write_text(f"""ClusterName=carvello
SlurmctldHost={self.node}(127.0.0.1)
SlurmctldPort={controller}
SlurmdPort={node}
AuthType=auth/munge
CredType=cred/munge
AuthInfo=socket={self.munge_socket}
SlurmUser={user}
SlurmdUser={user}
StateSaveLocation={self.folder}/state
SlurmdSpoolDir={self.folder}/spool
SlurmctldPidFile={self.folder}/slurmctld.pid
SlurmdPidFile={self.folder}/slurmd.pid
SlurmctldLogFile={self.folder}/slurmctld-own.log
SlurmdLogFile={self.folder}/slurmd-own.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerParameters=batch_sched_delay=0,bf_interval=1
SlurmdParameters=config_overrides
ReturnToService=2
MinJobAge=3600
KillWait=2
CompleteWait=0
NodeName={self.node} NodeAddr=127.0.0.1 CPUs={self.processors} RealMemory={self.memory} State=UNKNOWN
PartitionName=main Nodes=ALL Default=YES MaxTime=INFINITE State=UP
""")
        # Control groups, which are the whole machine's, are none of a test's. Each Slurm has words of its own for that, and
        # ends at those of the others.
        version = subprocess.run(["/usr/sbin/slurmd", "-V"], capture_output=True, text=True, check=True).stdout
        year, month = map(int, version.split()[1].split(".")[:2])
        if (year, month) < (23, 0):
            settings = "CgroupAutomount=no\nConstrainCores=no\n"
        elif (year, month) < (24, 5):
            settings = "CgroupPlugin=cgroup/v1\nConstrainCores=no\n"  # the one that begins also where none is mounted
        else:
            settings = "CgroupPlugin=disabled\n"
        (self.folder / "cgroup.conf").write_text(settings)

    def _cancel_all(self):
        """So that their processes end in order, while there is who ends them."""
        try:
            for job in {task.partition("_")[0] for task in self.squeue()}:
                self.run("scancel", job, check=False)
            self.until(lambda: not self.squeue(), "jobs to end", 30)
        except (SlurmError, subprocess.TimeoutExpired):
            pass  # what is left is ended by its number

    def _end_what_is_left(self):
        """What daemons leave behind when they end: the keepers of tasks, and tasks, all of whom know this cluster by
        its configuration."""
        for _ in range(50):
            left = self.left()
            self._reap()
            if not left:
                return
            for number in left:
                try:
                    os.kill(number, signal.SIGKILL)
                except ProcessLookupError:
                    pass
            time.sleep(0.1)
        raise SlurmError(f"processes that do not end: {left}")

    @staticmethod
    def _reap():
        for stat in Path("/proc").glob("[0-9]*/stat"):
            try:
                number, _, rest = stat.read_text().partition(" (slurmstepd) ")
            except OSError:
                continue
            if rest.split()[:2] == ["Z", str(os.getpid())]:
                os.waitpid(int(number), 0)

    def left(self):
        """The numbers of the processes that run and belong to this cluster."""
        mark = f"SLURM_CONF={self.folder}/slurm.conf".encode()
        found = []
        for process in Path("/proc").glob("[0-9]*"):
            try:
                if mark in (process / "environ").read_bytes().split(b"\0"):
                    found.append(int(process.name))
            except OSError:
                pass  # it has ended, or is another user's
        return found

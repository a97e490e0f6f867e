"""A night of recordings, cut by tasks under real Slurm: one task is killed, the node is drained and resumed, and what
is joined in the end is what one machine writes without a cluster."""
import os
import re
import subprocess
import time
import unittest

import test_cluster
from program import CLI, run_ok
from slurm import Slurm

# Of the recordings, in seconds; a task has 10.
LENGTHS = [20, 30] if os.environ.get("CARVELLO_NIGHT") == "short" else [30] * 8 + [40] * 4
TASKS = sum(LENGTHS) // 10
KILLED, HELD = (1, 3) if TASKS < 40 else (5, 11)
AT_ONCE = 2

# Stands for the program in the tasks' script. Two tasks are stopped while they write: one until the test lets it go on,
# the other for good. Slurm lets a task go on to end it, and the program could come to its end before that.
HOLDER = """#!/bin/bash
'{cli}' "$@" &
process=$!
if [ "$1" = run ] && {{ [ "$4" = {killed} ] || [ "$4" = {held} ]; }} && mkdir '{folder}/writes-'"$4" 2> /dev/null; then
  until ls -l /proc/$process/fd 2> /dev/null | grep -q 'night\\.parts/'; do
    [ -e /proc/$process ] || exit 99
  done
  kill -STOP $process
  mkdir '{folder}/stopped-'"$4"
  while [ "$4" = {killed} ]; do kill -STOP $process; done
  until [ -e '{folder}/go' ]; do sleep 0.1; done
  kill -CONT $process
fi
wait $process
"""


class TestNight(test_cluster.ClusterTest):
    def write_holder(self):
        holder = self.folder / "holder"
        holder.write_text(HOLDER.format(cli=CLI, folder=self.folder, killed=KILLED, held=HELD))
        holder.chmod(0o755)
        return holder

    def bash(self, cluster, script, *options):
        """Runs the script as a user does, and gives what it says."""
        done = subprocess.run(["bash", str(script), *options], env=cluster.env, cwd=self.folder, capture_output=True,
                              text=True, timeout=300, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def submit(self, cluster, script):
        """Gives the numbers of the array and of the join behind it."""
        join = int(self.bash(cluster, script).split()[-1])
        # Not the number before: tasks that have begun by now have numbers of their own.
        return int(re.search(r"Dependency=afterany:(\d+)", cluster.run("scontrol", "show", "job", str(join)))[1]), join

    def said(self, job):
        return "".join(path.read_text() for path in sorted(self.folder.glob(f"slurm-{job}*.out")))

    def stopped(self, task):
        return (self.folder / f"stopped-{task}").exists()

    def test_tasks_that_are_killed_or_wait_for_a_drained_node_end_in_the_outputs_of_one_machine(self):
        recordings = [self.record(f"r{hour:02}.wav", seconds, hour=hour, files=2 if hour % 3 == 0 else 1)
                      for hour, seconds in enumerate(LENGTHS)]
        entries = test_cluster.entry_options()
        text = self.make_plan(*entries, "--sbatch", shard=10).out
        self.assertEqual(self.tasks(), TASKS)
        line = next(line for line in text.splitlines() if line.startswith("program="))
        script = self.folder / "night.sh"
        script.write_text(text.replace(line, f"program='{self.write_holder()}'"))

        processors = int(re.search(r"--cpus-per-task=(\d+)", text)[1])
        with Slurm(processors=AT_ONCE * processors) as cluster:
            array, join = self.submit(cluster, script)
            cluster.until(lambda: self.stopped(KILLED) and self.stopped(HELD), "two tasks to write")
            cluster.drain()
            cluster.scancel(f"{array}_{KILLED}")
            cluster.until(lambda: cluster.task_states(array)[str(KILLED)] == "CANCELLED", "the task to be killed")
            (self.folder / "go").touch()
            cluster.until(lambda: cluster.node_state() == "drained", "the node to be drained")
            time.sleep(3)  # in which a node that starts tasks would have started one
            self.assertEqual(set(cluster.squeue().values()), {"PENDING"})
            begun = [state for state in cluster.task_states(array).values() if state != "PENDING"]
            self.assertEqual(sorted(begun), ["CANCELLED"] + ["COMPLETED"] * HELD)
            cluster.resume()
            cluster.wait(array, join, patience=1800)
            self.assertEqual(cluster.node_state(), "idle")
            states = cluster.task_states(array)
            self.assertEqual(states.pop(str(KILLED)), "CANCELLED")
            self.assertEqual(set(states.values()), {"COMPLETED"}, self.said(array))

            # The join names the task that is not complete, and how it is repeated, and makes nothing.
            self.assertEqual(cluster.task_states(join), {"": "FAILED"})
            told = self.said(join)
            self.assertRegex(told, r"\b1 tasks? .*not complete")
            self.assertEqual(told.count("--task "), 1, told)
            self.assertIn(f"--task {KILLED}\n", told)
            self.assertEqual([path.name for path in self.out.iterdir()], ["night.parts"])

            # Repeated with one that is complete, and joined by who waits for both.
            again = cluster.sbatch(script, f"--array={KILLED},2")
            joined = int(self.bash(cluster, script, "join", f"--dependency=afterok:{again}").split()[-1])
            cluster.wait(again, joined, patience=1800)
            self.assertEqual(cluster.task_states(joined), {"": "COMPLETED"}, cluster.outputs(again) + self.said(joined))
            run_ok("join", self.plan, "--skip-existing", "--remove-parts")

        for recording in recordings:
            run_ok("cut", recording, "--output", self.one, *entries)
        self.assertGreaterEqual(len(list(self.one.iterdir())), len(recordings) * len(test_cluster.ENTRIES))
        self.check_same()


if __name__ == "__main__":
    unittest.main()

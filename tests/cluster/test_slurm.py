"""The cluster of the tests itself: arrays, dependent jobs, what is cancelled, a node that is drained, and its end."""
import unittest

from slurm import Slurm, SlurmError

SLEEPER = "#!/bin/sh\ntouch {folder}/began-$SLURM_ARRAY_TASK_ID\nwhile ! [ -e {folder}/go ]; do sleep 0.1; done\n"


class TestSlurm(unittest.TestCase):
    def test_tasks_of_an_array_run_and_a_dependent_job_follows_them(self):
        with Slurm(processors=4) as cluster:
            out = cluster.folder / "out"
            out.mkdir()
            array = cluster.sbatch(f"#!/bin/sh\nsleep 0.2\necho $SLURM_ARRAY_TASK_ID > {out}/$SLURM_ARRAY_TASK_ID\n",
                                   "--array=0-5")
            last = cluster.sbatch(f"#!/bin/sh\ncat {out}/? > {out}/all\n", f"--dependency=afterok:{array}")
            cluster.wait(array, last)
            self.assertEqual((out / "all").read_text(), "0\n1\n2\n3\n4\n5\n", cluster.outputs(array) + cluster.logs())
            self.assertEqual(cluster.task_states(array), {str(task): "COMPLETED" for task in range(6)})
            self.assertEqual(cluster.task_states(last), {"": "COMPLETED"})

    def test_a_task_is_cancelled_alone_and_a_drained_node_starts_nothing_until_it_is_resumed(self):
        with Slurm(processors=2) as cluster:
            array = cluster.sbatch(SLEEPER.format(folder=cluster.folder), "--array=0-3")
            began = lambda: sorted(path.name for path in cluster.folder.glob("began-*"))
            cluster.until(lambda: len(began()) == 2, "two tasks to begin")
            cluster.drain()
            cluster.scancel(f"{array}_1")
            cluster.until(lambda: cluster.task_states(array)["1"] == "CANCELLED", "the task to be cancelled")
            (cluster.folder / "go").touch()
            cluster.until(lambda: cluster.task_states(array)["0"] == "COMPLETED", "the first task to end")
            cluster.until(lambda: cluster.node_state() == "drained", "the node to be drained")
            self.assertEqual(began(), ["began-0", "began-1"])
            self.assertEqual(set(cluster.squeue(array).values()), {"PENDING"})
            cluster.resume()
            cluster.wait(array)
            self.assertEqual(cluster.task_states(array),
                             {"0": "COMPLETED", "1": "CANCELLED", "2": "COMPLETED", "3": "COMPLETED"})

    def test_a_job_that_depends_on_one_that_failed_does_not_run(self):
        with Slurm() as cluster:
            array = cluster.sbatch("#!/bin/sh\nexit $SLURM_ARRAY_TASK_ID\n", "--array=0-1")
            last = cluster.sbatch(f"#!/bin/sh\ntouch {cluster.folder}/ran\n", f"--dependency=afterok:{array}")
            cluster.wait(array)
            self.assertEqual(cluster.task_states(array), {"0": "COMPLETED", "1": "FAILED"})
            self.assertEqual(cluster.task_states(last), {"": "PENDING"})
            self.assertFalse((cluster.folder / "ran").exists())

    def test_nothing_is_left_of_it_also_when_a_test_fails_while_a_job_runs(self):
        with self.assertRaisesRegex(ZeroDivisionError, "on purpose"):
            with Slurm() as cluster:
                cluster.sbatch(SLEEPER.format(folder=cluster.folder), "--array=0-1")
                cluster.until(lambda: len(list(cluster.folder.glob("began-*"))) == 2, "two tasks to begin")
                self.assertGreaterEqual(len(cluster.left()), 5)
                raise ZeroDivisionError("on purpose")
        self.assertEqual(cluster.left(), [])
        self.assertFalse(cluster.folder.exists())

    def test_a_daemon_that_ends_is_told_with_what_it_said(self):
        with Slurm() as cluster:
            process = next(process for process, name in cluster._processes if name == "slurmd")
            process.terminate()
            with self.assertRaisesRegex(SlurmError, "slurmd ended"):
                cluster.until(lambda: False, "nothing")
        self.assertEqual(cluster.left(), [])


if __name__ == "__main__":
    unittest.main()

"""Tasks and joins that are killed, stopped, starved or refused: what is made in the end is what one `cut` makes, nothing
wrong is ever called done, and nothing that is left over is in the way."""
import json
import os
import re
import resource
import shutil
import signal as signals
import subprocess
import time

from program import CLI, SLOW, as_plain_user, contents, environment, run, run_ok, some, start
from same_output import assert_same_outputs
from test_cluster import ENTRIES, TRY_AGAIN, ClusterTest, entry_options
from wavtools import WaveFile

WAVES = ENTRIES[:5]
SECONDS = 9 if SLOW else 30
LONG = ["f=7.1M,bw=250k,bits=32", "f=7.1M,bw=100k,bits=32", "f=7112345,bw=44100"]


class InterruptedTest(ClusterTest):
    def leftovers(self):
        return [path for path in (self.out / "night.parts").rglob("*") if ".tmp" in path.name or ".part" in path.suffix]

    def wait_for(self, condition, process):
        """False when the process ends before."""
        while process.poll() is None:
            if condition():
                return True
            time.sleep(0.002)
        return False


class TestKilledTasks(InterruptedTest):
    def test_tasks_killed_at_any_moment_are_repeated_and_leave_nothing_behind(self):
        recording = self.record("a.wav", SECONDS)
        run_ok("cut", recording, "--output", self.one, *entry_options(LONG))
        self.make_plan(*entry_options(LONG), shard=SECONDS)
        seen = set()
        for moment in some(range(12), 3):
            process = start("run", self.plan, "--task", 0, "--quiet", stderr=subprocess.DEVNULL)
            # Ever later: in front of the first file, in its samples, between a part and what tells of it.
            self.wait_for(lambda: len(self.parts()) > moment // 2, process)
            time.sleep(0.01 * (moment % 2))
            process.kill()
            process.wait()
            seen.add(len(self.leftovers()))
            if process.returncode == 0:
                break
        self.assertGreater(max(seen), 0, "no kill came while files were being made")
        self.run_all()
        self.assertEqual(self.leftovers(), [])
        self.check_joined()

    def test_a_task_that_is_stopped_says_so_and_leaves_nothing(self):
        self.record("a.wav", 2 * SECONDS)
        for signal in (signals.SIGINT, signals.SIGTERM):
            self.make_plan(*entry_options(LONG), "--overwrite", shard=2 * SECONDS)
            process = start("run", self.plan, "--task", 0, "--quiet", stderr=subprocess.DEVNULL)
            self.assertTrue(self.wait_for(self.parts, process))
            process.send_signal(signal)
            self.assertEqual(process.wait(timeout=300), 130)
            self.assertEqual(self.parts(), [])
            self.assertEqual(self.leftovers(), [])

    def test_a_join_killed_at_any_moment_is_finished_by_another(self):
        recording = self.record("a.wav", SECONDS)
        run_ok("cut", recording, "--output", self.one, *entry_options(LONG))
        self.make_plan(*entry_options(LONG), shard=SECONDS // 3)
        self.run_all()
        kills = 0
        for moment in some(range(6), 2):
            process = start("join", self.plan, "--quiet", "--skip-existing", stderr=subprocess.DEVNULL)
            if self.wait_for(lambda: len(list(self.out.glob("*.wav"))) > min(moment, 2), process):
                time.sleep(0.01 * moment)
            process.kill()
            kills += process.wait() != 0
        self.assertGreater(kills, 0)
        self.check_joined("--skip-existing")

    def test_a_join_that_is_stopped_leaves_valid_files_and_is_finished_by_another(self):
        recording = self.record("a.wav", 3 * SECONDS)
        entries = [f"f=7.1M,bw={rate}k,bits=32" for rate in (250, 240, 230, 220)]
        run_ok("cut", recording, "--output", self.one, *entry_options(entries))
        self.make_plan(*entry_options(entries), shard=2 * SECONDS)
        self.run_all()
        process = start("join", self.plan, "--json", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertTrue(self.wait_for(lambda: list(self.out.glob("*.wav")), process))
        process.send_signal(signals.SIGTERM)
        out, err = process.communicate(timeout=300)
        self.assertEqual(process.returncode, 130, err)
        for output in json.loads(out)["outputs"]:
            self.assertEqual(output["ok"], output["error"] == "")
            for file in output["files"]:
                WaveFile(file).check_complete()
                self.assertEqual(WaveFile(file).data_bytes, output["bytes"])  # 0 where it had just begun
        self.assertIn("join again", err.decode())
        self.assertTrue(self.parts())
        self.check_joined("--skip-existing")


class TestFaultyDisks(InterruptedTest):
    def limited(self, *arguments, size):
        def limit():
            signals.signal(signals.SIGXFSZ, signals.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))

        return run(*arguments, preexec_fn=limit)

    def test_a_task_without_room_is_worth_another_try_and_leaves_nothing(self):
        recording = self.record("a.wav", 20)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES))
        self.make_plan(*entry_options(WAVES), shard=20)
        for size in (0, 100, 100_000, 2_000_000):
            done = self.limited("run", self.plan, "--task", 0, "--quiet", size=size)
            self.assertEqual(done.code, TRY_AGAIN, done.err)
            self.assertIn(os.strerror(27), done.err)
            self.assertEqual(self.leftovers(), [], size)
        self.run_all()
        self.check_joined()

    def test_a_join_without_room_fails_and_another_makes_the_outputs(self):
        recording = self.record("a.wav", 20)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES))
        self.make_plan(*entry_options(WAVES), shard=7)
        self.run_all()
        done = self.limited("join", self.plan, "--remove-parts", size=500_000)
        self.assertEqual(done.code, 1, done.err)
        self.assertIn(os.strerror(27), done.err)
        self.assertTrue(self.parts(), "parts are kept until every output is made")
        self.check_joined("--skip-existing")

    def test_parts_that_cannot_be_removed_are_told_with_the_outputs_made(self):
        recording = self.record("a.wav", 6)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES[:1]))
        self.make_plan(*entry_options(WAVES[:1]))
        self.run_all()
        program, user = as_plain_user(self.folder)
        for path in (self.recordings, recording, self.plan, *self.out.rglob("*")):
            path.chmod(0o755 if path.is_dir() else 0o644)
        self.out.chmod(0o777)
        closed = self.out / "night.parts" / "r000000"
        closed.chmod(0o555)
        done = run("join", self.plan, "--remove-parts", program=program, **user)
        self.assertEqual(done.code, 1, done.err)
        self.assertIn(f"--remove-parts: {closed}", done.err)
        self.assertEqual(len(self.parts()), 4)
        closed.chmod(0o777)
        # What a killed task left, too.
        making = closed / "t0000001.tmp"
        making.mkdir()
        (making / "e000000.wav").write_bytes(b"half")
        making.chmod(0o555)
        done = run("join", self.plan, "--skip-existing", "--remove-parts", program=program, **user)
        self.assertEqual(done.code, 1, done.err)
        self.assertIn(f"--remove-parts: {making}: {os.strerror(13)}", done.err)
        making.chmod(0o755)
        shutil.rmtree(making)
        self.check_joined("--skip-existing")

    def test_a_folder_that_nothing_may_be_written_to_is_told(self):
        self.record("a.wav", 6)
        self.make_plan(*entry_options(WAVES[:1]))
        program, user = as_plain_user(self.folder)
        for folder in (self.out, self.recordings):
            folder.chmod(0o755)
        for arguments, code in ((["run", self.plan, "--task", 0], TRY_AGAIN),
                                (["plan", self.recordings, "--output", self.out, "--shard", 5, "--plan",
                                  self.folder / "other.json", *entry_options(WAVES[:1])], 1)):
            if not user:
                self.out.chmod(0o555)
            refused = run(*arguments, program=program, **user)
            self.assertEqual(refused.code, code, refused.err)
            self.assertIn(os.strerror(13), refused.err)
        self.out.chmod(0o755)

    def test_parts_that_vanish_are_named_as_tasks_to_repeat(self):
        recording = self.record("a.wav", 12)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES))
        self.make_plan(*entry_options(WAVES))
        self.run_all()
        for part in self.parts():
            part.unlink()
        (self.out / "night.parts" / "r000000").rmdir()
        missing = run("join", self.plan, "--json")
        self.assertEqual(missing.code, TRY_AGAIN)
        self.assertEqual(missing.json(), {"ok": False, "missing_tasks": [0, 1, 2]})
        self.run_all()
        self.check_joined()

    def test_an_output_of_parts_that_changed_is_not_taken_for_a_finished_one_and_the_task_mends_them(self):
        recording = self.record("a.wav", 12)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES[:2]))
        self.make_plan(*entry_options(WAVES[:2]))
        self.run_all()
        waves = [path for path in self.parts() if path.suffix == ".wav"]
        for part in (waves[0], waves[-1]):  # the first of one output, the last of the other
            with open(part, "r+b") as file:
                file.seek(-3000, os.SEEK_END)
                byte = file.read(1)
                file.seek(-1, os.SEEK_CUR)
                file.write(bytes([byte[0] ^ 1]))
        for _ in range(2):
            done = run("join", self.plan, "--skip-existing", "--remove-parts")
            self.assertEqual(done.code, 1)
            self.assertIn("not those that were written", done.err)
        # Its manifest still tells that it is there.
        done = self.limited("run", self.plan, "--task", 0, "--json", size=100)
        self.assertEqual((done.code, done.out), (TRY_AGAIN, ""), done.err)
        self.run_all()
        self.check_joined("--skip-existing")

    def test_closed_streams_change_nothing(self):
        recording = self.record("a.wav", 12)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES[:3]))
        self.make_plan(*entry_options(WAVES[:3]))

        def close():
            os.close(1)
            os.close(2)

        for task in range(self.tasks()):
            run("run", self.plan, "--task", task, preexec_fn=close)
        run("join", self.plan, preexec_fn=close)
        run_ok("join", self.plan, "--remove-parts", "--skip-existing")
        assert_same_outputs(self, self.one, self.out)


class TestNamesAndFolders(ClusterTest):
    def test_paths_with_blanks_quotes_and_other_scripts_go_through_all_three(self):
        strange = self.folder / "it's \"a\" $night; Ünï 夜"
        strange.mkdir()
        self.recordings = strange / "recs"
        self.out = strange / "out"
        self.recordings.mkdir()
        self.out.mkdir()
        recording = self.record("b ' c.wav", 12)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES[:3]))
        self.plan = strange / "night.json"
        script = self.make_plan(*entry_options(WAVES[:3]), "--sbatch").out
        # With stand-ins for Slurm that run what they are given, as it does.
        tools = self.folder / "tools"
        tools.mkdir()
        (tools / "sbatch").write_text('''#!/bin/bash
for argument; do
  case "$argument" in
    --wrap=*) exec env -u SLURM_ARRAY_TASK_ID sh -c "${argument#--wrap=}";;
  esac
done
for task in 0 1 2; do SLURM_ARRAY_TASK_ID=$task bash "${@: -1}" >&2 || exit 1; done
echo 77
''')
        (tools / "sbatch").chmod(0o755)
        (strange / "night.sh").write_text(script)
        for variables in ({}, {"LC_ALL": "C"}):
            for file in self.out.glob("*.wav"):
                file.unlink()
            subprocess.run(["bash", strange / "night.sh"], check=True, capture_output=True, timeout=300,
                           env={**os.environ, "TZ": "UTC", "PATH": f"{tools}:{os.environ['PATH']}", **variables})
        run_ok("join", self.plan, "--skip-existing", "--remove-parts")
        assert_same_outputs(self, self.one, self.out)

    def test_the_command_that_repeats_a_task_can_be_pasted_into_a_shell(self):
        self.record("a.wav", 6)
        self.plan = self.folder / "a night's plan.json"
        self.make_plan(*entry_options(WAVES[:1]))
        missing = run("join", self.plan)
        line = next(line for line in missing.err.splitlines() if line.endswith("--task 0")).strip()
        words = subprocess.run(["sh", "-c", f'printf "%s\\n" {line}'], capture_output=True, text=True, check=True)
        self.assertEqual(words.stdout.splitlines()[1:], ["run", str(self.plan), "--task", "0"])

    def test_names_that_a_plan_or_a_script_cannot_hold_are_refused(self):
        self.record("a.wav", 6)
        strange = os.fsdecode(os.fsencode(self.folder) + b"/o\xff")
        os.mkdir(strange)
        for options in (["--output", strange], ["--output", self.out, "--parts", strange + "/parts"]):
            refused = run("plan", self.recordings, "--shard", 5, "--plan", self.plan, *entry_options(WAVES[:1]), *options)
            self.assertEqual(refused.code, 2, refused.err)
            self.assertIn("no UTF-8", refused.err)
        for name in ("a\tb.json", "a\u200eb.json"):
            refused = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.folder / name,
                          *entry_options(WAVES[:1]), "--sbatch")
            self.assertEqual((refused.code, refused.out), (2, ""), refused.err)
            self.assertIn("--sbatch: a script cannot name", refused.err)
        self.assertFalse(self.plan.exists())

    def test_a_list_that_is_no_file_is_told(self):
        names = self.folder / "names"
        os.mkfifo(names)
        refused = run("plan", "--list", names, "--output", self.out, "--shard", 5, "--plan", self.plan,
                      *entry_options(WAVES[:1]))
        self.assertEqual(refused.code, 2, refused.err)
        self.assertIn("is no ordinary file", refused.err)

    def test_a_plan_made_by_relative_paths_is_used_from_anywhere(self):
        recording = self.record("a.wav", 12)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES[:3]))
        run_ok("plan", "recordings", "--output", "out", "--shard", 5, "--plan", "night.json", *entry_options(WAVES[:3]),
               cwd=self.folder)
        for task in range(3):
            run_ok("run", "../night.json", "--task", task, cwd=self.one)
        run_ok("join", self.plan, "--remove-parts", cwd="/")
        assert_same_outputs(self, self.one, self.out)

    def test_outputs_in_the_folder_of_the_recordings_are_no_recordings(self):
        self.record("a.wav", 6)
        cuts, more = self.recordings / "cuts", self.recordings / "more"
        for folder in (cuts, more):
            folder.mkdir()
            run_ok("cut", self.recordings / "a.wav", "--output", folder, "--entry", WAVES[0])
        jobs = self.folder / "jobs.json"
        jobs.write_text(json.dumps({
            "output": f"{self.recordings}/../recordings/cuts/",
            "entries": [{"frequency": 7_100_000, "bandwidth": 8000},
                        {"frequency": 7_100_000, "bandwidth": 9000, "output": str(more)}]}))
        told = run_ok("plan", self.recordings, "--shard", 5, "--plan", self.plan, "--jobs", jobs)
        self.assertIn("1 recording, 2 outputs, 2 tasks", told.out)

    def test_local_time_names_of_another_zone_are_refused(self):
        self.record("a.wav", 6)
        self.make_plan(*entry_options(WAVES[:1]), "--local-time")
        run_ok("run", self.plan, "--task", 0)
        for arguments in (["run", self.plan, "--task", 1], ["join", self.plan]):
            refused = run(*arguments, env=environment(TZ="Asia/Tokyo"))
            self.assertEqual(refused.code, 3, refused.err)
            self.assertIn("time zone", refused.err)

    def test_a_library_that_cannot_begin_within_an_entry_is_told_when_planning(self):
        self.record("a.wav", 6)
        programs = self.folder / "programs"
        programs.mkdir()
        shutil.copy(CLI, programs)
        library = next(CLI.parent.glob("*Vantrel.so"))
        name = b"DownconvertResume"
        self.assertIn(name, library.read_bytes())
        (programs / library.name).write_bytes(library.read_bytes().replace(name, name[:-1] + b"X"))
        refused = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.plan,
                      *entry_options(WAVES[:1]), program=programs / CLI.name)
        self.assertEqual(refused.code, 3, refused.err)
        self.assertIn("cannot begin within an entry", refused.err)
        self.assertFalse(self.plan.exists())
        self.make_plan(*entry_options(WAVES[:1]))
        refused = run("run", self.plan, "--task", 1, program=programs / CLI.name)
        self.assertEqual(refused.code, 3, refused.err)
        self.assertEqual(self.leftovers(), [])

    def leftovers(self):
        return list((self.out / "night.parts").rglob("*.tmp"))


class TestWhatMayNotBeRead(ClusterTest):
    """In the folders of a plan's recordings: a night must not lose one of them while the plan is told to be good."""

    def setUp(self):
        super().setUp()
        self.record("a.wav", 6)
        self.closed = self.record("b.wav", 6, hour=1)
        (self.recordings / "private.txt").write_text("of somebody else\n")
        below = self.recordings / "lost+found"
        below.mkdir()
        self.program, self.rights = as_plain_user(self.folder)
        self.out.chmod(0o777)
        for path in (self.closed, self.recordings / "private.txt", below):
            path.chmod(0)
            self.addCleanup(path.chmod, 0o700)

    def plan_as_plain_user(self):
        return run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.out / "night.json",
                   *entry_options(WAVES[:1]), program=self.program, **self.rights)

    def test_a_recording_among_others_is_named_and_there_is_no_plan(self):
        refused = self.plan_as_plain_user()
        self.assertEqual(refused.code, 3, refused.err)
        self.assertIn(f"{self.closed}: ", refused.err)
        self.assertIn("no plan without these", refused.err)
        self.assertNotIn("private.txt", refused.err)
        self.assertEqual(list(self.out.iterdir()), [])

    def test_where_no_recording_holds_an_entry_that_is_told_and_not_what_is_closed_beside(self):
        self.closed.write_bytes(b"")
        told = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.out / "night.json",
                   "--entries-absolute", "--entry", "f=27M,bw=8k", program=self.program, **self.rights)
        self.assertEqual(told.code, 2, told.err)
        self.assertIn("1 recording found, and none holds any of the entries", told.err)

    def test_links_that_lead_back_to_each_other_are_named_and_left_out(self):
        self.closed.write_bytes(b"")
        (self.recordings / "loop.wav").symlink_to("loop.wav")
        told = self.plan_as_plain_user()
        self.assertEqual(told.code, 0, told.err)
        self.assertIn("loop.wav: cannot be read: Too many levels of symbolic links", told.err)

    def test_what_is_not_named_like_a_recording_and_a_folder_below_are_named_and_left_out(self):
        self.closed.write_bytes(b"")
        told = self.plan_as_plain_user()
        self.assertEqual(told.code, 0, told.err)
        self.assertIn("1 recording, 1 output, 2 tasks", told.out)
        for name in ("private.txt", "lost+found"):
            self.assertRegex(told.err, f"left out: .*{re.escape(name)}: .*Permission denied")


class TestWhereTasksWrite(InterruptedTest):
    def check_refused(self, folder):
        """The task names the folder that is not there, and writes nowhere."""
        before = contents(self.folder)
        for _ in range(2):
            refused = run("run", self.plan, "--task", 0)
            self.assertEqual(refused.code, TRY_AGAIN, refused.err)
            self.assertIn(f"{folder}: ", refused.err)
            self.assertIn("No such file or directory", refused.err)
        self.assertEqual(contents(self.folder), before)

    def test_a_machine_without_the_folder_for_the_outputs_is_told_and_writes_nothing(self):
        self.record("a.wav", 6)
        self.make_plan(*entry_options(WAVES[:1]))
        self.out.rename(self.folder / "away")
        self.check_refused(self.out)
        (self.folder / "away").rename(self.out)
        run_ok("run", self.plan, "--task", 0)

    def test_a_machine_without_the_folder_of_one_entry_is_told_and_writes_nothing(self):
        self.record("a.wav", 6)
        other = self.folder / "other"
        other.mkdir()
        jobs = self.folder / "jobs.json"
        jobs.write_text(json.dumps({
            "output": str(self.out),
            "entries": [{"frequency": 7_100_000, "bandwidth": 8000},
                        {"frequency": 7_100_000, "bandwidth": 9000, "output": str(other)}]}))
        run_ok("plan", self.recordings, "--shard", 5, "--plan", self.plan, "--jobs", jobs)
        other.rmdir()
        self.check_refused(other)
        other.mkdir()
        run_ok("run", self.plan, "--task", 0)

    def test_parts_elsewhere_need_the_folder_that_theirs_stands_in(self):
        recording = self.record("a.wav", 6)
        run_ok("cut", recording, "--output", self.one, *entry_options(WAVES[:1]))
        scratch = self.folder / "scratch"
        scratch.mkdir()
        self.make_plan(*entry_options(WAVES[:1]), "--parts", f"{scratch}/parts/")
        scratch.rename(self.folder / "away")
        self.check_refused(scratch)
        # A file in its place is no folder either.
        scratch.write_text("")
        refused = run("run", self.plan, "--task", 0)
        self.assertEqual(refused.code, TRY_AGAIN, refused.err)
        self.assertIn(f"{scratch}: ", refused.err)
        scratch.unlink()
        (self.folder / "away").rename(scratch)
        self.run_all()
        run_ok("join", self.plan, "--remove-parts")
        self.assertEqual(list(scratch.iterdir()), [])
        assert_same_outputs(self, self.one, self.out)

    def test_folders_of_parts_are_open_to_whom_the_mask_lets_in(self):
        self.record("a.wav", 6)
        for mask, mode in ((0o022, 0o755), (0o007, 0o770), (0o077, 0o700)):
            self.make_plan(*entry_options(WAVES[:1]), "--overwrite")
            run_ok("run", self.plan, "--task", 0, preexec_fn=lambda mask=mask: os.umask(mask))
            parts = self.out / "night.parts"
            for path in (parts, parts / "r000000"):
                self.assertEqual(path.stat().st_mode & 0o777, mode, path)
            for path in self.parts():
                self.assertEqual(path.stat().st_mode & 0o777, mode & 0o666, path)
            shutil.rmtree(parts)

    def test_a_task_killed_while_it_writes_a_manifest_is_repeated_and_leaves_nothing(self):
        recording = self.record("a.wav", 2)
        entries = entry_options([f"f={7_050_000 + 1000 * number},bw=100" for number in range(60)])
        run_ok("cut", recording, "--output", self.one, *entries)
        self.make_plan(*entries)
        process = start("run", self.plan, "--task", 0, "--quiet", stderr=subprocess.DEVNULL)
        written = []
        while not written:
            while not self.manifests_being_written():
                self.assertIsNone(process.poll(), "no manifest was seen while it was written")
            # It may be just done: stopped, it tells.
            process.send_signal(signals.SIGSTOP)
            os.waitid(os.P_PID, process.pid, os.WSTOPPED | os.WEXITED | os.WNOWAIT)
            written = self.manifests_being_written()
            process.send_signal(signals.SIGKILL if written else signals.SIGCONT)
        process.wait()
        self.assertEqual(self.manifests_being_written(), written)
        run_ok("run", self.plan, "--task", 0)
        self.assertEqual(self.leftovers(), [])
        self.assertEqual({path.suffix for path in self.parts()}, {".wav", ".json"})
        self.assertEqual(len(self.parts()), 2 * 60)
        self.check_joined()

    def manifests_being_written(self):
        folder = str(self.out / "night.parts" / "r000000")
        found = []
        for each in (folder, folder + "/t0000000.tmp"):
            try:
                found += [name for name in os.listdir(each) if ".json.part" in name]
            except FileNotFoundError:
                pass
        return found


class TestVersions(ClusterTest):
    def test_a_plan_is_of_one_release_and_one_library(self):
        self.record("a.wav", 6)
        self.make_plan(*entry_options(WAVES[:1]))
        told = run_ok("--version").out
        plan = json.loads(self.plan.read_text())
        self.assertRegex(plan["version"], r"^\d+\.\d+\.\d+$")
        self.assertIn(f"Release: {plan['version']}\n", told)
        self.assertIn(f"Library: Vantrel {plan['library']}, ", told)
        for member, code, text in (("version", 2, "made by version"), ("library", 3, "downconverter library")):
            changed = {**plan, member: plan[member].rpartition(".")[0] + ".99"}
            self.plan.write_text(json.dumps(changed))
            refused = run("run", self.plan, "--task", 0)
            self.assertEqual(refused.code, code, refused.err)
            self.assertIn(text, refused.err)
            self.assertIn(changed[member], refused.err)
            self.assertEqual(list(self.out.iterdir()), [])

    def test_parts_of_another_library_are_made_again(self):
        self.record("a.wav", 6)
        self.make_plan(*entry_options(WAVES[:1]))
        run_ok("run", self.plan, "--task", 0)
        manifest = next(path for path in self.parts() if path.suffix == ".json")
        self.assertEqual(json.loads(manifest.read_text())["library"], json.loads(self.plan.read_text())["library"])
        plan = json.loads(self.plan.read_text())
        self.plan.write_text(json.dumps({**plan, "library": "0.9.9"}))
        missing = run("join", self.plan)
        self.assertEqual(missing.code, TRY_AGAIN, missing.err)
        self.assertIn("--task 0", missing.err)

    def test_an_empty_variable_does_not_hide_the_number_that_another_one_tells(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(WAVES[:1]))
        numbers = {"SLURM_ARRAY_TASK_ID": "", "AWS_BATCH_JOB_ARRAY_INDEX": "2"}
        self.assertEqual(run_ok("run", self.plan, "--json", "--quiet", env=environment(**numbers)).json()["task"], 2)
        none = run("run", self.plan, env=environment(SLURM_ARRAY_TASK_ID="", AWS_BATCH_JOB_ARRAY_INDEX=""))
        self.assertEqual(none.code, 2)
        self.assertIn("--task is missing", none.err)


class TestScripts(ClusterTest):
    """The script for Slurm, with stand-ins for what it calls that write down how."""

    def setUp(self):
        super().setUp()
        self.record("a.wav", 12)
        self.script = self.folder / "night.sh"
        self.script.write_text(self.make_plan(*entry_options(WAVES[:1]), "--sbatch").out)
        self.tools, self.called = self.folder / "tools", self.folder / "called"
        self.tools.mkdir()
        for name, does in (("sbatch", "echo 77"), ("scontrol", ":")):
            self.tool(name, does)

    def tool(self, name, does):
        path = self.tools / name
        path.write_text(f"#!/bin/bash\nprintf '%s\\0' {name} \"$@\" >> '{self.called}'\n"
                        f"echo >> '{self.called}'\n{does}\n")
        path.chmod(0o755)
        return path

    def bash(self, *options, **variables):
        """How the script ends, and what it has called: words of each."""
        self.called.write_text("")
        done = subprocess.run(["bash", self.script, *options], capture_output=True, text=True, timeout=60, check=False,
                              env=environment(PATH=f"{self.tools}:{os.environ['PATH']}", **variables))
        return done.returncode, [line.split("\0")[:-1] for line in self.called.read_text().splitlines()]

    def test_options_of_an_array_do_not_reach_the_join(self):
        for array in (["-a", "3"], ["-a3"], ["--array", "0-4"], ["--array=0-4%2"], ["--arr", "0,2"], ["--ar=1"]):
            given = ["--partition", "short", *array, "-t", "99"]
            code, calls = self.bash(*given)
            self.assertEqual(code, 0)
            tasks, join = calls
            self.assertEqual(tasks, ["sbatch", "--parsable", *given, str(self.script)])
            self.assertEqual([word for word in join if word in array or word.startswith(("-a", "--ar"))], [])
            place = join.index("--partition")
            self.assertEqual(join[place:place + 4], ["--partition", "short", "-t", "99"])

    def test_the_join_waits_for_the_array_whatever_the_array_waits_for(self):
        code, (tasks, join) = self.bash("--dependency=afterok:5")
        self.assertEqual(code, 0)
        self.assertIn("--dependency=afterok:5", tasks)
        self.assertEqual([word for word in join if word.startswith("--dependency")][-1], "--dependency=afterany:77")

    def test_the_join_can_be_submitted_again_alone(self):
        code, (_, join) = self.bash()
        self.assertEqual(code, 0)
        code, (again,) = self.bash("join", "--time=99")
        self.assertEqual(code, 0)
        self.assertEqual([word for word in again if word.startswith("--dependency")], [])
        self.assertEqual([word for word in again if word.startswith("--wrap=")],
                         [word for word in join if word.startswith("--wrap=")])
        # What is given stands behind what was estimated, and prevails.
        self.assertEqual([word for word in again if word.startswith("--time")][-1], "--time=99")

    def test_an_array_that_is_not_taken_has_no_join(self):
        self.tool("sbatch", "exit 1")
        code, calls = self.bash()
        self.assertEqual((code, len(calls)), (1, 1))

    def test_a_job_is_queued_again_when_any_of_its_tasks_may_succeed_then(self):
        text = self.script.read_text()
        program = next(line for line in text.splitlines() if line.startswith("program="))
        done = self.tool("program", f"exit $(cat '{self.folder}'/code-$4)")
        self.script.write_text(text.replace(program, f"program='{done}'").replace("jobs=3\n", "jobs=1\n"))
        again = ["scontrol", "requeue", "5_0"]
        for codes, queued in (((0, 75, 0), True), ((75, 137, 0), True), ((130, 3, 75), True), ((3, 137, 2), False),
                              ((0, 0, 0), False)):
            for task, code in enumerate(codes):
                (self.folder / f"code-{task}").write_text(str(code))
            for restarts, tries in (({}, True), ({"SLURM_RESTART_COUNT": "2"}, True),
                                    ({"SLURM_RESTART_COUNT": "3"}, False)):
                code, calls = self.bash(SLURM_ARRAY_TASK_ID="0", SLURM_ARRAY_JOB_ID="5", **restarts)
                self.assertEqual([call[4] for call in calls[:3]], ["0", "1", "2"], calls)
                self.assertEqual(calls[3:], [again] if queued and tries else [], codes)
                self.assertEqual(code == 0, codes == (0, 0, 0))

"""Work that is spread over tasks: what `plan`, `run` and `join` make must be what one `cut` makes, and no task that is
killed, repeated, run twice or left out may change that."""
import json
import os
import shutil
import subprocess

from program import WINDOWS, EndToEndTest, run, run_ok, some, start
from same_output import assert_same_outputs

RATE = 250_000
CENTRE = 7_100_000
TRY_AGAIN = 75


class ClusterTest(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.recordings = self.folder / "recordings"
        self.one, self.out = self.folder / "one", self.folder / "out"
        for folder in (self.recordings, self.one, self.out):
            folder.mkdir()
        self.plan = self.folder / "night.json"

    def record(self, name, seconds, hour=0, files=1):
        """Gives the path of the first file. What another test of the class has recorded is copied."""
        kept = self.shared / f"{name} {seconds} {hour} {files}"
        if not kept.exists():
            kept.mkdir()
            synth(kept / name, seconds, hour, files)
        shutil.copytree(kept, self.recordings, dirs_exist_ok=True)
        return first_of(self.recordings / name, files)

    def make_plan(self, *arguments, shard=5, inputs=None):
        return run_ok("plan", *(inputs or [self.recordings]), "--output", self.out, "--shard", shard, "--plan", self.plan,
                      *arguments)

    def tasks(self):
        return int(run_ok("run", self.plan, "--task-count").out)

    def run_all(self, *arguments):
        for task in reversed(range(self.tasks())):  # in any order
            run_ok("run", self.plan, "--task", task, "--quiet", *arguments)

    def parts(self):
        return sorted(path for path in (self.out / "night.parts").rglob("*") if path.is_file())

    def check_same(self):
        names = sorted(path.name for path in self.one.iterdir())
        self.assertEqual(names, sorted(path.name for path in self.out.iterdir()))
        for name in names:
            if name.endswith(".sigmf-data"):
                self.assertEqual((self.one / name).read_bytes(), (self.out / name).read_bytes(), name)
            elif name.endswith(".sigmf-meta"):
                one, other = (json.loads((folder / name).read_text()) for folder in (self.one, self.out))
                self.assertEqual(one, other)
        for folder in (self.one, self.out):
            for file in folder.glob("*.sigmf-*"):
                file.unlink()
        if list(self.one.iterdir()):
            assert_same_outputs(self, self.one, self.out)

    def check_joined(self, *arguments):
        run_ok("join", self.plan, "--remove-parts", *arguments)
        self.assertFalse((self.out / "night.parts").exists())
        assert_same_outputs(self, self.one, self.out)


def synth(path, seconds, hour, files):
    arguments = ["--files", files] if files > 1 else []
    run_ok("synth", path, "--rate", RATE, "--centre", CENTRE, "--seconds", seconds, "--start",
           f"2026-03-01T{hour:02}:00:00Z", "--station", f"{CENTRE + 12_345}:-20:am", "--station",
           f"{CENTRE - 50_500}:-40", *arguments)
    return first_of(path, files)


def first_of(path, files):
    return path if files == 1 else path.with_name(path.stem + " 000.wav")


ENTRIES = ["f=7.1M,bw=12k", "f=7112345,bw=44100,bits=32", "f=7049500,bw=2500,start=+3,size=RF64",
           "f=7.1M,bw=250k,start=+2,duration=9", "f=7.05M,bw=8k,start=+7,end=+11", "f=7.2M,bw=10k,format=sigmf"]


def entry_options(entries=ENTRIES):
    return [option for entry in entries for option in ("--entry", entry)]


class TestTasks(ClusterTest):
    def test_joined_outputs_are_those_of_one_cut_for_either_road_and_any_length_of_a_task(self):
        first = self.record("a.wav", 17, files=3)
        second = self.record("b.wav", 20.5, hour=1)
        for engine, shards in (("library", (7, 1, 3600)), ("spectrum", (7, 1, 3600)), ("auto", (7,))):
            for shard in some(shards, 3):
                for folder in (self.one, self.out):
                    for file in folder.iterdir():
                        file.unlink()
                for recording in (first, second):
                    run_ok("cut", recording, "--output", self.one, "--engine", engine, *entry_options())
                self.make_plan(*entry_options(), "--engine", engine, "--overwrite", shard=shard)
                self.run_all()
                run_ok("join", self.plan, "--remove-parts")
                with self.subTest(engine=engine, shard=shard):
                    self.check_same()

    def test_a_task_that_is_done_is_not_done_again(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options())
        first = json.loads(run_ok("run", self.plan, "--task", 1, "--json", "--quiet").out)
        self.assertGreater(first["parts_made"], 3)
        before = {path: path.stat().st_mtime_ns for path in self.parts()}
        again = json.loads(run_ok("run", self.plan, "--task", 1, "--json", "--quiet").out)
        self.assertEqual((again["parts_made"], again["parts_kept"]), (0, first["parts_made"]))
        self.assertEqual(before, {path: path.stat().st_mtime_ns for path in self.parts()})

    def test_a_part_without_its_manifest_or_of_another_size_is_made_again(self):
        recording = self.record("a.wav", 12)
        run_ok("cut", recording, "--output", self.one, *entry_options(ENTRIES[:3]))
        self.make_plan(*entry_options(ENTRIES[:3]))
        self.run_all()
        manifests = [path for path in self.parts() if path.suffix == ".json"]
        manifests[0].unlink()
        with open(manifests[1].with_suffix(".wav"), "r+b") as file:
            file.truncate(200)
        missing = run("join", self.plan)
        self.assertEqual(missing.code, TRY_AGAIN)
        self.assertRegex(missing.err, r"1 task is not complete.*\n.*run .*night.json['\"]? --task 0")
        self.run_all()
        self.check_joined()

    def test_join_names_the_tasks_that_are_missing_and_writes_nothing(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options())
        run_ok("run", self.plan, "--task", 0, "--quiet")
        done = run("join", self.plan)
        self.assertEqual(done.code, TRY_AGAIN)
        self.assertRegex(done.err, r"2 tasks are not complete")
        for task in (1, 2):
            self.assertIn(f"--task {task}\n", done.err)
        self.assertEqual([path.name for path in self.out.iterdir()], ["night.parts"])

    def test_two_runs_of_a_task_at_once_leave_one_result(self):
        recording = self.record("a.wav", 20)
        run_ok("cut", recording, "--output", self.one, *entry_options(ENTRIES[:4]))
        self.make_plan(*entry_options(ENTRIES[:4]), shard=10)
        for task in range(self.tasks()):
            both = [start("run", self.plan, "--task", task, "--quiet", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
                    for _ in range(2)]
            for each in both:
                out, err = each.communicate(timeout=300)
                self.assertEqual(each.returncode, 0, err)
        self.check_joined()

    def test_the_task_is_told_by_the_environment_where_no_option_does(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:1]))
        for variable in ("SLURM_ARRAY_TASK_ID", "AWS_BATCH_JOB_ARRAY_INDEX"):
            told = json.loads(run_ok("run", self.plan, "--json", env={variable: "2"}).out)
            self.assertEqual(told["task"], 2)
        told = json.loads(run_ok("run", self.plan, "--json", "--task", 1, env={"SLURM_ARRAY_TASK_ID": "2"}).out)
        self.assertEqual(told["task"], 1)

    def test_numbers_of_tasks_are_decimal_whatever_stands_before_them(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:1]), shard=1)
        for number in ("010", "10", "00010"):
            self.assertEqual(json.loads(run_ok("run", self.plan, "--json", "--task", number).out)["task"], 10)
        self.assertEqual(json.loads(run_ok("run", self.plan, "--json", "--task", "000").out)["task"], 0)
        for number in ("0x1", "1.0", "+1", "1'0", "ten", ""):
            refused = run("run", self.plan, "--task", number)
            self.assertEqual((refused.code, refused.out), (2, ""), number)
            self.assertIn("--task", refused.err)

    def test_numbers_of_the_environment_that_are_none_are_refused(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:1]))
        for number in ("3", "-1", "x"):
            refused = run("run", self.plan, env={"SLURM_ARRAY_TASK_ID": number})
            self.assertEqual(refused.code, 2)
            self.assertIn("SLURM_ARRAY_TASK_ID: there is no such task. Accepted: 0 to 2", refused.err)

    def test_an_input_that_is_gone_is_worth_another_try_and_one_that_changed_is_not(self):
        recording = self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:1]))
        away = recording.with_name("away")
        recording.rename(away)
        gone = run("run", self.plan, "--task", 0)
        self.assertEqual(gone.code, TRY_AGAIN)
        self.assertIn("a.wav", gone.err)
        away.rename(recording)
        with open(recording, "r+b") as file:
            file.seek(5000)
            file.write(b"x")
        for arguments in (["run", self.plan, "--task", 0], ["join", self.plan]):
            changed = run(*arguments)
            self.assertEqual(changed.code, 3)
            self.assertIn("changed since the plan was made", changed.err)

    def test_a_plan_that_is_none_is_refused_and_one_that_cannot_be_read_is_worth_another_try(self):
        for text in ("", "{}", "[]", '{"carvello_plan": 2}', "\0", '{"carvello_plan": 1, "version": 5}'):
            self.plan.write_text(text)
            refused = run("run", self.plan, "--task", 0)
            self.assertEqual(refused.code, 2, text)
            self.assertIn("no plan", refused.err)
        self.plan.unlink()
        self.assertEqual(run("run", self.plan, "--task", 0).code, TRY_AGAIN)


class TestJoins(ClusterTest):
    def test_finished_outputs_are_left_by_a_join_whose_parts_are_gone(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:3]))
        self.run_all()
        run_ok("join", self.plan, "--remove-parts")
        again = run_ok("join", self.plan, "--skip-existing")
        self.assertEqual(again.out.count("exists, skipped"), 3)
        next(self.out.glob("*.wav")).unlink()
        self.assertEqual(run("join", self.plan, "--skip-existing").code, TRY_AGAIN)

    def test_join_tells_what_it_has_read(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:3]))
        self.run_all()
        told = json.loads(run_ok("join", self.plan, "--json").out)
        frames = [(output["frames"], output["bits"] // 4) for output in told["outputs"]]
        self.assertEqual(told["inputBytes"], sum(count * size for count, size in frames))

    def test_changed_samples_of_a_part_are_found_by_the_join(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:1]))
        self.run_all()
        part = next(path for path in self.parts() if path.suffix == ".wav")
        with open(part, "r+b") as file:
            file.seek(-3000, os.SEEK_END)
            byte = file.read(1)
            file.seek(-1, os.SEEK_CUR)
            file.write(bytes([byte[0] ^ 1]))
        done = run("join", self.plan)
        self.assertEqual(done.code, 1)
        self.assertIn("not those that were written", done.err)


class TestSplitJoins(ClusterTest):
    def test_parts_of_a_split_output_end_where_those_of_a_cut_do(self):
        """3 minutes at the input's rate with 100 MB a part."""
        recording = self.record("a.wav", 230, files=2)
        entries = entry_options(["f=7.1M,bw=250k,bits=16", "f=7.1M,bw=200k,start=+1,bits=16"])
        run_ok("cut", recording, "--output", self.one, *entries)
        self.assertGreater(len(list(self.one.iterdir())), 3)
        self.make_plan(*entries, shard=61)
        self.run_all()
        self.check_joined()


class TestPlans(ClusterTest):
    def test_recordings_are_found_in_folders_and_lists_once_each(self):
        self.record("a.wav", 6, files=2)
        below = self.recordings / "below"
        below.mkdir()
        second = synth(below / "b.wav", 6, 3, 1)
        (self.recordings / "notes.txt").write_text("nothing")
        names = self.folder / "names.txt"
        names.write_text(f"{second}\n\n{self.recordings / 'a 001.wav'}\n")
        for inputs in ([self.recordings], ["--list", names], [self.recordings, "--list", names, second]):
            told = self.make_plan(*entry_options(ENTRIES[:1]), "--overwrite", inputs=inputs)
            self.assertIn("2 recordings, 2 outputs, 4 tasks", told.out)

    def test_files_that_are_no_recordings_are_named_with_the_reason_and_those_named_like_one_first(self):
        self.record("m.wav", 6)
        for number in range(25):
            (self.recordings / f"a{number:02}.txt").write_text("a note")
        broken = self.recordings / "z.WAV"
        broken.write_bytes(b"RIFF\0\0\0\0WAVE")
        told = self.make_plan(*entry_options(ENTRIES[:1]))
        self.assertIn("1 recording, 1 output, 2 tasks", told.out)
        lines = [line for line in told.err.splitlines() if "left out: " in line]
        self.assertIn("z.WAV: ", lines[0])
        self.assertIn("a00.txt", lines[1])
        self.assertIn("... and 6 more", lines[-1])
        self.assertEqual(len(lines), 21)
        # Where nothing else is there, too.
        (self.recordings / "m.wav").unlink()
        none = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.folder / "none.json",
                   *entry_options(ENTRIES[:1]))
        self.assertEqual(none.code, 2)
        self.assertRegex(none.err, r"(?s)left out: .*a00\.txt.*no recordings found")

    def test_entries_by_frequency_go_to_the_recordings_that_hold_them(self):
        self.record("a.wav", 6)
        run_ok("synth", self.recordings / "b.wav", "--rate", RATE, "--centre", "14M", "--seconds", 6, "--start",
               "2026-03-01T05:00:00Z")
        entries = entry_options(["f=7.1M,bw=12k", "f=14.01M,bw=12k", "f=21M,bw=12k"])
        told = self.make_plan(*entries, "--entries-absolute")
        self.assertIn("2 recordings, 2 outputs, 4 tasks", told.out)
        self.assertIn("no recording holds", told.err)
        self.run_all()
        run_ok("join", self.plan, "--remove-parts")
        self.assertEqual(len(list(self.out.iterdir())), 2)

    def test_what_a_cut_refuses_is_refused_and_leaves_nothing(self):
        self.record("a.wav", 6)
        for arguments, told in ((["--entry", "f=7.1M,bw=12k,start=+50"], "start"), (["--entry", "f=7.1M,bw=1M"], "Bandwidth"),
                                (["--entry", "f=7.1M"], "bw is missing"), ([], "no entries")):
            refused = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.plan, *arguments)
            self.assertEqual(refused.code, 2, refused.err)
            self.assertIn(told.lower(), refused.err.lower())
        for shard in ("0", "x", "-1"):
            self.assertEqual(run("plan", self.recordings, "--output", self.out, f"--shard={shard}", "--plan", self.plan,
                                 "--entry", "f=7.1M,bw=12k").code, 2)
        self.assertEqual((self.plan.exists(), list(self.out.iterdir())), (False, []))

    def test_nothing_but_a_plan_is_replaced_by_one(self):
        recording = self.record("a.wav", 6)
        jobs, names = self.folder / "jobs.json", self.folder / "names.txt"
        jobs.write_text('{"entries": [{"frequency": 7100000, "bandwidth": 12000}]}')
        names.write_text(f"{recording}\n")
        for file in (recording, jobs, names):
            before = file.read_bytes()
            refused = run("plan", "--list", names, "--jobs", jobs, "--output", self.out, "--shard", 5, "--plan", file,
                          "--overwrite")
            self.assertEqual(refused.code, 2)
            self.assertIn("this file is no plan, and is not replaced", refused.err)
            self.assertEqual(file.read_bytes(), before)
        self.plan.write_bytes(b"")  # as a shell or a temporary file leaves it
        for _ in range(2):
            self.make_plan("--list", names, "--jobs", jobs, "--overwrite", inputs=[recording])

    def test_parts_go_only_where_a_folder_is(self):
        self.record("a.wav", 6)
        file = self.folder / "a file"
        file.write_text("of somebody\n")
        refused = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.plan, "--parts", file,
                      *entry_options(ENTRIES[:1]))
        self.assertEqual(refused.code, 1)
        self.assertIn("a file: is no folder", refused.err)
        refused = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.plan, "--parts",
                      self.folder / "none" / "parts", *entry_options(ENTRIES[:1]))
        self.assertEqual(refused.code, 1)
        self.assertRegex(refused.err, r"--parts: .*none: ")
        self.assertFalse(self.plan.exists())

    def test_a_new_plan_does_not_take_the_parts_of_another(self):
        self.record("a.wav", 6)
        self.make_plan(*entry_options(ENTRIES[:1]))
        self.run_all()
        other = self.folder / "other"
        other.mkdir()
        arguments = ["--output", self.out, "--shard", 5, *entry_options(ENTRIES[:1])]
        refused = run("plan", self.recordings, "--plan", other / "night.json", *arguments)
        self.assertEqual(refused.code, 4)
        self.assertIn("holds the parts of another plan", refused.err)
        self.make_plan(*entry_options(ENTRIES[:1]), "--overwrite")

    def test_the_folder_of_the_outputs_is_not_searched_for_recordings(self):
        self.record("a.wav", 6)
        refused = run("plan", self.recordings, "--output", self.recordings, "--shard", 5, "--plan", self.plan,
                      *entry_options(ENTRIES[:1]))
        self.assertEqual(refused.code, 3)
        self.assertIn("is the folder of the outputs", refused.err)

    def test_where_no_recording_holds_an_entry_it_is_told_how_many_were_found(self):
        self.record("a.wav", 6)
        self.record("b.wav", 6, hour=3)
        refused = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.plan,
                      "--entries-absolute", "--entry", "f=27M,bw=10k")
        self.assertEqual(refused.code, 2)
        self.assertIn("2 recordings found, and none holds any of the entries", refused.err)
        told = self.make_plan("--entries-absolute", "--entry", "f=7.1M,bw=10k,start=2026-03-01T03:00:01Z")
        self.assertIn("1 recording of 2 without any of the entries", told.err)

    def test_all_parts_of_a_recording_are_planned_and_none_is_said_to_be_chosen(self):
        captures = [{"core:sample_start": number * 6 * RATE, "core:frequency": CENTRE + number * 10_000,
                     "core:datetime": f"2026-03-01T00:0{number}:00Z"} for number in range(2)]
        (self.recordings / "a.sigmf-meta").write_text(json.dumps({
            "global": {"core:datatype": "ci16_le", "core:version": "1.2.5", "core:sample_rate": RATE},
            "captures": captures, "annotations": []}))
        (self.recordings / "a.sigmf-data").write_bytes(bytes(12 * RATE * 4))
        told = self.make_plan(*entry_options(ENTRIES[:1]))
        self.assertIn("2 recordings, 2 outputs, 4 tasks", told.out)
        self.assertNotIn("--part", told.err)

    def test_outputs_of_one_name_and_outputs_that_exist_are_refused(self):
        self.record("a.wav", 6)
        other = self.recordings / "other"
        other.mkdir()
        synth(other / "c.wav", 6, 0, 1)
        arguments = ["--output", self.out, "--shard", 5, "--plan", self.plan, "--entry", "f=7.1M,bw=12k"]
        twice = run("plan", self.recordings, *arguments)
        self.assertEqual(twice.code, 2)
        self.assertIn("an output of two recordings", twice.err)
        run_ok("cut", self.recordings / "a.wav", "--output", self.out, "--entry", "f=7.1M,bw=12k")
        self.assertEqual(run("plan", self.recordings / "a.wav", *arguments).code, 4)

    def test_outputs_that_exist_are_named_for_all_recordings_at_once(self):
        for name, hour in (("a.wav", 0), ("b.wav", 1)):
            self.record(name, 6, hour)
        self.make_plan(*entry_options(ENTRIES[:1]))
        self.run_all()
        for name in ("a.wav", "b.wav"):
            run_ok("cut", self.recordings / name, "--output", self.out, *entry_options(ENTRIES[:1]))
        outputs = sorted(path.name for path in self.out.glob("*.wav"))
        self.assertEqual(len(outputs), 2)
        before = [(self.out / name).stat().st_mtime_ns for name in outputs]
        again = run("plan", self.recordings, "--output", self.out, "--shard", 5, "--plan", self.folder / "again.json",
                    *entry_options(ENTRIES[:1]))
        for refused in (again, run("join", self.plan)):
            self.assertEqual(refused.code, 4)
            self.assertEqual(refused.err.count("these outputs exist already"), 1)
            for name in outputs:
                self.assertIn(name, refused.err)
        self.assertEqual([(self.out / name).stat().st_mtime_ns for name in outputs], before)

    def test_the_script_for_slurm_is_one_that_bash_takes(self):
        self.record("a.wav", 12)
        script = self.make_plan(*entry_options(), "--sbatch").out
        self.assertIn("#SBATCH --array=0-2\n", script)
        for name in ("cpus-per-task", "mem", "time"):
            self.assertRegex(script, rf"#SBATCH --{name}=\d+")
        if not WINDOWS:
            subprocess.run(["bash", "-n"], input=script, text=True, check=True)

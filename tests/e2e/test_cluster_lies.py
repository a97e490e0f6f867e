"""Plans, parts and manifests that were changed, and inputs of all kinds: never other samples than those of one `cut`."""
import json
import os

import numpy as np

from program import run, run_ok
from same_output import assert_same_outputs
from test_cluster import ENTRIES, TRY_AGAIN, ClusterTest, entry_options


class TestTamperedPlans(ClusterTest):
    def change(self, change):
        """Puts a plan that was changed in the place of the one there."""
        plan = json.loads(self.made)
        change(plan)
        self.plan.write_text(json.dumps(plan))

    def test_no_plan_that_was_changed_makes_other_samples(self):
        recording = self.record("a.wav", 12)
        self.record("b.wav", 12, hour=1)
        run_ok("cut", recording, "--output", self.one, *entry_options(ENTRIES[:2]))
        self.make_plan(*entry_options(ENTRIES[:2]))
        self.made = self.plan.read_text()
        self.run_all()

        def swap(plan):
            plan["tasks"][0], plan["tasks"][1] = plan["tasks"][1], plan["tasks"][0]

        def entry(plan):
            plan["job"] = plan["job"].replace("7100000", "7100001")

        def cut_short(plan):
            plan["tasks"][2][2] = 11

        changes = {
            "tasks swapped": swap,
            "a task twice": lambda plan: plan["tasks"].insert(1, plan["tasks"][0]),
            "tasks that overlap": lambda plan: plan["tasks"][1].__setitem__(1, 4),
            "no tasks": lambda plan: plan["tasks"].clear(),
            "a task of no recording": lambda plan: plan["tasks"][-1].__setitem__(0, 2),
            "a negative second": lambda plan: plan["tasks"][0].__setitem__(1, -5),
            "a fraction of a second": lambda plan: plan["tasks"][0].__setitem__(2, 5.5),
            "a number beyond 64 bits": lambda plan: plan["tasks"][0].__setitem__(2, 1 << 70),
            "a number that is a text": lambda plan: plan["tasks"][0].__setitem__(2, "5"),
            "a task of two numbers": lambda plan: plan["tasks"][0].pop(),
            "a rate of 33 bits": lambda plan: plan["recordings"][0].__setitem__("sample_rate", 1 << 33),
            "no recordings": lambda plan: plan["recordings"].clear(),
            "another entry": entry,
            "another number of frames": lambda plan: plan["recordings"][0].__setitem__("frames", 12),
            "another hash": lambda plan: plan["recordings"][0].__setitem__("entries_sha256", ""),
            "another file": lambda plan: plan["recordings"][0]["files"].clear(),
            "another version": lambda plan: plan.__setitem__("version", "0.1"),
        }
        for name, change in changes.items():
            with self.subTest(change=name):
                self.change(change)
                for arguments in (["run", self.plan, "--task", 0], ["join", self.plan]):
                    refused = run(*arguments)
                    self.assertIn(refused.code, (2, 3), refused.err)
                    self.assertNotEqual(refused.err, "")
                self.assertEqual([path.name for path in self.out.iterdir()], ["night.parts"])
        for name, change, code in (("the last one left out", lambda plan: plan["tasks"].pop(), 2),
                                   ("a task too few", lambda plan: plan["tasks"].pop(1), TRY_AGAIN),
                                   ("ends too early", cut_short, TRY_AGAIN)):
            with self.subTest(change=name):
                self.change(change)
                self.assertEqual(run("join", self.plan).code, code)
                for task in range(self.tasks()):  # those that are left are done
                    run_ok("run", self.plan, "--task", task)
                refused = run("join", self.plan)
                self.assertEqual((refused.code, "leave out samples" in refused.err), (2, True), refused.err)
                self.assertEqual([path.name for path in self.out.iterdir()], ["night.parts"])

    def test_a_text_that_is_cut_off_or_nested_without_end_is_no_plan(self):
        self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:2]))
        whole = self.plan.read_text()
        for text in (whole[:-3], whole[:len(whole) // 2], "[" * 1_000_000, '{"carvello_plan":' + "[" * 500_000 + "]" * 500_000 + "}",
                     whole.replace('"frames": ', '"frames": ' + "[" * 300_000 + "]" * 300_000 + ', "was": ', 1)):
            self.plan.write_text(text)
            for arguments in (["run", self.plan, "--task", 0], ["join", self.plan]):
                refused = run(*arguments)
                self.assertEqual(refused.code, 2, refused.err[-300:])
                self.assertIn("no plan", refused.err)

    def test_parts_and_manifests_that_were_swapped_or_changed_are_not_taken(self):
        recording = self.record("a.wav", 15)
        run_ok("cut", recording, "--output", self.one, *entry_options(ENTRIES[:1]))
        self.make_plan(*entry_options(ENTRIES[:1]))
        self.run_all()
        waves = [path for path in self.parts() if path.suffix == ".wav"]

        def swap(one, other):
            away = one.with_name("away")
            one.rename(away)
            other.rename(one)
            away.rename(other)

        def tasks_missing():
            done = run("join", self.plan, "--json")
            self.assertEqual(done.code, TRY_AGAIN, done.err)
            return done.json()["missing_tasks"]

        manifests = [wave.with_suffix(".json") for wave in waves]
        swap(manifests[1], manifests[2])
        self.assertEqual(tasks_missing(), [1, 2])
        swap(waves[1], waves[2])
        self.assertEqual(tasks_missing(), [1, 2])
        swap(manifests[1], manifests[2])  # manifests right, samples not: seen when they are read
        done = run("join", self.plan)
        self.assertEqual(done.code, 1)
        self.assertIn("not those that were written", done.err)
        self.run_all()
        good = manifests[1].read_text()
        for text in ("", good[:40], "[]", "[" * 200_000, good.replace('"frames": ', '"frames": -'),
                     good.replace('"frames": ', '"frames": 99999999999999999999'), good.replace('"key": "', '"key": "0'),
                     json.dumps(json.loads(good) | {"marks": [[1, 1]]}), good.replace('"check": "', '"check": "0')):
            self.assertNotEqual(text, good)
            manifests[1].write_text(text)
            self.assertEqual(tasks_missing(), [1])
        self.run_all()
        self.check_joined("--overwrite")


class LikeCutTest(ClusterTest):
    def check_like_cut(self, recording, *arguments, shard=5):
        run_ok("cut", recording, "--output", self.one, *arguments)
        self.make_plan(*arguments, shard=shard, inputs=[recording])
        self.run_all()
        run_ok("join", self.plan, "--remove-parts")
        self.check_same()


class TestManyOutputs(LikeCutTest):
    def test_more_entries_than_one_pass_takes(self):
        recording = self.record("a.wav", 4)
        self.check_like_cut(recording, "--sequence", "7000000:7100500:100", "--bw", "300", shard=2)
        self.assertEqual(len(list(self.out.iterdir())), 1006)


class TestInputsOfAllKinds(LikeCutTest):
    def test_entries_that_begin_with_a_later_file_begin_late_as_in_a_cut(self):
        first = self.record("a.wav", 18, files=3)
        self.check_like_cut(first, *entry_options(["f=7.1M,bw=12k,start=+6", "f=7112345,bw=44100,start=+7"]), shard=4)

    def test_files_of_uneven_sizes(self):
        """20 files, of which none is a whole number of seconds long."""
        first = self.record("a.wav", 13.7, files=20)
        self.check_like_cut(first, *entry_options(ENTRIES[:5]), shard=3)

    def test_outputs_with_meta_files_and_counted_frames(self):
        recording = self.record("a.wav", 12)
        self.check_like_cut(recording, *entry_options(ENTRIES[:3]), "--sigmf-meta", "--ds64-frames")

    def test_folders_of_their_own_for_outputs_of_a_job_file(self):
        recording = self.record("a.wav", 12)
        entries = [{"frequency": 7_100_000, "bandwidth": 8000}, {"frequency": 7_112_345, "bandwidth": 9000}]
        made = []
        for folder in (self.one, self.out):
            own = folder.with_name(folder.name + " own")
            own.mkdir()
            jobs = self.folder / f"{folder.name}.json"
            jobs.write_text(json.dumps({"output": str(folder), "entries": [entries[0], {**entries[1], "output": str(own)}]}))
            made.append((own, jobs))
        run_ok("cut", recording, "--jobs", made[0][1])
        run_ok("plan", recording, "--shard", 5, "--plan", self.plan, "--jobs", made[1][1])
        self.run_all()
        self.check_joined()
        assert_same_outputs(self, made[0][0], made[1][0])

    def test_lost_samples_and_parts_of_other_frequencies_of_sigmf_recordings(self):
        noise = np.random.default_rng(1)
        captures = {"gap": (7e6, "2026-03-01T00:00:06Z"), "parts": (8e6, "2026-03-01T00:00:04Z")}
        for name, (frequency, later) in captures.items():
            noise.integers(-9000, 9000, 1_600_000, dtype=np.int16).tofile(self.recordings / f"{name}.sigmf-data")
            (self.recordings / f"{name}.sigmf-meta").write_text(json.dumps({
                "global": {"core:datatype": "ci16_le", "core:sample_rate": 100_000, "core:version": "1.0.0"},
                "captures": [
                    {"core:sample_start": 0, "core:frequency": 7e6, "core:datetime": "2026-03-01T00:00:00Z"},
                    {"core:sample_start": 400_000, "core:frequency": frequency, "core:datetime": later}],
                "annotations": []}))
        for name, part, frequency in (("gap", 0, 7), ("parts", 1, 7), ("parts", 2, 8)):
            bandwidth = 12_000 if name == "gap" else 9_000
            run_ok("cut", self.recordings / f"{name}.sigmf-meta", "--output", self.one, "--entry",
                   f"f={frequency}.01M,bw={bandwidth}", *(["--part", part] if part else []))
        for name, entries in (("gap", ["f=7.01M,bw=12k"]), ("parts", ["f=7.01M,bw=9k", "f=8.01M,bw=9k"])):
            self.make_plan("--entries-absolute", "--overwrite", *entry_options(entries), shard=3,
                           inputs=[self.recordings / f"{name}.sigmf-meta"])
            self.run_all()
            run_ok("join", self.plan, "--remove-parts")
        self.assertEqual(len(list(self.out.iterdir())), 3)
        self.check_same()

    def test_a_change_with_size_and_time_put_back_is_not_seen(self):
        """What tells a file's state is its size and time: docs/cluster.md says so."""
        recording = self.record("a.wav", 12)
        self.make_plan(*entry_options(ENTRIES[:1]))
        before = recording.stat()
        with open(recording, "r+b") as file:
            file.seek(-4, os.SEEK_END)
            file.write(b"abcd")
        os.utime(recording, ns=(before.st_atime_ns, before.st_mtime_ns))
        run_ok("run", self.plan, "--task", 0)
        os.utime(recording, ns=(before.st_atime_ns, before.st_mtime_ns + 100))  # no system counts coarser
        self.assertEqual(run("run", self.plan, "--task", 0).code, 3)

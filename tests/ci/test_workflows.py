"""The workflows for hosted runners, which nothing here can run: that they are what such a service reads, and that the
commands in them are there."""
import json
import re
import subprocess
import unittest
from pathlib import Path

import yaml

PROJECT = Path(__file__).resolve().parents[2]
WORKFLOWS = PROJECT / ".github/workflows"
RUNNERS = {"ubuntu-24.04", "windows-2022"}


class Loader(yaml.SafeLoader):
    """As the service reads it: a key that stands twice is wrong, and `on` is no truth."""

    def construct_mapping(self, node, deep=False):
        keys = [self.construct_object(key, deep=True) for key, _ in node.value]
        twice = {key for key in keys if keys.count(key) > 1}
        if twice:
            raise yaml.constructor.ConstructorError(None, None, f"twice: {twice}", node.start_mark)
        return super().construct_mapping(node, deep)


Loader.yaml_implicit_resolvers = {
    first: [(tag, regexp) for tag, regexp in resolvers if tag != "tag:yaml.org,2002:bool"]
    for first, resolvers in yaml.SafeLoader.yaml_implicit_resolvers.items()}
Loader.add_implicit_resolver("tag:yaml.org,2002:bool", re.compile("^(?:true|false)$"), list("tf"))


def problems(workflow):
    """What a service would refuse of a workflow, or what would fail there at its first step."""
    found = []
    for key in workflow.keys() - {"name", "on", "permissions", "jobs"}:
        found.append(f"unknown: {key}")
    if set(workflow.get("on", {})) != {"push", "pull_request"}:
        found.append("not on every change")
    if workflow.get("permissions") != {"contents": "read"}:
        found.append("may write")
    if not workflow.get("jobs"):
        found.append("no jobs")
    for name, job in workflow.get("jobs", {}).items():
        for key in job.keys() - {"runs-on", "timeout-minutes", "strategy", "container", "defaults", "env", "steps"}:
            found.append(f"{name}: unknown: {key}")
        if job.get("runs-on") not in RUNNERS:
            found.append(f"{name}: no such runner: {job.get('runs-on')}")
        if not isinstance(job.get("timeout-minutes"), int):
            found.append(f"{name}: without a limit")
        if not any("actions/checkout@" in step.get("uses", "") for step in job.get("steps", [])):
            found.append(f"{name}: has no sources")
        matrix = job.get("strategy", {}).get("matrix", {})
        for variable in re.findall(r"\$\{\{ *matrix\.([\w-]+) *\}\}", json.dumps(job)):
            if variable not in matrix:
                found.append(f"{name}: matrix has no {variable}")
        for step in job.get("steps", []):
            for key in step.keys() - {"name", "id", "if", "uses", "with", "run", "shell", "env"}:
                found.append(f"{name}: unknown in a step: {key}")
            if ("uses" in step) == ("run" in step):
                found.append(f"{name}: a step must either use or run: {step}")
            if "uses" in step and not re.fullmatch(r"[\w-]+/[\w-]+@v\d+", step["uses"]):
                found.append(f"{name}: no version of {step['uses']}")
            if "run" in step:
                found += [f"{name}: {problem}" for problem in command_problems(step["run"])]
    return found


def kinds_of_test():
    cases = re.findall(r"^  ([\w| ]+)\)$", (PROJECT / "test").read_text(), re.MULTILINE)
    return {kind.strip() for case in cases for kind in case.split("|")}


def command_problems(command):
    found = []
    presets = json.loads((PROJECT / "CMakePresets.json").read_text())
    for kind, option in (("configurePresets", r"cmake"), ("buildPresets", r"cmake --build"), ("testPresets", r"ctest")):
        names = {preset["name"] for preset in presets[kind] if not preset.get("hidden")}
        for name in re.findall(rf"\b{option} --preset (\S+)", command):
            if name not in names:
                found.append(f"{kind} has no {name}")
    for program, kind in re.findall(r"^\./(\S+)(?: (\w+))?", command, re.MULTILINE):
        if not (PROJECT / program).exists():
            found.append(f"no ./{program}")
        elif program == "test" and kind and kind not in kinds_of_test():
            found.append(f"./test knows no {kind}")
    without_variables = re.sub(r"\$\{\{.*?\}\}", "x", command)
    if "$env:" not in command and subprocess.run(["bash", "-n"], input=without_variables, text=True,
                                                 capture_output=True, check=False).returncode:
        found.append(f"no command: {command}")
    return found


def load(text):
    return yaml.load(text, Loader)


class TestWorkflows(unittest.TestCase):
    def test_every_workflow_can_be_read_and_what_it_runs_is_there(self):
        files = sorted(WORKFLOWS.glob("*.yml"))
        self.assertEqual([file.name for file in files], ["linux.yml", "windows.yml"])
        for file in files:
            with self.subTest(file.name):
                self.assertEqual(problems(load(file.read_text())), [])

    def test_on_linux_both_commands_run_on_each_system_and_leave_their_logs_where_they_fail(self):
        jobs = load((WORKFLOWS / "linux.yml").read_text())["jobs"]
        self.assertEqual(set(jobs), {"ubuntu", "debian"})
        self.assertEqual(jobs["debian"]["container"], "debian:${{ matrix.release }}")
        for job in jobs.values():
            commands = [step["run"] for step in job["steps"] if "run" in step]
            self.assertEqual(commands[-2:], ["./run", "./test"])
            self.assertEqual(job["steps"][-1]["if"], "failure()")
            self.assertIn("upload-artifact", job["steps"][-1]["uses"])

    def test_what_is_wrong_with_a_workflow_is_found(self):
        good = (WORKFLOWS / "linux.yml").read_text()
        for old, new in (
                ("runs-on: ubuntu-24.04", "runs-on: ubuntu-2404"), ("  contents: read", "  contents: write"),
                ("    timeout-minutes: 90\n", ""), ("actions/checkout@v4", "actions/checkout"),
                ("- run: ./run", "- runs: ./run"), ("- run: ./run", "- run: ./runs"),
                ("- run: ./test", "- run: ./test quickly"), ("- run: ./test", "- run: ctest --preset releases"),
                ("- run: ./test", "- run: if ./test"), ("matrix.release", "matrix.version"),
                ("  pull_request:\n", ""), ("      - uses: actions/checkout@v4\n", "")):
            with self.subTest(new or f"without {old}"):
                self.assertIn(old, good)
                self.assertNotEqual(problems(load(good.replace(old, new))), [])
        for text in (good + "name: again\n", good.replace("jobs:", "jobs"), good.replace("    steps:", "   steps:")):
            with self.assertRaises(yaml.YAMLError):
                load(text)


if __name__ == "__main__":
    unittest.main()

"""The completions that the program prints for a shell, as the shells themselves take them."""
import os
import re
import shutil
import subprocess

from program import CLI, EndToEndTest, run, run_ok

HELPED = ("info", "cut", "picture", "scan", "plan", "run", "join", "repair", "chunks", "synth")


def shell(name, script, *arguments):
    program = shutil.which(name)
    if program is None:
        raise AssertionError(f"{name} is not installed; it is a package of Debian's")
    environment = {**os.environ, "PATH": f"{CLI.parent}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
    done = subprocess.run([program, "-c", script, name, *map(str, arguments)], capture_output=True, timeout=60,
                          stdin=subprocess.DEVNULL, env=environment)
    assert done.returncode == 0 and not done.stderr, done.stderr.decode()
    return done.stdout.decode()


class TestCompletions(EndToEndTest):
    def setUp(self):
        super().setUp()
        self.scripts = {}
        for name in ("bash", "zsh", "fish"):
            self.scripts[name] = self.folder / f"script.{name}"
            self.scripts[name].write_text(run_ok("completions", name).out)

    def bash(self, *words):
        script = ('source "$1"; shift; COMP_WORDS=(carvello-cli "$@"); COMP_CWORD=$#; _carvello_cli; '
                  'printf "%s\\n" "${COMPREPLY[@]}"')
        return shell("bash", script, self.scripts["bash"], *words).split()

    def fish(self, line):
        return [found.split("\t")[0] for found in
                shell("fish", f"source {self.scripts['fish']}; complete -C '{line}'").splitlines()]

    def options_in_help(self, command):
        return sorted(set(re.findall(r"(?m)^ +(?:-h,)?(--[a-z0-9-]+)", run_ok(command, "--help").out)))

    def test_bash_completes_commands_and_every_option_of_each(self):
        self.assertEqual(self.bash("pic"), ["picture"])
        for command in HELPED:
            with self.subTest(command=command):
                self.assertLessEqual(set(self.options_in_help(command)), set(self.bash(command, "--")))
        self.assertEqual(self.bash("cut", "a.wav", "--skip"), ["--skip-existing"])

    def test_bash_leaves_words_that_are_no_options_to_the_names_of_files(self):
        self.assertEqual(self.bash("info", "a"), [])
        self.assertIn("complete -o default ", self.scripts["bash"].read_text())

    def test_fish_completes_commands_and_every_option_of_each(self):
        self.assertEqual(self.fish("carvello-cli pict"), ["picture"])
        for command in HELPED:
            with self.subTest(command=command):
                self.assertLessEqual(set(self.options_in_help(command)),
                                     set(self.fish(f"carvello-cli {command} --")))

    def test_zsh_takes_the_script_and_finds_every_option_in_it(self):
        text = self.scripts["zsh"].read_text()
        # With stand-ins for the completion system, which needs a terminal: what is handed to it is looked at.
        stand_ins = ("_arguments() { print -rl -- \"$@\" >&3; [[ $1 = -C ]] && { state=argument; line=($wanted) }; "
                     "return 0 }; _describe() { : }; compdef() { : }; ")
        for command in HELPED:
            with self.subTest(command=command):
                handed = shell("zsh", f'{stand_ins} wanted={command}; source "$1"; _carvello_cli 3>&1',
                               self.scripts["zsh"])
                for option in self.options_in_help(command):
                    self.assertRegex(handed, rf"(?m)^(\*|\([^)]*\))?{option}\[")
        self.assertTrue(text.startswith("#compdef carvello-cli\n"))

    def test_a_shell_that_is_not_known_is_refused_by_name(self):
        result = run("completions", "tcsh")
        self.assertEqual(result.code, 2)
        self.assertIn('"tcsh"', result.err)
        self.assertIn("bash, zsh, fish", result.err)

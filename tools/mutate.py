#!/usr/bin/env python3
"""mutate.py --seed S --count N [--layer L ...] [--again FILE] [--scratch FOLDER]: do the tests notice
faults?

Picks N places of src with a seed, makes each a fault in a scratch copy of the tree as committed (a
comparison turned, a constant moved by one, a condition negated, a statement dropped, arguments
swapped, an early return), builds it, runs the tests of its layer and says whether one of them
failed or did not end. A mutant that does not compile counts for nothing and another is drawn.
`--again FILE` judges the survivors that an earlier run wrote to a file instead. `--scratch FOLDER`
keeps the copy and its build there for the next run. The last line is
`killed K of N, E equivalent`.

tools/equivalent_mutants.txt lists mutants that no test can tell from the program, each with the
reason: lines like those of the output, ``file: `line` -> `mutated line`: reason``.
"""

import argparse
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
# The test programs that cover a folder of src, those first that find most in the least time.
TESTS = {
    "base": "base engine imaging preview",
    "platform": "platform imaging",
    "engine/deep": "deep",
    "engine": "engine",
    "imaging": "imaging",
    "session": "session app",
    "preview": "preview app",
    "services": "services services_reachability",
    "cli": "cli",
}
LAYERS = [folder for folder in TESTS if "/" not in folder]
DRAWN = ["cli", "engine", "imaging", "preview", "services", "session"]
# A header is compiled a hundred times, so of its mutants only some are drawn.
HEADERS_DRAWN = 0.25
COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
# The mutated file needs no long optimisation, may leave a name unused and is watched as the debug
# build is; all others are as they always were, so the cache of the compiler knows them.
LAUNCHER = """#!/bin/sh
case "$*" in
  *"$MUTATED"*) exec ccache "$@" -O1 -Wno-error -D_GLIBCXX_ASSERTIONS ;;
esac
exec ccache "$@"
"""


def turned_comparison(line):
    for match in re.finditer(r" (<=|>=|==|!=|<|>) ", line):
        yield line[: match.start(1)] + COMPARISONS[match.group(1)] + line[match.end(1):]


def moved_constant(line):
    if '"' in line or "virtual" in line:
        return
    for match in re.finditer(r"(?<![\w.\"'#])(\d+)(?![\w.\"'])", line):
        yield line[: match.start()] + str(int(match.group()) + 1) + line[match.end():]


def negated_condition(line):
    match = re.search(r"\bif \((.+)\)( \{| return.*| continue;| break;)$", line)
    if match and "constexpr" not in line:
        yield line[: match.start(1)] + "!(" + match.group(1) + ")" + line[match.end(1):]


def dropped_statement(line):
    if re.match(r"^ {2,}[\w.\->:]+(\(.*\)|\+\+| [-+*/|&]?= .*);$", line) and "return" not in line:
        yield ""


def swapped_arguments(line):
    for match in re.finditer(r"\((\w+), (\w+)\)", line):
        if match.group(1) != match.group(2):
            yield line[: match.start()] + f"({match.group(2)}, {match.group(1)})" + line[match.end():]


def early_return(line):
    if re.match(r"^(void|[\w:]*::)?.*\)( const)? \{$", line) and line.startswith("void "):
        yield line + " return;"


KINDS = [turned_comparison, moved_constant, negated_condition, dropped_statement,
         swapped_arguments, early_return]


def layer_of(path):
    return path.split("/")[1]


def programs_of(path):
    """The test programs that cover a file."""
    folders = [folder for folder in TESTS if path.startswith(f"src/{folder}/")]
    return TESTS[max(folders, key=len)].split()


def places(layers):
    """All (file, line number, line, mutated line), in the order of files, lines and kinds."""
    listed = subprocess.run(["git", "ls-files", "src/*.cpp", "src/*.h"], cwd=ROOT,
                            capture_output=True, text=True, check=True).stdout.split()
    for path in listed:
        if layer_of(path) not in layers:
            continue
        with open(os.path.join(ROOT, path), encoding="utf-8") as file:
            lines = file.read().split("\n")
        for number, line in enumerate(lines):
            code = line.split("//")[0].rstrip()
            if not code or code.lstrip().startswith(("#", "static_assert", "template", "using")):
                continue
            for kind in KINDS:
                for mutated in kind(code):
                    yield path, number, line, mutated


def listed_in(path, beginning=""):
    """The mutants that the lines of a file tell of, with what stands after them."""
    found = {}
    if os.path.exists(path):
        with open(path, encoding="utf-8") as file:
            for line in file:
                match = re.match(beginning + r"(src/[^:]+):[\d:]* `(.*)` -> `(.*)`:? ?(.*)$", line)
                if match:
                    found[match.group(1, 2, 3)] = match.group(4)
    return found


def ends_well(command, seconds, **kwargs):
    """Whether a command ends within some seconds without a fault."""
    with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, start_new_session=True, **kwargs) as process:
        try:
            return process.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            return False


class Scratch:
    """A copy of the tree with a build and a folder for temporary files of its own."""

    def __init__(self, folder):
        self.root = os.path.join(folder, "tree")
        self.build = os.path.join(self.root, "build/dev")
        self.runs = {}  # What is run of each test program: (command, seconds).
        launcher = os.path.join(folder, "launcher")
        with open(launcher, "w", encoding="utf-8") as file:
            file.write(LAUNCHER)
        os.chmod(launcher, 0o755)
        os.makedirs(os.path.join(folder, "tmp"), exist_ok=True)
        self.environment = {**os.environ, "TMPDIR": os.path.join(folder, "tmp"),
                            "QT_QPA_PLATFORM": "offscreen", "G_DEBUG": "fatal-criticals",
                            "CCACHE_BASEDIR": folder, "MUTATED": "none"}
        head = subprocess.run(["git", "rev-parse", "HEAD"], cwd=ROOT, capture_output=True,
                              text=True, check=True).stdout.strip()
        if os.path.exists(self.root):
            subprocess.run(["git", "checkout", "--detach", "--force", "--quiet", head],
                           cwd=self.root, check=True)
        else:
            subprocess.run(["git", "worktree", "add", "--detach", "--quiet", self.root, head],
                           cwd=ROOT, check=True)
        linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else []
        subprocess.run(["cmake", "--preset", "dev", "-DVELMARA_WERROR=ON",
                        f"-DVELMARA_CCACHE={launcher}",
                        "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST", *linker],
                       cwd=self.root, check=True, stdout=subprocess.DEVNULL)

    def prepare(self, programs):
        """Builds test programs and finds out how long each takes, and what in it needs a process
        to itself."""
        subprocess.run(["ninja", "-C", self.build, *(f"{each}_test" for each in programs)],
                       check=True, stdout=subprocess.DEVNULL, env=self.environment)
        found = subprocess.run(["find", self.build, "-name", "*_test", "-type", "f"],
                               capture_output=True, text=True, check=True).stdout.split()
        paths = {os.path.basename(path)[:-len("_test")]: path for path in found}
        for program in programs:
            start = time.monotonic()
            said = subprocess.run([paths[program]], env=self.environment, capture_output=True,
                                  text=True, errors="replace", cwd=self.build, check=False).stdout
            seconds = 15 + 4 * (time.monotonic() - start)
            alone = sorted(set(re.findall(r"^\[  FAILED  \] ([\w/]+\.[\w/]+)", said, re.M)))
            runs = [([paths[program], "--gtest_fail_fast",
                      "--gtest_filter=-" + ":".join(alone)], seconds)]
            runs += [([paths[program], f"--gtest_filter={name}"], seconds) for name in alone]
            self.runs[program] = [run for run in runs if self.passes(*run)]
            left_out = [run[0][-1] for run in runs if run not in self.runs[program]]
            print(f"# {program}: {(seconds - 15) / 4:.1f} s, alone: {' '.join(alone) or 'none'}, "
                  f"left out, as it fails without a fault: {' '.join(left_out) or 'none'}",
                  flush=True)

    def passes(self, command, seconds):
        return ends_well(command, seconds, env=self.environment, cwd=self.build)

    def judge(self, path, number, mutated):
        """"killed", "survived" or, where the mutant does not compile, "invalid"."""
        file = os.path.join(self.root, path)
        with open(file, encoding="utf-8") as handle:
            whole = handle.read()
        lines = whole.split("\n")
        lines[number] = mutated
        with open(file, "w", encoding="utf-8") as handle:
            handle.write("\n".join(lines))
        try:
            programs = programs_of(path)
            environment = {**self.environment, "MUTATED": path if path.endswith(".cpp") else "-c"}
            if not ends_well(["ninja", "-C", self.build, *(f"{each}_test" for each in programs)],
                             900, env=environment):
                return "invalid"
            passed = all(self.passes(*run) for each in programs for run in self.runs[each])
            return "survived" if passed else "killed"
        finally:
            with open(file, "w", encoding="utf-8") as handle:
                handle.write(whole)

    def remove(self):
        subprocess.run(["git", "worktree", "remove", "--force", self.root], cwd=ROOT, check=False)


def drawn(arguments):
    """The mutants to judge, in order."""
    if arguments.again:
        wanted = listed_in(arguments.again, r"survived +")
        return [place for place in places(LAYERS)
                if (place[0], place[2].strip(), place[3].strip()) in wanted]
    chance = random.Random(arguments.seed)
    candidates = [place for place in places(arguments.layer or DRAWN)
                  if chance.random() < (HEADERS_DRAWN if place[0].endswith(".h") else 1)]
    chance.shuffle(candidates)
    return candidates


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=10**6)
    parser.add_argument("--layer", choices=LAYERS, action="append")
    parser.add_argument("--again", metavar="FILE")
    parser.add_argument("--scratch", metavar="FOLDER")
    arguments = parser.parse_args()

    signal.signal(signal.SIGTERM, signal.default_int_handler)
    candidates = drawn(arguments)
    known = listed_in(os.path.join(ROOT, "tools/equivalent_mutants.txt"))
    counts = {"killed": 0, "survived": 0, "equivalent": 0}
    folder = os.path.abspath(arguments.scratch or tempfile.mkdtemp())
    os.makedirs(folder, exist_ok=True)
    scratch = Scratch(folder)
    try:
        head = subprocess.run(["git", "rev-parse", "--short", "HEAD"], cwd=scratch.root,
                              capture_output=True, text=True, check=True).stdout.strip()
        print(f"# commit {head}, seed {arguments.seed}, {len(candidates)} to draw from", flush=True)
        scratch.prepare(sorted({each for place in candidates for each in programs_of(place[0])}))
        for path, number, line, mutated in candidates:
            if sum(counts.values()) == arguments.count:
                break
            name = (path, line.strip(), mutated.strip())
            verdict = "equivalent" if name in known else scratch.judge(path, number, mutated)
            if verdict == "invalid":
                continue
            counts[verdict] += 1
            print(f"{verdict:10} {path}:{number + 1}: `{name[1]}` -> `{name[2]}`", flush=True)
    except KeyboardInterrupt:
        pass  # What is known by now is told.
    finally:
        if not arguments.scratch:
            scratch.remove()
            shutil.rmtree(folder, ignore_errors=True)
    print(f"killed {counts['killed']} of {sum(counts.values())}, "
          f"{counts['equivalent']} equivalent")
    return 0


if __name__ == "__main__":
    sys.exit(main())

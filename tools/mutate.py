#!/usr/bin/env python3
"""mutate.py --seed S --count N [--layer L] [--build DIR]: do the tests notice faults?

Picks N places of src with a seed, makes each a fault in a scratch copy of the tree (a comparison
turned, a constant moved by one, a condition negated, a statement dropped, arguments swapped, an
early return), builds it, runs the tests of its layer and says whether one of them failed. A mutant
that does not compile counts for nothing and another is drawn. The last line is
`killed K of N, E equivalent`.

tools/equivalent_mutants.txt lists mutants that no test can tell from the program, each with the
reason: lines `file: mutated line: reason`.
"""

import argparse
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
# The test programs that cover a layer, by their labels in ctest.
TESTS = {
    "base": "base|engine|imaging|preview",
    "engine": "engine|median|deep|session",
    "imaging": "imaging|cli",
    "session": "session|app",
    "preview": "preview|app",
    "services": "services|services_network|services_reachability",
    "cli": "cli",
}
COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}


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


def places(layers):
    """All (file, line number, mutated line, kind), in the order of files, lines and kinds."""
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
                    yield path, number, mutated, kind.__name__


def equivalents():
    known = {}
    listing = os.path.join(ROOT, "tools/equivalent_mutants.txt")
    if os.path.exists(listing):
        with open(listing, encoding="utf-8") as file:
            for line in file:
                parts = line.rstrip("\n").split(": ", 2)
                if len(parts) == 3:
                    known[parts[0], parts[1].strip()] = parts[2]
    return known


def quietly(command, seconds):
    """The exit code of a command, or a failure if it takes longer."""
    try:
        return subprocess.run(command, capture_output=True, timeout=seconds, check=False).returncode
    except subprocess.TimeoutExpired:
        return -1


def targets_of(build, labels):
    listed = subprocess.run(["ninja", "-C", build, "-t", "targets", "all"], capture_output=True,
                            text=True, check=True).stdout
    wanted = {f"{label}_test" for label in labels.split("|")}
    return sorted(wanted & set(re.findall(r"^(\w+_test): phony$", listed, re.M)))


class Scratch:
    """A copy of the tree with a build of its own."""

    def __init__(self, folder):
        self.root = os.path.join(folder, "tree")
        self.build = os.path.join(self.root, "build/dev")
        subprocess.run(["git", "worktree", "add", "--detach", "--quiet", self.root], cwd=ROOT,
                       check=True)
        subprocess.run(["cmake", "--preset", "dev"], cwd=self.root, check=True,
                       stdout=subprocess.DEVNULL)

    def prepare(self, layers):
        for layer in layers:
            targets = targets_of(self.build, TESTS[layer])
            subprocess.run(["ninja", "-C", self.build, *targets], check=True,
                           stdout=subprocess.DEVNULL)

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
            labels = TESTS[layer_of(path)]
            targets = targets_of(self.build, labels)
            if quietly(["ninja", "-C", self.build, *targets], 900) != 0:
                return "invalid"
            failed = quietly(["ctest", "--test-dir", self.build, "-j2", "--stop-on-failure",
                              "--timeout", "60", "-L", f"^({labels})$"], 900)
            return "killed" if failed else "survived"
        finally:
            with open(file, "w", encoding="utf-8") as handle:
                handle.write(whole)

    def remove(self):
        subprocess.run(["git", "worktree", "remove", "--force", self.root], cwd=ROOT, check=False)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--seed", type=int, required=True)
    parser.add_argument("--count", type=int, required=True)
    parser.add_argument("--layer", choices=sorted(TESTS))
    arguments = parser.parse_args()

    layers = [arguments.layer] if arguments.layer else sorted(set(TESTS) - {"base"})
    candidates = list(places(layers))
    random.Random(arguments.seed).shuffle(candidates)
    known = equivalents()
    counts = {"killed": 0, "survived": 0, "equivalent": 0}
    folder = tempfile.mkdtemp()
    scratch = Scratch(folder)
    try:
        scratch.prepare(layers)
        for path, number, mutated, kind in candidates:
            if sum(counts.values()) == arguments.count:
                break
            reason = known.get((path, mutated.strip()))
            verdict = "equivalent" if reason else scratch.judge(path, number, mutated)
            if verdict == "invalid":
                continue
            counts[verdict] += 1
            print(f"{verdict:10} {path}:{number + 1} {kind}: {mutated.strip() or '(dropped)'}",
                  flush=True)
    finally:
        scratch.remove()
        shutil.rmtree(folder, ignore_errors=True)
    print(f"killed {counts['killed']} of {sum(counts.values())}, "
          f"{counts['equivalent']} equivalent")
    return 0


if __name__ == "__main__":
    sys.exit(main())

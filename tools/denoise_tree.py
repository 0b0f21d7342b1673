#!/usr/bin/env python3
#SBATCH --job-name=denoise
#SBATCH --output=denoise-%A_%a.log
#SBATCH --open-mode=append
#SBATCH --requeue
"""Denoises trees of photos, on one machine or as one of several workers, and sums up.

    denoise_tree.py LINES WORD...
    denoise_tree.py --summary LINES

The WORDs are those of `velmara denoise`: folders and options. What is there already is passed over.
Each run adds a file to the folder LINES: a JSON line a photo, and in the end its share and exit
code, which is passed on. In an array of Slurm's each task takes its share by itself; elsewhere
`--part K/N` says which. The program is `velmara`, or what VELMARA in the environment names.

The summary counts the photos, names those that failed and the shares that no worker did to its end,
and exits with 1 if there are any. docs/many-machines.md has examples.
"""

import json
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys
import time


def share_of_array(environment):
    """The K/N of a task of a Slurm array; None elsewhere."""
    if "SLURM_ARRAY_TASK_ID" not in environment:
        return None
    task, count, first, last, step = (
        int(environment["SLURM_ARRAY_TASK_" + name])
        for name in ("ID", "COUNT", "MIN", "MAX", "STEP")
    )
    if first + step * (count - 1) != last:
        sys.exit("denoise_tree.py: an array with gaps in its numbers leaves photos out; say --part")
    return f"{(task - first) // step + 1}/{count}"


def share_in(words):
    """The K/N that is said; None if none is."""
    for word, following in zip(words, words[1:] + [""]):
        if word == "--part" or word.startswith("--part="):
            return following if word == "--part" else word.partition("=")[2]
    return None


def work(folder, words):
    share = share_in(words)
    if share is None and (share := share_of_array(os.environ)):
        words = ["--part", share, *words]
    share = share or "1/1"
    folder.mkdir(parents=True, exist_ok=True)
    # A name of its own for each run: what an earlier one of the same share told still counts.
    run = f"{time.time_ns()}.{socket.gethostname()}.{os.getpid()}"
    name = f"{share.replace('/', '-of-')}.{run}.jsonl"
    command = [os.environ.get("VELMARA", "velmara"), "denoise", "--json", "--skip-existing", *words]
    with open(folder / name, "x", encoding="utf-8") as lines:
        child = subprocess.Popen(command, stdout=lines)
        # A terminal and Slurm signal both of us; whoever means one process finds this one.
        signal.signal(signal.SIGINT, lambda *_: None)
        signal.signal(signal.SIGTERM, lambda *_: child.terminate())
        code = child.wait()
        code = code if code >= 0 else 128 - code
        # The line before may have been cut off.
        lines.write("\n" + json.dumps({"part": share, "exit": code}) + "\n")
    return code


def told_in(file):
    """The objects of a file, but for a line that was cut off."""
    for line in file.read_text(encoding="utf-8", errors="replace").split("\n"):
        try:
            yield json.loads(line)
        except ValueError:
            pass


def share_done(told):
    """Whether a worker came to its end; with exit code 1 and no photo failed it saw not all."""
    code = next((each["exit"] for each in told if "exit" in each), None)
    return code == 0 or code == 1 and any(each.get("result") == "failed" for each in told)


def shares_left(files):
    """The shares that no worker has done, unless the photos were done in other shares."""
    done = {told[-1]["part"] for told in files.values() if share_done(told)}
    left = []
    for count in sorted({int(re.match(r"\d+-of-(\d+)\.", name)[1]) for name in files}):
        shares = [f"{number}/{count}" for number in range(1, count + 1)]
        if done.issuperset(shares):
            return []
        left += [share for share in shares if share not in done]
    return left


def summary(folder):
    files = {file.name: list(told_in(file)) for file in sorted(folder.glob("*.jsonl"))}
    photos = [each for told in files.values() for each in told if "path" in each]
    written = {each["path"] for each in photos if each["result"] == "written"}
    found = {each["path"] for each in photos if each["result"] == "skipped"} - written
    failed = {each["path"]: each["reason"] for each in photos if each["result"] == "failed"}
    failed = {path: failed[path] for path in sorted(failed.keys() - written - found)}
    wrong = [f"{path}: {reason}" for path, reason in failed.items()]
    wrong += [f"share {share}: not done to its end, see its log" for share in shares_left(files)]
    print(f"{len(written)} written, {len(found)} there before, {len(failed)} failed")
    print("".join(line + "\n" for line in wrong), end="")
    return 1 if wrong or not files else 0


def main(words):
    if len(words) < 2:
        print(__doc__)
        return 0 if words in (["-h"], ["--help"]) else 2
    if words[0] == "--summary":
        return summary(pathlib.Path(words[1]))
    try:
        return work(pathlib.Path(words[0]), words[1:])
    except OSError as fault:
        print(f"denoise_tree.py: {fault}", file=sys.stderr)
        return 127


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

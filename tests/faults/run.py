#!/usr/bin/env python3
"""run.py PROGRAM [MOMENTS]: faults x moments. Runs the built command again and again, each time with one
fault at one moment (of each kind of fault at that many moments, 40 unless said), and prints a table of
what was seen. After every run the photo is byte for byte the same, the result the old one or the new and
whole, success is only told where it is true, nothing ends without words, and the next start leaves no
litter. Exits 1 if not."""

import collections
import concurrent.futures
import os
import pathlib
import signal
import subprocess
import sys
import tempfile

import memory
import moments
import places
import window
from trial import Reference, Trial, last_line

HERE = pathlib.Path(__file__).resolve().parent


def prepare(program, folder):
    shim = str(folder / "shim.so")
    subprocess.run(["cc", "-shared", "-fPIC", "-O1", "-o", shim, HERE / "shim.c", "-ldl"], check=True)
    picture = HERE.parent.parent / "data/noisy.png"
    made = [subprocess.run(["convert", picture, "-crop", crop, "+repage", "png:-"],
                           capture_output=True, check=True).stdout
            for crop in ("200x160+20+20", "90x70+0+0")]
    reference = Reference(os.path.abspath(program), shim, *made, memory=str(folder))
    with Trial(reference) as trial:
        code, _, errors = trial.run()
        if code != 0:
            sys.exit(f"no undisturbed run: {errors}")
        reference.new = trial.result.read_bytes()
    return reference


def judge(name, trials, workers):
    """Runs the trials of a row, prints it and returns the faults."""
    said, faults = collections.Counter(), []
    for errors, wrong in workers.map(lambda trial: trial(), trials):
        said[last_line(errors) or "nothing"] += 1
        faults += wrong
    often = [f"{words} ({count})" for words, count in said.most_common(3)]
    print(f"| {name} | {len(trials)} | {len(faults)} | {'; '.join(often)} |", flush=True)
    for fault in sorted(set(faults)):
        print(f"    FAULT ({faults.count(fault)}): {fault}", flush=True)
    return faults


def main():
    # Whoever starts this in the background has them ignored, and so would the program.
    for number in (signal.SIGINT, signal.SIGHUP):
        signal.signal(number, signal.SIG_DFL)
    most = int(sys.argv[2]) if len(sys.argv) > 2 else 40
    place = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(prefix="velmara-faults-", dir=place) as folder:
        reference = prepare(sys.argv[1], pathlib.Path(folder))
        print("| fault | moments | wrong | what is said |\n|---|---|---|---|")
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as workers:
            faults = [fault for group in (moments, memory, places, window)
                      for name, trials in group.rows(reference, most)
                      for fault in judge(name, trials, workers)]
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""start_up.py BUILD [ROUNDS]: from launch to a painted window, Velmara beside an empty window.

Needs a display. Both programs start in turn, so that a busy machine slows both; the figures are
medians of the rounds after a first one that warms the disk's cache.
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time


def first_paint(program, home):
    environment = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home, XDG_DATA_HOME=home)
    environment["VELMARA_STARTED"] = str(time.monotonic_ns())
    done = subprocess.run([program], env=environment, capture_output=True, check=True)
    return float(done.stdout)


def main():
    build = sys.argv[1]
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 21
    programs = [os.path.join(build, "bench/app/first_paint_" + name) for name in ("velmara", "empty")]
    times = {program: [] for program in programs}
    with tempfile.TemporaryDirectory() as home:
        for number in range(rounds + 1):
            for program in programs:
                spent = first_paint(program, home)
                if number > 0:
                    times[program].append(spent)
    medians = [statistics.median(times[program]) for program in programs]
    for program, median in zip(programs, medians):
        print(f"{os.path.basename(program):22} {median:7.1f} ms (least {min(times[program]):.1f})")
    print(f"ratio {medians[0] / medians[1]:.2f}")


if __name__ == "__main__":
    main()

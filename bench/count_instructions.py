#!/usr/bin/env python3
"""Counts the instructions that the fast kernel executes per pixel and candidate.

count_instructions.py BUILD [OUTPUT.json]: BUILD is the folder of the bench preset. Needs valgrind,
which knows no instruction set beyond AVX2, so that is what is counted.
"""

import json
import os
import re
import subprocess
import sys
from pathlib import Path

# Template, search, sigma, channels.
CASES = [
    (3, 7, 5, 3),
    (3, 8, 8, 3),
    (3, 12, 12, 3),
    (1, 3, 3, 3),
    (2, 4, 3, 3),
    (4, 10, 8, 3),
    (5, 14, 10, 3),
    (3, 7, 5, 1),
]


def instructions(program: Path, case: tuple) -> float:
    """Of the tiles' filtering alone, divided by pixels and candidates."""
    words = [str(number) for number in case]
    run = subprocess.run(
        ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
         "--toggle-collect=velmara::filterTile(*", str(program), "fast", *words],
        env={**os.environ, "VELMARA_TARGET": "AVX2"},
        capture_output=True, text=True, check=True)
    collected = int(re.search(r"Collected : (\d+)", run.stderr).group(1))
    pixels = int(run.stdout.split()[0])
    if collected == 0:
        sys.exit("valgrind saw no filtering")
    return collected / (pixels * case[1] ** 2)


def main() -> None:
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    program = Path(sys.argv[1]) / "bench/engine/engine_once"
    counts = []
    for case in CASES:
        count = instructions(program, case)
        print(f"template {case[0]}, search {case[1]}, sigma {case[2]}, {case[3]} channels: "
              f"{count:.2f}", flush=True)
        counts.append({"template": case[0], "search": case[1], "sigma": case[2],
                       "channels": case[3], "instructions": round(count, 3)})
    if len(sys.argv) > 2:
        result = {"instruction_set": "AVX2", "cases": counts}
        Path(sys.argv[2]).write_text(json.dumps(result, indent=2) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()

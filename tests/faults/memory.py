"""Reads and writes that do a part, a disk that fills up, and memory that there is not enough of."""

import signal
import subprocess

from moments import some_of
from trial import Trial

# What GLib does where it gets none, what the C++ library does where nothing catches it, and what comes
# of a thread that Qt begins to make.
ENDING = (signal.SIGTRAP, signal.SIGABRT, signal.SIGSEGV)


def rows(reference, most):
    """(name, trials); a trial gives (what was said, faults)."""
    with Trial(reference) as trial:
        counts = trial.folder / "count"
        trial.run(LD_PRELOAD=reference.shim, COUNT_CALLS=str(counts))
        allocations, writes = map(int, counts.read_text().split())

    def in_parts():
        with Trial(reference) as trial:
            code, _, errors = trial.run(LD_PRELOAD=reference.shim, SHORT_CALLS="1")
            wrong = trial.faults(code, errors)
            return errors, wrong + ([] if code == 0 else ["it does not go on where a call did a part"])

    def failing(what, number, **allowed):
        with Trial(reference) as trial:
            code, _, errors = trial.run(LD_PRELOAD=reference.shim, **{what: str(number)})
            return errors, trial.faults(code, errors, **allowed)

    # libvips may go on without what it wanted the memory for: then the picture is whole, but another.
    def without_memory(number):
        with Trial(reference) as trial:
            code, _, errors = trial.run(LD_PRELOAD=reference.shim, FAIL_ALLOCATION=str(number))
            whole = subprocess.run(["identify", "-regard-warnings", trial.result], check=False,
                                   stdout=subprocess.DEVNULL).returncode == 0
            return errors, trial.faults(code, errors, signals=ENDING, may_leave=True,
                                        results=[trial.result.read_bytes()] if whole else [])

    def limited(megabytes):
        with Trial(reference) as trial:
            limit = ["prlimit", f"--as={megabytes << 20}", "--core=0"]
            code, _, errors = trial.run(limit)
            return errors, trial.faults(code, errors, signals=ENDING, may_leave=True)

    yield "every read and write does a part, every third is interrupted", [in_parts]
    yield "the disk is full, at each write", [
        lambda number=number: failing("FAIL_WRITE", number) for number in range(1, writes + 1)]
    yield f"an allocation fails (of {allocations})", [
        lambda number=number: without_memory(number)
        for number in some_of(range(1, allocations + 1), 5 * most)]
    yield "an address space of 10 to 400 MiB", [
        lambda size=size: limited(size) for size in range(10, 400, 800 // most)]

"""Faults at each call that the program makes of the system: one fails, or a signal comes with it."""

import collections
import re
import signal

from trial import Trial

# What the kernel may answer; all but a call that is interrupted may end the job.
FAILING = [
    ("openat", "EMFILE", "no more files may be opened"),
    ("openat", "EACCES", "permission lost"),
    ("newfstatat", "EIO", "the drive fails"),
    ("read", "EIO", "the drive fails"),
    ("read", "EINTR", "a read is interrupted"),
    ("fsync", "EIO", "the drive fails"),
    ("symlink", "ENOSPC", "the disk is full"),
    ("linkat", "EROFS", "the disk is read-only by now"),
    ("linkat", "EOPNOTSUPP", "a file system without links"),
    ("rename", "EACCES", "permission lost"),
    ("unlink", "EACCES", "permission lost"),
    ("close", "EIO", "a late write error"),
    ("mmap", "ENOMEM", "no more memory"),
    ("clone3", "EAGAIN", "no more threads"),
]
INTERRUPTED = 130
SIGNALLED = ["openat", "read", "futex", "write", "fsync", "symlink", "linkat", "rename",
             "unlink", "close"]


def moments_of_calls(reference):
    """The moments of each call: it is made so often by one thread, which is how strace counts. But for
    those before the program itself begins, and those at which a thread wakes another: the kernel never
    refuses that."""
    with Trial(reference) as trial:
        trace = trial.folder / "trace"
        code, _, errors = trial.run(["strace", "-f", "-y", "-o", str(trace)])
        if code != 0:
            raise RuntimeError(f"no undisturbed run under strace: {errors}")
        counts = collections.Counter()
        moments, left_out = collections.defaultdict(set), collections.defaultdict(set)
        has_begun = False
        for line in trace.read_text(errors="replace").split("\n"):
            has_begun = has_begun or ('"in.png"' in line and "execve" not in line)
            if found := re.match(r"(\d+) +(\w+)\((.{0,40})", line):
                thread, call, what = found.groups()
                counts[thread, call] += 1
                kind = moments if has_begun and "[eventfd]" not in what else left_out
                kind[call].add(counts[thread, call])
    return {call: sorted(moments[call] - left_out[call]) for call in moments}


def some_of(moments, most):
    """At most so many of them, evenly."""
    few = min(len(moments), most)
    return [moments[i * len(moments) // few] for i in range(few)]


def injected(call, fault, moment):
    # Signals of the tracer's own do not matter; only this call is stopped at.
    return ["strace", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={call}", "-e",
            f"inject={call}:{fault}:when={moment}"]


def rows(reference, most):
    """(name, trials); a trial gives (what was said, faults)."""
    calls = moments_of_calls(reference)

    def failing(call, error, moment):
        with Trial(reference) as trial:
            code, _, errors = trial.run(injected(call, f"error={error}", moment))
            # A note that could not be taken away is found at the next start.
            return errors, trial.faults(code, errors, may_leave=call in ("unlink", "openat", "close"))

    def signalled(call, name, moment):
        with Trial(reference) as trial:
            number = getattr(signal, f"SIG{name}")
            code, _, errors = trial.run(injected(call, f"signal={name}", moment))
            if code == INTERRUPTED:
                errors = "interrupted"
            return errors, trial.faults(code, errors, signals=(number,), may_leave=name == "KILL")

    for call, error, name in FAILING:
        yield f"{name} ({call}: {error})", [
            lambda at=at, call=call, error=error: failing(call, error, at)
            for at in some_of(calls.get(call, []), most)]
    for name in ("KILL", "TERM", "INT"):
        yield f"SIG{name}, at any call of {len(SIGNALLED)} kinds", [
            lambda at=at, call=call, name=name: signalled(call, name, at)
            for call in SIGNALLED for at in some_of(calls.get(call, []), most // 2)]

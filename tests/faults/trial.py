"""One run of the program in a folder of its own, and what may not have happened after it."""

import dataclasses
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile


@dataclasses.dataclass
class Reference:
    """What all trials of a run have in common."""
    program: str
    shim: str
    photo: bytes
    old: bytes  # What lies where the result goes.
    new: bytes = b""  # The result of an undisturbed run.
    memory: str = dataclasses.field(default_factory=lambda: tempfile.gettempdir())


class Trial:
    """A folder with a photo and an older result, a home and a folder for temporary files. With
    `place`, photo and result lie there."""

    def __init__(self, reference, place=None):
        self.reference = reference
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velmara-fault-", dir=reference.memory))
        self.place = pathlib.Path(place) if place else self.folder / "photos"
        self.place.mkdir(exist_ok=True)
        self.photo = self.place / "in.png"
        self.result = self.place / "out.png"
        self.photo.write_bytes(reference.photo)
        self.result.write_bytes(reference.old)
        for name in ("home", "tmp", "run"):
            (self.folder / name).mkdir(mode=0o700)
        self.environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder / "home"),
                            "TMPDIR": str(self.folder / "tmp"), "XDG_RUNTIME_DIR": str(self.folder / "run"), "LC_ALL": "C.UTF-8"}
        self.expected = reference.photo  # What the trial itself makes of the photo counts.

    def __enter__(self):
        return self

    def __exit__(self, *fault):
        shutil.rmtree(self.folder, ignore_errors=True)

    def words(self):
        return [self.reference.program, "denoise", "--force", "-o", "out.png", "in.png"]

    def start(self, before=(), **environment):
        """Starts the program, behind what stands before it on the command line."""
        return subprocess.Popen([*before, *self.words()], cwd=self.place, text=True, errors="replace",
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, start_new_session=True,
                                env={**self.environment, **environment})

    def run(self, before=(), **environment):
        """Runs it to its end; returns how that was, and what was said."""
        process = self.start(before, **environment)
        try:
            said, errors = process.communicate(timeout=20)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            return None, "", "it does not end"
        return process.returncode, said, errors

    def litter(self):
        """Files that nobody asked for."""
        found = [path for path in self.place.iterdir()
                 if path not in (self.photo, self.result) and path.name != "lost+found"]
        found += (self.folder / "tmp").rglob("*") if (self.folder / "tmp").exists() else []
        return [str(path) for path in found]

    def faults(self, code, errors, signals=(), may_leave=False, results=()):
        """What is wrong after a run that ended so: in words, empty if nothing. It may end by these
        signals, may leave what the next start has to remove, and may have these results too."""
        wrong = []
        if self.expected is not None and self.photo.read_bytes() != self.expected:
            wrong.append("the photo is not as it was")
        result = self.result.read_bytes() if self.result.exists() else None
        if result not in (self.reference.old, self.reference.new, *results):
            size = "there is none" if result is None else f"it has {len(result)} bytes"
            wrong.append(f"the result is neither the old one nor the new: {size}, exit code {code}")
        if code is None:
            wrong.append(errors)
        elif code < 0 and -code not in signals:
            wrong.append(f"it ended by signal {-code}: {errors.strip()[-200:]}")
        elif code == 0 and result not in (self.reference.new, *results):
            wrong.append("it says that all is well, but there is no result")
        elif code > 0 and not errors.strip():
            wrong.append(f"it fails with {code} and does not say why")
        if self.litter() and not may_leave:
            wrong.append("it leaves " + ", ".join(self.litter()))
        if self.litter():
            self.start_again()
            if self.litter():
                wrong.append("after the next start there is still " + ", ".join(self.litter()))
        return wrong

    def start_again(self):
        """The next start of the program; it writes, as the first did."""
        self.result.write_bytes(self.reference.old)
        self.run()


def last_line(errors):
    """What a user reads at the end, without what differs from run to run."""
    lines = [line for line in errors.strip().split("\n") if not line.startswith("strace:")]
    return re.sub(r"velmara-fault-\w+", "...", lines[-1])[:100] if lines else ""

"""What becomes of the photo, the folders and the disk while the program stands still between two calls,
and places that are not as a program likes them."""

import contextlib
import os
import pathlib
import shutil
import signal
import subprocess
import time

from moments import injected, moments_of_calls, some_of
from trial import Trial

STOPPED_AT = ["read", "newfstatat", "fsync", "symlink", "linkat", "rename"]


def run(*words):
    subprocess.run([str(word) for word in words], check=True, stdout=subprocess.DEVNULL)


@contextlib.contextmanager
def mounted(folder, *words):
    """A file system of its own on a folder."""
    folder.mkdir()
    run("mount", *words, folder)
    try:
        yield folder
    finally:
        subprocess.run(["umount", "--lazy", folder], check=False, stderr=subprocess.DEVNULL)


def is_stopped(process):
    """Waits until the traced program stands still; False if it ends before."""
    end = time.monotonic() + 10
    while process.poll() is None and time.monotonic() < end:
        child = subprocess.run(["pgrep", "-P", str(process.pid)], capture_output=True, text=True,
                               check=False).stdout.strip()
        with contextlib.suppress(OSError):
            if child and pathlib.Path(f"/proc/{child}/stat").read_text().rsplit(")")[1][1] in "Tt":
                return True
        time.sleep(0.005)
    return False


def meanwhile(trial, call, moment, change):
    """Runs it with a change while it stands still at that call."""
    process = trial.start(injected(call, "signal=STOP", moment))
    if is_stopped(process):
        change(trial)
    # Another thread may come to the same call, and they stop together.
    for _ in range(1000):
        os.killpg(process.pid, signal.SIGCONT)
        with contextlib.suppress(subprocess.TimeoutExpired):
            _, errors = process.communicate(timeout=0.02)
            return process.returncode, errors
    os.killpg(process.pid, signal.SIGKILL)
    process.communicate()
    return None, "it does not end"


def truncate(trial):
    os.truncate(trial.photo, len(trial.expected) // 2)
    trial.expected = trial.photo.read_bytes()


def replace(trial):
    other = trial.folder / "other"
    other.write_bytes(trial.reference.old)
    other.replace(trial.photo)
    trial.expected = trial.reference.old


def delete(trial):
    trial.photo.unlink()
    trial.expected = None


def remove_homes(trial):
    for name in ("home", "tmp"):
        shutil.rmtree(trial.folder / name)


CHANGES = {
    "the photo is cut to half meanwhile": truncate,
    "the photo is replaced meanwhile": replace,
    "the photo is deleted meanwhile": delete,
    "home and temporary folder vanish meanwhile": remove_homes,
}


def rows(reference, most):
    """(name, trials); a trial gives (what was said, faults)."""
    calls = moments_of_calls(reference)
    moments = [(call, at) for call in STOPPED_AT for at in some_of(calls.get(call, []), most // 8)]

    def changed(change, call, at):
        with Trial(reference) as trial:
            code, errors = meanwhile(trial, call, at, change)
            # Replaced before it is opened, it is the other one that is worked on.
            whole = [trial.result.read_bytes()] if change is replace and code == 0 else []
            return errors, trial.faults(code, errors, results=whole)

    def on_disk(change, call, at, *words):
        with Trial(reference) as outer, mounted(outer.folder / "disk", *words) as disk:
            with Trial(reference, place=disk) as trial:
                code, errors = meanwhile(trial, call, at, change)
                subprocess.run(["mount", "-o", "remount,rw", disk], check=False,
                               stderr=subprocess.DEVNULL)
                (disk / "filling").unlink(missing_ok=True)
                return errors, trial.faults(code, errors)

    def fill(trial):
        with contextlib.suppress(OSError), open(trial.place / "filling", "wb") as file:
            while True:
                file.write(bytes(4096))
                file.flush()

    def drive_goes():
        """Its backing file is cut to nothing: what is not in memory cannot be read or written."""
        with Trial(reference) as outer:
            image = outer.folder / "image"
            with open(image, "wb") as file:
                file.truncate(8 << 20)
            run("mke2fs", "-q", image)
            with mounted(outer.folder / "disk", "-o", "loop", image) as disk:
                with Trial(reference, place=disk) as trial:
                    run("sync")
                    os.truncate(image, 0)
                    run("sh", "-c", "echo 3 > /proc/sys/vm/drop_caches")
                    code, _, errors = trial.run()
                    wrong = [] if code == 1 and errors.strip() else [f"it ends with {code}: {errors}"]
                    return errors, wrong

    def surroundings(**environment):
        with Trial(reference) as trial:
            code, _, errors = trial.run(**environment)
            wrong = trial.faults(code, errors)
            return errors, wrong + ([] if code == 0 else [f"it does not go without: {errors}"])

    def two_at_once():
        with Trial(reference) as trial:
            both = [trial.start(), trial.start()]
            said = [process.communicate(timeout=20)[1] for process in both]
            return "".join(said), [fault for process, errors in zip(both, said)
                                   for fault in trial.faults(process.returncode, errors)]

    for name, change in CHANGES.items():
        yield name, [lambda c=change, call=call, at=at: changed(c, call, at) for call, at in moments]
    yield "the disk fills up meanwhile", [
        lambda call=call, at=at: on_disk(fill, call, at, "-t", "tmpfs", "-o", "size=600k", "none")
        for call, at in moments]
    yield "the disk becomes read-only meanwhile", [
        lambda call=call, at=at: on_disk(
            lambda trial: subprocess.run(["mount", "-o", "remount,ro", trial.place], check=False,
                                         stderr=subprocess.DEVNULL),
            call, at, "-t", "tmpfs", "-o", "size=2m", "none")
        for call, at in moments]
    yield "the drive goes", [drive_goes]
    yield "no home, no temporary folder, a locale that is not installed, no environment", [
        lambda: surroundings(HOME="/nowhere"), lambda: surroundings(HOME=""),
        lambda: surroundings(HOME="/proc"), lambda: surroundings(TMPDIR="/nowhere"),
        lambda: surroundings(TMPDIR="/proc"), lambda: surroundings(LC_ALL="xx_XX.UTF-8")]
    yield "two at once write the same result", [two_at_once for _ in range(max(most // 4, 2))]

"""The window: its display goes, it is ended by a signal, and places that are not as it likes them."""

import os
import pathlib
import signal
import subprocess
import time

from trial import Trial

SHOWN = "Denoising Done !!"
CLEAN = (128 + signal.SIGTERM, 128 + signal.SIGINT, 128 + signal.SIGHUP)


class Display:
    """A display of its own."""

    def __enter__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1400x900x24", "-nolisten", "tcp"],
            pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as answer:
            self.name = ":" + answer.readline().strip()
        return self

    def __exit__(self, *fault):
        self.end()

    def end(self):
        self.server.terminate()
        self.server.wait()


class WindowTrial(Trial):
    """One of the window; the photo is opened, the result not written."""

    def __init__(self, reference, display, **environment):
        super().__init__(reference)
        self.environment.update(DISPLAY=display.name, QT_QPA_PLATFORM="xcb", **environment)

    def log(self):
        logs = pathlib.Path(self.environment["HOME"]).rglob("*.log")
        return "".join(log.read_text(errors="replace") for log in logs)

    def open(self):
        """The process, once the photo is filtered and seen. Without a home there is no log to tell."""
        before = self.log().count(SHOWN)
        process = subprocess.Popen([self.reference.program, "--new-window", str(self.photo)],
                                   env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + (30 if os.path.isdir(self.environment["HOME"]) else 2)
        while time.monotonic() < end and process.poll() is None and self.log().count(SHOWN) == before:
            time.sleep(0.02)
        return process

    def start_again(self):
        process = self.open()
        process.terminate()
        process.wait()


def rows(reference, _most):
    """(name, trials); a trial gives (what was said, faults)."""

    def window(change, code, **environment):
        """The window with a photo, what a change to it or its display leads to, and how it may end."""
        with Display() as display, WindowTrial(reference, display, **environment) as trial:
            process = trial.open()
            change(display, process)
            try:
                ended = process.wait(20)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
                return "", ["it does not end"]
            wrong = [] if ended == code else [f"it ends with {ended}: {trial.log()[-300:]}"]
            with Display() as next_display:
                trial.environment["DISPLAY"] = next_display.name
                wrong += trial.faults(1, "in its log", may_leave=code not in CLEAN)
            return f"ends with {ended}", wrong

    def ended_by(name):
        return lambda display, process: process.send_signal(getattr(signal, f"SIG{name}"))

    yield "the display goes under the window", [
        lambda: window(lambda display, process: display.end(), code=1)]
    yield "SIGKILL for the window", [lambda: window(ended_by("KILL"), code=-signal.SIGKILL)]
    for name in ("TERM", "INT", "HUP"):
        code = 128 + getattr(signal, f"SIG{name}")
        yield f"SIG{name} for the window", [lambda name=name, code=code: window(ended_by(name), code)]
    yield "the window without a home, or a temporary folder", [
        lambda: window(ended_by("TERM"), 143, HOME="/nowhere"),
        lambda: window(ended_by("TERM"), 143, TMPDIR="/nowhere")]

#!/usr/bin/env python3
"""Fails if a file of a layer includes a header of a layer that it may not know.

The linker refuses most wrong arrows by itself; this finds those through headers alone.
"""

import pathlib
import re
import sys

# Each layer and what it may include besides itself. docs/architecture.md has the picture.
MAY_INCLUDE = {
    "base": set(),
    "platform": {"base"},
    "services": {"base", "platform"},
    "imaging": {"base", "platform"},
    "engine": {"base"},
    "session": {"base", "platform", "imaging", "engine"},
    "widgets": {"base", "platform"},
    "preview": {"base", "platform", "imaging", "session", "widgets"},
    "cli": {"base", "platform", "imaging", "engine", "session"},
    "app": {
        "base",
        "platform",
        "services",
        "imaging",
        "engine",
        "session",
        "widgets",
        "preview",
        "cli",
    },
}
# Libraries that a layer must not see at all.
FORBIDDEN = {
    "base": ("<Q", "<vips", "<exiv2"),
    "engine": ("<Q", "<vips", "<exiv2"),
    "platform": ("<QtWidgets", "<QWidget", "<QApplication", "<vips", "<exiv2"),
    "services": ("<QtWidgets", "<QWidget", "<QApplication", "<vips", "<exiv2"),
    "imaging": ("<QWidget", "<QApplication"),
    "session": ("<QWidget", "<QApplication", "<vips", "<exiv2"),
    "cli": ("<QWidget", "<QApplication", "<vips", "<exiv2"),
}
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([a-z_]+)/|(<[^>]+>))')


def faults(source):
    for path in sorted(source.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        layer = path.relative_to(source).parts[0]
        if layer not in MAY_INCLUDE:
            yield f"{path}: no layer is called {layer}"
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            other, library = match.groups()
            if other in MAY_INCLUDE and other != layer and other not in MAY_INCLUDE[layer]:
                yield f"{path}:{number}: {layer} must not include {other}"
            if library and library.startswith(FORBIDDEN.get(layer, ())):
                yield f"{path}:{number}: {layer} must not include {library}"


def main():
    source = pathlib.Path(__file__).resolve().parent.parent / "src"
    found = list(faults(source))
    print("\n".join(found) or "Every include points downwards.")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())

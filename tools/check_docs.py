#!/usr/bin/env python3
"""Fails if the documents name a file of the tree that is not there.

Looked at are the paths in backticks that begin with a folder of the tree or a layer of src/ (there
the extension may be missing: `imaging/utils`), names said to be in one (`f` in `src/a.h`), and the
targets of links.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = (".ci", ".github", "bench", "cmake", "data", "docs", "fuzz", "packaging", "src", "tests", "tools")
LAYERS = tuple(path.name for path in (ROOT / "src").iterdir() if path.is_dir())
PATH = re.compile(r"`((?:%s)/[\w./-]*)`" % "|".join(map(re.escape, FOLDERS + LAYERS)))
NAME_IN = re.compile(r"`(\w+)(?:\(\))?`\s+(?:in|of)\s+`([\w./-]+\.\w+)`")
CODE = re.compile(r"^ {4}.*$|`[^`]*`", re.MULTILINE)
LINK = re.compile(r"\]\(([^)#\s]+)[^)]*\)")


def found(name):
    """The file or folder a path in a document means, or None."""
    for place in (ROOT / name, ROOT / "src" / name):
        matches = [place] if place.exists() else sorted(place.parent.glob(place.name + ".*"))
        if matches:
            return matches[0]
    return None


def faults(document):
    text = document.read_text(encoding="utf-8")
    for name in PATH.findall(text):
        if found(name) is None:
            yield f"{name} is not there"
    for name, path in NAME_IN.findall(text):
        file = found(path)
        if file is not None and not re.search(rf"\b{name}\b", file.read_text(encoding="utf-8")):
            yield f"{name} is not in {path}"
    for target in LINK.findall(CODE.sub("", text)):
        if "://" not in target and not (document.parent / target).exists():
            yield f"the link to {target} leads nowhere"


def main():
    documents = sorted([*ROOT.glob("*.md"), *ROOT.glob("docs/**/*.md")])
    wrong = [f"{path.relative_to(ROOT)}: {fault}" for path in documents for fault in faults(path)]
    print("\n".join(wrong) or f"What {len(documents)} documents name is there.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())

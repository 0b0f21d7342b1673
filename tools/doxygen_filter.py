#!/usr/bin/env python3
"""doxygen_filter.py HEADER: the header as Doxygen has to read it.

In our headers a comment stands for the declarations below it, up to a blank line or the next
comment, and one behind a line for all of its names. Doxygen takes it for the nearest one only, so
the others get a copy. Every line keeps its number.
"""

import re
import sys

COMMENT = re.compile(r"( *)/// ?(.*)")
BEHIND = re.compile(r" *///< (.*)")
NAMES = re.compile(r"((?:[\w:]+(?:<.*>)?[&*]? )+)(\w+(?: = [^,;]+)?(?:, \w+(?: = [^,;]+)?)+);")
# What begins no declaration that needs words, and what ends all that a comment stands for.
GOES_ON = ("}", "{", "//", "#", "~")
ENDS = ("};", "public:", "protected:", "private:", "Q_SIGNALS:", "namespace")


def split(declaration, comment):
    """Each name of `int a = 0, b = 0;` as a declaration with the comment."""
    names = NAMES.fullmatch(declaration)
    if names is None:
        return declaration
    kind, rest = names.groups()
    first, *others = re.split(r", (?=\w+(?: = |,|$))", rest)
    return f"{kind}{first};" + "".join(f" /** {comment} */ {kind}{name};" for name in others)


def filtered(lines):
    words, indent, place = [], 0, "none"  # Where we are below a comment: in it, first, or later.
    for line in lines:
        text = line.strip()
        depth = len(line) - len(line.lstrip())
        comment, behind = COMMENT.fullmatch(line), BEHIND.search(line)
        if not text or (depth <= indent and text.startswith(ENDS)):
            words, place = [], "none"
        if comment:
            words = [*words, comment[2]] if place == "in" else [comment[2]]
            indent, place = depth, "in"
        elif behind:
            words_behind = behind[1]
            own = split(line[: behind.start()].strip(), words_behind)
            line = f"{line[:depth]}/** {words_behind} */ {own}"
            place = "later"
        elif words and depth == indent and not text.startswith(GOES_ON) and "= delete;" not in text:
            copy = "" if place in ("in", "first") else f"/** {' '.join(words)} */ "
            line = line[:depth] + copy + split(text, " ".join(words))
            place = "first" if text.startswith("template") else "later"
        yield line


def main():
    with open(sys.argv[1], encoding="utf-8") as header:
        print("\n".join(filtered(header.read().split("\n"))), end="")


if __name__ == "__main__":
    main()

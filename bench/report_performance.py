#!/usr/bin/env python3
"""Draws the chart of docs/performance.md and writes its tables from the figures in bench/results."""

import json
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
RESULTS = ROOT / "bench/results"
PAGE = ROOT / "docs/performance.md"
CHART = ROOT / "docs/images/performance.svg"


def runs_of(name: str) -> dict:
    """The runs of a Google Benchmark file by their names, without what follows the arguments."""
    data = json.loads((RESULTS / name).read_text(encoding="utf-8"))
    return {re.sub(r"/(iterations|real_time|manual_time).*", "", run["name"]): run
            for run in data["benchmarks"]}


def table(head: list, rows: list) -> str:
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def instruction_counts() -> dict:
    data = json.loads((RESULTS / "instructions.json").read_text(encoding="utf-8"))
    return {(case["template"], case["search"], case["channels"]): case["instructions"]
            for case in data["cases"]}


def kernel_table(engine: dict) -> str:
    counts = instruction_counts()
    rows = []
    for name, run in engine.items():
        match = re.fullmatch(r"kernel/windows/((\d+),(\d+),\d+)", name)
        if not match:
            continue
        count = counts[int(match[2]), int(match[3]), 3]
        rows.append([match[1].replace(",", ", "), f"{run['loop_cpu_ns']:.1f}",
                     f"{run['fast_cpu_ns']:.2f}", f"**{run['ratio_cpu']:.0f}**",
                     f"{run['ratio']:.0f}", f"{run['ratio_reference_cpu']:.0f}",
                     f"{count:.1f}", f"{run['undecided_percent']:.1f}",
                     f"{run['left_to_reference']:.0f}"])
    return table(["t, s, sigma", "loop ns", "fast ns", "ratio", "by the clock", "to the reference",
                  "instructions (AVX2)", "undecided %", "left to the reference"], rows)


def content_table(engine: dict) -> str:
    rows = []
    for name, run in engine.items():
        if name.startswith("kernel/") and not name.startswith("kernel/windows/"):
            rows.append([name.removeprefix("kernel/"), f"{run['loop_cpu_ns']:.1f}",
                         f"{run['fast_cpu_ns']:.2f}", f"**{run['ratio_cpu']:.0f}**",
                         f"{run['undecided_percent']:.1f}", f"{run['left_to_reference']:.0f}"])
    return table(["case", "loop ns", "fast ns", "ratio", "undecided %", "left to the reference"],
                 rows)


def request_table(engine: dict) -> str:
    rows = []
    for name, run in engine.items():
        if name.startswith(("megapixels/", "searchwindow/")):
            rows.append([name.replace("/", " "), f"{run['real_time']:.0f}", f"{run['cpu_ns']:.2f}",
                         f"{run['extra_bytes_per_pixel']:.1f}",
                         f"{100 * run['extra_of_allowed']:.0f}"])
    return table(["request", "ms by the clock", "CPU ns per pixel and candidate",
                  "extra bytes a pixel", "% of 12 bytes a pixel + 32 MB"], rows)


def bands_table(engine: dict) -> str:
    rows = [[name.removeprefix("bands/"), f"{run['simulated_over_ideal_percent']:.2f}",
             f"{run['measured_over_ideal_percent']:.0f}"]
            for name, run in engine.items() if name.startswith("bands/")]
    return table(["second worker", "simulated, % over ideal", "by the clock, % over ideal"], rows)


def export_table(session: dict) -> str:
    run = session["exportPhoto"]
    steps = ["decode", "noise", "filter", "turn", "encode", "write"]
    rows = [[step, f"{run[step + '_ms']:.0f}", f"{run[step + '_cpu_ms']:.0f}"] for step in steps]
    rows.append(["noise and filter, share", f"{run['engine_percent']:.0f} %",
                 f"{run['engine_percent_by_cpu']:.0f} %"])
    return table(["step", "ms by the clock", "CPU ms"], rows)


def text(x: float, y: float, words: str, anchor: str = "start", size: int = 13) -> str:
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}">'
            f"{words}</text>")


def bars(engine: dict, top: int) -> list:
    """How many times faster than the loop, window by window."""
    parts = [text(20, top, "Times as fast as the direct loop (CPU time), by template, search, sigma",
                  size=15)]
    cases = [(name.removeprefix("kernel/windows/"), run["ratio_cpu"])
             for name, run in engine.items() if name.startswith("kernel/windows/")]
    scale = 420 / max(ratio for _, ratio in cases)
    for index, (name, ratio) in enumerate(cases):
        y = top + 16 + 26 * index
        parts.append(text(100, y + 14, name, "end"))
        parts.append(f'<rect x="110" y="{y}" width="{ratio * scale:.1f}" height="18" '
                     'fill="#3b7dbf"/>')
        parts.append(text(116 + ratio * scale, y + 14, f"{ratio:.0f}"))
    return parts


def growth(engine: dict, top: int) -> list:
    """Nanoseconds per pixel and candidate of whole requests over the search window."""
    parts = [text(20, top, "Whole requests, CPU ns per pixel and candidate by search window "
                           "(3 megapixels)", size=15)]
    points = [(int(name.split("/")[1]), run["cpu_ns"]) for name, run in engine.items()
              if name.startswith("searchwindow/")]
    highest = max(ns for _, ns in points)
    bottom = top + 150

    def place(search: int, ns: float) -> tuple:
        return 60 + 16 * search, bottom - 110 * ns / highest

    line = " ".join("{:.1f},{:.1f}".format(*place(*point)) for point in points)
    parts.append(f'<line x1="60" y1="{bottom}" x2="580" y2="{bottom}" stroke="#888"/>')
    parts.append(f'<polyline points="{line}" fill="none" stroke="#3b7dbf" stroke-width="2"/>')
    for search, ns in points:
        x, y = place(search, ns)
        parts.append(f'<circle cx="{x}" cy="{y:.1f}" r="3.5" fill="#3b7dbf"/>')
        parts.append(text(x, y - 8, f"{ns:.2f}", "middle", 11))
        parts.append(text(x, bottom + 16, str(search), "middle", 11))
    return parts


def chart(engine: dict) -> str:
    parts = bars(engine, 28) + growth(engine, 260)
    return ('<svg xmlns="http://www.w3.org/2000/svg" width="640" height="440" '
            'viewBox="0 0 640 440" font-family="sans-serif" fill="#222">\n'
            '<rect width="640" height="440" fill="#fff"/>\n' + "\n".join(parts) + "\n</svg>\n")


def main() -> None:
    engine = runs_of("engine.json")
    tables = {
        "kernel": kernel_table(engine),
        "content": content_table(engine),
        "requests": request_table(engine),
        "bands": bands_table(engine),
        "export": export_table(runs_of("session.json")),
    }
    page = PAGE.read_text(encoding="utf-8")
    for name, lines in tables.items():
        page = re.sub(rf"(<!-- {name} -->\n).*?(<!-- end -->)", rf"\g<1>\n{lines}\n\n\g<2>", page,
                      flags=re.DOTALL)
    PAGE.write_text(page, encoding="utf-8")
    CHART.write_text(chart(engine), encoding="utf-8")


if __name__ == "__main__":
    main()

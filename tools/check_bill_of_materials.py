#!/usr/bin/env python3
"""check_bill_of_materials.py FILE PROGRAM: fails if a bill of materials is not what CycloneDX 1.5 has
it be, or leaves out a library that the program links or loads later."""

import json
import pathlib
import re
import subprocess
import sys

# What the program loads when it is first needed, without the version of the interface.
LOADED_LATER = ("libcurl.so", "libraw_r.so", "libvips.so")


def faults(bill, program):
    for key, value in (("bomFormat", "CycloneDX"), ("specVersion", "1.5"), ("version", 1)):
        if bill.get(key) != value:
            yield f"{key} is {bill.get(key)!r}"
    if not re.fullmatch(r"urn:uuid:[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}",
                        bill.get("serialNumber", "")):
        yield "the serial number is no UUID"
    own = bill.get("metadata", {}).get("component", {})
    components = bill.get("components", [])
    for made in [own, *components]:
        for field in ("type", "name", "version", "bom-ref", "purl"):
            if not made.get(field):
                yield f"{made.get('name')} has no {field}"
        if made.get("type") not in ("application", "library"):
            yield f"{made.get('name')} is a {made.get('type')}"
        for entry in made.get("licenses", []):
            if len(entry.get("license", {}).keys() & {"id", "name"}) != 1:
                yield f"{made.get('name')} has a licence without a name"
    refs = [made.get("bom-ref") for made in [own, *components]]
    for ref in {ref for ref in refs if refs.count(ref) > 1}:
        yield f"{ref} is there more than once"
    dependencies = bill.get("dependencies", [])
    for entry in dependencies:
        for ref in [entry.get("ref"), *entry.get("dependsOn", [])]:
            if ref not in refs:
                yield f"{ref} is needed and not there"
    reached, waiting = set(), [own.get("bom-ref")]
    while waiting:
        ref = waiting.pop()
        if ref not in reached:
            reached.add(ref)
            waiting += [on for entry in dependencies if entry["ref"] == ref
                        for on in entry["dependsOn"]]
    for ref in set(refs) - reached:
        yield f"nothing needs {ref}"

    listed = {entry["value"] for made in components for entry in made.get("properties", [])
              if entry["name"] == "velmara:library"}
    dynamic = subprocess.run(["readelf", "--wide", "--dynamic", program], capture_output=True,
                             text=True, check=True).stdout
    linked = re.findall(r"\(NEEDED\).*\[(.+)\]", dynamic)
    if not linked:
        yield f"{program} links nothing"
    for name in linked:
        if name not in listed:
            yield f"{name} is linked and not listed"
    late = {entry["value"] for made in components
            if {"name": "velmara:use", "value": "loaded later"} in made.get("properties", [])
            for entry in made["properties"]}
    for name in LOADED_LATER:
        if not any(library.startswith(name) for library in late):
            yield f"{name} is not listed as loaded later"


def main():
    path, program = sys.argv[1:]
    bill = json.loads(pathlib.Path(path).read_text(encoding="utf-8"))
    wrong = list(faults(bill, program))
    print("\n".join(wrong) or f"{len(bill['components'])} components, and none is missing.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())

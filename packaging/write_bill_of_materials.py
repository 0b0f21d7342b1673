#!/usr/bin/env python3
"""write_bill_of_materials.py PROGRAM VERSION FILE: what the program is made of and works with.

A CycloneDX 1.5 file of the Debian packages whose libraries the program links, loads later, has built
in or brings along through those, as they are on this machine. The same machine gives the same bytes;
with SOURCE_DATE_EPOCH set it carries that time.
"""

import datetime
import json
import os
import pathlib
import re
import subprocess
import sys
import uuid

# Templates and headers that become part of the program, by the packages they come in.
BUILT_IN = ("libcli11-dev", "libhwy-dev")
NAMES_LIBRARY = re.compile(rb"(lib[\w+-]+\.so\.\d+)\0")


def output(*words):
    return subprocess.run(words, capture_output=True, text=True, check=True).stdout


def needed(path):
    """The names of the libraries that a program or a library links."""
    return re.findall(r"\(NEEDED\).*\[(.+)\]", output("readelf", "--wide", "--dynamic", path))


def loaded_later(program):
    """The names of libraries that the program says itself."""
    return {name.decode() for name in NAMES_LIBRARY.findall(pathlib.Path(program).read_bytes())}


def known_paths():
    """Where the loader finds libraries, by their names; of several the first, as it does."""
    paths = {}
    for name, path in re.findall(r"^\t(\S+) \(.*\) => (\S+)$", output("ldconfig", "-p"), re.M):
        paths.setdefault(name, path)
    return paths


def plugins_of(package):
    """What a package's libraries load by themselves: formats of pictures, kinds of displays."""
    return [path for path in output("dpkg-query", "-L", package).splitlines()
            if re.search(r"/(plugins|[\w-]*modules[\w.-]*)/.*\.so$", path)]


def packages_of(names, paths):
    """The package of each library. Files are registered where they were before /lib became a link."""
    spellings = {}
    for name in names:
        real = os.path.realpath(paths[name])
        for spelling in (real, real.removeprefix("/usr")):
            spellings.setdefault(spelling, []).append(name)
    found = {}
    listed = subprocess.run(["dpkg-query", "-S", *spellings], capture_output=True, text=True,
                            check=False).stdout
    for line in listed.splitlines():
        package, _, path = line.partition(": ")
        for name in spellings.get(path, ()):
            found[name] = package.split(":")[0]
    if missing := set(names) - found.keys():
        sys.exit(f"in no package: {', '.join(sorted(missing))}")
    return found


def licences(package):
    """The names of the licences in a package's copyright file, where a machine can read it."""
    path = pathlib.Path("/usr/share/doc", package, "copyright")
    text = path.read_text(encoding="utf-8", errors="replace") if path.exists() else ""
    if not text.startswith("Format:"):
        return []
    names = {name.strip() for name in re.findall(r"^License:[ \t]*(\S.*)$", text, re.M)}
    return [{"license": {"name": name}} for name in sorted(names)]


def component(package, libraries, how):
    fields = ("Version", "Architecture", "source:Package", "Homepage")
    shown = "\\n".join("${%s}" % field for field in fields)
    # Of two architectures the one asked for first.
    version, architecture, source, homepage = output(
        "dpkg-query", "-W", "-f", shown + "\\n", package).split("\n")[:4]
    purl = f"pkg:deb/debian/{package}@{version}?arch={architecture}".replace("+", "%2B")
    made = {
        "type": "library",
        "bom-ref": purl,
        "name": package,
        "version": version,
        "purl": purl,
        "properties": [{"name": "velmara:use", "value": how}] +
                      [{"name": "velmara:library", "value": name} for name in sorted(libraries)] +
                      [{"name": "velmara:source-package", "value": source}],
    }
    if found := licences(package):
        made["licenses"] = found
    if homepage:
        made["externalReferences"] = [{"type": "website", "url": homepage}]
    return made


def main():
    program, version, out = sys.argv[1:]
    paths = known_paths()
    linked = set(needed(program))
    late = {name for name in loaded_later(program) if name in paths} - linked
    if missing := linked - paths.keys():
        sys.exit(f"not to be found here: {', '.join(sorted(missing))}")
    links = {name: needed(paths[name]) for name in linked | late}
    for name, package in packages_of(links, paths).items():
        links[name] = sorted({*links[name], *(on for plugin in plugins_of(package)
                                              for on in needed(plugin))})
    waiting = sorted(on for ons in links.values() for on in ons)
    while waiting:
        name = waiting.pop()
        if name not in links and name in paths:
            links[name] = needed(paths[name])
            waiting += links[name]

    of_package = packages_of(links, paths)
    libraries = {}
    for name, package in of_package.items():
        libraries.setdefault(package, set()).add(name)

    def how(package):
        if libraries[package] & linked:
            return "linked"
        return "loaded later" if libraries[package] & late else "through others"

    components = [component(package, libraries[package], how(package)) for package in libraries]
    components += [component(package, (), "built in") for package in BUILT_IN]
    components.sort(key=lambda made: made["bom-ref"])
    ref_of = {made["name"]: made["bom-ref"] for made in components}

    own = f"pkg:generic/velmara@{version}"
    direct = {of_package[name] for name in linked | late} | set(BUILT_IN)
    dependencies = [{"ref": own, "dependsOn": sorted(ref_of[package] for package in direct)}]
    for package, names in libraries.items():
        others = {of_package[other] for name in names for other in links[name] if other in links}
        dependencies.append({"ref": ref_of[package],
                             "dependsOn": sorted(ref_of[p] for p in others - {package})})
    dependencies.sort(key=lambda entry: entry["ref"])

    bill = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "version": 1,
        "metadata": {
            "component": {
                "type": "application", "bom-ref": own, "name": "velmara", "version": version,
                "purl": own, "licenses": [{"license": {"id": "GPL-3.0-or-later"}}],
            },
        },
        "components": components,
        "dependencies": dependencies,
    }
    if epoch := os.environ.get("SOURCE_DATE_EPOCH"):
        time = datetime.datetime.fromtimestamp(int(epoch), datetime.timezone.utc)
        bill["metadata"]["timestamp"] = time.strftime("%Y-%m-%dT%H:%M:%SZ")
    text = json.dumps(bill, sort_keys=True)
    bill["serialNumber"] = uuid.uuid5(uuid.NAMESPACE_URL, text).urn
    pathlib.Path(out).write_text(json.dumps(bill, indent=1, sort_keys=True) + "\n",
                                 encoding="utf-8")


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""Checks every include of the tree against the one table of who may know whom. Prints what breaks it; 1 if any does."""

import pathlib
import re
import sys

# The folders of each target, and which other folders' headers their files may include, "." being the target's own.
MAY_INCLUDE = {
    "library/vdt/memory": "",
    "library/vdt/math": "memory",
    "library/vdt/messages": "memory",
    "library/vdt/mesh": "memory math messages",
    "library/vdt/skeleton": "memory math messages mesh",
    "library/vdt/model": "memory math messages mesh skeleton",
    "library/vdt/file": "memory math messages mesh skeleton model",
    "library/vdt/cache": "memory math messages mesh skeleton model file",
    "library/vdt/generate": "memory math messages mesh skeleton model",
    "library/vdt/materials": "memory math messages mesh skeleton model",
    "library/geolib": "",
    "host/api": "",
    "host/core": "",
    "host/module": "core",
    "host/view": "core",
    "host/support": "",
    "source/support": "",
    "source/geometry": "support",
    "source/selection": "support",
    "source/materials": "support geometry",
    "source/plant": "support geometry materials selection",
    "source/placing": "support geometry materials selection plant",
    "source/viewport": "support plant",
    "source/shell": "support geometry selection plant placing viewport",
    "plants/grower": "",
    "plants/species": "grower",
    "app/console": "",
    "app/files": "",
    "app/lookup": "console files",
    "app/inspect": ". console files lookup",
    "app/export": "console files lookup",
    "app/convert": "console",
    "app/picture": "export",
    "app/host": "console files lookup export",
    "app/commands": ". console files lookup inspect export convert picture host",
}
# Where each target finds what it includes in quotes. The tests and the benchmarks may see everything.
SEARCHED = {
    "library": ["library"],
    "plants": ["plants", "library"],
    "host": ["host", "host/api"],
    "source": ["source", "library", "host/api", "res", "res/description"],
    "app": ["app", "library", "host", "host/api", "res/description"],
}
# Headers that a target shows to folders of others, found below a folder that those do not search.
SHOWN = {("source", "placing/placing_library.h"): "app/host"}
# In angle brackets the library may name standard headers and zlib alone. <clocale> need not declare newlocale().
LIBRARY_SYSTEM_HEADER = re.compile(r"[a-z0-9_]+|locale\.h|zlib\.h")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def faults(root, file):
    """What is wrong with the includes of one file, one text a fault."""
    folder = file.parent.relative_to(root).as_posix()
    target = folder.split("/")[0]
    for number, line in enumerate(file.read_text().splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        quote, name = match.groups()
        place = f"{file.relative_to(root)}:{number}"
        if quote == "<":
            if target == "library" and not LIBRARY_SYSTEM_HEADER.fullmatch(name):
                yield f"{place}: the library knows the standard library and zlib alone, not <{name}>"
            continue
        found = [base for base in SEARCHED[target] if (root / base / name).is_file()]
        if not found and folder in [seer for (_, shown), seer in SHOWN.items() if shown == name]:
            continue
        if not found:
            yield f"{place}: {target} may not see \"{name}\" (searched: {', '.join(SEARCHED[target])})"
            continue
        included = (pathlib.PurePosixPath(found[0]) / name).parent.as_posix()
        family = folder.rsplit("/", 1)[0]
        allowed = [folder] + [(family + "/" + sibling).removesuffix("/.") for sibling in MAY_INCLUDE.get(folder, "").split()]
        if folder != target and folder not in MAY_INCLUDE:
            yield f"{place}: {folder} has no row in the table of scripts/layers.py"
        elif folder != target and found[0] == target and included not in allowed:
            yield f"{place}: {folder} may not know {included}"


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent).resolve()
    files = [f for target in SEARCHED for f in sorted((root / target).rglob("*")) if f.suffix in (".h", ".cpp")]
    found = [fault for file in files for fault in faults(root, file)]
    print(*found, sep="\n", end="\n" if found else "")
    print(f"layers: {len(files)} files, {len(found)} faults")
    return 1 if found or not files else 0


sys.exit(main())

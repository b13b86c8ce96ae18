#!/usr/bin/env python3
"""Judges the coverage of an area's sources. Usage: coverage.py AREA EXPORT.json, as `llvm-cov export` writes it.

Prints the figures in one line and what no test reaches. Fails when a figure is too low. For the library it also fails
when something that is not reached is not in coverage.exceptions, or when an exception is no longer needed.
"""
import json
import os
import sys

AREAS = {
    "library": (("adaptors/", "analysis/", "entry/", "host/", "include/", "resolver/"), {"lines": 98, "branches": 95}),
    "standalone": (("standalone/",), {"lines": 95, "branches": 85}),
    "cli": (("cli/",), {"lines": 95, "branches": 85}),
}
area, export_path = sys.argv[1:]
FOLDERS, NEEDED = AREAS[area]
root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")


def unreached(file):
    """The lines on which a region or a way of a branch is never taken."""
    lines = {line for line, _, count, known, _, gap in file["segments"] if known and count == 0 and not gap}
    return lines | {branch[0] for branch in file["branches"] if 0 in branch[4:6]}


with open(os.path.join(root, "scripts/coverage.exceptions"), encoding="utf-8") as listed:
    exceptions = {line.strip() for line in listed if line.strip() and not line.startswith("#")}
with open(export_path, encoding="utf-8") as export:
    files = json.load(export)["data"][0]["files"]

counts = {what: [0, 0] for what in NEEDED}
met = set()
strays = []
for file in files:
    name = os.path.relpath(file["filename"], root)
    if not name.startswith(FOLDERS):
        continue
    for what, count in counts.items():
        count[0] += file["summary"][what]["covered"]
        count[1] += file["summary"][what]["count"]
    with open(os.path.join(root, name), encoding="utf-8") as source:
        texts = source.read().split("\n")
    for line in sorted(unreached(file)):
        spelled = f"{name}: {texts[line - 1].strip()}"
        met.add(spelled)
        if spelled not in exceptions:
            strays.append(f"{name}:{line}: not reached: {texts[line - 1].strip()}")

print(f"{area}: " + ", ".join(f"{what} {100 * count[0] / max(1, count[1]):.2f} % ({count[0]} of {count[1]})"
                              for what, count in counts.items()))
if area != "library":  # only listed there: most are errors of the system, of which tests/faults/ tries all
    print("\n".join(strays))
    exceptions, strays = set(), []
    met.clear()
strays += [f"scripts/coverage.exceptions: is reached, or gone: {line}" for line in sorted(exceptions - met)]
strays += [f"{what}: below {NEEDED[what]} %" for what, count in counts.items()
           if 100 * count[0] < NEEDED[what] * count[1] or count[1] == 0]
print("\n".join(strays), end="\n" if strays else "")
sys.exit(1 if strays else 0)

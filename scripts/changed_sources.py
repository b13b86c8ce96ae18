#!/usr/bin/env python3
"""Prints the entries of a compile_commands.json whose sources changed lately. Usage: changed_sources.py FILE COMMITS

Lately is in the last COMMITS commits or since. For a header that changed, a source that includes it is among them. Where
the history is shorter, as in a shallow clone, all entries are printed.
"""
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^#include "(.*)"', re.M)


def changed_files(commits):
    """None where the history does not go back so far."""
    done = subprocess.run(["git", "diff", "--name-only", "--diff-filter=d", "-z", f"HEAD~{commits}"], cwd=ROOT,
                          capture_output=True, text=True, check=False)
    return set(filter(None, done.stdout.split("\0"))) if done.returncode == 0 else None


def is_included(header, includes):
    return any(header == name or header.endswith("/" + name) for name in includes)


def main(path, commits):
    entries = {os.path.relpath(entry["file"], ROOT): entry for entry in json.loads(pathlib.Path(path).read_text())}
    changed = changed_files(commits)
    if changed is not None:
        includes = {source: INCLUDE.findall((ROOT / source).read_text()) for source in entries}
        chosen = {source for source in entries if source in changed}
        for header in sorted(name for name in changed if name.endswith(".hpp")):
            users = [source for source in sorted(entries) if is_included(header, includes[source])]
            if not chosen.intersection(users):
                chosen.update(users[:1])
        entries = {source: entry for source, entry in entries.items() if source in chosen}
    json.dump(list(entries.values()), sys.stdout, indent=1)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], int(sys.argv[2]))

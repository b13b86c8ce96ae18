#!/usr/bin/env python3
"""Counts the system calls of the program, which are the same in each run. Usage: calls.py PROGRAM [FOLDERS]

A question without the index may make five for each folder that it lists and one for each candidate, those of the start
included; with the index, one for each folder, two for each candidate, and 40. With --from, a name that is asked again
makes none. No folder below the root is opened by its whole path. Prints each count and ends with 1 when one is too high.
"""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile


def count(*command):
    """How often the command makes each system call."""
    with tempfile.NamedTemporaryFile("r") as summary:
        subprocess.run(["strace", "-f", "-c", "-o", summary.name, *command], check=True, stdout=subprocess.DEVNULL)
        rows = re.findall(r"^ *[\d.]+ +[\d.]+ +\d+ +(\d+) .*?(\w+)$", summary.read(), re.M)
    return {name: int(number) for number, name in rows if name != "total"}


def names_of(world, first="c"):
    """Names with that first letter, with the number of their candidates."""
    counts = {}
    with open(os.path.join(world, "expected"), encoding="utf-8") as lines:
        for line in lines:
            name = line.split(" ")[0]
            if name.startswith(first):
                counts[name] = counts.get(name, 0) + 1
    return counts


def one_question(program, manifest, world):
    """The calls of one question, and how many it may make without the index and with it."""
    name, candidates = next(iter(names_of(world).items()))
    with open(os.path.join(world, "folders"), encoding="utf-8") as lines:
        folders = sum(1 for _ in lines)
    with open(os.path.join(world, "all-folders"), encoding="utf-8") as lines:
        all_folders = sum(1 for _ in lines)
    calls = sum(count(program, "-i", manifest, name).values())
    return calls, 5 * folders + candidates, all_folders + 40 + 2 * candidates


def long_ways(program, manifest, world):
    """The calls of one question that open a folder by its whole path; 0 where the system cannot hold a folder open and
    open others below it."""
    with tempfile.NamedTemporaryFile("r") as log:
        subprocess.run(["strace", "-f", "-o", log.name, program, "-i", manifest, next(iter(names_of(world)))], check=True,
                       stdout=subprocess.DEVNULL)
        top = re.escape(os.path.realpath(world))
        made = log.read()
        if re.search(r"openat2\(.* = -1 (ENOSYS|EPERM)", made):
            return 0
        return len(re.findall(rf'\(AT_FDCWD, "{top}/s\d[^"]*(?<!\.vk)"', made))


def asked_again(program, manifest, world, folder):
    """The calls that names make when they are asked a second time, without those that read lines."""
    calls = []
    for times in (1, 2):
        path = os.path.join(folder, f"names{times}")
        with open(os.path.join(world, "names"), encoding="utf-8") as names, open(path, "w", encoding="utf-8") as out:
            out.write(names.read() * times)
        counted = count(program, "-i", manifest, "--quiet", "--from", path)
        calls.append(sum(number for call, number in counted.items() if call not in ("read", "brk")))
    return calls[1] - calls[0]


def with_index(program, manifest):
    """The same manifest with an index; builds the index."""
    with open(manifest, encoding="utf-8") as text:
        settings = json.load(text)
    indexed = os.path.join(os.path.dirname(manifest), "indexed.json")
    with open(indexed, "w", encoding="utf-8") as out:
        json.dump(settings | {"searchIndex": "search.idx"}, out)
    subprocess.run([program, "-i", indexed, "index", "build"], check=True, stdout=subprocess.DEVNULL)
    return indexed


def main(program, folders):
    here = os.path.dirname(os.path.realpath(__file__))
    with tempfile.TemporaryDirectory() as folder:
        world = os.path.join(folder, "world")
        subprocess.run([sys.executable, os.path.join(here, "world.py"), "tree", world, folders], check=True)
        manifest = os.path.join(world, "installation.json")
        calls, most, _ = one_question(program, manifest, world)
        indexed = with_index(program, manifest)
        known, _, most_known = one_question(program, indexed, world)
        again = asked_again(program, manifest, world, folder)
        long = long_ways(program, manifest, world) + long_ways(program, indexed, world)
    print(f"one question in {folders} folders: {calls} system calls, at most {most}")
    print(f"with the index: {known} system calls, at most {most_known}")
    print(f"all names asked again: {again} system calls, at most 0")
    print(f"walks to folders from the top: {long}, at most 0")
    return 0 if calls <= most and known <= most_known and again <= 0 and long == 0 else 1


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    if not shutil.which("strace"):
        sys.exit("calls.py: strace is missing: scripts/setup.sh test installs it")
    sys.exit(main(sys.argv[1], sys.argv[2] if len(sys.argv) == 3 else "100"))

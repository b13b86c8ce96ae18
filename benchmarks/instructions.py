#!/usr/bin/env python3
"""Counts the instructions and allocations of the library for a name with five candidates; the same in each run.

Usage: instructions.py BENCH_RESOLVE [--renew]    BENCH_RESOLVE is the program of the release build
Ends with 1 when a count has grown by more than 3 % since it was written down in instructions.json. --renew writes the
counts down anew: for a change that is meant to cost more, and for another compiler, whose code is not comparable.
Ends with 77 when nothing can be compared: another compiler than the one that was written down.
"""
import json
import os
import re
import subprocess
import sys
import tempfile

WRITTEN = os.path.join(os.path.dirname(os.path.realpath(__file__)), "instructions.json")
COUNTED = ("resolve", "explain", "qualifiedNameForPath")  # of these, instructions
GROWTH = 1.03


def instructions_of(program, what, times):
    # The C library's simplest functions for memory, so that the count does not depend on the processor.
    plain = os.environ | {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2,-AVX,-AVX512F,-AVX512VL,-ERMS,-FSRM"}
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={folder}/out", program, what,
                               str(times)], capture_output=True, text=True, check=True, env=plain)
    return int(re.search(r"Collected : (\d+)", done.stderr).group(1))


def counts_of(program):
    """The compiler, and each count by its name."""
    lines = subprocess.run([program], capture_output=True, text=True, check=True).stdout.splitlines()
    counts = {}
    for word, count in (line.split(" ", 1) for line in lines[1:]):
        counts[f"allocations of {word}"] = int(count)
    for what in COUNTED:
        few, many = (instructions_of(program, what, times) for times in (10, 110))
        counts[f"instructions of {what}"] = (many - few) // 100
    return lines[0].split(" ", 1)[1], counts


def measure(program):
    """For each name, the count and the recorded one; a text when they cannot be compared."""
    if not os.path.exists(program):
        return "the program was not built"
    try:
        compiler, counts = counts_of(program)
    except FileNotFoundError:
        return "install valgrind"
    with open(WRITTEN, encoding="utf-8") as text:
        written = json.load(text)
    if written["compiler"] != compiler:
        return (f"what is written down is of the compiler {written['compiler']}, this one is {compiler}; where that is "
                "to stay, write down its counts: benchmarks/instructions.py BENCH_RESOLVE --renew")
    return {what: (count, written["counts"][what]) for what, count in counts.items()}


def main(program, renews):
    if renews:
        compiler, counts = counts_of(program)
        with open(WRITTEN, "w", encoding="utf-8") as out:
            json.dump({"compiler": compiler, "counts": counts}, out, indent=2)
            out.write("\n")
        return 0
    measured = measure(program)
    if isinstance(measured, str):
        print(f"instructions.py: nothing was compared: {measured}", file=sys.stderr)
        return 77
    grown = 0
    for what, (count, baseline) in measured.items():
        has_grown = count > baseline * GROWTH
        grown += has_grown
        print(f"{what}: {count}, written down {baseline}{': has grown' if has_grown else ''}")
    if grown:
        print("instructions.py: find out why, or, if it is meant, write it down with --renew", file=sys.stderr)
    return 1 if grown else 0


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--renew"]):
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1], len(sys.argv) == 3))

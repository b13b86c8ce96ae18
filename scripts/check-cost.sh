#!/usr/bin/env bash
# Counts that are the same in each run: the system calls of the program, and the instructions and allocations of the
# library, which may not grow by more than 3 %. Usage: scripts/check-cost.sh
. "$(dirname "$0")/lib.sh"
scripts/setup.sh bench
build release bench_resolve kelwhich_program
benchmarks/calls.py build/release/cli/kelwhich
status=0
benchmarks/instructions.py build/release/benchmarks/bench_resolve || status=$?
[ "$status" -eq 77 ] || exit "$status" # 77: measured with another compiler, as the script has printed

#!/usr/bin/env bash
# Runs the fuzz targets, two side by side, each from its seeds in fuzz/seeds. Usage: scripts/fuzz.sh [SECONDS] [TARGET...]
# Each of worlds, manifest, store, records, program and lsp gets SECONDS (60). An input that crashes is kept in build/crashes.
# The exit code is 1 after a crash, and when a target tries too few inputs.
. "$(dirname "$0")/lib.sh"
export seconds=${1:-60}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || { echo "fuzz.sh: expected a number of seconds, not '$seconds'" >&2; exit 2; }
shift $(($# > 0 ? 1 : 0))
export slowest=100 # inputs in a second of the processor's time, with ten times that being usual
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(worlds manifest store records program lsp)

scripts/setup.sh gates
build asan fuzz_targets
mkdir -p build/crashes
memory=/dev/shm
[ -w $memory ] || memory=${TMPDIR:-/tmp}
work=$(mktemp -d "$memory/kelwhich-fuzz-XXXXXX")
export work
trap 'rm -rf "$work"' EXIT

run() {
  local target=$1 longest=4096 depth=2 log=$work/$1.log # depth: changes made at once; few, so that JSON stays JSON
  case $target in worlds) longest=512 depth=5 ;; store) longest=8192 depth=5 ;; program) longest=1024 depth=5 ;; esac
  mkdir -p "$work/$target/corpus" "$work/$target/tmp"
  local status=0 TIMEFORMAT='%U %S'
  # No stacks of allocations, which a tenth of the time would go to: running the crash again prints them. Nor is memory
  # filled, or kept in a quarantine of 256 MB, for the same reason.
  { time TMPDIR=$work/$target/tmp ASAN_OPTIONS=malloc_context_size=0:max_malloc_fill_size=0:quarantine_size_mb=16 "build/asan/fuzz/fuzz_$target" -max_total_time="$seconds" \
    -max_len="$longest" -mutate_depth="$depth" -timeout=10 -rss_limit_mb=1024 -entropic=0 -dict=fuzz/kelwhich.dict -print_final_stats=1 \
    -artifact_prefix="build/crashes/$target-" "$work/$target/corpus" "fuzz/seeds/$target" >"$log" 2>&1; } 2>"$work/$target.cpu" || status=$?
  local runs rate features
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  rate=$(awk -v runs="${runs:-0}" '{ printf "%d", runs / ($1 + $2 + 0.01) }' "$work/$target.cpu")
  features=$(sed -nE 's/^#[0-9]+\t(INITED|NEW|REDUCE|pulse|RELOAD|DONE).* ft: ([0-9]+) .*/\2/p' "$log" |
    awk 'NR == 1 { first = $1 } { last = $1 } END { print last - first }')
  printf '%-8s  %8s inputs  %6s a CPU second  %5s new features  %s\n' "$target" "${runs:-0}" "$rate" "$features" \
    "$([ $status -eq 0 ] && echo "no crash" || echo "CRASH")"
  if [ $status -eq 0 ]; then
    [ "$rate" -ge "$slowest" ] || { echo "    fewer than $slowest inputs a CPU second search nothing"; return 1; }
    return 0
  fi
  local input
  input=$(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)
  grep -E '^not kept|ERROR|runtime error|terminate called|what\(\)|Assertion|SUMMARY' "$log" | sed 's/^/    /' || true
  if [ -n "$input" ]; then
    echo "    to see it again: build/asan/fuzz/fuzz_$target $input"
    echo "    once it is fixed: cp $input fuzz/seeds/$target/NAME"
  else
    tail -n 20 "$log"
  fi
  return 1
}
export -f run
printf '%s\n' "${targets[@]}" | xargs -P 2 -I '{}' bash -euo pipefail -c 'run {}' || exit 1

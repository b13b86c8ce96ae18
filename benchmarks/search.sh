#!/usr/bin/env bash
# Answers names of an installation with M folders of 20 definitions each, compares every answer with what the tree's
# maker expects, and tells what that takes; then the same with one search folder of 100,000 entries, and the doctor.
# Usage: search.sh [M] [PROGRAM]    (default: 1000, the release build, which is brought up to date)
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
folders=${1:-1000}
program=${2:-build/release/cli/kelwhich}
if [ $# -lt 2 ]; then
  scripts/setup.sh bench
  scripts/configure.sh release
  cmake --build --preset release --target kelwhich_program -- --quiet
fi
program=$(realpath "$program")
tmp=$(realpath "$(mktemp -d)")
trap 'rm -rf "$tmp"' EXIT
export LC_ALL=C

# `measure WHAT COMMAND...`: runs the command 5 times and prints the best time and the most memory. Fails when it does.
measure() {
  local what=$1 begin
  shift
  for _ in 1 2 3 4 5; do
    begin=${EPOCHREALTIME/./}
    /usr/bin/time -qf %M -o "$tmp/memory" "$@" >"$tmp/output" || { echo "search.sh: '$what' fails" >&2; exit 1; }
    echo "$((${EPOCHREALTIME/./} - begin)) $(cat "$tmp/memory")"
  done >"$tmp/runs"
  awk -v what="$what" '
    NR == 1 || $1 < time { time = $1 } $2 > memory { memory = $2 }
    END { printf "%-48s %8.1f ms %7.1f MB\n", what, time / 1000, memory / 1024 }' "$tmp/runs"
}
# Compares the text output with the expected lines of the names.
check() { # NAME..., or nothing for all
  awk '/^[^ ]/ { name = $1 } / host file / { print name, $NF }' "$tmp/output" >"$tmp/got"
  if [ $# -gt 0 ]; then
    for name; do grep "^${name//./\\.} " expected; done >"$tmp/want"
  else
    cp expected "$tmp/want"
  fi
  cmp "$tmp/got" "$tmp/want" || { echo "search.sh: the answers are wrong" >&2; exit 1; }
  echo "  $(wc -l <"$tmp/want") candidates, all as expected"
}

benchmarks/tree.sh "$tmp/tree" "$folders"
cd "$tmp/tree"
echo "$(find . -mindepth 1 -type d | wc -l) folders, $(find . -name '*.vk*' | wc -l) files"
cut -d' ' -f1 expected | uniq >names
mapfile -t sample < <(awk -v every=$(($(wc -l <names) / 50)) 'NR % every == 1' names)

measure "one name, in every folder" "$program" hot
check hot
measure "one name, in a package of every search folder" "$program" common.inner.hot
check common.inner.hot
measure "${#sample[@]} names" "$program" "${sample[@]}"
check "${sample[@]}"
measure "all $(wc -l <names) names, in one view of the disk" "$program" --from names
check
measure "doctor" "$program" doctor

mkdir crowd
seq -f 'crowd/file%06.0f.txt' 99999 | xargs touch
touch crowd/lone.vk
echo '{"searchPath": ["crowd"]}' >installation.json
echo "lone $PWD/crowd/lone.vk" >>expected
measure "one name, in a folder of 100,000 entries" "$program" lone
check lone

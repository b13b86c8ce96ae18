#!/usr/bin/env bash
# The support store with N records: builds, verifies, exports and rebuilds it, asks for names, checks every result, and
# prints time and memory of each. Usage: benchmarks/store.sh [N] [PROGRAM]
# N is at least 2,000 (default: 1,000,000). Without PROGRAM the release build is brought up to date and used. Times are
# printed beside that of reading the same bytes once (cat). Memory is the peak of the process, mapped pages included.
set -euo pipefail
fail() {
  echo "store.sh: $1" >&2
  exit 1
}
here=$(realpath "${BASH_SOURCE[0]%/*}")
records=${1:-1000000}
if [ $# -lt 2 ]; then
  "$here/../scripts/setup.sh" bench
  "$here/../scripts/configure.sh" release
  cmake --build "$here/../build/release" --target kelwhich_program -- --quiet
fi
program=$(realpath "${2:-$here/../build/release/cli/kelwhich}")
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
cd "$top"
top=$(pwd -P)
export KELWHICH_INSTALLATION=$top
mkdir kel
echo '{"supportStore": "support.cdb", "kelPath": ["kel"]}' >installation.json
"$here/world.py" records "$records" >records.jsonl

# measured WHAT COMMAND...: runs it, writes its output to `out`, and prints its time and memory.
measured() {
  local what=$1 begin end
  shift
  begin=$(date +%s%N)
  /usr/bin/time -f %M -o memory "$@" >out || fail "$what fails"
  end=$(date +%s%N)
  printf '%-34s %8d ms %8d KiB\n' "$what" $(((end - begin) / 1000000)) "$(tail -n 1 memory)"
}

measured "cat of the records" cat records.jsonl
measured "store build" "$program" store build records.jsonl
grep -q ": $records records\$" out || fail "not all records were built"
echo "records: $(stat -c %s records.jsonl) bytes, store: $(stat -c %s support.cdb) bytes"
measured "cat of the store" cat support.cdb
measured "store verify" "$program" store verify
measured "store info" "$program" store info
measured "store export" "$program" store export
mv out again.jsonl
measured "store build of the export" "$program" store build again.jsonl --output again.cdb
cmp support.cdb again.cdb || fail "the export builds another store"

# The files of a shared name, as the records give them.
expected() {
  grep "\"shared$1\"" records.jsonl | sed "s|.*\"path\": \"\([^\"]*\)\".*|$top/\1|" | sort
}
last=$(((records - 1) / 7000))
for shared in 0 $((last / 2)) "$last"; do
  measured "the name shared$shared" "$program" "shared$shared"
  cmp <(expected "$shared") <(awk '/ host file /{ print $NF }' out | sort) >&2 || fail "shared$shared is answered wrongly"
done
# shellcheck disable=SC2017 # every 1000th record is built in; dividing first rounds down to one
for line in 1000 $((records / 2000 * 1000 + 1000)) $((records / 1000 * 1000)); do
  builtin=$(sed -n "$line{s|.*\"path\": \"\([^\"]*\)\".*|\1|p;q}" records.jsonl)
  measured "the name $builtin" "$program" "$builtin"
  grep -qx "  1  KEL built-in          supported  $builtin" out || fail "$builtin is answered wrongly"
done
echo "all answers are right"

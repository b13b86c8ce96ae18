#!/usr/bin/env bash
# Sets everything up and answers names of the example installation. Usage: scripts/demo.sh [NAME...]
# Running it again is quick: it builds only what changed.
. "$(dirname "$0")/lib.sh"

scripts/setup.sh build
echo "== building the program into build/release"
build release kelwhich_program kelwhich_page_files # all that the README installs

program=build/release/cli/kelwhich
example=examples/installation
echo "== building the example's support store"
"$program" store build --installation "$example" "$example/support.jsonl"

if [ $# -eq 0 ]; then
  set -- wave sum area legacy
fi
echo "== $program --installation $example $*"
echo
status=0
"$program" --installation "$example" -- "$@" || status=$?
echo
echo "The first line of each name is what the code generator takes. $example/README.md says what each name shows;"
echo "try others: scripts/demo.sh NAME..., or as JSON: $program --installation $example --json NAME..."
exit "$status"

#!/usr/bin/env bash
# Prints one table: what is swept, compared, fuzzed and mutated, and for each row whether a planted fault is caught.
# Usage: scripts/proof.sh [--quick] [--write] [WORD...]    --quick leaves mutation out and fuzzes for seconds;
#        --write puts the table into docs/reliability.md as well; words choose the rows that hold all of them
#        scripts/proof.sh --check    runs nothing: only checks that each fault can still be planted
. "$(dirname "$0")/lib.sh"
if [ "$*" != --check ]; then
  scripts/setup.sh gates
  lock proof
fi
exec python3 -B scripts/proof.py "$@"

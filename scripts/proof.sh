#!/usr/bin/env bash
# Prints one table of what is swept, compared, fuzzed and mutated, each row with a fault that is planted and caught.
# Usage: scripts/proof.sh [--quick] [--write] [WORD...]    --quick leaves mutation out and fuzzes for seconds;
#        --write puts the table into docs/reliability.md as well; words choose the rows that hold all of them
#        scripts/proof.sh --check    runs nothing: only sees whether each fault can still be planted
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
if [ "$*" != --check ]; then
  scripts/setup.sh gates
  mkdir -p build
  exec 9>build/.proof.lock # one run at a time in one copy
  flock 9
fi
exec python3 -B scripts/proof.py "$@"

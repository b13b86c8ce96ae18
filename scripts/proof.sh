#!/usr/bin/env bash
# Prints one table of what is swept, compared, fuzzed and mutated, each row with a fault that is planted and caught.
# Usage: scripts/proof.sh [--quick] [--write] [WORD...]    --quick leaves mutation out and fuzzes for seconds;
#        --write puts the table into docs/reliability.md as well; words choose the rows that hold all of them
set -euo pipefail
unset CDPATH
cd "$(dirname "$0")/.."
scripts/setup.sh gates
exec python3 scripts/proof.py "$@"

#!/usr/bin/env bash
# Measures the program beside others and prints one table: goal, figure, ratio, met or not. A few minutes on two
# cores that do nothing else. Usage: scripts/bench.sh [--quick] [--write] [--npm]
# --quick: few rounds in small worlds; whether all can be run and is answered rightly, not how fast.
# --write: the table and the plot go into docs/performance.md. --npm: gets oxc-resolver, which is not in Debian.
. "$(dirname "$0")/lib.sh"
export KELWHICH_NODE_MODULES=$PWD/build/bench/node_modules

options=()
for option; do
  if [ "$option" = --npm ]; then
    npm install --silent --no-save --prefix build/bench oxc-resolver@1
  else
    options+=("$option")
  fi
done
scripts/setup.sh bench
build release bench
python3 benchmarks/bench.py build/release "${options[@]}"

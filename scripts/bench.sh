#!/usr/bin/env bash
# Measures the program beside others and prints one table: goal, figure, ratio, met or not. A few minutes on two
# cores that do nothing else. Usage: scripts/bench.sh [MEASURE...] [--quick] [--write] [--npm], or scripts/bench.sh build
# MEASURE: only this one, as `editor_server`; benchmarks/bench.py lists them.
# --quick: few rounds in small worlds; shows that all can be run and is answered rightly, not how fast.
# --write: the table and the plot go into docs/performance.md. --npm: gets oxc-resolver, which is not in Debian.
# build: the processor time of building the demo from nothing instead; fails when it is too much.
. "$(dirname "$0")/lib.sh"

scripts/setup.sh bench
if [ "$*" = build ]; then
  exec benchmarks/build.py
fi
export KELWHICH_NODE_MODULES=$PWD/build/bench/node_modules
options=()
for option; do
  if [ "$option" = --npm ]; then
    npm install --silent --no-save --prefix build/bench oxc-resolver@1
  else
    options+=("$option")
  fi
done
build release bench
python3 benchmarks/bench.py build/release "${options[@]}"

# What every script here begins with: strict mode, the repository's root as the current folder, and the one way to lock
# and build a folder. Scripts install what they need by scripts/setup.sh.
# shellcheck shell=bash
set -euo pipefail
unset CDPATH
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# lock NAME: waits until no other run works in build/NAME, and keeps others out until this script ends. A script that
# this one starts shares the lock.
lock() {
  local file=$PWD/build/.$1.lock descriptor
  [[ ":${KELWHICH_LOCKED-}:" != *":$file:"* ]] || return 0
  mkdir -p build
  exec {descriptor}>"$file"
  flock "$descriptor"
  export KELWHICH_LOCKED=${KELWHICH_LOCKED-}:$file
}

# build PRESET [TARGET...]: in build/PRESET, locked; without a target everything that the preset builds by default.
build() {
  local preset=$1
  shift
  lock "$preset"
  scripts/configure.sh "$preset"
  cmake --build --preset "$preset" ${1+--target "$@"} -- --quiet
}

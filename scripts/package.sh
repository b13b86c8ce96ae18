#!/usr/bin/env bash
# Makes the Debian packages libkelwhich0, libkelwhich-dev and kelwhich in build/package. Usage: scripts/package.sh
. "$(dirname "$0")/lib.sh"

umask 022 # the permissions that the packages will have
scripts/setup.sh package
lock release
scripts/configure.sh release
# The packages' prefix decides where the libraries go and is written into kelwhich.pc, but no object depends on it: the
# folder of the preset release is borrowed, and gets its own prefix back.
prefix=$(sed -n 's/^CMAKE_INSTALL_PREFIX:PATH=//p' build/release/CMakeCache.txt)
trap 'cmake --preset release "-DCMAKE_INSTALL_PREFIX=$prefix" >/dev/null' EXIT
cmake --preset release -DCMAKE_INSTALL_PREFIX=/usr >/dev/null
echo "== building into build/release"
build release
rm -rf build/package
cpack --config build/release/CPackConfig.cmake -G DEB -B build/package >build/release/cpack.log 2>&1 || {
  cat build/release/cpack.log >&2
  exit 1
}
printf '%s\n' build/package/*.deb

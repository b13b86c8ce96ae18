#!/usr/bin/env bash
# Installs the Debian packages that are missing. Usage: scripts/setup.sh [build|bench|package|test|gates|browser|editors]
# Each set includes `build`; `gates` includes all but `browser` and `editors`. Never removes a package.
set -euo pipefail

packages=(
  g++ cmake ninja-build
  libboost1.81-dev libboost-thread1.81-dev librange-v3-dev nlohmann-json3-dev libfmt-dev libutfcpp-dev zlib1g-dev
)
test_packages=(time libcdb-dev libgtest-dev libgmock-dev strace python3-jsonschema patch groff-base zsh fish make parallel)
bench_packages=(time git python3 libbenchmark-dev gnu-which zsh fd-find strace valgrind watchman)
package_packages=(dpkg-dev)
gate_packages=(clang clang-format clang-tidy libclang-rt-14-dev llvm-14 cppcheck shellcheck python3 git pkgconf debootstrap lintian)
browser_packages=(chromium nodejs python3-jsonschema)
editor_packages=(neovim emacs-nox elpa-eglot kate nodejs)
command -v npm >/dev/null || { browser_packages+=(npm) editor_packages+=(npm); } # with it, Node.js is of another source

case "${1:-build}" in
  build) ;;
  bench) packages+=("${bench_packages[@]}") ;;
  package) packages+=("${package_packages[@]}") ;;
  test) packages+=("${test_packages[@]}") ;;
  browser) packages+=("${browser_packages[@]}") ;;
  editors) packages+=("${editor_packages[@]}") ;;
  gates) packages+=("${bench_packages[@]}" "${package_packages[@]}" "${test_packages[@]}" "${gate_packages[@]}") ;;
  *) echo "setup.sh: expected build, bench, package, test, gates, browser or editors, not '$1'" >&2; exit 2 ;;
esac

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "setup.sh: missing packages, and neither root nor sudo: ask your administrator for" >&2
    echo "  apt-get install ${missing[*]}" >&2
    exit 2
  fi
  as_root=(sudo)
fi
echo "== installing ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update -qq &&
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -o DPkg::Lock::Timeout=120 install -y -qq --no-install-recommends --no-remove "${missing[@]}"; } >"$log" 2>&1; then
  cat "$log" >&2
  echo "setup.sh: apt could not install ${missing[*]}; what it said stands above" >&2
  if dpkg-query -W libboost1.74-dev >/dev/null 2>&1; then
    echo "setup.sh: Boost 1.81 cannot stand beside Debian's default libboost1.74-dev: remove that first" >&2
  fi
  exit 2
fi

#!/usr/bin/env bash
# Installs the program as the README says; makes the Debian packages, has lintian check them, unpacks them, runs the
# program, builds and runs a consumer.
# Usage: scripts/check-packages.sh [--clean-root]
# --clean-root installs them in a new Debian 12 instead, which shows that their dependencies are enough. That needs root
# (for chroot) and the network.
. "$(dirname "$0")/lib.sh"
umask 022
[ "${1-}" != --clean-root ] || [ "$(id -u)" -eq 0 ] || { echo "check-packages.sh: --clean-root needs root" >&2; exit 2; }
scripts/setup.sh gates
top=$(mktemp -d -p "${TMPDIR:-/var/tmp}")
root=$top/root
trap 'rm -rf "$top"' EXIT

# These are run here, and by the clean root's own bash. ROOT is where the packages are unpacked.
quiet() { # COMMAND...: prints what it prints only if it fails
  local log
  log=$(mktemp)
  "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
  rm "$log"
}
check_completions() { # ROOT: bash, zsh and fish look into the folder that holds theirs, which is installed below ROOT
  local folders found file
  folders=$(
    zsh -fc 'print -l $fpath'
    HOME=/ env -u XDG_DATA_DIRS fish -c 'printf "%s\n" $fish_complete_path'
    printf '%s/bash-completion/completions\n' /usr/local/share /usr/share # without XDG_DATA_DIRS
  )
  mapfile -t found < <(find "$1" -name _kelwhich -o -name kelwhich.fish -o -path '*/completions/kelwhich')
  [ ${#found[@]} -eq 3 ] || { echo "check-packages.sh: not one completion for each shell: ${found[*]}" >&2; return 1; }
  for file in "${found[@]#"$1"}"; do
    grep -qxF "${file%/*}" <<<"$folders" || { echo "check-packages.sh: no shell looks for $file" >&2; return 1; }
  done
}
try_program() { # ROOT WORLD: the program alone, and a copy of the example
  local share=$1/usr/share kelwhich=$1/usr/bin/kelwhich
  cp -r "$share/doc/kelwhich/examples/installation" "$2"
  "$kelwhich" store build -i "$2" "$2/support.jsonl"
  "$kelwhich" -i "$2" sum legacy | tee "$2/answer"
  grep -q "^  1  KEL built-in  *supported  sum$" "$2/answer"
  ls -l "$share/man/man1/kelwhich.1.gz" "$share/zsh/vendor-completions/_kelwhich" \
    "$share/fish/vendor_completions.d/kelwhich.fish" "$share/kelwhich/"*.schema.json \
    "$share/doc/kelwhich/"{README,CHANGELOG,docs/program}.md "$share/doc/kelwhich/copyright"
  # shellcheck disable=SC1091
  (. "$share/bash-completion/completions/kelwhich" && complete -p kelwhich)
}
try_library() { # ROOT WORLD: consumers of the library, built in the folder of the examples
  local flags
  read -ra flags <<<"$(pkg-config --cflags --libs kelwhich kelwhich-standalone)"
  g++ -std=c++20 embedding/own_resolver.cpp -o "$2/own_resolver" "${flags[@]}"
  "$2/own_resolver" "$2" "$2/packages/kel/encode.vk" encode | tee "$2/answer"
  [ "$(cat "$2/answer")" = "0 $2/packages/kel/encode.vk" ]
  read -ra flags <<<"$(pkg-config --cflags --libs kelwhich-standalone)"
  g++ -std=c++20 embedding/load_gateway.cpp -o "$2/load_gateway" "${flags[@]}"
  "$2/load_gateway" libkelwhich.so.0 "$2" legacy | tee "$2/answer"
  [ "$(head -n 1 "$2/answer")" = "KELPath $2/host/kel/modern.vk" ]
}

echo "== the installation of the README, after the demo"
rm -rf build/release/cli/generated
quiet scripts/demo.sh
read -ra step < <(grep -o 'cmake --install [^`]*' README.md)
quiet env DESTDIR="$top/local" "${step[@]}"
"$top/local$(sed -n 's/^CMAKE_INSTALL_PREFIX:PATH=//p' build/release/CMakeCache.txt)/bin/kelwhich" --version
check_completions "$top/local"

scripts/package.sh
echo "== lintian"
lintian --allow-root --fail-on error,warning build/package/*.deb

if [ "${1-}" != --clean-root ]; then
  for package in build/package/*.deb; do dpkg-deb -x "$package" "$root"; done
  echo "== the program alone"
  try_program "$root" "$top/world"
  check_completions "$root"
  echo "== the library, and a consumer of it"
  libdir=$(dirname "$(find "$root" -name libkelwhich.so)")
  (
    cd examples
    export PKG_CONFIG_LIBDIR=$libdir/pkgconfig LD_LIBRARY_PATH=$libdir
    try_library "$root" "$top/world"
  )
  echo "== the unpacked packages work"
  exit 0
fi

# A debootstrap that was killed may leave these mounted; nothing may be mounted below what is removed.
trap 'umount -q "$root/proc" "$root/sys" || true; rm -rf --one-file-system "$top"' EXIT
echo "== a clean Debian 12 in $root"
quiet debootstrap --variant=minbase bookworm "$root" "${KELWHICH_MIRROR:-http://deb.debian.org/debian}"
# Only how this machine's apt reaches its packages (proxies, certificates), not its other settings.
apt-config dump | grep '^Acquire::' >"$root/etc/apt/apt.conf.d/90acquire" || true
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
mkdir "$root/packages"
cp build/package/*.deb "$root/packages/"
cp -r examples "$root/packages/"

proxies=()
for name in http_proxy https_proxy no_proxy; do
  [ -z "${!name:-}" ] || proxies+=("$name=${!name}")
done
chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
  "${proxies[@]}" bash -euo pipefail -c "$(declare -f quiet try_program try_library)"'
  cd /packages
  quiet apt-get update -q
  echo "== the program alone"
  quiet apt-get install -qy --no-install-recommends ./kelwhich_*.deb
  try_program "" /tmp/world
  echo "== the library, and a consumer of it"
  quiet apt-get install -qy --no-install-recommends ./libkelwhich0_*.deb ./libkelwhich-dev_*.deb g++ pkgconf
  cd examples
  try_library "" /tmp/world
'
echo "== the packages work on a clean root"

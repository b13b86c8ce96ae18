#!/usr/bin/env bash
# Compares the layout of the libraries' public types with the one that is checked in: members and their offsets, the
# order of virtual functions, the values of enumerations. tests/exports.sh compares the exported symbols.
# Usage: scripts/check-abi.sh [--renew]
. "$(dirname "$0")/lib.sh"
export LC_ALL=C
scripts/setup.sh gates

expected=tests/abi/layout.txt
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
mkdir -p "$tmp/tessgen/kelwhich"
printf '#define KELWHICH_EXPORT\n#define KELWHICH_NO_EXPORT\n' >"$tmp/tessgen/kelwhich/export.hpp"
compile=(clang++ -std=c++20 -w -Iinclude -Iplatform/include -I. "-I$tmp" tests/abi/face.cpp)

# The direct members of our own types; members of the standard library's types are left out.
"${compile[@]}" -S -emit-llvm -o /dev/null -Xclang -fdump-record-layouts -Xclang -fdump-vtable-layouts >"$tmp/dump"
awk '
  function flush() { if (block != "") print block "\n"; block = "" }
  /^\*\*\* Dumping|^VTable indices|^$/ { flush(); ours = 0 }
  /^VTable indices for .(tessgen|rux)::/ { ours = 1 }
  /^ +0 \| (class|struct) (tessgen|tessapp|foundation|rux|cmddistributor)::/ { ours = 1; block = "" }
  ours && !/^ +[0-9]+ \|     / && !/nvsize/ { block = block (block == "" ? "" : "\n") $0 }
  END { flush() }
' "$tmp/dump" >"$tmp/records"

"${compile[@]}" -fsyntax-only -fno-color-diagnostics -Xclang -ast-dump -Xclang -ast-dump-filter=tessgen >"$tmp/ast"
sed -nE "s/.*EnumConstantDecl.* ([A-Za-z]+) '(tessgen[A-Za-z:]+)'/\2::\1/p; s/.*value: Int/  =/p; s/.*EnumDecl .* class ([A-Za-z]+) '([a-z0-9_:]+)'.*/enum \1: \2/p" \
  "$tmp/ast" >"$tmp/enumerations"

awk 'BEGIN { RS = ""; ORS = "\n\n" } !seen[$0]++' "$tmp/records" "$tmp/enumerations" >"$tmp/layout"
for type in KELWhichResolver WhichResult FileSystem Session View; do # an empty list would equal an empty list
  grep -q "::$type\b" "$tmp/layout" || { echo "check-abi.sh: the compiler does not show $type" >&2; exit 2; }
done
[ "${1-}" != --renew ] || cp "$tmp/layout" "$expected"
diff -u "$expected" "$tmp/layout" || {
  echo "check-abi.sh: programs built against the libraries break; if that is meant: scripts/check-abi.sh --renew" >&2
  exit 1
}

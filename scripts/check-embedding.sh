#!/usr/bin/env bash
# Installs the library into a temporary folder, builds the consumers in examples/embedding against it by find_package
# and by pkg-config, builds the library over the small host there, and compares what all of them answer.
# Usage: scripts/check-embedding.sh [BUILD-FOLDER]    (default: build/release, which is built)
. "$(dirname "$0")/lib.sh"
build=${1:-build/release}

scripts/setup.sh gates
tmp=$(realpath "$(mktemp -d)")
trap 'rm -rf "$tmp"' EXIT
cxx=${CXX:-g++}
embedding=examples/embedding
host=$embedding/small_host
world=$tmp/world

quiet() { "$@" >"$tmp/log" 2>&1 || { cat "$tmp/log" >&2; return 1; }; }

# Fails unless the command succeeds and prints the lines of standard input; WORLD stands for the example's folder.
expect() {
  echo "  ${*//$tmp\//}"
  "$@" >"$tmp/output" || { echo "check-embedding.sh: exit status $? of $*" >&2; return 1; }
  sed -i "s|$world/|WORLD/|" "$tmp/output"
  diff -u --label expected --label printed - "$tmp/output"
}

expect_own_resolver() { # PROGRAM: a file that only the editor knows takes the place of host/kel/encode.vk
  expect "$1" "$world" "$world/packages/kel/encode.vk" encode size missing <<'END'
0 WORLD/packages/kel/encode.vk
3 size
4 size
END
  expect "$1" "$world" "$world/packages/kel/another.vk" encode <<'END'
0 WORLD/host/kel/encode.vk
END
}

expect_load_gateway() { # PROGRAM LIBRARY
  expect "$1" "$2" "$world" sum modern rows missing <<'END'
KELBuiltin sum
KELPath WORLD/host/kel/sum.vk
ORVAKBuiltin sum
KELPath WORLD/host/kel/modern.vk
ORVAKPath WORLD/host/library/signal/modern.vk
ORVAKBuiltin rows
END
}

expect_small_host() { # PROGRAM
  expect "$1" sum wave legacy tune rows table missing <<'END'
sum by kelwhich
  1 sum
  0 /small/host/kel/sum.vk
  3 sum
sum by invoke, 1-by-3
  KELBuiltin sum
  KELPath /small/host/kel/sum.vk
  ORVAKBuiltin sum
wave by kelwhich
  2 /small/mine/wave.vk
  2 /small/host/library/signal/wave.vk
wave by invoke, 1-by-2
  ORVAKPath /small/mine/wave.vk
  ORVAKPath /small/host/library/signal/wave.vk
legacy by kelwhich
  0 /small/host/kel/modern.vk
  0 /small/host/kel/legacy.vk
legacy by invoke, 1-by-2
  KELPath /small/host/kel/modern.vk
  KELPath /small/host/kel/legacy.vk
tune by kelwhich
  2 /small/packages/library/radio/tune.vk
  2 /small/host/library/signal/tune.vk
tune by invoke, 1-by-2
  ORVAKPath /small/packages/library/radio/tune.vk
  ORVAKPath /small/host/library/signal/tune.vk
rows by kelwhich
  4 rows
rows by invoke, 1-by-1
  ORVAKBuiltin rows
table by kelwhich
  3 table
table by invoke, 1-by-1
  ORVAKBuiltin table
missing by kelwhich
missing by invoke, 1-by-0
END
}

echo "== installing $build"
[ $# -gt 0 ] || { lock release; scripts/configure.sh release; }
cmake --build "$build" --target kelwhich kelwhich_standalone kelwhich_program kelwhich_page_files -- --quiet
quiet env DESTDIR="$tmp/root" cmake --install "$build"
prefix=$tmp/root$(sed -n 's/^CMAKE_INSTALL_PREFIX:PATH=//p' "$build/CMakeCache.txt")
libdir=$(dirname "$(find "$tmp/root" -name libkelwhich.so)")
cp -r examples/installation "$world"
quiet "$prefix/bin/kelwhich" store build -i "$world" "$world/support.jsonl"

echo "== consumers by find_package"
quiet cmake -G Ninja -S "$embedding" -B "$tmp/consumers" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx"
quiet cmake --build "$tmp/consumers"
expect_own_resolver "$tmp/consumers/own_resolver"
expect_load_gateway "$tmp/consumers/load_gateway" "$libdir/libkelwhich.so.0"

echo "== the consumer of docs/embedding.md"
mkdir "$tmp/document"
awk '/^    cmake_minimum_required/ { on = 1 } on && !/^    / { exit } on { print substr($0, 5) }' docs/embedding.md \
  >"$tmp/document/CMakeLists.txt"
quiet tests/docs/snippets.py "$tmp/document" docs/embedding.md
mv "$tmp/document/embedding.1.cpp" "$tmp/document/consumer.cpp"
quiet cmake -G Ninja -S "$tmp/document" -B "$tmp/document/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx"
quiet cmake --build "$tmp/document/build"
diff <("$tmp/document/build/consumer" "$world") <(printf '2\n0\n2\n')

echo "== consumers by pkg-config"
installed() { PKG_CONFIG_LIBDIR=$libdir/pkgconfig pkg-config --cflags --libs "$@"; }
read -ra flags < <(installed kelwhich kelwhich-standalone)
"$cxx" -std=c++20 "$embedding/own_resolver.cpp" -o "$tmp/own_resolver" "${flags[@]}" -Wl,-rpath,"$libdir"
expect_own_resolver "$tmp/own_resolver"
read -ra flags < <(installed kelwhich-standalone)
"$cxx" -std=c++20 "$embedding/load_gateway.cpp" -o "$tmp/load_gateway" "${flags[@]}" -Wl,-rpath,"$libdir"
expect_load_gateway "$tmp/load_gateway" "$libdir/libkelwhich.so.0"

echo "== the small host and the library in one project, under sanitizers"
quiet cmake -G Ninja -S "$host" -B "$tmp/sanitized" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
  -DKELWHICH_ROOM_UNITS=ON \
  -DCMAKE_CXX_FLAGS="-Wall -Wextra -O1 -g -fsanitize=address,undefined -fno-sanitize-recover=all"
quiet cmake --build "$tmp/sanitized" --target ask
expect_small_host "$tmp/sanitized/ask"

echo "== the library by itself over an exported small host, in absolute install folders"
quiet cmake -G Ninja -S "$host" -B "$tmp/host" -DCMAKE_CXX_COMPILER="$cxx"
quiet cmake --build "$tmp/host" --target small_host
quiet cmake -G Ninja -S . -B "$tmp/library" -DCMAKE_CXX_COMPILER="$cxx" -DKELWHICH_ROOM_UNITS=ON \
  -DKELWHICH_PLATFORM=small_host::services -Dsmall_host_DIR="$tmp/host" \
  -DCMAKE_INSTALL_PREFIX="$tmp/nowhere" -DCMAKE_INSTALL_LIBDIR="$tmp/lib" -DCMAKE_INSTALL_INCLUDEDIR="$tmp/include"
quiet cmake --build "$tmp/library"
quiet cmake --install "$tmp/library"
read -ra flags < <(PKG_CONFIG_LIBDIR=$tmp/lib/pkgconfig pkg-config --cflags --libs kelwhich)
"$cxx" -std=c++20 "$host/ask.cpp" -o "$tmp/ask" -I"$host" -Iplatform/include "${flags[@]}" -L"$tmp/host" -lsmall_host \
  -Wl,-rpath,"$tmp/lib:$tmp/host"
expect_small_host "$tmp/ask"
mkdir "$tmp/found"
cat >"$tmp/found/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(found LANGUAGES CXX)
find_package(kelwhich REQUIRED)
add_executable(ask "$PWD/$host/ask.cpp")
target_include_directories(ask PRIVATE "$PWD/$host")
target_link_libraries(ask PRIVATE kelwhich::kelwhich small_host::services)
END
quiet cmake -G Ninja -S "$tmp/found" -B "$tmp/found/build" -DCMAKE_CXX_COMPILER="$cxx" \
  -Dkelwhich_DIR="$tmp/lib/cmake/kelwhich" -Dsmall_host_DIR="$tmp/host"
quiet cmake --build "$tmp/found/build"
expect_small_host "$tmp/found/build/ask"
echo "== all consumers build and answer as expected"

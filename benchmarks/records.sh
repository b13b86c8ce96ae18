#!/usr/bin/env bash
# Writes N support records as JSON Lines, the same for the same N. Usage: records.sh N
# Line i (from 0) is a file of its own, named f<i>; every seventh has a second name, shared<i/7000>; every hundredth is a
# redirect, every thousandth a built-in.
set -euo pipefail
awk -v n="${1:?Usage: records.sh N}" 'BEGIN {
  for (i = 0; i < n; ++i) {
    name = "f" i
    if (i % 1000 == 999) {
      printf "{\"path\": \"%s\", \"builtin\": true, \"supportFlags\": [true,true,true,true,true,true]}\n", name
      continue
    }
    line = sprintf("{\"path\": \"library/area%d/part%d/%s.vk\"", i % 97, i % 1009, name)
    if (i % 7 == 0) line = line sprintf(", \"name\": [\"%s\", \"shared%d\"]", name, int(i / 7000))
    if (i % 100 == 50) line = line sprintf(", \"redirect\": true, \"symbol\": \"f%d\", \"unsupportedSymbols\": [\"%s\"]", i + 1, name)
    else if (i % 3 == 0) line = line ", \"supportFlags\": [true,false,false,true,false,false]"
    print line "}"
  }
}'

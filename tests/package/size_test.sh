#!/usr/bin/env bash
# The library as it ships, stripped, has at most 2 MiB. usage: size_test.sh SOURCE BUILD
set -euo pipefail
source=$1
build=$2
limit=$((2 * 1024 * 1024))

cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSUPPORTSDK_TESTS=OFF >/dev/null
nice -n 5 cmake --build "$build" --target supportsdk -j2 >"$build/log" || { cat "$build/log" >&2; exit 1; }
strip -o "$build/stripped.so" "$build/libsupportsdk.so"
size=$(stat -c %s "$build/stripped.so")
echo "stripped: $size bytes, limit $limit"
[ "$size" -le "$limit" ]

#!/usr/bin/env bash
# fuzz.sh [SECONDS]: builds every fuzz target and runs each for that long (default 60) from its kept seeds
# and the inputs that once crashed it. New inputs stay in the build folder.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzz_targets
for target in build/fuzz/fuzz/fuzz_*; do
    [ -x "$target" ] && [ -f "$target" ] || continue
    name=$(basename "$target" | sed 's/^fuzz_//')
    found=build/fuzz/found/$name
    mkdir -p "$found"
    echo "fuzz: $name"
    "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=0 \
        -verbosity=0 -artifact_prefix="$found/" "$found" "fuzz/corpus/$name"
done

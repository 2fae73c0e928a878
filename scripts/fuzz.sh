#!/usr/bin/env bash
# fuzz.sh [SECONDS]: builds every fuzz target and runs each for that long (default 60), as many at a time as
# there are processors, from its kept seeds and the inputs that once crashed it. New inputs stay in the build
# folder.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzz_targets

# fuzz TARGET: its output is shown whole, and only when it fails.
fuzz() {
    local target=$1 name log
    name=$(basename "$target" | sed 's/^fuzz_//')
    mkdir -p "build/fuzz/found/$name"
    log=build/fuzz/found/$name.log
    if "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -verbosity=1 -artifact_prefix="build/fuzz/found/$name/" \
        "build/fuzz/found/$name" "fuzz/corpus/$name" >"$log" 2>&1; then
        echo "fuzz: $name ok, $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") runs"
    else
        echo "fuzz: $name FAILED"
        tail -n 60 "$log"
        return 1
    fi
}
export -f fuzz
export seconds

find build/fuzz/fuzz -maxdepth 1 -name 'fuzz_*' -type f -executable -print0 | sort -z |
    xargs -0 -n 1 -P "$(nproc)" bash -c 'fuzz "$0"'

#!/usr/bin/env bash
# Fails, naming the files, when clang-format would change one. --fix changes them.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp')
if [ "${1:-}" = --fix ]; then
    exec clang-format -i "${files[@]}"
fi
clang-format --dry-run --Werror "${files[@]}"

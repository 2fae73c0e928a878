#!/usr/bin/env bash
# tidy.sh [--changed BASE]: clang-tidy over the sources of the library, the backends, the hosts and the service,
# as .clang-tidy says. With --changed only over the sources that differ from the commit BASE; a header is seen
# through the sources that include it.
set -euo pipefail
cd "$(dirname "$0")/.."

sources=('supportsdk/*.cpp' 'backends/*.cpp' 'hosts/*.cpp' 'service/*.cpp')
list=(git ls-files -z --cached --others --exclude-standard)
if [ "${1:-}" = --changed ]; then
    list=(git diff -z --name-only --diff-filter=d "${2:?usage: tidy.sh [--changed BASE]}")
fi

# The precompiled header is all that gets built: it spares each source the parsing of nlohmann/json and its like.
cmake --preset tidy >/dev/null
cmake --build --preset tidy --target supportsdk_pch >/dev/null

# A finding in a header comes with each source that includes it, and is shown once.
"${list[@]}" -- "${sources[@]}" |
    xargs -0 -r -n1 -P"$(nproc)" clang-tidy --quiet -p build/tidy 2>&1 |
    awk 'BEGIN { show = 1 }
         /warnings? (and [0-9]+ errors? )?generated\.$/ { next }
         /: (error|warning): / { show = !seen[$0]++ }
         show'

#!/usr/bin/env bash
# clang-tidy over the library, the backends, the hosts and the service, as .clang-tidy says.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset tidy >/dev/null
cmake --build --preset tidy

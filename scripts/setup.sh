#!/usr/bin/env bash
# Installs the packages of scripts/packages.txt that are missing. Does nothing when all are there.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t wanted < <(grep -Ev '^(#|$)' scripts/packages.txt)

missing=()
for package in "${wanted[@]}"; do
    state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "setup: run as root or install sudo" >&2; exit 1; }
    as_root=(sudo)
fi

echo "setup: installing ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get -qq update
# Prosody's package would start a system-wide server; the local service runs its own as a child.
policy=/usr/sbin/policy-rc.d
guard=
if [ ! -e "$policy" ]; then
    printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$policy" >/dev/null
    "${as_root[@]}" chmod 755 "$policy"
    guard=$policy
fi
remove_guard() { [ -z "$guard" ] || "${as_root[@]}" rm -f "$guard"; }
trap remove_guard EXIT
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -qq -y install --no-install-recommends "${missing[@]}" >&2

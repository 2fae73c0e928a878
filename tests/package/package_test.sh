#!/usr/bin/env bash
# Installs the build tree BUILD below a fresh folder, and builds and runs a host application outside the
# tree against it. usage: package_test.sh SOURCE BUILD
set -euo pipefail
source=$1
build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

# Pages show the code that is compiled here, line by line.
shows() {
    awk '/^```cpp$/ {inside = 1; next} /^```$/ {if (inside) exit} inside' "$source/$1" |
        diff - "$source/tests/package/consumer/$2" || fail "$1 shows another program"
}
shows README.md main.cpp
shows docs/diagnostics.md diagnostics.cpp

cmake --install "$build" --component SupportSDK --prefix "$work/first" >/dev/null
# What is installed can be moved: nothing of the first place is needed any more.
mv "$work/first" "$work/moved"
headers=$work/moved/include/SupportSDK
if grep -rlE '#include [<"](pugixml|asio|curl|strophe|sqlite3|openssl|glib|gio|libmnl)' "$headers"; then
    fail "public headers show other libraries"
fi

cmake -S "$source/tests/package/consumer" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
      -DCMAKE_PREFIX_PATH="$work/moved" >/dev/null
nice -n 5 cmake --build "$work/build" -j2 >"$work/log" || { cat "$work/log" >&2; fail "does not build"; }

export HOME=$work/home XDG_DATA_HOME=$work/data
"$work/build/quiet" || fail "the kit is felt before it is used"
timeout 30 "$work/build/app" || fail "the host application failed"
# It runs until it is stopped.
timeout 3 "$work/build/diagnostics" 2>/dev/null && fail "the host that reports checks has ended"
[ $? = 124 ] || fail "the host that reports checks failed"
# The whole of it, programs included, runs from where it was put.
cmake --install "$build" --prefix "$work/whole" >/dev/null
timeout 30 "$work/whole/bin/support-host" --data "$work/host" </dev/null >/dev/null || fail "support-host does not start"
echo "package ok"

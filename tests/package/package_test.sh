#!/usr/bin/env bash
# Installs a build and uses it: package_test.sh BUILD_DIRECTORY CLIENT_DIRECTORY CXX
set -euo pipefail
build=$1
client=$2
cxx=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null

expected=$'ZylModel client = {\n2 * x  <= 4 \n}'
check() {
  local output
  output=$("$@" 2>/dev/null)
  [ "$output" = "$expected" ] || { echo "unexpected output of $*: $output"; exit 1; }
}

cmake -S "$client" -B "$work/client" -DCMAKE_PREFIX_PATH="$work/prefix" \
  -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
cmake --build "$work/client" >/dev/null
check "$work/client/client_model"
check "$work/client/client_vorlane"
if [ -x "$work/client/client_cbc" ]; then
  [ "$("$work/client/client_cbc")" = 'Optimal 21' ] || { echo 'the installed engine fails'; exit 1; }
fi

libdir=$(dirname "$(find "$work/prefix" -name vorlane.pc)")
export PKG_CONFIG_PATH=$libdir
export LD_LIBRARY_PATH=${libdir%/pkgconfig}
for package in vorlane vorlane-model; do
  # shellcheck disable=SC2046
  "$cxx" -std=c++20 "$client/main.cpp" -o "$work/$package" $(pkg-config --cflags --libs "$package")
  check "$work/$package"
done
if [ -f "$libdir/vorlane-jace.pc" ]; then
  "$work/client/client_jace"
  # shellcheck disable=SC2046
  "$cxx" -std=c++20 "$client/jace.cpp" -o "$work/jace" $(pkg-config --cflags --libs vorlane-jace)
  "$work/jace"
fi
echo 'package: all as expected'

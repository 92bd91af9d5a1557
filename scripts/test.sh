#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test.
source "$(dirname "$0")/common.sh"
need_packages "${build_packages[@]}" "${test_packages[@]}"
cd "$root"
cmake --preset dev
cmake --build --preset dev -j "$jobs"
cmake --build --preset dev -j "$jobs" --target all_verify_interface_header_sets
ctest --preset dev

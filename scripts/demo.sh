#!/usr/bin/env bash
# The main job. demo.sh: solves the models of examples/data, then runs the example that edits one.
# demo.sh FILE [OPTIONS]: solves FILE with vorlane-solve.
source "$(dirname "$0")/common.sh"
need_packages "${build_packages[@]}" >&2
cmake -S "$root" --preset release >/dev/null
cmake --build "$root/build/release" -j "$jobs" >/dev/null
solve="$root/build/release/engines/cbc/vorlane-solve"
if [ $# -gt 0 ]; then
  exec "$solve" "$@"
fi
for model in "$root"/examples/data/*.mps "$root"/examples/data/*.lp; do
  echo "== vorlane-solve --solution ${model#"$root"/}"
  "$solve" --solution "$model"
  echo
done
echo "== warehouse"
exec "$root/build/release/examples/warehouse/warehouse" "$root/examples/data/cities.csv"

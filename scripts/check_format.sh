#!/usr/bin/env bash
# Names each source that clang-format would change.
source "$(dirname "$0")/common.sh"
cd "$root"

differing=0
while IFS= read -r file; do
  clang-format "$file" | cmp -s "$file" - && continue
  echo "$file is not formatted; run clang-format -i on it"
  differing=1
done < <(find bench engines examples extras include src tests -name '*.h' -o -name '*.cpp' 2>/dev/null)
exit $differing

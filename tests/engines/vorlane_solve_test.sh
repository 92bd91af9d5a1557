#!/usr/bin/env bash
# Runs vorlane-solve on good and bad input: vorlane_solve_test.sh PROGRAM DATA_DIRECTORY
set -u
solve=$1
data=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

check() {  # check NAME CONDITION...
  local name=$1
  shift
  if "$@"; then return; fi
  echo "failed: $name"
  failures=$((failures + 1))
}

# Bad input: exit status 2, one line on standard error that names the file, nothing else.
refuses() {  # refuses NAME PATTERN ARGUMENTS...
  local name=$1 pattern=$2
  shift 2
  "$solve" "$@" >"$work/out" 2>"$work/err" </dev/null
  local status=$?
  check "$name: status $status" test "$status" -eq 2
  check "$name: one line" test "$(wc -l <"$work/err")" -eq 1
  check "$name: $(cat "$work/err")" grep -q -e "$pattern" "$work/err"
  check "$name: no output" test ! -s "$work/out"
}

cat >"$work/good.mps" <<'MPS'
NAME          SMALL
ROWS
 N  COST
 L  LIM1
 G  MYEQN
COLUMNS
    MARKER    'MARKER'  'INTORG'
    X         COST      1.5   LIM1      1.0
    X         MYEQN     1.0
    MARKER    'MARKER'  'INTEND'
    Y         COST      1.0   LIM1      1.0
    Y         MYEQN     2.0
RHS
    RHS       LIM1      4.0   MYEQN     3.5
BOUNDS
 UP BND       X         4.0
 LO BND       Y         -1.0
ENDATA
MPS
cat >"$work/good.lp" <<'LP'
Minimize
 cost: 1.5 x + y
Subject To
 lim1: x + y <= 4
 eqn: x + 2 y >= 3.5
Bounds
 x <= 4
 y >= -1
Integers
 x
End
LP
gzip -k "$work/good.mps" "$work/good.lp"

for file in good.mps good.lp good.mps.gz good.lp.gz; do
  "$solve" "$work/$file" >"$work/out" 2>"$work/err"
  check "$file: status" test $? -eq 0
  check "$file: optimal" grep -qx 'status: Optimal' "$work/out"
  check "$file: objective" grep -qx 'objective: 1.75' "$work/out"
  check "$file: silent" test ! -s "$work/err"
done
keys=$("$solve" "$work/good.mps" | cut -d: -f1 | tr '\n' ' ')
check "keys: $keys" test "$keys" = \
  'status objective bound gap variables constraints terms read_s state_s extract_s solve_s peak_mib '
"$solve" --solution "$work/good.mps" >"$work/out"
check 'solution by name' grep -qx 'Y: 1.75' "$work/out"
"$solve" --print-model "$work/good.mps" >"$work/out"
check 'model is shown' grep -q 'LIM1: X  + Y  <= 4' "$work/out"
"$solve" --relax --quiet --gap 0.5 --time-limit 60 "$work/good.mps" >"$work/out"
check 'relaxed' grep -qx 'objective: 1.75' "$work/out"

for file in "$data"/*.mps "$data"/*.lp; do
  [ -e "$file" ] || continue
  "$solve" "$file" >"$work/out"
  check "$file" grep -qx 'status: Optimal' "$work/out"
done

sed 's/4.0   MYEQN     3.5/4.0   MYEQN     99/' "$work/good.mps" >"$work/infeasible.mps"
"$solve" "$work/infeasible.mps" >"$work/out"
check 'infeasible is an answer' test $? -eq 0
check 'infeasible is told' grep -qx 'status: Infeasible' "$work/out"

"$solve" --help | grep -q '^usage:' || check 'help' false
"$solve" --version | grep -q '^vorlane-solve ' || check 'version' false

: >"$work/empty.mps"
printf '\n\n* nothing\n' >"$work/blank.mps"
head -n 8 "$work/good.mps" >"$work/truncated.mps"
head -c 60 "$work/good.mps.gz" >"$work/truncated.mps.gz"
head -c 4000 /dev/urandom >"$work/garbage.mps"
printf 'no model at all\nEND\n' >"$work/text.lp"
sed 's/1.5   LIM1/1.5x  LIM1/' "$work/good.mps" >"$work/badnumber.mps"
sed 's/1.5   LIM1/1e999 LIM1/' "$work/good.mps" >"$work/range.mps"
sed 's/LIM1      1.0/NOROW     1.0/' "$work/good.mps" >"$work/norow.mps"
refuses 'no file' 'no file given'
refuses 'two files' 'more than one file' "$work/good.mps" "$work/good.lp"
refuses 'missing file' 'absent.mps: No such file' "$work/absent.mps"
refuses 'directory' 'is a directory' "$work"
refuses 'empty file' 'is empty' "$work/empty.mps"
refuses 'blank file' 'holds no model' "$work/blank.mps"
refuses 'truncated file' 'line 8: .*ends before' "$work/truncated.mps"
refuses 'truncated gzip' 'truncated.mps.gz: ' "$work/truncated.mps.gz"
refuses 'garbage' 'garbage.mps: ' "$work/garbage.mps"
refuses 'text' 'text.lp: ' "$work/text.lp"
refuses 'number' 'badnumber.mps: ' "$work/badnumber.mps"
refuses 'number out of range' 'range.mps: ' "$work/range.mps"
refuses 'unknown row' 'norow.mps: ' "$work/norow.mps"
refuses 'unknown option' 'unknown option' --nonsense "$work/good.mps"
refuses 'bad limit' 'time-limit' --time-limit soon "$work/good.mps"
refuses 'missing value' 'needs a value' --gap

[ "$failures" -eq 0 ] && echo 'vorlane-solve: all as expected'
exit "$((failures > 0))"

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

# A small model on standard input: its status and value, and nothing but keys on standard output.
answers() {  # answers NAME.FORMAT STATUS OBJECTIVE [PATTERN of the model's text]
  cat >"$work/$1"
  "$solve" "$work/$1" >"$work/out" 2>"$work/err"
  check "$1: $(cat "$work/err")" test ! -s "$work/err"
  check "$1: $(head -n 2 "$work/out" | tr '\n' ' ')" test \
    "$(head -n 2 "$work/out")" = "$(printf 'status: %s\nobjective: %s' "$2" "$3")"
  [ "$2" = Optimal ] && check "$1: bound" grep -qx "bound: $3" "$work/out"
  [ $# -lt 4 ] && return
  "$solve" --print-model "$work/$1" >"$work/out"
  check "$1: $(cat "$work/out")" grep -q -e "$4" "$work/out"
}

# An LP model in one line.
refusesLp() {  # refusesLp LINE PATTERN 'TEXT, | FOR NEW LINES'
  printf '%s\n' "$3" | tr '|' '\n' >"$work/bad.lp"
  refuses "$3" "bad.lp: line $1: .*$2" "$work/bad.lp"
}

# good.mps after an edit.
refusesMps() {  # refusesMps LINE PATTERN SED_SCRIPT
  sed "$3" "$work/good.mps" >"$work/bad.mps"
  refuses "$3" "bad.mps: line $1: .*$2" "$work/bad.mps"
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
printf 'max x st x <= 9 bounds x <= 6.5 int x end' >"$work/rounded.lp"
check 'relaxed bound' grep -qx 'objective: 6.5' <("$solve" --relax "$work/rounded.lp")
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
check 'infeasible has no bound' grep -qx 'bound: none' "$work/out"

# What both formats can say, with optima computed by hand.
answers constant.lp Optimal 7 'obj = (x  + 5 ' <<'LP'
Maximize
 obj: x + 5
st
 c1: x <= 2
End
LP
answers forms.lp Optimal 5 'r: 2 <= z  + -1 \* y  <= 5' <<'LP'
\ all forms of bounds and rows
min
 3x + 2y
 - 4 z
subject to
 c1 : x + y >= 1.5 c2: - x + 3 z =< 4
 8 => x
 r: 5 >= z - y >= 2
bounds
 -inf <= x <= +infinity
 y FREE
 -2 <= z
 .1e1 <= y <= 3
end
LP
answers types.lp Optimal 13 'a(1,2)  == 2' <<'LP'
Maximum \ integers before bounds, a variable in no row, signs and stars
 2.5 b.c_#1 + - -3 * a(1,2) + +2 q - 10 + 0.5 only
Such That
 lim: a(1,2) + b.c_#1 + q < 9.9
 e: a(1,2) = 2
 neg: - q => -4
Integer
 b.c_#1
Binaries
 only q
Bound
 b.c_#1 <= 6.5
 b.c_#1 >= -1e30
 only <= 0.5
 a(1,2) <= inf
end
LP
printf 'Minimize\n %s: %s\nst\n %s >= 3 \\ %s\nEnd\n' \
  "$(printf 'n%.0s' {1..2000})" "$(printf 'x%.0s' {1..500})" "$(printf 'x%.0s' {1..500})" \
  "$(printf 'c%.0s' {1..9000})" | answers long.lp Optimal 3
answers signs.mps Optimal -3 'R4: 5 <= Z  <= 7' <<'MPS'
* every sign of a range, a constant, a sense, a second free row
NAME          SIGNS
OBJSENSE
    MAXIMIZE
ROWS
 N  COST
 L  R1
 G  R2
 E  R3
 E  R4
 N  FREE1
COLUMNS
    X         COST              -1.0   R1                 1.0
    X         FREE1              2.0
    Y         R2                 1.0   R3                 1.0
    Y         COST              -1.0
    Z         R4                 1.0   COST              -1.0
RHS
    RHS       COST             -10.0   R1                 4.0
    RHS       R2                 5.0   R3                 6.0
    RHS       R4                 7.0   FREE1              3.0
RANGES
    RNG       R1                 2.0   R2                -9.0
    RNG       R3                 1.0   R4                -2.0
BOUNDS
 FR BND       X
ENDATA
MPS
answers blanks.mps Optimal 3 'MY COST = (X ONE ' <<'MPS'
NAME          BLANKS
ROWS
 N  MY COST
 G  MY ROW
COLUMNS
    X ONE     MY COST            1.0   MY ROW             1.0
    X TWO     MY COST            2.0   MY ROW             1.0
RHS
              MY ROW             2.0
BOUNDS
 UP MY BND    X ONE              1.0
ENDATA
MPS
long=$(printf 'X%.0s' {1..300})
answers free.mps Optimal -34 'L1\[-9.5..-2\]' <<MPS
$(printf '*%.0s' {1..500})
NAME A
ROWS
 N COST
 G ROW1
COLUMNS
 $long COST 1.0 ROW1 1.0
 L1 COST 1.0
 L2 COST 1.0
 L3 COST 1.0
 M 'MARKER' 'INTORG'
 L4 COST -1.0
 L5 COST -1.0
 M 'MARKER' 'INTEND'
 L6 COST -1.0
 L7 COST -1.0
 L8 COST -1.D0
 L9 COST 1.0
RHS
 ROW1 2.5
BOUNDS
 UP BND L1 -2
 LO BND L1 -9.5
 FX BND L2 -1
 BV BND L3
 UP BND L4 8.5
 UI BND L6 5.5
 MI BND L7
 UP BND L7 5
 LO BND L8 -Inf
 UP BND L8 4
 UI BND L9 -2.5
 LI BND L9 -3.2
ENDATA
whatever follows
MPS
answers empty.lp Optimal 0 ' (0 ,' <<<'min st x >= 2
end'

# A search that takes days, with solutions from the start: it ends when asked to, and tells the best.
awk 'BEGIN { print "min"; for (i = 0; i < 5; i++) printf " + p%d + q%d", i, i; print "\nst"
  for (i = 0; i < 5; i++) {
    total = 0
    for (j = 0; j < 50; j++) {
      a = (7919 * (i + 3) * (j + 11) * (j + i + 5)) % 101
      total += a
      if (a > 0) printf " + %d x%d", a, j
    }
    printf " + p%d - q%d = %d\n", i, i, int(total / 2)
  }
  print "binaries"; for (j = 0; j < 50; j++) print " x" j; print "end" }' >"$work/market.lp"
# Whether the process is the command and waits for SIGINT and SIGTERM.
hearsSignals() {
  [ "/proc/$1/exe" -ef "$solve" ] || return
  for mask in SigBlk SigCgt; do
    [ $((0x$(sed -n "s/^$mask:\\s*//p" "/proc/$1/status") & 0x4002)) -eq $((0x4002)) ] || return
  done
}
for signal in INT TERM; do
  "$solve" "$work/market.lp" >"$work/out" 2>"$work/err" &
  search=$!
  until hearsSignals $search; do kill -0 $search 2>/dev/null || break; done
  kill -s $signal $search
  wait $search
  status=$?
  # Both are fine, by how far the search has come.
  check "SIG$signal: status $status" test "$status" -le 1
  check "SIG$signal: $(head -n 1 "$work/out")" grep -qxE 'status: (Feasible|Unknown)' "$work/out"
done
"$solve" --time-limit 1 "$work/market.lp" >"$work/out"
check "limit: $(head -n 1 "$work/out")" grep -qx 'status: Feasible' "$work/out"

"$solve" --help | grep -q '^usage:' || check 'help' false
"$solve" --version | grep -q '^vorlane-solve ' || check 'version' false

: >"$work/empty.mps"
printf '\n\n* nothing\n' >"$work/blank.mps"
head -n 8 "$work/good.mps" >"$work/truncated.mps"
head -c 60 "$work/good.mps.gz" >"$work/truncated.mps.gz"
{ head -c -8 "$work/good.mps.gz" && printf 'AAAABBBB'; } >"$work/damaged.mps.gz"
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
refuses 'damaged gzip' 'is damaged' "$work/damaged.mps.gz"
refuses 'garbage' 'garbage.mps: ' "$work/garbage.mps"
refuses 'text' 'text.lp: ' "$work/text.lp"
refuses 'number' 'badnumber.mps: ' "$work/badnumber.mps"
refuses 'number out of range' 'range.mps: ' "$work/range.mps"
refuses 'unknown row' 'norow.mps: ' "$work/norow.mps"
refuses 'unknown option' 'unknown option' --nonsense "$work/good.mps"
refuses 'bad limit' 'time-limit' --time-limit soon "$work/good.mps"
refuses 'missing value' 'needs a value' --gap

refuses 'letters' 'unknown option -x' -xy "$work/good.mps"
refuses 'value' 'unknown option --quiet=3' --quiet=3 "$work/good.mps"
refuses 'device' 'not a regular file' /dev/zero
for arguments in --help --version "$work/good.mps"; do
  "$solve" $arguments >/dev/full 2>"$work/err"
  check "full disk: $arguments" test $? -eq 2
done

# What the readers would take for something else.
refusesLp 1 'quadratic' 'min x + y + [ x^2 ]/2|st|x >= 1|end'
refusesLp 1 'quadratic' 'min x^2|st|x >= 1|end'
refusesLp 1 "'2(x+y)'" 'min 2(x+y)|st|x >= 1|end'
refusesLp 1 "'/'" 'min x / 2|st|x >= 1|end'
refusesLp 1 "':'" 'max: 3x+2y;|c1: x>=3;|end'
refusesLp 1 "twice" 'min x + 2 x|st|x >= 1|end'
refusesLp 1 'second constant' 'min 2 + x + 3 + y|st|x >= 1|end'
refusesLp 3 "'-'" 'min x|st|c1: b = 1 -> x >= 3|end'
refusesLp 3 "'+'" 'min x|st|c1: x >= 3 + 1|x >= 1|end'
refusesLp 3 "'y'" 'min x|st|c1: x >= y|end'
refusesLp 3 "'z'" 'min x|st|c1: x >= 3 z|end'
refusesLp 3 'constant' 'min x|st|c1: x + 3 >= 4|end'
refusesLp 3 "'>='" 'min x|st|c1: 3 <= x >= 4|end'
refusesLp 3 'out of range' 'min x|st|c1: x >= 1e30|end'
refusesLp 4 'End' 'min x|st|c1: x|End'
refusesLp 4 'second row' 'min x|st|c1: x >= 1|c1: x <= 4|end'
refusesLp 5 'out of range' 'min x|st|x >= 1|bounds|x >= inf end'
refusesLp 5 "'5'" 'min x|st|x >= 1|bounds|x <= 4 5|end'
refusesLp 4 'not supported' 'min x|st|x >= 1|semi-continuous|x|end'
refusesLp 4 'not supported' 'min x|st|x >= 1|SOS|s: S1:: x:1|end'
refusesLp 4 'behind End' 'min x|st|x >= 1|end x'
refusesMps 13 "'QUADOBJ'" 's/^RHS/QUADOBJ/'
refusesMps 18 "'CSECTION'" 's/^ENDATA/CSECTION/'
refusesMps 16 "'SC'" 's/ UP BND/ SC BND/'
refusesMps 5 'second row' 's/MYEQN/LIM1/'
refusesMps 12 'second column' 's/^    Y         MYEQN/    X         MYEQN/'
refusesMps 9 'second entry' 's/X         MYEQN/X         LIM1/'
refusesMps 17 'second bound' 's/ LO BND       Y/ UP BND       X/'
refusesMps 17 'exclude each other' 's/BND       Y         -1.0/BND       Y         9.0/;s/UP BND       X /UP BND       Y /'
refusesMps 17 'second set' 's/ LO BND/ LO BOU/'
refusesMps 16 'out of range' 's/ X         4.0/ X      -1e999/'
refusesMps 14 'out of range' 's/4.0   MYEQN/1e30  MYEQN/'
refusesMps 14 "'nan' is not" 's/4.0   MYEQN/nan   MYEQN/'

[ "$failures" -eq 0 ] && echo 'vorlane-solve: all as expected'
exit "$((failures > 0))"

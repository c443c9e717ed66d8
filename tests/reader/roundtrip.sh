#!/bin/sh
# Printing a parsed program must give text that parses back to the same
# net: print(parse(print(p))) = print(p), for the examples and for generated
# programs. Each generated program also comes fully parenthesised, and both
# spellings must print alike, which checks the operator precedences.
# usage: roundtrip.sh BINDIR EXAMPLES_DIR PYTHON GENERATOR SEED COUNT
set -u
bindir=$1 examples=$2 python=$3 generator=$4 seed=$5 count=$6
TMP=$(mktemp -d)
trap 'rm -rf "$TMP"' EXIT
failures=0

print() {
  if ! "$bindir/korvel-run" --print=net "$1" >"$2" 2>"$TMP/err"; then
    echo "FAIL: cannot read $1:"
    cat "$2" "$TMP/err"
    return 1
  fi
}

check() {
  want=$3
  if ! cmp -s "$want" "$2"; then
    echo "FAIL: $1"
    diff "$want" "$2" | head -20
    failures=$((failures + 1))
  fi
}

fixed_point() {
  print "$1" "$TMP/once" || { failures=$((failures + 1)); return; }
  print "$TMP/once" "$TMP/twice" || { failures=$((failures + 1)); return; }
  check "printing $1 is not a fixed point" "$TMP/twice" "$TMP/once"
}

for f in "$examples"/*.qv; do
  fixed_point "$f"
done

"$python" "$generator" "$seed" "$count" "$TMP/gen" || exit 1
for f in "$TMP"/gen/prog*[0-9].qv; do
  fixed_point "$f"
  print "${f%.qv}.full.qv" "$TMP/full" || { failures=$((failures + 1)); continue; }
  check "$f and its fully parenthesised spelling differ" "$TMP/full" "$TMP/once"
done

[ "$failures" -eq 0 ] || { echo "$failures failures"; exit 1; }
echo "all programs are fixed points"

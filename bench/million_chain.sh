#!/bin/sh
# A program whose output depends on a chain of N equations (one million by
# default), each the previous one plus one, run by the batch simulator:
# load and build, two steps, a reset, one more step. Prints the time and
# the peak memory, and checks the last output.
#
#   bench/million_chain.sh [N] [BIN_DIR]     (BIN_DIR defaults to build/bin)
#
# The chain is loaded with --no-minimise: the minimal network is quadratic
# on chains.
set -eu
n=${1:-1000000}
bin=${2:-build/bin}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

awk -v n="$n" 'BEGIN {
  print "node chain (a : int) returns (y : int);"
  printf "var x1"
  for (i = 2; i < n; i++) printf ", x%d", i
  print " : int;"
  print "let"
  print "  x1 = a + 1;"
  for (i = 2; i < n; i++) printf "  x%d = x%d + 1;\n", i, i - 1
  printf "  y = x%d;\n", n - 1
  print "tel"
}' >"$dir/chain.qv"
printf '1\n2\n#reset\n5\n' >"$dir/inputs"

echo "equations: $n"
if [ -x /usr/bin/time ]; then
  /usr/bin/time -f "time: %e s, peak memory: %M KiB" \
    "$bin/korvel-run" --no-minimise "$dir/chain.qv" "$dir/inputs" >"$dir/trace"
else
  time "$bin/korvel-run" --no-minimise "$dir/chain.qv" "$dir/inputs" >"$dir/trace"
fi

want="5  #$((5 + n - 1))  "
got=$(tail -n 1 "$dir/trace")
if [ "$got" = "$want" ]; then
  echo "last step: $got"
else
  echo "wrong last step: '$got', expected '$want'" >&2
  exit 1
fi

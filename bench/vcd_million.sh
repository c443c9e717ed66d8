#!/bin/sh
# A million steps (by default) of examples/counter.qv run by the batch
# simulator, with and without --vcd, five times each, alternating. Prints
# the median of each and their ratio; the VCD must cost at most twice the
# plain run.
#
#   bench/vcd_million.sh [STEPS] [BIN_DIR]     (BIN_DIR defaults to build/bin)
set -eu
steps=${1:-1000000}
bin=${2:-build/bin}
here=$(dirname "$0")
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

awk -v n="$steps" 'BEGIN { for (i = 0; i < n; i++) print (i % 3 ? "t" : "f"), (i % 7 ? "f" : "t"), 5 }' \
  >"$dir/inputs"

seconds() {
  start=$(date +%s.%N)
  "$@" >/dev/null
  end=$(date +%s.%N)
  awk -v a="$start" -v b="$end" 'BEGIN { print b - a }'
}

for i in 1 2 3 4 5; do
  seconds "$bin/korvel-run" "$here/../examples/counter.qv" "$dir/inputs" >>"$dir/plain"
  seconds "$bin/korvel-run" --vcd "$dir/run.vcd" "$here/../examples/counter.qv" "$dir/inputs" >>"$dir/vcd"
done
median() { sort -n "$1" | sed -n 3p; }
plain=$(median "$dir/plain")
vcd=$(median "$dir/vcd")
ratio=$(awk -v a="$vcd" -v b="$plain" 'BEGIN { print a / b }')
printf 'steps: %s\nwithout --vcd: %.3f s (median of 5)\nwith --vcd:    %.3f s (median of 5)\nratio: %.2f (at most 2)\n' \
  "$steps" "$plain" "$vcd" "$ratio"
awk -v r="$ratio" 'BEGIN { exit !(r <= 2) }'

#!/bin/sh
# Load time and peak memory of the batch simulator on programs of each
# loading shape (bench/load_shapes.sh), medians of three runs, against a
# baseline build measured in the same run.
#
#   bench/load_memory.sh BIN_DIR [BASE_BIN_DIR] [SIZES] [SHAPES] [FLAGS]
#
# SIZES defaults to "100000 1000000", SHAPES to "chain layered ring sum";
# FLAGS (for instance --no-minimise) go to korvel-run. Each program runs
# two steps; the figure per equation is the peak resident memory divided
# by N.
set -eu
bin=$1
base=${2:-}
sizes=${3:-100000 1000000}
shapes=${4:-chain layered ring sum}
flags=${5:-}
here=$(dirname "$0")
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
printf '1\n2\n' >"$dir/inputs"

# Prints "seconds KiB", each the median of three runs of korvel-run from $1.
measure() {
  : >"$dir/runs"
  for run in 1 2 3; do
    # shellcheck disable=SC2086
    /usr/bin/time -f "%e %M" -o "$dir/time" "$1/korvel-run" $flags "$2" "$dir/inputs" >/dev/null
    cat "$dir/time" >>"$dir/runs"
  done
  echo "$(cut -d' ' -f1 "$dir/runs" | sort -n | sed -n 2p) $(cut -d' ' -f2 "$dir/runs" | sort -n | sed -n 2p)"
}

printf '%-8s %8s %9s %10s %8s' shape n seconds "peak KiB" "B/eq"
[ -n "$base" ] && printf ' %9s %10s %8s %7s %7s' "base s" "base KiB" "base B/eq" "time x" "mem x"
echo
for shape in $shapes; do
  for n in $sizes; do
    "$here/load_shapes.sh" "$shape" "$n" >"$dir/p.qv"
    set -- $(measure "$bin" "$dir/p.qv")
    secs=$1
    kib=$2
    printf '%-8s %8d %9s %10d %8d' "$shape" "$n" "$secs" "$kib" $((kib * 1024 / n))
    if [ -n "$base" ]; then
      set -- $(measure "$base" "$dir/p.qv")
      printf ' %9s %10d %8d %7s %7s' "$1" "$2" $(($2 * 1024 / n)) \
        "$(awk -v a="$secs" -v b="$1" 'BEGIN { printf "%.2f", (b > 0 ? a / b : 0) }')" \
        "$(awk -v a="$kib" -v b="$2" 'BEGIN { printf "%.2f", a / b }')"
    fi
    echo
  done
done

#!/bin/sh
# Draws the README's SVG chronogram: examples/counter.qv run headless on
# examples/counter.in.
#
#   tools/chronogram-picture.sh [OUT_DIR]     (default: docs/screenshots)
#
# KORVEL_RUN names the binary (default: build/bin/korvel-run).
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
out=${1:-$root/docs/screenshots}
mkdir -p "$out"
"${KORVEL_RUN:-$root/build/bin/korvel-run}" --svg "$out/counter-chronogram.svg" \
  "$root/examples/counter.qv" "$root/examples/counter.in" >/dev/null

#!/bin/bash
# Takes PNG pictures of korvel's windows for the README: runs an example on
# a private Xvfb server with the live chronogram turned on, drives a few
# steps through the windows so the outputs show values, and saves one
# picture per window.
#
#   tools/screenshots.sh [OUT_DIR]      (default: docs/screenshots)
#
# KORVEL names the binary (default: build/bin/korvel). Needs Xvfb, xdotool,
# xwininfo, xwd and netpbm.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
out=${1:-$root/docs/screenshots}
korvel=${KORVEL:-$root/build/bin/korvel}
example=$root/examples/counter.qv

if [ -z "${DISPLAY_FOR_SCREENSHOTS:-}" ]; then
  # Again, inside a private server.
  exec env DISPLAY_FOR_SCREENSHOTS=1 "$root/tools/with-xvfb" "$0" "$out"
fi

for tool in xdotool xwininfo xwd xwdtopnm pnmtopng; do
  command -v "$tool" >/dev/null || { echo "screenshots: $tool is missing" >&2; exit 1; }
done
mkdir -p "$out"
trace=$(mktemp)
resources=$(mktemp)
echo 'Korvel.chronogram: true' >"$resources"
XENVIRONMENT=$resources "$korvel" -v "$example" >"$trace" &
pid=$!
trap 'kill "$pid" 2>/dev/null; rm -f "$trace" "$resources"' EXIT

# Waits until the trace has at least $1 lines.
wait_trace() {
  for _ in $(seq 300); do
    [ "$(wc -l <"$trace")" -ge "$1" ] && return 0
    sleep 0.1
  done
  echo "screenshots: korvel did not answer; trace so far:" >&2
  cat "$trace" >&2
  exit 1
}

# The window of the top-level named $1, once it is shown.
window() {
  for _ in $(seq 300); do
    id=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | head -1) || true
    [ -n "$id" ] && { echo "$id"; return 0; }
    sleep 0.1
  done
  echo "screenshots: no window $1" >&2
  exit 1
}

# The items of the Form inside shell $1, top to bottom: the children of its
# one child, ordered by their y offset.
items() {
  form=$(xwininfo -children -id "$1" | awk '$1 ~ /^0x/ { print $1; exit }')
  xwininfo -children -id "$form" |
    awk '$1 ~ /^0x/ { for (i = 2; i <= NF; i++) if ($i ~ /^[0-9]+x[0-9]+[+-]/) {
                        split($i, g, "+"); print g[3], $1 } }' |
    sort -n | awk '{ print $2 }'
}

click() { xdotool mousemove --window "$1" 5 5 click 1; }

wait_trace 2
main=$(window korvel)
inputs=$(window counter-inputs)
outputs=$(window counter-outputs)
chrono=$(window counter-chrono)
# No window manager: place the windows side by side ourselves.
xdotool windowmove "$inputs" 0 0 windowmove "$outputs" 340 0 windowmove "$main" 680 0 \
  windowmove "$chrono" 0 420

mapfile -t rows < <(items "$inputs")
# Rows: mode button, tick, reset, limit, STEP. The limit field is the lower
# child of its dialog.
field=$(xwininfo -children -id "${rows[3]}" | awk '$1 ~ /^0x/ { id = $1 } END { print id }')
xdotool mousemove --window "$field" 5 5 key ctrl+a ctrl+k type 3
xdotool key Return
click "${rows[1]}"
click "${rows[1]}"
click "${rows[1]}"
wait_trace 10
# Out of the way, so no button shows the pointer's highlight.
xdotool mousemove 1200 1000

for shot in "korvel:$main" "inputs:$inputs" "outputs:$outputs" "chrono:$chrono"; do
  xwd -silent -id "${shot#*:}" | xwdtopnm 2>/dev/null | pnmtopng >"$out/${shot%%:*}.png"
done
echo "screenshots: wrote $out/korvel.png, inputs.png, outputs.png, chrono.png"

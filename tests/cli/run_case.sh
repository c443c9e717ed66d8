#!/bin/sh
# Runs one process-level case and compares its output byte for byte.
# A case is a folder holding:
#   cmd     a shell script run from the case folder, with the programs on PATH,
#           $EXAMPLES naming the examples folder and $TMP a scratch folder;
#   stdin   (optional) fed to the script's standard input;
#   stdout, stderr (optional, empty when absent), status (optional, 0 when
#   absent): what the script must produce.
set -u
bindir=$1
case_dir=$2
examples=$3

TMP=$(mktemp -d)
trap 'rm -rf "$TMP"' EXIT
input=/dev/null
[ -f "$case_dir/stdin" ] && input=$case_dir/stdin

(cd "$case_dir" && PATH="$bindir:$PATH" EXAMPLES="$examples" TMP="$TMP" \
  sh ./cmd <"$input" >"$TMP/.stdout" 2>"$TMP/.stderr")
status=$?

want_status=0
[ -f "$case_dir/status" ] && want_status=$(cat "$case_dir/status")

failed=0
for stream in stdout stderr; do
  want=$case_dir/$stream
  [ -f "$want" ] || want=/dev/null
  if ! cmp -s "$want" "$TMP/.$stream"; then
    echo "--- $stream differs (expected, then actual):"
    diff "$want" "$TMP/.$stream" | head -40
    failed=1
  fi
done
if [ "$status" != "$want_status" ]; then
  echo "--- exit status $status, expected $want_status"
  failed=1
fi
exit $failed

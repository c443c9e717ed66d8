# Helpers of the hostile cases, sourced by each case's cmd. Programs and
# inputs are written to $TMP and run from there, so that messages name
# them by their short names.

# prog NAME: standard input becomes the program $TMP/NAME.qv.
prog() { cat >"$TMP/$1.qv"; }

# run NAME [LINE...]: the batch simulator on NAME.qv, one input line per
# argument after the name; then its exit status.
run() {
  name=$1
  shift
  : >"$TMP/$name.in"
  [ $# -gt 0 ] && printf '%s\n' "$@" >"$TMP/$name.in"
  echo "== $name"
  (cd "$TMP" && korvel-run "$name.qv" "$name.in")
  echo "status $?"
}

# mode MODE NAME: one of korvel-run's loading modes on NAME.qv.
mode() {
  echo "== $1 $2"
  (cd "$TMP" && korvel-run "$1" "$2.qv")
  echo "status $?"
}

# sim NAME: the simulator itself on NAME.qv, without a display: a program
# it refuses is refused before any window opens.
sim() {
  echo "== korvel $1"
  (cd "$TMP" && DISPLAY= korvel "$1.qv")
  echo "status $?"
}

# dump MODE NAME: a loading mode whose output is too long to keep whole:
# its first and last lines, its size and checksum, then the exit status.
dump() {
  echo "== $1 $2"
  (cd "$TMP" && korvel-run "$1" "$2.qv" >"$TMP/$2.out")
  status=$?
  head -n 5 "$TMP/$2.out"
  echo ...
  tail -n 2 "$TMP/$2.out"
  echo "bytes $(wc -c <"$TMP/$2.out"), cksum $(cksum <"$TMP/$2.out" | cut -d' ' -f1)"
  echo "status $status"
}

#!/bin/sh
# Loads every example and a corpus of generated programs in each build mode.
# Examples must load; a generated program may be refused (they are only
# well-formed, not well-typed), but only with status 1, and a program that
# loads never has more classes than nodes.
# usage: load_corpus.sh BINDIR EXAMPLES_DIR PYTHON GENERATOR SEED COUNT
set -u
bindir=$1 examples=$2 python=$3 generator=$4 seed=$5 count=$6
TMP=$(mktemp -d)
trap 'rm -rf "$TMP"' EXIT
failures=0

load() { # FILE MUST_LOAD FLAGS...
  file=$1 must=$2
  shift 2
  "$bindir/korvel-run" --stats "$@" "$file" >"$TMP/out" 2>"$TMP/err"
  status=$?
  if [ "$status" -eq 1 ] && [ "$must" = no ]; then
    return
  fi
  if [ "$status" -ne 0 ]; then
    echo "FAIL: $file $* gives status $status"
    head -5 "$TMP/err"
    failures=$((failures + 1))
    return
  fi
  nodes=$(sed -n 's/^nodes: //p' "$TMP/out")
  classes=$(sed -n 's/^classes: //p' "$TMP/out")
  if [ -z "$nodes" ] || [ -z "$classes" ] || [ "$classes" -gt "$nodes" ]; then
    echo "FAIL: $file $*: $(tr '\n' ' ' <"$TMP/out")"
    failures=$((failures + 1))
  fi
}

"$python" "$generator" "$seed" "$count" "$TMP/gen" || exit 1
for f in "$examples"/*.qv "$TMP"/gen/prog*[0-9].qv; do
  must=no
  case $f in "$examples"/*) must=yes ;; esac
  load "$f" $must
  load "$f" $must --no-minimise
  load "$f" $must --bool-opt
done

[ "$failures" -eq 0 ] || { echo "$failures failures"; exit 1; }
echo "every program loads or is refused cleanly"

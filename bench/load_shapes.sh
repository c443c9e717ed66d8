#!/bin/sh
# Writes a program of one loading shape with N equations on standard output:
#   chain   x_i = x_{i-1} + 1, one output at the end
#   layered layers of 1000 distinct names, each the sum of two neighbours of
#           the layer before and a shared product of them
#   ring    memories x_i = i -> pre x_{i-1} + i, closed into a ring
#   sum     one output, the sum of N distinct literals and the input
#
#   bench/load_shapes.sh SHAPE N
set -eu
shape=$1
n=$2
awk -v shape="$shape" -v n="$n" '
function vars(prefix, from, to,   i) {
  printf "var %s%d", prefix, from
  for (i = from + 1; i <= to; i++) printf ", %s%d", prefix, i
  print " : int;"
}
BEGIN {
  print "node " shape " (a : int) returns (y : int);"
  if (shape == "chain") {
    vars("x", 1, n - 1)
    print "let"
    print "  x1 = a + 1;"
    for (i = 2; i < n; i++) printf "  x%d = x%d + 1;\n", i, i - 1
    printf "  y = x%d;\n", n - 1
  } else if (shape == "layered") {
    w = 1000
    layers = int((n - 1) / w)
    if (layers < 1) layers = 1
    vars("v", 1, layers * w)
    print "let"
    for (k = 1; k <= w; k++) printf "  v%d = a + %d;\n", k, k
    for (l = 1; l < layers; l++) {
      for (k = 1; k <= w; k++) {
        p = (l - 1) * w
        left = p + k
        right = p + (k % w) + 1
        printf "  v%d = (v%d * v%d) + v%d - (v%d * v%d);\n", l * w + k, left, right, left, left, right
      }
    }
    printf "  y = v%d;\n", layers * w
  } else if (shape == "ring") {
    vars("x", 1, n - 1)
    print "let"
    printf "  x1 = 1 -> pre x%d + a;\n", n - 1
    for (i = 2; i < n; i++) printf "  x%d = %d -> pre x%d + %d;\n", i, i, i - 1, i
    printf "  y = x%d;\n", n - 1
  } else if (shape == "sum") {
    print "let"
    printf "  y = a"
    for (i = 1; i <= n; i++) printf " + %d", i
    print ";"
  } else {
    print "unknown shape " shape > "/dev/stderr"
    exit 1
  }
  print "tel"
}'

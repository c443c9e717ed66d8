#!/usr/bin/env python3
"""Large qv programs of several shapes, N equations each.

    python3 bench/shapes.py SHAPE N > program.qv

Every program has one int input `a` and a step counter `t` that runs from
0 to 999 and over again, so its values change at every step even when the
input is held. Equation i does `if v > A(i) then v - B(i) else v + K(i)`
(or a variant) on the value v it reads, with constants no two equations
share, so nothing folds away and the minimal network merges no two
equations. bench/baseline.cc computes the same outputs in plain C++.
"""
import math
import sys

# The declarations and equations every shape starts with; `s` is the
# varying value the shapes read.
HEAD_EQUATIONS = [
    "  t = 0 -> if pre t >= 999 then 0 else pre t + 1;",
    "  s = t + a;",
]


def A(i):
    return i * 7919 % 1000


def B(i):
    return 1 + i // 1000


def K(i):
    return 1 + i % 13


def step(i, v):
    """The work of equation i on the value v (a name or a parenthesised
    expression)."""
    return f"if {v} > {A(i)} then {v} - {B(i)} else {v} + {K(i)}"


def node(name, outputs, local_names, equations, declarations=()):
    lines = list(declarations)
    lines.append(f"node {name} (a : int) returns ({outputs});")
    lines.append("var t, s : int;")
    lines.extend(local_names)
    lines.append("let")
    lines.extend(HEAD_EQUATIONS)
    lines.extend(equations)
    lines.append("tel")
    return "\n".join(lines) + "\n"


def int_locals(names):
    return ["    " + ", ".join(names) + " : int;"]


def chain(n):
    """x_i reads x_(i-1); one output at the end."""
    eqs = [f"  x1 = {step(1, 's')};"]
    eqs += [f"  x{i} = {step(i, f'x{i - 1}')};" for i in range(2, n + 1)]
    eqs.append(f"  y = x{n};")
    return node("chain", "y : int", int_locals([f"x{i}" for i in range(1, n + 1)]), eqs)


def ring(n):
    """Memories in a ring, each the step of the one before it; the input
    enters at memory 0."""
    eqs = [f"  m0 = 0 -> {step(0, f'(pre m{n - 1} + s)')};"]
    eqs += [f"  m{i} = {i} -> {step(i, f'pre m{i - 1}')};" for i in range(1, n)]
    eqs += [f"  y = m0;", f"  z = m{n // 2};"]
    return node("ring", "y, z : int", int_locals([f"m{i}" for i in range(n)]), eqs)


def layer_width(n):
    return max(2, math.isqrt(n))


def layered(n):
    """Layers of width about sqrt(N): each node reads two neighbours of the
    layer before and their difference twice; the output sums the last layer."""
    w = layer_width(n)
    layers = max(1, n // w)
    eqs = [f"  x0_{j} = {step(j, 's')};" for j in range(w)]
    for l in range(1, layers):
        for j in range(w):
            i = l * w + j
            p, q = f"x{l - 1}_{j}", f"x{l - 1}_{(j + 1) % w}"
            eqs.append(f"  x{l}_{j} = if {p} - {q} > {A(i)} then {p} - {q} - {B(i)} "
                       f"else {q} + {K(i)};")
    eqs.append("  y = " + " + ".join(f"x{layers - 1}_{j}" for j in range(w)) + ";")
    names = [f"x{l}_{j}" for l in range(layers) for j in range(w)]
    return node("layered", "y : int", int_locals(names), eqs)


def sampled(i, v):
    """The equations of link i of the clocks shape: by i mod 3, on the base
    clock, on c1, or on c2 within c1, held back to the base clock by
    current; a value on c2 goes through `w` on c1, since current takes a
    value of a clock that is a variable."""
    level = i % 3
    if level == 0:
        return [f"  v{i} = {step(i, v)};"]
    if level == 1:
        return [f"  v{i} = current ({step(i, f'({v} when c1)')});"]
    return [f"  w{i} = current ({step(i, f'({v} when c1 when c2)')});",
            f"  v{i} = current w{i};"]


def clocks(n):
    """A chain of N links running on nested clocks, c1 every other step and
    c2 (a clock on c1) every fourth: about 4N/3 equations."""
    eqs = ["  c1 = t mod 2 = 0;", "  c2 = (t mod 4 = 0) when c1;"]
    for i in range(1, n + 1):
        eqs += sampled(i, f"v{i - 1}" if i > 1 else "s")
    eqs.append(f"  y = v{n};")
    local_names = ["    c1 : bool; (c2 : bool) when c1;"]
    local_names += int_locals([f"v{i}" for i in range(1, n + 1)])
    held = [f"w{i}" for i in range(1, n + 1) if i % 3 == 2]
    if held:
        local_names.append("    (" + ", ".join(held) + " : int) when c1;")
    return node("clocks", "y : int", local_names, eqs)


def outputs(n):
    """A chain every link of which is an output."""
    eqs = [f"  y1 = {step(1, 's')};"]
    eqs += [f"  y{i} = {step(i, f'y{i - 1}')};" for i in range(2, n + 1)]
    outs = ", ".join(f"y{i}" for i in range(1, n + 1)) + " : int"
    return node("outputs", outs, [], eqs)


STATES = ["s0", "s1", "s2", "s3"]


def machine(i, previous):
    """Machine i goes to its next state when the machine before it is in
    state i mod 4, unless s > A(i), and the other way round."""
    go = f"({previous} = {STATES[i % 4]}) xor (s > {A(i)})"
    advance = (f"if pre q{i} = s0 then s1 else if pre q{i} = s1 then s2 "
               f"else if pre q{i} = s2 then s3 else s0")
    return f"  q{i} = s0 -> if {go} then ({advance}) else pre q{i};"


def machines(n):
    """State machines over a declared type of four constants, each driven
    by the one before it; machine 0 advances at every step."""
    eqs = ["  q0 = s0 -> if pre q0 = s0 then s1 else if pre q0 = s1 then s2 "
           "else if pre q0 = s2 then s3 else s0;"]
    eqs += [machine(i, f"q{i - 1}") for i in range(1, n + 1)]
    eqs.append(f"  y = q{n};")
    local_names = ["    " + ", ".join(f"q{i}" for i in range(n + 1)) + " : state;"]
    declarations = ["type state;", f"const {', '.join(STATES)} : state;"]
    return node("machines", "y : state", local_names, eqs, declarations)


def total(n):
    """One expression summing N terms."""
    terms = " + ".join(f"({step(i, 's')})" for i in range(1, n + 1))
    return node("total", "y : int", [], [f"  y = {terms};"])


SHAPES = {
    "chain": chain,
    "ring": ring,
    "layered": layered,
    "clocks": clocks,
    "outputs": outputs,
    "machines": machines,
    "sum": total,
}


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in SHAPES or not sys.argv[2].isdigit() \
            or int(sys.argv[2]) < 1:
        sys.exit(f"usage: shapes.py {{{','.join(SHAPES)}}} N   (N >= 1)")
    sys.stdout.write(SHAPES[sys.argv[1]](int(sys.argv[2])))


if __name__ == "__main__":
    main()

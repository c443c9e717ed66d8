#!/usr/bin/env python3
"""Writes random but well-formed qv programs, each in two spellings.

NAME.qv uses as few parentheses as the operator precedences allow;
NAME.full.qv wraps every operator application in parentheses. Both
spellings have the same tree, so the reader must turn them into the same
net. The same seed always gives the same programs.

usage: gen_programs.py SEED COUNT OUTDIR
"""

import os
import random
import sys

INF = 100
IF_LEVEL = 1
# Binary operators: text, level (higher binds tighter), associativity.
BINARY = [
    ("->", 2, "L"),
    ("or", 3, "L"), ("xor", 3, "L"),
    ("and", 4, "L"),
    ("=>", 5, "N"), ("=", 5, "N"), ("<>", 5, "N"), ("<", 5, "N"),
    ("<=", 5, "N"), (">=", 5, "N"), (">", 5, "N"),
    ("+", 7, "L"), ("-", 7, "L"),
    ("*", 8, "L"), ("/", 8, "L"), ("%", 8, "L"), ("mod", 8, "L"), ("div", 8, "L"),
    ("when", 9, "L"), ("**", 9, "L"),
]
PREFIX = [("not", 6), ("-", 10), ("int", 10), ("real", 10), ("pre", 10), ("current", 10)]
LITERALS = ["0", "1", "42", "2.5", "1.", "1e3", "3.0E-2", "7e+1", "true", "false"]


class Emitted:
    """Text of an expression with what its neighbours must know: the level
    of its outermost binary operator, and the loosest prefix operator or
    'if' left open at its right end (both INF when none)."""

    def __init__(self, text, level=INF, open_right=INF):
        self.text = text
        self.level = level
        self.open_right = open_right


def paren(e):
    return Emitted("(" + e.text + ")")


def emit(tree, full):
    kind = tree[0]
    if kind == "atom":
        return Emitted(tree[1])
    if kind == "bin":
        _, (op, level, assoc), left, right = tree
        l, r = emit(left, full), emit(right, full)
        if full or l.level < level or (l.level == level and assoc != "L") or l.open_right < level:
            l = paren(l)
        if full or r.level <= level:
            r = paren(r)
        e = Emitted(f"{l.text} {op} {r.text}", level, r.open_right)
        return paren(e) if full else e
    if kind == "prefix":
        _, (op, level), operand = tree
        x = emit(operand, full)
        if full or x.level < level:
            x = paren(x)
        e = Emitted(f"{op} {x.text}", INF, min(level, x.open_right))
        return paren(e) if full else e
    if kind == "if":
        c, t, f = (emit(part, full).text for part in tree[1:])
        e = Emitted(f"if {c} then {t} else {f}", INF, IF_LEVEL)
        return paren(e) if full else e
    # Lists: tuples, nor, # and calls delimit their own operands.
    _, head, items = tree
    return Emitted(f"{head}(" + ", ".join(emit(i, full).text for i in items) + ")")


class Generator:
    def __init__(self, rng):
        self.rng = rng
        self.names = []      # identifiers usable in expressions
        self.clocks = []     # Boolean names usable as clocks
        self.functions = []  # (name, input count)
        self.serial = 0

    def fresh(self, stem):
        self.serial += 1
        return f"{stem}{self.serial}"

    # Expressions -------------------------------------------------------
    def atom(self):
        r = self.rng
        if self.names and r.random() < 0.7:
            return ("atom", r.choice(self.names))
        return ("atom", r.choice(LITERALS))

    def expr(self, depth, in_assert=False):
        r = self.rng
        if depth <= 0 or r.random() < 0.2:
            return self.atom()
        pick = r.random()
        sub = lambda: self.expr(depth - 1, in_assert)
        if pick < 0.45:
            op = r.choice(BINARY)
            if op[0] == "when":
                # A clock is named; an anonymous one is refused by the net.
                return ("bin", op, sub(), ("atom", r.choice(self.clocks)))
            return ("bin", op, sub(), sub())
        if pick < 0.65:
            ops = [p for p in PREFIX if not (in_assert and p[0] == "current")]
            return ("prefix", r.choice(ops), sub())
        if pick < 0.75:
            return ("if", sub(), sub(), sub())
        if pick < 0.82:
            return ("list", "", [sub() for _ in range(r.randint(2, 3))])
        if pick < 0.87:
            return ("list", "nor", [sub() for _ in range(r.randint(1, 3))])
        if pick < 0.92:
            return ("list", "#", [sub() for _ in range(r.randint(2, 3))])
        name, arity = r.choice(self.functions) if self.functions else ("sqrt", 1)
        return ("list", name, [sub() for _ in range(arity)])

    # Declarations ------------------------------------------------------
    def type_name(self, declared):
        return self.rng.choice(["bool", "int", "real"] + declared)

    def clocked(self, names, type_name):
        r = self.rng
        decl = ", ".join(names) + " : " + type_name
        if self.clocks and r.random() < 0.3:
            return f"({decl}) when {r.choice(self.clocks + ['true'])}"
        return decl

    def group(self, stem, declared, items):
        """Declaration items of fresh names; returns (texts, names)."""
        texts, all_names = [], []
        for _ in range(items):
            names = [self.fresh(stem) for _ in range(self.rng.randint(1, 3))]
            t = self.type_name(declared)
            texts.append(self.clocked(names, t))
            all_names += names
            if t == "bool":
                self.clocks += names
        return texts, all_names

    def program(self):
        r = self.rng
        out, declared = [], []
        for _ in range(r.randint(0, 2)):
            items = []
            for _ in range(r.randint(1, 2)):
                t = self.fresh("t")
                declared.append(t)
                if r.random() < 0.5:
                    consts = [self.fresh("E") for _ in range(r.randint(1, 3))]
                    self.names += consts
                    items.append(f"{t} = ({', '.join(consts)})")
                else:
                    items.append(t)
            out.append("type " + ", ".join(items) + r.choice([";", "."]))
        for _ in range(r.randint(0, 2)):
            texts, names = self.group("k", declared, r.randint(1, 2))
            self.names += names
            out.append("const " + "; ".join(texts) + r.choice([";", "."]))
        for _ in range(r.randint(0, 2)):
            name = self.fresh("f")
            ins = [f"{self.fresh('p')} : {self.type_name(declared)}" for _ in range(r.randint(1, 3))]
            outs = [f"{self.fresh('q')} : {self.type_name(declared)}" for _ in range(r.randint(1, 2))]
            self.functions.append((name, len(ins)))
            out.append(f"function {name} ({'; '.join(ins)}) returns ({'; '.join(outs)})"
                       + r.choice(["", ";", ".", ","]))

        inputs, in_names = self.group("i", declared, r.randint(1, 3))
        self.names += in_names
        outputs, out_names = self.group("o", declared, r.randint(1, 3))
        local_items, local_names = self.group("v", declared, r.randint(0, 2))
        self.names += out_names + local_names
        if not self.clocks:
            self.clocks.append(in_names[0])
        out.append(f"node {self.fresh('n')} ({'; '.join(inputs)})\n"
                   f"returns ({'; '.join(outputs)});")
        if local_items:
            out.append("var " + "; ".join(local_items) + ";")

        equations = []
        pending = out_names + local_names
        r.shuffle(pending)
        while pending:
            n = min(len(pending), r.choice([1, 1, 1, 2, 3]))
            left, pending = pending[:n], pending[n:]
            if n == 1:
                equations.append((left[0] + " =", self.expr(4)))
            else:
                rhs = ("list", "", [self.expr(3) for _ in left])
                equations.append(("(" + ", ".join(left) + ") =", rhs))
        for _ in range(r.randint(0, 2)):
            equations.append(("assert", self.expr(3, in_assert=True)))
        r.shuffle(equations)
        return out, equations, r.choice(["", ".", ";", ","])


def render(decls, equations, end, full):
    lines = list(decls)
    lines.append("let")
    for i, (head, tree) in enumerate(equations):
        comment = "  -- equation %d" % i if i % 3 == 0 else ""
        lines.append(f"  {head} {emit(tree, full).text};{comment}")
    lines.append("(* end of the body *) tel" + end)
    return "\n".join(lines) + "\n"


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    seed, count, outdir = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
    os.makedirs(outdir, exist_ok=True)
    for k in range(count):
        g = Generator(random.Random(seed * 100003 + k))
        decls, equations, end = g.program()
        for suffix, full in ((".qv", False), (".full.qv", True)):
            with open(os.path.join(outdir, f"prog{k:03d}{suffix}"), "w") as f:
                f.write(render(decls, equations, end, full))


if __name__ == "__main__":
    main()

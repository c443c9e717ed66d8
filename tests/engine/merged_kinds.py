#!/usr/bin/env python3
"""Well-typed programs whose minimal network merges memories of different
types (each 'v = pre v' is nil for ever, whatever the type of v) must run
alike with and without the minimal network, and load without a warning
about them (the declared type of the constants is still reported as read
as an enumeration).

usage: merged_kinds.py KORVEL_RUN SEED COUNT [PER_NODE]

The programs are run PER_NODE at a time, side by side in one node, so that
a thousand of them take seconds.
"""

import os
import random
import subprocess
import sys
import tempfile

TYPES = ["bool", "int", "real", "color"]
INPUT = {"bool": "c", "int": "i", "real": "x", "color": "k"}
LITERAL = {"bool": ["true", "false"], "int": ["0", "7"], "real": ["1.5", "0.0"],
           "color": ["red", "green"]}


def memory_shape(rng, t, name, same):
    """A definition of memory `name` of type t; `same` holds the earlier
    memories of t, for mutual cycles."""
    shapes = [f"pre {name}", f"if c then pre {name} else pre {name}", f"pre (pre {name})",
              f"{rng.choice(LITERAL[t])} -> pre {name}", f"{INPUT[t]} -> pre {name}"]
    if same:
        shapes.append(f"pre {rng.choice(same)}")
    return rng.choice(shapes)


def value(rng, t, memories):
    """An expression of type t over the memories and inputs."""
    atom = rng.choice(memories[t] + [INPUT[t]] + LITERAL[t])
    other = rng.choice(memories[t] + [INPUT[t]])
    if t == "bool":
        forms = [atom, f"not {atom}", f"{atom} or {other}", f"{atom} = {other}",
                 f"{rng.choice(memories['int'] + ['i'])} < i",
                 f"{rng.choice(memories['real'] + ['x'])} >= x",
                 f"{rng.choice(memories['color'] + ['k'])} = red",
                 f"{rng.choice(memories['int'])} <> {rng.choice(memories['int'])}"]
    elif t == "int":
        forms = [atom, f"{atom} + {other}", f"{atom} * 3", f"{atom} div 2", f"- {atom}",
                 f"if {rng.choice(memories['bool'])} then {atom} else {other}"]
    elif t == "real":
        forms = [atom, f"{atom} + {other}", f"{atom} * 2.0", f"{atom} / x",
                 f"if c then {atom} else {other}"]
    else:
        forms = [atom, f"if c then {atom} else {other}"]
    return rng.choice(forms)


def program(rng, tag):
    """The outputs, locals and equations of one program, its names prefixed
    by `tag` so that several programs share a node (and its minimal network)."""
    memories = {t: [] for t in TYPES}
    outputs, local_lines, equations = [], [], []
    for t in TYPES:
        for n in range(rng.randint(1, 3)):
            name = f"{tag}m{t[0]}{n}"
            local_lines.append(f"{name} : {t};")
            equations.append(f"{name} = {memory_shape(rng, t, name, memories[t])};")
            memories[t].append(name)
    for n in range(rng.randint(3, 7)):
        t = rng.choice(TYPES)
        outputs.append(f"{tag}o{n} : {t}")
        equations.append(f"{tag}o{n} = {value(rng, t, memories)};")
    return outputs, local_lines, equations


def node(programs):
    outputs, local_lines, equations = ([line for p in programs for line in p[part]]
                                       for part in range(3))
    return ("type color;\nconst red, green : color;\n"
            "node n (c : bool; i : int; x : real; k : color) returns ("
            + "; ".join(outputs) + ");\nvar " + " ".join(local_lines) + "\nlet\n  "
            + "\n  ".join(equations) + "\ntel\n")


def inputs(rng):
    return "".join(f"{rng.choice('tf')} {rng.randint(-9, 9)} {rng.choice(['0.5', '-2.0', '3.25'])} "
                   f"{rng.choice(['red', 'green'])}\n" for _ in range(rng.randint(1, 5)))


def run(tool, args):
    done = subprocess.run([tool] + args, capture_output=True, text=True)
    return done.returncode, done.stdout, done.stderr


def main():
    tool, seed, count = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    per_node = int(sys.argv[4]) if len(sys.argv) > 4 else 1
    rng = random.Random(seed)
    failures = 0
    with tempfile.TemporaryDirectory() as tmp:
        qv, data = os.path.join(tmp, "p.qv"), os.path.join(tmp, "p.in")
        for first in range(0, count, per_node):
            text = node([program(rng, f"p{n}") for n in range(min(per_node, count - first))])
            with open(qv, "w") as f:
                f.write(text)
            with open(data, "w") as f:
                f.write(inputs(rng))
            merged = run(tool, [qv, data])
            apart = run(tool, ["--no-minimise", qv, data])
            if merged != apart or merged[0] != 0 or ": warning:" in merged[2]:
                failures += 1
                print(f"FAIL: programs {first}...:\n{text}\nminimised: {merged}\napart: {apart}")
                if failures > 3:
                    break
    print(f"{count} programs, {failures} failing nodes")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())

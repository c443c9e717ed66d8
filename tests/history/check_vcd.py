"""korvel-run --vcd read back by GTKWave's own tools: vcd2fst must convert
the file without complaint, fst2vcd must give back every value change, and
the changes must be those of the run (checked on tests/history/programs).
A diagram must not change a byte of the trace."""
import math
import os
import shutil
import subprocess
import sys
import tempfile

bindir, programs = sys.argv[1], sys.argv[2]
if not shutil.which("vcd2fst") or not shutil.which("fst2vcd"):
    print("vcd2fst or fst2vcd missing (package gtkwave)")
    sys.exit(77)
korvel_run = os.path.join(bindir, "korvel-run")
failures = []


def check(condition, what):
    if not condition:
        failures.append(what)


def run(*args):
    return subprocess.run(args, capture_output=True, text=True)


def parse_vcd(text):
    """{scope.name: {time: value}} with vectors as ints (or their x/z
    letter), reals as floats and strings as text."""
    words = text.split()
    names, widths, changes = {}, {}, {}
    scope, time, i = [], None, 0
    while i < len(words):
        w = words[i]
        if w == "$scope":
            scope.append(words[i + 2])
            i += 4
        elif w == "$upscope":
            scope.pop()
            i += 2
        elif w == "$var":
            _, width, code, name = words[i + 1:i + 5]
            names[code] = ".".join(scope + [name])
            widths[code] = int(width)
            changes[names[code]] = {}
            i = words.index("$end", i) + 1
        elif w in ("$version", "$comment", "$date", "$timescale"):
            i = words.index("$end", i) + 1
        elif w in ("$enddefinitions", "$dumpvars", "$end"):
            i += 1 if w != "$enddefinitions" else 2
        elif w.startswith("#"):
            time = int(w[1:])
            i += 1
        elif w[0] in "bBrRsS":
            code = words[i + 1]
            changes[names[code]][time] = normal(w[0].lower(), w[1:], widths[code])
            i += 2
        else:
            changes[names[w[1:]]][time] = normal("b", w[0], 1)
            i += 1
    return changes, time


def normal(kind, text, width):
    if kind == "r":
        return float(text)
    if kind == "s":
        return text
    bits = text.lower()
    if bits[0] in "xz" and set(bits) == {bits[0]}:
        return bits[0]
    bits = bits.rjust(width, "0")
    value = int(bits, 2)
    return value - (1 << width) if width > 1 and bits[0] == "1" else value


def value_at(changes, name, t):
    times = [c for c in changes[name] if c <= t]
    return changes[name][max(times)] if times else None


def same(a, b):
    if isinstance(a, float) and isinstance(b, float) and math.isnan(a):
        return math.isnan(b)
    return a == b


with tempfile.TemporaryDirectory() as tmp:
    prog = os.path.join(programs, "kinds.qv")
    inputs = os.path.join(programs, "kinds.in")
    vcd = os.path.join(tmp, "run.vcd")
    plain = run(korvel_run, prog, inputs)
    drawn = run(korvel_run, "--vcd", vcd, prog, inputs, "--svg", os.path.join(tmp, "run.svg"))
    check(plain.returncode == 0, "korvel-run failed: " + plain.stderr)
    check((plain.stdout, plain.stderr, plain.returncode) ==
          (drawn.stdout, drawn.stderr, drawn.returncode), "the diagrams changed the trace")

    fst = os.path.join(tmp, "run.fst")
    converted = run("vcd2fst", vcd, fst)
    check(converted.returncode == 0 and not converted.stderr.strip(),
          "vcd2fst complained: " + converted.stderr)
    back = run("fst2vcd", fst)
    check(back.returncode == 0, "fst2vcd failed: " + back.stderr)

    with open(vcd) as f:
        ours, end = parse_vcd(f.read())
    theirs, back_end = parse_vcd(back.stdout)
    check(end == back_end == 7, "end times %s and %s, expected 7" % (end, back_end))
    check(sorted(ours) == sorted(theirs), "variables differ: %s / %s" % (sorted(ours), sorted(theirs)))
    for name in ours:
        for t in range(end + 1):
            a, b = value_at(ours, name, t), value_at(theirs, name, t)
            check(same(a, b), "%s at %d: written %r, read back %r" % (name, t, a, b))

    # What the run must show, tick by tick (see kinds.in): a reset before
    # tick 3, whose step is aborted by "bogus", and a reset at the end.
    expected = {
        "kinds.go": [1, 0, 1, "z", 0, 1],
        "kinds.n": [7, 7, -5, "z", 3, 4],
        "kinds.x": [1.5, -1.0, 2.0, None, 1.0, 8.0],
        "kinds.m": ["busy", "idle", "done", "z", "idle", "busy"],
        "kinds.q": [3, "x", None, "z", 3, 2],
        "kinds.q_div0": [0, 1, 0, "z", 0, 0],
        "kinds.r": [3.0, math.nan, 0.5, math.nan, 1.0, 4.0],
        "kinds.r_div0": [0, 1, 0, "z", 0, 0],
        "kinds.c": [7, "z", -5, "z", "z", 4],
        "kinds.c_div0": [0, "z", 0, "z", "z", 0],
        "kinds.p": ["x", 1, 0, "z", "x", 0],
        "kinds.p_div0": ["x", 0, 0, "z", "x", 0],
        "kinds.e": ["busy", "idle", "done", "z", "idle", "busy"],
        "kinds.hi": [1, 0, 1, "z", 0, 1],
        "korvel.reset": [0, 0, 0, 1, 0, 0, 1],
        "korvel.aborted": [0, 0, 0, 1, 0, 0],
        "korvel.step": [1, 2, 3, 0, 1, 2],
    }
    for name, values in expected.items():
        check(name in ours, "no variable " + name)
        for t, want in enumerate(values):
            if name in ours and want is not None:
                got = value_at(ours, name, t)
                check(same(got, want), "%s at %d: %r, expected %r" % (name, t, got, want))

for f in failures:
    print(f)
sys.exit(1 if failures else 0)

"""korvel-run --svg rendered by rsvg-convert: the pixels where known
waveforms of tests/history/programs/kinds.* must be high, low, hatched
(nil, division by zero) or blank, and where resets must be marked; a long
run is cut into pages under a note."""
import os
import shutil
import subprocess
import sys
import tempfile

bindir, programs = sys.argv[1], sys.argv[2]
if not shutil.which("rsvg-convert") or not shutil.which("pngtopnm"):
    print("rsvg-convert or pngtopnm missing (packages librsvg2-bin, netpbm)")
    sys.exit(77)
korvel_run = os.path.join(bindir, "korvel-run")
failures = []

# The drawing's geometry (history/svg_chronogram.h, SvgLayout).
LABEL, TICK, ROW, HIGH, LOW, HEADER, AXIS = 150, 24, 28, 5, 23, 64, 22
SIGNALS = "go n d x y m q r c p e hi".split()

HIGH_FILL = (191, 230, 191)
WHITE = (255, 255, 255)
# A hatch's stripes and ground, and the blends of both at the stripes' edges.
NIL = [(246, 200, 200), (192, 0, 0)]
DIV0 = [(251, 226, 168), (184, 96, 0)]
BUS = (221, 230, 246)
RESET = (32, 80, 224)


def check(condition, what):
    if not condition:
        failures.append(what)


def render(svg, tmp):
    png = os.path.join(tmp, "out.png")
    subprocess.run(["rsvg-convert", "-o", png, svg], check=True)
    ppm = subprocess.run(["pngtopnm", png], check=True, capture_output=True).stdout
    fields, pos = [], 0
    while len(fields) < 4:
        while ppm[pos:pos + 1].isspace():
            pos += 1
        start = pos
        while not ppm[pos:pos + 1].isspace():
            pos += 1
        fields.append(ppm[start:pos])
    assert fields[0] == b"P6" and fields[3] == b"255"
    width, pixels = int(fields[1]), ppm[pos + 1:]
    return lambda x, y: tuple(pixels[(y * width + x) * 3:(y * width + x) * 3 + 3])


def cell(pixel, signal, tick, x0=4, x1=20):
    """The colours inside a tick of a row, between the high and low levels."""
    top = HEADER + AXIS + SIGNALS.index(signal) * ROW
    left = LABEL + tick * TICK
    return {pixel(x, y) for x in range(left + x0, left + x1)
            for y in range(top + HIGH + 3, top + LOW - 2)}


def near(a, b):
    return all(abs(p - q) <= 12 for p, q in zip(a, b))


def blend_of(c, a, b):
    share = [(p - q) / (r - q) for p, q, r in zip(c, b, a) if r != q]
    # Resampling the pattern overshoots a little on either side.
    t = min(1.15, max(-0.15, sum(share) / len(share)))
    return near(c, [min(255, max(0, q + t * (r - q))) for q, r in zip(b, a)])


def mostly(colours, wanted):
    if len(wanted) == 2:
        return all(blend_of(c, *wanted) for c in colours)
    return all(near(c, wanted[0]) for c in colours)


with tempfile.TemporaryDirectory() as tmp:
    svg = os.path.join(tmp, "run.svg")
    subprocess.run([korvel_run, "--svg", svg, os.path.join(programs, "kinds.qv"),
                    os.path.join(programs, "kinds.in")], check=True, capture_output=True)
    pixel = render(svg, tmp)
    waves = {
        "go": ["high", "low", "high", "blank", "low", "high"],
        "hi": ["high", "low", "high", "blank", "low", "high"],
        "p": ["nil", "high", "low", "blank", "nil", "low"],
        "q": [None, "div0", None, "blank", None, None],
        "r": [None, "div0", None, "blank", None, None],
        "c": [None, "blank", None, "blank", "blank", None],
    }
    looks = {"high": [HIGH_FILL], "low": [WHITE], "blank": [WHITE], "nil": NIL, "div0": DIV0}
    for signal, row in waves.items():
        for tick, look in enumerate(row):
            if look is None:
                continue
            colours = cell(pixel, signal, tick)
            ok = mostly(colours, looks[look])
            if look in ("nil", "div0"):
                ok = ok and all(any(near(c, w) for c in colours) for w in looks[look])
            check(ok, "%s at tick %d is not %s: %s" % (signal, tick, look, [c for c in colours if not mostly([c], looks[look])][:6]))
    # Bus segments: their fill just under the top edge, clear of the text.
    for signal, tick in (("q", 0), ("c", 0), ("c", 2), ("n", 1), ("m", 2)):
        top = HEADER + AXIS + SIGNALS.index(signal) * ROW
        check(near(pixel(LABEL + tick * TICK + 8, top + HIGH + 2), BUS),
              "%s at tick %d is not a bus segment" % (signal, tick))
    # Resets: before tick 3 and after the last tick, across every row.
    rows = range(HEADER + AXIS, HEADER + AXIS + len(SIGNALS) * ROW)
    for tick in (3, 6):
        x = LABEL + tick * TICK
        marked = [y for y in rows if any(near(pixel(x + dx, y), RESET) for dx in (-1, 0))]
        check(len(marked) > len(rows) // 2, "no reset mark before tick %d" % tick)
    check(not any(near(pixel(LABEL + 2 * TICK, y), RESET) for y in rows),
          "a reset mark where there was none")

    # 1200 steps: the last 1000 kept, drawn in 10 pages.
    long_in = os.path.join(tmp, "long.in")
    with open(long_in, "w") as f:
        f.writelines("%s %d 1 1.0 1.0 idle\n" % ("tf"[i % 2], i) for i in range(1200))
    subprocess.run([korvel_run, "--svg", svg, os.path.join(programs, "kinds.qv"), long_in],
                   check=True, capture_output=True)
    with open(svg) as f:
        text = f.read()
    check("the first 200 steps are not drawn" in text, "no note about the steps left out")
    pages = text.count(">201</text>") + text.count(">1200</text>")
    check(pages == 2, "steps 201 and 1200 not each on the axis once")
    height = int(text.split('height="')[1].split('"')[0])
    check(height == HEADER + 10 * (AXIS + len(SIGNALS) * ROW + 16), "not 10 pages: height %d" % height)

for f in failures:
    print(f)
sys.exit(1 if failures else 0)

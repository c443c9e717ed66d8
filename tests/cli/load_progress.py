#!/usr/bin/env python3
"""korvel-run shows the load phases on a terminal once a load has lasted a
second, and never when standard error is a pipe.

    load_progress.py KORVEL_RUN

Runs sums of more and more terms with standard error on a pseudo-terminal
until a load lasts well over a second (the times come from --stats); a
load under the second must show nothing, a longer one the phases it passed
in order, erased at the end. The longest program then runs with standard
error on a pipe, which must stay silent, and once more with a call the
builder refuses, whose message must start on a line of its own.
"""
import os
import pty
import re
import subprocess
import sys
import tempfile

PHASES = ["parse", "normalise", "minimise", "build"]
SHOWN = re.compile(rb"\rloading: ([a-z]+) \.\.\. *")
ERASED = re.compile(rb"\r +\r$")


def write_sum(path, terms, refused_call=False):
    with open(path, "w") as f:
        if refused_call:
            f.write("function clamp (x : real) returns (y : real);\n")
            f.write("node sum (a : int; r : real) returns (b : int; d : real);\nlet\n  d = clamp(r);\n")
        else:
            f.write("node sum (a : int) returns (b : int);\nlet\n")
        f.write("  b = a")
        f.write(" + a" * (terms - 1))
        f.write(";\ntel\n")


def load_seconds(stdout):
    times = re.findall(rb"^(?:parse|normalise|minimise|build): ([0-9.]+) s$", stdout, re.M)
    if len(times) != len(PHASES):
        sys.exit(f"no load phases in the statistics:\n{stdout.decode()}")
    return sum(float(t) for t in times)


def on_terminal(korvel, path):
    """(status, standard output, bytes written to the terminal)"""
    main, side = pty.openpty()
    proc = subprocess.Popen([korvel, "--steps", "1", "--stats", path],
                            stdout=subprocess.PIPE, stderr=side)
    os.close(side)
    shown = b""
    while True:
        try:
            chunk = os.read(main, 4096)
        except OSError:  # the terminal's last holder has closed it
            break
        if not chunk:
            break
        shown += chunk
    os.close(main)
    stdout = proc.stdout.read()
    return proc.wait(), stdout, shown


def run_on_terminal(korvel, path):
    """(load seconds, bytes written to the terminal)"""
    status, stdout, shown = on_terminal(korvel, path)
    if status != 0:
        sys.exit(f"korvel-run failed on a terminal:\n{shown.decode()}")
    if b"loading" in stdout:
        sys.exit("progress reached standard output")
    return load_seconds(stdout), shown


def check_shown(seconds, shown):
    if seconds < 0.9 and shown:
        sys.exit(f"a load of {seconds:.2f} s showed {shown!r}")
    if seconds < 1.5:
        return False
    names = [m.decode() for m in SHOWN.findall(shown)]
    if not names:
        sys.exit(f"a load of {seconds:.2f} s showed nothing: {shown!r}")
    if names != [p for p in PHASES if p in names] or names[-1] != "build":
        sys.exit(f"phases shown out of order: {names}")
    if not ERASED.search(shown) or SHOWN.sub(b"", shown[:ERASED.search(shown).start()]):
        sys.exit(f"the progress line is not erased at the end, or other text came: {shown!r}")
    return True


def main():
    korvel = sys.argv[1]
    with tempfile.TemporaryDirectory() as tmp:
        path = os.path.join(tmp, "sum.qv")
        terms = 20000
        while True:
            write_sum(path, terms)
            seconds, shown = run_on_terminal(korvel, path)
            if check_shown(seconds, shown):
                break
            if terms >= 8_000_000:
                sys.exit(f"no load lasted a second and a half ({seconds:.2f} s at {terms} terms)")
            terms *= 4
        piped = subprocess.run([korvel, "--steps", "1", path], capture_output=True)
        if piped.returncode != 0 or piped.stderr or piped.stdout:
            sys.exit(f"a piped run wrote {piped.stdout!r} and {piped.stderr!r}")
        write_sum(path, terms, refused_call=True)
        status, _, shown = on_terminal(korvel, path)
        message = shown.find(b"Unsupported function :")
        if status != 1 or message < 0:
            sys.exit(f"the refused call gave status {status} and {shown!r}")
        if not SHOWN.search(shown[:message]):
            sys.exit(f"the refusal came before any progress was shown: {shown!r}")
        if not ERASED.search(shown[:message]):
            sys.exit(f"the refusal was written on the progress line: {shown!r}")


main()

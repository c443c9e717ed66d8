#!/usr/bin/env python3
"""How korvel scales: for each shape of bench/shapes.py and each size, the
time of each load phase, the time of a step against the same program as a
compiled C++ step function (bench/baseline.cc) measured in the same run,
and the peak and the resident memory per equation.

    bench/scale.py [--sizes 1000,10000,100000,1000000] [--shapes chain,ring,...]
                   [--runs R] [--timeout SECONDS] [--check-only] [--check-steps K]
                   [BIN_DIR]

BIN_DIR holds korvel-run (default build/bin); measure a Release build. The
baseline is compiled with the C++ compiler and flags of BIN_DIR's CMake
cache. Figures are medians of 5 runs up to 10^4 equations, 3 at 10^5 and 1
beyond, unless --runs says otherwise. Before timing a program, a short
traced run of korvel-run must give the outputs the baseline gives, or the
bench stops with status 1; --check-steps sets how many steps (3). A shape
whose run exceeds the timeout (default 900 s) is not run at larger sizes.
--check-only runs the comparison alone.
"""
import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import shapes  # noqa: E402

PHASES = ["parse", "normalise", "minimise", "build"]


class TimedOut(Exception):
    pass


def run(command, timeout, **kwargs):
    try:
        done = subprocess.run(command, capture_output=True, text=True, timeout=timeout, **kwargs)
    except subprocess.TimeoutExpired:
        raise TimedOut()
    if done.returncode != 0:
        sys.exit(f"failed ({done.returncode}): {' '.join(command)}\n{done.stderr[-2000:]}")
    return done.stdout


def cmake_flags(bin_dir):
    """The compiler and flags the programs were built with."""
    cache = {}
    path = os.path.join(bin_dir, "..", "CMakeCache.txt")
    if os.path.exists(path):
        for line in open(path):
            m = re.match(r"^([A-Z_]+):[A-Z]+=(.*)$", line)
            if m:
                cache[m.group(1)] = m.group(2)
    build_type = cache.get("CMAKE_BUILD_TYPE", "")
    flags = cache.get("CMAKE_CXX_FLAGS", "") + " " + \
        cache.get(f"CMAKE_CXX_FLAGS_{build_type.upper()}", "-O2")
    return cache.get("CMAKE_CXX_COMPILER", "c++"), flags.split(), build_type or "unknown"


def compile_baseline(bin_dir, out_dir):
    compiler, flags, build_type = cmake_flags(bin_dir)
    source = os.path.join(os.path.dirname(os.path.abspath(__file__)), "baseline.cc")
    binary = os.path.join(out_dir, "baseline")
    subprocess.run([compiler, "-std=c++20", *flags, "-o", binary, source], check=True)
    return binary, f"{os.path.basename(compiler)} {' '.join(flags)}", build_type


def check_agreement(korvel, baseline, shape, n, program, steps, timeout):
    """The outputs of the first steps, from korvel's trace and the baseline."""
    trace = run([korvel, program], timeout, input="0\n" * steps)
    ours = [line.split("#", 1)[1].split() for line in trace.splitlines()
            if not line.startswith("#")]
    compiled = [line.split() for line in
                run([baseline, shape, str(n), "0", str(steps), "--trace"],
                    timeout).splitlines()]
    if ours != compiled:
        step = next((i for i, (a, b) in enumerate(zip(ours, compiled)) if a != b), len(ours))
        sys.exit(f"\n*** {shape} at {n}: korvel and the compiled baseline differ at step "
                 f"{step + 1}:\n  korvel:   {' '.join(ours[step][:8]) if step < len(ours) else '-'}"
                 f"\n  compiled: {' '.join(compiled[step][:8]) if step < len(compiled) else '-'}")


def korvel_run(korvel, program, steps, timeout):
    """(phase seconds by name, seconds per step, peak bytes, resident bytes)"""
    out = run([korvel, "--steps", str(steps), "--stats", program], timeout)
    phases = {m[0]: float(m[1]) for m in re.findall(r"^(\w+): ([0-9.]+) s$", out, re.M)}
    spent = float(re.search(r"^steps: \d+ in ([0-9.]+) s$", out, re.M).group(1))
    peak = int(re.search(r"^peak memory: (\d+) KiB$", out, re.M).group(1)) * 1024
    resident = int(re.search(r"^resident memory: (\d+) KiB$", out, re.M).group(1)) * 1024
    return phases, spent / steps, peak, resident


def baseline_run(baseline, shape, n, steps, timeout):
    seconds = float(run([baseline, shape, str(n), "0", str(steps)], timeout).split()[0])
    return seconds / steps


def default_runs(n):
    return 5 if n <= 10_000 else 3 if n <= 100_000 else 1


def seconds(x):
    return f"{x:10.3f}"


def micro(x):
    return f"{x * 1e6:11.3f}"


def measure(args, korvel, baseline, shape, n, program):
    runs = args.runs or default_runs(n)
    steps = max(10, min(20_000, 20_000_000 // n))
    compiled_steps = max(10, min(1_000_000, 200_000_000 // n))
    ours = [korvel_run(korvel, program, steps, args.timeout) for _ in range(runs)]
    compiled = [baseline_run(baseline, shape, n, compiled_steps, args.timeout)
                for _ in range(runs)]
    phase = {p: statistics.median(r[0].get(p, 0.0) for r in ours) for p in PHASES}
    load = statistics.median(sum(r[0].get(p, 0.0) for p in PHASES) for r in ours)
    step = statistics.median(r[1] for r in ours)
    compiled_step = statistics.median(compiled)
    peak = statistics.median(r[2] for r in ours)
    resident = statistics.median(r[3] for r in ours)
    print(f"{shape:9} {n:8} {runs:4} " + "".join(seconds(phase[p]) for p in PHASES) +
          f"{seconds(load)}{micro(step)}{micro(compiled_step)}{step / compiled_step:8.1f}"
          f"{peak / n:9.0f}{resident / n:9.0f}", flush=True)


HEADER = (f"{'shape':9} {'N':>8} {'runs':>4} " + "".join(f"{p:>10}" for p in PHASES) +
          f"{'load':>10}{'step us':>11}{'compiled':>11}{'ratio':>8}{'B/eq':>9}{'kept':>9}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--sizes", default="1000,10000,100000,1000000")
    parser.add_argument("--shapes", default=",".join(shapes.SHAPES))
    parser.add_argument("--runs", type=int, default=0)
    parser.add_argument("--timeout", type=float, default=900)
    parser.add_argument("--check-only", action="store_true")
    parser.add_argument("--check-steps", type=int, default=3)
    parser.add_argument("bin_dir", nargs="?", default="build/bin")
    args = parser.parse_args()
    sizes = [int(s) for s in args.sizes.split(",")]
    chosen = args.shapes.split(",")
    unknown = [s for s in chosen if s not in shapes.SHAPES]
    if unknown or any(n < 1 for n in sizes):
        sys.exit(f"shapes are {', '.join(shapes.SHAPES)}; sizes are positive")
    korvel = os.path.abspath(os.path.join(args.bin_dir, "korvel-run"))

    with tempfile.TemporaryDirectory() as tmp:
        baseline, flags, build_type = compile_baseline(args.bin_dir, tmp)
        if not args.check_only:
            print(f"korvel-run: {korvel} ({build_type} build); baseline: {flags}")
            print("times in seconds, steps in microseconds, medians of the runs; "
                  "B/eq: peak memory per equation; kept: resident memory per equation "
                  "once loaded")
            print(HEADER, flush=True)
        for shape in chosen:
            for n in sizes:
                program = os.path.join(tmp, f"{shape}.qv")
                with open(program, "w") as f:
                    f.write(shapes.SHAPES[shape](n))
                try:
                    check_agreement(korvel, baseline, shape, n, program, args.check_steps,
                                    args.timeout)
                    if not args.check_only:
                        measure(args, korvel, baseline, shape, n, program)
                except TimedOut:
                    print(f"{shape:9} {n:8}  over {args.timeout:.0f} s: larger sizes skipped",
                          flush=True)
                    break
        if args.check_only:
            print(f"korvel and the baseline agree on {', '.join(chosen)} at "
                  f"{', '.join(map(str, sizes))} equations")


if __name__ == "__main__":
    main()

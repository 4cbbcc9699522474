#!/usr/bin/env python3
"""A million polar points through the Python face and through C, in one run.

Python: quillon.polar_points on two array('d') of azimuths and distances,
writing into the same two output arrays on every run (out=), as the C
side does, and once more making new arrays on every call. C: the program
python_polar_benchmark (built by CMake beside the tests) calls the same
qs_polar_points on the same inputs from C. Each is timed as the best of a
few runs; the results must agree to the bit. For scale, a sample of single
quillon.polar_point calls in a Python loop is timed too.

    PYTHONPATH=build/python python3 python/benchmarks/polar_points.py \
        [--count 1000000] [--repeats 5] [--program build/python/tests/python_polar_benchmark]

Exits with 1 when the two sides' results differ.
"""

import argparse
import os
import subprocess
import sys
import tempfile
import time
from array import array

import quillon

STATION = (5000.0, 2000.0, 100.0)


def inputs(count):
    """The C program's inputs, made of exact operations only."""
    azimuths = array("d", (float(i * 37 % 1296000) + 0.25 for i in range(count)))
    distances = array("d", (1.0 + float(i % 5000) * 0.125 for i in range(count)))
    return azimuths, distances


def best_of(repeats, run):
    best, result = None, None
    for _ in range(repeats):
        start = time.perf_counter()
        result = run()
        elapsed = time.perf_counter() - start
        best = elapsed if best is None else min(best, elapsed)
    return best, result


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=1000000)
    parser.add_argument("--repeats", type=int, default=5)
    parser.add_argument("--singles", type=int, default=100000,
                        help="single calls timed in a Python loop (0: none)")
    parser.add_argument("--program", default=os.environ.get("QUILLON_POLAR_BENCHMARK"),
                        help="the C side, python_polar_benchmark")
    args = parser.parse_args(argv)
    if not args.program:
        parser.error("give --program (the python_polar_benchmark built by CMake)")

    azimuths, distances = inputs(args.count)
    x, y = array("d", [0.0]) * args.count, array("d", [0.0]) * args.count
    python_time, _ = best_of(args.repeats,
                             lambda: quillon.polar_points(STATION, azimuths, distances, out=(x, y)))
    fresh_time, fresh = best_of(args.repeats,
                                lambda: quillon.polar_points(STATION, azimuths, distances))

    with tempfile.TemporaryDirectory() as scratch:
        output = os.path.join(scratch, "points.bin")
        run = subprocess.run([args.program, str(args.count), str(args.repeats), output],
                             check=True, stdout=subprocess.PIPE, text=True)
        c_time = float(run.stdout.split()[0])
        with open(output, "rb") as f:
            c_points = f.read()
    same = c_points == x.tobytes() + y.tobytes() == fresh[0].tobytes() + fresh[1].tobytes()

    per_million = 1e6 / args.count
    print("polar points: %d, best of %d runs" % (args.count, args.repeats))
    print("  Python face, into its arrays (out=): %8.2f ms  (%.2f ms per million)"
          % (python_time * 1e3, python_time * 1e3 * per_million))
    print("  Python face, new arrays each call:   %8.2f ms  (%.2f ms per million)"
          % (fresh_time * 1e3, fresh_time * 1e3 * per_million))
    print("  C (qs_polar_points from C):          %8.2f ms  (%.2f ms per million)"
          % (c_time * 1e3, c_time * 1e3 * per_million))
    print("  ratio Python / C: %.2f (new arrays: %.2f)" % (python_time / c_time, fresh_time / c_time))
    if args.singles:
        sample = min(args.singles, args.count)
        single_time, _ = best_of(1, lambda: [quillon.polar_point(STATION, azimuths[i], distances[i])
                                            for i in range(sample)])
        print("  single calls in a Python loop: %.2f s per million (%d timed), %.0f times the batch"
              % (single_time * 1e6 / sample, sample,
                 single_time * args.count / sample / fresh_time))
    print("  results equal to the bit: %s" % ("yes" if same else "NO"))
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Instructions per call of every device function and of its floor.

Runs quillon_bench --instructions under callgrind (each function and its
floor over the cases between two dumps of the counts) and prints the ratio
of the instruction counts, which, unlike times, do not move with the load
of the machine.

    instructions.py --valgrind VALGRIND --out DIR QUILLON_BENCH
"""
import argparse
import glob
import os
import re
import statistics
import subprocess
import sys


def read_dumps(directory):
    """(kind, function, calls) -> instructions, from every dump."""
    counts = {}
    for path in glob.glob(os.path.join(directory, "callgrind.out.*")):
        trigger = None
        total = None
        with open(path, encoding="utf-8", errors="replace") as f:
            for line in f:
                if line.startswith("desc: Trigger:"):
                    m = re.search(r"Client Request: (\w+) (\S+) (\d+)", line)
                    if m:
                        trigger = (m.group(1), m.group(2), int(m.group(3)))
                elif line.startswith("summary:"):
                    total = int(line.split()[1])
        if trigger and total is not None:
            counts[trigger] = total
    return counts


def order_of_run(directory):
    """The functions in the order their dumps were written."""
    dumps = []
    for path in glob.glob(os.path.join(directory, "callgrind.out.*")):
        number = path.rsplit(".", 1)[-1]
        with open(path, encoding="utf-8", errors="replace") as f:
            for line in f:
                m = re.search(r"Client Request: function (\S+) ", line)
                if m:
                    dumps.append((int(number) if number.isdigit() else 0, m.group(1)))
                    break
    return [name for _, name in sorted(dumps)]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--valgrind", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("bench")
    args = parser.parse_args()
    os.makedirs(args.out, exist_ok=True)
    for old in glob.glob(os.path.join(args.out, "callgrind.out.*")):
        os.remove(old)
    command = [args.valgrind, "--tool=callgrind",
               "--callgrind-out-file=" + os.path.join(args.out, "callgrind.out.%p"),
               args.bench, "--instructions"]
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    if run.returncode != 0:
        sys.stderr.write(run.stderr)
        return run.returncode
    counts = read_dumps(args.out)
    print(f"{'function':34} {'Ir/call':>9} {'floor':>9} {'ratio':>7}")
    ratios = []
    for name in order_of_run(args.out):
        function = [(c, t) for (k, n, c), t in counts.items() if k == "function" and n == name]
        floor = [(c, t) for (k, n, c), t in counts.items() if k == "floor" and n == name]
        if not function or not floor:
            continue
        per_call = function[0][1] / function[0][0]
        floor_per_call = floor[0][1] / floor[0][0]
        ratio = per_call / floor_per_call if floor_per_call > 0 else float("nan")
        ratios.append(ratio)
        print(f"{name:34} {per_call:9.0f} {floor_per_call:9.0f} {ratio:7.2f}")
    if ratios:
        print(f"\nmedian instruction ratio over {len(ratios)} functions: "
              f"{statistics.median(ratios):.2f}")
    return 0


if __name__ == "__main__":
    sys.exit(main())

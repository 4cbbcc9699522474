#!/usr/bin/env python3
"""Copies a reference with one change planted, for the tests that make sure
the platform check fails on it.

    plant.py FUNCTION CASE REFERENCE DIRECTORY

writes two copies of REFERENCE into DIRECTORY:
    ulp.ref     every case of FUNCTION with the double at the start of its
                output block moved by one unit in the last place (cases where
                it is not a finite number are left alone)
    status.ref  the status code of case CASE of FUNCTION raised by one
"""
import struct
import sys
from pathlib import Path


def one_ulp_up(output_hex):
    """The output block in hex with its first double one ulp further from 0."""
    bits = struct.unpack("<Q", bytes.fromhex(output_hex[:16]))[0]
    value = struct.unpack("<d", struct.pack("<Q", bits))[0]
    if value != value or value in (float("inf"), float("-inf")):
        return output_hex, False
    moved = struct.unpack("<d", struct.pack("<Q", bits + 1))[0]
    if moved in (float("inf"), float("-inf")):
        return output_hex, False
    return struct.pack("<Q", bits + 1).hex() + output_hex[16:], True


def plant(kind, function, case, reference, copy):
    changed = 0
    with open(reference, "r", newline="") as source, open(copy, "w", newline="") as target:
        for line in source:
            fields = line.split(" ")
            if fields[0] == function and not line.startswith("#"):
                if kind == "ulp":
                    fields[4], moved = one_ulp_up(fields[4])
                    changed += moved
                elif fields[1] == case:
                    fields[2] = str(int(fields[2]) + 1)
                    changed += 1
                line = " ".join(fields)
            target.write(line)
    if changed == 0:
        print(f"plant.py: nothing of {function} to change in {reference}", file=sys.stderr)
        return 1
    print(f"planted a change of the {kind} in {changed} case(s) of {function}: {copy}")
    return 0


def main(argv):
    if len(argv) != 5:
        print(__doc__, file=sys.stderr)
        return 2
    function, case, reference, directory = argv[1:]
    Path(directory).mkdir(parents=True, exist_ok=True)
    return plant("ulp", function, None, reference, Path(directory) / "ulp.ref") or plant(
        "status", function, case, reference, Path(directory) / "status.ref"
    )


if __name__ == "__main__":
    sys.exit(main(sys.argv))

#!/usr/bin/env python3
"""Reference points on curves whose curvature runs linearly with length.

An independent check of qs_transition_point: the point at arc length s is
the integral of the unit tangent, computed here with mpmath at 34 digits by
tanh-sinh quadrature of exp(i * azimuth(t)), azimuth(t) = a0 + k0 t +
(k1 - k0) t^2 / (2 L), with the true pi. The grid covers lengths 10 to
1000 m, total turns up to pi, clothoids from and to zero curvature, partial
transitions between two radii, arcs, straights and curves that change their
turning sense, both senses, several start points and azimuths.

    transition_reference.py write FILE   # writes the table
    transition_reference.py check FILE   # recomputes it and compares

Rows: x0 y0 azimuth0 k0 k1 L s | x y azimuth (metres, arc-seconds, 1/m).
The inputs are written so that they read back as the same doubles; the
results carry 21 significant digits. Exit status 77 when mpmath is missing.
"""
import math
import sys

try:
    import mpmath
    from mpmath import mp, mpf
except ImportError:  # the check is skipped, not failed
    print("mpmath not available: reference not recomputed")
    sys.exit(77)

mp.dps = 34

LENGTHS = [10.0, 100.0, 500.0, 1000.0]
TURNS = [0.5, 2.0, math.pi]  # total turn of the curve, radians
FRACTIONS = [1.0 / 7.0, 0.5, 0.9, 1.0]  # s as a share of L
STARTS = [  # x0, y0 (m), azimuth (arc-seconds)
    (1000.0, 2000.0, 0.0),
    (-350.25, 4321.5, 1234567.8),
    (5000.0, -2000.0, 324000.0),
    (12.5, 0.0, 971999.25),
]


def curvatures(length, turn):
    """(k0, k1) pairs for one length and total turn, both senses."""
    k = turn / length
    shapes = [
        (0.0, 2.0 * k),  # clothoid from a straight
        (2.0 * k, 0.0),  # clothoid into a straight
        (0.5 * k, 1.5 * k),  # partial transition, sharpening
        (1.5 * k, 0.5 * k),  # partial transition, easing
        (k, k),  # arc
        (-k, 3.0 * k),  # turning sense changes on the way
    ]
    pairs = []
    for k0, k1 in shapes:
        pairs.append((k0, k1))
        pairs.append((-k0 if k0 else 0.0, -k1 if k1 else 0.0))
    return pairs


def cases():
    rows = []
    for length in LENGTHS:
        pairs = [(0.0, 0.0)]
        for turn in TURNS:
            pairs += curvatures(length, turn)
        for k0, k1 in pairs:
            for fraction in FRACTIONS:
                start = STARTS[len(rows) % len(STARTS)]
                s = length if fraction == 1.0 else length * fraction
                rows.append(start + (k0, k1, length, s))
    return rows


def reference(x0, y0, azimuth0, k0, k1, length, s):
    a0 = mpf(azimuth0) * mp.pi / 648000
    k0, rate = mpf(k0), (mpf(k1) - mpf(k0)) / mpf(length)

    def tangent(t):
        return mpmath.expj(a0 + t * (k0 + rate * t / 2))

    pieces = [mpf(s) * j / 4 for j in range(5)]
    point, error = mpmath.quad(tangent, pieces, error=True)
    if error > mpf(10) ** -24:
        raise RuntimeError("quadrature did not settle: %s" % error)
    turn = mpf(s) * (k0 + rate * mpf(s) / 2)
    azimuth = mpmath.fmod(mpf(azimuth0) + turn * 648000 / mp.pi, 1296000)
    if azimuth < 0:
        azimuth += 1296000
    return mpf(x0) + point.real, mpf(y0) + point.imag, azimuth


def table():
    lines = []
    for row in cases():
        x, y, azimuth = reference(*row)
        inputs = " ".join(repr(v) for v in row)
        results = " ".join(mpmath.nstr(v, 21, min_fixed=-1, max_fixed=1) for v in (x, y, azimuth))
        lines.append(inputs + " | " + results)
    return lines


def read(path):
    with open(path) as f:
        return [line.rstrip("\n") for line in f if line.strip() and not line.startswith("#")]


def main(argv):
    if len(argv) != 3 or argv[1] not in ("write", "check"):
        print(__doc__)
        return 2
    lines = table()
    if argv[1] == "write":
        with open(argv[2], "w") as f:
            f.write("# Points on linear-curvature curves, mpmath at 34 digits; written by\n")
            f.write("# transition_reference.py. x0 y0 azimuth0 k0 k1 L s | x y azimuth\n")
            for line in lines:
                f.write(line + "\n")
        print("wrote %d rows to %s" % (len(lines), argv[2]))
        return 0
    stored = read(argv[2])
    if len(stored) != len(lines):
        print("row count differs: %d stored, %d computed" % (len(stored), len(lines)))
        return 1
    worst = 0.0
    for number, (old, new) in enumerate(zip(stored, lines), 1):
        old_in, old_out = old.split("|")
        new_in, new_out = new.split("|")
        if old_in.split() != new_in.split():
            print("row %d: inputs differ" % number)
            return 1
        for a, b in zip(old_out.split(), new_out.split()):
            worst = max(worst, abs(float(mpf(a) - mpf(b))))
    print("%d rows recomputed, largest difference %.3g" % (len(lines), worst))
    return 0 if worst <= 1e-15 else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv))

#!/usr/bin/env python3
"""Reference values for the free station, computed at 40 significant digits.

Builds a few free-station problems, solves each by its own least squares
(full design and weight matrices, Gauss-Newton from a start 3.6 m off,
iterated to 1e-30) and writes the problems with the expected results to a
text file that the C++ test reads:

    free_station_reference.py OUTPUT     write the file
    free_station_reference.py --check F  recompute and compare with F;
                                         exit 0 when they agree, 1 when not,
                                         77 when mpmath is missing

The model is the one the library documents: directions with one orientation
unknown, horizontal distances S sin z (S without a zenith angle), weights
from the a priori standard deviations, station height as the weighted mean
of the trigonometric heights, Baarda's w from the redundancy numbers.
"""
import sys

try:
    import mpmath
    from mpmath import mp, mpf
except ImportError:
    print("mpmath is not installed: nothing to check")
    sys.exit(77)

mp.dps = 40
RHO = mpf(648000) / mp.pi  # arc-seconds per radian
KINDS = {"none": 0, "direction": 1, "distance": 2, "height": 3}


class Lcg:
    """Deterministic numbers in [-1, 1), the same on every machine."""

    def __init__(self, seed):
        self.state = seed

    def next(self):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2**64
        return (self.state >> 11) / 2.0**52 - 1.0


def observe(station, orientation, options, points, seed, errors, spoil):
    """Sightings of points from a station, rounded to doubles, with errors of
    (direction ", distance m, zenith ") times numbers in [-1, 1) and one
    spoiled observation (index, field, amount)."""
    ih, k, radius, curvature = (options["ih"], options["k"], options["R"], options["curvature"])
    lcg = Lcg(seed)
    sightings = []
    for x, y, h, th, has_d, has_z in points:
        dx, dy = mpf(x) - station[0], mpf(y) - station[1]
        d = mp.sqrt(dx * dx + dy * dy)
        rise = mpf(h) + mpf(th) - station[2] - mpf(ih)
        if curvature:
            rise -= (1 - mpf(k)) * d * d / (2 * mpf(radius))
        direction = (mp.atan2(dy, dx) * RHO - orientation) % 1296000
        slope = mp.sqrt(d * d + rise * rise) if has_z else d
        zenith = mp.atan2(d, rise) * RHO
        s = {
            "x": x, "y": y, "h": h, "th": th, "has_d": has_d, "has_z": has_z,
            "dir": float(direction) + errors[0] * lcg.next(),
            "S": float(slope) + errors[1] * lcg.next(),
            "z": float(zenith) + errors[2] * lcg.next(),
        }
        sightings.append(s)
    if spoil:
        index, field, amount = spoil
        sightings[index][field] += amount
    return sightings


def start_near(station, orientation):
    """Where Gauss-Newton starts: 3.6 m and 100" off the generating station."""
    return station[0] + 3, station[1] - 2, (orientation + 100) / RHO


def problems():
    """The problems: name, options, sightings, start."""
    base = {"ih": 1.55, "sd": 1.0, "sz": 1.5, "smm": 2.0, "sppm": 2.0, "k": 0.13,
            "R": 6371000.0, "thr": 3.29, "curvature": 1, "iters": 20}
    out = []

    # Six points round a station, one direction spoiled by 30".
    st = (mpf("5123.4567"), mpf("2041.2345"), mpf("312.345"))
    pts = [(5250.101, 2010.552, 318.904, 1.3, 1, 1), (5160.337, 2180.019, 309.871, 1.3, 1, 1),
           (4990.812, 2133.407, 311.208, 1.3, 1, 1), (4977.503, 1930.144, 314.66, 1.6, 1, 1),
           (5080.228, 1887.316, 315.112, 1.3, 0, 1), (5201.964, 1912.845, 313.5, 1.3, 1, 0)]
    out.append(("six points, a direction spoiled", dict(base),
                observe(st, mpf("1234567.8"), base, pts, 1, (1.0, 0.002, 1.5), (2, "dir", 30.0)),
                start_near(st, mpf("1234567.8"))))

    # Directions only to three points, zenith angles without distances.
    o = dict(base, curvature=0)
    pts = [(1200.0, 1000.0, 55.0, 1.5, 0, 1), (950.0, 1250.0, 57.5, 1.5, 0, 1),
           (900.0, 850.0, 52.25, 1.5, 0, 1)]
    st = (mpf(1000), mpf(1000), mpf(50))
    out.append(("three directions", o,
                observe(st, mpf("98765.4321"), o, pts, 2, (0.8, 0.0, 1.0), None),
                start_near(st, mpf("98765.4321"))))

    # The least: two points with distances.
    pts = [(300.0, 120.0, 20.0, 1.8, 1, 1), (150.0, 310.0, 25.0, 1.8, 1, 1)]
    st = (mpf(100), mpf(100), mpf(10))
    out.append(("two distances", dict(base),
                observe(st, mpf("500000.5"), base, pts, 3, (1.0, 0.002, 1.0), None),
                start_near(st, mpf("500000.5"))))

    # Twelve long sights on large coordinates, a distance spoiled by 5 cm.
    o = dict(base, sd=0.5, smm=1.0, sppm=1.5, k=0.2)
    st = (mpf("5234567.891"), mpf("612345.678"), mpf("843.21"))
    pts = []
    for i in range(12):
        a = 2 * mp.pi * i / 12 + mpf("0.17") * (i % 3)
        d = 800 + 150 * i
        pts.append((float(st[0] + d * mp.cos(a)), float(st[1] + d * mp.sin(a)),
                    float(st[2] + 20 * mp.sin(3 * a)), 1.5, 1 if i % 4 else 0, 1))
    out.append(("twelve long sights, a distance spoiled", o,
                observe(st, mpf("777777.7"), o, pts, 4, (0.5, 0.0015, 1.0), (5, "S", 0.05)),
                start_near(st, mpf("777777.7"))))
    return out


def solve(options, sightings, start):
    """Least squares at 40 digits: station, precision, residuals, blunder."""
    sd = mpf(options["sd"]) / RHO
    sz = mpf(options["sz"]) / RHO
    rows, misclosures, weights, sigmas, tags = [], [], [], [], []
    reduced = []
    for s in sightings:
        slope = mpf(s["S"])
        sig_s = mpf(options["smm"]) / 1000 + mpf(options["sppm"]) * mpf("1e-6") * slope
        if s["has_z"]:
            z = mpf(s["z"]) / RHO
            reduced.append((slope * mp.sin(z),
                            mp.sqrt((mp.sin(z) * sig_s) ** 2 + (slope * mp.cos(z) * sz) ** 2)))
        else:
            reduced.append((slope, sig_s))

    def linearize(x, y, o):
        rows.clear(), misclosures.clear(), weights.clear(), sigmas.clear(), tags.clear()
        for i, s in enumerate(sightings):
            dx, dy = mpf(s["x"]) - x, mpf(s["y"]) - y
            d2 = dx * dx + dy * dy
            d = mp.sqrt(d2)
            computed = mp.atan2(dy, dx) - o
            observed = mpf(s["dir"]) / RHO
            l = observed - computed
            l = l - 2 * mp.pi * mp.floor((l + mp.pi) / (2 * mp.pi))
            rows.append([dy / d2, -dx / d2, mpf(-1)])
            misclosures.append(l)
            weights.append(1 / sd**2)
            sigmas.append(sd)
            tags.append(("direction", i))
            if s["has_d"]:
                rows.append([-dx / d, -dy / d, mpf(0)])
                misclosures.append(reduced[i][0] - d)
                weights.append(1 / reduced[i][1] ** 2)
                sigmas.append(reduced[i][1])
                tags.append(("distance", i))
        a = mp.matrix(rows)
        p = mp.diag(weights)
        n = a.T * p * a
        return a, p, n, n**-1, mp.matrix(misclosures)

    x, y, o = start
    for _ in range(60):
        a, p, n, q, l = linearize(x, y, o)
        step = q * (a.T * p * l)
        x, y, o = x + step[0], y + step[1], o + step[2]
        if max(abs(step[0]), abs(step[1])) < mpf("1e-30"):
            break
    else:
        raise RuntimeError("no convergence")
    a, p, n, q, l = linearize(x, y, o)
    v = -l
    m = len(weights)
    dof = m - 3
    redundancy = mp.eye(m) - a * q * a.T * p
    vpv = sum(weights[j] * v[j] ** 2 for j in range(m))
    sigma0 = mp.sqrt(vpv / dof) if dof > 0 else mpf(1)

    per = [{"dir_res": 0, "dir_r": 0, "dir_w": 0, "dist_res": 0, "dist_r": 0, "dist_w": 0,
            "height": 0, "h_res": 0, "h_r": 0, "h_w": 0} for _ in sightings]
    best = (mpf(0), "none", 0)

    def checked(res, sigma, r, kind, i):
        nonlocal best
        r = min(mpf(1), max(mpf(0), r))
        w = res / (sigma * mp.sqrt(r)) if r >= mpf("1e-6") else mpf(0)
        if abs(w) > best[0]:
            best = (abs(w), kind, i)
        return r, w

    for j, (kind, i) in enumerate(tags):
        r, w = checked(v[j], sigmas[j], redundancy[j, j], kind, i)
        if kind == "direction":
            per[i].update(dir_res=v[j] * RHO, dir_r=r, dir_w=w)
        else:
            per[i].update(dist_res=v[j], dist_r=r, dist_w=w)
    for i, s in enumerate(sightings):
        dx, dy = mpf(s["x"]) - x, mpf(s["y"]) - y
        per[i]["azimuth"] = (mp.atan2(dy, dx) * RHO) % 1296000
        per[i]["hd"] = mp.sqrt(dx * dx + dy * dy)

    # Heights.
    heights = []
    for i, s in enumerate(sightings):
        if not s["has_z"]:
            continue
        z = mpf(s["z"]) / RHO
        slope = mpf(s["S"])
        if s["has_d"]:
            rise = slope * mp.cos(z)
            d = reduced[i][0]
            sig_s = mpf(options["smm"]) / 1000 + mpf(options["sppm"]) * mpf("1e-6") * slope
            sigma = mp.sqrt((mp.cos(z) * sig_s) ** 2 + (slope * mp.sin(z) * sz) ** 2)
        else:
            d = per[i]["hd"]
            rise = d * mp.cos(z) / mp.sin(z)
            sigma = d * sz / mp.sin(z) ** 2
        if options["curvature"]:
            rise += (1 - mpf(options["k"])) * d * d / (2 * mpf(options["R"]))
        value = mpf(s["h"]) + mpf(s["th"]) - rise - mpf(options["ih"])
        heights.append((i, value, sigma))
    if heights:
        total = sum(1 / sg**2 for _, _, sg in heights)
        h = sum(val / sg**2 for _, val, sg in heights) / total
        squares = sum((h - val) ** 2 / sg**2 for _, val, sg in heights)
        sigma0_h = mp.sqrt(squares / (len(heights) - 1)) if len(heights) > 1 else mpf(1)
        sigma_h = sigma0_h / mp.sqrt(total)
        for i, val, sg in heights:
            r, w = checked(h - val, sg, 1 - (1 / sg**2) / total, "height", i)
            per[i].update(height=val, h_res=h - val, h_r=r, h_w=w)
    else:
        h = sigma_h = mp.nan
        sigma0_h = mpf(1)

    station = {
        "x": x, "y": y, "h": h, "orientation": (o * RHO) % 1296000,
        "sigma_x": sigma0 * mp.sqrt(q[0, 0]), "sigma_y": sigma0 * mp.sqrt(q[1, 1]),
        "sigma_h": sigma_h, "sigma_orientation": sigma0 * mp.sqrt(q[2, 2]) * RHO,
        "sigma0": sigma0, "sigma0_height": sigma0_h, "blunder_w": best[0],
        "blunder_kind": KINDS[best[1]], "blunder_index": best[2], "dof": dof,
        "height_count": len(heights),
    }
    return station, per


STATION_FIELDS = ["x", "y", "h", "orientation", "sigma_x", "sigma_y", "sigma_h",
                  "sigma_orientation", "sigma0", "sigma0_height", "blunder_w", "blunder_kind",
                  "blunder_index", "dof", "height_count"]
SIGHTING_FIELDS = ["azimuth", "hd", "dir_res", "dir_r", "dir_w", "dist_res", "dist_r", "dist_w",
                   "height", "h_res", "h_r", "h_w"]
OPTION_FIELDS = ["ih", "sd", "sz", "smm", "sppm", "k", "R", "thr", "curvature", "iters"]
INPUT_FIELDS = ["x", "y", "h", "dir", "S", "z", "th", "has_d", "has_z"]


def text(value):
    if isinstance(value, int):
        return str(value)
    if isinstance(value, float):
        return repr(value)
    return mpmath.nstr(value, 30, min_fixed=-5, max_fixed=15)


def build():
    lines = ["# Free-station problems and their least-squares solution at 40 digits,",
             "# written by free_station_reference.py; do not edit by hand.",
             "# problem NAME / options " + " ".join(OPTION_FIELDS),
             "# sighting " + " ".join(INPUT_FIELDS),
             "# station " + " ".join(STATION_FIELDS),
             "# result " + " ".join(SIGHTING_FIELDS)]
    for name, options, sightings, start in problems():
        station, per = solve(options, sightings, start)
        lines.append("problem " + name)
        lines.append("options " + " ".join(text(options[f]) for f in OPTION_FIELDS))
        for s in sightings:
            lines.append("sighting " + " ".join(text(s[f]) for f in INPUT_FIELDS))
        lines.append("station " + " ".join(text(station[f]) for f in STATION_FIELDS))
        for p in per:
            lines.append("result " + " ".join(text(p[f]) for f in SIGHTING_FIELDS))
    return "\n".join(lines) + "\n"


def compare(expected, actual):
    bad = 0
    for line_e, line_a in zip(expected.splitlines(), actual.splitlines()):
        fields_e, fields_a = line_e.split(), line_a.split()
        if line_e.startswith(("#", "problem")) or fields_e[0] in ("options", "sighting"):
            if line_e != line_a:
                bad += 1
                print("differs:\n  " + line_e + "\n  " + line_a)
            continue
        for e, a in zip(fields_e[1:], fields_a[1:]):
            ve, va = mpf(e), mpf(a)
            if mp.isnan(ve) and mp.isnan(va):
                continue
            if abs(ve - va) > mpf("1e-20") * max(1, abs(ve)):
                bad += 1
                print("differs: %s %s" % (e, a))
    if len(expected.splitlines()) != len(actual.splitlines()):
        bad += 1
        print("line counts differ")
    return bad


def main(argv):
    if len(argv) == 3 and argv[1] == "--check":
        with open(argv[2]) as f:
            expected = f.read()
        bad = compare(expected, build())
        print("reference file %s: %s" % (argv[2], "agrees" if bad == 0 else "%d values differ" % bad))
        return 0 if bad == 0 else 1
    if len(argv) == 2:
        with open(argv[1], "w") as f:
            f.write(build())
        return 0
    print(__doc__)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv))

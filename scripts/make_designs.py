#!/usr/bin/env python3
"""Writes the LandXML road designs of the example and of the reader's tests,
and the example's measured points, from exact geometry.

Every element is integrated from its curvature with mpmath at 40 digits
(a line has curvature 0, an arc 1/R, a clothoid runs linearly between 0
and 1/R), so the coordinates written are the design's to the last printed
digit. Run from anywhere:

    python3 scripts/make_designs.py
"""
import os
from dataclasses import dataclass

from mpmath import atan, cos, mp, mpf, pi, quad, sin, sqrt, tan

mp.dps = 40
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
INF = None


@dataclass
class Element:
    kind: str  # "line", "arc", "spiral"
    length: object
    radius: object = None  # arc radius, or the finite radius of a spiral
    turn: int = 0  # +1 right (cw), -1 left (ccw)
    exit: bool = False  # spiral whose curvature falls to 0


@dataclass
class Placed:
    element: Element
    start: tuple
    end: tuple
    az_start: object  # radians, clockwise from north
    az_end: object
    chainage: object
    centre: tuple = None
    pi_point: tuple = None


def curvature(e, t):
    if e.kind == "line":
        return mpf(0)
    if e.kind == "arc":
        return e.turn / e.radius
    grows = t / (e.radius * e.length)
    return e.turn * ((1 / e.radius - grows) if e.exit else grows)


def heading(e, az0, t):
    """Azimuth after arc length t: the integral of the curvature."""
    if e.kind == "line":
        return az0
    if e.kind == "arc":
        return az0 + e.turn * t / e.radius
    k = 1 / (e.radius * e.length)
    if e.exit:
        return az0 + e.turn * (t / e.radius - k * t * t / 2)
    return az0 + e.turn * k * t * t / 2


def point_at(e, start, az0, t):
    dx = quad(lambda s: cos(heading(e, az0, s)), [0, t])
    dy = quad(lambda s: sin(heading(e, az0, s)), [0, t])
    return (start[0] + dx, start[1] + dy)


def intersect(p, a, q, b):
    """Where the line through p in direction a meets the one through q in b."""
    # p + u (cos a, sin a) = q + v (cos b, sin b)
    det = cos(a) * (-sin(b)) - sin(a) * (-cos(b))
    rx, ry = q[0] - p[0], q[1] - p[1]
    u = (rx * (-sin(b)) - ry * (-cos(b))) / det
    return (p[0] + u * cos(a), p[1] + u * sin(a))


def place(start, az0, chainage, elements):
    placed = []
    for e in elements:
        end = point_at(e, start, az0, e.length)
        az_end = heading(e, az0, e.length)
        p = Placed(e, start, end, az0, az_end, chainage)
        if e.kind == "arc":
            p.centre = (start[0] + e.radius * cos(az0 + e.turn * pi / 2),
                        start[1] + e.radius * sin(az0 + e.turn * pi / 2))
        if e.kind != "line":
            p.pi_point = intersect(start, az0, end, az_end)
        placed.append(p)
        start, az0, chainage = end, az_end, chainage + e.length
    return placed


def norm(a):
    return a % (2 * pi)


# ---- how the files write numbers ------------------------------------------

def fmt(value, decimals=4):
    return f"{float(value):.{decimals}f}"


def pt(p, scale=1, decimals=4, z=None):
    text = f"{fmt(p[0] / scale, decimals)} {fmt(p[1] / scale, decimals)}"
    return text if z is None else f"{text} {fmt(z, 3)}"


DEG = 180 / pi
DIRECTIONS = {
    # name: (value from an azimuth in radians)
    "cw-north-degrees": lambda a: norm(a) * DEG,
    "ccw-east-radians": lambda a: norm(pi / 2 - a),
    "ccw-north-grads": lambda a: norm(-a) * 200 / pi,
}


def coord_geom(placed, scale=1, direction=None, z=None, indent="      ", extra=None, decimals=4,
               nudge=None):
    """CoordGeom children; direction names a DIRECTIONS entry or None; nudge
    maps an element's index to a shift (m) of its Start."""
    def d(name, a):
        if direction is None:
            return ""
        return f' {name}="{float(DIRECTIONS[direction](a)):.8f}"'

    lines = []
    for index, p in enumerate(placed):
        e = p.element
        start = p.start
        if nudge and index in nudge:
            start = (start[0] + nudge[index][0], start[1] + nudge[index][1])
        sta = f' staStart="{fmt(p.chainage / scale, 4)}"'
        rot = ' rot="cw"' if e.turn > 0 else ' rot="ccw"'
        zz = None if z is None else z
        if e.kind == "line":
            lines.append(f'{indent}<Line length="{fmt(e.length / scale, 6)}"{sta}'
                         f'{d("dir", p.az_start)}>')
        elif e.kind == "arc":
            lines.append(f'{indent}<Curve radius="{fmt(e.radius / scale, 4)}" '
                         f'length="{fmt(e.length / scale, 6)}"{rot}{sta}'
                         f'{d("dirStart", p.az_start)}{d("dirEnd", p.az_end)}>')
        else:
            r = fmt(e.radius / scale, 4)
            radii = (f'radiusStart="{r}" radiusEnd="INF"' if e.exit
                     else f'radiusStart="INF" radiusEnd="{r}"')
            lines.append(f'{indent}<Spiral spiType="clothoid" length="{fmt(e.length / scale, 6)}" '
                         f'{radii}{rot}{sta}{d("dirStart", p.az_start)}{d("dirEnd", p.az_end)}>')
        lines.append(f"{indent}  <Start>{pt(start, scale, decimals, z=zz)}</Start>")
        if p.centre is not None:
            lines.append(f"{indent}  <Center>{pt(p.centre, scale, decimals)}</Center>")
        if p.pi_point is not None:
            lines.append(f"{indent}  <PI>{pt(p.pi_point, scale, decimals)}</PI>")
        lines.append(f"{indent}  <End>{pt(p.end, scale, decimals, z=zz)}</End>")
        tag = {"line": "Line", "arc": "Curve", "spiral": "Spiral"}[e.kind]
        lines.append(f"{indent}</{tag}>")
        if extra is not None:
            lines.extend(extra(p))
    return "\n".join(lines)


# ---- profiles ---------------------------------------------------------------

@dataclass
class Pvi:
    station: object
    elevation: object
    curve: str = None  # None, "para", "circ"
    length: object = None  # para: horizontal length
    radius: object = None  # circ


def profile_height(pvis, c):
    """Design height at chainage c, exactly, or None outside the profile."""
    if c < pvis[0].station or c > pvis[-1].station:
        return None
    grades = [(pvis[i + 1].elevation - pvis[i].elevation) /
              (pvis[i + 1].station - pvis[i].station) for i in range(len(pvis) - 1)]
    for i in range(1, len(pvis) - 1):
        v = pvis[i]
        g1, g2 = grades[i - 1], grades[i]
        if v.curve == "para":
            s0, s1 = v.station - v.length / 2, v.station + v.length / 2
            if s0 <= c <= s1:
                x = c - s0
                return v.elevation - v.length / 2 * g1 + g1 * x + (g2 - g1) * x * x / (2 * v.length)
        if v.curve == "circ":
            a1, a2 = atan(g1), atan(g2)
            t = v.radius * tan(abs(a1 - a2) / 2)
            s0, s1 = v.station - t * cos(a1), v.station + t * cos(a2)
            if s0 <= c <= s1:
                z0 = v.elevation - t * sin(a1)
                side = 1 if g2 > g1 else -1  # sag: centre above
                # Centre of the circle, then the arc's height at c.
                cx = s0 - side * v.radius * sin(a1)
                cz = z0 + side * v.radius * cos(a1)
                return cz - side * sqrt(v.radius ** 2 - (c - cx) ** 2)
    for i in range(len(pvis) - 1):
        if pvis[i].station <= c <= pvis[i + 1].station:
            return pvis[i].elevation + grades[i] * (c - pvis[i].station)
    return None


def circ_arc_length(pvis, i):
    g1 = (pvis[i].elevation - pvis[i - 1].elevation) / (pvis[i].station - pvis[i - 1].station)
    g2 = (pvis[i + 1].elevation - pvis[i].elevation) / (pvis[i + 1].station - pvis[i].station)
    return pvis[i].radius * abs(atan(g1) - atan(g2))


def prof_align(pvis, scale=1, indent="        ", signed_crest=False, name="Design"):
    lines = [f'{indent[:-2]}<ProfAlign name="{name}">']
    for i, v in enumerate(pvis):
        text = f"{fmt(v.station / scale, 4)} {fmt(v.elevation / scale, 4)}"
        if v.curve is None:
            lines.append(f"{indent}<PVI>{text}</PVI>")
        elif v.curve == "para":
            lines.append(f'{indent}<ParaCurve length="{fmt(v.length / scale, 4)}">{text}</ParaCurve>')
        else:
            g1 = (v.elevation - pvis[i - 1].elevation) / (v.station - pvis[i - 1].station)
            g2 = (pvis[i + 1].elevation - v.elevation) / (pvis[i + 1].station - v.station)
            radius = v.radius
            if signed_crest and g2 < g1:
                radius = -radius
            lines.append(f'{indent}<CircCurve radius="{fmt(radius / scale, 4)}" '
                         f'length="{fmt(circ_arc_length(pvis, i) / scale, 6)}">{text}</CircCurve>')
    lines.append(f"{indent[:-2]}</ProfAlign>")
    return "\n".join(lines)


def write(path, text, encoding="utf-8"):
    full = os.path.join(ROOT, path)
    with open(full, "w", encoding=encoding, newline="\n") as f:
        f.write(text)
    print("wrote", path)


def header(units, encoding="UTF-8", namespace="http://www.landxml.org/schema/LandXML-1.2"):
    return (f'<?xml version="1.0" encoding="{encoding}"?>\n'
            f'<LandXML xmlns="{namespace}" version="1.2" date="2024-05-02" time="09:00:00">\n'
            f"  <Units>\n    {units}\n  </Units>\n")


METRIC = ('<Metric linearUnit="meter" areaUnit="squareMeter" volumeUnit="cubicMeter" '
          'angularUnit="decimal degrees" directionUnit="decimal degrees"/>')


# ---- the example road ---------------------------------------------------------

def example():
    az0 = 60 * pi / 180
    elements = [
        Element("line", mpf(120)),
        Element("spiral", mpf(60), mpf(300), +1),
        Element("arc", mpf(150), mpf(300), +1),
        Element("spiral", mpf(60), mpf(300), +1, exit=True),
        Element("line", mpf(80)),
        Element("spiral", mpf(50), mpf(250), -1),
        Element("arc", mpf(120), mpf(250), -1),
        Element("spiral", mpf(50), mpf(250), -1, exit=True),
        Element("line", mpf(100)),
    ]
    start = (mpf("5000.000"), mpf("2000.000"))
    placed = place(start, az0, mpf(1000), elements)
    pvis = [Pvi(mpf(1000), mpf("52.000")),
            Pvi(mpf(1180), mpf("55.600"), "para", mpf(100)),
            Pvi(mpf(1420), mpf("50.800"), "circ", radius=mpf(3000)),
            Pvi(mpf(1640), mpf("53.440"), "para", mpf(80)),
            Pvi(mpf(1790), mpf("52.690"))]
    text = header(METRIC)
    text += ('  <Project name="Quillon example road"/>\n'
             '  <Application name="scripts/make_designs.py" manufacturer="Quillon"/>\n'
             '  <Alignments name="Example">\n'
             '    <Alignment name="Harbour Road" length="790.0000" staStart="1000.0000" '
             'desc="two curves with transitions, a station equation at 1450">\n'
             '      <CoordGeom>\n')
    text += coord_geom(placed, direction="cw-north-degrees", indent="        ") + "\n"
    text += ('      </CoordGeom>\n'
             '      <StaEquation staInternal="1450.0000" staBack="1450.0000" '
             'staAhead="1500.0000" desc="chainage break"/>\n'
             '      <Profile name="Harbour Road">\n'
             '        <ProfSurf name="Existing ground">\n'
             '          <PntList2D>1000 51.2 1100 53.8 1200 54.1 1300 52.0 1400 50.9 '
             '1500 51.6 1600 52.9 1700 53.1 1790 52.4</PntList2D>\n'
             '        </ProfSurf>\n')
    text += prof_align(pvis, indent="          ") + "\n"
    text += "      </Profile>\n    </Alignment>\n  </Alignments>\n</LandXML>\n"
    write("examples/data/road.xml", text)

    # Points a crew measured: known chainage, offset and height against the
    # design, placed exactly.
    shots = [("P1", 1050, 3.5, 0.012, "edge"), ("P2", mpf("1205.5"), -3.5, -0.034, "edge"),
             ("P3", 1345, mpf("0.8"), 0.005, "cl"), ("P4", 1500, -2, -0.100, "kerb"),
             ("P5", 1600, mpf("5.25"), 0.250, "bank"), ("P6", 1760, -1, 0.0, "cl"),
             ("P7", 1800, 0, 0.0, "beyond")]
    rows = ["name,X,Y,H,code"]
    for name, chainage, offset, dz, code in shots:
        chainage = mpf(chainage)
        x, y, az = point_on(placed, chainage)
        if x is None:  # beyond the end: continue straight on
            last = placed[-1]
            x = last.end[0] + (chainage - (last.chainage + last.element.length)) * cos(last.az_end)
            y = last.end[1] + (chainage - (last.chainage + last.element.length)) * sin(last.az_end)
            az = last.az_end
        x += mpf(offset) * cos(az + pi / 2)
        y += mpf(offset) * sin(az + pi / 2)
        h = profile_height(pvis, chainage)
        h = (h if h is not None else mpf(52.7)) + mpf(dz)
        rows.append(f"{name},{fmt(x, 4)},{fmt(y, 4)},{fmt(h, 3)},{code}")
        print(f"  {name}: chainage {float(chainage):.3f} offset {float(offset):+.3f} "
              f"cut/fill {dz:+.3f}")
    write("examples/data/measured.csv", "\n".join(rows) + "\n")


def point_on(placed, chainage):
    for p in placed:
        if p.chainage <= chainage <= p.chainage + p.element.length:
            t = chainage - p.chainage
            x, y = point_at(p.element, p.start, p.az_start, t)
            return x, y, heading(p.element, p.az_start, t)
    return None, None, None


# ---- designs of the reader's tests -----------------------------------------------

def wrap(body, units=METRIC, encoding="UTF-8", namespace="http://www.landxml.org/schema/LandXML-1.2"):
    return header(units, encoding, namespace) + body + "</LandXML>\n"


def alignment(name, sta_start, placed, direction=None, scale=1, inner="", z=None, extra=None,
              decimals=4, nudge=None):
    return (f'  <Alignments>\n    <Alignment name="{name}" staStart="{fmt(sta_start / scale, 4)}">\n'
            f"      <CoordGeom>\n"
            + coord_geom(placed, scale, direction, z=z, indent="        ", extra=extra,
                         decimals=decimals, nudge=nudge)
            + "\n      </CoordGeom>\n" + inner + "    </Alignment>\n  </Alignments>\n")


def test_designs():
    out = "tests/io/data/"
    # Line, entry spiral, arc, exit spiral, line, turning right; dir
    # clockwise from north in degrees as declared.
    right = [Element("line", mpf(100)), Element("spiral", mpf(40), mpf(200), +1),
             Element("arc", mpf(80), mpf(200), +1),
             Element("spiral", mpf(40), mpf(200), +1, exit=True), Element("line", mpf(60))]
    placed = place((mpf(1000), mpf(500)), mpf(30) * pi / 180, mpf(0), right)
    write(out + "right_turn.xml", wrap(alignment("Right", 0, placed, "cw-north-degrees")))
    report(placed, "right_turn")

    # The same shapes turning left, from a negative start station; dir
    # counter-clockwise from east in radians with directionUnit radians.
    left = [Element(e.kind, e.length, e.radius, -e.turn if e.turn else 0, e.exit) for e in right]
    placed = place((mpf(2000), mpf(3000)), mpf(200) * pi / 180, mpf("-250.5"), left)
    units = ('<Metric linearUnit="meter" angularUnit="radians" directionUnit="radians"/>')
    write(out + "left_turn.xml", wrap(alignment("Left", mpf("-250.5"), placed, "ccw-east-radians"),
                                      units))
    report(placed, "left_turn")

    # US survey feet: the right-turn road scaled to feet, dir in grads
    # counter-clockwise from north, no directionUnit.
    feet = mpf(1200) / 3937
    placed = place((mpf(1000), mpf(500)), mpf(30) * pi / 180, mpf(0), right)
    units = '<Imperial linearUnit="USSurveyFoot" areaUnit="squareFoot" volumeUnit="cubicYard"/>'
    write(out + "feet.xml", wrap(alignment("Feet", 0, placed, "ccw-north-grads", scale=feet), units))

    # Inframodel, ISO-8859-1, three-value points, no dir; the name has a
    # Latin-1 letter.
    placed = place((mpf(6700000), mpf(25500000)), mpf(100) * pi / 180, mpf(0),
                   [Element("line", mpf(50)), Element("arc", mpf(60), mpf(500), -1),
                    Element("line", mpf(40))])
    body = alignment("V\u00e4yl\u00e4 1", 0, placed, z=mpf("12.5"))
    write(out + "inframodel_latin1.xml",
          wrap(body, encoding="ISO-8859-1", namespace="http://buildingsmart.fi/inframodel/404"),
          encoding="latin-1")
    report(placed, "inframodel")

    # An S-curve: exit spiral straight into a reversed entry spiral, a line
    # of 0.4 mm, elements meeting within micrometres; a namespaced station
    # equation; a profile that starts after and ends before the alignment,
    # with a signed crest radius (circular) and a sag parabola.
    s_curve = [Element("line", mpf(30)), Element("spiral", mpf(45), mpf(150), +1),
               Element("arc", mpf(20), mpf(150), +1),
               Element("spiral", mpf(45), mpf(150), +1, exit=True),
               Element("spiral", mpf(35), mpf(120), -1),
               Element("spiral", mpf(35), mpf(120), -1, exit=True),
               Element("line", mpf("0.0004")), Element("line", mpf(25))]
    placed = place((mpf(500), mpf(500)), mpf(0), mpf(100), s_curve)
    pvis = [Pvi(mpf(120), mpf(20)), Pvi(mpf(160), mpf("21.2"), "circ", radius=mpf(600)),
            Pvi(mpf(230), mpf("19.1"), "para", mpf(40)), Pvi(mpf(290), mpf("20.3"))]
    inner = ('      <eq:StaEquation xmlns:eq="http://example.org/vendor" staInternal="200.0000" '
             'staBack="200.0000" staAhead="250.0000"/>\n'
             '      <Profile>\n' + prof_align(pvis, indent="          ", signed_crest=True) +
             "\n      </Profile>\n")
    # Written to the micrometre; the arc starts 3 um off the spiral's end.
    nudge = {2: (mpf("0.000003"), mpf("-0.000001"))}
    write(out + "s_curve.xml", wrap(alignment("S", 100, placed, "cw-north-degrees", inner=inner,
                                              decimals=6, nudge=nudge)))
    report(placed, "s_curve")
    for c in (120, 140, 160, 175, 200, 230, 250, 290):
        h = profile_height(pvis, mpf(c))
        print(f"  height at {c}: {float(h):.12f}")


def report(placed, name):
    print(f"{name}:")
    for p in placed:
        print(f"  {p.element.kind:6} chainage {float(p.chainage):10.4f} start "
              f"{float(p.start[0]):.6f} {float(p.start[1]):.6f} az "
              f"{float(norm(p.az_start) * 648000 / pi):.6f}")
    last = placed[-1]
    print(f"  end    chainage {float(last.chainage + last.element.length):10.4f} end "
          f"{float(last.end[0]):.6f} {float(last.end[1]):.6f} az "
          f"{float(norm(last.az_end) * 648000 / pi):.6f}")


# ---- observations of a free station and a traverse ------------------------------

SEC = pi / 648000


def az(a, b):
    return norm(mp.atan2(b[1] - a[1], b[0] - a[0]))


def packed_dms(radians):
    """ddd.mmsss: degrees, two digits of minutes, seconds to 0.1"."""
    tenths = int(mp.nint(norm(radians) / SEC * 10))
    d, rest = divmod(tenths, 36000)
    m, t = divmod(rest, 600)
    return f"{d}.{m:02d}{t:03d}"


def observations():
    # The crew set up on an unknown mark near the road and sighted six known
    # points; small errors of a good instrument, and the direction to P4
    # read 30" wrong.
    station = (mpf("5075.2480"), mpf("2212.6150"), mpf("49.8370"))
    ih = mpf("1.550")
    orientation = mpf("37.25") * pi / 180
    known = [("P1", "5160.4200", "2105.3310", "52.1180", "1.600"),
             ("P2", "5188.9050", "2297.4420", "53.4020", "1.600"),
             ("P3", "5090.1130", "2355.7680", "50.0060", "1.800"),
             ("P4", "4982.6640", "2290.1110", "47.9930", "1.600"),
             ("P5", "4975.3070", "2150.9420", "48.2310", "1.800"),
             ("P6", "5040.7790", "2091.6050", "50.7750", "1.600")]
    errors = [(0.8, 0.0012, -0.6), (-0.5, -0.0008, 0.9), (0.3, 0.0005, -1.1),
              (30.4, -0.0010, 0.4), (-1.0, 0.0009, 0.7), (0.6, -0.0004, -0.3)]
    rows = ["name,X,Y,H,direction,distance,zenith,target_height"]
    for (name, x, y, h, th), (e_dir, e_dist, e_zen) in zip(known, errors):
        p = (mpf(x), mpf(y), mpf(h))
        d = sqrt((p[0] - station[0]) ** 2 + (p[1] - station[1]) ** 2)
        dh = p[2] + mpf(th) - station[2] - ih
        slope = sqrt(d * d + dh * dh)
        zenith = mp.atan2(d, dh)
        reading = az(station, p) - orientation + e_dir * SEC
        rows.append(f"{name},{x},{y},{h},{packed_dms(reading)},{fmt(slope + e_dist, 4)},"
                    f"{packed_dms(zenith + e_zen * SEC)},{th}")
    write("examples/data/station.csv", "\n".join(rows) + "\n")
    print(f"  station {float(station[0]):.4f} {float(station[1]):.4f} {float(station[2]):.4f}, "
          f"orientation {float(orientation / SEC):.1f}\"")

    # A link traverse from A (backsight B) through three new stations to E
    # (foresight F), measured with errors of a few seconds and millimetres.
    b = (mpf("5402.1150"), mpf("1811.4040"))
    pts = [("A", (mpf("5300.0000"), mpf("2000.0000"), mpf("52.3100"))),
           ("T1", (mpf("5262.3452"), mpf("2140.1118"), mpf("53.0044"))),
           ("T2", (mpf("5205.6781"), mpf("2290.4563"), mpf("52.4497"))),
           ("T3", (mpf("5220.9120"), mpf("2455.7889"), mpf("51.0031"))),
           ("E", (mpf("5180.0000"), mpf("2620.0000"), mpf("50.1200")))]
    f = (mpf("5261.7730"), mpf("2899.3380"))
    angle_errors = [2.1, -3.4, 1.8, 2.7, -1.5]
    dist_errors = [0.004, -0.006, 0.003, 0.005]
    dh_errors = [0.003, -0.002, 0.004, 0.001]
    rows = ["name,X,Y,H,angle,distance,dh", f"B,{fmt(b[0])},{fmt(b[1])},,,,"]
    for i, (name, p) in enumerate(pts):
        back = b if i == 0 else pts[i - 1][1]
        ahead = f if i == len(pts) - 1 else pts[i + 1][1]
        angle = az(p, ahead) - az(p, back) + angle_errors[i] * SEC
        if i < len(pts) - 1:
            q = pts[i + 1][1]
            leg = sqrt((q[0] - p[0]) ** 2 + (q[1] - p[1]) ** 2) + dist_errors[i]
            dh = q[2] - p[2] + dh_errors[i]
            obs = f"{packed_dms(angle)},{fmt(leg, 3)},{fmt(dh, 3)}"
        else:
            obs = f"{packed_dms(angle)},,"
        known_xy = f"{fmt(p[0])},{fmt(p[1])},{fmt(p[2])}" if name in ("A", "E") else ",,"
        rows.append(f"{name},{known_xy},{obs}")
    rows.append(f"F,{fmt(f[0])},{fmt(f[1])},,,,")
    write("examples/data/traverse.csv", "\n".join(rows) + "\n")


if __name__ == "__main__":
    example()
    observations()
    test_designs()

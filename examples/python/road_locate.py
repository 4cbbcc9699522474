"""Where am I on the road? A notebook in cells (# %%): the crew has measured
points with the total station; for each we want the chainage and offset
from the centre line, the direction of the road there, the design height
and whether to cut or fill.

    PYTHONPATH=build/python python3 examples/python/road_locate.py
"""

# %% The road: a straight, a right-hand curve with spirals, a straight.
import quillon
from quillon import Arc, Line, Transition, device

road = quillon.Alignment.from_elements(
    start=(5000.0, 2000.0), azimuth=quillon.parse_dms("60°00'00\""), chainage=0.0,
    elements=[Line(100.0), Transition(60.0, 200.0, "right"), Arc(80.0, 200.0, "right"),
              Transition(60.0, 200.0, "right", exit=True), Line(120.0)],
    name="example road")

# %% Its profile, built by the device's own function as the instrument
# builds it: +2.5 % for 150 m, a 100 m crest to -1.5 %, then -1.5 %.
grades = device.new("VElement[4]")
for record, (kind, length, grade_out) in zip(grades, [(1, 150.0, 0.025), (2, 100.0, -0.015),
                                                     (1, 170.0, -0.015)]):
    record.Type, record.Given, record.Length, record.GradeOut = kind, 1, length, grade_out
grades[0].Elevation, grades[0].GradeIn = 312.400, 0.025
profile = device.new("VElement[4]")
device.check(device.LIB_CalWay_V_Ele_MainPoint(grades, 4, profile), "LIB_CalWay_V_Ele_MainPoint")
road = quillon.Alignment(road.table, profile=profile, name=road.name)
print(road)


# %% The main points.
def chainage_text(chainage):
    """Chainage as painted on a peg: 0+123.456."""
    km = int(chainage // 1000.0)
    return "%d+%07.3f" % (km, chainage - km * 1000.0)


KINDS = {0: "end", 1: "straight", 2: "arc", 3: "spiral"}
print("\n%-8s  %9s  %11s  %11s  %14s" % ("element", "chainage", "X", "Y", "azimuth"))
for record in road.table:
    print("%-8s  %9s  %11.3f  %11.3f  %14s" % (KINDS[record.Type], chainage_text(record.Chainage),
                                               record.X, record.Y, quillon.format_dms(record.Azimuth)))

# %% The measured points: X, Y, H in metres.
measured = {
    "P1": (5025.631, 2037.394, 313.650), "P2": (5061.698, 2116.241, 315.613),
    "P3": (5094.864, 2182.440, 316.923), "P4": (5089.389, 2240.447, 316.215),
    "P5": (5055.023, 2369.100, 315.975), "P6": (5057.410, 2412.695, 314.100),
    "P7": (4989.134, 1983.179, 312.400),
}

print("\n%-4s %10s %10s %8s | %9s %9s %14s %9s %12s" % ("pt", "X", "Y", "H", "chainage", "offset",
                                                       "road azimuth", "design H", "cut/fill"))
for name, point in measured.items():
    row = "%-4s %10.3f %10.3f %8.3f | " % ((name,) + point)
    try:
        check = road.check(point)
    except quillon.OutsideAlignmentError:
        print(row + "beyond the ends of the road")
        continue
    offset, cut_fill = check.position.offset, check.cut_fill
    side = "L" if offset <= -0.0005 else "R" if offset >= 0.0005 else " "
    action = "fill" if cut_fill <= -0.0005 else "cut" if cut_fill >= 0.0005 else ""
    print(row + "%9s %s %7.3f %14s %9.3f %-4s %6.3f" % (
        chainage_text(check.position.chainage), side, abs(offset),
        quillon.format_dms(check.position.azimuth), check.design_height, action, abs(cut_fill)))

# %% All of them at once, in one call into C: the same chainages and offsets
# (NaN where a point lies beyond the ends).
xs = [p[0] for p in measured.values()]
ys = [p[1] for p in measured.values()]
chainages, offsets = road.locate_many(xs, ys)
print("\nbatch: " + ", ".join("%s %.3f/%+.3f" % (name, c, o)
                              for name, c, o in zip(measured, chainages, offsets)))

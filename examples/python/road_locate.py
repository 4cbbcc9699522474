"""Where am I on the road? A notebook in cells (# %%): the crew has measured
points with the total station; for each we want the chainage and offset
from the centre line, the design height there and whether to cut or fill.
The road is the example design of examples/data, as a design program
exports it (LandXML 1.2).

    PYTHONPATH=build/python python3 examples/python/road_locate.py
"""

# %% The road: its alignment and profile, read from the design file.
import pathlib

import quillon
from quillon import device

DATA = pathlib.Path(__file__).resolve().parent.parent / "data"

road = quillon.Alignment.from_landxml(DATA / "road.xml")
print(road)
for equation in quillon.io.station_equations(road):
    print("station equation at chainage %.3f: station %.3f back, %.3f ahead"
          % (equation.chainage, equation.station_back, equation.station_ahead))

# %% The main points: where each element starts, and the end.
KINDS = {0: "end", 1: "straight", 2: "arc", 3: "spiral"}
print("\n%-8s  %9s  %9s  %11s  %11s  %14s" % ("element", "chainage", "station", "X", "Y",
                                               "azimuth"))
for record in road.table:
    print("%-8s  %9.3f  %9.3f  %11.3f  %11.3f  %14s" % (
        KINDS[record.Type], record.Chainage, road.station(record.Chainage), record.X, record.Y,
        quillon.format_dms(record.Azimuth, circle=True)))

# %% The measured points: name, X, Y, H (m) and a code.
measured = quillon.io.read_points(DATA / "measured.csv")


def fixed(value, sign=False):
    """Millimetres as the tool prints them: never -0.000."""
    text = "%+.3f" % value if sign else "%.3f" % value
    return text.replace("-", "+" if sign else "") if float(text) == 0.0 else text


print("\n%-5s %9s %9s %8s %7s %9s %9s  %s" % ("Point", "Chainage", "Station", "Offset", "H",
                                               "Design H", "Cut/fill", "Remark"))
for p in measured:
    try:
        check = road.check((p.x, p.y, p.h))
    except quillon.OutsideAlignmentError:
        print("%-5s %9s %9s %8s %7.3f %9s %9s  %s" % (p.name, "-", "-", "-", p.h, "-", "-",
                                                      "beyond the road or its profile"))
        continue
    cut_fill = fixed(check.cut_fill, sign=True)
    remark = "on grade" if cut_fill == "+0.000" else "cut" if cut_fill[0] == "+" else "fill"
    print("%-5s %9.3f %9.3f %8s %7.3f %9.3f %9s  %s" % (
        p.name, check.position.chainage, road.station(check.position.chainage),
        fixed(check.position.offset), p.h, check.design_height, cut_fill, remark))

# %% All of them at once, in one call into C: the same chainages and offsets
# to the bit (NaN where a point lies beyond the ends).
chainages, offsets = road.locate_many([p.x for p in measured], [p.y for p in measured])
print("\nbatch: " + ", ".join("%s %.3f/%+.3f" % (p.name, c, o)
                              for p, c, o in zip(measured, chainages, offsets)))

# %% The instrument's own arithmetic on the same table: the device's centre
# line at each chainage (pi taken as 3.1415926, its clothoid series) against
# the exact one, in millimetres.
centre = device.new("TangentPoint *")
print("\ndevice against exact centre line:")
for p, chainage in zip(measured, chainages):
    if chainage != chainage:  # NaN: beyond the ends
        continue
    device.check(device.LIB_CalWay_H_On(road.table, road.record_count, chainage, centre),
                 "LIB_CalWay_H_On")
    exact = road.point(chainage)
    print("  %s at %.3f: %.3f mm" % (p.name, chainage,
                                     1000.0 * ((centre.X - exact.x) ** 2
                                               + (centre.Y - exact.y) ** 2) ** 0.5))

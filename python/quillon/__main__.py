"""python -m quillon: the road commands of the quillon tool, for a machine
with the Python package and its libraries but not the tool.

    python -m quillon road table DESIGN.xml [--alignment NAME] [--interval 20]
                                            [--offsets=-3.5,3.5] [--format text|csv]
    python -m quillon road locate DESIGN.xml MEASURED.csv [--alignment NAME]
                                            [--format text|csv]
    python -m quillon --version

The plot, the free station and the traverse are the quillon tool's own
(quillon road plot, quillon station, quillon traverse: see quillon --help);
a Python program calls quillon.free_station and quillon.traverse_adjust.

Tables go to standard output; errors to standard error, naming the file
and line, with exit status 1 (2 for a bad command line).
"""

import argparse
import csv
import math
import sys

import quillon
from quillon import io

# Letters of the element kinds for the main points' names: T line (tangent),
# C circular arc, S spiral.
_LETTERS = {1: "T", 2: "C", 3: "S"}


def _offsets(text):
    try:
        return [float(value) for value in text.split(",") if value.strip()]
    except ValueError:
        raise argparse.ArgumentTypeError("offsets are numbers separated by commas: %r" % text)


def _main_points(alignment):
    """(chainage, name) of the start, every joint and the end."""
    table, count = alignment.table, alignment.record_count
    points = [(table[0].Chainage, "start")]
    for i in range(1, count - 1):
        points.append((table[i].Chainage, _LETTERS.get(table[i - 1].Type, "?")
                       + _LETTERS.get(table[i].Type, "?")))
    points.append((table[count - 1].Chainage, "end"))
    return points


def _rows_of_table(alignment, interval, offsets):
    """The setting-out table: main points and piles every interval."""
    marks = _main_points(alignment)
    start, end = marks[0][0], marks[-1][0]
    chainages = dict((round(c, 6), name) for c, name in marks)
    if interval > 0:
        k = math.ceil(start / interval)
        while k * interval < end:
            pile = k * interval
            if all(abs(pile - c) > 0.001 for c, _ in marks):
                chainages.setdefault(round(pile, 6), "")
            k += 1
    for key in sorted(chainages):
        chainage = min(max(key, start), end)
        centre = alignment.point(chainage)
        height = None
        if alignment.profile is not None:
            try:
                height = alignment.height(chainage).height
            except quillon.OutsideAlignmentError:
                height = None
        sides = [alignment.point(chainage, offset) for offset in offsets]
        yield chainages[key], chainage, alignment.station(chainage), centre, height, sides


def _number(value, decimals=3):
    return "" if value is None else "%.*f" % (decimals, value)


def road_table(args, out):
    alignment = quillon.Alignment.from_landxml(args.design, args.alignment)
    offsets = args.offsets
    heading = ["Point", "Chainage", "Station", "X", "Y", "H", "Azimuth"]
    for offset in offsets:
        heading += ["X(%+.3f)" % offset, "Y(%+.3f)" % offset]
    rows = []
    for name, chainage, station, centre, height, sides in _rows_of_table(alignment, args.interval,
                                                                          offsets):
        row = [name, _number(chainage), _number(station), _number(centre.x), _number(centre.y),
               _number(height), quillon.format_dms(centre.azimuth)]
        for side in sides:
            row += [_number(side.x), _number(side.y)]
        rows.append(row)
    title = "%s, alignment %r: chainage %.3f to %.3f m" % (args.design, alignment.name,
                                                          alignment.start_chainage,
                                                          alignment.end_chainage)
    _write(out, args.format, title, heading, rows)


def road_locate(args, out):
    alignment = quillon.Alignment.from_landxml(args.design, args.alignment)
    heading = ["Point", "X", "Y", "H", "Chainage", "Station", "Offset", "Design H", "Cut/fill",
               "Remark"]
    rows = []
    for p in io.read_points(args.measured):
        row = [p.name, _number(p.x), _number(p.y), _number(p.h)]
        try:
            if p.h is not None and alignment.profile is not None:
                check = alignment.check((p.x, p.y, p.h))
                at, design, cut_fill, remark = (check.position, check.design_height,
                                                check.cut_fill, "")
            else:
                at, design, cut_fill = alignment.locate(p.x, p.y), None, None
                remark = "no height" if p.h is None else "no profile"
        except quillon.OutsideAlignmentError:
            try:
                at = alignment.locate(p.x, p.y)
            except quillon.OutsideAlignmentError:
                rows.append(row + ["", "", "", "", "", "beyond the ends of the alignment"])
                continue
            design, cut_fill, remark = None, None, "no design height here"
        rows.append(row + [_number(at.chainage), _number(alignment.station(at.chainage)),
                           _number(at.offset), _number(design), _number(cut_fill), remark])
    title = "%s on %s, alignment %r" % (args.measured, args.design, alignment.name)
    _write(out, args.format, title, heading, rows)


def _write(out, form, title, heading, rows):
    if form == "csv":
        writer = csv.writer(out, lineterminator="\n")
        writer.writerow(heading)
        writer.writerows(rows)
        return
    widths = [max(len(str(r[i])) for r in [heading] + rows) for i in range(len(heading))]
    out.write("# %s\n" % title)
    for row in [heading] + rows:
        cells = [str(cell).ljust(w) if i == 0 or i == len(row) - 1 else str(cell).rjust(w)
                 for i, (cell, w) in enumerate(zip(row, widths))]
        out.write("  ".join(cells).rstrip() + "\n")


def _tool(name):
    """A command of the quillon tool: named, not run."""
    def run(args, out):
        raise SystemExit("python -m quillon: %s is a command of the quillon tool (quillon %s "
                         "--help); from Python call %s" % (name, name, {
                             "road plot": "the tool", "station": "quillon.free_station",
                             "traverse": "quillon.traverse_adjust"}[name]))
    run.tool = True
    return run


def parser():
    top = argparse.ArgumentParser(prog="python -m quillon",
                                  description="The road commands of the quillon tool, in Python.")
    top.add_argument("--version", action="version", version="quillon %s" % quillon.__version__)
    commands = top.add_subparsers(dest="command", metavar="COMMAND")
    commands.required = True
    road = commands.add_parser("road", help="setting-out tables and where measured points lie")
    roads = road.add_subparsers(dest="road_command", metavar="ROAD_COMMAND")
    roads.required = True

    table = roads.add_parser("table", help="the setting-out table: main points and piles")
    table.add_argument("design", help="the LandXML file")
    table.add_argument("--alignment", help="its name (the first alignment when not given)")
    table.add_argument("--interval", type=float, default=20.0, help="between piles, m (20)")
    table.add_argument("--offsets", type=_offsets, default=[],
                       help="offsets of the side points, m, + right: --offsets=-3.5,3.5")
    table.add_argument("--format", choices=("text", "csv"), default="text")
    table.set_defaults(run=road_table)

    locate = roads.add_parser("locate", help="chainage, offset and cut/fill of measured points")
    locate.add_argument("design", help="the LandXML file")
    locate.add_argument("measured", help="the point file (CSV: name, X, Y[, H][, code])")
    locate.add_argument("--alignment", help="its name (the first alignment when not given)")
    locate.add_argument("--format", choices=("text", "csv"), default="text")
    locate.set_defaults(run=road_locate)

    plot = roads.add_parser("plot", help="(the quillon tool's)")
    plot.set_defaults(run=_tool("road plot"))
    for name in ("station", "traverse"):
        commands.add_parser(name, help="(the quillon tool's)").set_defaults(run=_tool(name))
    return top


def main(argv=None):
    args, rest = parser().parse_known_args(argv)
    if rest and not getattr(args.run, "tool", False):
        parser().error("unrecognized arguments: %s" % " ".join(rest))
    try:
        args.run(args, sys.stdout)
    except (quillon.QuillonError, ImportError) as error:
        print("python -m quillon: %s" % error, file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())

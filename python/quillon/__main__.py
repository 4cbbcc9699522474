"""python -m quillon: the road commands of the quillon tool, from Python,
with the tool's options, tables and exit codes.

    python -m quillon [-q] road table DESIGN.xml [--alignment NAME] [--interval 20]
                                        [--offsets=-3.5,3.5] [--format text|csv] [-o FILE]
    python -m quillon [-q] road locate DESIGN.xml MEASURED.csv [--alignment NAME]
                                        [--format text|csv] [-o FILE]
    python -m quillon --version

The plot, the free station and the traverse are the quillon tool's own
(quillon road plot, quillon station, quillon traverse; quillon --help);
from Python call quillon.free_station and quillon.traverse_adjust.

Exit codes, as the tool's: 0 done, 1 internal failure, 2 wrong command
line, 3 an input file cannot be read, 4 an input file is malformed, not
supported or contradicts itself, 5 a computation was refused, 6 the output
file cannot be written. Messages go to standard error; the reader's notes
about the design too, unless -q.
"""

import argparse
import math
import os
import sys
import tempfile

import quillon
import quillon.device
from quillon import _survey, io

DONE, INTERNAL, USAGE, NO_INPUT, BAD_INPUT, COMPUTATION, NO_OUTPUT = range(7)

_EXIT_OF_IO = {io.CannotReadError: NO_INPUT, io.MalformedError: BAD_INPUT,
               io.UnsupportedError: BAD_INPUT, io.InconsistentError: BAD_INPUT,
               io.NotFoundError: USAGE, io.IoArgumentError: USAGE, io.NoMemoryError: INTERNAL}


class Failure(Exception):
    """A failure with the exit code it ends the command with."""

    def __init__(self, code, message):
        super().__init__(message)
        self.code = code


# ---- the road ------------------------------------------------------------------


class Road:
    """A design's alignment, chosen as the tool chooses it."""

    def __init__(self, path, name, quiet):
        design = io.read_landxml(path)
        if not quiet:
            for note in design.notes:
                print("note: %s" % note, file=sys.stderr)
        names = design.alignment_names
        listed = ", ".join('"%s"' % n for n in names)
        if name:
            if name not in names:
                raise Failure(USAGE, '%s: no alignment named "%s" (the file holds %s)'
                              % (path, name, listed))
        elif len(names) > 1:
            raise Failure(USAGE, "%s: the file holds %d alignments (%s): choose one with "
                          "--alignment" % (path, len(names), listed))
        self.path = path
        self.alignment = design.alignment(name)
        self.equations = io.station_equations(self.alignment)


def _label(table, count, index):
    """Main points named by the elements either side: T line, C arc,
    S transition."""
    if index == 0:
        return "start"
    if index + 1 >= count:
        return "end"
    kind = {1: "T", 2: "C"}
    return kind.get(table[index - 1].Type, "S") + kind.get(table[index].Type, "S")


def marks(road, interval):
    """(chainage, label) of the main points, the station equations and the
    piles: whole multiples of the interval in the printed stations."""
    a = road.alignment
    table, count = a.table, a.record_count
    start, end = a.start_chainage, a.end_chainage
    main = [(table[i].Chainage, _label(table, count, i)) for i in range(count)]
    main += [(e.chainage, "EQ") for e in road.equations if start < e.chainage < end]
    piles = []
    if interval > 0.0:
        # Between equations the stations run parallel to the chainage.
        bounds = [start] + [e.chainage for e in road.equations] + [end]
        for low, high in zip(bounds, bounds[1:]):
            low, high = max(low, start), min(high, end)
            if not high > low:
                continue
            shift = a.station(low) - low
            k = math.ceil((low + shift) / interval)
            while k * interval - shift < high:
                piles.append((k * interval - shift, ""))
                k += 1
    rows = main + [p for p in piles if all(abs(m[0] - p[0]) > 0.001 for m in main)]
    return sorted(rows, key=lambda row: row[0])


# ---- cells ---------------------------------------------------------------------


def fixed(value, decimals=3, sign=False):
    """A number to a fixed number of decimals, never as -0.000."""
    text = "%+.*f" % (decimals, value) if sign else "%.*f" % (decimals, value)
    if text.startswith("-") and not any(c in "123456789" for c in text):
        text = "+" + text[1:] if sign else text[1:]
    return text


def dms(seconds):
    """An azimuth as degrees, minutes and tenths of seconds, in [0, 360)."""
    if not math.isfinite(seconds):
        return "-"
    return quillon.format_dms(seconds, decimals=1, circle=True)


class Table:
    """Rows rendered as aligned text or CSV. A heading starting with '<' is
    a left-aligned column."""

    def __init__(self, headings):
        self.left = [h.startswith("<") for h in headings]
        self.headings = [h.lstrip("<") for h in headings]
        self.rows = []

    def add(self, cells):
        self.rows.append(list(cells) + [""] * (len(self.headings) - len(cells)))

    def render(self, form):
        if form == "csv":
            def field(text):
                if any(c in text for c in ',"\n'):
                    return '"%s"' % text.replace('"', '""')
                return text
            return "".join(",".join(map(field, row)) + "\n" for row in [self.headings] + self.rows)
        widths = [max(len(row[i]) for row in [self.headings] + self.rows)
                  for i in range(len(self.headings))]
        lines = []
        for row in [self.headings] + self.rows:
            cells = [cell.ljust(w) if left else cell.rjust(w)
                     for cell, w, left in zip(row, widths, self.left)]
            lines.append("  ".join(cells).rstrip() + "\n")
        return "".join(lines)


def deliver(path, text):
    """Writes the whole text to standard output, or to a file whole or not
    at all."""
    if not path or path == "-":
        sys.stdout.write(text)
        return
    directory = os.path.dirname(os.path.abspath(path))
    try:
        descriptor, temporary = tempfile.mkstemp(dir=directory, prefix=os.path.basename(path) + ".")
    except OSError as error:
        raise Failure(NO_OUTPUT, "%s: cannot write: %s" % (path, error.strerror))
    try:
        with os.fdopen(descriptor, "w", encoding="utf-8", newline="") as f:
            f.write(text)
        mask = os.umask(0)
        os.umask(mask)
        os.chmod(temporary, 0o666 & ~mask)
        os.replace(temporary, path)
    except OSError as error:
        if os.path.exists(temporary):
            os.remove(temporary)
        raise Failure(NO_OUTPUT, "%s: cannot write: %s" % (path, error.strerror))


def _require(call, what):
    try:
        return call()
    except quillon.SurveyError as error:
        raise Failure(COMPUTATION, "%s: %s" % (what, error))


# ---- the commands --------------------------------------------------------------


def road_table(args):
    road = Road(args.design, args.alignment, args.quiet)
    a = road.alignment
    headings = ["<Point", "Chainage"] + (["Station"] if road.equations else [])
    headings += ["X", "Y", "H", "Azimuth"]
    for offset in args.offsets:
        headings += ["X(%+.3f)" % offset, "Y(%+.3f)" % offset]
    table = Table(headings + ["<Remark"])
    for chainage, label in marks(road, args.interval):
        where = "%s: the point at chainage %.3f" % (road.path, chainage)
        centre = _require(lambda: a.point(chainage), where)
        cells = [label, "%.3f" % chainage]
        if road.equations:
            cells.append("%.3f" % a.station(chainage))
        cells += ["%.3f" % centre.x, "%.3f" % centre.y]
        remark = ""
        if a.profile is None:
            cells.append("-")
            remark = "no profile"
        else:
            try:
                cells.append("%.3f" % a.height(chainage).height)
            except quillon.OutsideAlignmentError:
                cells.append("-")
                remark = "no design height"
        cells.append(dms(centre.azimuth))
        for offset in args.offsets:
            side = _require(lambda: a.point(chainage, offset),
                            "%s, offset %.3f" % (where, offset))
            cells += ["%.3f" % side.x, "%.3f" % side.y]
        table.add(cells + [remark])
    text = ""
    if args.format == "text":
        text = '# %s, alignment "%s": chainage %.3f to %.3f m\n' % (
            road.path, a.name, a.start_chainage, a.end_chainage)
    deliver(args.output, text + table.render(args.format))


def road_locate(args):
    road = Road(args.design, args.alignment, args.quiet)
    a = road.alignment
    equations = bool(road.equations)
    points = io.read_points(args.measured)
    headings = ["<Point", "Chainage"] + (["Station"] if equations else [])
    table = Table(headings + ["Offset", "H", "Design H", "Cut/fill", "<Remark"])
    for p in points:
        measured = "-" if p.h is None else "%.3f" % p.h
        try:
            where = a.locate(p.x, p.y)
        except (quillon.OutsideAlignmentError, quillon.NoConvergenceError) as error:
            reason = quillon.device.ffi.string(_survey.lib.qs_status_message(error.code))
            table.add([p.name] + ["-"] * (3 if equations else 2)
                      + [measured, "-", "-", reason.decode("ascii")])
            continue
        except quillon.SurveyError as error:
            raise Failure(COMPUTATION, "%s:%d: point %s: %s" % (args.measured, p.line, p.name,
                                                                 error))
        cells = [p.name, "%.3f" % where.chainage]
        if equations:
            cells.append("%.3f" % a.station(where.chainage))
        cells += [fixed(where.offset), measured]
        if a.profile is None:
            cells += ["-", "-", "no profile"]
        else:
            try:
                design = a.height(where.chainage).height
            except quillon.OutsideAlignmentError:
                cells += ["-", "-", "no design height"]
            else:
                cells.append("%.3f" % design)
                if p.h is None:
                    cells += ["-", "no measured height"]
                else:
                    cut_fill = fixed(p.h - design, sign=True)
                    cells += [cut_fill, "on grade" if cut_fill == "+0.000"
                              else "cut" if cut_fill.startswith("+") else "fill"]
        table.add(cells)
    text = ""
    if args.format == "text":
        text = ('# %s on %s, alignment "%s"; offsets + right, cut/fill = H - design H '
                "(+ cut, - fill)\n" % (args.measured, road.path, a.name))
    deliver(args.output, text + table.render(args.format))


def _tool_only(name, instead):
    def run(args):
        raise Failure(USAGE, "%s is a command of the quillon tool (quillon %s --help); from "
                      "Python: %s" % (name, name, instead))
    run.tool_only = True
    return run


# ---- the command line -------------------------------------------------------------


def _offsets(text):
    try:
        return [float(value) for value in text.split(",") if value.strip()]
    except ValueError:
        raise argparse.ArgumentTypeError("offsets are numbers separated by commas: %r" % text)


def _interval(text):
    value = float(text)
    if not value >= 0.0:
        raise argparse.ArgumentTypeError("the interval must not be negative: %r" % text)
    return value


def parser():
    top = argparse.ArgumentParser(
        prog="python -m quillon",
        description="The road commands of the quillon tool: setting-out tables and where "
                    "measured points lie, from LandXML 1.2 road designs.")
    top.add_argument("--version", action="version", version="quillon %s" % quillon.__version__)
    top.add_argument("-q", "--quiet", action="store_true",
                     help="do not print the reader's notes about the design")
    quiet = argparse.ArgumentParser(add_help=False)
    quiet.add_argument("-q", "--quiet", action="store_true", default=argparse.SUPPRESS,
                       help="do not print the reader's notes about the design")
    commands = top.add_subparsers(dest="command", metavar="COMMAND")
    commands.required = True
    road = commands.add_parser("road", help="setting-out tables and where measured points lie")
    roads = road.add_subparsers(dest="road_command", metavar="ROAD_COMMAND")
    roads.required = True

    table = roads.add_parser("table", parents=[quiet],
                             help="the setting-out table: main points and piles")
    table.add_argument("design", metavar="DESIGN", help="LandXML file of the road design")
    table.add_argument("--alignment", help="alignment to use (needed when the file holds several)")
    table.add_argument("--interval", type=_interval, default=20.0,
                       help="pile interval in m, piles at whole multiples of it in the printed "
                            "stations (0: main points only); 20")
    table.add_argument("--offsets", type=_offsets, default=[],
                       help="offsets in m beside the centre line, + right: --offsets=-3.5,3.5")
    table.add_argument("--format", choices=("text", "csv"), default="text")
    table.add_argument("-o", "--output", help="file to write (whole or not at all); stdout")
    table.set_defaults(run=road_table)

    locate = roads.add_parser("locate", parents=[quiet],
                              help="chainage, offset (+ right), design height and cut (+) or "
                                   "fill (-) of measured points")
    locate.add_argument("design", metavar="DESIGN", help="LandXML file of the road design")
    locate.add_argument("measured", metavar="MEASURED",
                        help="CSV of measured points, header row name,X,Y,H,code")
    locate.add_argument("--alignment", help="alignment to use (needed when the file holds several)")
    locate.add_argument("--format", choices=("text", "csv"), default="text")
    locate.add_argument("-o", "--output", help="file to write (whole or not at all); stdout")
    locate.set_defaults(run=road_locate)

    roads.add_parser("plot", help="(the quillon tool's)").set_defaults(
        run=_tool_only("road plot", "the tool draws the plot"))
    commands.add_parser("station", help="(the quillon tool's)").set_defaults(
        run=_tool_only("station", "quillon.free_station"))
    commands.add_parser("traverse", help="(the quillon tool's)").set_defaults(
        run=_tool_only("traverse", "quillon.traverse_adjust"))
    return top


def main(argv=None):
    command_line = parser()
    try:
        args, rest = command_line.parse_known_args(argv)
    except SystemExit as end:
        return USAGE if end.code else DONE
    if rest and not getattr(args.run, "tool_only", False):
        print("python -m quillon: unrecognized arguments: %s" % " ".join(rest), file=sys.stderr)
        return USAGE
    try:
        args.run(args)
    except Failure as failure:
        print("python -m quillon: %s" % failure, file=sys.stderr)
        return failure.code
    except io.IoError as error:
        print("python -m quillon: %s" % error, file=sys.stderr)
        return _EXIT_OF_IO.get(type(error), INTERNAL)
    except (quillon.QuillonError, ImportError, MemoryError) as error:
        print("python -m quillon: %s" % error, file=sys.stderr)
        return INTERNAL
    return DONE


if __name__ == "__main__":
    sys.exit(main())

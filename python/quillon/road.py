"""Roads: transition curves, alignments with their profiles, "where am I"
and the check of a measured point against the design.

An Alignment holds the device's own element tables (HElement records
closed by an end record, and optionally the VElement records of its
profile), so the same design drives the instrument; its answers come from
the survey layer, exact and of any length. Chainages, offsets, coordinates
and heights are in metres, azimuths in arc-seconds clockwise from north,
offsets + right of the centre line looking toward increasing chainage.
"""

import dataclasses

from ._ffi import ffi, libraries
from ._survey import call, coordinates, lib
from .errors import device_error
from .geometry import batch


@dataclasses.dataclass(frozen=True)
class Pose:
    """A point on a curve: x northing (m), y easting (m), azimuth the
    forward azimuth there (arc-seconds in [0, 1296000))."""

    x: float
    y: float
    azimuth: float


def transition_point(start, azimuth, curvature_start, curvature_end, length, s):
    """Point and forward azimuth at arc length s (m) along a curve whose
    curvature runs linearly from curvature_start to curvature_end (1/m,
    + turning right) over length (m): a clothoid, a transition between two
    radii, an arc or a straight. start is (x, y) in m, azimuth the forward
    azimuth there in arc-seconds (any finite value). The survey layer's
    exact qs_transition_point (true pi): exact to 1e-9 m for lengths up to
    1000 m and turns up to pi.

    Raises BadArgumentError for a value not finite, a length not above 0 or
    s outside [0, length].
    """
    x, y, _ = coordinates(start, "start")
    curve = ffi.new("qs_transition *", (x, y, float(azimuth), float(curvature_start),
                                        float(curvature_end), float(length)))
    out = ffi.new("qs_pose *")
    call("qs_transition_point", curve, float(s), out)
    return Pose(out.x, out.y, out.azimuth)


# ---- elements of a design ---------------------------------------------------

_TURNS = {"left": 0, "right": 1}


def _turn(turn):
    if turn not in _TURNS:
        raise ValueError("turn must be 'left' or 'right', not %r" % (turn,))
    return _TURNS[turn]


@dataclasses.dataclass(frozen=True)
class Line:
    """A straight of length m."""

    length: float

    def record(self):
        return {"Type": 1, "Length": float(self.length)}


@dataclasses.dataclass(frozen=True)
class Arc:
    """A circular arc: length along it (m), radius (m), turn 'left' or
    'right'."""

    length: float
    radius: float
    turn: str

    def record(self):
        return {"Type": 2, "Length": float(self.length), "Radius": float(self.radius),
                "Turn": _turn(self.turn)}


@dataclasses.dataclass(frozen=True)
class Transition:
    """A clothoid transition curve of length m, reaching radius m at its
    curved end; turn 'left' or 'right'; exit False for an entry curve
    (curvature growing from 0), True for an exit curve (falling to 0)."""

    length: float
    radius: float
    turn: str
    exit: bool = False

    def record(self):
        return {"Type": 3, "Length": float(self.length), "Radius": float(self.radius),
                "Turn": _turn(self.turn), "Spiral": 1 if self.exit else 0}


# ---- answers -------------------------------------------------------------------


@dataclasses.dataclass(frozen=True)
class StationOffset:
    """A point described by its chainage and offset from an alignment.

    chainage: m, of the foot on the centre line. offset: m, + right.
    x, y: m, the point. azimuth: forward azimuth of the centre line at the
    foot, arc-seconds in [0, 1296000). centre_x, centre_y: m, the foot.
    element: index of the table record whose element holds the foot.
    """

    chainage: float
    offset: float
    x: float
    y: float
    azimuth: float
    centre_x: float
    centre_y: float
    element: int


@dataclasses.dataclass(frozen=True)
class Joint:
    """The exact end of one element against the record that follows it.

    x, y: m, the element's exact end. azimuth: arc-seconds, forward there.
    gap: m, to the next record's X, Y. azimuth_gap: arc-seconds in
    [-648000, 648000), the next record's Azimuth minus the end azimuth.
    """

    x: float
    y: float
    azimuth: float
    gap: float
    azimuth_gap: float


@dataclasses.dataclass(frozen=True)
class ProfilePoint:
    """Design height (m) and grade (a ratio, 0.02 rises 2 per cent, + uphill)
    at a chainage."""

    height: float
    grade: float


@dataclasses.dataclass(frozen=True)
class DesignCheck:
    """A measured point checked against the road design: position where it
    lies on the alignment; design_height the profile's elevation at its
    chainage (m); cut_fill the measured h minus the design height (m), +
    cut (above the design), - fill."""

    position: StationOffset
    design_height: float
    cut_fill: float


def _station_offset(out):
    return StationOffset(out.chainage, out.offset, out.x, out.y, out.azimuth, out.centre_x,
                         out.centre_y, int(out.element))


def _records(ctype, records, count, name):
    """A new array of count records of ctype copied from a cffi array or
    pointer (count needed for a pointer) or from a sequence of records,
    dicts of their fields or tuples."""
    size = ffi.sizeof(ctype)
    if isinstance(records, ffi.CData):
        kind = ffi.typeof(records)
        if kind.kind == "array" and kind.item == ffi.typeof(ctype):
            count = len(records) if count is None else count
            if count > len(records):
                raise ValueError("%s: %d records asked of an array of %d" % (name, count, len(records)))
        elif kind.kind == "pointer" and kind.item == ffi.typeof(ctype):
            if count is None:
                raise ValueError("%s: a pointer needs its record count" % name)
        else:
            raise TypeError("%s: expected %s records, not %s" % (name, ctype, kind.cname))
        table = ffi.new("%s[]" % ctype, count)
        ffi.memmove(table, records, count * size)
        return table, count
    items = list(records)
    if count is not None and count != len(items):
        raise ValueError("%s: record count %d given for %d records" % (name, count, len(items)))
    table = ffi.new("%s[]" % ctype, len(items))
    for i, item in enumerate(items):
        if isinstance(item, ffi.CData):
            ffi.memmove(ffi.addressof(table, i), ffi.addressof(item) if ffi.typeof(item).kind == "struct"
                        else item, size)
        else:
            table[i] = item
    return table, len(items)


class Alignment:
    """A road alignment: a complete horizontal element table of the device
    (HElement records, the last an end record of Type 0), of any length, and
    optionally a complete vertical table (VElement records) for heights.

    Alignment(table, profile=None, name=None) takes the tables as cffi
    arrays (as the device's builders or the io library fill them) or as
    sequences of records or dicts of their fields; the records are copied.
    The survey layer checks the tables here: an invalid one raises
    BadArgumentError. Alignment.from_elements builds the table exactly from
    a designer's list of elements.
    """

    def __init__(self, table, profile=None, name=None, record_count=None, profile_count=None):
        self.name = name
        self._table, self._count = _records("HElement", table, record_count, "table")
        joints = ffi.new("qs_joint[]", max(self._count - 1, 1))
        call("qs_alignment_joints", self._table, self._count, joints, detail="invalid element table")
        self._joints = [Joint(j.x, j.y, j.azimuth, j.gap, j.azimuth_gap)
                        for j in joints[0:self._count - 1]]
        self._profile = None
        self._profile_count = 0
        if profile is not None:
            self._profile, self._profile_count = _records("VElement", profile, profile_count,
                                                          "profile")
            out = ffi.new("qs_profile_point *")
            call("qs_profile_height", self._profile, self._profile_count, self._profile[0].Chainage,
                 out, detail="invalid vertical table")

    @classmethod
    def from_elements(cls, start, azimuth, elements, chainage=0.0, profile=None, name=None):
        """The exact table of a designer's element list (Line, Arc,
        Transition), built by the survey layer's qs_alignment_build: start
        (x, y) in m, azimuth the forward azimuth there in arc-seconds,
        chainage the start chainage in m."""
        x, y, _ = coordinates(start, "start")
        items = [element.record() for element in elements]
        if not items:
            raise ValueError("an alignment needs at least one element")
        items[0].update({"X": x, "Y": y, "Azimuth": float(azimuth), "Chainage": float(chainage)})
        table = ffi.new("HElement[]", items + [{}])
        call("qs_alignment_build", table, len(items) + 1, table)
        return cls(table, profile=profile, name=name)

    @classmethod
    def from_landxml(cls, path, name=None):
        """The alignment of that name (the first when None) of a LandXML 1.2
        file, with its profile, read by the io library (quillon.io). Raises
        quillon.io's errors, whose message names the file and line."""
        from . import io
        return io.read_landxml(path).alignment(name)

    def station(self, chainage):
        """The station a drawing prints at a chainage (m): the chainage
        itself, unless the alignment was read from LandXML with station
        equations."""
        from . import io
        return io.station_of(self, chainage)

    # ---- the tables ---------------------------------------------------------

    @property
    def table(self):
        """The complete horizontal element table, a cffi HElement array for
        the device's functions (do not resize)."""
        return self._table

    @property
    def record_count(self):
        """Records of the table, end record included."""
        return self._count

    @property
    def profile(self):
        """The complete vertical table (cffi VElement array), or None."""
        return self._profile

    @property
    def profile_count(self):
        return self._profile_count

    @property
    def start_chainage(self):
        """Chainage of the first record, m."""
        return self._table[0].Chainage

    @property
    def end_chainage(self):
        """Chainage of the end record, m."""
        return self._table[self._count - 1].Chainage

    def joints(self):
        """The Joint of every element: its exact end against the next
        record (gaps of micrometres on a device-built table, zero on an
        exact one)."""
        return list(self._joints)

    def __repr__(self):
        return "Alignment(%s%d elements, chainage %.3f to %.3f m%s)" % (
            "%r, " % self.name if self.name else "", self._count - 1, self.start_chainage,
            self.end_chainage, ", with profile" if self._profile is not None else "")

    # ---- plan -----------------------------------------------------------------

    def point(self, chainage, offset=0.0):
        """The StationOffset at a chainage (m) and signed offset (m, + right):
        the point, the foot on the centre line and the forward azimuth there
        (qs_alignment_point). Raises OutsideAlignmentError for a chainage
        beyond the table."""
        out = ffi.new("qs_station_offset *")
        call("qs_alignment_point", self._table, self._count, float(chainage), float(offset), out)
        return _station_offset(out)

    def locate(self, x, y=None):
        """Chainage and offset of a measured point, given as x, y (m) or as
        one point: the nearest foot of a perpendicular on the centre line
        (qs_alignment_locate). Raises OutsideAlignmentError for a point
        beyond both ends."""
        if y is None:
            x, y, _ = coordinates(x)
        out = ffi.new("qs_station_offset *")
        call("qs_alignment_locate", self._table, self._count, float(x), float(y), out)
        return _station_offset(out)

    def locate_many(self, x, y, out=None):
        """Chainages and offsets (m) of many measured points, computed in C
        in one call (qs_alignment_locate_many): element i is what
        locate(x[i], y[i]) gives, to the bit, and NaN for a point beyond
        both ends. x, y: any buffers of doubles of the same length (see
        quillon.polar_points). Returns (chainages, offsets) as array('d'),
        or numpy arrays when an input is one; out=(chainages, offsets)
        writes into two writable buffers of doubles instead."""
        scratch = ffi.new("qs_station_offset *")
        return batch(
            "qs_alignment_locate_many", (self._table, self._count), "the table", (x, "x"), (y, "y"),
            out,
            lambda x, y: lib.qs_alignment_locate(self._table, self._count, x, y, scratch)
            == lib.QS_BAD_ARGUMENT,
            lambda x, y: "x %r, y %r" % (x, y))

    # ---- heights --------------------------------------------------------------

    def _need_profile(self):
        if self._profile is None:
            raise ValueError("the alignment %shas no profile" % ("%r " % self.name if self.name else ""))

    def height(self, chainage):
        """Design height and grade at a chainage (m): a ProfilePoint
        (qs_profile_height). Raises OutsideAlignmentError where the profile
        does not reach, ValueError without a profile."""
        self._need_profile()
        out = ffi.new("qs_profile_point *")
        call("qs_profile_height", self._profile, self._profile_count, float(chainage), out)
        return ProfilePoint(out.height, out.grade)

    def check(self, point):
        """Where a measured point (x, y, h in m) lies and how far above (+
        cut) or below (- fill) the design: a DesignCheck (qs_road_check).
        Raises OutsideAlignmentError beyond the alignment or where the
        profile does not reach."""
        self._need_profile()
        measured = ffi.new("SurveyPoint *", coordinates(point))
        out = ffi.new("qs_design_check *")
        call("qs_road_check", self._table, self._count, self._profile, self._profile_count, measured,
             out)
        return DesignCheck(_station_offset(out.position), out.design_height, out.cut_fill)


# ---- profiles from grade intersections ----------------------------------------

_CURVES = {None: 0, "parabola": 2, "circle": 3}


@dataclasses.dataclass(frozen=True)
class VerticalPoint:
    """A grade intersection of a profile: chainage and elevation (m), and at
    an inner point the vertical curve there: curve None (a plain change of
    grade), 'parabola' or 'circle', with its radius (m) or its length (m)."""

    chainage: float
    elevation: float
    curve: str = None
    radius: float = None
    length: float = None

    def record(self):
        if self.curve not in _CURVES:
            raise ValueError("curve must be None, 'parabola' or 'circle', not %r" % (self.curve,))
        record = {"Type": _CURVES[self.curve], "Chainage": float(self.chainage),
                  "VertexChainage": float(self.chainage), "VertexElevation": float(self.elevation)}
        if self.curve is not None:
            if (self.radius is None) == (self.length is None):
                raise ValueError("a vertical curve takes its radius or its length, one of them")
            if self.radius is not None:
                record.update({"Given": 0, "Radius": float(self.radius)})
            else:
                record.update({"Given": 1, "Length": float(self.length)})
        return record


def vertical_table(points):
    """A complete vertical table (cffi VElement array) from 2 to 80 grade
    intersections (VerticalPoint), built by the device's own
    LIB_CalWay_V_Cross_MainPoint, as the instrument builds it. Raises the
    device's errors: TableError for fewer than 2 or more than 80 points,
    DomainError for a bad point, RangeLimitError for a computed value out of
    range."""
    items = [p.record() for p in points]
    device = libraries["quillon"]
    count = len(items)
    if count > 255:
        raise device_error(4, "LIB_CalWay_V_Cross_MainPoint", "%d points" % count)
    records = ffi.new("VElement[]", max(count, 1))
    for i, item in enumerate(items):
        records[i] = item
    table = ffi.new("VElement[81]")
    table_count = ffi.new("unsigned char *")
    status = device.LIB_CalWay_V_Cross_MainPoint(records, count, table, table_count)
    if status != 0:
        raise device_error(status, "LIB_CalWay_V_Cross_MainPoint")
    result = ffi.new("VElement[]", table_count[0])
    ffi.memmove(result, table, table_count[0] * ffi.sizeof("VElement"))
    return result


__all__ = ["Pose", "transition_point", "Line", "Arc", "Transition", "StationOffset", "Joint",
           "ProfilePoint", "DesignCheck", "Alignment", "VerticalPoint", "vertical_table"]

"""Azimuths, joins and polar points, one at a time or over whole arrays.

These use the survey layer (quillon/survey.h), with the true pi: due east
is 324000 arc-seconds exactly. The instrument's own numbers, with pi taken
as 3.1415926 (due east 324000.0055268), come from quillon.device
(LIB_CalAZ, LIB_CalDist, LIB_CalCoor).
"""

import dataclasses

from . import _buffers
from ._ffi import ffi
from ._survey import Point, call, check, lib, survey_point


@dataclasses.dataclass(frozen=True)
class Join:
    """A join from one point to another.

    azimuth: arc-seconds in [0, 1296000), clockwise from north.
    horizontal_distance: m, in plan.
    height_difference: m, second point's h minus the first's.
    slope_distance: m, in space.
    zenith: arc-seconds in [0, 648000], 0 straight up, 324000 level.
    """

    azimuth: float
    horizontal_distance: float
    height_difference: float
    slope_distance: float
    zenith: float


def join(p, q):
    """The join from point p to point q (points as Point, (x, y[, h]) or a
    SurveyPoint record; m), computed by the survey layer's qs_join with the
    true pi.

    Raises SingularError when p and q coincide in plan (no azimuth) and
    BadArgumentError for a coordinate that is not finite or beyond 1e9 m.
    """
    out = ffi.new("qs_join_result *")
    call("qs_join", survey_point(p, "p"), survey_point(q, "q"), out)
    return Join(out.azimuth, out.horizontal_distance, out.height_difference, out.slope_distance,
                out.zenith)


def azimuth(p, q):
    """Azimuth from point p to point q in arc-seconds, [0, 1296000),
    clockwise from north (x) toward east (y); the survey layer's qs_join
    with the true pi, so due east is 324000 exactly. Points in m.

    Raises SingularError when p and q coincide in plan.
    """
    return join(p, q).azimuth


def polar_point(origin, azimuth, distance):
    """The point at a horizontal distance (m) along an azimuth (arc-seconds,
    any finite value, clockwise from north) from origin: the survey layer's
    qs_polar_point with the true pi. The origin's h is carried over.

    Returns a Point (m). Raises BadArgumentError for a value that is not
    finite or a coordinate or distance beyond 1e9 m.
    """
    out = ffi.new("SurveyPoint *")
    call("qs_polar_point", survey_point(origin, "origin"), float(azimuth), float(distance), out)
    return Point(out.X, out.Y, out.H)


def batch(function, leading, leading_name, first, second, out, refused, describe):
    """Runs a batch function of the survey layer, function(*leading, first,
    second, count, out0, out1), over two buffers of doubles given as
    (value, name); returns the two outputs. On a refusal the message names
    the leading arguments (leading_name, when a call of count 0 refuses
    them too) or else the first element for which refused(a, b) holds,
    described by describe(a, b)."""
    a = _buffers.doubles(*first)
    b = _buffers.doubles(*second)
    count = _buffers.same_length(a, b)
    like = (first[0], second[0])
    result0, pointer0 = _buffers.results(count, like, out and out[0], "out[0]")
    result1, pointer1 = _buffers.results(count, like, out and out[1], "out[1]")
    c_function = getattr(lib, function)
    status = c_function(*leading, a.pointer, b.pointer, count, pointer0, pointer1)
    if status != lib.QS_OK:
        detail = None
        if c_function(*leading, ffi.NULL, ffi.NULL, 0, ffi.NULL, ffi.NULL) != lib.QS_OK:
            detail = "%s refused" % leading_name
        for i in range(count if detail is None else 0):
            if refused(a.pointer[i], b.pointer[i]):
                detail = "element %d (%s) refused" % (i, describe(a.pointer[i], b.pointer[i]))
                break
        check(status, function, detail)
    return result0, result1


def polar_points(origin, azimuths, distances, out=None):
    """Polar points from one origin, computed in C in one call
    (qs_polar_points, true pi): element i of the results is what
    polar_point(origin, azimuths[i], distances[i]) gives, to the bit.

    azimuths: arc-seconds; distances: m. Both any buffer of doubles of the
    same length: array('d'), a numpy array, bytes-like objects of native
    doubles, or a list. Returns (x, y) in m as array('d'), or as numpy
    arrays when an input is one; out=(x, y) writes into two writable
    buffers of doubles of that length instead (and returns them), which
    saves making new arrays on every call.

    Raises BadArgumentError, naming the first bad element, when any input
    is not finite or beyond 1e9 m; nothing is computed then.
    """
    station = survey_point(origin, "origin")
    scratch = ffi.new("SurveyPoint *")
    return batch(
        "qs_polar_points", (station,), "the origin", (azimuths, "azimuths"), (distances, "distances"),
        out,
        lambda a, d: lib.qs_polar_point(station, a, d, scratch) == lib.QS_BAD_ARGUMENT,
        lambda a, d: "azimuth %r, distance %r" % (a, d))


def joins(origin, x, y, out=None):
    """Azimuths and horizontal distances from one origin to many points,
    computed in C in one call (qs_joins, true pi): element i is what
    join(origin, (x[i], y[i])) gives, to the bit.

    x, y: northings and eastings in m, any buffers of doubles of the same
    length (see polar_points, and for out). Returns (azimuths in
    arc-seconds, distances in m); a point on the origin in plan gets the
    azimuth NaN and the distance 0. Raises BadArgumentError, naming the
    first bad element, for a coordinate not finite or beyond 1e9 m.
    """
    station = survey_point(origin, "origin")
    scratch = ffi.new("qs_join_result *")
    to = ffi.new("SurveyPoint *")

    def refused(x, y):
        to.X, to.Y, to.H = x, y, station.H
        return lib.qs_join(station, to, scratch) == lib.QS_BAD_ARGUMENT

    return batch("qs_joins", (station,), "the origin", (x, "x"), (y, "y"), out, refused,
                 lambda x, y: "x %r, y %r" % (x, y))

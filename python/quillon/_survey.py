"""Calls into the survey layer that raise its statuses as exceptions, and
the conversions of points that every Pythonic function shares."""

import dataclasses

from ._ffi import ffi, libraries
from .errors import survey_error

lib = libraries["quillon_survey"]


def call(function, *arguments, detail=None):
    """Calls the survey function of that name; raises the SurveyError
    subclass of any status other than QS_OK."""
    check(getattr(lib, function)(*arguments), function, detail)


def check(status, function, detail=None):
    """Raises the SurveyError subclass of a status other than QS_OK."""
    if status != lib.QS_OK:
        message = ffi.string(lib.qs_status_message(status)).decode("ascii")
        raise survey_error(status, function, message, detail)


@dataclasses.dataclass(frozen=True)
class Point:
    """A point: x northing (m), y easting (m), h elevation (m)."""

    x: float
    y: float
    h: float = 0.0

    def __iter__(self):
        return iter((self.x, self.y, self.h))


def coordinates(point, name="point"):
    """x, y, h of a Point, an object with x and y (and h), a sequence of two
    or three numbers or a device SurveyPoint record."""
    if isinstance(point, ffi.CData):
        if ffi.typeof(point) in (ffi.typeof("SurveyPoint"), ffi.typeof("SurveyPoint *")):
            return float(point.X), float(point.Y), float(point.H)
        raise TypeError("%s: a %s record is not a point" % (name, ffi.typeof(point).cname))
    if hasattr(point, "x") and hasattr(point, "y"):
        return float(point.x), float(point.y), float(getattr(point, "h", 0.0))
    try:
        values = [float(v) for v in point]
    except TypeError:
        raise TypeError("%s: expected a Point or (x, y[, h]), not %s"
                        % (name, type(point).__name__)) from None
    if len(values) == 2:
        values.append(0.0)
    if len(values) != 3:
        raise ValueError("%s: expected two or three coordinates, got %d" % (name, len(values)))
    return tuple(values)


def survey_point(point, name="point"):
    """A new SurveyPoint record holding a point."""
    return ffi.new("SurveyPoint *", coordinates(point, name))


def point_of(record):
    return Point(record.X, record.Y, record.H)


def fields(record, cls, **overrides):
    """A dataclass of the fields of a C record with the same names."""
    values = {}
    for field in dataclasses.fields(cls):
        if field.name in overrides:
            values[field.name] = overrides[field.name]
        else:
            values[field.name] = getattr(record, field.name)
    return cls(**values)

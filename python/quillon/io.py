"""Road designs and point files from the io library (quillon/io.h): LandXML
1.2 alignments and profiles as the device's element tables, and CSV point
files. Lengths in metres, azimuths in arc-seconds clockwise from north.

    >>> design = quillon.io.read_landxml("examples/data/road.xml")
    >>> road = design.alignment()            # the first, or by name
    >>> points = quillon.io.read_points("examples/data/measured.csv")

Failures raise an IoError subclass whose message names the file and line
(`line` holds the line, 0 when none applies).
"""

import dataclasses
import os

from ._ffi import ffi, libraries
from .errors import QuillonError


class IoError(QuillonError):
    """A status of the io library (quillon/io.h, qio_status)."""

    library = "quillon_io"

    def __init__(self, message, function=None, line=0):
        super().__init__(message, function)
        self.line = line


class CannotReadError(IoError, OSError):
    """QIO_CANNOT_READ (1): the file cannot be opened or read."""

    code, status = 1, "QIO_CANNOT_READ"


class MalformedError(IoError, ValueError):
    """QIO_MALFORMED (2): not well-formed XML, not a LandXML file, a required
    value missing or not a number, a bad row in a point file."""

    code, status = 2, "QIO_MALFORMED"


class UnsupportedError(IoError):
    """QIO_UNSUPPORTED (3): a valid construct the reader does not take."""

    code, status = 3, "QIO_UNSUPPORTED"


class InconsistentError(IoError, ValueError):
    """QIO_INCONSISTENT (4): the file contradicts itself beyond the
    tolerance."""

    code, status = 4, "QIO_INCONSISTENT"


class NotFoundError(IoError, LookupError):
    """QIO_NOT_FOUND (5): no alignment of that name, or an index out of
    range."""

    code, status = 5, "QIO_NOT_FOUND"


class IoArgumentError(IoError, ValueError):
    """QIO_BAD_ARGUMENT (6): a required argument missing."""

    code, status = 6, "QIO_BAD_ARGUMENT"


class NoMemoryError(IoError, MemoryError):
    """QIO_NO_MEMORY (7): memory ran out."""

    code, status = 7, "QIO_NO_MEMORY"


IO_ERRORS = {cls.code: cls for cls in (CannotReadError, MalformedError, UnsupportedError,
                                       InconsistentError, NotFoundError, IoArgumentError,
                                       NoMemoryError)}


def available():
    """Whether the io library was built and can be loaded."""
    return libraries.available("quillon_io")


def _lib():
    if "quillon_io" not in _declarations_functions():
        raise ImportError("this build of Quillon has no io library (quillon/io.h)")
    return libraries["quillon_io"]


def _declarations_functions():
    from . import _declarations
    return _declarations.FUNCTIONS


def _text(pointer):
    return ffi.string(pointer).decode("utf-8") if pointer != ffi.NULL else None


def _raise(status, function, error=None):
    lib = _lib()
    cls = IO_ERRORS.get(status)
    message = _text(error.message) if error is not None else ""
    if not message:
        message = _text(lib.qio_status_message(status))
    line = int(error.line) if error is not None else 0
    if cls is None:
        from .errors import UnknownStatusError
        raise UnknownStatusError("%s returned the unknown status %d" % (function, status), function,
                                 status, "quillon_io")
    raise cls(message, function, line)


def _path(path):
    return os.fsencode(os.fspath(path))


# ---- road designs ---------------------------------------------------------------


@dataclasses.dataclass(frozen=True)
class StationEquation:
    """From chainage (m) on, stations run on from station_ahead (m);
    station_back is the station just before it. line: in the file."""

    chainage: float
    station_back: float
    station_ahead: float
    line: int


class Design:
    """A loaded LandXML file: its alignments (by index or name) and the
    reader's notes. Read with read_landxml."""

    def __init__(self, handle, path):
        self._handle = handle
        self.path = path

    @property
    def alignment_names(self):
        """The names of the file's alignments, refused ones included."""
        lib = _lib()
        count = lib.qio_design_alignment_count(self._handle)
        return [_text(lib.qio_design_alignment_name(self._handle, i)) for i in range(count)]

    @property
    def notes(self):
        """What the reader decided without refusing, "FILE:LINE: text"."""
        lib = _lib()
        return [_text(lib.qio_design_note(self._handle, i))
                for i in range(lib.qio_design_note_count(self._handle))]

    def alignment(self, name=None):
        """The alignment of that name (the first when None; an int is an
        index) as a quillon.Alignment with its profile. Raises NotFoundError
        for no such alignment, and the reader's refusal (UnsupportedError,
        InconsistentError, MalformedError) for one it did not read."""
        from .road import Alignment
        lib = _lib()
        if name is None or isinstance(name, int):
            index = name or 0
        else:
            found = ffi.new("size_t *")
            status = lib.qio_design_find(self._handle, name.encode("utf-8"), found)
            if status == lib.QIO_NOT_FOUND:
                raise NotFoundError("%s: no alignment named %r (there are: %s)"
                                    % (self.path, name, ", ".join(map(repr, self.alignment_names))),
                                    "qio_design_find")
            if status != lib.QIO_OK:
                _raise(status, "qio_design_find")
            index = found[0]
        out = ffi.new("qio_alignment *")
        error = ffi.new("qio_error *")
        status = lib.qio_design_alignment(self._handle, index, out, error)
        if status != lib.QIO_OK:
            _raise(status, "qio_design_alignment", error)
        profile = out.vertical if out.vertical != ffi.NULL else None
        alignment = Alignment(out.horizontal, profile=profile, name=_text(out.name),
                              record_count=out.horizontal_count, profile_count=out.vertical_count)
        alignment._landxml = (self, out)
        return alignment


def read_landxml(path):
    """Reads a LandXML 1.2 (or Inframodel) file: a Design. Raises
    CannotReadError, MalformedError or UnsupportedError with the file and
    line."""
    lib = _lib()
    handle = ffi.new("qio_design **")
    error = ffi.new("qio_error *")
    status = lib.qio_landxml_read_file(_path(path), handle, error)
    if status != lib.QIO_OK:
        _raise(status, "qio_landxml_read_file", error)
    return Design(ffi.gc(handle[0], lib.qio_design_free), os.fspath(path))


def station_of(alignment, chainage):
    """The station a drawing prints for a chainage of an alignment read from
    LandXML (after its station equations); the chainage itself otherwise."""
    landxml = getattr(alignment, "_landxml", None)
    if landxml is None:
        return float(chainage)
    return _lib().qio_alignment_station(landxml[1], float(chainage))


def station_equations(alignment):
    """The StationEquation list of an alignment read from LandXML."""
    landxml = getattr(alignment, "_landxml", None)
    if landxml is None:
        return []
    out = landxml[1]
    return [StationEquation(e.chainage, e.station_back, e.station_ahead, int(e.line))
            for e in out.equations[0:out.equation_count]]


# ---- point files ------------------------------------------------------------------


@dataclasses.dataclass(frozen=True)
class MeasuredPoint:
    """A row of a point file: name, x northing (m), y easting (m), h
    elevation (m, None when the row gives none), code ("" when none) and
    the row's line in the file."""

    name: str
    x: float
    y: float
    h: float
    code: str
    line: int


def read_points(path):
    """The rows of a CSV point file (header name, X, Y[, H][, code]; commas
    or semicolons) as MeasuredPoint records. Raises CannotReadError or
    MalformedError naming the file and the bad line."""
    lib = _lib()
    handle = ffi.new("qio_points **")
    error = ffi.new("qio_error *")
    status = lib.qio_points_read_file(_path(path), handle, error)
    if status != lib.QIO_OK:
        _raise(status, "qio_points_read_file", error)
    points = ffi.gc(handle[0], lib.qio_points_free)
    count = ffi.new("size_t *")
    rows = lib.qio_points_rows(points, count)
    return [MeasuredPoint(_text(r.name), r.x, r.y, r.h if r.has_height else None, _text(r.code),
                          int(r.line)) for r in rows[0:count[0]]]

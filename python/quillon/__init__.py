"""Quillon in Python: the computation library of a total station.

Two levels:

- quillon.device: the 65 LIB_ functions of the device library, called with
  its own records (cffi structures) and returning its status codes, for
  checking instrument results bit for bit.
- This package's own functions and small dataclasses, which raise a
  QuillonError subclass instead of returning a status: joins, azimuths and
  polar points (one at a time or over whole arrays), free station,
  traverse, transition curves and road alignments with their profiles.
  They use the survey layer, with the true pi.

Units: lengths in metres, angles in arc-seconds (a full circle is 1296000),
azimuths clockwise from north (x) toward east (y); see quillon.angles for
degrees and DMS text.

The libraries are found through QUILLON_LIBRARY_PATH, else where this
package was built or installed, else by the system's loader.
"""

from . import _ffi
from .angles import (FULL_CIRCLE, HALF_CIRCLE, QUARTER_CIRCLE, degrees_from_seconds, fold,
                     format_dms, parse_dms, radians_from_seconds, seconds_from_degrees,
                     seconds_from_radians)
from .errors import (BadArgumentError, BehindError, CoincidentError, DeviceError, DomainError,
                     NoConvergenceError, OutsideAlignmentError, ParallelError, QuillonError,
                     RangeLimitError, SingularError, SurveyError, TableError, TooFewError,
                     UnknownStatusError)
from .geometry import Join, azimuth, join, joins, polar_point, polar_points
from .road import (Alignment, Arc, DesignCheck, Joint, Line, Pose, ProfilePoint, StationOffset,
                   Transition, VerticalPoint, transition_point, vertical_table)
from .station import (FreeStation, Sighting, SightingResult, TraverseAdjustment, TraverseStation,
                      free_station, traverse_adjust)
from ._survey import Point

CONSTANTS = dict(_ffi.CONSTANTS)
"""Every #define constant of the headers (QUILLON_*, QS_*), by name."""

__version__ = CONSTANTS["QUILLON_VERSION_STRING"]
"""The library's version, QUILLON_VERSION_STRING of quillon.h."""

version_info = (CONSTANTS["QUILLON_VERSION_MAJOR"], CONSTANTS["QUILLON_VERSION_MINOR"],
                CONSTANTS["QUILLON_VERSION_PATCH"])


def library_paths():
    """The files the libraries were loaded from, by library name."""
    return dict(_ffi.libraries.paths)


__all__ = [name for name in dir() if not name.startswith("_")]

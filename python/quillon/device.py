"""The device library as the instrument calls it: every LIB_ function of
quillon.h, called with the device's own records and returning the status
code (an int, 0 for success) exactly as the C function does.

Records are cffi structures made with `new`:

    >>> from quillon import device
    >>> pair = device.new("SurveyPoint[2]", [(1000.0, 2000.0, 50.0), (1030.0, 2040.0, 52.5)])
    >>> join = device.new("BearingRecord *")
    >>> device.LIB_CalDist(pair, join)
    0
    >>> join.HorizontalDistance
    50.0

Scalars are passed as Python numbers (a byte count as an int from 0 to
255), outputs as records or arrays of records. Every number is the C
library's own: angles in arc-seconds with pi taken as 3.1415926, the
truncations and single-precision roundings included. `check` turns a
status into the matching DeviceError subclass.
"""

from . import _declarations
from ._ffi import CONSTANTS as _CONSTANTS
from ._ffi import ffi, libraries
from .errors import device_error

FUNCTIONS = _declarations.FUNCTIONS["quillon"]

_lib = libraries["quillon"]

for _name in FUNCTIONS:
    globals()[_name] = getattr(_lib, _name)
del _name

globals().update({name: value for name, value in _CONSTANTS.items() if name.startswith("QUILLON_")})
for _status in ("QUILLON_OK", "QUILLON_DOMAIN", "QUILLON_RANGE", "QUILLON_COINCIDENT", "QUILLON_TABLE",
                "QUILLON_BEHIND", "QUILLON_PARALLEL"):
    globals()[_status] = getattr(_lib, _status)
del _status


def new(ctype, init=None):
    """A new zero-filled record or array of the device's types, e.g.
    new("SurveyPoint *", (1.0, 2.0, 3.0)) or new("HElement[81]"). It lives
    as long as the returned object."""
    return ffi.new(ctype, init)


def check(status, function="a device function"):
    """Raises the DeviceError subclass of a status; returns None on
    QUILLON_OK."""
    if status != 0:
        raise device_error(status, function)


def path():
    """The file the device library was loaded from."""
    return libraries.paths["quillon"]


__all__ = list(FUNCTIONS) + ["new", "check", "ffi", "path", "FUNCTIONS"]

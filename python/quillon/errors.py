"""Exceptions raised in place of the libraries' status codes.

Every status other than success has its own class, carrying the code the C
function returned in `code`, the status's C name in `status` and the
function's name in `function`. The device library's statuses derive from
DeviceError, the survey layer's from SurveyError, and both from
QuillonError. Statuses that mean bad input also derive from ValueError.
"""


class QuillonError(Exception):
    """A Quillon function returned a status other than success."""

    code = None
    status = None
    library = None

    def __init__(self, message, function=None):
        super().__init__(message)
        self.function = function


class DeviceError(QuillonError):
    """A status of the device library (quillon.h, ResultCode)."""

    library = "quillon"


class DomainError(DeviceError, ValueError):
    """QUILLON_DOMAIN (1): input outside its domain: a count, mode or field
    out of bounds, a degenerate configuration."""

    code, status = 1, "QUILLON_DOMAIN"
    message = "input outside its domain"


class RangeLimitError(DeviceError, ArithmeticError):
    """QUILLON_RANGE (2): a computed value beyond the range limit
    (99999999.9999 m), or a scale factor outside its band."""

    code, status = 2, "QUILLON_RANGE"
    message = "a computed value beyond the range limit"


class CoincidentError(DeviceError, ValueError):
    """QUILLON_COINCIDENT (3): two points coincide where a direction is
    needed."""

    code, status = 3, "QUILLON_COINCIDENT"
    message = "two points coincide where a direction is needed"


class TableError(DeviceError, ValueError):
    """QUILLON_TABLE (4): a road table count outside its limits."""

    code, status = 4, "QUILLON_TABLE"
    message = "a road table count outside its limits"


class BehindError(DeviceError):
    """QUILLON_BEHIND (5): a computed point does not lie in the direction of
    the sighting."""

    code, status = 5, "QUILLON_BEHIND"
    message = "the point does not lie in the direction of the sighting"


class ParallelError(DeviceError):
    """QUILLON_PARALLEL (6): two lines are parallel."""

    code, status = 6, "QUILLON_PARALLEL"
    message = "the lines are parallel"


class SurveyError(QuillonError):
    """A status of the survey layer (quillon/survey.h, qs_status)."""

    library = "quillon_survey"


class TooFewError(SurveyError):
    """QS_TOO_FEW (1): too few observations to determine the unknowns."""

    code, status = 1, "QS_TOO_FEW"


class SingularError(SurveyError):
    """QS_SINGULAR (2): the geometry does not determine the unknowns."""

    code, status = 2, "QS_SINGULAR"


class NoConvergenceError(SurveyError):
    """QS_NO_CONVERGENCE (3): an iteration did not converge."""

    code, status = 3, "QS_NO_CONVERGENCE"


class OutsideAlignmentError(SurveyError):
    """QS_OUTSIDE_ALIGNMENT (4): the point lies beyond both ends of the
    alignment, or the profile does not reach its chainage."""

    code, status = 4, "QS_OUTSIDE_ALIGNMENT"


class BadArgumentError(SurveyError, ValueError):
    """QS_BAD_ARGUMENT (5): a count out of bounds, a non-finite input, a
    negative standard deviation or an unknown mode."""

    code, status = 5, "QS_BAD_ARGUMENT"


DEVICE_ERRORS = {cls.code: cls for cls in (DomainError, RangeLimitError, CoincidentError, TableError,
                                           BehindError, ParallelError)}
SURVEY_ERRORS = {cls.code: cls for cls in (TooFewError, SingularError, NoConvergenceError,
                                           OutsideAlignmentError, BadArgumentError)}


class UnknownStatusError(QuillonError):
    """A status code that the library's header does not list."""

    def __init__(self, message, function=None, code=None, library=None):
        super().__init__(message, function)
        self.code = code
        self.library = library


def device_error(code, function, detail=None):
    """The exception for a device status code."""
    cls = DEVICE_ERRORS.get(code)
    if cls is None:
        return UnknownStatusError("%s returned the unknown status %d" % (function, code), function,
                                  code, "quillon")
    return cls("%s: %s%s" % (function, cls.message, "; " + detail if detail else ""), function)


def survey_error(code, function, message, detail=None):
    """The exception for a survey status code, with the library's text."""
    cls = SURVEY_ERRORS.get(code)
    if cls is None:
        return UnknownStatusError("%s returned the unknown status %d" % (function, code), function,
                                  code, "quillon_survey")
    return cls("%s: %s%s" % (function, message, "; " + detail if detail else ""), function)

"""Angles as Quillon keeps them, in arc-seconds (a full circle is 1296000),
and the conversions a surveyor reads and writes: decimal degrees and
degrees, minutes and seconds.

    >>> parse_dms("123°45'06.7\\"")
    445506.7
    >>> format_dms(445506.7)
    '123°45\\'06.7"'
    >>> seconds_from_degrees(90.0)
    324000.0
"""

import math
import re

FULL_CIRCLE = 1296000.0
"""A full circle in arc-seconds."""
HALF_CIRCLE = 648000.0
"""A half circle in arc-seconds."""
QUARTER_CIRCLE = 324000.0
"""A quarter circle in arc-seconds."""


def seconds_from_degrees(degrees):
    """Decimal degrees to arc-seconds (times 3600)."""
    return float(degrees) * 3600.0


def degrees_from_seconds(seconds):
    """Arc-seconds to decimal degrees (divided by 3600)."""
    return float(seconds) / 3600.0


def seconds_from_radians(radians):
    """Radians to arc-seconds, with the true pi."""
    return float(radians) * (648000.0 / math.pi)


def radians_from_seconds(seconds):
    """Arc-seconds to radians, with the true pi."""
    return float(seconds) * (math.pi / 648000.0)


def fold(seconds):
    """An angle folded into [0, 1296000) arc-seconds."""
    folded = math.fmod(float(seconds), FULL_CIRCLE)
    if folded < 0.0:
        folded += FULL_CIRCLE
    if folded >= FULL_CIRCLE:
        folded = 0.0
    return folded + 0.0


_NUMBER = r"(\d+(?:\.\d*)?|\.\d+)"
_DMS = re.compile(
    r"^\s*([-+])?\s*" + _NUMBER +
    r"(?:\s*(?:°|d|deg|:|\s)\s*" + _NUMBER +
    r"(?:\s*(?:'|′|m|:|\s)\s*" + _NUMBER + r")?)?" +
    r"\s*(?:\"|″|''|s|°|d|'|′|m)?\s*$")
_SEPARATED = re.compile(r"^\s*([-+])?\s*(\d+)-(\d+)-" + _NUMBER + r"\s*$")


def parse_dms(text):
    """Arc-seconds from degrees, minutes and seconds written as text.

    Accepted: 123°45'06.7", 123 45 06.7, 123:45:06.7, 123d45m06.7s,
    123-45-06.7, and shorter forms with degrees and minutes or degrees
    alone (45° or 45, decimal degrees then). Only the last part may have
    decimals; minutes and seconds must be below 60. A leading sign applies
    to the whole angle. Raises ValueError for anything else.
    """
    if not isinstance(text, str):
        raise TypeError("parse_dms takes a string, not %s" % type(text).__name__)
    match = _SEPARATED.match(text) or _DMS.match(text)
    if not match:
        raise ValueError("not an angle in degrees, minutes and seconds: %r" % text)
    sign, degrees, minutes, seconds = match.groups()
    parts = [p for p in (degrees, minutes, seconds) if p is not None]
    for part in parts[:-1]:
        if "." in part:
            raise ValueError("only the last part of an angle may have decimals: %r" % text)
    for part in parts[1:]:
        if float(part) >= 60.0:
            raise ValueError("minutes and seconds must be below 60: %r" % text)
    total = float(parts[0]) * 3600.0
    if len(parts) > 1:
        total += float(parts[1]) * 60.0
    if len(parts) > 2:
        total += float(parts[2])
    return -total if sign == "-" else total


def _rounded(value):
    """The whole number nearest a non-negative value, halves away from zero
    (as surveyors round, and C's round)."""
    whole = math.floor(value)
    return int(whole) + (1 if value - whole >= 0.5 else 0)


def format_dms(seconds, decimals=1, style="symbols", circle=False):
    """Text of an angle in arc-seconds as degrees, minutes and seconds.

    The angle is rounded to the given number of decimals of a second first
    (halves away from zero), so 59.96" never shows as 60.0". style "symbols"
    gives 123°45'06.7", "spaces" 123 45 06.7 and "colons" 123:45:06.7. A
    negative angle gets a leading minus; circle=True folds the rounded angle
    into [0°, 360°) instead. Raises ValueError for a value that is not
    finite.
    """
    value = float(seconds)
    if not math.isfinite(value):
        raise ValueError("angle not finite: %r" % seconds)
    if decimals < 0:
        raise ValueError("decimals must not be negative")
    scale = 10 ** decimals
    units = _rounded(abs(value) * scale)  # whole units of the last decimal
    sign = "-" if value < 0 and units else ""
    if circle:
        units = (-units if value < 0 else units) % (1296000 * scale)
        sign = ""
    whole_seconds, fraction = divmod(units, scale)
    degrees, rest = divmod(whole_seconds, 3600)
    minutes, secs = divmod(rest, 60)
    second_text = "%02d" % secs
    if decimals:
        second_text += ".%0*d" % (decimals, fraction)
    if style == "symbols":
        return "%s%d°%02d'%s\"" % (sign, degrees, minutes, second_text)
    if style == "spaces":
        return "%s%d %02d %s" % (sign, degrees, minutes, second_text)
    if style == "colons":
        return "%s%d:%02d:%s" % (sign, degrees, minutes, second_text)
    raise ValueError("unknown style %r: symbols, spaces or colons" % style)

"""The station and the traverse, by the survey layer: a free station by
least squares with its blunder search, and a traverse closed and adjusted
from its raw observations. Lengths in metres, angles in arc-seconds (true
pi), azimuths clockwise from north.
"""

import dataclasses
import typing

from ._ffi import CONSTANTS, ffi
from ._survey import Point, call, coordinates, point_of


@dataclasses.dataclass(frozen=True)
class Sighting:
    """One sighting from the free station to a known point.

    point: the known point, (x, y, h) in m. direction: horizontal circle
    reading, arc-seconds. slope_distance: m, or None when not measured.
    zenith: zenith angle, arc-seconds (1 to 647999), or None when not
    measured. target_height: m, of the target over the known point.
    """

    point: typing.Any
    direction: float
    slope_distance: typing.Optional[float] = None
    zenith: typing.Optional[float] = None
    target_height: float = 0.0


@dataclasses.dataclass(frozen=True)
class SightingResult:
    """What the fit makes of one sighting; residuals are adjusted minus
    observed, 0 (with redundancy and w) for an observation not made.

    azimuth: arc-seconds, station to point. horizontal_distance: m.
    direction_residual: arc-seconds. distance_residual: m.
    height: m, the station height from this sighting alone.
    height_residual: m. *_redundancy: redundancy numbers, 0 to 1.
    *_w: standardized residuals.
    """

    azimuth: float
    horizontal_distance: float
    direction_residual: float
    direction_redundancy: float
    direction_w: float
    distance_residual: float
    distance_redundancy: float
    distance_w: float
    height: float
    height_residual: float
    height_redundancy: float
    height_w: float


_KINDS = {0: None, 1: "direction", 2: "distance", 3: "height"}


@dataclasses.dataclass(frozen=True)
class FreeStation:
    """A free station fitted by least squares.

    x, y, h: m, the station mark (h NaN without any zenith angle).
    orientation: arc-seconds in [0, 1296000), azimuth of the circle's zero
    (azimuth = reading + orientation). sigma_x, sigma_y, sigma_h: m;
    sigma_orientation: arc-seconds. sigma0, sigma0_height: a posteriori
    sigmas of unit weight. dof: degrees of freedom of the plan fit;
    height_count: trigonometric heights; iterations: Gauss-Newton steps.
    blunder_w: largest |w|; blunder_kind: 'direction', 'distance', 'height'
    or None; blunder_index: its sighting; blunder_flagged: whether |w|
    exceeds the threshold. residuals: a SightingResult per sighting.
    """

    x: float
    y: float
    h: float
    orientation: float
    sigma_x: float
    sigma_y: float
    sigma_h: float
    sigma_orientation: float
    sigma0: float
    sigma0_height: float
    blunder_w: float
    blunder_kind: typing.Optional[str]
    blunder_flagged: bool
    dof: int
    height_count: int
    blunder_index: int
    iterations: int
    residuals: typing.List[SightingResult]

    @property
    def point(self):
        return Point(self.x, self.y, self.h)


def free_station(sightings, instrument_height=0.0, sigma_direction=1.0, sigma_zenith=1.0,
                 sigma_distance_mm=2.0, sigma_distance_ppm=2.0, curvature=True, refraction=0.13,
                 earth_radius=CONSTANTS["QS_EARTH_RADIUS"],
                 blunder_threshold=CONSTANTS["QS_BLUNDER_THRESHOLD"], max_iterations=20):
    """Free station by least squares (the survey layer's qs_free_station).

    sightings: Sighting records (three, or two with distances, at least).
    instrument_height: m. sigma_direction, sigma_zenith: a priori standard
    deviations in arc-seconds; sigma_distance_mm (mm) plus
    sigma_distance_ppm (mm/km) that of a distance. curvature: correct
    heights for earth curvature and refraction (coefficient refraction,
    earth_radius in m). blunder_threshold: critical |w|.

    Returns a FreeStation. Raises TooFewError, SingularError (the geometry
    does not fix the station), NoConvergenceError or BadArgumentError.
    """
    records = []
    for i, s in enumerate(sightings):
        x, y, h = coordinates(s.point, "sighting %d" % i)
        records.append((x, y, h, float(s.direction),
                        0.0 if s.slope_distance is None else float(s.slope_distance),
                        0.0 if s.zenith is None else float(s.zenith), float(s.target_height),
                        0 if s.slope_distance is None else 1, 0 if s.zenith is None else 1))
    count = len(records)
    array = ffi.new("qs_sighting[]", records or 1)
    options = ffi.new("qs_free_station_options *", {
        "instrument_height": float(instrument_height), "sigma_direction": float(sigma_direction),
        "sigma_zenith": float(sigma_zenith), "sigma_distance_mm": float(sigma_distance_mm),
        "sigma_distance_ppm": float(sigma_distance_ppm), "refraction": float(refraction),
        "earth_radius": float(earth_radius), "blunder_threshold": float(blunder_threshold),
        "curvature": 1 if curvature else 0, "max_iterations": int(max_iterations)})
    result = ffi.new("qs_free_station_result *")
    residuals = ffi.new("qs_sighting_result[]", max(count, 1))
    call("qs_free_station", array, count, options, result, residuals)
    names = [f.name for f in dataclasses.fields(SightingResult)]
    per_sighting = [SightingResult(**{n: getattr(r, n) for n in names}) for r in residuals[0:count]]
    return FreeStation(
        result.x, result.y, result.h, result.orientation, result.sigma_x, result.sigma_y,
        result.sigma_h, result.sigma_orientation, result.sigma0, result.sigma0_height,
        result.blunder_w, _KINDS.get(result.blunder_kind), bool(result.blunder_flagged),
        int(result.dof), int(result.height_count), int(result.blunder_index),
        int(result.iterations), per_sighting)


# ---- traverse -------------------------------------------------------------------

_TRAVERSE_KINDS = {"link": 0, "loop": 1, "known_ends": 2}
_RULES = {"compass": 0, "transit": 1}
_HEIGHT_RULES = {None: 0, "length": 1, "length_squared": 2}


@dataclasses.dataclass(frozen=True)
class TraverseStation:
    """Observations at one station of a traverse: angle, clockwise from the
    back station to the forward one (arc-seconds, raw); distance, the
    horizontal length of the leg to the next station (m, not read at the
    last station); height_difference, H of the next station minus this
    one's (m, read with a height rule)."""

    angle: float
    distance: float = 0.0
    height_difference: float = 0.0


@dataclasses.dataclass(frozen=True)
class TraverseAdjustment:
    """A traverse closed and adjusted.

    angular_misclosure, angle_correction, computed_closing,
    expected_closing: arc-seconds (see qs_traverse_result). misclosure_x,
    misclosure_y, misclosure: m, computed end minus known end.
    relative_misclosure: misclosure / total length. precision_ratio: N of
    1 : N (inf when the traverse closes exactly). height_misclosure: m.
    total_length: m. points: the adjusted stations, station 0 first (Point,
    m; h NaN between the ends without a height rule).
    """

    angular_misclosure: float
    angle_correction: float
    computed_closing: float
    expected_closing: float
    misclosure_x: float
    misclosure_y: float
    misclosure: float
    relative_misclosure: float
    precision_ratio: float
    height_misclosure: float
    total_length: float
    points: typing.List[Point]


def _choice(value, table, what):
    if value not in table:
        raise ValueError("%s must be one of %s, not %r" % (what, ", ".join(map(repr, table)), value))
    return table[value]


def traverse_adjust(stations, start, start_backsight, end=None, end_foresight=None, kind="link",
                    rule="compass", heights=None):
    """Closes and adjusts a traverse (the survey layer's qs_traverse_adjust).

    stations: TraverseStation (or (angle, distance, height_difference))
    for stations 0 (the start A) to n (the end): n + 1 records for n legs.
    start, start_backsight: the known start A and the point sighted back
    from it; end, end_foresight: the known end E and the point sighted
    forward from it (m). kind: 'link' (orientation at both ends), 'loop'
    (back to A) or 'known_ends' (no closing orientation). rule: 'compass'
    (by leg length) or 'transit' (by |dX|, |dY|) for the linear misclosure.
    heights: None, 'length' or 'length_squared' for the height misclosure.

    Returns a TraverseAdjustment. Raises TooFewError (a loop of fewer than
    3 legs), SingularError (a known point and its sight coincide) or
    BadArgumentError.
    """
    kind_code = _choice(kind, _TRAVERSE_KINDS, "kind")
    rule_code = _choice(rule, _RULES, "rule")
    height_code = _choice(heights, _HEIGHT_RULES, "heights")
    records = []
    for s in stations:
        if not isinstance(s, TraverseStation):
            s = TraverseStation(*s)
        records.append((float(s.angle), float(s.distance), float(s.height_difference)))
    legs = len(records) - 1
    nowhere = (0.0, 0.0, 0.0)
    ends = ffi.new("qs_traverse_ends *", (
        coordinates(start, "start"), coordinates(start_backsight, "start_backsight"),
        coordinates(end, "end") if end is not None else nowhere,
        coordinates(end_foresight, "end_foresight") if end_foresight is not None else nowhere))
    array = ffi.new("qs_traverse_station[]", records or 1)
    result = ffi.new("qs_traverse_result *")
    adjusted = ffi.new("SurveyPoint[]", max(len(records), 1))
    call("qs_traverse_adjust", kind_code, ends, array, max(legs, 0), rule_code, height_code, result,
         adjusted)
    names = [f.name for f in dataclasses.fields(TraverseAdjustment) if f.name != "points"]
    values = {n: getattr(result, n) for n in names}
    return TraverseAdjustment(points=[point_of(p) for p in adjusted[0:len(records)]], **values)


__all__ = ["Sighting", "SightingResult", "FreeStation", "free_station", "TraverseStation",
           "TraverseAdjustment", "traverse_adjust"]

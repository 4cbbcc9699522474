"""Free station and traverse: exact observations give the station and the
stations back, a misread direction is named, a misclosure is measured and
spread, and the refusals raise their classes."""

import math
import unittest

import quillon

STATION = (1000.0, 2000.0, 50.0)
INSTRUMENT = 1.55
ORIENTATION = 100000.0  # azimuth of the circle's zero, arc-seconds
KNOWN = [(1120.0, 2010.0, 55.0), (1010.0, 2180.0, 48.0), (850.0, 1930.0, 52.0),
         (1060.0, 1820.0, 51.0), (900.0, 2150.0, 47.5), (1150.0, 1850.0, 53.0)]


def exact_sightings(misread=None):
    """Sightings from STATION, computed exactly; misread = (index, seconds)
    adds an error to one direction."""
    sightings = []
    for i, point in enumerate(KNOWN):
        j = quillon.join((STATION[0], STATION[1], STATION[2] + INSTRUMENT), point)
        direction = quillon.fold(j.azimuth - ORIENTATION)
        if misread and misread[0] == i:
            direction += misread[1]
        sightings.append(quillon.Sighting(point, direction, slope_distance=j.slope_distance,
                                          zenith=j.zenith))
    return sightings


class FreeStation(unittest.TestCase):
    def test_exact_observations_give_the_station_back(self):
        result = quillon.free_station(exact_sightings(), instrument_height=INSTRUMENT,
                                      curvature=False)
        self.assertAlmostEqual(result.x, STATION[0], delta=1e-6)
        self.assertAlmostEqual(result.y, STATION[1], delta=1e-6)
        self.assertAlmostEqual(result.h, STATION[2], delta=1e-6)
        self.assertAlmostEqual(result.orientation, ORIENTATION, delta=1e-4)
        self.assertEqual(result.dof, 2 * len(KNOWN) - 3)
        self.assertEqual(result.height_count, len(KNOWN))
        self.assertFalse(result.blunder_flagged)
        self.assertEqual(len(result.residuals), len(KNOWN))
        for r in result.residuals:
            self.assertLess(abs(r.direction_residual), 1e-4)
            self.assertLess(abs(r.distance_residual), 1e-6)
        self.assertEqual(result.point, quillon.Point(result.x, result.y, result.h))

    def test_a_misread_direction_is_named(self):
        result = quillon.free_station(exact_sightings(misread=(3, 30.0)),
                                      instrument_height=INSTRUMENT, curvature=False)
        self.assertTrue(result.blunder_flagged)
        self.assertEqual(result.blunder_kind, "direction")
        self.assertEqual(result.blunder_index, 3)
        self.assertGreater(result.blunder_w, quillon.CONSTANTS["QS_BLUNDER_THRESHOLD"])

    def test_directions_alone_without_heights(self):
        sightings = [quillon.Sighting(s.point, s.direction) for s in exact_sightings()]
        result = quillon.free_station(sightings)
        self.assertAlmostEqual(result.x, STATION[0], delta=1e-6)
        self.assertTrue(math.isnan(result.h))
        self.assertEqual(result.height_count, 0)

    def test_refusals(self):
        sightings = exact_sightings()
        with self.assertRaises(quillon.TooFewError):
            quillon.free_station([quillon.Sighting(s.point, s.direction) for s in sightings[:2]])
        with self.assertRaises(quillon.BadArgumentError):
            quillon.free_station(sightings, sigma_direction=-1.0)
        with self.assertRaises(quillon.BadArgumentError):
            quillon.free_station([])


def link_observations():
    """A link traverse A - P1 - P2 - E with backsight B and foresight F,
    observed exactly."""
    B, A = (0.0, 0.0, 10.0), (100.0, 50.0, 12.0)
    P = [A, (180.0, 140.0, 13.5), (300.0, 160.0, 11.0), (390.0, 260.0, 12.25)]
    F = (500.0, 300.0, 0.0)
    stations = []
    for i, here in enumerate(P):
        back = B if i == 0 else P[i - 1]
        forward = F if i == len(P) - 1 else P[i + 1]
        angle = quillon.fold(quillon.azimuth(here, forward) - quillon.azimuth(here, back))
        if i < len(P) - 1:
            leg = quillon.join(here, P[i + 1])
            stations.append(quillon.TraverseStation(angle, leg.horizontal_distance,
                                                    leg.height_difference))
        else:
            stations.append(quillon.TraverseStation(angle))
    return B, P, F, stations


class Traverse(unittest.TestCase):
    def test_an_exact_link_traverse_closes(self):
        B, P, F, stations = link_observations()
        result = quillon.traverse_adjust(stations, P[0], B, P[-1], F, heights="length")
        self.assertAlmostEqual(result.angular_misclosure, 0.0, delta=1e-6)
        self.assertAlmostEqual(result.misclosure, 0.0, delta=1e-9)
        self.assertAlmostEqual(result.height_misclosure, 0.0, delta=1e-9)
        self.assertEqual(len(result.points), len(P))
        for adjusted, true in zip(result.points, P):
            self.assertAlmostEqual(adjusted.x, true[0], delta=1e-9)
            self.assertAlmostEqual(adjusted.y, true[1], delta=1e-9)
            self.assertAlmostEqual(adjusted.h, true[2], delta=1e-9)

    def test_a_long_leg_is_spread_by_the_compass_rule(self):
        B, P, F, stations = link_observations()
        stations[1] = quillon.TraverseStation(stations[1].angle, stations[1].distance + 0.05,
                                              stations[1].height_difference)
        result = quillon.traverse_adjust(stations, P[0], B, P[-1], F, kind="known_ends")
        self.assertAlmostEqual(result.misclosure, 0.05, delta=1e-9)
        total = result.total_length
        self.assertAlmostEqual(total, sum(s.distance for s in stations[:-1]), delta=1e-9)
        self.assertAlmostEqual(result.precision_ratio, total / 0.05, delta=1e-3)
        self.assertAlmostEqual(result.points[-1].x, P[-1][0], delta=1e-9)
        # Station 1 lies before the long leg: it moves by the share of the
        # misclosure its distance from A carries.
        shift = math.hypot(result.points[1].x - P[1][0], result.points[1].y - P[1][1])
        self.assertAlmostEqual(shift, 0.05 * stations[0].distance / total, delta=1e-9)
        # Without a height rule the heights between the ends are not carried.
        self.assertTrue(math.isnan(result.points[1].h))

    def test_refusals(self):
        B, P, F, stations = link_observations()
        with self.assertRaises(quillon.TooFewError):
            quillon.traverse_adjust(stations[:3], P[0], B, kind="loop")
        with self.assertRaises(quillon.SingularError):
            quillon.traverse_adjust(stations, P[0], P[0], P[-1], F)
        with self.assertRaises(quillon.BadArgumentError):
            quillon.traverse_adjust(stations[:1], P[0], B, P[-1], F)
        with self.assertRaises(ValueError):
            quillon.traverse_adjust(stations, P[0], B, P[-1], F, kind="closed")
        with self.assertRaises(ValueError):
            quillon.traverse_adjust(stations, P[0], B, P[-1], F, heights="squared")


if __name__ == "__main__":
    unittest.main()

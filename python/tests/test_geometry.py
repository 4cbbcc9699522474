"""Joins, azimuths and polar points with the true pi, and their batches over
every kind of buffer: each element equal to the single call's result to the
bit."""

import math
import struct
import unittest
from array import array

import quillon

try:
    import numpy
except ImportError:
    numpy = None


def bits(value):
    return struct.pack("<d", value)


def spread(n, low, high, seed):
    """A reproducible spread of n values in [low, high)."""
    state, values = seed, array("d")
    for _ in range(n):
        state = (state * 6364136223846793005 + 1442695040888963407) % 2 ** 64
        values.append(low + (high - low) * (state >> 11) / 2.0 ** 53)
    return values


class Singles(unittest.TestCase):
    def test_quarter_circles_are_whole(self):
        origin = quillon.Point(100.0, 200.0, 0.0)
        cases = [((130.0, 200.0), 0.0), ((100.0, 230.0), 324000.0), ((70.0, 200.0), 648000.0),
                 ((100.0, 170.0), 972000.0)]
        for point, azimuth in cases:
            with self.subTest(point=point):
                self.assertEqual(quillon.azimuth(origin, point), azimuth)

    def test_units_of_a_join(self):
        # 3-4-5 in plan, rising 5 m: 45 degrees above the horizon.
        j = quillon.join((0.0, 0.0, 0.0), (3.0, 4.0, 5.0))
        self.assertAlmostEqual(quillon.degrees_from_seconds(j.azimuth),
                               math.degrees(math.atan2(4.0, 3.0)), delta=1e-12)
        self.assertEqual(j.horizontal_distance, 5.0)
        self.assertEqual(j.height_difference, 5.0)
        self.assertAlmostEqual(j.slope_distance, math.sqrt(50.0), delta=1e-12)
        self.assertAlmostEqual(j.zenith, quillon.seconds_from_degrees(45.0), delta=1e-9)

    def test_polar_point_takes_arc_seconds(self):
        p = quillon.polar_point((10.0, 20.0, 7.5), quillon.parse_dms("45°"), math.sqrt(2.0))
        self.assertAlmostEqual(p.x, 11.0, delta=1e-14)
        self.assertAlmostEqual(p.y, 21.0, delta=1e-14)
        self.assertEqual(p.h, 7.5)

    def test_a_point_set_out_is_joined_again(self):
        origin = (5000.0, -2000.0, 0.0)
        for azimuth in (0.0, 1.0, 700000.25, -90000.0, 5e6):
            for distance in (0.5, 1000.0):
                p = quillon.polar_point(origin, azimuth, distance)
                j = quillon.join(origin, p)
                self.assertAlmostEqual(j.horizontal_distance, distance, delta=1e-11)
                difference = (j.azimuth - quillon.fold(azimuth) + 648000.0) % 1296000.0 - 648000.0
                self.assertAlmostEqual(difference, 0.0, delta=1e-6)

    def test_points_of_every_form(self):
        from quillon import device
        record = device.new("SurveyPoint *", (3.0, 4.0, 0.0))
        for point in [(3.0, 4.0), [3.0, 4.0, 0.0], quillon.Point(3.0, 4.0), record, record[0]]:
            with self.subTest(point=point):
                self.assertEqual(quillon.join((0.0, 0.0), point).horizontal_distance, 5.0)
        with self.assertRaises(ValueError):
            quillon.join((0.0,), (1.0, 1.0))
        with self.assertRaises(TypeError):
            quillon.join(3.0, (1.0, 1.0))
        with self.assertRaises(TypeError):
            quillon.join(device.new("HElement *"), (1.0, 1.0))


class Batches(unittest.TestCase):
    ORIGIN = (4321.5, -876.25, 99.0)

    def test_polar_points_equal_the_single_calls(self):
        azimuths = spread(3000, -3e6, 3e6, 1)
        distances = spread(3000, -5000.0, 5000.0, 2)
        x, y = quillon.polar_points(self.ORIGIN, azimuths, distances)
        self.assertIsInstance(x, array)
        self.assertEqual(len(x), 3000)
        for i in range(3000):
            single = quillon.polar_point(self.ORIGIN, azimuths[i], distances[i])
            self.assertEqual(bits(x[i]), bits(single.x), i)
            self.assertEqual(bits(y[i]), bits(single.y), i)

    def test_joins_equal_the_single_calls(self):
        x = spread(3000, 3000.0, 6000.0, 3)
        y = spread(3000, -2000.0, 1000.0, 4)
        x[5], y[5] = self.ORIGIN[0], self.ORIGIN[1]
        azimuths, distances = quillon.joins(self.ORIGIN, x, y)
        for i in range(3000):
            if i == 5:
                self.assertTrue(math.isnan(azimuths[i]))
                self.assertEqual(distances[i], 0.0)
                continue
            single = quillon.join(self.ORIGIN, (x[i], y[i], 0.0))
            self.assertEqual(bits(azimuths[i]), bits(single.azimuth), i)
            self.assertEqual(bits(distances[i]), bits(single.horizontal_distance), i)

    def test_every_kind_of_buffer(self):
        azimuths = [0.0, 324000.0, 1e6, -5.5]
        distances = [10.0, 20.0, 30.0, 40.0]
        expected = quillon.polar_points(self.ORIGIN, array("d", azimuths), array("d", distances))
        packed_a = array("d", azimuths).tobytes()
        packed_d = array("d", distances).tobytes()
        # A view into a buffer that starts one byte in: not on a double's
        # boundary, copied before C reads it.
        shifted = bytearray(b"\0" + packed_a)
        forms = {
            "list": (azimuths, distances),
            "tuple": (tuple(azimuths), tuple(distances)),
            "bytes": (packed_a, packed_d),
            "bytearray": (bytearray(packed_a), bytearray(packed_d)),
            "memoryview of doubles": (memoryview(array("d", azimuths)), memoryview(packed_d).cast("d")),
            "unaligned memoryview": (memoryview(shifted)[1:], packed_d),
            "array of floats": (array("f", azimuths), array("f", distances)),
            "array of ints": (array("i", [0, 324000, 1000000, -5]), array("l", [10, 20, 30, 40])),
        }
        for name, (a, d) in forms.items():
            with self.subTest(form=name):
                x, y = quillon.polar_points(self.ORIGIN, a, d)
                if name == "array of ints":
                    self.assertNotEqual(x[3], expected[0][3])  # -5 is not -5.5
                    continue
                self.assertEqual(x.tobytes(), expected[0].tobytes())
                self.assertEqual(y.tobytes(), expected[1].tobytes())

    @unittest.skipIf(numpy is None, "numpy is not installed")
    def test_numpy_arrays(self):
        azimuths = numpy.linspace(0.0, 1296000.0, 1001)
        distances = numpy.full(1001, 25.0)
        x, y = quillon.polar_points(self.ORIGIN, azimuths, distances)
        self.assertIsInstance(x, numpy.ndarray)
        xs, ys = quillon.polar_points(self.ORIGIN, array("d", azimuths.tolist()),
                                      array("d", distances.tolist()))
        self.assertEqual(x.tobytes(), xs.tobytes())
        self.assertEqual(y.tobytes(), ys.tobytes())
        # Every other element, float32: converted, then computed.
        x2, _ = quillon.polar_points(self.ORIGIN, azimuths[::2].astype(numpy.float32),
                                     distances[::2])
        self.assertEqual(len(x2), 501)

    def test_results_into_the_callers_arrays(self):
        azimuths, distances = spread(50, 0.0, 1296000.0, 7), spread(50, 1.0, 100.0, 8)
        expected = quillon.polar_points(self.ORIGIN, azimuths, distances)
        x, y = array("d", [0.0]) * 50, bytearray(400)
        returned = quillon.polar_points(self.ORIGIN, azimuths, distances, out=(x, y))
        self.assertIs(returned[0], x)
        self.assertIs(returned[1], y)
        self.assertEqual(x.tobytes(), expected[0].tobytes())
        self.assertEqual(bytes(y), expected[1].tobytes())
        # In place: the azimuths and distances give way to the points.
        quillon.polar_points(self.ORIGIN, azimuths, distances, out=(azimuths, distances))
        self.assertEqual(azimuths.tobytes(), expected[0].tobytes())
        # A refused batch leaves the caller's arrays as they were.
        sentinel = array("d", [-7.5]) * 3
        with self.assertRaises(quillon.BadArgumentError):
            quillon.joins(self.ORIGIN, [1.0, 2.0, math.nan], [1.0, 2.0, 3.0],
                          out=(sentinel, array("d", [0.0]) * 3))
        self.assertEqual(list(sentinel), [-7.5] * 3)
        with self.assertRaises(ValueError):
            quillon.polar_points(self.ORIGIN, [1.0], [1.0], out=(array("d", [0.0]) * 2, y))
        with self.assertRaises(TypeError):
            quillon.polar_points(self.ORIGIN, [1.0], [1.0], out=(bytes(8), bytearray(8)))
        with self.assertRaises(TypeError):
            quillon.polar_points(self.ORIGIN, [1.0], [1.0], out=(array("f", [0.0, 0.0]),
                                                                 bytearray(8)))

    def test_empty_batches(self):
        x, y = quillon.polar_points(self.ORIGIN, array("d"), b"")
        self.assertEqual((len(x), len(y)), (0, 0))
        a, d = quillon.joins(self.ORIGIN, [], [])
        self.assertEqual((len(a), len(d)), (0, 0))

    def test_a_bad_element_is_named_and_nothing_returned(self):
        azimuths = array("d", [0.0, 1.0, 2.0, 3.0])
        distances = array("d", [1.0, 1.0, math.inf, 1.0])
        with self.assertRaises(quillon.BadArgumentError) as caught:
            quillon.polar_points(self.ORIGIN, azimuths, distances)
        self.assertIn("element 2", str(caught.exception))
        with self.assertRaises(quillon.BadArgumentError) as caught:
            quillon.joins(self.ORIGIN, [1.0, math.nan], [1.0, 1.0])
        self.assertIn("element 1", str(caught.exception))
        with self.assertRaises(quillon.BadArgumentError) as caught:
            quillon.polar_points((0.0, math.nan), [1.0], [1.0])
        self.assertIn("origin", str(caught.exception))

    def test_mismatched_and_wrong_inputs(self):
        with self.assertRaises(ValueError):
            quillon.polar_points(self.ORIGIN, [1.0, 2.0], [1.0])
        with self.assertRaises(ValueError):
            quillon.polar_points(self.ORIGIN, b"1234567", b"12345678")
        with self.assertRaises(TypeError):
            quillon.polar_points(self.ORIGIN, ["north"], [1.0])
        with self.assertRaises(TypeError):
            quillon.polar_points(self.ORIGIN, 5.0, [1.0])


if __name__ == "__main__":
    unittest.main()

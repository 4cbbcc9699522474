"""Alignments and profiles: built exactly or by the device, points placed at
a chainage and offset found again, the batch locate equal to the single one
to the bit, heights, the road check and transition curves."""

import math
import struct
import unittest
from array import array

import quillon
from quillon import device

L, A, T = quillon.Line, quillon.Arc, quillon.Transition

# Both turning senses, entry and exit spirals (metres).
DESIGN = [L(120.0), T(80.0, 250.0, "right"), A(150.0, 250.0, "right"),
          T(80.0, 250.0, "right", exit=True), L(100.0), T(60.0, 180.0, "left"),
          A(90.0, 180.0, "left"), T(60.0, 180.0, "left", exit=True), L(50.0)]
START, AZIMUTH, CHAINAGE = (5000.0, 2000.0), 108000.0, 1000.0

TOLERANCE = 1e-9  # m, chainage and offset round trips


def bits(value):
    return struct.pack("<d", value)


def road(profile=None):
    return quillon.Alignment.from_elements(START, AZIMUTH, DESIGN, chainage=CHAINAGE,
                                           profile=profile, name="sample")


class Plan(unittest.TestCase):
    def test_the_exact_table_is_continuous(self):
        alignment = road()
        self.assertEqual(alignment.record_count, len(DESIGN) + 1)
        self.assertEqual(alignment.start_chainage, CHAINAGE)
        self.assertAlmostEqual(alignment.end_chainage, CHAINAGE + sum(e.length for e in DESIGN),
                               delta=1e-9)
        for joint in alignment.joints():
            self.assertLessEqual(joint.gap, 1e-10)
            self.assertLessEqual(abs(joint.azimuth_gap), 1e-7)
        self.assertIn("sample", repr(alignment))

    def test_points_placed_are_located_again(self):
        alignment = road()
        table = alignment.table
        for i in range(alignment.record_count - 1):
            for share in (0.0, 0.37, 0.999):
                chainage = table[i].Chainage + share * table[i].Length
                for offset in (-12.5, 0.0, 3.75):
                    placed = alignment.point(chainage, offset)
                    found = alignment.locate(placed.x, placed.y)
                    with self.subTest(element=i, share=share, offset=offset):
                        self.assertAlmostEqual(found.chainage, chainage, delta=TOLERANCE)
                        self.assertAlmostEqual(found.offset, offset, delta=TOLERANCE)
                        if share > 0.0:  # at a joint, the earlier element may hold the foot
                            self.assertEqual(found.element, placed.element)
        # One point, given whole.
        placed = alignment.point(1234.5, -2.0)
        self.assertAlmostEqual(alignment.locate(quillon.Point(placed.x, placed.y)).chainage, 1234.5,
                               delta=TOLERANCE)

    def test_offsets_are_right_positive(self):
        alignment = quillon.Alignment.from_elements((0.0, 0.0), 0.0, [L(100.0)])
        right = alignment.point(50.0, 2.0)  # heading north: right is east
        self.assertAlmostEqual(right.x, 50.0, delta=1e-12)
        self.assertAlmostEqual(right.y, 2.0, delta=1e-12)
        self.assertEqual(right.azimuth, 0.0)

    def test_locate_many_equals_locate_to_the_bit(self):
        alignment = road()
        x = array("d", [4800.0 + 1000.0 * ((i * 0.6180339887) % 1.0) for i in range(400)])
        y = array("d", [1800.0 + 1000.0 * ((i * 0.4142135623) % 1.0) for i in range(400)])
        x[0], y[0] = START[0] - 900.0, START[1] - 520.0  # behind the start
        chainages, offsets = alignment.locate_many(x, y)
        outside = 0
        for i in range(len(x)):
            try:
                single = alignment.locate(x[i], y[i])
            except quillon.OutsideAlignmentError:
                outside += 1
                self.assertTrue(math.isnan(chainages[i]) and math.isnan(offsets[i]), i)
                continue
            self.assertEqual(bits(chainages[i]), bits(single.chainage), i)
            self.assertEqual(bits(offsets[i]), bits(single.offset), i)
        self.assertGreater(outside, 0)
        with self.assertRaises(quillon.BadArgumentError) as caught:
            alignment.locate_many([5000.0, 5000.0], [2000.0, math.nan])
        self.assertIn("element 1", str(caught.exception))

    def test_a_table_built_by_the_device(self):
        elements = device.new("HElement[8]")
        for i, element in enumerate(DESIGN[:7]):
            elements[i] = element.record()
        elements[0].X, elements[0].Y = START
        elements[0].Azimuth, elements[0].Chainage = AZIMUTH, CHAINAGE
        table = device.new("HElement[8]")
        device.check(device.LIB_CalWay_H_Ele_MainPoint(elements, 8, table))
        alignment = quillon.Alignment(table)
        gaps = [joint.gap for joint in alignment.joints()]
        # The device's pi and clothoid series leave micrometres at the joints.
        self.assertGreater(max(gaps), 0.0)
        self.assertLess(max(gaps), 1e-3)
        # The device's own point at a chainage, against the exact one.
        point = device.new("TangentPoint *")
        device.check(device.LIB_CalWay_H_On(table, 8, 1100.0, point))
        exact = alignment.point(1100.0)
        self.assertAlmostEqual(point.X, exact.x, delta=1e-6)
        self.assertAlmostEqual(point.Y, exact.y, delta=1e-6)
        # The records may come as a sequence, and a pointer with its count.
        copy = quillon.Alignment([table[i] for i in range(8)])
        self.assertEqual(copy.point(1100.0), exact)
        self.assertEqual(quillon.Alignment(device.ffi.cast("HElement *", table), record_count=8)
                         .point(1100.0), exact)

    def test_bad_tables(self):
        table = road().table
        broken = device.new("HElement[]", len(table))
        device.ffi.memmove(broken, table, device.ffi.sizeof(broken))
        broken[2].Length = -1.0
        with self.assertRaises(quillon.BadArgumentError):
            quillon.Alignment(broken)
        with self.assertRaises(quillon.BadArgumentError):
            quillon.Alignment([table[0]])
        with self.assertRaises(ValueError):
            quillon.Alignment(device.ffi.cast("HElement *", table))
        with self.assertRaises(TypeError):
            quillon.Alignment(device.new("VElement[3]"))
        with self.assertRaises(ValueError):
            quillon.Arc(10.0, 100.0, "up").record()
        with self.assertRaises(ValueError):
            quillon.Alignment.from_elements((0.0, 0.0), 0.0, [])

    def test_outside_the_alignment(self):
        alignment = road()
        with self.assertRaises(quillon.OutsideAlignmentError):
            alignment.point(CHAINAGE - 0.001)
        with self.assertRaises(quillon.OutsideAlignmentError):
            alignment.locate(START[0] - 900.0, START[1] - 520.0)


class Transitions(unittest.TestCase):
    def test_a_clothoid_agrees_with_the_alignment(self):
        alignment = quillon.Alignment.from_elements((0.0, 0.0), 0.0, [T(80.0, 250.0, "right")])
        for s in (0.0, 20.0, 80.0):
            pose = quillon.transition_point((0.0, 0.0), 0.0, 0.0, 1.0 / 250.0, 80.0, s)
            on = alignment.point(s)
            self.assertAlmostEqual(pose.x, on.x, delta=1e-9)
            self.assertAlmostEqual(pose.y, on.y, delta=1e-9)
            # The tangent turns by s^2 / (2 R L) radians.
            turn = quillon.seconds_from_radians(s * s / (2.0 * 250.0 * 80.0))
            self.assertAlmostEqual(pose.azimuth, turn, delta=1e-7)

    def test_an_arc(self):
        # A quarter circle of radius 100 turning right from north ends due east
        # of the centre's latitude: at (100, 100).
        pose = quillon.transition_point((0.0, 0.0), 0.0, 0.01, 0.01, 50.0 * math.pi, 50.0 * math.pi)
        self.assertAlmostEqual(pose.x, 100.0, delta=1e-9)
        self.assertAlmostEqual(pose.y, 100.0, delta=1e-9)
        self.assertAlmostEqual(pose.azimuth, 324000.0, delta=1e-7)

    def test_refused(self):
        with self.assertRaises(quillon.BadArgumentError):
            quillon.transition_point((0.0, 0.0), 0.0, 0.0, 0.01, 50.0, 50.5)
        with self.assertRaises(quillon.BadArgumentError):
            quillon.transition_point((0.0, 0.0), 0.0, 0.0, 0.01, 0.0, 0.0)


V = quillon.VerticalPoint
# Grade +2 % to 1100 m, a sag of radius 4000 m at 1300 m, then +1 %.
GRADES = [V(1000.0, 100.0), V(1100.0, 102.0), V(1300.0, 98.0, "parabola", radius=4000.0),
          V(1600.0, 101.0)]


class Heights(unittest.TestCase):
    def test_a_device_built_profile(self):
        profile = quillon.vertical_table(GRADES)
        alignment = road(profile=profile)
        self.assertEqual(alignment.profile_count, len(profile))
        # On the first grade line, exactly linear.
        point = alignment.height(1050.0)
        self.assertAlmostEqual(point.height, 101.0, delta=1e-9)
        self.assertAlmostEqual(point.grade, 0.02, delta=1e-12)
        # At the vertex of the sag curve the parabola lies T^2 / (8 R) above
        # the grade intersection, T the curve's length.
        curve = next(profile[i] for i in range(len(profile)) if profile[i].Type == 2)
        vertex = alignment.height(1300.0)
        self.assertAlmostEqual(vertex.height - 98.0, curve.Length ** 2 / (8.0 * 4000.0), delta=1e-6)

    def test_the_road_check(self):
        alignment = road(profile=quillon.vertical_table(GRADES))
        placed = alignment.point(1050.0, 3.5)
        check = alignment.check((placed.x, placed.y, 101.25))
        self.assertAlmostEqual(check.position.chainage, 1050.0, delta=TOLERANCE)
        self.assertAlmostEqual(check.position.offset, 3.5, delta=TOLERANCE)
        self.assertAlmostEqual(check.design_height, 101.0, delta=1e-9)
        self.assertAlmostEqual(check.cut_fill, 0.25, delta=1e-9)  # above: cut
        below = alignment.check((placed.x, placed.y, 100.5))
        self.assertAlmostEqual(below.cut_fill, -0.5, delta=1e-9)

    def test_where_there_is_no_design_height(self):
        alignment = road(profile=quillon.vertical_table(GRADES))
        with self.assertRaises(quillon.OutsideAlignmentError):
            alignment.height(1600.5)  # the profile ends before the alignment
        end = alignment.point(1700.0)
        with self.assertRaises(quillon.OutsideAlignmentError):
            alignment.check((end.x, end.y, 100.0))
        with self.assertRaises(ValueError):
            road().height(1050.0)
        with self.assertRaises(ValueError):
            V(1000.0, 100.0, "parabola", radius=100.0, length=50.0).record()


if __name__ == "__main__":
    unittest.main()

"""Road designs and point files through the io library: the example road
read from LandXML with its profile and station equation, points placed on
it found again, and every failure raised as its IoError class with the file
and line."""

import math
import os
import shutil
import tempfile
import unittest

import quillon
from quillon import io

SOURCE = os.environ.get("QUILLON_SOURCE_DIR",
                        os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir))
ROAD = os.path.join(SOURCE, "examples", "data", "road.xml")
MEASURED = os.path.join(SOURCE, "examples", "data", "measured.csv")


def setUpModule():
    if not io.available():
        raise unittest.SkipTest("this build has no io library")


class Scratch(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.mkdtemp()

    def tearDown(self):
        shutil.rmtree(self.directory)

    def write(self, name, text, encoding="utf-8"):
        path = os.path.join(self.directory, name)
        with open(path, "w", encoding=encoding) as f:
            f.write(text)
        return path

    def example_road(self, *changes):
        """The example road with each (old, new) text replaced once."""
        with open(ROAD, encoding="utf-8") as f:
            text = f.read()
        for old, new in changes:
            self.assertIn(old, text)
            text = text.replace(old, new, 1)
        return self.write("road.xml", text)


class ExampleRoad(Scratch):
    def test_the_alignment_and_its_profile(self):
        design = io.read_landxml(ROAD)
        self.assertEqual(design.alignment_names, ["Harbour Road"])
        self.assertTrue(all(note.startswith(ROAD + ":") for note in design.notes))
        road = quillon.Alignment.from_landxml(ROAD)
        self.assertEqual(road.name, "Harbour Road")
        self.assertEqual(road.start_chainage, 1000.0)
        self.assertAlmostEqual(road.end_chainage, 1790.0, delta=1e-9)
        self.assertIsNotNone(road.profile)
        self.assertEqual(road.record_count, 10)
        # The file's elements are joined within a tenth of a millimetre.
        for joint in road.joints():
            self.assertLess(joint.gap, 1e-4)
        # The start as the file writes it: northing 5000, easting 2000, 60 degrees.
        start = road.point(1000.0)
        self.assertAlmostEqual(start.x, 5000.0, delta=1e-4)
        self.assertAlmostEqual(start.y, 2000.0, delta=1e-4)
        self.assertAlmostEqual(start.azimuth, quillon.parse_dms("60°"), delta=0.01)

    def test_the_station_equation(self):
        road = quillon.Alignment.from_landxml(ROAD, "Harbour Road")
        self.assertEqual(io.station_equations(road),
                         [io.StationEquation(1450.0, 1450.0, 1500.0, 56)])
        self.assertEqual(road.station(1400.0), 1400.0)
        self.assertEqual(road.station(1500.0), 1550.0)
        made = quillon.Alignment(road.table)
        self.assertEqual(made.station(1500.0), 1500.0)

    def test_points_at_every_metre_are_found_again(self):
        road = quillon.Alignment.from_landxml(ROAD)
        chainages = [1000.0 + k for k in range(0, 791)]
        for offset in (-6.0, 0.0, 4.5):
            xs, ys = [], []
            for chainage in chainages:
                placed = road.point(chainage, offset)
                xs.append(placed.x)
                ys.append(placed.y)
            found_chainages, found_offsets = road.locate_many(xs, ys)
            for chainage, c, o in zip(chainages, found_chainages, found_offsets):
                self.assertAlmostEqual(c, chainage, delta=1e-6)
                self.assertAlmostEqual(o, offset, delta=1e-6)

    def test_design_heights(self):
        road = quillon.Alignment.from_landxml(ROAD)
        self.assertAlmostEqual(road.height(1000.0).height, 52.0, delta=1e-9)
        check = road.check((5021.9689, 2045.0513, 53.012))
        self.assertAlmostEqual(check.position.chainage, 1050.0, delta=1e-3)
        self.assertAlmostEqual(check.cut_fill, 0.012, delta=1e-3)

    def test_the_measured_points(self):
        points = io.read_points(MEASURED)
        self.assertEqual([p.name for p in points], ["P%d" % i for i in range(1, 8)])
        self.assertEqual(points[0], io.MeasuredPoint("P1", 5021.9689, 2045.0513, 53.012, "edge", 2))
        plain = io.read_points(self.write("plain.csv", "name;Y;X\nA;2,5;1,25\n"))
        self.assertEqual(plain, [io.MeasuredPoint("A", 1.25, 2.5, None, "", 2)])


class Failures(Scratch):
    def raises(self, cls, run, code, line=None):
        with self.assertRaises(cls) as caught:
            run()
        error = caught.exception
        self.assertEqual(error.code, code)
        self.assertIsInstance(error, io.IoError)
        self.assertIsInstance(error, quillon.QuillonError)
        if line is not None:
            self.assertEqual(error.line, line)
            self.assertIn(":%d:" % line, str(error))
        return error

    def test_every_class(self):
        missing = os.path.join(self.directory, "none.xml")
        error = self.raises(io.CannotReadError, lambda: io.read_landxml(missing), 1)
        self.assertIn(missing, str(error))
        self.assertIsInstance(error, OSError)
        broken = self.write("broken.xml", '<?xml version="1.0"?>\n<LandXML>\n<Alignments>\n</LandXML>\n')
        self.raises(io.MalformedError, lambda: io.read_landxml(broken), 2)
        bad_row = self.write("bad.csv", "name,X,Y\nP1,1.0,2.0\nP2,north,2.0\n")
        self.raises(io.MalformedError, lambda: io.read_points(bad_row), 2, line=3)
        irregular = self.example_road(
            ('<Line length="80.000000"', '<IrregularLine length="80.000000"'),
            ('</Line>\n        <Spiral spiType="clothoid" length="50.000000"',
             '</IrregularLine>\n        <Spiral spiType="clothoid" length="50.000000"'))
        self.raises(io.UnsupportedError, lambda: quillon.Alignment.from_landxml(irregular), 3)
        gap = self.example_road(("<Start>5105.3282 2362.4037</Start>",
                                 "<Start>5105.3282 2363.4037</Start>"))
        self.raises(io.InconsistentError, lambda: quillon.Alignment.from_landxml(gap), 4)
        error = self.raises(io.NotFoundError,
                            lambda: quillon.Alignment.from_landxml(ROAD, "Nowhere Lane"), 5)
        self.assertIn("Harbour Road", str(error))
        self.assertIsInstance(error, LookupError)
        # A null path, from the library itself.
        lib = io._lib()
        handle = io.ffi.new("qio_design **")
        status = lib.qio_landxml_read_file(io.ffi.NULL, handle, io.ffi.NULL)
        self.raises(io.IoArgumentError, lambda: io._raise(status, "qio_landxml_read_file"), 6)

    def test_a_failed_read_leaves_nothing_behind(self):
        bad_row = self.write("bad.csv", "name,X,Y\nP1,1.0,2.0\nP2,1.0\n")
        with self.assertRaises(io.MalformedError):
            io.read_points(bad_row)
        self.assertEqual(sorted(os.listdir(self.directory)), ["bad.csv"])


if __name__ == "__main__":
    unittest.main()

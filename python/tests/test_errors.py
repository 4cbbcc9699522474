"""Every exception class, raised by a real call: the device's statuses
through device.check and the package's device-built profiles, the survey
layer's through the Pythonic functions; each carries its code."""

import math
import unittest

import quillon
from quillon import device


def device_call(function, *arguments):
    def run():
        device.check(getattr(device, function)(*arguments), function)
    return run


def station_sightings():
    """Four directions from (1000, 2000), one of them off by 3 seconds."""
    station = (1000.0, 2000.0, 0.0)
    points = [(1100.0, 2000.0, 10.0), (1000.0, 2150.0, 12.0), (850.0, 1900.0, 9.0),
              (1050.0, 1800.0, 11.0)]
    return [quillon.Sighting(p, quillon.azimuth(station, p) - 100000.0 + (3.0 if i == 0 else 0.0))
            for i, p in enumerate(points)]


class EveryErrorClass(unittest.TestCase):
    def raises(self, cls, code, run):
        with self.assertRaises(cls) as caught:
            run()
        self.assertEqual(caught.exception.code, code)
        self.assertIsInstance(caught.exception, quillon.QuillonError)
        self.assertIn(caught.exception.function, str(caught.exception))
        return caught.exception

    def test_device_statuses_through_check(self):
        p = device.new("SurveyPoint *", (1.0, 2.0, 3.0))
        far = device.new("SurveyPoint *", (-6e7, 6e7, 0.0))
        near = device.new("SurveyPoint *", (6e7, -6e7, 0.0))
        out = device.new("double *")
        station = device.new("StationRecord *", {"signA": 1, "signB": 1})
        line = device.new("SurveyPoint[2]", [(10.0, -5.0, 0.0), (20.0, 5.0, 0.0)])
        parallel = device.new("LineCrossInput *", [(0, 0, 0), (10, 0, 0), (0, 5, 0), (10, 5, 0)])
        cases = [
            (quillon.DomainError, 1, device_call("LIB_GetFaceStatus", -1.0,
                                                 device.new("unsigned char *"))),
            (quillon.RangeLimitError, 2, device_call("LIB_Cal2PointDist", far, near, out, 0)),
            (quillon.CoincidentError, 3, device_call("LIB_CalAZ", p, p, out)),
            (quillon.TableError, 4, device_call("LIB_CalWay_V_On", device.new("VElement[1]"), 0,
                                                10.0, out)),
            # The sight looks due south, the line lies north of the station.
            (quillon.BehindError, 5, device_call("LIB_OS_Ha", station, line, 648000.0,
                                                 device.new("DistAngleRecord *"))),
            (quillon.ParallelError, 6, device_call("LIB_CalLineCrossPT", parallel,
                                                   device.new("SurveyPoint *"))),
        ]
        for cls, code, run in cases:
            with self.subTest(cls=cls.__name__):
                error = self.raises(cls, code, run)
                self.assertIsInstance(error, quillon.DeviceError)
                self.assertEqual(error.library, "quillon")

    def test_device_statuses_from_the_package(self):
        V = quillon.VerticalPoint
        self.raises(quillon.TableError, 4, lambda: quillon.vertical_table([V(0.0, 100.0)]))
        self.raises(quillon.DomainError, 1,
                    lambda: quillon.vertical_table([V(0.0, 1e9), V(100.0, 0.0)]))
        # A grade of 10: steeper than any road.
        self.raises(quillon.RangeLimitError, 2,
                    lambda: quillon.vertical_table([V(0.0, 0.0), V(10.0, 100.0)]))

    def test_survey_statuses(self):
        sightings = station_sightings()
        alignment = quillon.Alignment.from_elements((0.0, 0.0), 0.0, [quillon.Line(100.0)])
        cases = [
            (quillon.TooFewError, 1, lambda: quillon.free_station(sightings[:2])),
            (quillon.SingularError, 2, lambda: quillon.join((5.0, 5.0, 0.0), (5.0, 5.0, 9.0))),
            (quillon.NoConvergenceError, 3,
             lambda: quillon.free_station(sightings, max_iterations=1)),
            (quillon.OutsideAlignmentError, 4, lambda: alignment.point(100.5)),
            (quillon.BadArgumentError, 5, lambda: quillon.polar_point((0.0, 0.0), math.nan, 1.0)),
        ]
        for cls, code, run in cases:
            with self.subTest(cls=cls.__name__):
                error = self.raises(cls, code, run)
                self.assertIsInstance(error, quillon.SurveyError)
                self.assertEqual(error.library, "quillon_survey")

    def test_bad_input_is_also_a_value_error(self):
        with self.assertRaises(ValueError):
            quillon.polar_point((0.0, 0.0), math.inf, 1.0)
        with self.assertRaises(ValueError):
            device.check(1)

    def test_a_status_the_headers_do_not_list(self):
        from quillon.errors import device_error, survey_error
        for error in (device_error(99, "LIB_X"), survey_error(42, "qs_x", "unknown status")):
            self.assertIsInstance(error, quillon.UnknownStatusError)
            self.assertIn(error.code, (99, 42))

    def test_classes_are_distinct_per_library(self):
        device_codes = {cls.code for cls in quillon.DeviceError.__subclasses__()}
        survey_codes = {cls.code for cls in quillon.SurveyError.__subclasses__()}
        self.assertEqual(device_codes, set(range(1, 7)))
        self.assertEqual(survey_codes, set(range(1, 6)))


if __name__ == "__main__":
    unittest.main()

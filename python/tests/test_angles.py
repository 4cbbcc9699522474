"""Angles in arc-seconds, and the conversions to degrees and DMS text."""

import math
import unittest

import quillon


class Degrees(unittest.TestCase):
    def test_quarter_circles(self):
        self.assertEqual(quillon.seconds_from_degrees(90.0), 324000.0)
        self.assertEqual(quillon.degrees_from_seconds(1296000.0), 360.0)
        self.assertEqual(quillon.seconds_from_radians(math.pi), 648000.0)
        self.assertEqual(quillon.radians_from_seconds(648000.0), math.pi)

    def test_fold(self):
        cases = [(0.0, 0.0), (1296000.0, 0.0), (-1.0, 1295999.0), (2592000.5, 0.5),
                 (-0.0, 0.0), (-1e-12, 0.0)]
        for value, folded in cases:
            with self.subTest(value=value):
                result = quillon.fold(value)
                self.assertEqual(result, folded)
                self.assertEqual(math.copysign(1.0, result), 1.0)


class Dms(unittest.TestCase):
    PARSED = [
        ("123°45'06.7\"", 445506.7),
        ("123 45 06.7", 445506.7),
        ("123:45:06.7", 445506.7),
        ("123d45m06.7s", 445506.7),
        ("123-45-06.7", 445506.7),
        ("-0°30'", -1800.0),
        ("+12°", 43200.0),
        ("45.5", 163800.0),
        ("359°59'59.999\"", 1295999.999),
        ("  7 05  ", 25500.0),
    ]

    def test_parse(self):
        for text, seconds in self.PARSED:
            with self.subTest(text=text):
                self.assertAlmostEqual(quillon.parse_dms(text), seconds, delta=1e-9)

    def test_parse_refuses(self):
        for text in ["", "abc", "12°60'", "12°30'60\"", "12.5°30'", "1 2 3 4", "12°-30'", "--5"]:
            with self.subTest(text=text):
                with self.assertRaises(ValueError):
                    quillon.parse_dms(text)
        with self.assertRaises(TypeError):
            quillon.parse_dms(12.5)

    def test_format(self):
        cases = [
            (445506.7, 1, "symbols", "123°45'06.7\""),
            (445506.7, 1, "spaces", "123 45 06.7"),
            (445506.7, 1, "colons", "123:45:06.7"),
            (0.0, 0, "symbols", "0°00'00\""),
            (-1800.0, 1, "symbols", "-0°30'00.0\""),
            # Rounded before it is split: never 60 seconds or 60 minutes.
            (3599.96, 1, "symbols", "1°00'00.0\""),
            (1295999.9996, 3, "symbols", "360°00'00.000\""),
            (59.94, 1, "symbols", "0°00'59.9\""),
            # Halves away from zero, as surveyors round.
            (0.25, 1, "symbols", "0°00'00.3\""),
            (-0.25, 1, "symbols", "-0°00'00.3\""),
            (-0.04, 1, "symbols", "0°00'00.0\""),
        ]
        for seconds, decimals, style, text in cases:
            with self.subTest(seconds=seconds, style=style):
                self.assertEqual(quillon.format_dms(seconds, decimals, style), text)

    def test_on_the_circle(self):
        cases = [(1295999.96, "0°00'00.0\""), (-1.0, "359°59'59.0\""), (1296000.0 * 3 + 36.0,
                                                                       "0°00'36.0\""),
                 (324000.0, "90°00'00.0\"")]
        for seconds, text in cases:
            with self.subTest(seconds=seconds):
                self.assertEqual(quillon.format_dms(seconds, circle=True), text)

    def test_round_trip(self):
        for seconds in [0.0, 0.1, 59.9, 3600.0, 445506.7, 1295999.9]:
            self.assertAlmostEqual(quillon.parse_dms(quillon.format_dms(seconds)), seconds,
                                   delta=1e-9)

    def test_format_refuses(self):
        for value in (math.nan, math.inf):
            with self.assertRaises(ValueError):
                quillon.format_dms(value)
        with self.assertRaises(ValueError):
            quillon.format_dms(1.0, style="gons")
        with self.assertRaises(ValueError):
            quillon.format_dms(1.0, decimals=-1)


if __name__ == "__main__":
    unittest.main()

"""quillon.device: every device function is there and callable, a sample of
calls agrees with the same calls made from C byte for byte, records lay out
as the header pins them, and check() raises the status's class."""

import os
import subprocess
import unittest

import quillon
from quillon import device
from quillon._ffi import ffi


def sample_lines():
    program = os.environ.get("QUILLON_DEVICE_SAMPLE")
    if not program:
        raise unittest.SkipTest("QUILLON_DEVICE_SAMPLE not set (run through CTest)")
    output = subprocess.run([program], check=True, stdout=subprocess.PIPE, text=True).stdout
    return output.splitlines()


def value_from(ctype, data):
    """A C value of a primitive type from its bytes."""
    holder = ffi.new("%s *" % ctype.cname)
    ffi.memmove(holder, data, len(data))
    return holder[0]


class DeviceFunctions(unittest.TestCase):
    def test_all_65_functions_are_bound(self):
        self.assertEqual(len(device.FUNCTIONS), 65)
        self.assertEqual(len(set(device.FUNCTIONS)), 65)
        for name in device.FUNCTIONS:
            self.assertTrue(name.startswith("LIB_"), name)
            self.assertTrue(callable(getattr(device, name)), name)

    def test_every_function_is_callable_with_zeroed_records(self):
        # Zero counts and zeroed records: each function answers with one of
        # its status codes and nothing else happens.
        for name in device.FUNCTIONS:
            function = getattr(device, name)
            arguments = []
            for ctype in ffi.typeof(function).args:
                if ctype.kind == "pointer":
                    arguments.append(ffi.new("%s[]" % ctype.item.cname, 256))
                else:
                    arguments.append(0)
            with self.subTest(function=name):
                status = function(*arguments)
                self.assertIsInstance(status, int)
                self.assertIn(status, range(0, 7))

    def test_a_sample_agrees_with_c_byte_for_byte(self):
        lines = sample_lines()
        seen = set()
        for number, line in enumerate(lines, 1):
            name, status, *arguments = line.split()
            function = getattr(device, name)
            types = ffi.typeof(function).args
            self.assertEqual(len(arguments), len(types), "line %d: %s" % (number, name))
            values, outputs = [], []
            for ctype, argument in zip(types, arguments):
                kind, _, data = argument.partition(":")
                if kind == "v":
                    values.append(value_from(ctype, bytes.fromhex(data)))
                    continue
                before, _, after = data.partition(">")
                before = bytes.fromhex(before)
                records = ffi.new("%s[]" % ctype.item.cname, len(before) // ffi.sizeof(ctype.item))
                ffi.memmove(records, before, len(before))
                values.append(records)
                outputs.append((records, bytes.fromhex(after)))
            result = function(*values)
            self.assertEqual(result, int(status), "line %d: %s status" % (number, name))
            for index, (records, expected) in enumerate(outputs):
                self.assertEqual(ffi.buffer(records)[:].hex(), expected.hex(),
                                 "line %d: %s, pointer argument %d" % (number, name, index))
            seen.add(name)
        self.assertGreaterEqual(len(seen), 25)
        self.assertGreaterEqual(len(lines), 25 * 40)

    def test_the_docstring_example(self):
        pair = device.new("SurveyPoint[2]", [(1000.0, 2000.0, 50.0), (1030.0, 2040.0, 52.5)])
        join = device.new("BearingRecord *")
        join.Spare1 = 7.0
        self.assertEqual(device.LIB_CalDist(pair, join), device.QUILLON_OK)
        self.assertEqual(join.HorizontalDistance, 50.0)
        self.assertEqual(join.HeightDifference, 2.5)
        self.assertEqual(join.Spare1, 7.0)  # never touched
        # atan2(40, 30) with pi taken as 3.1415926: not the true-pi azimuth.
        self.assertNotEqual(join.Azimuth, quillon.azimuth(pair[0], pair[1]))
        self.assertAlmostEqual(join.Azimuth, quillon.azimuth(pair[0], pair[1]), delta=0.01)

    def test_constants_and_statuses(self):
        self.assertEqual(device.QUILLON_RHO_SEC, 206264.8097655947)
        self.assertEqual(device.QUILLON_RANGE_LIMIT, 99999999.9999)
        self.assertEqual([device.QUILLON_OK, device.QUILLON_DOMAIN, device.QUILLON_RANGE,
                          device.QUILLON_COINCIDENT, device.QUILLON_TABLE, device.QUILLON_BEHIND,
                          device.QUILLON_PARALLEL], list(range(7)))

    def test_check_returns_on_success(self):
        self.assertIsNone(device.check(0))

    def test_the_library_is_the_one_loaded(self):
        self.assertTrue(os.path.exists(device.path()))


class RecordLayouts(unittest.TestCase):
    def test_every_pinned_size_and_offset_matches(self):
        from quillon import _declarations, _ffi
        self.assertGreater(len(_declarations.LAYOUT), 300)
        self.assertEqual(_ffi.layout_mismatches(), [])
        # A check that fails is reported by its message.
        self.assertFalse(_ffi.evaluate("sizeof(SurveyPoint) == (32)"))

    def test_a_few_layouts_by_hand(self):
        self.assertEqual(ffi.sizeof("SurveyPoint"), 24)
        self.assertEqual(ffi.sizeof("StationRecord"), 48)
        self.assertEqual(ffi.offsetof("StationRecord", "signB"), 41)
        self.assertEqual(ffi.sizeof("HElement"), 64)
        self.assertEqual(ffi.offsetof("HElement", "Chainage"), 56)
        self.assertEqual(ffi.offsetof("StaMultiResult", "Station"),
                         348 if ffi.sizeof("void *") == 4 else 352)


if __name__ == "__main__":
    unittest.main()

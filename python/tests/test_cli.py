"""python -m quillon: the road commands print what the quillon tool prints,
byte for byte, and fail as it fails, with its exit codes; nothing is
half-written."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import quillon
from quillon import io

SOURCE = os.environ.get("QUILLON_SOURCE_DIR",
                        os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir))
ROAD = os.path.join(SOURCE, "examples", "data", "road.xml")
MEASURED = os.path.join(SOURCE, "examples", "data", "measured.csv")
TOOL = os.environ.get("QUILLON_TOOL")


def run(command, arguments):
    done = subprocess.run(command + arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True)
    return done.returncode, done.stdout, done.stderr


def python_face(arguments):
    return run([sys.executable, "-m", "quillon"], arguments)


class Commands(unittest.TestCase):
    def test_version_and_usage(self):
        code, out, _ = python_face(["--version"])
        self.assertEqual((code, out.strip()), (0, "quillon %s" % quillon.__version__))
        self.assertEqual(python_face([])[0], 2)
        self.assertEqual(python_face(["road", "table"])[0], 2)
        code, _, err = python_face(["station", "sightings.csv"])
        self.assertEqual(code, 2)
        self.assertIn("quillon.free_station", err)


@unittest.skipUnless(io.available(), "this build has no io library")
class AgainstTheTool(unittest.TestCase):
    CASES = [
        ["road", "table", ROAD, "--interval", "50", "--offsets=-3.5,3.5"],
        ["road", "table", ROAD],
        ["-q", "road", "table", ROAD, "--interval", "0"],
        ["road", "table", ROAD, "--interval", "7", "--offsets=-3.5,0,12", "--format", "csv"],
        ["road", "locate", ROAD, MEASURED],
        ["road", "locate", ROAD, MEASURED, "--format", "csv", "--alignment", "Harbour Road"],
    ]

    def setUp(self):
        self.directory = tempfile.mkdtemp()

    def tearDown(self):
        shutil.rmtree(self.directory)

    def test_the_same_tables(self):
        for arguments in self.CASES:
            with self.subTest(arguments=" ".join(arguments[2:])):
                code, out, err = python_face(arguments)
                self.assertEqual(code, 0, err)
                self.assertTrue(out.startswith("Point") or out.startswith("# "))
                if TOOL:
                    self.assertEqual((code, out, err), run([TOOL], arguments))

    def test_the_located_points(self):
        _, out, _ = python_face(["-q", "road", "locate", ROAD, MEASURED, "--format", "csv"])
        rows = {line.split(",")[0]: line.split(",") for line in out.splitlines()[1:]}
        self.assertEqual(rows["P1"], ["P1", "1050.000", "1050.000", "3.500", "53.012", "53.000",
                                      "+0.012", "cut"])
        self.assertEqual(rows["P4"][1:3], ["1500.000", "1550.000"])  # after the equation
        self.assertEqual(rows["P7"][-1], "point outside the alignment")

    def test_failures(self):
        bad_xml = os.path.join(self.directory, "bad.xml")
        with open(bad_xml, "w") as f:
            f.write("<LandXML><broken>")
        bad_csv = os.path.join(self.directory, "bad.csv")
        with open(bad_csv, "w") as f:
            f.write("name,X,Y\nP1,5000,abc\n")
        output = os.path.join(self.directory, "table.txt")
        cases = [
            (["road", "table", os.path.join(self.directory, "none.xml")], 3),
            (["road", "table", bad_xml], 4),
            (["road", "locate", ROAD, bad_csv], 4),
            (["road", "table", ROAD, "--alignment", "Nowhere Lane"], 2),
            (["road", "table", ROAD, "--interval", "-1"], 2),
            (["road", "table", ROAD, "-o", os.path.join(self.directory, "no", "such", "dir")], 6),
        ]
        for arguments, expected in cases:
            with self.subTest(arguments=" ".join(arguments)):
                code, out, err = python_face(arguments)
                self.assertEqual(code, expected, err)
                self.assertEqual(out, "")
                self.assertTrue(err.strip())
                if TOOL:
                    self.assertEqual(run([TOOL], arguments)[0], expected)
        self.assertEqual(sorted(os.listdir(self.directory)), ["bad.csv", "bad.xml"])
        code, _, _ = python_face(["-q", "road", "table", ROAD, "-o", output])
        self.assertEqual(code, 0)
        with open(output) as f:
            self.assertTrue(f.read().startswith("# "))


if __name__ == "__main__":
    unittest.main()

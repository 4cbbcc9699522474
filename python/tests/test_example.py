"""The notebook example runs on the example road and finds the measured
points where the quillon tool finds them (or, without the tool, python -m
quillon)."""

import csv
import os
import re
import subprocess
import sys
import unittest

from quillon import io

SOURCE = os.environ.get("QUILLON_SOURCE_DIR",
                        os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir))
EXAMPLE = os.path.join(SOURCE, "examples", "python", "road_locate.py")
DATA = os.path.join(SOURCE, "examples", "data")
ROW = re.compile(r"^(P\d+)\s+(.*)$")


@unittest.skipUnless(io.available(), "this build has no io library")
class Example(unittest.TestCase):
    def test_road_locate(self):
        run = subprocess.run([sys.executable, EXAMPLE], stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, text=True)
        self.assertEqual(run.returncode, 0, run.stderr)
        rows = {}
        for line in run.stdout.splitlines():
            match = ROW.match(line)
            if match:
                rows[match.group(1)] = match.group(2).split()
        self.assertEqual(len(rows), 7)
        self.assertIn("batch: P1 1050.000/+3.500", run.stdout)
        self.assertIn("device against exact centre line:", run.stdout)

        command = ([os.environ["QUILLON_TOOL"]] if os.environ.get("QUILLON_TOOL")
                   else [sys.executable, "-m", "quillon"])
        reference = subprocess.run(
            command + ["-q", "road", "locate", os.path.join(DATA, "road.xml"),
                       os.path.join(DATA, "measured.csv"), "--format", "csv"],
            stdout=subprocess.PIPE, text=True, check=True).stdout
        for cells in list(csv.reader(reference.splitlines()))[1:]:
            name = cells[0]
            with self.subTest(point=name):
                if cells[1] == "-":
                    self.assertEqual(rows[name][:3], ["-", "-", "-"])
                else:
                    # Chainage, station, offset, H, design H, cut/fill, remark.
                    self.assertEqual(rows[name][:6], cells[1:7])
                    self.assertEqual(" ".join(rows[name][6:]), cells[7])


if __name__ == "__main__":
    unittest.main()

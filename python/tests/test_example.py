"""The notebook example runs and prints the same rows as the C example of
the same road."""

import os
import re
import subprocess
import sys
import unittest

SOURCE = os.environ.get("QUILLON_SOURCE_DIR",
                        os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir))
EXAMPLE = os.path.join(SOURCE, "examples", "python", "road_locate.py")
ROW = re.compile(r"^\s*(P\d+)\s+(.*)$")


def rows(text):
    """The located points' rows, by point name, with runs of spaces closed."""
    found = {}
    for line in text.splitlines():
        match = ROW.match(line)
        if match:
            found[match.group(1)] = " ".join(match.group(2).split())
    return found


class Example(unittest.TestCase):
    def test_road_locate(self):
        run = subprocess.run([sys.executable, EXAMPLE], stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, text=True)
        self.assertEqual(run.returncode, 0, run.stderr)
        python_rows = rows(run.stdout)
        self.assertEqual(len(python_rows), 7)
        self.assertIn("beyond the ends of the road", python_rows["P7"])
        self.assertRegex(python_rows["P1"], r"0\+045\.200 L 3\.500 .* cut 0\.120$")
        self.assertIn("batch: P1 45.200/-3.500", run.stdout)
        program = os.environ.get("QUILLON_C_ROAD_LOCATE")
        if program:
            c_run = subprocess.run([program], stdout=subprocess.PIPE, text=True, check=True)
            self.assertEqual(python_rows, rows(c_run.stdout))


if __name__ == "__main__":
    unittest.main()

"""Runs one test module of the Python package (or all of them) with
unittest, or a script of the package's (the benchmark, an example); exits
with 77, the code CTest reads as skipped, when python3 has no cffi, and
otherwise with 1 when a test fails or with the script's status.

    python3 run_tests.py [test_module ...]
    python3 run_tests.py --script SCRIPT [ARGUMENT ...]
"""

import os
import runpy
import sys
import unittest

SKIPPED = 77


def main(names):
    try:
        import cffi  # noqa: F401
    except ImportError:
        print("cffi is not installed for %s: the Python tests are skipped" % sys.executable)
        return SKIPPED
    if names[:1] == ["--script"]:
        sys.argv = names[1:]
        try:
            runpy.run_path(names[1], run_name="__main__")
        except SystemExit as end:
            return end.code
        return 0
    here = os.path.dirname(os.path.abspath(__file__))
    sys.path.insert(0, here)
    loader = unittest.TestLoader()
    if names:
        suite = unittest.TestSuite(loader.loadTestsFromName(name) for name in names)
    else:
        suite = loader.discover(here, pattern="test_*.py")
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))

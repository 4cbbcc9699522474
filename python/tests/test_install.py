"""cmake --install puts a package that works on its own: imported from the
scratch prefix with nothing of the build tree on any path, it loads the
installed libraries."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

PROBE = """
import json, quillon, quillon.device
print(json.dumps({"file": quillon.__file__, "version": quillon.__version__,
                  "libraries": quillon.library_paths(),
                  "east": quillon.azimuth((0.0, 0.0), (0.0, 1.0))}))
"""


def has_cffi(python):
    return subprocess.run([python, "-c", "import cffi"], stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).returncode == 0


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        build = os.environ.get("QUILLON_BUILD_DIR")
        if not build:
            raise unittest.SkipTest("QUILLON_BUILD_DIR not set (run through CTest)")
        cls.scratch = tempfile.TemporaryDirectory()
        cls.prefix = os.path.join(cls.scratch.name, "prefix")
        subprocess.run([os.environ.get("QUILLON_CMAKE", "cmake"), "--install", build, "--prefix",
                        cls.prefix], check=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        site = os.environ.get("QUILLON_PYTHON_INSTALL_DIR", "")
        cls.site = site if os.path.isabs(site) else os.path.join(cls.prefix, site)

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def probe(self, python):
        environment = {key: value for key, value in os.environ.items()
                       if not key.startswith(("PYTHON", "QUILLON_", "LD_LIBRARY"))}
        environment["PYTHONPATH"] = self.site
        environment["PYTHONDONTWRITEBYTECODE"] = "1"
        run = subprocess.run([python, "-c", PROBE], cwd=self.scratch.name, env=environment,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.assertEqual(run.returncode, 0, run.stderr)
        return json.loads(run.stdout)

    def check(self, found):
        self.assertTrue(found["file"].startswith(self.site), found["file"])
        self.assertEqual(set(found["libraries"]) >= {"quillon", "quillon_survey"}, True)
        for path in found["libraries"].values():
            self.assertTrue(os.path.realpath(path).startswith(os.path.realpath(self.prefix)), path)
        self.assertEqual(found["east"], 324000.0)

    def test_the_installed_package_loads_the_installed_libraries(self):
        found = self.probe(sys.executable)
        self.check(found)
        import quillon
        self.assertEqual(found["version"], quillon.__version__)

    def test_debians_python_finds_it_too(self):
        debian = "/usr/bin/python3"
        if not os.path.exists(debian) or not has_cffi(debian):
            self.skipTest("no /usr/bin/python3 with cffi (apt-get install python3-cffi)")
        self.check(self.probe(debian))

    def test_nothing_of_the_build_tree_is_installed(self):
        package = os.path.join(self.site, "quillon")
        self.assertTrue(os.path.isfile(os.path.join(package, "_declarations.py")))
        with open(os.path.join(package, "_location.py")) as f:
            location = f.read()
        self.assertNotIn(os.environ["QUILLON_BUILD_DIR"], location)
        self.assertFalse(os.path.exists(os.path.join(package, "__pycache__")))


if __name__ == "__main__":
    unittest.main()

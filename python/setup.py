"""Builds the package for pip from this source tree:

    python3 -m pip install --no-build-isolation --no-index ./python

The declarations are generated from ../include with the C preprocessor
(CC, default cc); the libraries are looked for in QUILLON_LIBRARY_DIR as it
is at build time (default /usr/local/lib, where `cmake --install build`
puts them), and at run time in QUILLON_LIBRARY_PATH first.
"""

import os
import re
import sys

from setuptools import setup
from setuptools.command.build_py import build_py

HERE = os.path.dirname(os.path.abspath(__file__))
INCLUDE = os.environ.get("QUILLON_INCLUDE_DIR", os.path.join(HERE, os.pardir, "include"))
sys.path.insert(0, HERE)

import generate_declarations  # noqa: E402


def header_version():
    with open(os.path.join(INCLUDE, "quillon.h")) as header:
        match = re.search(r'#define QUILLON_VERSION_STRING "([^"]+)"', header.read())
    if not match:
        raise SystemExit("QUILLON_VERSION_STRING not found in %s" % INCLUDE)
    return match.group(1)


class build_with_declarations(build_py):
    """Adds the declarations generated from the headers and the library
    directory to the built package."""

    def run(self):
        super().run()
        package = os.path.join(self.build_lib, "quillon")
        declarations = os.path.join(package, "_declarations.py")
        status = generate_declarations.main(["--cc", os.environ.get("CC", "cc"), "--include", INCLUDE,
                                             "-o", declarations])
        if status != 0:
            raise SystemExit("the declarations could not be generated from %s" % INCLUDE)
        libraries = [library for _, library, _ in generate_declarations.present_headers(INCLUDE)]
        directory = os.environ.get("QUILLON_LIBRARY_DIR", "/usr/local/lib")
        with open(os.path.join(package, "_location.py"), "w") as f:
            f.write('"""Where the libraries are: QUILLON_LIBRARY_DIR when pip built the package."""\n')
            f.write("LIBRARY_DIRS = {\n")
            for library in libraries:
                f.write("    %r: [%r],\n" % (library, directory))
            f.write("}\n")


setup(version=header_version(), cmdclass={"build_py": build_with_declarations})

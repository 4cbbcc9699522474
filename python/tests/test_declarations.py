"""The declarations generated from the headers: every exported name of the
built libraries is declared, every declared function exported, the
version is the project's, and the generator turns what cffi cannot read
into something it can, or stops."""

import os
import re
import subprocess
import sys
import tempfile
import textwrap
import unittest

import quillon
from quillon import _declarations, _ffi

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, os.pardir))
import generate_declarations  # noqa: E402

# quillon.h declares its placeholders (a class, a function and a variable)
# for C++ callers only: exported under C++ names, not part of the C face.
CXX_PLACEHOLDERS = re.compile(r"^(_Z.*|nTalvor)$")


def exported(library):
    nm = os.environ.get("QUILLON_NM") or "nm"
    output = subprocess.run([nm, "-D", "--defined-only", library], check=True,
                            stdout=subprocess.PIPE, text=True).stdout
    names = set()
    for line in output.splitlines():
        fields = line.split()
        if len(fields) >= 3:
            names.add(fields[2].split("@")[0])
    return names


class CoverExports(unittest.TestCase):
    def test_every_exported_name_is_declared(self):
        libraries = os.environ.get("QUILLON_LIBRARIES")
        if not libraries:
            self.skipTest("QUILLON_LIBRARIES not set (run through CTest)")
        by_file = {"libquillon.": "quillon", "libquillon_survey.": "quillon_survey",
                   "libquillon_io.": "quillon_io"}
        checked = 0
        if os.environ.get("QUILLON_IO_LIBRARY"):
            libraries += os.pathsep + os.environ["QUILLON_IO_LIBRARY"]
        for path in libraries.split(os.pathsep):
            library = next(name for prefix, name in by_file.items()
                           if os.path.basename(path).startswith(prefix))
            names = {n for n in exported(path) if not CXX_PLACEHOLDERS.match(n)}
            declared = set(_declarations.FUNCTIONS[library])
            with self.subTest(library=library):
                self.assertEqual(names - declared, set(), "exported, not declared")
                self.assertEqual(declared - names, set(), "declared, not exported")
                checked += 1
        self.assertGreaterEqual(checked, 2)

    def test_counts(self):
        self.assertEqual(len(_declarations.FUNCTIONS["quillon"]), 65)
        self.assertIn("qs_polar_points", _declarations.FUNCTIONS["quillon_survey"])
        self.assertIn("qs_alignment_locate_many", _declarations.FUNCTIONS["quillon_survey"])


class VersionAndConstants(unittest.TestCase):
    def test_version_is_the_project_version(self):
        source = os.environ.get("QUILLON_SOURCE_DIR", os.path.join(HERE, os.pardir, os.pardir))
        with open(os.path.join(source, "CMakeLists.txt")) as f:
            project = re.search(r"project\(Quillon\s+VERSION\s+([0-9.]+)", f.read()).group(1)
        self.assertEqual(quillon.__version__, project)
        self.assertEqual(".".join(map(str, quillon.version_info)), project)

    def test_constants_of_both_headers(self):
        constants = quillon.CONSTANTS
        self.assertEqual(constants["QS_RHO_SEC"], 206264.80624709636)
        self.assertEqual(constants["QUILLON_RHO_SEC"], 206264.8097655947)
        self.assertEqual(constants["QS_MAX_BATCH"], 1000000000)
        self.assertIsInstance(constants["QS_MAX_SIGHTINGS"], int)
        # Integer expressions of C sizes, evaluated with cffi's sizes.
        self.assertEqual(constants["QUILLON_STA_STATION_AT"],
                         348 if _ffi.ffi.sizeof("void *") == 4 else 352)
        self.assertFalse(any(name.endswith("_API") or name.endswith("_H") for name in constants))


HEADER = textwrap.dedent("""\
    #ifndef QUILLON_H
    #define QUILLON_H
    #include <stddef.h>
    #define QUILLON_VERSION_STRING "9.8.7"
    #define QUILLON_COUNT 12u
    #define QUILLON_SCALE (2.5e-3)
    #define QUILLON_NEGATIVE -4
    #define QUILLON_HEX 0x1F
    #define QUILLON_TWICE (QUILLON_COUNT * 2 + sizeof(double))
    #if defined(QUILLON_STATIC)
    #define QUILLON_API
    #else
    #define QUILLON_API __attribute__((visibility("default")))
    #endif
    #define PIN(type, size) _Static_assert(sizeof(type) == (size), #type)
    #define AT(type, field, offset) _Static_assert(offsetof(type, field) == (offset), "at")
    typedef struct Thing { double a; unsigned char b; } Thing;
    QUILLON_API int LIB_Thing(const Thing* thing, unsigned char count);
    PIN(Thing, 16);
    AT(Thing, b, 8);
    _Static_assert(sizeof(void*) != 8 || sizeof(Thing) == 24, "on 64" " bits");
    #endif
    """)


class Generator(unittest.TestCase):
    def generate(self, header):
        with tempfile.TemporaryDirectory() as include:
            with open(os.path.join(include, "quillon.h"), "w") as f:
                f.write(header)
            headers = generate_declarations.present_headers(include)
            text = generate_declarations.preprocess(os.environ.get("CC", "cc"), include, headers)
            return generate_declarations.generate(text, headers)

    def test_a_small_header(self):
        cdef, constants, expressions, functions, layout = self.generate(HEADER)
        self.assertEqual(functions, {"quillon": ["LIB_Thing"]})
        self.assertNotIn("_Static_assert", cdef)
        self.assertNotIn("__attribute__", cdef)
        self.assertEqual(constants["QUILLON_VERSION_STRING"], "9.8.7")
        self.assertEqual(constants["QUILLON_COUNT"], 12)
        self.assertEqual(constants["QUILLON_SCALE"], 2.5e-3)
        self.assertEqual(constants["QUILLON_NEGATIVE"], -4)
        self.assertEqual(constants["QUILLON_HEX"], 31)
        self.assertEqual(expressions["QUILLON_TWICE"], "(QUILLON_COUNT * 2 + sizeof(double))")
        self.assertEqual(_ffi.evaluate(expressions["QUILLON_TWICE"], constants), 32)
        self.assertEqual([("".join(c.split()), m) for c, m in layout],
                         [("sizeof(Thing)==(16)", "Thing"), ("__builtin_offsetof(Thing,b)==(8)", "at"),
                          ("sizeof(void*)!=8||sizeof(Thing)==24", "on 64 bits")])
        ffi = _ffi.cffi.FFI()
        ffi.cdef(cdef)
        self.assertEqual([_ffi.evaluate(c, constants, ffi) for c, _ in layout],
                         [1, 1, int(ffi.sizeof("void *") != 8)])

    def test_a_constant_it_cannot_read_stops_it(self):
        header = HEADER.replace('#define QUILLON_HEX 0x1F', '#define QUILLON_TEXT "a" "b" L"c"')
        with self.assertRaises(generate_declarations.GeneratorError):
            self.generate(header)

    def test_an_assertion_of_another_form_stops_it(self):
        for assertion in ('_Static_assert(__alignof__(Thing) == 8, "aligned");',
                          '_Static_assert(!(sizeof(Thing) - 16), "not");'):
            with self.subTest(assertion=assertion):
                header = HEADER.replace("AT(Thing, b, 8);", assertion)
                with self.assertRaises(generate_declarations.GeneratorError):
                    self.generate(header)

    def test_a_header_without_functions_stops_it(self):
        header = HEADER.replace("QUILLON_API int LIB_Thing(const Thing* thing, unsigned char count);",
                                "")
        with self.assertRaises(generate_declarations.GeneratorError):
            self.generate(header)

    def test_the_command_writes_nothing_on_failure(self):
        with tempfile.TemporaryDirectory() as scratch:
            include = os.path.join(scratch, "include")
            os.mkdir(include)
            with open(os.path.join(include, "quillon.h"), "w") as f:
                f.write("this is not C;\n#error broken\n")
            output = os.path.join(scratch, "_declarations.py")
            status = generate_declarations.main(["--cc", os.environ.get("CC", "cc"), "--include",
                                                 include, "-o", output])
            self.assertEqual(status, 1)
            self.assertFalse(os.path.exists(output))


if __name__ == "__main__":
    unittest.main()

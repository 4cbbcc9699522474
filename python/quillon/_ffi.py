"""The C libraries, loaded with cffi in ABI mode from the declarations that
generate_declarations.py made of their headers.

A library is looked for, in this order:
1. in the directories of the environment variable QUILLON_LIBRARY_PATH
   (separated by os.pathsep);
2. where the package's _location module says: the build directory of a
   package in a build tree, the installed library directory of an
   installed package;
3. by the system's loader, under the library's file names.
"""

import ast
import os
import re
import sys

import cffi

from . import _declarations

try:
    from . import _location
except ImportError:  # a package copied by hand, without its location file
    _location = None

ENVIRONMENT = "QUILLON_LIBRARY_PATH"

ffi = cffi.FFI()
ffi.cdef(_declarations.CDEF)

# The base names of the libraries of each platform, most specific first.
if sys.platform == "win32":
    _NAMES = {"quillon": ["Quillon.dll"]}
    _PATTERN = ["{0}.dll", "lib{0}.dll"]
elif sys.platform == "darwin":
    _NAMES = {}
    _PATTERN = ["lib{0}.{major}.dylib", "lib{0}.dylib"]
else:
    _NAMES = {}
    _PATTERN = ["lib{0}.so.{major}", "lib{0}.so"]


def _file_names(library):
    major = _declarations.CONSTANTS["QUILLON_VERSION_MAJOR"]
    return _NAMES.get(library, []) + [p.format(library, major=major) for p in _PATTERN]


def _candidates(library):
    """Paths and names to try for one library, in order."""
    names = _file_names(library)
    for directory in os.environ.get(ENVIRONMENT, "").split(os.pathsep):
        if directory:
            yield from (os.path.join(directory, name) for name in names)
    if _location is not None:
        here = os.path.dirname(os.path.abspath(__file__))
        for directory in _location.LIBRARY_DIRS.get(library, ()):
            directory = os.path.normpath(os.path.join(here, directory))
            yield from (os.path.join(directory, name) for name in names)
    yield from names


def _open(library):
    tried = []
    for candidate in _candidates(library):
        if os.path.isabs(candidate) and not os.path.exists(candidate):
            tried.append(candidate)
            continue
        try:
            return ffi.dlopen(candidate), candidate
        except OSError as error:
            tried.append("%s (%s)" % (candidate, error))
    raise ImportError(
        "the Quillon library %r was not found; set %s to the directory that holds it.\n"
        "Tried:\n  %s" % (library, ENVIRONMENT, "\n  ".join(tried)))


class _Libraries:
    """Each library opened on first use; the device library always first,
    so that the others find it by its name once it is loaded."""

    def __init__(self):
        self._open = {}
        self.paths = {}

    def __getitem__(self, library):
        if library not in self._open:
            if library != "quillon":
                self["quillon"]
            handle, path = _open(library)
            self._open[library] = handle
            self.paths[library] = path
        return self._open[library]

    def available(self, library):
        """Whether the library is declared and can be opened."""
        if library not in _declarations.FUNCTIONS:
            return False
        try:
            self[library]
        except ImportError:
            return False
        return True


libraries = _Libraries()

# ---- integer expressions of the C sizes -------------------------------------

_SIZEOF = re.compile(r"sizeof\s*\(\s*([A-Za-z_][A-Za-z0-9_ ]*\**)\s*\)")
_OFFSETOF = re.compile(r"__builtin_offsetof\s*\(\s*([A-Za-z_]\w*)\s*,\s*([A-Za-z_]\w*)\s*\)")
_SUFFIX = re.compile(r"\b(\d+)[uUlL]+\b")


def evaluate(expression, names=None, sizes=None):
    """A constant expression of the headers - numbers, names of other
    constants, sizeof of a type, offsetof a field, + - * / %, comparisons,
    && and || - with the sizes of the FFI sizes (the package's by default).
    C divides integers toward zero."""
    sizes = sizes or ffi
    text = _SIZEOF.sub(lambda m: str(sizes.sizeof(m.group(1).strip())), expression)
    text = _OFFSETOF.sub(lambda m: str(sizes.offsetof(m.group(1), m.group(2))), text)
    text = _SUFFIX.sub(r"\1", text)
    text = text.replace("||", " or ").replace("&&", " and ")
    tree = ast.parse(text.strip(), mode="eval")
    comparisons = {ast.Eq: lambda a, b: a == b, ast.NotEq: lambda a, b: a != b,
                   ast.Lt: lambda a, b: a < b, ast.LtE: lambda a, b: a <= b,
                   ast.Gt: lambda a, b: a > b, ast.GtE: lambda a, b: a >= b}

    def value(node):
        if isinstance(node, ast.Expression):
            return value(node.body)
        if isinstance(node, ast.Constant) and isinstance(node.value, (int, float)):
            return node.value
        if isinstance(node, ast.Name) and names is not None and node.id in names:
            return names[node.id]
        if isinstance(node, ast.UnaryOp) and isinstance(node.op, (ast.UAdd, ast.USub)):
            operand = value(node.operand)
            return operand if isinstance(node.op, ast.UAdd) else -operand
        if isinstance(node, ast.BoolOp):
            results = [bool(value(v)) for v in node.values]
            return int(all(results) if isinstance(node.op, ast.And) else any(results))
        if isinstance(node, ast.Compare) and len(node.ops) == 1 and type(node.ops[0]) in comparisons:
            return int(comparisons[type(node.ops[0])](value(node.left), value(node.comparators[0])))
        if isinstance(node, ast.BinOp):
            left, right = value(node.left), value(node.right)
            if isinstance(node.op, ast.Add):
                return left + right
            if isinstance(node.op, ast.Sub):
                return left - right
            if isinstance(node.op, ast.Mult):
                return left * right
            if isinstance(node.op, ast.Div):
                if isinstance(left, int) and isinstance(right, int):
                    quotient = abs(left) // abs(right)
                    return quotient if (left >= 0) == (right >= 0) else -quotient
                return left / right
            if isinstance(node.op, ast.Mod):
                return left - right * int(left / right)
        raise ValueError("not a constant expression: %s" % expression)

    return value(tree)


def _constants():
    constants = dict(_declarations.CONSTANTS)
    pending = dict(_declarations.EXPRESSIONS)
    while pending:
        progress = False
        for name, expression in list(pending.items()):
            try:
                constants[name] = evaluate(expression, constants)
            except ValueError:
                continue
            del pending[name]
            progress = True
        if not progress:
            raise ImportError("constants that cannot be evaluated: %s" % ", ".join(pending))
    return constants


CONSTANTS = _constants()


def layout_mismatches():
    """The static assertions of the headers that cffi's layouts fail, by
    their messages ("SurveyPoint size", "HElement.Chainage offset", ...)."""
    return [message for condition, message in _declarations.LAYOUT
            if not evaluate(condition, CONSTANTS)]


_wrong = layout_mismatches()
if _wrong:
    raise ImportError("cffi lays records out unlike the headers' checks: %s" % ", ".join(_wrong))

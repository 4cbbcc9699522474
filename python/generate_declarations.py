#!/usr/bin/env python3
"""Declarations of the Quillon libraries for cffi, read from their C headers.

The headers are run through the C preprocessor with the export macros
defined empty (the libraries' *_STATIC macros) and the #define directives
kept (-dD). Of the result, only what comes from Quillon's own headers is
kept, by the line markers:

- declarations (records, enumerations, functions) become the text handed
  to cffi's cdef, without the static assertions that pin the record
  layouts; those become layout checks that the package runs against
  cffi's own layouts at import;
- object-like macros with a literal value (QUILLON_*, QS_*, QIO_*, ...)
  become a table of constants, since cdef takes integer macros only;
- every function is listed under the library that exports it.

Used by CMake at build time and by setup.py for pip; needs only Python.

    generate_declarations.py --cc cc --include include -o _declarations.py
    generate_declarations.py --preprocessed decl.i -o _declarations.py
"""

import argparse
import ast
import os
import re
import subprocess
import sys
import tempfile

# The headers, the library that exports their functions and the macro that
# turns their export marks into nothing. A header that is not there (the
# io library in a tree without it) is left out.
HEADERS = (
    ("quillon.h", "quillon", "QUILLON_STATIC"),
    ("quillon/survey.h", "quillon_survey", "QUILLON_SURVEY_STATIC"),
    ("quillon/io.h", "quillon_io", "QUILLON_IO_STATIC"),
)

LINE_MARKER = re.compile(r'^# (\d+) "((?:[^"\\]|\\.)*)"')
DEFINE = re.compile(r"^#define ([A-Za-z_][A-Za-z0-9_]*)(\(| |$)(.*)$")
IDENTIFIER = re.compile(r"[A-Za-z_][A-Za-z0-9_]*")


class GeneratorError(Exception):
    pass


def present_headers(include_dir):
    return [entry for entry in HEADERS if os.path.isfile(os.path.join(include_dir, entry[0]))]


def preprocess(cc, include_dir, headers):
    """Runs the C preprocessor on a source that includes every header."""
    source = "".join('#include <%s>\n' % header for header, _, _ in headers)
    defines = ["-D%s" % macro for _, _, macro in headers]
    with tempfile.TemporaryDirectory() as scratch:
        path = os.path.join(scratch, "quillon_declarations.c")
        with open(path, "w") as f:
            f.write(source)
        command = cc.split() + ["-E", "-dD", "-std=c11"] + defines + ["-I", include_dir, path]
        run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        if run.returncode != 0:
            raise GeneratorError("%s failed:\n%s" % (" ".join(command), run.stderr))
        return run.stdout


def header_of(path, headers):
    """The header a line-marker path names, or None for any other file."""
    normal = path.replace("\\\\", "/").replace("\\", "/")
    for header, _, _ in headers:
        if normal == header or normal.endswith("/" + header):
            return header
    return None


def split_by_header(preprocessed, headers):
    """Text and #define lines of each header, in the order they come."""
    text = {}
    defines = []
    current = None
    for line in preprocessed.splitlines():
        marker = LINE_MARKER.match(line)
        if marker:
            current = header_of(marker.group(2), headers)
            continue
        if current is None:
            continue
        text.setdefault(current, [])
        if line.startswith("#"):
            if line.startswith("#define"):
                defines.append((current, line))
            continue
        text[current].append(line)
    return {header: "\n".join(lines) for header, lines in text.items()}, defines


def balanced_end(text, open_index):
    """Index just past the parenthesis that closes the one at open_index."""
    depth = 0
    for i in range(open_index, len(text)):
        if text[i] == "(":
            depth += 1
        elif text[i] == ")":
            depth -= 1
            if depth == 0:
                return i + 1
    raise GeneratorError("unbalanced parentheses after: %s" % text[open_index:open_index + 60])


def take_out(text, keyword, keep):
    """Removes every `keyword(...)` from text; with a trailing ';' when it is
    a statement. keep receives the text between the parentheses."""
    pieces = []
    start = 0
    pattern = re.compile(r"\b%s\s*\(" % re.escape(keyword))
    while True:
        found = pattern.search(text, start)
        if not found:
            break
        open_index = found.end() - 1
        end = balanced_end(text, open_index)
        if keep is not None:
            keep(text[open_index + 1:end - 1])
        tail = re.match(r"\s*;", text[end:])
        if tail:
            end += tail.end()
        pieces.append(text[start:found.start()])
        start = end
    pieces.append(text[start:])
    return "".join(pieces)


def split_top_level(text, separator=","):
    parts, depth, start = [], 0, 0
    for i, c in enumerate(text):
        if c in "([{":
            depth += 1
        elif c in ")]}":
            depth -= 1
        elif c == separator and depth == 0:
            parts.append(text[start:i])
            start = i + 1
    parts.append(text[start:])
    return [p.strip() for p in parts]


SIZE_OR_OFFSET = re.compile(r"\b(?:sizeof\s*\(\s*[A-Za-z_][A-Za-z0-9_ ]*\**\s*\)"
                            r"|__builtin_offsetof\s*\(\s*[A-Za-z_]\w*\s*,\s*[A-Za-z_]\w*\s*\))")
# Numbers, parentheses, arithmetic, comparisons, && and ||; no unary !,
# whose precedence Python's not does not share.
CONDITION_TOKENS = re.compile(r"^[\s0-9()+\-*/%<>=!|&uUlL]*$")


def layout_check(arguments):
    """A static assertion as (condition, message): the condition a C
    constant expression of numbers, sizeof(type) and offsetof(type, field),
    which the package evaluates with cffi's sizes; the message its text."""
    parts = split_top_level(arguments)
    condition = " ".join(parts[0].split())
    if (not CONDITION_TOKENS.match(SIZE_OR_OFFSET.sub("0", condition))
            or re.search(r"!(?!=)", condition)):
        raise GeneratorError("static assertion the package cannot evaluate: %s" % condition)
    message = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', parts[1] if len(parts) > 1 else ""))
    return (condition, message)


def statements(text):
    """Top-level declarations of a C text, each ending with ';'."""
    parts = split_top_level(text, ";")
    if parts[-1]:
        raise GeneratorError("declaration without ';': %s" % parts[-1][:80])
    return [" ".join(part.split()) + ";" for part in parts[:-1] if part]


def function_name(statement):
    """The name of a function a declaration declares, else None."""
    if statement.startswith("typedef") or "(" not in statement:
        return None
    head = statement[:statement.index("(")]
    if "{" in head or "=" in head:
        return None
    names = IDENTIFIER.findall(head)
    return names[-1] if names else None


def literal(value):
    """The value of a macro body that is a number or a string, else None."""
    body = value.strip()
    while body.startswith("(") and body.endswith(")"):
        body = body[1:-1].strip()
    if not body:
        return None
    if body.startswith('"'):
        try:
            result = ast.literal_eval(body)
        except (ValueError, SyntaxError):
            return None
        return result if isinstance(result, str) else None
    number = re.fullmatch(r"([-+]?)((?:0[xX][0-9a-fA-F]+)|(?:[0-9]*\.?[0-9]+(?:[eE][-+]?[0-9]+)?\.?))([uUlLfF]*)", body)
    if not number:
        return None
    sign, digits, suffix = number.groups()
    try:
        result = ast.literal_eval(digits) if not digits.endswith(".") else float(digits)
    except (ValueError, SyntaxError):
        return None
    if "f" in suffix.lower() or (isinstance(result, int) and "." in digits):
        result = float(result)
    return -result if sign == "-" else result


C_EXPRESSION = re.compile(r"^[\sA-Za-z0-9_.()*/%+-]+$")


def constants_of(defines, prefixes):
    """Object-like macros of the headers: those with a literal value as
    constants; those of an integer expression (sizeof included, as the
    layout helpers are) as expressions the package evaluates with its own
    sizes. A macro with one of the prefixes and any other body stops the
    generator, so that no constant silently goes missing."""
    constants, expressions = {}, {}
    for header, line in defines:
        match = DEFINE.match(line)
        if not match or match.group(2) == "(":
            continue
        name, body = match.group(1), match.group(3).strip()
        value = literal(body)
        if value is not None:
            constants[name] = value
        elif not body or not name.startswith(prefixes) or name.endswith("_API"):
            continue
        elif C_EXPRESSION.match(body):
            expressions[name] = " ".join(body.split())
        else:
            raise GeneratorError("%s: macro %s has a value that is neither a literal nor an "
                                 "integer expression: %s" % (header, name, body))
    return constants, expressions


def generate(preprocessed, headers):
    texts, defines = split_by_header(preprocessed, headers)
    cdef_parts, functions, layout = [], {}, []
    for header, library, _ in headers:
        if header not in texts:
            continue
        text = texts[header]
        text = take_out(text, "_Static_assert", lambda arguments: layout.append(layout_check(arguments)))
        text = take_out(text, "__attribute__", None)
        text = re.sub(r"\b__extension__\b", "", text)
        declared = statements(text)
        names = [name for name in map(function_name, declared) if name]
        if not names:
            raise GeneratorError("%s declares no function" % header)
        functions[library] = names
        cdef_parts.append("/* %s */\n%s\n" % (header, "\n".join(declared)))
    prefixes = tuple(sorted({name.split("_")[0] + "_" for names in functions.values() for name in names}
                            | {"QUILLON_", "QS_", "QIO_"}))
    constants, expressions = constants_of(defines, prefixes)
    if "QUILLON_VERSION_STRING" not in constants:
        raise GeneratorError("QUILLON_VERSION_STRING not found in quillon.h")
    return "\n".join(cdef_parts), constants, expressions, functions, layout


def module_text(cdef, constants, expressions, functions, layout, headers):
    lines = [
        '"""Declarations of the Quillon libraries, generated from %s by'
        % ", ".join(header for header, _, _ in headers),
        'generate_declarations.py: do not edit."""',
        "",
        "CDEF = %r" % cdef,
        "",
        "CONSTANTS = {",
    ]
    lines += ["    %r: %r," % (name, constants[name]) for name in sorted(constants)]
    lines += ["}", "", "# integer expressions of the C sizes, evaluated at import", "EXPRESSIONS = {"]
    lines += ["    %r: %r," % (name, expressions[name]) for name in sorted(expressions)]
    lines += ["}", "", "FUNCTIONS = {"]
    for library in functions:
        lines.append("    %r: (" % library)
        lines += ["        %r," % name for name in functions[library]]
        lines.append("    ),")
    lines += ["}", "", "# The headers' static assertions of record layouts: (C condition, message)",
              "LAYOUT = ("]
    lines += ["    %r," % (check,) for check in layout]
    lines += [")", ""]
    return "\n".join(lines)


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    source = parser.add_mutually_exclusive_group(required=True)
    source.add_argument("--cc", help="C compiler to preprocess with (with --include)")
    source.add_argument("--preprocessed", help="output of the preprocessor, already run")
    parser.add_argument("--include", help="the include directory holding quillon.h")
    parser.add_argument("-o", "--output", required=True)
    args = parser.parse_args(argv)
    try:
        if args.cc:
            if not args.include:
                parser.error("--cc needs --include")
            headers = present_headers(args.include)
            preprocessed = preprocess(args.cc, args.include, headers)
        else:
            with open(args.preprocessed) as f:
                preprocessed = f.read()
            headers = list(HEADERS)
        cdef, constants, expressions, functions, layout = generate(preprocessed, headers)
    except GeneratorError as error:
        print("generate_declarations: %s" % error, file=sys.stderr)
        return 1
    text = module_text(cdef, constants, expressions, functions, layout, headers)
    # Written whole or not at all.
    scratch = args.output + ".tmp"
    with open(scratch, "w") as f:
        f.write(text)
    os.replace(scratch, args.output)
    return 0


if __name__ == "__main__":
    sys.exit(main())

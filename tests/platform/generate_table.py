#!/usr/bin/env python3
"""Writes the mechanical part of the platform harness from functions.txt.

    generate_table.py TABLE HEADER OUT_DIR

Reads the table of the exported functions (TABLE), checks every argument
against the prototype in the library's header (HEADER) and writes to OUT_DIR:

  qv_table.h  the input and output block of every function (structs), the
              prototypes of the input generators and of the pack and prepare
              hooks, and the layout of the portable part of records that
              hold a pointer;
  qv_table.c  for every function the call through a pointer to it, the
              extents of its arrays, a description of every argument and of
              both blocks (their layouts), gathered in qv_functions[].

Record layouts, sizes and offsets are taken from the header; the generated
code asserts every offset it relies on, so the compiler checks the arithmetic
here. Runs on the build machine, also for cross builds.
"""
import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

# ---- types -----------------------------------------------------------------

# C type -> (size, alignment, layout letter)
SCALARS = {
    "double": (8, 8, "d"),
    "float": (4, 4, "f"),
    "int32_t": (4, 4, "i"),
    "uint32_t": (4, 4, "i"),
    "unsigned char": (1, 1, "u"),
    "signed char": (1, 1, "c"),
}

ROLES = ("value", "count", "mode", "in", "out", "inout")
BY_VALUE = ("value", "count", "mode")
WRITTEN = ("out", "inout")
ARG_FLAGS = ("null", "columns", "prepared")

# ISO C requires compilers to take string literals up to this length.
LONGEST_LITERAL = 4095


class TableError(Exception):
    pass


def normal_type(text):
    """A C type written one way: single spaces, '*' against the name."""
    text = re.sub(r"\s+", " ", text.strip())
    return re.sub(r"\s*\*", "*", text)


@dataclass
class Member:
    type: str  # C type as written, e.g. "double", "SurveyPoint", "const StationRecord*"
    name: str
    count: int  # array length, 1 for a single value


@dataclass
class Record:
    name: str
    members: list
    size: int = 0
    align: int = 1
    offsets: list = field(default_factory=list)
    portable: int = -1  # bytes before the first pointer member, -1 without one


class Header:
    """Records and prototypes of the library's header."""

    def __init__(self, path):
        text = Path(path).read_text()
        text = re.sub(r"/\*.*?\*/", " ", text, flags=re.S)
        text = re.sub(r"//[^\n]*", " ", text)
        self.records = {}
        for m in re.finditer(r"typedef\s+struct\s+(\w+)\s*\{(.*?)\}\s*(\w+)\s*;", text, re.S):
            members = []
            for decl in m.group(2).split(";"):
                decl = decl.strip()
                if not decl:
                    continue
                d = re.fullmatch(r"(.+?)\s*\b(\w+)\s*(?:\[(\d+)\])?", decl, re.S)
                if d is None:
                    raise TableError(f"{path}: cannot read member '{decl}' of {m.group(3)}")
                members.append(Member(normal_type(d.group(1)), d.group(2), int(d.group(3) or 1)))
            self.records[m.group(3)] = Record(m.group(3), members)
        for record in self.records.values():
            self._lay_out(record)
        self.prototypes = {}
        for m in re.finditer(r"QUILLON_API\s+ResultCode\s+(\w+)\s*\(([^)]*)\)\s*;", text):
            params = []
            for p in m.group(2).split(","):
                d = re.fullmatch(r"(.+?)\s*\b(\w+)", p.strip(), re.S)
                params.append(normal_type(d.group(1)))
            self.prototypes[m.group(1)] = params

    def size_align(self, type_name):
        if type_name in SCALARS:
            return SCALARS[type_name][:2]
        record = self.records.get(type_name)
        if record is None:
            raise TableError(f"unknown type {type_name}")
        return record.size, record.align

    def _lay_out(self, record):
        offset = 0
        align = 1
        for member in record.members:
            if member.type.endswith("*"):
                # a pointer: the record's layout differs between platforms
                # from here on
                record.portable = offset
                break
            size, member_align = self.size_align(member.type)
            offset = (offset + member_align - 1) // member_align * member_align
            record.offsets.append(offset)
            offset += size * member.count
            align = max(align, member_align)
        record.align = align
        record.size = (offset + align - 1) // align * align


# ---- layouts -----------------------------------------------------------------


def layout_items(header, type_name, exact=(), unread=()):
    """The layout of one value of a type, as a list of 'name:type' items
    (empty names for a scalar); for a record the fields and the padding.
    Fields in `exact` hold whole values; fields in `unread` are given as
    padding (the function never reads them)."""
    if type_name in SCALARS:
        letter = SCALARS[type_name][2]
        return [f":{letter}"]
    record = header.records[type_name]
    items = []
    at = 0
    members = record.members[: len(record.offsets)]
    end = record.portable if record.portable >= 0 else record.size
    for member, offset in zip(members, record.offsets):
        if offset > at:
            items.append(f"pad:x{offset - at}")
        size = header.size_align(member.type)[0] * member.count
        if member.name in unread:
            items.append(f"{member.name}:x{size}")
        else:
            items.append(item(header, member.name, member.type, member.count, member.name in exact))
        at = offset + size
    if end > at:
        items.append(f"pad:x{end - at}")
    return items


def item(header, name, type_name, count, whole=False):
    """One layout item: name:letterN or name:(fields)N."""
    repeat = str(count) if count > 1 else ""
    if type_name in SCALARS:
        letter = SCALARS[type_name][2]
        if whole:
            if letter != "d":
                raise TableError(f"{name}: only a double can hold a whole value")
            letter = "w"
        return f"{name}:{letter}{repeat}"
    return f"{name}:({' '.join(layout_items(header, type_name))}){repeat}"


def double_paths(header, type_name, prefix=""):
    """Names of the doubles of a record of doubles, nested records flattened."""
    record = header.records[type_name]
    paths = []
    for member in record.members:
        if member.type == "double":
            if member.count == 1:
                paths.append(prefix + member.name)
            else:
                paths += [f"{prefix}{member.name}[{k}]" for k in range(member.count)]
        elif member.type in header.records:
            paths += double_paths(header, member.type, prefix + member.name + ".")
        else:
            raise TableError(f"{type_name}.{member.name}: a column table needs a record of doubles")
    return paths


# ---- the table -----------------------------------------------------------------


@dataclass
class Arg:
    name: str
    role: str
    type: str
    capacity: int  # elements the harness provides; 0 for a single value
    flags: set
    exact: tuple
    unread: tuple
    reads: str  # C expression, or '' for the whole array
    line: int


@dataclass
class Extra:
    name: str
    type: str  # a header type, or 'portable R'
    line: int


@dataclass
class Function:
    name: str
    line: int
    cases: int = 256
    like: str = ""
    in_order: list = field(default_factory=list)
    out_order: list = field(default_factory=list)
    packed: str = ""
    prepare: bool = False
    args: list = field(default_factory=list)
    extras: list = field(default_factory=list)


def read_table(path):
    functions = []
    for number, raw in enumerate(Path(path).read_text().splitlines(), 1):
        line = raw.split("#", 1)[0].rstrip()
        if not line:
            continue
        where = f"{path}:{number}"
        if not line[0].isspace():
            functions.append(read_function(line, number, where))
            continue
        if not functions:
            raise TableError(f"{where}: an argument before any function")
        words = line.split()
        if words[0] == "+":
            if len(words) < 3:
                raise TableError(f"{where}: expected '+ name type'")
            functions[-1].extras.append(Extra(words[1], " ".join(words[2:]), number))
        else:
            functions[-1].args.append(read_arg(line, number, where))
    return functions


def read_function(line, number, where):
    words = line.split()
    fn = Function(words[0], number)
    for word in words[1:]:
        key, _, value = word.partition("=")
        if key == "cases":
            fn.cases = int(value)
        elif key == "like":
            fn.like = value
        elif key == "in":
            fn.in_order = value.split(",")
        elif key == "out":
            fn.out_order = value.split(",")
        elif key == "packed":
            fn.packed = value
        elif key == "prepare" and not value:
            fn.prepare = True
        else:
            raise TableError(f"{where}: unknown setting '{word}'")
    return fn


def read_arg(line, number, where):
    reads = ""
    if " reads=" in line:
        line, reads = line.split(" reads=", 1)
        reads = reads.strip()
    words = line.split()
    if len(words) < 3 or words[1] not in ROLES:
        raise TableError(f"{where}: expected 'name role type', role one of {', '.join(ROLES)}")
    name, role = words[0], words[1]
    type_words = []
    flags = set()
    exact = ()
    unread = ()
    for word in words[2:]:
        if word in ARG_FLAGS:
            flags.add(word)
        elif word.startswith("exact="):
            exact = tuple(word[len("exact=") :].split(","))
        elif word.startswith("unread="):
            unread = tuple(word[len("unread=") :].split(","))
        elif flags or exact or unread:
            raise TableError(f"{where}: '{word}' after the settings")
        else:
            type_words.append(word)
    type_text = " ".join(type_words)
    m = re.fullmatch(r"(.+?)\s*(?:\[(\d+)\])?", type_text)
    capacity = int(m.group(2)) if m.group(2) else 0
    return Arg(name, role, m.group(1), capacity, flags, exact, unread, reads, number)


# ---- checks against the header ---------------------------------------------------


def expected_parameter(arg):
    if arg.role in BY_VALUE:
        return arg.type
    if arg.role == "in":
        return f"const {arg.type}*"
    return f"{arg.type}*"


def check(fn, header, table_path):
    where = f"{table_path}:{fn.line}"
    params = header.prototypes.get(fn.name)
    if params is None:
        raise TableError(f"{where}: {fn.name} is not declared in the header")
    if len(params) != len(fn.args):
        raise TableError(f"{where}: {fn.name} takes {len(params)} arguments, the table lists {len(fn.args)}")
    names = set()
    for position, (arg, param) in enumerate(zip(fn.args, params), 1):
        at = f"{table_path}:{arg.line}"
        if arg.name in names:
            raise TableError(f"{at}: {arg.name} twice")
        names.add(arg.name)
        if expected_parameter(arg) != param:
            raise TableError(f"{at}: argument {position} of {fn.name} is '{param}', the table says "
                             f"'{expected_parameter(arg)}' ({arg.role} {arg.type})")
        if arg.role in BY_VALUE and (arg.capacity or arg.flags or arg.reads):
            raise TableError(f"{at}: a value passed by value has no array, flags or extent")
        if arg.reads and not arg.capacity:
            raise TableError(f"{at}: reads= belongs to an array")
        if "columns" in arg.flags and (arg.role not in WRITTEN or not arg.capacity):
            raise TableError(f"{at}: columns belongs to an array the function writes")
        if "prepared" in arg.flags and not fn.prepare:
            raise TableError(f"{at}: a prepared argument needs the function's prepare hook")
        if arg.type in header.records and header.records[arg.type].portable >= 0 and "prepared" not in arg.flags:
            raise TableError(f"{at}: {arg.type} holds a pointer; only a prepared argument can have it")
        by_value = {a.name for a in fn.args if a.role in BY_VALUE}
        for word in re.findall(r"\b[A-Za-z_]\w*\b", arg.reads):
            if word != "size_t" and word not in by_value:
                raise TableError(f"{at}: reads= names '{word}', which is no argument passed by value")
    for extra in fn.extras:
        names.add(extra.name)
    for order in (fn.in_order, fn.out_order):
        for name in order:
            if name not in names:
                raise TableError(f"{where}: the block order names '{name}', which is no argument")


# ---- blocks --------------------------------------------------------------------


@dataclass
class Slot:
    """One field of a block."""

    name: str
    decl: str  # C declaration without the trailing semicolon
    size: int
    align: int
    layout: str
    offset: int = 0


def value_slot(header, name, type_name, count, exact=(), unread=()):
    size, align = header.size_align(type_name)
    decl = f"{type_name} {name}" + (f"[{count}]" if count else "")
    if type_name in header.records and (exact or unread):
        unknown = set(exact + unread) - {m.name for m in header.records[type_name].members}
        if unknown:
            raise TableError(f"{name}: {type_name} has no field {', '.join(sorted(unknown))}")
        layout = f"{name}:({' '.join(layout_items(header, type_name, exact, unread))})"
        if count:
            layout += str(count)
    elif unread:
        raise TableError(f"{name}: only fields of a record can be unread")
    else:
        layout = item(header, name, type_name, max(count, 1), bool(exact))
    return Slot(name, decl, size * max(count, 1), align, layout)


def extra_slot(header, extra):
    if extra.type.startswith("portable "):
        record = header.records[extra.type.split()[1]]
        if record.portable < 0:
            raise TableError(f"{extra.type}: {record.name} holds no pointer")
        padded = (record.portable + 7) // 8 * 8
        items = layout_items(header, record.name)
        if padded > record.portable:
            items.append(f"pad:x{padded - record.portable}")
        return Slot(extra.name, f"unsigned char {extra.name}[{padded}]", padded, 8,
                    f"{extra.name}:({' '.join(items)})")
    return value_slot(header, extra.name, extra.type, 0)


def place(slots):
    """Offsets in order, with explicit padding wherever the C compiler would
    leave a gap, so that every byte of a block is a named field."""
    placed = []
    at = 0
    align = 1
    for slot in slots:
        gap = -at % slot.align
        if gap:
            placed.append(Slot(f"pad{len(placed)}", f"unsigned char pad{len(placed)}[{gap}]", gap, 1, f"pad:x{gap}", at))
            at += gap
        slot.offset = at
        placed.append(slot)
        at += slot.size
        align = max(align, slot.align)
    gap = -at % align
    if gap:
        placed.append(Slot("pad", f"unsigned char pad[{gap}]", gap, 1, f"pad:x{gap}", at))
        at += gap
    return placed, at


def ordered(items, order, name_of):
    if not order:
        return items
    pinned = [next(x for x in items if name_of(x) == name) for name in order if any(name_of(x) == name for x in items)]
    return pinned + [x for x in items if x not in pinned]


def is_local(fn, arg):
    """Outputs that live in buffers of their own rather than in the output block."""
    return arg.role in WRITTEN and (bool(fn.packed) or "columns" in arg.flags or "prepared" in arg.flags)


def input_block(fn, header):
    wide = []
    narrow = []
    for arg in fn.args:
        if arg.role == "out" or "prepared" in arg.flags:
            continue
        slot = value_slot(header, arg.name, arg.type, arg.capacity, unread=arg.unread)
        (narrow if arg.role in BY_VALUE and slot.size < 8 else wide).append(slot)
    flags = [value_slot(header, f"with_{arg.name}", "unsigned char", 0) for arg in fn.args if "null" in arg.flags]
    extras = [extra_slot(header, extra) for extra in fn.extras]
    wide += [s for s in extras if s.align == 8]
    small_extras = [s for s in extras if s.align < 8]
    wide = ordered(wide, fn.in_order, lambda s: s.name)
    return place(wide + narrow + flags + small_extras)


def output_block(fn, header):
    slots = []
    for arg in fn.args:
        if arg.role not in WRITTEN or "prepared" in arg.flags:
            continue
        if "columns" in arg.flags:
            paths = double_paths(header, arg.type)
            layout = " ".join(f"{p}:d{arg.capacity}" for p in paths)
            slots.append(Slot(arg.name, f"double {arg.name}[{len(paths)}][{arg.capacity}]",
                              8 * len(paths) * arg.capacity, 8, f"{arg.name}:({layout})"))
        else:
            slots.append(value_slot(header, arg.name, arg.type, arg.capacity, arg.exact))
    return place(ordered(slots, fn.out_order, lambda s: s.name))


# ---- writing C ------------------------------------------------------------------


def c_string(text):
    if len(text) > LONGEST_LITERAL:
        raise TableError(f"a layout of {len(text)} characters is longer than C allows a literal")
    return '"' + text + '"'


def struct(name, slots, size):
    lines = [f"typedef struct {name} {{"]
    lines += [f"    {slot.decl};" for slot in slots]
    lines.append(f"}} {name};")
    for slot in slots:
        lines.append(f"QV_ASSERT(offsetof({name}, {slot.name}) == {slot.offset});")
    lines.append(f"QV_ASSERT(sizeof({name}) == {size});")
    return lines


def parameter_cast(arg, writable):
    if arg.role in BY_VALUE:
        return f"{arg.type}"
    const = "" if writable else "const "
    return f"{const}{arg.type}*"


def local_args(fn):
    return [(i, arg) for i, arg in enumerate(fn.args) if arg.role in WRITTEN]


def hook_prototypes(fn):
    owner = fn.like_name
    lines = []
    if fn.prepare:
        params = [f"const {owner}_in* in"] + [f"{arg.type}* {arg.name}" for _, arg in local_args(fn)]
        lines.append(f"void {fn.packed}_prepare({', '.join(params)});")
    params = [f"const {arg.type}* {arg.name}" for _, arg in local_args(fn)]
    params.append(f"struct {fn.packed}_out* out")
    lines.append(f"void {fn.packed}_pack({', '.join(params)});")
    return lines


def write_header(functions, header, blocks):
    out = [
        "/* Generated by generate_table.py from functions.txt: do not edit. */",
        "#ifndef QV_TABLE_H",
        "#define QV_TABLE_H",
        "",
        '#include "qv.h"',
        "",
        "#define QV_ASSERT(condition) _Static_assert(condition, #condition)",
        "",
        "/* Records that hold a pointer: the bytes before it and their layout. */",
    ]
    for record in header.records.values():
        if record.portable >= 0:
            last = record.members[len(record.offsets) - 1]
            out.append(f"#define QV_PORTABLE_{record.name} {record.portable}")
            out.append(f"#define QV_PORTABLE_LAYOUT_{record.name} {c_string(' '.join(layout_items(header, record.name)))}")
            out.append(f"QV_ASSERT(offsetof({record.name}, {last.name}) + sizeof((({record.name}*)0)->{last.name}) == {record.portable});")
    out += ["", '#include "packed.h"', ""]
    hooks_written = set()
    for fn in functions:
        if fn.like:
            out.append(f"typedef {fn.like_name}_in {fn.name}_in;")
            out.append(f"typedef {fn.like_name}_out {fn.name}_out;")
        else:
            in_slots, in_size, out_slots, out_size = blocks[fn.name]
            out += struct(f"{fn.name}_in", in_slots, in_size)
            if fn.packed:
                out.append(f"typedef struct {fn.packed}_out {fn.name}_out;")
            else:
                out += struct(f"{fn.name}_out", out_slots, out_size)
        out.append(f"void {fn.name}_generate(qv_gen* g, {fn.name}_in* in);")
        if fn.packed and fn.packed not in hooks_written:
            hooks_written.add(fn.packed)
            out += hook_prototypes(fn)
        out.append("")
    out.append("#endif /* QV_TABLE_H */")
    return "\n".join(out) + "\n"


def role_constant(role):
    return "QV_" + role.upper()


def write_source(functions, header, blocks):
    out = [
        "/* Generated by generate_table.py from functions.txt: do not edit. */",
        '#include "qv_table.h"',
        "",
        "#include <string.h>",
        "",
        "#define QV_LOCAL_ALIGN(n) (((n) + 15) / 16 * 16)",
        "",
    ]
    entries = []
    for fn in functions:
        name = fn.name
        owner = fn.like_name
        in_slots, in_size, out_slots, out_size = blocks[owner]
        in_names = {s.name for s in in_slots}
        out_names = {s.name for s in out_slots}

        # the call
        casts = []
        for i, arg in enumerate(fn.args):
            if arg.role in BY_VALUE:
                casts.append(f"*(const {arg.type}*)a[{i}]")
            else:
                casts.append(f"({parameter_cast(arg, arg.role in WRITTEN)})a[{i}]")
        out.append(f"static int {name}_invoke(qv_fn f, void* const* a)")
        out.append("{")
        out.append(f"    return ((__typeof__(&{name}))f)({', '.join(casts)});")
        out.append("}")
        out.append("")

        # the extents
        out.append(f"static void {name}_extents(void* const* a, size_t* elements)")
        out.append("{")
        used = set()
        for arg in fn.args:
            used.update(re.findall(r"\b[A-Za-z_]\w*\b", arg.reads))
        for i, arg in enumerate(fn.args):
            if arg.role in BY_VALUE and arg.name in used:
                out.append(f"    const {arg.type} {arg.name} = *(const {arg.type}*)a[{i}];")
        if not used:
            out.append("    (void)a;")
        for i, arg in enumerate(fn.args):
            extent = f"(size_t)({arg.reads})" if arg.reads else str(max(arg.capacity, 1))
            out.append(f"    elements[{i}] = {extent};")
        out.append("}")
        out.append("")

        # the arguments
        locals_so_far = []
        out.append(f"static const qv_arg {name}_args[] = {{")
        for i, arg in enumerate(fn.args):
            capacity = max(arg.capacity, 1)
            in_at = f"offsetof({owner}_in, {arg.name})" if arg.name in in_names else "QV_NOWHERE"
            out_at = "QV_NOWHERE"
            if arg.name in out_names and not fn.packed:
                out_at = f"offsetof({owner}_out, {arg.name})"
            flag_at = f"offsetof({owner}_in, with_{arg.name})" if "null" in arg.flags else "QV_NOWHERE"
            local_at = "QV_NOWHERE"
            if is_local(fn, arg):
                local_at = " + ".join(locals_so_far) if locals_so_far else "0"
                locals_so_far.append(f"QV_LOCAL_ALIGN(sizeof({arg.type}) * {capacity})")
            columns = len(double_paths(header, arg.type)) if "columns" in arg.flags else 0
            out.append(f'    {{"{arg.name}", {role_constant(arg.role)}, "{arg.type}", sizeof({arg.type}), {capacity}, '
                       f'{in_at}, {out_at}, {flag_at}, {local_at}, {columns}}},')
        out.append("};")
        out.append("")

        # the generator and the hooks, typed
        out.append(f"static void {name}_generate_block(qv_gen* g, void* in) {{ {name}_generate(g, ({name}_in*)in); }}")
        prepare = pack = "NULL"
        if fn.packed:
            written = local_args(fn)
            if fn.prepare:
                params = ", ".join(f"({arg.type}*)a[{i}]" for i, arg in written)
                out.append(f"static void {name}_prepare_block(const void* in, void* const* a)")
                out.append(f"{{ {fn.packed}_prepare((const {owner}_in*)in, {params}); }}")
                prepare = f"{name}_prepare_block"
            params = ", ".join(f"(const {arg.type}*)a[{i}]" for i, arg in written)
            out.append(f"static void {name}_pack_block(const void* in, void* const* a, void* out)")
            out.append(f"{{ (void)in; {fn.packed}_pack({params}, (struct {fn.packed}_out*)out); }}")
            pack = f"{name}_pack_block"
        out.append("")

        in_layout = " ".join(s.layout for s in in_slots)
        if fn.packed:
            out_layout = f"{fn.packed.upper()}_LAYOUT"
        else:
            out_layout = c_string(" ".join(s.layout for s in out_slots))
        scratch = " + ".join(locals_so_far) if locals_so_far else "0"
        entries.append(
            f'    {{"{name}", {fn.cases}, {len(fn.args)}, {name}_args, {name}_invoke, {name}_extents,\n'
            f"     sizeof({owner}_in), sizeof({owner}_out), {c_string(in_layout)},\n"
            f"     {out_layout},\n"
            f"     {name}_generate_block, {prepare}, {pack}, {scratch}}},"
        )

    out.append("const qv_function qv_functions[] = {")
    out += entries
    out.append("};")
    out.append("const size_t qv_function_count = sizeof qv_functions / sizeof qv_functions[0];")
    return "\n".join(out) + "\n"


def main(argv):
    if len(argv) != 4:
        print(__doc__, file=sys.stderr)
        return 2
    table_path, header_path, out_dir = argv[1:]
    try:
        header = Header(header_path)
        functions = read_table(table_path)
        by_name = {fn.name: fn for fn in functions}
        blocks = {}
        for fn in functions:
            if fn.name in [f.name for f in functions if f is not fn]:
                raise TableError(f"{table_path}:{fn.line}: {fn.name} twice")
            fn.like_name = fn.name
            if fn.like:
                model = by_name.get(fn.like)
                if model is None or model.like:
                    raise TableError(f"{table_path}:{fn.line}: like={fn.like} names no function described in full")
                if header.prototypes.get(fn.name) != header.prototypes.get(fn.like):
                    raise TableError(f"{table_path}:{fn.line}: {fn.name} and {fn.like} differ in their prototypes")
                if fn.args or fn.extras or fn.in_order or fn.out_order:
                    raise TableError(f"{table_path}:{fn.line}: a function like another lists nothing of its own")
                fn.args, fn.extras = model.args, model.extras
                fn.packed, fn.prepare = model.packed, model.prepare
                fn.like_name = model.name
            check(fn, header, table_path)
            if not fn.like:
                in_slots, in_size = input_block(fn, header)
                out_slots, out_size = output_block(fn, header)
                blocks[fn.name] = (in_slots, in_size, out_slots, out_size)
        missing = sorted(set(header.prototypes) - set(by_name))
        if missing:
            raise TableError(f"{table_path}: no line for {', '.join(missing)}")
        header_text = write_header(functions, header, blocks)
        source_text = write_source(functions, header, blocks)
    except TableError as error:
        print(f"generate_table.py: {error}", file=sys.stderr)
        return 1
    out = Path(out_dir)
    out.mkdir(parents=True, exist_ok=True)
    for name, text in (("qv_table.h", header_text), ("qv_table.c", source_text)):
        path = out / name
        if not path.exists() or path.read_text() != text:
            path.write_text(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))

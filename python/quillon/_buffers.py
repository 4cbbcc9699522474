"""Buffers of doubles handed to the C batch functions without a copy.

Accepted: anything with the buffer protocol that holds native doubles
(array('d'), a numpy float64 array, a memoryview of format 'd'), bytes-like
objects whose length is a multiple of 8 (read as native doubles), and, with
one conversion, lists and tuples of numbers, array('f') and numpy arrays of
other dtypes. Results come back as array('d'), or as numpy arrays when any
input was one.
"""

from array import array

from ._ffi import ffi

try:
    import numpy
except ImportError:  # numpy is optional
    numpy = None

_BYTE_FORMATS = ("B", "b", "c")


class DoubleBuffer:
    """A C view (double *) of a Python buffer, kept alive with it."""

    __slots__ = ("source", "pointer", "count")

    def __init__(self, source, pointer, count):
        self.source = source
        self.pointer = pointer
        self.count = count


def _is_numpy(value):
    return numpy is not None and isinstance(value, numpy.ndarray)


def doubles(value, name="values"):
    """A DoubleBuffer over value, converting only what is not already a
    contiguous buffer of doubles."""
    if _is_numpy(value):
        value = numpy.ascontiguousarray(value, dtype=numpy.float64)
    try:
        view = memoryview(value)
    except TypeError:
        view = None
    if view is not None:
        if view.format in _BYTE_FORMATS and view.contiguous:
            if view.nbytes % 8:
                raise ValueError("%s: %d bytes are not a whole number of doubles"
                                 % (name, view.nbytes))
            source = view
        elif view.format == "d" and view.contiguous:
            source = view
        elif view.format in ("f", "i", "l", "h", "q", "I", "L", "H", "Q") and view.ndim == 1:
            source = array("d", view.tolist())
        else:
            raise TypeError("%s: a buffer of format %r is not a buffer of numbers"
                            % (name, view.format))
        count = view.nbytes // 8 if source is view else len(source)
    else:
        try:
            source = array("d", value)
        except TypeError:
            raise TypeError("%s: expected a buffer or sequence of numbers, not %s"
                            % (name, type(value).__name__)) from None
        count = len(source)
    if count == 0:
        return DoubleBuffer(source, ffi.NULL, 0)
    pointer = ffi.from_buffer("double[]", source)
    # C reads doubles at 8-byte boundaries: a view into the middle of a
    # bytes object may not lie on one, and is copied.
    if int(ffi.cast("uintptr_t", pointer)) % ffi.alignof("double"):
        source = array("d", bytes(source))
        pointer = ffi.from_buffer("double[]", source)
    return DoubleBuffer(source, pointer, count)


def same_length(*buffers):
    counts = {b.count for b in buffers}
    if len(counts) > 1:
        raise ValueError("the arrays differ in length: %s" % ", ".join(str(b.count) for b in buffers))
    return buffers[0].count


def results(count, like, out=None, name="out"):
    """count output doubles with a C pointer to them: the caller's buffer
    out when given (writable, contiguous, native doubles, of that length),
    else new numpy arrays when any of like is one, else array('d')."""
    if out is not None:
        try:
            view = memoryview(out)
        except TypeError:
            raise TypeError("%s: expected a writable buffer of doubles, not %s"
                            % (name, type(out).__name__)) from None
        if view.readonly or not view.contiguous or view.format not in ("d",) + _BYTE_FORMATS:
            raise TypeError("%s: expected a writable contiguous buffer of doubles" % name)
        if view.nbytes != 8 * count:
            raise ValueError("%s: room for %d doubles, %d needed" % (name, view.nbytes // 8, count))
        pointer = ffi.from_buffer("double[]", out, require_writable=True) if count else ffi.NULL
        if count and int(ffi.cast("uintptr_t", pointer)) % ffi.alignof("double"):
            raise ValueError("%s: the buffer does not start on a double's boundary" % name)
        return out, pointer
    if any(_is_numpy(value) for value in like):
        out = numpy.empty(count, dtype=numpy.float64)
    else:
        out = array("d", [0.0]) * count
    pointer = ffi.from_buffer("double[]", out, require_writable=True) if count else ffi.NULL
    return out, pointer

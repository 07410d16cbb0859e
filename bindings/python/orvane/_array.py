"""Typed arrays with bounds, and sequences as arrays."""

import ctypes
import datetime
import decimal
from collections.abc import Sequence
from ctypes import c_double, c_float, c_int16, c_int32, c_int64, c_uint8, c_uint16
from ctypes import c_void_p

from . import _abi, _variant
from ._runtime import Error, memory, new_text
from ._variant import CELL_READERS, Nothing, hooks

_TYPES = {
    "Byte": _abi.VT_UI1,
    "Integer": _abi.VT_I2,
    "Long": _abi.VT_I4,
    "Single": _abi.VT_R4,
    "Double": _abi.VT_R8,
    "Currency": _abi.VT_CY,
    "Date": _abi.VT_DATE,
    "String": _abi.VT_BSTR,
    "Object": _abi.VT_DISPATCH,
    "Boolean": _abi.VT_BOOL,
    "Variant": _abi.VT_VARIANT,
}
_NAMES = {vt: name for name, vt in _TYPES.items()}
_NAMES[_abi.VT_ERROR] = "Error"
_NAMES[_abi.VT_UNKNOWN] = "Unknown"

# Elements that lie in memory as ctypes has them, with the ranges of the whole ones.
_PLAIN = {
    _abi.VT_UI1: c_uint8,
    _abi.VT_I2: c_int16,
    _abi.VT_I4: c_int32,
    _abi.VT_R4: c_float,
    _abi.VT_R8: c_double,
}
_RANGES = {
    _abi.VT_UI1: (0, 255),
    _abi.VT_I2: (-32768, 32767),
    _abi.VT_I4: (-(1 << 31), (1 << 31) - 1),
}


def _put_plain(cell, element, value):
    if element in _RANGES:
        low, high = _RANGES[element]
        if not isinstance(value, int):
            raise TypeError("an element of the type %s is an int, not %s" %
                            (_NAMES[element], type(value).__name__))
        if not low <= value <= high:
            raise OverflowError("%d is beyond what a %s holds" % (value, _NAMES[element]))
    _PLAIN[element].from_address(cell).value = value


def _put_text(cell, value):
    if not isinstance(value, str):
        raise TypeError("an element of the type String is a str, not " + type(value).__name__)
    fresh = new_text(value)
    former = c_void_p.from_address(cell).value
    c_void_p.from_address(cell).value = fresh
    memory.free_string(former)


def _put_object(cell, value):
    fresh = 0
    if value is not Nothing and value is not None:
        fresh = hooks.interface_of(value)
        if not fresh:
            raise TypeError("an element of the type Object is no " + type(value).__name__)
    former = c_void_p.from_address(cell).value
    c_void_p.from_address(cell).value = fresh
    if former:
        _abi.RELEASE(former)


def _put_variant(cell, value):
    made = _abi.VARIANT()
    _variant.put_variant(ctypes.addressof(made), value)
    _variant.clear_variant(cell)
    ctypes.memmove(cell, ctypes.addressof(made), _abi.VARIANT_SIZE)


def put_cell(cell, element, value):
    """Stores a value into an element's place, freeing what was there."""
    if element in _PLAIN:
        _put_plain(cell, element, value)
    elif element == _abi.VT_BSTR:
        _put_text(cell, value)
    elif element == _abi.VT_VARIANT:
        _put_variant(cell, value)
    elif element == _abi.VT_BOOL:
        c_int16.from_address(cell).value = -1 if value else 0
    elif element == _abi.VT_DISPATCH:
        _put_object(cell, value)
    elif element == _abi.VT_CY:
        c_int64.from_address(cell).value = _variant.to_currency(decimal.Decimal(value))
    elif element == _abi.VT_DATE:
        if not isinstance(value, datetime.date):
            raise TypeError("an element of the type Date is a datetime, not " +
                            type(value).__name__)
        c_double.from_address(cell).value = _variant.to_days(value)
    elif element == _abi.VT_ERROR:
        c_int32.from_address(cell).value = value
    else:
        raise TypeError("elements of this type can't be set")


def _bounds(array):
    """(lower, count) of each dimension, first dimension first."""
    count = c_uint16.from_address(array).value
    first = array + _abi.BOUNDS_OFFSET
    stored = [_abi.SAFEARRAYBOUND.from_address(first + 8 * i) for i in range(count)]
    return [(each.lower, each.count) for each in reversed(stored)]


def _total(bounds):
    total = 1
    for _, count in bounds:
        total *= count
    return total


def _new_array(element, bounds):
    given = (_abi.SAFEARRAYBOUND * len(bounds))()
    for place, (lower, count) in zip(given, bounds):
        place.lower = lower
        place.count = count
    made = memory.create_array(element, len(bounds), ctypes.addressof(given))
    if not made:
        raise MemoryError("no memory for an array of %d elements" % _total(bounds))
    return made


def _elements(array, element, total):
    header = _abi.SAFEARRAY.from_address(array)
    plain = _PLAIN.get(element)
    if plain is not None:
        return (plain * total).from_address(header.data)[:] if total else []
    reader = CELL_READERS[element]
    size = header.element_size
    return [reader(header.data + size * i) for i in range(total)]


def _fill(array, element, values):
    header = _abi.SAFEARRAY.from_address(array)
    if isinstance(values, (bytes, bytearray)) and element == _abi.VT_UI1:
        if values:
            ctypes.memmove(header.data, bytes(values), len(values))
        return
    data, size = header.data, header.element_size
    for i, value in enumerate(values):
        put_cell(data + size * i, element, value)


class Array(Sequence):
    """An array of one type with bounds of its own, as `orvane.array` makes it.

    It is the library's own kind of array: handed over it goes by reference, so that what the
    library changes is seen here at once. Elements are counted from `lower`, as the library does:
    `a[a.lower]` is the first. Iteration, `len()` and `list(a)` run over all elements.
    """

    __slots__ = ("_place", "_element")

    def __init__(self, element: int, pointer: int) -> None:
        self._place = c_void_p(pointer)
        self._element = element

    def __del__(self):
        pointer = self._place.value
        if pointer:
            memory.destroy_array(pointer)

    @property
    def type(self) -> str:
        """The elements' type: "Long", "String", ..."""
        return _NAMES.get(self._element, str(self._element))

    @property
    def bounds(self) -> list:
        """(lower, upper) of each dimension; empty while the array has no memory."""
        return [(lower, lower + count - 1) for lower, count in self._all_bounds()]

    @property
    def lower(self) -> int:
        """The least index. Raises 9 while the array has no memory."""
        return self._first_bounds()[0]

    @property
    def upper(self) -> int:
        """The greatest index. Raises 9 while the array has no memory."""
        return self._first_bounds()[1]

    def _first_bounds(self):
        bounds = self.bounds
        if not bounds:
            raise Error(9, "The array has no elements yet", "orvane")
        return bounds[0]

    def _all_bounds(self):
        pointer = self._place.value
        return _bounds(pointer) if pointer else []

    def _cell(self, index):
        indices = index if isinstance(index, tuple) else (index,)
        bounds = self._all_bounds()
        if len(indices) != len(bounds):
            raise IndexError("an array of %d dimensions has no element %r" % (len(bounds), index))
        offset = 0
        step = 1
        for each, (lower, count) in zip(indices, bounds):
            if isinstance(each, slice):
                raise TypeError("arrays with bounds have no slices: use list(array)[...]")
            if not lower <= each < lower + count:
                raise IndexError("%r is outside %d to %d" % (index, lower, lower + count - 1))
            offset += (each - lower) * step
            step *= count
        header = _abi.SAFEARRAY.from_address(self._place.value)
        return header.data + offset * header.element_size

    def __getitem__(self, index):
        return CELL_READERS[self._element](self._cell(index))

    def __setitem__(self, index, value):
        put_cell(self._cell(index), self._element, value)

    def __len__(self) -> int:
        bounds = self._all_bounds()
        return _total(bounds) if bounds else 0

    def tolist(self) -> list:
        """All elements, the first dimension running fastest."""
        pointer = self._place.value
        return _elements(pointer, self._element, len(self)) if pointer else []

    def __iter__(self):
        return iter(self.tolist())

    def __contains__(self, value):
        return value in self.tolist()

    def __reversed__(self):
        return reversed(self.tolist())

    def index(self, value, start=None, stop=None):
        """The index of the first element that equals `value`, counted from `lower`."""
        lower = self.lower
        first = lower if start is None else max(start, lower)
        end = self.upper + 1 if stop is None else min(stop, self.upper + 1)
        for at in range(first, end):
            if self[at] == value:
                return at
        raise ValueError("%r is not in the array" % (value,))

    def __eq__(self, other):
        if isinstance(other, Array):
            return self._element == other._element and self.bounds == other.bounds and \
                self.tolist() == other.tolist()
        if isinstance(other, (list, tuple)):
            return self.tolist() == list(other)
        if isinstance(other, (bytes, bytearray)):
            return self._element == _abi.VT_UI1 and bytes(self) == bytes(other)
        return NotImplemented

    __hash__ = None

    def __bytes__(self):
        return bytes(self.tolist())

    def __repr__(self):
        bounds = self.bounds
        lower = ", lower=%d" % bounds[0][0] if len(bounds) == 1 and bounds[0][0] else ""
        return "orvane.array(%r, %r%s)" % (self.type, self.tolist(), lower)


def array(type: str, values=(), *, lower: int = 0) -> Array:
    """An array of one type: `orvane.array("Long", [3, 1, 2], lower=-5)`.

    `type` is one of Byte, Integer, Long, Single, Double, Currency, Date, String, Object, Boolean,
    Variant. `values` are the elements, `lower` is the index of the first; None for `values` makes
    an array without memory, as a variable that was never dimensioned.
    """
    element = _TYPES.get(type)
    if element is None:
        raise ValueError("no array has the type %r: it is one of %s" % (type, ", ".join(_TYPES)))
    if values is None:
        return Array(element, 0)
    values = values if isinstance(values, (bytes, bytearray)) else list(values)
    made = Array(element, _new_array(element, [(lower, len(values))]))
    _fill(made._place.value, element, values)
    return made


def to_array(value, element=None):
    """A new SAFEARRAY of the caller's with a sequence's elements, and its element type."""
    if isinstance(value, Array):
        element = value._element
        if not value._place.value:
            return 0, element
        made = _new_array(element, value._all_bounds())
        values = value.tolist()
    else:
        if isinstance(value, (bytes, bytearray)):
            element = _abi.VT_UI1
        element = element or _abi.VT_VARIANT
        made = _new_array(element, [(0, len(value))])
        values = value
    try:
        _fill(made, element, values)
    except BaseException:
        memory.destroy_array(made)
        raise
    return made, element


def _copy(pointer, element, bounds):
    made = Array(element, _new_array(element, bounds))
    target = _abi.SAFEARRAY.from_address(made._place.value)
    source = _abi.SAFEARRAY.from_address(pointer)
    total = _total(bounds)
    if element in _PLAIN or element in (_abi.VT_CY, _abi.VT_DATE, _abi.VT_BOOL, _abi.VT_ERROR):
        if total:
            ctypes.memmove(target.data, source.data, total * source.element_size)
    else:
        _fill(made._place.value, element, _elements(pointer, element, total))
    return made


def from_array(pointer, element):
    """A copy of an array that stays the library's.

    Bytes counted from 0 are `bytes`, Variants counted from 0 a list; any other is an `Array`.
    """
    if not pointer:
        return Array(element, 0)
    bounds = _bounds(pointer)
    if len(bounds) == 1 and bounds[0][0] == 0:
        total = bounds[0][1]
        if element == _abi.VT_UI1:
            data = _abi.SAFEARRAY.from_address(pointer).data
            return ctypes.string_at(data, total) if total else b""
        if element == _abi.VT_VARIANT:
            return _elements(pointer, element, total)
    return _copy(pointer, element, bounds)


def pass_by_reference(address, given):
    """Makes the VARIANT at `address` refer to an `Array`'s own variable."""
    c_uint16.from_address(address).value = _abi.VT_BYREF | _abi.VT_ARRAY | given._element
    c_void_p.from_address(address + 8).value = ctypes.addressof(given._place)


hooks.array_from = from_array
hooks.array_to = to_array
_variant.register_writer(Array, _variant.put_array)

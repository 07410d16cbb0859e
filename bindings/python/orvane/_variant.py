"""Python values as VARIANTs and back."""

import datetime
import decimal
import operator
import struct
from ctypes import c_double, c_float, c_int8, c_int16, c_int32, c_int64, c_uint8, c_uint16
from ctypes import c_uint32, c_uint64, c_void_p, memset

from . import _abi
from ._runtime import Error, memory, new_text, query, take_text, text_at

_LONG_MIN = -(1 << 31)
_LONG_END = 1 << 31
_FIRST_DAY = datetime.datetime(1899, 12, 30)
_DAY = datetime.timedelta(days=1)
_CURRENCY_LIMIT = 1 << 63

PACK_INT = struct.Struct("<HHHHq").pack_into
PACK_FLOAT = struct.Struct("<HHHHd").pack_into


class _Special:
    """A value that Python has no equal of; it counts as false."""

    __slots__ = ("_name",)

    def __init__(self, name):
        self._name = name

    def __repr__(self):
        return "orvane." + self._name

    def __bool__(self):
        return False

    def __reduce__(self):
        return self._name


MISSING = _Special("MISSING")
Null = _Special("Null")
Empty = _Special("Empty")
Nothing = _Special("Nothing")


class ErrorValue(int):
    """A value of the type Error: what a list may hold in place of a result."""

    def __repr__(self):
        return "orvane.ErrorValue(%d)" % int(self)


class Ref:
    """An argument by reference: the call reads `value` and leaves there what came back."""

    __slots__ = ("value",)

    def __init__(self, value=Empty):
        self.value = value

    def __repr__(self):
        return "orvane.Ref(%r)" % (self.value,)


def to_days(moment):
    """A date as the binary interface counts: days since 30 December 1899, the time of day in the
    fraction, which counts forward also before that day."""
    if not isinstance(moment, datetime.datetime):
        moment = datetime.datetime(moment.year, moment.month, moment.day)
    if moment.tzinfo is not None:
        raise TypeError("a datetime with a time zone can't be handed over: make it naive first")
    since = moment - _FIRST_DAY
    fraction = (since - datetime.timedelta(days=since.days)) / _DAY
    return since.days + fraction if since.days >= 0 else since.days - fraction


def from_days(days):
    """The date of a count of days."""
    whole = int(days)
    fraction = abs(days - whole)
    return _FIRST_DAY + datetime.timedelta(days=whole) + datetime.timedelta(
        microseconds=round(fraction * 86400000000))


def to_currency(amount):
    """A Decimal in units of a ten-thousandth, halves to the even one."""
    if not amount.is_finite():
        raise OverflowError("%s is no Currency" % amount)
    with decimal.localcontext() as context:
        context.prec = 60
        scaled = int(amount.scaleb(4).to_integral_value(decimal.ROUND_HALF_EVEN))
    if not -_CURRENCY_LIMIT <= scaled < _CURRENCY_LIMIT:
        raise OverflowError("%s is beyond what a Currency holds" % amount)
    return scaled


def from_currency(scaled):
    """The Decimal of a count of ten-thousandths."""
    return decimal.Decimal(scaled).scaleb(-4)


class _Hooks:
    """What lies above values: objects and arrays, set by their own modules."""

    wrap_object = None  # pointer (with its own reference) -> Python object
    interface_of = None  # Python object -> pointer with a reference of its own, or 0
    array_from = None  # SAFEARRAY pointer, element type -> Python value (a copy)
    unwrap_host = None  # pointer -> (Python object,) for one of the host's own, else None
    is_object = None  # whether a Python value is handed over as an object
    array_to = None  # list, tuple, bytes, Array -> SAFEARRAY pointer of the caller's, type


hooks = _Hooks()


def _put_empty(address, value):
    return None


def _put_null(address, value):
    c_uint16.from_address(address).value = _abi.VT_NULL


def _put_nothing(address, value):
    c_uint16.from_address(address).value = _abi.VT_DISPATCH


def _put_missing(address, value):
    c_uint16.from_address(address).value = _abi.VT_ERROR
    c_int32.from_address(address + 8).value = _abi.DISP_E_PARAMNOTFOUND


def _put_error(address, value):
    c_uint16.from_address(address).value = _abi.VT_ERROR
    c_int32.from_address(address + 8).value = value


def _put_bool(address, value):
    c_uint16.from_address(address).value = _abi.VT_BOOL
    c_int16.from_address(address + 8).value = -1 if value else 0


def _put_int(address, value):
    if _LONG_MIN <= value < _LONG_END:
        c_uint16.from_address(address).value = _abi.VT_I4
        c_int32.from_address(address + 8).value = value
    else:
        _put_float(address, float(value))


def _put_float(address, value):
    c_uint16.from_address(address).value = _abi.VT_R8
    c_double.from_address(address + 8).value = value


def _put_text(address, value):
    text = new_text(value)
    c_uint16.from_address(address).value = _abi.VT_BSTR
    c_void_p.from_address(address + 8).value = text


def _put_date(address, value):
    days = to_days(value)
    c_uint16.from_address(address).value = _abi.VT_DATE
    c_double.from_address(address + 8).value = days


def _put_currency(address, value):
    scaled = to_currency(value)
    c_uint16.from_address(address).value = _abi.VT_CY
    c_int64.from_address(address + 8).value = scaled


def put_array(address, value, element=None):
    """Writes a copy of a sequence as an array; `element` is the type asked for, if one is."""
    array, element = hooks.array_to(value, element)
    c_uint16.from_address(address).value = _abi.VT_ARRAY | element
    c_void_p.from_address(address + 8).value = array


def put_interface(address, pointer):
    """Writes an interface pointer, whose reference goes with it."""
    c_uint16.from_address(address).value = _abi.VT_DISPATCH
    c_void_p.from_address(address + 8).value = pointer


_WRITERS = {
    type(None): _put_empty,
    bool: _put_bool,
    int: _put_int,
    float: _put_float,
    str: _put_text,
    ErrorValue: _put_error,
    datetime.datetime: _put_date,
    datetime.date: _put_date,
    decimal.Decimal: _put_currency,
    list: put_array,
    tuple: put_array,
    bytes: put_array,
    bytearray: put_array,
}
_SPECIALS = {id(MISSING): _put_missing, id(Null): _put_null, id(Empty): _put_empty,
             id(Nothing): _put_nothing}


def writer_of(value):
    """The writer for a value's type or one of its bases; None for an object of the host."""
    known = _WRITERS.get(type(value))
    if known is not None:
        return known
    if isinstance(value, _Special):
        return _SPECIALS[id(value)]
    for kind in type(value).__mro__[1:-1]:
        if kind in _WRITERS:
            return _WRITERS[kind]
    return None


def register_writer(kind, writer):
    """Values of this type are written by `writer(address, value)`."""
    _WRITERS[kind] = writer


def put_variant(address, value):
    """Writes a value into the cleared VARIANT at `address`, which then owns what it holds.

    Raises TypeError for a value that has no form in the binary interface, OverflowError for one
    that is too large.
    """
    writer = writer_of(value)
    if writer is not None:
        writer(address, value)
        return
    if isinstance(value, type):
        pass
    elif hasattr(value, "__index__"):
        _put_int(address, operator.index(value))
        return
    elif hasattr(value, "__float__"):
        _put_float(address, float(value))
        return
    pointer = hooks.interface_of(value)
    if not pointer:
        raise TypeError("%s can't be handed to the library" % _described(value))
    put_interface(address, pointer)


def _described(value):
    if isinstance(value, type):
        return "the class " + value.__name__
    return "a value of type " + type(value).__name__


def _whole(kind):
    return lambda cell: kind.from_address(cell).value


def _get_object(cell):
    pointer = c_void_p.from_address(cell).value
    if not pointer:
        return Nothing
    _abi.ADD_REF(pointer)
    return hooks.wrap_object(pointer)


def _get_unknown(cell):
    pointer = c_void_p.from_address(cell).value
    found = query(pointer, _abi.IID_IDispatch) if pointer else 0
    if pointer and not found:
        raise Error(13, "The library gave an object that has no members", "orvane")
    return hooks.wrap_object(found) if found else Nothing


def _get_error(cell):
    code = c_int32.from_address(cell).value
    return MISSING if code == _abi.DISP_E_PARAMNOTFOUND else ErrorValue(code)


# What lies in a cell, as a Python value with nothing left to free.
CELL_READERS = {
    _abi.VT_EMPTY: lambda cell: Empty,
    _abi.VT_NULL: lambda cell: Null,
    _abi.VT_I1: _whole(c_int8),
    _abi.VT_UI1: _whole(c_uint8),
    _abi.VT_I2: _whole(c_int16),
    _abi.VT_UI2: _whole(c_uint16),
    _abi.VT_I4: _whole(c_int32),
    _abi.VT_INT: _whole(c_int32),
    _abi.VT_UI4: _whole(c_uint32),
    _abi.VT_UINT: _whole(c_uint32),
    _abi.VT_I8: _whole(c_int64),
    _abi.VT_UI8: _whole(c_uint64),
    _abi.VT_R4: _whole(c_float),
    _abi.VT_R8: _whole(c_double),
    _abi.VT_CY: lambda cell: from_currency(c_int64.from_address(cell).value),
    _abi.VT_DATE: lambda cell: from_days(c_double.from_address(cell).value),
    _abi.VT_BSTR: lambda cell: text_at(c_void_p.from_address(cell).value),
    _abi.VT_BOOL: lambda cell: c_int16.from_address(cell).value != 0,
    _abi.VT_ERROR: _get_error,
    _abi.VT_DISPATCH: _get_object,
    _abi.VT_UNKNOWN: _get_unknown,
    _abi.VT_VARIANT: lambda cell: get_variant(cell),
}


def get_variant(address):
    """The value of a VARIANT, copied; the VARIANT keeps what it holds."""
    vt = c_uint16.from_address(address).value
    cell = address + 8
    if vt & _abi.VT_BYREF:
        cell = c_void_p.from_address(cell).value
    element = vt & _abi.VT_TYPEMASK
    if vt & _abi.VT_ARRAY:
        return hooks.array_from(c_void_p.from_address(cell).value, element)
    reader = CELL_READERS.get(element)
    if reader is None:
        raise Error(13, "The library gave a value of the unknown type %d" % vt, "orvane")
    return reader(cell)


def clear_variant(address):
    """Frees what a VARIANT holds and makes it empty."""
    memory.clear_variant(address)
    memset(address, 0, _abi.VARIANT_SIZE)


def _take_text_result(result, value):
    text = take_text(value) if value else ""
    PACK_INT(result, 0, 0, 0, 0, 0, 0)
    return text


def _take_long_result(result, value):
    PACK_INT(result, 0, 0, 0, 0, 0, 0)
    value &= 0xFFFFFFFF
    return value - 0x100000000 if value & 0x80000000 else value


def _take_bool_result(result, value):
    PACK_INT(result, 0, 0, 0, 0, 0, 0)
    return value & 0xFFFF != 0


# Results that come often, from the result's buffer and its 64 bits of value.
FAST_RESULTS = {
    _abi.VT_BSTR: _take_text_result,
    _abi.VT_I4: _take_long_result,
    _abi.VT_BOOL: _take_bool_result,
}

"""Late-bound calls: arguments, results and failures."""

import ctypes
import difflib
import struct

from . import _abi, _variant
from ._array import Array, pass_by_reference
from ._runtime import Error, check_thread, current, error_of, memory, new_text, number_of
from ._runtime import query, take_text
from ._variant import FAST_RESULTS, MISSING, PACK_FLOAT, PACK_INT, Empty, Nothing, Ref

_NO_GUID = ctypes.addressof(_abi.IID_NULL)
_PUT_ID = ctypes.c_int32(_abi.DISPID_PROPERTYPUT)
_SIZE = _abi.VARIANT_SIZE
# Short texts lie in the frame itself, in the form of the library's own strings: a text that goes
# by value is looked at during the call and never kept.
_TEXT_ROOM = 512
_LONGEST_TEXT = _TEXT_ROOM // 2 - 3
_TEXT_SIZE = struct.Struct("<I").pack


class _Frame:
    """The memory of one call: arguments, result and error. Frames are used again and again."""

    __slots__ = ("arguments", "base", "last", "parameters", "parameters_at", "result",
                 "result_at", "exception", "exception_at", "argument_error", "argument_error_at",
                 "texts", "finishers", "short_texts",
                 "short_texts_at")

    def __init__(self, count, is_put):
        self.arguments = (_abi.VARIANT * max(count, 1))()
        self.base = ctypes.addressof(self.arguments)
        self.last = _SIZE * (count - 1)
        self.parameters = _abi.DISPPARAMS(self.base if count else None, None, count, 0)
        if is_put:
            self.parameters.named = ctypes.addressof(_PUT_ID)
            self.parameters.named_count = 1
        self.parameters_at = ctypes.addressof(self.parameters)
        self.result = _abi.VARIANT()
        self.result_at = ctypes.addressof(self.result)
        self.exception = _abi.EXCEPINFO()
        self.exception_at = ctypes.addressof(self.exception)
        self.argument_error = ctypes.c_uint32()
        self.argument_error_at = ctypes.addressof(self.argument_error)
        self.texts = []
        self.finishers = []
        room = (ctypes.c_char * (_TEXT_ROOM * max(count, 1)))()
        self.short_texts = memoryview(room).cast("B")
        self.short_texts_at = ctypes.addressof(room)

    def put_text(self, at, text):
        """Makes a text the argument whose VARIANT lies at the offset `at`."""
        units = text.encode("utf-16-le", "surrogatepass")
        size = len(units)
        if size > 2 * _LONGEST_TEXT:
            pointer = new_text(text)
            self.texts.append(pointer)
        else:
            start = at // _SIZE * _TEXT_ROOM
            self.short_texts[start:start + size + 6] = _TEXT_SIZE(size) + units + b"\0\0"
            pointer = self.short_texts_at + start + 4
        PACK_INT(self.arguments, at, _abi.VT_BSTR, 0, 0, 0, pointer)

    def finish(self):
        """Frees the arguments and brings back what went by reference, all of it whatever fails."""
        failure = None
        while self.texts:
            memory.free_string(self.texts.pop())
        finishers, self.finishers = self.finishers, []
        for each in finishers:
            try:
                each()
            except Exception as raised:
                failure = failure or raised
        if failure is not None:
            raise failure


# Free frames by the count of arguments, and apart from these those of property puts. A frame is
# out of the pool during its call, so that calls may nest and threads don't meet in one.
_pools = {}


def _new_pool(key):
    return _pools.setdefault(key, [])


def invoke(target, member, flags, arguments, is_put=False):
    """Calls a member of `target` with positional arguments and gives its result."""
    apartment = target._apartment
    if apartment is not current.apartment or apartment.ended or apartment.pending:
        check_thread(apartment)
    count = len(arguments)
    key = ~count if is_put else count
    pool = _pools.get(key)
    if pool is None:
        pool = _new_pool(key)
    try:
        frame = pool.pop()
    except IndexError:
        frame = _Frame(count, is_put)
    try:
        at = frame.last
        memory_of = frame.arguments
        for value in arguments:
            kind = type(value)
            if kind is int and -0x80000000 <= value <= 0x7FFFFFFF:
                PACK_INT(memory_of, at, 3, 0, 0, 0, value)
            elif kind is str:
                frame.put_text(at, value)
            elif kind is float:
                PACK_FLOAT(memory_of, at, 5, 0, 0, 0, value)
            else:
                PACK_INT(memory_of, at, 0, 0, 0, 0, 0)
                _put_argument(frame, at, value, member, count - 1 - at // _SIZE)
            at -= _SIZE
        status = target._invoke(target._pointer, member.id, _NO_GUID, 0x0400, flags,
                                frame.parameters_at, frame.result_at, frame.exception_at,
                                frame.argument_error_at)
        if apartment.failure is not None:
            _hand_on(apartment, status, frame, member, count)
        if status < 0:
            raise _failure(status, frame, member, count)
        return _take_result(frame, member)
    finally:
        try:
            if frame.texts or frame.finishers:
                frame.finish()
        finally:
            pool.append(frame)


def _take_result(frame, member):
    result = frame.result
    vt = result.vt
    if vt == 0:
        return None if member.result.vt == _abi.VT_VOID else Empty
    fast = FAST_RESULTS.get(vt)
    if fast is not None:
        value = fast(result, result.llVal)
    else:
        try:
            if member.id == _abi.DISPID_NEWENUM:
                return query(result.pointer, _abi.IID_IEnumVARIANT) if result.pointer else 0
            return _variant.get_variant(frame.result_at)
        finally:
            _variant.clear_variant(frame.result_at)
    if member.enumeration is not None:
        try:
            return member.enumeration(value)
        except ValueError:
            return value
    return value


def _put_argument(frame, at, value, member, position):
    address = frame.base + at
    parameters = member.parameters
    parameter = None
    if parameters:
        parameter = parameters[min(position, len(parameters) - 1)]
        if member.is_variable and position >= len(parameters) - 1:
            parameter = None
    try:
        if type(value) is Ref:
            _put_reference(frame, address, value, parameter)
        elif type(value) is Array:
            pass_by_reference(address, value)
        else:
            _put_declared(address, value, parameter)
            frame.finishers.append(lambda: _variant.clear_variant(address))
    except (TypeError, OverflowError) as raised:
        _variant.clear_variant(address)
        name = parameter.name if parameter is not None else "number %d" % (position + 1)
        raise type(raised)("%s.%s, argument %s: %s" %
                           (member.owner, member.name, name, raised)) from None


def _put_declared(address, value, parameter):
    """Writes a value in the form that suits the parameter's declared type."""
    declared = parameter.type.vt if parameter is not None else _abi.VT_VARIANT
    if value is None and declared in (_abi.VT_DISPATCH, _abi.VT_UNKNOWN):
        value = Nothing
    element = declared & _abi.VT_TYPEMASK
    if isinstance(value, (list, tuple)) and declared & _abi.VT_ARRAY:
        try:
            _variant.put_array(address, value, element)
            return
        except (TypeError, OverflowError):
            pass  # the library converts an array of Variant in its own way
    _variant.put_variant(address, value)


def _put_reference(frame, address, reference, parameter):
    given = reference.value
    if type(given) is Ref:
        raise TypeError("a reference to a reference")
    if type(given) is Array:
        pass_by_reference(address, given)
        return
    place = _abi.VARIANT()
    place_at = ctypes.addressof(place)

    def finish():
        try:
            back = _variant.get_variant(place_at)
            if isinstance(given, list) and isinstance(back, Array):
                back = back.tolist()
            reference.value = back
        finally:
            # The place lives as long as this function.
            _variant.clear_variant(ctypes.addressof(place))

    _put_declared(place_at, given, parameter)
    frame.finishers.append(finish)
    _variant.PACK_INT(frame.arguments, address - frame.base, _abi.VT_BYREF | _abi.VT_VARIANT, 0, 0,
                      0, place_at)


def _failure(status, frame, member, count):
    """The error of a failed call; frees what came with it."""
    what = "%s.%s" % (member.owner, member.name)
    if status != _abi.DISP_E_EXCEPTION:
        if status in (_abi.DISP_E_TYPEMISMATCH, _abi.DISP_E_OVERFLOW, _abi.DISP_E_PARAMNOTOPTIONAL):
            position = count - 1 - frame.argument_error.value
            if 0 <= position < len(member.parameters):
                what += ", argument " + member.parameters[position].name
        return error_of(status, what)
    told = frame.exception
    number = number_of(told.scode or told.code or status)
    description = take_text(told.description)
    source = take_text(told.source)
    memory.free_string(told.help_file)
    ctypes.memset(frame.exception_at, 0, ctypes.sizeof(told))
    return Error(number, description, source)


def _hand_on(apartment, status, frame, member, count):
    """A host object raised during the call: it is the cause of the call's own failure, and what
    ends programs goes through whatever the library made of it."""
    cause, apartment.failure = apartment.failure, None
    failure = _failure(status, frame, member, count) if status < 0 else None
    if not isinstance(cause, Exception):
        if failure is None:
            _variant.clear_variant(frame.result_at)
        raise cause
    if failure is not None:
        raise failure from cause


def arrange(member, arguments, named):
    """Positional arguments out of positional and named ones; raises TypeError as Python does."""
    title = "%s.%s()" % (member.owner, member.name)
    parameters = member.parameters
    if len(arguments) > member.most:
        raise TypeError("%s takes at most %d argument%s (%d given)" % (
            title, member.most, "" if member.most == 1 else "s", len(arguments)))
    given = list(arguments)
    for name, value in named.items():
        at = _position(member, name, title)
        while len(given) <= at:
            given.append(_LEFT_OUT)
        if given[at] is not _LEFT_OUT:
            raise TypeError("%s got two values for the argument %s" % (title, name))
        given[at] = value
    for at in range(member.required):
        left_out = at >= len(given) or given[at] is _LEFT_OUT
        if left_out and not parameters[at].is_optional:
            raise TypeError("%s lacks the argument %s" % (title, parameters[at].name))
    return [MISSING if each is _LEFT_OUT else each for each in given]


_LEFT_OUT = object()


def _position(member, name, title):
    for at, each in enumerate(member.parameters):
        if each.name == name:
            if member.is_variable and at == len(member.parameters) - 1:
                break
            return at
    known = [each.name for each in member.parameters]
    raise TypeError("%s has no argument %s%s" % (title, name, hint(name, known)))


def hint(name, known):
    """What a misspelt name may have meant."""
    lower = {each.lower(): each for each in known}
    near = difflib.get_close_matches(name.lower(), list(lower), 1)
    return "; did you mean %s?" % lower[near[0]] if near else ""

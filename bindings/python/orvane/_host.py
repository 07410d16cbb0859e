"""Python objects as objects of a host, which the library reaches by member name."""

import ctypes
import inspect
import threading
import types
from ctypes import Structure, c_int32, c_uint16, c_uint32, c_void_p

from . import _abi, _array, _variant
from ._dispatch import Object
from ._runtime import Error, current, memory, new_text, status_of
from ._variant import MISSING, Ref, hooks

# Errors that Python tells by the exception's class.
_NUMBERS = (
    (NotImplementedError, 445),
    (RecursionError, 28),
    (MemoryError, 7),
    (ZeroDivisionError, 11),
    (OverflowError, 6),
    (FileNotFoundError, 53),
    (PermissionError, 70),
    (IndexError, 9),
    (KeyError, 5),
    (AttributeError, 438),
    (TypeError, 13),
    (ValueError, 5),
)
_AUTOMATION_ERROR = 440
_WILL_NOT_DO = (dict, set, frozenset, complex, range, types.ModuleType, types.GeneratorType)

_lock = threading.RLock()
_hosts = {}  # by address of the cell
_addresses = {}  # by id of the Python object
_names = {}  # member numbers by name
_numbers = {}  # names by member number


class _Cell(Structure):
    _fields_ = [("table", c_void_p)]


class _Host:
    """What the library holds of a Python object."""

    __slots__ = ("object", "references", "cell", "is_enumeration")

    def __init__(self, target, table, is_enumeration=False):
        self.object = target
        self.references = 1
        self.cell = _Cell(ctypes.addressof(table))
        self.is_enumeration = is_enumeration


def _new_host(target, table, is_enumeration=False):
    host = _Host(target, table, is_enumeration)
    address = ctypes.addressof(host.cell)
    with _lock:
        _hosts[address] = host
        if not is_enumeration:
            _addresses[id(target)] = address
    return address


def is_object(value):
    """Whether a value is handed over as an object."""
    if isinstance(value, Object):
        return True
    plain = (type(None), bool, int, float, str, bytes, bytearray, list, tuple, type, Ref,
             _array.Array, _variant._Special)
    if isinstance(value, plain) or isinstance(value, _WILL_NOT_DO):
        return False
    return not hasattr(value, "__index__") and not hasattr(value, "__float__") and \
        _variant.writer_of(value) is None


def interface_of(value):
    """An IDispatch of the object with a reference of its own; 0 for a value that is none."""
    if isinstance(value, Object):
        from ._runtime import check_thread
        check_thread(value._apartment)
        _abi.ADD_REF(value._pointer)
        return value._pointer
    if not is_object(value):
        return 0
    with _lock:
        address = _addresses.get(id(value))
        if address is not None:
            _hosts[address].references += 1
            return address
    return _new_host(value, _dispatch_table)


def unwrap(pointer):
    """(object,) when the pointer is one of ours, whose reference is given back; else None."""
    host = _hosts.get(pointer)
    if host is None:
        return None
    target = host.object
    _release(pointer)
    return (target,)


def living():
    """How many Python objects the library holds."""
    return len(_hosts)


def _query(self, iid, found):
    host = _hosts[self]
    asked = ctypes.string_at(iid, 16)
    own = _abi.IID_IEnumVARIANT if host.is_enumeration else _abi.IID_IDispatch
    if asked != bytes(own.bytes) and asked != bytes(_abi.IID_IUnknown.bytes):
        c_void_p.from_address(found).value = None
        return _abi.E_NOINTERFACE
    _add_ref(self)
    c_void_p.from_address(found).value = self
    return _abi.S_OK


def _add_ref(self):
    with _lock:
        host = _hosts[self]
        host.references += 1
        return host.references


def _release(self):
    with _lock:
        host = _hosts[self]
        host.references -= 1
        if host.references:
            return host.references
        del _hosts[self]
        if not host.is_enumeration:
            del _addresses[id(host.object)]
    return 0


def _type_info_count(self, count):
    c_uint32.from_address(count).value = 0
    return _abi.S_OK


def _type_info(self, index, locale, info):
    c_void_p.from_address(info).value = None
    return _abi.E_NOTIMPL


def _text_of_name(pointer):
    units = []
    while True:
        unit = c_uint16.from_address(pointer + 2 * len(units)).value
        if not unit:
            return bytes().join(each.to_bytes(2, "little") for each in units).decode(
                "utf-16-le", "surrogatepass")
        units.append(unit)


def _own_name(target, asked):
    """The object's own spelling of a member's name, or None; names are known without regard to
    case, and those with an underscore in front are private."""
    if asked.startswith("_"):
        return None
    try:
        inspect.getattr_static(target, asked)
        return asked
    except AttributeError:
        pass
    lower = asked.lower()
    for name in dir(target):
        if name.lower() == lower and not name.startswith("_"):
            return name
    if hasattr(type(target), "__getattr__") and hasattr(target, asked):
        return asked
    if lower == "count" and hasattr(type(target), "__len__"):
        return "Count"
    if lower == "item" and hasattr(type(target), "__getitem__"):
        return "Item"
    return None


def _number_of_name(target, asked):
    if asked.lower() == "_newenum":
        return _abi.DISPID_NEWENUM if hasattr(type(target), "__iter__") else None
    name = _own_name(target, asked)
    if name is None:
        return None
    with _lock:
        number = _names.setdefault(name, len(_names) + 1)
        _numbers[number] = name
    return number


def _ids_of_names(self, reserved, names, count, locale, ids):
    status = _abi.S_OK
    try:
        for at in range(count):
            number = None
            if at == 0:
                asked = _text_of_name(c_void_p.from_address(names).value)
                number = _number_of_name(_hosts[self].object, asked)
            c_int32.from_address(ids + 4 * at).value = -1 if number is None else number
            if number is None:
                status = _abi.DISP_E_UNKNOWNNAME
    except BaseException as raised:
        current.apartment.failure = raised
        return _abi.DISP_E_UNKNOWNNAME
    return status


def _get(target, number, flags, arguments):
    if number == _abi.DISPID_NEWENUM:
        return iter(target)
    if number == _abi.DISPID_VALUE:
        return _default(target, arguments)
    name = _numbers.get(number)
    missing = object()
    value = getattr(target, name, missing) if name is not None else missing
    if value is missing:
        if name == "Count" and not arguments:
            return len(target)
        if name == "Item":
            return target[_index(arguments)]
        raise Error(438, "%s has no member %s" % (type(target).__name__, name), "orvane")
    # An object of the library that can be called is a value, not a function.
    if callable(value) and not isinstance(value, (Object, type)):
        return value(*arguments)
    return value[_index(arguments)] if arguments else value


def _index(arguments):
    return arguments[0] if len(arguments) == 1 else tuple(arguments)


def _default(target, arguments):
    if hasattr(target, "Item"):
        item = target.Item
        return item(*arguments) if callable(item) else item[_index(arguments)]
    if arguments and hasattr(type(target), "__getitem__"):
        return target[_index(arguments)]
    if callable(target):
        return target(*arguments)
    if not arguments and hasattr(target, "Value"):
        return target.Value
    raise Error(438, "%s has no default member" % type(target).__name__, "orvane")


def _put(target, number, arguments):
    *index, value = arguments
    name = _numbers.get(number)
    if number == _abi.DISPID_VALUE or (name == "Item" and not hasattr(target, "Item")):
        if index:
            target[_index(index)] = value
        else:
            target.Value = value
    elif name is None:
        raise Error(438, "%s has no such member" % type(target).__name__, "orvane")
    elif index:
        getattr(target, name)[_index(index)] = value
    else:
        setattr(target, name, value)


def _arguments(given):
    """The arguments in order; those by reference are `Ref`s, listed a second time with the place
    that their values go back to."""
    values = []
    references = []
    for at in range(given.count - 1, -1, -1):
        address = given.arguments + _abi.VARIANT_SIZE * at
        value = _variant.get_variant(address)
        if c_uint16.from_address(address).value & _abi.VT_BYREF:
            value = Ref(value)
            references.append((address, value))
        values.append(value)
    return values, references


def _write_back(references):
    for address, reference in references:
        vt = c_uint16.from_address(address).value & ~_abi.VT_BYREF
        target = c_void_p.from_address(address + 8).value
        if not vt & _abi.VT_ARRAY:
            _array.put_cell(target, vt, reference.value)
            continue
        made, element = _array.to_array(reference.value, vt & _abi.VT_TYPEMASK)
        if element != vt & _abi.VT_TYPEMASK:
            memory.destroy_array(made)
            raise Error(13, "Type mismatch", "orvane")
        former = c_void_p.from_address(target).value
        c_void_p.from_address(target).value = made
        if former:
            memory.destroy_array(former)


def _invoke(self, number, reserved, locale, flags, parameters, result, exception, argument_error):
    target = None
    try:
        target = _hosts[self].object
        values, references = _arguments(_abi.DISPPARAMS.from_address(parameters))
        value = None
        if flags & (_abi.DISPATCH_PROPERTYPUT | _abi.DISPATCH_PROPERTYPUTREF):
            _put(target, number, values)
        else:
            while values and values[-1] is MISSING:
                values.pop()
            value = _get(target, number, flags, values)
        _write_back(references)
        if result:
            ctypes.memset(result, 0, _abi.VARIANT_SIZE)
            if number == _abi.DISPID_NEWENUM:
                c_uint16.from_address(result).value = _abi.VT_UNKNOWN
                c_void_p.from_address(result + 8).value = _new_host(value, _enum_table, True)
            else:
                _variant.put_variant(result, value)
        return _abi.S_OK
    except BaseException as raised:
        current.apartment.failure = raised
        return _tell(raised, target, exception)


def _tell(raised, target, exception):
    """Fills the exception's record; a failure while doing so is told by its status alone."""
    try:
        if not exception:
            return _abi.DISP_E_EXCEPTION
        ctypes.memset(exception, 0, ctypes.sizeof(_abi.EXCEPINFO))
        told = _abi.EXCEPINFO.from_address(exception)
        source = type(target).__name__
        if isinstance(raised, Error):
            number, text = raised.number, raised.description
            source = raised.source or source
        else:
            number = next((each for kind, each in _NUMBERS if isinstance(raised, kind)),
                          _AUTOMATION_ERROR)
            text = "%s: %s" % (type(raised).__name__, raised)
        told.scode = status_of(number) if number else _abi.E_FAIL
        told.description = new_text(text)
        told.source = new_text(source)
        return _abi.DISP_E_EXCEPTION
    except BaseException:
        return _abi.E_OUTOFMEMORY


def _next(self, count, values, fetched):
    done = 0
    try:
        iterator = _hosts[self].object
        for done in range(count):
            try:
                value = next(iterator)
            except StopIteration:
                break
            address = values + _abi.VARIANT_SIZE * done
            ctypes.memset(address, 0, _abi.VARIANT_SIZE)
            _variant.put_variant(address, value)
        else:
            done = count
    except BaseException as raised:
        current.apartment.failure = raised
        for at in range(done):
            _variant.clear_variant(values + _abi.VARIANT_SIZE * at)
        return _abi.E_FAIL
    if fetched:
        c_uint32.from_address(fetched).value = done
    return _abi.S_OK if done == count else _abi.S_FALSE


def _skip(self, count):
    try:
        for _ in range(count):
            next(_hosts[self].object)
    except StopIteration:
        return _abi.S_FALSE
    except BaseException as raised:
        current.apartment.failure = raised
        return _abi.E_FAIL
    return _abi.S_OK


def _no_reset(self):
    return _abi.E_NOTIMPL


def _no_clone(self, copy):
    c_void_p.from_address(copy).value = None
    return _abi.E_NOTIMPL


def _table(*functions):
    addresses = [ctypes.cast(each, c_void_p).value for each in functions]
    return (c_void_p * len(addresses))(*addresses)


_UNKNOWN = (_abi.QUERY_INTERFACE.prototype(_query), _abi.ADD_REF.prototype(_add_ref),
            _abi.RELEASE.prototype(_release))
_DISPATCH = (_abi.GET_TYPE_INFO_COUNT.prototype(_type_info_count),
             _abi.GET_TYPE_INFO.prototype(_type_info),
             _abi.GET_IDS_OF_NAMES.prototype(_ids_of_names), _abi.INVOKE.prototype(_invoke))
_ENUM = (_abi.ENUM_NEXT.prototype(_next), _abi.ENUM_SKIP.prototype(_skip),
         _abi.ENUM_RESET.prototype(_no_reset), _abi.ENUM_CLONE.prototype(_no_clone))
_dispatch_table = _table(*_UNKNOWN, *_DISPATCH)
_enum_table = _table(*_UNKNOWN, *_ENUM)

hooks.interface_of = interface_of
hooks.unwrap_host = unwrap
hooks.is_object = is_object

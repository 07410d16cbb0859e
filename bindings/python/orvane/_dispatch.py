"""Objects of the library: members by name, properties with arguments, enumeration."""

import ctypes
from ctypes import c_void_p

from . import _abi, _variant
from ._call import arrange, hint, invoke
from ._runtime import check_thread, current, error_of, query
from ._variant import Nothing, hooks


class Object:
    """An object of the library. `help(object)` lists its members.

    It belongs to the thread that made it: used on another one it raises `orvane.Error` with the
    number of RPC_E_WRONG_THREAD. Objects are equal when they are the same object of the library.
    """

    __slots__ = ("_pointer", "_apartment", "_invoke", "__weakref__")
    _members = ()

    def __init__(self, *_):
        raise TypeError("objects of the library come from orvane.create()")

    def __del__(self):
        apartment = getattr(self, "_apartment", None)
        if apartment is not None:
            apartment.drop(self)

    def __getattr__(self, name):
        if name in Object.__slots__:
            raise AttributeError(name)
        raise AttributeError("%s has no member %s%s" % (type(self).__name__, name,
                                                        hint(name, type(self)._members)))

    def __setattr__(self, name, value):
        known = getattr(type(self), name, None)
        if not isinstance(known, property):
            self.__getattr__(name) if known is None else None
            raise AttributeError("%s.%s can't be assigned" % (type(self).__name__, name))
        object.__setattr__(self, name, value)

    def __eq__(self, other):
        return self._pointer == other._pointer if isinstance(other, Object) else NotImplemented

    def __hash__(self):
        return hash(self._pointer)

    def __bool__(self):
        return True

    def __repr__(self):
        return "<%s object of the library at 0x%x>" % (type(self).__name__, self._pointer)

    def __copy__(self):
        raise TypeError("objects of the library can't be copied")

    __reduce__ = __copy__


def adopt(kind, pointer):
    """An object of the class `kind` for a pointer whose reference goes with it."""
    made = kind.__new__(kind)
    setter = object.__setattr__
    apartment = current.apartment
    setter(made, "_pointer", pointer)
    setter(made, "_invoke", _abi.INVOKE.of(pointer))
    setter(made, "_apartment", apartment)
    apartment.hold(made, pointer)
    return made


# Classes by the address of the objects' table of functions: one for each class of a library.
_by_table = {}
# Classes by interface identifier.
by_interface = {}


def wrap(pointer):
    """The Python object for an IDispatch pointer, whose reference goes with it."""
    host = hooks.unwrap_host(pointer)
    if host is not None:
        return host[0]
    table = c_void_p.from_address(pointer).value
    kind = _by_table.get(table)
    if kind is None:
        kind = _by_table[table] = _class_of(pointer)
    return adopt(kind, pointer)


def _class_of(pointer):
    from . import _library_collection, _picture
    from ._typeinfo import interface_id
    info = c_void_p()
    if _abi.GET_TYPE_INFO(pointer, 0, 0, ctypes.addressof(info)) >= 0 and info.value:
        kind = by_interface.get(interface_id(info.value))
        _abi.RELEASE(info.value)
        if kind is not None:
            return kind
    for identifier, kind in [(_abi.IID_IPicture, _picture.Picture),
                             (_abi.IID_ICollection, _library_collection.LibraryCollection)]:
        known = query(pointer, identifier)
        if known:
            _abi.RELEASE(known)
            return kind
    return Object


class Items:
    """A property with arguments: `object.Item[2]`, `object.Item[2] = value`, `object.Item(2)`."""

    __slots__ = ("_target", "_ways")

    def __init__(self, target, ways):
        self._target = target
        self._ways = ways

    def __getitem__(self, index):
        return self(*(index if isinstance(index, tuple) else (index,)))

    def __call__(self, *arguments, **named):
        return read(self._target, self._ways, arguments, named)

    def __setitem__(self, index, value):
        write(self._target, self._ways, index if isinstance(index, tuple) else (index,), value)

    def __repr__(self):
        return "<property %s of %r>" % (next(iter(self._ways.values())).name, self._target)

    __iter__ = None


def read(target, ways, arguments=(), named={}):
    """Reads a property or calls a function among the `ways` (by kind) of a member."""
    member = ways.get(_abi.DISPATCH_METHOD) or ways.get(_abi.DISPATCH_PROPERTYGET)
    if member is None:
        raise AttributeError("%s can only be assigned" % next(iter(ways.values())).name)
    if named or not member.required <= len(arguments) <= member.most:
        arguments = arrange(member, arguments, named)
    return invoke(target, member, _abi.DISPATCH_METHOD | _abi.DISPATCH_PROPERTYGET, arguments)


def write(target, ways, arguments, value):
    """Assigns to a property; an object goes by reference where the member takes it so."""
    is_object = value is Nothing or hooks.is_object(value)
    order = [_abi.DISPATCH_PROPERTYPUT, _abi.DISPATCH_PROPERTYPUTREF]
    for kind in reversed(order) if is_object else order:
        member = ways.get(kind)
        if member is not None:
            given = arrange(member, (*arguments, value), {})
            invoke(target, member, kind, given, is_put=True)
            return
    raise AttributeError("%s can only be read" % next(iter(ways.values())).name)


class Enumeration:
    """Runs over what a collection's `_NewEnum` gives."""

    __slots__ = ("_pointer", "_apartment", "__weakref__")

    def __init__(self, pointer):
        self._pointer = pointer
        self._apartment = current.apartment
        self._apartment.hold(self, pointer)

    def __del__(self):
        self._apartment.drop(self)

    def __iter__(self):
        return self

    def __next__(self):
        check_thread(self._apartment)
        place = _abi.VARIANT()
        address = ctypes.addressof(place)
        status = _abi.ENUM_NEXT(self._pointer, 1, address, None)
        if status < 0:
            raise error_of(status)
        if status != _abi.S_OK:
            raise StopIteration
        try:
            return _variant.get_variant(address)
        finally:
            _variant.clear_variant(address)


def _put_object(address, value):
    check_thread(value._apartment)
    _abi.ADD_REF(value._pointer)
    _variant.put_interface(address, value._pointer)


_variant.register_writer(Object, _put_object)
hooks.wrap_object = wrap

"""Names, members and help of a library's classes, from its type information."""

import ctypes
from ctypes import c_uint32, c_void_p

from . import _abi
from ._runtime import check, take_text
from ._variant import MISSING, get_variant

_TYPE_NAMES = {
    _abi.VT_I2: "Integer",
    _abi.VT_I4: "Long",
    _abi.VT_INT: "Long",
    _abi.VT_R4: "Single",
    _abi.VT_R8: "Double",
    _abi.VT_CY: "Currency",
    _abi.VT_DATE: "Date",
    _abi.VT_BSTR: "String",
    _abi.VT_DISPATCH: "Object",
    _abi.VT_UNKNOWN: "Object",
    _abi.VT_ERROR: "Error",
    _abi.VT_BOOL: "Boolean",
    _abi.VT_VARIANT: "Variant",
    _abi.VT_UI1: "Byte",
}


class Type:
    """A parameter's or a result's type: `vt` with VT_ARRAY for arrays, and the name that a host
    language would call it by; `enumeration` and `interface` name the library's own."""

    __slots__ = ("vt", "name", "by_reference", "enumeration", "interface")

    def __init__(self, vt, name, by_reference=False, enumeration=None, interface=None):
        self.vt = vt
        self.name = name
        self.by_reference = by_reference
        self.enumeration = enumeration
        self.interface = interface


class Parameter:
    """A parameter of a member; `default` is MISSING where it has none of its own."""

    __slots__ = ("name", "type", "is_optional", "default")

    def __init__(self, name, type_, is_optional, default):
        self.name = name
        self.type = type_
        self.is_optional = is_optional
        self.default = default


class Member:
    """One way to call a member: `kind` is one of the DISPATCH_ flags."""

    __slots__ = ("name", "id", "kind", "parameters", "result", "help", "is_variable", "owner",
                 "required", "most", "enumeration")

    def __init__(self, name, id_, kind, parameters, result, help_, is_variable, owner):
        self.name = name
        self.id = id_
        self.kind = kind
        self.parameters = parameters
        self.result = result
        self.help = help_
        self.is_variable = is_variable
        self.owner = owner
        fixed = parameters[:-1] if is_variable else parameters
        needed = [at for at, each in enumerate(fixed, 1) if not each.is_optional]
        self.required = needed[-1] if needed else 0
        self.most = (1 << 30) if is_variable else len(parameters)
        self.enumeration = None  # the IntEnum of the result, set when the class is made


class Interface:
    """The default interface of a class."""

    __slots__ = ("name", "guid", "members")

    def __init__(self, name, guid, members):
        self.name = name
        self.guid = guid
        self.members = members


class Class:
    """A class of the catalogue: `class_id` is written {8BBF...}."""

    __slots__ = ("name", "class_id", "guid", "help", "interface", "can_create", "is_global")

    def __init__(self, name, guid, help_, interface, flags):
        self.name = name
        self.guid = guid
        self.class_id = str(guid)
        self.help = help_
        self.interface = interface
        self.can_create = flags & _abi.TYPEFLAG_FCANCREATE != 0
        self.is_global = flags & _abi.TYPEFLAG_FAPPOBJECT != 0


class Description:
    """All that a type library tells: `classes`, `interfaces` and `enumerations` by name."""

    def __init__(self, library):
        self.name, self.help = _documentation(_abi.LIBRARY_DOCUMENTATION, library, -1)
        self.classes = {}
        self.interfaces = {}
        self.enumerations = {}
        for index in range(_abi.LIBRARY_COUNT(library)):
            info = _received(_abi.LIBRARY_TYPE, library, index)
            try:
                self._read(info)
            finally:
                _abi.RELEASE(info)

    def _read(self, info):
        kind, guid, flags, functions, variables = _attributes(info)
        name, help_ = _documentation(_abi.INFO_GET_DOCUMENTATION, info, _abi.MEMBERID_NIL)
        if kind == _abi.TKIND_ENUM:
            constants = [_constant(info, index) for index in range(variables)]
            self.enumerations[name] = dict(constants)
        elif kind == _abi.TKIND_DISPATCH:
            members = [_member(info, index, name) for index in range(functions)]
            self.interfaces[name] = Interface(name, guid, [each for each in members if each])
        elif kind == _abi.TKIND_COCLASS:
            self.classes[name] = Class(name, guid, help_, _parent_name(info), flags)


def _received(slot, pointer, *arguments):
    place = c_void_p()
    check(slot(pointer, *arguments, ctypes.addressof(place)))
    return place.value


def _documentation(slot, pointer, index):
    name, help_ = c_void_p(), c_void_p()
    check(slot(pointer, index, ctypes.addressof(name), ctypes.addressof(help_), None, None))
    return take_text(name.value), take_text(help_.value)


def _attributes(info):
    address = _received(_abi.INFO_GET_ATTRIBUTES, info)
    given = _abi.TYPEATTR.from_address(address)
    guid = _abi.GUID.from_buffer_copy(given.guid)
    result = (given.kind, guid, given.flags, given.functions, given.variables)
    _abi.INFO_FREE_ATTRIBUTES(info, address)
    return result


def interface_id(info):
    """The identifier of the type that an `ITypeInfo` describes."""
    return bytes(_attributes(info)[1].bytes)


def _parent_name(info):
    reference = c_uint32()
    check(_abi.INFO_GET_PARENT(info, 0, ctypes.addressof(reference)))
    return _referred(info, reference.value)[0]


def _referred(info, reference):
    """The name and kind of a type that another refers to."""
    other = _received(_abi.INFO_GET_REFERRED, info, reference)
    try:
        name, _ = _documentation(_abi.INFO_GET_DOCUMENTATION, other, _abi.MEMBERID_NIL)
        return name, _attributes(other)[0]
    finally:
        _abi.RELEASE(other)


def _constant(info, index):
    address = _received(_abi.INFO_GET_VARIABLE, info, index)
    given = _abi.VARDESC.from_address(address)
    value = given.value.contents.lVal
    name, _ = _documentation(_abi.INFO_GET_DOCUMENTATION, info, given.id)
    _abi.INFO_FREE_VARIABLE(info, address)
    return name, value


def _type(info, description):
    if description.vt == _abi.VT_SAFEARRAY:
        element = _type(info, _abi.TYPEDESC.from_address(description.target))
        return Type(_abi.VT_ARRAY | element.vt, element.name + "()")
    if description.vt == _abi.VT_PTR:
        target = _type(info, _abi.TYPEDESC.from_address(description.target))
        # The first star of an object belongs to its type; any other one is by reference.
        if target.interface is not None and target.vt == _abi.VT_EMPTY:
            target.vt = _abi.VT_DISPATCH
        else:
            target.by_reference = True
        return target
    if description.vt == _abi.VT_USERDEFINED:
        name, kind = _referred(info, (description.target or 0) & 0xFFFFFFFF)
        if kind == _abi.TKIND_ENUM:
            return Type(_abi.VT_I4, name, enumeration=name)
        return Type(_abi.VT_EMPTY, name.lstrip("_"), interface=name)
    return Type(description.vt, _TYPE_NAMES.get(description.vt, ""))


def _names(info, id_, count):
    places = (c_void_p * (count + 1))()
    found = c_uint32()
    check(_abi.INFO_GET_NAMES(info, id_, ctypes.addressof(places), count + 1,
                              ctypes.addressof(found)))
    return [take_text(places[i]) for i in range(found.value)]


def _member(info, index, owner):
    address = _received(_abi.INFO_GET_FUNCTION, info, index)
    try:
        given = _abi.FUNCDESC.from_address(address)
        if given.flags & _abi.FUNCFLAG_FRESTRICTED and given.id != _abi.DISPID_NEWENUM:
            return None
        names = _names(info, given.id, given.parameter_count)
        parameters = []
        for at in range(given.parameter_count):
            # A put's last parameter is the value, which may have no name.
            name = names[at + 1] if at + 1 < len(names) else "Value"
            parameters.append(_parameter(info, name, given.parameters[at]))
        _, help_ = _documentation(_abi.INFO_GET_DOCUMENTATION, info, given.id)
        return Member(names[0], given.id, given.invoke_kind, parameters,
                      _type(info, given.result.type), help_, given.optional_count == -1,
                      owner.lstrip("_"))
    finally:
        _abi.INFO_FREE_FUNCTION(info, address)


def _parameter(info, name, given):
    default = MISSING
    if given.flags & _abi.PARAMFLAG_FHASDEFAULT:
        default = get_variant(ctypes.addressof(given.extra.contents.value))
    return Parameter(name, _type(info, given.type), given.flags & _abi.PARAMFLAG_FOPT != 0, default)

"""A Python class for each interface, with signatures and documentation for `help()`."""

import datetime
import decimal
import enum
import inspect

from . import _abi
from ._call import arrange, invoke
from ._dispatch import Enumeration, Items, Object, by_interface, read, write
from ._runtime import Error
from ._variant import MISSING

_PYTHON_TYPES = {
    _abi.VT_UI1: int,
    _abi.VT_I2: int,
    _abi.VT_I4: int,
    _abi.VT_INT: int,
    _abi.VT_R4: float,
    _abi.VT_R8: float,
    _abi.VT_CY: decimal.Decimal,
    _abi.VT_DATE: datetime.datetime,
    _abi.VT_BSTR: str,
    _abi.VT_BOOL: bool,
    _abi.VT_VOID: None,
}


def make_enumerations(description, module):
    """The library's enumerations as IntEnum classes, by name."""
    return {name: enum.IntEnum(name, constants, module=module)
            for name, constants in description.enumerations.items()}


def make_classes(description, enumerations, module):
    """A class for each interface of a library; from then on its objects are of these classes."""
    helps = {each.interface: each.help for each in description.classes.values()}
    made = {}
    for name, interface in description.interfaces.items():
        kind = _make_class(interface, helps.get(name, ""), enumerations, module)
        by_interface[bytes(interface.guid.bytes)] = made[name] = kind
    return made


def _make_class(interface, help_, enumerations, module):
    members = {}
    for member in interface.members:
        member.enumeration = enumerations.get(member.result.enumeration)
        members.setdefault(member.name, {})[member.kind] = member
    names = [name for name in members if name != "_NewEnum"]
    title = interface.name.lstrip("_")
    space = {
        "__slots__": (),
        "__module__": module,
        "__doc__": _class_doc(title, help_, members),
        "_members": names,
        "__iter__": None,
    }
    for name in names:
        space[name] = _attribute(title, members[name], enumerations, module)
    _add_protocols(space, members)
    return type(title, (Object,), space)


def _class_doc(title, help_, members):
    lines = [help_ or "%s, a class of the library." % title, "", "Members:", ""]
    for ways in members.values():
        for member in ways.values():
            if member.id != _abi.DISPID_NEWENUM:
                lines.append("    " + _heading(member))
    return "\n".join(lines)


def _heading(member):
    """The member as a host language writes it."""
    parts = []
    for at, each in enumerate(member.parameters):
        text = each.name
        if member.is_variable and at == len(member.parameters) - 1:
            text = "*" + text
        elif each.type.name:
            text += ": " + each.type.name
        if each.type.by_reference and not text.startswith("*"):
            text += " by reference"
        if each.default is not MISSING:
            text += " = %r" % (each.default,)
        parts.append("[%s]" % text if each.is_optional else text)
    result = " -> " + member.result.name if member.result.name else ""
    kinds = {_abi.DISPATCH_PROPERTYGET: "property ", _abi.DISPATCH_PROPERTYPUT: "assign ",
             _abi.DISPATCH_PROPERTYPUTREF: "assign object "}
    return "%s%s(%s)%s" % (kinds.get(member.kind, ""), member.name, ", ".join(parts), result)


def _doc(ways):
    lines = [_heading(member) for member in ways.values()]
    texts = []
    for member in ways.values():
        if member.help and member.help not in texts:
            texts.append(member.help)
    return "\n".join(lines + ([""] + texts if texts else []))


def _annotation(type_, enumerations):
    if type_.enumeration:
        return enumerations.get(type_.enumeration, int)
    if type_.vt & _abi.VT_ARRAY or type_.vt not in _PYTHON_TYPES:
        return type_.name or object
    return _PYTHON_TYPES[type_.vt]


def _signature(member, enumerations):
    parameters = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_ONLY)]
    for at, each in enumerate(member.parameters):
        if member.is_variable and at == len(member.parameters) - 1:
            parameters.append(inspect.Parameter(each.name, inspect.Parameter.VAR_POSITIONAL))
            continue
        default = inspect.Parameter.empty
        if each.is_optional:
            default = each.default
        parameters.append(inspect.Parameter(
            each.name, inspect.Parameter.POSITIONAL_OR_KEYWORD, default=default,
            annotation=_annotation(each.type, enumerations)))
    return inspect.Signature(parameters,
                             return_annotation=_annotation(member.result, enumerations))


def _attribute(title, ways, enumerations, module):
    method = ways.get(_abi.DISPATCH_METHOD)
    if method is not None:
        return _method(title, method, ways, enumerations, module)
    get = ways.get(_abi.DISPATCH_PROPERTYGET)
    doc = _doc(ways)
    indexed = any(len(each.parameters) > (0 if kind == _abi.DISPATCH_PROPERTYGET else 1)
                  for kind, each in ways.items())
    if indexed:
        return property(lambda self: Items(self, ways), doc=doc)
    can_write = len(ways) > (1 if get is not None else 0)
    return property((lambda self: read(self, ways)) if get is not None else None,
                    (lambda self, value: write(self, ways, (), value)) if can_write else None,
                    doc=doc)


def _method(title, member, ways, enumerations, module):
    required, most = member.required, member.most
    flags = _abi.DISPATCH_METHOD

    def method(self, *arguments, **named):
        if named or not required <= len(arguments) <= most:
            arguments = arrange(member, arguments, named)
        return invoke(self, member, flags, arguments)

    method.__name__ = member.name
    method.__qualname__ = "%s.%s" % (title, member.name)
    method.__module__ = module
    method.__doc__ = _doc(ways)
    method.__signature__ = _signature(member, enumerations)
    return method


def _add_protocols(space, members):
    """Iteration, `len()`, and what the default member allows."""
    count = members.get("Count")
    if count is not None:
        space["__len__"] = lambda self: read(self, count)
    if "_NewEnum" in members:
        space["__iter__"] = _iterator(members["_NewEnum"])
    default = next((ways for ways in members.values()
                    if any(each.id == _abi.DISPID_VALUE for each in ways.values())), None)
    if default is None:
        return

    def get_item(self, index):
        return read(self, default, index if isinstance(index, tuple) else (index,))

    def set_item(self, index, value):
        write(self, default, index if isinstance(index, tuple) else (index,), value)

    def call(self, *arguments, **named):
        return read(self, default, arguments, named)

    space["__getitem__"] = get_item
    space["__call__"] = call
    if any(kind in default for kind in (_abi.DISPATCH_PROPERTYPUT, _abi.DISPATCH_PROPERTYPUTREF)):
        space["__setitem__"] = set_item


def _iterator(ways):
    def iterate(self):
        pointer = read(self, ways)
        if not pointer:
            raise Error(438, "The object can't be enumerated", "orvane")
        return Enumeration(pointer)

    return iterate

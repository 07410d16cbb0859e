"""Collections that the library gives, which are no class of its type library."""

from . import _abi
from ._call import arrange, invoke
from ._dispatch import Enumeration, Object
from ._typeinfo import Member, Parameter, Type
from ._variant import MISSING

_ANY = Type(_abi.VT_VARIANT, "Variant")


def _member(name, id_, parameters, result=_abi.VT_VARIANT):
    return Member(name, id_, _abi.DISPATCH_METHOD,
                  [Parameter(each, _ANY, optional, MISSING) for each, optional in parameters],
                  Type(result, ""), "", False, "Collection")


_ITEM = _member("Item", 0, [("Index", False)])
_ADD = _member("Add", 1, [("Item", False), ("Key", True), ("Before", True), ("After", True)],
               _abi.VT_VOID)
_COUNT = _member("Count", 2, [], _abi.VT_I4)
_REMOVE = _member("Remove", 3, [("Index", False)], _abi.VT_VOID)
_ENUMERATE = _member("_NewEnum", _abi.DISPID_NEWENUM, [], _abi.VT_UNKNOWN)


class LibraryCollection(Object):
    """A collection of the library's: an ordered bag of values, counted from 1, each with an
    optional text key.

    `collection[1]`, `collection["key"]`, `len()`, iteration and `in`, as with `orvane.Collection`.
    """

    __slots__ = ()
    _members = ("Item", "Add", "Count", "Remove")

    def _call(self, member, arguments, named={}):
        return invoke(self, member, _abi.DISPATCH_METHOD | _abi.DISPATCH_PROPERTYGET,
                      arrange(member, arguments, named))

    @property
    def Count(self) -> int:
        """How many items there are."""
        return self._call(_COUNT, ())

    def Item(self, Index):
        """The item that a number or a key names."""
        return self._call(_ITEM, (Index,))

    def Add(self, Item, *arguments, **named) -> None:
        """Adds a value at the end, or before or after the item that a number or a key names:
        `Add(Item, Key, Before, After)`."""
        self._call(_ADD, (Item, *arguments), named)

    def Remove(self, Index) -> None:
        """Takes out the item that a number or a key names."""
        self._call(_REMOVE, (Index,))

    def __getitem__(self, index):
        return self.Item(index)

    def __len__(self) -> int:
        return self.Count

    def __iter__(self):
        return Enumeration(self._call(_ENUMERATE, ()))

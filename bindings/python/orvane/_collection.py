"""A collection for the library, counted from 1."""

from ._runtime import Error
from ._variant import MISSING


class Collection:
    """An ordered bag of values, counted from 1, each with an optional text key.

    `orvane.Collection([3, 1, 2])`; a mapping gives keys too. The library reaches it as it reaches
    a host's own collection: by `Item`, `Count`, `Add`, `Remove` and enumeration. In Python it has
    `collection[1]`, `collection["key"]`, `len()`, iteration and `in`.

    A number out of range raises 9, an unknown key 5, a key in use 457. Keys are compared without
    regard to case.
    """

    def __init__(self, iterable=()) -> None:
        self._items = []
        if hasattr(iterable, "keys"):
            for key in iterable.keys():
                self.Add(iterable[key], key)
        else:
            for value in iterable:
                self.Add(value)

    @property
    def Count(self) -> int:
        """How many items there are."""
        return len(self._items)

    def Add(self, Item, Key=MISSING, Before=MISSING, After=MISSING) -> None:
        """Adds a value at the end, or before or after the item that a number or a key names."""
        key = None
        if Key is not MISSING:
            if not isinstance(Key, str):
                raise Error(13, "A key is a text", "orvane.Collection")
            key = Key.lower()
            if any(known == key for known, _ in self._items):
                raise Error(457, "The key %r is in use" % Key, "orvane.Collection")
        if Before is not MISSING and After is not MISSING:
            raise Error(5, "Before and After can't both be given", "orvane.Collection")
        place = len(self._items)
        if Before is not MISSING:
            place = self._place(Before)
        elif After is not MISSING:
            place = self._place(After) + 1
        self._items.insert(place, (key, Item))

    def Item(self, Index):
        """The item that a number or a key names."""
        return self._items[self._place(Index)][1]

    def Remove(self, Index) -> None:
        """Takes out the item that a number or a key names."""
        del self._items[self._place(Index)]

    def _place(self, index):
        if isinstance(index, str):
            for place, (key, _) in enumerate(self._items):
                if key == index.lower():
                    return place
            raise Error(5, "There is no item %r" % index, "orvane.Collection")
        if not hasattr(index, "__index__") and not hasattr(index, "__float__"):
            raise Error(13, "An item is named by a number or a text", "orvane.Collection")
        number = round(index)
        if not 1 <= number <= len(self._items):
            raise Error(9, "There is no item %d of %d" % (number, len(self._items)),
                        "orvane.Collection")
        return number - 1

    def __getitem__(self, index):
        return self.Item(index)

    def __len__(self) -> int:
        return len(self._items)

    def __iter__(self):
        for _, value in list(self._items):
            yield value

    def __repr__(self):
        return "orvane.Collection(%r)" % ([value for _, value in self._items],)

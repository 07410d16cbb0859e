"""A host for the Orvane class library on Linux.

    import orvane

    info = orvane.create("PictureInfo")
    picture = orvane.orvMain.LoadPictureEx("sunset.tga", info)
    print(info.GetPictureTypeName(), info.Width(), info.Height())

Objects come from `create` and have the library's members; `help(object)` lists them. The global
objects (`orvane.orvMain`) and enumerations (`orvane.orvPictureTypeEx.orvPteTGA`) are attributes of
this module. A failed call raises `orvane.Error`.

Python values travel as one would expect: int as Long where it fits and as Double beyond, float,
bool, str, datetime, Decimal as Currency, bytes as an array of Byte, lists as arrays of Variant, or
of the type that the member asks for. `array` makes typed arrays with bounds, `Ref` passes an
argument by reference, `MISSING` leaves one out. None stands for Nothing where an object is asked
for and for Empty elsewhere. Any other Python object is handed over as a host object: the library
reaches its attributes and methods by name, and arguments by reference arrive there as `Ref`.

Everything belongs to the thread that made it; global objects are one for each thread.
"""

from ._array import Array, array
from ._collection import Collection
from ._codepage import from_byte_string, to_byte_string
from ._dispatch import Object
from ._library import Library, default as _default, load
from ._picture import Picture
from ._runtime import Error
from ._variant import MISSING, Empty, ErrorValue, Nothing, Null, Ref

__all__ = ["Array", "Collection", "Empty", "Error", "ErrorValue", "Library", "MISSING", "Nothing",
           "Null", "Object", "Picture", "Ref", "array", "create", "from_byte_string", "load",
           "to_byte_string"]


def create(name: str) -> Object:
    """A new object of the library, or of another component.

    `name` is a class ("PictureInfo"), a ProgID ("OrvBase0301.PictureInfo") or an identifier
    ("{83A3985F-5450-4098-94CD-C534A3F195D7}"). Any other ProgID is that of a component that is
    registered (`orvane register FILE` does that). Raises `Error` 429 for a class that isn't there
    or gives no objects to hosts.
    """
    return _default().create(name)


def __getattr__(name: str):
    if name.startswith("__"):
        raise AttributeError("module 'orvane' has no attribute %r" % name)
    return getattr(_default(), name)


def __dir__():
    return sorted(set(globals()) | set(dir(_default())))

"""Pictures, which have members of the platform's own, and the stream that they are saved to."""

import ctypes
from ctypes import Structure, c_int32, c_uint32, c_uint64, c_void_p

from . import _abi
from ._call import invoke
from ._dispatch import Object
from ._runtime import check, check_thread, query
from ._typeinfo import Member, Type


def _getter(name, id_, doc):
    member = Member(name, id_, _abi.DISPATCH_PROPERTYGET, [], Type(_abi.VT_I4, "Long"), "", False,
                    "Picture")
    return property(lambda self: invoke(self, member, _abi.DISPATCH_PROPERTYGET, ()), doc=doc)


class Picture(Object):
    """A loaded picture."""

    __slots__ = ()
    _members = ("Handle", "hPal", "Type", "Width", "Height", "save")

    Handle = _getter("Handle", 0, "The number that names the picture's bitmap in the library.")
    hPal = _getter("hPal", 2, "The number of the palette; 0 for none.")
    Type = _getter("Type", 3, "1 for a bitmap, 2 a metafile, 3 an icon, 4 an enhanced metafile.")
    Width = _getter("Width", 4, "The width in hundredths of a millimetre.")
    Height = _getter("Height", 5, "The height in hundredths of a millimetre.")

    def save(self, path) -> int:
        """Writes the picture to a file, a bitmap as BMP, and gives the file's size in bytes.

        Raises OSError where the file can't be written, `orvane.Error` where the picture can't be
        saved; no file is begun then.
        """
        check_thread(self._apartment)
        picture = query(self._pointer, _abi.IID_IPicture)
        size = c_int32()
        try:
            with _Stream() as stream:
                status = _abi.PICTURE_SAVE_AS_FILE(picture, stream.address, 1,
                                                   ctypes.addressof(size))
                check(status, "Picture.save")
                content = bytes(stream.content)
        finally:
            _abi.RELEASE(picture)
        with open(path, "wb") as file:
            file.write(content)
        return len(content)


class _Cell(Structure):
    _fields_ = [("table", c_void_p)]


_streams = {}


class _Stream:
    """An `IStream` in memory that can be written only, for the length of one call."""

    def __init__(self):
        self.content = bytearray()
        self._cell = _Cell(ctypes.addressof(_table))
        self.address = ctypes.addressof(self._cell)

    def __enter__(self):
        _streams[self.address] = self
        return self

    def __exit__(self, *_):
        del _streams[self.address]


def _query(self, iid, found):
    known = (_abi.IID_IUnknown, _abi.IID_ISequentialStream, _abi.IID_IStream)
    if ctypes.string_at(iid, 16) not in [bytes(each.bytes) for each in known]:
        c_void_p.from_address(found).value = None
        return _abi.E_NOINTERFACE
    c_void_p.from_address(found).value = self
    return _abi.S_OK


def _count(self):
    return 1


def _write(self, data, size, written):
    try:
        _streams[self].content += ctypes.string_at(data, size)
    except MemoryError:
        return _abi.E_OUTOFMEMORY
    if written:
        c_uint32.from_address(written).value = size
    return _abi.S_OK


def _refuse(self, *_):
    return _abi.E_NOTIMPL


def _slot(*arguments):
    return ctypes.CFUNCTYPE(_abi.HRESULT, c_void_p, *arguments)


_FUNCTIONS = [
    _abi.QUERY_INTERFACE.prototype(_query),
    _abi.ADD_REF.prototype(_count),
    _abi.RELEASE.prototype(_count),
    _slot(c_void_p, c_uint32, c_void_p)(_refuse),  # Read
    _abi.STREAM_WRITE.prototype(_write),
    _slot(c_uint64, c_uint32, c_void_p)(_refuse),  # Seek
    _slot(c_uint64)(_refuse),  # SetSize
    _slot(c_void_p, c_uint64, c_void_p, c_void_p)(_refuse),  # CopyTo
    _slot(c_uint32)(_refuse),  # Commit
    _slot()(_refuse),  # Revert
    _slot(c_uint64, c_uint64, c_uint32)(_refuse),  # LockRegion
    _slot(c_uint64, c_uint64, c_uint32)(_refuse),  # UnlockRegion
    _slot(c_void_p, c_uint32)(_refuse),  # Stat
    _slot(c_void_p)(_refuse),  # Clone
]
_table = (c_void_p * len(_FUNCTIONS))(
    *[ctypes.cast(each, c_void_p).value for each in _FUNCTIONS])

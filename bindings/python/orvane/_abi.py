"""The binary interface in ctypes: the structures and slots of include/orvane/automation.h.

Interface pointers are plain integers here. A `Slot` calls one function of an interface's table.
"""

import ctypes
import uuid
from ctypes import POINTER, Structure, Union, c_char_p, c_double, c_float, c_int16, c_int32
from ctypes import c_int64, c_uint8, c_uint16, c_uint32, c_void_p

HRESULT = c_int32

S_OK = 0
S_FALSE = 1


def _status(bits):
    return bits - (1 << 32)


E_NOTIMPL = _status(0x80004001)
E_NOINTERFACE = _status(0x80004002)
E_POINTER = _status(0x80004003)
E_FAIL = _status(0x80004005)
E_OUTOFMEMORY = _status(0x8007000E)
CLASS_E_CLASSNOTAVAILABLE = _status(0x80040111)
RPC_E_WRONG_THREAD = _status(0x8001010E)
DISP_E_UNKNOWNINTERFACE = _status(0x80020001)
DISP_E_MEMBERNOTFOUND = _status(0x80020003)
DISP_E_PARAMNOTFOUND = _status(0x80020004)
DISP_E_TYPEMISMATCH = _status(0x80020005)
DISP_E_UNKNOWNNAME = _status(0x80020006)
DISP_E_EXCEPTION = _status(0x80020009)
DISP_E_OVERFLOW = _status(0x8002000A)
DISP_E_BADINDEX = _status(0x8002000B)
DISP_E_BADPARAMCOUNT = _status(0x8002000E)
DISP_E_PARAMNOTOPTIONAL = _status(0x8002000F)
DISP_E_DIVBYZERO = _status(0x80020012)

VT_EMPTY = 0
VT_NULL = 1
VT_I2 = 2
VT_I4 = 3
VT_R4 = 4
VT_R8 = 5
VT_CY = 6
VT_DATE = 7
VT_BSTR = 8
VT_DISPATCH = 9
VT_ERROR = 10
VT_BOOL = 11
VT_VARIANT = 12
VT_UNKNOWN = 13
VT_I1 = 16
VT_UI1 = 17
VT_UI2 = 18
VT_UI4 = 19
VT_I8 = 20
VT_UI8 = 21
VT_INT = 22
VT_UINT = 23
VT_VOID = 24
VT_PTR = 26
VT_SAFEARRAY = 27
VT_USERDEFINED = 29
VT_ARRAY = 0x2000
VT_BYREF = 0x4000
VT_TYPEMASK = 0x0FFF

DISPID_VALUE = 0
DISPID_UNKNOWN = -1
DISPID_PROPERTYPUT = -3
DISPID_NEWENUM = -4
DISPATCH_METHOD = 1
DISPATCH_PROPERTYGET = 2
DISPATCH_PROPERTYPUT = 4
DISPATCH_PROPERTYPUTREF = 8
LOCALE_USER_DEFAULT = 0x0400

TKIND_ENUM = 0
TKIND_DISPATCH = 4
TKIND_COCLASS = 5
TYPEFLAG_FAPPOBJECT = 0x1
TYPEFLAG_FCANCREATE = 0x2
FUNCFLAG_FRESTRICTED = 0x1
PARAMFLAG_FOUT = 0x2
PARAMFLAG_FOPT = 0x10
PARAMFLAG_FHASDEFAULT = 0x20
MEMBERID_NIL = -1


class GUID(Structure):
    """An identifier of a class or an interface."""

    _fields_ = [("bytes", c_uint8 * 16)]

    @classmethod
    def of(cls, text):
        """The identifier that a text like `{00020400-0000-...}` writes."""
        return cls.from_buffer_copy(uuid.UUID(text).bytes_le)

    def __str__(self):
        return "{%s}" % str(uuid.UUID(bytes_le=bytes(self.bytes))).upper()


class Record(Structure):
    """The two pointers that make a VARIANT 24 bytes long."""

    _fields_ = [("record", c_void_p), ("info", c_void_p)]


class VariantValue(Union):
    """The value of a VARIANT, for the types that are read or written by name."""

    _fields_ = [
        ("llVal", c_int64),
        ("lVal", c_int32),
        ("bVal", c_uint8),
        ("iVal", c_int16),
        ("fltVal", c_float),
        ("dblVal", c_double),
        ("pointer", c_void_p),
        ("record", Record),
    ]


class VARIANT(Structure):
    """A tagged value, in the layout of 64-bit Windows."""

    _anonymous_ = ("value",)
    _fields_ = [
        ("vt", c_uint16),
        ("reserved1", c_uint16),
        ("reserved2", c_uint16),
        ("reserved3", c_uint16),
        ("value", VariantValue),
    ]


VARIANT_SIZE = 24
assert ctypes.sizeof(VARIANT) == VARIANT_SIZE


class SAFEARRAYBOUND(Structure):
    """One dimension of an array."""

    _fields_ = [("count", c_uint32), ("lower", c_int32)]


class SAFEARRAY(Structure):
    """An array's descriptor; the bounds behind it are stored last dimension first."""

    _fields_ = [
        ("dimensions", c_uint16),
        ("features", c_uint16),
        ("element_size", c_uint32),
        ("locks", c_uint32),
        ("data", c_void_p),
        ("bounds", SAFEARRAYBOUND * 1),
    ]


BOUNDS_OFFSET = SAFEARRAY.bounds.offset


class DISPPARAMS(Structure):
    """The arguments of a late-bound call, last first."""

    _fields_ = [
        ("arguments", c_void_p),
        ("named", c_void_p),
        ("count", c_uint32),
        ("named_count", c_uint32),
    ]


class EXCEPINFO(Structure):
    """What a late-bound call tells about its failure."""

    _fields_ = [
        ("code", c_uint16),
        ("reserved", c_uint16),
        ("source", c_void_p),
        ("description", c_void_p),
        ("help_file", c_void_p),
        ("help_context", c_uint32),
        ("reserved_pointer", c_void_p),
        ("deferred", c_void_p),
        ("scode", c_int32),
    ]


class TYPEDESC(Structure):
    """A type: `target` is another TYPEDESC, or holds a reference in its low 32 bits."""

    _fields_ = [("target", c_void_p), ("vt", c_uint16)]


class PARAMDESCEX(Structure):
    """A parameter's default value."""

    _fields_ = [("size", c_uint32), ("value", VARIANT)]


class ELEMDESC(Structure):
    """A parameter, or a function's result."""

    _fields_ = [("type", TYPEDESC), ("extra", POINTER(PARAMDESCEX)), ("flags", c_uint16)]


class TYPEATTR(Structure):
    """What a type is."""

    _fields_ = [
        ("guid", GUID),
        ("lcid", c_uint32),
        ("reserved", c_uint32),
        ("constructor", c_int32),
        ("destructor", c_int32),
        ("schema", c_void_p),
        ("instance_size", c_uint32),
        ("kind", c_int32),
        ("functions", c_uint16),
        ("variables", c_uint16),
        ("parents", c_uint16),
        ("vtable_size", c_uint16),
        ("alignment", c_uint16),
        ("flags", c_uint16),
        ("major", c_uint16),
        ("minor", c_uint16),
        ("alias", TYPEDESC),
        ("idl_reserved", c_void_p),
        ("idl_flags", c_uint16),
    ]


class FUNCDESC(Structure):
    """A function of a type."""

    _fields_ = [
        ("id", c_int32),
        ("codes", c_void_p),
        ("parameters", POINTER(ELEMDESC)),
        ("kind", c_int32),
        ("invoke_kind", c_int32),
        ("convention", c_int32),
        ("parameter_count", c_int16),
        ("optional_count", c_int16),
        ("slot", c_int16),
        ("code_count", c_int16),
        ("result", ELEMDESC),
        ("flags", c_uint16),
    ]


class VARDESC(Structure):
    """A constant of an enumeration."""

    _fields_ = [
        ("id", c_int32),
        ("schema", c_void_p),
        ("value", POINTER(VARIANT)),
        ("type", ELEMDESC),
        ("flags", c_uint16),
        ("kind", c_int32),
    ]


class Slot:
    """One function of an interface: its place in the table and its types.

    `slot(pointer, ...)` calls it; `slot.of(pointer)` gives the function, to be called with the
    pointer as its first argument. Libraries stay loaded, so that tables stay where they are.
    """

    def __init__(self, index, result, *arguments):
        self._offset = index * ctypes.sizeof(c_void_p)
        self.prototype = ctypes.CFUNCTYPE(result, c_void_p, *arguments)
        self._known = {}

    def of(self, pointer):
        """The function that the object at `pointer` has here."""
        table = c_void_p.from_address(pointer).value
        function = self._known.get(table)
        if function is None:
            address = c_void_p.from_address(table + self._offset).value
            function = self._known[table] = self.prototype(address)
        return function

    def __call__(self, pointer, *arguments):
        return self.of(pointer)(pointer, *arguments)


IID_NULL = GUID()
IID_IUnknown = GUID.of("00000000-0000-0000-C000-000000000046")
IID_IClassFactory = GUID.of("00000001-0000-0000-C000-000000000046")
IID_ISequentialStream = GUID.of("0C733A30-2A1C-11CE-ADE5-00AA0044773D")
IID_IStream = GUID.of("0000000C-0000-0000-C000-000000000046")
IID_IDispatch = GUID.of("00020400-0000-0000-C000-000000000046")
IID_IEnumVARIANT = GUID.of("00020404-0000-0000-C000-000000000046")
IID_IPicture = GUID.of("7BF80980-BF32-101A-8BBB-00AA00300CAB")
IID_ICollection = GUID.of("A4C46780-499F-101B-BB78-00AA00383CBB")
IID_IPictureDisp = GUID.of("7BF80981-BF32-101A-8BBB-00AA00300CAB")
IID_IOrvaneRuntime = GUID.of("6D3C7B52-0F4E-4C0B-9A5D-3184E27F601C")

QUERY_INTERFACE = Slot(0, HRESULT, c_void_p, c_void_p)
ADD_REF = Slot(1, c_uint32)
RELEASE = Slot(2, c_uint32)

GET_TYPE_INFO_COUNT = Slot(3, HRESULT, c_void_p)
GET_TYPE_INFO = Slot(4, HRESULT, c_uint32, c_uint32, c_void_p)
GET_IDS_OF_NAMES = Slot(5, HRESULT, c_void_p, c_void_p, c_uint32, c_uint32, c_void_p)
INVOKE = Slot(6, HRESULT, c_int32, c_void_p, c_uint32, c_uint16, c_void_p, c_void_p, c_void_p,
              c_void_p)

FACTORY_CREATE = Slot(3, HRESULT, c_void_p, c_void_p, c_void_p)

ENUM_NEXT = Slot(3, HRESULT, c_uint32, c_void_p, c_void_p)
ENUM_SKIP = Slot(4, HRESULT, c_uint32)
ENUM_RESET = Slot(5, HRESULT)
ENUM_CLONE = Slot(6, HRESULT, c_void_p)

STREAM_WRITE = Slot(4, HRESULT, c_void_p, c_uint32, c_void_p)
PICTURE_SAVE_AS_FILE = Slot(15, HRESULT, c_void_p, c_int32, c_void_p)

RUNTIME_ALLOC_STRING = Slot(3, c_void_p, c_char_p, c_uint32)
RUNTIME_FREE_STRING = Slot(4, None, c_void_p)
RUNTIME_CREATE_ARRAY = Slot(5, c_void_p, c_uint16, c_uint32, c_void_p)
RUNTIME_DESTROY_ARRAY = Slot(6, HRESULT, c_void_p)
RUNTIME_ARRAY_TYPE = Slot(7, HRESULT, c_void_p, c_void_p)
RUNTIME_CLEAR_VARIANT = Slot(8, HRESULT, c_void_p)
RUNTIME_GET_TYPE_LIBRARY = Slot(12, HRESULT, c_void_p)
RUNTIME_GET_VERSION = Slot(13, HRESULT, c_void_p, c_void_p)
RUNTIME_CREATE_OBJECT = Slot(14, HRESULT, c_char_p, c_void_p)

INFO_GET_ATTRIBUTES = Slot(3, HRESULT, c_void_p)
INFO_GET_FUNCTION = Slot(5, HRESULT, c_uint32, c_void_p)
INFO_GET_VARIABLE = Slot(6, HRESULT, c_uint32, c_void_p)
INFO_GET_NAMES = Slot(7, HRESULT, c_int32, c_void_p, c_uint32, c_void_p)
INFO_GET_PARENT = Slot(8, HRESULT, c_uint32, c_void_p)
INFO_GET_DOCUMENTATION = Slot(12, HRESULT, c_int32, c_void_p, c_void_p, c_void_p, c_void_p)
INFO_GET_REFERRED = Slot(14, HRESULT, c_uint32, c_void_p)
INFO_GET_LIBRARY = Slot(18, HRESULT, c_void_p, c_void_p)
INFO_FREE_ATTRIBUTES = Slot(19, None, c_void_p)
INFO_FREE_FUNCTION = Slot(20, None, c_void_p)
INFO_FREE_VARIABLE = Slot(21, None, c_void_p)

LIBRARY_COUNT = Slot(3, c_uint32)
LIBRARY_TYPE = Slot(4, HRESULT, c_uint32, c_void_p)
LIBRARY_DOCUMENTATION = Slot(9, HRESULT, c_int32, c_void_p, c_void_p, c_void_p, c_void_p)

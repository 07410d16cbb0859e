"""What every call stands on: errors, memory, and the thread that objects belong to."""

import atexit
import ctypes
import threading
from collections import deque
from ctypes import c_uint16, c_uint32, c_void_p
from functools import partial

from . import _abi

_CONTROL_FACILITY = 0x800A

# What the statuses of the binary interface are as run-time errors.
_NUMBERS = {
    _abi.DISP_E_TYPEMISMATCH: 13,
    _abi.DISP_E_OVERFLOW: 6,
    _abi.DISP_E_BADINDEX: 9,
    _abi.DISP_E_DIVBYZERO: 11,
    _abi.E_OUTOFMEMORY: 7,
    _abi.DISP_E_UNKNOWNNAME: 438,
    _abi.DISP_E_MEMBERNOTFOUND: 438,
    _abi.DISP_E_PARAMNOTOPTIONAL: 449,
}
_TEXTS = {
    6: "Overflow",
    7: "Out of memory",
    9: "Subscript out of range",
    11: "Division by zero",
    13: "Type mismatch",
    438: "The object has no such member",
    449: "Argument not optional",
}


class Error(Exception):
    """A failed call.

    `number` is the run-time error's number (53, 445, ...), or the status as it is where the
    failure is none of the library's own; `description` and `source` are texts. One that is raised
    in a host object arrives in the library with the same three.
    """

    def __init__(self, number: int, description: str = "", source: str = "") -> None:
        super().__init__(number, description, source)
        self.number = number
        self.description = description
        self.source = source

    def __str__(self) -> str:
        number = self.number if self.number >= 0 else "0x%08X" % (self.number & 0xFFFFFFFF)
        return "%s: %s" % (number, self.description) if self.description else str(number)


def number_of(status):
    """The run-time error's number of a failed status."""
    known = _NUMBERS.get(status)
    if known is not None:
        return known
    bits = status & 0xFFFFFFFF
    return bits & 0xFFFF if bits >> 16 == _CONTROL_FACILITY and bits & 0xFFFF else status


def status_of(number):
    """The status that a run-time error crosses the binary interface as."""
    bits = (_CONTROL_FACILITY << 16) + number if 1 <= number <= 0xFFFF else number
    bits &= 0xFFFFFFFF
    return bits - (1 << 32) if bits >> 31 else bits


def error_of(status, what=""):
    """The error of a failed status that came without a description."""
    number = number_of(status)
    text = _TEXTS.get(number, "The call failed")
    return Error(number, "%s (%s)" % (text, what) if what else text)


def check(status, what=""):
    """Raises `Error` for a failed status."""
    if status < 0:
        raise error_of(status, what)


class Memory:
    """Strings, arrays and values of the binary interface: `IOrvaneRuntime` of the first library.

    All libraries allocate alike, so that one serves them all.
    """

    def __init__(self):
        self.is_bound = False

    def bind(self, runtime):
        """Takes the functions of an `IOrvaneRuntime`, which stays for the rest of the process."""
        for name, slot in (("alloc_string", _abi.RUNTIME_ALLOC_STRING),
                           ("free_string", _abi.RUNTIME_FREE_STRING),
                           ("create_array", _abi.RUNTIME_CREATE_ARRAY),
                           ("destroy_array", _abi.RUNTIME_DESTROY_ARRAY),
                           ("array_type", _abi.RUNTIME_ARRAY_TYPE),
                           ("clear_variant", _abi.RUNTIME_CLEAR_VARIANT)):
            setattr(self, name, partial(slot.of(runtime), runtime))
        self.runtime = runtime
        self.is_bound = True

    def __getattr__(self, name):
        # Before any library is loaded: `orvane.array(...)` is as good a first call as any.
        if name.startswith("_") or self.is_bound:
            raise AttributeError(name)
        from . import _library
        _library.default()
        return self.__dict__[name]


memory = Memory()


def new_text(text):
    """A string of the binary interface, which the caller frees."""
    units = text.encode("utf-16-le", "surrogatepass")
    made = memory.alloc_string(units, len(units) >> 1)
    if not made:
        raise MemoryError("no memory for a text of %d units" % (len(units) >> 1))
    return made


def text_at(pointer):
    """The text of a string of the binary interface, which stays the owner's."""
    if not pointer:
        return ""
    size = c_uint32.from_address(pointer - 4).value
    return ctypes.string_at(pointer, size & ~1).decode("utf-16-le", "surrogatepass")


def take_text(pointer):
    """The text of a string, which is freed."""
    text = text_at(pointer)
    memory.free_string(pointer)
    return text


def query(pointer, iid):
    """Another interface of the object, with a reference of its own; 0 if it has none such."""
    found = c_void_p()
    status = _abi.QUERY_INTERFACE(pointer, ctypes.addressof(iid), ctypes.addressof(found))
    return found.value if status >= 0 and found.value else 0


def version_of(runtime):
    """The library's file version: four parts, and the text."""
    parts = (c_uint16 * 4)()
    text = c_void_p()
    check(_abi.RUNTIME_GET_VERSION(runtime, ctypes.addressof(parts), ctypes.addressof(text)))
    return tuple(parts), take_text(text.value)


class Apartment:
    """A thread and the references that Python holds on it.

    The library's objects belong to the thread that made them. What Python drops on another thread
    waits here until the owner's next call; what is left is released when the thread ends.
    """

    def __init__(self):
        self.pending = deque()
        self.live = {}
        self.globals = {}
        self.failure = None
        self.ended = False

    def hold(self, holder, pointer):
        """Notes that `holder` has a reference to `pointer`."""
        self.live[id(holder)] = pointer

    def drop(self, holder):
        """Gives the holder's reference back, now or as soon as its thread comes by."""
        pointer = self.live.pop(id(holder), None)
        if pointer is None:
            return
        if not self.ended and current.apartment is self:
            _abi.RELEASE(pointer)
        else:
            self.pending.append(pointer)

    def drain(self):
        """Releases what other threads dropped."""
        while self.pending:
            _abi.RELEASE(self.pending.popleft())

    def close(self):
        """Releases everything: the thread ends."""
        if self.ended:
            return
        self.ended = True
        self.globals.clear()
        self.drain()
        while self.live:
            _abi.RELEASE(self.live.popitem()[1])


class _ThreadEnd:
    """Lies in the thread's own storage and goes with it."""

    def __init__(self, apartment):
        self.apartment = apartment

    def __del__(self):
        self.apartment.close()


class _Current(threading.local):
    """The calling thread's apartment."""

    def __init__(self):
        self.apartment = Apartment()
        self.end = _ThreadEnd(self.apartment)


current = _Current()


def check_thread(apartment):
    """Raises RPC_E_WRONG_THREAD when an object of `apartment` is used on another thread."""
    if apartment is not current.apartment or apartment.ended:
        text = "The object belongs to another thread"
        if apartment.ended:
            text = "The thread that the object belongs to has ended"
        raise Error(_abi.RPC_E_WRONG_THREAD, text, "orvane")
    if apartment.pending:
        apartment.drain()


atexit.register(lambda: current.apartment.close())

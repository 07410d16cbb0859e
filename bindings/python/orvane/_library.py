"""Finding and loading a library, and what it offers by name."""

import ctypes
import os
import pathlib
import sys
import threading
from ctypes import c_void_p

from . import _abi, _host  # noqa: F401 (host objects register themselves)
from ._classes import make_classes, make_enumerations
from ._dispatch import adopt, by_interface, wrap
from ._runtime import Error, check, current, error_of, memory, query, version_of
from ._typeinfo import Description, interface_id

_FILE = "libOrvaneBase0301.so"
_MAIN_CLASS = "{9BFF0E80-2887-4ECA-8C35-F1A21B8CFD94}"


class Library:
    """A loaded library: `create` makes objects; hidden global instances, enumerations and their
    constants' classes are attributes, as `library.orvMain`. It stays loaded until the process
    ends."""

    def __init__(self, path, class_id=_MAIN_CLASS):
        self.path = os.fspath(path)
        entries = ctypes.CDLL(self.path, mode=os.RTLD_NOW | os.RTLD_LOCAL)
        self._get_class_object = entries.DllGetClassObject
        self._get_class_object.argtypes = [c_void_p, c_void_p, c_void_p]
        self._get_class_object.restype = _abi.HRESULT
        runtime = self._class_object(_abi.GUID.of(class_id), _abi.IID_IOrvaneRuntime)
        if not memory.is_bound:
            memory.bind(runtime)
        self.version, self.version_text = version_of(runtime)
        description = self._describe(runtime)
        if memory.runtime != runtime:
            _abi.RELEASE(runtime)
        self.name = description.name
        self.__doc__ = description.help
        self.classes = description.classes
        module = "orvane" if class_id == _MAIN_CLASS else self.name
        self.enumerations = make_enumerations(description, module)
        self._kinds = make_classes(description, self.enumerations, module)

    @staticmethod
    def _describe(runtime):
        place = c_void_p()
        check(_abi.RUNTIME_GET_TYPE_LIBRARY(runtime, ctypes.addressof(place)))
        try:
            return Description(place.value)
        finally:
            _abi.RELEASE(place.value)

    def _class_object(self, class_id, iid):
        place = c_void_p()
        status = self._get_class_object(ctypes.addressof(class_id), ctypes.addressof(iid),
                                        ctypes.addressof(place))
        if status < 0:
            raise error_of(status, "no class %s in %s" % (class_id, self.path))
        return place.value

    def _class_named(self, name):
        found = self.classes.get(name.rpartition(".")[2])
        prefix = name.rpartition(".")[0]
        if found is not None and prefix in ("", self.name):
            return found
        asked = name.strip("{}").lower()
        for each in self.classes.values():
            if each.class_id.strip("{}").lower() == asked:
                return each
        lower = {each.lower(): each for each in self.classes}
        near = lower.get(name.rpartition(".")[2].lower())
        if near is not None and prefix.lower() in ("", self.name.lower()):
            return self.classes[near]
        return None

    def create(self, name):
        """A new object of a class, named as "PictureInfo", "OrvBase0301.PictureInfo" or by its
        identifier "{83A3985F-...}"; any other ProgID is that of a class of another component that
        is registered. Raises 429 for a class that isn't there or can't be made."""
        described = self._class_named(name)
        if described is None:
            return self._create_registered(name)
        if not described.can_create and not described.is_global:
            raise Error(429, "The class %s gives no objects to hosts: the library makes them" %
                        described.name, "orvane")
        factory = self._class_object(described.guid, _abi.IID_IClassFactory)
        place = c_void_p()
        try:
            status = _abi.FACTORY_CREATE(factory, None, ctypes.addressof(_abi.IID_IDispatch),
                                         ctypes.addressof(place))
        finally:
            _abi.RELEASE(factory)
        check(status, described.name)
        return adopt(self._kinds[described.interface], place.value)

    def _create_registered(self, name):
        """An object of a class of another component, by the ProgID of its registration."""
        place = c_void_p()
        units = (name + "\0").encode("utf-16-le", "surrogatepass")
        status = _abi.RUNTIME_CREATE_OBJECT(memory.runtime, units, ctypes.addressof(place))
        if status < 0:
            raise Error(429, "No class %s is registered, and the library has none; it has %s" %
                        (name, ", ".join(sorted(self.classes))), "orvane")
        pointer = query(place.value, _abi.IID_IDispatch)
        _abi.RELEASE(place.value)
        if not pointer:
            raise Error(430, "Objects of %s can't be called by name" % name, "orvane")
        _learn(pointer)
        return wrap(pointer)

    def __getattr__(self, name):
        if name.startswith("_") or "classes" not in self.__dict__:
            raise AttributeError(name)
        described = self.classes.get(name)
        if described is not None and described.is_global:
            return self._global(name)
        if name in self.enumerations:
            return self.enumerations[name]
        if described is not None:
            raise AttributeError("%s has no global instance: use orvane.create(%r)" % (name, name))
        raise AttributeError("%s has neither a global object nor an enumeration %s" %
                             (self.name, name))

    def _global(self, name):
        """The calling thread's hidden instance, which lives as long as the thread."""
        known = current.apartment.globals
        instance = known.get((self.path, name))
        if instance is None:
            instance = known[(self.path, name)] = self.create(name)
        return instance

    def __dir__(self):
        named = [each.name for each in self.classes.values() if each.is_global]
        return sorted([*super().__dir__(), *named, *self.enumerations])

    def __repr__(self):
        return "<%s %s from %s>" % (self.name, self.version_text, self.path)


def _learn(pointer):
    """Makes the classes of the library that an object comes from, unless they are known."""
    info, library = c_void_p(), c_void_p()
    if _abi.GET_TYPE_INFO(pointer, 0, 0, ctypes.addressof(info)) < 0 or not info.value:
        return
    try:
        known = interface_id(info.value) in by_interface
        index = ctypes.c_uint32()
        if known or _abi.INFO_GET_LIBRARY(info.value, ctypes.addressof(library),
                                          ctypes.addressof(index)) < 0:
            return
        description = Description(library.value)
        make_classes(description, make_enumerations(description, description.name),
                     description.name)
    finally:
        _abi.RELEASE(info.value)
        if library.value:
            _abi.RELEASE(library.value)


_lock = threading.RLock()
_loaded = {}
_default = None


def load(path, class_id=_MAIN_CLASS):
    """Loads a library of the same make, whose names are then attributes of what comes back.

    `class_id` is the identifier of any one of its classes, by which it is asked for the rest; it
    is needed for a library that isn't this one."""
    key = os.path.realpath(path)
    with _lock:
        if key not in _loaded:
            _loaded[key] = Library(path, class_id)
        return _loaded[key]


def _candidates():
    here = pathlib.Path(__file__).resolve().parent
    yield here / _FILE
    yield here.parent / _FILE
    for folder in here.parents:
        yield folder / "build" / "linux" / "bin" / _FILE
        yield folder / "build" / "linux" / _FILE
    for folder in dict.fromkeys((sys.prefix, "/usr/local", "/usr")):
        for below in ("lib", "lib/orvane", "lib/x86_64-linux-gnu"):
            yield pathlib.Path(folder) / below / _FILE


def default():
    """The library itself, loaded on first use: the one that ORVANE_LIBRARY names, else the first
    beside the package, in `build/linux` above it, or where it is installed."""
    global _default
    with _lock:
        if _default is None:
            _default = load(_find())
        return _default


def _find():
    named = os.environ.get("ORVANE_LIBRARY")
    if named:
        return named
    for path in _candidates():
        if path.is_file():
            return path
    raise OSError("%s was found neither beside the package nor in build/linux nor where libraries "
                  "are installed; the environment variable ORVANE_LIBRARY can name it" % _FILE)

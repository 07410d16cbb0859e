#pragma once

#include <cstdint>
#include <utility>

namespace orvane::automation {

/// Runs `action(value)` when the library is unloaded, last registered first. At the end of the
/// process nothing is run on Windows, and on Linux only after the last exit handler: an object that
/// a host releases while the process exits still finds everything in place, which static
/// destructors would not give.
void atUnload(void (*action)(void*), void* value);

/// Carries the actions out; called by the module's entry when it is unloaded.
void runUnloadActions();

/// Part of an object that hosts hold and that is no automation class (an enumerator, a class
/// factory, type information): the library must not be unloaded before it goes.
class LibraryUse {
public:
    LibraryUse();
    LibraryUse(const LibraryUse&) : LibraryUse() {}
    LibraryUse& operator=(const LibraryUse&) = default;
    ~LibraryUse();

    /// How many there are.
    static std::uint32_t count();
};

/// An object that lives from first use until the library is unloaded.
template <class T, class Make>
T& permanent(Make&& make) {
    T* object = new T(make());
    atUnload([](void* value) { delete static_cast<T*>(value); }, object);
    return *object;
}

}  // namespace orvane::automation

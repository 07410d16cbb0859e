#pragma once

#include "platform/handles.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace orvane::platform {

/// What a handle stands for. A handle of one kind is not good for another.
enum class HandleKind : std::uint8_t {
    none,
    file,
    module,
    bitmap,
    brush,
    pen,
    deviceContext,
    icon,
    metafile,
    mutex,
    registryKey,
    gdiplusToken,
    gdiplusImage,
    gdiplusGraphics
};

/// All handles of the process: 20 bits of slot number and above them 12 bits of generation, never
/// 0. A slot is taken again only when a thousand others have been freed after it, and then with the
/// next generation: a handle that was closed becomes the name of something else after four million
/// others at the earliest, and until then every use of it fails. No handle is one of the registry's
/// predefined keys.
///
/// Every function may be called on any thread. An object that is in use on one thread while another
/// closes its handle lives until the first is done with it.
class HandleTable {
public:
    constexpr HandleTable() = default;
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;

    /// A new handle of `object`, or 0 with the last error 8 (no memory) or 4 (a million are open).
    std::uint32_t add(HandleKind kind, std::shared_ptr<void> object);

    /// The object of a handle; null with the last error 6 when there is none of this kind.
    std::shared_ptr<void> find(HandleKind kind, std::uint32_t handle);

    /// What a handle stands for; `HandleKind::none` for one that isn't open.
    HandleKind kindOf(std::uint32_t handle);

    /// Takes a handle out of the table and gives its object; null with the last error 6 when there
    /// is none of this kind.
    std::shared_ptr<void> remove(HandleKind kind, std::uint32_t handle);

    /// Handles of one kind that are open.
    std::size_t count(HandleKind kind);

    /// Frees the table's memory. Every handle is stale from then on.
    void discard();

private:
    struct Slot {
        std::shared_ptr<void> object;
        std::uint16_t generation = 1;
        HandleKind kind = HandleKind::none;
    };
    struct State {
        std::vector<Slot> slots;
        std::deque<std::uint32_t> freeSlots;
    };

    Slot* openSlot(std::uint32_t handle);
    Slot* slotOf(HandleKind kind, std::uint32_t handle);
    std::uint32_t freeSlot();

    std::mutex mutex_;
    State* state_ = nullptr;
    bool discarded_ = false;
};

/// The process's table.
HandleTable& handles();

/// The typed forms. `Object` names its kind in `kKind` and the handle's type in `Handle`.
template <class Object>
typename Object::Handle addHandle(std::shared_ptr<Object> object) {
    return static_cast<typename Object::Handle>(handles().add(Object::kKind, std::move(object)));
}

template <class Object>
std::shared_ptr<Object> findObject(typename Object::Handle handle) {
    return std::static_pointer_cast<Object>(
        handles().find(Object::kKind, static_cast<std::uint32_t>(handle)));
}

template <class Object>
std::shared_ptr<Object> removeHandle(typename Object::Handle handle) {
    return std::static_pointer_cast<Object>(
        handles().remove(Object::kKind, static_cast<std::uint32_t>(handle)));
}

}  // namespace orvane::platform

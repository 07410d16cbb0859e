#include "platform/linux/handle_table.h"

#include "platform/linux/errors.h"

#include <algorithm>
#include <new>

namespace orvane::platform {

namespace {

constexpr std::uint32_t kSlotBits = 20;
constexpr std::uint32_t kSlotMask = (1u << kSlotBits) - 1;
constexpr std::uint32_t kMostSlots = kSlotMask;  // the last number stays unused: no handle is ~0
constexpr std::uint32_t kGenerationMask = 0xFFF;
// The handles from 0x80000000 on are the predefined keys of the registry.
constexpr std::uint32_t kGenerationOfPredefinedKeys = 0x80000000u >> kSlotBits;
constexpr std::size_t kFreeSlotsKept = 1024;

constinit HandleTable processTable;

// The table itself is never destroyed, so that a late call finds it empty instead of gone; its
// memory goes when the library is unloaded.
struct AtUnload {
    AtUnload() = default;
    AtUnload(const AtUnload&) = delete;
    AtUnload& operator=(const AtUnload&) = delete;
    ~AtUnload() { processTable.discard(); }
} atUnload;

}  // namespace

HandleTable& handles() {
    return processTable;
}

std::uint32_t HandleTable::freeSlot() {
    if (state_->freeSlots.size() > kFreeSlotsKept || state_->slots.size() >= kMostSlots) {
        if (state_->freeSlots.empty()) {
            return kMostSlots;
        }
        const std::uint32_t number = state_->freeSlots.front();
        state_->freeSlots.pop_front();
        return number;
    }
    state_->slots.emplace_back();
    return static_cast<std::uint32_t>(state_->slots.size() - 1);
}

std::uint32_t HandleTable::add(HandleKind kind, std::shared_ptr<void> object) {
    const std::scoped_lock lock(mutex_);
    if (discarded_) {
        return failWith(kErrorNotEnoughMemory, 0u);
    }
    try {
        if (state_ == nullptr) {
            state_ = new State;
        }
        const std::uint32_t number = freeSlot();
        if (number == kMostSlots) {
            return failWith(kErrorTooManyOpenFiles, 0u);
        }
        Slot& slot = state_->slots[number];
        slot.object = std::move(object);
        slot.kind = kind;
        return (std::uint32_t{slot.generation} << kSlotBits) | number;
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, 0u);
    }
}

HandleTable::Slot* HandleTable::openSlot(std::uint32_t handle) {
    const std::uint32_t number = handle & kSlotMask;
    if (state_ == nullptr || number >= state_->slots.size()) {
        return nullptr;
    }
    Slot& slot = state_->slots[number];
    const bool isOpen = slot.kind != HandleKind::none && slot.generation == handle >> kSlotBits;
    return isOpen ? &slot : nullptr;
}

HandleTable::Slot* HandleTable::slotOf(HandleKind kind, std::uint32_t handle) {
    Slot* slot = openSlot(handle);
    return slot != nullptr && slot->kind == kind ? slot
                                                 : failWith<Slot*>(kErrorInvalidHandle, nullptr);
}

HandleKind HandleTable::kindOf(std::uint32_t handle) {
    const std::scoped_lock lock(mutex_);
    const Slot* slot = openSlot(handle);
    return slot == nullptr ? HandleKind::none : slot->kind;
}

std::shared_ptr<void> HandleTable::find(HandleKind kind, std::uint32_t handle) {
    const std::scoped_lock lock(mutex_);
    const Slot* slot = slotOf(kind, handle);
    return slot == nullptr ? nullptr : slot->object;
}

std::shared_ptr<void> HandleTable::remove(HandleKind kind, std::uint32_t handle) {
    const std::scoped_lock lock(mutex_);
    Slot* slot = slotOf(kind, handle);
    if (slot == nullptr) {
        return nullptr;
    }
    slot->kind = HandleKind::none;
    std::uint32_t next = (slot->generation + 1u) & kGenerationMask;
    if (next == kGenerationOfPredefinedKeys) ++next;
    slot->generation = static_cast<std::uint16_t>(std::max(next, 1u));
    try {
        state_->freeSlots.push_back(handle & kSlotMask);
    } catch (const std::bad_alloc&) {
        // The slot stays unused; the handle is closed all the same.
    }
    return std::move(slot->object);
}

std::size_t HandleTable::count(HandleKind kind) {
    const std::scoped_lock lock(mutex_);
    if (state_ == nullptr) {
        return 0;
    }
    return static_cast<std::size_t>(
        std::count_if(state_->slots.begin(), state_->slots.end(),
                      [kind](const Slot& slot) { return slot.kind == kind; }));
}

void HandleTable::discard() {
    State* state = nullptr;
    {
        const std::scoped_lock lock(mutex_);
        std::swap(state, state_);
        discarded_ = true;
    }
    delete state;
}

}  // namespace orvane::platform

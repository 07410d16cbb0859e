#include "frame/automation/apartment.h"

#include "frame/automation/library_lifetime.h"
#include "platform/kernel32.h"

#include <algorithm>
#include <mutex>

namespace orvane {

RandomGenerator& apartmentRandom() {
    return automation::Apartment::current().random();
}

namespace automation {
namespace {

constexpr std::uint32_t kNoSlot = 0xFFFFFFFF;

// The platform's thread slot with a plain pointer, and a list of all apartments: objects with
// destructors in thread-local storage would hang the statically linked DLL when it is unloaded.
struct Registry {
    std::mutex mutex;
    std::vector<Apartment*> apartments;
    std::uint32_t slot = kNoSlot;
};

Registry& registry() {
    static Registry& instance = *new Registry;
    return instance;
}

constinit std::atomic<std::uint32_t> threadSlot{kNoSlot};
constinit std::atomic<std::uint32_t> liveCount{0};
constinit std::atomic<std::size_t> lastSlot{0};

}  // namespace

Apartment* Apartment::existing() {
    const std::uint32_t slot = threadSlot.load();
    return slot == kNoSlot ? nullptr
                           : static_cast<Apartment*>(platform::kernel32.TlsGetValue(slot));
}

Apartment& Apartment::current() {
    if (Apartment* known = existing()) return *known;
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    if (threadSlot.load() == kNoSlot) {
        const std::uint32_t slot = platform::kernel32.TlsAlloc(&Apartment::threadEnded);
        if (slot == kNoSlot) throw std::bad_alloc();
        threadSlot = slot;
        atUnload(&Apartment::freeAll, nullptr);
    }
    auto* apartment = new Apartment;
    all.apartments.push_back(apartment);
    if (!platform::kernel32.TlsSetValue(threadSlot, apartment)) {
        all.apartments.pop_back();
        delete apartment;
        throw std::bad_alloc();
    }
    return *apartment;
}

// The library's whole start-up in an apartment: the generator is seeded from the clock.
Apartment::Apartment() {
    random_.seed(platform::kernel32.GetSystemTimeAsFileTime());
}

Apartment::~Apartment() = default;

std::uint32_t Apartment::liveObjects() {
    return liveCount;
}

void Apartment::releaseIdle() {
    Apartment* apartment = existing();
    if (apartment != nullptr && apartment->objects_ == 0) apartment->releaseState();
}

void Apartment::objectCreated() {
    ++objects_;
    ++liveCount;
}

void Apartment::objectDestroyed() {
    if (--objects_ == 0) {
        if (threadEnded_) {
            --liveCount;
            delete this;
            return;
        }
        if (existing() == this) releaseState();
    }
    --liveCount;
}

ModuleState& Apartment::state(std::size_t slot,
                              const std::function<std::unique_ptr<ModuleState>()>& create) {
    if (states_.size() <= slot) states_.resize(slot + 1);
    if (!states_[slot]) {
        states_[slot] = create();
        order_.push_back(slot);
    }
    return *states_[slot];
}

ModuleState* Apartment::existingState(std::size_t slot) const {
    return slot < states_.size() ? states_[slot].get() : nullptr;
}

void Apartment::dropState(std::size_t slot) {
    if (slot >= states_.size() || !states_[slot]) return;
    const auto dropped = std::move(states_[slot]);
    std::erase(order_, slot);
}

// What a state lets go of may run a host's code, and that may begin anew: the state of an object
// that lives again stays.
void Apartment::releaseState() {
    while (objects_ == 0 && !order_.empty())
        dropState(order_.back());
}

std::size_t Apartment::newSlot() {
    return ++lastSlot;
}

// The platform calls this as the thread ends: only memory may be freed. An apartment whose objects
// the host has not released yet stays until the last of them goes.
void Apartment::threadEnded(void* value) {
    auto* apartment = static_cast<Apartment*>(value);
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    std::erase(all.apartments, apartment);
    if (apartment->objects_ == 0) {
        delete apartment;
    } else {
        apartment->threadEnded_ = true;
    }
}

void Apartment::freeAll(void*) {
    Registry& all = registry();
    {
        const std::lock_guard lock(all.mutex);
        platform::kernel32.TlsFree(threadSlot.exchange(kNoSlot));
        for (Apartment* apartment : all.apartments) {
            // Objects that a host still holds would look for theirs.
            if (apartment->objects_ == 0) delete apartment;
        }
        all.apartments.clear();
    }
    delete &all;
}

}  // namespace automation
}  // namespace orvane

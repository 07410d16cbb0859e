#pragma once

#include "frame/random.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// State that exists once per apartment, that is per thread that uses the library.
namespace orvane::automation {

/// A piece of module state, dropped when its apartment is torn down.
class ModuleState {
public:
    virtual ~ModuleState() = default;
};

/// One thread's use of the library: its live objects, its random generator and the module state
/// that classes keep in it.
///
/// Module state is released when the apartment's last object dies. The apartment itself (plain
/// memory and the generator, so that a host that lets go of everything and comes back goes on in
/// the same sequence) ends with its thread or with the library.
class Apartment {
public:
    /// The calling thread's apartment, started on first use: the start seeds the generator.
    static Apartment& current();
    /// The same, or null when this thread has not used the library.
    static Apartment* existing();
    /// Live objects of all apartments together.
    static std::uint32_t liveObjects();
    /// Releases the calling thread's module state if none of its objects is alive.
    static void releaseIdle();

    void objectCreated();
    /// `thread` may be another than the apartment's own: the count is kept right all the same.
    void objectDestroyed();

    RandomGenerator& random() { return random_; }

    /// The state in `slot`, made by `create` on first use.
    ModuleState& state(std::size_t slot,
                       const std::function<std::unique_ptr<ModuleState>()>& create);
    ModuleState* existingState(std::size_t slot) const;
    void dropState(std::size_t slot);

    /// A number for a new kind of module state.
    static std::size_t newSlot();

    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;

private:
    Apartment();
    ~Apartment();
    void releaseState();
    static void threadEnded(void* apartment);
    static void freeAll(void*);

    std::atomic<std::uint32_t> objects_{0};
    bool threadEnded_ = false;
    RandomGenerator random_;
    std::vector<std::unique_ptr<ModuleState>> states_;
    std::vector<std::size_t> order_;  ///< slots in the order in which their states were made
};

/// One kind of module state: a `T` per apartment.
///
///     constinit ApartmentState<Ref<CommandLineParser>> cachedParser;
///     cachedParser.get() = ...;
template <class T>
class ApartmentState {
public:
    constexpr ApartmentState() = default;

    /// The calling thread's `T`, made on first use.
    T& get() {
        auto& state = Apartment::current().state(
            slot(), [] { return std::unique_ptr<ModuleState>(std::make_unique<Holder>()); });
        return static_cast<Holder&>(state).value;
    }
    /// The calling thread's `T`, or null when there is none.
    T* existing() {
        Apartment* apartment = Apartment::existing();
        auto* state = apartment ? apartment->existingState(slot()) : nullptr;
        return state ? &static_cast<Holder*>(state)->value : nullptr;
    }
    /// Drops the calling thread's `T`.
    void drop() {
        if (Apartment* apartment = Apartment::existing()) drop(*apartment);
    }
    /// Drops another apartment's `T`: for an object that is released after its thread has ended.
    void drop(Apartment& apartment) { apartment.dropState(slot()); }

private:
    struct Holder final : ModuleState {
        T value{};
    };

    std::size_t slot() {
        std::size_t known = slot_.load();
        if (known == 0) {
            std::size_t fresh = Apartment::newSlot();
            if (slot_.compare_exchange_strong(known, fresh)) known = fresh;
        }
        return known;
    }

    std::atomic<std::size_t> slot_{0};
};

}  // namespace orvane::automation

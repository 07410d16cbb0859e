#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

#include <map>
#include <string>
#include <vector>

namespace orvane::test {

/// Two handles that come back in one record.
struct Pair {
    platform::FileHandle left = platform::FileHandle::none;
    platform::FileHandle right = platform::FileHandle::none;
};
inline void describe(std::string& out, const Pair& pair) {
    out += "{" + platform::described(pair.left) + ", " + platform::described(pair.right) + "}";
}
inline std::vector<std::string> handlesIn(const Pair& pair) {
    return {platform::described(pair.left), platform::described(pair.right)};
}

/// A small table for the tests of the shims, with each way of handing out and taking back.
struct Toy {
    platform::Operation<platform::FileHandle(const std::string& name)> Open{
        "toy",
        "Open",
        platform::FileHandle::none,
        platform::kErrorFileNotFound,
        {"thing", platform::Holding::kResult}};
    platform::Operation<bool(Pair& pair)> OpenTwo{
        "toy", "OpenTwo", false, platform::kErrorTooManyOpenFiles, {"thing", 0}};
    platform::Operation<bool(platform::FileHandle thing)> Close{
        "toy",
        "Close",
        false,
        platform::kErrorInvalidHandle,
        {"thing", platform::Holding::kNothing, 0}};
    platform::Operation<std::int32_t(platform::FileHandle thing, bool own)> Adopt{
        "toy",
        "Adopt",
        -1,
        platform::kErrorNotEnoughMemory,
        {"thing", platform::Holding::kNothing, 0, 1}};
    platform::Operation<std::string(platform::FileHandle thing)> Name{
        "toy", "Name", {}, platform::kErrorInvalidHandle};
    platform::Operation<void(std::string& text)> Decorate{"toy", "Decorate"};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(Open, OpenTwo, Close, Adopt, Name, Decorate);
    }
};

/// What is behind the table: the things that are open, by handle.
inline std::map<platform::FileHandle, std::string> toyThings;

namespace toy_functions {

inline platform::FileHandle open(const std::string& name) {
    static std::uint32_t last = 0;
    const auto handle = static_cast<platform::FileHandle>(++last);
    toyThings[handle] = name;
    return handle;
}
inline bool openTwo(Pair& pair) {
    pair = {open("left"), open("right")};
    return true;
}
inline bool close(platform::FileHandle thing) {
    if (toyThings.erase(thing) != 0) return true;
    platform::setLastError(platform::kErrorInvalidHandle);
    return false;
}
inline std::int32_t adopt(platform::FileHandle thing, bool own) {
    if (!toyThings.contains(thing)) return -5;
    if (own) close(thing);
    return 0;
}
inline std::string name(platform::FileHandle thing) {
    return toyThings.contains(thing) ? toyThings[thing] : std::string();
}
inline void decorate(std::string& text) {
    text = "<" + text + ">";
}

}  // namespace toy_functions

constexpr Toy boundToy() {
    Toy toy;
    toy.Open.bind<toy_functions::open>();
    toy.OpenTwo.bind<toy_functions::openTwo>();
    toy.Close.bind<toy_functions::close>();
    toy.Adopt.bind<toy_functions::adopt>();
    toy.Name.bind<toy_functions::name>();
    toy.Decorate.bind<toy_functions::decorate>();
    return toy;
}

}  // namespace orvane::test

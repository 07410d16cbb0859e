#pragma once

#include "platform/kernel32.h"
#include "platform/user32.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace orvane::test {

/// The calls on mutexes, without those that find a scope's name.
inline std::vector<platform::OperationBase*> mutexCalls() {
    return {&platform::kernel32.CreateMutexA, &platform::kernel32.CloseMutexHandle};
}

/// Lets mutexes be made in name only, with the handles 11, 12, 13, ... and the last error given.
class FakeMutexes {
public:
    explicit FakeMutexes(std::uint32_t error = 0, std::uint32_t first = 11)
        : next_(first), create_(platform::kernel32.CreateMutexA,
                                [this, error](const std::string& name) {
                                    names_.push_back(name);
                                    platform::setLastError(error);
                                    return next_ == 0 ? platform::MutexHandle::none
                                                      : platform::MutexHandle{next_++};
                                }),
          close_(platform::kernel32.CloseMutexHandle, [this](platform::MutexHandle handle) {
              closed_.push_back(static_cast<int>(handle));
              platform::setLastError(platform::kErrorInvalidHandle);
              return false;
          }) {}

    const std::vector<std::string>& names() const { return names_; }
    const std::vector<int>& closed() const { return closed_; }

private:
    std::uint32_t next_;
    std::vector<std::string> names_;
    std::vector<int> closed_;
    ScopedTarget<platform::MutexHandle(const std::string&)> create_;
    ScopedTarget<bool(platform::MutexHandle)> close_;
};

/// A desktop with a name of any length.
class FakeDesktop {
public:
    explicit FakeDesktop(std::string name)
        : name_(std::move(name)),
          thread_(platform::kernel32.GetCurrentThreadId, [] { return 77u; }),
          desktop_(platform::user32.GetThreadDesktop,
                   [](std::uint32_t thread) {
                       EXPECT_EQ(thread, 77u);
                       return platform::DesktopHandle{5};
                   }),
          information_(platform::user32.GetUserObjectInformationA,
                       [this](platform::DesktopHandle desktop, platform::UserObjectInformation what,
                              std::span<std::uint8_t> buffer, std::uint32_t& needed) {
                           EXPECT_EQ(desktop, platform::DesktopHandle{5});
                           EXPECT_EQ(what, platform::UserObjectInformation::name);
                           sizes_.push_back(buffer.size());
                           needed = static_cast<std::uint32_t>(name_.size() + 1);
                           if (failing_ == sizes_.size() || buffer.size() < needed) return false;
                           std::copy_n(name_.c_str(), needed, buffer.begin());
                           return true;
                       }) {}

    /// Makes the call of this number fail although the buffer is large enough.
    void failCall(std::size_t number) { failing_ = number; }
    const std::vector<std::size_t>& sizes() const { return sizes_; }

private:
    std::string name_;
    std::vector<std::size_t> sizes_;
    std::size_t failing_ = 0;
    ScopedTarget<std::uint32_t()> thread_;
    ScopedTarget<platform::DesktopHandle(std::uint32_t)> desktop_;
    ScopedTarget<bool(platform::DesktopHandle, platform::UserObjectInformation,
                      std::span<std::uint8_t>, std::uint32_t&)>
        information_;
};

}  // namespace orvane::test

#pragma once

#include "platform/operation.h"
#include "support/ledger.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {

/// The operations of one or more tables, in their order.
template <class... Tables>
std::vector<platform::OperationBase*> operationsOf(Tables&... tables) {
    std::vector<platform::OperationBase*> operations;
    const auto add = [&operations](platform::OperationBase& operation) {
        operations.push_back(&operation);
    };
    (platform::forEachOperation(tables, add), ...);
    return operations;
}

/// Puts an interceptor in front of operations for its lifetime. Shims and fakes nest as scopes do:
/// the last one put in place goes first.
class ScopedInterception {
public:
    ScopedInterception(std::vector<platform::OperationBase*> operations,
                       platform::Interceptor& interceptor);
    ~ScopedInterception();
    ScopedInterception(const ScopedInterception&) = delete;
    ScopedInterception& operator=(const ScopedInterception&) = delete;

private:
    std::vector<platform::OperationBase*> operations_;
};

/// Notes the calls of its operations while it lives; the calls go through.
///
///     Recorder recorder(platform::kernel32);
///     ... what is tested ...
///     EXPECT_TRUE(recorder.saw({"CreateFileA(\"a.tga\", *) -> *", "ReadFile(*) -> true",
///                               "CloseHandle(*) -> true"}));
///     EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
class Recorder final : public platform::Interceptor {
public:
    /// Records every operation of the platform.
    Recorder();
    explicit Recorder(std::vector<platform::OperationBase*> operations);
    /// Records the operations of these tables.
    template <class Table, class... Tables>
    requires requires(Table& table) {
        table.visit([](auto&...) {});
    }
    explicit Recorder(Table& first, Tables&... more) : Recorder(operationsOf(first, more...)) {}

    const std::vector<platform::CallRecord>& calls() const { return calls_; }
    /// `Name(arguments) -> result` of every call, in order.
    std::vector<std::string> lines() const;
    /// The lines of one operation's calls.
    std::vector<std::string> linesOf(std::string_view name) const;
    /// The operations' names, in the order of the calls.
    std::vector<std::string> names() const;
    std::size_t count(std::string_view name) const;
    /// Handles that were handed out while recording and not taken back.
    std::vector<std::string> leftOpen() const { return ledger_.open(); }
    /// Forgets the calls; open handles stay known.
    void clear() { calls_.clear(); }

    /// Succeeds when the calls are exactly these, in this order; `*` in a pattern stands for any
    /// text. The failure's text shows both lists.
    testing::AssertionResult saw(const std::vector<std::string>& patterns) const;

    bool enter(platform::CallRecord&) override { return true; }
    void leave(const platform::CallRecord& call) override;

private:
    std::vector<platform::CallRecord> calls_;
    Ledger ledger_;
    ScopedInterception interception_;
};

/// Compares a text with a pattern in which `*` stands for any text, also an empty one.
bool matches(std::string_view text, std::string_view pattern);

/// Replaces one operation by a function of the same signature and puts it back at its end.
///
///     ScopedTarget fake(kernel32.GetTickCount, [] { return 5u; });
///
/// A fake that wants to call the real operation keeps a copy of it from before:
///
///     const auto real = kernel32.ReadFile;
///     ScopedTarget fake(kernel32.ReadFile, [&](FileHandle file, std::span<std::uint8_t> buffer,
///                                              std::uint32_t& read) {
///         return real(file, buffer.first(1), read);
///     });
template <class Signature>
class ScopedTarget;

template <class Result, class... Arguments>
class ScopedTarget<Result(Arguments...)> {
public:
    template <class Function>
    ScopedTarget(platform::Operation<Result(Arguments...)>& operation, Function function)
        : operation_(operation), function_(std::move(function)), target_(operation.target()),
          context_(operation.context()) {
        operation_.replace(&ScopedTarget::call, this);
    }
    ~ScopedTarget() { operation_.replace(target_, context_); }
    ScopedTarget(const ScopedTarget&) = delete;
    ScopedTarget& operator=(const ScopedTarget&) = delete;

private:
    static Result call(void* context, Arguments... arguments) {
        return static_cast<ScopedTarget*>(context)->function_(static_cast<Arguments>(arguments)...);
    }

    platform::Operation<Result(Arguments...)>& operation_;
    std::function<Result(Arguments...)> function_;
    typename platform::Operation<Result(Arguments...)>::Target target_;
    void* context_;
};

template <class Result, class... Arguments, class Function>
ScopedTarget(platform::Operation<Result(Arguments...)>&, Function)
    -> ScopedTarget<Result(Arguments...)>;

}  // namespace orvane::test

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// Operations are the library's only way to the platform. A table lists those of one system module
/// under their platform names; `win32` or `linux` binds each to the code that carries it out, and
/// a shim can stand between (recorder, torture, trace).
namespace orvane::platform {

/// The calling thread's last platform error: the number that a failed operation leaves.
std::uint32_t lastError();
void setLastError(std::uint32_t error);

/// The result of an operation that tells its failure by the number itself: 0 is success, any other
/// number is the error.
enum class ResultCode : std::uint32_t { success = 0 };

/// Where an operation hands out, or takes back, something that must not be left open.
struct Holding {
    static constexpr int kNothing = -2;
    static constexpr int kResult = -1;
    const char* kind = nullptr;  ///< "file", "dc", ...; null when the operation holds nothing
    int acquires = kNothing;     ///< `kResult` or the index of the argument that comes back
    int releases = kNothing;     ///< the index of the argument that is given back
    int onlyIf = kNothing;       ///< the index of a Boolean argument: given back only if it is true
};

/// One call as a shim sees it: texts of the arguments, and of the result once it is known.
struct CallRecord {
    const char* module;
    const char* name;
    Holding holding;
    std::vector<std::string> arguments;
    std::string result;
    bool failed = false;      ///< the result equals the operation's failure result
    std::uint32_t error = 0;  ///< the last error after the call
    /// Texts of the handles that a successful call handed out and took back.
    std::vector<std::string> acquired{};
    std::vector<std::string> released{};

    /// `Name(arguments) -> result`, one line.
    std::string text() const;
};

/// What a shim does around a call.
class Interceptor {
public:
    /// Called before the operation. False makes it fail as the platform would, without a call.
    virtual bool enter(CallRecord& call) = 0;
    /// Called after it, with the result and the arguments that came back.
    virtual void leave(const CallRecord& call) = 0;

protected:
    ~Interceptor() = default;
};

void describe(std::string& out, bool value);
void describe(std::string& out, std::int64_t value);
void describe(std::string& out, std::uint64_t value);
void describe(std::string& out, double value);
void describe(std::string& out, const char* text);
void describe(std::string& out, const std::string& text);
void describe(std::string& out, const std::u16string& text);
void describe(std::string& out, const std::vector<std::uint8_t>& bytes);

/// The text of one argument or result: numbers in decimal, texts in quotes, blocks by their size,
/// addresses as "null" or "address". Records add an overload beside their type.
template <class T>
std::string described(const T& value) {
    std::string out;
    if constexpr (std::is_same_v<T, bool>) {
        describe(out, value);
    } else if constexpr (std::is_enum_v<T> && requires { describe(out, value); }) {
        describe(out, value);
    } else if constexpr (std::is_enum_v<T>) {
        describe(out, static_cast<std::uint64_t>(static_cast<std::underlying_type_t<T>>(value)));
    } else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>) {
        describe(out, static_cast<std::int64_t>(value));
    } else if constexpr (std::is_integral_v<T>) {
        describe(out, static_cast<std::uint64_t>(value));
    } else if constexpr (requires { value.size_bytes(); }) {
        out = "<" + std::to_string(value.size_bytes()) + " bytes>";
    } else if constexpr (std::is_pointer_v<T>) {
        out = value == nullptr ? "null" : "address";
    } else {
        describe(out, value);
    }
    return out;
}

/// The texts of the handles in an argument or result: the value itself unless it is none. A record
/// that holds handles has an overload `handlesIn` beside its type.
template <class T>
std::vector<std::string> heldBy(const T& value) {
    if constexpr (requires { handlesIn(value); }) {
        return handlesIn(value);
    } else {
        std::string text = described(value);
        if (text == "0") return {};
        return {std::move(text)};
    }
}

/// The failure result of an operation that gives a text: it is empty.
struct EmptyFailure {};

/// The part of an operation that does not depend on its signature.
class OperationBase {
public:
    constexpr OperationBase(const char* module, const char* name, Holding holding)
        : module_(module), name_(name), holding_(holding) {}
    OperationBase(const OperationBase&) = default;
    OperationBase& operator=(const OperationBase&) = default;

    constexpr const char* module() const { return module_; }
    constexpr const char* name() const { return name_; }
    constexpr const Holding& holding() const { return holding_; }

    /// Puts a shim in front of whatever is there; `restore` takes the last one away again.
    virtual void intercept(Interceptor& interceptor) = 0;
    virtual void restore() = 0;

protected:
    ~OperationBase() = default;

private:
    const char* module_;
    const char* name_;
    Holding holding_;
};

template <class Signature>
class Operation;

template <class Result, class... Arguments>
class Operation<Result(Arguments...)> final : public OperationBase {
public:
    using Target = Result (*)(void* context, Arguments...);
    using ResultValue = std::conditional_t<std::is_void_v<Result>, int, Result>;
    // A stored string would keep the tables from being initialised at compile time.
    using Failure = std::conditional_t<std::is_class_v<ResultValue>, EmptyFailure, ResultValue>;

    /// `failure` is the result of a failed call (`{}` for texts: an empty one) and `error` the last
    /// error that such a call leaves when a shim makes it fail.
    constexpr Operation(const char* module, const char* name, Failure failure = {},
                        std::uint32_t error = 0, Holding holding = {})
        : OperationBase(module, name, holding), failure_(failure), error_(error) {}

    /// Carries the operation out.
    Result operator()(Arguments... arguments) const {
        return target_(context_, static_cast<Arguments>(arguments)...);
    }

    /// Binds a function of the operation's signature: how a platform fills its tables.
    template <auto function>
    constexpr void bind() {
        target_ = [](void*, Arguments... arguments) -> Result {
            return function(static_cast<Arguments>(arguments)...);
        };
        context_ = nullptr;
        bound_ = true;
    }

    // Not a comparison of the target with null: under UndefinedBehaviorSanitizer gcc doesn't take
    // that for a constant expression.
    constexpr bool isBound() const { return bound_; }
    constexpr Target target() const { return target_; }
    constexpr void* context() const { return context_; }

    /// Puts another target in place; the caller puts the former one back.
    void replace(Target newTarget, void* newContext) {
        target_ = newTarget;
        context_ = newContext;
        bound_ = newTarget != nullptr;
    }

    void intercept(Interceptor& interceptor) override {
        auto* shim = new Shim{this, &interceptor, target_, context_};
        replace(&Operation::throughShim, shim);
    }

    void restore() override {
        if (target_ != &Operation::throughShim) return;
        auto* shim = static_cast<Shim*>(context_);
        replace(shim->target, shim->context);
        delete shim;
    }

private:
    struct Shim {
        const Operation* operation;
        Interceptor* interceptor;
        Target target;
        void* context;
    };

    // The shim is copied: what runs inside the call may take it away.
    static Result throughShim(void* context, Arguments... arguments) {
        const Shim shim = *static_cast<const Shim*>(context);
        const Operation& self = *shim.operation;
        const std::uint32_t before = lastError();
        CallRecord call{self.module(), self.name(), self.holding(), {described(arguments)...}, {}};
        const bool proceed = shim.interceptor->enter(call);
        setLastError(proceed ? before : self.error_);
        if constexpr (std::is_void_v<Result>) {
            if (proceed) shim.target(shim.context, static_cast<Arguments>(arguments)...);
            call.error = lastError();
            finish(shim, call, arguments...);
        } else {
            Result result = proceed
                                ? shim.target(shim.context, static_cast<Arguments>(arguments)...)
                                : self.failureResult();
            call.error = lastError();
            call.result = described(result);
            call.failed = self.isFailure(result);
            if (!call.failed && call.holding.acquires == Holding::kResult) {
                call.acquired = heldBy(result);
            }
            finish(shim, call, arguments...);
            return result;
        }
    }

    static void finish(const Shim& shim, CallRecord& call,
                       const std::remove_reference_t<Arguments>&... arguments) {
        call.arguments = {described(arguments)...};
        const Holding& holding = call.holding;
        const bool condition = holding.onlyIf < 0 ||
                               call.arguments[static_cast<std::size_t>(holding.onlyIf)] == "true";
        if (!call.failed) {
            if (holding.acquires >= 0) call.acquired = heldByOne(holding.acquires, arguments...);
            if (condition) call.released = heldByOne(holding.releases, arguments...);
        }
        shim.interceptor->leave(call);
        setLastError(call.error);
    }

    static std::vector<std::string> heldByOne([[maybe_unused]] int index,
                                              const std::remove_reference_t<Arguments>&... all) {
        std::vector<std::string> handles;
        [[maybe_unused]] int next = 0;
        ((next++ == index ? void(handles = heldBy(all)) : void()), ...);
        return handles;
    }

    ResultValue failureResult() const {
        if constexpr (std::is_class_v<ResultValue>) {
            return {};
        } else {
            return failure_;
        }
    }

    /// Status codes fail in many ways: where the failure result is negative, every negative is one,
    /// so is every result code but success, and other types of status codes have a `failsAs` of
    /// their own beside them.
    bool isFailure(const ResultValue& result) const {
        if constexpr (std::is_same_v<ResultValue, ResultCode>) {
            return result != ResultCode::success;
        }
        if constexpr (requires { failsAs(result); }) return failsAs(result);
        if constexpr (std::is_integral_v<ResultValue> && std::is_signed_v<ResultValue>) {
            if (failure_ < 0) return result < 0;
        }
        return result == failureResult();
    }

    Target target_ = nullptr;
    void* context_ = nullptr;
    bool bound_ = false;
    Failure failure_;
    std::uint32_t error_;
};

/// True when every operation of a table is bound; platforms assert it at compile time.
template <class Table>
constexpr bool allBound(const Table& table) {
    bool bound = true;
    const_cast<Table&>(table).visit(
        [&bound](auto&... operations) { bound = (operations.isBound() && ...); });
    return bound;
}

/// Calls `action(OperationBase&)` for each operation of a table, in the table's order.
template <class Table, class Action>
void forEachOperation(Table& table, Action&& action) {
    table.visit([&action](auto&... operations) { (action(operations), ...); });
}

}  // namespace orvane::platform

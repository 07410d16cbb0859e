#pragma once

#include "frame/automation/array_argument.h"
#include "frame/automation/error_info.h"
#include "frame/automation/library_lifetime.h"
#include "frame/automation/parameters.h"
#include "frame/automation/table.h"

#include <initializer_list>
#include <utility>

/// Makes a `ClassTable` from a class's member functions: their C++ signatures give the types, the
/// description gives names, defaults and help.
namespace orvane::automation {

/// One argument of a running call. A base class per argument keeps each where it was made: a view
/// of a converted text must not move.
template <std::size_t index, class A>
struct ArgumentSlot {
    explicit ArgumentSlot(const typename Argument<A>::Abi& given) : argument(given) {}
    ArgumentSlot(const LateArguments& late, const Member& member, int& failed)
        : argument((failed = static_cast<int>(index), late), index, member) {}
    Argument<A> argument;
};

template <class Indices, class... A>
struct ArgumentSlots;

template <std::size_t... index, class... A>
struct ArgumentSlots<std::index_sequence<index...>, A...> : ArgumentSlot<index, A>... {
    static constexpr bool needsFinish = (Argument<A>::needsFinish || ...);

    struct Early {};
    explicit ArgumentSlots(Early, const typename Argument<A>::Abi&... given)
        : ArgumentSlot<index, A>(given)... {}
    ArgumentSlots(const LateArguments& late, const Member& member, int& failed)
        : ArgumentSlot<index, A>(late, member, failed)... {
        failed = -1;
    }

    template <class Function>
    decltype(auto) call(Function&& function) {
        return function(static_cast<ArgumentSlot<index, A>&>(*this).argument.get()...);
    }

    // By-reference arguments go back whether the call succeeded or not: the variable is the
    // caller's own, and what was stored in it before the failure stays.
    template <class Body>
    decltype(auto) run(Body&& body) {
        if constexpr (!needsFinish) {
            return body();
        } else if constexpr (std::is_void_v<decltype(body())>) {
            attempt(body);
            finish();
        } else {
            decltype(auto) result = attempt(body);
            finish();
            return result;
        }
    }

private:
    template <class Body>
    decltype(auto) attempt(Body&& body) {
        try {
            return body();
        } catch (...) {
            ErrorTrap trap;
            trap([this] { finish(); });
            throw;
        }
    }
    void finish() { (static_cast<ArgumentSlot<index, A>&>(*this).argument.finish(), ...); }
};

template <auto member, class Signature>
struct MemberThunk;

template <auto member, class R, class T, class... A>
struct MemberThunk<member, R (T::*)(A...)> {
    using Slots = ArgumentSlots<std::index_sequence_for<A...>, A...>;
    using Result = std::remove_cvref_t<R>;

    // The result is stored last: a caller doesn't look at one, nor free it, when the call failed.
    template <class Store>
    static void carryOut(Slots& slots, T& object, Store&& store) {
        const auto body = [&]() -> R {
            return slots.call(
                [&](auto&&... arguments) -> R { return (object.*member)(arguments...); });
        };
        if constexpr (std::is_void_v<R>) {
            slots.run(body);
        } else {
            store(slots.run(body));
        }
    }

    static HRESULT STDMETHODCALLTYPE earlyVoid(InterfaceHeader* self,
                                               typename Argument<A>::Abi... given) {
        return guarded([&] {
            Slots slots(typename Slots::Early{}, given...);
            carryOut(slots, *static_cast<T*>(self->object), [] {});
        });
    }

    template <class Cells>
    static HRESULT STDMETHODCALLTYPE early(InterfaceHeader* self,
                                           typename Argument<A>::Abi... given,
                                           typename Cells::Abi* result) {
        if (result == nullptr) return E_POINTER;
        *result = {};
        return guarded([&] {
            Slots slots(typename Slots::Early{}, given...);
            carryOut(slots, *static_cast<T*>(self->object),
                     [&](auto&& value) { Cells::write(*result, value); });
        });
    }

    static void late(AutomationObject& object, const Member& description,
                     const LateArguments& arguments, VARIANT& result, int& failed) {
        Slots slots(arguments, description, failed);
        carryOut(slots, static_cast<T&>(object),
                 [&](auto&& value) { storeResult(result, std::forward<decltype(value)>(value)); });
    }

    static auto slot() {
        if constexpr (std::is_void_v<R>) {
            return reinterpret_cast<void (*)()>(&earlyVoid);
        } else {
            return reinterpret_cast<void (*)()>(&early<Cell<Result>>);
        }
    }

    static TypeReference resultReference() {
        if constexpr (std::is_void_v<R>) {
            return {};
        } else {
            return Cell<Result>::reference();
        }
    }

    static Member describe(const char* name, MemberKind kind,
                           std::initializer_list<ParameterName> names) {
        Member described{name, DISPID_UNKNOWN, kind, {}, resultReference()};
        const TypeReference types[] = {Argument<A>::reference()..., TypeReference{}};
        std::size_t index = 0;
        for (const ParameterName& parameter : names) {
            described.parameters.push_back(
                {parameter.name, types[index++], parameter.isOptional, parameter.fallback});
        }
        if (index != sizeof...(A)) std::terminate();  // a parameter without a name, or one too many
        described.isVariableArgument = (std::is_same_v<A, ArgumentList&> || ...);
        described.invoke = &late;
        described.slot = slot();
        return described;
    }
};

template <auto member, class R, class T, class... A>
struct MemberThunk<member, R (T::*)(A...) const> : MemberThunk<member, R (T::*)(A...)> {};

/// Builds a class's table, a call per member in type-library order. `help`, `id` and
/// `defaultMember` say more about the member that was named last.
template <class T>
class ClassBuilder {
public:
    ClassBuilder(const char* name, Instancing instancing, const GUID& classId,
                 const GUID& interfaceId) {
        table_.name = name;
        table_.instancing = instancing;
        table_.classId = classId;
        table_.interfaceId = interfaceId;
        if constexpr (requires { new T; }) {
            table_.create = []() -> AutomationObject* { return new T; };
        }
    }

    template <auto function>
    ClassBuilder& method(const char* name, std::initializer_list<ParameterName> parameters = {}) {
        return add<function>(name, MemberKind::method, parameters);
    }
    template <auto function>
    ClassBuilder& propertyGet(const char* name,
                              std::initializer_list<ParameterName> parameters = {}) {
        return add<function>(name, MemberKind::propertyGet, parameters);
    }
    template <auto function>
    ClassBuilder& propertyPut(const char* name, std::initializer_list<ParameterName> parameters) {
        return add<function>(name, MemberKind::propertyPut, parameters);
    }
    template <auto function>
    ClassBuilder& propertyPutReference(const char* name,
                                       std::initializer_list<ParameterName> parameters) {
        return add<function>(name, MemberKind::propertyPutReference, parameters);
    }

    ClassBuilder& help(const char16_t* text) {
        table_.members.back().help = text;
        return *this;
    }
    ClassBuilder& id(DISPID identifier) {
        table_.members.back().id = identifier;
        return *this;
    }
    ClassBuilder& defaultMember() { return id(DISPID_VALUE); }
    ClassBuilder& enumerator() { return id(DISPID_NEWENUM); }

    ClassBuilder& classHelp(const char16_t* text) {
        table_.help = text;
        return *this;
    }
    ClassBuilder& alias(const char* name, const GUID& interfaceId) {
        table_.aliases.push_back({name, interfaceId});
        return *this;
    }
    ClassBuilder& events(const char* name, const GUID& interfaceId) {
        table_.events.name = name;
        table_.events.interfaceId = interfaceId;
        return *this;
    }
    /// An event with its identifier, and its parameters by name and type.
    ClassBuilder& event(const char* name, DISPID identifier,
                        std::vector<Parameter> parameters = {}) {
        Member described{name, identifier, MemberKind::method, std::move(parameters), {}};
        table_.events.events.push_back(std::move(described));
        return *this;
    }

    ClassTable build();

private:
    template <auto function>
    ClassBuilder& add(const char* name, MemberKind kind,
                      std::initializer_list<ParameterName> parameters) {
        table_.members.push_back(
            MemberThunk<function, decltype(function)>::describe(name, kind, parameters));
        return *this;
    }

    ClassTable table_;
};

/// Gives members their identifiers, builds the indices and the vtable.
void finish(ClassTable& table);

template <class T>
ClassTable ClassBuilder<T>::build() {
    finish(table_);
    return std::move(table_);
}

/// The table of a class, made by `build` on first use and kept until the library is unloaded.
///
///     const ClassTable& PictureInfo::table() {
///         static const ClassTable& table = classTable([] {
///             return ClassBuilder<PictureInfo>("PictureInfo", ...).method<...>("Width").build();
///         });
///         return table;
///     }
template <class Build>
const ClassTable& classTable(Build&& build) {
    return permanent<ClassTable>(std::forward<Build>(build));
}

}  // namespace orvane::automation

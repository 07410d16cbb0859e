#pragma once

#include "frame/values/variant.h"

#include "orvane/automation.h"

#include <initializer_list>

struct IDispatchEx;

namespace orvane::automation {

/// One object as the target of late-bound calls. Script engines give objects that answer the
/// extended dispatch interface only, or find members that were added later through it alone: it is
/// asked first.
class LateCaller {
public:
    /// Raises 91 for Nothing and 438 for an object without late-bound members.
    explicit LateCaller(const Object& object);
    ~LateCaller();
    LateCaller(const LateCaller&) = delete;
    LateCaller& operator=(const LateCaller&) = delete;

    /// The number of a member; raises 438 when there is none of this name.
    DISPID idOf(WStringView name) const;
    bool find(WStringView name, DISPID& id) const;

    /// Calls or reads a member. By-reference arguments come back in their variables, also when
    /// the call fails.
    Variant call(DISPID id, WORD flags, std::initializer_list<Variant> arguments) const;
    /// Writes a property.
    void put(DISPID id, WORD flags, const Variant& value,
             std::initializer_list<Variant> arguments) const;

private:
    HRESULT invoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                   EXCEPINFO& exception) const;

    IDispatchEx* extended_ = nullptr;
    IDispatch* dispatch_ = nullptr;
};

}  // namespace orvane::automation

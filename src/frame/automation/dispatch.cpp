#include "frame/automation/dispatch.h"

#include "frame/automation/abi.h"
#include "frame/automation/error_info.h"
#include "frame/automation/marshal.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace orvane::automation {
namespace {

/// More parameters than any member has; what a variable-argument member collects isn't limited.
constexpr std::size_t kMostParameters = 64;

bool sameName(const char* known, WStringView asked) {
    const auto lower = [](char16_t unit) {
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    };
    std::size_t i = 0;
    for (; known[i] != 0; ++i) {
        if (i == asked.size() || lower(static_cast<unsigned char>(known[i])) != lower(asked[i])) {
            return false;
        }
    }
    return i == asked.size();
}

WStringView viewOfName(const OLECHAR* name) {
    return name == nullptr ? WStringView() : WStringView(fromOle(name));
}

const Member* anyMember(const ClassTable& table, DISPID id) {
    for (const MemberKind kind : {MemberKind::method, MemberKind::propertyGet,
                                  MemberKind::propertyPut, MemberKind::propertyPutReference}) {
        if (const Member* member = table.find(id, kind)) return member;
    }
    return nullptr;
}

bool isPut(WORD flags) {
    return (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
}

// Scripts read properties with the method flag and call functions with the property flag; both
// are taken for either.
const Member* chooseMember(const ClassTable& table, DISPID id, WORD flags) {
    if ((flags & DISPATCH_PROPERTYPUTREF) != 0) {
        if (const Member* member = table.find(id, MemberKind::propertyPutReference)) return member;
    }
    if (isPut(flags)) {
        if (const Member* member = table.find(id, MemberKind::propertyPut)) return member;
        return (flags & DISPATCH_PROPERTYPUT) != 0
                   ? table.find(id, MemberKind::propertyPutReference)
                   : nullptr;
    }
    if (const Member* member = table.find(id, MemberKind::method)) return member;
    return table.find(id, MemberKind::propertyGet);
}

struct Arranged {
    std::array<VARIANTARG*, kMostParameters> values{};
    std::vector<VARIANTARG*> rest;
};

// DISPPARAMS hold positional arguments last first, behind the named ones.
HRESULT arrange(const Member& member, const DISPPARAMS& given, bool put, Arranged& arranged,
                UINT* argumentError) {
    const std::size_t parameters = member.parameters.size();
    if (given.cNamedArgs > given.cArgs) return DISP_E_BADPARAMCOUNT;
    if (given.cArgs != 0 && given.rgvarg == nullptr) return E_POINTER;
    if (given.cNamedArgs != 0 && given.rgdispidNamedArgs == nullptr) return E_POINTER;
    const std::size_t positional = given.cArgs - given.cNamedArgs;
    std::size_t fixed = member.isVariableArgument ? parameters - 1 : parameters;
    for (std::size_t i = 0; i < positional; ++i) {
        VARIANTARG* argument = &given.rgvarg[given.cArgs - 1 - i];
        if (i < fixed) {
            arranged.values[i] = argument;
        } else if (member.isVariableArgument) {
            arranged.rest.push_back(argument);
        } else {
            return DISP_E_BADPARAMCOUNT;
        }
    }
    for (std::size_t i = 0; i < given.cNamedArgs; ++i) {
        DISPID position = given.rgdispidNamedArgs[i];
        if (put && position == DISPID_PROPERTYPUT) position = static_cast<DISPID>(parameters) - 1;
        const bool known = position >= 0 && static_cast<std::size_t>(position) < fixed;
        if (!known || arranged.values[static_cast<std::size_t>(position)] != nullptr) {
            if (argumentError != nullptr) *argumentError = static_cast<UINT>(i);
            return DISP_E_PARAMNOTFOUND;
        }
        arranged.values[static_cast<std::size_t>(position)] = &given.rgvarg[i];
    }
    return S_OK;
}

// The place in `rgvarg` of the argument that couldn't be converted.
UINT argumentIndex(const DISPPARAMS& given, const VARIANTARG* argument) {
    for (UINT i = 0; i < given.cArgs; ++i) {
        if (&given.rgvarg[i] == argument) return i;
    }
    return 0;
}

// What a member raises about an argument before it runs is told as a status of its own only where
// the number comes out the same for the caller.
std::optional<HRESULT> argumentStatus(std::int32_t errorNumber) {
    switch (errorNumber) {
    case error::kTypeMismatch:
        return DISP_E_TYPEMISMATCH;
    case error::kOverflow:
        return DISP_E_OVERFLOW;
    case error::kArgumentNotOptional:
        return DISP_E_PARAMNOTOPTIONAL;
    default:
        return std::nullopt;
    }
}

HRESULT callMember(AutomationObject& object, const Member& member, const DISPPARAMS& given,
                   bool put, VARIANT& out, EXCEPINFO* exception, UINT* argumentError) {
    Arranged arranged;
    int failed = -1;
    try {
        const HRESULT status = arrange(member, given, put, arranged, argumentError);
        if (FAILED(status)) return status;
        const LateArguments arguments{arranged.values.data(), arranged.rest.data(),
                                      arranged.rest.size()};
        member.invoke(object, member, arguments, out, failed);
        return S_OK;
    } catch (const RuntimeError& failure) {
        const auto status = argumentStatus(failure.number);
        if (failed < 0 || !status) return fillException(failure, exception);
        if (argumentError != nullptr) {
            *argumentError =
                argumentIndex(given, arranged.values[static_cast<std::size_t>(failed)]);
        }
        return *status;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

// `object.Items("key")`: a member without parameters gives an object, and the arguments are for
// that object's default member.
HRESULT forwardToDefault(VARIANT& first, WORD flags, DISPPARAMS& given, VARIANT* result,
                         EXCEPINFO* exception, UINT* argumentError) {
    if (first.vt != VT_DISPATCH || first.pdispVal == nullptr) {
        VariantClear(&first);
        return DISP_E_BADPARAMCOUNT;
    }
    const HRESULT status = first.pdispVal->Invoke(DISPID_VALUE, GUID_NULL, LOCALE_USER_DEFAULT,
                                                  flags, &given, result, exception, argumentError);
    VariantClear(&first);
    return status;
}

// Whether a member can give an object at all: one that can't is not called just to find out.
bool mayGiveObject(const Member& member) {
    return member.result.type == VT_DISPATCH || member.result.type == VT_VARIANT;
}

bool wantsForwarding(const ClassTable& table, const Member* member, DISPID id, WORD flags,
                     const DISPPARAMS& given) {
    const UINT own = isPut(flags) ? 1 : 0;
    if (given.cArgs <= own || id == DISPID_VALUE) return false;
    if (isPut(flags) != (member == nullptr)) return false;
    const Member* source = member != nullptr ? member : table.find(id, MemberKind::propertyGet);
    return source != nullptr && source->parameters.empty() && mayGiveObject(*source);
}

}  // namespace

HRESULT idsOfNames(const ClassTable& table, OLECHAR* const* names, UINT count, DISPID* ids) {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    if (count == 0) return S_OK;
    ids[0] = table.idOf(viewOfName(names[0]));
    const Member* member = ids[0] == DISPID_UNKNOWN ? nullptr : anyMember(table, ids[0]);
    HRESULT status = member != nullptr ? S_OK : DISP_E_UNKNOWNNAME;
    for (UINT i = 1; i < count; ++i) {
        ids[i] = DISPID_UNKNOWN;
        for (std::size_t p = 0; member != nullptr && p < member->parameters.size(); ++p) {
            if (sameName(member->parameters[p].name, viewOfName(names[i]))) {
                ids[i] = static_cast<DISPID>(p);
            }
        }
        if (ids[i] == DISPID_UNKNOWN) status = DISP_E_UNKNOWNNAME;
    }
    return status;
}

HRESULT invoke(AutomationObject& object, DISPID id, WORD flags, const DISPPARAMS& parameters,
               VARIANT* result, EXCEPINFO* exception, UINT* argumentError) {
    const ClassTable& table = object.classTable();
    const Member* member = chooseMember(table, id, flags);
    VARIANT out{};
    if (wantsForwarding(table, member, id, flags, parameters)) {
        const Member* source = member != nullptr ? member : table.find(id, MemberKind::propertyGet);
        const DISPPARAMS none{};
        const HRESULT status =
            callMember(object, *source, none, false, out, exception, argumentError);
        if (FAILED(status)) return status;
        return forwardToDefault(out, flags, const_cast<DISPPARAMS&>(parameters), result, exception,
                                argumentError);
    }
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    const HRESULT status =
        callMember(object, *member, parameters, isPut(flags), out, exception, argumentError);
    if (result != nullptr) {
        *result = out;
    } else {
        VariantClear(&out);
    }
    return status;
}

}  // namespace orvane::automation

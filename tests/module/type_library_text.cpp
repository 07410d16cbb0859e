#include "type_library_text.h"

#include "orvane/host.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace orvane::tests {
namespace {

void check(HRESULT status, const char* what) {
    if (FAILED(status)) throw std::runtime_error(what);
}

/// The values as text, one behind the other.
template <class... Value>
std::string joined(const Value&... values) {
    std::ostringstream text;
    (text << ... << values);
    return text.str();
}

std::string hex(std::uint32_t value) {
    std::ostringstream text;
    text << std::hex << "0x" << value;
    return text.str();
}

// Names and help strings hold units of the basic plane only.
std::string utf8Of(std::u16string_view text) {
    std::string result;
    for (const char16_t unit : text) {
        if (unit < 0x80) {
            result += static_cast<char>(unit);
        } else if (unit < 0x800) {
            result += static_cast<char>(0xC0 | (unit >> 6));
            result += static_cast<char>(0x80 | (unit & 0x3F));
        } else {
            result += static_cast<char>(0xE0 | (unit >> 12));
            result += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
            result += static_cast<char>(0x80 | (unit & 0x3F));
        }
    }
    return result;
}

std::string takeText(BSTR text) {
    std::string result = utf8Of(host::viewOf(text));
    host::freeText(text);
    return result;
}

std::string guidText(const GUID& guid) {
    std::ostringstream text;
    text.fill('0');
    const auto add = [&](std::uint32_t value, int width) {
        text.width(width);
        text << std::hex << std::uppercase << value;
    };
    text << '{';
    add(static_cast<std::uint32_t>(guid.Data1), 8);
    text << '-';
    add(guid.Data2, 4);
    text << '-';
    add(guid.Data3, 4);
    for (std::size_t i = 0; i < 8; ++i) {
        if (i == 0 || i == 2) text << '-';
        add(guid.Data4[i], 2);
    }
    text << '}';
    return text.str();
}

template <class Interface>
struct Held {
    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() {
        if (pointer != nullptr) pointer->Release();
    }
    Interface* operator->() const { return pointer; }
    Interface* pointer = nullptr;
};

std::string nameOf(ITypeInfo& info, MEMBERID member) {
    BSTR name = nullptr;
    check(info.GetDocumentation(member, &name, nullptr, nullptr, nullptr), "GetDocumentation");
    return takeText(name);
}

std::string helpOf(ITypeInfo& info, MEMBERID member) {
    BSTR help = nullptr;
    check(info.GetDocumentation(member, nullptr, &help, nullptr, nullptr), "GetDocumentation");
    const std::string text = takeText(help);
    return text.empty() ? "" : " \"" + text + "\"";
}

std::string referredName(ITypeInfo& info, HREFTYPE reference) {
    Held<ITypeInfo> referred;
    check(info.GetRefTypeInfo(reference, &referred.pointer), "GetRefTypeInfo");
    return nameOf(*referred.pointer, MEMBERID_NIL);
}

std::string typeText(ITypeInfo& info, const TYPEDESC& type) {
    switch (type.vt) {
    case VT_PTR:
        return typeText(info, *type.lptdesc) + "*";
    case VT_SAFEARRAY:
        return "array(" + typeText(info, *type.lptdesc) + ")";
    case VT_USERDEFINED:
        return referredName(info, type.hreftype);
    default:
        return joined("vt", type.vt);
    }
}

std::string valueText(const VARIANT& value) {
    switch (value.vt) {
    case VT_BSTR:
        return joined('"', utf8Of(host::viewOf(value.bstrVal)), '"');
    case VT_BOOL:
        return joined("vt11 ", value.boolVal);
    case VT_I2:
        return joined("vt2 ", value.iVal);
    default:
        return joined("vt", value.vt, ' ', value.lVal);
    }
}

std::string parameterText(ITypeInfo& info, const ELEMDESC& parameter, const std::string& name) {
    std::string text =
        joined("    ", name.empty() ? std::string("-") : name, ": ",
               typeText(info, parameter.tdesc), " flags ", hex(parameter.paramdesc.wParamFlags));
    if ((parameter.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0) {
        text += " = " + valueText(parameter.paramdesc.pparamdescex->varDefaultValue);
    }
    return text + "\n";
}

std::vector<std::string> namesOf(ITypeInfo& info, const FUNCDESC& function) {
    std::vector<std::string> texts(static_cast<std::size_t>(function.cParams) + 1);
    std::vector<BSTR> names(texts.size());
    UINT count = 0;
    check(info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &count),
          "GetNames");
    std::transform(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(count), texts.begin(),
                   takeText);
    return texts;
}

// What a dual interface inherits is named only: its parameters are structures of the system.
std::string functionText(ITypeInfo& info, UINT index) {
    constexpr MEMBERID kInherited = 0x60000000;
    FUNCDESC* function = nullptr;
    check(info.GetFuncDesc(index, &function), "GetFuncDesc");
    const std::vector<std::string> names = namesOf(info, *function);
    std::string text =
        joined("  ", names[0], " id ", function->memid, " kind ", function->funckind, '/',
               function->invkind, '/', function->callconv, " optional ", function->cParamsOpt,
               " slot ", function->oVft / static_cast<int>(sizeof(void*)), " flags ",
               hex(function->wFuncFlags), " returns ", typeText(info, function->elemdescFunc.tdesc),
               helpOf(info, function->memid), '\n');
    for (SHORT i = 0; function->memid < kInherited && i < function->cParams; ++i) {
        text += parameterText(info, function->lprgelemdescParam[i],
                              names[static_cast<std::size_t>(i) + 1]);
    }
    info.ReleaseFuncDesc(function);
    return text;
}

std::string variableText(ITypeInfo& info, UINT index) {
    VARDESC* variable = nullptr;
    check(info.GetVarDesc(index, &variable), "GetVarDesc");
    const std::string text =
        joined("  ", nameOf(info, variable->memid), " id ", variable->memid, " kind ",
               variable->varkind, " flags ", hex(variable->wVarFlags), " = ",
               valueText(*variable->lpvarValue), helpOf(info, variable->memid), '\n');
    info.ReleaseVarDesc(variable);
    return text;
}

std::string implementedText(ITypeInfo& info, UINT index) {
    HREFTYPE reference = 0;
    INT flags = 0;
    check(info.GetRefTypeOfImplType(index, &reference), "GetRefTypeOfImplType");
    check(info.GetImplTypeFlags(index, &flags), "GetImplTypeFlags");
    return joined("  of ", referredName(info, reference), " flags ",
                  hex(static_cast<std::uint32_t>(flags)), '\n');
}

std::string typeInfoText(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    check(info.GetTypeAttr(&attributes), "GetTypeAttr");
    std::string text = joined(
        nameOf(info, MEMBERID_NIL), ' ', guidText(attributes->guid), " kind ", attributes->typekind,
        " flags ", hex(attributes->wTypeFlags), " version ", attributes->wMajorVerNum, '.',
        attributes->wMinorVerNum, " functions ", attributes->cFuncs, " constants ",
        attributes->cVars, " parents ", attributes->cImplTypes, " slots ",
        attributes->cbSizeVft / sizeof(void*), helpOf(info, MEMBERID_NIL), '\n');
    if (attributes->typekind == TKIND_ALIAS) {
        text += joined("  stands for ", typeText(info, attributes->tdescAlias), '\n');
    }
    for (UINT i = 0; i < attributes->cImplTypes; ++i)
        text += implementedText(info, i);
    for (UINT i = 0; i < attributes->cFuncs; ++i)
        text += functionText(info, i);
    for (UINT i = 0; i < attributes->cVars; ++i)
        text += variableText(info, i);
    info.ReleaseTypeAttr(attributes);
    return text;
}

}  // namespace

std::string typeLibraryText(ITypeLib& library) {
    TLIBATTR* attributes = nullptr;
    check(library.GetLibAttr(&attributes), "GetLibAttr");
    BSTR name = nullptr;
    BSTR help = nullptr;
    check(library.GetDocumentation(-1, &name, &help, nullptr, nullptr), "GetDocumentation");
    std::string text = joined(takeText(name), ' ', guidText(attributes->guid), " version ",
                              attributes->wMajorVerNum, '.', attributes->wMinorVerNum, " \"",
                              takeText(help), "\"\n");
    library.ReleaseTLibAttr(attributes);
    std::vector<std::string> types;
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        Held<ITypeInfo> info;
        check(library.GetTypeInfo(i, &info.pointer), "GetTypeInfo");
        types.push_back(typeInfoText(*info.pointer));
    }
    std::ranges::sort(types);
    for (const std::string& type : types)
        text += type;
    return text;
}

}  // namespace orvane::tests

#include "type_library.h"

#include "json.h"
#include "utf8.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>

namespace orvane::tool {

namespace {

void check(HRESULT status) {
    if (FAILED(status)) throw host::Error(status, u"the type information can't be read", {});
}

std::string takeText(BSTR text) {
    std::string result = toUtf8(host::viewOf(text));
    host::freeText(text);
    return result;
}

std::string guidText(const GUID& guid) {
    char text[40];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned>(guid.Data1), guid.Data2, guid.Data3, guid.Data4[0],
                  guid.Data4[1], guid.Data4[2], guid.Data4[3], guid.Data4[4], guid.Data4[5],
                  guid.Data4[6], guid.Data4[7]);
    return text;
}

std::string documentation(ITypeInfo& info, MEMBERID member, bool help) {
    BSTR text = nullptr;
    check(info.GetDocumentation(member, help ? nullptr : &text, help ? &text : nullptr, nullptr,
                                nullptr));
    return takeText(text);
}

/// The attributes of a type while they are needed.
using Attributes = std::unique_ptr<TYPEATTR, std::function<void(TYPEATTR*)>>;
Attributes attributesOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    check(info.GetTypeAttr(&attributes));
    return Attributes(attributes, [&info](TYPEATTR* given) { info.ReleaseTypeAttr(given); });
}

const char* plainTypeName(VARTYPE type) {
    switch (type) {
    case VT_I2:
        return "Integer";
    case VT_I4:
        return "Long";
    case VT_R4:
        return "Single";
    case VT_R8:
        return "Double";
    case VT_CY:
        return "Currency";
    case VT_DATE:
        return "Date";
    case VT_BSTR:
        return "String";
    case VT_DISPATCH:
        return "Object";
    case VT_UNKNOWN:
        return "Unknown";
    case VT_ERROR:
        return "Error";
    case VT_BOOL:
        return "Boolean";
    case VT_VARIANT:
        return "Variant";
    case VT_UI1:
        return "Byte";
    default:
        return "?";
    }
}

std::string referredName(ITypeInfo& info, HREFTYPE reference) {
    host::Pointer<ITypeInfo> referred;
    check(info.GetRefTypeInfo(reference, referred.receive()));
    const std::string name = documentation(*referred, MEMBERID_NIL, false);
    // A class's default interface bears its name behind an underscore.
    return name.starts_with('_') ? name.substr(1) : name;
}

std::string typeName(ITypeInfo& info, const TYPEDESC& type) {
    switch (type.vt) {
    case VT_PTR:
        return typeName(info, *type.lptdesc);
    case VT_SAFEARRAY:
        return typeName(info, *type.lptdesc) + "()";
    case VT_USERDEFINED:
        return referredName(info, type.hreftype);
    default:
        return plainTypeName(type.vt);
    }
}

std::string defaultText(const VARIANT& value) {
    switch (value.vt) {
    case VT_BSTR:
        return jsonString(toUtf8(host::viewOf(value.bstrVal)));
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? "True" : "False";
    case VT_I2:
        return std::to_string(value.iVal);
    default:
        return std::to_string(value.lVal);
    }
}

std::string parameterText(ITypeInfo& info, const ELEMDESC& parameter, const std::string& name) {
    const USHORT flags = parameter.paramdesc.wParamFlags;
    std::string text = (flags & PARAMFLAG_FOUT) != 0 ? "ByRef " : "";
    text += name + " As " + typeName(info, parameter.tdesc);
    if ((flags & PARAMFLAG_FHASDEFAULT) != 0) {
        text += " = " + defaultText(parameter.paramdesc.pparamdescex->varDefaultValue);
    }
    return (flags & PARAMFLAG_FOPT) != 0 ? "[" + text + "]" : text;
}

const char* kindName(const FUNCDESC& function) {
    switch (function.invkind) {
    case INVOKE_PROPERTYGET:
        return "Property Get ";
    case INVOKE_PROPERTYPUT:
        return "Property Let ";
    case INVOKE_PROPERTYPUTREF:
        return "Property Set ";
    default:
        return function.elemdescFunc.tdesc.vt == VT_VOID ? "Sub " : "Function ";
    }
}

std::string memberText(ITypeInfo& info, const FUNCDESC& function) {
    std::vector<BSTR> names(static_cast<std::size_t>(function.cParams) + 1);
    UINT count = 0;
    check(info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &count));
    std::vector<std::string> texts(names.size());
    for (UINT i = 0; i < count; ++i)
        texts[i] = takeText(names[i]);
    std::string text = std::to_string(function.memid) + "  " + kindName(function) + texts[0] + "(";
    for (SHORT i = 0; i < function.cParams; ++i) {
        const auto at = static_cast<std::size_t>(i);
        // A property's new value has no name of its own in the type library.
        const std::string name = texts[at + 1].empty() ? "Value" : texts[at + 1];
        text += (i == 0 ? "" : ", ") + parameterText(info, function.lprgelemdescParam[i], name);
    }
    text += ")";
    if (function.elemdescFunc.tdesc.vt != VT_VOID) {
        text += " As " + typeName(info, function.elemdescFunc.tdesc);
    }
    const std::string help = documentation(info, function.memid, true);
    return help.empty() ? text : text + "\n        " + help;
}

std::vector<std::string> membersOf(ITypeInfo& info) {
    // What a dual interface inherits has numbers from here on.
    constexpr MEMBERID kInherited = 0x60000000;
    std::vector<std::string> members;
    const WORD count = attributesOf(info)->cFuncs;
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        check(info.GetFuncDesc(i, &function));
        const auto release = [&info](FUNCDESC* given) { info.ReleaseFuncDesc(given); };
        const std::unique_ptr<FUNCDESC, decltype(release)> held(function, release);
        if (function->memid < kInherited) members.push_back(memberText(info, *function));
    }
    return members;
}

const char* instancingName(WORD flags) {
    if ((flags & TYPEFLAG_FAPPOBJECT) != 0) return "global";
    return (flags & TYPEFLAG_FCANCREATE) != 0 ? "creatable" : "internal";
}

ClassFacts describeClass(ITypeInfo& info, const TYPEATTR& attributes,
                         const std::string& classWithMembers) {
    ClassFacts facts;
    facts.name = documentation(info, MEMBERID_NIL, false);
    facts.help = documentation(info, MEMBERID_NIL, true);
    facts.instancing = instancingName(attributes.wTypeFlags);
    facts.classId = guidText(attributes.guid);
    HREFTYPE reference = 0;
    check(info.GetRefTypeOfImplType(0, &reference));
    host::Pointer<ITypeInfo> defaultInterface;
    check(info.GetRefTypeInfo(reference, defaultInterface.receive()));
    facts.interfaceName = documentation(*defaultInterface, MEMBERID_NIL, false);
    facts.interfaceId = guidText(attributesOf(*defaultInterface)->guid);
    if (sameName(facts.name, classWithMembers)) facts.members = membersOf(*defaultInterface);
    return facts;
}

}  // namespace

bool sameName(const std::string& left, const std::string& right) {
    const auto lower = [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    };
    return std::ranges::equal(left, right, {}, lower, lower);
}

LibraryFacts describeLibrary(ITypeLib& library, const std::string& classWithMembers) {
    LibraryFacts facts;
    BSTR name = nullptr;
    BSTR help = nullptr;
    check(library.GetDocumentation(-1, &name, &help, nullptr, nullptr));
    facts.name = takeText(name);
    facts.help = takeText(help);
    TLIBATTR* version = nullptr;
    check(library.GetLibAttr(&version));
    facts.version =
        std::to_string(version->wMajorVerNum) + "." + std::to_string(version->wMinorVerNum);
    library.ReleaseTLibAttr(version);
    const UINT count = library.GetTypeInfoCount();
    for (UINT i = 0; i < count; ++i) {
        host::Pointer<ITypeInfo> info;
        check(library.GetTypeInfo(i, info.receive()));
        const Attributes attributes = attributesOf(*info);
        if (attributes->typekind != TKIND_COCLASS) continue;
        facts.classes.push_back(describeClass(*info, *attributes, classWithMembers));
    }
    return facts;
}

LibraryFacts describeObject(ITypeInfo& defaultInterface) {
    host::Pointer<ITypeLib> library;
    UINT index = 0;
    check(defaultInterface.GetContainingTypeLib(library.receive(), &index));
    const std::string interfaceId = guidText(attributesOf(defaultInterface)->guid);
    LibraryFacts facts = describeLibrary(*library, {});
    std::erase_if(facts.classes,
                  [&](const ClassFacts& each) { return each.interfaceId != interfaceId; });
    if (facts.classes.empty()) {
        ClassFacts unnamed;
        unnamed.name = documentation(defaultInterface, MEMBERID_NIL, false);
        unnamed.interfaceId = interfaceId;
        facts.classes.push_back(unnamed);
    }
    facts.classes.resize(1);
    facts.classes[0].members = membersOf(defaultInterface);
    return facts;
}

}  // namespace orvane::tool

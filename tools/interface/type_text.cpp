#include "type_text.h"

#include "support/utf8.h"

#include <stdexcept>

namespace orvane::interface {

using namespace automation;

namespace {

struct Spelling {
    VARTYPE type;
    const char* idl;
    const char* cpp;
    const char* plain;
};

constexpr Spelling kSpellings[] = {
    {VT_EMPTY, "void", "void", ""},
    {VT_I2, "short", "SHORT", "Integer"},
    {VT_I4, "long", "LONG", "Long"},
    {VT_R4, "float", "FLOAT", "Single"},
    {VT_R8, "double", "DOUBLE", "Double"},
    {VT_CY, "CURRENCY", "CY", "Currency"},
    {VT_DATE, "DATE", "DATE", "Date"},
    {VT_BSTR, "BSTR", "BSTR", "String"},
    {VT_DISPATCH, "IDispatch*", "IDispatch*", "Object"},
    {VT_ERROR, "SCODE", "SCODE", "Error"},
    {VT_BOOL, "VARIANT_BOOL", "VARIANT_BOOL", "Boolean"},
    {VT_VARIANT, "VARIANT", "VARIANT", "Variant"},
    {VT_UNKNOWN, "IUnknown*", "IUnknown*", "Unknown"},
    {VT_UI1, "unsigned char", "BYTE", "Byte"},
};

const Spelling& spellingOf(VARTYPE type) {
    for (const Spelling& spelling : kSpellings) {
        if (spelling.type == type) return spelling;
    }
    throw std::runtime_error("a member has a type that the printers don't know: " +
                             std::to_string(type));
}

bool isArray(const TypeReference& type) {
    return (type.type & VT_ARRAY) != 0;
}

VARTYPE elementOf(const TypeReference& type) {
    return static_cast<VARTYPE>(type.type & VT_TYPEMASK);
}

// widl takes no pointer as an array's element; the prelude of the printed text has names for them.
std::string idlElement(VARTYPE type) {
    if (type == VT_DISPATCH) return "LPDISPATCH";
    if (type == VT_UNKNOWN) return "LPUNKNOWN";
    return spellingOf(type).idl;
}

struct HostInterfaceText {
    const char* pointer;
    const char* plain;
};
HostInterfaceText hostInterface(const TypeReference& type) {
    if (type.hostInterface == HostInterface::font) return {"IFontDisp*", "Font"};
    return {"IPictureDisp*", "Picture"};
}

std::string hexadecimal(std::uint64_t value, int digits) {
    std::string text(static_cast<std::size_t>(digits), '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value >>= 4) {
        *digit = "0123456789ABCDEF"[value & 0xF];
    }
    return text;
}

}  // namespace

std::string idlType(const TypeReference& type) {
    if (isArray(type)) return "SAFEARRAY(" + idlElement(elementOf(type)) + ")";
    if (type.classTable != nullptr) return interfaceName(type.classTable()) + "*";
    if (type.enumTable != nullptr) return std::string("enum ") + type.enumTable().name;
    if (type.hostInterface != HostInterface::none) return hostInterface(type).pointer;
    return spellingOf(type.type).idl;
}

std::string cppType(const TypeReference& type) {
    std::string text = spellingOf(elementOf(type)).cpp;
    if (isArray(type)) text = "SAFEARRAY*";
    else if (type.classTable != nullptr) text = interfaceName(type.classTable()) + "*";
    else if (type.enumTable != nullptr) text = type.enumTable().name;
    else if (type.hostInterface != HostInterface::none) text = hostInterface(type).pointer;
    return type.byReference ? text + "*" : text;
}

std::string plainType(const TypeReference& type) {
    std::string text = spellingOf(elementOf(type)).plain;
    if (type.classTable != nullptr) text = type.classTable().name;
    else if (type.enumTable != nullptr) text = type.enumTable().name;
    else if (type.hostInterface != HostInterface::none) text = hostInterface(type).plain;
    if (isArray(type)) text += "()";
    return type.byReference ? "ByRef " + text : text;
}

std::string guidText(const GUID& guid) {
    std::string text = hexadecimal(guid.Data1, 8) + "-" + hexadecimal(guid.Data2, 4) + "-" +
                       hexadecimal(guid.Data3, 4) + "-";
    for (std::size_t i = 0; i < 8; ++i) {
        text += hexadecimal(guid.Data4[i], 2);
        if (i == 1) text += "-";
    }
    return text;
}

std::string guidInitializer(const GUID& guid) {
    std::string text = "{0x" + hexadecimal(guid.Data1, 8) + ", 0x" + hexadecimal(guid.Data2, 4) +
                       ", 0x" + hexadecimal(guid.Data3, 4) + ", {";
    for (std::size_t i = 0; i < 8; ++i) {
        text += (i == 0 ? "0x" : ", 0x") + hexadecimal(guid.Data4[i], 2);
    }
    return text + "}}";
}

std::string defaultText(const DefaultValue& value) {
    return value.kind == DefaultValue::Kind::text ? quoted(value.text)
                                                  : std::to_string(value.number);
}

std::string quoted(const char16_t* text) {
    std::string result = "\"";
    for (const char unit : encodeUtf8(text == nullptr ? WStringView() : WStringView(text))) {
        if (unit == '"' || unit == '\\') result += '\\';
        result += unit;
    }
    return result + '"';
}

const char* kindText(MemberKind kind) {
    switch (kind) {
    case MemberKind::propertyGet:
        return "get";
    case MemberKind::propertyPut:
        return "put";
    case MemberKind::propertyPutReference:
        return "putref";
    default:
        return "method";
    }
}

std::string interfaceName(const ClassTable& table) {
    return std::string("_") + table.name;
}

}  // namespace orvane::interface

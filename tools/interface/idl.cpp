#include "idl.h"

#include "type_text.h"

#include "frame/values/codepage.h"
#include "support/utf8.h"

namespace orvane::interface {

using namespace automation;

namespace {

// widl knows these types by name; what they are declared as doesn't reach the type library. The
// base interfaces must have their members, because slots are counted from them.
constexpr const char* kBaseInterfaces = R"(typedef long HRESULT;
typedef long SCODE;
typedef wchar_t* BSTR;
typedef short VARIANT_BOOL;
typedef double DATE;
typedef struct tagCY { hyper int64; } CURRENCY;
typedef struct tagVARIANT { hyper content[2]; } VARIANT;

[local, object, uuid(00000000-0000-0000-C000-000000000046)]
interface IUnknown {
    HRESULT QueryInterface();
    HRESULT AddRef();
    HRESULT Release();
}

[local, object, uuid(00020400-0000-0000-C000-000000000046)]
interface IDispatch : IUnknown {
    HRESULT GetTypeInfoCount();
    HRESULT GetTypeInfo();
    HRESULT GetIDsOfNames();
    HRESULT Invoke();
}

)";

constexpr const char* kHostInterfaces = R"([uuid(7BF80981-BF32-101A-8BBB-00AA00300CAB)]
dispinterface IPictureDisp { properties: methods: }

[uuid(BEF6E003-A874-101A-8BBA-00AA00300CAB)]
dispinterface IFontDisp { properties: methods: }

)";

constexpr const char* kElementNames = R"(typedef IDispatch* LPDISPATCH;
typedef IUnknown* LPUNKNOWN;

)";

std::string helpAttribute(const char16_t* help) {
    return help == nullptr ? "" : ", helpstring(" + quoted(help) + ")";
}

std::string parameterText(const Parameter& parameter) {
    std::string text = parameter.type.byReference ? "[in, out" : "[in";
    if (parameter.isOptional) text += ", optional";
    if (parameter.fallback.kind != DefaultValue::Kind::none) {
        text += ", defaultvalue(" + defaultText(parameter.fallback) + ")";
    }
    return text + "] " + idlType(parameter.type) + (parameter.type.byReference ? "* " : " ") +
           parameter.name;
}

std::string parametersText(const Member& member) {
    std::string text;
    for (const Parameter& parameter : member.parameters) {
        text += (text.empty() ? "" : ", ") + parameterText(parameter);
    }
    if (member.result.type != VT_EMPTY) {
        text += std::string(text.empty() ? "" : ", ") + "[out, retval] " + idlType(member.result) +
                "* Result_";
    }
    return text;
}

std::string attributesText(const Member& member) {
    std::string text = "[id(" + std::to_string(member.id) + ")";
    switch (member.kind) {
    case MemberKind::propertyGet:
        text += ", propget";
        break;
    case MemberKind::propertyPut:
        text += ", propput";
        break;
    case MemberKind::propertyPutReference:
        text += ", propputref";
        break;
    default:
        break;
    }
    if (member.isVariableArgument) text += ", vararg";
    if (member.id == DISPID_NEWENUM) text += ", restricted";
    return text + helpAttribute(member.help) + "]";
}

std::string interfaceText(const ClassTable& table) {
    std::string text = "    [odl, uuid(" + guidText(table.interfaceId) +
                       "), dual, hidden, nonextensible, oleautomation]\n    interface " +
                       interfaceName(table) + " : IDispatch {\n";
    for (const Member& member : table.members) {
        text += "        " + attributesText(member) + "\n        HRESULT " + member.name + "(" +
                parametersText(member) + ");\n";
    }
    return text + "    };\n\n";
}

std::string eventsText(const EventTable& events) {
    if (events.name == nullptr) return "";
    std::string text = "    [uuid(" + guidText(events.interfaceId) +
                       "), hidden]\n    dispinterface " + events.name +
                       " {\n        properties:\n        methods:\n";
    for (const Member& event : events.events) {
        text += "        " + attributesText(event) + "\n        void " + event.name + "(" +
                parametersText(event) + ");\n";
    }
    return text + "    };\n\n";
}

std::string classText(const ClassTable& table) {
    std::string text = "    [uuid(" + guidText(table.classId) + ")";
    if (table.instancing == Instancing::internal) text += ", noncreatable";
    text += helpAttribute(table.help) + "]\n    coclass " + table.name +
            " {\n        [default] interface " + interfaceName(table) + ";\n";
    if (table.events.name != nullptr) {
        text += std::string("        [default, source] dispinterface ") + table.events.name + ";\n";
    }
    return text + "    };\n\n";
}

std::string enumText(const EnumTable& table) {
    std::string text = std::string("    enum ") + table.name + " {\n";
    for (const EnumConstant& constant : table.constants) {
        text += std::string("        ") + constant.name + " = " + std::to_string(constant.value) +
                ",\n";
    }
    text.resize(text.size() - 2);
    return text + "\n    };\n\n";
}

std::string aliasesText(const ClassTable& table) {
    std::string text;
    for (const InterfaceAlias& alias : table.aliases) {
        text += "    [uuid(" + guidText(alias.interfaceId) + "), public]\n    typedef " +
                interfaceName(table) + " " + alias.name + ";\n";
    }
    return text;
}

}  // namespace

std::string idlText(const LibraryTable& library) {
    std::string text = std::string(kBaseInterfaces) + kHostInterfaces + kElementNames + "[uuid(" +
                       guidText(library.id) + "), version(" + std::to_string(library.major) + "." +
                       std::to_string(library.minor) + ")" + helpAttribute(library.help) +
                       "]\nlibrary " + library.name + " {\n    importlib(\"stdole2.tlb\");\n\n";
    for (const EnumTable* table : library.enums)
        text += enumText(*table);
    // Members refer to classes that come later.
    std::string declarations;
    std::string definitions;
    std::string aliases;
    for (const ClassTable* table : library.classes) {
        declarations += "    interface " + interfaceName(*table) + ";\n";
        definitions += interfaceText(*table) + eventsText(table->events) + classText(*table);
        aliases += aliasesText(*table);
    }
    text += declarations + "\n" + definitions + aliases + "};\n";
    return toAnsi(decodeUtf8(text));
}

std::string systemIdlText() {
    return std::string(kBaseInterfaces) +
           R"([uuid(00020430-0000-0000-C000-000000000046), version(2.0)]
library stdole {
    interface IUnknown;
    interface IDispatch;

    [uuid(7BF80981-BF32-101A-8BBB-00AA00300CAB)]
    dispinterface IPictureDisp { properties: methods: };

    [uuid(BEF6E003-A874-101A-8BBA-00AA00300CAB)]
    dispinterface IFontDisp { properties: methods: };
};
)";
}

}  // namespace orvane::interface

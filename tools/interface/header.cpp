#include "header.h"

#include "type_text.h"

#include "support/utf8.h"

namespace orvane::interface {

using namespace automation;

namespace {

std::string commentText(const char16_t* help, const char* indent) {
    return help == nullptr ? "" : std::string(indent) + "/// " + encodeUtf8(help) + "\n";
}

std::string functionName(const Member& member) {
    const std::string kind = member.kind == MemberKind::method ? "" : kindText(member.kind);
    return kind.empty() ? member.name : kind + "_" + member.name;
}

std::string functionText(const Member& member) {
    std::string parameters;
    const auto add = [&](const std::string& type, const std::string& name) {
        parameters += (parameters.empty() ? "" : ", ") + type + " " + name;
    };
    for (const Parameter& parameter : member.parameters) {
        add(cppType(parameter.type), parameter.name);
    }
    if (member.result.type != VT_EMPTY) add(cppType(member.result) + "*", "result");
    return commentText(member.help, "    ") + "    virtual HRESULT STDMETHODCALLTYPE " +
           functionName(member) + "(" + parameters + ") = 0;\n";
}

std::string interfaceText(const LibraryTable& library, const ClassTable& table) {
    const std::string name = interfaceName(table);
    std::string text = commentText(table.help, "") + "struct " + name + " : IDispatch {\n" +
                       "    static constexpr const IID& kInterfaceId = IID_" + name + ";\n" +
                       "    static constexpr const CLSID& kClassId = CLSID_" + table.name + ";\n" +
                       "    static constexpr const char* kProgId = \"" + library.progIdPrefix +
                       "." + table.name + "\";\n";
    for (const Member& member : table.members)
        text += "\n" + functionText(member);
    return text + "};\n\n";
}

std::string identifiersText(const ClassTable& table) {
    const auto line = [](const char* type, const std::string& name, const GUID& guid) {
        return std::string("inline constexpr ") + type + " " + name + " = {\n    " +
               guidInitializer(guid).substr(1) + ";\n";
    };
    std::string text = line("CLSID", std::string("CLSID_") + table.name, table.classId) +
                       line("IID", "IID_" + interfaceName(table), table.interfaceId);
    if (table.events.name != nullptr) {
        text += line("IID", std::string("DIID_") + table.events.name, table.events.interfaceId);
    }
    for (const InterfaceAlias& alias : table.aliases) {
        text += line("IID", std::string("IID_") + alias.name, alias.interfaceId);
    }
    return text;
}

/// The predefined registry keys are macros in Windows' own headers: there they stay what they are.
bool isSystemMacro(const std::string& name) {
    return name.starts_with("HKEY_");
}

std::string enumText(const EnumTable& table) {
    std::string text = std::string("enum ") + table.name + " : LONG {\n";
    for (const EnumConstant& constant : table.constants) {
        const std::string name = constant.name;
        const std::string line = "    " + name + " = " + std::to_string(constant.value) + ",\n";
        text += isSystemMacro(name) ? "#ifndef " + name + "\n" + line + "#endif\n" : line;
    }
    return text + "};\n\n";
}

}  // namespace

std::string headerText(const LibraryTable& library) {
    std::string text = std::string("#pragma once\n\n// ") + library.name + " " +
                       std::to_string(library.major) + "." + std::to_string(library.minor) + ": " +
                       encodeUtf8(library.help) +
                       "\n// Printed from the library's class tables when it is built.\n\n"
                       "#include \"orvane/automation.h\"\n\n";
    text += std::string("inline constexpr GUID LIBID_") + library.name + " = {\n    " +
            guidInitializer(library.id).substr(1) + ";\n";
    std::string declarations;
    std::string interfaces;
    for (const ClassTable* table : library.classes) {
        text += identifiersText(*table);
        declarations += "struct " + interfaceName(*table) + ";\n";
        interfaces += interfaceText(library, *table);
    }
    text += "\n";
    for (const EnumTable* table : library.enums)
        text += enumText(*table);
    text += declarations + "\n" + interfaces;
    text.pop_back();
    return text;
}

}  // namespace orvane::interface

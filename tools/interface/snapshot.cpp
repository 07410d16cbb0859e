#include "snapshot.h"

#include "type_text.h"

#include "support/utf8.h"

namespace orvane::interface {

using namespace automation;

namespace {

// IUnknown's and IDispatch's slots come first.
constexpr std::size_t kFirstSlot = 7;

std::string parameterText(const Member& member, const Parameter& parameter) {
    const bool rest = member.isVariableArgument && &parameter == &member.parameters.back();
    std::string text = std::string(rest ? "ParamArray " : "") + parameter.name + " As " +
                       plainType(parameter.type);
    if (parameter.fallback.kind != DefaultValue::Kind::none) {
        text += " = " + defaultText(parameter.fallback);
    }
    return parameter.isOptional ? "[" + text + "]" : text;
}

std::string memberText(const Member& member) {
    std::string parameters;
    for (const Parameter& parameter : member.parameters) {
        parameters += (parameters.empty() ? "" : ", ") + parameterText(member, parameter);
    }
    std::string text =
        std::string(kindText(member.kind)) + " " + member.name + "(" + parameters + ")";
    if (member.result.type != VT_EMPTY) text += " As " + plainType(member.result);
    text += " id " + std::to_string(member.id);
    return member.help == nullptr ? text : text + " " + quoted(member.help);
}

const char* instancingText(Instancing instancing) {
    switch (instancing) {
    case Instancing::global:
        return "global";
    case Instancing::creatable:
        return "creatable";
    default:
        return "internal";
    }
}

std::string classText(const ClassTable& table) {
    std::string text = std::string("class ") + table.name + " " + instancingText(table.instancing) +
                       " {" + guidText(table.classId) + "}";
    if (table.help != nullptr) text += " " + quoted(table.help);
    text += "\n  interface " + interfaceName(table) + " {" + guidText(table.interfaceId) + "}\n";
    for (const InterfaceAlias& alias : table.aliases) {
        text += std::string("  alias ") + alias.name + " {" + guidText(alias.interfaceId) + "}\n";
    }
    std::size_t slot = kFirstSlot;
    for (const Member& member : table.members) {
        text += "  slot " + std::to_string(slot++) + " " + memberText(member) + "\n";
    }
    if (table.events.name == nullptr) return text;
    text += std::string("  events ") + table.events.name + " {" +
            guidText(table.events.interfaceId) + "}\n";
    for (const Member& event : table.events.events)
        text += "  event " + memberText(event) + "\n";
    return text;
}

std::string enumText(const EnumTable& table) {
    std::string text = std::string("enum ") + table.name + "\n";
    for (const EnumConstant& constant : table.constants) {
        text += std::string("  ") + constant.name + " = " + std::to_string(constant.value) + "\n";
    }
    return text;
}

std::string libraryText(const LibraryTable& library) {
    std::string file;
    for (const std::uint16_t part : library.fileVersion) {
        file += (file.empty() ? "" : ".") + std::to_string(part);
    }
    return std::string("library ") + library.name + " {" + guidText(library.id) + "} " +
           std::to_string(library.major) + "." + std::to_string(library.minor) + " " +
           quoted(library.help) + "\nfile " + file + " " + quoted(library.versionText) + "\n";
}

}  // namespace

std::string snapshotText(const LibraryTable& library) {
    std::string text = libraryText(library);
    for (const EnumTable* table : library.enums)
        text += enumText(*table);
    for (const ClassTable* table : library.classes)
        text += classText(*table);
    return text;
}

}  // namespace orvane::interface

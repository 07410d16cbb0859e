#include "commands.h"
#include "library.h"
#include "system.h"
#include "type_library.h"

#include <algorithm>

namespace orvane::tool {

namespace {

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
}

std::string catalogueText(const LibraryFacts& facts) {
    std::string text = facts.name + " " + facts.version + "  " + facts.help + "\n";
    std::size_t width = 0;
    for (const ClassFacts& each : facts.classes)
        width = std::max(width, each.name.size());
    for (const ClassFacts& each : facts.classes) {
        text += padded(each.name, width) + "  " + padded(each.instancing, 9) + "  " + each.classId +
                (each.help.empty() ? "" : "  " + each.help) + "\n";
    }
    return text;
}

std::string classText(const std::string& progId, const ClassFacts& facts) {
    std::string text = facts.name + "  " + facts.instancing + "\n";
    if (!facts.help.empty()) text += "    " + facts.help + "\n";
    text += "    ProgID     " + progId + "\n";
    text += "    class      " + facts.classId + "\n";
    text += "    interface  " + facts.interfaceId + " " + facts.interfaceName + "\n";
    for (const std::string& member : facts.members)
        text += "    " + member + "\n";
    return text;
}

}  // namespace

int runDescribe(Words words) {
    if (words.size() > 1) throw UsageError("describe: more than one class");
    std::string asked = words.empty() ? std::string() : words[0];
    Library library;
    LibraryFacts facts = library.describe(asked.substr(asked.rfind('.') + 1));
    if (words.empty()) {
        writeToOutput(catalogueText(facts));
        return kSuccess;
    }
    const std::string prefix = facts.name + ".";
    for (const ClassFacts& each : facts.classes) {
        if (!sameName(each.name, asked) && !sameName(prefix + each.name, asked)) continue;
        writeToOutput(classText(prefix + each.name, each));
        return kSuccess;
    }
    if (asked.find('.') == std::string::npos) throw UsageError("describe: no class " + asked);
    facts = library.describeRegistered(asked);
    writeToOutput(classText(asked, facts.classes[0]));
    return kSuccess;
}

}  // namespace orvane::tool

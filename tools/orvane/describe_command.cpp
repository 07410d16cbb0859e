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

std::string classText(const LibraryFacts& library, const ClassFacts& facts) {
    std::string text = facts.name + "  " + facts.instancing + "\n";
    if (!facts.help.empty()) text += "    " + facts.help + "\n";
    text += "    ProgID     " + library.name + "." + facts.name + "\n";
    text += "    class      " + facts.classId + "\n";
    text += "    interface  " + facts.interfaceId + " " + facts.interfaceName + "\n";
    for (const std::string& member : facts.members)
        text += "    " + member + "\n";
    return text;
}

}  // namespace

int runDescribe(Words words) {
    if (words.size() > 1) throw UsageError("describe: more than one class");
    const std::string asked = words.empty() ? std::string() : words[0];
    Library library;
    const LibraryFacts facts = library.describe(asked);
    if (words.empty()) {
        writeToOutput(catalogueText(facts));
        return kSuccess;
    }
    for (const ClassFacts& each : facts.classes) {
        if (!sameName(each.name, asked)) continue;
        writeToOutput(classText(facts, each));
        return kSuccess;
    }
    throw UsageError("describe: no class " + asked);
}

}  // namespace orvane::tool

#include "utilities/CommandLineParser.h"

#include "frame/arithmetic.h"
#include "frame/automation/describe.h"
#include "platform/kernel32.h"
#include "support/modules.h"
#include "support/text.h"

namespace orvane {
namespace {

constexpr char16_t kQuote = u'"';
constexpr char16_t kBlank = u' ';

/// What `nqTrimEx` leaves of a text, without a copy: a line of many tokens is cut many times.
WStringView trimmed(WStringView text) {
    const auto blank = [](char16_t unit) { return !nqTrimEx(WStringView(&unit, 1)).size(); };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

}  // namespace

const automation::ClassTable& CommandLineParser::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<CommandLineParser>(
                   "CommandLineParser", automation::Instancing::internal,
                   {0x30ADF94B, 0xA4D4, 0x4550, {0x9B, 0x84, 0xB9, 0xA4, 0xF2, 0x23, 0x3A, 0x99}},
                   {0xD8D95142, 0xB960, 0x43F8, {0x8C, 0xB6, 0x10, 0xB6, 0xB5, 0x0A, 0x4E, 0x3B}})
            .propertyGet<&CommandLineParser::Count>("Count")
            .propertyGet<&CommandLineParser::Item>("Item", {"Index"})
            .method<&CommandLineParser::SetNewCommandLine>(
                "SetNewCommandLine", {"NewCommandLine", {"AddDummyEXEModuleName", true}})
            .build();
    });
    return table;
}

CommandLineParser::CommandLineParser() : AutomationObject(table()) {
    SetNewCommandLine(nqGetStringFromPointerW(platform::kernel32.GetCommandLineW()), false);
}

std::int32_t CommandLineParser::Count() {
    return tokens_.count() == 0 ? 0 : tokens_.count() - 1;
}

WString CommandLineParser::Item(std::int32_t index) {
    if (index < -1) raise(error::kSubscriptOutOfRange);
    if (index == -1 && tokens_.count() == 0) return nqGetEXEModulePrettyFileName();
    return *tokens_.item(checkedAdd(index, 2)).as<WString>();
}

void CommandLineParser::SetNewCommandLine(WStringView newCommandLine, bool addDummyEXEModuleName) {
    tokens_ = Collection();
    if (addDummyEXEModuleName) tokens_.add(nqGetEXEModulePrettyFileName());
    split(trimmed(newCommandLine));
}

void CommandLineParser::split(WStringView rest) {
    while (!rest.empty()) {
        const bool inQuote = rest.front() == kQuote;
        if (inQuote) rest.remove_prefix(1);
        const std::size_t end = rest.find(inQuote ? kQuote : kBlank);
        tokens_.add(WString(std::u16string(rest.substr(0, end))));
        if (end == WStringView::npos) return;
        rest = trimmed(rest.substr(inQuote ? end + 1 : end));
    }
}

}  // namespace orvane

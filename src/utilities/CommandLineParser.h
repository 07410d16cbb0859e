#pragma once

#include "frame/automation/automation_object.h"
#include "frame/values/collection.h"

namespace orvane {

/// A command line as tokens: the program name, then the parameters, counted from 0.
///
/// The splitting rules are the library's own and simpler than those of a C runtime: tokens end at
/// blanks; a double quote counts only at the start of a token, which then runs to the next quote or
/// to the end of the line. There is no escaping of any kind.
class CommandLineParser final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    /// Splits the process's own command line.
    CommandLineParser();

    /// The number of parameters, without the program name.
    std::int32_t Count();

    /// Parameter `index` from 0; -1 is the program name. Raises 9 below -1 and past the end, 6 for
    /// the last two Longs, which have no place in a list that begins two before them.
    WString Item(std::int32_t index);

    /// Replaces the tokens by those of `newCommandLine`. With `addDummyEXEModuleName` the host's
    /// executable stands in as the program name, which keeps the numbering of parameters the same
    /// for a line that has none. Raises nothing on any text.
    void SetNewCommandLine(WStringView newCommandLine, bool addDummyEXEModuleName);

private:
    void split(WStringView rest);

    Collection tokens_;
};

}  // namespace orvane

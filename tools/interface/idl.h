#pragma once

#include "frame/automation/table.h"

#include <string>

namespace orvane::interface {

/// The interface definition that `widl` compiles into the type library, in the library's ANSI code
/// page (`widl` takes the bytes of help strings as they are).
std::string idlText(const automation::LibraryTable& library);

/// The definition of the few types of the system's own type library that ours refers to. `widl`
/// compiles it to `stdole2.tlb`, so that building needs no file of an installed system; hosts find
/// the types by identifier in the system's own.
std::string systemIdlText();

}  // namespace orvane::interface

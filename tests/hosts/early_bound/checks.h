#pragma once

#include "orvane/OrvBase0301.h"
#include "orvane/host.h"

#include <cstdint>

/// What the parts of the early-bound host share: a tally of checks, and a function a subject, each
/// in the file of its name.
namespace orvane::tests::early_bound {

using orvane::host::Error;
using orvane::host::Library;
using orvane::host::Pointer;
using orvane::host::Text;

/// Counts a check, and prints `what` when it fails.
void expect(bool condition, const char* what);

/// The number of the error that a call ends with; 0 when it succeeds.
std::int32_t errorOf(Library& library, HRESULT status);

/// An argument that is left out.
VARIANT leftOut();
VARIANT longValue(LONG value);

void checkGZip(Library& library);
void checkMain(Library& library);
void checkNetwork(Library& library);
void checkRegistry(Library& library);
void checkSettings(Library& library);
void checkUtilities(Library& library);

}  // namespace orvane::tests::early_bound

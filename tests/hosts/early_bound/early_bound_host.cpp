// A host as its author writes it: compiled against the printed header and the client alone, early
// bound, the same source on both platforms. It calls every slot of every class and prints what
// went wrong; the status is 0 when nothing did.
//
//   early_bound_host LIBRARY

#include "checks.h"

#include <exception>
#include <iostream>

namespace orvane::tests::early_bound {
namespace {

int checks = 0;
int failures = 0;

}  // namespace

void expect(bool condition, const char* what) {
    ++checks;
    if (condition) return;
    ++failures;
    std::cerr << "failed: " << what << "\n";
}

std::int32_t errorOf(Library& library, HRESULT status) {
    try {
        library.check(status);
    } catch (const Error& failure) {
        return failure.number();
    }
    return 0;
}

VARIANT leftOut() {
    VARIANT argument{};
    argument.vt = VT_ERROR;
    argument.scode = DISP_E_PARAMNOTFOUND;
    return argument;
}

VARIANT longValue(LONG value) {
    VARIANT argument{};
    argument.vt = VT_I4;
    argument.lVal = value;
    return argument;
}

}  // namespace orvane::tests::early_bound

int main(int count, char** arguments) {
    using namespace orvane::tests::early_bound;
    try {
        Library library(count > 1 ? arguments[1] : "");
        checkMain(library);
        checkGZip(library);
        checkNetwork(library);
        checkRegistry(library);
        checkSettings(library);
        checkUtilities(library);
        library.endThread();
        expect(library.canUnload(), "nothing is left alive");
    } catch (const Error& failure) {
        std::cerr << "run-time error " << failure.number() << "\n";
        return 1;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << "\n";
        return 1;
    }
    std::cout << checks << " checks, " << failures << " failed\n";
    return failures == 0 ? 0 : 1;
}

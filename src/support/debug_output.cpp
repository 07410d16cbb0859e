#include "support/debug_output.h"

#include "frame/values/codepage.h"
#include "platform/kernel32.h"

namespace orvane {

void nqDebugPrint(WStringView text) {
    platform::kernel32.OutputDebugStringA(toAnsi(text) + "\r\n");
}

void nqOutputDebugString(WStringView text) {
    platform::kernel32.OutputDebugStringA(toAnsi(text));
}

}  // namespace orvane

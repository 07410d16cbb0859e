// Makes three calls of two tables behind the trace; the tests that start it look at what it prints.

#include "platform/tables.h"
#include "platform/trace.h"

#include <cstdio>

int main() {
    namespace platform = orvane::platform;
    platform::installTrace();
    platform::installTrace();
    platform::kernel32.GetFileAttributesA("no such file");
    platform::gdi32.DeleteDC(platform::gdi32.CreateCompatibleDC(platform::DeviceContext::none));
    std::fputs("done\n", stderr);
    return 0;
}

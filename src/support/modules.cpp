#include "support/modules.h"

#include "frame/values/codepage.h"
#include "platform/kernel32.h"
#include "support/file_names.h"
#include "support/platform_failure.h"

#include <string>

namespace orvane {
namespace {

WString moduleFileName(platform::ModuleHandle module) {
    const std::string name = platform::kernel32.GetModuleFileNameA(module);
    if (name.empty()) raisePlatformFailure();
    return fromAnsi(name);
}

}  // namespace

WString nqGetEXEModuleFullFileName() {
    return moduleFileName(platform::ModuleHandle::none);
}

WString nqGetEXEModulePrettyFileName() {
    return nqGetModulePrettyFileName(platform::ModuleHandle::none);
}

WString nqGetModulePrettyFileName(platform::ModuleHandle module) {
    return nqGetLongFileName(moduleFileName(module));
}

}  // namespace orvane

#pragma once

namespace orvane::platform {

/// A function of one of the library's own modules, which lie beside it (beside a program that is
/// linked with this code, or in the folder "bin" next to the program's): null when the module can't
/// be loaded or lacks the function. The module stays loaded.
void* sideModuleFunction(const char* module, const char* function);

}  // namespace orvane::platform

#include "platform/paths.h"

#include "platform/linux/loaded_modules.h"
#include "platform/linux/names.h"

namespace orvane::platform {

char16_t pathSeparator() {
    return u'/';
}

bool isPathSeparator(char16_t unit) {
    return unit == u'/';
}

std::size_t pathRootLength(std::u16string_view path) {
    return !path.empty() && path.front() == u'/' ? 1 : 0;
}

std::u16string ownFileName() {
    const std::string path = ownModulePath();
    std::u16string name = unitsOf(path);
    return utf8Text(name) == path ? name : std::u16string();
}

}  // namespace orvane::platform

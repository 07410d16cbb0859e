#include "platform/paths.h"

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

}  // namespace orvane::platform

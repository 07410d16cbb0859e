#include "platform/paths.h"

namespace orvane::platform {
namespace {

/// The position behind the path part that begins at `start` and the separator that ends it.
std::size_t behindPart(std::u16string_view path, std::size_t start) {
    const std::size_t end = path.find_first_of(u"\\/", start);
    return end == std::u16string_view::npos ? path.size() : end + 1;
}

}  // namespace

char16_t pathSeparator() {
    return u'\\';
}

bool isPathSeparator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

std::size_t pathRootLength(std::u16string_view path) {
    if (path.size() >= 2 && path[1] == u':') {
        return path.size() >= 3 && isPathSeparator(path[2]) ? 3 : 2;
    }
    if (path.empty() || !isPathSeparator(path[0])) return 0;
    if (path.size() < 2 || !isPathSeparator(path[1])) return 1;
    return behindPart(path, behindPart(path, 2));
}

}  // namespace orvane::platform

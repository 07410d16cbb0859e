#include "platform/paths.h"

#include "platform/win32/system.h"

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

std::u16string ownFileName() {
    constexpr std::size_t kLongest = 32768;
    HMODULE module = nullptr;
    static const char place = 0;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                             GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<LPCWSTR>(&place), &module);
    std::u16string path(kLongest, u'\0');
    path.resize(::GetModuleFileNameW(module, reinterpret_cast<wchar_t*>(path.data()), kLongest));
    return path;
}

}  // namespace orvane::platform

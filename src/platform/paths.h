#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// How the platform spells file names.
namespace orvane::platform {

/// The unit that stands between the parts of a path: "\" on Windows, "/" elsewhere.
char16_t pathSeparator();

/// True for each unit that the platform takes as a separator; Windows takes both strokes.
bool isPathSeparator(char16_t unit);

/// The length of the start of `path` that names a root and is no folder to create or to cut: "/";
/// on Windows also "C:", "C:\" and "\\server\share\". 0 for a path without a root.
std::size_t pathRootLength(std::u16string_view path);

/// The full name of the file that this code is in: the library, or a program that it is linked
/// into. Empty when the system doesn't tell it, or when it is no text.
std::u16string ownFileName();

}  // namespace orvane::platform

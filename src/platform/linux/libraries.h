#pragma once

#include <string>

/// Libraries of the system that stand for Windows ones.
namespace orvane::platform {

/// The library that carries zlib, under its Windows name.
inline constexpr const char* kZlibLibrary = "ZLibStdCall.DLL";

/// Opens a library by name, in the system's form; null when there is none. A Windows library that
/// the system here has under another name ("ZLibStdCall.DLL" is "libz.so.1") is looked for under
/// that one, in the folder that was asked for if there was one. The caller closes it.
void* openLibrary(const std::string& name);

}  // namespace orvane::platform

#pragma once

#include "frame/values/wstring.h"

/// File names as the platform spells them. Names go to the platform in the ANSI code page.
namespace orvane {

/// `path` and `fileName` with exactly one separator between them, whatever separators they bring;
/// an empty `path` gives `fileName` as it is.
WString nqBuildFileName(WStringView path, WStringView fileName);

/// The folder part of a full name, without a separator at its end; only a root keeps its own
/// ("C:\", "/"). A name without a folder gives an empty text.
WString nqGetFilePath(WStringView fullName);

/// The absolute form of a name, which need not exist. A name that the platform refuses raises the
/// run-time error of that failure.
WString nqGetFullFileName(WStringView name);

/// The long form of a possibly short (8.3) name; a name that the platform can't look up, for one
/// that does not exist yet, comes back as it is.
WString nqGetLongFileName(WStringView name);

/// True when a file, and no folder, of this name exists.
bool nqIsFileExist(WStringView name);

/// True when a folder of this name exists.
bool nqIsDirectoryExist(WStringView name);

/// Creates a folder with all its missing parents. True when the folder is there at the end, made
/// now or before.
bool nqCreateComplexDirectory(WStringView path);

/// Creates an empty file of a new name in `folder` and gives its full name. An empty `folder` is
/// the system's temporary folder; of `prefix` the platform uses up to three characters. A failure
/// raises its run-time error (76 for a folder that is not there).
WString nqGetTempFileName2(WStringView folder, WStringView prefix);

}  // namespace orvane

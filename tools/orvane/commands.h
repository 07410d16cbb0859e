#pragma once

#include <span>
#include <stdexcept>
#include <string>

/// The tool's commands, a file each. Each takes the words behind its name and gives the exit
/// status: 0, or 1 when something failed.
namespace orvane::tool {

inline constexpr int kSuccess = 0;
inline constexpr int kFailed = 1;
inline constexpr int kBadUsage = 2;

using Words = std::span<const std::string>;

/// The words make no command; the text says why.
struct UsageError : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

/// `orvane args [WORDS...]`: what the library's parser made of the process's command line, the
/// number of parameters and then the program and each parameter by its index.
int runArgs();

/// `orvane describe [CLASS]`: the library's classes, or one class's members with their numbers,
/// types, defaults and help strings. A ProgID of another component is looked up in the registry,
/// and an object made to ask it.
int runDescribe(Words words);

/// `orvane picture info [--json] FILES...`: a line for each file with what was found in it, or with
/// its error.
int runPictureInfo(Words words);

/// `orvane picture convert IN OUT`: writes the picture in IN as OUT, a BMP, PPM or PNG file by its
/// extension.
int runPictureConvert(Words words);

/// `orvane picture show [-o FILE] FILES...`: a page with small forms of the pictures, as a PNG
/// file.
int runPictureShow(Words words);

/// `orvane gzip info [--json] FILES...`: a line for each gzip file with the library's verdict, its
/// sizes and its header, or with the reason why it can't be read.
int runGzipInfo(Words words);

/// `orvane gzip cat FILE`: writes the data of a gzip file to the standard output.
int runGzipCat(Words words);

/// `orvane register [FILE]`, `orvane unregister [FILE]`: writes the classes of a component, the
/// library itself without FILE, into the registry, or removes them.
int runRegister(Words words);
int runUnregister(Words words);

/// `orvane registry list|get|set|delete|export|import ...`: keys and values of the registry, and
/// registry files.
int runRegistry(Words words);

}  // namespace orvane::tool

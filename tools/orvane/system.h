#pragma once

#include <cstdint>
#include <new>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// What the tool asks of the system that it runs on. Names and texts are UTF-8 everywhere; on Linux
/// a name keeps its bytes, whatever they are.
namespace orvane::tool {

/// Nobody reads the standard output any more.
struct ReaderGone {};

/// A failure that ends a command; the text says what failed.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class Stream { output, errors };

/// Has to be called first: makes a closed pipe and a file that grows too long failures of the write
/// instead of the process's end.
void prepareProcess();

/// The words of the command line without the program's name.
std::vector<std::string> commandWords(int argc, char** argv);

bool isTerminal(Stream stream);

/// Writes to the standard output at once. Throws ReaderGone or Failure.
void writeToOutput(std::string_view text);

/// Everything that comes in on the standard input. Throws Failure.
std::string readInput();

/// The full name of a file, for a module to be loaded by: a name alone would be looked for where
/// the system keeps its own.
std::string fullName(const std::string& name);

/// Writes to the standard error output; failures have no place where they could be told.
void writeToErrors(std::string_view text);

/// Ends the process after ReaderGone as other tools end: by the signal for a closed pipe (141 for a
/// shell), and with status 0 where there is no such signal.
[[noreturn]] void endWithoutReader();

/// A file's name in the form in which the library finds the file: it takes names in the ANSI code
/// page. On Linux, where that is 1251, a name that isn't plain ASCII is passed as that of a
/// descriptor of this process, on Windows one outside the code page in its short form. A name that
/// has no such form, or is empty, comes out as one that doesn't exist.
class LibraryName {
public:
    explicit LibraryName(const std::string& name);
    LibraryName(const LibraryName&) = delete;
    LibraryName& operator=(const LibraryName&) = delete;
    ~LibraryName();

    const std::u16string& text() const { return text_; }

private:
    std::u16string text_;
    int descriptor_ = -1;
};

/// A file is longer than what reads it can hold.
struct FileTooLong : std::bad_alloc {
    explicit FileTooLong(std::uint64_t bytes) : size(bytes) {}

    std::uint64_t size;  ///< of the file; 0 when it doesn't tell, as a pipe
};

/// The bytes of a file. Throws Failure: the name, a colon and a blank, and why it can't be read;
/// FileTooLong when it has more than `most`.
std::string readFile(const std::string& name, std::uint64_t most = UINT64_MAX);

/// Writes a file under a name of its own beside `name` and renames it when it is complete. A file
/// or link of that name is replaced, anything else of that name is left alone. Throws Failure and
/// leaves nothing behind.
void replaceFile(const std::string& name, std::span<const std::uint8_t> content);

}  // namespace orvane::tool

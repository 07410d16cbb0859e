#include "instancing_flags.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace orvane::interface {

using namespace automation;

namespace {

// Offsets in the file. The header is followed by an optional word, the type records' offsets (a
// word each) and the directory of segments, 16 bytes each: offset, length, two words of no use
// here.
constexpr std::size_t kFlagsOffset = 0x14;
constexpr std::size_t kCountOffset = 0x20;
constexpr std::size_t kHeaderSize = 0x54;
constexpr std::uint32_t kHasHelpFile = 0x100;
constexpr std::size_t kTypeSegment = 0;
constexpr std::size_t kGuidSegment = 5;

// Offsets in a type record.
constexpr std::size_t kRecordSize = 0x64;
constexpr std::size_t kRecordKind = 0x00;
constexpr std::size_t kRecordGuid = 0x2C;
constexpr std::size_t kRecordFlags = 0x30;
constexpr std::uint32_t kKindMask = 0xF;

class Words {
public:
    explicit Words(std::span<std::uint8_t> file) : file_(file) {}

    std::uint32_t read(std::size_t offset) const {
        std::uint32_t value;
        std::memcpy(&value, at(offset, sizeof value), sizeof value);
        return value;
    }
    void write(std::size_t offset, std::uint32_t value) const {
        std::memcpy(at(offset, sizeof value), &value, sizeof value);
    }
    GUID guid(std::size_t offset) const {
        GUID value;
        std::memcpy(&value, at(offset, sizeof value), sizeof value);
        return value;
    }

private:
    std::uint8_t* at(std::size_t offset, std::size_t size) const {
        if (offset > file_.size() || file_.size() - offset < size) {
            throw std::runtime_error("the type library is cut short");
        }
        return file_.data() + offset;
    }

    std::span<std::uint8_t> file_;
};

struct Layout {
    explicit Layout(const Words& words) : types(words.read(kCountOffset)) {
        if (words.read(0) != 0x5446534D) throw std::runtime_error("not a type library");
        directory = kHeaderSize + ((words.read(kFlagsOffset) & kHasHelpFile) != 0 ? 4 : 0) +
                    std::size_t{types} * 4;
        records = words.read(directory + kTypeSegment * 16);
        guids = words.read(directory + kGuidSegment * 16);
    }

    std::uint32_t types;
    std::size_t directory;
    std::size_t records;
    std::size_t guids;
};

}  // namespace

void setInstancingFlags(std::span<std::uint8_t> file, const LibraryTable& library) {
    const Words words(file);
    const Layout layout(words);
    std::size_t found = 0;
    for (std::uint32_t i = 0; i < layout.types; ++i) {
        const std::size_t record = layout.records + i * kRecordSize;
        if ((words.read(record + kRecordKind) & kKindMask) != TKIND_COCLASS) continue;
        const GUID id = words.guid(layout.guids + words.read(record + kRecordGuid));
        const auto known = std::ranges::find(library.classes, id, &ClassTable::classId);
        if (known == library.classes.end()) throw std::runtime_error("a class without a table");
        words.write(record + kRecordFlags, static_cast<std::uint32_t>((*known)->instancing));
        ++found;
    }
    if (found != library.classes.size()) throw std::runtime_error("a class is missing");
}

}  // namespace orvane::interface

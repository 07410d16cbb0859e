#include "platform/host_runtime.h"

#include "platform/linux/errors.h"
#include "platform/linux/names.h"
#include "platform/linux/picture.h"
#include "platform/linux/picture_file.h"

namespace orvane::platform {

namespace {

std::int32_t readFile(const std::string& fileName, FileBytes& bytes) {
    if (const std::uint32_t error = nameError(fileName); error != kErrorSuccess) {
        return failWith(error, kRuntimeFileNotFound);
    }
    constexpr auto kWants = [](const FileBytes& start) { return isKnownPicture(start.bytes()); };
    return readPictureFile(systemName(fileName), kWants, bytes);
}

std::int32_t loadPicture(const std::string& fileName, IPictureDisp*& picture) {
    picture = nullptr;
    keepRefused({});
    FileBytes bytes;
    if (const std::int32_t failure = readFile(fileName, bytes); failure != 0) {
        return failure;
    }
    PictureContent content;
    if (const std::int32_t failure = contentFromFile(bytes.bytes(), content); failure != 0) {
        if (failure == kRuntimeInvalidPicture) {
            keepRefused(bytes.identity);
        }
        return failure;
    }
    picture = Picture::create(content);
    if (picture == nullptr) {
        releaseContent(content);
        return failWith(kErrorNotEnoughMemory, kRuntimeOutOfMemory);
    }
    return 0;
}

constexpr HostRuntime boundTable() {
    HostRuntime table;
    table.LoadPicture.bind<&loadPicture>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit HostRuntime hostRuntime = boundTable();

}  // namespace orvane::platform

#include "platform/oleaut32.h"

#include "platform/linux/errors.h"
#include "platform/linux/picture.h"

namespace orvane::platform {

namespace {

std::int32_t createPictureIndirect(const PictureDescription& description, bool own,
                                   IPictureDisp*& picture) {
    picture = nullptr;
    PictureContent content;
    if (!contentFromDescription(description, own, content)) {
        return E_INVALIDARG;
    }
    auto* object = Picture::create(content);
    if (object == nullptr) {
        return failWith(kErrorNotEnoughMemory, E_OUTOFMEMORY);
    }
    picture = object;
    return S_OK;
}

constexpr Oleaut32 boundTable() {
    Oleaut32 table;
    table.OleCreatePictureIndirect.bind<&createPictureIndirect>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit Oleaut32 oleaut32 = boundTable();

}  // namespace orvane::platform

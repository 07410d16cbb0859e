#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

/// The picture object's interface, as hosts know it (`include/orvane/automation.h`).
struct IPictureDisp;

namespace orvane::platform {

/// `PICTDESC`: what a picture is made of. `type` is the picture type of the binary interface
/// (0 none, 1 bitmap, 3 icon).
struct PictureDescription {
    std::int16_t type = 0;
    BitmapHandle bitmap = BitmapHandle::none;
    IconHandle icon = IconHandle::none;
};
void describe(std::string& out, const PictureDescription& description);
std::vector<std::string> handlesIn(const PictureDescription& description);

/// Results are status codes of the binary interface: negative means failed.
struct Oleaut32 {
    /// Makes a picture object; with `own` it deletes the handle at its end. The caller gets one
    /// reference in `picture`.
    Operation<std::int32_t(const PictureDescription& description, bool own, IPictureDisp*& picture)>
        OleCreatePictureIndirect{"oleaut32",
                                 "OleCreatePictureIndirect",
                                 static_cast<std::int32_t>(0x8007000E),
                                 kErrorNotEnoughMemory,
                                 {"gdi object", Holding::kNothing, 0, 1}};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(OleCreatePictureIndirect);
    }
};
extern Oleaut32 oleaut32;

}  // namespace orvane::platform

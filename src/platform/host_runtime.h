#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

struct IPictureDisp;

namespace orvane::platform {

/// What the host's runtime layer does for the library.
struct HostRuntime {
    /// The host's picture loader: BMP, JPEG, GIF, WMF, EMF, ICO and CUR, told apart by content. The
    /// result is 0 and one reference in `picture`, or a run-time error number: 53 no such file,
    /// 75 can't be opened, 7 out of memory, 481 not a picture that it knows.
    Operation<std::int32_t(const std::string& fileName, IPictureDisp*& picture)> LoadPicture{
        "host", "LoadPicture", 481, 0};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(LoadPicture);
    }
};
extern HostRuntime hostRuntime;

}  // namespace orvane::platform

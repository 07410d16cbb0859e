#pragma once

#include "pictures/CCompatibleBitmap.h"
#include "platform/handles.h"

#include <cstdint>
#include <memory>

namespace orvane {

/// A memory device context, freed with its former bitmap restored. Every failure is run-time error
/// 51 with a description of its own.
class CCompatibleDC {
public:
    CCompatibleDC();
    CCompatibleDC(const CCompatibleDC&) = delete;
    CCompatibleDC& operator=(const CCompatibleDC&) = delete;
    ~CCompatibleDC();

    platform::DeviceContext hDC() const { return dc_; }
    /// A bitmap of the depth of the one that is selected; sizes in pixels.
    std::unique_ptr<CCompatibleBitmap> CreateCompatibleBitmap(std::int32_t width,
                                                              std::int32_t height);
    /// Selects a bitmap in place of the one that was selected before; none restores the context's
    /// own.
    void SelectBitmap(platform::BitmapHandle bitmap);
    /// Copies from this context to another.
    void BitBlt(platform::DeviceContext destination, std::int32_t destinationX,
                std::int32_t destinationY, std::int32_t width, std::int32_t height,
                std::int32_t sourceX, std::int32_t sourceY, std::uint32_t rasterOperation);

private:
    platform::DeviceContext dc_;
    platform::GdiObject former_;
};

}  // namespace orvane

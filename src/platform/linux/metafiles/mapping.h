#pragma once

#include "platform/linux/metafiles/geometry.h"

#include <cstdint>

namespace orvane::metafiles {

/// The map modes of a device context, under their Windows numbers.
enum class MapMode : std::int32_t {
    text = 1,
    lowMetric = 2,
    highMetric = 3,
    lowEnglish = 4,
    highEnglish = 5,
    twips = 6,
    isotropic = 7,
    anisotropic = 8
};

/// The size of a device, as map modes with a unit of length need it.
struct DeviceSize {
    double pixelsPerMillimetreX = 96 / 25.4;
    double pixelsPerMillimetreY = 96 / 25.4;
};

/// The way from the units of a metafile's records to the pixels of the canvas: the world
/// transformation, the window on the viewport, and, for an enhanced metafile, the device it was
/// made on on the area it is drawn in.
class Mapping {
public:
    Mapping() = default;
    Mapping(DeviceSize device, const Matrix& last)
        : device_(device), last_(last), isAdvanced_(true) {}

    /// Enhanced metafiles are played in what Windows calls the advanced mode: a figure's box has
    /// its right and bottom edge.
    bool isAdvanced() const { return isAdvanced_; }

    /// Windows' rules: each mode but anisotropic sets both extents.
    void setMode(std::int32_t mode);
    void setWindowOrigin(Point origin) { windowOrigin_ = origin; }
    void setViewportOrigin(Point origin) { viewportOrigin_ = origin; }
    Point windowOrigin() const { return windowOrigin_; }
    Point viewportOrigin() const { return viewportOrigin_; }
    /// Extents count in the two modes that leave them to the file; one of 0 is not taken.
    void setWindowExtent(Point extent);
    void setViewportExtent(Point extent);
    void scaleWindowExtent(Point numerator, Point denominator);
    void scaleViewportExtent(Point numerator, Point denominator);
    void setWorld(const Matrix& world) { world_ = world; }
    const Matrix& world() const { return world_; }

    /// From units to pixels, all in one.
    Matrix whole() const { return world_.then(page()).then(last_); }
    /// For text: as `whole`, but letters stay upright and readable where the window is upside down
    /// or mirrored.
    Matrix text() const;
    /// From the pixels of the metafile's own device alone.
    Mapping lastOnly() const { return {device_, last_}; }
    /// The nearest pixel's corner; never further away than the drawing library can count.
    Point toDevice(Point point) const;

private:
    bool takesExtents() const {
        return mode_ == MapMode::isotropic || mode_ == MapMode::anisotropic;
    }
    Matrix page() const;
    void keepShape();

    MapMode mode_ = MapMode::text;
    DeviceSize device_;
    Point windowOrigin_;
    Point windowExtent_{1, 1};
    Point viewportOrigin_;
    Point viewportExtent_{1, 1};
    Matrix world_;
    Matrix last_;
    bool isAdvanced_ = false;
};

/// The nearest whole pixel, within what the drawing library can count.
Point rounded(Point device);

}  // namespace orvane::metafiles

#pragma once

#include "platform/linux/codecs/reader.h"
#include "platform/linux/metafiles/figures.h"
#include "platform/linux/metafiles/objects.h"

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace orvane::metafiles {

/// Where the records of an enhanced metafile begin: the device that it was made on, drawn in an
/// area so that its frame fills it. `file` begins at the header.
Mapping emfMapping(const codecs::Reader& file, const OrvaneMetafileArea& area);

/// Plays the records of an enhanced metafile: each is its type and its length in bytes (4 bytes
/// each) and its parameters.
///
/// A record that lacks parameters is left out; one whose length is none ends the playing.
class EmfPlayer {
public:
    explicit EmfPlayer(Painter& painter) : painter_(painter) {}

    /// `file` begins at the header, which is a record itself.
    void play(const codecs::Reader& file);

private:
    using Reader = codecs::Reader;
    using Handler = void (EmfPlayer::*)(const Reader&);
    struct Type {
        std::uint32_t number;
        std::uint32_t fewestBytes;
        Handler play;
    };
    static const Type kTypes[];

    void playRecord(std::uint32_t type, const Reader& record);

    // The state.
    void setWindowExt(const Reader& r);
    void setWindowOrg(const Reader& r);
    void setViewportExt(const Reader& r);
    void setViewportOrg(const Reader& r);
    void setBrushOrg(const Reader& r);
    void setMapMode(const Reader& r);
    void setBkMode(const Reader& r);
    void setPolyFillMode(const Reader& r);
    void setRop2(const Reader& r);
    void setStretchBltMode(const Reader& r);
    void setTextAlign(const Reader& r);
    void setTextColor(const Reader& r);
    void setBkColor(const Reader& r);
    void setArcDirection(const Reader& r);
    void setMiterLimit(const Reader& r);
    void setTextJustification(const Reader& r);
    void scaleViewportExt(const Reader& r);
    void scaleWindowExt(const Reader& r);
    void saveDC(const Reader& r);
    void restoreDC(const Reader& r);
    void setWorldTransform(const Reader& r);
    void modifyWorldTransform(const Reader& r);
    void excludeClipRect(const Reader& r);
    void intersectClipRect(const Reader& r);
    void offsetClipRgn(const Reader& r);
    void extSelectClipRgn(const Reader& r);
    void selectClipPath(const Reader& r);

    // Figures.
    void moveTo(const Reader& r);
    void lineTo(const Reader& r);
    void setPixel(const Reader& r);
    void rectangle(const Reader& r);
    void ellipse(const Reader& r);
    void roundRect(const Reader& r);
    void arc(const Reader& r);
    void chord(const Reader& r);
    void pie(const Reader& r);
    void arcTo(const Reader& r);
    void angleArc(const Reader& r);
    void extFloodFill(const Reader& r);
    template <bool kSmall>
    void polyBezier(const Reader& r);
    template <bool kSmall>
    void polygon(const Reader& r);
    template <bool kSmall>
    void polyline(const Reader& r);
    template <bool kSmall>
    void polyBezierTo(const Reader& r);
    template <bool kSmall>
    void polylineTo(const Reader& r);
    template <bool kSmall>
    void polyPolyline(const Reader& r);
    template <bool kSmall>
    void polyPolygon(const Reader& r);
    template <bool kSmall>
    void polyDraw(const Reader& r);
    void beginPath(const Reader& r);
    void endPath(const Reader& r);
    void closeFigure(const Reader& r);
    void fillPath(const Reader& r);
    void strokeAndFillPath(const Reader& r);
    void strokePath(const Reader& r);
    void widenPath(const Reader& r);
    void abortPath(const Reader& r);
    void fillRgn(const Reader& r);
    void frameRgn(const Reader& r);
    void invertRgn(const Reader& r);
    void paintRgn(const Reader& r);
    void gradientFill(const Reader& r);

    // Objects.
    void selectObject(const Reader& r);
    void deleteObject(const Reader& r);
    void createPen(const Reader& r);
    void extCreatePen(const Reader& r);
    void createBrush(const Reader& r);
    void createMonoBrush(const Reader& r);
    void createDibBrush(const Reader& r);
    void createPalette(const Reader& r);
    void selectPalette(const Reader& r);
    void createFont(const Reader& r);

    // Text and images.
    void extTextOutA(const Reader& r);
    void extTextOutW(const Reader& r);
    void polyTextOutA(const Reader& r);
    void polyTextOutW(const Reader& r);
    void smallTextOut(const Reader& r);
    void bitBlt(const Reader& r);
    void stretchBlt(const Reader& r);
    void maskBlt(const Reader& r);
    void plgBlt(const Reader& r);
    void setDibitsToDevice(const Reader& r);
    void stretchDibits(const Reader& r);
    void alphaBlend(const Reader& r);
    void transparentBlt(const Reader& r);

    void drawArc(const Reader& r, ArcEnd end);
    void polyPoly(const Reader& r, bool small, bool closed);
    void drawText(const Reader& record, std::uint64_t at, bool wide);
    void drawCharacters(const struct Characters& characters, TextRun& run, const Reader& advances,
                        bool pairs);
    ImageHandle imageAt(const Reader& r, std::uint64_t usageAt, std::uint64_t offsetsAt) const;
    Transfer blit(const Reader& r, bool stretches) const;
    Region regionAt(const Reader& r, std::uint64_t at) const;
    Brush brushAt(std::uint32_t index) const;
    const Object& objectAt(std::uint32_t index) const;

    Painter& painter_;
    std::unordered_map<std::uint32_t, Object> objects_;
};

}  // namespace orvane::metafiles

#pragma once

#include "platform/linux/codecs/reader.h"
#include "platform/linux/metafiles/figures.h"
#include "platform/linux/metafiles/objects.h"

#include <cstdint>
#include <vector>

namespace orvane::metafiles {

/// Plays the records of a Windows metafile. They are words; a record is its length in words (4
/// bytes), its function and its parameters, which stand in the opposite order of a call's.
///
/// A record that lacks parameters is left out; one without a length ends the playing.
class WmfPlayer {
public:
    explicit WmfPlayer(Painter& painter) : painter_(painter) {}

    /// `records` begins behind the header.
    void play(const codecs::Reader& records);

private:
    using Reader = codecs::Reader;
    using Handler = void (WmfPlayer::*)(const Reader&);
    struct Function {
        std::uint16_t number;
        std::uint16_t fewestBytes;
        Handler play;
    };
    static const Function kFunctions[];

    void playRecord(std::uint16_t function, const Reader& record);

    // The state.
    void setBkColor(const Reader& r);
    void setBkMode(const Reader& r);
    void setMapMode(const Reader& r);
    void setRop2(const Reader& r);
    void setPolyFillMode(const Reader& r);
    void setStretchBltMode(const Reader& r);
    void setTextCharExtra(const Reader& r);
    void setTextColor(const Reader& r);
    void setTextJustification(const Reader& r);
    void setTextAlign(const Reader& r);
    void setWindowOrg(const Reader& r);
    void setWindowExt(const Reader& r);
    void setViewportOrg(const Reader& r);
    void setViewportExt(const Reader& r);
    void offsetWindowOrg(const Reader& r);
    void scaleWindowExt(const Reader& r);
    void offsetViewportOrg(const Reader& r);
    void scaleViewportExt(const Reader& r);
    void saveDC(const Reader& r);
    void restoreDC(const Reader& r);
    void excludeClipRect(const Reader& r);
    void intersectClipRect(const Reader& r);
    void offsetClipRgn(const Reader& r);
    void selectClipRegion(const Reader& r);

    // Figures.
    void moveTo(const Reader& r);
    void lineTo(const Reader& r);
    void setPixel(const Reader& r);
    void rectangle(const Reader& r);
    void ellipse(const Reader& r);
    void roundRect(const Reader& r);
    void arc(const Reader& r);
    void pie(const Reader& r);
    void chord(const Reader& r);
    void polygon(const Reader& r);
    void polyline(const Reader& r);
    void polyPolygon(const Reader& r);
    void floodFill(const Reader& r);
    void extFloodFill(const Reader& r);
    void fillRegion(const Reader& r);
    void frameRegion(const Reader& r);
    void invertRegion(const Reader& r);
    void paintRegion(const Reader& r);

    // Objects.
    void createPen(const Reader& r);
    void createBrush(const Reader& r);
    void createFont(const Reader& r);
    void createPalette(const Reader& r);
    void createRegion(const Reader& r);
    void createPatternBrush(const Reader& r);
    void createDibPatternBrush(const Reader& r);
    void createBitmap(const Reader& r);
    void selectObject(const Reader& r);
    void deleteObject(const Reader& r);

    // Text and images.
    void textOut(const Reader& r);
    void extTextOut(const Reader& r);
    void patBlt(const Reader& r);
    void bitBlt(const Reader& r);
    void stretchBlt(const Reader& r);
    void dibBitBlt(const Reader& r);
    void dibStretchBlt(const Reader& r);
    void stretchDib(const Reader& r);
    void setDibToDevice(const Reader& r);

    void add(Object object);
    const Object& objectAt(std::uint32_t index) const;
    std::vector<Box> regionAt(std::uint32_t index) const;
    bool isRegion(std::uint32_t index) const;
    Brush brushAt(std::uint32_t index) const;
    void drawArc(const Reader& r, ArcEnd end);
    void blit(const Reader& r, bool isDib, bool stretches);
    void drawCharacters(const Reader& text, TextRun& run, const Reader& advances);

    Painter& painter_;
    std::vector<Object> objects_;
};

}  // namespace orvane::metafiles

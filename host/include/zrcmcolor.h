#pragma once
// The host's colour value.

#include "zrgeometry.h"
#include "zrhost_export.h"
#include "zrjson.h"
#include "zrstring.h"

#include <cstdint>
#include <memory>

class ZRHOST_EXPORT ZrCmEntityColor
{
public:
    enum ColorMethod : uint8_t {
        kByLayer = 192,
        kByBlock = 193,
        kByColor = 194,
        kByACI = 195,
        kByPen = 196,
        kForeground = 197,
        kNone = 200,
    };

    ZrCmEntityColor() = default;
    ZrCmEntityColor(ColorMethod method, uint16_t index) : m_method(method), m_index(index) {}
    ColorMethod colorMethod() const { return m_method; }
    uint16_t colorIndex() const { return m_index; }

private:
    ColorMethod m_method = kByLayer;
    uint16_t m_index = 256;
};

class ZRHOST_EXPORT ZrCmColor
{
public:
    ZrCmColor();
    ZrCmColor(const ZrCmColor& other);
    ZrCmColor& operator=(const ZrCmColor& other);
    ZrCmColor(ZrCmColor&& other) noexcept;
    ZrCmColor& operator=(ZrCmColor&& other) noexcept;
    virtual ~ZrCmColor();

    virtual ZrCmEntityColor::ColorMethod colorMethod() const;
    // By layer sets index 256 and by block index 0; an index colour made a true colour keeps its look.
    // A code outside the host's methods, 192 to 201, is refused with Zr::eInvalidInput.
    virtual int setColorMethod(ZrCmEntityColor::ColorMethod method);
    virtual bool isByColor() const;
    virtual bool isByLayer() const;
    virtual bool isByBlock() const;
    virtual bool isByACI() const;
    virtual bool isByPen() const;
    virtual bool isForeground() const;
    // The raw word: the method in the top byte, then red, green and blue for a true colour, the index
    // in the low 16 bits for the others. A word of no method is refused with Zr::eInvalidInput.
    virtual uint32_t color() const;
    virtual int setColor(uint32_t word);
    // Makes a true colour; the names stay, so that a book colour may be named first.
    virtual int setRGB(uint8_t red, uint8_t green, uint8_t blue);
    virtual int setRed(uint8_t red);
    virtual int setGreen(uint8_t green);
    virtual int setBlue(uint8_t blue);
    // The channels as the colour shows: an index colour answers its entry of the standard palette,
    // white beyond it.
    virtual uint8_t red() const;
    virtual uint8_t green() const;
    virtual uint8_t blue() const;
    // A true colour answers the index colour nearest to it.
    virtual uint16_t colorIndex() const;
    // Never changes the method.
    virtual int setColorIndex(uint16_t index);
    virtual uint16_t penIndex() const;
    virtual int setPenIndex(uint16_t index);
    virtual int setNames(const wchar_t* colorName, const wchar_t* bookName = nullptr);
    virtual const wchar_t* colorName() const;
    virtual const wchar_t* bookName() const;
    // "BOOK$COLOUR" for a book colour, the colour name without a book, else "R,G,B", "BYLAYER",
    // "BYBLOCK" or the index; empty for no colour. Valid until the next call on this colour.
    virtual const wchar_t* colorNameForDisplay();
    virtual bool hasColorName() const;
    virtual bool hasBookName() const;

    ZrCmEntityColor entityColor() const;
    bool operator==(const ZrCmColor& other) const;
    bool operator!=(const ZrCmColor& other) const { return !(*this == other); }

private:
    // Entities carry a colour each, and few colours have names: the names live in one shared,
    // never changed record, null for a colour without names.
    struct Names;
    std::shared_ptr<const Names> m_names;
    ZrCmEntityColor::ColorMethod m_method;
    uint8_t m_red = 0;
    uint8_t m_green = 0;
    uint8_t m_blue = 0;
    uint16_t m_index = 256;
};

// Palettes: 256 entries, red in bits 0-7, green 8-15, blue 16-23. Null only when no palette exists.
ZRHOST_EXPORT const uint32_t* zrcmAcadPalette(uint32_t background);
ZRHOST_EXPORT const uint32_t* zrcmDispPalette(uint32_t background);
// The palette of the current drawing's display: the standard one, with entry 7 white (0xFFFFFF) on a
// dark drawing background and black (0) on a light one.
ZRHOST_EXPORT const uint32_t* zrsiutCurPalette();
// Red, green, blue, saturation, luminance as fractions 0..1; hue in degrees 0..360.
ZRHOST_EXPORT void zrdbConvertRgbToHsl(const ZrGeVector3d& rgb, ZrGeVector3d& hsl);
ZRHOST_EXPORT void zrdbConvertHslToRgb(const ZrGeVector3d& hsl, ZrGeVector3d& rgb);
// The text that seeds a recent-colour item: "BYBLOCK" for 0, "BYLAYER" for 256, else the decimal index.
ZRHOST_EXPORT ZrString zrutColorToStr(short index);
// A colour in a parameter object: "method" (int), "index" (int), "rgb" (int, red in bits 0-7,
// green 8-15, blue 16-23), "colorName", "bookName" (strings). JsonToZrCmColor reads them back into an
// equal colour; missing keys keep the defaults of a default ZrCmColor (method and index taken first,
// then rgb for method 194, then the names).
ZRHOST_EXPORT void ZrCmColorToJson(const ZrCmColor& color, ZrJsonPtr param);
ZRHOST_EXPORT ZrCmColor JsonToZrCmColor(ZrJsonPtr param);

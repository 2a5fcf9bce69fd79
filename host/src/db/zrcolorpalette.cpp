#include "zrcmcolor.h"

#include "zrcolorpalette.h"
#include "zrhostui.h"

#include <array>

namespace {

// Nine named colours; then 24 hues 15 degrees apart, each in five brightnesses, full and half
// saturated in turn; then six greys.
std::array<uint32_t, 256> standardPalette()
{
    std::array<uint32_t, 256> palette{};
    const uint32_t named[10] = {zrPackRgb(0, 0, 0),       zrPackRgb(255, 0, 0),     zrPackRgb(255, 255, 0),
                                zrPackRgb(0, 255, 0),     zrPackRgb(0, 255, 255),   zrPackRgb(0, 0, 255),
                                zrPackRgb(255, 0, 255),   zrPackRgb(255, 255, 255), zrPackRgb(128, 128, 128),
                                zrPackRgb(192, 192, 192)};
    for (int i = 0; i < 10; ++i)
        palette[size_t(i)] = named[i];
    const int brightness[5] = {255, 165, 127, 76, 38};
    for (int i = 10; i < 250; ++i) {
        const int hue = (i / 10 - 1) * 15;
        const int shade = i % 10;
        const double top = brightness[shade / 2];
        const double bottom = shade % 2 ? int(top) / 2 : 0;
        // Along the six edges of the colour hexagon, one channel rises or falls between bottom and top.
        const double rising = bottom + (top - bottom) * (hue % 60) / 60.0;
        const double falling = bottom + (top - bottom) * (60 - hue % 60) / 60.0;
        double rgb[3];
        switch (hue / 60) {
        case 0: rgb[0] = top; rgb[1] = rising; rgb[2] = bottom; break;
        case 1: rgb[0] = falling; rgb[1] = top; rgb[2] = bottom; break;
        case 2: rgb[0] = bottom; rgb[1] = top; rgb[2] = rising; break;
        case 3: rgb[0] = bottom; rgb[1] = falling; rgb[2] = top; break;
        case 4: rgb[0] = rising; rgb[1] = bottom; rgb[2] = top; break;
        default: rgb[0] = top; rgb[1] = bottom; rgb[2] = falling; break;
        }
        palette[size_t(i)] = zrPackRgb(uint32_t(rgb[0]), uint32_t(rgb[1]), uint32_t(rgb[2]));
    }
    const uint32_t greys[6] = {51, 80, 105, 130, 190, 255};
    for (int i = 0; i < 6; ++i)
        palette[size_t(250 + i)] = greys[i] * 0x010101u;
    return palette;
}

// Entry 7 is the foreground: it stands out against the background it is drawn on.
const std::array<uint32_t, 256>& paletteForeground(bool darkBackground)
{
    static const std::array<uint32_t, 256> onDark = zrHostIndexPalette();
    static const std::array<uint32_t, 256> onLight = [] {
        std::array<uint32_t, 256> palette = zrHostIndexPalette();
        palette[7] = 0;
        return palette;
    }();
    return darkBackground ? onDark : onLight;
}

// The background word holds an alpha in its top byte, which is no part of the colour.
bool isDarkBackground(uint32_t background)
{
    const uint32_t a = background & 0xFF;
    const uint32_t b = (background >> 8) & 0xFF;
    const uint32_t c = (background >> 16) & 0xFF;
    return a + b + c < 3 * 128;
}

} // namespace

const std::array<uint32_t, 256>& zrHostIndexPalette()
{
    static const std::array<uint32_t, 256> palette = standardPalette();
    return palette;
}

const uint32_t* zrcmAcadPalette(uint32_t background) { return paletteForeground(isDarkBackground(background)).data(); }
const uint32_t* zrcmDispPalette(uint32_t background) { return zrcmAcadPalette(background); }
const uint32_t* zrsiutCurPalette() { return paletteForeground(zrHostUi().drawingBackgroundDark).data(); }

#include "zrcmcolor.h"

#include "zrcolorpalette.h"
#include "zrdbobject.h"

#include <climits>

struct ZrCmColor::Names
{
    ZrString colorName;
    ZrString bookName;
    ZrString displayName;
};

namespace {

// The host's method codes run from 192, by layer, to 201; not all of them have names here.
bool isKnownMethod(ZrCmEntityColor::ColorMethod method)
{
    return method >= ZrCmEntityColor::kByLayer && method <= 201;
}

uint8_t channelOfIndex(uint16_t index, int shift)
{
    return index < 256 ? uint8_t(zrHostIndexPalette()[index] >> shift) : 0xFF;
}

// The index colour nearest to a true colour, 1 to 255: what a true colour answers for its index,
// so that it never reads as by layer (256) or by block (0).
uint16_t nearestIndex(uint8_t red, uint8_t green, uint8_t blue)
{
    uint16_t best = 1;
    int bestDistance = INT_MAX;
    for (uint16_t i = 1; i < 256; ++i) {
        const int dr = channelOfIndex(i, 0) - red;
        const int dg = channelOfIndex(i, 8) - green;
        const int db = channelOfIndex(i, 16) - blue;
        const int distance = dr * dr + dg * dg + db * db;
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    return best;
}

} // namespace

ZrCmColor::ZrCmColor() : m_method(ZrCmEntityColor::kByLayer) {}
ZrCmColor::ZrCmColor(const ZrCmColor& other) = default;
ZrCmColor& ZrCmColor::operator=(const ZrCmColor& other) = default;
ZrCmColor::ZrCmColor(ZrCmColor&& other) noexcept = default;
ZrCmColor& ZrCmColor::operator=(ZrCmColor&& other) noexcept = default;
ZrCmColor::~ZrCmColor() = default;

ZrCmEntityColor::ColorMethod ZrCmColor::colorMethod() const { return m_method; }

int ZrCmColor::setColorMethod(ZrCmEntityColor::ColorMethod method)
{
    if (!isKnownMethod(method))
        return Zr::eInvalidInput;
    // An index colour turned true colour keeps the look it had.
    if (method == ZrCmEntityColor::kByColor && !isByColor()) {
        m_red = red();
        m_green = green();
        m_blue = blue();
    }
    m_method = method;
    if (method == ZrCmEntityColor::kByLayer)
        m_index = 256;
    else if (method == ZrCmEntityColor::kByBlock)
        m_index = 0;
    return Zr::eOk;
}

bool ZrCmColor::isByColor() const { return m_method == ZrCmEntityColor::kByColor; }
bool ZrCmColor::isByLayer() const { return m_method == ZrCmEntityColor::kByLayer; }
bool ZrCmColor::isByBlock() const { return m_method == ZrCmEntityColor::kByBlock; }
bool ZrCmColor::isByACI() const { return m_method == ZrCmEntityColor::kByACI; }
bool ZrCmColor::isByPen() const { return m_method == ZrCmEntityColor::kByPen; }
bool ZrCmColor::isForeground() const { return m_method == ZrCmEntityColor::kForeground; }

uint32_t ZrCmColor::color() const
{
    if (m_method == ZrCmEntityColor::kByColor)
        return (uint32_t(m_method) << 24) | (uint32_t(m_red) << 16) | (uint32_t(m_green) << 8) | m_blue;
    return (uint32_t(m_method) << 24) | m_index;
}

int ZrCmColor::setColor(uint32_t word)
{
    const auto method = static_cast<ZrCmEntityColor::ColorMethod>(word >> 24);
    if (!isKnownMethod(method))
        return Zr::eInvalidInput;
    m_method = method;
    if (method == ZrCmEntityColor::kByColor) {
        m_red = uint8_t(word >> 16);
        m_green = uint8_t(word >> 8);
        m_blue = uint8_t(word);
    } else {
        m_index = uint16_t(word & 0xFFFF);
    }
    return Zr::eOk;
}

int ZrCmColor::setRGB(uint8_t red, uint8_t green, uint8_t blue)
{
    m_method = ZrCmEntityColor::kByColor;
    m_red = red;
    m_green = green;
    m_blue = blue;
    return Zr::eOk;
}

int ZrCmColor::setRed(uint8_t red) { return setRGB(red, green(), blue()); }
int ZrCmColor::setGreen(uint8_t green) { return setRGB(red(), green, blue()); }
int ZrCmColor::setBlue(uint8_t blue) { return setRGB(red(), green(), blue); }

uint8_t ZrCmColor::red() const { return isByColor() ? m_red : channelOfIndex(m_index, 0); }
uint8_t ZrCmColor::green() const { return isByColor() ? m_green : channelOfIndex(m_index, 8); }
uint8_t ZrCmColor::blue() const { return isByColor() ? m_blue : channelOfIndex(m_index, 16); }
uint16_t ZrCmColor::colorIndex() const { return isByColor() ? nearestIndex(m_red, m_green, m_blue) : m_index; }

int ZrCmColor::setColorIndex(uint16_t index)
{
    m_index = index;
    return Zr::eOk;
}

uint16_t ZrCmColor::penIndex() const { return m_index; }
int ZrCmColor::setPenIndex(uint16_t index) { return setColorIndex(index); }

int ZrCmColor::setNames(const wchar_t* colorName, const wchar_t* bookName)
{
    const ZrString color(colorName);
    const ZrString book(bookName);
    // A new record each time: copies of this colour keep sharing the old one.
    m_names = color.isEmpty() && book.isEmpty() ? nullptr
                                                 : std::make_shared<const Names>(Names{color, book, ZrString()});
    return Zr::eOk;
}

const wchar_t* ZrCmColor::colorName() const { return m_names ? m_names->colorName.kwszPtr() : L""; }
const wchar_t* ZrCmColor::bookName() const { return m_names ? m_names->bookName.kwszPtr() : L""; }

// A book colour shows as BOOK$COLOUR, the form the colour line takes back; any other colour by its
// value. The text is kept in a fresh names record, since the value may have changed since last asked.
const wchar_t* ZrCmColor::colorNameForDisplay()
{
    ZrString display;
    if (hasColorName())
        display = hasBookName() ? m_names->bookName + ZrString(L"$") + m_names->colorName : m_names->colorName;
    else if (isByColor())
        display = ZrString::format(L"%d,%d,%d", int(m_red), int(m_green), int(m_blue));
    else if (isByLayer() || isByBlock() || isByACI())
        display = zrutColorToStr(short(m_index));
    m_names = std::make_shared<const Names>(Names{ZrString(colorName()), ZrString(bookName()), display});
    return m_names->displayName.kwszPtr();
}

bool ZrCmColor::hasColorName() const { return m_names && !m_names->colorName.isEmpty(); }
bool ZrCmColor::hasBookName() const { return m_names && !m_names->bookName.isEmpty(); }

ZrCmEntityColor ZrCmColor::entityColor() const { return ZrCmEntityColor(m_method, colorIndex()); }

bool ZrCmColor::operator==(const ZrCmColor& other) const
{
    if (color() != other.color())
        return false;
    if (m_names == other.m_names)
        return true;
    return ZrString(colorName()) == ZrString(other.colorName()) && ZrString(bookName()) == ZrString(other.bookName());
}

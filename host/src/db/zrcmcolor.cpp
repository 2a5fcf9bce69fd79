#include "zrcmcolor.h"

#include <QColor>
#include <array>

struct ZrCmColor::Names
{
    ZrString colorName;
    ZrString bookName;
    ZrString displayName;
};

namespace {

// The 256 index colours: nine named ones, 24 hues in ten shades each, six greys.
const std::array<uint32_t, 256>& indexPalette()
{
    static const std::array<uint32_t, 256> palette = [] {
        std::array<uint32_t, 256> p{};
        const uint32_t named[10] = {0x000000, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                    0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
        for (int i = 0; i < 10; ++i)
            p[i] = named[i];
        const double values[5] = {1.0, 0.65, 0.5, 0.3, 0.15};
        for (int i = 10; i < 250; ++i) {
            const int shade = i % 10;
            const QColor c = QColor::fromHsvF(((i / 10 - 1) * 15 % 360) / 360.0, shade % 2 ? 0.5 : 1.0,
                                              values[shade / 2]);
            p[i] = (uint32_t(c.red()) << 16) | (uint32_t(c.green()) << 8) | uint32_t(c.blue());
        }
        const int greys[6] = {51, 91, 132, 173, 214, 255};
        for (int i = 0; i < 6; ++i)
            p[250 + i] = uint32_t(greys[i]) * 0x010101u;
        return p;
    }();
    return palette;
}

uint8_t channelOfIndex(uint16_t index, int shift)
{
    return index < 256 ? uint8_t(indexPalette()[index] >> shift) : 0xFF;
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
    m_method = method;
    if (method == ZrCmEntityColor::kByLayer)
        m_index = 256;
    else if (method == ZrCmEntityColor::kByBlock)
        m_index = 0;
    return 0;
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
    m_method = static_cast<ZrCmEntityColor::ColorMethod>(word >> 24);
    if (m_method == ZrCmEntityColor::kByColor) {
        m_red = uint8_t(word >> 16);
        m_green = uint8_t(word >> 8);
        m_blue = uint8_t(word);
    } else {
        m_index = uint16_t(word & 0xFFFF);
    }
    return 0;
}

int ZrCmColor::setRGB(uint8_t red, uint8_t green, uint8_t blue)
{
    m_method = ZrCmEntityColor::kByColor;
    m_red = red;
    m_green = green;
    m_blue = blue;
    return 0;
}

int ZrCmColor::setRed(uint8_t red) { return setRGB(red, green(), blue()); }
int ZrCmColor::setGreen(uint8_t green) { return setRGB(red(), green, blue()); }
int ZrCmColor::setBlue(uint8_t blue) { return setRGB(red(), green(), blue); }

uint8_t ZrCmColor::red() const { return isByColor() ? m_red : channelOfIndex(m_index, 16); }
uint8_t ZrCmColor::green() const { return isByColor() ? m_green : channelOfIndex(m_index, 8); }
uint8_t ZrCmColor::blue() const { return isByColor() ? m_blue : channelOfIndex(m_index, 0); }
uint16_t ZrCmColor::colorIndex() const { return m_index; }

int ZrCmColor::setColorIndex(uint16_t index)
{
    m_index = index;
    return 0;
}

uint16_t ZrCmColor::penIndex() const { return m_index; }
int ZrCmColor::setPenIndex(uint16_t index) { return setColorIndex(index); }

int ZrCmColor::setNames(const wchar_t* colorName, const wchar_t* bookName)
{
    const ZrString color(colorName);
    const ZrString book(bookName);
    if (color.isEmpty() && book.isEmpty()) {
        m_names.reset();
        return 0;
    }
    // A new record each time: copies of this colour keep sharing the old one.
    m_names = std::make_shared<const Names>(
        Names{color, book, book.isEmpty() ? color : book + ZrString(L"$") + color});
    return 0;
}

const wchar_t* ZrCmColor::colorName() const { return m_names ? m_names->colorName.kwszPtr() : L""; }
const wchar_t* ZrCmColor::bookName() const { return m_names ? m_names->bookName.kwszPtr() : L""; }
const wchar_t* ZrCmColor::colorNameForDisplay() { return m_names ? m_names->displayName.kwszPtr() : L""; }
bool ZrCmColor::hasColorName() const { return m_names && !m_names->colorName.isEmpty(); }
bool ZrCmColor::hasBookName() const { return m_names && !m_names->bookName.isEmpty(); }

ZrCmEntityColor ZrCmColor::entityColor() const { return ZrCmEntityColor(m_method, m_index); }

bool ZrCmColor::operator==(const ZrCmColor& other) const
{
    if (color() != other.color())
        return false;
    if (m_names == other.m_names)
        return true;
    return ZrString(colorName()) == ZrString(other.colorName()) && ZrString(bookName()) == ZrString(other.bookName());
}

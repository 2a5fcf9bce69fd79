#pragma once
// The host's colour value.

#include "zrhost_export.h"
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
    virtual int setColorMethod(ZrCmEntityColor::ColorMethod method);
    virtual bool isByColor() const;
    virtual bool isByLayer() const;
    virtual bool isByBlock() const;
    virtual bool isByACI() const;
    virtual bool isByPen() const;
    virtual bool isForeground() const;
    // The raw word: the method in the top byte, then red, green and blue.
    virtual uint32_t color() const;
    virtual int setColor(uint32_t word);
    virtual int setRGB(uint8_t red, uint8_t green, uint8_t blue);
    virtual int setRed(uint8_t red);
    virtual int setGreen(uint8_t green);
    virtual int setBlue(uint8_t blue);
    virtual uint8_t red() const;
    virtual uint8_t green() const;
    virtual uint8_t blue() const;
    virtual uint16_t colorIndex() const;
    // Never changes the method.
    virtual int setColorIndex(uint16_t index);
    virtual uint16_t penIndex() const;
    virtual int setPenIndex(uint16_t index);
    virtual int setNames(const wchar_t* colorName, const wchar_t* bookName = nullptr);
    virtual const wchar_t* colorName() const;
    virtual const wchar_t* bookName() const;
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

#pragma once
// What the colour widgets share inside the module.

#include <QColor>
#include <cstdint>

// A palette entry or channel word, red in bits 0-7, green 8-15, blue 16-23, as an opaque colour.
inline QColor colorOfWord(uint32_t word)
{
    return QColor(int(word & 0xFF), int((word >> 8) & 0xFF), int((word >> 16) & 0xFF));
}

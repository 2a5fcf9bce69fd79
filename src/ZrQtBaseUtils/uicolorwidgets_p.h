#pragma once
// What the colour widgets share inside the module.

#include <QColor>
#include <QString>
#include <cstdint>

// A palette entry or channel word, red in bits 0-7, green 8-15, blue 16-23, as an opaque colour.
inline QColor colorOfWord(uint32_t word)
{
    return QColor(int(word & 0xFF), int((word >> 8) & 0xFF), int((word >> 16) & 0xFF));
}

// The text of the channel label of `channel` (0 red, 1 green, 2 blue) showing `value`, as the true colour
// and book tabs show it: "  红:   N". `opening` gives the true colour tab's text before its first update,
// whose words come from other keys.
QString channelLabelText(int channel, int value, bool opening = false);

#pragma once
// UTF-8 decoding and encoding shared by ZrString and the JSON reader and writer.

#include <cstddef>
#include <string>

namespace ZrUtf8 {

constexpr char32_t kReplacement = 0xFFFD;

// Decodes one sequence at the start of `text`. Returns its length in bytes, or, for ill-formed bytes,
// minus the length of the longest ill-formed prefix, so that each such prefix can stand for one U+FFFD
// (the Unicode "maximal subpart" practice). Overlong forms, surrogates and values past U+10FFFF are
// ill-formed.
inline int decode(const unsigned char* text, size_t available, char32_t& codePoint)
{
    const unsigned char lead = text[0];
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    }
    int trailing = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead < 0xC2) {
        return -1;
    } else if (lead < 0xE0) {
        trailing = 1;
        codePoint = lead & 0x1Fu;
    } else if (lead < 0xF0) {
        trailing = 2;
        codePoint = lead & 0x0Fu;
        if (lead == 0xE0)
            low = 0xA0;
        else if (lead == 0xED)
            high = 0x9F;
    } else if (lead < 0xF5) {
        trailing = 3;
        codePoint = lead & 0x07u;
        if (lead == 0xF0)
            low = 0x90;
        else if (lead == 0xF4)
            high = 0x8F;
    } else {
        return -1;
    }
    for (int i = 1; i <= trailing; ++i) {
        if (static_cast<size_t>(i) >= available)
            return -i;
        const unsigned char next = text[i];
        if (next < low || next > high)
            return -i;
        codePoint = (codePoint << 6) | (next & 0x3Fu);
        low = 0x80;
        high = 0xBF;
    }
    return trailing + 1;
}

// Surrogates and values past U+10FFFF have no UTF-8 form and become U+FFFD.
inline void append(std::string& out, char32_t codePoint)
{
    if ((codePoint >= 0xD800 && codePoint <= 0xDFFF) || codePoint > 0x10FFFF)
        codePoint = kReplacement;
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

} // namespace ZrUtf8

#pragma once
// The index colours, shared by the colour value and the palette functions. Private to the host library.

#include <array>
#include <cstdint>

// The 256 standard index colours, red in bits 0-7, green 8-15, blue 16-23; entry 7 white.
const std::array<uint32_t, 256>& zrHostIndexPalette();

// Red, green and blue packed as the palette holds them.
inline uint32_t zrPackRgb(uint32_t red, uint32_t green, uint32_t blue) { return red | (green << 8) | (blue << 16); }

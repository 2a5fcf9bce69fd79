#pragma once
// The file header that makes a device-independent bitmap held in memory a BMP file Qt's reader takes.

#include <QtEndian>
#include <cstdint>

constexpr int kZrBmpFileHeaderSize = 14;

// Writes the header at `out`: "BM", the whole file's size, two reserved words, and `dataOffset`, where
// the pixels start counted from the file's first byte.
inline void zrWriteBmpFileHeader(uint8_t* out, uint32_t fileSize, uint32_t dataOffset)
{
    qToLittleEndian<quint16>(19778, out); // "BM"
    qToLittleEndian<quint32>(fileSize, out + 2);
    qToLittleEndian<quint32>(0, out + 6);
    qToLittleEndian<quint32>(dataOffset, out + 10);
}

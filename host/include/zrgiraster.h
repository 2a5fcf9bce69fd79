#pragma once
// Raster images of the host and pictures of entities drawn into them.

#include "zrarray.h"
#include "zrdbdatabase.h"
#include "zrhost_export.h"
#include "zrjson.h"
#include "zrrxobject.h"

#include <cstddef>
#include <cstdint>

class ZrDbEntity;

// Where each channel of a pixel lies: its first bit and its width, bits counted from the low bit of
// the pixel's first byte in memory. So red, green, blue bytes in this order are red at 0, green at 8
// and blue at 16.
struct ZRHOST_EXPORT ZrGiPixelFormatInfo
{
    uint8_t redOffset = 0;
    uint8_t numRedBits = 0;
    uint8_t greenOffset = 0;
    uint8_t numGreenBits = 0;
    uint8_t blueOffset = 0;
    uint8_t numBlueBits = 0;
    uint8_t alphaOffset = 0;
    uint8_t numAlphaBits = 0;
    uint8_t bitsPerPixel = 0;

    // The four byte layouts, each channel 8 bits.
    static ZrGiPixelFormatInfo rgb24();
    static ZrGiPixelFormatInfo bgr24();
    static ZrGiPixelFormatInfo rgba32();
    static ZrGiPixelFormatInfo bgra32();
    // Palette images: the pixel is an index into the colour table.
    static ZrGiPixelFormatInfo indexed(int bitsPerPixel);

    bool isRGB() const { return *this == rgb24(); }
    bool isBGR() const { return *this == bgr24(); }
    // 32 bits with red, green and blue bytes in this order, or swapped; alpha in the fourth byte or none.
    bool isRGBA() const;
    bool isBGRA() const;
    bool operator==(const ZrGiPixelFormatInfo& other) const;
    bool operator!=(const ZrGiPixelFormatInfo& other) const { return !(*this == other); }
};

// A picture of the host: rows from the top, each `scanLineSize()` bytes, pixels as `pixelFormat()`
// describes them, and a colour table for palette images. An image whose source is a bitmap in
// memory hands that bitmap out instead of scan lines.
class ZRHOST_EXPORT ZrGiRasterImage : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrGiRasterImage)
public:
    enum ImageSource {
        kUndefinedSource = 0,
        // A device-independent bitmap in memory: the information header, the colour table, the bits.
        kFromDib = 1,
        kFromFile = 2,
    };

    virtual int pixelWidth() const = 0;
    virtual int pixelHeight() const = 0;
    // Bits per pixel.
    virtual int colorDepth() const = 0;
    virtual ZrGiPixelFormatInfo pixelFormat() const = 0;
    // Entries of the colour table, 0xFFRRGGBB each.
    virtual int numColors() const = 0;
    virtual uint32_t color(int index) const = 0;
    // Bytes from the start of one row to the next, padding included.
    virtual int scanLineSize() const = 0;
    // The power of two that every row's size is a multiple of.
    virtual int scanLinesAlignment() const = 0;
    // The first row; null for an image whose pixels lie only in its bitmap.
    virtual const uint8_t* scanLines() const = 0;
    virtual ImageSource imageSource() const { return kUndefinedSource; }
    // The bitmap of an image from kFromDib, its size in `size`; null for other sources.
    virtual const uint8_t* bitmapData(size_t& size) const
    {
        size = 0;
        return nullptr;
    }

    // Pixels a metre, as a BMP file stores a resolution; 0 when unknown.
    virtual int xPelsPerMeter() const { return 0; }
    virtual int yPelsPerMeter() const { return 0; }

    const uint8_t* scanLine(int row) const { return scanLines() + static_cast<ptrdiff_t>(row) * scanLineSize(); }
    // Bytes of one row of a BMP file of that width and depth: rows are padded to 4 bytes.
    static uint64_t calcBMPScanLineSize(uint64_t width, int bits) { return (width * unsigned(bits) + 31) / 32 * 4; }
};

// An image over `bits`, which stay the caller's and must outlive it: `height` rows of
// `scanLineSize` bytes. Null when the parts disagree: a size below 1 or absurd, a depth that is not
// 1, 4, 8, 16, 24 or 32 or differs from the format's, a channel outside the pixel, a row shorter
// than its pixels, a colour table longer than the depth can index.
ZRHOST_EXPORT ZrSmartPtr<ZrGiRasterImage> zrutImageWrap(int width, int height, int depth,
                                                        const ZrGiPixelFormatInfo& format, const uint8_t* bits,
                                                        int scanLineSize, const uint32_t* colors = nullptr,
                                                        int numColors = 0);
// A copy that owns its pixels, colour table and bitmap; null for null.
ZRHOST_EXPORT ZrSmartPtr<ZrGiRasterImage> zrutCloneImage(const ZrGiRasterImage* image);
// An image whose source is the device-independent bitmap `dib` (copied); null when its information
// header is not one or names a size that is not positive.
ZRHOST_EXPORT ZrSmartPtr<ZrGiRasterImage> zrutImageFromDib(const uint8_t* dib, size_t size);

// Draws entities with their line types, fitted into "width" by "height" pixels, 32 bits a pixel
// with blue, green, red and alpha bytes in this order. With "bfillbackground" the image is first
// filled with "background": true for the palette's base colour, or an integer 0xAARRGGBB. A null
// pointer when the size is not positive.
ZRHOST_EXPORT ZrSmartPtr<ZrGiRasterImage> zrsiutCreateEntityImage(ZrDbDatabasePtr database,
                                                                  const ZrArray<ZrDbEntity*>& entities,
                                                                  ZrJsonPtr options,
                                                                  ZrJsonPtr extra = ZrJsonPtr());

#pragma once
// Raster images of the host and pictures of entities drawn into them.

#include "zrarray.h"
#include "zrdbdatabase.h"
#include "zrhost_export.h"
#include "zrjson.h"
#include "zrrxobject.h"

#include <cstdint>
#include <vector>

class ZrDbEntity;

// 32 bits a pixel, 0xAARRGGBB, rows from the top.
class ZRHOST_EXPORT ZrGiRasterImage : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrGiRasterImage)
public:
    ZrGiRasterImage(int width, int height);
    int width() const { return m_width; }
    int height() const { return m_height; }
    int bitsPerPixel() const { return 32; }
    int bytesPerRow() const { return m_width * 4; }
    const uint32_t* scanLine(int row) const { return m_pixels.data() + static_cast<size_t>(row) * m_width; }
    uint32_t* scanLine(int row) { return m_pixels.data() + static_cast<size_t>(row) * m_width; }
    // Pixels a metre, as a BMP file stores its resolution; 0 when unknown.
    int xPelsPerMeter() const { return m_xPelsPerMeter; }
    int yPelsPerMeter() const { return m_yPelsPerMeter; }
    void setPelsPerMeter(int x, int y)
    {
        m_xPelsPerMeter = x;
        m_yPelsPerMeter = y;
    }
    // Bytes of one row of a BMP file of that width and depth: rows are padded to 4 bytes.
    static uint64_t calcBMPScanLineSize(uint64_t width, int bits) { return (width * unsigned(bits) + 31) / 32 * 4; }

private:
    int m_width;
    int m_height;
    int m_xPelsPerMeter = 0;
    int m_yPelsPerMeter = 0;
    std::vector<uint32_t> m_pixels;
};

// Draws entities with their line types, fitted into "width" by "height" pixels. With
// "bfillbackground" the image is first filled with "background": true for the palette's base
// colour, or an integer 0xAARRGGBB. A null pointer when the size is not positive.
ZRHOST_EXPORT ZrSmartPtr<ZrGiRasterImage> zrsiutCreateEntityImage(ZrDbDatabasePtr database,
                                                                  const ZrArray<ZrDbEntity*>& entities,
                                                                  ZrJsonPtr options,
                                                                  ZrJsonPtr extra = ZrJsonPtr());

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

private:
    int m_width;
    int m_height;
    std::vector<uint32_t> m_pixels;
};

// Draws entities with their line types, fitted into "width" by "height" pixels. With
// "bfillbackground" the image is first filled with "background": true for the palette's base
// colour, or an integer 0xAARRGGBB. A null pointer when the size is not positive.
ZRHOST_EXPORT ZrSmartPtr<ZrGiRasterImage> zrsiutCreateEntityImage(ZrDbDatabasePtr database,
                                                                  const ZrArray<ZrDbEntity*>& entities,
                                                                  ZrJsonPtr options,
                                                                  ZrJsonPtr extra = ZrJsonPtr());

#pragma once
// The preview image stored in a drawing file.

#include "zrhost_export.h"

#include <cstdint>
#include <vector>

class ZrStreamBuf;

// The parts of a drawing's preview as the file holds them: the BMP part is a DIB without its
// file header (a BITMAPINFOHEADER, the palette, the rows), the PNG part a whole PNG file.
struct ZRHOST_EXPORT ZrThumbnailImage
{
    std::vector<uint8_t> header;
    std::vector<uint8_t> bmp;
    std::vector<uint8_t> png;

    bool hasBmp() const { return !bmp.empty(); }
    bool hasPng() const { return !png.empty(); }
    bool isEmpty() const { return bmp.empty() && png.empty(); }
    void clear();
};

// Status codes of zrDbGetPreviewBitmap.
namespace ZrPreview {
enum Status : int {
    kOk = 0,
    // No stream, or a file too short to be a drawing.
    kNoFile = 1,
    // Not a drawing of release 13 or later.
    kNotDrawing = 2,
    // The pointer to the image data leads past the end or to no image data.
    kNoImageData = 3,
};
} // namespace ZrPreview

// Reads the preview section of a DWG or DWT file: the header's pointer at 0x0D to the image data,
// its sentinel, then the entries (1 header, 2 BMP, 3 WMF, 6 PNG). WMF entries are passed over; an
// entry that runs past the end of the file or whose picture is not what its size says is left out
// and told on the warning channel, the sound ones are kept. `preview` is cleared first.
ZRHOST_EXPORT int zrDbGetPreviewBitmap(ZrStreamBuf* stream, ZrThumbnailImage* preview);

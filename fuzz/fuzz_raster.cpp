// Fuzz target for host raster images read into pictures: the bytes as a bitmap in memory, and as
// rows whose size, depth, layout and colour table the first bytes give. Whatever comes back is a
// null picture or one of the raster's size; nothing is read outside the bytes given.

#include "fuzzsupport.h"

#include "ZrQtUtilsFunc.h"

#include "zrgiraster.h"

#include <QGuiApplication>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

void application()
{
    if (QGuiApplication::instance())
        return;
    static int argc = 1;
    static char name[] = "fuzz_raster";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    new QGuiApplication(argc, argv);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    application();
    // Bitmaps in memory are read by the BMP reader; keep them to a size it reads quickly.
    if (size > (1 << 16))
        return 0;
    const ZrSmartPtr<ZrGiRasterImage> bitmap = zrutImageFromDib(data, size);
    if (bitmap) {
        const QImage image = zrutZrGiRasterImage2QImage(bitmap);
        require(image.isNull() || image.width() > 0, "a picture of no width");
    }

    if (size < 12)
        return 0;
    // width, height (one byte each), depth index, layout, row padding, colours, then the rows.
    static const int kDepths[] = {1, 4, 8, 16, 24, 32};
    const int width = data[0];
    const int height = data[1];
    const int depth = kDepths[data[2] % 6];
    ZrGiPixelFormatInfo format = ZrGiPixelFormatInfo::indexed(depth);
    switch (data[3] % 5) {
    case 1: format = ZrGiPixelFormatInfo::rgb24(); break;
    case 2: format = ZrGiPixelFormatInfo::bgr24(); break;
    case 3: format = ZrGiPixelFormatInfo::rgba32(); break;
    case 4: format = ZrGiPixelFormatInfo::bgra32(); break;
    default: break;
    }
    const int scanLineSize = (width * depth + 7) / 8 + data[4] % 8 - 2;
    std::vector<uint32_t> colors(data[5] % 20, 0xFF336699u);
    const std::vector<uint8_t> rows(data + 12, data + size);
    if (scanLineSize < 1 || size_t(scanLineSize) * size_t(height) > rows.size())
        return 0;
    const ZrSmartPtr<ZrGiRasterImage> raster = zrutImageWrap(width, height, depth, format, rows.data(), scanLineSize,
                                                             colors.data(), static_cast<int>(colors.size()));
    if (!raster)
        return 0;
    require(raster->scanLineSize() * 8 >= width * depth, "a row shorter than its pixels was taken");
    const QImage image = zrutZrGiRasterImage2QImage(zrutCloneImage(raster.get()));
    require(image.isNull() || image.size() == QSize(width, height), "a picture of another size");
    if (!image.isNull()) {
        const ZrSmartPtr<ZrGiRasterImage> back = zrutQImage2ZrGiRasterImage(image);
        require(back && back->pixelWidth() == width && back->pixelHeight() == height, "the picture does not go back");
    }
    return 0;
}

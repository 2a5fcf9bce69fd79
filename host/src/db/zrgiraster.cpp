#include "zrgiraster.h"

#include "zrdbentity.h"
#include "zrdbpaint.h"
#include "zrhostentityimages.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <mutex>
#include <vector>

ZR_RX_DEFINE_MEMBERS(ZrGiRasterImage, ZrRxObject)

namespace {

constexpr uint8_t kByteBits = 8;
// Larger rasters are refused: no picture of the host comes near, and sizes past it overflow.
constexpr int64_t kMaxRasterBytes = int64_t(1) << 31;
// The information header of a device-independent bitmap.
constexpr size_t kDibHeaderSize = 40;
constexpr int64_t kMaxDibPixels = int64_t(1) << 28;

ZrGiPixelFormatInfo channels(uint8_t red, uint8_t green, uint8_t blue, uint8_t alphaBits, uint8_t bits)
{
    ZrGiPixelFormatInfo info;
    info.redOffset = red;
    info.numRedBits = kByteBits;
    info.greenOffset = green;
    info.numGreenBits = kByteBits;
    info.blueOffset = blue;
    info.numBlueBits = kByteBits;
    info.alphaOffset = alphaBits ? 24 : 0;
    info.numAlphaBits = alphaBits;
    info.bitsPerPixel = bits;
    return info;
}

bool channelFits(uint8_t offset, uint8_t bits, int depth) { return bits == 0 || offset + bits <= depth; }

int alignmentOf(int scanLineSize)
{
    int alignment = 1;
    while (alignment < 8 && scanLineSize % (alignment * 2) == 0)
        alignment *= 2;
    return alignment;
}

uint32_t readLittle32(const uint8_t* p) { return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24; }

// Large pixel buffers of rasters that are gone, kept for the next clone of a similar size: a fresh
// allocation of tens of megabytes costs more in page faults than the copy into it.
class BufferPool
{
public:
    std::vector<uint8_t> take(size_t bytes)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (auto it = m_free.begin(); it != m_free.end(); ++it) {
            if (it->capacity() >= bytes && it->capacity() <= 2 * bytes) {
                std::vector<uint8_t> buffer = std::move(*it);
                m_kept -= buffer.capacity();
                m_free.erase(it);
                return buffer;
            }
        }
        return {};
    }

    void give(std::vector<uint8_t>&& buffer)
    {
        if (buffer.capacity() < kSmallest)
            return;
        std::lock_guard<std::mutex> lock(m_mutex);
        m_kept += buffer.capacity();
        m_free.push_back(std::move(buffer));
        while (m_kept > kMostKept) {
            m_kept -= m_free.front().capacity();
            m_free.erase(m_free.begin());
        }
    }

private:
    static constexpr size_t kSmallest = size_t(4) << 20;
    static constexpr size_t kMostKept = size_t(128) << 20;
    std::mutex m_mutex;
    std::vector<std::vector<uint8_t>> m_free;
    size_t m_kept = 0;
};

BufferPool& bufferPool()
{
    // Never destroyed: rasters may outlive the statics of this library.
    static BufferPool* pool = new BufferPool;
    return *pool;
}

// One raster: its pixels the caller's (wrapped) or its own (cloned), and a bitmap when its source
// is one.
class RasterImage : public ZrGiRasterImage
{
public:
    ~RasterImage() override
    {
        if (!owned.empty())
            bufferPool().give(std::move(owned));
    }

    int pixelWidth() const override { return width; }
    int pixelHeight() const override { return height; }
    int colorDepth() const override { return depth; }
    ZrGiPixelFormatInfo pixelFormat() const override { return format; }
    int numColors() const override { return static_cast<int>(colors.size()); }
    uint32_t color(int index) const override
    {
        return index >= 0 && index < numColors() ? colors[static_cast<size_t>(index)] : 0u;
    }
    int scanLineSize() const override { return stride; }
    int scanLinesAlignment() const override { return alignmentOf(stride); }
    const uint8_t* scanLines() const override { return bits; }
    ImageSource imageSource() const override { return dib.empty() ? kUndefinedSource : kFromDib; }
    const uint8_t* bitmapData(size_t& size) const override
    {
        size = dib.size();
        return dib.empty() ? nullptr : dib.data();
    }

    int width = 0;
    int height = 0;
    int depth = 0;
    ZrGiPixelFormatInfo format;
    int stride = 0;
    std::vector<uint32_t> colors;
    const uint8_t* bits = nullptr;
    std::vector<uint8_t> owned;
    // The pictures the host paints keep their pixels in the QImage they were painted into.
    QImage picture;
    std::vector<uint8_t> dib;
};

ZrSmartPtr<RasterImage> newRaster()
{
    return ZrSmartPtr<RasterImage>(new ZrRxObjectImpl<RasterImage>(), kZrAttach);
}

} // namespace

ZrGiPixelFormatInfo ZrGiPixelFormatInfo::rgb24() { return channels(0, 8, 16, 0, 24); }
ZrGiPixelFormatInfo ZrGiPixelFormatInfo::bgr24() { return channels(16, 8, 0, 0, 24); }
ZrGiPixelFormatInfo ZrGiPixelFormatInfo::rgba32() { return channels(0, 8, 16, 8, 32); }
ZrGiPixelFormatInfo ZrGiPixelFormatInfo::bgra32() { return channels(16, 8, 0, 8, 32); }

ZrGiPixelFormatInfo ZrGiPixelFormatInfo::indexed(int bitsPerPixel)
{
    ZrGiPixelFormatInfo info;
    info.bitsPerPixel = static_cast<uint8_t>(bitsPerPixel);
    return info;
}

bool ZrGiPixelFormatInfo::isRGBA() const
{
    ZrGiPixelFormatInfo opaque = *this;
    opaque.alphaOffset = 0;
    opaque.numAlphaBits = 0;
    return opaque == channels(0, 8, 16, 0, 32) && (numAlphaBits == 0 || (numAlphaBits == 8 && alphaOffset == 24));
}

bool ZrGiPixelFormatInfo::isBGRA() const
{
    ZrGiPixelFormatInfo opaque = *this;
    opaque.alphaOffset = 0;
    opaque.numAlphaBits = 0;
    return opaque == channels(16, 8, 0, 0, 32) && (numAlphaBits == 0 || (numAlphaBits == 8 && alphaOffset == 24));
}

bool ZrGiPixelFormatInfo::operator==(const ZrGiPixelFormatInfo& o) const
{
    return redOffset == o.redOffset && numRedBits == o.numRedBits && greenOffset == o.greenOffset
        && numGreenBits == o.numGreenBits && blueOffset == o.blueOffset && numBlueBits == o.numBlueBits
        && alphaOffset == o.alphaOffset && numAlphaBits == o.numAlphaBits && bitsPerPixel == o.bitsPerPixel;
}

ZrSmartPtr<ZrGiRasterImage> zrutImageWrap(int width, int height, int depth, const ZrGiPixelFormatInfo& format,
                                          const uint8_t* bits, int scanLineSize, const uint32_t* colors,
                                          int numColors)
{
    static const int kDepths[] = {1, 4, 8, 16, 24, 32};
    if (!bits || width < 1 || height < 1 || std::find(std::begin(kDepths), std::end(kDepths), depth) == std::end(kDepths)
        || format.bitsPerPixel != depth)
        return nullptr;
    if (!channelFits(format.redOffset, format.numRedBits, depth) || !channelFits(format.greenOffset, format.numGreenBits, depth)
        || !channelFits(format.blueOffset, format.numBlueBits, depth)
        || !channelFits(format.alphaOffset, format.numAlphaBits, depth))
        return nullptr;
    const int64_t rowBits = int64_t(width) * depth;
    if (int64_t(scanLineSize) * kByteBits < rowBits || int64_t(scanLineSize) * height > kMaxRasterBytes)
        return nullptr;
    if (numColors < 0 || (numColors > 0 && !colors) || (depth > 8 && numColors > 0)
        || (depth <= 8 && numColors > (1 << depth)))
        return nullptr;
    ZrSmartPtr<RasterImage> raster = newRaster();
    raster->width = width;
    raster->height = height;
    raster->depth = depth;
    raster->format = format;
    raster->stride = scanLineSize;
    raster->bits = bits;
    raster->colors.assign(colors, colors + numColors);
    return raster;
}

ZrSmartPtr<ZrGiRasterImage> zrutCloneImage(const ZrGiRasterImage* image)
{
    if (!image)
        return nullptr;
    ZrSmartPtr<RasterImage> raster = newRaster();
    raster->width = image->pixelWidth();
    raster->height = image->pixelHeight();
    raster->depth = image->colorDepth();
    raster->format = image->pixelFormat();
    for (int i = 0; i < image->numColors(); ++i)
        raster->colors.push_back(image->color(i));
    size_t bitmapSize = 0;
    if (const uint8_t* bitmap = image->bitmapData(bitmapSize))
        raster->dib.assign(bitmap, bitmap + bitmapSize);
    const uint8_t* rows = image->scanLines();
    const int64_t bytes = int64_t(image->scanLineSize()) * raster->height;
    if (rows && raster->height > 0 && bytes > 0 && bytes <= kMaxRasterBytes) {
        raster->stride = image->scanLineSize();
        raster->owned = bufferPool().take(static_cast<size_t>(bytes));
        raster->owned.assign(rows, rows + bytes);
        raster->bits = raster->owned.data();
    }
    return raster;
}

ZrSmartPtr<ZrGiRasterImage> zrutImageFromDib(const uint8_t* dib, size_t size)
{
    if (!dib || size < kDibHeaderSize || readLittle32(dib) < kDibHeaderSize)
        return nullptr;
    const auto width = static_cast<int32_t>(readLittle32(dib + 4));
    const auto height = static_cast<int32_t>(readLittle32(dib + 8));
    const int depth = dib[14] | dib[15] << 8;
    // A negative height is a bitmap stored from the top.
    if (width < 1 || height == 0 || height == INT32_MIN || depth < 1 || depth > 32)
        return nullptr;
    // No bitmap in memory comes near this; a header that says so is damaged.
    if (int64_t(width) * std::abs(int64_t(height)) > kMaxDibPixels)
        return nullptr;
    ZrSmartPtr<RasterImage> raster = newRaster();
    raster->width = width;
    raster->height = height < 0 ? -height : height;
    raster->depth = depth;
    raster->format = ZrGiPixelFormatInfo::indexed(depth);
    raster->dib.assign(dib, dib + size);
    return raster;
}

ZrHostEntityImageRequest& zrHostLastEntityImageRequest()
{
    static ZrHostEntityImageRequest request;
    return request;
}

namespace {

// Entity pictures are icons and previews: more pixels than this is an absurd request, not a picture.
constexpr int64_t kMaxPicturePixels = 4096 * 4096;

QColor backgroundOf(const ZrJsonPtr& options)
{
    const ZrJsonPtr background = options->safeProperty_ptr("background");
    if (!background || background->isBool())
        return QGuiApplication::instance() ? QGuiApplication::palette().color(QPalette::Base) : QColor(Qt::white);
    return QColor::fromRgba(static_cast<QRgb>(background->safeIntValue()));
}

// Kept for tests, which cannot see the entities a caller made for the picture.
void recordRequest(const ZrArray<ZrDbEntity*>& entities, const ZrJsonPtr& options)
{
    ZrHostEntityImageRequest request;
    for (const ZrDbEntity* entity : entities) {
        if (entity)
            request.entities.push_back({entity->linetypeId(), entity->linetypeScale()});
    }
    // The caller's object itself: it is not changed after the picture is drawn.
    request.options = options;
    zrHostLastEntityImageRequest() = std::move(request);
}

} // namespace

ZrSmartPtr<ZrGiRasterImage> zrsiutCreateEntityImage(ZrDbDatabasePtr, const ZrArray<ZrDbEntity*>& entities,
                                                    ZrJsonPtr options, ZrJsonPtr)
{
    recordRequest(entities, options);
    const int width = options ? options->GetVarI("width") : 0;
    const int height = options ? options->GetVarI("height") : 0;
    if (width <= 0 || height <= 0 || int64_t(width) * height > kMaxPicturePixels)
        return nullptr;
    // Painted premultiplied, the raster engine's own layout: it blends without converting each pixel
    // there and back, which took much of the time of a small picture.
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return nullptr;
    QColor foreground = QGuiApplication::instance() ? QGuiApplication::palette().color(QPalette::Text) : QColor(Qt::black);
    bool opaque = false;
    if (options->GetVarB("bfillbackground")) {
        const QColor background = backgroundOf(options);
        opaque = background.alpha() == 255;
        image.fill(background);
        // Colour 7 stands out from the background it is drawn on.
        foreground = background.lightnessF() > 0.5 ? QColor(Qt::black) : QColor(Qt::white);
    } else {
        image.fill(Qt::transparent);
    }

    bool any = false;
    double minX = 0, minY = 0, maxX = 0, maxY = 0;
    for (const ZrDbEntity* entity : entities) {
        double x0, y0, x1, y1;
        if (!zrdbEntityExtents(entity, x0, y0, x1, y1))
            continue;
        minX = any ? std::min(minX, x0) : x0;
        minY = any ? std::min(minY, y0) : y0;
        maxX = any ? std::max(maxX, x1) : x1;
        maxY = any ? std::max(maxY, y1) : y1;
        any = true;
    }
    // Fitted with a margin of two pixels, the drawing's y axis pointing up.
    const double margin = 2.0;
    const double spanX = std::max(maxX - minX, 1e-9);
    const double spanY = std::max(maxY - minY, 1e-9);
    const double scale = std::min((width - 2 * margin) / spanX, (height - 2 * margin) / spanY);
    // Extents too far apart to fit leave the picture empty.
    if (any && scale > 0.0 && std::isfinite(scale)) {
        QTransform toDevice;
        toDevice.translate(width / 2.0, height / 2.0);
        toDevice.scale(scale, -scale);
        toDevice.translate(-(minX + maxX) / 2, -(minY + maxY) / 2);
        // The picture of a line type, a lone line, is drawn without a painter: setting one up and
        // Qt's stroking pixel by pixel take most of the time of so small a picture.
        if (entities.length() != 1 || !zrdbPaintLevelLine(image, entities[0], toDevice, foreground)) {
            QPainter painter(&image);
            for (const ZrDbEntity* entity : entities)
                zrdbPaintEntity(painter, entity, toDevice, foreground);
        }
    }

    // On an opaque background every pixel stays opaque, and opaque pixels read the same premultiplied
    // or not.
    if (opaque)
        image.reinterpretAsFormat(QImage::Format_ARGB32);
    else
        image.convertTo(QImage::Format_ARGB32);

    // QImage's 32-bit pixels are words 0xAARRGGBB, so blue comes first in memory.
    static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "pixel words are read as little-endian");
    ZrSmartPtr<RasterImage> raster = newRaster();
    raster->width = width;
    raster->height = height;
    raster->depth = 32;
    raster->format = ZrGiPixelFormatInfo::bgra32();
    raster->stride = image.bytesPerLine();
    raster->picture = std::move(image);
    raster->bits = raster->picture.constBits();
    return raster;
}

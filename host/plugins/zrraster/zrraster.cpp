// The host's module "ZrRaster": image files read with Qt's image readers into host images.

#include "zrdynlinker.h"
#include "zrrasterservices.h"

#include <QImage>
#include <QImageReader>

namespace {

// A host image over a picture Qt read: 32 bits a pixel, blue, green, red and alpha bytes in this order.
class QtRasterImage : public ZrGiRasterImage
{
public:
    explicit QtRasterImage(QImage image) : m_image(std::move(image)) {}

    int pixelWidth() const override { return m_image.width(); }
    int pixelHeight() const override { return m_image.height(); }
    int colorDepth() const override { return 32; }
    ZrGiPixelFormatInfo pixelFormat() const override { return ZrGiPixelFormatInfo::bgra32(); }
    int numColors() const override { return 0; }
    uint32_t color(int) const override { return 0; }
    int scanLineSize() const override { return int(m_image.bytesPerLine()); }
    int scanLinesAlignment() const override { return 4; }
    const uint8_t* scanLines() const override { return m_image.constBits(); }
    int xPelsPerMeter() const override { return m_image.dotsPerMeterX(); }
    int yPelsPerMeter() const override { return m_image.dotsPerMeterY(); }

private:
    QImage m_image;
};

// More pixels than this are refused before they are decoded: 10 000 by 10 000 already takes 400 MB.
constexpr qint64 kMaxPixels = qint64(10000) * 10000;

class RasterServices : public ZrRxRasterServices
{
public:
    ZrSmartPtr<ZrGiRasterImage> loadRasterImage(const ZrString& path, int fitWidth, int fitHeight) override
    {
        const QString file = path.toQString();
        QImageReader reader(file);
        reader.setAutoTransform(true);
        QSize size = reader.size();
        if (size.isValid() && qint64(size.width()) * size.height() > kMaxPixels) {
            qWarning("ZrRaster: %s claims %d x %d pixels, more than an image may have here", qPrintable(file),
                     size.width(), size.height());
            return nullptr;
        }
        // Read at the size it is shown at: decoders that can scale while they decode (JPEG) do.
        if (size.isValid() && fitWidth > 0 && fitHeight > 0 && (size.width() > fitWidth || size.height() > fitHeight)) {
            size.scale(fitWidth, fitHeight, Qt::KeepAspectRatio);
            reader.setScaledSize(size.expandedTo(QSize(1, 1)));
        }
        QImage image = reader.read();
        if (image.isNull()) {
            qWarning("ZrRaster: cannot read %s: %s", qPrintable(file), qPrintable(reader.errorString()));
            return nullptr;
        }
        if (qint64(image.width()) * image.height() > kMaxPixels)
            return nullptr;
        // On a little-endian machine ARGB32 lies in memory as blue, green, red, alpha.
        static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the pixel description assumes little-endian words");
        return ZrSmartPtr<ZrGiRasterImage>(
            new ZrRxObjectImpl<QtRasterImage>(std::move(image).convertToFormat(QImage::Format_ARGB32)), kZrAttach);
    }
};

} // namespace

extern "C" Q_DECL_EXPORT ZrRxObject* zrrxCreateModuleObject()
{
    return new ZrRxObjectImpl<RasterServices>();
}

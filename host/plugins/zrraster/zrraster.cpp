// The host's module "ZrRaster": image files read with Qt's image readers into host images.

#include "zrdynlinker.h"
#include "zrrasterservices.h"

#include <QImage>
#include <QImageReader>
#include <cstring>

namespace {

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
        image = std::move(image).convertToFormat(QImage::Format_ARGB32);
        ZrSmartPtr<ZrGiRasterImage> raster(new ZrRxObjectImpl<ZrGiRasterImage>(image.width(), image.height()), kZrAttach);
        for (int row = 0; row < image.height(); ++row)
            std::memcpy(raster->scanLine(row), image.constScanLine(row), size_t(image.width()) * 4);
        raster->setPelsPerMeter(image.dotsPerMeterX(), image.dotsPerMeterY());
        return raster;
    }
};

} // namespace

extern "C" Q_DECL_EXPORT ZrRxObject* zrrxCreateModuleObject()
{
    return new ZrRxObjectImpl<RasterServices>();
}

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
#include <cstring>

ZR_RX_DEFINE_MEMBERS(ZrGiRasterImage, ZrRxObject)

ZrGiRasterImage::ZrGiRasterImage(int width, int height)
    : m_width(std::max(0, width)), m_height(std::max(0, height)),
      m_pixels(static_cast<size_t>(m_width) * static_cast<size_t>(m_height), 0u)
{
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
    request.options = options ? options->clone() : ZrJsonPtr();
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
    QImage image(width, height, QImage::Format_ARGB32);
    if (image.isNull())
        return nullptr;
    image.fill(Qt::transparent);
    QColor foreground = QGuiApplication::instance() ? QGuiApplication::palette().color(QPalette::Text) : QColor(Qt::black);
    if (options->GetVarB("bfillbackground")) {
        const QColor background = backgroundOf(options);
        image.fill(background);
        // Colour 7 stands out from the background it is drawn on.
        foreground = background.lightnessF() > 0.5 ? QColor(Qt::black) : QColor(Qt::white);
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
        QPainter painter(&image);
        for (const ZrDbEntity* entity : entities)
            zrdbPaintEntity(painter, entity, toDevice, foreground);
    }

    ZrSmartPtr<ZrGiRasterImage> raster(new ZrRxObjectImpl<ZrGiRasterImage>(width, height), kZrAttach);
    for (int row = 0; row < height; ++row)
        std::memcpy(raster->scanLine(row), image.constScanLine(row), static_cast<size_t>(width) * 4);
    return raster;
}

// Fuzz target for painting: whatever the drawing reader takes is painted as the drawing view paints
// it, fitted to a small image and highlighted, and made into an entity picture. Painting must come
// back, whatever the numbers; the time limit per input is the driver's.

#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdrawingcontrol.h"
#include "zrgiraster.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QString>
#include <algorithm>
#include <deque>
#include <cstdint>

namespace {

// Text is drawn only with an application, as in the host.
void ensureApplication()
{
    static int argc = 1;
    static char name[] = "fuzz_paint";
    static char* argv[] = {name, nullptr};
    if (!QGuiApplication::instance()) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        new QGuiApplication(argc, argv);
    }
}

// Drawing units to the image, fitted to the extents of what has any, the y axis up.
QTransform fitted(const std::vector<const ZrDbEntity*>& entities, const QSize& size)
{
    QRectF all;
    for (const ZrDbEntity* entity : entities) {
        double x0, y0, x1, y1;
        if (ZrHostControl::entityExtents(entity, x0, y0, x1, y1))
            all |= QRectF(QPointF(x0, y0), QPointF(x1, y1));
    }
    const double across = std::max(all.width() / size.width(), all.height() / size.height());
    const double scale = across > 0 ? 1.0 / across : 1.0;
    return QTransform(scale, 0, 0, -scale, size.width() / 2.0 - scale * all.center().x(),
                      size.height() / 2.0 + scale * all.center().y());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ensureApplication();
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    if (!ZrHostControl::openDrawingText(text, QStringLiteral("input")))
        return 0;
    // Open for reading while they are painted, as the view has them.
    std::deque<ZrDbObjectPointer<ZrDbEntity>> opened;
    std::vector<const ZrDbEntity*> entities;
    for (ZrDbObjectId id : ZrHostControl::entitiesOfCurrentSpace()) {
        opened.emplace_back(id, ZrDb::kForRead);
        if (opened.back())
            entities.push_back(opened.back().object());
    }
    QImage image(64, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        // Fitted, as a drawing opens, and at a pixel a unit about the origin, as a view zoomed into a
        // part of it shows what reaches far beyond its window.
        const QTransform fit = fitted(entities, image.size());
        const QTransform unit(1, 0, 0, -1, image.width() / 2.0, image.height() / 2.0);
        for (const QTransform& toImage : {fit, unit}) {
            for (const ZrDbEntity* entity : entities)
                ZrHostControl::paintEntity(painter, entity, toImage, Qt::black);
        }
        for (const ZrDbEntity* entity : entities)
            ZrHostControl::paintEntity(painter, entity, fit, Qt::black, true);
    }
    ZrArray<ZrDbEntity*> pictured;
    for (const ZrDbEntity* entity : entities)
        pictured.append(const_cast<ZrDbEntity*>(entity));
    ZrJsonPtr options = ElementValue::createObject(kZrJsonObject);
    options->SetDataI("width", 32);
    options->SetDataI("height", 24);
    options->SetDataB("bfillbackground", true);
    zrsiutCreateEntityImage(ZrDbDatabasePtr(curDatabase()), pictured, options);
    return 0;
}

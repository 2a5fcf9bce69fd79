#include "zrpdfexport.h"

#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdrawingcontrol.h"
#include "zrplotsvr.h"
#include "zrsystem.h"

#include <QBuffer>
#include <QDateTime>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QStringList>
#include <algorithm>

namespace {

// The plot service's ranges of the model: what the view shows, the extents, a picked window.
constexpr int kDisplayRange = 0;
constexpr int kWindowRange = 2;

// The drawing's extents over the entities drawn; false when nothing has an extent.
bool drawnExtents(const std::vector<ZrDbObjectId>& ids, QRectF& box)
{
    bool any = false;
    for (ZrDbObjectId id : ids) {
        ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
        double x0, y0, x1, y1;
        if (!entity || !ZrHostControl::isLayerVisible(entity->layerId())
            || !ZrHostControl::entityExtents(entity.object(), x0, y0, x1, y1))
            continue;
        const QRectF one(QPointF(x0, y0), QPointF(x1, y1));
        box = any ? box.united(one) : one;
        any = true;
    }
    return any;
}

// The layout the drawing works in now; null without a drawing.
ZrDbObjectPointer<ZrDbLayout> currentLayout()
{
    const ZrDbDatabase* database = curDatabase();
    return ZrDbObjectPointer<ZrDbLayout>(database ? database->currentLayoutId() : ZrDbObjectId(), ZrDb::kForRead);
}

} // namespace

ZrPdfPage zrPdfPageOfPlotService(const QRectF& visibleArea, const QString& drawingName)
{
    ZrPdfPage page;
    const ZrRxObjectPtr service = CXuSystem::instance()->serviceManager()->getService(ZrString(L"CXuPlotSvr"));
    const CXuPlotSvr* plot = CXuPlotSvr::cast(service.get());
    if (!plot)
        return page;
    const ZrDbObjectPointer<ZrDbLayout> layout = currentLayout();
    const bool model = !layout || layout->modelType();
    // Paper layouts print whole; this host has one page a file, the current layout's.
    if (model && plot->plotRange(true) == kDisplayRange) {
        page.area = visibleArea;
    } else if (model && plot->plotRange(true) == kWindowRange) {
        double x1, y1, x2, y2;
        if (plot->plotWindow(x1, y1, x2, y2))
            page.area = QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized();
    }
    if (!plot->plotStamp())
        return page;
    const SXuPlotStampFields fields = plot->plotStampFields();
    QStringList stamp;
    if (fields.drawingName)
        stamp << drawingName;
    if (fields.layoutName)
        stamp << (layout ? layout->getLayoutName().toQString() : QStringLiteral("模型"));
    if (fields.dateTime)
        stamp << QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    if (fields.loginName)
        stamp << qEnvironmentVariable("USER");
    if (fields.deviceName)
        stamp << QStringLiteral("PDF");
    if (fields.paperSize)
        stamp << QStringLiteral("A4 (297 × 210 毫米)");
    if (fields.plotScale)
        stamp << QStringLiteral("布满图纸");
    page.stamp = stamp.join(QStringLiteral(", "));
    return page;
}

void zrPaintLayout(QPainter& painter, const QRectF& page, const ZrPdfPage& options)
{
    QRectF drawingPage = page;
    if (!options.stamp.isEmpty()) {
        QFont font = painter.font();
        font.setPixelSize(std::max(1, int(page.height() / 60)));
        painter.setFont(font);
        const QRectF foot(page.left(), page.bottom() - font.pixelSize() * 1.5, page.width(), font.pixelSize() * 1.5);
        painter.setPen(Qt::black);
        painter.drawText(foot, Qt::AlignLeft | Qt::AlignVCenter, options.stamp);
        drawingPage.setBottom(foot.top());
    }
    const std::vector<ZrDbObjectId> ids = ZrHostControl::entitiesOfCurrentSpace();
    QRectF area = options.area;
    if (area.isEmpty() && !drawnExtents(ids, area))
        return;
    // Fitted and centred, the drawing's Y upwards; a drawing without area keeps a scale.
    const double width = std::max(area.width(), 1e-9), height = std::max(area.height(), 1e-9);
    const double scale = std::min(drawingPage.width() / width, drawingPage.height() / height);
    QTransform toPage;
    toPage.translate(drawingPage.center().x(), drawingPage.center().y());
    toPage.scale(scale, -scale);
    toPage.translate(-area.center().x(), -area.center().y());
    painter.save();
    painter.setClipRect(drawingPage);
    painter.setRenderHint(QPainter::Antialiasing);
    for (ZrDbObjectId id : ids) {
        ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
        if (entity && ZrHostControl::isLayerVisible(entity->layerId()))
            ZrHostControl::paintEntity(painter, entity.object(), toPage, Qt::black);
    }
    painter.restore();
}

bool zrWriteLayoutPdf(const QString& path, const ZrPdfPage& options, QString* error)
{
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pdf);
        writer.setCreator(QStringLiteral("ZrQtBaseUtils 参考主机"));
        writer.setTitle(options.stamp.isEmpty() ? QStringLiteral("图纸") : options.stamp);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(10, 10, 10, 10),
                                         QPageLayout::Millimeter));
        writer.setResolution(600);
        QPainter painter(&writer);
        zrPaintLayout(painter, QRectF(0, 0, writer.width(), writer.height()), options);
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(pdf.data()) != pdf.size() || !file.commit()) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

#include "zrdrawingview.h"

#include "zrappenv.h"
#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdocument.h"
#include "zrdrawingcontrol.h"
#include "zrhostevents.h"
#include "zrreactor.h"
#include "zrui.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

// How far from an entity a click still picks it, in pixels.
constexpr int kPickTolerance = 4;
// The free border around a fitted drawing, in pixels.
constexpr double kFitMargin = 24.0;
constexpr double kWheelStep = 1.2;
// Above this many entities antialiasing costs more than it shows.
constexpr size_t kAntialiasLimit = 20000;
// A halo paints each selected entity nine times; above this many it only slows the view down.
constexpr size_t kHaloLimit = 500;
// How far the halo reaches beyond a selected entity's strokes, in pixels.
constexpr double kHaloReach = 2.5;

// An axis-aligned box in drawing units. Lines along an axis have boxes of no width or height,
// which QRectF would treat as empty.
struct Box
{
    double minX = 0, minY = 0, maxX = 0, maxY = 0;

    static Box of(const QRectF& r) { return {r.left(), r.top(), r.right(), r.bottom()}; }
    QRectF rect() const { return QRectF(QPointF(minX, minY), QPointF(maxX, maxY)); }
    bool overlaps(const Box& o) const { return minX <= o.maxX && o.minX <= maxX && minY <= o.maxY && o.minY <= maxY; }
    bool inside(const Box& o) const { return minX >= o.minX && maxX <= o.maxX && minY >= o.minY && maxY <= o.maxY; }
    void unite(const Box& o)
    {
        minX = std::min(minX, o.minX);
        minY = std::min(minY, o.minY);
        maxX = std::max(maxX, o.maxX);
        maxY = std::max(maxY, o.maxY);
    }
};

// An entity of the space in use as the view keeps it between paints.
struct Shape
{
    ZrDbObjectId id;
    ZrDbObjectId layer;
    Box extents;
    bool hasExtents = false;
};

struct ViewColors
{
    QColor paper, foreground, minorGrid, majorGrid, axisX, axisY, window, crossing, halo;
};

ViewColors viewColors()
{
    if (zredGetCurrentTheme() == ZrApp::kLightTheme)
        return {QColor(0xfb, 0xfb, 0xf9), QColor(0x1f, 0x23, 0x28), QColor(0xf0, 0xf1, 0xf3),
                QColor(0xe0, 0xe3, 0xe8), QColor(0xd0, 0x3b, 0x3b), QColor(0x2e, 0x9a, 0x4a),
                QColor(0x2f, 0x6f, 0xb7), QColor(0x2e, 0x9a, 0x4a), QColor(0x2f, 0x8c, 0xff, 0x48)};
    return {QColor(0x21, 0x24, 0x29), QColor(0xf2, 0xf3, 0xf5), QColor(0x27, 0x2a, 0x30),
            QColor(0x31, 0x35, 0x3c), QColor(0xe8, 0x5a, 0x5a), QColor(0x5a, 0xd0, 0x78),
            QColor(0x5c, 0x9c, 0xe6), QColor(0x5a, 0xd0, 0x78), QColor(0x5c, 0xa8, 0xff, 0x60)};
}

// Layers looked up once per paint or pick, not once per entity.
class LayerVisibility
{
public:
    bool operator()(ZrDbObjectId layer)
    {
        const auto found = m_known.find(layer.handle());
        if (found != m_known.end())
            return found->second;
        return m_known.emplace(layer.handle(), ZrHostControl::isLayerVisible(layer)).first->second;
    }

private:
    std::unordered_map<int64_t, bool> m_known;
};

std::vector<ZrDbObjectId> pickFirst()
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    return document ? document->context()->pickFirst() : std::vector<ZrDbObjectId>();
}

void select(const std::vector<ZrDbObjectId>& ids)
{
    if (ids.empty())
        ZrHostControl::clearSelection();
    else
        ZrHostControl::setSelection(ids);
}

// The entity painted alone into `area` of the window, for telling where it really leaves a mark.
QImage paintAlone(const ZrDbEntity* entity, const QTransform& toWindow, const QRect& area)
{
    QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    ZrHostControl::paintEntity(p, entity, toWindow * QTransform::fromTranslate(-area.x(), -area.y()), Qt::black);
    return image;
}

bool paintsInto(const ZrDbEntity* entity, const QTransform& toWindow, const QRect& area)
{
    if (area.isEmpty())
        return false;
    const QImage image = paintAlone(entity, toWindow, area);
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (std::any_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
            return true;
    }
    return false;
}

// The window's pixels an entity's box may cover, with room for its line width.
QRect windowArea(const Box& extents, const QTransform& toWindow)
{
    return toWindow.mapRect(extents.rect()).toAlignedRect().adjusted(-2, -2, 2, 2);
}

// A grid of powers of ten: lines at least 12 pixels apart, every tenth one stronger.
void drawGrid(QPainter& p, const QRect& area, const QTransform& toWindow, double scale, const ViewColors& c)
{
    const double step = std::pow(10.0, std::ceil(std::log10(12.0 / scale)));
    const Box seen = Box::of(toWindow.inverted().mapRect(QRectF(area)));
    const auto lines = [&](double from, double to, auto draw) {
        // Far from the origin a double may not tell one line from the next: no grid there, or the
        // walk along it would never end.
        const double far = std::max(std::fabs(from), std::fabs(to));
        if (!(far + step > far))
            return;
        for (double at = std::floor(from / step) * step; at <= to; at += step) {
            const bool major = std::fmod(std::abs(std::round(at / step)), 10.0) == 0.0;
            p.setPen(major ? c.majorGrid : c.minorGrid);
            draw(at);
        }
    };
    lines(seen.minX, seen.maxX, [&](double x) {
        const double wx = toWindow.map(QPointF(x, 0)).x();
        p.drawLine(QPointF(wx, area.top()), QPointF(wx, area.bottom()));
    });
    lines(seen.minY, seen.maxY, [&](double y) {
        const double wy = toWindow.map(QPointF(0, y)).y();
        p.drawLine(QPointF(area.left(), wy), QPointF(area.right(), wy));
    });
}

void drawAxes(QPainter& p, const QRect& area, const ViewColors& c)
{
    const QPoint origin(24, area.height() - 24);
    p.setPen(QPen(c.axisX, 2));
    p.drawLine(origin, origin + QPoint(40, 0));
    p.drawText(origin + QPoint(44, 4), QStringLiteral("X"));
    p.setPen(QPen(c.axisY, 2));
    p.drawLine(origin, origin - QPoint(0, 40));
    p.drawText(origin - QPoint(4, 46), QStringLiteral("Y"));
}

// A soft band around the selected entities' strokes: each is painted shifted around a small ring
// into a layer of its own, which then takes the halo colour.
void drawHalo(QPainter& p, const std::vector<ZrDbObjectId>& ids, const QTransform& toWindow, const ViewColors& c)
{
    if (ids.empty())
        return;
    const qreal ratio = p.device()->devicePixelRatioF();
    QImage layer(QSize(p.device()->width(), p.device()->height()) * ratio, QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    QPainter lp(&layer);
    lp.setRenderHint(QPainter::Antialiasing);
    // The place itself and eight around it.
    std::vector<QPointF> shifts{QPointF()};
    for (int direction = 0; direction < 8; ++direction)
        shifts.push_back(QPointF(std::cos(direction * M_PI / 4), std::sin(direction * M_PI / 4)) * kHaloReach);
    for (const QPointF& shift : shifts) {
        const QTransform shifted = toWindow * QTransform::fromTranslate(shift.x(), shift.y());
        for (ZrDbObjectId id : ids) {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
            if (entity)
                ZrHostControl::paintEntity(lp, entity.object(), shifted, Qt::black, true);
        }
    }
    lp.setCompositionMode(QPainter::CompositionMode_SourceIn);
    lp.fillRect(QRectF(QPointF(), QSizeF(layer.size()) / ratio), QColor(c.halo.red(), c.halo.green(), c.halo.blue()));
    lp.end();
    p.save();
    p.resetTransform();
    p.setOpacity(c.halo.alphaF());
    p.drawImage(QPointF(), layer);
    p.restore();
}

// A band dragged to the right selects what lies inside it (solid), one to the left what it touches (dashed).
void drawBand(QPainter& p, const QPoint& from, const QPoint& to, const ViewColors& c)
{
    const bool crossing = to.x() < from.x();
    QColor fill = crossing ? c.crossing : c.window;
    fill.setAlpha(40);
    p.setPen(QPen(crossing ? c.crossing : c.window, 1, crossing ? Qt::DashLine : Qt::SolidLine));
    p.setBrush(fill);
    p.drawRect(QRect(from, to).normalized());
}

} // namespace

struct ZrDrawingView::Data
{
    explicit Data(ZrDrawingView* view) : view(view) {}

    ZrDrawingView* view;

    std::vector<Shape> shapes;
    Box drawingExtents;
    bool hasDrawingExtents = false;
    // The shapes are read again after a change of an object or of the document.
    bool shapesStale = true;
    const ZrDbDatabase* shapesOf = nullptr;

    double scale = 1.0; // pixels per drawing unit
    QPointF centre;     // the drawing point at the middle of the window
    // True while the view shows the extents as fitted: a resize fits again.
    bool fitted = false;

    bool leftDown = false;
    bool banding = false;
    QPoint pressPos;
    QPoint bandEnd;
    bool panning = false;
    QPoint panFrom;

    QTransform toWindow() const
    {
        return QTransform(scale, 0, 0, -scale, view->width() / 2.0 - scale * centre.x(),
                          view->height() / 2.0 + scale * centre.y());
    }

    Box drawingBox(const QRect& windowRect) const
    {
        return Box::of(toWindow().inverted().mapRect(QRectF(windowRect)));
    }

    void readShapes()
    {
        const ZrDbDatabase* database = curDatabase();
        if (!shapesStale && database == shapesOf)
            return;
        const bool newDrawing = database != shapesOf;
        shapesStale = false;
        shapesOf = database;
        shapes.clear();
        hasDrawingExtents = false;
        for (ZrDbObjectId id : ZrHostControl::entitiesOfCurrentSpace()) {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
            if (!entity)
                continue;
            Shape shape{id, entity->layerId(), {}, false};
            Box& b = shape.extents;
            shape.hasExtents = ZrHostControl::entityExtents(entity.object(), b.minX, b.minY, b.maxX, b.maxY);
            if (shape.hasExtents) {
                if (hasDrawingExtents)
                    drawingExtents.unite(b);
                else
                    drawingExtents = b;
                hasDrawingExtents = true;
            }
            shapes.push_back(shape);
        }
        if (newDrawing)
            fit();
    }

    void fit()
    {
        fitted = true;
        if (!hasDrawingExtents) {
            scale = 1.0;
            centre = QPointF();
            return;
        }
        const QRectF r = drawingExtents.rect();
        centre = r.center();
        const double across = std::max(r.width() / std::max(1.0, view->width() - 2 * kFitMargin),
                                       r.height() / std::max(1.0, view->height() - 2 * kFitMargin));
        scale = across > 0 ? 1.0 / across : 1.0;
    }

    void zoomAbout(const QPointF& windowPos, double factor)
    {
        const QPointF at = toWindow().inverted().map(windowPos);
        scale = std::clamp(scale * factor, 1e-9, 1e9);
        centre = QPointF(at.x() - (windowPos.x() - view->width() / 2.0) / scale,
                         at.y() + (windowPos.y() - view->height() / 2.0) / scale);
        fitted = false;
        view->update();
    }

    ZrDbObjectId entityAt(const QPoint& pos)
    {
        readShapes();
        const QTransform map = toWindow();
        const QRect probe(pos - QPoint(kPickTolerance, kPickTolerance), QSize(1, 1) * (2 * kPickTolerance + 1));
        const Box near = drawingBox(probe);
        LayerVisibility visible;
        // The last drawn lies on top.
        for (auto shape = shapes.rbegin(); shape != shapes.rend(); ++shape) {
            if (!shape->hasExtents || !shape->extents.overlaps(near) || !visible(shape->layer))
                continue;
            ZrDbObjectPointer<ZrDbEntity> entity(shape->id, ZrDb::kForRead);
            if (entity && paintsInto(entity.object(), map, probe))
                return shape->id;
        }
        return ZrDbObjectId();
    }

    // Inside the band entirely or, crossing, touched by it.
    std::vector<ZrDbObjectId> entitiesIn(const QRect& band, bool crossing)
    {
        readShapes();
        const QTransform map = toWindow();
        const Box area = drawingBox(band);
        LayerVisibility visible;
        std::vector<ZrDbObjectId> ids;
        for (const Shape& shape : shapes) {
            if (!shape.hasExtents || !shape.extents.overlaps(area) || !visible(shape.layer))
                continue;
            if (shape.extents.inside(area)) {
                ids.push_back(shape.id);
                continue;
            }
            if (!crossing)
                continue;
            ZrDbObjectPointer<ZrDbEntity> entity(shape.id, ZrDb::kForRead);
            if (entity && paintsInto(entity.object(), map, windowArea(shape.extents, map) & band))
                ids.push_back(shape.id);
        }
        return ids;
    }

    void clickAt(const QPoint& pos, bool toggle)
    {
        const ZrDbObjectId hit = entityAt(pos);
        if (!toggle) {
            select(hit.isNull() ? std::vector<ZrDbObjectId>() : std::vector<ZrDbObjectId>{hit});
            return;
        }
        if (hit.isNull())
            return;
        std::vector<ZrDbObjectId> ids = pickFirst();
        const auto found = std::find(ids.begin(), ids.end(), hit);
        if (found != ids.end())
            ids.erase(found);
        else
            ids.push_back(hit);
        select(ids);
    }

    void selectInBand(const QPoint& from, const QPoint& to, bool add)
    {
        const std::vector<ZrDbObjectId> inBand = entitiesIn(QRect(from, to).normalized(), to.x() < from.x());
        std::vector<ZrDbObjectId> ids = add ? pickFirst() : std::vector<ZrDbObjectId>();
        for (ZrDbObjectId id : inBand) {
            if (std::find(ids.begin(), ids.end(), id) == ids.end())
                ids.push_back(id);
        }
        select(ids);
    }
};

ZrDrawingView::ZrDrawingView(ZrHostEvents* events, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Data>(this))
{
    setObjectName(QStringLiteral("drawingView"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(events, &ZrHostEvents::changed, this, [this](qint64 kinds) {
        if (kinds & (kZrUiEventObject | kZrUiEventDocument))
            d->shapesStale = true;
        update();
    });
    // The module's redraws of the drawing surface are ours to carry out.
    ZrHostControl::setDrawingSurfaceActive(true);
    ZrHostControl::setRedrawListener([this] { update(); });
}

ZrDrawingView::~ZrDrawingView()
{
    ZrHostControl::setRedrawListener({});
    ZrHostControl::setDrawingSurfaceActive(false);
}

QSize ZrDrawingView::sizeHint() const
{
    return {800, 520};
}

void ZrDrawingView::zoomExtents()
{
    d->readShapes();
    d->fit();
    update();
}

QTransform ZrDrawingView::drawingToWindow() const
{
    d->readShapes();
    return d->toWindow();
}

ZrDbObjectId ZrDrawingView::entityAt(const QPoint& pos) const
{
    return d->entityAt(pos);
}

bool ZrDrawingView::pickPoint(ZrDbObjectId id, QPoint* pos) const
{
    d->readShapes();
    const auto shape = std::find_if(d->shapes.begin(), d->shapes.end(), [id](const Shape& s) { return s.id == id; });
    if (shape == d->shapes.end() || !shape->hasExtents || !LayerVisibility()(shape->layer))
        return false;
    ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
    const QTransform map = d->toWindow();
    const QRect area = windowArea(shape->extents, map) & rect().adjusted(kPickTolerance, kPickTolerance,
                                                                           -kPickTolerance, -kPickTolerance);
    if (!entity || area.isEmpty())
        return false;
    const QImage image = paintAlone(entity.object(), map, area);
    std::vector<QPoint> marks;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) != 0)
                marks.push_back(area.topLeft() + QPoint(x, y));
        }
    }
    // Where another entity lies on top, a click there picks that one instead: try spread-out marks.
    constexpr size_t kTries = 32;
    const size_t stride = std::max<size_t>(1, marks.size() / kTries);
    for (size_t i = stride / 2; i < marks.size(); i += stride) {
        if (d->entityAt(marks[i]) == id) {
            *pos = marks[i];
            return true;
        }
    }
    return false;
}

void ZrDrawingView::paintEvent(QPaintEvent*)
{
    const ViewColors colors = viewColors();
    d->readShapes();
    const QTransform map = d->toWindow();

    QPainter p(this);
    p.fillRect(rect(), colors.paper);
    drawGrid(p, rect(), map, d->scale, colors);

    std::vector<ZrDbObjectId> selected = pickFirst();
    std::sort(selected.begin(), selected.end());
    const Box seen = d->drawingBox(rect().adjusted(-8, -8, 8, 8));
    LayerVisibility visible;
    p.setRenderHint(QPainter::Antialiasing, d->shapes.size() <= kAntialiasLimit);
    // The selection goes on top of the rest, so that nothing drawn later hides its highlight.
    std::vector<ZrDbObjectId> selectedInSight;
    for (const Shape& shape : d->shapes) {
        if ((shape.hasExtents && !shape.extents.overlaps(seen)) || !visible(shape.layer))
            continue;
        if (std::binary_search(selected.begin(), selected.end(), shape.id)) {
            selectedInSight.push_back(shape.id);
            continue;
        }
        ZrDbObjectPointer<ZrDbEntity> entity(shape.id, ZrDb::kForRead);
        if (entity)
            ZrHostControl::paintEntity(p, entity.object(), map, colors.foreground);
    }
    if (selectedInSight.size() <= kHaloLimit)
        drawHalo(p, selectedInSight, map, colors);
    for (ZrDbObjectId id : selectedInSight) {
        ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
        if (entity)
            ZrHostControl::paintEntity(p, entity.object(), map, colors.foreground, true);
    }

    p.resetTransform();
    p.setRenderHint(QPainter::Antialiasing, false);
    if (d->banding)
        drawBand(p, d->pressPos, d->bandEnd, colors);
    p.setRenderHint(QPainter::Antialiasing);
    drawAxes(p, rect(), colors);
}

void ZrDrawingView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (d->fitted)
        d->fit();
}

void ZrDrawingView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        d->leftDown = true;
        d->banding = false;
        d->pressPos = event->pos();
    } else if (event->button() == Qt::MiddleButton) {
        d->panning = true;
        d->panFrom = event->pos();
        setCursor(Qt::ClosedHandCursor);
    }
}

void ZrDrawingView::mouseMoveEvent(QMouseEvent* event)
{
    Q_EMIT cursorMoved(d->toWindow().inverted().map(QPointF(event->pos())));
    if (d->panning) {
        const QPoint by = event->pos() - d->panFrom;
        d->panFrom = event->pos();
        d->centre -= QPointF(by.x() / d->scale, -by.y() / d->scale);
        d->fitted = false;
        update();
    }
    if (d->leftDown && (d->banding || (event->pos() - d->pressPos).manhattanLength() >= QApplication::startDragDistance())) {
        d->banding = true;
        d->bandEnd = event->pos();
        update();
    }
}

void ZrDrawingView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && d->leftDown) {
        d->leftDown = false;
        const bool shift = event->modifiers() & Qt::ShiftModifier;
        if (d->banding) {
            d->banding = false;
            d->selectInBand(d->pressPos, event->pos(), shift);
        } else {
            d->clickAt(event->pos(), shift);
        }
        update();
    } else if (event->button() == Qt::MiddleButton && d->panning) {
        d->panning = false;
        unsetCursor();
    }
}

void ZrDrawingView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::MiddleButton)
        zoomExtents();
    else
        mousePressEvent(event);
}

void ZrDrawingView::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y();
    if (steps == 0)
        return;
    d->zoomAbout(event->position(), std::pow(kWheelStep, steps / 120.0));
}

void ZrDrawingView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (d->banding) {
        d->leftDown = d->banding = false;
        update();
        return;
    }
    select({});
    update();
}

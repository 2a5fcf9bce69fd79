// Painting entities for the views of the apps and for entity images: colour through the layer, line
// type dashes, lineweight.

#include "zrdbpaint.h"

#include "zrcolorpalette.h"
#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbinternal.h"
#include "zrdbsymtb.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;
// Block references inside blocks stop here, so that a block that holds itself cannot hang a paint.
constexpr int kMaxNesting = 8;
// Hundredths of a millimetre a device pixel of lineweight stands for at the display scale 1.0: at
// LWDISPSCALE's first value, 0.55, a 0.25 mm line is about one pixel wide and a 2.11 mm one nine.
constexpr double kLineWeightPerPixel = 12.5;
constexpr int kDefaultLineWeight = 25;
// Device coordinates beyond this many pixels are not drawn: there a double no longer places a point
// within a pixel, and such sizes come from absurd values or overflow.
constexpr double kDeviceLimit = 1e15;
// A dash pattern repeated more often than this along one path is drawn solid: it would look solid,
// and stroking each dash would take as long as the count.
constexpr double kMaxDashes = 10000;
// Pictures up to this many pixels wide and high keep the direct road's fixed-point positions (64ths
// of a pixel, rows in 16.16) within an int.
constexpr int kMaxLevelLinePixels = 32767;
// Text taller than this many pixels is not drawn.
constexpr double kMaxTextPixels = 1e5;

// What entities inside a block take for their "by block" properties.
struct BlockContext
{
    QColor color;
    int64_t linetype = 0;
    int lineWeight = kDefaultLineWeight;
};

// The pen of an entity: its colour, dash pattern (in drawing units, scaled) and width in pixels.
struct Stroke
{
    QColor color;
    const ZrDbLinetypeTableRecord* linetype = nullptr;
    double linetypeScale = 1.0;
    double width = 1.0;
};

QPointF toPoint(const ZrGePoint3d& p) { return QPointF(p.x, p.y); }

double scaleOf(const QTransform& t) { return std::sqrt(std::fabs(t.determinant())); }

bool isDrawable(double deviceValue) { return std::isfinite(deviceValue) && std::fabs(deviceValue) <= kDeviceLimit; }
bool isDrawable(const QPointF& p) { return isDrawable(p.x()) && isDrawable(p.y()); }
bool isDrawable(const QRectF& box) { return isDrawable(box.topLeft()) && isDrawable(box.bottomRight()); }

bool isFinite(const QTransform& t)
{
    for (double m : {t.m11(), t.m12(), t.m13(), t.m21(), t.m22(), t.m23(), t.m31(), t.m32(), t.m33()}) {
        if (!std::isfinite(m))
            return false;
    }
    return true;
}

bool isFinite(const QRectF& box)
{
    return std::isfinite(box.left()) && std::isfinite(box.top()) && std::isfinite(box.width()) && std::isfinite(box.height());
}

int resolvedLineWeight(int weight, const ZrDbLayerTableRecord* layer, const BlockContext* block)
{
    if (weight == ZrDb::kLnWtByLayer)
        weight = layer ? layer->lineWeight() : ZrDb::kLnWtByLwDefault;
    else if (weight == ZrDb::kLnWtByBlock)
        weight = block ? block->lineWeight : ZrDb::kLnWtByLwDefault;
    return weight < 0 ? zrdbApplicationInteger(kVarLwdefault) : weight;
}

// Hairlines unless the drawing shows lineweights (LWDISPLAY); then the weight at the display scale
// (LWDISPSCALE), never below one pixel.
double displayedWidth(const ZrDbDatabase* database, int weight)
{
    if (!database)
        return 1.0;
    const ZrDbData& data = zrdbData(database);
    if (!data.variable(kVarLwdisplay).integer)
        return 1.0;
    return std::max(1.0, weight * data.variable(kVarLwdispscale).real / kLineWeightPerPixel);
}

Stroke strokeOf(const ZrDbEntity* entity, const QColor& foreground, const BlockContext* block)
{
    const ZrDbLayerTableRecord* layer = zrdbPeek<ZrDbLayerTableRecord>(entity->layerId());
    Stroke stroke;
    const ZrCmColor color = entity->color();
    if (color.isByLayer())
        stroke.color = layer ? zrdbDisplayColor(layer->color(), foreground) : foreground;
    else if (color.isByBlock())
        stroke.color = block ? block->color : foreground;
    else
        stroke.color = zrdbDisplayColor(color, foreground);

    int64_t linetype = entity->linetypeId().handle();
    const ZrDbDatabase* database = entity->database();
    if (database && linetype == database->byLayerLinetype().handle())
        linetype = layer ? layer->linetypeObjectId().handle() : 0;
    else if (database && linetype == database->byBlockLinetype().handle())
        linetype = block ? block->linetype : 0;
    stroke.linetype = zrdbPeek<ZrDbLinetypeTableRecord>(linetype);
    stroke.linetypeScale = entity->linetypeScale() * (database ? database->ltscale() : 1.0);
    stroke.width = displayedWidth(database, resolvedLineWeight(entity->lineWeight(), layer, block));
    return stroke;
}

// Qt's dash pattern from a line type's: dashes and gaps alternate, dots become one pixel.
QVector<qreal> dashPattern(const Stroke& stroke, double deviceScale)
{
    QVector<qreal> pattern;
    if (!stroke.linetype || stroke.linetype->numDashes() == 0)
        return pattern;
    std::vector<std::pair<bool, double>> runs;
    double total = 0.0;
    for (int i = 0; i < stroke.linetype->numDashes(); ++i) {
        const double dash = stroke.linetype->dashLengthAt(i);
        const bool on = dash >= 0.0;
        const double length = dash == 0.0 ? 1.0 : std::fabs(dash) * stroke.linetypeScale * deviceScale;
        total += length;
        if (!runs.empty() && runs.back().first == on)
            runs.back().second += length;
        else
            runs.emplace_back(on, length);
    }
    // A pattern finer than a few pixels looks solid on screen anyway.
    if (total < 4.0 || runs.size() < 2)
        return pattern;
    if (!runs.front().first)
        std::rotate(runs.begin(), runs.begin() + 1, runs.end());
    if (runs.size() % 2) {
        runs.front().second += runs.back().second;
        runs.pop_back();
    }
    for (const auto& run : runs)
        pattern << std::max(run.second, 0.5) / stroke.width;
    return pattern;
}

QPen penOf(const Stroke& stroke, double deviceScale, bool highlighted)
{
    QPen pen(highlighted ? QColor(0, 120, 215) : stroke.color, stroke.width + (highlighted ? 1.0 : 0.0));
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    const QVector<qreal> pattern = dashPattern(stroke, deviceScale);
    if (!pattern.isEmpty())
        pen.setDashPattern(pattern);
    return pen;
}

// The length of one repeat of a pen's dashes, in device pixels.
double dashPeriod(const QPen& pen)
{
    double period = 0.0;
    for (qreal length : pen.dashPattern())
        period += length * pen.widthF();
    return period;
}

// Strokes a path given in device pixels, unless it reaches beyond what can be drawn.
void strokeOnDevice(QPainter& painter, const QPainterPath& path, QPen pen)
{
    if (!isDrawable(path.boundingRect()))
        return;
    if (pen.style() == Qt::CustomDashLine) {
        const double period = dashPeriod(pen);
        // Dashes too long to measure, or too many to stroke one by one.
        if (!std::isfinite(period) || path.length() > kMaxDashes * period)
            pen.setStyle(Qt::SolidLine);
    }
    painter.strokePath(path, pen);
}

// A premultiplied pixel at a coverage of 0 to 255, each channel rounded as the raster engine rounds
// it.
uint32_t scaledPixel(uint32_t pixel, uint32_t coverage)
{
    // Two channels at a time, each in 16 bits: no sum below leaves its half.
    const uint32_t mask = 0x00FF00FF;
    uint32_t redBlue = (pixel & mask) * coverage;
    redBlue = ((redBlue + ((redBlue >> 8) & mask) + 0x00800080) >> 8) & mask;
    uint32_t alphaGreen = ((pixel >> 8) & mask) * coverage;
    alphaGreen = (alphaGreen + ((alphaGreen >> 8) & mask) + 0x00800080) & ~mask;
    return redBlue | alphaGreen;
}

// An opaque colour over a premultiplied pixel at a coverage of 0 to 255.
void coverPixel(uint32_t& pixel, uint32_t color, int coverage)
{
    // What the sum below gives at the two ends, without its arithmetic.
    if (coverage == 0)
        return;
    if (coverage == 255) {
        pixel = color;
        return;
    }
    const uint32_t ink = scaledPixel(color, uint32_t(coverage));
    pixel = ink + scaledPixel(pixel, 255u - uint32_t(coverage));
}

// Which device pixels along a dashed line are on: the pattern in 64ths of a pixel, whole pixels on or
// off by where each one starts in the pattern, as the raster engine decides for thin pens.
class PixelDashes
{
public:
    PixelDashes(const QVector<qreal>& pattern, int start)
    {
        for (qreal length : pattern) {
            m_length += static_cast<int>(qBound(1.0, length * 64.0, 65536.0));
            m_ends.push_back(m_length);
        }
        if (m_ends.empty())
            return;
        m_offset = (32 - (start & 63)) % m_length;
        if (m_offset < 0)
            m_offset += m_length;
        while (m_offset >= m_ends[m_index])
            ++m_index;
    }

    bool on() const { return m_ends.empty() || m_index % 2 == 0; }

    void next()
    {
        if (m_ends.empty())
            return;
        m_offset += 64;
        if (m_offset >= m_ends[m_index])
            m_index = (m_index + 1) % m_ends.size();
        m_offset %= m_length;
    }

private:
    std::vector<int> m_ends;
    int m_length = 0;
    int m_offset = 0;
    size_t m_index = 0;
};

QPainterPath arcPath(const ZrGePoint3d& center, double radius, double start, double end)
{
    double sweep = end - start;
    while (sweep <= 0.0)
        sweep += 2 * kPi;
    QPainterPath path;
    const QRectF box(center.x - radius, center.y - radius, 2 * radius, 2 * radius);
    path.arcMoveTo(box, qRadiansToDegrees(start));
    path.arcTo(box, qRadiansToDegrees(start), qRadiansToDegrees(sweep));
    return path;
}

// A leader's text takes its text style's height, or the usual 2.5 when the style leaves it open.
double leaderTextHeight(const ZrDbMLeader* leader)
{
    const ZrDbTextStyleTableRecord* style = zrdbPeek<ZrDbTextStyleTableRecord>(leader->textStyleId());
    return style && style->textSize() > 0.0 ? style->textSize() : 2.5;
}

QString dimensionLabel(const ZrDbAlignedDimension* dimension)
{
    const double dx = dimension->xLine2Point().x - dimension->xLine1Point().x;
    const double dy = dimension->xLine2Point().y - dimension->xLine1Point().y;
    const QString measured = QString::number(std::hypot(dx, dy), 'f', 0);
    const QString text = dimension->dimensionText().toQString();
    if (text.isEmpty())
        return measured;
    QString label = text;
    return label.replace(QLatin1String("<>"), measured);
}

// The geometry of an aligned dimension: the dimension line and the ends of the extension lines.
struct DimensionLines
{
    QPointF first, second, lineStart, lineEnd;
};

DimensionLines dimensionLines(const ZrDbAlignedDimension* dimension)
{
    const QPointF p1 = toPoint(dimension->xLine1Point());
    const QPointF p2 = toPoint(dimension->xLine2Point());
    const QPointF along = p2 - p1;
    const double length = std::hypot(along.x(), along.y());
    const QPointF normal = length > 0 ? QPointF(-along.y() / length, along.x() / length) : QPointF(0, 1);
    const QPointF toLine = toPoint(dimension->dimLinePoint()) - p1;
    const double offset = toLine.x() * normal.x() + toLine.y() * normal.y();
    return {p1, p2, p1 + normal * offset, p2 + normal * offset};
}

// Text placed at a point of the drawing, upright on the device whatever the drawing's y direction.
void drawText(QPainter& painter, const QTransform& toDevice, const QPointF& at, double height, double rotation,
              const QString& text, const QColor& color, double width = 0.0)
{
    const double pixels = height * scaleOf(toDevice);
    const QPointF origin = toDevice.map(at);
    const double boxWidth = width * scaleOf(toDevice);
    if (!(pixels >= 2.0 && pixels <= kMaxTextPixels) || !isDrawable(origin) || !isDrawable(boxWidth)
        || !std::isfinite(rotation) || text.isEmpty() || !QGuiApplication::instance())
        return;
    painter.save();
    QFont font = painter.font();
    font.setPixelSize(std::max(1, qRound(pixels)));
    painter.setFont(font);
    painter.setPen(color);
    painter.translate(origin);
    const bool flipped = toDevice.m22() < 0;
    painter.rotate(flipped ? -qRadiansToDegrees(rotation) : qRadiansToDegrees(rotation));
    QString shown = text;
    shown.replace(QLatin1String("\\P"), QLatin1String("\n"));
    if (width > 0.0) {
        const QRectF box(0, 0, boxWidth, pixels * 50);
        painter.drawText(box, Qt::TextWordWrap | Qt::AlignLeft | Qt::AlignTop, shown);
    } else {
        painter.drawText(QPointF(0, 0), shown);
    }
    painter.restore();
}

void paintOne(QPainter& painter, const ZrDbEntity* entity, const QTransform& toDevice, const QColor& foreground,
              bool highlighted, const BlockContext* block, int depth);

void paintBlock(QPainter& painter, const ZrDbBlockReference* reference, const QTransform& toDevice,
                const QColor& foreground, bool highlighted, const BlockContext& context, int depth)
{
    const ZrDbBlockTableRecord* record = zrdbPeek<ZrDbBlockTableRecord>(reference->blockTableRecord());
    if (!record || depth >= kMaxNesting)
        return;
    QTransform inBlock;
    inBlock.translate(reference->position().x, reference->position().y);
    inBlock.rotateRadians(reference->rotation());
    inBlock.scale(reference->scale(), reference->scale());
    inBlock.translate(-record->origin().x, -record->origin().y);
    const QTransform innerToDevice = inBlock * toDevice;
    if (!isFinite(innerToDevice))
        return;
    for (int64_t handle : record->entityHandles()) {
        if (const ZrDbEntity* inner = zrdbPeek<ZrDbEntity>(handle))
            paintOne(painter, inner, innerToDevice, foreground, highlighted, &context, depth + 1);
    }
}

void paintOne(QPainter& painter, const ZrDbEntity* entity, const QTransform& toDevice, const QColor& foreground,
              bool highlighted, const BlockContext* block, int depth)
{
    const ZrDbLayerTableRecord* layer = zrdbPeek<ZrDbLayerTableRecord>(entity->layerId());
    if (layer && (layer->isOff() || layer->isFrozen()))
        return;
    const Stroke stroke = strokeOf(entity, foreground, block);
    const double deviceScale = scaleOf(toDevice);
    const QPen pen = penOf(stroke, deviceScale, highlighted);
    const QColor textColor = pen.color();
    const auto strokePath = [&](const QPainterPath& path) { strokeOnDevice(painter, toDevice.map(path), pen); };

    if (const ZrDbLine* line = ZrDbLine::cast(entity)) {
        QPainterPath path(toPoint(line->startPoint()));
        path.lineTo(toPoint(line->endPoint()));
        strokePath(path);
    } else if (const ZrDbCircle* circle = ZrDbCircle::cast(entity)) {
        strokePath(arcPath(circle->center(), circle->radius(), 0.0, 2 * kPi));
    } else if (const ZrDbArc* arc = ZrDbArc::cast(entity)) {
        strokePath(arcPath(arc->center(), arc->radius(), arc->startAngle(), arc->endAngle()));
    } else if (const ZrDbPolyline* polyline = ZrDbPolyline::cast(entity)) {
        if (polyline->numVerts() < 2)
            return;
        QPainterPath path(toPoint(polyline->vertexAt(0)));
        for (int i = 1; i < polyline->numVerts(); ++i)
            path.lineTo(toPoint(polyline->vertexAt(i)));
        if (polyline->isClosed())
            path.closeSubpath();
        strokePath(path);
    } else if (const ZrDbText* text = ZrDbText::cast(entity)) {
        drawText(painter, toDevice, toPoint(text->position()), text->height(), text->rotation(),
                 text->textString().toQString(), textColor);
    } else if (const ZrDbMText* mtext = ZrDbMText::cast(entity)) {
        // The location is the top left corner; text is drawn from its baseline.
        const QPointF baseline = toPoint(mtext->location()) - QPointF(0, mtext->textHeight());
        drawText(painter, toDevice, baseline, mtext->textHeight(), 0.0, mtext->contents().toQString(), textColor,
                 mtext->width());
    } else if (const ZrDbAlignedDimension* dimension = ZrDbAlignedDimension::cast(entity)) {
        const DimensionLines lines = dimensionLines(dimension);
        QPainterPath path(lines.first);
        path.lineTo(lines.lineStart);
        path.moveTo(lines.second);
        path.lineTo(lines.lineEnd);
        path.moveTo(lines.lineStart);
        path.lineTo(lines.lineEnd);
        // Oblique ticks at both ends, as architectural dimensions have them.
        const ZrDbDimStyleTableRecord* style = zrdbPeek<ZrDbDimStyleTableRecord>(dimension->dimensionStyle());
        const double scale = style && style->dimscale() > 0.0 ? style->dimscale() : 1.0;
        const double tick = 1.5 * scale;
        for (const QPointF& end : {lines.lineStart, lines.lineEnd}) {
            path.moveTo(end - QPointF(tick, tick));
            path.lineTo(end + QPointF(tick, tick));
        }
        strokeOnDevice(painter, toDevice.map(path), QPen(textColor, pen.widthF()));
        const QPointF middle = (lines.lineStart + lines.lineEnd) / 2;
        const QPointF along = lines.lineEnd - lines.lineStart;
        const double angle = std::atan2(along.y(), along.x());
        const QString label = dimensionLabel(dimension);
        // The text sits above the middle of the line: half its width back along it, a gap above.
        const QPointF back(std::cos(angle), std::sin(angle));
        const QPointF up(-std::sin(angle), std::cos(angle));
        const double textHeight = 2.5 * scale;
        drawText(painter, toDevice, middle - back * (label.size() * textHeight * 0.35) + up * (0.5 * scale), textHeight,
                 angle, label, textColor);
    } else if (const ZrDbTable* table = ZrDbTable::cast(entity)) {
        const QPointF origin = toPoint(table->position());
        const double width = table->numColumns() * table->columnWidth();
        const double height = table->numRows() * table->rowHeight();
        QPainterPath path;
        for (int row = 0; row <= table->numRows(); ++row) {
            // The title row spans all columns.
            path.moveTo(origin - QPointF(0, row * table->rowHeight()));
            path.lineTo(origin + QPointF(width, -row * table->rowHeight()));
        }
        for (int column = 0; column <= table->numColumns(); ++column) {
            const bool outer = column == 0 || column == table->numColumns();
            path.moveTo(origin + QPointF(column * table->columnWidth(), outer ? 0 : -table->rowHeight()));
            path.lineTo(origin + QPointF(column * table->columnWidth(), -height));
        }
        strokePath(path);
    } else if (const ZrDbBlockReference* reference = ZrDbBlockReference::cast(entity)) {
        BlockContext context{stroke.color, stroke.linetype ? stroke.linetype->objectId().handle() : 0,
                             resolvedLineWeight(entity->lineWeight(), layer, block)};
        paintBlock(painter, reference, toDevice, foreground, highlighted, context, depth);
    } else if (const ZrDbMLeader* leader = ZrDbMLeader::cast(entity)) {
        const QPointF arrow = toPoint(leader->arrowPoint());
        const QPointF landing = toPoint(leader->textLocation());
        QPainterPath path(arrow);
        path.lineTo(landing);
        strokePath(path);
        const QPointF tip = toDevice.map(arrow);
        if (isDrawable(tip)) {
            painter.setBrush(textColor);
            painter.setPen(Qt::NoPen);
            painter.drawEllipse(tip, 2.0 + stroke.width, 2.0 + stroke.width);
            painter.setBrush(Qt::NoBrush);
        }
        const double height = leaderTextHeight(leader);
        drawText(painter, toDevice, landing + QPointF(height * 0.4, height * 0.2), height, 0.0,
                 leader->contents().toQString(), textColor);
    } else if (const ZrDbHatch* hatch = ZrDbHatch::cast(entity)) {
        if (hatch->loop().size() < 3)
            return;
        QPolygonF loop;
        for (const ZrGePoint3d& p : hatch->loop())
            loop << toPoint(p);
        loop = toDevice.map(loop);
        if (!isDrawable(loop.boundingRect()))
            return;
        const QString pattern = hatch->patternName().toQString().toUpper();
        const Qt::BrushStyle style = pattern == QLatin1String("SOLID")        ? Qt::SolidPattern
            : pattern.startsWith(QLatin1String("ANSI3"))                        ? Qt::BDiagPattern
            : pattern == QLatin1String("NET") || pattern == QLatin1String("GRID") ? Qt::CrossPattern
                                                                                  : Qt::DiagCrossPattern;
        QColor fill = textColor;
        if (style == Qt::SolidPattern)
            fill.setAlpha(96);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QBrush(fill, style));
        painter.drawPolygon(loop);
        painter.setBrush(Qt::NoBrush);
    } else if (const ZrDbViewport* viewport = ZrDbViewport::cast(entity)) {
        const ZrGePoint3d c = viewport->centerPoint();
        QPainterPath path;
        path.addRect(QRectF(c.x - viewport->width() / 2, c.y - viewport->height() / 2, viewport->width(),
                            viewport->height()));
        strokePath(path);
    }
}

void extendBy(const QRectF& box, bool& any, double& minX, double& minY, double& maxX, double& maxY)
{
    if (!any) {
        minX = box.left();
        minY = box.top();
        maxX = box.right();
        maxY = box.bottom();
        any = true;
        return;
    }
    minX = std::min(minX, box.left());
    minY = std::min(minY, box.top());
    maxX = std::max(maxX, box.right());
    maxY = std::max(maxY, box.bottom());
}

bool extentsOf(const ZrDbEntity* entity, QRectF& box, int depth)
{
    const auto fromPoints = [&box](std::initializer_list<QPointF> points) {
        QPolygonF polygon;
        for (const QPointF& p : points)
            polygon << p;
        box = polygon.boundingRect();
        return true;
    };
    if (const ZrDbLine* line = ZrDbLine::cast(entity))
        return fromPoints({toPoint(line->startPoint()), toPoint(line->endPoint())});
    if (const ZrDbCircle* circle = ZrDbCircle::cast(entity)) {
        const double r = circle->radius();
        box = QRectF(circle->center().x - r, circle->center().y - r, 2 * r, 2 * r);
        return true;
    }
    if (const ZrDbArc* arc = ZrDbArc::cast(entity)) {
        box = arcPath(arc->center(), arc->radius(), arc->startAngle(), arc->endAngle()).boundingRect();
        return true;
    }
    if (const ZrDbPolyline* polyline = ZrDbPolyline::cast(entity)) {
        QPolygonF polygon;
        for (int i = 0; i < polyline->numVerts(); ++i)
            polygon << toPoint(polyline->vertexAt(i));
        box = polygon.boundingRect();
        return !polygon.isEmpty();
    }
    if (const ZrDbText* text = ZrDbText::cast(entity)) {
        const QPointF p = toPoint(text->position());
        const double width = text->textString().length() * text->height() * 0.8;
        QTransform rotation;
        rotation.translate(p.x(), p.y());
        rotation.rotateRadians(text->rotation());
        box = rotation.mapRect(QRectF(0, 0, width, text->height()));
        return true;
    }
    if (const ZrDbMText* mtext = ZrDbMText::cast(entity)) {
        const QPointF p = toPoint(mtext->location());
        const int lines = mtext->contents().toQString().count(QLatin1String("\\P")) + 1;
        const double width = mtext->width() > 0 ? mtext->width() : mtext->contents().length() * mtext->textHeight() * 0.8;
        box = QRectF(p.x(), p.y() - lines * mtext->textHeight() * 1.5, width, lines * mtext->textHeight() * 1.5);
        return true;
    }
    if (const ZrDbAlignedDimension* dimension = ZrDbAlignedDimension::cast(entity)) {
        const DimensionLines lines = dimensionLines(dimension);
        return fromPoints({lines.first, lines.second, lines.lineStart, lines.lineEnd});
    }
    if (const ZrDbTable* table = ZrDbTable::cast(entity)) {
        const QPointF p = toPoint(table->position());
        box = QRectF(p.x(), p.y() - table->numRows() * table->rowHeight(), table->numColumns() * table->columnWidth(),
                     table->numRows() * table->rowHeight());
        return true;
    }
    if (const ZrDbBlockReference* reference = ZrDbBlockReference::cast(entity)) {
        const ZrDbBlockTableRecord* record = zrdbPeek<ZrDbBlockTableRecord>(reference->blockTableRecord());
        if (!record || depth >= kMaxNesting)
            return false;
        bool any = false;
        double minX = 0, minY = 0, maxX = 0, maxY = 0;
        for (int64_t handle : record->entityHandles()) {
            QRectF inner;
            const ZrDbEntity* member = zrdbPeek<ZrDbEntity>(handle);
            if (member && extentsOf(member, inner, depth + 1) && isFinite(inner))
                extendBy(inner, any, minX, minY, maxX, maxY);
        }
        if (!any)
            return false;
        QTransform inBlock;
        inBlock.translate(reference->position().x, reference->position().y);
        inBlock.rotateRadians(reference->rotation());
        inBlock.scale(reference->scale(), reference->scale());
        inBlock.translate(-record->origin().x, -record->origin().y);
        box = inBlock.mapRect(QRectF(QPointF(minX, minY), QPointF(maxX, maxY)));
        return isFinite(box);
    }
    if (const ZrDbMLeader* leader = ZrDbMLeader::cast(entity)) {
        const QPointF landing = toPoint(leader->textLocation());
        const double height = leaderTextHeight(leader);
        return fromPoints({toPoint(leader->arrowPoint()), landing,
                           landing + QPointF(leader->contents().length() * height, height)});
    }
    if (const ZrDbHatch* hatch = ZrDbHatch::cast(entity)) {
        QPolygonF polygon;
        for (const ZrGePoint3d& p : hatch->loop())
            polygon << toPoint(p);
        box = polygon.boundingRect();
        return !polygon.isEmpty();
    }
    if (const ZrDbViewport* viewport = ZrDbViewport::cast(entity)) {
        const ZrGePoint3d c = viewport->centerPoint();
        box = QRectF(c.x - viewport->width() / 2, c.y - viewport->height() / 2, viewport->width(), viewport->height());
        return true;
    }
    return false;
}

// An index colour as the host's palette has it.
QColor indexColor(int index)
{
    if (index < 0 || index > 255)
        return QColor();
    const uint32_t entry = zrHostIndexPalette()[size_t(index)];
    return QColor(int(entry & 0xFF), int((entry >> 8) & 0xFF), int((entry >> 16) & 0xFF));
}

} // namespace

QColor zrdbDisplayColor(const ZrCmColor& color, const QColor& foreground)
{
    if (color.isByColor())
        return QColor(color.red(), color.green(), color.blue());
    const int index = color.colorIndex();
    if (index == 7 || index == 0 || index >= 256 || color.isForeground())
        return foreground;
    return indexColor(index);
}

bool zrdbEntityExtents(const ZrDbEntity* entity, double& minX, double& minY, double& maxX, double& maxY)
{
    QRectF box;
    // An entity whose extents overflow has none that a view could fit.
    if (!entity || !extentsOf(entity, box, 0) || !isFinite(box))
        return false;
    minX = box.left();
    minY = box.top();
    maxX = box.right();
    maxY = box.bottom();
    return true;
}

void zrdbPaintEntity(QPainter& painter, const ZrDbEntity* entity, const QTransform& toDevice, const QColor& foreground,
                 bool highlighted)
{
    if (!entity)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const QTransform device = painter.worldTransform();
    // Geometry is mapped here and stroked in device pixels, so that dashes and widths keep their size.
    painter.resetTransform();
    paintOne(painter, entity, toDevice * device, foreground, highlighted, nullptr, 0);
    painter.restore();
}

bool zrdbPaintLevelLine(QImage& image, const ZrDbEntity* entity, const QTransform& toDevice, const QColor& foreground)
{
    const ZrDbLine* line = ZrDbLine::cast(entity);
    if (!line || image.format() != QImage::Format_ARGB32_Premultiplied)
        return false;
    const ZrDbLayerTableRecord* layer = zrdbPeek<ZrDbLayerTableRecord>(entity->layerId());
    if (layer && (layer->isOff() || layer->isFrozen()))
        return true;
    const Stroke stroke = strokeOf(entity, foreground, nullptr);
    const QPointF from = toDevice.map(toPoint(line->startPoint()));
    const QPointF to = toDevice.map(toPoint(line->endPoint()));
    // Only a hairline drawn left to right along a row, well inside the picture, in a solid colour.
    if (stroke.width != 1.0 || stroke.color.alpha() != 255 || from.y() != to.y() || !(from.x() < to.x())
        || !(from.x() >= 0.0 && to.x() < image.width() && from.y() >= 1.0 && from.y() < image.height() - 1)
        || image.width() > kMaxLevelLinePixels || image.height() > kMaxLevelLinePixels)
        return false;
    const QPen pen = penOf(stroke, scaleOf(toDevice), false);
    const double period = pen.style() == Qt::CustomDashLine ? dashPeriod(pen) : 0.0;
    if (!std::isfinite(period))
        return false;
    // As strokeOnDevice decides.
    const bool solid = period == 0.0 || to.x() - from.x() > kMaxDashes * period;

    // Positions in 64ths of a pixel; the pen covers the row its centre is in and the next by how far
    // the centre lies from the pixels' middle.
    const int x1 = static_cast<int>(from.x() * 64.0);
    const int x2 = static_cast<int>(to.x() * 64.0);
    const int y = (static_cast<int>(from.y() * 64.0) - 32) << 10;
    const int row = y >> 16;
    const int lower = (y >> 8) & 0xFF;
    const int first = x1 >> 6;
    const int last = x2 >> 6;
    // The end pixels are covered by the part of them the line reaches.
    const int startPart = first == last ? x2 - x1 : 64 - (x1 & 63);
    const int endPart = first == last ? 0 : x2 & 63;

    const uint32_t color = stroke.color.rgba();
    auto* upper = reinterpret_cast<uint32_t*>(image.scanLine(row));
    auto* below = reinterpret_cast<uint32_t*>(image.scanLine(row + 1));
    PixelDashes dashes(solid ? QVector<qreal>() : pen.dashPattern(), x1);
    for (int x = first; x <= last; ++x, dashes.next()) {
        const int part = x == first ? startPart : x == last ? endPart : 64;
        if (part == 0 || !dashes.on())
            continue;
        coverPixel(upper[x], color, (255 - lower) * part >> 6);
        coverPixel(below[x], color, lower * part >> 6);
    }
    return true;
}

bool zrdbIsLayerVisible(ZrDbObjectId layer)
{
    const ZrDbLayerTableRecord* record = zrdbPeek<ZrDbLayerTableRecord>(layer);
    return record && !record->isOff() && !record->isFrozen();
}

std::vector<ZrDbObjectId> zrdbEntitiesOfCurrentSpace()
{
    std::vector<ZrDbObjectId> ids;
    const ZrDbDatabase* database = curDatabase();
    const ZrDbLayout* layout = database ? zrdbPeek<ZrDbLayout>(database->currentLayoutId()) : nullptr;
    const ZrDbBlockTableRecord* space = layout ? zrdbPeek<ZrDbBlockTableRecord>(layout->getBlockTableRecordId())
                                               : nullptr;
    if (!space)
        return ids;
    ids.reserve(space->entityHandles().size());
    for (int64_t handle : space->entityHandles()) {
        if (zrdbPeek<ZrDbEntity>(handle))
            ids.emplace_back(handle);
    }
    return ids;
}

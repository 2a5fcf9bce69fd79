// DXF drawings read through dxflib. The groups are read here first: that names the line of a fault,
// refuses what the host cannot hold, and hands dxflib only the objects the host maps, so that its
// fixed arrays of vertices never meet a count they would overflow on. What is left out is counted.

#include "zrdxffile.h"

#include "zrdbdatabasedata.h"
#include "zrdbentity.h"
#include "zrdbfile.h"
#include "zrdbsymtb.h"

#include <dl_creationadapter.h>
#include <dl_dxf.h>

#include <QMap>
#include <QStringList>
#include <QTextCodec>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <map>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;
// The longest line DXF writes: a string of 2 049 bytes.
constexpr int kMaxLineLength = 2049;
constexpr int kMaxEntities = 5000000;
constexpr int kMaxPolylineVertices = 1000000;
constexpr int kMaxInsertCells = 10000;
// Arcs of polylines become this many straight pieces at most.
constexpr int kMaxArcPieces = 64;

struct DxfFault
{
    int line = 0;
    QString what;
};

QString quoted(const std::string& text)
{
    QString shown = QString::fromUtf8(text.data(), int(std::min<size_t>(text.size(), 40)));
    if (text.size() > 40)
        shown += QChar(0x2026);
    return QLatin1Char('"') + shown + QLatin1Char('"');
}

// The kinds of value a group code carries, as the DXF reference assigns them.
bool isRealCode(int code)
{
    return (code >= 10 && code <= 59) || (code >= 110 && code <= 149) || (code >= 210 && code <= 239)
        || (code >= 460 && code <= 469) || (code >= 1010 && code <= 1059);
}

bool isIntegerCode(int code)
{
    return (code >= 60 && code <= 99) || (code >= 160 && code <= 179) || (code >= 270 && code <= 289)
        || (code >= 370 && code <= 389) || (code >= 400 && code <= 409) || (code >= 420 && code <= 459)
        || (code >= 1060 && code <= 1071);
}

ZrGePoint3d pt(double x, double y) { return ZrGePoint3d(x, y, 0.0); }

// Names of the layout blocks, whose entities belong to the layouts rather than to a block.
bool isLayoutBlock(const std::string& name)
{
    if (name.empty() || (name[0] != '*' && name[0] != '$'))
        return false;
    std::string upper = name.substr(1);
    for (char& c : upper)
        c = char(std::toupper(static_cast<unsigned char>(c)));
    return upper.rfind("MODEL_SPACE", 0) == 0 || upper.rfind("PAPER_SPACE", 0) == 0;
}

// Builds the drawing from what dxflib hands over. A fault stops the reading at the next group.
class DxfBuilder : public DL_CreationAdapter
{
public:
    explicit DxfBuilder(ZrDbDatabase* database) : m_db(database) {}

    void setCodec(QTextCodec* codec) { m_codec = codec; }
    void setLine(int line) { m_line = line; }
    bool failed() const { return m_fault.line != 0; }
    const DxfFault& fault() const { return m_fault; }
    void countLeftOut(const QString& what, int count = 1) { m_leftOut[what] += count; }
    const QMap<QString, int>& leftOut() const { return m_leftOut; }

    // The drawing's current layer, $CLAYER of the header.
    void setCurrentLayer(const std::string& name) { m_currentLayer = name; }

    void finish()
    {
        flushPolyline();
        closeTarget();
        ZrDbObjectId current;
        ZrDbObjectPointer<ZrDbLayerTable> layers(m_db->layerTableId(), ZrDb::kForRead);
        if (layers && !m_currentLayer.empty() && layers->getIdAt(ZrString(text(m_currentLayer)), current) == Zr::eOk)
            m_db->setClayer(current);
        for (const auto& block : m_blocks) {
            if (!block.second.defined && !failed())
                countLeftOut(QStringLiteral("references to the undefined block %1").arg(text(block.first)),
                             block.second.references);
        }
    }

    void addLayer(const DL_LayerData& data) override
    {
        const DL_Attributes& a = attributes;
        const ZrDbObjectId id = layerId(data.name);
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForWrite);
        if (!layer)
            return;
        const int index = std::abs(a.getColor());
        ZrCmColor color;
        if (a.getColor24() >= 0)
            color.setRGB(uint8_t(a.getColor24() >> 16), uint8_t(a.getColor24() >> 8), uint8_t(a.getColor24()));
        else
            color.setColorIndex(uint16_t(index >= 1 && index <= 255 ? index : 7));
        layer->setColor(color);
        layer->setIsOff(data.off || a.getColor() < 0);
        layer->setIsFrozen(data.flags & 1);
        layer->setIsLocked(data.flags & 4);
        const ZrDbObjectId linetype = linetypeId(a.getLinetype());
        layer->setLinetypeObjectId(linetype.isValid() && linetype != m_db->byLayerLinetype()
                                           && linetype != m_db->byBlockLinetype()
                                       ? linetype
                                       : m_db->continuousLinetype());
        layer->setLineWeight(lineWeight(a.getWidth(), ZrDb::kLnWtByLwDefault));
    }

    void addLinetypeDash(double length) override { m_dashes.push_back(length); }

    void addLinetype(const DL_LinetypeData& data) override
    {
        ZrDbObjectPointer<ZrDbLinetypeTable> table(m_db->linetypeTableId(), ZrDb::kForWrite);
        const ZrString name(text(data.name));
        if (!table || table->has(name))
            return;
        auto* record = new ZrDbLinetypeTableRecord;
        record->setName(name);
        record->setComments(ZrString(text(data.description)));
        record->setDashes(m_dashes);
        ZrDbObjectId id;
        if (table->add(record, &id) != Zr::eOk) {
            delete record;
            return;
        }
        record->close();
        m_linetypes[data.name] = id;
    }

    void addTextStyle(const DL_StyleData& data) override
    {
        ZrDbObjectPointer<ZrDbTextStyleTable> table(m_db->textStyleTableId(), ZrDb::kForWrite);
        const ZrString name(text(data.name));
        // Entries of shape files have no name and are no text style.
        if (!table || data.name.empty() || (data.flags & 1) || table->has(name))
            return;
        auto* style = new ZrDbTextStyleTableRecord;
        style->setName(name);
        style->setFileName(ZrString(text(data.primaryFontFile)));
        style->setBigFontFileName(ZrString(text(data.bigFontFile)));
        style->setTextSize(std::max(0.0, data.fixedTextHeight));
        style->setXScale(data.widthFactor > 0 ? data.widthFactor : 1.0);
        style->setObliquingAngle(data.obliqueAngle * kPi / 180.0);
        if (table->add(style) != Zr::eOk) {
            delete style;
            return;
        }
        style->close();
    }

    void addBlock(const DL_BlockData& data) override
    {
        flushPolyline();
        closeTarget();
        m_inBlock = true;
        m_target = ZrDbObjectId();
        if (isLayoutBlock(data.name)) {
            m_skipWhy = QStringLiteral("objects of other layouts");
            return;
        }
        if (data.flags & 4) {
            countLeftOut(QStringLiteral("external references"));
            m_skipWhy = QStringLiteral("objects of external references");
            return;
        }
        BlockState& block = m_blocks[data.name];
        if (block.defined)
            return fail(QStringLiteral("the block %1 is defined twice").arg(text(data.name)));
        block.defined = true;
        if (!block.id.isValid())
            block.id = newBlock(data.name);
        m_target = block.id;
        m_base = pt(data.bpx, data.bpy);
        m_skipWhy.clear();
    }

    void endBlock() override
    {
        flushPolyline();
        closeTarget();
        m_inBlock = false;
        m_target = ZrDbObjectId();
        m_base = ZrGePoint3d();
        m_skipWhy.clear();
    }

    void addLine(const DL_LineData& data) override
    {
        const bool mirrored = flipped();
        add(new ZrDbLine(point(data.x1, data.y1, mirrored), point(data.x2, data.y2, mirrored)));
    }

    void addCircle(const DL_CircleData& data) override
    {
        if (!(data.radius > 0))
            return countLeftOut(QStringLiteral("circles without a radius"));
        add(new ZrDbCircle(point(data.cx, data.cy, flipped()), data.radius));
    }

    void addArc(const DL_ArcData& data) override
    {
        if (!(data.radius > 0))
            return countLeftOut(QStringLiteral("arcs without a radius"));
        double start = data.angle1 * kPi / 180.0;
        double end = data.angle2 * kPi / 180.0;
        const bool mirrored = flipped();
        // Seen from below, the arc runs the other way round.
        if (mirrored)
            std::tie(start, end) = std::make_pair(kPi - end, kPi - start);
        add(new ZrDbArc(point(data.cx, data.cy, mirrored), data.radius, start, end));
    }

    void addPolyline(const DL_PolylineData& data) override
    {
        flushPolyline();
        m_polyline = std::make_unique<PendingPolyline>();
        m_polyline->closed = data.flags & 1;
        m_polyline->mesh = data.flags & (16 | 64);
        m_polyline->mirrored = flipped();
        m_polyline->attributes = attributes;
    }

    void addVertex(const DL_VertexData& data) override
    {
        if (!m_polyline || m_polyline->mesh)
            return;
        if (m_polyline->vertices.size() >= size_t(kMaxPolylineVertices))
            return fail(QStringLiteral("a polyline has more than %1 vertices").arg(kMaxPolylineVertices));
        m_polyline->vertices.push_back({point(data.x, data.y, m_polyline->mirrored),
                                        m_polyline->mirrored ? -data.bulge : data.bulge});
    }

    void endEntity() override { flushPolyline(); }

    void addText(const DL_TextData& data) override
    {
        auto* entity = new ZrDbText;
        // Aligned texts stand at their alignment point.
        const bool aligned = data.hJustification != 0 || data.vJustification != 0;
        entity->setPosition(point(aligned ? data.apx : data.ipx, aligned ? data.apy : data.ipy, flipped()));
        entity->setHeight(data.height > 0 ? data.height : 2.5);
        entity->setRotation(data.angle);
        entity->setTextString(ZrString(contents(data.text)));
        setStyle(entity, data.style);
        add(entity);
    }

    void addMTextChunk(const std::string& chunk) override { m_mtextChunks += chunk; }

    void addMText(const DL_MTextData& data) override
    {
        auto* entity = new ZrDbMText;
        entity->setLocation(point(data.ipx, data.ipy, flipped()));
        entity->setTextHeight(data.height > 0 ? data.height : 2.5);
        entity->setWidth(std::max(0.0, data.width));
        entity->setContents(ZrString(contents(m_mtextChunks + data.text)));
        setStyle(entity, data.style);
        add(entity);
    }

    void addInsert(const DL_InsertData& data) override
    {
        if (isLayoutBlock(data.name))
            return countLeftOut(QStringLiteral("inserts of layouts"));
        if (data.sx == 0 || data.sy == 0)
            return countLeftOut(QStringLiteral("inserts scaled to nothing"));
        const int columns = std::max(1, data.cols);
        const int rows = std::max(1, data.rows);
        if (double(columns) * rows > kMaxInsertCells)
            return fail(QStringLiteral("an insert repeats its block %1 times, more than %2")
                            .arg(double(columns) * rows, 0, 'f', 0)
                            .arg(kMaxInsertCells));
        // The host's references scale evenly: uneven ones, mirrored ones among them, take the X scale.
        if (std::fabs(data.sx - data.sy) > 1e-9 * std::max(std::fabs(data.sx), std::fabs(data.sy)))
            countLeftOut(QStringLiteral("inserts scaled unevenly, drawn with their X scale"));
        const ZrDbObjectId block = referencedBlock(data.name, columns * rows);
        const double angle = data.angle * kPi / 180.0;
        const double c = std::cos(angle), s = std::sin(angle);
        const bool mirrored = flipped();
        if (mirrored)
            countLeftOut(QStringLiteral("inserts seen from below, drawn unmirrored"));
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                const double dx = column * data.colSp, dy = row * data.rowSp;
                auto* reference =
                    new ZrDbBlockReference(point(data.ipx + dx * c - dy * s, data.ipy + dx * s + dy * c, mirrored),
                                           block);
                reference->setScaleAndRotation(data.sx, angle);
                add(reference);
            }
        }
    }

    // A dimension is drawn as the picture the writing program kept of it: an anonymous block, in the
    // coordinates of the space or block the dimension is in.
    void setDimensionBlock(const std::string& name) { m_dimensionBlock = name; }
    void addDimAlign(const DL_DimensionData&, const DL_DimAlignedData&) override { addDimensionPicture(); }
    void addDimLinear(const DL_DimensionData&, const DL_DimLinearData&) override { addDimensionPicture(); }
    void addDimRadial(const DL_DimensionData&, const DL_DimRadialData&) override { addDimensionPicture(); }
    void addDimDiametric(const DL_DimensionData&, const DL_DimDiametricData&) override { addDimensionPicture(); }
    void addDimAngular(const DL_DimensionData&, const DL_DimAngular2LData&) override { addDimensionPicture(); }
    void addDimAngular3P(const DL_DimensionData&, const DL_DimAngular3PData&) override { addDimensionPicture(); }
    void addDimOrdinate(const DL_DimensionData&, const DL_DimOrdinateData&) override { addDimensionPicture(); }

private:
    struct BlockState
    {
        ZrDbObjectId id;
        bool defined = false;
        int references = 0;
    };
    struct Vertex
    {
        ZrGePoint3d at;
        double bulge = 0;
    };
    struct PendingPolyline
    {
        std::vector<Vertex> vertices;
        bool closed = false;
        bool mesh = false;
        bool mirrored = false;
        DL_Attributes attributes;
    };

    void fail(const QString& what)
    {
        if (!failed())
            m_fault = {m_line, what};
    }

    QString text(const std::string& raw) const
    {
        QString decoded = m_codec ? m_codec->toUnicode(raw.data(), int(raw.size()))
                                  : QString::fromUtf8(raw.data(), int(raw.size()));
        // Characters outside the code page are written \U+XXXX.
        for (int at = decoded.indexOf(QLatin1String("\\U+")); at >= 0; at = decoded.indexOf(QLatin1String("\\U+"), at + 1)) {
            bool ok = false;
            const uint code = decoded.midRef(at + 3, 4).toUInt(&ok, 16);
            if (ok && decoded.midRef(at + 3, 4).size() == 4 && code)
                decoded.replace(at, 7, QChar(ushort(code)));
        }
        return decoded;
    }

    // The text of a TEXT or MTEXT, with the control codes of the special characters replaced.
    QString contents(const std::string& raw) const
    {
        QString decoded = text(raw);
        if (!decoded.contains(QLatin1String("%%")))
            return decoded;
        decoded.replace(QLatin1String("%%c"), QString(QChar(0x2300)), Qt::CaseInsensitive);
        decoded.replace(QLatin1String("%%d"), QString(QChar(0x00B0)), Qt::CaseInsensitive);
        decoded.replace(QLatin1String("%%p"), QString(QChar(0x00B1)), Qt::CaseInsensitive);
        decoded.replace(QLatin1String("%%%"), QLatin1String("%"));
        return decoded;
    }

    // Entities whose extrusion points down are drawn from below: their X runs the other way.
    bool flipped()
    {
        const double* direction = getExtrusion()->getDirection();
        if (std::fabs(direction[0]) > 1e-9 || std::fabs(direction[1]) > 1e-9) {
            countLeftOut(QStringLiteral("objects not in the XY plane, drawn flat"));
            return false;
        }
        return direction[2] < 0;
    }

    // A point of the drawing: mirrored for entities seen from below, moved by the base point of the
    // block being read. Every value is within the host's limit, but a sum of two may not be.
    ZrGePoint3d point(double x, double y, bool mirrored)
    {
        const ZrGePoint3d at = pt((mirrored ? -x : x) - m_base.x, y - m_base.y);
        if (!(std::fabs(at.x) <= kZrDbLargestValue && std::fabs(at.y) <= kZrDbLargestValue))
            fail(QStringLiteral("a point lands beyond the largest value a drawing holds, %1").arg(kZrDbLargestValue));
        return at;
    }

    void addDimensionPicture()
    {
        const std::string name = m_dimensionBlock;
        if (name.empty() || isLayoutBlock(name))
            return countLeftOut(QStringLiteral("DIMENSION"));
        countLeftOut(QStringLiteral("dimensions drawn as their pictures"));
        add(new ZrDbBlockReference(point(0, 0, false), referencedBlock(name, 1)));
    }

    // The block an insert or a dimension names, made empty until its definition comes.
    ZrDbObjectId referencedBlock(const std::string& name, int references)
    {
        BlockState& block = m_blocks[name];
        if (!block.id.isValid())
            block.id = newBlock(name);
        block.references += references;
        return block.id;
    }

    ZrDbObjectId newBlock(const std::string& name)
    {
        closeTarget();
        ZrDbObjectPointer<ZrDbBlockTable> table(m_db->blockTableId(), ZrDb::kForWrite);
        ZrDbObjectId id;
        const ZrString blockName(text(name));
        if (!table || table->getIdAt(blockName, id) == Zr::eOk)
            return id;
        auto* record = new ZrDbBlockTableRecord;
        record->setName(blockName);
        if (table->add(record, &id) != Zr::eOk) {
            delete record;
            fail(QStringLiteral("the block name %1 is not accepted").arg(quoted(name)));
            return ZrDbObjectId();
        }
        record->close();
        return id;
    }

    ZrDbObjectId layerId(const std::string& name)
    {
        const auto known = m_layers.find(name);
        if (known != m_layers.end())
            return known->second;
        ZrDbObjectId id;
        const ZrString layerName(text(name.empty() ? std::string("0") : name));
        {
            ZrDbObjectPointer<ZrDbLayerTable> table(m_db->layerTableId(), ZrDb::kForWrite);
            if (table && table->getIdAt(layerName, id) != Zr::eOk) {
                // Entities may name layers the table lacks; other programs make them as they read.
                auto* layer = new ZrDbLayerTableRecord;
                ZrCmColor white;
                white.setColorIndex(7);
                layer->setName(layerName);
                layer->setColor(white);
                layer->setLinetypeObjectId(m_db->continuousLinetype());
                if (table->add(layer, &id) != Zr::eOk) {
                    delete layer;
                    fail(QStringLiteral("the layer name %1 is not accepted").arg(quoted(name)));
                    return ZrDbObjectId();
                }
                layer->close();
            }
        }
        m_layers.emplace(name, id);
        return id;
    }

    ZrDbObjectId linetypeId(const std::string& name)
    {
        const auto known = m_linetypes.find(name);
        if (known != m_linetypes.end())
            return known->second;
        ZrDbObjectId id;
        ZrDbObjectPointer<ZrDbLinetypeTable> table(m_db->linetypeTableId(), ZrDb::kForRead);
        if (table)
            table->getIdAt(ZrString(text(name)), id);
        m_linetypes.emplace(name, id);
        return id;
    }

    static ZrDb::LineWeight lineWeight(int width, ZrDb::LineWeight fallback)
    {
        if (width == -1)
            return ZrDb::kLnWtByLayer;
        if (width == -2)
            return ZrDb::kLnWtByBlock;
        if (width == -3)
            return ZrDb::kLnWtByLwDefault;
        return width >= 0 && width <= 211 ? static_cast<ZrDb::LineWeight>(width) : fallback;
    }

    template <class Entity>
    void setStyle(Entity* entity, const std::string& name)
    {
        if (name.empty())
            return;
        ZrDbObjectPointer<ZrDbTextStyleTable> table(m_db->textStyleTableId(), ZrDb::kForRead);
        ZrDbObjectId id;
        if (table && table->getIdAt(ZrString(text(name)), id) == Zr::eOk)
            entity->setTextStyle(id);
    }

    void applyAttributes(ZrDbEntity* entity, const DL_Attributes& a)
    {
        entity->setLayer(layerId(a.getLayer()), true, true);
        ZrCmColor color;
        if (a.getColor24() >= 0)
            color.setRGB(uint8_t(a.getColor24() >> 16), uint8_t(a.getColor24() >> 8), uint8_t(a.getColor24()));
        else if (a.getColor() == 0)
            color.setColorMethod(ZrCmEntityColor::kByBlock);
        else if (a.getColor() >= 1 && a.getColor() <= 255)
            color.setColorIndex(uint16_t(a.getColor()));
        entity->setColor(color);
        std::string linetype = a.getLinetype();
        for (char& ch : linetype)
            ch = char(std::toupper(static_cast<unsigned char>(ch)));
        if (linetype == "BYBLOCK")
            entity->setLinetype(m_db->byBlockLinetype());
        else if (linetype != "BYLAYER") {
            const ZrDbObjectId id = linetypeId(a.getLinetype());
            entity->setLinetype(id.isValid() ? id : m_db->byLayerLinetype());
        }
        entity->setLineWeight(lineWeight(a.getWidth(), ZrDb::kLnWtByLayer));
        if (a.getLinetypeScale() > 0 && a.getLinetypeScale() != 1.0)
            entity->setLinetypeScale(a.getLinetypeScale());
    }

    // Appends to the block being read, or to model or paper space.
    void add(ZrDbEntity* entity) { add(entity, attributes); }
    void add(ZrDbEntity* entity, const DL_Attributes& a)
    {
        std::unique_ptr<ZrDbEntity> owned(entity);
        if (failed())
            return;
        if (!m_skipWhy.isEmpty())
            return countLeftOut(m_skipWhy);
        if (++m_entities > kMaxEntities)
            return fail(QStringLiteral("the drawing has more than %1 objects").arg(kMaxEntities));
        const ZrDbObjectId target =
            m_inBlock ? m_target : (a.isInPaperSpace() ? m_db->paperSpaceId() : m_db->modelSpaceId());
        if (!target.isValid())
            return;
        applyAttributes(entity, a);
        if (!m_open || m_openId != target) {
            closeTarget();
            m_open = std::make_unique<ZrDbObjectPointer<ZrDbBlockTableRecord>>(target, ZrDb::kForWrite);
            m_openId = target;
        }
        if (!*m_open || (*m_open)->appendZrDbEntity(entity) != Zr::eOk)
            return fail(QStringLiteral("the drawing does not take the object"));
        owned.release()->close();
    }

    void closeTarget()
    {
        m_open.reset();
        m_openId = ZrDbObjectId();
    }

    void flushPolyline()
    {
        std::unique_ptr<PendingPolyline> pending = std::move(m_polyline);
        if (!pending)
            return;
        if (pending->mesh)
            return countLeftOut(QStringLiteral("polygon and polyface meshes"));
        const std::vector<Vertex>& in = pending->vertices;
        if (in.size() < 2)
            return countLeftOut(QStringLiteral("polylines with fewer than two vertices"));
        auto* polyline = new ZrDbPolyline;
        const size_t segments = pending->closed ? in.size() : in.size() - 1;
        for (size_t i = 0; i < in.size(); ++i) {
            polyline->addVertexAt(polyline->numVerts(), in[i].at);
            if (i < segments)
                addArcPoints(polyline, in[i], in[(i + 1) % in.size()].at);
        }
        polyline->setClosed(pending->closed);
        add(polyline, pending->attributes);
    }

    // The points inside the arc from `from` to `to` that a bulge (tan of a quarter of its angle) makes.
    static void addArcPoints(ZrDbPolyline* polyline, const Vertex& from, const ZrGePoint3d& to)
    {
        if (std::fabs(from.bulge) < 1e-9)
            return;
        const double dx = to.x - from.at.x, dy = to.y - from.at.y;
        const double chord = std::hypot(dx, dy);
        if (!(chord > 0))
            return;
        const double sweep = 4 * std::atan(from.bulge);
        const double radius = chord / (2 * std::sin(sweep / 2));
        const double toCentre = std::atan2(dy, dx) + kPi / 2 - sweep / 2;
        const double cx = from.at.x + radius * std::cos(toCentre), cy = from.at.y + radius * std::sin(toCentre);
        const double start = std::atan2(from.at.y - cy, from.at.x - cx);
        const int pieces = std::max(2, std::min(kMaxArcPieces, int(std::ceil(std::fabs(sweep) / (kPi / 16)))));
        std::vector<ZrGePoint3d> points;
        for (int k = 1; k < pieces; ++k) {
            const double a = start + sweep * k / pieces;
            points.push_back(pt(cx + std::fabs(radius) * std::cos(a), cy + std::fabs(radius) * std::sin(a)));
            // An arc of a bulge next to nothing has its centre far away: the straight piece it is.
            if (!(std::fabs(points.back().x) <= kZrDbLargestValue && std::fabs(points.back().y) <= kZrDbLargestValue))
                return;
        }
        for (const ZrGePoint3d& p : points)
            polyline->addVertexAt(polyline->numVerts(), p);
    }

    ZrDbDatabase* m_db;
    QTextCodec* m_codec = nullptr;
    int m_line = 0;
    DxfFault m_fault;
    QMap<QString, int> m_leftOut;
    std::unordered_map<std::string, ZrDbObjectId> m_layers;
    std::unordered_map<std::string, ZrDbObjectId> m_linetypes;
    std::map<std::string, BlockState> m_blocks;
    std::vector<double> m_dashes;
    std::string m_mtextChunks;
    std::string m_dimensionBlock;
    std::string m_currentLayer;
    std::unique_ptr<PendingPolyline> m_polyline;
    bool m_inBlock = false;
    ZrDbObjectId m_target;
    ZrGePoint3d m_base;
    // Why the entities read now are left out; empty while they are taken.
    QString m_skipWhy;
    std::unique_ptr<ZrDbObjectPointer<ZrDbBlockTableRecord>> m_open;
    ZrDbObjectId m_openId;
    int m_entities = 0;

public:
    // dxflib tells the end of every object; what was gathered for it is done with.
    void endSection() override
    {
        m_dashes.clear();
        m_mtextChunks.clear();
        m_dimensionBlock.clear();
    }
};

// The lines of the file, two to a group.
class GroupReader
{
public:
    explicit GroupReader(const QByteArray& text) : m_at(text.constData()), m_end(text.constData() + text.size()) {}

    int line() const { return m_line; }
    // Where the next line begins.
    const char* position() const { return m_at; }
    bool atEnd() const { return m_at >= m_end; }

    // The next line without its end and the blanks around it; false at the end of the text.
    bool nextLine(std::string& out)
    {
        if (m_at >= m_end)
            return false;
        const char* start = m_at;
        const char* stop = static_cast<const char*>(std::memchr(m_at, '\n', size_t(m_end - m_at)));
        if (!stop)
            stop = m_end;
        m_at = stop < m_end ? stop + 1 : m_end;
        ++m_line;
        if (stop - start > kMaxLineLength + 2)
            throw DxfFault{m_line, QStringLiteral("the line is longer than %1 characters").arg(kMaxLineLength)};
        while (start < stop && (*start == ' ' || *start == '\t'))
            ++start;
        while (stop > start && (stop[-1] == '\r' || stop[-1] == ' ' || stop[-1] == '\t'))
            --stop;
        out.assign(start, size_t(stop - start));
        return true;
    }

private:
    const char* m_at;
    const char* m_end;
    int m_line = 0;
};

// Hands dxflib one group at a time, straight from the file's text: its handlers read the group from
// its stream reader, so that is the way in.
class GroupFeed : public std::streambuf
{
public:
    GroupFeed() : m_stream(this) {}

    void feed(DL_Dxf& dxf, DxfBuilder& builder, const char* begin, const char* end)
    {
        setg(const_cast<char*>(begin), const_cast<char*>(begin), const_cast<char*>(end));
        m_stream.clear();
        dxf.readDxfGroups(m_stream, &builder);
    }
    // The group as it was read, for lines dxflib would cut in the middle of their blanks: it reads
    // no more than DL_DXF_MAXLINE characters a line.
    void feed(DL_Dxf& dxf, DxfBuilder& builder, long code, const std::string& value)
    {
        m_scratch = std::to_string(code) + '\n' + value.substr(0, DL_DXF_MAXLINE - 1) + '\n';
        feed(dxf, builder, m_scratch.data(), m_scratch.data() + m_scratch.size());
    }
    // Ends the object dxflib is reading without beginning one it would read.
    void feedBoundary(DL_Dxf& dxf, DxfBuilder& builder)
    {
        static const char nameless[] = "0\n\n";
        feed(dxf, builder, nameless, nameless + sizeof nameless - 1);
    }

private:
    std::istream m_stream;
    std::string m_scratch;
};

// Parses a whole number; false when the text is not one or does not fit an int.
bool parseInt(const std::string& text, long& value)
{
    if (text.empty())
        return false;
    char* end = nullptr;
    errno = 0;
    value = std::strtol(text.c_str(), &end, 10);
    return *end == '\0' && errno == 0 && value >= INT32_MIN && value <= INT32_MAX;
}

// Parses a real number as DXF writes it, in the C locale whatever the user's is; one too large to
// hold is infinite, one too small 0. False when the text is no number.
bool parseReal(const std::string& text, double& value)
{
    const char* first = text.c_str() + (text.size() > 1 && text[0] == '+' ? 1 : 0);
    const char* end = text.c_str() + text.size();
    const std::from_chars_result read = std::from_chars(first, end, value);
    if (read.ec == std::errc::result_out_of_range) {
        const bool tiny = text.find("e-") != std::string::npos || text.find("E-") != std::string::npos;
        value = tiny ? 0.0 : HUGE_VAL;
        return true;
    }
    return !text.empty() && read.ec == std::errc() && read.ptr == end;
}

// The objects handed to dxflib: the entries of the tables the host keeps, and what draws (the marks of
// blocks, the entities, the vertices of polylines and the ends of their sequences).
enum class Kind { kOther, kTableEntry, kDrawing };

Kind kindOf(const std::string& type)
{
    static const std::unordered_map<std::string, Kind> kinds = {
        {"LAYER", Kind::kTableEntry}, {"LTYPE", Kind::kTableEntry}, {"STYLE", Kind::kTableEntry},
        {"BLOCK", Kind::kDrawing},    {"ENDBLK", Kind::kDrawing},   {"LINE", Kind::kDrawing},
        {"LWPOLYLINE", Kind::kDrawing}, {"POLYLINE", Kind::kDrawing}, {"VERTEX", Kind::kDrawing},
        {"SEQEND", Kind::kDrawing},   {"CIRCLE", Kind::kDrawing},   {"ARC", Kind::kDrawing},
        {"TEXT", Kind::kDrawing},     {"MTEXT", Kind::kDrawing},    {"INSERT", Kind::kDrawing},
        {"DIMENSION", Kind::kDrawing},
    };
    const auto found = kinds.find(type);
    return found == kinds.end() ? Kind::kOther : found->second;
}

// The code page of texts before DXF turned to UTF-8 (AutoCAD 2007, "AC1021").
QTextCodec* codecOf(const std::string& version, const std::string& codePage)
{
    if (version.empty() || version >= "AC1021" || codePage.rfind("ANSI_", 0) != 0)
        return nullptr;
    const std::string number = codePage.substr(5);
    static const std::map<std::string, const char*> names = {
        {"936", "GBK"}, {"950", "Big5"}, {"932", "Shift-JIS"}, {"949", "EUC-KR"}, {"874", "TIS-620"}};
    const auto known = names.find(number);
    const QByteArray name = known != names.end() ? QByteArray(known->second) : "windows-" + QByteArray(number.c_str());
    return QTextCodec::codecForName(name);
}

void readGroupsOf(GroupReader& reader, DL_Dxf& dxf, DxfBuilder& builder)
{
    GroupFeed feed;
    std::string codeText, value, section, type, setting, version, codePage;
    Kind kind = Kind::kOther;
    bool afterSection = false, lwpolylineCounted = false, sawEnd = false;
    int lwpolylineVertices = 0;
    while (true) {
        const char* groupStart = reader.position();
        if (!reader.nextLine(codeText))
            break;
        const int codeLine = reader.line();
        long code = 0;
        if (!parseInt(codeText, code) || code < 0)
            throw DxfFault{codeLine, codeLine == 1 ? QStringLiteral("this is not a DXF file: %1 is no group code").arg(quoted(codeText))
                                                   : QStringLiteral("%1 is no group code").arg(quoted(codeText))};
        if (!reader.nextLine(value))
            throw DxfFault{codeLine, QStringLiteral("the file ends inside a group: it is cut short")};
        const int line = reader.line();
        const char* groupEnd = reader.position();
        builder.setLine(line);
        const auto handOver = [&] {
            if (groupEnd - groupStart < DL_DXF_MAXLINE)
                return feed.feed(dxf, builder, groupStart, groupEnd);
            if (value.size() >= DL_DXF_MAXLINE)
                builder.countLeftOut(QStringLiteral("texts cut to %1 characters").arg(DL_DXF_MAXLINE - 1));
            feed.feed(dxf, builder, code, value);
        };
        if (code == 0) {
            if (value == "EOF") {
                handOver();
                sawEnd = true;
                break;
            }
            afterSection = value == "SECTION";
            if (value == "ENDSEC")
                section.clear();
            type = value;
            kind = kindOf(type);
            const bool inTables = section == "TABLES", inDrawing = section == "ENTITIES" || section == "BLOCKS";
            if ((kind == Kind::kTableEntry && !inTables) || (kind != Kind::kTableEntry && !inDrawing))
                kind = Kind::kOther;
            if (kind == Kind::kOther && inDrawing && type != "ENDSEC")
                builder.countLeftOut(QString::fromUtf8(type.data(), int(type.size())));
            lwpolylineCounted = false;
            lwpolylineVertices = 0;
            // dxflib ends the object before at every code 0; one it should not read is handed as nameless.
            if (kind == Kind::kOther)
                feed.feedBoundary(dxf, builder);
            else
                handOver();
        } else {
            if (afterSection && code == 2) {
                section = value;
                afterSection = false;
            }
            if (section == "HEADER") {
                if (code == 9)
                    setting = value;
                else if (setting == "$ACADVER" && code == 1)
                    version = value;
                else if (setting == "$DWGCODEPAGE" && code == 3)
                    codePage = value;
                else if (setting == "$CLAYER" && code == 8)
                    builder.setCurrentLayer(value);
                builder.setCodec(codecOf(version, codePage));
            }
            if (isRealCode(int(code))) {
                double number = 0;
                if (!parseReal(value, number))
                    throw DxfFault{line, QStringLiteral("group %1: %2 is not a number").arg(code).arg(quoted(value))};
                if (!std::isfinite(number))
                    throw DxfFault{line, QStringLiteral("group %1: %2 is not a finite number").arg(code).arg(quoted(value))};
                if (kind != Kind::kOther && std::fabs(number) > kZrDbLargestValue)
                    throw DxfFault{line, QStringLiteral("group %1: %2 is beyond the largest value a drawing holds, %3")
                                             .arg(code)
                                             .arg(quoted(value))
                                             .arg(kZrDbLargestValue)};
            } else if (isIntegerCode(int(code))) {
                long number = 0;
                if (!parseInt(value, number))
                    throw DxfFault{line, QStringLiteral("group %1: %2 is not a whole number").arg(code).arg(quoted(value))};
                if (type == "LWPOLYLINE" && code == 90 && kind != Kind::kOther) {
                    if (number < 0 || number > kMaxPolylineVertices)
                        throw DxfFault{line, QStringLiteral("a polyline of %1 vertices: the host takes 0 to %2")
                                                 .arg(number)
                                                 .arg(kMaxPolylineVertices)};
                    lwpolylineCounted = true;
                    lwpolylineVertices = 0;
                }
            }
            if (kind == Kind::kOther)
                continue;
            if (type == "DIMENSION" && code == 2)
                builder.setDimensionBlock(value);
            if (type == "LWPOLYLINE") {
                // dxflib keeps the vertices of a polyline in an array sized by its count, and would write
                // a bulge given before the first vertex in front of it.
                if (code == 10 && !lwpolylineCounted)
                    throw DxfFault{line, QStringLiteral("a polyline gives vertices before their number (group 90)")};
                if (code == 10)
                    ++lwpolylineVertices;
                if (code == 42 && lwpolylineVertices == 0)
                    continue;
            }
            handOver();
        }
        if (builder.failed())
            throw builder.fault();
    }
    if (!sawEnd)
        throw DxfFault{reader.line(), reader.line() == 0 ? QStringLiteral("the file is empty")
                                                         : QStringLiteral("the file ends before its EOF mark: it is cut short")};
}

void readGroups(const QByteArray& text, DL_Dxf& dxf, DxfBuilder& builder)
{
    if (text.startsWith("AutoCAD Binary DXF"))
        throw DxfFault{1, QStringLiteral("binary DXF is not read; save the drawing as text DXF")};
    GroupReader reader(text);
    try {
        readGroupsOf(reader, dxf, builder);
    } catch (DxfFault& fault) {
        // A fault in a last line that has no end is most likely the end of a file cut short.
        const bool lastLine = reader.line() > 0 && reader.atEnd() && fault.line == reader.line();
        if (lastLine && !text.endsWith('\n') && !fault.what.contains(QLatin1String("cut short")))
            fault.what = QStringLiteral("the file is cut short in this line: %1").arg(fault.what);
        throw;
    }
}

} // namespace

bool zrdbReadDxf(ZrDbDatabase* database, const QByteArray& text, QString* error, QString* notice)
{
    ZrDbQuiet quiet(database);
    DL_Dxf dxf;
    DxfBuilder builder(database);
    // Reading an empty stream sets dxflib's reading state up; the groups are handed over one by one.
    std::stringstream nothing;
    dxf.in(nothing, &builder);
    try {
        readGroups(text, dxf, builder);
        builder.finish();
        if (builder.failed())
            throw builder.fault();
    } catch (const DxfFault& fault) {
        if (error)
            *error = QStringLiteral("line %1: %2").arg(fault.line).arg(fault.what);
        return false;
    }
    if (notice) {
        QStringList parts;
        int total = 0;
        for (auto it = builder.leftOut().cbegin(); it != builder.leftOut().cend(); ++it) {
            parts << QStringLiteral("%1 %2").arg(it.value()).arg(it.key());
            total += it.value();
        }
        *notice = total ? QStringLiteral("%1 objects left out or drawn approximately: %2").arg(total).arg(parts.join(QStringLiteral(", ")))
                        : QString();
    }
    return true;
}

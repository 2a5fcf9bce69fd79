#include "zrdbentity.h"

#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbinternal.h"
#include "zrdbsymtb.h"

#include <algorithm>
#include <cmath>

ZR_RX_DEFINE_MEMBERS(ZrDbEntity, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbLine, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbCircle, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbArc, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbPolyline, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbText, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbMText, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbDimension, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbAlignedDimension, ZrDbDimension)
ZR_RX_DEFINE_MEMBERS(ZrDbBlockReference, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbTable, ZrDbBlockReference)
ZR_RX_DEFINE_MEMBERS(ZrDbMLeader, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbHatch, ZrDbEntity)
ZR_RX_DEFINE_MEMBERS(ZrDbViewport, ZrDbEntity)

namespace {

bool isFinite(const ZrGePoint3d& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

// Ids an entity may point to: null, or a live object of class T.
template <class T>
bool isNullOr(ZrDbObjectId id)
{
    return id.isNull() || zrdbPeek<T>(id);
}

template <class T>
ZrString nameOf(int64_t handle)
{
    const T* record = zrdbPeek<T>(handle);
    return record ? record->name() : ZrString();
}

} // namespace

int ZrDbEntity::setColor(const ZrCmColor& color, bool) { return writeField(m_color, color); }

int ZrDbEntity::setLineWeight(ZrDb::LineWeight weight, bool)
{
    if (!zrdbIsLineWeight(weight, true))
        return Zr::eInvalidInput;
    return writeField(m_lineWeight, weight);
}

ZrString ZrDbEntity::linetype() const { return nameOf<ZrDbLinetypeTableRecord>(m_linetype); }

int ZrDbEntity::setLinetype(const ZrString& name, bool doSubents)
{
    if (!database())
        return Zr::eNoDatabase;
    const int64_t linetype = zrdbData(database()).recordNamed(ZrDbRecordKind::kLinetype, name);
    if (!linetype)
        return Zr::eKeyNotFound;
    return setLinetype(ZrDbObjectId(linetype), doSubents);
}

int ZrDbEntity::setLinetype(ZrDbObjectId id, bool)
{
    if (!zrdbPeek<ZrDbLinetypeTableRecord>(id))
        return Zr::eInvalidInput;
    return writeField(m_linetype, id.handle());
}

int ZrDbEntity::setLinetypeScale(double scale, bool)
{
    if (!(scale > 0.0) || !std::isfinite(scale))
        return Zr::eInvalidInput;
    return writeField(m_linetypeScale, scale);
}

ZrString ZrDbEntity::layer() const { return nameOf<ZrDbLayerTableRecord>(m_layer); }

int ZrDbEntity::setLayer(ZrDbObjectId id, bool, bool allowHiddenLayer)
{
    const ZrDbLayerTableRecord* layer = zrdbPeek<ZrDbLayerTableRecord>(id);
    if (!layer || (layer->isHidden() && !allowHiddenLayer))
        return Zr::eInvalidInput;
    return writeField(m_layer, id.handle());
}

int ZrDbEntity::setLayer(const ZrString& name, bool doSubents, bool allowHiddenLayer)
{
    if (!database())
        return Zr::eNoDatabase;
    const int64_t layer = zrdbData(database()).recordNamed(ZrDbRecordKind::kLayer, name);
    if (!layer)
        return Zr::eKeyNotFound;
    return setLayer(ZrDbObjectId(layer), doSubents, allowHiddenLayer);
}

ZrString ZrDbEntity::material() const { return nameOf<ZrDbMaterial>(m_material); }

int ZrDbEntity::setMaterial(const ZrString& name, bool doSubents)
{
    if (!database())
        return Zr::eNoDatabase;
    const int64_t material = zrdbData(database()).recordNamed(ZrDbRecordKind::kMaterial, name);
    if (!material)
        return Zr::eKeyNotFound;
    return setMaterial(ZrDbObjectId(material), doSubents);
}

int ZrDbEntity::setMaterial(ZrDbObjectId id, bool)
{
    if (!zrdbPeek<ZrDbMaterial>(id))
        return Zr::eInvalidInput;
    return writeField(m_material, id.handle());
}

ZrString ZrDbEntity::plotStyleName() const { return zrdbPlotStyleName(m_plotStyle); }

int ZrDbEntity::setPlotStyleName(const ZrString& name, bool)
{
    if (name.isEmpty())
        return Zr::eInvalidInput;
    return writeField(m_plotStyle, zrdbPlotStyleIndex(name));
}

int ZrDbLine::setStartPoint(const ZrGePoint3d& p) { return isFinite(p) ? writeField(m_start, p) : int(Zr::eInvalidInput); }
int ZrDbLine::setEndPoint(const ZrGePoint3d& p) { return isFinite(p) ? writeField(m_end, p) : int(Zr::eInvalidInput); }

int ZrDbCircle::setCenter(const ZrGePoint3d& c) { return isFinite(c) ? writeField(m_center, c) : int(Zr::eInvalidInput); }

int ZrDbCircle::setRadius(double r)
{
    return r > 0.0 && std::isfinite(r) ? writeField(m_radius, r) : int(Zr::eInvalidInput);
}

int ZrDbPolyline::addVertexAt(int index, const ZrGePoint3d& p)
{
    if (index < 0 || index > numVerts() || !isFinite(p))
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    m_points.insert(m_points.begin() + index, p);
    return Zr::eOk;
}

int ZrDbPolyline::setClosed(bool closed) { return writeField(m_closed, closed); }

int ZrDbText::setPosition(const ZrGePoint3d& p) { return isFinite(p) ? writeField(m_position, p) : int(Zr::eInvalidInput); }

int ZrDbText::setHeight(double h)
{
    return h > 0.0 && std::isfinite(h) ? writeField(m_height, h) : int(Zr::eInvalidInput);
}

int ZrDbText::setRotation(double r) { return std::isfinite(r) ? writeField(m_rotation, r) : int(Zr::eInvalidInput); }
int ZrDbText::setTextString(const ZrString& text) { return writeField(m_text, text); }

int ZrDbText::setTextStyle(ZrDbObjectId id)
{
    return zrdbPeek<ZrDbTextStyleTableRecord>(id) ? writeField(m_textStyle, id.handle()) : int(Zr::eInvalidInput);
}

int ZrDbMText::setLocation(const ZrGePoint3d& p) { return isFinite(p) ? writeField(m_location, p) : int(Zr::eInvalidInput); }

int ZrDbMText::setTextHeight(double h)
{
    return h > 0.0 && std::isfinite(h) ? writeField(m_height, h) : int(Zr::eInvalidInput);
}

int ZrDbMText::setWidth(double w) { return w >= 0.0 && std::isfinite(w) ? writeField(m_width, w) : int(Zr::eInvalidInput); }
int ZrDbMText::setContents(const ZrString& text) { return writeField(m_contents, text); }

int ZrDbMText::setTextStyle(ZrDbObjectId id)
{
    return zrdbPeek<ZrDbTextStyleTableRecord>(id) ? writeField(m_textStyle, id.handle()) : int(Zr::eInvalidInput);
}

int ZrDbDimension::setDimensionStyle(ZrDbObjectId id)
{
    return zrdbPeek<ZrDbDimStyleTableRecord>(id) ? writeField(m_dimStyle, id.handle()) : int(Zr::eInvalidInput);
}

int ZrDbDimension::setDimstyleData(ZrDbObjectId id)
{
    // The dimension keeps no overrides of its own: taking the style's settings is taking the style.
    return setDimensionStyle(id);
}

ZrDbObjectId ZrDbDimension::dimensionTextStyle() const
{
    const ZrDbDimStyleTableRecord* style = zrdbPeek<ZrDbDimStyleTableRecord>(m_dimStyle);
    return style ? style->dimtxsty() : ZrDbObjectId();
}

int ZrDbDimension::setDimensionText(const ZrString& text) { return writeField(m_text, text); }

int ZrDbBlockReference::setPosition(const ZrGePoint3d& p)
{
    return isFinite(p) ? writeField(m_position, p) : int(Zr::eInvalidInput);
}

int ZrDbBlockReference::setBlockTableRecord(ZrDbObjectId id)
{
    if (!zrdbPeek<ZrDbBlockTableRecord>(id))
        return Zr::eInvalidInput;
    if (const int status = writeField(m_block, id.handle()))
        return status;
    if (database())
        zrdbData(database()).indexReference(this);
    return Zr::eOk;
}

int ZrDbBlockReference::setScaleAndRotation(double scale, double rotation)
{
    if (!(scale > 0.0) || !std::isfinite(scale) || !std::isfinite(rotation))
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    m_scale = scale;
    m_rotation = rotation;
    return Zr::eOk;
}

int ZrDbBlockReference::setDynamicBlockTableRecord(ZrDbObjectId id)
{
    if (!isNullOr<ZrDbBlockTableRecord>(id))
        return Zr::eInvalidInput;
    return writeField(m_dynamicBlock, id.handle());
}

int ZrDbTable::setTableStyle(ZrDbObjectId id)
{
    return zrdbPeek<ZrDbTableStyle>(id) ? writeField(m_tableStyle, id.handle()) : int(Zr::eInvalidInput);
}

int ZrDbTable::setSize(int rows, int columns, double rowHeight, double columnWidth)
{
    if (rows < 1 || columns < 1 || !(rowHeight > 0.0) || !(columnWidth > 0.0) || !std::isfinite(rowHeight)
        || !std::isfinite(columnWidth))
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    m_rows = rows;
    m_columns = columns;
    m_rowHeight = rowHeight;
    m_columnWidth = columnWidth;
    return Zr::eOk;
}

int ZrDbMLeader::setMLeaderStyle(ZrDbObjectId id)
{
    return zrdbPeek<ZrDbMLeaderStyle>(id) ? writeField(m_style, id.handle()) : int(Zr::eInvalidInput);
}

int ZrDbMLeader::setTextStyleId(ZrDbObjectId id)
{
    return zrdbPeek<ZrDbTextStyleTableRecord>(id) ? writeField(m_textStyle, id.handle()) : int(Zr::eInvalidInput);
}

int ZrDbMLeader::setPoints(const ZrGePoint3d& arrow, const ZrGePoint3d& textLocation)
{
    if (!isFinite(arrow) || !isFinite(textLocation))
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    m_arrow = arrow;
    m_textLocation = textLocation;
    return Zr::eOk;
}

int ZrDbMLeader::setContents(const ZrString& text) { return writeField(m_contents, text); }

int ZrDbHatch::setPattern(const ZrString& name) { return writeField(m_pattern, name); }

int ZrDbHatch::setLoop(std::vector<ZrGePoint3d> points)
{
    if (!std::all_of(points.begin(), points.end(), isFinite))
        return Zr::eInvalidInput;
    return writeField(m_loop, std::move(points));
}

int ZrDbViewport::setGeometry(const ZrGePoint3d& center, double width, double height)
{
    if (!isFinite(center) || !(width > 0.0) || !(height > 0.0) || !std::isfinite(width) || !std::isfinite(height))
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    m_center = center;
    m_width = width;
    m_height = height;
    return Zr::eOk;
}

int ZrDbViewport::setNumber(int number) { return number >= 1 ? writeField(m_number, number) : int(Zr::eInvalidInput); }

bool ZrDbViewport::isLayerFrozenInViewport(ZrDbObjectId layer) const
{
    return std::find(m_frozenLayers.begin(), m_frozenLayers.end(), layer.handle()) != m_frozenLayers.end();
}

int ZrDbViewport::freezeLayersInViewport(const std::vector<ZrDbObjectId>& layers)
{
    for (ZrDbObjectId layer : layers) {
        if (!zrdbPeek<ZrDbLayerTableRecord>(layer))
            return Zr::eInvalidInput;
    }
    if (const int status = prepareWrite())
        return status;
    for (ZrDbObjectId layer : layers) {
        if (!isLayerFrozenInViewport(layer))
            m_frozenLayers.push_back(layer.handle());
    }
    return Zr::eOk;
}

int ZrDbViewport::thawLayersInViewport(const std::vector<ZrDbObjectId>& layers)
{
    if (const int status = prepareWrite())
        return status;
    for (ZrDbObjectId layer : layers)
        m_frozenLayers.erase(std::remove(m_frozenLayers.begin(), m_frozenLayers.end(), layer.handle()),
                             m_frozenLayers.end());
    return Zr::eOk;
}

int zrdbGetDynamicBlockTableRecordId(ZrDbObjectId reference, ZrDbObjectId& block)
{
    const ZrDbBlockReference* found = zrdbPeek<ZrDbBlockReference>(reference);
    if (!found)
        return reference.isNull() ? Zr::eNullObjectId : Zr::eNotThatKindOfClass;
    block = found->dynamicBlockTableRecord();
    return Zr::eOk;
}

#pragma once
// Entities of the drawing: the common properties and the kinds the controls meet.

#include "zrcmcolor.h"
#include "zrdbobject.h"
#include "zrgeometry.h"
#include "zrstring.h"

#include <vector>

class ZRHOST_EXPORT ZrDbEntity : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbEntity)
    ZR_DB_DECLARE_COPY(ZrDbEntity)
public:
    ZrDbObjectId blockId() const { return ownerId(); }

    ZrCmColor color() const { return m_color; }
    int colorIndex() const { return m_color.colorIndex(); }
    int setColor(const ZrCmColor& color, bool doSubents = true);

    ZrDb::LineWeight lineWeight() const { return m_lineWeight; }
    int setLineWeight(ZrDb::LineWeight weight, bool doSubents = true);

    // The line type's name; empty when it cannot be read.
    ZrString linetype() const;
    ZrDbObjectId linetypeId() const { return ZrDbObjectId(m_linetype); }
    int setLinetype(const ZrString& name, bool doSubents = true);
    int setLinetype(ZrDbObjectId id, bool doSubents = true);
    double linetypeScale() const { return m_linetypeScale; }
    int setLinetypeScale(double scale, bool doSubents = true);

    ZrDbObjectId layerId() const { return ZrDbObjectId(m_layer); }
    ZrString layer() const;
    int setLayer(ZrDbObjectId id, bool doSubents = true, bool allowHiddenLayer = false);
    int setLayer(const ZrString& name, bool doSubents = true, bool allowHiddenLayer = false);

    ZrString material() const;
    ZrDbObjectId materialId() const { return ZrDbObjectId(m_material); }
    int setMaterial(const ZrString& name, bool doSubents = true);
    int setMaterial(ZrDbObjectId id, bool doSubents = true);

    ZrString plotStyleName() const;
    int setPlotStyleName(const ZrString& name, bool doSubents = true);

private:
    ZrCmColor m_color;
    int64_t m_layer = 0;
    int64_t m_linetype = 0;
    int64_t m_material = 0;
    double m_linetypeScale = 1.0;
    ZrDb::LineWeight m_lineWeight = ZrDb::kLnWtByLayer;
    // Index into the database's pool of plot style names; 0 is "ByLayer".
    uint32_t m_plotStyle = 0;
};

class ZRHOST_EXPORT ZrDbLine : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbLine)
public:
    ZrDbLine() = default;
    ZrDbLine(const ZrGePoint3d& start, const ZrGePoint3d& end) : m_start(start), m_end(end) {}
    ZR_DB_DECLARE_COPY(ZrDbLine)
    ZrGePoint3d startPoint() const { return m_start; }
    ZrGePoint3d endPoint() const { return m_end; }
    int setStartPoint(const ZrGePoint3d& p);
    int setEndPoint(const ZrGePoint3d& p);

private:
    ZrGePoint3d m_start;
    ZrGePoint3d m_end;
};

class ZRHOST_EXPORT ZrDbCircle : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbCircle)
public:
    ZrDbCircle() = default;
    ZrDbCircle(const ZrGePoint3d& center, double radius) : m_center(center), m_radius(radius) {}
    ZR_DB_DECLARE_COPY(ZrDbCircle)
    ZrGePoint3d center() const { return m_center; }
    double radius() const { return m_radius; }
    int setCenter(const ZrGePoint3d& c);
    int setRadius(double r);

private:
    ZrGePoint3d m_center;
    double m_radius = 1.0;
};

class ZRHOST_EXPORT ZrDbArc : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbArc)
public:
    ZrDbArc() = default;
    // Angles in radians, counter-clockwise from the x axis.
    ZrDbArc(const ZrGePoint3d& center, double radius, double startAngle, double endAngle)
        : m_center(center), m_radius(radius), m_startAngle(startAngle), m_endAngle(endAngle) {}
    ZR_DB_DECLARE_COPY(ZrDbArc)
    ZrGePoint3d center() const { return m_center; }
    double radius() const { return m_radius; }
    double startAngle() const { return m_startAngle; }
    double endAngle() const { return m_endAngle; }

private:
    ZrGePoint3d m_center;
    double m_radius = 1.0;
    double m_startAngle = 0.0;
    double m_endAngle = 3.14159265358979323846;
};

class ZRHOST_EXPORT ZrDbPolyline : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbPolyline)
public:
    ZrDbPolyline() = default;
    ZR_DB_DECLARE_COPY(ZrDbPolyline)
    int numVerts() const { return static_cast<int>(m_points.size()); }
    ZrGePoint3d vertexAt(int i) const { return m_points.at(static_cast<size_t>(i)); }
    int addVertexAt(int index, const ZrGePoint3d& p);
    bool isClosed() const { return m_closed; }
    int setClosed(bool closed);

private:
    std::vector<ZrGePoint3d> m_points;
    bool m_closed = false;
};

class ZRHOST_EXPORT ZrDbText : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbText)
public:
    ZrDbText() = default;
    ZR_DB_DECLARE_COPY(ZrDbText)
    ZrGePoint3d position() const { return m_position; }
    int setPosition(const ZrGePoint3d& p);
    double height() const { return m_height; }
    int setHeight(double h);
    double rotation() const { return m_rotation; }
    int setRotation(double r);
    ZrString textString() const { return m_text; }
    int setTextString(const ZrString& text);
    ZrDbObjectId textStyle() const { return ZrDbObjectId(m_textStyle); }
    int setTextStyle(ZrDbObjectId id);

private:
    ZrGePoint3d m_position;
    double m_height = 2.5;
    double m_rotation = 0.0;
    ZrString m_text;
    int64_t m_textStyle = 0;
};

class ZRHOST_EXPORT ZrDbMText : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbMText)
public:
    ZrDbMText() = default;
    ZR_DB_DECLARE_COPY(ZrDbMText)
    ZrGePoint3d location() const { return m_location; }
    int setLocation(const ZrGePoint3d& p);
    double textHeight() const { return m_height; }
    int setTextHeight(double h);
    double width() const { return m_width; }
    int setWidth(double w);
    ZrString contents() const { return m_contents; }
    int setContents(const ZrString& text);
    ZrDbObjectId textStyle() const { return ZrDbObjectId(m_textStyle); }
    int setTextStyle(ZrDbObjectId id);

private:
    ZrGePoint3d m_location;
    double m_height = 2.5;
    double m_width = 0.0;
    ZrString m_contents;
    int64_t m_textStyle = 0;
};

class ZRHOST_EXPORT ZrDbDimension : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbDimension)
    ZR_DB_DECLARE_COPY(ZrDbDimension)
public:
    ZrDbObjectId dimensionStyle() const { return ZrDbObjectId(m_dimStyle); }
    int setDimensionStyle(ZrDbObjectId id);
    // Takes the style's settings into the dimension.
    int setDimstyleData(ZrDbObjectId id);
    // The text style of the dimension's style.
    ZrDbObjectId dimensionTextStyle() const;
    ZrString dimensionText() const { return m_text; }
    int setDimensionText(const ZrString& text);

private:
    int64_t m_dimStyle = 0;
    ZrString m_text;
};

class ZRHOST_EXPORT ZrDbAlignedDimension : public ZrDbDimension
{
    ZR_RX_DECLARE_MEMBERS(ZrDbAlignedDimension)
public:
    ZrDbAlignedDimension() = default;
    ZrDbAlignedDimension(const ZrGePoint3d& line1, const ZrGePoint3d& line2, const ZrGePoint3d& dimLine)
        : m_xLine1(line1), m_xLine2(line2), m_dimLine(dimLine) {}
    ZR_DB_DECLARE_COPY(ZrDbAlignedDimension)
    ZrGePoint3d xLine1Point() const { return m_xLine1; }
    ZrGePoint3d xLine2Point() const { return m_xLine2; }
    ZrGePoint3d dimLinePoint() const { return m_dimLine; }

private:
    ZrGePoint3d m_xLine1;
    ZrGePoint3d m_xLine2;
    ZrGePoint3d m_dimLine;
};

class ZRHOST_EXPORT ZrDbBlockReference : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbBlockReference)
public:
    ZrDbBlockReference() = default;
    ZrDbBlockReference(const ZrGePoint3d& position, ZrDbObjectId block) : m_position(position), m_block(block.handle()) {}
    ZR_DB_DECLARE_COPY(ZrDbBlockReference)
    ZrGePoint3d position() const { return m_position; }
    int setPosition(const ZrGePoint3d& p);
    ZrDbObjectId blockTableRecord() const { return ZrDbObjectId(m_block); }
    int setBlockTableRecord(ZrDbObjectId id);
    double scale() const { return m_scale; }
    double rotation() const { return m_rotation; }
    int setScaleAndRotation(double scale, double rotation);
    // A dynamic block's reference points to an anonymous copy; this is the block it came from.
    ZrDbObjectId dynamicBlockTableRecord() const { return ZrDbObjectId(m_dynamicBlock ? m_dynamicBlock : m_block); }
    int setDynamicBlockTableRecord(ZrDbObjectId id);

private:
    ZrGePoint3d m_position;
    int64_t m_block = 0;
    int64_t m_dynamicBlock = 0;
    double m_scale = 1.0;
    double m_rotation = 0.0;
};

class ZRHOST_EXPORT ZrDbTable : public ZrDbBlockReference
{
    ZR_RX_DECLARE_MEMBERS(ZrDbTable)
public:
    ZrDbTable() = default;
    ZR_DB_DECLARE_COPY(ZrDbTable)
    ZrDbObjectId tableStyle() const { return ZrDbObjectId(m_tableStyle); }
    int setTableStyle(ZrDbObjectId id);
    int numRows() const { return m_rows; }
    int numColumns() const { return m_columns; }
    double rowHeight() const { return m_rowHeight; }
    double columnWidth() const { return m_columnWidth; }
    int setSize(int rows, int columns, double rowHeight, double columnWidth);

private:
    int64_t m_tableStyle = 0;
    int m_rows = 3;
    int m_columns = 3;
    double m_rowHeight = 8.0;
    double m_columnWidth = 30.0;
};

class ZRHOST_EXPORT ZrDbMLeader : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbMLeader)
public:
    ZrDbMLeader() = default;
    ZR_DB_DECLARE_COPY(ZrDbMLeader)
    ZrDbObjectId MLeaderStyle() const { return ZrDbObjectId(m_style); }
    int setMLeaderStyle(ZrDbObjectId id);
    ZrDbObjectId textStyleId() const { return ZrDbObjectId(m_textStyle); }
    int setTextStyleId(ZrDbObjectId id);
    ZrGePoint3d arrowPoint() const { return m_arrow; }
    ZrGePoint3d textLocation() const { return m_textLocation; }
    int setPoints(const ZrGePoint3d& arrow, const ZrGePoint3d& textLocation);
    ZrString contents() const { return m_contents; }
    int setContents(const ZrString& text);

private:
    int64_t m_style = 0;
    int64_t m_textStyle = 0;
    ZrGePoint3d m_arrow;
    ZrGePoint3d m_textLocation;
    ZrString m_contents;
};

class ZRHOST_EXPORT ZrDbHatch : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbHatch)
public:
    ZrDbHatch() = default;
    ZR_DB_DECLARE_COPY(ZrDbHatch)
    ZrString patternName() const { return m_pattern; }
    int setPattern(const ZrString& name);
    // One closed loop of the boundary.
    const std::vector<ZrGePoint3d>& loop() const { return m_loop; }
    int setLoop(std::vector<ZrGePoint3d> points);

private:
    ZrString m_pattern;
    std::vector<ZrGePoint3d> m_loop;
};

class ZRHOST_EXPORT ZrDbViewport : public ZrDbEntity
{
    ZR_RX_DECLARE_MEMBERS(ZrDbViewport)
public:
    ZrDbViewport() = default;
    ZR_DB_DECLARE_COPY(ZrDbViewport)
    ZrGePoint3d centerPoint() const { return m_center; }
    double width() const { return m_width; }
    double height() const { return m_height; }
    int setGeometry(const ZrGePoint3d& center, double width, double height);
    int number() const { return m_number; }
    int setNumber(int number);
    bool isLayerFrozenInViewport(ZrDbObjectId layer) const;
    int freezeLayersInViewport(const std::vector<ZrDbObjectId>& layers);
    int thawLayersInViewport(const std::vector<ZrDbObjectId>& layers);

private:
    ZrGePoint3d m_center;
    double m_width = 297.0;
    double m_height = 210.0;
    int m_number = 1;
    std::vector<int64_t> m_frozenLayers;
};

// The block a dynamic block's reference stands for; 0 on success.
ZRHOST_EXPORT int zrdbGetDynamicBlockTableRecordId(ZrDbObjectId reference, ZrDbObjectId& block);

#pragma once
// Symbol tables and their records.

#include "zrarray.h"
#include "zrcmcolor.h"
#include "zrdbobject.h"
#include "zrgeometry.h"
#include "zrstring.h"

#include <memory>
#include <vector>

class ZrDbSymbolTableRecord;
class ZrDbSymbolTableIterator;

class ZRHOST_EXPORT ZrDbSymbolTable : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbSymbolTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbSymbolTable)
public:
    ZrDbSymbolTable();
    ZrDbSymbolTable(const ZrDbSymbolTable& other);
    ZrDbSymbolTable& operator=(const ZrDbSymbolTable& other);
    ~ZrDbSymbolTable() override;

    // The record of that name, ignoring case; Zr::eKeyNotFound when there is none.
    int getIdAt(const ZrString& name, ZrDbObjectId& id, bool getErased = false) const;
    bool has(const ZrString& name) const;
    bool has(ZrDbObjectId id) const;
    // Adds a new record to the database and to this table; the table must be open for write.
    int add(ZrDbSymbolTableRecord* record, ZrDbObjectId* id = nullptr);
    // Records in table order.
    int newIterator(ZrDbSymbolTableIterator*& iterator, bool atBeginning = true, bool skipDeleted = true) const;
    const std::vector<int64_t>& recordHandles() const { return m_records; }

private:
    friend class ZrDbSymbolTableRecord;
    friend class ZrDbDatabase;
    struct NameIndex;
    // The index of names folded to one case may hold names records had before; lookups check them.
    void noteName(const ZrString& name, int64_t record) const;
    int64_t findName(const ZrString& name, bool getErased) const;

    std::vector<int64_t> m_records;
    mutable std::unique_ptr<NameIndex> m_names;
};

class ZRHOST_EXPORT ZrDbSymbolTableIterator
{
public:
    ZrDbSymbolTableIterator(std::vector<int64_t> records, bool atBeginning, bool skipDeleted);
    ~ZrDbSymbolTableIterator();
    ZrDbSymbolTableIterator(const ZrDbSymbolTableIterator&) = delete;
    ZrDbSymbolTableIterator& operator=(const ZrDbSymbolTableIterator&) = delete;

    void start(bool atBeginning = true);
    bool done() const;
    void step(bool forward = true);
    int getRecordId(ZrDbObjectId& id) const;
    int getRecord(ZrDbSymbolTableRecord*& record, ZrDb::OpenMode mode, bool openErased = false) const;

private:
    void skipErased();

    std::vector<int64_t> m_records;
    int m_index = 0;
    bool m_skipDeleted = true;
    bool m_forward = true;
};

class ZRHOST_EXPORT ZrDbSymbolTableRecord : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbSymbolTableRecord)
    ZR_DB_DECLARE_COPY(ZrDbSymbolTableRecord)
public:
    int getName(ZrString& name) const;
    ZrString name() const { return m_name; }
    int setName(const ZrString& name);
    // Records that come from an external reference: their names hold "|".
    bool isDependent() const;
    bool isResolved() const { return true; }

private:
    ZrString m_name;
};

class ZRHOST_EXPORT ZrDbLayerTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbLayerTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbLayerTable)
};

class ZRHOST_EXPORT ZrDbLayerTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbLayerTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbLayerTableRecord)
    ZrCmColor color() const { return m_color; }
    int setColor(const ZrCmColor& color);
    bool isFrozen() const { return m_flags & kFrozen; }
    int setIsFrozen(bool on);
    bool isOff() const { return m_flags & kOff; }
    int setIsOff(bool on);
    bool isLocked() const { return m_flags & kLocked; }
    int setIsLocked(bool on);
    bool isHidden() const { return m_flags & kHidden; }
    int setIsHidden(bool on);
    bool isPlottable() const { return !(m_flags & kNoPlot); }
    int setIsPlottable(bool on);
    // Null means the layer takes no line type of its own ("BYLAYER" in lists).
    ZrDbObjectId linetypeObjectId() const { return ZrDbObjectId(m_linetype); }
    int setLinetypeObjectId(ZrDbObjectId id);
    ZrDb::LineWeight lineWeight() const { return m_lineWeight; }
    int setLineWeight(ZrDb::LineWeight weight);
    ZrDbObjectId materialId() const { return ZrDbObjectId(m_material); }
    int setMaterialId(ZrDbObjectId id);
    ZrString plotStyleName() const { return m_plotStyle; }
    int setPlotStyleName(const ZrString& name);
    ZrString description() const { return m_description; }
    int setDescription(const ZrString& text);

private:
    enum Flags : uint8_t { kFrozen = 1, kOff = 2, kLocked = 4, kHidden = 8, kNoPlot = 16 };
    ZrCmColor m_color;
    int64_t m_linetype = 0;
    int64_t m_material = 0;
    ZrDb::LineWeight m_lineWeight = ZrDb::kLnWtByLwDefault;
    uint8_t m_flags = 0;
    ZrString m_plotStyle;
    ZrString m_description;
};

class ZRHOST_EXPORT ZrDbLinetypeTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbLinetypeTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbLinetypeTable)
};

class ZRHOST_EXPORT ZrDbLinetypeTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbLinetypeTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbLinetypeTableRecord)
    // The sum of the dashes' absolute lengths.
    double patternLength() const;
    int numDashes() const { return static_cast<int>(m_dashes.size()); }
    // Positive a dash, negative a gap, 0 a dot.
    double dashLengthAt(int i) const { return m_dashes.at(static_cast<size_t>(i)); }
    int setDashes(std::vector<double> dashes);
    ZrString comments() const { return m_comments; }
    int setComments(const ZrString& text);

private:
    std::vector<double> m_dashes;
    ZrString m_comments;
};

class ZRHOST_EXPORT ZrDbTextStyleTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbTextStyleTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbTextStyleTable)
};

class ZRHOST_EXPORT ZrDbTextStyleTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbTextStyleTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbTextStyleTableRecord)
    double textSize() const { return m_textSize; }
    int setTextSize(double size);
    double xScale() const { return m_xScale; }
    int setXScale(double scale);
    double obliquingAngle() const { return m_obliquingAngle; }
    int setObliquingAngle(double angle);
    bool isVertical() const { return m_flags & kVertical; }
    int setIsVertical(bool on);
    bool isBackwards() const { return m_flags & kBackwards; }
    bool isUpsideDown() const { return m_flags & kUpsideDown; }
    int setTextGenerationFlags(bool backwards, bool upsideDown);
    ZrString fileName() const { return m_fileName; }
    int setFileName(const ZrString& name);
    ZrString bigFontFileName() const { return m_bigFontFileName; }
    int setBigFontFileName(const ZrString& name);

private:
    enum Flags : uint8_t { kVertical = 1, kBackwards = 2, kUpsideDown = 4 };
    double m_textSize = 0.0;
    double m_xScale = 1.0;
    double m_obliquingAngle = 0.0;
    uint8_t m_flags = 0;
    ZrString m_fileName;
    ZrString m_bigFontFileName;
};

class ZRHOST_EXPORT ZrDbDimStyleTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbDimStyleTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbDimStyleTable)
};

class ZRHOST_EXPORT ZrDbDimStyleTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbDimStyleTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbDimStyleTableRecord)
    ZrDbObjectId dimtxsty() const { return ZrDbObjectId(m_textStyle); }
    int setDimtxsty(ZrDbObjectId id);
    double dimscale() const { return m_scale; }
    int setDimscale(double scale);

private:
    int64_t m_textStyle = 0;
    double m_scale = 1.0;
};

class ZRHOST_EXPORT ZrDbViewTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbViewTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbViewTable)
};

class ZRHOST_EXPORT ZrDbViewTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbViewTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbViewTableRecord)
    bool isPaperspaceView() const { return m_paperSpace; }
    int setIsPaperspaceView(bool on);
    ZrGePoint3d centerPoint() const { return m_center; }
    double width() const { return m_width; }
    double height() const { return m_height; }
    int setGeometry(const ZrGePoint3d& center, double width, double height);

private:
    bool m_paperSpace = false;
    ZrGePoint3d m_center;
    double m_width = 100.0;
    double m_height = 100.0;
};

class ZRHOST_EXPORT ZrDbUCSTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbUCSTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbUCSTable)
};

class ZRHOST_EXPORT ZrDbUCSTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbUCSTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbUCSTableRecord)
    ZrGePoint3d origin() const { return m_origin; }
    ZrGeVector3d xAxis() const { return m_xAxis; }
    ZrGeVector3d yAxis() const { return m_yAxis; }
    int setAxes(const ZrGePoint3d& origin, const ZrGeVector3d& xAxis, const ZrGeVector3d& yAxis);

private:
    ZrGePoint3d m_origin;
    ZrGeVector3d m_xAxis = ZrGeVector3d::kXAxis;
    ZrGeVector3d m_yAxis = ZrGeVector3d::kYAxis;
};

class ZRHOST_EXPORT ZrDbRegAppTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbRegAppTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbRegAppTable)
};

class ZRHOST_EXPORT ZrDbRegAppTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbRegAppTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbRegAppTableRecord)
};

class ZrDbEntity;
class ZrDbBlockTableRecordIterator;

class ZRHOST_EXPORT ZrDbBlockTable : public ZrDbSymbolTable
{
    ZR_RX_DECLARE_MEMBERS(ZrDbBlockTable)
public:
    ZR_DB_DECLARE_COPY(ZrDbBlockTable)
};

class ZRHOST_EXPORT ZrDbBlockTableRecord : public ZrDbSymbolTableRecord
{
    ZR_RX_DECLARE_MEMBERS(ZrDbBlockTableRecord)
public:
    ZR_DB_DECLARE_COPY(ZrDbBlockTableRecord)
    bool isLayout() const { return m_layout != 0; }
    ZrDbObjectId getLayoutId() const { return ZrDbObjectId(m_layout); }
    int setLayoutId(ZrDbObjectId id);
    // Names that begin with "*" and go on with "U", "D", "T", "E" or "X" are anonymous.
    bool isAnonymous() const;
    bool isFromExternalReference() const { return m_externalReference; }
    int setIsFromExternalReference(bool on);
    ZrGePoint3d origin() const { return m_origin; }

    // Adds a new entity to the database and to this block; the block must be open for write.
    int appendZrDbEntity(ZrDbObjectId& id, ZrDbEntity* entity);
    int appendZrDbEntity(ZrDbEntity* entity);
    int newIterator(ZrDbBlockTableRecordIterator*& iterator, bool atBeginning = true, bool skipDeleted = true) const;
    const std::vector<int64_t>& entityHandles() const { return m_entities; }
    // The block references that point to this block; with `directOnly` not through nested blocks.
    int getBlockReferenceIds(ZrArray<ZrDbObjectId>& ids, bool directOnly = true, bool forceValidity = false) const;

private:
    friend class ZrDbDatabase;
    std::vector<int64_t> m_entities;
    int64_t m_layout = 0;
    bool m_externalReference = false;
    ZrGePoint3d m_origin;
};

class ZRHOST_EXPORT ZrDbBlockTableRecordIterator
{
public:
    ZrDbBlockTableRecordIterator(std::vector<int64_t> entities, bool atBeginning, bool skipDeleted);
    ~ZrDbBlockTableRecordIterator();
    ZrDbBlockTableRecordIterator(const ZrDbBlockTableRecordIterator&) = delete;
    ZrDbBlockTableRecordIterator& operator=(const ZrDbBlockTableRecordIterator&) = delete;

    void start(bool atBeginning = true);
    bool done() const;
    void step(bool forward = true);
    int getEntityId(ZrDbObjectId& id) const;
    int getEntity(ZrDbEntity*& entity, ZrDb::OpenMode mode, bool openErased = false) const;

private:
    void skipErased();

    std::vector<int64_t> m_entities;
    int m_index = 0;
    bool m_skipDeleted = true;
    bool m_forward = true;
};

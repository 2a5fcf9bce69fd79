#pragma once
// The one place where the controls read the drawing database. Each function opens what it needs,
// copies it into plain records and closes it again. A null database means the current one; with
// none the result is empty.

#include "zrqtbaseutils_export.h"

#include "zrglobaluireactor.h"

#include "zrarray.h"
#include "zrcmcolor.h"
#include "zrdbobjectid.h"
#include "zrrxobject.h"
#include "zrstring.h"

#include <QIcon>
#include <QString>
#include <functional>

class ZrDbDatabase;
class ZrDbEntity;
class ZrDbTextStyleTableRecord;
class ZrGiRasterImage;

namespace zrqthelper {

struct SigleLayerData
{
    ZrString name;
    ZrCmColor color;
    bool frozen = false;
    bool hidden = false;
    bool off = false;
    bool locked = false;
    // Frozen in the viewport in use; false when there is none.
    bool viewportFrozen = false;
};

struct ZrsiStyleInfoItem
{
    ZrString name;
    ZrDbObjectId id;
};

struct ZrsiViewInfoItem
{
    ZrString name;
    ZrDbObjectId id;
};

struct ZrsiTextStyleInfoItem
{
    ZrString name;
    ZrDbObjectId id;
    bool annotative = false;
    bool matchOrientation = false;
    double textSize = 0.0;
    double xScale = 1.0;
    double obliquingAngle = 0.0;
    // The two text flags of the host's database service.
    bool flagA = false;
    bool flagB = false;
    bool vertical = false;
};

// One row of the coordinate system list; `id` only for rows of the UCS table.
struct ZrsiUcsInfoItem
{
    enum Type : int32_t {
        kUnnamed = 0,
        kTop = 1,
        kBottom = 2,
        kFront = 3,
        kBack = 4,
        kLeft = 5,
        kRight = 6,
        kWorld = 7,
        kNamed = 8,
        kPrevious = 9,
    };

    ZrString name;
    ZrDbObjectId id;
    int32_t type = kUnnamed;
};

enum Layer_Info_Type : int32_t {
    Layer_OnOff = 0,
    Layer_Freeze = 1,
    Layer_Lock = 2,
    Layer_Color = 3,
};

// Layers.
ZRQTBASEUTILS_EXPORT ZrDbObjectId getCLayer();
// An empty record when the layer won't open.
ZRQTBASEUTILS_EXPORT SigleLayerData getLayInfo(const ZrDbObjectId& id);
// By name; the words "使用当前项" stand for the current layer.
ZRQTBASEUTILS_EXPORT SigleLayerData getLayInfo(const ZrString& name);
// All layers but those whose names hold "*", sorted by name with case.
ZRQTBASEUTILS_EXPORT void getLayerInfos(ZrArray<SigleLayerData>& layers, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT ZrDbObjectId findLayerTableRecordByName(const ZrString& name, ZrDbDatabase* db = nullptr);
// Toggles on, frozen or locked, or sets the colour, of a layer of the current drawing as one undo
// step. Answers the new state of the flag, 1 for a colour, 0 when nothing changed.
ZRQTBASEUTILS_EXPORT int changeLayerStatus(Layer_Info_Type kind, const ZrString& name, ZrCmColor color);
ZRQTBASEUTILS_EXPORT bool isLocked(ZrDbEntity* entity);
// Takes out the ids of objects on locked layers and of objects that won't open; answers how many.
ZRQTBASEUTILS_EXPORT int removeLockedEntity(ZrArray<ZrDbObjectId>& ids);
// The colour of the layer in play: the current one, or that of the first selected object.
ZRQTBASEUTILS_EXPORT ZrCmColor getCLayerColor();
ZRQTBASEUTILS_EXPORT bool getCurrentLayerColor(ZrCmColor& color);
// Null takes the working database; 0 when anything is missing.
ZRQTBASEUTILS_EXPORT ZrDb::LineWeight zruiGetCurrentLayerLineWeight(const ZrDbDatabase* db);

// Styles and names.
ZRQTBASEUTILS_EXPORT void getTextStyleTableRecords(ZrArray<ZrsiTextStyleInfoItem>& items, ZrDbDatabase* db = nullptr,
                                                   bool sorted = false);
ZRQTBASEUTILS_EXPORT void getDimStyleTableRecords(ZrArray<ZrsiStyleInfoItem>& items, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT void getMleaderStyleTableRecords(ZrArray<ZrsiStyleInfoItem>& items, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT void getTableStyleTableRecords(ZrArray<ZrsiStyleInfoItem>& items, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT void getMaterials(ZrArray<ZrString>& names, ZrArray<ZrDbObjectId>& ids, ZrDbDatabase* db = nullptr);
// With `reservedOnly` only the reserved names ("ByLayer", "ByBlock", "Normal").
ZRQTBASEUTILS_EXPORT void getPlotStyleNames(ZrArray<ZrString>& names, ZrDbDatabase* db = nullptr,
                                            bool reservedOnly = false);
ZRQTBASEUTILS_EXPORT void getHatchNames(ZrArray<ZrString>& names, ZrDbDatabase* db = nullptr);
// Named blocks only; with `usedOnly` those that are referenced.
ZRQTBASEUTILS_EXPORT void getBlockNames(ZrArray<ZrString>& names, ZrDbDatabase* db = nullptr, bool usedOnly = false);
// Descending, ignoring case, the built-in cell styles under their display names. A null style
// leaves the array as it was.
ZRQTBASEUTILS_EXPORT void getTableCellStyleNames(ZrArray<ZrString>& names, const ZrDbObjectId& tableStyle);
// The named views of the space being worked in.
ZRQTBASEUTILS_EXPORT void getCustomViews(ZrArray<ZrsiViewInfoItem>& items, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT void getUcses(ZrArray<ZrsiUcsInfoItem>& items, ZrDbDatabase* db = nullptr);
// The block being worked in: the model space, or the layout's block in paper space.
ZRQTBASEUTILS_EXPORT ZrDbObjectId getWorkBlockRecId(const ZrDbDatabase* db);

// Finders; null for an empty name or one that isn't there.
ZRQTBASEUTILS_EXPORT ZrDbObjectId findTextStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT ZrDbObjectId findDimStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT ZrDbObjectId findLineStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT ZrDbObjectId findMleaderStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT ZrDbObjectId findTableStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT ZrDbObjectId findMaterialByName(const ZrString& name, ZrDbDatabase* db = nullptr);
// The name a style stands under in its dictionary; empty when it isn't there.
ZRQTBASEUTILS_EXPORT ZrString findMleaderStyleTableRecordById(const ZrDbObjectId& id, ZrDbDatabase* db = nullptr);
ZRQTBASEUTILS_EXPORT ZrString findTableStyleTableRecordById(const ZrDbObjectId& id, ZrDbDatabase* db = nullptr);

// Line types.
ZRQTBASEUTILS_EXPORT ZrString getLineTypeName();
// Calls `onLineType` for every line type, sorted by name with case, with its preview.
ZRQTBASEUTILS_EXPORT void getLineTypeInfo(
    int width, int height,
    std::function<void(ZrSmartPtr<ZrGiRasterImage>&, ZrString&, ZrDbObjectId&)>&& onLineType);
// The preview of one line type in `image`; answers its id, null on failure.
ZRQTBASEUTILS_EXPORT ZrDbObjectId getLineTypeRasterImage(const ZrString& name, int width, int height,
                                                        ZrSmartPtr<ZrGiRasterImage>& image);
// The display text of a lineweight in inches or millimetres; empty for a weight that isn't one.
ZRQTBASEUTILS_EXPORT QString getLineName(bool inches, ZrDb::LineWeight weight);
ZRQTBASEUTILS_EXPORT int getLWDefault();
// An icon of `width` by `height` from an image file; `transparent` clears the picture.
ZRQTBASEUTILS_EXPORT QIcon zrsiQtCreateIcon(const QString& path, bool transparent, int width, int height);

// One property of the selection at a time: 0 no document, 1 nothing selected, 2 all agree (the
// value is written to the argument), 3 they differ.
ZRQTBASEUTILS_EXPORT int getPickFirstEntitiesLayer(ZrDbObjectId& layer);
ZRQTBASEUTILS_EXPORT int getPickFirstEntitiesLType(ZrString& lineType);
ZRQTBASEUTILS_EXPORT int getPickFirstEntitiesLWeight(ZrDb::LineWeight& weight);
ZRQTBASEUTILS_EXPORT int getPickFirstEntitiesMaterial(ZrString& material);
ZRQTBASEUTILS_EXPORT int getPickFirstEntitiesCPlotStyle(ZrString& plotStyle);
ZRQTBASEUTILS_EXPORT int getPickFirstEntitiesColor(ZrCmColor& color);
ZRQTBASEUTILS_EXPORT int getPickFirstTablesStyle(ZrDbObjectId& style);
ZRQTBASEUTILS_EXPORT int getPickFirstDimsStyle(ZrDbObjectId& style);
ZRQTBASEUTILS_EXPORT int getPickFirstTextsStyle(ZrDbObjectId& style);
ZRQTBASEUTILS_EXPORT int getPickFirstMLeadersStyle(ZrDbObjectId& style);
// The colour index of the current colour; 256 without a database.
ZRQTBASEUTILS_EXPORT int getCeColor();

// Whether a text style carries the annotative data, and whether it matches the layout's orientation.
ZRQTBASEUTILS_EXPORT void getAnnotationAndMatch(const ZrDbTextStyleTableRecord* record, bool& annotative,
                                                bool& matchOrientation);

ZRQTBASEUTILS_EXPORT bool compareLayerInfo(const SigleLayerData& a, const SigleLayerData& b);
// True when `a` comes first in descending order ignoring case; equal names both come first.
ZRQTBASEUTILS_EXPORT bool compareTableCellStyle(const ZrString& a, const ZrString& b);
ZRQTBASEUTILS_EXPORT bool compareTextStyleInfo(const ZrsiTextStyleInfoItem& a, const ZrsiTextStyleInfoItem& b);

} // namespace zrqthelper

#include "zrqthelper.h"
#include "zrqthelper_p.h"

#include "ZrQtUtilsFunc.h"
#include "zrlineweight_p.h"

#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdbviewportdata.h"
#include "zrdocument.h"
#include "zrgiraster.h"
#include "zrlogger.h"
#include "zrselection.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QApplication>
#include <QPalette>
#include <QPixmap>

#include <spdlog/spdlog.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <strings.h>

namespace zrqthelper {

namespace {

ZrDbDatabase* orCurrent(ZrDbDatabase* db) { return db ? db : curDatabase(); }

// Calls `visit(id, record)` for every record of a symbol table in table order; `record` is null
// for one that won't open.
template <class Record, class Visit>
void forEachRecord(const ZrDbObjectId& tableId, Visit visit)
{
    ZrDbSymbolTableIterator* raw = nullptr;
    {
        ZrDbObjectPointer<ZrDbSymbolTable> table(tableId, ZrDb::kForRead);
        if (!table || table->newIterator(raw, true, true) != Zr::eOk)
            return;
    }
    const std::unique_ptr<ZrDbSymbolTableIterator> iterator(raw);
    for (; iterator && !iterator->done(); iterator->step()) {
        ZrDbObjectId id;
        iterator->getRecordId(id);
        ZrDbObjectPointer<Record> record(id, ZrDb::kForRead);
        visit(id, record.object());
    }
}

// Calls `visit(name, id)` for every entry of a dictionary in its order.
template <class Visit>
void forEachEntry(const ZrDbObjectId& dictionaryId, Visit visit)
{
    std::unique_ptr<ZrDbDictionaryIterator> iterator;
    {
        ZrDbObjectPointer<ZrDbDictionary> dictionary(dictionaryId, ZrDb::kForRead);
        if (!dictionary)
            return;
        iterator.reset(dictionary->newIterator());
    }
    for (; iterator && !iterator->done(); iterator->next())
        visit(iterator->name(), iterator->objectId());
}

// How many records a table holds, to make room before a walk.
size_t recordCount(const ZrDbObjectId& tableId)
{
    ZrDbObjectPointer<ZrDbSymbolTable> table(tableId, ZrDb::kForRead);
    return table ? table->recordHandles().size() : 0;
}

using DictionaryGetter = ZrDbObjectId (ZrDbDatabaseService::*)(ZrDbDatabase*, bool);

ZrDbObjectId dictionaryOf(ZrDbDatabase* db, DictionaryGetter getter)
{
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    return db && service ? (service.get()->*getter)(db, true) : ZrDbObjectId();
}

// The id under `name` in a symbol table, ignoring case.
ZrDbObjectId idAt(const ZrDbObjectId& tableId, const ZrString& name)
{
    ZrDbObjectPointer<ZrDbSymbolTable> table(tableId, ZrDb::kForRead);
    ZrDbObjectId id;
    if (!table || table->getIdAt(name, id) != Zr::eOk)
        return ZrDbObjectId();
    return id;
}

// The first record of a table whose name equals `name` ignoring case, by walking the table.
template <class Record>
ZrDbObjectId findByWalk(const ZrDbObjectId& tableId, const ZrString& name)
{
    ZrDbObjectId found;
    forEachRecord<Record>(tableId, [&](const ZrDbObjectId& id, const Record* record) {
        if (record && !found.isValid() && record->name().compareNoCase(name) == 0)
            found = id;
    });
    return found;
}

ZrDbObjectId findEntry(const ZrDbObjectId& dictionaryId, const ZrString& name)
{
    ZrDbObjectId found;
    forEachEntry(dictionaryId, [&](const ZrString& entry, const ZrDbObjectId& id) {
        if (!found.isValid() && entry.compareNoCase(name) == 0)
            found = id;
    });
    return found;
}

ZrString entryName(const ZrDbObjectId& dictionaryId, const ZrDbObjectId& id)
{
    ZrString found;
    forEachEntry(dictionaryId, [&](const ZrString& entry, const ZrDbObjectId& entryId) {
        if (found.isEmpty() && entryId == id)
            found = entry;
    });
    return found;
}

// Dictionary entries as style items, each name once.
void styleItems(ZrArray<ZrsiStyleInfoItem>& items, const ZrDbObjectId& dictionaryId)
{
    items.removeAll();
    std::set<std::wstring> seen;
    forEachEntry(dictionaryId, [&](const ZrString& name, const ZrDbObjectId& id) {
        if (seen.insert(name.std()).second)
            items.append(ZrsiStyleInfoItem{name, id});
    });
}

// Fills a record in place: the colour is the host's and has no cheap move.
void readLayer(SigleLayerData& data, const ZrDbLayerTableRecord* layer, const ZrDbViewport* viewport)
{
    data.name = layer->name();
    data.color = layer->color();
    data.frozen = layer->isFrozen();
    data.hidden = layer->isHidden();
    data.off = layer->isOff();
    data.locked = layer->isLocked();
    data.viewportFrozen = viewport && viewport->isLayerFrozenInViewport(layer->objectId());
}

// The viewport in use, for the viewport freeze of layers; null when there is none.
ZrDbObjectId viewportInUse(const ZrDbDatabase* db) { return db ? db->currentViewportId() : ZrDbObjectId(); }

// The layer in play: the current one without a selection, else that of the first selected object
// that opens.
ZrDbObjectId layerInPlay(ZrDbDatabase* db)
{
    if (!hasSelection())
        return db->clayer();
    long ss[2];
    int32_t length = 0;
    if (!pickFirstSS(ss) || zredSSLength(ss, &length) != RTNORM)
        return ZrDbObjectId();
    for (int32_t i = 0; i < length; ++i) {
        ZrDbObjectPointer<ZrDbEntity> entity(selectionMemberId(ss, i), ZrDb::kForRead);
        if (entity)
            return entity->layerId();
    }
    return ZrDbObjectId();
}

ZrDbObjectId getLineTypeByCeLayer()
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return ZrDbObjectId();
    ZrDbObjectPointer<ZrDbLayerTableRecord> layer(layerInPlay(db), ZrDb::kForRead);
    return layer ? layer->linetypeObjectId() : ZrDbObjectId();
}

bool isByLayerName(const ZrString& name) { return name.compareNoCase(ZrString(L"ByLayer")) == 0; }

// What a preview line is drawn with.
struct LineTypePreview
{
    ZrDbObjectId id;
    double patternLength = 0.0;
};

// "ByLayer" draws with the line type of the layer in play.
LineTypePreview byLayerPreview(const ZrDbObjectId& byLayerRecord)
{
    LineTypePreview preview;
    preview.id = getLineTypeByCeLayer();
    if (preview.id != byLayerRecord) {
        ZrDbObjectPointer<ZrDbLinetypeTableRecord> lineType(preview.id, ZrDb::kForRead);
        if (lineType)
            preview.patternLength = lineType->patternLength();
    }
    return preview;
}

LineTypePreview previewOf(const ZrDbLinetypeTableRecord* record)
{
    if (isByLayerName(record->name()))
        return byLayerPreview(record->objectId());
    return LineTypePreview{record->objectId(), record->patternLength()};
}

// What a preview is drawn into: the picture's size on the palette's base colour. Made once for
// all the line types of a list.
ZrJsonPtr previewOptions(int width, int height)
{
    ZrJsonPtr options = ElementValue::createObject(kZrJsonObject);
    options->SetDataI("width", width);
    options->SetDataI("height", height);
    options->SetDataB("bfillbackground", true);
    options->SetDataB("background", true);
    return options;
}

// A line of a few pattern repeats across the picture, in the palette's text colour.
ZrSmartPtr<ZrGiRasterImage> renderLineType(ZrDbDatabase* db, const LineTypePreview& preview, const ZrJsonPtr& options)
{
    const int width = options->GetVarI("width");
    ZrDbLine line(ZrGePoint3d(10, 10, 0), ZrGePoint3d(100, 10, 0));
    if (preview.id.isValid())
        line.setLinetype(preview.id);
    // Pictures narrower than the margin still get a finite scale.
    const double drawn = std::max(width - 10, 1);
    double pattern = 2.5 * preview.patternLength;
    if (std::fabs(pattern) <= 1e-10)
        pattern = drawn;
    const double scale = pattern / drawn * db->ltscale();
    line.setLinetypeScale(scale > 0.0 ? 1.0 / scale : 1.0);

    const QColor text = QApplication::palette().color(QPalette::WindowText);
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByColor);
    color.setRGB(static_cast<uint8_t>(text.red()), static_cast<uint8_t>(text.green()),
                 static_cast<uint8_t>(text.blue()));
    line.setColor(color);

    ZrArray<ZrDbEntity*> entities;
    entities.append(&line);
    return zrsiutCreateEntityImage(ZrDbDatabasePtr(db), entities, options);
}

// An integer system variable of a drawing, through the database service; 0 when unreadable.
int intVariable(ZrDbDatabase* db, const wchar_t* name)
{
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!service)
        return 0;
    ZrResBuf* value = nullptr;
    int result = 0;
    if (service->getSysVar(db, name, value) == RTNORM && value) {
        if (value->restype == RTSHORT)
            result = value->resval.rint;
        else if (value->restype == RTLONG)
            result = value->resval.rlong;
    }
    zrutRelRb(value);
    return result;
}

void logDebug(const char* file, int line, const char* function, const char* text)
{
    const std::shared_ptr<spdlog::logger> logger = ZrLogger::getInstance()->getSpdLogger();
    if (!logger)
        return;
    char buffer[1024];
    std::snprintf(buffer, sizeof buffer, "%s", text);
    logger->log(spdlog::source_loc{file, line, function}, spdlog::level::debug, spdlog::string_view_t(buffer));
}

// One expected member of an extended data chain: a text, or for 1070 a number.
struct XDataItem
{
    short type;
    const wchar_t* text;
    short number;
};

bool chainStartsWith(const ZrResBuf* chain, std::initializer_list<XDataItem> expected)
{
    for (const XDataItem& item : expected) {
        if (!chain || chain->restype != item.type)
            return false;
        if (item.text) {
            if (!chain->resval.rstring || ZrString(chain->resval.rstring).compareNoCase(ZrString(item.text)) != 0)
                return false;
        } else if (chain->resval.rint != item.number) {
            return false;
        }
        chain = chain->rbnext;
    }
    return true;
}

void redrawView()
{
    CXuDocContext* context = CXuSystem::instance()->docContext();
    CXuGraphicsManager* graphics = context ? context->graphicsManager() : nullptr;
    CXuDrawingSurface* surface = graphics ? graphics->drawingSurface() : nullptr;
    if (surface && !surface->isDefaultOperation())
        surface->redraw(0, 1);
}

ZrString uiText(const char* key, const QString& def) { return ZrString(zrUiText(key, def)); }

// One property of the selection, by the record of the selection walk.
template <class Record, class T>
int pickFirstOne(T& result)
{
    Record record;
    record.reset();
    ZrArray<ZrGlobalUIReactorHelp::SPickFirstInfo*> infos;
    infos.append(&record);
    getPickFirstInfos(infos);
    if (record.status == ZrGlobalUIReactorHelp::SPickFirstInfo::kUniform)
        result = record.value;
    return record.status;
}

// Whether the viewport in use of the current document has a coordinate system to go back to.
bool viewportHasPreviousUcs()
{
    CXuDocContext* context = CXuSystem::instance()->docContext();
    const ZrRxObjectPtr viewport = context ? context->graphicsManager()->activeViewport() : nullptr;
    const ZrRxObject* answer = viewport ? viewport->subQueryX(ZrDbAbstractViewportData::desc()) : nullptr;
    const auto* data = static_cast<const ZrDbAbstractViewportData*>(answer);
    return data && data->hasPreviousUcs();
}

} // namespace

ZrDbObjectId getCLayer()
{
    ZrDbDatabase* db = curDatabase();
    return db ? db->clayer() : ZrDbObjectId();
}

namespace {

// A layer's name and its place in the list being sorted, side by side with the others, so that the
// sort reads names without visiting the records.
struct NameKey
{
    std::wstring_view name;
    size_t place;
};

// Past its end a name reads as less than any character, so that it sorts before the names it begins.
constexpr int64_t kPastEnd = std::numeric_limits<int64_t>::min();

int64_t charAt(const NameKey& key, size_t depth)
{
    return depth < key.name.size() ? int64_t(key.name[depth]) : kPastEnd;
}

// How many characters from `depth` all names of a range share, read name by name: a prefix that
// every name has costs one pass over the names, not one pass per character.
size_t sharedFrom(const NameKey* first, const NameKey* last, size_t depth)
{
    const std::wstring_view head = first->name.substr(std::min(depth, first->name.size()));
    size_t shared = head.size();
    for (const NameKey* key = first + 1; key != last && shared > 0; ++key) {
        const std::wstring_view tail = key->name.substr(std::min(depth, key->name.size()));
        const size_t length = std::min(shared, tail.size());
        size_t same = 0;
        while (same < length && tail[same] == head[same])
            ++same;
        shared = same;
    }
    return shared;
}

// Puts names in the order of compareLayerInfo, a character position at a time (three-way radix
// quicksort): the layer names of one drawing share long prefixes, which a comparison sort would
// read again at every comparison. Within a range the names agree before `depth`.
void sortByName(NameKey* first, NameKey* last, size_t depth)
{
    constexpr ptrdiff_t kSmall = 12;
    while (last - first > 1) {
        if (last - first <= kSmall) {
            std::sort(first, last, [depth](const NameKey& a, const NameKey& b) {
                return a.name.substr(std::min(depth, a.name.size())) < b.name.substr(std::min(depth, b.name.size()));
            });
            return;
        }
        depth += sharedFrom(first, last, depth);
        const int64_t pivot = charAt(first[(last - first) / 2], depth);
        NameKey* below = first;
        NameKey* above = last;
        for (NameKey* at = first; at < above;) {
            const int64_t c = charAt(*at, depth);
            if (c < pivot)
                std::swap(*below++, *at++);
            else if (c > pivot)
                std::swap(*at, *--above);
            else
                ++at;
        }
        sortByName(first, below, depth);
        sortByName(above, last, depth);
        if (pivot == kPastEnd)
            return;
        first = below;
        last = above;
        ++depth;
    }
}

} // namespace

SigleLayerData getLayInfo(const ZrDbObjectId& id)
{
    ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForRead);
    if (!layer)
        return SigleLayerData();
    ZrDbObjectPointer<ZrDbViewport> viewport(viewportInUse(layer->database()), ZrDb::kForRead);
    SigleLayerData data;
    readLayer(data, layer.object(), viewport.object());
    return data;
}

SigleLayerData getLayInfo(const ZrString& name)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return SigleLayerData();
    if (name.toQString() == zrUiText("IDS_HATCHPATTERN_PROMPT33", QStringLiteral("使用当前项")))
        return getLayInfo(db->clayer());
    return getLayInfo(findLayerTableRecordByName(name, db));
}

namespace {

bool isListedLayerName(std::wstring_view name) { return name.find(L'*') == std::wstring_view::npos; }

} // namespace

void getLayerInfos(ZrArray<SigleLayerData>& layers, ZrDbDatabase* db)
{
    layers.removeAll();
    db = orCurrent(db);
    if (!db)
        return;
    ZrDbObjectPointer<ZrDbViewport> viewport(viewportInUse(db), ZrDb::kForRead);
    std::vector<SigleLayerData>& read = layers.std();
    read.reserve(recordCount(db->layerTableId()));
    forEachRecord<ZrDbLayerTableRecord>(db->layerTableId(), [&](const ZrDbObjectId&, const ZrDbLayerTableRecord* layer) {
        // A layer that can't be read stays as an empty record; lists pass empty names over.
        read.emplace_back();
        if (layer)
            readLayer(read.back(), layer, viewport.object());
        if (!isListedLayerName(read.back().name.std()))
            read.pop_back();
    });
    std::vector<NameKey> order;
    order.reserve(read.size());
    for (const SigleLayerData& data : read)
        order.push_back({data.name.std(), order.size()});
    sortByName(order.data(), order.data() + order.size(), 0);
    // Each record moves once, along the cycles of the order, without a second array of them; a
    // key whose place is its own position is done.
    for (size_t start = 0; start < order.size(); ++start) {
        if (order[start].place == start)
            continue;
        SigleLayerData first = std::move(read[start]);
        size_t at = start;
        while (order[at].place != start) {
            const size_t from = order[at].place;
            read[at] = std::move(read[from]);
            order[at].place = at;
            at = from;
        }
        read[at] = std::move(first);
        order[at].place = at;
    }
}

LayerList getLayerList(ZrDbDatabase* db)
{
    LayerList list;
    db = orCurrent(db);
    if (!db)
        return list;
    std::vector<LayerListEntry> read;
    read.reserve(recordCount(db->layerTableId()));
    // One name buffer for the walk: reading a name into it allocates nothing once it is large enough.
    ZrString name;
    forEachRecord<ZrDbLayerTableRecord>(db->layerTableId(), [&](const ZrDbObjectId& id, const ZrDbLayerTableRecord* layer) {
        if (!layer || layer->getName(name) != Zr::eOk || name.isEmpty() || !isListedLayerName(name.std()))
            return;
        const TextSpan span{static_cast<uint32_t>(list.names.size()), static_cast<uint32_t>(name.std().size())};
        list.names += name.std();
        read.push_back({span, id, layer->isFrozen(), layer->isHidden()});
    });
    // Names are viewed only once the buffer has stopped growing.
    std::vector<NameKey> order;
    order.reserve(read.size());
    for (const LayerListEntry& entry : read)
        order.push_back({entry.name.in(list.names), order.size()});
    sortByName(order.data(), order.data() + order.size(), 0);
    list.entries.reserve(read.size());
    for (const NameKey& key : order)
        list.entries.push_back(read[key.place]);
    return list;
}

ZrDbObjectId findLayerTableRecordByName(const ZrString& name, ZrDbDatabase* db)
{
    db = orCurrent(db);
    if (name.isEmpty() || !db)
        return ZrDbObjectId();
    return idAt(db->layerTableId(), name);
}

int changeLayerStatus(Layer_Info_Type kind, const ZrString& name, ZrCmColor color)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return 0;
    xudbSetUndoRecord(db, uiText("IDS_ZRAPP_LAYER_PROMPT3", QStringLiteral("图层控制")).kwszPtr());
    const ZrDbObjectId id = findLayerTableRecordByName(name, db);
    const bool current = id.isValid() && id == db->clayer();
    bool off = false;
    {
        // The questions below run an event loop; no record stays open through them.
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForWrite);
        if (!layer)
            return 0;
        off = layer->isOff();
    }
    if (kind == Layer_OnOff && current && !off) {
        const int answer = ZrUiMessageBox(
            ZrString(),
            uiText("IDS_STRING151", QStringLiteral("当前图层将被关闭。\n是否要使当前图层保持打开状态?")), 68,
            nullptr);
        if (answer == 6)
            return 0;
    } else if (kind == Layer_Freeze && current) {
        ZrUiMessageBox(ZrString(), uiText("IDS_LAYERSTATE_9", QStringLiteral("不能冻结当前图层\n")), 64, nullptr);
        return 0;
    }
    int result = 0;
    {
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForWrite);
        if (!layer)
            return 0;
        switch (kind) {
        case Layer_OnOff:
            layer->setIsOff(!layer->isOff());
            result = layer->isOff();
            break;
        case Layer_Freeze:
            layer->setIsFrozen(!layer->isFrozen());
            result = layer->isFrozen();
            break;
        case Layer_Lock:
            layer->setIsLocked(!layer->isLocked());
            result = layer->isLocked();
            break;
        case Layer_Color:
            layer->setColor(color);
            result = 1;
            break;
        default:
            return 0;
        }
    }
    redrawView();
    return result;
}

bool isLocked(ZrDbEntity* entity)
{
    if (!entity)
        return false;
    ZrDbObjectPointer<ZrDbLayerTableRecord> layer(entity->layerId(), ZrDb::kForRead);
    return layer && layer->isLocked();
}

int removeLockedEntity(ZrArray<ZrDbObjectId>& ids)
{
    std::vector<ZrDbObjectId>& all = ids.std();
    const auto kept = std::remove_if(all.begin(), all.end(), [](const ZrDbObjectId& id) {
        if (id.isNull())
            return false;
        ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
        return !entity || isLocked(entity.object());
    });
    const int removed = static_cast<int>(all.end() - kept);
    all.erase(kept, all.end());
    return removed;
}

ZrCmColor getCLayerColor()
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return ZrCmColor();
    ZrDbObjectPointer<ZrDbLayerTableRecord> layer(layerInPlay(db), ZrDb::kForRead);
    return layer ? layer->color() : ZrCmColor();
}

bool getCurrentLayerColor(ZrCmColor& color)
{
    ZrDbObjectPointer<ZrDbLayerTableRecord> layer(getCLayer(), ZrDb::kForRead);
    if (!layer)
        return false;
    color = layer->color();
    return true;
}

ZrDb::LineWeight zruiGetCurrentLayerLineWeight(const ZrDbDatabase* db)
{
    if (!db) {
        ZrDbHostApplicationServices* services = zrdbHostApplicationServices();
        db = services ? services->workingDatabase() : nullptr;
    }
    if (!db)
        return ZrDb::kLnWt000;
    ZrDbObjectPointer<ZrDbLayerTableRecord> layer(db->clayer(), ZrDb::kForRead);
    return layer ? layer->lineWeight() : ZrDb::kLnWt000;
}

void getTextStyleTableRecords(ZrArray<ZrsiTextStyleInfoItem>& items, ZrDbDatabase* db, bool sorted)
{
    items.removeAll();
    db = orCurrent(db);
    if (!db)
        return;
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    std::set<std::wstring> seen;
    forEachRecord<ZrDbTextStyleTableRecord>(
        db->textStyleTableId(), [&](const ZrDbObjectId& id, const ZrDbTextStyleTableRecord* record) {
            if (!record || !seen.insert(record->name().std()).second)
                return;
            ZrsiTextStyleInfoItem item;
            item.name = record->name();
            item.id = id;
            getAnnotationAndMatch(record, item.annotative, item.matchOrientation);
            item.textSize = record->textSize();
            item.xScale = record->xScale();
            item.obliquingAngle = record->obliquingAngle();
            if (service)
                service->textStyleFlags(record, item.flagA, item.flagB);
            item.vertical = record->isVertical();
            items.append(item);
        });
    if (sorted)
        std::sort(items.begin(), items.end(), compareTextStyleInfo);
}

void getDimStyleTableRecords(ZrArray<ZrsiStyleInfoItem>& items, ZrDbDatabase* db)
{
    items.removeAll();
    db = orCurrent(db);
    if (!db)
        return;
    std::set<std::wstring> seen;
    forEachRecord<ZrDbDimStyleTableRecord>(
        db->dimStyleTableId(), [&](const ZrDbObjectId& id, const ZrDbDimStyleTableRecord* record) {
            if (record && !record->isDependent() && seen.insert(record->name().std()).second)
                items.append(ZrsiStyleInfoItem{record->name(), id});
        });
}

void getMleaderStyleTableRecords(ZrArray<ZrsiStyleInfoItem>& items, ZrDbDatabase* db)
{
    styleItems(items, dictionaryOf(orCurrent(db), &ZrDbDatabaseService::mleaderStyleDictionary));
}

void getTableStyleTableRecords(ZrArray<ZrsiStyleInfoItem>& items, ZrDbDatabase* db)
{
    styleItems(items, dictionaryOf(orCurrent(db), &ZrDbDatabaseService::tableStyleDictionary));
}

void getMaterials(ZrArray<ZrString>& names, ZrArray<ZrDbObjectId>& ids, ZrDbDatabase* db)
{
    names.removeAll();
    ids.removeAll();
    forEachEntry(dictionaryOf(orCurrent(db), &ZrDbDatabaseService::materialDictionary),
                 [&](const ZrString& name, const ZrDbObjectId& id) {
                     if (name.isEmpty() || !id.isValid())
                         return;
                     names.append(name);
                     ids.append(id);
                 });
}

void getPlotStyleNames(ZrArray<ZrString>& names, ZrDbDatabase* db, bool reservedOnly)
{
    names.removeAll();
    std::set<std::wstring> seen;
    forEachEntry(dictionaryOf(orCurrent(db), &ZrDbDatabaseService::plotStyleDictionary),
                 [&](const ZrString& name, const ZrDbObjectId&) {
                     if ((!reservedOnly || zrdbIsReservedString(name, 5)) && seen.insert(name.std()).second)
                         names.append(name);
                 });
}

void getHatchNames(ZrArray<ZrString>& names, ZrDbDatabase* db)
{
    names.removeAll();
    db = orCurrent(db);
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!db || !service)
        return;
    ZrDbBlockTableRecordIterator* raw = nullptr;
    {
        const ZrDbObjectId space = db->tilemode() ? service->modelSpaceId(db) : service->paperSpaceId(db);
        ZrDbObjectPointer<ZrDbBlockTableRecord> block(space, ZrDb::kForRead);
        if (!block || block->newIterator(raw, true, true) != Zr::eOk)
            return;
    }
    const std::unique_ptr<ZrDbBlockTableRecordIterator> iterator(raw);
    std::set<std::wstring> seen;
    for (; iterator && !iterator->done(); iterator->step()) {
        ZrDbObjectId id;
        iterator->getEntityId(id);
        ZrDbObjectPointer<ZrDbHatch> hatch(id, ZrDb::kForRead);
        if (!hatch)
            continue;
        const ZrString pattern = hatch->patternName();
        if (!pattern.isEmpty() && seen.insert(pattern.std()).second)
            names.append(pattern);
    }
}

void getBlockNames(ZrArray<ZrString>& names, ZrDbDatabase* db, bool usedOnly)
{
    names.removeAll();
    db = orCurrent(db);
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!db || !service)
        return;
    // Only the first 12 characters count: "*Model_Space" and anything that goes on from it.
    const auto isSpaceName = [](const ZrString& name) {
        if (name.length() < 12)
            return false;
        const ZrString head(name.kwszPtr(), 12);
        return head.compareNoCase(ZrString(L"*MODEL_SPACE")) == 0 || head.compareNoCase(ZrString(L"*PAPER_SPACE")) == 0;
    };
    std::set<std::wstring> seen;
    service->beginBlockTableWalk(db);
    forEachRecord<ZrDbBlockTableRecord>(db->blockTableId(), [&](const ZrDbObjectId&, const ZrDbBlockTableRecord* block) {
        if (!block || isSpaceName(block->name()) || block->isFromExternalReference() || block->isDependent()
            || block->isAnonymous())
            return;
        if (usedOnly) {
            ZrArray<ZrDbObjectId> references;
            block->getBlockReferenceIds(references, true);
            if (references.isEmpty())
                return;
        }
        if (seen.insert(block->name().std()).second)
            names.append(block->name());
    });
    service->endBlockTableWalk(db);
    std::sort(names.begin(), names.end());
}

void getTableCellStyleNames(ZrArray<ZrString>& names, const ZrDbObjectId& tableStyle)
{
    if (tableStyle.isNull())
        return;
    names.removeAll();
    {
        ZrDbObjectPointer<ZrDbTableStyle> style(tableStyle, ZrDb::kForRead);
        if (!style)
            return;
        style->getCellStyles(names);
    }
    struct BuiltIn
    {
        const wchar_t* name;
        const char* key;
        const char* text;
    };
    static const BuiltIn builtIns[] = {
        {L"_TITLE", "IDS_ZRMD_TABLE_PROMPT2", "标题"},
        {L"_HEADER", "IDS_ZRMD_TABLE_PROMPT3", "表头"},
        {L"_DATA", "IDS_ZRMD_TABLE_PROMPT4", "数据"},
    };
    for (ZrString& name : names) {
        for (const BuiltIn& builtIn : builtIns) {
            if (name.compareNoCase(ZrString(builtIn.name)) == 0) {
                name = uiText(builtIn.key, QString::fromUtf8(builtIn.text));
                break;
            }
        }
    }
    // The order counts equal names as both first, which std::sort must not be given.
    std::stable_sort(names.begin(), names.end(), compareTableCellStyle);
}

void getCustomViews(ZrArray<ZrsiViewInfoItem>& items, ZrDbDatabase* db)
{
    items.removeAll();
    db = orCurrent(db);
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!db || !service)
        return;
    const bool paper = getWorkBlockRecId(db) != service->modelSpaceId(db);
    forEachRecord<ZrDbViewTableRecord>(db->viewTableId(), [&](const ZrDbObjectId& id, const ZrDbViewTableRecord* view) {
        if (view && !view->isDependent() && view->isPaperspaceView() == paper && !view->name().isEmpty())
            items.append(ZrsiViewInfoItem{view->name(), id});
    });
}

void getUcses(ZrArray<ZrsiUcsInfoItem>& items, ZrDbDatabase* db)
{
    items.removeAll();
    db = orCurrent(db);
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!db || !service)
        return;
    const bool model = getWorkBlockRecId(db) == service->modelSpaceId(db);
    const ZrDbObjectId name = model ? db->ucsname() : db->pucsname();
    const int orthoView = intVariable(db, model ? L"UCSORTHOVIEW" : L"PUCSORTHOVIEW");
    const bool world = (model ? db->ucsorg() : db->pucsorg()).isEqualTo(ZrGePoint3d::kOrigin)
        && (model ? db->ucsxdir() : db->pucsxdir()).isEqualTo(ZrGeVector3d::kXAxis)
        && (model ? db->ucsydir() : db->pucsydir()).isEqualTo(ZrGeVector3d::kYAxis);

    const auto add = [&items](int32_t type, const char* key, const char* text) {
        items.append(ZrsiUcsInfoItem{uiText(key, QString::fromUtf8(text)), ZrDbObjectId(), type});
    };
    if (name.isNull() && !world && orthoView == 0)
        add(ZrsiUcsInfoItem::kUnnamed, "IDS_ZRAPP_CMBMGRIMP_PROMPT33", "未命名");
    add(ZrsiUcsInfoItem::kWorld, "IDS_ZRAPP_CMBMGRIMP_PROMPT21", "世界");
    if (viewportHasPreviousUcs())
        add(ZrsiUcsInfoItem::kPrevious, "IDS_ZRAPP_CMBMGRIMP_PROMPT40", "上一个");
    add(ZrsiUcsInfoItem::kTop, "IDS_ZRAPP_CMBMGRIMP_PROMPT22", "俯视");
    add(ZrsiUcsInfoItem::kBottom, "IDS_ZRAPP_CMBMGRIMP_PROMPT23", "仰视");
    add(ZrsiUcsInfoItem::kLeft, "IDS_ZRAPP_CMBMGRIMP_PROMPT24", "左视");
    add(ZrsiUcsInfoItem::kRight, "IDS_ZRAPP_CMBMGRIMP_PROMPT25", "右视");
    add(ZrsiUcsInfoItem::kFront, "IDS_ZRAPP_CMBMGRIMP_PROMPT26", "前视");
    add(ZrsiUcsInfoItem::kBack, "IDS_ZRAPP_CMBMGRIMP_PROMPT27", "后视");
    forEachRecord<ZrDbUCSTableRecord>(db->UCSTableId(), [&](const ZrDbObjectId& id, const ZrDbUCSTableRecord* ucs) {
        if (ucs && !ucs->isDependent() && !ucs->name().isEmpty())
            items.append(ZrsiUcsInfoItem{ucs->name(), id, ZrsiUcsInfoItem::kNamed});
    });
}

ZrDbObjectId getWorkBlockRecId(const ZrDbDatabase* constDb)
{
    // The host's services take the database as writable; nothing here writes to it.
    ZrDbDatabase* db = orCurrent(const_cast<ZrDbDatabase*>(constDb));
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!db || !service)
        return ZrDbObjectId();
    const ZrDbObjectId modelSpace = service->modelSpaceId(db);
    if (intVariable(db, L"BLOCKEDITOR") != 0) {
        logDebug(__FILE__, __LINE__, __func__, "后面要加上块在位编辑时返回的块表记录");
        return modelSpace;
    }
    if (db->tilemode())
        return modelSpace;
    ZrDbObjectPointer<ZrDbObject> object(db->currentLayoutId(), ZrDb::kForRead);
    if (!object)
        return ZrDbObjectId();
    const auto* layout = static_cast<const ZrDbLayout*>(object->queryX(ZrDbLayout::desc()));
    return layout->paperViewportId() == db->currentViewportId() ? layout->getBlockTableRecordId() : modelSpace;
}

ZrDbObjectId findTextStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db)
{
    db = orCurrent(db);
    if (name.isEmpty() || !db)
        return ZrDbObjectId();
    return findByWalk<ZrDbTextStyleTableRecord>(db->textStyleTableId(), name);
}

ZrDbObjectId findDimStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db)
{
    db = orCurrent(db);
    if (name.isEmpty() || !db)
        return ZrDbObjectId();
    return findByWalk<ZrDbDimStyleTableRecord>(db->dimStyleTableId(), name);
}

ZrDbObjectId findLineStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db)
{
    db = orCurrent(db);
    if (name.isEmpty() || !db)
        return ZrDbObjectId();
    // FLATSHOT draws "ByLayer" with the line type the layer really has.
    if (isByLayerName(name)) {
        CXuDocContext* context = CXuSystem::instance()->docContext();
        ZrString command = context ? context->commandObject()->commandName() : ZrString();
        if (command.makeUpper() == ZrString(L"FLATSHOT"))
            return getLineTypeByCeLayer();
    }
    return idAt(db->linetypeTableId(), name);
}

ZrDbObjectId findMleaderStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db)
{
    if (name.isEmpty())
        return ZrDbObjectId();
    return findEntry(dictionaryOf(orCurrent(db), &ZrDbDatabaseService::mleaderStyleDictionary), name);
}

ZrDbObjectId findTableStyleTableRecordByName(const ZrString& name, ZrDbDatabase* db)
{
    if (name.isEmpty())
        return ZrDbObjectId();
    return findEntry(dictionaryOf(orCurrent(db), &ZrDbDatabaseService::tableStyleDictionary), name);
}

ZrDbObjectId findMaterialByName(const ZrString& name, ZrDbDatabase* db)
{
    if (name.isEmpty())
        return ZrDbObjectId();
    return findEntry(dictionaryOf(orCurrent(db), &ZrDbDatabaseService::materialDictionary), name);
}

ZrString findMleaderStyleTableRecordById(const ZrDbObjectId& id, ZrDbDatabase* db)
{
    return entryName(dictionaryOf(orCurrent(db), &ZrDbDatabaseService::mleaderStyleDictionary), id);
}

ZrString findTableStyleTableRecordById(const ZrDbObjectId& id, ZrDbDatabase* db)
{
    return entryName(dictionaryOf(orCurrent(db), &ZrDbDatabaseService::tableStyleDictionary), id);
}

ZrString getLineTypeName()
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return ZrString();
    ZrDbObjectPointer<ZrDbLinetypeTableRecord> lineType(db->celtype(), ZrDb::kForRead);
    return lineType ? lineType->name() : ZrString();
}

void getLineTypeInfo(int width, int height,
                     std::function<void(ZrSmartPtr<ZrGiRasterImage>&, ZrString&, ZrDbObjectId&)>&& onLineType)
{
    ZrDbDatabase* db = curDatabase();
    if (!db || !onLineType)
        return;
    // QString's order is the order by case of the names' UTF-16 code units.
    std::map<QString, LineTypePreview> previews;
    forEachRecord<ZrDbLinetypeTableRecord>(db->linetypeTableId(),
                                           [&](const ZrDbObjectId&, const ZrDbLinetypeTableRecord* record) {
                                               if (record && !record->isDependent())
                                                   previews.emplace(record->name().toQString(), previewOf(record));
                                           });
    const ZrJsonPtr options = previewOptions(width, height);
    for (const auto& entry : previews) {
        ZrSmartPtr<ZrGiRasterImage> image = renderLineType(db, entry.second, options);
        ZrString name(entry.first);
        ZrDbObjectId id = entry.second.id;
        onLineType(image, name, id);
    }
}

ZrDbObjectId getLineTypeRasterImage(const ZrString& name, int width, int height, ZrSmartPtr<ZrGiRasterImage>& image)
{
    image = nullptr;
    ZrDbDatabase* db = zrDocManagerPtr()->curDocument() ? curDatabase() : nullptr;
    if (name.isEmpty() || width < 1 || height < 1 || !db)
        return ZrDbObjectId();
    LineTypePreview preview;
    bool found = false;
    forEachRecord<ZrDbLinetypeTableRecord>(db->linetypeTableId(),
                                           [&](const ZrDbObjectId&, const ZrDbLinetypeTableRecord* record) {
                                               if (!found && record && !record->isDependent()
                                                   && record->name().compareNoCase(name) == 0) {
                                                   preview = previewOf(record);
                                                   found = true;
                                               }
                                           });
    // A name that isn't there still draws, as a plain line.
    image = renderLineType(db, preview, previewOptions(width, height));
    return preview.id;
}

QString getLineName(bool inches, ZrDb::LineWeight weight)
{
    switch (weight) {
    case ZrDb::kLnWtByLayer:
        return QStringLiteral("ByLayer");
    case ZrDb::kLnWtByBlock:
        return QStringLiteral("ByBlock");
    case ZrDb::kLnWtByLwDefault:
        return zrUiText("IDS_VIEW_PROMPT70", QStringLiteral("默认"));
    default:
        break;
    }
    if (!ZrLineWeights::isStandard(weight))
        return QString();
    const int hundredths = weight;
    if (!inches)
        return QStringLiteral("%1.%2 mm").arg(hundredths / 100).arg(hundredths % 100, 2, 10, QLatin1Char('0'));
    // Thousandths of an inch, rounded: 25.4 mm to the inch.
    const int thousandths = (hundredths * 1000 + 1270) / 2540;
    return QStringLiteral("%1.%2\"").arg(thousandths / 1000).arg(thousandths % 1000, 3, 10, QLatin1Char('0'));
}

int getLWDefault()
{
    ZrDbHostApplicationServices* services = zrdbHostApplicationServices();
    return services ? services->lineWeightDefault() : 0;
}

QIcon zrsiQtCreateIcon(const QString& path, bool transparent, int width, int height)
{
    if (path.isEmpty())
        return QIcon();
    QPixmap pixmap(path);
    if (transparent)
        pixmap.fill(Qt::transparent);
    if (pixmap.isNull())
        return QIcon();
    return QIcon(pixmap.scaled(width, height, Qt::IgnoreAspectRatio, Qt::FastTransformation));
}

int getPickFirstEntitiesLayer(ZrDbObjectId& layer) { return pickFirstOne<ZrGlobalUIReactorHelp::SLayerInfo>(layer); }
int getPickFirstEntitiesLType(ZrString& lineType) { return pickFirstOne<ZrGlobalUIReactorHelp::SLineTypeInfo>(lineType); }
int getPickFirstEntitiesLWeight(ZrDb::LineWeight& weight)
{
    return pickFirstOne<ZrGlobalUIReactorHelp::SLineWeightInfo>(weight);
}
int getPickFirstEntitiesMaterial(ZrString& material)
{
    return pickFirstOne<ZrGlobalUIReactorHelp::SMaterialInfo>(material);
}
int getPickFirstEntitiesCPlotStyle(ZrString& plotStyle)
{
    return pickFirstOne<ZrGlobalUIReactorHelp::SPlotStyleInfo>(plotStyle);
}
int getPickFirstEntitiesColor(ZrCmColor& color) { return pickFirstOne<ZrGlobalUIReactorHelp::SColorInfo>(color); }
int getPickFirstTablesStyle(ZrDbObjectId& style) { return pickFirstOne<ZrGlobalUIReactorHelp::STableStyleInfo>(style); }
int getPickFirstDimsStyle(ZrDbObjectId& style) { return pickFirstOne<ZrGlobalUIReactorHelp::SDimStyleInfo>(style); }
int getPickFirstTextsStyle(ZrDbObjectId& style) { return pickFirstOne<ZrGlobalUIReactorHelp::STextStyleInfo>(style); }
int getPickFirstMLeadersStyle(ZrDbObjectId& style)
{
    return pickFirstOne<ZrGlobalUIReactorHelp::SMleaderStyleInfo>(style);
}

int getCeColor()
{
    ZrDbDatabase* db = curDatabase();
    return db ? db->cecolor().colorIndex() : 256;
}

void getAnnotationAndMatch(const ZrDbTextStyleTableRecord* record, bool& annotative, bool& matchOrientation)
{
    annotative = false;
    matchOrientation = false;
    if (!record)
        return;
    ZrResBuf* data = record->xData(L"AcadAnnotative");
    annotative = chainStartsWith(data, {{1001, L"AcadAnnotative", 0},
                                        {1000, L"AnnotativeData", 0},
                                        {1002, L"{", 0},
                                        {1070, nullptr, 1},
                                        {1070, nullptr, 1},
                                        {1002, L"}", 0}});
    zrutRelRb(data);
    data = record->xData(L"AcadAnnoPO");
    matchOrientation = chainStartsWith(data, {{1001, L"AcadAnnoPO", 0}, {1070, nullptr, 1}});
    zrutRelRb(data);
}

bool compareLayerInfo(const SigleLayerData& a, const SigleLayerData& b) { return a.name.compare(b.name) < 0; }

bool compareTableCellStyle(const ZrString& a, const ZrString& b)
{
    return strcasecmp(a.toUtf8().c_str(), b.toUtf8().c_str()) >= 0;
}

bool compareTextStyleInfo(const ZrsiTextStyleInfoItem& a, const ZrsiTextStyleInfoItem& b)
{
    return a.name.compare(b.name) < 0;
}

} // namespace zrqthelper

// The drawing file: JSON with the tables, dictionaries, blocks with their entities, layouts and the
// drawing's variables. Records are referred to by name, the paper viewport of a layout by its place
// among its block's entities.

#include "zrdbfile.h"

#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbinternal.h"
#include "zrdbsymtb.h"
#include "zrjson.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

constexpr char kFormat[] = "zrdrawing";
constexpr int kVersion = 1;
constexpr int kMaxTableCells = 1000;
// Values quoted in messages are cut here, so that a huge one cannot flood the user.
constexpr int kQuotedLength = 40;

// A fault in the file's content: the message names the object and the field.
struct FileFault
{
    QString message;
};

[[noreturn]] void fail(const QString& where, const QString& what) { throw FileFault{where + QStringLiteral(": ") + what}; }

QString excerpt(const QString& text)
{
    return text.size() <= kQuotedLength ? text : text.left(kQuotedLength) + QStringLiteral("…");
}

QString quoted(const QString& text) { return QLatin1Char('"') + excerpt(text) + QLatin1Char('"'); }

// An object of the file being read, and where it stands in the file for messages.
class Node
{
public:
    Node(ZrJsonPtr json, QString where) : m_json(std::move(json)), m_where(std::move(where))
    {
        if (!m_json || !m_json->isObject())
            fail(m_where, QStringLiteral("is not an object"));
    }

    const QString& where() const { return m_where; }
    // Messages about an object inside another name both.
    void placeIn(const QString& outer) { m_where = outer + QStringLiteral(", ") + m_where; }
    // Messages about this object name it once its name is known.
    void setName(const QString& name) { m_where += QLatin1Char(' ') + quoted(name); }

    [[noreturn]] void fault(const char* key, const QString& what) const
    {
        fail(QStringLiteral("%1, field \"%2\"").arg(m_where, QLatin1String(key)), what);
    }
    void check(int status, const char* key) const
    {
        if (status != Zr::eOk)
            fault(key, QStringLiteral("the value is not accepted (status %1)").arg(status));
    }

    ZrJsonPtr value(const char* key) const
    {
        const ZrJsonPtr found = m_json->safeProperty_ptr(ZrUtf8String(key));
        return found && !found->isUndefined() ? found : ZrJsonPtr();
    }
    bool has(const char* key) const { return bool(value(key)); }

    QString text(const char* key, const QString& fallback = QString()) const
    {
        const ZrJsonPtr found = value(key);
        if (!found)
            return fallback;
        if (!found->isString())
            fault(key, QStringLiteral("is not a text"));
        return found->safeStrValue().toQString();
    }
    QString requiredText(const char* key) const
    {
        if (!has(key))
            fault(key, QStringLiteral("is missing"));
        const QString found = text(key);
        if (found.isEmpty())
            fault(key, QStringLiteral("is empty"));
        return found;
    }
    double real(const char* key, double fallback) const
    {
        const ZrJsonPtr found = value(key);
        if (!found)
            return fallback;
        return number(found, key);
    }
    int integer(const char* key, int fallback) const
    {
        const double found = real(key, fallback);
        if (found != std::floor(found) || std::fabs(found) > 1e9)
            fault(key, QStringLiteral("is not a whole number"));
        return static_cast<int>(found);
    }
    bool boolean(const char* key, bool fallback) const
    {
        const ZrJsonPtr found = value(key);
        if (!found)
            return fallback;
        if (!found->isBool())
            fault(key, QStringLiteral("is not true or false"));
        return found->safeBoolValue();
    }
    ZrGePoint3d point(const char* key, const ZrGePoint3d& fallback = ZrGePoint3d()) const
    {
        const ZrJsonPtr found = value(key);
        return found ? pointOf(found, key) : fallback;
    }
    std::vector<ZrGePoint3d> points(const char* key) const
    {
        std::vector<ZrGePoint3d> list;
        for (const ZrJsonPtr& element : array(key))
            list.push_back(pointOf(element, key));
        return list;
    }
    std::vector<double> reals(const char* key) const
    {
        std::vector<double> list;
        for (const ZrJsonPtr& element : array(key))
            list.push_back(number(element, key));
        return list;
    }
    QStringList texts(const char* key) const
    {
        QStringList list;
        for (const ZrJsonPtr& element : array(key)) {
            if (!element->isString())
                fault(key, QStringLiteral("holds something that is not a text"));
            list << element->safeStrValue().toQString();
        }
        return list;
    }
    std::vector<ZrJsonPtr> array(const char* key) const
    {
        std::vector<ZrJsonPtr> list;
        const ZrJsonPtr found = value(key);
        if (!found)
            return list;
        if (!found->isArray())
            fault(key, QStringLiteral("is not a list"));
        for (int i = 0; i < found->ArrayCount(); ++i)
            list.push_back(found->at(i));
        return list;
    }
    // The objects of a list, each with its place for messages.
    std::vector<Node> objects(const char* key) const
    {
        std::vector<Node> list;
        const std::vector<ZrJsonPtr> elements = array(key);
        for (size_t i = 0; i < elements.size(); ++i) {
            list.emplace_back(elements[i], QStringLiteral("%1[%2]").arg(QLatin1String(key)).arg(i));
            const ZrJsonPtr name = list.back().value("name");
            if (name && name->isString())
                list.back().setName(name->safeStrValue().toQString());
        }
        return list;
    }

private:
    double number(const ZrJsonPtr& found, const char* key) const
    {
        if (!found->isNumber())
            fault(key, QStringLiteral("is not a number"));
        const double value = found->safeRealValue();
        if (!std::isfinite(value))
            fault(key, QStringLiteral("is not a finite number"));
        if (std::fabs(value) > kZrDbLargestValue)
            fault(key, QStringLiteral("%1 is beyond the largest value a drawing holds, %2")
                           .arg(excerpt(QString::fromStdString(found->toJson().std())))
                           .arg(kZrDbLargestValue));
        return value;
    }
    ZrGePoint3d pointOf(const ZrJsonPtr& found, const char* key) const
    {
        if (!found->isArray() || (found->ArrayCount() != 2 && found->ArrayCount() != 3))
            fault(key, QStringLiteral("is not a point of two or three numbers"));
        double xyz[3] = {0, 0, 0};
        for (int i = 0; i < found->ArrayCount(); ++i)
            xyz[i] = number(found->at(i), key);
        return ZrGePoint3d(xyz[0], xyz[1], xyz[2]);
    }

    ZrJsonPtr m_json;
    QString m_where;
};

ZrString wide(const QString& text) { return ZrString(text); }

// What every object may carry: extended data and an extension dictionary.
void readObjectFields(const Node& node, ZrDbObject* object)
{
    const std::vector<ZrJsonPtr> groups = node.array("xdata");
    ZrResBuf* chain = nullptr;
    ZrResBuf** tail = &chain;
    for (const ZrJsonPtr& group : groups) {
        if (!group->isArray() || group->ArrayCount() != 2 || !group->at(0)->isNumber()) {
            zrutRelRb(chain);
            node.fault("xdata", QStringLiteral("holds an entry that is not a pair of a group code and a value"));
        }
        const int code = static_cast<int>(group->at(0)->safeIntValue());
        const ZrJsonPtr value = group->at(1);
        auto* rb = new ZrResBuf;
        rb->restype = static_cast<short>(code);
        *tail = rb;
        tail = &rb->rbnext;
        bool fits = code >= 1000 && code <= 1071;
        switch (fits ? zrrbValueOf(code) : ZrRbValue::kNone) {
        case ZrRbValue::kString:
            fits = value->isString();
            if (fits) {
                zrrbSetString(rb, value->safeStrValueW());
                rb->restype = static_cast<short>(code);
            }
            break;
        case ZrRbValue::kReal:
            fits = value->isNumber();
            rb->resval.rreal = value->safeRealValue();
            break;
        case ZrRbValue::kShort:
            fits = value->isNumber() && std::fabs(value->safeRealValue()) <= 32767;
            rb->resval.rint = static_cast<short>(value->safeIntValue());
            break;
        case ZrRbValue::kLong:
            fits = value->isNumber() && std::fabs(value->safeRealValue()) <= 2147483647.0;
            rb->resval.rlong = static_cast<int32_t>(value->safeIntValue());
            break;
        case ZrRbValue::kPoint:
            fits = value->isArray() && value->ArrayCount() == 3;
            for (int i = 0; fits && i < 3; ++i) {
                fits = value->at(i)->isNumber();
                rb->resval.rpoint[i] = value->at(i)->safeRealValue();
            }
            break;
        case ZrRbValue::kNone: fits = false; break;
        }
        if (!fits) {
            zrutRelRb(chain);
            node.fault("xdata", QStringLiteral("group code %1 does not fit its value").arg(code));
        }
    }
    if (chain) {
        const int status = object->setXData(chain);
        zrutRelRb(chain);
        node.check(status, "xdata");
    }
    if (node.boolean("extensionDictionary", false))
        node.check(object->createExtensionDictionary(), "extensionDictionary");
}

class Reader
{
public:
    explicit Reader(ZrDbDatabase* database) : m_database(database), m_data(zrdbData(database)) {}

    void read(const Node& root)
    {
        if (root.text("format") != QLatin1String(kFormat))
            root.fault("format", QStringLiteral("is not %1").arg(quoted(QLatin1String(kFormat))));
        if (root.integer("version", 0) != kVersion)
            root.fault("version", QStringLiteral("is not %1").arg(kVersion));
        readLinetypes(root);
        readNamedObjects(root);
        readTextStyles(root);
        readLayers(root);
        readDimStyles(root);
        readOtherTables(root);
        readBlocks(root);
        readLayouts(root);
        readVariables(root);
        fillCurrentValues();
    }

private:
    template <class Record>
    Record* addRecord(ZrDbObjectId table, Node& node, Record* record)
    {
        std::unique_ptr<Record> owned(record);
        const QString name = node.requiredText("name");
        node.check(record->setName(wide(name)), "name");
        ZrDbObjectPointer<ZrDbSymbolTable> open(table, ZrDb::kForWrite);
        const int status = open->add(record);
        if (status == Zr::eDuplicateKey)
            node.fault("name", QStringLiteral("is used twice"));
        node.check(status, "name");
        owned.release();
        readObjectFields(node, record);
        record->close();
        return record;
    }

    template <class Object>
    Object* addEntry(ZrDbObjectId dictionary, Node& node, Object* object)
    {
        std::unique_ptr<Object> owned(object);
        const QString name = node.requiredText("name");
        if constexpr (!std::is_same_v<Object, ZrDbPlaceHolder>)
            node.check(object->setName(wide(name)), "name");
        ZrDbObjectPointer<ZrDbDictionary> open(dictionary, ZrDb::kForWrite);
        ZrDbObjectId id;
        const int status = open->setAt(wide(name), object, id);
        if (status == Zr::eDuplicateKey)
            node.fault("name", QStringLiteral("is used twice"));
        node.check(status, "name");
        owned.release();
        readObjectFields(node, object);
        object->close();
        return object;
    }

    // A record named in a field; null for an empty name when that is allowed.
    ZrDbObjectId named(const Node& node, const char* key, ZrDbRecordKind kind, bool required) const
    {
        const QString name = node.text(key);
        if (name.isEmpty()) {
            if (required)
                node.fault(key, QStringLiteral("is missing"));
            return ZrDbObjectId();
        }
        const int64_t handle = kind == ZrDbRecordKind::kNone ? blockNamed(name) : m_data.recordNamed(kind, wide(name));
        if (!handle)
            node.fault(key, QStringLiteral("names %1, which the drawing does not have").arg(quoted(name)));
        return ZrDbObjectId(handle);
    }

    int64_t blockNamed(const QString& name) const
    {
        const ZrDbBlockTable* table = zrdbPeek<ZrDbBlockTable>(m_database->blockTableId());
        ZrDbObjectId id;
        return table && table->getIdAt(wide(name), id) == Zr::eOk ? id.handle() : 0;
    }

    int64_t required(const Node& root, const char* list, ZrDbRecordKind kind, const wchar_t* name) const
    {
        const int64_t handle = kind == ZrDbRecordKind::kNone ? blockNamed(QString::fromWCharArray(name))
                                                             : m_data.recordNamed(kind, ZrString(name));
        if (!handle)
            root.fault(list, QStringLiteral("lacks %1, which every drawing has").arg(quoted(QString::fromWCharArray(name))));
        return handle;
    }

    void readLinetypes(const Node& root)
    {
        for (Node& node : root.objects("linetypes")) {
            auto record = std::make_unique<ZrDbLinetypeTableRecord>();
            record->setComments(wide(node.text("comments")));
            node.check(record->setDashes(node.reals("dashes")), "dashes");
            addRecord(m_database->linetypeTableId(), node, record.release());
        }
        m_data.byBlockLinetype = required(root, "linetypes", ZrDbRecordKind::kLinetype, L"ByBlock");
        m_data.byLayerLinetype = required(root, "linetypes", ZrDbRecordKind::kLinetype, L"ByLayer");
        m_data.continuousLinetype = required(root, "linetypes", ZrDbRecordKind::kLinetype, L"Continuous");
    }

    void readNamedObjects(const Node& root)
    {
        for (Node& node : root.objects("materials"))
            addEntry(m_database->materialDictionaryId(), node, new ZrDbMaterial);
        m_data.byLayerMaterial = m_data.recordNamed(ZrDbRecordKind::kMaterial, ZrString(L"ByLayer"));
        for (Node& node : root.objects("plotStyles"))
            addEntry(m_database->plotStyleNameDictionaryId(), node, new ZrDbPlaceHolder);
        for (Node& node : root.objects("tableStyles")) {
            auto style = std::make_unique<ZrDbTableStyle>();
            ZrArray<ZrString> present;
            style->getCellStyles(present);
            for (const QString& cell : node.texts("cellStyles")) {
                if (!present.contains(wide(cell)) && style->createCellStyle(wide(cell)) != Zr::eOk)
                    node.fault("cellStyles", QStringLiteral("%1 is not accepted").arg(quoted(cell)));
            }
            addEntry(m_database->tableStyleDictionaryId(), node, style.release());
        }
    }

    void readTextStyles(const Node& root)
    {
        for (Node& node : root.objects("textStyles")) {
            auto record = std::make_unique<ZrDbTextStyleTableRecord>();
            node.check(record->setTextSize(node.real("size", 0.0)), "size");
            node.check(record->setXScale(node.real("xScale", 1.0)), "xScale");
            node.check(record->setObliquingAngle(node.real("oblique", 0.0)), "oblique");
            record->setIsVertical(node.boolean("vertical", false));
            record->setTextGenerationFlags(node.boolean("backwards", false), node.boolean("upsideDown", false));
            record->setFileName(wide(node.text("font")));
            record->setBigFontFileName(wide(node.text("bigFont")));
            addRecord(m_database->textStyleTableId(), node, record.release());
        }
        // Multileader styles name text styles.
        for (Node& node : root.objects("mleaderStyles")) {
            auto style = std::make_unique<ZrDbMLeaderStyle>();
            style->setTextStyleId(named(node, "textStyle", ZrDbRecordKind::kTextStyle, false));
            addEntry(m_database->mleaderStyleDictionaryId(), node, style.release());
        }
    }

    void readLayers(const Node& root)
    {
        for (Node& node : root.objects("layers")) {
            auto record = std::make_unique<ZrDbLayerTableRecord>();
            ZrCmColor color;
            color.setColorMethod(ZrCmEntityColor::kByACI);
            color.setColorIndex(7);
            if (node.has("color") && !zrdbParseColorText(wide(node.text("color")), color))
                node.fault("color", QStringLiteral("%1 is not a colour").arg(quoted(node.text("color"))));
            record->setColor(color);
            record->setLinetypeObjectId(named(node, "linetype", ZrDbRecordKind::kLinetype, false));
            node.check(record->setLineWeight(static_cast<ZrDb::LineWeight>(node.integer("lineweight", -3))), "lineweight");
            record->setIsFrozen(node.boolean("frozen", false));
            record->setIsOff(node.boolean("off", false));
            record->setIsLocked(node.boolean("locked", false));
            record->setIsHidden(node.boolean("hidden", false));
            record->setIsPlottable(node.boolean("plottable", true));
            record->setMaterialId(named(node, "material", ZrDbRecordKind::kMaterial, false));
            record->setPlotStyleName(wide(node.text("plotStyle")));
            record->setDescription(wide(node.text("description")));
            addRecord(m_database->layerTableId(), node, record.release());
        }
        if (!m_data.recordNamed(ZrDbRecordKind::kLayer, ZrString(L"0")))
            required(root, "layers", ZrDbRecordKind::kLayer, L"0");
    }

    void readDimStyles(const Node& root)
    {
        for (Node& node : root.objects("dimStyles")) {
            auto record = std::make_unique<ZrDbDimStyleTableRecord>();
            record->setDimtxsty(named(node, "textStyle", ZrDbRecordKind::kTextStyle, false));
            node.check(record->setDimscale(node.real("scale", 1.0)), "scale");
            addRecord(m_database->dimStyleTableId(), node, record.release());
        }
    }

    void readOtherTables(const Node& root)
    {
        for (Node& node : root.objects("views")) {
            auto record = std::make_unique<ZrDbViewTableRecord>();
            record->setIsPaperspaceView(node.boolean("paper", false));
            node.check(record->setGeometry(node.point("center"), node.real("width", 100.0), node.real("height", 100.0)),
                       "width");
            addRecord(m_database->viewTableId(), node, record.release());
        }
        for (Node& node : root.objects("ucs")) {
            auto record = std::make_unique<ZrDbUCSTableRecord>();
            const ZrGePoint3d x = node.point("xAxis", ZrGePoint3d(1, 0, 0));
            const ZrGePoint3d y = node.point("yAxis", ZrGePoint3d(0, 1, 0));
            node.check(record->setAxes(node.point("origin"), ZrGeVector3d(x.x, x.y, x.z), ZrGeVector3d(y.x, y.y, y.z)),
                       "xAxis");
            addRecord(m_database->UCSTableId(), node, record.release());
        }
        for (Node& node : root.objects("regApps"))
            addRecord(m_database->regAppTableId(), node, new ZrDbRegAppTableRecord);
    }

    void readBlocks(const Node& root)
    {
        // Every block first: entities may show blocks that come later.
        std::vector<Node> blocks = root.objects("blocks");
        std::vector<ZrDbObjectId> ids;
        for (Node& node : blocks) {
            auto record = std::make_unique<ZrDbBlockTableRecord>();
            record->setIsFromExternalReference(node.boolean("xref", false));
            ids.push_back(addRecord(m_database->blockTableId(), node, record.release())->objectId());
        }
        m_data.modelSpace = required(root, "blocks", ZrDbRecordKind::kNone, L"*Model_Space");
        m_data.paperSpace = required(root, "blocks", ZrDbRecordKind::kNone, L"*Paper_Space");
        for (size_t i = 0; i < blocks.size(); ++i) {
            const std::vector<Node> entities = blocks[i].objects("entities");
            ZrDbObjectPointer<ZrDbBlockTableRecord> block(ids[i], ZrDb::kForWrite);
            for (const Node& entity : entities)
                readEntity(entity, blocks[i].where(), block.object());
        }
    }

    void readEntity(Node node, const QString& block, ZrDbBlockTableRecord* owner)
    {
        node.placeIn(block);
        const QString type = node.requiredText("type");
        std::unique_ptr<ZrDbEntity> entity = makeEntity(node, type);
        if (!entity)
            node.fault("type", QStringLiteral("%1 is not a kind of entity").arg(quoted(type)));
        readCommonProperties(node, entity.get());
        ZrDbObjectId id;
        node.check(owner->appendZrDbEntity(id, entity.get()), "type");
        ZrDbEntity* added = entity.release();
        readObjectFields(node, added);
        added->close();
    }

    void readCommonProperties(const Node& node, ZrDbEntity* entity) const
    {
        // Without a layer of its own an entity is on "0", which every drawing has.
        const ZrDbObjectId layer = node.has("layer") ? named(node, "layer", ZrDbRecordKind::kLayer, true)
                                                     : ZrDbObjectId(m_data.recordNamed(ZrDbRecordKind::kLayer, ZrString(L"0")));
        node.check(entity->setLayer(layer, true, true), "layer");
        ZrCmColor color;
        if (node.has("color") && !zrdbParseColorText(wide(node.text("color")), color))
            node.fault("color", QStringLiteral("%1 is not a colour").arg(quoted(node.text("color"))));
        entity->setColor(color);
        const ZrDbObjectId linetype = named(node, "linetype", ZrDbRecordKind::kLinetype, false);
        if (linetype.isValid())
            entity->setLinetype(linetype);
        node.check(entity->setLinetypeScale(node.real("linetypeScale", 1.0)), "linetypeScale");
        node.check(entity->setLineWeight(static_cast<ZrDb::LineWeight>(node.integer("lineweight", -1))), "lineweight");
        const ZrDbObjectId material = named(node, "material", ZrDbRecordKind::kMaterial, false);
        if (material.isValid())
            entity->setMaterial(material);
        if (node.has("plotStyle"))
            node.check(entity->setPlotStyleName(wide(node.text("plotStyle"))), "plotStyle");
    }

    std::unique_ptr<ZrDbEntity> makeEntity(const Node& node, const QString& type) const
    {
        using Kind = ZrDbRecordKind;
        if (type == QLatin1String("line"))
            return std::make_unique<ZrDbLine>(node.point("start"), node.point("end"));
        if (type == QLatin1String("circle")) {
            auto circle = std::make_unique<ZrDbCircle>();
            node.check(circle->setCenter(node.point("center")), "center");
            node.check(circle->setRadius(node.real("radius", 1.0)), "radius");
            return circle;
        }
        if (type == QLatin1String("arc")) {
            const double radius = node.real("radius", 1.0);
            if (!(radius > 0.0))
                node.fault("radius", QStringLiteral("is not above 0"));
            return std::make_unique<ZrDbArc>(node.point("center"), radius, node.real("start", 0.0), node.real("end", 3.14159265358979323846));
        }
        if (type == QLatin1String("polyline")) {
            auto polyline = std::make_unique<ZrDbPolyline>();
            for (const ZrGePoint3d& p : node.points("points"))
                polyline->addVertexAt(polyline->numVerts(), p);
            polyline->setClosed(node.boolean("closed", false));
            return polyline;
        }
        if (type == QLatin1String("text")) {
            auto text = std::make_unique<ZrDbText>();
            text->setPosition(node.point("position"));
            node.check(text->setHeight(node.real("height", 2.5)), "height");
            text->setRotation(node.real("rotation", 0.0));
            text->setTextString(wide(node.text("text")));
            const ZrDbObjectId style = named(node, "style", Kind::kTextStyle, false);
            if (style.isValid())
                text->setTextStyle(style);
            return text;
        }
        if (type == QLatin1String("mtext")) {
            auto text = std::make_unique<ZrDbMText>();
            text->setLocation(node.point("location"));
            node.check(text->setTextHeight(node.real("height", 2.5)), "height");
            node.check(text->setWidth(node.real("width", 0.0)), "width");
            text->setContents(wide(node.text("contents")));
            const ZrDbObjectId style = named(node, "style", Kind::kTextStyle, false);
            if (style.isValid())
                text->setTextStyle(style);
            return text;
        }
        if (type == QLatin1String("dimension")) {
            auto dimension = std::make_unique<ZrDbAlignedDimension>(node.point("line1"), node.point("line2"),
                                                                   node.point("dimLine"));
            const ZrDbObjectId style = named(node, "style", Kind::kDimStyle, false);
            if (style.isValid())
                dimension->setDimensionStyle(style);
            dimension->setDimensionText(wide(node.text("text")));
            return dimension;
        }
        if (type == QLatin1String("blockReference") || type == QLatin1String("table")) {
            std::unique_ptr<ZrDbBlockReference> reference;
            if (type == QLatin1String("table")) {
                auto table = std::make_unique<ZrDbTable>();
                const ZrDbObjectId style = named(node, "style", Kind::kTableStyle, false);
                if (style.isValid())
                    table->setTableStyle(style);
                // A table is drawn cell by cell: sizes beyond any schedule's are refused.
                for (const char* key : {"rows", "columns"}) {
                    if (node.integer(key, 3) > kMaxTableCells)
                        node.fault(key, QStringLiteral("is above %1").arg(kMaxTableCells));
                }
                node.check(table->setSize(node.integer("rows", 3), node.integer("columns", 3),
                                          node.real("rowHeight", 8.0), node.real("columnWidth", 30.0)),
                           "rows");
                reference = std::move(table);
            } else {
                reference = std::make_unique<ZrDbBlockReference>();
                reference->setBlockTableRecord(named(node, "block", Kind::kNone, true));
                reference->setDynamicBlockTableRecord(named(node, "dynamicBlock", Kind::kNone, false));
            }
            reference->setPosition(node.point("position"));
            node.check(reference->setScaleAndRotation(node.real("scale", 1.0), node.real("rotation", 0.0)), "scale");
            return reference;
        }
        if (type == QLatin1String("mleader")) {
            auto leader = std::make_unique<ZrDbMLeader>();
            const ZrDbObjectId style = named(node, "style", Kind::kMLeaderStyle, false);
            if (style.isValid())
                leader->setMLeaderStyle(style);
            const ZrDbObjectId textStyle = named(node, "textStyle", Kind::kTextStyle, false);
            if (textStyle.isValid())
                leader->setTextStyleId(textStyle);
            leader->setPoints(node.point("arrow"), node.point("textLocation"));
            leader->setContents(wide(node.text("contents")));
            return leader;
        }
        if (type == QLatin1String("hatch")) {
            auto hatch = std::make_unique<ZrDbHatch>();
            hatch->setPattern(wide(node.text("pattern", QStringLiteral("SOLID"))));
            hatch->setLoop(node.points("loop"));
            return hatch;
        }
        if (type == QLatin1String("viewport")) {
            auto viewport = std::make_unique<ZrDbViewport>();
            node.check(viewport->setGeometry(node.point("center"), node.real("width", 297.0), node.real("height", 210.0)),
                       "width");
            node.check(viewport->setNumber(node.integer("number", 1)), "number");
            std::vector<ZrDbObjectId> frozen;
            for (const QString& layer : node.texts("frozenLayers")) {
                const int64_t handle = m_data.recordNamed(Kind::kLayer, wide(layer));
                if (!handle)
                    node.fault("frozenLayers", QStringLiteral("names %1, which the drawing does not have").arg(quoted(layer)));
                frozen.emplace_back(handle);
            }
            viewport->freezeLayersInViewport(frozen);
            return viewport;
        }
        return nullptr;
    }

    void readLayouts(const Node& root)
    {
        for (Node& node : root.objects("layouts")) {
            const QString name = node.requiredText("name");
            const ZrDbObjectId block = named(node, "block", ZrDbRecordKind::kNone, true);
            const int tab = node.integer("tab", 1);
            if (tab < 0)
                node.fault("tab", QStringLiteral("is below 0"));
            const ZrDbBlockTableRecord* record = zrdbPeek<ZrDbBlockTableRecord>(block);
            if (record->isLayout())
                node.fault("block", QStringLiteral("already belongs to a layout"));
            if (m_data.recordNamed(ZrDbRecordKind::kLayout, wide(name)))
                node.fault("name", QStringLiteral("is used twice"));
            const int64_t layout = m_data.addLayout(wide(name), tab, block.handle());
            if (!layout)
                node.fault("name", QStringLiteral("is not accepted"));
            if (node.has("paperViewport")) {
                const int index = node.integer("paperViewport", 0);
                const std::vector<int64_t>& entities = record->entityHandles();
                if (index < 0 || static_cast<size_t>(index) >= entities.size() || !zrdbPeek<ZrDbViewport>(entities[index]))
                    node.fault("paperViewport", QStringLiteral("is not the place of a viewport in its block"));
                ZrDbObjectPointer<ZrDbLayout> open(ZrDbObjectId(layout), ZrDb::kForWrite);
                open->setPaperViewportId(ZrDbObjectId(entities[static_cast<size_t>(index)]));
            }
            if (ZrDbObjectPointer<ZrDbLayout> open(ZrDbObjectId(layout), ZrDb::kForWrite); open)
                readObjectFields(node, open.object());
        }
        if (!m_data.modelLayout())
            root.fault("layouts", QStringLiteral("lack the model's layout (tab 0)"));
        if (!m_data.firstPaperLayout())
            root.fault("layouts", QStringLiteral("lack a paper layout"));
    }

    void readVariables(const Node& root)
    {
        if (!root.has("variables"))
            return;
        const Node variables(root.value("variables"), QStringLiteral("variables"));
        // In the order of the definitions, so that what follows from one is overridden by the next.
        for (int i = 0; i < kVarCmdactive; ++i) {
            const char* key = nullptr;
            const QByteArray name = QString::fromWCharArray(zrdbVariableDefinition(i).name).toLatin1();
            key = name.constData();
            const ZrJsonPtr value = variables.value(key);
            if (!value)
                continue;
            // Numbers are checked before the buffer is made, which a refusal would leave behind.
            const double real = value->isNumber() ? variables.real(key, 0.0) : 0.0;
            const ZrGePoint3d point = value->isArray() ? variables.point(key) : ZrGePoint3d();
            ZrResBuf* rb = zrutNewRb(RTNONE);
            if (value->isString()) {
                zrrbSetString(rb, value->safeStrValueW());
            } else if (value->type() == kZrJsonInt && std::llabs(value->safeIntValue()) <= 32767) {
                rb->restype = RTSHORT;
                rb->resval.rint = static_cast<short>(value->safeIntValue());
            } else if (value->isNumber()) {
                rb->restype = RTREAL;
                rb->resval.rreal = real;
            } else if (value->isArray()) {
                rb->restype = RT3DPOINT;
                rb->resval.rpoint[0] = point.x;
                rb->resval.rpoint[1] = point.y;
                rb->resval.rpoint[2] = point.z;
            }
            const int status = zrdbSetVariable(m_database, ZrString(zrdbVariableDefinition(i).name), rb);
            const QString shown = excerpt(QString::fromStdString(value->toJson().std()));
            zrutRelRb(rb);
            if (status != RTNORM)
                variables.fault(key, QStringLiteral("%1 is not a value it takes").arg(shown));
        }
    }

    // Current values the file does not give take the first record of their kind.
    void fillCurrentValues()
    {
        for (int i = 0; i < kVarCmdactive; ++i) {
            const ZrDbVariableDefinition& definition = zrdbVariableDefinition(i);
            if (definition.kind != ZrDbVariableKind::kRecord || definition.records == ZrDbRecordKind::kUcs
                || m_data.variable(i).integer)
                continue;
            if (const int64_t first = firstRecordOf(definition.records)) {
                ZrDbVariableValue value = m_data.variable(i);
                value.integer = first;
                m_data.changeVariable(i, value);
            }
        }
    }

    int64_t firstRecordOf(ZrDbRecordKind kind) const
    {
        if (kind == ZrDbRecordKind::kLayout)
            return m_data.modelLayout();
        const ZrDbObjectId tables[] = {m_database->layerTableId(), m_database->linetypeTableId(),
                                       m_database->textStyleTableId(), m_database->dimStyleTableId()};
        const ZrDbRecordKind tableKinds[] = {ZrDbRecordKind::kLayer, ZrDbRecordKind::kLinetype,
                                             ZrDbRecordKind::kTextStyle, ZrDbRecordKind::kDimStyle};
        for (size_t i = 0; i < 4; ++i) {
            if (tableKinds[i] != kind)
                continue;
            // A current line type starts "ByLayer", as in a new drawing.
            if (kind == ZrDbRecordKind::kLinetype)
                return m_data.byLayerLinetype;
            const ZrDbSymbolTable* table = zrdbPeek<ZrDbSymbolTable>(tables[i]);
            for (int64_t handle : table->recordHandles()) {
                if (zrdbPeek<ZrDbObject>(handle))
                    return handle;
            }
            return 0;
        }
        const ZrDbObjectId dictionary = kind == ZrDbRecordKind::kMaterial     ? m_database->materialDictionaryId()
            : kind == ZrDbRecordKind::kTableStyle                              ? m_database->tableStyleDictionaryId()
                                                                               : m_database->mleaderStyleDictionaryId();
        const ZrDbDictionary* entries = zrdbPeek<ZrDbDictionary>(dictionary);
        std::unique_ptr<ZrDbDictionaryIterator> it(entries->newIterator());
        return it->done() ? 0 : it->objectId().handle();
    }

    ZrDbDatabase* m_database;
    ZrDbData& m_data;
};

// Writing.

ZrJsonPtr newObject() { return ElementValue::createObject(kZrJsonObject); }
ZrJsonPtr newArray() { return ElementValue::createObject(kZrJsonArray); }

ZrJsonPtr pointJson(const ZrGePoint3d& p)
{
    ZrJsonPtr array = newArray();
    for (double c : {p.x, p.y, p.z})
        array->append(ElementValue::fromReal(c));
    return array;
}

void setText(const ZrJsonPtr& object, const char* key, const ZrString& text)
{
    object->SetDataSW(key, text);
}

template <class T>
ZrString nameOf(ZrDbObjectId id)
{
    const T* record = zrdbPeek<T>(id);
    return record ? record->name() : ZrString();
}

ZrString dictionaryNameOf(ZrDbObjectId dictionary, ZrDbObjectId id)
{
    const ZrDbDictionary* entries = zrdbPeek<ZrDbDictionary>(dictionary);
    ZrString name;
    if (entries)
        entries->nameAt(id, name);
    return name;
}

void writeObjectFields(const ZrJsonPtr& json, const ZrDbObject* object)
{
    if (ZrResBuf* chain = object->xData()) {
        ZrJsonPtr groups = newArray();
        for (const ZrResBuf* rb = chain; rb; rb = rb->rbnext) {
            ZrJsonPtr pair = newArray();
            pair->append(ElementValue::fromInt(rb->restype));
            switch (zrrbValueOf(rb->restype)) {
            case ZrRbValue::kString:
                pair->append(ElementValue::fromString(ZrString(rb->resval.rstring).toUtf8()));
                break;
            case ZrRbValue::kReal: pair->append(ElementValue::fromReal(rb->resval.rreal)); break;
            case ZrRbValue::kShort: pair->append(ElementValue::fromInt(rb->resval.rint)); break;
            case ZrRbValue::kLong: pair->append(ElementValue::fromInt(rb->resval.rlong)); break;
            case ZrRbValue::kPoint:
                pair->append(pointJson(ZrGePoint3d(rb->resval.rpoint[0], rb->resval.rpoint[1], rb->resval.rpoint[2])));
                break;
            case ZrRbValue::kNone: continue;
            }
            groups->append(pair);
        }
        zrutRelRb(chain);
        json->SetDataJ("xdata", groups);
    }
    if (!object->extensionDictionary().isErased())
        json->SetDataB("extensionDictionary", true);
}

class Writer
{
public:
    explicit Writer(const ZrDbDatabase* database) : m_database(database) {}

    QByteArray write() const
    {
        ZrJsonPtr root = newObject();
        root->SetDataS("format", kFormat);
        root->SetDataI("version", kVersion);
        root->SetDataJ("linetypes", records<ZrDbLinetypeTableRecord>(m_database->linetypeTableId(), [](auto& json, auto* r) {
            setText(json, "comments", r->comments());
            ZrJsonPtr dashes = newArray();
            for (int i = 0; i < r->numDashes(); ++i)
                dashes->append(ElementValue::fromReal(r->dashLengthAt(i)));
            json->SetDataJ("dashes", dashes);
        }));
        root->SetDataJ("materials", entries<ZrDbMaterial>(m_database->materialDictionaryId(), nullptr));
        root->SetDataJ("plotStyles", entries<ZrDbPlaceHolder>(m_database->plotStyleNameDictionaryId(), nullptr));
        root->SetDataJ("tableStyles", entries<ZrDbTableStyle>(m_database->tableStyleDictionaryId(), [](auto& json, auto* s) {
            ZrArray<ZrString> cells;
            s->getCellStyles(cells);
            ZrJsonPtr list = newArray();
            for (const ZrString& cell : cells)
                list->append(ElementValue::fromString(cell.toUtf8()));
            json->SetDataJ("cellStyles", list);
        }));
        root->SetDataJ("textStyles", records<ZrDbTextStyleTableRecord>(m_database->textStyleTableId(), [](auto& json, auto* r) {
            json->SetDataD("size", r->textSize());
            json->SetDataD("xScale", r->xScale());
            json->SetDataD("oblique", r->obliquingAngle());
            json->SetDataB("vertical", r->isVertical());
            json->SetDataB("backwards", r->isBackwards());
            json->SetDataB("upsideDown", r->isUpsideDown());
            setText(json, "font", r->fileName());
            setText(json, "bigFont", r->bigFontFileName());
        }));
        root->SetDataJ("mleaderStyles", entries<ZrDbMLeaderStyle>(m_database->mleaderStyleDictionaryId(), [](auto& json, auto* s) {
            setText(json, "textStyle", nameOf<ZrDbTextStyleTableRecord>(s->textStyleId()));
        }));
        const ZrDbObjectId materials = m_database->materialDictionaryId();
        root->SetDataJ("layers", records<ZrDbLayerTableRecord>(m_database->layerTableId(), [materials](auto& json, auto* r) {
            setText(json, "color", zrdbColorText(r->color()));
            setText(json, "linetype", nameOf<ZrDbLinetypeTableRecord>(r->linetypeObjectId()));
            json->SetDataI("lineweight", r->lineWeight());
            json->SetDataB("frozen", r->isFrozen());
            json->SetDataB("off", r->isOff());
            json->SetDataB("locked", r->isLocked());
            json->SetDataB("hidden", r->isHidden());
            json->SetDataB("plottable", r->isPlottable());
            setText(json, "material", dictionaryNameOf(materials, r->materialId()));
            setText(json, "plotStyle", r->plotStyleName());
            setText(json, "description", r->description());
        }));
        root->SetDataJ("dimStyles", records<ZrDbDimStyleTableRecord>(m_database->dimStyleTableId(), [](auto& json, auto* r) {
            setText(json, "textStyle", nameOf<ZrDbTextStyleTableRecord>(r->dimtxsty()));
            json->SetDataD("scale", r->dimscale());
        }));
        root->SetDataJ("views", records<ZrDbViewTableRecord>(m_database->viewTableId(), [](auto& json, auto* r) {
            json->SetDataB("paper", r->isPaperspaceView());
            json->SetDataJ("center", pointJson(r->centerPoint()));
            json->SetDataD("width", r->width());
            json->SetDataD("height", r->height());
        }));
        root->SetDataJ("ucs", records<ZrDbUCSTableRecord>(m_database->UCSTableId(), [](auto& json, auto* r) {
            json->SetDataJ("origin", pointJson(r->origin()));
            json->SetDataJ("xAxis", pointJson(ZrGePoint3d(r->xAxis().x, r->xAxis().y, r->xAxis().z)));
            json->SetDataJ("yAxis", pointJson(ZrGePoint3d(r->yAxis().x, r->yAxis().y, r->yAxis().z)));
        }));
        root->SetDataJ("regApps", records<ZrDbRegAppTableRecord>(m_database->regAppTableId(), nullptr));
        root->SetDataJ("blocks", records<ZrDbBlockTableRecord>(m_database->blockTableId(), [this](auto& json, auto* r) {
            json->SetDataB("xref", r->isFromExternalReference());
            ZrJsonPtr list = newArray();
            for (int64_t handle : r->entityHandles()) {
                if (const ZrDbEntity* entity = zrdbPeek<ZrDbEntity>(handle))
                    list->append(entityJson(entity));
            }
            json->SetDataJ("entities", list);
        }));
        root->SetDataJ("layouts", entries<ZrDbLayout>(m_database->layoutDictionaryId(), [](auto& json, auto* layout) {
            const ZrDbObjectId block = layout->getBlockTableRecordId();
            setText(json, "block", nameOf<ZrDbBlockTableRecord>(block));
            json->SetDataI("tab", layout->getTabOrder());
            const ZrDbBlockTableRecord* record = zrdbPeek<ZrDbBlockTableRecord>(block);
            int index = 0;
            for (int64_t handle : record ? record->entityHandles() : std::vector<int64_t>()) {
                if (!zrdbPeek<ZrDbEntity>(handle))
                    continue;
                if (handle == layout->paperViewportId().handle())
                    json->SetDataI("paperViewport", index);
                ++index;
            }
        }));
        root->SetDataJ("variables", variables());
        return QByteArray::fromStdString(root->toJson(true).std());
    }

private:
    // The live records of a table, each with its name, what `fields` adds and the common fields.
    template <class Record, class Fields>
    ZrJsonPtr records(ZrDbObjectId tableId, Fields fields) const
    {
        ZrJsonPtr list = newArray();
        const ZrDbSymbolTable* table = zrdbPeek<ZrDbSymbolTable>(tableId);
        for (int64_t handle : table ? table->recordHandles() : std::vector<int64_t>()) {
            const Record* record = zrdbPeek<Record>(handle);
            if (!record)
                continue;
            ZrJsonPtr json = newObject();
            setText(json, "name", record->name());
            if constexpr (!std::is_same_v<Fields, std::nullptr_t>)
                fields(json, record);
            writeObjectFields(json, record);
            list->append(json);
        }
        return list;
    }

    template <class Object, class Fields>
    ZrJsonPtr entries(ZrDbObjectId dictionaryId, Fields fields) const
    {
        ZrJsonPtr list = newArray();
        const ZrDbDictionary* dictionary = zrdbPeek<ZrDbDictionary>(dictionaryId);
        if (!dictionary)
            return list;
        std::unique_ptr<ZrDbDictionaryIterator> it(dictionary->newIterator());
        for (; !it->done(); it->next()) {
            const Object* object = zrdbPeek<Object>(it->objectId());
            if (!object)
                continue;
            ZrJsonPtr json = newObject();
            setText(json, "name", it->name());
            if constexpr (!std::is_same_v<Fields, std::nullptr_t>)
                fields(json, object);
            writeObjectFields(json, object);
            list->append(json);
        }
        return list;
    }

    ZrJsonPtr entityJson(const ZrDbEntity* entity) const
    {
        ZrJsonPtr json = newObject();
        const auto type = [&json](const char* name) { json->SetDataS("type", name); };
        if (const ZrDbLine* line = ZrDbLine::cast(entity)) {
            type("line");
            json->SetDataJ("start", pointJson(line->startPoint()));
            json->SetDataJ("end", pointJson(line->endPoint()));
        } else if (const ZrDbCircle* circle = ZrDbCircle::cast(entity)) {
            type("circle");
            json->SetDataJ("center", pointJson(circle->center()));
            json->SetDataD("radius", circle->radius());
        } else if (const ZrDbArc* arc = ZrDbArc::cast(entity)) {
            type("arc");
            json->SetDataJ("center", pointJson(arc->center()));
            json->SetDataD("radius", arc->radius());
            json->SetDataD("start", arc->startAngle());
            json->SetDataD("end", arc->endAngle());
        } else if (const ZrDbPolyline* polyline = ZrDbPolyline::cast(entity)) {
            type("polyline");
            ZrJsonPtr points = newArray();
            for (int i = 0; i < polyline->numVerts(); ++i)
                points->append(pointJson(polyline->vertexAt(i)));
            json->SetDataJ("points", points);
            json->SetDataB("closed", polyline->isClosed());
        } else if (const ZrDbText* text = ZrDbText::cast(entity)) {
            type("text");
            json->SetDataJ("position", pointJson(text->position()));
            json->SetDataD("height", text->height());
            json->SetDataD("rotation", text->rotation());
            setText(json, "text", text->textString());
            setText(json, "style", nameOf<ZrDbTextStyleTableRecord>(text->textStyle()));
        } else if (const ZrDbMText* mtext = ZrDbMText::cast(entity)) {
            type("mtext");
            json->SetDataJ("location", pointJson(mtext->location()));
            json->SetDataD("height", mtext->textHeight());
            json->SetDataD("width", mtext->width());
            setText(json, "contents", mtext->contents());
            setText(json, "style", nameOf<ZrDbTextStyleTableRecord>(mtext->textStyle()));
        } else if (const ZrDbAlignedDimension* dimension = ZrDbAlignedDimension::cast(entity)) {
            type("dimension");
            json->SetDataJ("line1", pointJson(dimension->xLine1Point()));
            json->SetDataJ("line2", pointJson(dimension->xLine2Point()));
            json->SetDataJ("dimLine", pointJson(dimension->dimLinePoint()));
            setText(json, "style", nameOf<ZrDbDimStyleTableRecord>(dimension->dimensionStyle()));
            setText(json, "text", dimension->dimensionText());
        } else if (const ZrDbBlockReference* reference = ZrDbBlockReference::cast(entity)) {
            if (const ZrDbTable* table = ZrDbTable::cast(entity)) {
                type("table");
                setText(json, "style", dictionaryNameOf(m_database->tableStyleDictionaryId(), table->tableStyle()));
                json->SetDataI("rows", table->numRows());
                json->SetDataI("columns", table->numColumns());
                json->SetDataD("rowHeight", table->rowHeight());
                json->SetDataD("columnWidth", table->columnWidth());
            } else {
                type("blockReference");
                setText(json, "block", nameOf<ZrDbBlockTableRecord>(reference->blockTableRecord()));
                if (reference->dynamicBlockTableRecord() != reference->blockTableRecord())
                    setText(json, "dynamicBlock", nameOf<ZrDbBlockTableRecord>(reference->dynamicBlockTableRecord()));
            }
            json->SetDataJ("position", pointJson(reference->position()));
            json->SetDataD("scale", reference->scale());
            json->SetDataD("rotation", reference->rotation());
        } else if (const ZrDbMLeader* leader = ZrDbMLeader::cast(entity)) {
            type("mleader");
            setText(json, "style", dictionaryNameOf(m_database->mleaderStyleDictionaryId(), leader->MLeaderStyle()));
            setText(json, "textStyle", nameOf<ZrDbTextStyleTableRecord>(leader->textStyleId()));
            json->SetDataJ("arrow", pointJson(leader->arrowPoint()));
            json->SetDataJ("textLocation", pointJson(leader->textLocation()));
            setText(json, "contents", leader->contents());
        } else if (const ZrDbHatch* hatch = ZrDbHatch::cast(entity)) {
            type("hatch");
            setText(json, "pattern", hatch->patternName());
            ZrJsonPtr loop = newArray();
            for (const ZrGePoint3d& p : hatch->loop())
                loop->append(pointJson(p));
            json->SetDataJ("loop", loop);
        } else if (const ZrDbViewport* viewport = ZrDbViewport::cast(entity)) {
            type("viewport");
            json->SetDataJ("center", pointJson(viewport->centerPoint()));
            json->SetDataD("width", viewport->width());
            json->SetDataD("height", viewport->height());
            json->SetDataI("number", viewport->number());
            ZrJsonPtr frozen = newArray();
            const ZrDbSymbolTable* layers = zrdbPeek<ZrDbSymbolTable>(m_database->layerTableId());
            for (int64_t layer : layers->recordHandles()) {
                if (zrdbPeek<ZrDbLayerTableRecord>(layer) && viewport->isLayerFrozenInViewport(ZrDbObjectId(layer)))
                    frozen->append(ElementValue::fromString(nameOf<ZrDbLayerTableRecord>(ZrDbObjectId(layer)).toUtf8()));
            }
            json->SetDataJ("frozenLayers", frozen);
        } else {
            return json;
        }
        setText(json, "layer", entity->layer());
        setText(json, "color", zrdbColorText(entity->color()));
        setText(json, "linetype", entity->linetype());
        json->SetDataD("linetypeScale", entity->linetypeScale());
        json->SetDataI("lineweight", entity->lineWeight());
        setText(json, "material", entity->material());
        setText(json, "plotStyle", entity->plotStyleName());
        writeObjectFields(json, entity);
        return json;
    }

    ZrJsonPtr variables() const
    {
        ZrJsonPtr json = newObject();
        for (int i = 0; i < kVarCmdactive; ++i) {
            // TILEMODE follows from CTAB.
            if (i == kVarTilemode)
                continue;
            const ZrDbVariableDefinition& definition = zrdbVariableDefinition(i);
            ZrResBuf* rb = zrutNewRb(RTNONE);
            const QByteArray key = QString::fromWCharArray(definition.name).toLatin1();
            if (zrdbGetVariable(m_database, ZrString(definition.name), rb) == RTNORM) {
                switch (rb->restype) {
                case RTSTR:
                    // A record variable without a record is left to the reader's defaults.
                    if (definition.kind != ZrDbVariableKind::kRecord || (rb->resval.rstring && *rb->resval.rstring)
                        || definition.records == ZrDbRecordKind::kUcs)
                        json->SetDataSW(key.constData(), ZrString(rb->resval.rstring));
                    break;
                case RTSHORT: json->SetDataI(key.constData(), rb->resval.rint); break;
                case RTREAL: json->SetDataD(key.constData(), rb->resval.rreal); break;
                case RT3DPOINT:
                    json->SetDataJ(key.constData(),
                                   pointJson(ZrGePoint3d(rb->resval.rpoint[0], rb->resval.rpoint[1], rb->resval.rpoint[2])));
                    break;
                default: break;
                }
            }
            zrutRelRb(rb);
        }
        return json;
    }

    const ZrDbDatabase* m_database;
};

} // namespace

bool zrdbReadDrawing(ZrDbDatabase* database, const QByteArray& text, QString* error)
{
    ZrJsonParseError parseError;
    const ZrJsonPtr root = ElementValue::parse(text.constData(), static_cast<size_t>(text.size()), &parseError);
    if (!root) {
        if (error)
            *error = QStringLiteral("line %1, column %2: %3")
                         .arg(parseError.line)
                         .arg(parseError.column)
                         .arg(parseError.message.toQString());
        return false;
    }
    ZrDbQuiet quiet(database);
    try {
        Reader(database).read(Node(root, QStringLiteral("the drawing")));
    } catch (const FileFault& fault) {
        if (error)
            *error = fault.message;
        return false;
    }
    return true;
}

QByteArray zrdbWriteDrawing(const ZrDbDatabase* database) { return Writer(database).write(); }

// The helpers that read the drawing for the controls, and the layer changes of the layer panel.

#include "controlstesthelpers.h"
#include "zrtestmain.h"

#include "zrqthelper.h"

#include "zrdbdict.h"
#include "zrgiraster.h"
#include "zrlogger.h"
#include "zrresbuf.h"

#include <QObject>
#include <memory>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/spdlog.h>
#include <sstream>

using namespace ControlsTest;

namespace {

QStringList texts(const ZrArray<ZrString>& strings)
{
    QStringList out;
    for (const ZrString& s : strings)
        out << s.toQString();
    return out;
}

ZrDbObjectId addBlock(const QString& name, bool externalReference = false)
{
    auto* block = new ZrDbBlockTableRecord;
    block->setIsFromExternalReference(externalReference);
    return addRecord(&ZrDbDatabase::getBlockTable, block, name);
}

ZrDbObjectId addTextStyle(const QString& name, ZrResBuf* xdata)
{
    auto* style = new ZrDbTextStyleTableRecord;
    const ZrDbObjectId id = addRecord(&ZrDbDatabase::getTextStyleTable, style, name);
    ZrDbObjectPointer<ZrDbTextStyleTableRecord> record(id, ZrDb::kForWrite);
    record->setXData(xdata);
    zrutRelRb(xdata);
    return id;
}

struct Annotation
{
    bool annotative = false;
    bool match = false;
};

Annotation annotationOf(ZrDbObjectId style)
{
    Annotation result;
    ZrDbObjectPointer<ZrDbTextStyleTableRecord> record(style, ZrDb::kForRead);
    zrqthelper::getAnnotationAndMatch(record.object(), result.annotative, result.match);
    return result;
}

template <class Record, class Read>
auto readRecord(ZrDbObjectId id, Read read) -> decltype(read(static_cast<const Record*>(nullptr)))
{
    ZrDbObjectPointer<Record> record(id, ZrDb::kForRead);
    return read(record.object());
}

QVector<int> ucsTypes(const ZrArray<zrqthelper::ZrsiUcsInfoItem>& rows)
{
    QVector<int> types;
    for (const auto& row : rows)
        types << row.type;
    return types;
}

// The line type scale of the one line the last picture was asked for; 0 when there was none.
double lastLineTypeScale()
{
    const ZrHostControl::EntityImageRequest request = ZrHostControl::lastEntityImageRequest();
    return request.entities.size() == 1 ? request.entities[0].linetypeScale : 0.0;
}

bool isOff(ZrDbObjectId layer) { return readRecord<ZrDbLayerTableRecord>(layer, [](auto* r) { return r->isOff(); }); }
bool isFrozen(ZrDbObjectId layer)
{
    return readRecord<ZrDbLayerTableRecord>(layer, [](auto* r) { return r->isFrozen(); });
}

} // namespace

class TestDrawingHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host.reset(new Host); }
    void cleanup() { m_host.reset(); }

    void layerListSortsByCaseAndLeavesStarsOut()
    {
        // The table ignores case, so each initial appears once.
        for (const char* name : {"banana", "Apple", "cherry", "x*y", "Date"})
            addLayer(QString::fromLatin1(name));
        addLayer(QStringLiteral("Hidden"), {true, false, true, false});
        ZrArray<zrqthelper::SigleLayerData> layers;
        layers.append(zrqthelper::SigleLayerData());
        zrqthelper::getLayerInfos(layers);
        QStringList names;
        for (const auto& layer : layers)
            names << layer.name.toQString();
        QCOMPARE(names, (QStringList{QStringLiteral("0"), QStringLiteral("Apple"), QStringLiteral("Date"),
                                     QStringLiteral("Hidden"), QStringLiteral("banana"), QStringLiteral("cherry")}));
        const zrqthelper::SigleLayerData& hidden = layers[3];
        QVERIFY(hidden.hidden && hidden.frozen && !hidden.locked && !hidden.off);
    }

    void longLayerListsKeepTheOrderOfTheComparison()
    {
        // Enough names, with long shared prefixes, names that begin others, case and characters
        // beyond Latin, that the list is sorted by character positions rather than pair by pair.
        QStringList added;
        const QStringList stems{QStringLiteral("A-WALL"), QStringLiteral("a-wall"), QStringLiteral("图层"),
                                QStringLiteral("A-WALL-EXIST"), QStringLiteral("Z")};
        for (const QString& stem : stems) {
            for (int i = 0; i < 40; ++i) {
                const QString name = i % 7 == 0 ? stem + QString(i / 7, QLatin1Char('-')) : stem + QString::number(i * 37 % 101);
                if (!added.contains(name, Qt::CaseInsensitive)) {
                    addLayer(name, {name.endsWith(QLatin1Char('7'))});
                    added << name;
                }
            }
        }
        ZrArray<zrqthelper::SigleLayerData> layers;
        zrqthelper::getLayerInfos(layers);
        for (int i = 1; i < layers.length(); ++i)
            QVERIFY2(!zrqthelper::compareLayerInfo(layers[i], layers[i - 1]), qPrintable(layers[i].name.toQString()));
        // Every name comes out once, with the records it came with.
        QStringList names;
        for (const zrqthelper::SigleLayerData& layer : layers) {
            names << layer.name.toQString();
            QCOMPARE(layer.frozen, layer.name.toQString().endsWith(QLatin1Char('7')));
        }
        added << QStringLiteral("0");
        names.sort();
        added.sort();
        QCOMPARE(names, added);
    }

    void blockNamesLeaveSpacesReferencesAndAnonymousOut()
    {
        const ZrDbObjectId door = addBlock(QStringLiteral("Door"));
        addBlock(QStringLiteral("Chair"));
        addBlock(QStringLiteral("*Model_Space_Copy"));
        addBlock(QStringLiteral("*MODEL_SPAC"));
        addBlock(QStringLiteral("*U12"));
        addBlock(QStringLiteral("Site|Tree"));
        addBlock(QStringLiteral("Survey"), true);
        ZrArray<ZrString> names;
        zrqthelper::getBlockNames(names);
        QCOMPARE(texts(names), (QStringList{QStringLiteral("*MODEL_SPAC"), QStringLiteral("Chair"), QStringLiteral("Door")}));

        addEntity(new ZrDbBlockReference(ZrGePoint3d(0, 0, 0), door));
        zrqthelper::getBlockNames(names, nullptr, true);
        QCOMPARE(texts(names), QStringList{QStringLiteral("Door")});
    }

    void ucsRowsFollowTheCurrentSystemAndItsHistory()
    {
        ZrArray<zrqthelper::ZrsiUcsInfoItem> rows;
        zrqthelper::getUcses(rows);
        QCOMPARE(ucsTypes(rows), (QVector<int>{7, 1, 2, 5, 6, 3, 4}));
        QCOMPARE(rows[0].name.toQString(), QStringLiteral("世界"));

        auto* plan = new ZrDbUCSTableRecord;
        plan->setAxes(ZrGePoint3d(1, 2, 0), ZrGeVector3d::kXAxis, ZrGeVector3d::kYAxis);
        const ZrDbObjectId planId = addRecord(&ZrDbDatabase::getUCSTable, plan, QStringLiteral("Plan"));
        db()->setUcs(false, ZrDbObjectId(), ZrGePoint3d(5, 5, 0), ZrGeVector3d::kXAxis, ZrGeVector3d::kYAxis);
        zrqthelper::getUcses(rows);
        QCOMPARE(ucsTypes(rows), (QVector<int>{0, 7, 9, 1, 2, 5, 6, 3, 4, 8}));
        QCOMPARE(rows[0].name.toQString(), QStringLiteral("未命名"));
        QCOMPARE(rows[2].name.toQString(), QStringLiteral("上一个"));
        QVERIFY(rows[2].id.isNull());
        QCOMPARE(rows[9].name.toQString(), QStringLiteral("Plan"));
        QCOMPARE(rows[9].id, planId);

        // A named system current: no unnamed row.
        db()->setUcs(false, planId, ZrGePoint3d(1, 2, 0), ZrGeVector3d::kXAxis, ZrGeVector3d::kYAxis);
        zrqthelper::getUcses(rows);
        QCOMPARE(ucsTypes(rows), (QVector<int>{7, 9, 1, 2, 5, 6, 3, 4, 8}));

        // Paper space keeps a history of its own.
        QCOMPARE(db()->setTilemode(false), 0);
        zrqthelper::getUcses(rows);
        QCOMPARE(ucsTypes(rows), (QVector<int>{7, 1, 2, 5, 6, 3, 4, 8}));
    }

    void previousUcsNeedsADocument()
    {
        const ZrDbDatabasePtr drawing(db());
        drawing->setUcs(false, ZrDbObjectId(), ZrGePoint3d(5, 5, 0), ZrGeVector3d::kXAxis, ZrGeVector3d::kYAxis);
        CXuDocManager* documents = zrDocManagerPtr();
        CXuDocument* document = documents->curDocument();
        documents->setCurDocument(nullptr);
        ZrArray<zrqthelper::ZrsiUcsInfoItem> rows;
        zrqthelper::getUcses(rows, drawing.get());
        documents->setCurDocument(document);
        QCOMPARE(ucsTypes(rows), (QVector<int>{0, 7, 1, 2, 5, 6, 3, 4}));
    }

    void lineTypePreviews()
    {
        ZrSmartPtr<ZrGiRasterImage> image;
        QCOMPARE(zrqthelper::getLineTypeRasterImage(ZrString(L"continuous"), 80, 20, image), db()->continuousLinetype());
        QVERIFY(image);
        QCOMPARE(image->pixelWidth(), 80);
        QCOMPARE(image->pixelHeight(), 20);
        const ZrHostControl::EntityImageRequest request = ZrHostControl::lastEntityImageRequest();
        QCOMPARE(request.entities.size(), size_t(1));
        QCOMPARE(request.entities[0].linetype, db()->continuousLinetype());
        QVERIFY(request.options);
        QCOMPARE(request.options->GetVarI("width"), 80);
        QCOMPARE(request.options->GetVarI("height"), 20);
        QVERIFY(request.options->GetVarB("bfillbackground"));
        // True asks for the palette's base colour, a number would be a colour of its own.
        const ZrJsonPtr background = request.options->safeProperty_ptr("background");
        QVERIFY(background && background->isBool() && background->safeBoolValue());

        QVERIFY(zrqthelper::getLineTypeRasterImage(ZrString(), 80, 20, image).isNull());
        QVERIFY(!image);
        QVERIFY(zrqthelper::getLineTypeRasterImage(ZrString(L"Continuous"), 0, 20, image).isNull());
        QVERIFY(!image);
        QVERIFY(zrqthelper::getLineTypeRasterImage(ZrString(L"Missing"), 80, 20, image).isNull());

        QStringList seen;
        QVector<ZrDbObjectId> ids;
        // "ByLayer" stands for the line type of the current layer.
        const ZrDbObjectId dashed = addLineType(QStringLiteral("DASHED"), {5.0, -2.5});
        {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(db()->clayer(), ZrDb::kForWrite);
            layer->setLinetypeObjectId(dashed);
        }
        zrqthelper::getLineTypeInfo(60, 16, [&](ZrSmartPtr<ZrGiRasterImage>& picture, ZrString& name, ZrDbObjectId& id) {
            QVERIFY(picture);
            seen << name.toQString();
            ids << id;
        });
        QCOMPARE(seen, (QStringList{QStringLiteral("ByBlock"), QStringLiteral("ByLayer"), QStringLiteral("Continuous"),
                                    QStringLiteral("DASHED")}));
        QCOMPARE(ids[1], dashed);
        QCOMPARE(ids[3], dashed);
    }

    void lineTypeScaleFitsThePatternToThePicture()
    {
        QCOMPARE(db()->setLtscale(4.0), 0);
        ZrSmartPtr<ZrGiRasterImage> image;
        // Without a pattern the line is drawn at 1 / LTSCALE.
        zrqthelper::getLineTypeRasterImage(ZrString(L"Continuous"), 80, 20, image);
        QCOMPARE(lastLineTypeScale(), 0.25);

        // 2.5 repeats of the 7.5 unit pattern span the 70 pixels drawn on, at LTSCALE.
        const ZrDbObjectId dashed = addLineType(QStringLiteral("DASHED"), {5.0, -2.5});
        QCOMPARE(zrqthelper::getLineTypeRasterImage(ZrString(L"dashed"), 80, 20, image), dashed);
        QCOMPARE(lastLineTypeScale(), 70.0 / (2.5 * 7.5 * 4.0));

        // "ByLayer" is drawn with the line type of the current layer and its pattern.
        {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(db()->clayer(), ZrDb::kForWrite);
            layer->setLinetypeObjectId(dashed);
        }
        QCOMPARE(zrqthelper::getLineTypeRasterImage(ZrString(L"ByLayer"), 80, 20, image), dashed);
        QCOMPARE(ZrHostControl::lastEntityImageRequest().entities[0].linetype, dashed);
        QCOMPARE(lastLineTypeScale(), 70.0 / (2.5 * 7.5 * 4.0));
    }

    void changeLayerStatusAsksAndRefuses()
    {
        const ZrDbObjectId current = db()->clayer();
        const ZrString name(layerName(current));

        ZrHostControl::pushMessageBoxAnswer(6);
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_OnOff, name, ZrCmColor()), 0);
        QVERIFY(!isOff(current));
        ZrHostControl::pushMessageBoxAnswer(7);
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_OnOff, name, ZrCmColor()), 1);
        QVERIFY(isOff(current));

        ZrHostControl::pushMessageBoxAnswer(1);
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_Freeze, name, ZrCmColor()), 0);
        QVERIFY(!isFrozen(current));

        const QVector<ZrHostControl::MessageRecord> log = ZrHostControl::messageLog();
        QCOMPARE(log.size(), 3);
        QCOMPARE(log[0].flags, 68);
        QCOMPARE(log[0].text, QStringLiteral("当前图层将被关闭。\n是否要使当前图层保持打开状态?"));
        QCOMPARE(log[2].flags, 64);
        QCOMPARE(log[2].text, QStringLiteral("不能冻结当前图层\n"));
    }

    void changeLayerStatusTogglesOtherLayers()
    {
        const ZrDbObjectId wall = addLayer(QStringLiteral("Wall"));
        const ZrString name(L"wall");
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_Freeze, name, ZrCmColor()), 1);
        QVERIFY(isFrozen(wall));
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_Freeze, name, ZrCmColor()), 0);
        QVERIFY(!isFrozen(wall));
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_Lock, name, ZrCmColor()), 1);
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_Color, name, aci(5)), 1);
        QCOMPARE(readRecord<ZrDbLayerTableRecord>(wall, [](auto* r) { return r->color().colorIndex(); }), uint16_t(5));
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_Lock, ZrString(L"Missing"), ZrCmColor()), 0);
        QVERIFY(ZrHostControl::messageLog().isEmpty());
        // The changes of one turn of the event loop stand as one step under the panel's word.
        QTRY_COMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("图层控制"));
        QVERIFY(ZrHostControl::undo());
        QVERIFY(!readRecord<ZrDbLayerTableRecord>(wall, [](auto* r) { return r->isLocked(); }));
        QVERIFY(readRecord<ZrDbLayerTableRecord>(wall, [](auto* r) { return r->color(); }) != aci(5));
    }

    void annotativeDataMustHaveItsShape()
    {
        const ZrDbObjectId good = addTextStyle(
            QStringLiteral("Anno"), zrutBuildList(1001, L"AcadAnnotative", 1000, L"AnnotativeData", 1002, L"{", 1070, 1,
                                                  1070, 1, 1002, L"}", 0));
        {
            ZrDbObjectPointer<ZrDbTextStyleTableRecord> record(good, ZrDb::kForWrite);
            ZrResBuf* po = zrutBuildList(1001, L"AcadAnnoPO", 1070, 1, 0);
            record->setXData(po);
            zrutRelRb(po);
        }
        const ZrDbObjectId bad = addTextStyle(
            QStringLiteral("Odd"), zrutBuildList(1001, L"AcadAnnotative", 1000, L"AnnotativeData", 1002, L"{", 1070, 2,
                                                 1070, 1, 1002, L"}", 0));
        QVERIFY(annotationOf(good).annotative);
        QVERIFY(annotationOf(good).match);
        QVERIFY(!annotationOf(bad).annotative);
        QVERIFY(!annotationOf(bad).match);
        QVERIFY(!annotationOf(db()->textstyle()).annotative);
    }

    void cellStylesDescendWithDisplayNames()
    {
        ZrDbObjectId standard;
        {
            ZrDbObjectPointer<ZrDbDictionary> styles(db()->tableStyleDictionaryId(), ZrDb::kForRead);
            styles->getAt(ZrString(L"Standard"), standard);
        }
        {
            ZrDbObjectPointer<ZrDbTableStyle> style(standard, ZrDb::kForWrite);
            style->createCellStyle(ZrString(L"Custom"));
            style->createCellStyle(ZrString(L"alpha"));
        }
        ZrArray<ZrString> names;
        names.append(ZrString(L"kept"));
        zrqthelper::getTableCellStyleNames(names, ZrDbObjectId::kNull);
        QCOMPARE(texts(names), QStringList{QStringLiteral("kept")});
        zrqthelper::getTableCellStyleNames(names, standard);
        QCOMPARE(texts(names), (QStringList{QStringLiteral("表头"), QStringLiteral("标题"), QStringLiteral("数据"),
                                            QStringLiteral("Custom"), QStringLiteral("alpha")}));
    }

    void layerInPlayFollowsTheSelection()
    {
        const ZrDbObjectId dashed = addLineType(QStringLiteral("DASHED"), {5.0, -2.5});
        auto* red = new ZrDbLayerTableRecord;
        red->setColor(aci(1));
        red->setLinetypeObjectId(dashed);
        const ZrDbObjectId redLayer = addRecord(&ZrDbDatabase::getLayerTable, red, QStringLiteral("Red"));
        const ZrDbObjectId byLayer = db()->byLayerLinetype();

        QVERIFY(zrqthelper::getCLayerColor() != aci(1));
        QCOMPARE(zrqthelper::findLineStyleTableRecordByName(ZrString(L"bylayer")), byLayer);
        select({addLine(redLayer)});
        QCOMPARE(zrqthelper::getCLayerColor().colorIndex(), uint16_t(1));
        // While FLATSHOT runs, "ByLayer" stands for the line type the layer has.
        context()->commandObject()->setCommandName(ZrString(L"flatShot"));
        QCOMPARE(zrqthelper::findLineStyleTableRecordByName(ZrString(L"BYLAYER")), dashed);
        context()->commandObject()->setCommandName(ZrString());
    }

    void lockedObjectsAreTakenOut()
    {
        const ZrDbObjectId locked = addLayer(QStringLiteral("Locked"), {false, true});
        ZrArray<ZrDbObjectId> ids;
        for (ZrDbObjectId id : {ZrDbObjectId(), addLine(locked), addLine(), addLine(locked), ZrDbObjectId(99999999)})
            ids.append(id);
        QCOMPARE(zrqthelper::removeLockedEntity(ids), 3);
        QCOMPARE(ids.length(), 2);
        QVERIFY(ids[0].isNull());
    }

    void blockEditorLogsAndTakesTheModelSpace()
    {
        std::ostringstream out;
        auto logger = std::make_shared<spdlog::logger>("controls", std::make_shared<spdlog::sinks::ostream_sink_st>(out));
        logger->set_level(spdlog::level::debug);
        ZrLogger::getInstance()->setSpdLogger(logger);
        ZrResBuf* on = zrutBuildList(RTSHORT, 1, 0);
        zrqthelper::getDatabaseService()->setSysVar(db(), L"BLOCKEDITOR", on);
        zrutRelRb(on);
        QCOMPARE(zrqthelper::getWorkBlockRecId(nullptr), db()->modelSpaceId());
        ZrLogger::getInstance()->setSpdLogger(nullptr);
        QVERIFY(QString::fromStdString(out.str()).contains(QStringLiteral("后面要加上块在位编辑时返回的块表记录")));
    }

private:
    std::unique_ptr<Host> m_host;
};

ZR_TEST_SUITE(TestDrawingHelpers)
#include "tst_drawinghelpers.moc"

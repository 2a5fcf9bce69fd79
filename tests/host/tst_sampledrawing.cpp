// The built-in sample drawing.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrdbdict.h"
#include "zrdbviewportdata.h"

#include <QPainter>
#include <QSet>
#include <QTest>

class ZrSampleDrawingTest : public HostFixture
{
    Q_OBJECT

    struct Layer
    {
        QString name;
        bool off, frozen, locked, hidden;
    };

    static std::vector<Layer> layers()
    {
        std::vector<Layer> list;
        ZrDbObjectPointer<ZrDbLayerTable> table(curDatabase()->layerTableId(), ZrDb::kForRead);
        for (int64_t handle : table->recordHandles()) {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(ZrDbObjectId(handle), ZrDb::kForRead);
            list.push_back({layer->name().toQString(), layer->isOff(), layer->isFrozen(), layer->isLocked(),
                            layer->isHidden()});
        }
        return list;
    }

private Q_SLOTS:
    void initTestCase()
    {
        startHost();
        ZrHostControl::openSampleDrawing();
    }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void layersOfEveryKind()
    {
        const std::vector<Layer> all = layers();
        QVERIFY(all.size() >= 25);
        const auto any = [&all](auto test) { return std::any_of(all.begin(), all.end(), test); };
        QVERIFY(any([](const Layer& l) { return l.hidden; }));
        QVERIFY(any([](const Layer& l) { return l.frozen; }));
        QVERIFY(any([](const Layer& l) { return l.off; }));
        QVERIFY(any([](const Layer& l) { return l.locked; }));
        QVERIFY(any([](const Layer& l) { return l.name.startsWith(QLatin1String("XREF|")); }));
        QVERIFY(any([](const Layer& l) { return l.name.contains(QLatin1Char('*')); }));
    }

    void linetypesHaveRealDashes()
    {
        ZrDbDatabase* db = curDatabase();
        for (const wchar_t* name : {L"DASHED", L"CENTER", L"HIDDEN", L"DOT", L"PHANTOM"}) {
            ZrDbObjectPointer<ZrDbLinetypeTableRecord> linetype(recordOf(db->linetypeTableId(), name), ZrDb::kForRead);
            QVERIFY2(linetype, qPrintable(QString::fromWCharArray(name)));
            QVERIFY(linetype->numDashes() >= 2);
            QVERIFY(linetype->patternLength() > 0.0);
            bool gap = false;
            for (int i = 0; i < linetype->numDashes(); ++i)
                gap = gap || linetype->dashLengthAt(i) < 0.0;
            QVERIFY(gap);
        }
    }

    void stylesAndNamedObjects()
    {
        ZrDbDatabase* db = curDatabase();
        ZrDbObjectPointer<ZrDbDictionary> tableStyles(db->tableStyleDictionaryId(), ZrDb::kForRead);
        ZrDbObjectId schedule;
        QCOMPARE(tableStyles->getAt(ZrString(L"门窗表"), schedule), 0);
        ZrDbObjectPointer<ZrDbTableStyle> style(schedule, ZrDb::kForRead);
        ZrArray<ZrString> cells;
        style->getCellStyles(cells);
        QCOMPARE(cells.length(), 4);
        QCOMPARE(cells[0], ZrString(L"_TITLE"));
        QCOMPARE(cells[2], ZrString(L"_DATA"));
        for (ZrDbObjectId dictionary : {db->materialDictionaryId(), db->plotStyleNameDictionaryId(),
                                        db->mleaderStyleDictionaryId()}) {
            ZrDbObjectPointer<ZrDbDictionary> entries(dictionary, ZrDb::kForRead);
            QVERIFY(entries->numEntries() >= 2);
        }
        ZrDbObjectPointer<ZrDbDimStyleTable> dimStyles(db->dimStyleTableId(), ZrDb::kForRead);
        QVERIFY(dimStyles->recordHandles().size() >= 3);

        // One style is annotative as the readers expect it, one has the application but a broken chain.
        ZrDbObjectPointer<ZrDbTextStyleTableRecord> broken(recordOf(db->textStyleTableId(), L"注释性-损坏"), ZrDb::kForRead);
        ZrResBuf* data = broken->xData(L"AcadAnnotative");
        QVERIFY(data);
        int groups = 0;
        for (ZrResBuf* rb = data; rb; rb = rb->rbnext)
            ++groups;
        zrutRelRb(data);
        QVERIFY(groups != 6);
        ZrDbObjectPointer<ZrDbTextStyleTableRecord> annotative(recordOf(db->textStyleTableId(), L"Annotative"), ZrDb::kForRead);
        ZrResBuf* orientation = annotative->xData(L"AcadAnnoPO");
        QVERIFY(orientation && orientation->rbnext && orientation->rbnext->restype == 1070);
        zrutRelRb(orientation);
    }

    void viewsUcsAndBlocks()
    {
        ZrDbDatabase* db = curDatabase();
        bool paperView = false, modelView = false;
        ZrDbObjectPointer<ZrDbViewTable> views(db->viewTableId(), ZrDb::kForRead);
        for (int64_t handle : views->recordHandles()) {
            ZrDbObjectPointer<ZrDbViewTableRecord> view(ZrDbObjectId(handle), ZrDb::kForRead);
            (view->isPaperspaceView() ? paperView : modelView) = true;
        }
        QVERIFY(paperView && modelView);
        ZrDbObjectPointer<ZrDbUCSTable> ucs(db->UCSTableId(), ZrDb::kForRead);
        QVERIFY(ucs->recordHandles().size() >= 2);

        bool anonymous = false, unreferenced = false, referenced = false, spaceLike = false;
        ZrDbObjectPointer<ZrDbBlockTable> blocks(db->blockTableId(), ZrDb::kForRead);
        for (int64_t handle : blocks->recordHandles()) {
            ZrDbObjectPointer<ZrDbBlockTableRecord> block(ZrDbObjectId(handle), ZrDb::kForRead);
            if (block->isLayout())
                continue;
            ZrArray<ZrDbObjectId> references;
            block->getBlockReferenceIds(references);
            anonymous = anonymous || block->isAnonymous();
            unreferenced = unreferenced || references.isEmpty();
            referenced = referenced || !references.isEmpty();
            spaceLike = spaceLike || block->name().toQString().startsWith(QLatin1String("*Paper_Space"), Qt::CaseInsensitive);
        }
        QVERIFY(anonymous && unreferenced && referenced);
        // The second layout's block begins as the paper space's name does.
        ZrDbObjectId second;
        QCOMPARE(blocks->getIdAt(ZrString(L"*Paper_Space0"), second), 0);
    }

    void entitiesOfEveryKindInBothSpaces()
    {
        ZrDbDatabase* db = curDatabase();
        QSet<QString> kinds;
        int count = 0;
        for (ZrDbObjectId space : {db->modelSpaceId(), db->paperSpaceId()}) {
            ZrDbObjectPointer<ZrDbBlockTableRecord> block(space, ZrDb::kForRead);
            QVERIFY(block->entityHandles().size() >= 5);
            for (int64_t handle : block->entityHandles()) {
                ZrDbObjectPointer<ZrDbEntity> entity(ZrDbObjectId(handle), ZrDb::kForRead);
                kinds << QString::fromLatin1(entity->isA()->name());
                ++count;
            }
        }
        QVERIFY(count >= 200);
        for (const char* kind : {"ZrDbLine", "ZrDbArc", "ZrDbCircle", "ZrDbPolyline", "ZrDbText", "ZrDbMText",
                                 "ZrDbAlignedDimension", "ZrDbTable", "ZrDbMLeader", "ZrDbHatch", "ZrDbBlockReference",
                                 "ZrDbViewport"})
            QVERIFY2(kinds.contains(QLatin1String(kind)), kind);
    }

    void paintsWithinItsExtents()
    {
        // Every entity of the model space has extents, and most are drawn: a plan, not a blank sheet.
        QImage image(400, 300, QImage::Format_ARGB32);
        image.fill(Qt::white);
        const std::vector<ZrDbObjectId> ids = ZrHostControl::entitiesOfCurrentSpace();
        double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
        for (ZrDbObjectId id : ids) {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
            double x0, y0, x1, y1;
            QVERIFY(ZrHostControl::entityExtents(entity.object(), x0, y0, x1, y1));
            minX = std::min(minX, x0), minY = std::min(minY, y0), maxX = std::max(maxX, x1), maxY = std::max(maxY, y1);
        }
        const double scale = std::min(400 / (maxX - minX), 300 / (maxY - minY));
        QTransform toDevice;
        toDevice.translate(0, 300);
        toDevice.scale(scale, -scale);
        toDevice.translate(-minX, -minY);
        QPainter painter(&image);
        for (ZrDbObjectId id : ids) {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
            ZrHostControl::paintEntity(painter, entity.object(), toDevice, Qt::black);
        }
        painter.end();
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                inked += image.pixel(x, y) != qRgb(255, 255, 255);
        }
        QVERIFY2(inked > 400 * 300 / 50, qPrintable(QString::number(inked)));
    }
};

ZR_TEST_SUITE(ZrSampleDrawingTest)

#include "tst_sampledrawing.moc"

// Drawing files: reading, the faults a reader names, writing.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrdbviewportdata.h"

#include <QTest>

class ZrDrawingFileTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void roundTripKeepsEverything()
    {
        ZrHostControl::openSampleDrawing();
        ZrDbDatabase* sample = curDatabase();
        const int objects = sample->objectCount();
        const QByteArray first = ZrHostControl::drawingText(sample);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("sample.json"));
        QString error;
        QVERIFY2(ZrHostControl::saveDrawing(path, &error), qPrintable(error));
        QVERIFY2(ZrHostControl::openDrawing(path, &error), qPrintable(error));
        QVERIFY(curDatabase() != sample);
        QCOMPARE(curDatabase()->objectCount(), objects);
        const QByteArray second = ZrHostControl::drawingText(curDatabase());
        QCOMPARE(second, first);

        // Spot checks that the text compared above carries the content and not just its shape.
        QVERIFY(first.contains("\"XREF|A-WALL\""));
        QCOMPARE(curDatabase()->ltscale(), 50.0);
        ZrDbObjectPointer<ZrDbTextStyleTableRecord> annotative(recordOf(curDatabase()->textStyleTableId(), L"Annotative"),
                                                               ZrDb::kForRead);
        ZrResBuf* data = annotative->xData(L"AcadAnnotative");
        int groups = 0;
        for (ZrResBuf* rb = data; rb; rb = rb->rbnext)
            ++groups;
        zrutRelRb(data);
        QCOMPARE(groups, 6);
    }

    void badFilesNameThePlaceAndChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("place");
        const QByteArray good = validDrawing();
        QTest::newRow("syntax") << QByteArray("{\n  \"format\": \"zrdrawing\",\n  \"version\" 1\n}") << "line 3, column";
        QTest::newRow("not a drawing") << QByteArray("[1, 2]") << "the drawing: is not an object";
        QTest::newRow("format") << QByteArray(good).replace("\"zrdrawing\"", "\"other\"") << "field \"format\"";
        QTest::newRow("colour") << QByteArray(good).replace("\"color\": \"3\"", "\"color\": \"RGB:300,0,0\"")
                                << "layers[1] \"墙体\", field \"color\": \"RGB:300,0,0\" is not a colour";
        QTest::newRow("unknown layer") << QByteArray(good).replace("\"layer\": \"墙体\"", "\"layer\": \"屋顶\"")
                                       << "blocks[0] \"*Model_Space\", entities[0], field \"layer\": names \"屋顶\"";
        QTest::newRow("wrong type") << QByteArray(good).replace("\"radius\": 5.0", "\"radius\": \"5\"")
                                    << "entities[1], field \"radius\": is not a number";
        QTest::newRow("missing line type")
            << QByteArray(good).replace("{\"name\": \"ByLayer\"},", "") << "field \"linetypes\": lacks \"ByLayer\"";
        QTest::newRow("duplicate") << QByteArray(good).replace("\"墙体\", \"color\"", "\"0\", \"color\"")
                                   << "layers[1] \"0\", field \"name\": is used twice";
        QTest::newRow("bad variable") << QByteArray(good).replace("\"LTSCALE\": 2.0", "\"LTSCALE\": -1.0")
                                      << "variables, field \"LTSCALE\"";
    }
    void badFilesNameThePlaceAndChangeNothing()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, place);
        // The row must differ from the valid drawing, or a failed replace would test nothing.
        QVERIFY(text != validDrawing());
        QString error;
        QVERIFY2(ZrHostControl::openDrawingText(validDrawing(), QStringLiteral("good.json"), &error), qPrintable(error));
        ZrDbDatabase* open = curDatabase();
        const QByteArray before = ZrHostControl::drawingText(open);
        QVERIFY(!ZrHostControl::openDrawingText(text, QStringLiteral("bad.json"), &error));
        QVERIFY2(error.startsWith(QStringLiteral("bad.json: ")), qPrintable(error));
        QVERIFY2(error.contains(place), qPrintable(error));
        QCOMPARE(curDatabase(), open);
        QCOMPARE(ZrHostControl::drawingText(open), before);
    }

    void aValidFileReadsAsWritten()
    {
        QString error;
        QVERIFY2(ZrHostControl::openDrawingText(validDrawing(), QStringLiteral("good.json"), &error), qPrintable(error));
        ZrDbDatabase* db = curDatabase();
        QCOMPARE(db->ltscale(), 2.0);
        QCOMPARE(variableText(L"CLAYER"), QStringLiteral("墙体"));
        const std::vector<ZrDbObjectId> ids = ZrHostControl::entitiesOfCurrentSpace();
        QCOMPARE(int(ids.size()), 2);
        ZrDbObjectPointer<ZrDbCircle> circle(ids[1], ZrDb::kForRead);
        QVERIFY(circle);
        QCOMPARE(circle->radius(), 5.0);
        // What the file leaves out takes the drawing's defaults.
        QCOMPARE(circle->layer(), ZrString(L"0"));
        QCOMPARE(db->textstyle(), recordOf(db->textStyleTableId(), L"Standard"));
    }

private:
    static QByteArray validDrawing()
    {
        return QByteArray(R"({"format": "zrdrawing", "version": 1,
 "linetypes": [{"name": "ByBlock"}, {"name": "ByLayer"}, {"name": "Continuous"}, {"name": "DASHED", "dashes": [5.0, -2.5]}],
 "layers": [{"name": "0"}, {"name": "墙体", "color": "3", "linetype": "DASHED", "lineweight": 50}],
 "textStyles": [{"name": "Standard"}], "dimStyles": [{"name": "Standard", "textStyle": "Standard"}],
 "blocks": [{"name": "*Model_Space", "entities": [
     {"type": "line", "layer": "墙体", "start": [0, 0], "end": [10, 0]},
     {"type": "circle", "center": [0, 0, 0], "radius": 5.0}]},
   {"name": "*Paper_Space", "entities": [{"type": "viewport", "center": [148.5, 105], "width": 297, "height": 210}]}],
 "layouts": [{"name": "Model", "block": "*Model_Space", "tab": 0},
             {"name": "布局1", "block": "*Paper_Space", "tab": 1, "paperViewport": 0}],
 "variables": {"CLAYER": "墙体", "LTSCALE": 2.0}}
)");
    }
};

ZR_TEST_SUITE(ZrDrawingFileTest)

#include "tst_drawingfile.moc"

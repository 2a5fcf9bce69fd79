// Painting what cannot be drawn as it stands: dashes too fine or too long to count, sizes that
// overflow. Each paints and returns, and what can be drawn still is.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrgiraster.h"

#include <QImage>
#include <QPainter>
#include <QTest>

class ZrPaintLimitsTest : public HostFixture
{
    Q_OBJECT

    // Pixels of the middle row, from the first inked one to the last, that are not inked.
    static int gapsAlongMiddle(const QImage& image)
    {
        int first = -1, last = -1;
        const int y = image.height() / 2;
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != qRgb(255, 255, 255)) {
                first = first < 0 ? x : first;
                last = x;
            }
        }
        int gaps = 0;
        for (int x = first; first >= 0 && x <= last; ++x)
            gaps += image.pixel(x, y) == qRgb(255, 255, 255);
        return first < 0 ? -1 : gaps;
    }

    // A horizontal DASHED line from x0 to x1 on y = 0, painted ten pixels a unit along the middle row.
    static QImage paintedLine(double x0, double x1)
    {
        const ZrDbObjectId id = addLine(curDatabase(), x0, x1);
        ZrDbObjectPointer<ZrDbEntity> line(id, ZrDb::kForWrite);
        line->setLinetype(recordOf(curDatabase()->linetypeTableId(), L"DASHED"));
        QImage image(200, 20, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        ZrHostControl::paintEntity(painter, line.object(), QTransform(10, 0, 0, -10, 0, 10), Qt::black);
        return image;
    }

    static ZrDbObjectId addBlockWithText(ZrDbDatabase* db)
    {
        ZrDbObjectPointer<ZrDbBlockTable> table(db->blockTableId(), ZrDb::kForWrite);
        auto* block = new ZrDbBlockTableRecord;
        block->setName(ZrString(L"标记"));
        ZrDbObjectId id;
        table->add(block, &id);
        auto* text = new ZrDbText;
        text->setPosition(ZrGePoint3d(1, 1, 0));
        text->setTextString(ZrString(L"A1"));
        ZrDbObjectId textId;
        block->appendZrDbEntity(textId, text);
        text->close();
        block->close();
        return id;
    }

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }
    void init() { ZrHostControl::openSampleDrawing(); }

    void dashesThatCannotBeCountedAreDrawnSolid()
    {
        // Dashes whose length in pixels overflows to infinity.
        QCOMPARE(curDatabase()->setLtscale(1e307), 0);
        QCOMPARE(gapsAlongMiddle(paintedLine(1, 19)), 0);
        // Dashes of some sixty pixels over a billion-pixel line.
        QCOMPARE(curDatabase()->setLtscale(0.5), 0);
        QCOMPARE(gapsAlongMiddle(paintedLine(-5e7, 5e7)), 0);
        // The same dashes over a line that fits are dashes still.
        QVERIFY(gapsAlongMiddle(paintedLine(1, 19)) > 0);
    }

    void sizesThatOverflowAreLeftOut()
    {
        ZrDbDatabase* db = curDatabase();
        ZrDbCircle circle;
        QCOMPARE(circle.setRadius(1e308), 0);
        ZrDbLine line(ZrGePoint3d(0, 0, 0), ZrGePoint3d(100, 0, 0));
        double minX, minY, maxX, maxY;
        QVERIFY(!ZrHostControl::entityExtents(&circle, minX, minY, maxX, maxY));

        // The line of a picture still fills it, the circle left out.
        ZrArray<ZrDbEntity*> entities;
        entities.append(&circle);
        entities.append(&line);
        ZrJsonPtr options = ElementValue::createObject(kZrJsonObject);
        options->SetDataI("width", 104);
        options->SetDataI("height", 20);
        options->SetDataB("bfillbackground", true);
        options->SetDataL("background", int64_t(0xFFFFFFFF));
        const ZrSmartPtr<ZrGiRasterImage> picture = zrsiutCreateEntityImage(ZrDbDatabasePtr(db), entities, options);
        QVERIFY(picture);
        const auto* middle = reinterpret_cast<const uint32_t*>(picture->scanLine(10));
        QVERIFY(middle[3] != 0xFFFFFFFF && middle[100] != 0xFFFFFFFF);

        // Text in a block scaled beyond any size: nothing drawn, and painting returns.
        ZrDbBlockReference reference(ZrGePoint3d(0, 0, 0), addBlockWithText(db));
        QCOMPARE(reference.setScaleAndRotation(1e308, 0.0), 0);
        QImage image(64, 64, QImage::Format_RGB32);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            ZrHostControl::paintEntity(painter, &reference, QTransform(2, 0, 0, -2, 32, 32), Qt::black);
            QCOMPARE(circle.setRadius(1e300), 0);
            ZrHostControl::paintEntity(painter, &circle, QTransform(1e10, 0, 0, -1e10, 32, 32), Qt::black);
        }
        QImage blank(64, 64, QImage::Format_RGB32);
        blank.fill(Qt::white);
        QCOMPARE(image, blank);
    }

    void picturesOfAbsurdSizesAreNotMade()
    {
        ZrDbLine line(ZrGePoint3d(0, 0, 0), ZrGePoint3d(100, 0, 0));
        ZrArray<ZrDbEntity*> entities;
        entities.append(&line);
        ZrJsonPtr options = ElementValue::createObject(kZrJsonObject);
        for (int side : {1 << 30, 5000}) {
            options->SetDataI("width", side);
            options->SetDataI("height", side);
            QVERIFY(!zrsiutCreateEntityImage(ZrDbDatabasePtr(curDatabase()), entities, options));
        }
        options->SetDataI("width", 4000);
        options->SetDataI("height", 20);
        QVERIFY(zrsiutCreateEntityImage(ZrDbDatabasePtr(curDatabase()), entities, options));
    }
};

ZR_TEST_SUITE(ZrPaintLimitsTest)

#include "tst_paintlimits.moc"

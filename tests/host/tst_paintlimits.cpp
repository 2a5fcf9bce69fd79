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

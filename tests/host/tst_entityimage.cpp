// Pictures of entities drawn for the controls.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrgiraster.h"

#include <QTest>

class ZrEntityImageTest : public HostFixture
{
    Q_OBJECT

    // Runs of ink and of background along the middle row, counted from the first ink to the last.
    static QPair<int, int> runsAlongMiddle(const ZrSmartPtr<ZrGiRasterImage>& image, uint32_t background)
    {
        const auto* row = reinterpret_cast<const uint32_t*>(image->scanLine(image->pixelHeight() / 2));
        int inkRuns = 0, gaps = 0;
        bool inInk = false, seenInk = false;
        for (int x = 0; x < image->pixelWidth(); ++x) {
            const bool ink = row[x] != background;
            if (ink && !inInk)
                ++inkRuns;
            if (!ink && inInk)
                ++gaps;
            seenInk = seenInk || ink;
            inInk = ink;
        }
        return {inkRuns, inInk ? gaps : gaps - 1};
    }

    static ZrSmartPtr<ZrGiRasterImage> imageOfLine(ZrDbObjectId linetype, int width = 240)
    {
        ZrDbLine line(ZrGePoint3d(10, 10, 0), ZrGePoint3d(100, 10, 0));
        line.setLinetype(linetype);
        ZrArray<ZrDbEntity*> entities;
        entities.append(&line);
        ZrJsonPtr options = ElementValue::createObject(kZrJsonObject);
        options->SetDataI("width", width);
        options->SetDataI("height", 16);
        options->SetDataB("bfillbackground", true);
        options->SetDataL("background", int64_t(0xFFFFFFFF));
        return zrsiutCreateEntityImage(ZrDbDatabasePtr(curDatabase()), entities, options);
    }

private Q_SLOTS:
    void initTestCase()
    {
        startHost();
        ZrHostControl::openSampleDrawing();
    }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void dashedLineHasGaps()
    {
        const ZrSmartPtr<ZrGiRasterImage> dashed = imageOfLine(recordOf(curDatabase()->linetypeTableId(), L"DASHED"));
        QVERIFY(dashed);
        QCOMPARE(dashed->pixelWidth(), 240);
        const QPair<int, int> runs = runsAlongMiddle(dashed, 0xFFFFFFFF);
        // 90 units of a 19.05 unit pattern: four whole dashes and the start of a fifth.
        QVERIFY2(runs.first >= 4 && runs.second >= 3, qPrintable(QStringLiteral("%1 %2").arg(runs.first).arg(runs.second)));

        // The same line drawn solid has one run: the gaps above come from the line type.
        const QPair<int, int> solid = runsAlongMiddle(imageOfLine(curDatabase()->continuousLinetype()), 0xFFFFFFFF);
        QCOMPARE(solid.first, 1);
        QCOMPARE(solid.second, 0);
    }

    void noImageWithoutASize()
    {
        QVERIFY(!imageOfLine(curDatabase()->continuousLinetype(), 0));
    }
};

ZR_TEST_SUITE(ZrEntityImageTest)

#include "tst_entityimage.moc"

// Pictures of entities drawn for the controls.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrdbpaint.h"
#include "zrgiraster.h"
#include "zrlinetypedefs.h"

#include <QPainter>
#include <QTest>

class ZrEntityImageTest : public HostFixture
{
    Q_OBJECT

    int m_linetypes = 0;

private Q_SLOTS:
    void initTestCase()
    {
        startHost();
        ZrHostControl::openSampleDrawing();
    }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    // The direct road for a lone level line against the painter's road, pixel for pixel: line types of
    // dashes, dots, twelve dashes, at a scale, solid; pictures of odd and even sizes, so that the line
    // falls on a row or between two and its ends part way into pixels; a colour of its own.
    void levelLineMatchesPainter_data()
    {
        QTest::addColumn<QVector<double>>("dashes");
        QTest::addColumn<double>("scale");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("shift");
        QTest::newRow("dashed preview") << QVector<double>{12.0, -6.0} << 1.0 / 0.5 << QSize(80, 25) << 0.0;
        QTest::newRow("twelve dashes") << QVector<double>{3, -1, 2, -1, 1, -1, 4, -2, 0.5, -0.5, 2, -3} << 1.3
                                       << QSize(97, 31) << 0.71;
        QTest::newRow("scaled down") << QVector<double>{12.0, -6.0} << 0.05 << QSize(81, 25) << 0.45;
        QTest::newRow("solid") << QVector<double>{} << 1.0 << QSize(120, 18) << 0.2;
    }
    void levelLineMatchesPainter()
    {
        QFETCH(QVector<double>, dashes);
        QFETCH(double, scale);
        QFETCH(QSize, size);
        QFETCH(double, shift);
        const ZrDbObjectId linetype = zrdbLoadLinetype(
            curDatabase(), ZrLinetypeDefinition{ZrString(QStringLiteral("PREVIEW%1").arg(++m_linetypes)), ZrString(),
                                                std::vector<double>(dashes.begin(), dashes.end())});
        QVERIFY(linetype.isValid());
        ZrDbLine line(ZrGePoint3d(10, 10, 0), ZrGePoint3d(100, 10, 0));
        line.setLinetype(linetype);
        line.setLinetypeScale(scale);
        ZrCmColor color;
        color.setColorMethod(ZrCmEntityColor::kByColor);
        color.setRGB(200, 40, 90);
        line.setColor(color);
        // As a picture of the line is fitted: centred, two pixels of margin.
        const double fit = (size.width() - 4) / 90.0;
        QTransform toDevice;
        toDevice.translate(size.width() / 2.0 + shift, size.height() / 2.0);
        toDevice.scale(fit, -fit);
        toDevice.translate(-55, -10);

        QImage painted(size, QImage::Format_ARGB32_Premultiplied);
        painted.fill(QColor(250, 250, 240));
        QImage direct = painted;
        {
            QPainter painter(&painted);
            zrdbPaintEntity(painter, &line, toDevice, Qt::black);
        }
        QVERIFY(zrdbPaintLevelLine(direct, &line, toDevice, Qt::black));
        QCOMPARE(direct, painted);
    }

    // Without a background the picture's pixels are straight, not premultiplied: where the line covers a
    // pixel in part, the colour is the line's and only the alpha is less.
    void translucentEdgesKeepTheLineColour()
    {
        ZrDbLine line(ZrGePoint3d(10, 10, 0), ZrGePoint3d(100, 10, 0));
        ZrCmColor color;
        color.setColorMethod(ZrCmEntityColor::kByColor);
        color.setRGB(200, 40, 90);
        line.setColor(color);
        ZrArray<ZrDbEntity*> entities;
        entities.append(&line);
        ZrJsonPtr options = ElementValue::createObject(kZrJsonObject);
        options->SetDataI("width", 81);
        options->SetDataI("height", 16);
        options->SetDataB("bfillbackground", false);
        const ZrSmartPtr<ZrGiRasterImage> image = zrsiutCreateEntityImage(ZrDbDatabasePtr(curDatabase()), entities, options);
        QVERIFY(image);
        int partial = 0;
        for (int y = 0; y < image->pixelHeight(); ++y) {
            const auto* row = reinterpret_cast<const uint32_t*>(image->scanLine(y));
            for (int x = 0; x < image->pixelWidth(); ++x) {
                const int alpha = qAlpha(row[x]);
                if (alpha == 0 || alpha == 255)
                    continue;
                ++partial;
                // Unpremultiplied from a few bits of alpha, the colour may be off by a little.
                const int slack = 2 + 255 / alpha;
                QVERIFY2(std::abs(qRed(row[x]) - 200) <= slack && std::abs(qGreen(row[x]) - 40) <= slack
                             && std::abs(qBlue(row[x]) - 90) <= slack,
                         qPrintable(QStringLiteral("%1,%2: %3").arg(x).arg(y).arg(row[x], 8, 16)));
            }
        }
        QVERIFY(partial > 0);
    }
};

ZR_TEST_SUITE(ZrEntityImageTest)

#include "tst_entityimage.moc"

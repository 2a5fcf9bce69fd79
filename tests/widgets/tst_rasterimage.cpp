// Pictures between QImage and the host's raster images, in each pixel layout, both ways.

#include "zrtestmain.h"

#include "ZrQtUtilsFunc.h"

#include "zrgiraster.h"
#include "zrhostcontrol.h"

#include <QImage>
#include <QTest>
#include <QtEndian>
#include <cstring>
#include <vector>

Q_DECLARE_METATYPE(QImage::Format)

namespace {

QImage pattern(int width, int height, QImage::Format format)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgba(10 + 40 * x % 256, 200 - 30 * y % 200, (x * 7 + y * 13) % 256, 255 - 20 * x % 128));
    }
    return image.convertToFormat(format);
}

bool samePixels(const QImage& a, const QImage& b)
{
    return a.size() == b.size() && a.convertToFormat(QImage::Format_ARGB32) == b.convertToFormat(QImage::Format_ARGB32);
}

class GivenRaster : public ZrGiRasterImage
{
public:
    int pixelWidth() const override { return width; }
    int pixelHeight() const override { return height; }
    int colorDepth() const override { return format.bitsPerPixel; }
    ZrGiPixelFormatInfo pixelFormat() const override { return format; }
    int numColors() const override { return 0; }
    uint32_t color(int) const override { return 0; }
    int scanLineSize() const override { return stride; }
    int scanLinesAlignment() const override { return 1; }
    const uint8_t* scanLines() const override { return bytes.empty() ? nullptr : bytes.data(); }

    int width = 0;
    int height = 0;
    int stride = 0;
    ZrGiPixelFormatInfo format;
    std::vector<uint8_t> bytes;
};

ZrSmartPtr<ZrGiRasterImage> given(int width, int height, int stride, ZrGiPixelFormatInfo format, size_t bytes)
{
    auto* raster = new ZrRxObjectImpl<GivenRaster>();
    raster->width = width;
    raster->height = height;
    raster->stride = stride;
    raster->format = format;
    raster->bytes.assign(bytes, 0x7F);
    return ZrSmartPtr<ZrGiRasterImage>(raster, kZrAttach);
}

// A device-independent bitmap: information header, colour table, rows from the bottom.
QByteArray dib(int width, int height, int depth, const QVector<QRgb>& colors, const QByteArray& rows)
{
    QByteArray out(40, '\0');
    uchar* p = reinterpret_cast<uchar*>(out.data());
    qToLittleEndian<quint32>(40, p);
    qToLittleEndian<qint32>(width, p + 4);
    qToLittleEndian<qint32>(height, p + 8);
    qToLittleEndian<quint16>(1, p + 12);
    qToLittleEndian<quint16>(quint16(depth), p + 14);
    qToLittleEndian<quint32>(quint32(rows.size()), p + 20);
    qToLittleEndian<quint32>(quint32(colors.size()), p + 32);
    for (QRgb color : colors) {
        const char entry[4] = {char(qBlue(color)), char(qGreen(color)), char(qRed(color)), '\0'};
        out.append(entry, 4);
    }
    return out + rows;
}

} // namespace

class TestRasterImage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ZrHostControl::initialize(ZrHostControl::Options()); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void roundTrip_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("depth");
        QTest::addColumn<bool>("keepsAlpha");
        // Odd widths leave padding at the end of each 24-bit row.
        for (int width : {1, 3, 8}) {
            const QByteArray w = QByteArray::number(width);
            QTest::newRow("RGB888 " + w) << QImage::Format_RGB888 << width << 24 << false;
            QTest::newRow("BGR888 " + w) << QImage::Format_BGR888 << width << 24 << false;
            QTest::newRow("RGBA8888 " + w) << QImage::Format_RGBA8888 << width << 32 << true;
            QTest::newRow("ARGB32 " + w) << QImage::Format_ARGB32 << width << 32 << true;
            QTest::newRow("RGB32 " + w) << QImage::Format_RGB32 << width << 32 << false;
            QTest::newRow("Indexed8 " + w) << QImage::Format_Indexed8 << width << 32 << false;
            QTest::newRow("Grayscale8 " + w) << QImage::Format_Grayscale8 << width << 32 << false;
        }
    }

    void roundTrip()
    {
        QFETCH(QImage::Format, format);
        QFETCH(int, width);
        QFETCH(int, depth);
        QFETCH(bool, keepsAlpha);
        QImage source = pattern(width, 3, format);
        QCOMPARE(source.format(), format);
        const ZrSmartPtr<ZrGiRasterImage> raster = zrutQImage2ZrGiRasterImage(source);
        QVERIFY(raster);
        QCOMPARE(raster->pixelWidth(), width);
        QCOMPARE(raster->pixelHeight(), 3);
        QCOMPARE(raster->colorDepth(), depth);
        QCOMPARE(raster->pixelFormat().bitsPerPixel, depth);
        QVERIFY(raster->scanLineSize() * 8 >= width * depth);
        QCOMPARE(raster->scanLineSize() % raster->scanLinesAlignment(), 0);
        const ZrGiPixelFormatInfo expected = format == QImage::Format_RGB888 ? ZrGiPixelFormatInfo::rgb24()
                                           : format == QImage::Format_BGR888 ? ZrGiPixelFormatInfo::bgr24()
                                                                             : ZrGiPixelFormatInfo::rgba32();
        QVERIFY(raster->pixelFormat() == expected);
        QCOMPARE(raster->numColors(), 0);

        const QImage expectedPixels = source.convertToFormat(keepsAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        // The raster is a copy: the picture it came from may change or go.
        source.fill(Qt::red);
        source = QImage();
        const QImage back = zrutZrGiRasterImage2QImage(raster);
        QVERIFY(!back.isNull());
        QVERIFY(samePixels(back.convertToFormat(keepsAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32), expectedPixels));
    }

    void rasterLayoutsAreReadAsDescribed()
    {
        // Two pixels a row, red then blue, each layout's bytes in order; rows padded to 9 or 12 bytes.
        struct Case
        {
            ZrGiPixelFormatInfo format;
            QByteArray red;
            QByteArray blue;
            int stride;
            QImage::Format qt;
        };
        const std::vector<Case> cases = {
            {ZrGiPixelFormatInfo::rgb24(), QByteArray("\xFF\x00\x00", 3), QByteArray("\x00\x00\xFF", 3), 9, QImage::Format_RGB888},
            {ZrGiPixelFormatInfo::bgr24(), QByteArray("\x00\x00\xFF", 3), QByteArray("\xFF\x00\x00", 3), 9, QImage::Format_BGR888},
            {ZrGiPixelFormatInfo::rgba32(), QByteArray("\xFF\x00\x00\x80", 4), QByteArray("\x00\x00\xFF\xFF", 4), 12,
             QImage::Format_RGBA8888},
            // Qt's own 32-bit words on this machine, read in place.
            {ZrGiPixelFormatInfo::bgra32(), QByteArray("\x00\x00\xFF\x80", 4), QByteArray("\xFF\x00\x00\xFF", 4), 12,
             QImage::Format_ARGB32},
        };
        for (const Case& c : cases) {
            QByteArray rows;
            for (int y = 0; y < 2; ++y)
                rows += (c.red + c.blue).leftJustified(c.stride, '\x55');
            const auto* bits = reinterpret_cast<const uint8_t*>(rows.constData());
            const ZrSmartPtr<ZrGiRasterImage> raster = zrutImageWrap(2, 2, c.format.bitsPerPixel, c.format, bits, c.stride);
            QVERIFY(raster);
            QCOMPARE(raster->scanLineSize(), c.stride);
            const QImage image = zrutZrGiRasterImage2QImage(raster);
            QCOMPARE(image.format(), c.qt);
            QCOMPARE(image.size(), QSize(2, 2));
            const QRgb red = image.pixel(0, 1);
            const QRgb blue = image.pixel(1, 1);
            QCOMPARE(qRed(red), 255);
            QCOMPARE(qBlue(red), 0);
            QCOMPARE(qBlue(blue), 255);
            QCOMPARE(qRed(blue), 0);
            QCOMPARE(qAlpha(red), c.format.numAlphaBits ? 0x80 : 0xFF);
        }
        // A 32-bit layout without alpha reads the fourth byte as padding, in either order.
        for (ZrGiPixelFormatInfo opaque : {ZrGiPixelFormatInfo::rgba32(), ZrGiPixelFormatInfo::bgra32()}) {
            opaque.numAlphaBits = 0;
            opaque.alphaOffset = 0;
            const QByteArray pixel = opaque.redOffset == 0 ? QByteArray("\x01\x02\x03\x00", 4)
                                                           : QByteArray("\x03\x02\x01\x00", 4);
            const QImage image = zrutZrGiRasterImage2QImage(
                zrutImageWrap(1, 1, 32, opaque, reinterpret_cast<const uint8_t*>(pixel.constData()), 4));
            QCOMPARE(image.format(), QImage::Format_RGBX8888);
            QCOMPARE(image.pixel(0, 0), qRgb(1, 2, 3));
        }
    }

    void colourTablesOfPaletteRasters()
    {
        const uint32_t colors[] = {0xFF102030, 0xFFA0B0C0, 0xFF00FF00};
        // Indexes 0, 1, 2 and 7, which is past the table; rows of 5 bytes, padding 0xEE.
        const uint8_t rows[] = {0, 1, 2, 7, 0xEE, 2, 2, 1, 0, 0xEE};
        const ZrSmartPtr<ZrGiRasterImage> raster =
            zrutImageWrap(4, 2, 8, ZrGiPixelFormatInfo::indexed(8), rows, 5, colors, 3);
        QVERIFY(raster);
        QCOMPARE(raster->numColors(), 3);
        const QImage image = zrutZrGiRasterImage2QImage(raster);
        QCOMPARE(image.format(), QImage::Format_Indexed8);
        QCOMPARE(image.pixel(0, 0), QRgb(0xFF102030));
        QCOMPARE(image.pixel(1, 0), QRgb(0xFFA0B0C0));
        QCOMPARE(image.pixel(2, 1), QRgb(0xFFA0B0C0));
        QCOMPARE(image.pixel(3, 0), qRgb(0, 0, 0));
        const ZrSmartPtr<ZrGiRasterImage> clone = zrutCloneImage(raster.get());
        QCOMPARE(clone->numColors(), 3);
        QCOMPARE(clone->color(2), 0xFF00FF00u);
        QVERIFY(samePixels(zrutZrGiRasterImage2QImage(clone), image));
    }

    // A bitmap in memory goes through the BMP reader, its colour table with it; absurd or short
    // bitmaps are refused.
    void bitmapSourcesAreReadAsBmpFiles()
    {
        const QVector<QRgb> colors = {qRgb(255, 0, 0), qRgb(0, 0, 255), qRgb(9, 99, 199)};
        const QByteArray bitmap = dib(3, 2, 8, colors, QByteArray("\x02\x02\x02\x00\x00\x01\x02\x00", 8));
        const ZrSmartPtr<ZrGiRasterImage> raster =
            zrutImageFromDib(reinterpret_cast<const uint8_t*>(bitmap.constData()), size_t(bitmap.size()));
        QVERIFY(raster);
        QCOMPARE(raster->imageSource(), ZrGiRasterImage::kFromDib);
        const QImage image = zrutZrGiRasterImage2QImage(zrutCloneImage(raster.get()));
        QCOMPARE(image.size(), QSize(3, 2));
        QCOMPARE(image.pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(image.pixel(1, 0), qRgb(0, 0, 255));
        QCOMPARE(image.pixel(2, 1), qRgb(9, 99, 199));
        QVERIFY(!zrutImageFromDib(reinterpret_cast<const uint8_t*>(bitmap.constData()), 20));
        const QByteArray huge = dib(100000, 100000, 32, {}, QByteArray(16, '\x01'));
        QVERIFY(!zrutImageFromDib(reinterpret_cast<const uint8_t*>(huge.constData()), size_t(huge.size())));
    }

    void badRastersGiveNoPicture()
    {
        const std::vector<uint8_t> bytes(64, 0);
        const uint8_t* bits = bytes.data();
        const ZrGiPixelFormatInfo rgb = ZrGiPixelFormatInfo::rgb24();
        QVERIFY(!zrutImageWrap(0, 2, 24, rgb, bits, 12));
        QVERIFY(!zrutImageWrap(2, 0, 24, rgb, bits, 12));
        QVERIFY(!zrutImageWrap(4, 2, 24, rgb, bits, 11));
        QVERIFY(zrutImageWrap(4, 2, 24, rgb, bits, 12));
        QVERIFY(!zrutImageWrap(2, 2, 32, rgb, bits, 12));
        ZrGiPixelFormatInfo wide = rgb;
        wide.blueOffset = 20;
        QVERIFY(!zrutImageWrap(2, 2, 24, wide, bits, 12));
        QVERIFY(!zrutImageWrap(2, 2, 24, rgb, nullptr, 12));
        const uint32_t colors[17] = {};
        QVERIFY(!zrutImageWrap(2, 2, 4, ZrGiPixelFormatInfo::indexed(4), bits, 4, colors, 17));
        QVERIFY(!zrutImageWrap(100000, 100000, 32, ZrGiPixelFormatInfo::rgba32(), bits, 400000));

        // Rasters from elsewhere are checked as they are read.
        QVERIFY(zrutZrGiRasterImage2QImage(given(0, 2, 12, rgb, 24)).isNull());
        QVERIFY(zrutZrGiRasterImage2QImage(given(4, 2, 11, rgb, 22)).isNull());
        QVERIFY(zrutZrGiRasterImage2QImage(given(4, 2, 12, rgb, 0)).isNull());
        QVERIFY(!zrutZrGiRasterImage2QImage(given(4, 2, 12, rgb, 24)).isNull());
        // A layout without a match is read as 24-bit RGB, if its rows hold that much.
        QVERIFY(zrutZrGiRasterImage2QImage(given(4, 2, 8, ZrGiPixelFormatInfo::indexed(16), 16)).isNull());
        QCOMPARE(zrutZrGiRasterImage2QImage(given(4, 2, 12, ZrGiPixelFormatInfo::indexed(24), 24)).format(),
                 QImage::Format_RGB888);

        QVERIFY(zrutZrGiRasterImage2QImage(ZrSmartPtr<ZrGiRasterImage>()).isNull());
        QVERIFY(!zrutQImage2ZrGiRasterImage(QImage()));
        QVERIFY(!zrutCloneImage(nullptr));
    }
};

ZR_TEST_SUITE(TestRasterImage)
#include "tst_rasterimage.moc"

// The host's reader of a drawing's preview section, its streams and the file opening service.

#include "dwgpreviewfile.h"
#include "zrtestmain.h"

#include "zrstreambuf.h"
#include "zrsystemservices.h"
#include "zrthumbnail.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

int readPreview(QByteArray bytes, ZrThumbnailImage& thumbnail)
{
    const ZrSmartPtr<ZrFlatMemStream> stream = ZrFlatMemStream::createNew(bytes.data(), uint64_t(bytes.size()));
    return zrDbGetPreviewBitmap(stream.get(), &thumbnail);
}

QByteArray partBytes(const std::vector<uint8_t>& part)
{
    return QByteArray(reinterpret_cast<const char*>(part.data()), int(part.size()));
}

QByteArray headerPart() { return QByteArray(80, '\x11'); }

} // namespace

class TestThumbnail : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryPartAndPassesOverWmf()
    {
        const QByteArray dib = ZrTest::dibOf(ZrTest::filledImage(40, 20, Qt::red));
        const QByteArray png = ZrTest::pngOf(ZrTest::filledImage(30, 10, Qt::blue));
        // The WMF part lies between the others: skipping it must not shift them.
        const QByteArray file = ZrTest::dwgWithPreview({{ZrTest::kPreviewHeader, headerPart()},
                                                        {ZrTest::kPreviewWmf, QByteArray(100, 'w')},
                                                        {ZrTest::kPreviewBmp, dib},
                                                        {ZrTest::kPreviewPng, png}});
        ZrThumbnailImage thumbnail;
        thumbnail.png = {1, 2, 3}; // what was there before goes
        QCOMPARE(readPreview(file, thumbnail), int(ZrPreview::kOk));
        QCOMPARE(partBytes(thumbnail.header), headerPart());
        QCOMPARE(partBytes(thumbnail.bmp), dib);
        QCOMPARE(partBytes(thumbnail.png), png);
    }

    void refusesWhatIsNoDrawing_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<int>("status");
        const QByteArray good = ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, ZrTest::pngOf(ZrTest::filledImage(4, 4, Qt::red))}});
        QTest::newRow("shorter than the pointer") << good.left(ZrTest::kImageAddressAt + 3) << int(ZrPreview::kNoFile);
        QTest::newRow("release 12") << ZrTest::dwgWithPreview({}, "AC1009") << int(ZrPreview::kNotDrawing);
        QTest::newRow("not a drawing") << QByteArray("%PDF-1.7").append(good.mid(8)) << int(ZrPreview::kNotDrawing);
        QByteArray pastEnd = good;
        ZrTest::putLittleEndian32(pastEnd, ZrTest::kImageAddressAt, quint32(good.size() + 10));
        QTest::newRow("pointer past the end") << pastEnd << int(ZrPreview::kNoImageData);
        QByteArray farPastEnd = good;
        ZrTest::putLittleEndian32(farPastEnd, ZrTest::kImageAddressAt, 0xFFFFFFFFu);
        QTest::newRow("pointer at 4 GiB") << farPastEnd << int(ZrPreview::kNoImageData);
        QByteArray nearEnd = good;
        ZrTest::putLittleEndian32(nearEnd, ZrTest::kImageAddressAt, quint32(good.size() - 10));
        QByteArray noSentinel = good;
        noSentinel[ZrTest::kImageDataAt + 15] = 0;
        QTest::newRow("sentinel damaged") << noSentinel << int(ZrPreview::kNoImageData);
        QByteArray manyEntries = good;
        manyEntries[ZrTest::kImageDataAt + 20] = char(200);
        QTest::newRow("200 entries") << manyEntries << int(ZrPreview::kNoImageData);
    }

    void refusesWhatIsNoDrawing()
    {
        QFETCH(QByteArray, file);
        QFETCH(int, status);
        ZrThumbnailImage thumbnail;
        thumbnail.bmp = {1};
        QCOMPARE(readPreview(file, thumbnail), status);
        QVERIFY(thumbnail.isEmpty());
    }

    // A damaged entry is left out; the sound ones stay.
    void damagedEntriesLeaveTheSoundOnes_data()
    {
        QTest::addColumn<int>("entryField");
        QTest::addColumn<quint32>("value");
        QTest::addColumn<bool>("pngKept");
        // Entry 0 is the BMP, entry 1 the PNG; fields at +1 the start, at +5 the size.
        QTest::newRow("BMP start past the end") << ZrTest::previewEntryAt(0) + 1 << 0x7FFFFFF0u << true;
        QTest::newRow("BMP start and size overflow 32 bits") << ZrTest::previewEntryAt(0) + 5 << 0xFFFFFFF0u << true;
        QTest::newRow("PNG size one past the end") << ZrTest::previewEntryAt(1) + 5 << 0u << false;
    }

    void damagedEntriesLeaveTheSoundOnes()
    {
        QFETCH(int, entryField);
        QFETCH(quint32, value);
        QFETCH(bool, pngKept);
        const QByteArray dib = ZrTest::dibOf(ZrTest::filledImage(40, 20, Qt::red));
        const QByteArray png = ZrTest::pngOf(ZrTest::filledImage(30, 10, Qt::blue));
        QByteArray file = ZrTest::dwgWithPreview({{ZrTest::kPreviewBmp, dib}, {ZrTest::kPreviewPng, png}});
        if (value == 0) {
            // The PNG's size made to reach one byte past the end of the file.
            const quint32 start = qFromLittleEndian<quint32>(file.constData() + ZrTest::previewEntryAt(1) + 1);
            value = quint32(file.size()) - start + 1;
        }
        ZrTest::putLittleEndian32(file, entryField, value);
        // The reader says which part it left out and why.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("the %1 part of \\d+ bytes at offset \\d+ lies outside the file")
                                                                  .arg(pngKept ? QStringLiteral("BMP") : QStringLiteral("PNG"))));
        ZrThumbnailImage thumbnail;
        QCOMPARE(readPreview(file, thumbnail), int(ZrPreview::kOk));
        QCOMPARE(thumbnail.hasPng(), pngKept);
        QCOMPARE(thumbnail.hasBmp(), !pngKept);
    }

    // The bitmap's header is read in BMP byte order and must fit the part.
    void bitmapHeaderChecked_data()
    {
        QTest::addColumn<int>("field");
        QTest::addColumn<quint32>("value");
        QTest::addColumn<bool>("kept");
        QTest::newRow("as written") << 0 << 0u << true;
        QTest::newRow("100000 x 100000 pixels") << 4 << 100000u << false;
        QTest::newRow("one more row than the part holds") << 8 << 21u << false;
        QTest::newRow("rows from the top") << 8 << quint32(-20) << true;
        QTest::newRow("header larger than the part") << 0 << 100000u << false;
    }

    void bitmapHeaderChecked()
    {
        QFETCH(int, field);
        QFETCH(quint32, value);
        QFETCH(bool, kept);
        QByteArray dib = ZrTest::dibOf(ZrTest::filledImage(40, 20, Qt::red));
        if (field || value) {
            ZrTest::putLittleEndian32(dib, field, value);
            if (field == 4)
                ZrTest::putLittleEndian32(dib, 8, value); // height as well as width
        }
        ZrThumbnailImage thumbnail;
        QCOMPARE(readPreview(ZrTest::dwgWithPreview({{ZrTest::kPreviewBmp, dib}}), thumbnail), int(ZrPreview::kOk));
        QCOMPARE(thumbnail.hasBmp(), kept);
    }

    void pngOfAbsurdSizeLeftOut()
    {
        QByteArray png = ZrTest::pngOf(ZrTest::filledImage(8, 8, Qt::green));
        // IHDR's width and height, big-endian as PNG has them.
        qToBigEndian<quint32>(12000, reinterpret_cast<uchar*>(png.data()) + 16);
        qToBigEndian<quint32>(12000, reinterpret_cast<uchar*>(png.data()) + 20);
        ZrThumbnailImage thumbnail;
        QCOMPARE(readPreview(ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, png}}), thumbnail), int(ZrPreview::kOk));
        QVERIFY(thumbnail.isEmpty());
        QCOMPARE(readPreview(ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, QByteArray(40, 'x')}}), thumbnail),
                 int(ZrPreview::kOk));
        QVERIFY(thumbnail.isEmpty());
    }

};

ZR_TEST_SUITE(TestThumbnail)
#include "tst_thumbnail.moc"

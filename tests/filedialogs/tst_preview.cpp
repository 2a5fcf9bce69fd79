// The image preview label: kinds by extension, the size limit, raster images through the host's
// module "ZrRaster", SVG files, drawings' thumbnails, and where the picture goes in its parent.

#include "dwgpreviewfile.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include "zrimagepreviewlabel.h"
#include "zrlogger.h"
#include "zrstring.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include <spdlog/logger.h>
#include <spdlog/sinks/ringbuffer_sink.h>

namespace {

const char kSvg[] = "<?xml version=\"1.0\"?>\n"
                    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40\" height=\"20\">\n"
                    "<rect width=\"40\" height=\"20\" fill=\"#0a0\"/>\n</svg>\n";

// A picture whose left half is red and right half blue, so a mirrored or shifted read shows.
QImage twoColourImage(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter(&image).fillRect(width / 2, 0, width - width / 2, height, Qt::blue);
    return image;
}

} // namespace

class TestPreviewLabel : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;
    QTemporaryDir m_dir;
    std::unique_ptr<QWidget> m_parent;
    ZrImagePreviewLabel* m_label = nullptr;

    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = m_dir.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    QPixmap previewOf(const QString& path)
    {
        m_label->setFilePath(path);
        m_label->showPreview();
        return m_label->pixmap() ? *m_label->pixmap() : QPixmap();
    }

    bool shows(const QString& path) { return !previewOf(path).isNull(); }

private Q_SLOTS:
    void init()
    {
        m_host.reset(new ZrTest::Host(ZrTest::Host::Options{false, false}));
        m_parent.reset(new QWidget);
        m_parent->resize(200, 100);
        m_label = new ZrImagePreviewLabel(m_parent.get());
    }

    void cleanup()
    {
        m_parent.reset();
        m_host.reset();
        ZrLogger::getInstance()->setSpdLogger(nullptr);
        qunsetenv("ZR_HOST_MODULE_PATH");
    }

    void constructors()
    {
        QVERIFY(m_label->wordWrap());
        ZrImagePreviewLabel withText(QStringLiteral("t"));
        QVERIFY(!withText.wordWrap());
        QCOMPARE(withText.text(), QStringLiteral("t"));
        QVERIFY(withText.getPreviewPixmap().isNull());
    }

    // Extensions are compared case-sensitively: a capitalised one has no kind and shows nothing.
    void kindByExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("shown");
        QTest::newRow("png") << "a.png" << true;
        QTest::newRow("PNG") << "b.PNG" << false;
        QTest::newRow("Png") << "c.Png" << false;
        QTest::newRow("jpg") << "d.jpg" << true;
        QTest::newRow("JPG") << "e.JPG" << false;
        QTest::newRow("two dots") << "f.tar.png" << true;
        QTest::newRow("unknown") << "g.xyz" << false;
        QTest::newRow("no extension") << "png" << false;
        QTest::newRow("pdf") << "h.pdf" << false;
    }

    void kindByExtension()
    {
        QFETCH(QString, name);
        QFETCH(bool, shown);
        const QImage image = twoColourImage(40, 20);
        const QString path = write(name, ZrTest::imageBytes(image, name.endsWith(QLatin1String("jpg")) ? "JPEG" : "PNG"));
        QCOMPARE(shows(path), shown);
    }

    void backslashesSeparateFolders()
    {
        // The name is what follows the last separator of either kind: "x.dwg\a.png" is a PNG.
        QVERIFY(shows(write(QStringLiteral("x.dwg\\a.png"), ZrTest::pngOf(twoColourImage(40, 20)))));
        QVERIFY(!shows(write(QStringLiteral("x.png\\a.dwg"), ZrTest::pngOf(twoColourImage(40, 20)))));
        QVERIFY(!shows(m_dir.filePath(QStringLiteral("folder.png\\"))));
    }

    void sizeLimit()
    {
        const QByteArray png = ZrTest::pngOf(twoColourImage(40, 20));
        // PNG readers stop at the end chunk, so padding after it changes only the file's size.
        const QString below = write(QStringLiteral("below.png"), png + QByteArray(2097151 - png.size(), '\0'));
        const QString at = write(QStringLiteral("at.png"), png + QByteArray(2097152 - png.size(), '\0'));
        QVERIFY(shows(below));
        QVERIFY(!shows(at));
        QCOMPARE(m_label->text(), QStringLiteral(">2M不显示预览"));
        QCOMPARE(m_label->geometry(), QRect(0, 0, 200, 100));
        QCOMPARE(m_label->alignment(), Qt::AlignCenter);
        m_label->setWithoutSize();
        QVERIFY(shows(at));
        QVERIFY(m_label->text().isEmpty());
    }

    void pictureFitsItsParent_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QRect>("geometry");
        QTest::newRow("wide: full width, centred vertically") << QSize(400, 100) << QRect(0, 25, 200, 50);
        QTest::newRow("tall: full height, centred across") << QSize(50, 200) << QRect(87, 0, 25, 100);
        QTest::newRow("small: grown to the height") << QSize(20, 20) << QRect(50, 0, 100, 100);
    }

    void pictureFitsItsParent()
    {
        QFETCH(QSize, picture);
        QFETCH(QRect, geometry);
        const QString path = write(QStringLiteral("p.png"), ZrTest::pngOf(twoColourImage(picture.width(), picture.height())));
        const QPixmap shown = previewOf(path);
        QCOMPARE(m_label->geometry(), geometry);
        QCOMPARE(shown.size(), geometry.size());
        QCOMPARE(m_label->sizePolicy().horizontalPolicy(), QSizePolicy::Ignored);
        // Left red, right blue: the rows came through in order and unmirrored.
        const QImage image = shown.toImage();
        QCOMPARE(QColor(image.pixel(1, image.height() / 2)), QColor(Qt::red));
        QCOMPARE(QColor(image.pixel(image.width() - 2, image.height() / 2)), QColor(Qt::blue));
    }

    // TIFF and TGA come through the extra image plug-ins of the system.
    void rasterFormats_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        const QImage image = twoColourImage(40, 20);
        QTest::newRow("bmp") << "a.bmp" << ZrTest::imageBytes(image, "BMP");
        QTest::newRow("tiff") << "a.tiff" << ZrTest::imageBytes(image, "TIFF");
        // An uncompressed true colour TGA, rows from the bottom as Qt's reader takes them, written by hand.
        QByteArray tga(18, '\0');
        tga[2] = 2;
        tga[12] = 40;
        tga[14] = 20;
        tga[16] = 24;
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 40; ++x)
                tga.append(x < 20 ? QByteArray("\x00\x00\xff", 3) : QByteArray("\xff\x00\x00", 3));
        // The footer of TGA 2.0, without which Qt's reader refuses the file.
        tga.append(QByteArray(8, '\0')).append("TRUEVISION-XFILE.", 18);
        QTest::newRow("tga") << "a.tga" << tga;
    }

    void rasterFormats()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QVERIFY(!bytes.isEmpty());
        const QImage image = previewOf(write(name, bytes)).toImage();
        QCOMPARE(image.size(), QSize(200, 100));
        QCOMPARE(QColor(image.pixel(2, 50)), QColor(Qt::red));
        QCOMPARE(QColor(image.pixel(197, 50)), QColor(Qt::blue));
    }

    void unreadableImagesLeaveTheLabelEmpty()
    {
        QVERIFY(!shows(write(QStringLiteral("text.png"), QByteArray("not a picture"))));
        QVERIFY(!shows(write(QStringLiteral("empty.png"), QByteArray())));
        QVERIFY(!shows(m_dir.filePath(QStringLiteral("missing.png"))));
        // A truncated PNG, as a download cut short leaves it.
        QVERIFY(!shows(write(QStringLiteral("cut.png"), ZrTest::pngOf(twoColourImage(40, 20)).left(60))));
    }

    // 12 000 by 12 000 pixels would take 576 MB decoded: refused from the header, before decoding.
    void hugePictureRefused()
    {
        QImage huge(12000, 12000, QImage::Format_Mono);
        huge.fill(1);
        const QString path = write(QStringLiteral("huge.png"), ZrTest::pngOf(huge));
        QVERIFY(QFileInfo(path).size() < 2097152);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("huge.png claims 12000 x 12000 pixels")));
        QVERIFY(!shows(path));
    }

    void withoutTheRasterModule()
    {
        QTemporaryDir empty;
        qputenv("ZR_HOST_MODULE_PATH", empty.path().toLocal8Bit());
        QVERIFY(!shows(write(QStringLiteral("a.png"), ZrTest::pngOf(twoColourImage(40, 20)))));
        // SVG files need no module.
        QVERIFY(shows(write(QStringLiteral("a.svg"), kSvg)));
    }

    void svgFiles()
    {
        QVERIFY(isSvgFormat(ZrString(write(QStringLiteral("a.svg"), kSvg))));
        // SVG content behind an image extension goes to QPixmap::load, which knows it by its content.
        const QString disguised = write(QStringLiteral("svg-inside.png"), kSvg);
        QVERIFY(isSvgFormat(ZrString(disguised)));
        const QImage image = previewOf(disguised).toImage();
        QCOMPARE(image.size(), QSize(200, 100));
        QCOMPARE(QColor(image.pixel(100, 50)), QColor(0, 0xaa, 0));

        // Drawn at the size it is shown, whatever size it declares: whole, this one would not fit in memory.
        const QString huge = write(QStringLiteral("huge.svg"), QByteArray(kSvg).replace("width=\"40\" height=\"20\"",
                                                                                       "width=\"100000\" height=\"100000\""));
        QCOMPARE(previewOf(huge).size(), QSize(100, 100));

        // The element and its namespace must stand on one line.
        const QString split = write(QStringLiteral("split.svg"), "<svg\n xmlns=\"http://www.w3.org/2000/svg\">\n</svg>\n");
        QVERIFY(!isSvgFormat(ZrString(split)));
        const QString later = write(QStringLiteral("later.txt"), "<svg>\n<svg xmlns=\"http://www.w3.org/2000/svg\">\n");
        QVERIFY(isSvgFormat(ZrString(later)));
        const QString single = write(QStringLiteral("single.svg"), "<svg xmlns='http://www.w3.org/2000/svg'/>\n");
        QVERIFY(!isSvgFormat(ZrString(single)));
        QVERIFY(!isSvgFormat(ZrString(m_dir.filePath(QStringLiteral("missing.svg")))));
        QVERIFY(!isSvgFormat(ZrString(m_dir.path())));
    }

    void drawingThumbnails_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QSize>("preview");
        QTest::addColumn<bool>("warned");
        const QImage wide = twoColourImage(40, 20);
        // A drawing's 8-bit DIB carries all 256 palette entries.
        QImage paletted = wide.convertToFormat(QImage::Format_Indexed8);
        paletted.setColorCount(256);
        const QByteArray bmp = ZrTest::dibOf(wide);
        const QByteArray png = ZrTest::pngOf(twoColourImage(30, 30));
        QTest::newRow("dwg, BMP before PNG") << "a.dwg" << ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, png}, {ZrTest::kPreviewBmp, bmp}}) << QSize(40, 20) << false;
        QTest::newRow("dwt, only PNG") << "a.dwt" << ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, png}}) << QSize(30, 30) << false;
        QTest::newRow("8-bit palette") << "p.dwg" << ZrTest::dwgWithPreview({{ZrTest::kPreviewBmp, ZrTest::dibOf(paletted)}}) << QSize(40, 20) << false;
        QTest::newRow("DWG in capitals") << "a.DWG" << ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, png}}) << QSize(0, 0) << false;
        QTest::newRow("neither part") << "n.dwg" << ZrTest::dwgWithPreview({{ZrTest::kPreviewWmf, QByteArray(50, 'w')}}) << QSize(0, 0) << false;
        QByteArray pastEnd = ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, png}});
        ZrTest::putLittleEndian32(pastEnd, ZrTest::kImageAddressAt, quint32(pastEnd.size() + 1));
        QTest::newRow("pointer past the end") << "e.dwg" << pastEnd << QSize(0, 0) << true;
        QByteArray hugeBmp = bmp;
        ZrTest::putLittleEndian32(hugeBmp, 4, 100000);
        ZrTest::putLittleEndian32(hugeBmp, 8, 100000);
        QTest::newRow("BMP of 100000 x 100000, PNG sound") << "h.dwg" << ZrTest::dwgWithPreview({{ZrTest::kPreviewBmp, hugeBmp}, {ZrTest::kPreviewPng, png}}) << QSize(30, 30) << true;
        QTest::newRow("not a drawing") << "t.dwg" << QByteArray("plain text, not a drawing at all") << QSize(0, 0) << false;
    }

    void drawingThumbnails()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, file);
        QFETCH(QSize, preview);
        QFETCH(bool, warned);
        auto sink = std::make_shared<spdlog::sinks::ringbuffer_sink_mt>(8);
        ZrLogger::getInstance()->setSpdLogger(std::make_shared<spdlog::logger>("preview", sink));
        if (warned)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("drawing preview")));
        const QPixmap shown = previewOf(write(name, file));
        QCOMPARE(m_label->getPreviewPixmap().size(), preview);
        QCOMPARE(shown.isNull(), preview.isEmpty());
        if (!preview.isEmpty()) {
            // 40 x 20 has the parent's aspect and fills it; 30 x 30 takes its height.
            QCOMPARE(m_label->geometry(), preview.width() > preview.height() ? QRect(0, 0, 200, 100) : QRect(50, 0, 100, 100));
            const QImage image = shown.toImage();
            QCOMPARE(QColor(image.pixel(1, image.height() / 2)), QColor(Qt::red));
            QCOMPARE(QColor(image.pixel(image.width() - 2, image.height() / 2)), QColor(Qt::blue));
        }
        // Only a drawing without either part is logged, once, at the level warn.
        const bool empty = name == QLatin1String("n.dwg") || name == QLatin1String("e.dwg") || name == QLatin1String("t.dwg");
        const std::vector<std::string> lines = sink->last_formatted();
        QCOMPARE(lines.size(), size_t(empty ? 1 : 0));
        if (empty) {
            const QString line = QString::fromStdString(lines.front());
            QVERIFY2(line.contains(QLatin1String("[warning]")) && line.contains(QStringLiteral("odImage为空"))
                         && line.contains(QLatin1String("zrimagepreviewlabel.cpp")),
                     qPrintable(line));
        }
    }

    // The size limit holds for images only.
    void largeDrawingPreviewed()
    {
        QByteArray file = ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, ZrTest::pngOf(twoColourImage(30, 30))}});
        file.append(QByteArray(3 << 20, '\x55'));
        QVERIFY(shows(write(QStringLiteral("big.dwg"), file)));
    }

    void thumbnailKeptUntilTheNextDrawing()
    {
        const QString drawing = write(QStringLiteral("a.dwg"), ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, ZrTest::pngOf(twoColourImage(30, 30))}}));
        QVERIFY(shows(drawing));
        QVERIFY(shows(write(QStringLiteral("a.png"), ZrTest::pngOf(twoColourImage(40, 20)))));
        QCOMPARE(m_label->getPreviewPixmap().size(), QSize(30, 30));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("drawing preview")));
        QVERIFY(!shows(write(QStringLiteral("n.dwg"), ZrTest::dwgWithPreview({{ZrTest::kPreviewPng, QByteArray(40, 'x')}}))));
        QVERIFY(m_label->getPreviewPixmap().isNull());
    }

    void parentWithoutSize()
    {
        m_parent->resize(0, 0);
        QCOMPARE(previewOf(write(QStringLiteral("a.png"), ZrTest::pngOf(twoColourImage(40, 20)))).size(), QSize(40, 20));
        QPixmap none;
        // A null pixmap changes nothing.
        m_label->scaledPixmapAndPreview(none);
    }
};

ZR_TEST_SUITE(TestPreviewLabel)
#include "tst_preview.moc"

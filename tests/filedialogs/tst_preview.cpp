// The image preview label: kinds by extension, the size limit, huge pictures and drawings' thumbnails.

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

    // Extensions are compared case-sensitively: a capitalised one has no kind and shows nothing.
    void kindByExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("shown");
        QTest::newRow("png") << "a.png" << true;
        QTest::newRow("PNG") << "b.PNG" << false;
        QTest::newRow("JPG") << "e.JPG" << false;
        QTest::newRow("unknown") << "g.xyz" << false;
        QTest::newRow("no extension") << "png" << false;
    }

    void kindByExtension()
    {
        QFETCH(QString, name);
        QFETCH(bool, shown);
        const QImage image = twoColourImage(40, 20);
        const QString path = write(name, ZrTest::imageBytes(image, name.endsWith(QLatin1String("jpg")) ? "JPEG" : "PNG"));
        QCOMPARE(shows(path), shown);
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
        QByteArray hugeBmp = bmp;
        ZrTest::putLittleEndian32(hugeBmp, 4, 100000);
        ZrTest::putLittleEndian32(hugeBmp, 8, 100000);
        QTest::newRow("BMP of 100000 x 100000, PNG sound") << "h.dwg" << ZrTest::dwgWithPreview({{ZrTest::kPreviewBmp, hugeBmp}, {ZrTest::kPreviewPng, png}}) << QSize(30, 30) << true;
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

};

ZR_TEST_SUITE(TestPreviewLabel)
#include "tst_preview.moc"

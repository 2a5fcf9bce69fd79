// The image preview label on a 4 000 x 4 000 PNG, against QImageReader reading the same file scaled
// to the size the label shows it at and made into a pixmap; then the preview of a drawing's
// thumbnail, which must take less than 10 ms.

#include "benchsupport.h"
#include "dwgpreviewfile.h"

#include "zrimagepreviewlabel.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>
#include <QTemporaryDir>
#include <cstdio>

namespace {

const QSize kPane(400, 300);

// Bands and circles: a picture a PNG encoder compresses as it would a drawing or a photograph's
// smooth parts, neither trivially nor not at all.
QImage benchPicture(int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < side; ++x)
            line[x] = qRgb((x * 255) / side, (y * 255) / side, ((x ^ y) >> 4) & 0xff);
    }
    QPainter painter(&image);
    painter.setPen(QPen(Qt::black, 3));
    for (int r = 50; r < side / 2; r += 97)
        painter.drawEllipse(QPoint(side / 2, side / 2), r, r);
    return image;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

int main(int argc, char** argv)
{
    zrbench::BenchApp app(argc, argv);
    const int rounds = app.intArgument(1, 7, 3);
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("bench.png"));
    const QString dwg = dir.filePath(QStringLiteral("bench.dwg"));
    QImage thumbnail = benchPicture(180).convertToFormat(QImage::Format_Indexed8);
    thumbnail.setColorCount(256);
    if (!writeFile(png, ZrTest::pngOf(benchPicture(4000)))
        || !writeFile(dwg, ZrTest::dwgWithPreview({{ZrTest::kPreviewBmp, ZrTest::dibOf(thumbnail)},
                                                   {ZrTest::kPreviewPng, ZrTest::pngOf(benchPicture(180))}}))) {
        std::fprintf(stderr, "bench_preview: cannot write the files in %s\n", qPrintable(dir.path()));
        return 1;
    }

    QWidget pane;
    pane.resize(kPane);
    auto* label = new ZrImagePreviewLabel(&pane);
    // The PNG is larger than 2 MiB: the limit would show a text instead.
    label->setWithoutSize();
    QSize shown;
    const auto ours = [&] {
        QElapsedTimer timer;
        timer.start();
        label->setFilePath(png);
        label->showPreview();
        const double ms = timer.nsecsElapsed() / 1e6;
        shown = label->pixmap() ? label->pixmap()->size() : QSize();
        return ms;
    };
    ours();
    if (shown.isEmpty()) {
        std::fprintf(stderr, "bench_preview: the label showed nothing\n");
        return 1;
    }
    const auto baseline = [&] {
        QElapsedTimer timer;
        timer.start();
        QImageReader reader(png);
        reader.setScaledSize(shown);
        const QPixmap pixmap = QPixmap::fromImage(reader.read());
        const double ms = timer.nsecsElapsed() / 1e6;
        if (pixmap.size() != shown)
            std::fprintf(stderr, "bench_preview: the baseline read %dx%d\n", pixmap.width(), pixmap.height());
        return ms;
    };
    const zrbench::Medians medians = zrbench::timeInterleaved(rounds, ours, baseline);
    std::printf("4000x4000 PNG of %lld bytes shown at %dx%d, median of %d rounds\n",
                static_cast<long long>(QFileInfo(png).size()), shown.width(), shown.height(), rounds);
    zrbench::printMedians(medians, "ZrImagePreviewLabel::showPreview", "QImageReader scaled + QPixmap", 1.3);

    std::vector<double> thumbnailTimes;
    for (int i = 0; i < 50; ++i) {
        QElapsedTimer timer;
        timer.start();
        label->setFilePath(dwg);
        label->showPreview();
        thumbnailTimes.push_back(timer.nsecsElapsed() / 1e6);
    }
    const double median = zrbench::median(thumbnailTimes);
    std::printf("drawing thumbnail (180x180, 8 bits) shown at %dx%d, median of 50\n", label->width(), label->height());
    std::printf("  %-38s %8.3f ms  (goal: under 10 ms)\n", "ZrImagePreviewLabel::showPreview", median);
    return 0;
}

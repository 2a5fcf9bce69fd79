// Opening a DXF drawing of 100 000 entities in the reference host (the file read, checked, handed
// to dxflib and built into a drawing) against dxflib's own bare read of the same file into nothing.
// The drawing is written here: layers, a block, and lines, circles, arcs, polylines, texts and
// inserts in turn.

#include "benchsupport.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"

#include <dl_creationadapter.h>
#include <dl_dxf.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSaveFile>
#include <QTemporaryDir>
#include <cstdio>
#include <vector>

namespace {

constexpr int kLayers = 20;

QByteArray group(int code, const QByteArray& value) { return QByteArray::number(code) + '\n' + value + '\n'; }
QByteArray group(int code, double value) { return group(code, QByteArray::number(value, 'f', 3)); }

QByteArray benchDrawing(int entities)
{
    QByteArray text = group(0, "SECTION") + group(2, "TABLES") + group(0, "TABLE") + group(2, "LAYER");
    for (int i = 0; i < kLayers; ++i)
        text += group(0, "LAYER") + group(2, "L" + QByteArray::number(i)) + group(70, "0") + group(62, QByteArray::number(1 + i % 9))
            + group(6, "CONTINUOUS");
    text += group(0, "ENDTAB") + group(0, "ENDSEC");
    text += group(0, "SECTION") + group(2, "BLOCKS") + group(0, "BLOCK") + group(8, "0") + group(2, "MARK") + group(70, "0")
        + group(10, 0.0) + group(20, 0.0) + group(0, "CIRCLE") + group(8, "0") + group(10, 0.0) + group(20, 0.0)
        + group(40, 1.0) + group(0, "ENDBLK") + group(0, "ENDSEC");
    text += group(0, "SECTION") + group(2, "ENTITIES");
    for (int i = 0; i < entities; ++i) {
        const double x = (i % 300) * 10.0, y = (i / 300) * 10.0;
        const QByteArray layer = group(8, "L" + QByteArray::number(i % kLayers));
        switch (i % 6) {
        case 0:
            text += group(0, "LINE") + layer + group(10, x) + group(20, y) + group(11, x + 6) + group(21, y + 6);
            break;
        case 1:
            text += group(0, "CIRCLE") + layer + group(10, x) + group(20, y) + group(40, 3.0);
            break;
        case 2:
            text += group(0, "ARC") + layer + group(10, x) + group(20, y) + group(40, 3.0) + group(50, 0.0) + group(51, 120.0);
            break;
        case 3:
            text += group(0, "LWPOLYLINE") + layer + group(90, "4") + group(70, "1") + group(10, x) + group(20, y)
                + group(10, x + 5) + group(20, y) + group(10, x + 5) + group(20, y + 5) + group(10, x) + group(20, y + 5);
            break;
        case 4:
            text += group(0, "TEXT") + layer + group(10, x) + group(20, y) + group(40, 2.0) + group(1, "T" + QByteArray::number(i));
            break;
        default:
            text += group(0, "INSERT") + layer + group(2, "MARK") + group(10, x) + group(20, y);
        }
    }
    return text + group(0, "ENDSEC") + group(0, "EOF");
}

double openOurs(const QString& path)
{
    QElapsedTimer timer;
    timer.start();
    QString error;
    if (!ZrHostControl::openDrawing(path, &error))
        std::fprintf(stderr, "bench_dxf: %s\n", qPrintable(error));
    return timer.nsecsElapsed() / 1e6;
}

double readBare(const QString& path)
{
    QElapsedTimer timer;
    timer.start();
    DL_CreationAdapter nothing;
    DL_Dxf dxf;
    dxf.in(path.toStdString(), &nothing);
    return timer.nsecsElapsed() / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int entities = argc > 1 ? std::max(100, QByteArray(argv[1]).toInt()) : 100000;
    const int rounds = argc > 2 ? std::max(3, QByteArray(argv[2]).toInt()) : 5;
    QTemporaryDir folder;
    ZrHostControl::Options options;
    options.configDir = folder.path();
    options.languageService = false;
    ZrHostControl::initialize(options);

    const QString path = folder.filePath(QStringLiteral("bench.dxf"));
    QSaveFile file(path);
    const QByteArray text = benchDrawing(entities);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        std::fprintf(stderr, "bench_dxf: cannot write %s\n", qPrintable(path));
        return 1;
    }
    openOurs(path);
    readBare(path);
    std::vector<double> ours, bare;
    // Interleaved, so that drift of the machine weighs on both alike.
    for (int i = 0; i < rounds; ++i) {
        ours.push_back(openOurs(path));
        bare.push_back(readBare(path));
    }
    const double a = zrbench::median(ours), b = zrbench::median(bare);
    std::printf("opening a DXF of %d entities (%.1f MB), median of %d rounds\n", entities, text.size() / 1048576.0, rounds);
    std::printf("  %-38s %8.1f ms\n", "ZrHostControl::openDrawing", a);
    std::printf("  %-38s %8.1f ms\n", "dxflib DL_Dxf::in into nothing", b);
    std::printf("  %-38s %8.2f  (goal: at most 2.00)\n", "ratio ours / bare dxflib", a / b);
    ZrHostControl::shutdown();
    return 0;
}

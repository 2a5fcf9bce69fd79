// The memory a drawing of a million entities takes in the substitute, against its budget of 400 MB
// resident: the whole process, read from /proc/self/status once the drawing is built.

#include "zrdbdatabase.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

namespace {

constexpr int kEntities = 1000000;
constexpr int kLayers = 50;
constexpr double kBudgetMb = 400.0;

// VmRSS in megabytes; 0 when the system does not tell.
double residentMb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    }
    return 0.0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir config;
    ZrHostControl::Options options;
    options.configDir = config.path();
    options.languageService = false;
    ZrHostControl::initialize(options);

    const double before = residentMb();
    QElapsedTimer timer;
    timer.start();
    ZrHostControl::openGeneratedDrawing(kEntities, kLayers);
    const double buildMs = timer.nsecsElapsed() / 1e6;
    const double after = residentMb();

    std::printf("drawing of %d entities on %d layers: %d objects, built in %.0f ms\n", kEntities, kLayers,
                curDatabase()->objectCount(), buildMs);
    std::printf("resident %.1f MB (%.1f MB before the drawing), budget %.0f MB: ratio %.2f %s\n", after, before,
                kBudgetMb, after / kBudgetMb, after <= kBudgetMb ? "(met)" : "(MISSED)");
    ZrHostControl::shutdown();
    return after <= kBudgetMb ? 0 : 1;
}

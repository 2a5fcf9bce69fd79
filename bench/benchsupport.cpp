#include "benchsupport.h"

#include "qt_common_ui.h"
#include "zrhostcontrol.h"

#include <QString>
#include <algorithm>
#include <cstdio>

namespace zrbench {

namespace {

void quietHandler(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg && !message.contains(QLatin1String("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Runs before the application object exists, which reads the platform when it is built.
int& BenchApp::prepare(int& argc)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietHandler);
    return argc;
}

BenchApp::BenchApp(int& argc, char** argv) : m_app(prepare(argc), argv)
{
    ZrHostControl::Options options;
    options.configDir = m_config.path();
    options.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
    ZrHostControl::initialize(options);
    zrrxEntryPoint(1);
}

BenchApp::~BenchApp()
{
    zrrxEntryPoint(2);
    ZrHostControl::shutdown();
}

int BenchApp::intArgument(int index, int fallback, int least) const
{
    const QStringList arguments = QCoreApplication::arguments();
    return index < arguments.size() ? std::max(least, arguments.at(index).toInt()) : fallback;
}

} // namespace zrbench

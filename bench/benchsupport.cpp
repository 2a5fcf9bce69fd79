#include "benchsupport.h"

#include "qt_common_ui.h"
#include "zrhostcontrol.h"

#include <QString>
#include <algorithm>
#include <cstdio>

namespace zrbench {

void preferOffscreen()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

static void quietHandler(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg && !message.contains(QLatin1String("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

void quietQtMessages()
{
    qInstallMessageHandler(quietHandler);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

HostWithModule::HostWithModule()
{
    ZrHostControl::Options options;
    options.configDir = m_config.path();
    options.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
    ZrHostControl::initialize(options);
    zrrxEntryPoint(1);
}

HostWithModule::~HostWithModule()
{
    zrrxEntryPoint(2);
    ZrHostControl::shutdown();
}

} // namespace zrbench

#include "benchsupport.h"

#include "qt_common_ui.h"
#include "zrhostcontrol.h"

#include <QDialog>
#include <QString>
#include <QTimer>
#include <algorithm>
#include <cstdio>

namespace zrbench {

namespace {

void quietHandler(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg && !message.contains(QLatin1String("This plugin does not support")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

// Rejects every dialog once it has been painted, as a user's Esc would. Installed on the application.
class RejectWhenPainted : public QObject
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            auto* dialog = qobject_cast<QDialog*>(watched);
            if (dialog && !dialog->property("zrClosing").toBool()) {
                dialog->setProperty("zrClosing", true);
                QTimer::singleShot(0, dialog, [dialog] { dialog->reject(); });
            }
        }
        return false;
    }
};

} // namespace

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

Medians timeInterleaved(int rounds, const std::function<double()>& ours, const std::function<double()>& baseline)
{
    for (int i = 0; i < 10; ++i) {
        ours();
        baseline();
    }
    std::vector<double> oursMs;
    std::vector<double> baselineMs;
    for (int i = 0; i < rounds; ++i) {
        oursMs.push_back(ours());
        baselineMs.push_back(baseline());
    }
    return {median(oursMs), median(baselineMs)};
}

void compareDialogs(const BenchApp& app, int defaultRounds, const char* what, const char* oursName,
                    const char* baselineName, double goal, const std::function<double()>& ours,
                    const std::function<double()>& baseline)
{
    RejectWhenPainted closer;
    qApp->installEventFilter(&closer);
    const int rounds = app.intArgument(1, defaultRounds, 10);
    const Medians m = timeInterleaved(rounds, ours, baseline);
    qApp->removeEventFilter(&closer);
    std::printf("%s shown and closed, median of %d rounds\n", what, rounds);
    printMedians(m, oursName, baselineName, goal);
}

void printMedians(const Medians& medians, const char* oursName, const char* baselineName, double goal)
{
    std::printf("  %-38s %8.3f ms\n", oursName, medians.ours);
    std::printf("  %-38s %8.3f ms\n", baselineName, medians.baseline);
    std::printf("  %-38s %8.2f  (goal: at most %.2f)\n", "ratio ours / Qt", medians.ours / medians.baseline, goal);
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

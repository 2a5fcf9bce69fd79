// zrhostapp: the reference host. It loads the module as a plug-in, as the CAD host does, shows a
// drawing with the module's layer box bound to it, and offers the module's dialogs from a menu.

#include "zrappenv.h"
#include "zrdialogrun.h"
#include "zrhostcontrol.h"
#include "zrhostmainwindow.h"
#include "zrhostsession.h"
#include "zrscreenshottour.h"

#include <QApplication>
#include <QCommandLineParser>

namespace {

const char kUsage[] = "usage: zrhostapp [--theme light|dark] [--drawing FILE] [--screenshot DIR]\n";

// Exit codes besides 0.
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

} // namespace

int main(int argc, char** argv)
{
    ZrApp::preferOffscreenWhenHeadless();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zrhostapp"));

    QCommandLineParser parser;
    parser.addOptions({
        {QStringLiteral("theme"), QString(), QStringLiteral("light|dark"), QStringLiteral("light")},
        {QStringLiteral("drawing"), QString(), QStringLiteral("FILE")},
        {QStringLiteral("screenshot"), QString(), QStringLiteral("DIR")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QString()},
    });
    int theme = ZrApp::kLightTheme;
    if (!parser.parse(QApplication::arguments()) || !parser.positionalArguments().isEmpty()
        || !ZrApp::parseTheme(parser.value(QStringLiteral("theme")), &theme)) {
        std::fputs(kUsage, stderr);
        return kExitUsage;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(kUsage, stdout);
        return 0;
    }

    ZrApp::applyAppearance(theme);
    ZrHostSession session(theme);
    // Colour 7 is drawn black on the light paper of the drawing view, white on the dark one.
    ZrHostControl::setDrawingBackgroundDark(theme == ZrApp::kDarkTheme);
    if (!session.error().isEmpty()) {
        ZrApp::printLine(stderr, QStringLiteral("zrhostapp: ") + session.error());
        return kExitFailure;
    }
    const QString drawingFile = parser.value(QStringLiteral("drawing"));
    QString drawingError;
    if (!ZrApp::openStartDrawing(drawingFile, ZrApp::StartDrawing::Sample, &drawingError)) {
        ZrApp::printLine(stderr, QStringLiteral("zrhostapp: ") + drawingError);
        return kExitUsage;
    }
    // The CAD host unloads its modules while its windows still stand.
    QObject::connect(&app, &QApplication::aboutToQuit, [&session] { session.unloadModule(); });

    const QStringList dialogs = ZrApp::availableDialogs();
    ZrHostMainWindow window(dialogs);
    window.setDrawingFile(drawingFile);
    window.appendToCommandLine(QStringLiteral("已加载模块 %1").arg(ZrHostSession::moduleFile()));
    window.appendToCommandLine(QStringLiteral("对话框: %1").arg(dialogs.join(QStringLiteral(", "))));
    window.appendToCommandLine(drawingFile.isEmpty() ? QStringLiteral("已打开示例图纸")
                                                     : QStringLiteral("已打开图纸 %1").arg(drawingFile));
    window.show();
    if (parser.isSet(QStringLiteral("screenshot")))
        takeScreenshots(&window, parser.value(QStringLiteral("screenshot")));
    return QApplication::exec();
}

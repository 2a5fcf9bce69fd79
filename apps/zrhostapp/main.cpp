// zrhostapp: the reference host. It loads the module as a plug-in, as the CAD host does,
// and offers its dialogs from a menu.

#include "zrappenv.h"
#include "zrdialogrun.h"
#include "zrhostmainwindow.h"
#include "zrhostsession.h"
#include "zrui.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QWindow>

#include <cstdio>

namespace {

const char kUsage[] = "usage: zrhostapp [--theme light|dark] [--screenshot DIR]\n";

void printLine(FILE* stream, const QString& line)
{
    std::fprintf(stream, "%s\n", line.toUtf8().constData());
    std::fflush(stream);
}

bool saveGrab(QWidget* widget, const QString& file)
{
    if (!widget->grab().save(file, "PNG")) {
        printLine(stderr, QStringLiteral("zrhostapp: cannot write %1").arg(file));
        return false;
    }
    printLine(stdout, file);
    return true;
}

// Headless tour: the main window, then a message box over it; the application ends with 0
// when both pictures are written.
void takeScreenshots(ZrHostMainWindow* window, const QString& dir)
{
    // A platform that tells nothing of exposure goes straight on.
    const auto exposed = [window] { return !window->windowHandle() || window->windowHandle()->isExposed(); };
    ZrApp::when(window, exposed, [window, dir] {
        QDir().mkpath(dir);
        if (!saveGrab(window, QDir(dir).filePath(QStringLiteral("main-window.png"))))
            return QApplication::exit(1);
        QObject boxWatch;
        bool boxWritten = false;
        ZrApp::whenModalShown(&boxWatch, [dir, &boxWritten](QWidget* box) {
            boxWritten = saveGrab(box, QDir(dir).filePath(QStringLiteral("message-box.png")));
            box->close();
        });
        const ZrJsonPtr answer = zruiMessageBoxEx(L"ZrQtBaseUtils", L"图纸“平面图-1”已修改。\n是否在关闭前保存更改？",
                                                  nullptr, 3, 1, 32, window);
        const QString line = QString::fromUtf8(ZrApp::answerLine(nullptr, answer));
        window->appendToCommandLine(line);
        printLine(stdout, line);
        QApplication::exit(boxWritten ? 0 : 1);
    });
}

} // namespace

int main(int argc, char** argv)
{
    ZrApp::preferOffscreenWhenHeadless();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zrhostapp"));

    QCommandLineParser parser;
    parser.addOptions({
        {QStringLiteral("theme"), QString(), QStringLiteral("light|dark"), QStringLiteral("light")},
        {QStringLiteral("screenshot"), QString(), QStringLiteral("DIR")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QString()},
    });
    int theme = ZrApp::kLightTheme;
    if (!parser.parse(QApplication::arguments()) || !parser.positionalArguments().isEmpty()
        || !ZrApp::parseTheme(parser.value(QStringLiteral("theme")), &theme)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(kUsage, stdout);
        return 0;
    }

    ZrApp::applyAppearance(theme);
    ZrHostSession session(theme);
    if (!session.error().isEmpty()) {
        printLine(stderr, QStringLiteral("zrhostapp: ") + session.error());
        return 1;
    }
    // The CAD host unloads its modules while its windows still stand.
    QObject::connect(&app, &QApplication::aboutToQuit, [&session] { session.unloadModule(); });

    const QStringList dialogs = ZrApp::availableDialogs();
    ZrHostMainWindow window(dialogs);
    window.appendToCommandLine(QStringLiteral("已加载模块 %1").arg(ZrHostSession::moduleFile()));
    window.appendToCommandLine(QStringLiteral("对话框: %1").arg(dialogs.join(QStringLiteral(", "))));
    window.show();
    if (parser.isSet(QStringLiteral("screenshot")))
        takeScreenshots(&window, parser.value(QStringLiteral("screenshot")));
    return QApplication::exec();
}

// zrui: runs one of the module's dialogs as a host module would, from the command line.

#include "zrappenv.h"
#include "zrdialogrun.h"
#include "zrhostsession.h"
#include "zrsteps.h"
#include "zrtabbarharness.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDialog>
#include <QFile>

#include <cstdio>
#include <memory>

namespace {

// Exit codes besides 0.
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;
constexpr int kExitUnknownDialog = 3;

const char kUsage[] =
    "usage: zrui list [--drawing FILE]\n"
    "       zrui dialog NAME [--param JSON | --param-file FILE] [--do STEPS] [--screenshot FILE.png]\n"
    "                        [--theme light|dark] [--timeout-ms N] [--drawing FILE]\n"
    "       zrui tabbar [TAB...] [--start-page] [--layout] [--no-close] [--current N] [--width N]\n"
    "                   [--do STEPS] [--screenshot FILE.png] [--theme light|dark] [--timeout-ms N]\n"
    "\n"
    "tabbar shows the module's tab bar \"ZrTabBar\" (\"LayoutTabBar\" with --layout) with the tabs given\n"
    "and \"+\" last, carries the steps out on it, closes it and prints {\"current\":N,\"tabs\":[...]}.\n"
    "\n"
    "--drawing opens a drawing file first; without it the host has its empty default drawing.\n"
    "\n"
    "STEPS, separated by \";\" (\"\\;\" is a literal one), run once the dialog is up, each on the\n"
    "topmost modal window of its time (a message box the dialog opens, say):\n"
    "  click:X      the button, check box or radio button whose object name, else text, is X\n"
    "               (\"&\" included; a task dialog's command button by its caption)\n"
    "  key:SEQ      a key sequence such as Esc, Return, Alt+Y\n"
    "  type:TEXT    typed into the focused widget\n"
    "  focus:X      focus to the widget whose object name is X\n"
    "  wait:MS      a pause\n"
    "  shot:FILE    a PNG of the window\n"
    "  close        the window's close button\n"
    "  clickat:NAME@X,Y     a left click at pixel X,Y of the visible widget whose object name is NAME\n"
    "  dblclickat:NAME@X,Y  a double click there\n"
    "  hover:NAME@X,Y       the mouse moved there\n"
    "  select:NAME=TEXT     a click on the item with that text in the combo box, tab widget, tab bar,\n"
    "                       list or tree view whose object name is NAME\n"
    "\n"
    "Prints {\"result\": R, \"param\": P, \"answer\": A} once the dialog has ended, and on stderr\n"
    "zrui: message box \"TITLE\": TEXT for each message box that came up.\n"
    "Exit codes: 0 done, 1 the module cannot be loaded, 2 bad usage, parameter, drawing or step,\n"
    "3 unknown dialog.\n";

void printError(const QString& message)
{
    std::fprintf(stderr, "zrui: %s\n", message.toUtf8().constData());
}

int usageError(const QString& message)
{
    printError(message);
    std::fputs(kUsage, stderr);
    return kExitUsage;
}

// Each message box that comes up, on one line, so that a caller can see which message was shown.
void printMessageBox(const QString& title, const QString& text)
{
    QString oneLine = text;
    oneLine.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    ZrApp::printLine(stderr, QStringLiteral("zrui: message box \"%1\": %2").arg(title, oneLine));
}

struct DialogRequest
{
    QString name;
    ZrJsonPtr param;
    QVector<ZrStep> steps;
    QString screenshotFile;
    int timeoutMs = -1;
};

// Reads the parameter object from --param or --param-file; an empty object without either.
bool readParam(const QCommandLineParser& parser, ZrJsonPtr* param, QString* error)
{
    QByteArray text;
    QString source = QStringLiteral("--param");
    if (parser.isSet(QStringLiteral("param-file"))) {
        source = parser.value(QStringLiteral("param-file"));
        QFile file(source);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = QStringLiteral("%1: %2").arg(source, file.errorString());
            return false;
        }
        text = file.readAll();
    } else if (parser.isSet(QStringLiteral("param"))) {
        text = parser.value(QStringLiteral("param")).toUtf8();
    } else {
        *param = ElementValue::createObject(kZrJsonObject);
        return true;
    }
    ZrJsonParseError parseError;
    *param = ElementValue::parse(text.constData(), static_cast<size_t>(text.size()), &parseError);
    if (!parseError.ok()) {
        *error = QStringLiteral("%1: line %2, column %3: %4")
                     .arg(source)
                     .arg(parseError.line)
                     .arg(parseError.column)
                     .arg(parseError.message.toQString());
        return false;
    }
    if (!(*param)->isObject()) {
        *error = source + QStringLiteral(": the parameter must be a JSON object");
        return false;
    }
    return true;
}

int listDialogs()
{
    for (const QString& name : ZrApp::availableDialogs())
        std::printf("%s\n", name.toUtf8().constData());
    return 0;
}

int showDialog(const DialogRequest& request)
{
    ZrStepRunner runner(request.steps, request.screenshotFile, request.timeoutMs);
    runner.onMessageBox(printMessageBox);
    runner.start();
    const ZrJsonPtr answer = ZrApp::runDialog(request.name, request.param, nullptr);
    if (!runner.error().isEmpty()) {
        printError(runner.error());
        return kExitUsage;
    }
    if (!answer) {
        printError(QStringLiteral("no dialog named \"%1\"; see zrui list").arg(request.name));
        return kExitUnknownDialog;
    }
    std::printf("%s\n", ZrApp::answerLine(request.param, answer).constData());
    std::fflush(stdout);
    return 0;
}

int showTabBar(DialogRequest request, const ZrTabBarRequest& bar)
{
    ZrTabBar* tabs = nullptr;
    std::unique_ptr<QDialog> window(zrMakeTabBarWindow(bar, &tabs));
    // The bar is no dialog that ends itself: its window closes once the steps are done.
    ZrStep close;
    close.text = QStringLiteral("close");
    request.steps.append(close);
    ZrStepRunner runner(request.steps, request.screenshotFile, request.timeoutMs);
    runner.onMessageBox(printMessageBox);
    runner.start();
    window->exec();
    if (!runner.error().isEmpty()) {
        printError(runner.error());
        return kExitUsage;
    }
    std::printf("%s\n", zrTabBarLine(tabs).constData());
    std::fflush(stdout);
    return 0;
}

// The options of the tabbar command; false with `error` set on a bad one.
bool readTabBarRequest(const QCommandLineParser& parser, ZrTabBarRequest* bar, QString* error)
{
    bar->tabs = parser.positionalArguments().mid(1);
    bar->startPage = parser.isSet(QStringLiteral("start-page"));
    bar->layoutBar = parser.isSet(QStringLiteral("layout"));
    bar->closeButtons = !parser.isSet(QStringLiteral("no-close"));
    bool ok = true;
    if (parser.isSet(QStringLiteral("current")))
        bar->current = parser.value(QStringLiteral("current")).toInt(&ok);
    if (!ok || bar->current < -1) {
        *error = QStringLiteral("--current takes a tab index");
        return false;
    }
    if (parser.isSet(QStringLiteral("width")))
        bar->width = parser.value(QStringLiteral("width")).toInt(&ok);
    if (!ok || bar->width < 1 || bar->width > 100000) {
        *error = QStringLiteral("--width takes pixels, 1 to 100000");
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    ZrApp::preferOffscreenWhenHeadless();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("zrui"));

    QCommandLineParser parser;
    parser.addOptions({
        {QStringLiteral("param"), QString(), QStringLiteral("JSON")},
        {QStringLiteral("param-file"), QString(), QStringLiteral("FILE")},
        {QStringLiteral("do"), QString(), QStringLiteral("STEPS")},
        {QStringLiteral("screenshot"), QString(), QStringLiteral("FILE.png")},
        {QStringLiteral("theme"), QString(), QStringLiteral("light|dark"), QStringLiteral("light")},
        {QStringLiteral("timeout-ms"), QString(), QStringLiteral("N")},
        {QStringLiteral("drawing"), QString(), QStringLiteral("FILE")},
        {QStringLiteral("start-page"), QString()},
        {QStringLiteral("layout"), QString()},
        {QStringLiteral("no-close"), QString()},
        {QStringLiteral("current"), QString(), QStringLiteral("N")},
        {QStringLiteral("width"), QString(), QStringLiteral("N")},
        {{QStringLiteral("h"), QStringLiteral("help")}, QString()},
    });
    if (!parser.parse(QApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(kUsage, stdout);
        return 0;
    }

    const QStringList words = parser.positionalArguments();
    const QString command = words.value(0);
    const bool isList = command == QLatin1String("list") && words.size() == 1;
    const bool isTabBar = command == QLatin1String("tabbar");
    if (!isList && !isTabBar && !(command == QLatin1String("dialog") && words.size() == 2))
        return usageError(words.isEmpty() ? QStringLiteral("no command") : QStringLiteral("bad command line"));

    int theme = ZrApp::kLightTheme;
    if (!ZrApp::parseTheme(parser.value(QStringLiteral("theme")), &theme))
        return usageError(QStringLiteral("--theme takes light or dark"));

    DialogRequest request;
    ZrTabBarRequest tabBar;
    if (!isList) {
        request.name = words.value(1);
        if (parser.isSet(QStringLiteral("param")) && parser.isSet(QStringLiteral("param-file")))
            return usageError(QStringLiteral("--param and --param-file exclude each other"));
        if (parser.isSet(QStringLiteral("timeout-ms"))) {
            bool ok = false;
            request.timeoutMs = parser.value(QStringLiteral("timeout-ms")).toInt(&ok);
            if (!ok || request.timeoutMs < 0)
                return usageError(QStringLiteral("--timeout-ms takes milliseconds, 0 or more"));
        }
        QString error;
        if (!readParam(parser, &request.param, &error)
            || !parseSteps(parser.value(QStringLiteral("do")), &request.steps, &error)
            || (isTabBar && !readTabBarRequest(parser, &tabBar, &error))) {
            printError(error);
            return kExitUsage;
        }
        request.screenshotFile = parser.value(QStringLiteral("screenshot"));
    }

    ZrApp::applyAppearance(theme);
    ZrHostSession session(theme);
    if (!session.error().isEmpty()) {
        printError(session.error());
        return kExitFailure;
    }
    QString drawingError;
    if (!ZrApp::openStartDrawing(parser.value(QStringLiteral("drawing")), ZrApp::StartDrawing::HostDefault,
                                 &drawingError)) {
        printError(drawingError);
        return kExitUsage;
    }
    if (isTabBar)
        return showTabBar(request, tabBar);
    return isList ? listDialogs() : showDialog(request);
}

#include "zrappenv.h"

#include "zrconfig.h"
#include "zrdrawingcontrol.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QTimer>
#include <QTranslator>
#include <QWidget>

namespace ZrApp {

void printLine(FILE* stream, const QString& line)
{
    std::fprintf(stream, "%s\n", line.toUtf8().constData());
    std::fflush(stream);
}

void preferOffscreenWhenHeadless()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

bool parseTheme(const QString& name, int* theme)
{
    if (name == QLatin1String("light"))
        *theme = kLightTheme;
    else if (name == QLatin1String("dark"))
        *theme = kDarkTheme;
    else
        return false;
    return true;
}

ZrHostControl::Options hostOptions(int theme)
{
    ZrHostControl::Options options;
    const QString root = qEnvironmentVariable("ZR_RESOURCE_ROOT");
    options.resourceRoot = root.isEmpty() ? QStringLiteral(ZR_DEFAULT_RESOURCE_ROOT) : root;
    options.theme = theme;
    return options;
}

bool openStartDrawing(const QString& file, StartDrawing fallback, QString* error)
{
    if (!file.isEmpty()) {
        QString notice;
        if (!ZrHostControl::openDrawing(file, error, &notice))
            return false;
        // What a DXF drawing lost is said, as the host's open says it.
        if (!notice.isEmpty())
            printLine(stderr, QStringLiteral("%1: %2: %3").arg(QCoreApplication::applicationName(), file, notice));
        return true;
    }
    if (fallback == StartDrawing::Sample)
        ZrHostControl::openSampleDrawing();
    return true;
}

static QPalette lightPalette()
{
    QPalette p(QColor(0xf4, 0xf5, 0xf7));
    p.setColor(QPalette::Base, Qt::white);
    p.setColor(QPalette::AlternateBase, QColor(0xf0, 0xf2, 0xf5));
    p.setColor(QPalette::Text, QColor(0x1f, 0x23, 0x28));
    p.setColor(QPalette::WindowText, QColor(0x1f, 0x23, 0x28));
    p.setColor(QPalette::ButtonText, QColor(0x1f, 0x23, 0x28));
    p.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xb7));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x2f, 0x6f, 0xb7));
    return p;
}

static QPalette darkPalette()
{
    const QColor text(0xdc, 0xde, 0xe2);
    const QColor disabled(0x7c, 0x80, 0x87);
    QPalette p(QColor(0x35, 0x38, 0x3d), QColor(0x2b, 0x2d, 0x31));
    p.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x24));
    p.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2d));
    p.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3d, 0x42));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        p.setColor(role, text);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, disabled);
    p.setColor(QPalette::PlaceholderText, disabled);
    p.setColor(QPalette::BrightText, QColor(0xff, 0x6b, 0x6b));
    p.setColor(QPalette::Highlight, QColor(0x3d, 0x7b, 0xc4));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x6a, 0xa8, 0xf0));
    return p;
}

void applyAppearance(int theme)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(theme == kDarkTheme ? darkPalette() : lightPalette());
    // Qt's own texts (the file dialog's columns and buttons) in the host's language, as the CAD host
    // shows them; Debian's qttranslations5-l10n has them. Without the file they stay English.
    const QString language = QString::fromUtf8(zr_sys_language().c_str()).replace(QLatin1Char('-'), QLatin1Char('_'));
    auto* translator = new QTranslator(qApp);
    if (translator->load(QStringLiteral("qtbase_") + language, QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
    else
        delete translator;
}

void when(QObject* context, std::function<bool()> ready, std::function<void()> then)
{
    auto* poll = new QTimer(context);
    poll->setInterval(10);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, ready = std::move(ready), then = std::move(then)] {
        if (!ready())
            return;
        poll->stop();
        poll->deleteLater();
        then();
    });
    poll->start();
}

void whenModalShown(QObject* context, std::function<void(QWidget*)> onShown)
{
    when(
        context, [] { return QApplication::activeModalWidget() != nullptr; },
        [onShown = std::move(onShown)] { onShown(QApplication::activeModalWidget()); });
}

void closeModalWidgets()
{
    while (QWidget* modal = QApplication::activeModalWidget()) {
        // A dialog may refuse to close; then there is nothing more to do from outside.
        if (!modal->close() || QApplication::activeModalWidget() == modal)
            break;
    }
}

} // namespace ZrApp

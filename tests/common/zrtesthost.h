#pragma once
// The one set-up of the substitute host for the suites, and the one way to act on a modal dialog
// once it is up.

#include "qt_common_ui.h"

#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"

#include <QApplication>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace ZrTest {

// The watchers of modal dialogs still waiting. A test that fails before its dialog came up leaves
// its watcher behind; the host of the next test must not meet it.
inline QObject& pendingModalWatchers()
{
    static QObject* watchers = new QObject(qApp);
    return *watchers;
}

// One host for one test function, with a configuration folder of its own and the images of the
// source tree. It notes every string that reaches the menu-macro queue and every queued string
// that ran.
class Host
{
public:
    struct Options
    {
        // The module in slot 48 with its command, as the host loads it.
        bool loadModule = true;
        // An empty drawing in place of the host's first document.
        bool emptyDrawing = false;
    };

    Host() : Host(Options()) {}
    explicit Host(Options options) : m_options(options)
    {
        ZrHostControl::Options host;
        host.configDir = m_config.path();
        host.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
        ZrHostControl::initialize(host);
        if (m_options.loadModule)
            zrrxEntryPoint(1);
        if (m_options.emptyDrawing)
            ZrHostControl::openEmptyDrawing();
        ZrHostControl::setMacroListener([this](const ZrHostControl::MacroCall& call) { m_macros << call.text; });
        ZrHostControl::setCommandListener([this](const QString& command, bool) { m_commands << command; });
    }
    virtual ~Host()
    {
        qDeleteAll(pendingModalWatchers().children());
        if (m_options.loadModule)
            zrrxEntryPoint(2);
        ZrHostControl::shutdown();
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    QString configDir() const { return m_config.path(); }
    // Every string that reached the menu-macro queue since the host was made.
    QStringList macros() const { return m_macros; }
    // The queued strings that have run, by their command word.
    QStringList commandsRun() const { return m_commands; }

private:
    QTemporaryDir m_config;
    Options m_options;
    QStringList m_macros;
    QStringList m_commands;
};

// Runs `action` on the active modal widget as soon as there is one other than `outer` and it is
// the active window, so that its shortcuts are live. The timer lives outside any dialog, so it keeps
// polling through nested event loops, until the test's host goes; polling, not sleeping, so a test
// never waits longer than the dialog takes to come up.
inline void whenModalShown(std::function<void(QWidget*)> action, QWidget* outer = nullptr)
{
    auto* timer = new QTimer(&pendingModalWatchers());
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, action, outer] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == outer || !modal->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        modal->activateWindow();
        if (!QTest::qWaitForWindowActive(modal))
            qWarning("the modal dialog never became the active window");
        action(modal);
    });
    timer->start();
}

} // namespace ZrTest

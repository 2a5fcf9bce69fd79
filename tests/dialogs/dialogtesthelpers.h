#pragma once
// Shared set-up of the dialog suites: a fresh substitute host with the module loaded, and a way
// to act on a modal dialog once it is up.

#include "zrhostcontrol.h"

#include <QApplication>
#include <QTest>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace DialogTest {

inline ZrHostControl::Options hostOptions(const QTemporaryDir& configDir)
{
    ZrHostControl::Options options;
    options.configDir = configDir.path();
    options.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
    return options;
}

// Runs `action` on the active modal widget as soon as there is one other than `outer` and it is
// the active window, so that its shortcuts are live. The timer belongs to the application, so it
// keeps polling through nested event loops.
inline void whenModalShown(std::function<void(QWidget*)> action, QWidget* outer = nullptr)
{
    auto* timer = new QTimer(qApp);
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

} // namespace DialogTest

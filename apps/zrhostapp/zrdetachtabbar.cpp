#include "zrdetachtabbar.h"

#include <QCursor>
#include <QTimer>
#include <QWindow>
#include <algorithm>

namespace {

// Polling, because while the window manager moves a window the button's release goes to it, not to us.
constexpr int kWatchIntervalMs = 15;

} // namespace

ZrDetachTabBar::ZrDetachTabBar(QWidget* parent) : ZrTabBar(parent), m_watch(new QTimer(this))
{
    m_watch->setInterval(kWatchIntervalMs);
    connect(m_watch, &QTimer::timeout, this, &ZrDetachTabBar::watchWindows);
}

ZrDetachTabBar::~ZrDetachTabBar() = default;

QVector<QWidget*> ZrDetachTabBar::detachedWindows() const
{
    QVector<QWidget*> windows;
    for (const Detached& detached : m_windows) {
        if (detached.window)
            windows << detached.window;
    }
    return windows;
}

void ZrDetachTabBar::dragingOutside()
{
    const int index = getDragTabIndex();
    clearDrag();
    if (index < 0 || index >= count() - 1)
        return;
    QWidget* window = detachTab(index);
    if (!window)
        return;
    // The title bar under the pointer, as if the user had grabbed it there.
    const QPoint cursor = QCursor::pos();
    window->move(cursor - QPoint(window->width() / 2, 10));
    window->show();
    m_windows.append({window, false, QPoint()});
    m_buttonDown = true;
    m_watch->start();
    update();
}

bool ZrDetachTabBar::pointerOverBar() const
{
    return isVisible() && rect().contains(mapFromGlobal(QCursor::pos()));
}

void ZrDetachTabBar::watchWindows()
{
    m_windows.erase(std::remove_if(m_windows.begin(), m_windows.end(),
                                   [](const Detached& detached) { return !detached.window; }),
                    m_windows.end());
    if (m_windows.isEmpty()) {
        m_watch->stop();
        return;
    }
    // A new window is handed to the window manager once it is on the screen.
    for (Detached& detached : m_windows) {
        if (!detached.moving && m_buttonDown && detached.window->windowHandle()
            && detached.window->windowHandle()->isExposed()) {
            detached.moving = true;
            zrqt_window_start_native_drag_linux(detached.window, QCursor::pos(), Qt::TitleBarArea);
            Q_EMIT nativeMoveStarted(detached.window);
        }
    }
    const bool down = zrqt_get_mouseButtons_linux() & Qt::LeftButton;
    if (down && !m_buttonDown) {
        for (Detached& detached : m_windows)
            detached.pressPos = zrqt_get_window_geometry_linux(detached.window).topLeft();
    }
    if (down) {
        // A window that moves while the button is held is being dragged; over the bar it shows where
        // it would go. The X server knows where it is: Qt hears of a move only when it ends.
        for (const Detached& detached : m_windows) {
            if (!m_comingBack && detached.moving
                && zrqt_get_window_geometry_linux(detached.window).topLeft() != detached.pressPos)
                m_comingBack = detached.window;
        }
        if (m_comingBack) {
            const bool over = pointerOverBar();
            const bool shown = getDragingFlags() & zrtabbar::kDragingWindowBack;
            if (over != shown) {
                setDragingFlags(over ? zrtabbar::kDragingWindowBack : 0);
                setDragingTitle(m_comingBack->windowTitle());
                update();
            } else if (over) {
                update();
            }
        }
    } else if (m_buttonDown) {
        Q_EMIT nativeMoveReleased(QCursor::pos());
        QWidget* window = m_comingBack;
        m_comingBack = nullptr;
        const int index = getDropIndex(mapFromGlobal(QCursor::pos()));
        setDragingFlags(0);
        if (window && pointerOverBar() && index >= 0) {
            attachWindow(window, index);
            window->close();
            window->deleteLater();
            Q_EMIT windowAttached(index);
        }
        update();
    }
    m_buttonDown = down;
}

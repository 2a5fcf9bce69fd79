#pragma once
// A tab bar whose tabs can be dragged out into windows of their own and back: the torn-out window
// follows the pointer through the window manager's own move, and a window dropped on the bar becomes
// a tab again where it was dropped.

#include "zrtabbar.h"

#include <QPointer>
#include <QVector>

class QTimer;

class ZrDetachTabBar : public ZrTabBar
{
    Q_OBJECT
public:
    explicit ZrDetachTabBar(QWidget* parent = nullptr);
    ~ZrDetachTabBar() override;

    // The windows torn out of this bar and still open.
    QVector<QWidget*> detachedWindows() const;

Q_SIGNALS:
    // The window manager moves `window` with the pointer.
    void nativeMoveStarted(QWidget* window);
    // The button that held a torn-out window was released at `globalPos`.
    void nativeMoveReleased(const QPoint& globalPos);
    // A window came back as the tab at `index`.
    void windowAttached(int index);

protected:
    // Makes the window for the tab at `index` and takes the tab out of the bar; nullptr keeps the tab.
    virtual QWidget* detachTab(int index) = 0;
    // Puts the content of `window` back as a tab at `index`; the bar closes the window afterwards.
    virtual void attachWindow(QWidget* window, int index) = 0;

    void dragingOutside() override;

private:
    void watchWindows();
    bool pointerOverBar() const;

    struct Detached
    {
        QPointer<QWidget> window;
        bool moving = false; // handed to the window manager
        QPoint pressPos;     // where the window stood when the button went down
    };
    QVector<Detached> m_windows;
    QTimer* m_watch;
    bool m_buttonDown = false;
    QPointer<QWidget> m_comingBack;
};

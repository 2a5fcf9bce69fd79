#pragma once
// A tab bar as an owner subclasses it, noting what the bar tells it, and the mouse as a user moves it.

#include "zrtabbar.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QStringList>
#include <QTest>

namespace TabBarTest {

class RecordingBar : public ZrTabBar
{
public:
    explicit RecordingBar(QWidget* parent = nullptr) : ZrTabBar(parent) { resize(800, 24); }
    // A bar of these tabs, painted once.
    explicit RecordingBar(const QStringList& tabs) : RecordingBar()
    {
        setTabs(tabs);
        paintNow();
    }

    // Tabs in the order given, the last one "+", put in as an owner does: the new-tab tab before the
    // drawings, after the first tab on a bar with a start page or without close buttons. Each tab
    // gets a tool tip, as owners that drag tabs set, and its text as its data.
    void setTabs(const QStringList& texts)
    {
        if (texts.size() == 1) {
            addTab(texts.first());
        } else if (!texts.isEmpty()) {
            const bool firstFirst = hasStartPage() || !getCloseTabButton();
            if (firstFirst)
                addTab(texts.first());
            addTab(texts.last());
            for (int i = firstFirst ? 1 : 0; i < texts.size() - 1; ++i)
                addTab(texts[i]);
        }
        for (int i = 0; i < count(); ++i) {
            setTabToolTip(i, tabText(i));
            setTabData(i, tabText(i));
        }
    }
    QStringList texts() const
    {
        QStringList result;
        for (int i = 0; i < count(); ++i)
            result << tabText(i);
        return result;
    }
    QStringList dataTexts() const
    {
        QStringList result;
        for (int i = 0; i < count(); ++i)
            result << tabData(i).toString();
        return result;
    }
    // Paints once, as the screen would, so that the tabs have their polygons and widths.
    void paintNow() { (void)grab(); }
    QPoint centreOf(int index) const
    {
        const QVector<QPoint> p = tabPolygon(index);
        return p.size() == 4 ? QPoint((p[0].x() + p[2].x()) / 2, height() / 2) : QPoint(-1, -1);
    }

    bool closeClicked(int index, const QPoint& pos) override
    {
        if (!zrtabbar::closeButtonRect(tabPolygon(index), height()).contains(pos))
            return false;
        closed << tabData(index).toString();
        removeTab(index);
        return true;
    }
    void on_NewClicked() override { ++newClicks; }
    void onTabBarMenu(int index) override { menus << index; }
    void dragingOutside() override { ++outsides; }
    void dragRelease(const QPoint&) override { ++releases; }

    QStringList closed;
    QList<int> menus;
    int newClicks = 0;
    int outsides = 0;
    int releases = 0;
};

// A move with the left button held, as the window system delivers it while the user drags.
inline void dragMove(QWidget* widget, QPoint pos)
{
    QCursor::setPos(widget->mapToGlobal(pos));
    QMouseEvent move(QEvent::MouseMove, pos, widget->mapToGlobal(pos), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

} // namespace TabBarTest

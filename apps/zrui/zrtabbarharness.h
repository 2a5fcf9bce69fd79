#pragma once
// zrui tabbar: the module's tab bar in a window of its own, as a host shows it, for steps and shots.

#include <QStringList>

struct ZrTabBarRequest
{
    QStringList tabs;      // "+" is added at the end unless it is there
    bool startPage = false;
    bool layoutBar = false;
    bool closeButtons = true;
    int current = -1;      // -1 leaves the index the insertions left
    int width = 600;
};

class QDialog;
class ZrTabBar;

// The window with the bar, "ZrTabBar" (or "LayoutTabBar"), 24 pixels high. A click on the plus adds
// a tab "DrawingN", a click on a cross closes its tab.
QDialog* zrMakeTabBarWindow(const ZrTabBarRequest& request, ZrTabBar** bar);
// {"tabs": [...], "current": N}: the tabs as the bar holds them, and its current index.
QByteArray zrTabBarLine(const ZrTabBar* bar);

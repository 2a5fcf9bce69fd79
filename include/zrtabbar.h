#pragma once
// The self-painted tab strip of the drawing window: slanted tabs, a start tab, the new-tab tab, and
// dragging along the bar or out of it; and the X11 calls that hand a torn-out window to the window
// manager.

#include "zrqtbaseutils_export.h"

#include <QIcon>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QVariant>
#include <QVector>
#include <QWidget>
#include <functional>

class QFontMetrics;
class QScreen;
class ZrTabBarImpl;

class ZRQTBASEUTILS_EXPORT ZrTabBar : public QWidget
{
    Q_OBJECT
public:
    explicit ZrTabBar(QWidget* parent = nullptr);
    ~ZrTabBar() override;

    // Each returns the current index afterwards. The new-tab tab always stays last.
    int addTab(const QString& text);
    int addTab(const QIcon& icon, const QString& text);
    int insertTab(int index, const QString& text);
    int insertTab(int index, const QIcon& icon, const QString& text);
    // The current index moves to the end; the owner sets the one it wants next.
    bool removeTab(int index);
    int count() const;

    int currentIndex() const;
    void setCurrentIndex(int index);
    // Cycles through the tabs other than the new-tab tab; needs at least two tabs.
    void switchNext(bool back);

    // The text as last painted: a long one comes back elided.
    QString tabText(int index) const;
    void setTabText(int index, const QString& text);
    QIcon tabIcon(int index) const;
    void setTabIcon(int index, const QIcon& icon);
    QString tabToolTip(int index) const;
    void setTabToolTip(int index, const QString& tip);
    QVariant tabData(int index) const;
    void setTabData(int index, const QVariant& data);
    // The four corners of the tab as last painted: top left, top right, bottom right, bottom left.
    QVector<QPoint> tabPolygon(int index) const;
    // The painted width, -1 before the tab was painted or for an invalid index.
    int getTabWidth(int index) const;

    int tabAt(const QPoint& pos) const;
    // Where a tab dropped at `pos` goes; -1 above or below the bar.
    int getDropIndex(const QPoint& pos);
    bool isStartTab(int index) const;
    bool isLayoutTabBar() const;

    void setMultiSelect(bool on);
    bool isMultiSelect() const;
    void addSelectIndex(int index);
    void removeSelectIndex(int index);
    void clearMultiSelect();
    const QVector<int>& getSelectIndexes() const;
    void setSelAll(bool on);
    bool getSelAll() const;

    void setHasStartPage(bool on);
    bool hasStartPage() const;
    void setCloseTabButton(bool on);
    bool getCloseTabButton() const;
    void setUpdateLastTabToolTip(bool on);
    void setLastTabToolTip(const QString& tip);
    int getMaxTabTextWidth() const;
    // Below 1 means the default, 300.
    void setMaxTabTextWidth(int width);
    void setCanDrag(bool on);
    bool getCanDrag() const;
    void clearLastIndexInfo();

    // The drag state, for owners that take a tab out of the bar or bring a window back.
    int getDragTabIndex() const;
    int getCurrentDropIndex();
    void setDragFlag(bool on);
    bool getDragFlag();
    // Stored only while dragging out of the bar is allowed.
    void setDragOutsideFlag(bool on);
    bool getDragOutsideFlag() const;
    void setIsMovingHorizontally(bool on);
    bool isMovingHorizontally() const;
    // Bit 1: a separate window is being dragged back onto the bar. Returns the old word.
    int setDragingFlags(int flags);
    int getDragingFlags() const;
    void setDragingTitle(const QString& title);
    QString getDragingTitle() const;
    void clearDrag();

    virtual int calStartIndexByEndIndex(const QFontMetrics& metrics, int end);
    virtual int calEndIndexByStartIndex(const QFontMetrics& metrics, int start);
    virtual void onTabBarClicked(int index);
    virtual void onTabBarMenu(int index);
    virtual void onRClickedStartTabItem();
    virtual void onLClickedStartTabItem();
    virtual void onRClickBlankArea();
    virtual void on_NewClicked();
    virtual void on_NewRClicked();
    // Asked on each left press on a tab; true when the press closed it, which ends the press.
    virtual bool closeClicked(int index, const QPoint& pos);
    virtual void tabChanged();
    // A tab was dragged out of the bar; from here the drag is the owner's.
    virtual void dragingOutside();
    virtual void draging(const QPoint& pos);
    virtual void dragRelease(const QPoint& pos);
    virtual QSize tabSizeHint(int index) const;

Q_SIGNALS:
    void currentChanged(int index);

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    // The first and last tab to draw: document tabs anchored at the right end, layout tabs at the left.
    void calcStartAndEndDrawIndex(int& start, int& end);
    void dropDrag(const QPoint& pos);

private:
    friend class ZrTabBarImpl;
    ZrTabBarImpl* d;
    Q_DISABLE_COPY(ZrTabBar)
};

// The arithmetic of the bar, apart from the widget so that it can be checked by tables.
namespace zrtabbar {

// Fixed sizes of the design, in pixels.
constexpr int kTabExtra = 50;       // a tab beyond its text, with a close cross
constexpr int kIconExtra = 15;      // added for an icon
constexpr int kStartTabExtra = 20;  // the start tab beyond its text
constexpr int kNewTabWidth = 45;    // the new-tab tab
constexpr int kCloseButtonSize = 10;
constexpr int kDefaultMaxTextWidth = 300;
// The bit of the draging flags that says a separate window is being dragged back onto the bar.
constexpr int kDragingWindowBack = 1;

// Width of a tab whose elided text is `textWidth` wide.
ZRQTBASEUTILS_EXPORT int tabWidth(int textWidth, bool closeButton, bool icon);
// Corners of a tab leaning left: top left at `topLeft`, leaning half the height over the height.
ZRQTBASEUTILS_EXPORT QVector<QPoint> tabPolygon(QPoint topLeft, int width, int height);
// Odd-even containment, as the bar's hit test uses it; an empty polygon contains nothing.
ZRQTBASEUTILS_EXPORT bool polygonContains(const QVector<QPoint>& polygon, QPoint pos);
// The close cross of a tab painted as `polygon` on a bar `height` pixels high.
ZRQTBASEUTILS_EXPORT QRect closeButtonRect(const QVector<QPoint>& polygon, int height);

// Which tabs fit from `start` on a bar `barWidth` wide: the last one, at most `count` - 2. `widthOf`
// gives a tab's painted width (-1 when never painted).
ZRQTBASEUTILS_EXPORT int endIndexByStart(const std::function<int(int)>& widthOf, int count, int barWidth,
                                         int start, bool hasStartPage);
// Which tabs fit walking back from the last one: the first. `widthOf` gives the width to count, an
// estimate for a tab never painted.
ZRQTBASEUTILS_EXPORT int startIndexByEnd(const std::function<int(int)>& widthOf, int count, int barWidth,
                                         bool hasStartPage);
// The new-tab tab stays last: where an insertion at `index` among `count` tabs lands.
ZRQTBASEUTILS_EXPORT int insertPosition(int index, int count, bool hasStartPage, bool closeButton);

} // namespace zrtabbar

// X11: handing a window to the window manager for a native move. On a platform other than xcb they
// do nothing, and the senders say so on Qt's warning channel.
typedef struct _XDisplay Display;
struct DeviceMSG;

ZRQTBASEUTILS_EXPORT Display* zrqt_get_display();
ZRQTBASEUTILS_EXPORT int zrqt_get_appScreen();
ZRQTBASEUTILS_EXPORT QScreen* zrqt_findScreenForVirtualDesktop(int virtualDesktopNumber);
ZRQTBASEUTILS_EXPORT unsigned long zrqt_get_appRootWindow(int screen);
ZRQTBASEUTILS_EXPORT void zrqt_X11EmulateButtonRelease(QWidget* widget, const QPoint& globalPos);
ZRQTBASEUTILS_EXPORT void zrqt_X11WMMoveResizeWindow(QWidget* widget, int x, int y, int direction);
ZRQTBASEUTILS_EXPORT int zrqt_get_mouseButtons_linux();
ZRQTBASEUTILS_EXPORT bool zrqt_test_mouseButtons_linux(QWidget* widget, QFlags<Qt::MouseButton>& buttons);
ZRQTBASEUTILS_EXPORT int zrqt_test_keyPressed_linux(QWidget* widget, int key);
ZRQTBASEUTILS_EXPORT int zrqt_peekMessage_linux(DeviceMSG* message, void* window, int first, int last,
                                                int remove);
ZRQTBASEUTILS_EXPORT QRect zrqt_get_window_geometry_linux(QWidget* widget);
ZRQTBASEUTILS_EXPORT bool zrqt_window_start_native_drag_linux(QWidget* widget, const QPoint& globalPos,
                                                              Qt::WindowFrameSection section);

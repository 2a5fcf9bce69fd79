// A real drag under a real window manager: Xvfb with openbox, the pointer driven through XTest. A tab
// pulled out of the bar becomes a window that follows the pointer through the window manager's move,
// the button's release reaches the bar's owner, and the window dragged back by its title bar becomes a
// tab again.

#include "xsession.h"
#include "zrappenv.h"
#include "zrdetachtabbar.h"
#include "zrdocument.h"
#include "zrdocumenttabbar.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrhostmainwindow.h"
#include "zrhostsession.h"

#include <QApplication>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

namespace {

// The owner: each torn-out tab becomes a window titled with its text, holding its data.
class DocumentBar : public ZrDetachTabBar
{
public:
    using ZrDetachTabBar::ZrDetachTabBar;

protected:
    QWidget* detachTab(int index) override
    {
        auto* window = new QLabel(tabData(index).toString());
        window->setAttribute(Qt::WA_DeleteOnClose);
        window->setWindowTitle(tabToolTip(index));
        window->setProperty("tabData", tabData(index));
        window->resize(320, 200);
        removeTab(index);
        return window;
    }
    void attachWindow(QWidget* window, int index) override
    {
        const int at = insertTab(index, window->windowTitle());
        setTabToolTip(at, window->windowTitle());
        setTabData(at, window->property("tabData"));
    }
};

// The pointer as the user moves it: XTest on a connection of its own, each step seen by the server
// before the next.
class Pointer
{
public:
    Pointer() : m_display(XOpenDisplay(nullptr)) {}
    ~Pointer()
    {
        if (m_display)
            XCloseDisplay(m_display);
    }
    bool isOpen() const { return m_display; }
    void moveTo(QPoint to)
    {
        XTestFakeMotionEvent(m_display, -1, to.x(), to.y(), CurrentTime);
        XSync(m_display, False);
        m_at = to;
        QCoreApplication::processEvents();
    }
    // In steps, as a hand moves, letting the application and the window manager keep up.
    void glideTo(QPoint to, int steps = 12)
    {
        const QPoint from = m_at;
        for (int i = 1; i <= steps; ++i) {
            moveTo(from + (to - from) * i / steps);
            QTest::qWait(10); // pacing of the hand, not a wait for a result
        }
    }
    void button(bool down)
    {
        XTestFakeButtonEvent(m_display, 1, down ? True : False, CurrentTime);
        XSync(m_display, False);
        QCoreApplication::processEvents();
    }

private:
    Display* m_display;
    QPoint m_at;
};

} // namespace

class TabBarNativeDrag : public QObject
{
    Q_OBJECT
public:
    explicit TabBarNativeDrag(XSession* session) : m_session(session) {}

private Q_SLOTS:
    void initTestCase();
    void tearOutFollowsThePointerAndComesBack();
    void referenceHostKeepsTheOrderTheUserLeft();

private:
    XSession* m_session;
};

void TabBarNativeDrag::initTestCase()
{
    if (m_session->xvfbMissing())
        QSKIP("Xvfb is not installed (Debian package xvfb): the native drag group needs a real X server");
    QVERIFY2(m_session->error().isEmpty(), qPrintable(m_session->error()));
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    QVERIFY(zrqt_get_display());
}

void TabBarNativeDrag::tearOutFollowsThePointerAndComesBack()
{
    QWidget main;
    main.setWindowTitle(QStringLiteral("Drawings"));
    auto* layout = new QVBoxLayout(&main);
    auto* bar = new DocumentBar;
    bar->setFixedHeight(24);
    layout->addWidget(bar);
    layout->addStretch();
    main.resize(700, 300);
    main.move(100, 100);
    const QStringList names{"Plan", "Section", "Detail"};
    bar->addTab(QStringLiteral("+"));
    for (const QString& name : names) {
        const int index = bar->addTab(name);
        bar->setTabToolTip(index, name);
        bar->setTabData(index, name);
    }
    main.show();
    QVERIFY(QTest::qWaitForWindowExposed(&main));
    QTRY_VERIFY(bar->tabPolygon(1).size() == 4);

    Pointer pointer;
    QVERIFY(pointer.isOpen());
    QSignalSpy started(bar, &ZrDetachTabBar::nativeMoveStarted);
    QSignalSpy released(bar, &ZrDetachTabBar::nativeMoveReleased);
    QSignalSpy attached(bar, &ZrDetachTabBar::windowAttached);

    // Press on "Section" and pull it down out of the bar.
    const QVector<QPoint> section = bar->tabPolygon(1);
    const QPoint grip = bar->mapToGlobal(QPoint((section[0].x() + section[2].x()) / 2, 12));
    pointer.moveTo(grip);
    pointer.button(true);
    pointer.glideTo(grip + QPoint(0, 90));
    QTRY_COMPARE(started.count(), 1);
    QCOMPARE(bar->count(), 3);
    QWidget* window = bar->detachedWindows().value(0);
    QVERIFY(window);
    QCOMPARE(window->windowTitle(), QStringLiteral("Section"));

    // The window manager moves it with the pointer.
    // Asked of the X server: Qt hears of the window manager's moves only when they end.
    const QPoint before = zrqt_get_window_geometry_linux(window).topLeft();
    pointer.glideTo(grip + QPoint(260, 240));
    QPoint now;
    QTRY_VERIFY2(((now = zrqt_get_window_geometry_linux(window).topLeft()) - before - QPoint(260, 150))
                         .manhattanLength() < 4,
                 qPrintable(QStringLiteral("window at %1,%2, started at %3,%4")
                                .arg(now.x()).arg(now.y()).arg(before.x()).arg(before.y())));

    // The release ends the move; the owner hears it although the window manager had the pointer.
    pointer.button(false);
    QTRY_COMPARE(released.count(), 1);
    QCOMPARE(bar->count(), 3);
    QCOMPARE(bar->getDragingFlags(), 0);

    // Back by its title bar, onto the first tab: a tab again, before "Plan".
    // The frame's top left as the X server has it (Qt may not have heard the end of the move yet);
    // the title bar is the top of the frame.
    const QRect frame = zrqt_get_window_geometry_linux(window);
    const QPoint title(frame.center().x(), frame.top() + 8);
    pointer.moveTo(title);
    pointer.button(true);
    const QPoint onto = bar->mapToGlobal(QPoint(bar->tabPolygon(0)[0].x() + 5, 12));
    pointer.glideTo(onto, 20);
    QTRY_VERIFY(bar->getDragingFlags() & zrtabbar::kDragingWindowBack);
    pointer.button(false);
    QTRY_COMPARE(attached.count(), 1);
    QCOMPARE(bar->count(), 4);
    QStringList order;
    for (int i = 0; i < bar->count() - 1; ++i)
        order << bar->tabData(i).toString();
    QCOMPARE(order, (QStringList{"Section", "Plan", "Detail"}));
    QTRY_VERIFY(bar->detachedWindows().isEmpty());
    QCOMPARE(bar->getDragingFlags(), 0);
}

// As a new user tries it: the sample and two more drawings, the third dragged before the first, the
// second torn out into a window and dragged back.
void TabBarNativeDrag::referenceHostKeepsTheOrderTheUserLeft()
{
    ZrHostSession session(ZrApp::kLightTheme);
    QVERIFY2(session.error().isEmpty(), qPrintable(session.error()));
    ZrHostControl::openSampleDrawing();
    ZrHostControl::flushUiEvents();
    ZrHostMainWindow window(QStringList{});
    window.resize(1000, 700);
    window.move(40, 40);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    ZrDocumentTabBar* bar = window.documentTabs();
    CXuDocument* sample = bar->documentAt(1);
    CXuDocument* second = window.newDrawing();
    CXuDocument* third = window.newDrawing();
    QTRY_VERIFY(bar->tabPolygon(3).size() == 4);
    const auto centre = [bar](int index) {
        const QVector<QPoint> shape = bar->tabPolygon(index);
        return bar->mapToGlobal(QPoint((shape[0].x() + shape[2].x()) / 2, 12));
    };
    const auto order = [bar] {
        QVector<CXuDocument*> documents;
        for (int i = 1; i < bar->count() - 1; ++i)
            documents << bar->documentAt(i);
        return documents;
    };

    Pointer pointer;
    QVERIFY(pointer.isOpen());
    pointer.moveTo(centre(3));
    pointer.button(true);
    pointer.glideTo(centre(1) - QPoint(10, 0));
    pointer.button(false);
    QTRY_COMPARE(order(), (QVector<CXuDocument*>{third, sample, second}));

    QSignalSpy started(bar, &ZrDetachTabBar::nativeMoveStarted);
    QSignalSpy attached(bar, &ZrDetachTabBar::windowAttached);
    bar->repaint();
    const QPoint grip = centre(2);
    pointer.moveTo(grip);
    pointer.button(true);
    pointer.glideTo(grip + QPoint(40, 120));
    QTRY_COMPARE(started.count(), 1);
    QCOMPARE(order(), (QVector<CXuDocument*>{third, second}));
    pointer.glideTo(grip + QPoint(200, 300));
    pointer.button(false);
    QWidget* torn = bar->detachedWindows().value(0);
    QVERIFY(torn);
    QTRY_VERIFY(zrqt_get_mouseButtons_linux() == 0);
    QCOMPARE(zrDocManagerPtr()->documentCount(), 3);

    bar->repaint();
    const QRect frame = zrqt_get_window_geometry_linux(torn);
    pointer.moveTo(QPoint(frame.center().x(), frame.top() + 8));
    pointer.button(true);
    pointer.glideTo(centre(2) - QPoint(10, 0), 20);
    QTRY_VERIFY(bar->getDragingFlags() & zrtabbar::kDragingWindowBack);
    pointer.button(false);
    QTRY_COMPARE(attached.count(), 1);
    QCOMPARE(order(), (QVector<CXuDocument*>{third, sample, second}));
    QCOMPARE(zrDocManagerPtr()->documentCount(), 3);
    QCOMPARE(zrDocManagerPtr()->curDocument(), sample);
    QTRY_VERIFY(bar->detachedWindows().isEmpty());
}

// The server and the window manager must be up before the application connects to the display.
int main(int argc, char** argv)
{
    // Static, so that the server and the window manager also stop when QTest ends the process with
    // exit() (-functions, -help).
    static XSession session;
    qputenv("QT_QPA_PLATFORM", session.start() ? "xcb" : "offscreen");
    // Nothing here draws with OpenGL; the GLX plugin would only be loaded and unloaded again.
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    QApplication app(argc, argv);
    TabBarNativeDrag test(&session);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_tabbarx11.moc"

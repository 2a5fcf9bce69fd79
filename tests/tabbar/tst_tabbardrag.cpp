// Dragging tabs as a user does: along the bar to reorder, out of it to hand the tab to the owner,
// and the tabs that cannot be dragged; the X11 calls where there is no X11.

#include "tabbartesthelpers.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <memory>

using namespace TabBarTest;

class TabBarDrag : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_host = std::make_unique<ZrTest::Host>(); }
    void cleanupTestCase() { m_host.reset(); }

    void dragAlongTheBarReorders_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("onto");
        QTest::addColumn<QStringList>("after");

        QTest::newRow("third before the first") << 2 << 0 << QStringList{"C", "A", "B", "+"};
        QTest::newRow("first onto the third") << 0 << 2 << QStringList{"B", "C", "A", "+"};
        QTest::newRow("onto the plus: last before it") << 0 << 3 << QStringList{"B", "C", "A", "+"};
        QTest::newRow("second onto the first") << 1 << 0 << QStringList{"B", "A", "C", "+"};
    }

    void dragAlongTheBarReorders()
    {
        QFETCH(int, from);
        QFETCH(int, onto);
        QFETCH(QStringList, after);

        RecordingBar bar;
        bar.setTabs({"A", "B", "C", "+"});
        bar.setCurrentIndex(3);
        bar.paintNow();
        QSignalSpy changed(&bar, &ZrTabBar::currentChanged);
        QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, bar.centreOf(from));
        dragMove(&bar, bar.centreOf(from) + QPoint(from < onto ? 20 : -20, 0));
        QVERIFY(bar.isMovingHorizontally());
        QVERIFY(bar.getDragFlag());
        dragMove(&bar, bar.centreOf(onto));
        (void)bar.grab(); // the placeholder and the floating tab, painted mid-drag
        QTest::mouseRelease(&bar, Qt::LeftButton, Qt::NoModifier, bar.centreOf(onto));

        QCOMPARE(bar.dataTexts(), after); // the records move, not only the texts
        const int moved = after.indexOf(bar.dataTexts().value(bar.currentIndex()));
        QCOMPARE(bar.tabData(moved).toString(), QStringList({"A", "B", "C"}).value(from));
        QCOMPARE(changed.last().first().toInt(), bar.currentIndex());
        QVERIFY(!bar.isMovingHorizontally());
        QVERIFY(!bar.getDragFlag());
        QCOMPARE(bar.releases, 1);
    }

    void fixedTabsAreNotDragged()
    {
        RecordingBar start;
        start.setHasStartPage(true);
        start.setTabs({"开始", "A", "B", "C", "+"});
        start.paintNow();
        QTest::mousePress(&start, Qt::LeftButton, Qt::NoModifier, start.centreOf(0));
        QCOMPARE(start.currentIndex(), 0);
        QCOMPARE(start.getDragTabIndex(), -1);
        dragMove(&start, start.centreOf(2));
        QTest::mouseRelease(&start, Qt::LeftButton, Qt::NoModifier, start.centreOf(2));
        QCOMPARE(start.texts(), (QStringList{"开始", "A", "B", "C", "+"}));
        // Nor can a drawing be dropped before the start tab.
        QTest::mousePress(&start, Qt::LeftButton, Qt::NoModifier, start.centreOf(3));
        dragMove(&start, start.centreOf(3) - QPoint(30, 0));
        QTest::mouseRelease(&start, Qt::LeftButton, Qt::NoModifier, QPoint(2, 12));
        QCOMPARE(start.texts(), (QStringList{"开始", "C", "A", "B", "+"}));

        RecordingBar layouts;
        layouts.setObjectName(QStringLiteral("LayoutTabBar"));
        layouts.setCloseTabButton(false);
        layouts.setTabs({"模型", "布局1", "布局2", "+"});
        layouts.paintNow();
        QTest::mousePress(&layouts, Qt::LeftButton, Qt::NoModifier, layouts.centreOf(0));
        QCOMPARE(layouts.getDragTabIndex(), -1);
        QTest::mouseRelease(&layouts, Qt::LeftButton, Qt::NoModifier, layouts.centreOf(0));
        QTest::mousePress(&layouts, Qt::LeftButton, Qt::NoModifier, layouts.centreOf(2));
        QCOMPARE(layouts.getDragTabIndex(), 2);
        QTest::mouseRelease(&layouts, Qt::LeftButton, Qt::NoModifier, layouts.centreOf(2));

        // The plus is a button: a press asks for a new tab and arms nothing.
        QTest::mousePress(&start, Qt::LeftButton, Qt::NoModifier, start.centreOf(4));
        QCOMPARE(start.newClicks, 1);
        QCOMPARE(start.getDragTabIndex(), -1);
        QTest::mouseRelease(&start, Qt::LeftButton, Qt::NoModifier, start.centreOf(4));
    }

    void pressOnTheCrossClosesInsteadOfDragging()
    {
        RecordingBar bar(QStringList{"A", "B", "C", "+"});
        const QPoint cross = zrtabbar::closeButtonRect(bar.tabPolygon(1), bar.height()).center();
        QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, cross);
        QCOMPARE(bar.closed, QStringList{"B"});
        QCOMPARE(bar.getDragTabIndex(), -1);
        QTest::mouseRelease(&bar, Qt::LeftButton, Qt::NoModifier, cross);
        QCOMPARE(bar.dataTexts(), (QStringList{"A", "C", "+"}));

        // With close buttons off the bar does not ask.
        bar.setCloseTabButton(false);
        bar.paintNow();
        QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier, zrtabbar::closeButtonRect(bar.tabPolygon(0), 24).center());
        QCOMPARE(bar.closed.size(), 1);
    }

    void leavingTheBarHandsTheDragToTheOwner()
    {
        RecordingBar bar(QStringList{"A", "B", "C", "+"});
        QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, bar.centreOf(1));
        dragMove(&bar, bar.centreOf(1) + QPoint(20, 0));
        QVERIFY(bar.getDragFlag());
        QCOMPARE(bar.outsides, 0);
        dragMove(&bar, bar.centreOf(1) + QPoint(20, 60));
        QCOMPARE(bar.outsides, 1);
        QVERIFY(!bar.getDragFlag());
        QCOMPARE(bar.getDragTabIndex(), 1);
        // Released over a tab after leaving: the order stays, the owner hears the release.
        QTest::mouseRelease(&bar, Qt::LeftButton, Qt::NoModifier, bar.centreOf(0));
        QCOMPARE(bar.texts(), (QStringList{"A", "B", "C", "+"}));
        QCOMPARE(bar.releases, 1);
    }

    void windowComingBackDoesNotReorder()
    {
        RecordingBar bar(QStringList{"A", "B", "C", "+"});
        QCOMPARE(bar.setDragingFlags(zrtabbar::kDragingWindowBack), 0);
        bar.setDragingTitle(QStringLiteral("Window"));
        QCursor::setPos(bar.mapToGlobal(bar.centreOf(1)));
        (void)bar.grab(); // the stand-in of the window, between the tabs
        QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, bar.centreOf(1));
        dragMove(&bar, bar.centreOf(0));
        QVERIFY(!bar.getDragFlag());
        QTest::mouseRelease(&bar, Qt::LeftButton, Qt::NoModifier, bar.centreOf(0));
        QCOMPARE(bar.texts(), (QStringList{"A", "B", "C", "+"}));
        QCOMPARE(bar.getDragingFlags(), 0);
        QCOMPARE(bar.getDragTabIndex(), -1);
    }

    void x11CallsDoNothingElsewhere()
    {
        QVERIFY(!zrqt_get_display());
        QCOMPARE(zrqt_get_appRootWindow(0), 0ul);
        QCOMPARE(zrqt_get_mouseButtons_linux(), 0);
        Qt::MouseButtons buttons = Qt::LeftButton;
        QVERIFY(!zrqt_test_mouseButtons_linux(nullptr, buttons));
        QCOMPARE(zrqt_get_window_geometry_linux(nullptr), QRect(QPoint(0, 0), QPoint(-1, -1)));
        QCOMPARE(zrqt_findScreenForVirtualDesktop(-1), QGuiApplication::primaryScreen());
        QWidget window;
        QVERIFY(zrqt_window_start_native_drag_linux(&window, QPoint(5, 5), Qt::NoSection));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("EmulateButtonRelease.*not on an X11")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("MoveResizeWindow.*not on an X11")));
        QVERIFY(zrqt_window_start_native_drag_linux(&window, QPoint(5, 5), Qt::TitleBarArea));
    }

private:
    std::unique_ptr<ZrTest::Host> m_host;
};

ZR_TEST_SUITE(TabBarDrag)
#include "tst_tabbardrag.moc"

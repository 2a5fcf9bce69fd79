// The tab list of the bar: where tabs go in and which one is current afterwards, the tab properties,
// the selection, and the range arithmetic by tables.

#include "tabbartesthelpers.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include <QSignalSpy>
#include <memory>

using namespace TabBarTest;

class TabBarModel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_host = std::make_unique<ZrTest::Host>(); }
    void cleanupTestCase() { m_host.reset(); }

    void insertionKeepsTheNewTabTabLast_data()
    {
        QTest::addColumn<bool>("startPage");
        QTest::addColumn<bool>("closeButton");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<int>("at");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<int>("current");

        QTest::newRow("first tab of an empty bar") << false << true << QStringList() << -1 << QStringList{"+"} << 0;
        QTest::newRow("beside the plus only, before it") << false << true << QStringList{"+"} << -1
                                                         << QStringList{"C", "+"} << 0;
        QTest::newRow("index past the end clamps before the plus")
            << false << true << QStringList{"A", "B", "+"} << 7 << QStringList{"A", "B", "C", "+"} << 2;
        QTest::newRow("at the count, still before the plus")
            << false << true << QStringList{"A", "B", "+"} << 3 << QStringList{"A", "B", "C", "+"} << 2;
        QTest::newRow("at the front") << false << true << QStringList{"A", "B", "+"} << 0
                                      << QStringList{"C", "A", "B", "+"} << 0;
        QTest::newRow("start page: the second tab follows the start tab")
            << true << true << QStringList{"开始"} << -1 << QStringList{"开始", "C"} << 0;
        QTest::newRow("start page: a drawing before the plus")
            << true << true << QStringList{"开始", "+"} << -1 << QStringList{"开始", "C", "+"} << 1;
        QTest::newRow("no close button: the second tab is appended")
            << false << false << QStringList{"模型"} << -1 << QStringList{"模型", "C"} << 1;
    }

    void insertionKeepsTheNewTabTabLast()
    {
        QFETCH(bool, startPage);
        QFETCH(bool, closeButton);
        QFETCH(QStringList, before);
        QFETCH(int, at);
        QFETCH(QStringList, after);
        QFETCH(int, current);

        RecordingBar bar;
        bar.setHasStartPage(startPage);
        bar.setCloseTabButton(closeButton);
        bar.setTabs(before);
        const QString added = before.isEmpty() ? QStringLiteral("+") : QStringLiteral("C");
        QCOMPARE(bar.insertTab(at, added), current);
        QCOMPARE(bar.texts(), after);
        QCOMPARE(bar.currentIndex(), current);
    }

    void removalMovesTheCurrentIndexToTheEnd_data()
    {
        QTest::addColumn<bool>("startPage");
        QTest::addColumn<QStringList>("tabs");
        QTest::addColumn<int>("removed");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<int>("current");

        QTest::newRow("first of three, no start page: the plus")
            << false << QStringList{"A", "B", "+"} << 0 << QStringList{"B", "+"} << 1;
        QTest::newRow("with a start page: the last drawing")
            << true << QStringList{"开始", "A", "B", "+"} << 1 << QStringList{"开始", "B", "+"} << 1;
    }

    void removalMovesTheCurrentIndexToTheEnd()
    {
        QFETCH(bool, startPage);
        QFETCH(QStringList, tabs);
        QFETCH(int, removed);
        QFETCH(QStringList, after);
        QFETCH(int, current);

        RecordingBar bar;
        bar.setHasStartPage(startPage);
        bar.setTabs(tabs);
        bar.setCurrentIndex(0);
        QSignalSpy changed(&bar, &ZrTabBar::currentChanged);
        QVERIFY(bar.removeTab(removed));
        QCOMPARE(bar.texts(), after);
        QCOMPARE(bar.currentIndex(), current);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toInt(), current);
    }

    void currentIndexSignalsOnlyRealChanges()
    {
        RecordingBar bar;
        bar.setTabs({"A", "B", "+"});
        bar.setCurrentIndex(1);
        QSignalSpy changed(&bar, &ZrTabBar::currentChanged);
        bar.setCurrentIndex(1);
        bar.setCurrentIndex(-1);
        bar.setCurrentIndex(3);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(bar.currentIndex(), 1);
        bar.setCurrentIndex(0);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toInt(), 0);
    }

    void startTabNeedsTheStartPageAndItsText()
    {
        RecordingBar bar;
        bar.setTabs({"开始", "A", "+"});
        QVERIFY(!bar.isStartTab(0));
        bar.setHasStartPage(true);
        QVERIFY(bar.isStartTab(0));
        QVERIFY(!bar.isStartTab(1));
        bar.setTabText(0, QStringLiteral("Start"));
        QVERIFY(!bar.isStartTab(0));
    }

    void multiSelectionSkipsTheStartAndNewTabTabs()
    {
        RecordingBar bar;
        bar.setHasStartPage(true);
        bar.setTabs({"开始", "A", "B", "C", "+"});
        bar.addSelectIndex(1);
        QVERIFY(bar.getSelectIndexes().isEmpty()); // multi-selection is off
        bar.setMultiSelect(true);
        bar.addSelectIndex(2);
        bar.addSelectIndex(2);
        bar.addSelectIndex(9);
        QCOMPARE(bar.getSelectIndexes(), QVector<int>{2});
        bar.setSelAll(true);
        QCOMPARE(bar.getSelectIndexes(), (QVector<int>{1, 2, 3}));
        QVERIFY(bar.getSelAll());
        bar.removeSelectIndex(2);
        QCOMPARE(bar.getSelectIndexes(), (QVector<int>{1, 3}));
        bar.setSelAll(false);
        QVERIFY(bar.getSelectIndexes().isEmpty());
    }

    void endIndexByStart_data()
    {
        QTest::addColumn<QVector<int>>("widths");
        QTest::addColumn<int>("barWidth");
        QTest::addColumn<int>("start");
        QTest::addColumn<bool>("startPage");
        QTest::addColumn<int>("end");

        // 45 for the new-tab tab is counted in advance; the last tab (the plus) is never the end.
        const QVector<int> four{100, 100, 100, 45};
        QTest::newRow("all fit") << four << 400 << 0 << false << 2;
        QTest::newRow("two fit") << four << 245 << 0 << false << 1;
        QTest::newRow("exactly full is still in") << four << 145 << 0 << false << 0;
        QTest::newRow("one pixel short") << four << 144 << 0 << false << -1;
        QTest::newRow("start page counts 90") << four << 290 << 1 << true << 2;
        QTest::newRow("start at the plus") << four << 400 << 3 << false << 2;
    }

    void endIndexByStart()
    {
        QFETCH(QVector<int>, widths);
        QFETCH(int, barWidth);
        QFETCH(int, start);
        QFETCH(bool, startPage);
        QFETCH(int, end);
        QCOMPARE(zrtabbar::endIndexByStart([&](int i) { return widths[i]; }, widths.size(), barWidth, start, startPage),
                 end);
    }

    void rangeEndsForAnyWidthAndCount()
    {
        // Widths of 0 and of never-painted tabs must not stall the walks: each step moves one tab.
        for (int count : {1, 2, 2000}) {
            for (int barWidth : {0, 10, 1600}) {
                const auto zero = [](int) { return 0; };
                const auto unpainted = [](int) { return -1; };
                const int end = zrtabbar::endIndexByStart(unpainted, count, barWidth, 0, false);
                QVERIFY(end <= count - 2);
                const int start = zrtabbar::startIndexByEnd(zero, count, barWidth, false);
                QVERIFY(start >= 0 && start <= count);
            }
        }
    }

private:
    std::unique_ptr<ZrTest::Host> m_host;
};

ZR_TEST_SUITE(TabBarModel)
#include "tst_tabbarmodel.moc"

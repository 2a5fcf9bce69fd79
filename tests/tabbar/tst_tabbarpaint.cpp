// What the bar paints and what painting leaves behind: the slanted geometry the hit test reads, the
// widths the range calculation uses next, elided texts, the visible range, colours.

#include "tabbartesthelpers.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStyle>
#include <memory>

using namespace TabBarTest;

namespace {

QColor paletteColor(QPalette::ColorRole role)
{
    return QApplication::style()->standardPalette().color(QPalette::Active, role);
}

// A point of the fill near the top left corner of a tab: clear of its text and cross.
QPoint fillPoint(const ZrTabBar& bar, int index)
{
    const QVector<QPoint> p = bar.tabPolygon(index);
    return QPoint(p[0].x() + 3, 5);
}

// The bar fills its tabs from the style's palette; a background of its own tells unfilled from filled.
const QColor kBackground(1, 2, 3);

void setBackground(QWidget& bar)
{
    QPalette palette = bar.palette();
    palette.setColor(QPalette::Window, kBackground);
    bar.setPalette(palette);
    bar.setAutoFillBackground(true);
}

} // namespace

class TabBarPaint : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { m_host = std::make_unique<ZrTest::Host>(); }
    void cleanupTestCase() { m_host.reset(); }

    void tabsLeanLeftEndToEnd()
    {
        RecordingBar bar(QStringList{"A", "Drawing", "+"});
        const QFontMetrics metrics = bar.fontMetrics();
        const int widthA = 50 + metrics.horizontalAdvance(QStringLiteral("A"));
        // A bar 24 pixels high starts at x = 12 and leans 12 pixels over its height.
        QCOMPARE(bar.tabPolygon(0), (QVector<QPoint>{{12, 0}, {12 + widthA, 0}, {widthA, 24}, {0, 24}}));
        QCOMPARE(bar.getTabWidth(0), widthA);
        QCOMPARE(bar.tabPolygon(1).first(), QPoint(12 + widthA, 0));
        QCOMPARE(bar.tabPolygon(2).first(), bar.tabPolygon(1)[1]);
        QCOMPARE(bar.getTabWidth(2), 45);
    }

    void closeButtonAndIconChangeTheWidth()
    {
        RecordingBar plain(QStringList{"Drawing", "+"});
        RecordingBar noClose;
        noClose.setCloseTabButton(false);
        noClose.setTabs({"Drawing", "+"});
        noClose.paintNow();
        QCOMPARE(noClose.texts(), (QStringList{"Drawing", "+"}));
        QCOMPARE(noClose.getTabWidth(0), plain.getTabWidth(0) - 10);

        RecordingBar withIcon;
        withIcon.setTabs({"Drawing", "+"});
        QPixmap image(16, 16);
        image.fill(Qt::blue);
        withIcon.setTabIcon(0, QIcon(image));
        withIcon.paintNow();
        QCOMPARE(withIcon.getTabWidth(0), plain.getTabWidth(0) + 15);

        // The cross sits 13 pixels left of the lower right corner, in the middle of the height.
        const QRect cross = zrtabbar::closeButtonRect(plain.tabPolygon(0), plain.height());
        QCOMPARE(cross, QRect(plain.tabPolygon(0)[2].x() - 13, 9, 10, 10));
    }

    void longTextIsElidedInTheMiddleAndStaysSo()
    {
        RecordingBar bar;
        bar.resize(1600, 24);
        const QString longText = QStringLiteral("Begin ") + QString(5000, QLatin1Char('x')) + QStringLiteral(" End");
        bar.setTabs({"Short", "+"});
        bar.setTabText(0, longText);
        bar.setTabToolTip(0, longText);
        bar.paintNow();
        const QString shown = bar.tabText(0);
        QVERIFY(shown != longText);
        QVERIFY(shown.startsWith(QStringLiteral("Begin")));
        QVERIFY(shown.endsWith(QStringLiteral("End")));
        QVERIFY(bar.fontMetrics().horizontalAdvance(shown) <= 300);
        QVERIFY(bar.getTabWidth(0) <= 350);
        QCOMPARE(bar.tabToolTip(0), longText); // the owner's full text stays where it put it
        bar.setMaxTabTextWidth(100);
        bar.paintNow();
        QVERIFY(bar.fontMetrics().horizontalAdvance(bar.tabText(0)) <= 100);
    }

    void hitTestFollowsTheSlantedEdges()
    {
        RecordingBar bar(QStringList{"Drawing", "Plan", "+"});
        const QVector<QPoint> p = bar.tabPolygon(1);
        // Near the top, the boundary between tabs lies further right than near the bottom.
        QCOMPARE(bar.tabAt(QPoint(p[0].x() - 3, 2)), 0);
        QCOMPARE(bar.tabAt(QPoint(p[0].x() - 3, 22)), 1);
        QCOMPARE(bar.tabAt(QPoint(p[1].x() - 3, 22)), 2);
        // Left of the first tab's slanted edge, and beyond the plus.
        QCOMPARE(bar.tabAt(QPoint(6, 2)), -1);
        QCOMPARE(bar.tabAt(QPoint(790, 12)), -1);
        QCOMPARE(bar.tabAt(QPoint(p[0].x() + 5, -1)), -1);
        // The cross lies inside its tab.
        const QRect cross = zrtabbar::closeButtonRect(p, bar.height());
        QCOMPARE(bar.tabAt(cross.topLeft()), 1);
        QCOMPARE(bar.tabAt(cross.bottomRight()), 1);
    }

    void manyTabsShowTheEndAndTheCurrentTab()
    {
        RecordingBar bar;
        bar.resize(600, 24);
        QStringList texts;
        for (int i = 0; i < 2000; ++i)
            texts << QStringLiteral("D%1").arg(i);
        texts << QStringLiteral("+");
        bar.setTabs(texts);
        bar.setCurrentIndex(1999);
        bar.paintNow();
        const int last = bar.count() - 1;
        QCOMPARE(bar.tabAt(bar.centreOf(last)), last);
        QCOMPARE(bar.tabAt(bar.centreOf(1999)), 1999);
        QVERIFY(bar.tabPolygon(0).isEmpty());

        // A current tab before the range is brought into view from the left.
        bar.setCurrentIndex(3);
        bar.paintNow();
        QCOMPARE(bar.tabAt(bar.centreOf(3)), 3);
        QVERIFY(bar.tabPolygon(2).isEmpty());
        const QPoint oldPlace = bar.centreOf(3);
        // Back at the end, the polygon left from that paint no longer counts.
        bar.setCurrentIndex(1998);
        QCOMPARE(bar.tabAt(oldPlace), -1);
        bar.paintNow();
        QCOMPARE(bar.tabAt(bar.centreOf(1998)), 1998);
    }

    void floatingTabStopsAtTheStartTab()
    {
        RecordingBar bar;
        setBackground(bar);
        bar.setHasStartPage(true);
        bar.setTabs({"开始", "Drawing", "Plan", "Section", "+"});
        bar.paintNow();
        const QPoint startFill = fillPoint(bar, 0);
        QTest::mousePress(&bar, Qt::LeftButton, Qt::NoModifier, bar.centreOf(3));
        dragMove(&bar, bar.centreOf(3) - QPoint(20, 0));
        dragMove(&bar, QPoint(2, 12));
        QVERIFY(bar.isMovingHorizontally());
        const QImage image = bar.grab().toImage();
        // The floating tab is the only filled one; it stands right of the start tab, not over it.
        QCOMPARE(image.pixelColor(startFill), kBackground);
        const int startRight = bar.tabPolygon(0)[1].x();
        QCOMPARE(image.pixelColor(QPoint(startRight + 4, 5)), paletteColor(QPalette::Window));
        QTest::mouseRelease(&bar, Qt::LeftButton, Qt::NoModifier, QPoint(2, 12));
    }

private:
    std::unique_ptr<ZrTest::Host> m_host;
};

ZR_TEST_SUITE(TabBarPaint)
#include "tst_tabbarpaint.moc"

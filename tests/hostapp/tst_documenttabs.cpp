// The reference host's document and layout tabs, driven with the mouse: new drawings, switching,
// closing with the question for a changed drawing, reordering, tearing a tab out, the spaces.

#include "drawingtesthelpers.h"
#include "zrappenv.h"
#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdocument.h"
#include "zrdocumenttabbar.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrhostmainwindow.h"
#include "zrhostsession.h"
#include "zrtestmain.h"

#include <QMouseEvent>
#include <QTest>
#include <memory>

namespace {

QPoint tabCentre(const ZrTabBar* bar, int index)
{
    const QVector<QPoint> shape = bar->tabPolygon(index);
    return shape.size() == 4 ? QPoint((shape[0].x() + shape[2].x()) / 2, bar->height() / 2) : QPoint(-1, -1);
}

void clickTab(ZrTabBar* bar, int index)
{
    bar->repaint();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, tabCentre(bar, index));
}

// A move with the left button held, as the window system delivers it during a drag.
void dragMove(QWidget* widget, QPoint pos)
{
    QMouseEvent move(QEvent::MouseMove, pos, widget->mapToGlobal(pos), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

int documentCount()
{
    return zrDocManagerPtr()->documentCount();
}

} // namespace

class TstDocumentTabs : public QObject
{
    Q_OBJECT

private:
    ZrDocumentTabBar* tabs() const { return m_window->documentTabs(); }
    QStringList tabTexts() const
    {
        QStringList texts;
        for (int i = 0; i < tabs()->count(); ++i)
            texts << tabs()->tabText(i);
        return texts;
    }

    std::unique_ptr<ZrHostSession> m_session;
    std::unique_ptr<ZrHostMainWindow> m_window;

private Q_SLOTS:
    void initTestCase()
    {
        m_session = std::make_unique<ZrHostSession>(ZrApp::kLightTheme);
        QVERIFY2(m_session->error().isEmpty(), qPrintable(m_session->error()));
    }
    void init()
    {
        ZrHostControl::openSampleDrawing();
        ZrHostControl::flushUiEvents();
        m_window = std::make_unique<ZrHostMainWindow>(QStringList());
        m_window->setDrawingName(QStringLiteral("示例图纸"));
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        tabs()->repaint();
    }
    void cleanup()
    {
        // Back to the one drawing every test starts from.
        m_window.reset();
        CXuDocManager* documents = zrDocManagerPtr();
        while (documents->documentCount() > 1)
            documents->closeDocument(documents->document(documents->documentCount() - 1));
        documents->setCurDocument(documents->document(0));
        ZrHostControl::flushUiEvents();
        ZrHostControl::clearLogs();
    }
    void cleanupTestCase() { m_session.reset(); }

    void plusMakesADrawingAndTabsSwitchDrawings()
    {
        QCOMPARE(tabTexts(), (QStringList{"开始", "示例图纸", "+"}));
        CXuDocument* sample = zrDocManagerPtr()->curDocument();
        clickTab(tabs(), 2);
        QCOMPARE(tabTexts(), (QStringList{"开始", "示例图纸", "Drawing2.dwg", "+"}));
        QCOMPARE(tabs()->currentIndex(), 2);
        CXuDocument* made = zrDocManagerPtr()->curDocument();
        QVERIFY(made != sample);
        QCOMPARE(tabs()->documentAt(2), made);
        QCOMPARE(documentCount(), 2);

        clickTab(tabs(), 1);
        QCOMPARE(zrDocManagerPtr()->curDocument(), sample);
        QVERIFY(m_window->windowTitle().startsWith(QStringLiteral("示例图纸")));
        // The start tab shows the start page and keeps the drawings open.
        clickTab(tabs(), 0);
        QVERIFY(m_window->findChild<QWidget*>(QStringLiteral("startPage"))->isVisible());
        QVERIFY(!m_window->layoutTabs()->isVisible());
        QCOMPARE(documentCount(), 2);
    }

    void closingAChangedDrawingAsksFirst()
    {
        CXuDocument* changed = m_window->newDrawing();
        ZrHostControl::beginUndoStep(ZrString(L"LINE"));
        DrawingTest::addEntity(new ZrDbLine(ZrGePoint3d(0, 0, 0), ZrGePoint3d(10, 0, 0)));
        ZrHostControl::endUndoStep();
        const int index = tabs()->indexOf(changed);
        tabs()->repaint();
        const QPoint cross = zrtabbar::closeButtonRect(tabs()->tabPolygon(index), tabs()->height()).center();

        ZrHostControl::pushMessageBoxAnswer(7); // No: keep it
        QTest::mouseClick(tabs(), Qt::LeftButton, Qt::NoModifier, cross);
        QCOMPARE(ZrHostControl::messageLog().size(), 1);
        QCOMPARE(ZrHostControl::messageLog().first().caption, QStringLiteral("关闭图纸"));
        QCOMPARE(tabs()->indexOf(changed), index);
        QCOMPARE(documentCount(), 2);

        ZrHostControl::pushMessageBoxAnswer(6); // Yes: close it
        QTest::mouseClick(tabs(), Qt::LeftButton, Qt::NoModifier, cross);
        QCOMPARE(tabs()->indexOf(changed), -1);
        QCOMPARE(documentCount(), 1);
        QCOMPARE(tabs()->currentIndex(), 1);
        QCOMPARE(zrDocManagerPtr()->curDocument(), tabs()->documentAt(1));

        // An unchanged drawing closes without a question.
        m_window->newDrawing();
        tabs()->repaint();
        QTest::mouseClick(tabs(), Qt::LeftButton, Qt::NoModifier,
                          zrtabbar::closeButtonRect(tabs()->tabPolygon(2), tabs()->height()).center());
        QCOMPARE(ZrHostControl::messageLog().size(), 2);
        QCOMPARE(tabTexts(), (QStringList{"开始", "示例图纸", "+"}));
    }

    void draggingReordersTheDrawings()
    {
        CXuDocument* sample = zrDocManagerPtr()->curDocument();
        CXuDocument* second = m_window->newDrawing();
        CXuDocument* third = m_window->newDrawing();
        tabs()->repaint();
        const QPoint from = tabCentre(tabs(), 3);
        QTest::mousePress(tabs(), Qt::LeftButton, Qt::NoModifier, from);
        dragMove(tabs(), from - QPoint(30, 0));
        dragMove(tabs(), tabCentre(tabs(), 1));
        QTest::mouseRelease(tabs(), Qt::LeftButton, Qt::NoModifier, tabCentre(tabs(), 1));
        QCOMPARE(tabs()->documentAt(1), third);
        QCOMPARE(tabs()->documentAt(2), sample);
        QCOMPARE(tabs()->documentAt(3), second);
        QCOMPARE(tabs()->currentIndex(), 1);
        QCOMPARE(zrDocManagerPtr()->curDocument(), third);
        QCOMPARE(documentCount(), 3);
    }

    void aTabPulledOutBecomesAWindowAndTheDrawingStaysOpen()
    {
        CXuDocument* second = m_window->newDrawing();
        tabs()->repaint();
        const QPoint from = tabCentre(tabs(), 2);
        QTest::mousePress(tabs(), Qt::LeftButton, Qt::NoModifier, from);
        dragMove(tabs(), from + QPoint(0, 80));
        QCOMPARE(tabs()->indexOf(second), -1);
        QCOMPARE(tabs()->detachedWindows().size(), 1);
        QWidget* window = tabs()->detachedWindows().first();
        QCOMPARE(window->windowTitle(), QStringLiteral("Drawing2.dwg"));
        QVERIFY(window->isVisible());
        QCOMPARE(documentCount(), 2);
        QTest::mouseRelease(tabs(), Qt::LeftButton, Qt::NoModifier, from + QPoint(0, 80));
        window->close();
    }

    void layoutTabsSwitchTheSpace()
    {
        ZrLayoutTabBar* layouts = m_window->layoutTabs();
        QCOMPARE(layouts->objectName(), QStringLiteral("LayoutTabBar"));
        QVERIFY(layouts->count() >= 3);
        QCOMPARE(layouts->tabText(0), QStringLiteral("模型"));
        layouts->repaint();
        ZrDbDatabase* database = zrDocManagerPtr()->curDocument()->database();
        clickTab(layouts, 1);
        QVERIFY(!database->tilemode());
        QCOMPARE(database->currentLayoutId().handle(), layouts->tabData(1).value<int64_t>());
        // The model tab is fixed: it does not move.
        const QPoint model = tabCentre(layouts, 0);
        QTest::mousePress(layouts, Qt::LeftButton, Qt::NoModifier, model);
        dragMove(layouts, tabCentre(layouts, 2));
        QTest::mouseRelease(layouts, Qt::LeftButton, Qt::NoModifier, tabCentre(layouts, 2));
        QCOMPARE(layouts->tabText(0), QStringLiteral("模型"));
        QVERIFY(database->tilemode());
    }
};

ZR_TEST_SUITE(TstDocumentTabs)
#include "tst_documenttabs.moc"

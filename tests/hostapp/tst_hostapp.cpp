// The reference host's main window driven in-process, with the module loaded as a plug-in and the
// reactor service installed, as zrhostapp runs it: mouse and keys in, the drawing checked after.

// Mouse events go through the window as the window system delivers them, so that a move carries the
// buttons held and drags and pans arrive as a user makes them.
#define QTEST_QPA_MOUSE_HANDLING

#include "colortesthelpers.h"
#include "drawingtesthelpers.h"
#include "zrappenv.h"
#include "zrdialogrun.h"
#include "zrcolorbutton.h"
#include "zrcolorcombobox.h"
#include "zrcolorsamplepanel.h"
#include "zrconfig.h"
#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrdrawingcontrol.h"
#include "zrdrawingview.h"
#include "zrhostcontrol.h"
#include "zrhostmainwindow.h"
#include "zrhostsession.h"
#include "zrlayercombobox.h"
#include "zrlinetypecombobox.h"
#include "zrlinewidthcombobox.h"
#include "zrresbuf.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QListWidget>
#include <QAction>
#include <QComboBox>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QDockWidget>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QApplication>
#include <QTest>
#include <QHeaderView>
#include <QTreeWidget>
#include <QWheelEvent>

#include <memory>
#include <vector>

using namespace DrawingTest;

namespace {

std::vector<ZrDbObjectId> selection()
{
    return zrDocManagerPtr()->curDocument()->context()->pickFirst();
}

void setLayerOff(ZrDbObjectId layer, bool off)
{
    ZrDbObjectPointer<ZrDbLayerTableRecord> opened(layer, ZrDb::kForWrite);
    opened->setIsOff(off);
}

ZrDbObjectId addLine(double x0, double y0, double x1, double y1, ZrDbObjectId layer = ZrDbObjectId())
{
    return addEntity(new ZrDbLine(ZrGePoint3d(x0, y0, 0), ZrGePoint3d(x1, y1, 0)), layer);
}

using ZrTest::aci;

ZrDbObjectId addColouredLine(double y, uint16_t index)
{
    const ZrDbObjectId id = addLine(0, y, 100, y);
    ZrDbObjectPointer<ZrDbEntity> line(id, ZrDb::kForWrite);
    line->setColor(aci(index));
    return id;
}

ZrCmColor colorOf(ZrDbObjectId id)
{
    ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
    return entity ? entity->color() : ZrCmColor();
}

ZrCmColor layerColor(ZrDbObjectId layer)
{
    ZrDbObjectPointer<ZrDbLayerTableRecord> opened(layer, ZrDb::kForRead);
    return opened ? opened->color() : ZrCmColor();
}

} // namespace

class TstHostApp : public QObject
{
    Q_OBJECT

private:
    // A main window over the drawing now open, shown and active so that its shortcuts work; its
    // 对话框 menu lists `dialogs`.
    void showWindow(const QStringList& dialogs = QStringList())
    {
        ZrHostControl::flushUiEvents();
        m_window = std::make_unique<ZrHostMainWindow>(dialogs);
        m_window->show();
        QApplication::setActiveWindow(m_window.get());
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        view()->zoomExtents();
    }

    ZrDrawingView* view() const { return m_window->drawingView(); }
    QAction* action(const char* name) const { return m_window->findChild<QAction*>(QLatin1String(name)); }

    QPoint onScreen(double x, double y) const { return view()->drawingToWindow().map(QPointF(x, y)).toPoint(); }

    void click(const QPoint& at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(view(), Qt::LeftButton, modifiers, at);
    }

    // A band dragged with the left button, in steps so that the view sees the drag.
    void drag(const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(view(), Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(view(), (from + to) / 2);
        QTest::mouseMove(view(), to);
        QTest::mouseRelease(view(), Qt::LeftButton, Qt::NoModifier, to);
    }

    bool chooseInLayerBox(const QString& name) { return chooseIn(m_window->layerBox(), name); }

    // The 对话框 menu's entry for the colour dialog.
    QAction* colorDialogEntry() const
    {
        for (QAction* a : m_window->findChildren<QAction*>()) {
            if (a->text() == QLatin1String("ColorDialog"))
                return a;
        }
        return nullptr;
    }

    // Opens a box with F4 and takes `name` with the arrow keys and Return, as a user would; false
    // when the list did not open or has no such row.
    bool chooseIn(QComboBox* box, const QString& name)
    {
        QAbstractItemView* list = box->view();
        QTest::keyClick(box, Qt::Key_F4);
        if (!QTest::qWaitFor([list] { return list->isVisible(); }))
            return false;
        // The box reads the layers again as it opens, so the row is looked up only now.
        const int row = box->findText(name);
        for (int step = 0; row >= 0 && step <= box->count() && list->currentIndex().row() != row; ++step)
            QTest::keyClick(list, list->currentIndex().row() < row ? Qt::Key_Down : Qt::Key_Up);
        if (row < 0 || list->currentIndex().row() != row) {
            QTest::keyClick(list, Qt::Key_Escape);
            return false;
        }
        QTest::keyClick(list, Qt::Key_Return);
        if (!QTest::qWaitFor([list] { return !list->isVisible(); }))
            return false;
        // A window manager hands the activation back to the main window once the list is gone; the
        // offscreen platform leaves it with the list, and the window's shortcuts would not work.
        m_window->activateWindow();
        return QTest::qWaitForWindowActive(m_window.get());
    }

    std::unique_ptr<ZrHostSession> m_session;
    std::unique_ptr<ZrHostMainWindow> m_window;

private Q_SLOTS:
    void initTestCase()
    {
        m_session = std::make_unique<ZrHostSession>(ZrApp::kLightTheme);
        QVERIFY2(m_session->error().isEmpty(), qPrintable(m_session->error()));
    }

    void cleanup()
    {
        m_window.reset();
        ZrHostControl::clearSelection();
        ZrHostControl::flushUiEvents();
        ZrHostControl::clearLogs();
    }

    void cleanupTestCase()
    {
        m_session.reset();
    }

    // The main check of the window: the module's layer box follows the view's selection and writes
    // the user's choice to the drawing as one undo step.
    void layerBoxMovesAMixedSelectionAndUndoPutsItBack()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId walls = addLayer(QStringLiteral("墙体"));
        const ZrDbObjectId doors = addLayer(QStringLiteral("门窗"));
        addLayer(QStringLiteral("家具"));
        const ZrDbObjectId wall = addLine(0, 0, 100, 0, walls);
        const ZrDbObjectId door = addLine(0, 50, 100, 50, doors);
        const ZrDbObjectId clayer = curDatabase()->clayer();
        showWindow();

        click(onScreen(50, 0));
        click(onScreen(50, 50), Qt::ShiftModifier);
        QCOMPARE(selection(), (std::vector<ZrDbObjectId>{wall, door}));
        ZrLayerComboBox* box = m_window->layerBox();
        QTRY_VERIFY2(box->currentText().isEmpty(), qPrintable(box->currentText()));
        QVERIFY(box->isEnabled());

        QVERIFY(chooseInLayerBox(QStringLiteral("家具")));
        QTRY_COMPARE(layerName(layerOf(wall)), QStringLiteral("家具"));
        QCOMPARE(layerName(layerOf(door)), QStringLiteral("家具"));
        QTRY_COMPARE(box->currentText(), QStringLiteral("家具"));
        // The selection's objects moved; the drawing's current layer did not.
        QCOMPARE(curDatabase()->clayer(), clayer);

        QAction* undo = action("undoAction");
        QAction* redo = action("redoAction");
        QTRY_COMPARE(undo->text(), QStringLiteral("撤销 GLOBAL_UI_UPDATEDB"));
        QVERIFY(undo->isEnabled());
        QVERIFY(!redo->isEnabled());
        // One Ctrl+Z takes both objects back.
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(layerOf(wall), walls);
        QCOMPARE(layerOf(door), doors);
        QTRY_COMPARE(redo->text(), QStringLiteral("重做 GLOBAL_UI_UPDATEDB"));
        QVERIFY(redo->isEnabled());
        QTRY_VERIFY(box->currentText().isEmpty());

        QTest::keyClick(view(), Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(layerName(layerOf(wall)), QStringLiteral("家具"));
        QCOMPARE(layerName(layerOf(door)), QStringLiteral("家具"));
        QTRY_VERIFY(!redo->isEnabled());
    }

    void withoutSelectionTheBoxShowsAndSetsTheCurrentLayer()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId walls = addLayer(QStringLiteral("墙体"));
        const ZrDbObjectId wall = addLine(0, 0, 100, 0, walls);
        const ZrDbObjectId before = curDatabase()->clayer();
        showWindow();
        ZrLayerComboBox* box = m_window->layerBox();
        QTRY_COMPARE(box->currentText(), layerName(before));
        // A picked object shows its layer; Esc leaves nothing selected and the current layer again.
        click(onScreen(50, 0));
        QTRY_COMPARE(box->currentText(), QStringLiteral("墙体"));
        QTest::keyClick(view(), Qt::Key_Escape);
        QVERIFY(selection().empty());
        QTRY_COMPARE(box->currentText(), layerName(before));

        QVERIFY(chooseInLayerBox(QStringLiteral("墙体")));
        QTRY_COMPARE(curDatabase()->clayer(), walls);
        QCOMPARE(layerOf(wall), walls);
        QTRY_COMPARE(action("undoAction")->text(), QStringLiteral("撤销 GLOBAL_UI_UPDATEDB"));
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(curDatabase()->clayer(), before);
        QTRY_COMPARE(box->currentText(), layerName(before));
    }

    void aFrozenLayerCannotBeMadeCurrent()
    {
        ZrHostControl::openEmptyDrawing();
        addLayer(QStringLiteral("旧图"), {true, false});
        const ZrDbObjectId before = curDatabase()->clayer();
        showWindow();
        ZrHostControl::pushMessageBoxAnswer(1);

        QVERIFY(chooseInLayerBox(QStringLiteral("旧图")));
        QTRY_COMPARE(ZrHostControl::messageLog().size(), 1);
        const ZrHostControl::MessageRecord message = ZrHostControl::messageLog().constFirst();
        QCOMPARE(message.caption, QStringLiteral("图层 - 无法置为当前"));
        QVERIFY2(message.text.contains(QStringLiteral("冻结的图层")), qPrintable(message.text));
        QCOMPARE(curDatabase()->clayer(), before);
        QVERIFY(ZrHostControl::queuedMacros().isEmpty());
    }

    void entitiesOnLockedLayersAreLeftOutAndCounted()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId walls = addLayer(QStringLiteral("墙体"));
        const ZrDbObjectId locked = addLayer(QStringLiteral("轴线"), {false, true});
        const ZrDbObjectId furniture = addLayer(QStringLiteral("家具"));
        const ZrDbObjectId wall = addLine(0, 0, 100, 0, walls);
        const ZrDbObjectId axes[2] = {addLine(0, 50, 100, 50, locked), addLine(0, 100, 100, 100, locked)};
        showWindow();
        // A band dragged to the right across the whole view.
        drag(view()->rect().topLeft() + QPoint(2, 2), view()->rect().bottomRight() - QPoint(2, 2));
        QCOMPARE(selection().size(), size_t(3));
        ZrHostControl::pushMessageBoxAnswer(1);

        QVERIFY(chooseInLayerBox(QStringLiteral("家具")));
        QTRY_COMPARE(layerOf(wall), furniture);
        QCOMPARE(layerOf(axes[0]), locked);
        QCOMPARE(layerOf(axes[1]), locked);
        QTRY_COMPARE(ZrHostControl::messageLog().size(), 1);
        const QString text = ZrHostControl::messageLog().constFirst().text;
        QVERIFY2(text.startsWith(QStringLiteral("在锁定图层上有 2 个对象未被更新")), qPrintable(text));
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(layerOf(wall), walls);
    }

    void clickPicksWithinAFewPixelsAndShiftClickTogglesAndEscClears()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId low = addLine(0, 0, 100, 0);
        const ZrDbObjectId high = addLine(0, 50, 100, 50);
        showWindow();

        click(onScreen(50, 0) + QPoint(0, 3));
        QCOMPARE(selection(), std::vector<ZrDbObjectId>{low});
        click(onScreen(50, 50), Qt::ShiftModifier);
        QCOMPARE(selection(), (std::vector<ZrDbObjectId>{low, high}));
        click(onScreen(50, 0), Qt::ShiftModifier);
        QCOMPARE(selection(), std::vector<ZrDbObjectId>{high});
        // Shift+click on nothing keeps what is selected; a plain click on nothing clears it.
        click(onScreen(50, 25), Qt::ShiftModifier);
        QCOMPARE(selection(), std::vector<ZrDbObjectId>{high});
        click(onScreen(50, 0) + QPoint(0, 12));
        QVERIFY(selection().empty());

        click(onScreen(50, 50));
        QCOMPARE(selection().size(), size_t(1));
        QTest::keyClick(view(), Qt::Key_Escape);
        QVERIFY(selection().empty());
    }

    void theSelectionIsDrawnHighlighted()
    {
        ZrHostControl::openEmptyDrawing();
        addLine(0, 0, 100, 0);
        addLine(0, 50, 100, 50);
        showWindow();
        const QImage plain = view()->grab().toImage();
        click(onScreen(50, 0));
        const QImage picked = view()->grab().toImage();
        // Only around the picked line does the picture change.
        const QPoint at[2] = {onScreen(50, 0), onScreen(50, 50)};
        QVERIFY(picked.pixel(at[0]) != plain.pixel(at[0]));
        QCOMPARE(picked.pixel(at[1]), plain.pixel(at[1]));
        QTest::keyClick(view(), Qt::Key_Escape);
        QCOMPARE(view()->grab().toImage(), plain);
    }

    void clickPicksTheTopmostAndSkipsHiddenLayers()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId hidden = addLayer(QStringLiteral("hidden"));
        addLine(0, 0, 100, 0);
        const ZrDbObjectId onTop = addLine(0, 0, 100, 0);
        addLine(0, 50, 100, 50);
        const ZrDbObjectId off = addLine(0, 50, 100, 50, hidden);
        setLayerOff(hidden, true);
        showWindow();

        click(onScreen(50, 0));
        QCOMPARE(selection(), std::vector<ZrDbObjectId>{onTop});
        click(onScreen(50, 50));
        QCOMPARE(selection().size(), size_t(1));
        QVERIFY(selection().front() != off);
    }

    void bandToTheRightTakesWhatLiesInsideToTheLeftWhatItTouches()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId shortLine = addLine(0, 0, 100, 0);
        const ZrDbObjectId longLine = addLine(0, 50, 200, 50);
        const ZrDbObjectId circle = addEntity(new ZrDbCircle(ZrGePoint3d(300, 0, 0), 40));
        showWindow();

        const QPoint topLeft = onScreen(-5, 55);
        const QPoint bottomRight = onScreen(105, -5);
        drag(topLeft, bottomRight);
        QCOMPARE(selection(), std::vector<ZrDbObjectId>{shortLine});
        drag(bottomRight, topLeft);
        QCOMPARE(selection(), (std::vector<ZrDbObjectId>{shortLine, longLine}));

        // Inside the circle's box but clear of its outline: the band touches nothing there.
        drag(onScreen(310, 10), onScreen(290, -10));
        QVERIFY(selection().empty());
        drag(onScreen(345, 10), onScreen(335, -10));
        QCOMPARE(selection(), std::vector<ZrDbObjectId>{circle});
    }

    void wheelZoomsAboutTheCursorAndTheMiddleButtonPans()
    {
        ZrHostControl::openEmptyDrawing();
        addLine(0, 0, 100, 100);
        showWindow();

        const QPoint cursor = onScreen(25, 75);
        const QPointF before = view()->drawingToWindow().inverted().map(QPointF(cursor));
        const double scaleBefore = view()->drawingToWindow().m11();
        QWheelEvent wheel(cursor, view()->mapToGlobal(cursor), QPoint(), QPoint(0, 240), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view(), &wheel);
        QVERIFY(view()->drawingToWindow().m11() > scaleBefore * 1.4);
        const QPointF after = view()->drawingToWindow().inverted().map(QPointF(cursor));
        QVERIFY2(qAbs(after.x() - before.x()) < 1e-6 && qAbs(after.y() - before.y()) < 1e-6, "the point under the cursor moved");

        const QPoint from = onScreen(50, 50);
        QTest::mousePress(view(), Qt::MiddleButton, Qt::NoModifier, from);
        QTest::mouseMove(view(), from + QPoint(30, -20));
        QTest::mouseRelease(view(), Qt::MiddleButton, Qt::NoModifier, from + QPoint(30, -20));
        QCOMPARE(onScreen(50, 50), from + QPoint(30, -20));
    }

    // Zoomed in where a double no longer resolves the grid's step, the view paints and returns.
    void aDrawingFarFromTheOriginIsPainted()
    {
        ZrHostControl::openEmptyDrawing();
        addLine(2e15, 0, 2e15 + 0.5, 0.01);
        showWindow();
        QVERIFY(view()->drawingToWindow().m11() > 100);
        QVERIFY(!view()->grab().isNull());
    }

    void layerPanelFollowsTheLayers()
    {
        ZrHostControl::openEmptyDrawing();
        showWindow();
        auto* panel = m_window->findChild<QTreeWidget*>(QStringLiteral("layerPanel"));
        QVERIFY(panel);
        const int rows = panel->topLevelItemCount();
        const ZrDbObjectId added = addLayer(QStringLiteral("家具"));
        ZrHostControl::flushUiEvents();
        QTRY_COMPARE(panel->topLevelItemCount(), rows + 1);
        QTreeWidgetItem* row = panel->findItems(QStringLiteral("家具"), Qt::MatchExactly, 1).value(0);
        QVERIFY(row);
        const QString onBefore = row->toolTip(2);
        setLayerOff(added, true);
        ZrHostControl::flushUiEvents();
        QTRY_VERIFY(row->toolTip(2) != onBefore);
        // Only the changed row is touched: the item stays the same object.
        QCOMPARE(panel->findItems(QStringLiteral("家具"), Qt::MatchExactly, 1).value(0), row);
    }

    // The colour box beside the layer box: blank for a selection on two colours; a choice colours
    // both, and one Ctrl+Z takes both back.
    void colorBoxColoursAMixedSelectionAndUndoPutsItBack()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId green = addColouredLine(0, 3);
        const ZrDbObjectId blue = addColouredLine(50, 5);
        showWindow();
        ZrColorComboBox* box = m_window->colorBox();
        QCOMPARE(m_window->findChild<ZrColorComboBox*>(QStringLiteral("colorComboBox")), box);
        QTRY_COMPARE(box->currentText(), QStringLiteral("ByLayer"));

        click(onScreen(50, 0));
        QTRY_COMPARE(box->currentText(), QStringLiteral("绿"));
        click(onScreen(50, 50), Qt::ShiftModifier);
        QTRY_VERIFY2(box->currentText().isEmpty(), qPrintable(box->currentText()));
        QVERIFY(box->isEnabled());

        QVERIFY(chooseIn(box, QStringLiteral("红")));
        QTRY_COMPARE(colorOf(green), aci(1));
        QCOMPARE(colorOf(blue), aci(1));
        QTRY_COMPARE(box->currentText(), QStringLiteral("红"));
        QCOMPARE(curDatabase()->cecolor(), ZrCmColor());
        QTRY_COMPARE(action("undoAction")->text(), QStringLiteral("撤销 GLOBAL_UI_UPDATEDB"));

        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(colorOf(green), aci(3));
        QCOMPARE(colorOf(blue), aci(5));
        QTRY_VERIFY(box->currentText().isEmpty());
        QTRY_COMPARE(action("redoAction")->text(), QStringLiteral("重做 GLOBAL_UI_UPDATEDB"));
    }

    void withoutSelectionTheColorBoxSetsTheCurrentColour()
    {
        ZrHostControl::openEmptyDrawing();
        showWindow();
        ZrColorComboBox* box = m_window->colorBox();
        QVERIFY(chooseIn(box, QStringLiteral("青")));
        QTRY_COMPARE(curDatabase()->cecolor(), aci(4));
        QTRY_COMPARE(action("undoAction")->text(), QStringLiteral("撤销 GLOBAL_UI_UPDATEDB"));
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(curDatabase()->cecolor(), ZrCmColor());
    }

    // The line type box: blank for two line types, HIDDEN for both in one step, drawn with its dashes.
    void lineTypeBoxChangesAMixedSelectionInOneStep()
    {
        ZrHostControl::openEmptyDrawing();
        const auto lineType = [](const QString& name, std::vector<double> dashes) {
            auto* record = new ZrDbLinetypeTableRecord;
            record->setDashes(std::move(dashes));
            return addRecord(&ZrDbDatabase::getLinetypeTable, record, name);
        };
        const ZrDbObjectId hidden = lineType(QStringLiteral("HIDDEN"), {6.0, -3.0});
        const ZrDbObjectId center = lineType(QStringLiteral("CENTER"), {30.0, -5.0, 5.0, -5.0});
        const ZrDbObjectId solid = addLine(0, 0, 100, 0);
        const ZrDbObjectId centred = addLine(0, 50, 100, 50);
        ZrDbObjectPointer<ZrDbEntity>(solid, ZrDb::kForWrite)->setLinetype(curDatabase()->continuousLinetype());
        ZrDbObjectPointer<ZrDbEntity>(centred, ZrDb::kForWrite)->setLinetype(center);
        const auto lineTypeOf = [](ZrDbObjectId id) {
            return ZrDbObjectPointer<ZrDbEntity>(id, ZrDb::kForRead)->linetypeId();
        };
        // Gaps in the first line as the view draws it: stretches with no dark pixel about the line's
        // row, longer than the grid's one-pixel lines that cross it.
        const auto gapsInTheFirstLine = [this] {
            const QImage image = view()->grab().toImage();
            const QPoint from = onScreen(10, 0);
            const QPoint to = onScreen(90, 0);
            int gaps = 0;
            int gap = 0;
            for (int x = from.x(); x <= to.x(); ++x) {
                bool ink = false;
                for (int y = from.y() - 1; y <= from.y() + 1; ++y)
                    ink = ink || qGray(image.pixel(x, y)) < 160;
                gap = ink ? 0 : gap + 1;
                gaps += gap == 3;
            }
            return gaps;
        };
        showWindow();
        ZrLineTypeComboBox* box = m_window->lineTypeBox();
        QCOMPARE(m_window->findChild<ZrLineTypeComboBox*>(QStringLiteral("lineTypeComboBox")), box);
        QTRY_COMPARE(box->currentText(), QStringLiteral("ByLayer"));
        QCOMPARE(gapsInTheFirstLine(), 0);

        click(onScreen(50, 0));
        QTRY_COMPARE(box->currentText(), QStringLiteral("Continuous"));
        click(onScreen(50, 50), Qt::ShiftModifier);
        QTRY_VERIFY2(box->currentText().isEmpty(), qPrintable(box->currentText()));
        QVERIFY(box->isEnabled());

        QVERIFY(chooseIn(box, QStringLiteral("HIDDEN")));
        QTRY_COMPARE(lineTypeOf(solid), hidden);
        QCOMPARE(lineTypeOf(centred), hidden);
        QTRY_COMPARE(box->currentText(), QStringLiteral("HIDDEN"));
        QTRY_COMPARE(action("undoAction")->text(), QStringLiteral("撤销 GLOBAL_UI_UPDATEDB"));
        // Once no longer highlighted, the line shows the dashes of its new line type.
        QTest::keyClick(view(), Qt::Key_Escape);
        QTRY_VERIFY(gapsInTheFirstLine() > 5);
        click(onScreen(50, 50));
        click(onScreen(50, 0), Qt::ShiftModifier);
        QTRY_COMPARE(box->currentText(), QStringLiteral("HIDDEN"));

        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(lineTypeOf(solid), curDatabase()->continuousLinetype());
        QCOMPARE(lineTypeOf(centred), center);
        QTRY_VERIFY(box->currentText().isEmpty());
    }

    void lineWeightBoxChangesAMixedSelectionInOneStep()
    {
        ZrHostControl::openEmptyDrawing();
        const auto weighted = [](double y, int weight) {
            const ZrDbObjectId id = addLine(0, y, 100, y);
            ZrDbObjectPointer<ZrDbEntity>(id, ZrDb::kForWrite)->setLineWeight(static_cast<ZrDb::LineWeight>(weight));
            return id;
        };
        const ZrDbObjectId thin = weighted(0, 13);
        const ZrDbObjectId thick = weighted(50, 100);
        const auto weightOf = [](ZrDbObjectId id) {
            return int(ZrDbObjectPointer<ZrDbEntity>(id, ZrDb::kForRead)->lineWeight());
        };
        showWindow();
        ZrLineWidthComboBox* box = m_window->lineWeightBox();
        QTRY_COMPARE(box->currentText(), QStringLiteral("ByLayer"));
        click(onScreen(50, 0));
        QTRY_COMPARE(box->currentText(), QStringLiteral("0.13 mm"));
        click(onScreen(50, 50), Qt::ShiftModifier);
        QTRY_VERIFY2(box->currentText().isEmpty(), qPrintable(box->currentText()));
        QVERIFY(chooseIn(box, QStringLiteral("0.50 mm")));
        QTRY_COMPARE(weightOf(thin), 50);
        QCOMPARE(weightOf(thick), 50);
        QTRY_COMPARE(action("undoAction")->text(), QStringLiteral("撤销 GLOBAL_UI_UPDATEDB"));
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(weightOf(thin), 13);
        QCOMPARE(weightOf(thick), 100);
    }

    // 格式 → 线宽… and the box's settings item open the lineweight settings; OK changes the drawing's
    // settings as one undo step.
    void lineWeightSettingsChangeTheDrawingInOneStep()
    {
        ZrHostControl::openEmptyDrawing();
        showWindow();
        const auto variable = [](const wchar_t* name) {
            ZrResBuf value;
            return zredGetVar(name, &value) == RTNORM ? int(value.resval.rint) : -99;
        };
        ZrTest::whenModalShown([](QWidget* dialog) {
            auto* display = dialog->findChild<QAbstractButton*>(QStringLiteral("displayCheck"));
            QTest::mouseClick(display, Qt::LeftButton, {}, QPoint(display->height() / 2, display->height() / 2));
            auto* list = dialog->findChild<QListWidget*>(QStringLiteral("lweightList"));
            QListWidgetItem* row = list->findItems(QStringLiteral("0.30 mm"), Qt::MatchExactly).value(0);
            list->scrollToItem(row);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(row).center());
            QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("okButton")), Qt::LeftButton);
        });
        action("lineWeightAction")->trigger();
        QCOMPARE(variable(L"LWDISPLAY"), 1);
        QCOMPARE(variable(L"CELWEIGHT"), 30);
        QTRY_COMPARE(m_window->lineWeightBox()->currentText(), QStringLiteral("0.30 mm"));
        QTRY_COMPARE(action("undoAction")->text(), QStringLiteral("撤销 线宽"));
        // The offscreen platform leaves the activation with the closed dialog.
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(variable(L"LWDISPLAY"), 0);
        QCOMPARE(variable(L"CELWEIGHT"), -1);
        QTRY_COMPARE(m_window->lineWeightBox()->currentText(), QStringLiteral("ByLayer"));

        bool opened = false;
        ZrTest::whenModalShown([&opened](QWidget* dialog) {
            opened = dialog->windowTitle() == QStringLiteral("线宽设置");
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QVERIFY(chooseIn(m_window->lineWeightBox(), QStringLiteral("线宽设置...")));
        QTRY_VERIFY(opened);
        QTRY_COMPARE(m_window->lineWeightBox()->currentText(), QStringLiteral("ByLayer"));
    }

    // A double click on a layer's colour opens the colour dialog; OK writes the colour as one step,
    // Cancel writes nothing.
    void layerPanelColourCellOpensTheColourDialog()
    {
        ZrHostControl::openEmptyDrawing();
        const ZrDbObjectId walls = addLayer(QStringLiteral("墙体"));
        const ZrCmColor before = layerColor(walls);
        showWindow();
        auto* panel = m_window->findChild<QTreeWidget*>(QStringLiteral("layerPanel"));
        QTreeWidgetItem* row = panel->findItems(QStringLiteral("墙体"), Qt::MatchExactly, 1).value(0);
        QVERIFY(row);
        const int colorColumn = panel->columnCount() - 1;
        const QString shownBefore = row->text(colorColumn);
        const auto doubleClickColour = [&] {
            const QPoint at = panel->visualItemRect(row).center();
            const QPoint cell(panel->header()->sectionViewportPosition(colorColumn)
                                  + panel->header()->sectionSize(colorColumn) / 2,
                              at.y());
            QTest::mouseDClick(panel->viewport(), Qt::LeftButton, Qt::NoModifier, cell);
        };

        const QString lastStep = action("undoAction")->text();
        ZrTest::cancelNextModal();
        doubleClickColour();
        QCOMPARE(layerColor(walls), before);
        QCOMPARE(action("undoAction")->text(), lastStep);

        ZrTest::whenModalShown([](QWidget* dialog) { ZrTest::typeColorAndOk(dialog, QStringLiteral("30")); });
        doubleClickColour();
        QCOMPARE(layerColor(walls), aci(30));
        QTRY_COMPARE(row->text(colorColumn), QStringLiteral("30"));
        QTRY_COMPARE(action("undoAction")->text(), QStringLiteral("撤销 图层颜色"));
        // A window manager hands the activation back once the dialog is gone; offscreen, the test does.
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::keyClick(view(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(layerColor(walls), before);
        QTRY_COMPARE(row->text(colorColumn), shownBefore);
        QCOMPARE(action("undoAction")->text(), lastStep);
    }

    // The sample panel's first colour button opens the colour dialog; OK takes the colour into the
    // swatch and the gradient, and the swap button trades the two colours.
    void colourSamplePanelFollowsTheDialogChoice()
    {
        showWindow();
        auto* dock = m_window->findChild<QDockWidget*>(QStringLiteral("colorSampleDock"));
        QVERIFY(dock);
        QCOMPARE(dock->windowTitle(), QStringLiteral("颜色示例"));
        auto* panel = m_window->findChild<ZrColorSamplePanel*>(QStringLiteral("colorSamplePanel"));
        QVERIFY(panel && panel->isVisible());
        ZrColorButtonWidget* first = panel->firstColor();
        QSignalSpy changed(first, &ZrColorButtonWidget::colorChanged);
        const QColor second = panel->gradient()->getColor2();

        ZrTest::whenModalShown([](QWidget* dialog) { ZrTest::typeColorAndOk(dialog, QStringLiteral("30")); });
        QTest::mouseClick(first->innerButton(), Qt::LeftButton);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(first->color(), aci(30));
        const QColor chosen(aci(30).red(), aci(30).green(), aci(30).blue());
        QCOMPARE(panel->gradient()->getColor1(), chosen);
        QCOMPARE(panel->gradient()->getColor2(), second);

        QTest::mouseClick(panel->findChild<QPushButton*>(QStringLiteral("swapColorsButton")), Qt::LeftButton);
        QCOMPARE(panel->gradient()->getColor1(), second);
        QCOMPARE(panel->gradient()->getColor2(), chosen);
        QCOMPARE(panel->secondColor()->color(), aci(30));
        QCOMPARE(changed.count(), 1);
    }

    void undoAndRedoAreDisabledWithoutHistory()
    {
        ZrHostControl::openEmptyDrawing();
        showWindow();
        QAction* undo = action("undoAction");
        QAction* redo = action("redoAction");
        QVERIFY(!undo->isEnabled());
        QVERIFY(!redo->isEnabled());
        QCOMPARE(undo->text(), QStringLiteral("撤销"));
    }

    // The menu runs the colour dialog on its sample, red with both buttons on; the answer goes to the
    // command line.
    void dialogsMenuRunsTheColourDialogOnItsSample()
    {
        showWindow(ZrApp::availableDialogs());
        QAction* entry = colorDialogEntry();
        QVERIFY(entry);
        QString shown;
        ZrTest::whenModalShown([&shown](QWidget* dialog) {
            shown = dialog->findChild<QLineEdit*>(QStringLiteral("colorLineEdit"))->text();
            QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("btnByBlock")), Qt::LeftButton);
            ZrTest::clickOk(dialog);
        });
        entry->trigger();
        QCOMPARE(shown, QStringLiteral("红"));
        const QString history = m_window->findChild<QPlainTextEdit*>(QStringLiteral("commandHistory"))->toPlainText();
        const QJsonObject answer = QJsonDocument::fromJson(history.section(QLatin1Char('\n'), -1).toUtf8()).object();
        QCOMPARE(answer.value(QStringLiteral("result")).toInt(), 1);
        QCOMPARE(answer.value(QStringLiteral("param")).toObject().value(QStringLiteral("method")).toInt(), 193);
    }

    // A folder of books picked in the 文件 menu is saved to the user configuration, and the very next
    // colour dialog lists its book.
    void colourBookFolderReachesTheNextDialog()
    {
        QTemporaryDir books;
        QFile book(books.filePath(QStringLiteral("dock.acb")));
        QVERIFY(book.open(QIODevice::WriteOnly));
        book.write("<colorBook><bookName>Dock Book</bookName><colorPage><colorEntry><colorName>Dock 1</colorName>"
                   "<RGB8><red>1</red><green>2</green><blue>3</blue></RGB8></colorEntry></colorPage></colorBook>");
        book.close();
        ZrHostControl::resetColorBookFolders();
        showWindow(ZrApp::availableDialogs());
        // The books the colour dialog of the 对话框 menu lists.
        const auto listedBooks = [this] {
            QStringList listed;
            ZrTest::whenModalShown([&listed](QWidget* dialog) {
                auto* combo = dialog->findChild<QComboBox*>(QStringLiteral("colorBookCombo"));
                QVERIFY(combo);
                for (int i = 0; i < combo->count(); ++i)
                    listed << combo->itemText(i);
                QTest::keyClick(dialog, Qt::Key_Escape);
            });
            colorDialogEntry()->trigger();
            return listed;
        };
        QVERIFY(!listedBooks().contains(QStringLiteral("Dock Book")));

        ZrTest::whenModalShown([&books](QWidget* modal) {
            auto* picker = qobject_cast<QFileDialog*>(modal);
            QVERIFY(picker);
            auto* name = picker->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            QVERIFY(name);
            name->setText(books.path());
            QTest::keyClick(name, Qt::Key_Return);
        });
        action("colorBookFolderAction")->trigger();
        const ZrJsonPtr saved = zr_user_config("ColorBookPaths");
        QVERIFY(saved);
        QCOMPARE(saved->safeStrValueW().toQString(), books.path());
        QFile config(ZrHostControl::userConfigFile());
        QVERIFY(config.open(QIODevice::ReadOnly));
        QVERIFY(config.readAll().contains(books.path().toUtf8()));

        const QStringList listed = listedBooks();
        zr_user_config("")->SetDataNull("ColorBookPaths");
        QVERIFY2(listed.contains(QStringLiteral("Dock Book")), qPrintable(listed.join(QLatin1Char(','))));
    }
};

ZR_TEST_SUITE(TstHostApp)
#include "tst_hostapp.moc"

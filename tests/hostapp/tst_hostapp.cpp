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


ZrDbObjectId addLine(double x0, double y0, double x1, double y1, ZrDbObjectId layer = ZrDbObjectId())
{
    return addEntity(new ZrDbLine(ZrGePoint3d(x0, y0, 0), ZrGePoint3d(x1, y1, 0)), layer);
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

    bool chooseInLayerBox(const QString& name) { return chooseIn(m_window->layerBox(), name); }

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
};

ZR_TEST_SUITE(TstHostApp)
#include "tst_hostapp.moc"

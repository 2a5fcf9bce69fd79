// The lineweight tables, the pen each weight is drawn with, the lineweight box as a user meets it
// (it follows the selection and writes through GLOBAL_UI_UPDATEDB) and the list of the settings.

#include "controlstesthelpers.h"
#include "lineweighttesthelpers.h"
#include "zrtestmain.h"

#include "zrlinewidthcombobox.h"
#include "zrpslineweightlist.h"
#include "zrqthelper.h"

#include <QPainter>
#include <QSignalSpy>
#include <memory>

using namespace ControlsTest;
using namespace LineWeightTest;

namespace {

struct Row
{
    int weight;
    const char* millimetres;
    const char* inches;
};

// Every row of the two tables, in list order.
const Row kTable[] = {
    {0, "0.00 mm", "0.000\""},   {5, "0.05 mm", "0.002\""},   {9, "0.09 mm", "0.004\""},
    {13, "0.13 mm", "0.005\""},  {15, "0.15 mm", "0.006\""},  {18, "0.18 mm", "0.007\""},
    {20, "0.20 mm", "0.008\""},  {25, "0.25 mm", "0.010\""},  {30, "0.30 mm", "0.012\""},
    {35, "0.35 mm", "0.014\""},  {40, "0.40 mm", "0.016\""},  {50, "0.50 mm", "0.020\""},
    {53, "0.53 mm", "0.021\""},  {60, "0.60 mm", "0.024\""},  {70, "0.70 mm", "0.028\""},
    {80, "0.80 mm", "0.031\""},  {90, "0.90 mm", "0.035\""},  {100, "1.00 mm", "0.039\""},
    {106, "1.06 mm", "0.042\""}, {120, "1.20 mm", "0.047\""}, {140, "1.40 mm", "0.055\""},
    {158, "1.58 mm", "0.062\""}, {200, "2.00 mm", "0.079\""}, {211, "2.11 mm", "0.083\""},
};

// The box's next update: a host event that changes nothing, as a pan of the view sends.
void poke()
{
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventView;
    event.database = db();
    ZrHostControl::postUiEvent(event);
}

ZrDb::LineWeight weightOf(ZrDbObjectId id)
{
    return readEntity<ZrDbEntity>(id, [](const ZrDbEntity* e) { return e->lineWeight(); });
}

ZrDbObjectId lineOfWeight(int weight)
{
    auto* line = new ZrDbLine(ZrGePoint3d(0, 0, 0), ZrGePoint3d(10, 0, 0));
    line->setLineWeight(static_cast<ZrDb::LineWeight>(weight), true);
    return addEntity(line);
}

} // namespace

class TestLineWeight : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host.reset(new Host); }

    void cleanup()
    {
        m_box.reset();
        m_host.reset();
    }

    void everyRowOfBothTables_data()
    {
        QTest::addColumn<bool>("inches");
        QTest::addColumn<int>("weight");
        QTest::addColumn<QString>("text");
        for (const Row& row : kTable) {
            QTest::addRow("%d mm", row.weight) << false << row.weight << QString::fromUtf8(row.millimetres);
            QTest::addRow("%d in", row.weight) << true << row.weight << QString::fromUtf8(row.inches);
        }
        for (const bool inches : {false, true}) {
            const char* unit = inches ? "in" : "mm";
            QTest::addRow("ByLayer %s", unit) << inches << -1 << QStringLiteral("ByLayer");
            QTest::addRow("ByBlock %s", unit) << inches << -2 << QStringLiteral("ByBlock");
            QTest::addRow("default %s", unit) << inches << -3 << QStringLiteral("默认");
            // Values no row holds, next to ones that do.
            for (const int stranger : {-4, 1, 24, 26, 210, 212, 1000})
                QTest::addRow("%d %s", stranger, unit) << inches << stranger << QString();
        }
    }

    void everyRowOfBothTables()
    {
        QFETCH(bool, inches);
        QFETCH(int, weight);
        QFETCH(QString, text);
        QCOMPARE(zrqthelper::getLineName(inches, static_cast<ZrDb::LineWeight>(weight)), text);
    }

    // The list of a box with every special row, in each unit, and what each item stands for.
    void boxListsEveryWeightInTheUnitOfLwunits_data()
    {
        QTest::addColumn<int>("units");
        QTest::newRow("millimetres") << 1;
        QTest::newRow("inches") << 0;
    }

    void boxListsEveryWeightInTheUnitOfLwunits()
    {
        QFETCH(int, units);
        setVariable(L"LWUNITS", units);
        ZrLineWidthComboBox box(true, 15, nullptr, true);
        QStringList texts{QStringLiteral("ByLayer"), QStringLiteral("ByBlock"), QStringLiteral("默认"),
                          QStringLiteral("使用对象线宽")};
        QList<int> weights{-1, -2, -3, -3};
        for (const Row& row : kTable) {
            texts << QString::fromUtf8(units ? row.millimetres : row.inches);
            weights << row.weight;
        }
        texts << QStringLiteral("线宽设置...");
        weights << -3;
        QCOMPARE(items(box), texts);
        for (int i = 0; i < box.count(); ++i)
            QCOMPARE(int(box.GetLineWeight(i)), weights[i]);
        QCOMPARE(int(box.GetLineWeight(box.count())), -3);
        QCOMPARE(int(box.GetLineWeight(-1)), -3);
        QCOMPARE(box.getLineWidget(static_cast<ZrDb::LineWeight>(211)), 27);
        QCOMPARE(box.findItemByLineWeight(static_cast<ZrDb::LineWeight>(7)), -1);
        // The plain picker: the three rules and the weights, nothing else.
        ZrLineWidthComboBox plain;
        QCOMPARE(plain.count(), 27);
        QCOMPARE(plain.itemText(3), texts[4]);
    }

    void penWidths_data()
    {
        QTest::addColumn<int>("weight");
        QTest::addColumn<double>("scale");
        QTest::addColumn<int>("pen");
        QTest::newRow("211 capped at height - 4") << 211 << 0.5 << 21;
        QTest::newRow("158 reaches height - 3") << 158 << 0.5 << 21;
        QTest::newRow("140 under the cap") << 140 << 0.5 << 19;
        QTest::newRow("9 at full scale") << 9 << 1.0 << 2;
        QTest::newRow("9 at half scale") << 9 << 0.5 << 1;
        QTest::newRow("25 at full scale") << 25 << 1.0 << 2;
        QTest::newRow("30 above the thin ones") << 30 << 0.5 << 4;
        QTest::newRow("90 at the small scale") << 90 << 0.2 << 1;
        QTest::newRow("100 at the small scale") << 100 << 0.2 << 7;
        QTest::newRow("26 just above the small scale") << 26 << 0.2000001 << 2;
        QTest::newRow("ByLayer") << -1 << 1.0 << 1;
        QTest::newRow("0") << 0 << 1.0 << 1;
    }

    void penWidths()
    {
        QFETCH(int, weight);
        QFETCH(double, scale);
        QFETCH(int, pen);
        ZrLineWidthComboBox box;
        box.setLineweightScale(scale);
        QCOMPARE(box.getLineThickness(weight), pen);
        ZrQtLweightListWidget list;
        list.setLineweightScale(scale);
        QCOMPARE(list.getLineThickness(weight), pen);
    }

    // The icons are drawn with those pens: the special rows a hairline, the heaviest capped.
    void iconsShowThePen()
    {
        ZrLineWidthComboBox box;
        QCOMPARE(drawnRows(box.itemIcon(0)), 1);
        QCOMPARE(drawnRows(box.itemIcon(box.getLineWidget(static_cast<ZrDb::LineWeight>(30)))), 4);
        QCOMPARE(drawnRows(box.itemIcon(box.getLineWidget(static_cast<ZrDb::LineWeight>(211)))), 21);
    }

    // The list draws what a by-rule row stands for: ByLayer the current layer's weight, ByBlock a
    // hairline, the default row the host's default weight.
    void listRowsDrawWhatTheyStandFor()
    {
        ZrDbObjectPointer<ZrDbLayerTableRecord>(db()->clayer(), ZrDb::kForWrite)->setLineWeight(
            static_cast<ZrDb::LineWeight>(140));
        setVariable(L"LWDEFAULT", 211);
        ZrQtLweightListWidget list;
        list.initListWidthCurLayout(false);
        QCOMPARE(list.count(), 27);
        QCOMPARE(list.item(26)->text(), QStringLiteral("2.11 mm"));
        QCOMPARE(drawnRows(list.item(0)->icon()), 19);
        QCOMPARE(drawnRows(list.item(1)->icon()), 1);
        QCOMPARE(drawnRows(list.item(2)->icon()), 21);
        QCOMPARE(list.getLineWidget(ZrDb::kLnWtByLwDefault), 2);
        QCOMPARE(int(list.lineWeightAt(4)), 5);
        list.modifyItemLine(1, static_cast<ZrDb::LineWeight>(30));
        QCOMPARE(drawnRows(list.item(1)->icon()), 4);
        QCOMPARE(list.item(1)->text(), QStringLiteral("ByBlock"));
        QVERIFY(!list.needUpdateUI(CZrGlobalUIReactorHelp()));
    }

    void nothingSelectedShowsAndSetsTheCurrentWeight()
    {
        ZrLineWidthComboBox& box = bound();
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("ByLayer"));
        QSignalSpy picked(&box, &ZrLineWidthComboBox::lineWeightItemChanged);
        markHistory();
        pick(box, QStringLiteral("0.30 mm"));
        QTRY_COMPARE(int(db()->celweight()), 30);
        QCOMPARE(m_host->macros(), QStringList{QStringLiteral("GLOBAL_UI_UPDATEDB")});
        QCOMPARE(picked.size(), 1);
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(int(db()->celweight()), -1);
        QCOMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("mark"));
    }

    void twoWeightsSelectedThenOnePickChangesBoth()
    {
        const ZrDbObjectId thin = lineOfWeight(13);
        const ZrDbObjectId thick = lineOfWeight(100);
        ZrLineWidthComboBox& box = bound();
        markHistory();
        select({thin});
        QTRY_COMPARE(box.currentText(), QStringLiteral("0.13 mm"));
        select({thin, thick});
        QTRY_COMPARE(box.currentIndex(), -1);
        QVERIFY(box.isEnabled());
        pick(box, QStringLiteral("0.50 mm"));
        QTRY_COMPARE(int(weightOf(thin)), 50);
        QCOMPARE(int(weightOf(thick)), 50);
        QTRY_COMPARE(box.currentText(), QStringLiteral("0.50 mm"));
        QCOMPARE(int(db()->celweight()), -1);
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(int(weightOf(thin)), 13);
        QCOMPARE(int(weightOf(thick)), 100);
        QCOMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("mark"));
    }

    // Every road of onUpdateUI: a common weight, weights that differ, the current weight, and a
    // weight the list leaves out. None of them is a choice of the user.
    void hostRefreshIsSilent()
    {
        const ZrDbObjectId thin = lineOfWeight(13);
        const ZrDbObjectId byLayer = lineOfWeight(-1);
        db()->setCelweight(static_cast<ZrDb::LineWeight>(211));
        ZrHostControl::flushUiEvents();
        // Without ByLayer in its list.
        m_box.reset(new ZrLineWidthComboBox(true, 6, nullptr, false));
        ZrLineWidthComboBox& box = *m_box;
        box.show();
        QSignalSpy picked(&box, &ZrLineWidthComboBox::lineWeightItemChanged);
        QSignalSpy changed(&box, QOverload<int>::of(&QComboBox::currentIndexChanged));
        ZrHostControl::clearLogs();
        markHistory();

        select({thin});
        QTRY_COMPARE(box.currentText(), QStringLiteral("0.13 mm"));
        select({thin, byLayer});
        QTRY_COMPARE(box.currentIndex(), -1);
        select({byLayer});
        QTRY_COMPARE(box.currentText(), QStringLiteral("ByLayer"));
        QCOMPARE(box.currentIndex(), box.count() - 1);
        ZrHostControl::clearSelection();
        QTRY_COMPARE(box.currentText(), QStringLiteral("2.11 mm"));

        QVERIFY(picked.isEmpty());
        QVERIFY(changed.isEmpty());
        QVERIFY(m_host->macros().isEmpty());
        QVERIFY(nothingSinceMark());
        QVERIFY(!box.signalsBlocked());
    }

    // A change of LWUNITS refills the list in the new unit, and the box shows the same weight.
    void unitsFollowLwunits()
    {
        ZrLineWidthComboBox& box = bound();
        select({lineOfWeight(35)});
        QTRY_COMPARE(box.currentText(), QStringLiteral("0.35 mm"));
        setVariable(L"LWUNITS", 0);
        QTRY_COMPARE(box.itemText(3), QStringLiteral("0.000\""));
        QTRY_COMPARE(box.currentText(), QStringLiteral("0.014\""));
        QVERIFY(box.inches());
    }

    // The settings item queues the lineweight command and gives the box back the weight it showed,
    // whether the host or the user put it there.
    void settingsItemNeverStaysCurrent()
    {
        m_box.reset(new ZrLineWidthComboBox(true, 7, nullptr, true));
        ZrLineWidthComboBox& box = *m_box;
        box.show();
        const ZrDbObjectId line = lineOfWeight(40);
        select({line});
        QTRY_COMPARE(box.currentText(), QStringLiteral("0.40 mm"));
        QSignalSpy picked(&box, &ZrLineWidthComboBox::lineWeightItemChanged);
        pick(box, QStringLiteral("线宽设置..."));
        QCOMPARE(box.currentText(), QStringLiteral("0.40 mm"));
        QCOMPARE(m_host->macros(), QStringList{QStringLiteral("_LWEIGHT\n")});
        QVERIFY(picked.isEmpty());

        pick(box, QStringLiteral("1.00 mm"));
        QTRY_COMPARE(int(weightOf(line)), 100);
        pick(box, QStringLiteral("线宽设置..."));
        QCOMPARE(box.currentText(), QStringLiteral("1.00 mm"));
        QCOMPARE(picked.size(), 1);

        // A picker the host does not update goes back to the user's last choice.
        ZrLineWidthComboBox plain(nullptr, true);
        plain.show();
        pick(plain, QStringLiteral("0.09 mm"));
        pick(plain, QStringLiteral("线宽设置..."));
        QCOMPARE(plain.currentText(), QStringLiteral("0.09 mm"));
    }

    // A plain picker reports the choice and writes nothing.
    void plainPickerOnlyReports()
    {
        m_box.reset(new ZrLineWidthComboBox(nullptr, false));
        ZrLineWidthComboBox& box = *m_box;
        box.show();
        markHistory();
        QSignalSpy picked(&box, &ZrLineWidthComboBox::lineWeightItemChanged);
        pick(box, QStringLiteral("1.00 mm"));
        QCOMPARE(picked.size(), 1);
        QCOMPARE(int(box.GetCurrentLineWeight()), 100);
        QVERIFY(m_host->macros().isEmpty());
        QVERIFY(nothingSinceMark());
    }

    void popupWaitsForTheCommandOnABoundBox()
    {
        ZrLineWidthComboBox& box = bound();
        context()->setActiveCommandCount(1);
        box.showPopup();
        QVERIFY(!box.view()->isVisible());
        context()->setActiveCommandCount(0);
        box.showPopup();
        QTRY_VERIFY(box.view()->isVisible());
        box.hidePopup();
    }

    // The preview is fitted to the first real size of the box and to nothing after.
    void previewFitsTheFirstSizeOnly()
    {
        ZrLineWidthComboBox box;
        QCOMPARE(box.iconSize(), QSize(80, 25));
        box.setMaximumWidth(1000);
        box.setFixedHeight(40);
        box.resize(120, 40);
        box.show();
        QTRY_COMPARE(box.iconSize(), QSize(80, 40));
        box.setFixedHeight(60);
        box.resize(120, 60);
        QCOMPARE(box.iconSize(), QSize(80, 40));
    }

    // The drawing shows weights only with LWDISPLAY on, as wide as LWDISPLAYSCALE makes them.
    void viewPaintsWeightsWhenDisplayed()
    {
        const auto paintedRows = [](int weight) {
            auto* line = new ZrDbLine(ZrGePoint3d(0, 50.5, 0), ZrGePoint3d(100, 50.5, 0));
            line->setLineWeight(static_cast<ZrDb::LineWeight>(weight), true);
            ZrDbObjectPointer<ZrDbEntity> entity(addEntity(line), ZrDb::kForRead);
            QImage image(100, 100, QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            ZrHostControl::paintEntity(painter, entity.object(), QTransform(), Qt::black);
            painter.end();
            int rows = 0;
            for (int y = 0; y < image.height(); ++y)
                rows += qAlpha(image.pixel(50, y)) > 128 ? 1 : 0;
            return rows;
        };
        QCOMPARE(paintedRows(211), 1);
        setVariable(L"LWDISPLAY", 1);
        const int atFirstScale = paintedRows(211);
        QVERIFY2(atFirstScale >= 8 && atFirstScale <= 10, qPrintable(QString::number(atFirstScale)));
        QCOMPARE(paintedRows(0), 1);
        setVariable(L"LWDISPSCALE", 1.0);
        QVERIFY(paintedRows(211) > atFirstScale + 5);
        // The default weight is LWDEFAULT's.
        setVariable(L"LWDEFAULT", 211);
        QCOMPARE(paintedRows(-3), paintedRows(211));
    }

private:
    ZrLineWidthComboBox& bound()
    {
        m_box.reset(new ZrLineWidthComboBox(true, 7, nullptr, false));
        m_box->show();
        return *m_box;
    }

    std::unique_ptr<Host> m_host;
    std::unique_ptr<ZrLineWidthComboBox> m_box;
};

ZR_TEST_SUITE(TestLineWeight)
#include "tst_lineweight.moc"

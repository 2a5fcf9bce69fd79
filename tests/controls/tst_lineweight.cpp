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

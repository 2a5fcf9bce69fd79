// The colour combo box as a user meets it: its list with the recent colours, the searches callers
// make in it, the colour dialog behind its last item, and the writes of a box bound to the drawing.

#include "colortesthelpers.h"
#include "controlstesthelpers.h"
#include "zrtestmain.h"

#include "zrcolorcombobox.h"

#include <QAbstractItemView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <memory>

using namespace ControlsTest;

namespace {

const QString kChooseItem = QStringLiteral("选择颜色...");

// ByLayer, ByBlock, the seven named colours, as a fresh box lists them on a dark drawing.
QStringList standardItems()
{
    return {QStringLiteral("ByLayer"), QStringLiteral("ByBlock"), QStringLiteral("红"), QStringLiteral("黄"),
            QStringLiteral("绿"), QStringLiteral("青"), QStringLiteral("蓝"), QStringLiteral("洋红"),
            QStringLiteral("白")};
}

ZrDbObjectId addColouredLine(uint16_t index)
{
    const ZrDbObjectId id = addLine();
    ZrDbObjectPointer<ZrDbEntity> line(id, ZrDb::kForWrite);
    line->setColor(aci(index));
    return id;
}

ZrCmColor colorOf(ZrDbObjectId id)
{
    return readEntity<ZrDbEntity>(id, [](const ZrDbEntity* entity) { return entity->color(); });
}

} // namespace

class TestColorComboBox : public QObject
{
    Q_OBJECT

    std::unique_ptr<Host> m_host;

    // A box on a window of its own, shown so that the list opens under the mouse.
    template <class... Args>
    std::unique_ptr<ZrColorComboBox> shown(Args... args)
    {
        auto box = std::make_unique<ZrColorComboBox>(args...);
        box->show();
        if (!QTest::qWaitForWindowExposed(box.get()))
            qWarning("the box was never shown");
        return box;
    }

private Q_SLOTS:
    void init() { m_host.reset(new Host); }
    void cleanup() { m_host.reset(); }

    // The box remembers the ten colours added last; the eleventh pushes out the first.
    void recentColoursKeepTheTenNewest()
    {
        ZrColorComboBox box(nullptr, true);
        for (int index = 11; index <= 21; ++index)
            box.AppendColorItem(aci(uint16_t(index)));
        // Each went in front of the dialog item.
        QCOMPARE(box.itemText(box.count() - 1), kChooseItem);
        QCOMPARE(box.itemText(box.count() - 2), QStringLiteral("颜色 21"));

        box.init(ZrCmColor(), false, ZrDbObjectId::kNull);
        QStringList expected = standardItems();
        for (int index = 12; index <= 21; ++index)
            expected << QStringLiteral("颜色 %1").arg(index);
        expected << kChooseItem;
        QCOMPARE(items(box), expected);

        // Items added as plain data are not remembered.
        ColorData plain = formatColor(aci(40), nullptr, ZrDbObjectId::kNull);
        box.AppendColorItem(plain);
        box.init(ZrCmColor(), false, ZrDbObjectId::kNull);
        QCOMPARE(items(box), expected);
    }

    void choosingAColourWritesTheCurrentColourAsOneStep()
    {
        QWidget view;
        ZrHostControl::setViewWindow(&view);
        auto box = shown(true, nullptr, true);
        QSignalSpy chosen(box.get(), &ZrColorComboBox::ColorItemChanged);
        markHistory();
        ZrHostControl::clearLogs();

        pick(*box, QStringLiteral("蓝"));
        QTRY_COMPARE(db()->cecolor(), aci(5));
        QCOMPARE(m_host->macros(), QStringList{QStringLiteral("GLOBAL_UI_UPDATEDB")});
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.at(0).at(0).value<QColor>(), QColor(0, 0, 255));
        QCOMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("GLOBAL_UI_UPDATEDB"));
        // The keys go back to the drawing.
        QVERIFY(!ZrHostControl::focusCalls().isEmpty());
        QCOMPARE(ZrHostControl::focusCalls().constLast().window, &view);

        QVERIFY(ZrHostControl::undo());
        QCOMPARE(db()->cecolor(), ZrCmColor());
        QCOMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("mark"));
        ZrHostControl::setViewWindow(nullptr);
    }

    void aPickColoursTheWholeSelectionInOneStep()
    {
        const ZrDbObjectId first = addColouredLine(1);
        const ZrDbObjectId second = addColouredLine(2);
        ZrHostControl::flushUiEvents();
        auto box = shown(true, nullptr, true);
        markHistory();
        select({first, second});
        QTRY_VERIFY(box->isEnabled());

        pick(*box, QStringLiteral("绿"));
        QTRY_COMPARE(colorOf(first), aci(3));
        QCOMPARE(colorOf(second), aci(3));
        QCOMPARE(db()->cecolor(), ZrCmColor());
        QTRY_COMPARE(box->currentText(), QStringLiteral("绿"));
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(colorOf(first), aci(1));
        QCOMPARE(colorOf(second), aci(2));
        QCOMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("mark"));

        // A selected object changed elsewhere shows its new colour.
        select({first});
        QTRY_COMPARE(box->currentText(), QStringLiteral("红"));
        {
            ZrDbObjectPointer<ZrDbEntity> line(first, ZrDb::kForWrite);
            line->setColor(aci(6));
        }
        QTRY_COMPARE(box->currentText(), QStringLiteral("洋红"));
    }

    // Every road of an update: a colour the list lacks, a listed one, a selection that varies, and
    // nothing selected again. None of them writes, signals or opens an undo step.
    void hostUpdatesShowWithoutWriting()
    {
        const ZrDbObjectId odd = addColouredLine(30);
        const ZrDbObjectId red = addColouredLine(1);
        const ZrDbObjectId yellow = addColouredLine(2);
        db()->setCecolor(aci(6));
        ZrHostControl::flushUiEvents();
        ZrColorComboBox box(true, nullptr, true);
        QSignalSpy chosen(&box, &ZrColorComboBox::ColorItemChanged);
        QSignalSpy changed(&box, QOverload<int>::of(&QComboBox::currentIndexChanged));
        ZrHostControl::clearLogs();
        markHistory();

        select({odd});
        QTRY_COMPARE(box.currentText(), QStringLiteral("颜色 30"));
        // The lacking colour went in front of the dialog item and is now a recent colour.
        QCOMPARE(box.currentIndex(), box.count() - 2);
        select({red});
        QTRY_COMPARE(box.currentText(), QStringLiteral("红"));
        QVERIFY(items(box).contains(QStringLiteral("颜色 30")));

        // Varied colours: the box stays enabled and keeps showing what it showed.
        select({red, yellow});
        ZrHostControl::flushUiEvents();
        QVERIFY(box.isEnabled());
        QCOMPARE(box.currentText(), QStringLiteral("红"));

        ZrHostControl::clearSelection();
        QTRY_COMPARE(box.currentText(), QStringLiteral("洋红"));

        QVERIFY(chosen.isEmpty());
        QVERIFY(changed.isEmpty());
        QVERIFY(m_host->macros().isEmpty());
        QVERIFY(!box.signalsBlocked());
        QVERIFY(nothingSinceMark());
    }

    // The dialog behind the last item. These drive the module's colour dialog as a user would.

    void cancelKeepsTheLastAcceptedItem()
    {
        auto box = shown(true, nullptr, true);
        pick(*box, QStringLiteral("绿"));
        QTRY_COMPARE(db()->cecolor(), aci(3));
        QSignalSpy chosen(box.get(), &ZrColorComboBox::ColorItemChanged);
        const QStringList before = items(*box);
        ZrHostControl::clearLogs();
        ZrTest::cancelNextModal();
        pick(*box, kChooseItem);
        QCOMPARE(box->currentText(), QStringLiteral("绿"));
        QCOMPARE(items(*box), before);
        QVERIFY(chosen.isEmpty());
        QVERIFY(ZrHostControl::queuedMacros().isEmpty());
        QCOMPARE(db()->cecolor(), aci(3));
    }

};

ZR_TEST_SUITE(TestColorComboBox)
#include "tst_colorcombobox.moc"

// The line type combo box as a user meets it: drawn previews, the item "其他..." with the command or
// the host's choice dialog behind it, and the selection it follows and writes.

#include "controlstesthelpers.h"
#include "zrtestmain.h"

#include "zrlinetypecombobox.h"
#include "zrqthelper.h"

#include "zrarbitdict.h"
#include "zrreactor.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QWheelEvent>
#include <memory>

using namespace ControlsTest;

namespace {

void poke()
{
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventView;
    event.database = db();
    ZrHostControl::postUiEvent(event);
}

ZrDbObjectId lineTypeOf(ZrDbObjectId entity)
{
    return readEntity<ZrDbEntity>(entity, [](const ZrDbEntity* e) { return e->linetypeId(); });
}

ZrDbObjectId addLineWith(ZrDbObjectId lineType)
{
    auto* line = new ZrDbLine(ZrGePoint3d(0, 0, 0), ZrGePoint3d(10, 0, 0));
    const ZrDbObjectId id = addEntity(line);
    ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForWrite);
    entity->setLinetype(lineType);
    return id;
}

// Ink and background along the middle row of a preview: the background is transparent, the line not.
struct Runs
{
    int inked = 0;
    int transparent = 0;
    int dashes = 0;
};

Runs runsOf(const QIcon& icon)
{
    const QImage image = icon.pixmap(80, 25).toImage().convertToFormat(QImage::Format_ARGB32);
    Runs runs;
    bool inInk = false;
    // The line lies somewhere in the middle rows; the row with the most ink tells.
    for (int y = 0; y < image.height(); ++y) {
        Runs row;
        inInk = false;
        for (int x = 0; x < image.width(); ++x) {
            const bool ink = qAlpha(image.pixel(x, y)) > 0;
            row.inked += ink;
            row.transparent += !ink;
            row.dashes += ink && !inInk;
            inInk = ink;
        }
        if (row.inked > runs.inked)
            runs = row;
    }
    return runs;
}

// A choice that answers Cancel without showing anything, and counts its calls.
class CountingChoice : public ZrEdLinetypeService
{
public:
    int chooseLinetype(ZrDbDatabase*, ZrJsonPtr, int, int, QWidget*) override
    {
        ++calls;
        return 2;
    }
    int calls = 0;
};

QTreeWidgetItem* itemNamed(QTreeWidget* list, const QString& name)
{
    const QList<QTreeWidgetItem*> found = list->findItems(name, Qt::MatchFixedString);
    return found.isEmpty() ? nullptr : found.first();
}

} // namespace

class TestLineTypeComboBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_host.reset(new Host);
        m_dashed = addLineType(QStringLiteral("DASHED"), {12.0, -6.0});
        m_hidden = addLineType(QStringLiteral("HIDDEN"), {6.0, -3.0});
    }

    void cleanup()
    {
        m_box.reset();
        m_host.reset();
    }

    void listsLineTypesWithPreviewsAndOtherLast()
    {
        ZrLineTypeComboBox& box = bound();
        QCOMPARE(items(box), (QStringList{QStringLiteral("ByBlock"), QStringLiteral("ByLayer"), QStringLiteral("Continuous"),
                                          QStringLiteral("DASHED"), QStringLiteral("HIDDEN"), QStringLiteral("其他...")}));
        const int dashed = box.findText(QStringLiteral("DASHED"));
        QCOMPARE(box.itemData(dashed).value<ZrDbObjectId>(), m_dashed);
        QCOMPARE(box.getLineType(dashed), m_dashed);
        QCOMPARE(box.iconSize(), QSize(80, 25));
        // Dashes drawn on a transparent ground; the continuous line is one run.
        const Runs dashes = runsOf(box.itemIcon(dashed));
        QVERIFY2(dashes.dashes >= 3 && dashes.transparent > 0, qPrintable(QString::number(dashes.dashes)));
        QCOMPARE(runsOf(box.itemIcon(box.findText(QStringLiteral("Continuous")))).dashes, 1);
        const int other = box.count() - 1;
        QVERIFY(box.itemIcon(other).isNull());
        QVERIFY(!box.itemData(other).isValid());
        QCOMPARE(box.itemData(other, Qt::SizeHintRole).toSize(), QSize(80, 25));
        QVERIFY(box.getLineTypeString(box.count()).isEmpty());
        QVERIFY(box.getLineType(-1).isNull());
    }

    void nothingSelectedShowsAndSetsTheCurrentLineType()
    {
        ZrLineTypeComboBox& box = bound();
        QSignalSpy changed(&box, &ZrLineTypeComboBox::lineTypeItemChanged);
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("ByLayer"));
        QVERIFY(changed.isEmpty());
        QVERIFY(m_host->macros().isEmpty());

        pick(box, QStringLiteral("HIDDEN"));
        QTRY_COMPARE(db()->celtype(), m_hidden);
        QCOMPARE(m_host->macros(), QStringList{QStringLiteral("GLOBAL_UI_UPDATEDB")});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toInt(), box.findText(QStringLiteral("HIDDEN")));

        // A change made elsewhere is shown, silently.
        db()->setCeltype(m_dashed);
        QTRY_COMPARE(box.currentText(), QStringLiteral("DASHED"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_host->macros().size(), 1);
    }

    // Unlike its relatives the box keeps its item for a varying selection; a pick writes to all.
    void twoLineTypesSelectedThenOnePickChangesBothInOneStep()
    {
        const ZrDbObjectId first = addLineWith(m_dashed);
        const ZrDbObjectId second = addLineWith(db()->continuousLinetype());
        ZrLineTypeComboBox& box = bound();
        select({first});
        QTRY_COMPARE(box.currentText(), QStringLiteral("DASHED"));
        markHistory();
        select({first, second});
        ZrHostControl::flushUiEvents();
        QTRY_VERIFY(box.isEnabled());
        QCOMPARE(box.currentText(), QStringLiteral("DASHED"));

        pick(box, QStringLiteral("HIDDEN"));
        QTRY_COMPARE(lineTypeOf(first), m_hidden);
        QCOMPARE(lineTypeOf(second), m_hidden);
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(lineTypeOf(first), m_dashed);
        QCOMPARE(lineTypeOf(second), db()->continuousLinetype());
        QCOMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("mark"));
    }

    void otherOnABoundBoxGoesBackAndQueuesTheCommand()
    {
        ZrLineTypeComboBox& box = bound();
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("ByLayer"));
        pick(box, QStringLiteral("DASHED"));
        QTRY_COMPARE(db()->celtype(), m_dashed);
        QSignalSpy changed(&box, &ZrLineTypeComboBox::lineTypeItemChanged);
        ZrHostControl::clearLogs();
        const QStringList before = m_host->macros();

        // The host's LINETYPE command behind the macro opens its choice; HIDDEN is taken there.
        QString offered;
        QString shownMeanwhile;
        ZrTest::whenModalShown([&](QWidget* dialog) {
            shownMeanwhile = box.currentText();
            auto* list = dialog->findChild<QTreeWidget*>(QStringLiteral("linetypeList"));
            QTreeWidgetItem* hidden = list ? itemNamed(list, QStringLiteral("HIDDEN")) : nullptr;
            offered = list && list->currentItem() ? list->currentItem()->text(0) : QString();
            if (hidden) {
                list->scrollToItem(hidden);
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(hidden).center());
                QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("okButton")), Qt::LeftButton);
            } else {
                QTest::keyClick(dialog, Qt::Key_Escape);
            }
        });
        pick(box, QStringLiteral("其他..."));
        QCOMPARE(m_host->macros().mid(before.size()), QStringList{QStringLiteral("_LINETYPE\n")});
        QTRY_COMPARE(db()->celtype(), m_hidden);
        QCOMPARE(offered, QStringLiteral("DASHED"));
        // The box went back to its line type before the command was queued.
        QCOMPARE(shownMeanwhile, QStringLiteral("DASHED"));
        // The change comes back by the host's events, not as a choice in the box.
        QTRY_COMPARE(box.currentText(), QStringLiteral("HIDDEN"));
        QVERIFY(changed.isEmpty());
        QCOMPARE(m_host->macros().mid(before.size()), QStringList{QStringLiteral("_LINETYPE\n")});
    }

    void otherOnAPickerCancelledGoesBackToTheLastLineType()
    {
        ZrLineTypeComboBox& box = picker();
        QSignalSpy changed(&box, &ZrLineTypeComboBox::lineTypeItemChanged);
        pick(box, QStringLiteral("HIDDEN"));
        QCOMPARE(changed.count(), 1);
        const int count = box.count();
        QString offered;
        ZrTest::whenModalShown([&offered](QWidget* dialog) {
            auto* list = dialog->findChild<QTreeWidget*>(QStringLiteral("linetypeList"));
            offered = list && list->currentItem() ? list->currentItem()->text(0) : QString();
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        pick(box, QStringLiteral("其他..."));
        QCOMPARE(offered, QStringLiteral("HIDDEN"));
        QCOMPARE(box.currentText(), QStringLiteral("HIDDEN"));
        QCOMPARE(box.count(), count);
        QCOMPARE(box.itemText(box.count() - 1), QStringLiteral("其他..."));
        QCOMPARE(changed.count(), 1);
        QVERIFY(!box.signalsBlocked());
    }

    // A change of CELTYPE rebuilds the list: line types added since show up, not only the current one.
    void theListIsBuiltAgainWhenTheCurrentLineTypeChanges()
    {
        ZrLineTypeComboBox& box = bound();
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("ByLayer"));
        const ZrDbObjectId first = addLineType(QStringLiteral("FIRST"), {2.0, -1.0});
        addLineType(QStringLiteral("SECOND"), {3.0, -1.0});
        QVERIFY(box.findText(QStringLiteral("SECOND")) < 0);
        db()->setCeltype(first);
        QTRY_COMPARE(box.currentText(), QStringLiteral("FIRST"));
        QVERIFY(box.findText(QStringLiteral("SECOND")) >= 0);
        QCOMPARE(box.itemText(box.count() - 1), QStringLiteral("其他..."));
        QCOMPARE(box.count(), 5 + 2 + 1);
    }

    void aThousandLineTypesAllHavePreviews()
    {
        for (int i = 0; i < 1000; ++i)
            addLineType(QStringLiteral("LT%1").arg(i, 4, 10, QLatin1Char('0')), {1.0 + i % 7, -1.0 - i % 3});
        ZrLineTypeComboBox& box = picker();
        QCOMPARE(box.count(), 1000 + 5 + 1);
        for (int row = 0; row < box.count() - 1; ++row)
            QVERIFY2(!box.itemIcon(row).isNull(), qPrintable(box.itemText(row)));
        QCOMPARE(box.itemText(5), QStringLiteral("LT0000"));
    }

private:
    ZrLineTypeComboBox& bound() { return shown(new ZrLineTypeComboBox(true, nullptr)); }
    ZrLineTypeComboBox& picker() { return shown(new ZrLineTypeComboBox(nullptr)); }

    ZrLineTypeComboBox& shown(ZrLineTypeComboBox* box)
    {
        m_box.reset(box);
        m_box->show();
        if (!QTest::qWaitForWindowExposed(m_box.get()))
            qWarning("the box was never shown");
        return *m_box;
    }

    std::unique_ptr<Host> m_host;
    std::unique_ptr<ZrLineTypeComboBox> m_box;
    ZrDbObjectId m_dashed;
    ZrDbObjectId m_hidden;
};

ZR_TEST_SUITE(TestLineTypeComboBox)
#include "tst_linetypecombobox.moc"

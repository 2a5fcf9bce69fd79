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

// Answers the colour dialog, once it is up, with `typed` in its colour line and OK. A dialog that
// refuses the text is cancelled, so that the test fails instead of waiting.
void answerDialogWithText(const QString& typed)
{
    ZrTest::whenModalShown([typed](QWidget* dialog) {
        ZrHostControl::pushMessageBoxAnswer(1);
        ZrTest::typeColorAndOk(dialog, typed);
        if (dialog->isVisible()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            QFAIL(qPrintable(QStringLiteral("the dialog refused %1").arg(typed)));
        }
    });
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

ZrCmColor trueColor(uint8_t red, uint8_t green, uint8_t blue)
{
    ZrCmColor color;
    color.setRGB(red, green, blue);
    return color;
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

    void listOrderFollowsTheViewStyle()
    {
        ZrColorComboBox box(nullptr, true);
        QCOMPARE(items(box), standardItems() << kChooseItem);
        QCOMPARE(box.currentIndex(), 0);

        box.setViewStyle(ZrColorComboBox::kUseCurrentItem | ZrColorComboBox::kNoneItem);
        QCOMPARE(items(box), QStringList({QStringLiteral("使用当前项"), QStringLiteral("无")}) + standardItems().mid(2));
        // The use-current item shows the current colour but stands for no colour of its own.
        QCOMPARE(box.GetColor(0).colorMethod(), ZrCmEntityColor::kNone);

        // A colour given to a bound box is added last and shown once the view is ready.
        QWidget view;
        ZrHostControl::setViewWindow(&view);
        ZrColorComboBox given(true, aci(2), nullptr, true);
        ZrHostControl::setViewWindow(nullptr);
        QCOMPARE(given.count(), standardItems().size() + 2);
        QCOMPARE(given.itemText(given.count() - 2), QStringLiteral("黄"));
        QCOMPARE(given.currentIndex(), given.count() - 2);
        QCOMPARE(given.objectName(), QStringLiteral("ZrColorComboBox"));
    }

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

    void addingAListedTextAnswersTheEarlierItem()
    {
        ZrColorComboBox box(nullptr, true);
        const int before = box.count();
        QCOMPARE(box.AddColorItem(box.count() - 1, formatColor(aci(1), nullptr, ZrDbObjectId::kNull)), 2);
        QCOMPARE(box.count(), before + 1);
        QCOMPARE(box.itemText(before - 1), QStringLiteral("红"));

        // A listed index colour is found, not added; another one is added under the given text.
        QCOMPARE(box.AddColorToMRU(3), 4);
        QCOMPARE(box.count(), before + 1);
        const int added = box.AddColorToMRU(30);
        QCOMPARE(box.itemText(added), QStringLiteral("30"));
        QCOMPARE(added, box.count() - 2);
        QCOMPARE(box.GetColor(added), aci(30));
    }

    void findColorAnswersTheFirstMatchingItem()
    {
        ZrColorComboBox box(nullptr, true);
        const int choose = box.count() - 1;

        QColor out;
        QVERIFY(box.FindColor(2, out));
        QCOMPARE(out, QColor(255, 0, 0));
        // ByLayer, the dialog item and positions off the list are no ordinary colours.
        out = QColor();
        QVERIFY(!box.FindColor(0, out));
        QVERIFY(!box.FindColor(choose, out));
        QVERIFY(!box.FindColor(box.count(), out));
        QVERIFY(!box.FindColor(-1, out));
        QVERIFY(!out.isValid());

        // ByLayer's swatch is white on a dark drawing as well: only the ordinary item counts.
        QCOMPARE(box.FindColor(QColor(Qt::white)), 8);
        QCOMPARE(box.FindColor(QColor(1, 2, 3)), -1);

        QCOMPARE(box.FindColor(aci(5)), 6);
        QCOMPARE(box.FindColor(ZrCmColorWarp(ZrCmEntityColor::kByBlock)), 1);
        QCOMPARE(box.FindColor(trueColor(1, 2, 3)), -1);
        const int rgb = box.AppendColorItem(QColor(1, 2, 3), QStringLiteral("mine"));
        QCOMPARE(box.FindColor(trueColor(1, 2, 3)), rgb);
        QCOMPARE(box.FindColor(QColor(1, 2, 3)), rgb);

        QCOMPARE(box.FindColor(3, false), 4);
        QCOMPARE(box.FindColor(256, false), 0);
        QCOMPARE(box.FindColor(40, false), -1);
        const int count = box.count();
        const int added = box.FindColor(40, true);
        QCOMPARE(box.count(), count + 1);
        QCOMPARE(added, box.count() - 2);
        const ZrCmColor forty = aci(40);
        QCOMPARE(box.itemText(added),
                 QStringLiteral("RGB(%1, %2, %3)").arg(forty.red()).arg(forty.green()).arg(forty.blue()));
        QVERIFY(box.FindColor(added, out));
        QCOMPARE(out, QColor(forty.red(), forty.green(), forty.blue()));
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

    void thePopupWaitsForTheCommandOnlyOnABoundBox()
    {
        auto bound = shown(true, nullptr, true);
        auto plain = shown(nullptr, true);
        context()->setActiveCommandCount(1);
        bound->showPopup();
        QVERIFY(!bound->view()->isVisible());
        plain->showPopup();
        QTRY_VERIFY(plain->view()->isVisible());
        plain->hidePopup();
        context()->setActiveCommandCount(0);
        bound->showPopup();
        QTRY_VERIFY(bound->view()->isVisible());
        bound->hidePopup();
    }

    void withoutTextTheBoxIsABareSwatch()
    {
        ZrColorComboBox box(nullptr, false);
        QCOMPARE(box.width(), 43);
        QCOMPARE(box.height(), 23);
        box.setShowText(true);
        QCOMPARE(box.maximumWidth(), 250);
    }

    void whiteBlackListHoldsTrueWhiteAndBlack()
    {
        ZrUiWhiteBlackTrueColorComboBox box;
        box.OnAddItems();
        QCOMPARE(items(box), standardItems().mid(2) << QStringLiteral("黑") << kChooseItem);
        QCOMPARE(box.GetColor(6), trueColor(255, 255, 255));
        QCOMPARE(box.GetColor(7), trueColor(0, 0, 0));
    }

    // The dialog behind the last item. These drive the module's colour dialog as a user would.

    void aColourFromTheDialogLandsBehindTheDialogItem()
    {
        auto box = shown(true, nullptr, true);
        QSignalSpy chosen(box.get(), &ZrColorComboBox::ColorItemChanged);
        answerDialogWithText(QStringLiteral("30"));
        pick(*box, kChooseItem);
        QTRY_COMPARE(db()->cecolor(), aci(30));
        QCOMPARE(box->itemText(box->count() - 1), QStringLiteral("颜色 30"));
        QCOMPARE(box->itemText(box->count() - 2), kChooseItem);
        QCOMPARE(box->currentIndex(), box->count() - 1);
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.at(0).at(0).value<QColor>(), formatColor(aci(30), nullptr, ZrDbObjectId::kNull).color);
        QCOMPARE(m_host->macros(), QStringList{QStringLiteral("GLOBAL_UI_UPDATEDB")});
        // A rebuilt list has it among the recent colours, in front of the dialog item.
        box->init(ZrCmColor(), false, ZrDbObjectId::kNull);
        QCOMPARE(box->itemText(box->count() - 2), QStringLiteral("颜色 30"));
    }

    void anIndexFromTheDialogShowsTheListedItem()
    {
        auto box = shown(nullptr, true);
        const int count = box->count();
        answerDialogWithText(QStringLiteral("4"));
        pick(*box, kChooseItem);
        QTRY_COMPARE(box->currentText(), QStringLiteral("青"));
        QCOMPARE(box->count(), count);
        // A plain picker only reports the choice.
        QVERIFY(m_host->macros().isEmpty());
        QCOMPARE(db()->cecolor(), ZrCmColor());
        // The item is the accepted one: a cancelled dialog comes back to it.
        ZrTest::cancelNextModal();
        pick(*box, kChooseItem);
        QTRY_COMPARE(box->currentText(), QStringLiteral("青"));
    }

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

    // The dialog opens with the tabs the box was given, not the three it has by default.
    void dialogOpensWithTheBoxsTabs()
    {
        auto box = shown(nullptr, true);
        box->setOpenColorTabs(1 | 4);
        int tabs = -1;
        ZrTest::whenModalShown([&tabs](QWidget* dialog) {
            if (const QTabWidget* tabWidget = dialog->findChild<QTabWidget*>())
                tabs = tabWidget->count();
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        pick(*box, kChooseItem);
        QCOMPARE(tabs, 2);
    }

    // ByBlock from the dialog makes position 1 the accepted item, even where a None item in front
    // has put ByLayer there: a later cancel shows what stands at 1.
    void byBlockFromTheDialogAcceptsPositionOne()
    {
        auto box = shown(nullptr, true);
        box->SetUseColorNone();
        QCOMPARE(box->itemText(0), QStringLiteral("无"));
        QCOMPARE(box->GetColor(0).colorIndex(), 257);
        QSignalSpy chosen(box.get(), &ZrColorComboBox::ColorItemChanged);
        ZrTest::whenModalShown([](QWidget* dialog) {
            QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("btnByBlock")), Qt::LeftButton);
            ZrTest::clickOk(dialog);
        });
        pick(*box, kChooseItem);
        QTRY_COMPARE(box->currentText(), QStringLiteral("ByBlock"));
        QCOMPARE(chosen.count(), 1);

        ZrTest::cancelNextModal();
        pick(*box, kChooseItem);
        QCOMPARE(box->currentIndex(), 1);
        QCOMPARE(box->currentText(), QStringLiteral("ByLayer"));
    }
};

ZR_TEST_SUITE(TestColorComboBox)
#include "tst_colorcombobox.moc"

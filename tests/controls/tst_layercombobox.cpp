// The layer combo box as a user meets it: it follows the selection and the current layer from the
// host's events, and a pick writes the layer through GLOBAL_UI_UPDATEDB.

#include "controlstesthelpers.h"
#include "zrtestmain.h"

#include "zrlayercombobox.h"
#include "zrqthelper.h"

#include <QAbstractItemView>
#include <QObject>
#include <QSignalSpy>
#include <memory>

using namespace ControlsTest;

namespace {

// The box's next update: a host event that changes nothing, as a pan of the view sends. Clearing an
// empty selection would not do: the host tells nobody of it.
void poke()
{
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventView;
    event.database = db();
    ZrHostControl::postUiEvent(event);
}

} // namespace

class TestLayerComboBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_host.reset(new Host);
        m_beta = addLayer(QStringLiteral("Beta"));
        m_target = addLayer(QStringLiteral("Target"));
        m_frozen = addLayer(QStringLiteral("Frozen"), {true});
    }

    void cleanup()
    {
        m_box.reset();
        m_host.reset();
    }

    void hiddenCurrentLayerIsAppended()
    {
        const ZrDbObjectId ghost = addLayer(QStringLiteral("Ghost"), {false, false, true});
        db()->setClayer(ghost);
        // The events of the set-up go by before the box exists, so that its first update is ours.
        ZrHostControl::flushUiEvents();
        ZrLayerComboBox& box = bound();
        QVERIFY(!items(box).contains(QStringLiteral("Ghost")));
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("Ghost"));
        QCOMPARE(box.currentIndex(), box.count() - 1);
        QVERIFY(box.isEnabled());
        box.onInit();
        QVERIFY(!items(box).contains(QStringLiteral("Ghost")));
    }

    void nothingSelectedShowsAndSetsTheCurrentLayer()
    {
        QWidget view;
        ZrHostControl::setViewWindow(&view);
        ZrLayerComboBox& box = bound();
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("0"));
        ZrHostControl::clearLogs();
        pick(box, QStringLiteral("Beta"));
        QTRY_COMPARE(db()->clayer(), m_beta);
        QCOMPARE(m_host->macros(), QStringList{QStringLiteral("GLOBAL_UI_UPDATEDB")});
        // The keys go back to the drawing once a layer is chosen.
        QCOMPARE(ZrHostControl::focusCalls().size(), 1);
        QCOMPARE(ZrHostControl::focusCalls()[0].window, &view);
        ZrHostControl::setViewWindow(nullptr);
    }

    void twoLayersSelectedThenOnePickMovesThemAll()
    {
        const ZrDbObjectId first = addLine(m_beta);
        const ZrDbObjectId second = addLine();
        ZrLayerComboBox& box = bound();
        markHistory();
        select({first, second});
        QTRY_COMPARE(box.currentIndex(), -1);
        QVERIFY(box.isEnabled());

        pick(box, QStringLiteral("Target"));
        QTRY_COMPARE(layerOf(first), m_target);
        QCOMPARE(layerOf(second), m_target);
        // The objects are one and the same now: the box follows.
        QTRY_COMPARE(box.currentText(), QStringLiteral("Target"));
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(layerOf(first), m_beta);
        QCOMPARE(layerOf(second), db()->clayer());
        QCOMPARE(ZrHostControl::undoStepName().toQString(), QStringLiteral("mark"));
    }

    // The rule itself is the write path's; here only what the box does with a refusal.
    void refusedPickStaysUntilTheNextUpdate()
    {
        ZrLayerComboBox& box = bound();
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("0"));
        ZrHostControl::pushMessageBoxAnswer(1);
        pick(box, QStringLiteral("Frozen"));
        QVERIFY(m_host->macros().isEmpty());
        QCOMPARE(box.currentText(), QStringLiteral("Frozen"));
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("0"));
    }

    // Every visible layer once, in the order of the drawing helpers, whatever the table's order.
    void listHoldsEveryShownLayerInOrder_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("all") << 0;
        QTest::newRow("use current") << 1;
    }

    void listHoldsEveryShownLayerInOrder()
    {
        QFETCH(int, mode);
        for (int i = 0; i < 60; ++i) {
            const QString name = (i % 3 == 0 ? QStringLiteral("a-") : QStringLiteral("A-")) + QString::number(i * 37 % 61);
            addLayer(name, {i % 5 == 0, false, i % 7 == 0});
        }
        ZrArray<zrqthelper::SigleLayerData> layers;
        zrqthelper::getLayerInfos(layers);
        QStringList expected;
        if (mode == 1)
            expected << QStringLiteral("使用当前项");
        for (const zrqthelper::SigleLayerData& layer : layers) {
            if (!layer.hidden && !(mode == 1 && layer.frozen))
                expected << layer.name.toQString();
        }
        ZrLayerComboBox& box = bound(mode);
        QCOMPARE(items(box), expected);
    }

    // Every road of onUpdateUI: a common layer, layers that differ, a current layer the list lacks.
    void hostRefreshIsSilent()
    {
        const ZrDbObjectId onBeta = addLine(m_beta);
        const ZrDbObjectId onTarget = addLine(m_target);
        const ZrDbObjectId ghost = addLayer(QStringLiteral("Ghost"), {false, false, true});
        db()->setClayer(ghost);
        // The events of the set-up go by before the box exists, so that its first update is ours.
        ZrHostControl::flushUiEvents();
        ZrLayerComboBox& box = bound();
        QSignalSpy picked(&box, &ZrLayerComboBox::layerItemChanged);
        QSignalSpy changed(&box, QOverload<int>::of(&QComboBox::currentIndexChanged));
        ZrHostControl::clearLogs();
        markHistory();

        select({onBeta});
        QTRY_COMPARE(box.currentText(), QStringLiteral("Beta"));
        select({onBeta, onTarget});
        QTRY_COMPARE(box.currentIndex(), -1);
        ZrHostControl::clearSelection();
        QTRY_COMPARE(box.currentText(), QStringLiteral("Ghost"));

        QVERIFY(picked.isEmpty());
        QVERIFY(changed.isEmpty());
        QVERIFY(ZrHostControl::focusCalls().isEmpty());
        QVERIFY(m_host->macros().isEmpty());
        QVERIFY(nothingSinceMark());
        QVERIFY(!box.signalsBlocked());
    }

    void useCurrentModeNeverWrites()
    {
        ZrLayerComboBox& box = bound(1);
        QCOMPARE(box.itemText(0), QStringLiteral("使用当前项"));
        QVERIFY(!items(box).contains(QStringLiteral("Frozen")));
        QSignalSpy picked(&box, &ZrLayerComboBox::layerItemChanged);
        pick(box, QStringLiteral("Beta"));
        QCOMPARE(picked.size(), 1);
        QCOMPARE(box.currentText(), QStringLiteral("Beta"));
        QVERIFY(m_host->macros().isEmpty());
        QVERIFY(db()->clayer() != m_beta);
    }

    void reopeningTheListKeepsTheText()
    {
        ZrLayerComboBox& box = bound();
        select({addLine(m_target)});
        QTRY_COMPARE(box.currentText(), QStringLiteral("Target"));
        addLayer(QStringLiteral("Aardvark"));
        QTest::mouseClick(&box, Qt::LeftButton);
        QTRY_VERIFY(box.view()->isVisible());
        QCOMPARE(box.itemText(1), QStringLiteral("Aardvark"));
        QCOMPARE(box.currentText(), QStringLiteral("Target"));
        QTest::keyClick(box.view(), Qt::Key_Escape);
        QTRY_VERIFY(!box.view()->isVisible());
        QCOMPARE(box.currentText(), QStringLiteral("Target"));
        QVERIFY(m_host->macros().isEmpty());
    }

    void variableEventsAreRefused()
    {
        ZrLayerComboBox& box = bound();
        CZrGlobalUIReactorHelp event;
        event.kind = kZrUiEventSysVar;
        for (const wchar_t* name : {L"CLAYER", L"CVPORT", L"TILEMODE", L"BLOCKEDITOR"}) {
            event.name = ZrString(name);
            QVERIFY(!box.needUpdateUI(event));
        }
        event.kind = kZrUiEventView;
        QVERIFY(box.needUpdateUI(event));

        event.kind = kZrUiEventObject;
        event.database = db();
        {
            ZrDbObjectPointer<ZrDbObject> layer(m_beta, ZrDb::kForRead);
            ZrDbObjectPointer<ZrDbObject> line(addLine(), ZrDb::kForRead);
            event.object = layer.object();
            QVERIFY(box.needUpdateUI(event));
            event.object = line.object();
            QVERIFY(!box.needUpdateUI(event));
            event.selectionActive = true;
            QVERIFY(box.needUpdateUI(event));
        }
        event.object = nullptr;

        CXuDocManager* documents = zrDocManagerPtr();
        documents->closeDocument(documents->curDocument());
        event.kind = kZrUiEventView;
        QVERIFY(!box.needUpdateUI(event));
    }

    void pickerReturnsFromAFrozenLayer()
    {
        ZrLayerComboBox& box = picker();
        pick(box, QStringLiteral("Beta"));
        QCOMPARE(box.currentText(), QStringLiteral("Beta"));
        QSignalSpy picked(&box, &ZrLayerComboBox::layerItemChanged);
        pick(box, QStringLiteral("Frozen"));
        QCOMPARE(box.currentText(), QStringLiteral("Beta"));
        // A listener hears the frozen layer, then the return, and ends on what the box shows.
        QCOMPARE(picked.size(), 2);
        QCOMPARE(box.getLayerName(picked.last().at(0).toInt()), QStringLiteral("Beta"));
        QVERIFY(m_host->macros().isEmpty());
    }

    // With a selection a frozen layer may take the objects: the picker keeps it.
    void pickerKeepsAFrozenLayerWithASelection()
    {
        ZrLayerComboBox& box = picker();
        pick(box, QStringLiteral("Beta"));
        select({addLine()});
        QSignalSpy picked(&box, &ZrLayerComboBox::layerItemChanged);
        pick(box, QStringLiteral("Frozen"));
        QCOMPARE(box.currentText(), QStringLiteral("Frozen"));
        QCOMPARE(picked.size(), 1);
        QVERIFY(m_host->macros().isEmpty());
    }

    void eventsOfAClosedDrawingAreNotReadAfterIt()
    {
        ZrLayerComboBox& box = bound();
        // An object event names a record of this drawing; the drawing then goes, and the box must
        // follow the new one without reading the old record (the sanitizers watch).
        addLayer(QStringLiteral("Gone"));
        ZrHostControl::flushUiEvents();
        ZrHostControl::openEmptyDrawing();
        poke();
        QTRY_COMPARE(box.currentText(), QStringLiteral("0"));
        // The list is the new drawing's once it opens.
        QTest::mouseClick(&box, Qt::LeftButton);
        QTRY_VERIFY(box.view()->isVisible());
        QCOMPARE(items(box), QStringList{QStringLiteral("0")});
        QTest::keyClick(box.view(), Qt::Key_Escape);
        QTRY_VERIFY(!box.view()->isVisible());
    }

    void destroyedBoxIsForgotten()
    {
        bound();
        m_box.reset();
        ZrLayerComboBox& box = bound();
        select({addLine(m_beta)});
        QTRY_COMPARE(box.currentText(), QStringLiteral("Beta"));
    }

private:
    ZrLayerComboBox& bound(int mode = 0) { return shown(new ZrLayerComboBox(true, mode, nullptr)); }
    ZrLayerComboBox& picker() { return shown(new ZrLayerComboBox(0, nullptr)); }

    ZrLayerComboBox& shown(ZrLayerComboBox* box)
    {
        m_box.reset(box);
        m_box->show();
        if (!QTest::qWaitForWindowExposed(m_box.get()))
            qWarning("the box was never shown");
        return *m_box;
    }

    std::unique_ptr<Host> m_host;
    std::unique_ptr<ZrLayerComboBox> m_box;
    ZrDbObjectId m_beta;
    ZrDbObjectId m_target;
    ZrDbObjectId m_frozen;
};

ZR_TEST_SUITE(TestLayerComboBox)
#include "tst_layercombobox.moc"

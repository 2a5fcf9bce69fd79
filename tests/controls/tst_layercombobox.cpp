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

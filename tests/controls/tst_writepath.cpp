// The write path: orders posted by the controls, carried out by GLOBAL_UI_UPDATEDB on the
// selected objects or on the drawing's current values.

#include "controlstesthelpers.h"
#include "zrtestmain.h"

#include "zrqthelper.h"

#include "zrdbdict.h"
#include "zrresbuf.h"

#include <QObject>
#include <memory>

using namespace ControlsTest;
using zrqthelper::EntityValue;

namespace {

const QString kCommand = QStringLiteral("GLOBAL_UI_UPDATEDB");

ZrCmColor colorOf(ZrDbObjectId id)
{
    return readEntity<ZrDbEntity>(id, [](const ZrDbEntity* e) { return e->color(); });
}

} // namespace

class TestWritePath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host.reset(new Host); }
    void cleanup() { m_host.reset(); }

    void orderRunsAsACommandOfItsOwn()
    {
        bool inputCenterWhenQueued = true;
        ZrHostControl::setMacroListener(
            [&](const ZrHostControl::MacroCall&) { inputCenterWhenQueued = context()->inputCenter(); });
        context()->setInputCenter(true);
        const ZrCmColor before = db()->cecolor();

        zrqthelper::setCeColor(aci(1));
        const QVector<ZrHostControl::MacroCall> queued = ZrHostControl::queuedMacros();
        QCOMPARE(queued.size(), 1);
        QCOMPARE(queued[0].text, kCommand);
        QVERIFY(!queued[0].echo);
        QVERIFY(queued[0].asCommand);
        QVERIFY(!inputCenterWhenQueued);
        QVERIFY(context()->inputCenter());
        // Nothing happens before the command runs from the event loop.
        QVERIFY(db()->cecolor() == before);

        QTRY_COMPARE(db()->cecolor().colorIndex(), uint16_t(1));
        QVERIFY(ZrHostControl::canUndo());
        QVERIFY(ZrHostControl::undo());
        QVERIFY(db()->cecolor() == before);
    }

    // Inside an active command the order runs at once, with no command of its own around it: the
    // module's group of edits alone makes the change one step.
    void selectionChangesInOneStepAndLockedOnesAreCounted()
    {
        const ZrDbObjectId open = addLayer(QStringLiteral("Open"));
        const ZrDbObjectId locked = addLayer(QStringLiteral("Locked"), {false, true});
        const std::vector<ZrDbObjectId> ids{addLine(open), addLine(locked), addLine(locked), addLine(open)};
        const ZrCmColor before = colorOf(ids[0]);
        select(ids);
        ZrHostControl::pushMessageBoxAnswer(1);

        context()->setActiveCommandCount(1);
        zrqthelper::setCeColor(aci(1));
        context()->setActiveCommandCount(0);
        QVERIFY(ZrHostControl::queuedMacros().isEmpty());
        QCOMPARE(colorOf(ids[0]).colorIndex(), uint16_t(1));
        QCOMPARE(colorOf(ids[3]).colorIndex(), uint16_t(1));
        QVERIFY(colorOf(ids[1]) == before);
        QVERIFY(colorOf(ids[2]) == before);
        const QVector<ZrHostControl::MessageRecord> log = ZrHostControl::messageLog();
        QCOMPARE(log.size(), 1);
        QCOMPARE(log[0].caption, QString());
        QCOMPARE(log[0].flags, 0);
        QCOMPARE(log[0].text, QStringLiteral("在锁定图层上有 2 个对象未被更新，\n已从选择集中删除。"));

        QVERIFY(ZrHostControl::undo());
        QVERIFY(colorOf(ids[0]) == before);
        QVERIFY(colorOf(ids[3]) == before);
    }

    void allOnLockedLayersChangesNothing()
    {
        const ZrDbObjectId locked = addLayer(QStringLiteral("Locked"), {false, true});
        const std::vector<ZrDbObjectId> ids{addLine(locked), addLine(locked), addLine(locked)};
        select(ids);
        ZrHostControl::pushMessageBoxAnswer(1);
        zrqthelper::setCeWeight(static_cast<ZrDb::LineWeight>(70));
        QTRY_VERIFY(m_host->commandsRun().contains(kCommand));
        for (ZrDbObjectId id : ids)
            QCOMPARE(readEntity<ZrDbEntity>(id, [](const ZrDbEntity* e) { return e->lineWeight(); }), ZrDb::kLnWtByLayer);
        QCOMPARE(ZrHostControl::messageLog().size(), 1);
        QVERIFY(ZrHostControl::messageLog()[0].text.contains(QLatin1String(" 3 ")));
    }

    void currentLayerIsScreened()
    {
        addLayer(QStringLiteral("Frozen"), {true});
        addLayer(QStringLiteral("Ref|Wall"));
        const ZrDbObjectId plain = addLayer(QStringLiteral("Plain"));
        ZrHostControl::pushMessageBoxAnswer(1);
        ZrHostControl::pushMessageBoxAnswer(1);

        QVERIFY(!zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString(L"Frozen")));
        QVERIFY(!zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString(L"Missing")));
        QVERIFY(!zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString(L"Ref|Wall")));
        const QVector<ZrHostControl::MessageRecord> log = ZrHostControl::messageLog();
        QCOMPARE(log.size(), 2);
        QCOMPARE(log[0].caption, QStringLiteral("图层 - 无法置为当前"));
        QCOMPARE(log[0].flags, 64);
        QVERIFY(log[0].text.startsWith(QStringLiteral("无法将选定图层置为当前图层。")));
        QVERIFY(ZrHostControl::queuedMacros().isEmpty());

        // Names go ignoring case; the current layer itself passes.
        QVERIFY(zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString(L"plain")));
        QTRY_COMPARE(db()->clayer(), plain);
        QVERIFY(zrqthelper::setCLayer(plain, ZrString()));

        // With a selection only the name is screened: a frozen layer may take objects.
        select({addLine()});
        QVERIFY(!zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString()));
        QVERIFY(!zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString(L"Ref|Wall")));
        QVERIFY(zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString(L"Frozen")));
    }

    void lineTypeOrderNeedsANameOnlyForTheSelection()
    {
        const ZrDbObjectId dashed = addLineType(QStringLiteral("DASHED"), {5.0, -2.5});
        const ZrDbObjectId line = addLine();
        // The host would refuse an empty name by itself; an object on a locked layer shows whether
        // the order reached the selection at all, since the walk over it would be counted.
        const ZrDbObjectId locked = addLine(addLayer(QStringLiteral("Locked"), {false, true}));
        const ZrString before = readEntity<ZrDbEntity>(line, [](const ZrDbEntity* e) { return e->linetype(); });
        select({line, locked});
        ZrHostControl::pushMessageBoxAnswer(1);
        zrqthelper::setCeLType(dashed, ZrString());
        QTRY_VERIFY(m_host->commandsRun().contains(kCommand));
        QCOMPARE(readEntity<ZrDbEntity>(line, [](const ZrDbEntity* e) { return e->linetype(); }), before);
        QVERIFY(ZrHostControl::messageLog().isEmpty());

        ZrHostControl::clearSelection();
        zrqthelper::setCeLType(dashed, ZrString());
        QTRY_COMPARE(db()->celtype(), dashed);
        zrqthelper::setCeLType(ZrDbObjectId::kNull, ZrString(L"continuous"));
        QTRY_COMPARE(db()->celtype(), db()->continuousLinetype());
    }

private:
    std::unique_ptr<Host> m_host;
};

ZR_TEST_SUITE(TestWritePath)
#include "tst_writepath.moc"

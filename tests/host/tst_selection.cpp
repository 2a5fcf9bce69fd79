// The pick-first selection and the events that tell it.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrdocument.h"
#include "zrselection.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QTest>

class ZrSelectionTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }
    void init() { freshDrawing(); }

    void pickFirstIsWalkedByName()
    {
        ZrDbDatabase* db = curDatabase();
        const std::vector<ZrDbObjectId> ids{addLine(db, 0, 1), addLine(db, 2, 3), addLine(db, 4, 5)};
        CXuDocContext* context = CXuSystem::instance()->docContext();
        long ss[2] = {7, 7};
        QVERIFY(!context->pickFirstSS(ss));
        QCOMPARE(ss[0], 0L);

        ZrHostControl::setSelection(ids);
        QVERIFY(context->hasSelection());
        QVERIFY(context->pickFirstSS(ss));
        int32_t length = 0;
        QCOMPARE(zredSSLength(ss, &length), RTNORM);
        QCOMPARE(length, 3);
        for (int32_t i = 0; i < length; ++i) {
            long name[2] = {0, 0};
            ZrDbObjectId id;
            QCOMPARE(zredSSName(ss, i, name), RTNORM);
            QCOMPARE(zrdbGetObjectId(id, name), 0);
            QCOMPARE(id, ids[size_t(i)]);
        }
        long name[2] = {0, 0};
        QCOMPARE(zredSSName(ss, 3, name), RTERROR);
        QCOMPARE(zredSSName(ss, -1, name), RTERROR);
        const long stray[2] = {ss[0], 0};
        QCOMPARE(zredSSLength(stray, &length), RTERROR);

        // A name of a selection that was replaced reads nothing, even though it once did.
        ZrHostControl::setSelection({ids[0]});
        QCOMPARE(zredSSLength(ss, &length), RTERROR);
        ZrHostControl::clearSelection();
        QVERIFY(!context->hasSelection());
    }

    void selectionChangesAreAnnounced()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrDbObjectId line = addLine(db, 0, 1);
        EventLog log;
        ZrHostControl::setSelection({line});
        // With a selection, every other event says so too.
        db->setLtscale(3.0);
        ZrHostControl::clearSelection();
        ZrHostControl::clearSelection();
        const std::vector<CZrGlobalUIReactorHelp>& events = log.flushed();
        QCOMPARE(int(events.size()), 3);
        QCOMPARE(events[0].kind, int64_t(kZrUiEventSelection));
        QVERIFY(events[0].selectionActive);
        QCOMPARE(events[0].database, db);
        QCOMPARE(events[1].kind, int64_t(kZrUiEventSysVar));
        QVERIFY(events[1].selectionActive);
        QCOMPARE(events[2].kind, int64_t(kZrUiEventSelection));
        QVERIFY(!events[2].selectionActive);
    }

    void eventsWaitForTheEventLoop()
    {
        EventLog log;
        curDatabase()->setLtscale(4.0);
        QVERIFY(log.flushed().size() == 1);
        log.clear();
        curDatabase()->setLtscale(5.0);
        curDatabase()->setLtscale(6.0);
        // Nothing is delivered inside the call that changed the drawing; the same event twice is one.
        QTRY_COMPARE(int(log.flushed().size()), 1);
    }
};

ZR_TEST_SUITE(ZrSelectionTest)

#include "tst_selection.moc"

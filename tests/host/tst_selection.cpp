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
};

ZR_TEST_SUITE(ZrSelectionTest)

#include "tst_selection.moc"

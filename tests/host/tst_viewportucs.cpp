// Spaces, viewports and the coordinate systems of each.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrdbviewportdata.h"
#include "zrdocument.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QTest>

class ZrViewportUcsTest : public HostFixture
{
    Q_OBJECT

    // The viewport the current document's view works in now, as its protocol.
    static ZrSmartPtr<ZrDbAbstractViewportData> activeViewport()
    {
        return ZrSmartPtr<ZrDbAbstractViewportData>(
            CXuSystem::instance()->docContext()->graphicsManager()->activeViewport().get());
    }

    static void moveUcs(bool paper, double x)
    {
        QCOMPARE(curDatabase()->setUcs(paper, ZrDbObjectId(), ZrGePoint3d(x, 0, 0), ZrGeVector3d::kXAxis,
                                       ZrGeVector3d::kYAxis),
                 0);
    }

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }
    void init() { freshDrawing(); }

    void eachSpaceRemembersItsOwnSystems()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrSmartPtr<ZrDbAbstractViewportData> model = activeViewport();
        QVERIFY(model);
        QVERIFY(!model->hasPreviousUcs());
        // The system that is current already is no change.
        moveUcs(false, 0);
        QVERIFY(!model->hasPreviousUcs());
        moveUcs(false, 5);
        QVERIFY(model->hasPreviousUcs());

        QCOMPARE(db->setTilemode(false), 0);
        const ZrSmartPtr<ZrDbAbstractViewportData> paper = activeViewport();
        QVERIFY(!paper->hasPreviousUcs());
        moveUcs(true, 7);
        moveUcs(true, 9);
        QCOMPARE(paper->restorePreviousUcs(), 0);
        QVERIFY(db->pucsorg().isEqualTo(ZrGePoint3d(7, 0, 0)));
        QCOMPARE(paper->restorePreviousUcs(), 0);
        QVERIFY(db->pucsorg().isEqualTo(ZrGePoint3d::kOrigin));
        QCOMPARE(paper->restorePreviousUcs(), int(Zr::eKeyNotFound));
        // Going back is not itself remembered, and left the model alone.
        QVERIFY(!paper->hasPreviousUcs());
        QVERIFY(db->ucsorg().isEqualTo(ZrGePoint3d(5, 0, 0)));

        // A model viewport entered into from paper space shows the model.
        auto* window = new ZrDbViewport;
        window->setNumber(2);
        ZrDbObjectId windowId;
        {
            ZrDbObjectPointer<ZrDbBlockTableRecord> space(db->paperSpaceId(), ZrDb::kForWrite);
            space->appendZrDbEntity(windowId, window);
            window->close();
        }
        QCOMPARE(db->setCurrentViewportId(windowId), 0);
        QVERIFY(activeViewport()->hasPreviousUcs());
        QCOMPARE(activeViewport()->restorePreviousUcs(), 0);
        QVERIFY(db->ucsorg().isEqualTo(ZrGePoint3d::kOrigin));
    }

    void aNamedSystemIsRememberedBeforeItsNameChanges()
    {
        ZrDbDatabase* db = curDatabase();
        auto* plan = new ZrDbUCSTableRecord;
        plan->setName(ZrString(L"Plan"));
        plan->setAxes(ZrGePoint3d(1, 2, 0), ZrGeVector3d::kXAxis, ZrGeVector3d::kYAxis);
        ZrDbObjectId planId;
        {
            ZrDbObjectPointer<ZrDbUCSTable> table(db->UCSTableId(), ZrDb::kForWrite);
            table->add(plan, &planId);
            plan->close();
        }
        const auto makePlanCurrent = [db, planId] {
            ZrResBuf* name = zrutBuildList(RTSTR, L"Plan", 0);
            QCOMPARE(zredSetVar(L"UCSNAME", name), RTNORM);
            zrutRelRb(name);
            QCOMPARE(db->ucsname(), planId);
        };
        makePlanCurrent();
        moveUcs(false, 5);
        QCOMPARE(activeViewport()->restorePreviousUcs(), 0);
        QCOMPARE(db->ucsname(), planId);
        QVERIFY(db->ucsorg().isEqualTo(ZrGePoint3d(1, 2, 0)));
        // Before the name came the unnamed world, not the new name with the old origin.
        QCOMPARE(activeViewport()->restorePreviousUcs(), 0);
        QVERIFY(db->ucsname().isNull());
        QVERIFY(db->ucsorg().isEqualTo(ZrGePoint3d::kOrigin));

        // A record erased since comes back as an unnamed system where it stood.
        makePlanCurrent();
        moveUcs(false, 5);
        {
            ZrDbObjectPointer<ZrDbUCSTableRecord> record(planId, ZrDb::kForWrite);
            QCOMPARE(record->erase(), 0);
        }
        QCOMPARE(activeViewport()->restorePreviousUcs(), 0);
        QVERIFY(db->ucsname().isNull());
        QVERIFY(db->ucsorg().isEqualTo(ZrGePoint3d(1, 2, 0)));
    }

    void aDrawingOpensWithoutHistory()
    {
        moveUcs(false, 5);
        moveUcs(true, 5);
        QVERIFY(ZrHostControl::openDrawingText(ZrHostControl::drawingText(curDatabase()), QStringLiteral("copy")));
        QVERIFY(curDatabase()->ucsorg().isEqualTo(ZrGePoint3d(5, 0, 0)));
        QVERIFY(!activeViewport()->hasPreviousUcs());
    }

    void noViewportWithoutADrawing()
    {
        CXuDocument* document = CXuSystem::instance()->curDocument();
        const ZrDbDatabasePtr drawing(document->database());
        document->setDatabase(nullptr);
        const ZrRxObjectPtr viewport = document->context()->graphicsManager()->activeViewport();
        document->setDatabase(drawing.get());
        QVERIFY(!viewport);
    }
};

ZR_TEST_SUITE(ZrViewportUcsTest)

#include "tst_viewportucs.moc"

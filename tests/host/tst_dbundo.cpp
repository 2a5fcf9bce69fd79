// The undo history of the drawing: commands as steps, marks, the database service's edits.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrarbitdict.h"
#include "zrui.h"

#include <QTest>
#include <stdexcept>

class ZrDbUndoTest : public HostFixture
{
    Q_OBJECT

    static ZrDbObjectId s_first, s_second, s_layer;

    // A command that moves two entities to another layer and makes that layer current.
    static void moveToLayer()
    {
        for (ZrDbObjectId id : {s_first, s_second}) {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForWrite);
            entity->setLayer(s_layer);
        }
        curDatabase()->setClayer(s_layer);
    }
    // The same command failing half way: the first entity has moved when it throws.
    static void moveOneThenFail()
    {
        {
            ZrDbObjectPointer<ZrDbEntity> entity(s_first, ZrDb::kForWrite);
            entity->setLayer(s_layer);
        }
        throw std::runtime_error("the second entity is locked");
    }
    // A command that gives up after opening a step of its own, and leaves it open.
    static void moveOneThenGiveUp()
    {
        ZrHostControl::beginUndoStep(ZrString(L"INNER"));
        ZrDbObjectPointer<ZrDbEntity> entity(s_first, ZrDb::kForWrite);
        entity->setLayer(s_layer);
    }

    static void setLayerOf(ZrDbObjectId entity, ZrDbObjectId layer)
    {
        ZrDbObjectPointer<ZrDbEntity> open(entity, ZrDb::kForWrite);
        QCOMPARE(open->setLayer(layer), 0);
    }

    // Two lines and a layer, made before what a test undoes.
    static void makeLinesAndLayer()
    {
        ZrDbDatabase* db = curDatabase();
        s_first = addLine(db, 0, 10);
        s_second = addLine(db, 20, 30);
        s_layer = addLayer(db, L"墙体");
    }

    static size_t undoableSteps()
    {
        // Counted by taking every step back and doing it again.
        size_t steps = 0;
        while (ZrHostControl::undo())
            ++steps;
        for (size_t i = 0; i < steps; ++i)
            ZrHostControl::redo();
        return steps;
    }

private Q_SLOTS:
    void initTestCase()
    {
        startHost();
        auto* commands = ZrEdCommandStack::cast(zrrxSysRegistry()->at(ACRX_COMMAND_DOCK));
        QCOMPARE(commands->addCommand(L"TEST", L"MOVETOLAYER", L"MOVETOLAYER", 0, moveToLayer), 0);
        QCOMPARE(commands->addCommand(L"TEST", L"MOVEONETHENFAIL", L"MOVEONETHENFAIL", 0, moveOneThenFail), 0);
        QCOMPARE(commands->addCommand(L"TEST", L"MOVEONETHENGIVEUP", L"MOVEONETHENGIVEUP", 0, moveOneThenGiveUp), 0);
    }
    void cleanupTestCase() { ZrHostControl::shutdown(); }
    void init() { freshDrawing(); }

    void aCommandIsOneStepOfObjectsAndVariables()
    {
        ZrDbDatabase* db = curDatabase();
        s_first = addLine(db, 0, 10);
        s_second = addLine(db, 20, 30);
        s_layer = addLayer(db, L"墙体");
        const ZrDbObjectId layer0 = db->clayer();
        const bool couldUndo = ZrHostControl::canUndo();

        zredMenuMacro(L"MOVETOLAYER", false, true);
        ZrHostControl::runQueuedMacros();
        QCOMPARE(layerNameOf(s_first), ZrString(L"墙体"));
        QCOMPARE(variableText(L"CLAYER"), QStringLiteral("墙体"));
        QCOMPARE(ZrHostControl::undoStepName(), ZrString(L"MOVETOLAYER"));

        QVERIFY(ZrHostControl::undo());
        QCOMPARE(layerNameOf(s_first), ZrString(L"0"));
        QCOMPARE(layerNameOf(s_second), ZrString(L"0"));
        QCOMPARE(db->clayer(), layer0);
        // The layer and the lines were made before the command: one undo took only the command.
        QCOMPARE(ZrHostControl::canUndo(), couldUndo);
        QVERIFY(!s_layer.isErased());

        QVERIFY(ZrHostControl::redo());
        QCOMPARE(layerNameOf(s_second), ZrString(L"墙体"));
        QCOMPARE(db->clayer(), s_layer);
        QVERIFY(!ZrHostControl::canRedo());
    }

    void aNewEditAfterAnUndoClearsRedo()
    {
        makeLinesAndLayer();
        const ZrDbObjectId layer0 = curDatabase()->clayer();

        // Within a step.
        ZrHostControl::beginUndoStep(ZrString(L"FIRST"));
        setLayerOf(s_first, s_layer);
        ZrHostControl::endUndoStep();
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(ZrHostControl::redoStepName(), ZrString(L"FIRST"));
        ZrHostControl::beginUndoStep(ZrString(L"SECOND"));
        setLayerOf(s_second, s_layer);
        ZrHostControl::endUndoStep();
        QVERIFY(!ZrHostControl::canRedo());
        QVERIFY(!ZrHostControl::redo());
        QCOMPARE(layerNameOf(s_first), ZrString(L"0"));

        // Outside any step: an object written, an object made, a variable set.
        QVERIFY(ZrHostControl::undo());
        QVERIFY(ZrHostControl::canRedo());
        setLayerOf(s_first, s_layer);
        QVERIFY(!ZrHostControl::canRedo());
        QCOMPARE(layerNameOf(s_second), ZrString(L"0"));

        QVERIFY(ZrHostControl::undo());
        QVERIFY(ZrHostControl::canRedo());
        addLine(curDatabase(), 40, 50);
        QVERIFY(!ZrHostControl::canRedo());

        QVERIFY(ZrHostControl::undo());
        QVERIFY(ZrHostControl::canRedo());
        curDatabase()->setClayer(s_layer);
        QVERIFY(!ZrHostControl::canRedo());
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(curDatabase()->clayer(), layer0);
    }

    void nestedStepsMakeOneStepAtTheOutermostEnd()
    {
        makeLinesAndLayer();
        const size_t before = undoableSteps();
        ZrHostControl::beginUndoStep(ZrString(L"OUTER"));
        setLayerOf(s_first, s_layer);
        ZrHostControl::beginUndoStep(ZrString(L"INNER"));
        setLayerOf(s_second, s_layer);
        curDatabase()->setClayer(s_layer);
        ZrHostControl::endUndoStep();
        // Nothing is undoable while the outer step is open, and what follows belongs to it still.
        QVERIFY(ZrHostControl::inUndoStep());
        QVERIFY(!ZrHostControl::undo());
        QCOMPARE(layerNameOf(s_second), ZrString(L"墙体"));
        const ZrDbObjectId third = addLine(curDatabase(), 40, 50);
        ZrHostControl::endUndoStep();
        QVERIFY(!ZrHostControl::inUndoStep());
        QCOMPARE(ZrHostControl::undoStepName(), ZrString(L"OUTER"));
        QCOMPARE(undoableSteps(), before + 1);

        QVERIFY(ZrHostControl::undo());
        QCOMPARE(layerNameOf(s_first), ZrString(L"0"));
        QCOMPARE(layerNameOf(s_second), ZrString(L"0"));
        QVERIFY(curDatabase()->clayer() != s_layer);
        QVERIFY(third.isErased());
        QCOMPARE(undoableSteps(), before);
        QVERIFY(ZrHostControl::redo());
        QCOMPARE(layerNameOf(s_first), ZrString(L"墙体"));
        QCOMPARE(layerNameOf(s_second), ZrString(L"墙体"));
    }

    void aFailedCommandLeavesNoHalfStep()
    {
        makeLinesAndLayer();
        const size_t before = undoableSteps();
        const ZrString lastStep = ZrHostControl::undoStepName();

        zredMenuMacro(L"MOVEONETHENFAIL", false, true);
        QVERIFY_EXCEPTION_THROWN(ZrHostControl::runQueuedMacros(), std::runtime_error);
        QVERIFY(!ZrHostControl::inUndoStep());
        QCOMPARE(layerNameOf(s_first), ZrString(L"0"));
        QCOMPARE(undoableSteps(), before);
        QCOMPARE(ZrHostControl::undoStepName(), lastStep);

        // A command that returns with a step of its own still open: its work is one step, closed.
        zredMenuMacro(L"MOVEONETHENGIVEUP", false, true);
        ZrHostControl::runQueuedMacros();
        QVERIFY(!ZrHostControl::inUndoStep());
        QCOMPARE(layerNameOf(s_first), ZrString(L"墙体"));
        QCOMPARE(ZrHostControl::undoStepName(), ZrString(L"MOVEONETHENGIVEUP"));
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(layerNameOf(s_first), ZrString(L"0"));
        QCOMPARE(undoableSteps(), before);

        // What follows runs as before.
        zredMenuMacro(L"MOVETOLAYER", false, true);
        ZrHostControl::runQueuedMacros();
        QCOMPARE(layerNameOf(s_second), ZrString(L"墙体"));
        QCOMPARE(undoableSteps(), before + 1);
    }

    void undoRecordGroupsWritesUntilTheEventLoopTurns()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrDbObjectId line = addLine(db, 0, 10);
        const ZrDbObjectId walls = addLayer(db, L"墙体");
        QCOMPARE(xudbSetUndoRecord(db, L"图层控制"), 0);
        {
            ZrDbObjectPointer<ZrDbEntity> entity(line, ZrDb::kForWrite);
            entity->setLayer(walls);
        }
        {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(walls, ZrDb::kForWrite);
            layer->setIsOff(true);
        }
        QTRY_VERIFY(!ZrHostControl::inUndoStep());
        QCOMPARE(ZrHostControl::undoStepName(), ZrString(L"图层控制"));
        QVERIFY(ZrHostControl::undo());
        QCOMPARE(layerNameOf(line), ZrString(L"0"));
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(walls, ZrDb::kForRead);
        QVERIFY(!layer->isOff());
    }

    void cancelledEditsLeaveNothingBehind()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrDbObjectId line = addLine(db, 0, 10);
        const ZrDbObjectId walls = addLayer(db, L"墙体");
        auto* service = ZrDbDatabaseService::cast(zrrxGetService(3).get());
        QVERIFY(service);
        service->startEdits(db);
        {
            ZrDbObjectPointer<ZrDbEntity> entity(line, ZrDb::kForWrite);
            entity->setLayer(walls);
        }
        service->cancelEdits(db);
        QCOMPARE(layerNameOf(line), ZrString(L"0"));
        QVERIFY(!ZrHostControl::inUndoStep());
    }
};

ZrDbObjectId ZrDbUndoTest::s_first;
ZrDbObjectId ZrDbUndoTest::s_second;
ZrDbObjectId ZrDbUndoTest::s_layer;

ZR_TEST_SUITE(ZrDbUndoTest)

#include "tst_dbundo.moc"

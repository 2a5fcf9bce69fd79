// The undo history of the drawing: commands as steps, marks, the database service's edits.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrarbitdict.h"
#include "zrui.h"

#include <QTest>

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

private Q_SLOTS:
    void initTestCase()
    {
        startHost();
        auto* commands = ZrEdCommandStack::cast(zrrxSysRegistry()->at(ACRX_COMMAND_DOCK));
        QCOMPARE(commands->addCommand(L"TEST", L"MOVETOLAYER", L"MOVETOLAYER", 0, moveToLayer), 0);
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

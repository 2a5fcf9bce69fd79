// Opening objects of the drawing database: modes, erasing, ownership and copies.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include <QTest>

class ZrDbObjectTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }
    void init() { freshDrawing(); }

    void writesNeedAnOpenForWrite()
    {
        const ZrDbObjectId id = addLine(curDatabase(), 0, 10);
        ZrCmColor red;
        red.setColorMethod(ZrCmEntityColor::kByACI);
        red.setColorIndex(1);
        ZrDbEntity* entity = nullptr;
        QCOMPARE(zrdbOpenObject(entity, id, ZrDb::kForRead), 0);
        QVERIFY(entity->isReadEnabled());
        QCOMPARE(entity->setColor(red), int(Zr::eNotOpenForWrite));
        QVERIFY(entity->color().isByLayer());
        QCOMPARE(entity->upgradeOpen(), 0);
        QCOMPARE(entity->setColor(red), 0);
        // Opens nest: the object stays open until the last of them is closed.
        ZrDbEntity* again = nullptr;
        QCOMPARE(zrdbOpenObject(again, id, ZrDb::kForRead), 0);
        QCOMPARE(again, entity);
        QCOMPARE(again->close(), 0);
        QVERIFY(entity->isWriteEnabled());
        QCOMPARE(entity->close(), 0);
        QVERIFY(!entity->isReadEnabled());
        QCOMPARE(entity->close(), int(Zr::eInvalidInput));
        QCOMPARE(entity->colorIndex(), 1);
    }

    void onlyAChangedWriteIsAnnounced()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrDbObjectId id = addLine(db, 0, 10);
        EventLog log;
        {
            ZrDbObjectPointer<ZrDbEntity> read(id, ZrDb::kForRead);
            ZrDbObjectPointer<ZrDbEntity> untouched(id, ZrDb::kForWrite);
        }
        QCOMPARE(log.count(kZrUiEventObject), 0);
        {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForWrite);
            ZrCmColor red;
            red.setColorMethod(ZrCmEntityColor::kByACI);
            red.setColorIndex(1);
            entity->setColor(red);
            entity->setLineWeight(static_cast<ZrDb::LineWeight>(50));
        }
        QCOMPARE(log.count(kZrUiEventObject), 1);
        const CZrGlobalUIReactorHelp& event = log.flushed().back();
        QCOMPARE(event.object->objectId(), id);
        QCOMPARE(event.database, db);
    }

    void settersRefuseValuesTheDrawingCannotHold()
    {
        const ZrDbObjectId id = addLine(curDatabase(), 0, 10);
        ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForWrite);
        QCOMPARE(entity->setLineWeight(static_cast<ZrDb::LineWeight>(17)), int(Zr::eInvalidInput));
        QCOMPARE(entity->setLayer(ZrString(L"no such layer")), int(Zr::eKeyNotFound));
        QCOMPARE(entity->setLinetype(curDatabase()->clayer()), int(Zr::eInvalidInput));
        QCOMPARE(entity->setLinetypeScale(0.0), int(Zr::eInvalidInput));
        QCOMPARE(entity->layer(), ZrString(L"0"));
    }
};

ZR_TEST_SUITE(ZrDbObjectTest)

#include "tst_dbobject.moc"

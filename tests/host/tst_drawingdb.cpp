// The substitute's drawing database: opening objects, undo, system variables, the selection, the
// events for the user interface, drawing files, the sample drawing and entity pictures.

#include "zrtestmain.h"

#include "zrarbitdict.h"
#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdbviewportdata.h"
#include "zrdocument.h"
#include "zrdrawingcontrol.h"
#include "zrgiraster.h"
#include "zrhostcontrol.h"
#include "zrreactor.h"
#include "zrresbuf.h"
#include "zrselection.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QFile>
#include <QPainter>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace {

// A host of its own for each suite, with a new empty drawing for each test.
class HostFixture : public QObject
{
    Q_OBJECT

protected:
    QTemporaryDir m_config;

    void startHost()
    {
        ZrHostControl::Options options;
        options.configDir = m_config.path();
        ZrHostControl::initialize(options);
    }
    void freshDrawing()
    {
        ZrHostControl::openEmptyDrawing();
        ZrHostControl::flushUiEvents();
    }
};

ZrDbObjectId addLine(ZrDbDatabase* db, double x0, double x1)
{
    ZrDbObjectPointer<ZrDbBlockTableRecord> space(db->modelSpaceId(), ZrDb::kForWrite);
    auto* line = new ZrDbLine(ZrGePoint3d(x0, 0, 0), ZrGePoint3d(x1, 0, 0));
    ZrDbObjectId id;
    space->appendZrDbEntity(id, line);
    line->close();
    return id;
}

ZrDbObjectId addLayer(ZrDbDatabase* db, const wchar_t* name)
{
    ZrDbObjectPointer<ZrDbLayerTable> table(db->layerTableId(), ZrDb::kForWrite);
    auto* layer = new ZrDbLayerTableRecord;
    layer->setName(ZrString(name));
    ZrDbObjectId id;
    table->add(layer, &id);
    layer->close();
    return id;
}

ZrDbObjectId recordOf(ZrDbObjectId tableId, const wchar_t* name)
{
    ZrDbObjectPointer<ZrDbSymbolTable> table(tableId, ZrDb::kForRead);
    ZrDbObjectId id;
    table->getIdAt(ZrString(name), id);
    return id;
}

ZrString layerNameOf(ZrDbObjectId entity)
{
    ZrDbObjectPointer<ZrDbEntity> open(entity, ZrDb::kForRead);
    return open ? open->layer() : ZrString();
}

QString variableText(const wchar_t* name)
{
    ZrResBuf value;
    if (zredGetVar(name, &value) != RTNORM || value.restype != RTSTR)
        return QStringLiteral("<not a text>");
    const QString text = QString::fromWCharArray(value.resval.rstring);
    delete[] value.resval.rstring;
    return text;
}

// Collects the events the user interface is told of.
class EventLog
{
public:
    EventLog()
    {
        ZrHostControl::flushUiEvents();
        m_key = ZrHostControl::addUiEventListener([this](const CZrGlobalUIReactorHelp& e) { m_events.push_back(e); });
    }
    ~EventLog() { ZrHostControl::removeUiEventListener(m_key); }
    const std::vector<CZrGlobalUIReactorHelp>& flushed()
    {
        ZrHostControl::flushUiEvents();
        return m_events;
    }
    int count(int64_t kind)
    {
        int n = 0;
        for (const CZrGlobalUIReactorHelp& e : flushed())
            n += e.kind == kind;
        return n;
    }
    void clear() { m_events.clear(); }

private:
    int m_key = -1;
    std::vector<CZrGlobalUIReactorHelp> m_events;
};

} // namespace

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

    void erasedAndWrongClassOpenNothing()
    {
        const ZrDbObjectId id = addLine(curDatabase(), 0, 10);
        {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForWrite);
            QCOMPARE(entity->erase(), 0);
        }
        QVERIFY(id.isErased());
        ZrDbObject* object = nullptr;
        QCOMPARE(zrdbOpenObject(object, id, ZrDb::kForRead), int(Zr::eWasErased));
        QVERIFY(!object);
        QCOMPARE(zrdbOpenObject(object, id, ZrDb::kForRead, true), 0);
        object->close();
        QVERIFY(ZrDbObjectId::kNull.isErased());
        QCOMPARE(zrdbOpenObject(object, ZrDbObjectId::kNull, ZrDb::kForRead), int(Zr::eNullObjectId));

        // A failed class test closes what it opened: the layer stays free to open for write.
        ZrDbCircle* circle = nullptr;
        const ZrDbObjectId layer = curDatabase()->clayer();
        QCOMPARE(zrdbOpenObject(circle, layer, ZrDb::kForRead), int(Zr::eNotThatKindOfClass));
        ZrDbObjectPointer<ZrDbLayerTableRecord> record(layer, ZrDb::kForRead);
        QVERIFY(record);
        QCOMPARE(record.object()->close(), 0);
        QCOMPARE(record.object()->isReadEnabled(), false);
        QCOMPARE(zrdbOpenObject(object, layer, ZrDb::kForRead), 0);
        object->close();
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

class ZrSysVarTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }
    void init() { freshDrawing(); }

    void oneStoreBehindEveryRoute()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrDbObjectId walls = addLayer(db, L"墙体");
        QCOMPARE(db->setClayer(walls), 0);
        QCOMPARE(variableText(L"clayer"), QStringLiteral("墙体"));

        ZrResBuf* weight = zrutBuildList(RTSHORT, 30, 0);
        QCOMPARE(zredSetVar(L"CELWEIGHT", weight), RTNORM);
        zrutRelRb(weight);
        QCOMPARE(int(db->celweight()), 30);

        auto* service = ZrDbDatabaseService::cast(zrrxGetService(3).get());
        ZrResBuf* style = nullptr;
        QCOMPARE(service->getSysVar(db, L"CTABLESTYLE", style), RTNORM);
        QCOMPARE(style->restype, short(RTSTR));
        QCOMPARE(QString::fromWCharArray(style->resval.rstring), QStringLiteral("Standard"));
        zrutRelRb(style);

        ZrResBuf plotStyle;
        QCOMPARE(zredGetVar(L"CPLOTSTYLE", &plotStyle), RTNORM);
        QCOMPARE(int(plotStyle.restype), 5005);
        delete[] plotStyle.resval.rstring;
    }

    void refusedValuesChangeNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("unknown layer") << "CLAYER" << RTSTR << "no such layer" << 0;
        QTest::newRow("odd lineweight") << "CELWEIGHT" << RTSHORT << "" << 17;
        QTest::newRow("text for a number") << "LWUNITS" << RTSTR << "1" << 0;
        QTest::newRow("out of range") << "LWUNITS" << RTSHORT << "" << 2;
        QTest::newRow("unknown variable") << "NOSUCHVAR" << RTSHORT << "" << 1;
        QTest::newRow("read only") << "CMDACTIVE" << RTSHORT << "" << 1;
        QTest::newRow("bad colour") << "CECOLOR" << RTSTR << "RGB:256,0,0" << 0;
    }
    void refusedValuesChangeNothing()
    {
        QFETCH(QString, name);
        QFETCH(int, type);
        QFETCH(QString, text);
        QFETCH(int, number);
        const std::wstring key = name.toStdWString();
        const QByteArray before = ZrHostControl::drawingText(curDatabase());
        EventLog log;
        ZrResBuf* value = type == RTSTR ? zrutBuildList(RTSTR, text.toStdWString().c_str(), 0)
                                        : zrutBuildList(RTSHORT, number, 0);
        QCOMPARE(zredSetVar(key.c_str(), value), RTERROR);
        zrutRelRb(value);
        QCOMPARE(ZrHostControl::drawingText(curDatabase()), before);
        QCOMPARE(log.count(kZrUiEventSysVar), 0);
    }

    void changesAreAnnouncedByName()
    {
        ZrDbDatabase* db = curDatabase();
        EventLog log;
        ZrResBuf* units = zrutBuildList(RTSHORT, 0, 0);
        QCOMPARE(zredSetVar(L"LWUNITS", units), RTNORM);
        // The same value again is no change.
        QCOMPARE(zredSetVar(L"LWUNITS", units), RTNORM);
        zrutRelRb(units);
        QCOMPARE(db->setLtscale(2.0), 0);
        QSet<QString> names;
        for (const CZrGlobalUIReactorHelp& e : log.flushed()) {
            QCOMPARE(e.kind, int64_t(kZrUiEventSysVar));
            QCOMPARE(e.database, db);
            names << e.name.toQString();
        }
        QCOMPARE(names, (QSet<QString>{QStringLiteral("LWUNITS"), QStringLiteral("LTSCALE")}));
        QCOMPARE(log.count(kZrUiEventSysVar), 2);
    }

    void tilemodeBringsTheSpaceAlong()
    {
        ZrDbDatabase* db = curDatabase();
        const ZrDbObjectId model = db->currentLayoutId();
        QCOMPARE(db->setTilemode(false), 0);
        QVERIFY(db->currentLayoutId() != model);
        QVERIFY(db->currentViewportId().isValid());
        ZrResBuf value;
        QCOMPARE(zredGetVar(L"CVPORT", &value), RTNORM);
        QCOMPARE(int(value.resval.rint), 1);
        QVERIFY(ZrHostControl::undo());
        QVERIFY(db->tilemode());
        QCOMPARE(db->currentLayoutId(), model);
    }
};

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

class ZrDrawingFileTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void roundTripKeepsEverything()
    {
        ZrHostControl::openSampleDrawing();
        ZrDbDatabase* sample = curDatabase();
        const int objects = sample->objectCount();
        const QByteArray first = ZrHostControl::drawingText(sample);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("sample.json"));
        QString error;
        QVERIFY2(ZrHostControl::saveDrawing(path, &error), qPrintable(error));
        QVERIFY2(ZrHostControl::openDrawing(path, &error), qPrintable(error));
        QVERIFY(curDatabase() != sample);
        QCOMPARE(curDatabase()->objectCount(), objects);
        const QByteArray second = ZrHostControl::drawingText(curDatabase());
        QCOMPARE(second, first);

        // Spot checks that the text compared above carries the content and not just its shape.
        QVERIFY(first.contains("\"XREF|A-WALL\""));
        QCOMPARE(curDatabase()->ltscale(), 50.0);
        ZrDbObjectPointer<ZrDbTextStyleTableRecord> annotative(recordOf(curDatabase()->textStyleTableId(), L"Annotative"),
                                                               ZrDb::kForRead);
        ZrResBuf* data = annotative->xData(L"AcadAnnotative");
        int groups = 0;
        for (ZrResBuf* rb = data; rb; rb = rb->rbnext)
            ++groups;
        zrutRelRb(data);
        QCOMPARE(groups, 6);
    }

    void badFilesNameThePlaceAndChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("place");
        const QByteArray good = validDrawing();
        QTest::newRow("syntax") << QByteArray("{\n  \"format\": \"zrdrawing\",\n  \"version\" 1\n}") << "line 3, column";
        QTest::newRow("not a drawing") << QByteArray("[1, 2]") << "the drawing: is not an object";
        QTest::newRow("format") << QByteArray(good).replace("\"zrdrawing\"", "\"other\"") << "field \"format\"";
        QTest::newRow("colour") << QByteArray(good).replace("\"color\": \"3\"", "\"color\": \"RGB:300,0,0\"")
                                << "layers[1] \"墙体\", field \"color\": \"RGB:300,0,0\" is not a colour";
        QTest::newRow("unknown layer") << QByteArray(good).replace("\"layer\": \"墙体\"", "\"layer\": \"屋顶\"")
                                       << "blocks[0] \"*Model_Space\", entities[0], field \"layer\": names \"屋顶\"";
        QTest::newRow("wrong type") << QByteArray(good).replace("\"radius\": 5.0", "\"radius\": \"5\"")
                                    << "entities[1], field \"radius\": is not a number";
        QTest::newRow("missing line type")
            << QByteArray(good).replace("{\"name\": \"ByLayer\"},", "") << "field \"linetypes\": lacks \"ByLayer\"";
        QTest::newRow("duplicate") << QByteArray(good).replace("\"墙体\", \"color\"", "\"0\", \"color\"")
                                   << "layers[1] \"0\", field \"name\": is used twice";
        QTest::newRow("bad variable") << QByteArray(good).replace("\"LTSCALE\": 2.0", "\"LTSCALE\": -1.0")
                                      << "variables, field \"LTSCALE\"";
    }
    void badFilesNameThePlaceAndChangeNothing()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, place);
        // The row must differ from the valid drawing, or a failed replace would test nothing.
        QVERIFY(text != validDrawing());
        QString error;
        QVERIFY2(ZrHostControl::openDrawingText(validDrawing(), QStringLiteral("good.json"), &error), qPrintable(error));
        ZrDbDatabase* open = curDatabase();
        const QByteArray before = ZrHostControl::drawingText(open);
        QVERIFY(!ZrHostControl::openDrawingText(text, QStringLiteral("bad.json"), &error));
        QVERIFY2(error.startsWith(QStringLiteral("bad.json: ")), qPrintable(error));
        QVERIFY2(error.contains(place), qPrintable(error));
        QCOMPARE(curDatabase(), open);
        QCOMPARE(ZrHostControl::drawingText(open), before);
    }

    void aValidFileReadsAsWritten()
    {
        QString error;
        QVERIFY2(ZrHostControl::openDrawingText(validDrawing(), QStringLiteral("good.json"), &error), qPrintable(error));
        ZrDbDatabase* db = curDatabase();
        QCOMPARE(db->ltscale(), 2.0);
        QCOMPARE(variableText(L"CLAYER"), QStringLiteral("墙体"));
        const std::vector<ZrDbObjectId> ids = ZrHostControl::entitiesOfCurrentSpace();
        QCOMPARE(int(ids.size()), 2);
        ZrDbObjectPointer<ZrDbCircle> circle(ids[1], ZrDb::kForRead);
        QVERIFY(circle);
        QCOMPARE(circle->radius(), 5.0);
        // What the file leaves out takes the drawing's defaults.
        QCOMPARE(circle->layer(), ZrString(L"0"));
        QCOMPARE(db->textstyle(), recordOf(db->textStyleTableId(), L"Standard"));
    }

private:
    static QByteArray validDrawing()
    {
        return QByteArray(R"({"format": "zrdrawing", "version": 1,
 "linetypes": [{"name": "ByBlock"}, {"name": "ByLayer"}, {"name": "Continuous"}, {"name": "DASHED", "dashes": [5.0, -2.5]}],
 "layers": [{"name": "0"}, {"name": "墙体", "color": "3", "linetype": "DASHED", "lineweight": 50}],
 "textStyles": [{"name": "Standard"}], "dimStyles": [{"name": "Standard", "textStyle": "Standard"}],
 "blocks": [{"name": "*Model_Space", "entities": [
     {"type": "line", "layer": "墙体", "start": [0, 0], "end": [10, 0]},
     {"type": "circle", "center": [0, 0, 0], "radius": 5.0}]},
   {"name": "*Paper_Space", "entities": [{"type": "viewport", "center": [148.5, 105], "width": 297, "height": 210}]}],
 "layouts": [{"name": "Model", "block": "*Model_Space", "tab": 0},
             {"name": "布局1", "block": "*Paper_Space", "tab": 1, "paperViewport": 0}],
 "variables": {"CLAYER": "墙体", "LTSCALE": 2.0}}
)");
    }
};

class ZrSampleDrawingTest : public HostFixture
{
    Q_OBJECT

    struct Layer
    {
        QString name;
        bool off, frozen, locked, hidden;
    };

    static std::vector<Layer> layers()
    {
        std::vector<Layer> list;
        ZrDbObjectPointer<ZrDbLayerTable> table(curDatabase()->layerTableId(), ZrDb::kForRead);
        for (int64_t handle : table->recordHandles()) {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(ZrDbObjectId(handle), ZrDb::kForRead);
            list.push_back({layer->name().toQString(), layer->isOff(), layer->isFrozen(), layer->isLocked(),
                            layer->isHidden()});
        }
        return list;
    }

private Q_SLOTS:
    void initTestCase()
    {
        startHost();
        ZrHostControl::openSampleDrawing();
    }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void layersOfEveryKind()
    {
        const std::vector<Layer> all = layers();
        QVERIFY(all.size() >= 25);
        const auto any = [&all](auto test) { return std::any_of(all.begin(), all.end(), test); };
        QVERIFY(any([](const Layer& l) { return l.hidden; }));
        QVERIFY(any([](const Layer& l) { return l.frozen; }));
        QVERIFY(any([](const Layer& l) { return l.off; }));
        QVERIFY(any([](const Layer& l) { return l.locked; }));
        QVERIFY(any([](const Layer& l) { return l.name.startsWith(QLatin1String("XREF|")); }));
        QVERIFY(any([](const Layer& l) { return l.name.contains(QLatin1Char('*')); }));
    }

    void linetypesHaveRealDashes()
    {
        ZrDbDatabase* db = curDatabase();
        for (const wchar_t* name : {L"DASHED", L"CENTER", L"HIDDEN", L"DOT", L"PHANTOM"}) {
            ZrDbObjectPointer<ZrDbLinetypeTableRecord> linetype(recordOf(db->linetypeTableId(), name), ZrDb::kForRead);
            QVERIFY2(linetype, qPrintable(QString::fromWCharArray(name)));
            QVERIFY(linetype->numDashes() >= 2);
            QVERIFY(linetype->patternLength() > 0.0);
            bool gap = false;
            for (int i = 0; i < linetype->numDashes(); ++i)
                gap = gap || linetype->dashLengthAt(i) < 0.0;
            QVERIFY(gap);
        }
    }

    void stylesAndNamedObjects()
    {
        ZrDbDatabase* db = curDatabase();
        ZrDbObjectPointer<ZrDbDictionary> tableStyles(db->tableStyleDictionaryId(), ZrDb::kForRead);
        ZrDbObjectId schedule;
        QCOMPARE(tableStyles->getAt(ZrString(L"门窗表"), schedule), 0);
        ZrDbObjectPointer<ZrDbTableStyle> style(schedule, ZrDb::kForRead);
        ZrArray<ZrString> cells;
        style->getCellStyles(cells);
        QCOMPARE(cells.length(), 4);
        QCOMPARE(cells[0], ZrString(L"_TITLE"));
        QCOMPARE(cells[2], ZrString(L"_DATA"));
        for (ZrDbObjectId dictionary : {db->materialDictionaryId(), db->plotStyleNameDictionaryId(),
                                        db->mleaderStyleDictionaryId()}) {
            ZrDbObjectPointer<ZrDbDictionary> entries(dictionary, ZrDb::kForRead);
            QVERIFY(entries->numEntries() >= 2);
        }
        ZrDbObjectPointer<ZrDbDimStyleTable> dimStyles(db->dimStyleTableId(), ZrDb::kForRead);
        QVERIFY(dimStyles->recordHandles().size() >= 3);

        // One style is annotative as the readers expect it, one has the application but a broken chain.
        ZrDbObjectPointer<ZrDbTextStyleTableRecord> broken(recordOf(db->textStyleTableId(), L"注释性-损坏"), ZrDb::kForRead);
        ZrResBuf* data = broken->xData(L"AcadAnnotative");
        QVERIFY(data);
        int groups = 0;
        for (ZrResBuf* rb = data; rb; rb = rb->rbnext)
            ++groups;
        zrutRelRb(data);
        QVERIFY(groups != 6);
        ZrDbObjectPointer<ZrDbTextStyleTableRecord> annotative(recordOf(db->textStyleTableId(), L"Annotative"), ZrDb::kForRead);
        ZrResBuf* orientation = annotative->xData(L"AcadAnnoPO");
        QVERIFY(orientation && orientation->rbnext && orientation->rbnext->restype == 1070);
        zrutRelRb(orientation);
    }

    void viewsUcsAndBlocks()
    {
        ZrDbDatabase* db = curDatabase();
        bool paperView = false, modelView = false;
        ZrDbObjectPointer<ZrDbViewTable> views(db->viewTableId(), ZrDb::kForRead);
        for (int64_t handle : views->recordHandles()) {
            ZrDbObjectPointer<ZrDbViewTableRecord> view(ZrDbObjectId(handle), ZrDb::kForRead);
            (view->isPaperspaceView() ? paperView : modelView) = true;
        }
        QVERIFY(paperView && modelView);
        ZrDbObjectPointer<ZrDbUCSTable> ucs(db->UCSTableId(), ZrDb::kForRead);
        QVERIFY(ucs->recordHandles().size() >= 2);

        bool anonymous = false, unreferenced = false, referenced = false, spaceLike = false;
        ZrDbObjectPointer<ZrDbBlockTable> blocks(db->blockTableId(), ZrDb::kForRead);
        for (int64_t handle : blocks->recordHandles()) {
            ZrDbObjectPointer<ZrDbBlockTableRecord> block(ZrDbObjectId(handle), ZrDb::kForRead);
            if (block->isLayout())
                continue;
            ZrArray<ZrDbObjectId> references;
            block->getBlockReferenceIds(references);
            anonymous = anonymous || block->isAnonymous();
            unreferenced = unreferenced || references.isEmpty();
            referenced = referenced || !references.isEmpty();
            spaceLike = spaceLike || block->name().toQString().startsWith(QLatin1String("*Paper_Space"), Qt::CaseInsensitive);
        }
        QVERIFY(anonymous && unreferenced && referenced);
        // The second layout's block begins as the paper space's name does.
        ZrDbObjectId second;
        QCOMPARE(blocks->getIdAt(ZrString(L"*Paper_Space0"), second), 0);
    }

    void entitiesOfEveryKindInBothSpaces()
    {
        ZrDbDatabase* db = curDatabase();
        QSet<QString> kinds;
        int count = 0;
        for (ZrDbObjectId space : {db->modelSpaceId(), db->paperSpaceId()}) {
            ZrDbObjectPointer<ZrDbBlockTableRecord> block(space, ZrDb::kForRead);
            QVERIFY(block->entityHandles().size() >= 5);
            for (int64_t handle : block->entityHandles()) {
                ZrDbObjectPointer<ZrDbEntity> entity(ZrDbObjectId(handle), ZrDb::kForRead);
                kinds << QString::fromLatin1(entity->isA()->name());
                ++count;
            }
        }
        QVERIFY(count >= 200);
        for (const char* kind : {"ZrDbLine", "ZrDbArc", "ZrDbCircle", "ZrDbPolyline", "ZrDbText", "ZrDbMText",
                                 "ZrDbAlignedDimension", "ZrDbTable", "ZrDbMLeader", "ZrDbHatch", "ZrDbBlockReference",
                                 "ZrDbViewport"})
            QVERIFY2(kinds.contains(QLatin1String(kind)), kind);
    }

    void paintsWithinItsExtents()
    {
        // Every entity of the model space has extents, and most are drawn: a plan, not a blank sheet.
        QImage image(400, 300, QImage::Format_ARGB32);
        image.fill(Qt::white);
        const std::vector<ZrDbObjectId> ids = ZrHostControl::entitiesOfCurrentSpace();
        double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
        for (ZrDbObjectId id : ids) {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
            double x0, y0, x1, y1;
            QVERIFY(ZrHostControl::entityExtents(entity.object(), x0, y0, x1, y1));
            minX = std::min(minX, x0), minY = std::min(minY, y0), maxX = std::max(maxX, x1), maxY = std::max(maxY, y1);
        }
        const double scale = std::min(400 / (maxX - minX), 300 / (maxY - minY));
        QTransform toDevice;
        toDevice.translate(0, 300);
        toDevice.scale(scale, -scale);
        toDevice.translate(-minX, -minY);
        QPainter painter(&image);
        for (ZrDbObjectId id : ids) {
            ZrDbObjectPointer<ZrDbEntity> entity(id, ZrDb::kForRead);
            ZrHostControl::paintEntity(painter, entity.object(), toDevice, Qt::black);
        }
        painter.end();
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                inked += image.pixel(x, y) != qRgb(255, 255, 255);
        }
        QVERIFY2(inked > 400 * 300 / 50, qPrintable(QString::number(inked)));
    }
};

class ZrEntityImageTest : public HostFixture
{
    Q_OBJECT

    // Runs of ink and of background along the middle row, counted from the first ink to the last.
    static QPair<int, int> runsAlongMiddle(const ZrSmartPtr<ZrGiRasterImage>& image, uint32_t background)
    {
        const uint32_t* row = image->scanLine(image->height() / 2);
        int inkRuns = 0, gaps = 0;
        bool inInk = false, seenInk = false;
        for (int x = 0; x < image->width(); ++x) {
            const bool ink = row[x] != background;
            if (ink && !inInk)
                ++inkRuns;
            if (!ink && inInk)
                ++gaps;
            seenInk = seenInk || ink;
            inInk = ink;
        }
        return {inkRuns, inInk ? gaps : gaps - 1};
    }

    static ZrSmartPtr<ZrGiRasterImage> imageOfLine(ZrDbObjectId linetype, int width = 240)
    {
        ZrDbLine line(ZrGePoint3d(10, 10, 0), ZrGePoint3d(100, 10, 0));
        line.setLinetype(linetype);
        ZrArray<ZrDbEntity*> entities;
        entities.append(&line);
        ZrJsonPtr options = ElementValue::createObject(kZrJsonObject);
        options->SetDataI("width", width);
        options->SetDataI("height", 16);
        options->SetDataB("bfillbackground", true);
        options->SetDataL("background", int64_t(0xFFFFFFFF));
        return zrsiutCreateEntityImage(ZrDbDatabasePtr(curDatabase()), entities, options);
    }

private Q_SLOTS:
    void initTestCase()
    {
        startHost();
        ZrHostControl::openSampleDrawing();
    }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void dashedLineHasGaps()
    {
        const ZrSmartPtr<ZrGiRasterImage> dashed = imageOfLine(recordOf(curDatabase()->linetypeTableId(), L"DASHED"));
        QVERIFY(dashed);
        QCOMPARE(dashed->width(), 240);
        const QPair<int, int> runs = runsAlongMiddle(dashed, 0xFFFFFFFF);
        // 90 units of a 19.05 unit pattern: four whole dashes and the start of a fifth.
        QVERIFY2(runs.first >= 4 && runs.second >= 3, qPrintable(QStringLiteral("%1 %2").arg(runs.first).arg(runs.second)));

        // The same line drawn solid has one run: the gaps above come from the line type.
        const QPair<int, int> solid = runsAlongMiddle(imageOfLine(curDatabase()->continuousLinetype()), 0xFFFFFFFF);
        QCOMPARE(solid.first, 1);
        QCOMPARE(solid.second, 0);
    }

    void noImageWithoutASize()
    {
        QVERIFY(!imageOfLine(curDatabase()->continuousLinetype(), 0));
    }
};

ZR_TEST_SUITE(ZrDbObjectTest)
ZR_TEST_SUITE(ZrDbUndoTest)
ZR_TEST_SUITE(ZrSysVarTest)
ZR_TEST_SUITE(ZrViewportUcsTest)
ZR_TEST_SUITE(ZrSelectionTest)
ZR_TEST_SUITE(ZrDrawingFileTest)
ZR_TEST_SUITE(ZrSampleDrawingTest)
ZR_TEST_SUITE(ZrEntityImageTest)

#include "tst_drawingdb.moc"

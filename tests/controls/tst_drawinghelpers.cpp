// The helpers that read the drawing for the controls, and the layer changes of the layer panel.

#include "controlstesthelpers.h"
#include "zrtestmain.h"

#include "zrqthelper.h"

#include "zrdbdict.h"
#include "zrgiraster.h"
#include "zrlogger.h"
#include "zrresbuf.h"

#include <QObject>
#include <memory>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/spdlog.h>
#include <sstream>

using namespace ControlsTest;

namespace {

QStringList texts(const ZrArray<ZrString>& strings)
{
    QStringList out;
    for (const ZrString& s : strings)
        out << s.toQString();
    return out;
}

ZrDbObjectId addBlock(const QString& name, bool externalReference = false)
{
    auto* block = new ZrDbBlockTableRecord;
    block->setIsFromExternalReference(externalReference);
    return addRecord(&ZrDbDatabase::getBlockTable, block, name);
}

template <class Record, class Read>
auto readRecord(ZrDbObjectId id, Read read) -> decltype(read(static_cast<const Record*>(nullptr)))
{
    ZrDbObjectPointer<Record> record(id, ZrDb::kForRead);
    return read(record.object());
}

bool isOff(ZrDbObjectId layer) { return readRecord<ZrDbLayerTableRecord>(layer, [](auto* r) { return r->isOff(); }); }
bool isFrozen(ZrDbObjectId layer)
{
    return readRecord<ZrDbLayerTableRecord>(layer, [](auto* r) { return r->isFrozen(); });
}

} // namespace

class TestDrawingHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host.reset(new Host); }
    void cleanup() { m_host.reset(); }

    void layerListSortsByCaseAndLeavesStarsOut()
    {
        // The table ignores case, so each initial appears once.
        for (const char* name : {"banana", "Apple", "cherry", "x*y", "Date"})
            addLayer(QString::fromLatin1(name));
        addLayer(QStringLiteral("Hidden"), {true, false, true, false});
        ZrArray<zrqthelper::SigleLayerData> layers;
        layers.append(zrqthelper::SigleLayerData());
        zrqthelper::getLayerInfos(layers);
        QStringList names;
        for (const auto& layer : layers)
            names << layer.name.toQString();
        QCOMPARE(names, (QStringList{QStringLiteral("0"), QStringLiteral("Apple"), QStringLiteral("Date"),
                                     QStringLiteral("Hidden"), QStringLiteral("banana"), QStringLiteral("cherry")}));
        const zrqthelper::SigleLayerData& hidden = layers[3];
        QVERIFY(hidden.hidden && hidden.frozen && !hidden.locked && !hidden.off);
    }

    void blockNamesLeaveSpacesReferencesAndAnonymousOut()
    {
        const ZrDbObjectId door = addBlock(QStringLiteral("Door"));
        addBlock(QStringLiteral("Chair"));
        addBlock(QStringLiteral("*Model_Space_Copy"));
        addBlock(QStringLiteral("*MODEL_SPAC"));
        addBlock(QStringLiteral("*U12"));
        addBlock(QStringLiteral("Site|Tree"));
        addBlock(QStringLiteral("Survey"), true);
        ZrArray<ZrString> names;
        zrqthelper::getBlockNames(names);
        QCOMPARE(texts(names), (QStringList{QStringLiteral("*MODEL_SPAC"), QStringLiteral("Chair"), QStringLiteral("Door")}));

        addEntity(new ZrDbBlockReference(ZrGePoint3d(0, 0, 0), door));
        zrqthelper::getBlockNames(names, nullptr, true);
        QCOMPARE(texts(names), QStringList{QStringLiteral("Door")});
    }

    void changeLayerStatusAsksAndRefuses()
    {
        const ZrDbObjectId current = db()->clayer();
        const ZrString name(layerName(current));

        ZrHostControl::pushMessageBoxAnswer(6);
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_OnOff, name, ZrCmColor()), 0);
        QVERIFY(!isOff(current));
        ZrHostControl::pushMessageBoxAnswer(7);
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_OnOff, name, ZrCmColor()), 1);
        QVERIFY(isOff(current));

        ZrHostControl::pushMessageBoxAnswer(1);
        QCOMPARE(zrqthelper::changeLayerStatus(zrqthelper::Layer_Freeze, name, ZrCmColor()), 0);
        QVERIFY(!isFrozen(current));

        const QVector<ZrHostControl::MessageRecord> log = ZrHostControl::messageLog();
        QCOMPARE(log.size(), 3);
        QCOMPARE(log[0].flags, 68);
        QCOMPARE(log[0].text, QStringLiteral("当前图层将被关闭。\n是否要使当前图层保持打开状态?"));
        QCOMPARE(log[2].flags, 64);
        QCOMPARE(log[2].text, QStringLiteral("不能冻结当前图层\n"));
    }

    void lockedObjectsAreTakenOut()
    {
        const ZrDbObjectId locked = addLayer(QStringLiteral("Locked"), {false, true});
        ZrArray<ZrDbObjectId> ids;
        for (ZrDbObjectId id : {ZrDbObjectId(), addLine(locked), addLine(), addLine(locked), ZrDbObjectId(99999999)})
            ids.append(id);
        QCOMPARE(zrqthelper::removeLockedEntity(ids), 3);
        QCOMPARE(ids.length(), 2);
        QVERIFY(ids[0].isNull());
    }

private:
    std::unique_ptr<Host> m_host;
};

ZR_TEST_SUITE(TestDrawingHelpers)
#include "tst_drawinghelpers.moc"

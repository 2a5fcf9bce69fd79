// The selection walk and the records that say what the selected objects have in common.

#include "controlstesthelpers.h"
#include "zrtestmain.h"

#include "zrqthelper.h"

#include "zrdbdict.h"

#include <QObject>
#include <functional>
#include <memory>

using namespace ControlsTest;
using namespace ZrGlobalUIReactorHelp;
using Pairs = QVector<QPair<int, int>>;

namespace {

// Notes the pairs it is given as positions in the selection (-1 for none). It turns kVaries at its
// call `varyAt` and may then set another record back, which shows whether the walk goes on.
class Probe : public SPickFirstInfo
{
public:
    explicit Probe(const std::vector<ZrDbObjectId>& ids, int varyAt = 0) : m_ids(ids), m_varyAt(varyAt) {}

    void update(const ZrDbEntity* first, const ZrDbEntity* second) override
    {
        pairs.emplace_back(indexOf(first), indexOf(second));
        if (static_cast<int>(pairs.size()) == m_varyAt) {
            status = kVaries;
            if (revive)
                revive->status = kUniform;
        }
    }
    void reset() override { status = kUniform; }

    std::vector<std::pair<int, int>> pairs;
    Probe* revive = nullptr;

private:
    int indexOf(const ZrDbEntity* entity) const
    {
        if (!entity)
            return -1;
        const auto it = std::find(m_ids.begin(), m_ids.end(), entity->objectId());
        return it == m_ids.end() ? -2 : static_cast<int>(it - m_ids.begin());
    }

    const std::vector<ZrDbObjectId>& m_ids;
    int m_varyAt;
};

ZrArray<SPickFirstInfo*> arrayOf(std::initializer_list<SPickFirstInfo*> records)
{
    ZrArray<SPickFirstInfo*> array;
    for (SPickFirstInfo* record : records)
        array.append(record);
    return array;
}

void walk(std::initializer_list<SPickFirstInfo*> records, bool reset = true)
{
    if (reset) {
        for (SPickFirstInfo* record : records) {
            if (record)
                record->reset();
        }
    }
    zrqthelper::getPickFirstInfos(arrayOf(records));
}

std::vector<ZrDbObjectId> lines(int count)
{
    std::vector<ZrDbObjectId> ids;
    for (int i = 0; i < count; ++i)
        ids.push_back(addLine());
    return ids;
}

template <class Entity, class Change>
void change(ZrDbObjectId id, Change apply)
{
    ZrDbObjectPointer<Entity> entity(id, ZrDb::kForWrite);
    QVERIFY(entity);
    apply(entity.object());
}

// One record and three objects: two with the first value of its property, one with the second.
struct RecordCase
{
    std::shared_ptr<SPickFirstInfo> record;
    ZrDbObjectId first1;
    ZrDbObjectId first2;
    ZrDbObjectId second;
    // Whether the record holds the first value (0), the second (1) or the empty one (-1).
    std::function<bool(int)> holds;
    // Only some classes carry the property: a line makes the selection vary.
    bool classBound = false;
    bool absentFirstVaries = false;
};

template <class Record, class T>
RecordCase makeCase(const std::function<ZrDbObjectId(const T&)>& add, const T& first, const T& second,
                    const T& empty)
{
    RecordCase c;
    auto record = std::make_shared<Record>();
    c.record = record;
    c.first1 = add(first);
    c.first2 = add(first);
    c.second = add(second);
    const Record* raw = record.get();
    c.holds = [raw, first, second, empty](int which) {
        return raw->value == (which == 0 ? first : which == 1 ? second : empty);
    };
    return c;
}

// Values that go by name or by a record only take once the entity is in the drawing.
template <class Entity, class T, class Set>
std::function<ZrDbObjectId(const T&)> adder(Set set)
{
    return [set](const T& value) {
        const ZrDbObjectId id = addEntity(new Entity);
        ZrDbObjectPointer<Entity> entity(id, ZrDb::kForWrite);
        set(entity.object(), value);
        return id;
    };
}

// A dimension style whose text style is `textStyle`.
ZrDbObjectId addDimStyle(const QString& name, ZrDbObjectId textStyle = ZrDbObjectId())
{
    auto* style = new ZrDbDimStyleTableRecord;
    style->setDimtxsty(textStyle);
    return addRecord(&ZrDbDatabase::getDimStyleTable, style, name);
}

RecordCase recordCase(const QString& property)
{
    const ZrDbObjectId none;
    if (property == QLatin1String("color"))
        return makeCase<SColorInfo, ZrCmColor>(
            adder<ZrDbLine, ZrCmColor>([](ZrDbEntity* e, const ZrCmColor& v) { e->setColor(v); }), aci(1), aci(3),
            ZrCmColor());
    if (property == QLatin1String("layer"))
        return makeCase<SLayerInfo, ZrDbObjectId>(
            adder<ZrDbLine, ZrDbObjectId>([](ZrDbEntity* e, ZrDbObjectId v) { e->setLayer(v); }),
            addLayer(QStringLiteral("A")), addLayer(QStringLiteral("B")), none);

    RecordCase c;
    if (property == QLatin1String("dimStyle"))
        c = makeCase<SDimStyleInfo, ZrDbObjectId>(
            adder<ZrDbAlignedDimension, ZrDbObjectId>(
                [](ZrDbDimension* e, ZrDbObjectId v) { e->setDimensionStyle(v); }),
            db()->dimstyle(), addDimStyle(QStringLiteral("Arch")), none);
    if (c.record) {
        c.absentFirstVaries = true;
        c.classBound = true;
        return c;
    }

    const ZrDbObjectId standard = db()->textstyle();
    const ZrDbObjectId notes =
        addRecord(&ZrDbDatabase::getTextStyleTable, new ZrDbTextStyleTableRecord, QStringLiteral("Notes"));
    if (property == QLatin1String("textStyle/text"))
        c = makeCase<STextStyleInfo, ZrDbObjectId>(
            adder<ZrDbText, ZrDbObjectId>([](ZrDbText* e, ZrDbObjectId v) { e->setTextStyle(v); }), standard, notes,
            none);
    else if (property == QLatin1String("textStyle/dimension")) {
        // A dimension shows the text style of its dimension style.
        const ZrDbObjectId plain = addDimStyle(QStringLiteral("Plain"), standard);
        const ZrDbObjectId noted = addDimStyle(QStringLiteral("Noted"), notes);
        c = makeCase<STextStyleInfo, ZrDbObjectId>(
            adder<ZrDbAlignedDimension, ZrDbObjectId>([plain, noted, notes](ZrDbDimension* e, ZrDbObjectId v) {
                e->setDimensionStyle(v == notes ? noted : plain);
            }),
            standard, notes, none);
    }
    c.classBound = true;
    return c;
}

} // namespace

class TestPickFirstWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_host.reset(new Host); }
    void cleanup() { m_host.reset(); }

    void walksFromBothEnds_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<Pairs>("pairs");
        QTest::newRow("one") << 1 << Pairs{{0, -1}};
        QTest::newRow("two") << 2 << Pairs{{0, 1}};
        QTest::newRow("five") << 5 << Pairs{{0, 4}, {1, 3}, {2, -1}};
        QTest::newRow("six") << 6 << Pairs{{0, 5}, {1, 4}, {2, 3}};
    }

    void walksFromBothEnds()
    {
        QFETCH(int, count);
        QFETCH(Pairs, pairs);
        const std::vector<ZrDbObjectId> ids = lines(count);
        select(ids);
        Probe probe(ids);
        walk({&probe});
        Pairs seen;
        for (const auto& pair : probe.pairs)
            seen << qMakePair(pair.first, pair.second);
        QCOMPARE(seen, pairs);
        QCOMPARE(probe.status, SPickFirstInfo::kUniform);
    }

    void statusWithoutSelectionOrDocument()
    {
        SLayerInfo layer;
        SColorInfo color;
        layer.status = SPickFirstInfo::kVaries;
        // An empty array touches nothing.
        zrqthelper::getPickFirstInfos(ZrArray<SPickFirstInfo*>());
        QCOMPARE(layer.status, SPickFirstInfo::kVaries);

        walk({&layer, nullptr, &color}, false);
        QCOMPARE(layer.status, SPickFirstInfo::kNoSelection);
        QCOMPARE(color.status, SPickFirstInfo::kNoSelection);

        CXuDocManager* documents = zrDocManagerPtr();
        documents->closeDocument(documents->curDocument());
        walk({&layer, nullptr, &color});
        QCOMPARE(layer.status, SPickFirstInfo::kNoDocument);
        QCOMPARE(color.status, SPickFirstInfo::kNoDocument);
    }

    // The walk stops once as many records have varied as the array holds. The trigger sets the
    // probe back once both have varied, so only a further step could reach the probe again: a
    // null entry and a record that varied before the walk count in the array's length, and with
    // one of them the walk goes on to the end.
    void walkEndsWhenEveryEntryHasVaried_data()
    {
        QTest::addColumn<QString>("extra");
        QTest::addColumn<int>("steps");
        QTest::newRow("none") << QString() << 1;
        QTest::newRow("varied before") << QStringLiteral("varied") << 3;
        QTest::newRow("null") << QStringLiteral("null") << 3;
    }

    void walkEndsWhenEveryEntryHasVaried()
    {
        QFETCH(QString, extra);
        QFETCH(int, steps);
        const std::vector<ZrDbObjectId> ids = lines(6);
        select(ids);
        Probe before(ids);
        Probe probe(ids, 1);
        Probe trigger(ids, 1);
        trigger.revive = &probe;
        probe.reset();
        trigger.reset();
        before.status = SPickFirstInfo::kVaries;
        ZrArray<SPickFirstInfo*> records;
        if (!extra.isEmpty())
            records.append(extra == QLatin1String("null") ? nullptr : &before);
        records.append(&probe);
        records.append(&trigger);
        zrqthelper::getPickFirstInfos(records);
        QCOMPARE(probe.pairs.size(), size_t(steps));
        QCOMPARE(trigger.pairs.size(), size_t(1));
        QVERIFY(before.pairs.empty());
    }

    // The rules of update() for each record, member by member, on objects that carry the value.
    void updateRulesPerRecord_data()
    {
        QTest::addColumn<QString>("property");
        for (const char* property : {"color", "layer", "dimStyle", "textStyle/text", "textStyle/dimension"})
            QTest::newRow(property) << QString::fromLatin1(property);
    }

    void updateRulesPerRecord()
    {
        QFETCH(QString, property);
        const RecordCase c = recordCase(property);
        QVERIFY(c.record);
        SPickFirstInfo& record = *c.record;
        ZrDbObjectPointer<ZrDbEntity> a1(c.first1, ZrDb::kForRead);
        ZrDbObjectPointer<ZrDbEntity> a2(c.first2, ZrDb::kForRead);
        ZrDbObjectPointer<ZrDbEntity> b(c.second, ZrDb::kForRead);
        ZrDbObjectPointer<ZrDbEntity> line(addLine(), ZrDb::kForRead);
        QVERIFY(a1 && a2 && b && line);

        record.reset();
        record.update(a1.object(), a2.object());
        QCOMPARE(record.status, SPickFirstInfo::kUniform);
        QVERIFY(c.holds(0));
        record.update(a1.object(), nullptr);
        QCOMPARE(record.status, SPickFirstInfo::kUniform);
        // A lone member against what was kept: the first value seen stays.
        record.update(b.object(), nullptr);
        QCOMPARE(record.status, SPickFirstInfo::kVaries);
        QVERIFY(c.holds(0));
        record.reset();
        QVERIFY(c.holds(0));

        // A pair that disagrees in one step keeps nothing.
        record.update(a1.object(), b.object());
        QCOMPARE(record.status, SPickFirstInfo::kVaries);
        QVERIFY(c.holds(-1));

        record.reset();
        record.update(a1.object(), nullptr);
        record.update(nullptr, nullptr);
        QCOMPARE(record.status, SPickFirstInfo::kUniform);
        QVERIFY(c.holds(0));

        // An absent first member beside a present second: only the three typed styles give up.
        record.reset();
        record.update(nullptr, b.object());
        QCOMPARE(record.status, c.absentFirstVaries ? SPickFirstInfo::kVaries : SPickFirstInfo::kUniform);
        if (!c.absentFirstVaries)
            QVERIFY(c.holds(1));

        record.reset();
        record.update(line.object(), nullptr);
        QCOMPARE(record.status, c.classBound ? SPickFirstInfo::kVaries : SPickFirstInfo::kUniform);
        if (c.classBound) {
            record.reset();
            record.update(a1.object(), line.object());
            QCOMPARE(record.status, SPickFirstInfo::kVaries);
        }
    }

private:
    std::unique_ptr<Host> m_host;
};

ZR_TEST_SUITE(TestPickFirstWalk)
#include "tst_pickfirstwalk.moc"

#include "zrglobaluireactor.h"

#include "ZrQtUtilsFunc.h"
#include "qt_common_ui.h"
#include "zrqthelper.h"

#include "zrarbitdict.h"
#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrselection.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QObject>
#include <QPointer>

using ZrGlobalUIReactorHelp::SPickFirstInfo;

namespace ZrGlobalUIReactorHelp {

template <class T>
struct SHold
{
    T value;
    bool hasValue = false;
};

SPickFirstInfo::~SPickFirstInfo() = default;

namespace {

// The value of a record before anything was seen.
template <class T>
T emptyValue()
{
    return T();
}

template <>
ZrDb::LineWeight emptyValue()
{
    return ZrDb::kLnWtByLayer;
}

} // namespace

template <class T>
SPickFirstValueInfo<T>::SPickFirstValueInfo() : value(emptyValue<T>()), hold(new SHold<T>{emptyValue<T>(), false})
{
}

template <class T>
SPickFirstValueInfo<T>::~SPickFirstValueInfo() = default;

template <class T>
void SPickFirstValueInfo<T>::reset()
{
    status = kUniform;
    hold->value = emptyValue<T>();
    hold->hasValue = false;
}

template <class T>
SHold<T>& SPickFirstValueInfo<T>::held()
{
    return *hold;
}

template class SPickFirstValueInfo<ZrCmColor>;
template class SPickFirstValueInfo<ZrDb::LineWeight>;
template class SPickFirstValueInfo<ZrString>;
template class SPickFirstValueInfo<ZrDbObjectId>;

namespace {

// One step of the walk on the values of the two members, null for a member that is absent.
// Under kVaries `value` keeps the first value seen.
template <class T>
void takeValues(SPickFirstInfo::Status& status, SHold<T>& hold, T& value, const T* a, const T* b)
{
    if (a && b && *a != *b) {
        status = SPickFirstInfo::kVaries;
    } else if (const T* seen = a ? a : b) {
        if (!hold.hasValue) {
            hold.value = *seen;
            hold.hasValue = true;
        } else if (hold.value != *seen) {
            status = SPickFirstInfo::kVaries;
        }
    }
    value = hold.value;
}

// For the properties every entity has.
template <class T, class Read>
void takeEntityValues(SPickFirstInfo::Status& status, SHold<T>& hold, T& value, const ZrDbEntity* first,
                      const ZrDbEntity* second, Read read)
{
    if (first && second) {
        const T a = read(first);
        const T b = read(second);
        takeValues(status, hold, value, &a, &b);
    } else if (first || second) {
        const T a = read(first ? first : second);
        takeValues<T>(status, hold, value, &a, nullptr);
    } else {
        takeValues<T>(status, hold, value, nullptr, nullptr);
    }
}

// For the styles only one class has. A member of another class makes the selection vary, and so
// does a present second member beside an absent first one: the first of a pair is absent only
// when it could not be opened, and then nothing is known of the pair.
template <class Class, class Read>
void takeClassStyle(SPickFirstInfo::Status& status, SHold<ZrDbObjectId>& hold, ZrDbObjectId& value,
                    const ZrDbEntity* first, const ZrDbEntity* second, Read read)
{
    if (!first && !second) {
        takeValues<ZrDbObjectId>(status, hold, value, nullptr, nullptr);
        return;
    }
    const Class* a = Class::cast(first);
    const Class* b = Class::cast(second);
    if (!a || (second && !b)) {
        status = SPickFirstInfo::kVaries;
        value = hold.value;
        return;
    }
    const ZrDbObjectId va = read(a);
    if (!b) {
        takeValues<ZrDbObjectId>(status, hold, value, &va, nullptr);
        return;
    }
    const ZrDbObjectId vb = read(b);
    takeValues(status, hold, value, &va, &vb);
}

// The text style of the four classes that carry one, tested in this order.
bool readTextStyle(const ZrDbEntity* entity, ZrDbObjectId& style)
{
    if (const ZrDbText* text = ZrDbText::cast(entity))
        style = text->textStyle();
    else if (const ZrDbMText* mtext = ZrDbMText::cast(entity))
        style = mtext->textStyle();
    else if (const ZrDbDimension* dimension = ZrDbDimension::cast(entity))
        style = dimension->dimensionTextStyle();
    else if (const ZrDbMLeader* leader = ZrDbMLeader::cast(entity))
        style = leader->textStyleId();
    else
        return false;
    return true;
}

} // namespace

void SColorInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeEntityValues(status, held(), value, first, second, [](const ZrDbEntity* e) { return e->color(); });
}

void SLineWeightInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeEntityValues(status, held(), value, first, second, [](const ZrDbEntity* e) { return e->lineWeight(); });
}

void SLineTypeInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeEntityValues(status, held(), value, first, second, [](const ZrDbEntity* e) { return e->linetype(); });
}

void SLayerInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeEntityValues(status, held(), value, first, second, [](const ZrDbEntity* e) { return e->layerId(); });
}

void SMaterialInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeEntityValues(status, held(), value, first, second, [](const ZrDbEntity* e) { return e->material(); });
}

void SPlotStyleInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeEntityValues(status, held(), value, first, second, [](const ZrDbEntity* e) { return e->plotStyleName(); });
}

void SDimStyleInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeClassStyle<ZrDbDimension>(status, held(), value, first, second,
                                  [](const ZrDbDimension* e) { return e->dimensionStyle(); });
}

void STableStyleInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeClassStyle<ZrDbTable>(status, held(), value, first, second, [](const ZrDbTable* e) { return e->tableStyle(); });
}

void SMleaderStyleInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    takeClassStyle<ZrDbMLeader>(status, held(), value, first, second,
                                [](const ZrDbMLeader* e) { return e->MLeaderStyle(); });
}

void STextStyleInfo::update(const ZrDbEntity* first, const ZrDbEntity* second)
{
    ZrDbObjectId a;
    ZrDbObjectId b;
    if ((first && !readTextStyle(first, a)) || (second && !readTextStyle(second, b))) {
        status = kVaries;
        value = held().value;
        return;
    }
    takeValues(status, held(), value, first ? &a : nullptr, second ? &b : nullptr);
}

} // namespace ZrGlobalUIReactorHelp

struct CZrQtControlHelp::Private
{
    bool modifySysVar = false;
    SPickFirstInfo* pickFirstInfo = nullptr;
    int32_t updatedCount = 0;
    std::shared_ptr<ZrQtCuiRibbonControlsSlotAgent> slotAgent;
};

CZrQtControlHelp::CZrQtControlHelp() : d(new Private) {}
CZrQtControlHelp::CZrQtControlHelp(bool modifySysVar) : d(new Private) { d->modifySysVar = modifySysVar; }
CZrQtControlHelp::~CZrQtControlHelp() = default;

bool CZrQtControlHelp::needUpdateUI(const CZrGlobalUIReactorHelp&) { return false; }
void CZrQtControlHelp::onUpdateUI() {}

bool CZrQtControlHelp::isEnable(bool& enable)
{
    enable = true;
    return true;
}

void CZrQtControlHelp::setModifySysVar(bool modify) { d->modifySysVar = modify; }
bool CZrQtControlHelp::getModifySysVar() const { return d->modifySysVar; }
void CZrQtControlHelp::setPickFirstInfo(SPickFirstInfo* info) { d->pickFirstInfo = info; }
SPickFirstInfo* CZrQtControlHelp::getPickFirstInfo() const { return d->pickFirstInfo; }

void CZrQtControlHelp::setUpdated(bool updated)
{
    if (updated)
        ++d->updatedCount;
}

void CZrQtControlHelp::clearUpdated() { d->updatedCount = 0; }
bool CZrQtControlHelp::updating() const { return d->updatedCount > 0; }

void CZrQtControlHelp::setRibbonControlSlotAgent(std::shared_ptr<ZrQtCuiRibbonControlsSlotAgent> agent)
{
    d->slotAgent = std::move(agent);
}

struct ZrQtBlockSignalUtil::Private
{
    // Guarded: a slot run before the end may have deleted the object.
    QPointer<QObject> object;
};

ZrQtBlockSignalUtil::ZrQtBlockSignalUtil(QObject* object) : d(new Private)
{
    d->object = object;
    if (object)
        object->blockSignals(true);
}

ZrQtBlockSignalUtil::~ZrQtBlockSignalUtil()
{
    if (d->object)
        d->object->blockSignals(false);
}

ZrUpdateUiEvent::ZrUpdateUiEvent(const CZrGlobalUIReactorHelp& help, QEvent::Type type)
    : QEvent(type), m_help(new CZrGlobalUIReactorHelp(help))
{
}

ZrUpdateUiEvent::~ZrUpdateUiEvent() = default;
const CZrGlobalUIReactorHelp& ZrUpdateUiEvent::reactorHelp() const { return *m_help; }

namespace zrqthelper {

namespace {

using SPickFirstStatus = SPickFirstInfo::Status;

// The pick-first selection and its length; 0 when there is none.
int32_t pickFirstLength(long ss[2])
{
    int32_t length = 0;
    if (!pickFirstSS(ss) || zredSSLength(ss, &length) != RTNORM)
        return 0;
    return length;
}

void postOrder(Entity_Property property, const EntityValue& value)
{
    ZrRxObjectPtr object = zrUISvr(kZrQtCommonUISvrSlot);
    if (!object)
        return;
    ZrSmartPtr<ZrQtCommonUISvr> service(object.get());
    service->setUpdateDbHelpInfo(SZrGlobalUIUpdateDbHelp{property, value});
    if (getCmdActived()) {
        zrmdGlobalUIUpdateDb();
        return;
    }
    CXuDocContext* context = CXuSystem::instance()->docContext();
    const bool inputCenter = context && context->inputCenter();
    if (context)
        context->setInputCenter(false);
    zredMenuMacro(L"GLOBAL_UI_UPDATEDB", false, true);
    if (context)
        context->setInputCenter(inputCenter);
}

void postStyle(Entity_Property property, const ZrDbObjectId& id, const ZrString& name)
{
    EntityValue value;
    value.styleId = id;
    value.styleName = name;
    postOrder(property, value);
}

bool isExternalName(const ZrString& name) { return name.findOneOf(L"|") >= 0; }

bool refuseCurrentLayer()
{
    ZrUiMessageBox(ZrString(zrUiText("IDS_LAYERDLG_PROMPT_8", QStringLiteral("图层 - 无法置为当前"))),
                   ZrString(zrUiText("IDS_WHENSETCURLAYER",
                                     QStringLiteral("无法将选定图层置为当前图层。\r\n\r\n无法将以下图层置为当前图层:"
                                                    "\r\n 依赖外部参照的图层\n 冻结的图层\n"))),
                   64, nullptr);
    return false;
}

} // namespace

ZrSmartPtr<ZrUiReactorService> getReactorService()
{
    return ZrSmartPtr<ZrUiReactorService>(zr_arbitDict_getservice(kZrUiReactorServiceSlot).get());
}

void getPickFirstInfos(const ZrArray<SPickFirstInfo*>& infos)
{
    if (infos.isEmpty())
        return;
    const auto setAll = [&infos](SPickFirstStatus status) {
        for (SPickFirstInfo* info : infos) {
            if (info)
                info->status = status;
        }
    };
    if (!zrDocManagerPtr()->curDocument()) {
        setAll(SPickFirstInfo::kNoDocument);
        return;
    }
    long ss[2];
    const int32_t length = pickFirstLength(ss);
    if (length < 1) {
        setAll(SPickFirstInfo::kNoSelection);
        return;
    }
    // Null records and records that varied before the walk count here too, so with one of them
    // in the array the walk always goes to the end.
    int remaining = infos.length();
    const int32_t steps = length / 2 + length % 2;
    for (int32_t i = 0; i < steps && remaining > 0; ++i) {
        const int32_t j = length - 1 - i;
        ZrDbObjectPointer<ZrDbEntity> first(selectionMemberId(ss, i), ZrDb::kForRead);
        ZrDbObjectPointer<ZrDbEntity> second(j != i && j > 0 ? selectionMemberId(ss, j) : ZrDbObjectId(), ZrDb::kForRead);
        for (SPickFirstInfo* info : infos) {
            if (!info || info->status == SPickFirstInfo::kVaries)
                continue;
            info->update(first.object(), second.object());
            if (info->status == SPickFirstInfo::kVaries)
                --remaining;
        }
    }
}

ZrDbObjectId selectionMemberId(const long* ss, int32_t i)
{
    long name[2] = {0, 0};
    ZrDbObjectId id;
    if (zredSSName(ss, i, name) != RTNORM || zrdbGetObjectId(id, name) != 0)
        return ZrDbObjectId();
    return id;
}

ZrSmartPtr<ZrDbDatabaseService> getDatabaseService()
{
    return ZrSmartPtr<ZrDbDatabaseService>(zrrxGetService(3).get());
}

bool hasSelection()
{
    CXuDocContext* context = CXuSystem::instance()->docContext();
    return context && context->hasSelection();
}

bool pickFirstSS(long* ss)
{
    ss[0] = 0;
    ss[1] = 0;
    CXuDocContext* context = CXuSystem::instance()->docContext();
    return context && context->pickFirstSS(ss);
}

bool getCmdActived()
{
    CXuDocContext* context = CXuSystem::instance()->docContext();
    return context && context->activeCommandCount() > 0;
}

void setCeColor(const ZrCmColor& color)
{
    EntityValue value;
    value.color = color;
    postOrder(Entity_Color, value);
}

void setCeWeight(ZrDb::LineWeight weight)
{
    EntityValue value;
    value.lineWeight = weight;
    postOrder(Entity_LineWeight, value);
}

void setCeLType(const ZrDbObjectId& id, const ZrString& name) { postStyle(Entity_LineType, id, name); }
void setCMaterial(const ZrDbObjectId& id, const ZrString& name) { postStyle(Entity_Material, id, name); }
void setCDimStyle(const ZrDbObjectId& id, const ZrString& name) { postStyle(Entity_DimStyle, id, name); }
void setCTextStyle(const ZrDbObjectId& id, const ZrString& name) { postStyle(Entity_TextStyle, id, name); }
void setCPlotStyle(const ZrDbObjectId& id, const ZrString& name) { postStyle(Entity_PlotStyle, id, name); }
void setCTableStyle(const ZrDbObjectId& id, const ZrString& name) { postStyle(Entity_TableStyle, id, name); }
void setCMLeaderStyle(const ZrDbObjectId& id, const ZrString& name) { postStyle(Entity_MleaderStyle, id, name); }

bool setCLayer(const ZrDbObjectId& id, const ZrString& name)
{
    // With a selection the order goes by name to the selected objects; only a name is screened.
    if (hasSelection()) {
        if (name.isEmpty() || isExternalName(name))
            return false;
        postStyle(Entity_Layer, id, name);
        return true;
    }
    const ZrDbObjectId layerId = id.isValid() ? id : findLayerTableRecordByName(name);
    if (!layerId.isValid() || layerId.isErased())
        return false;
    ZrDbDatabase* db = curDatabase();
    bool refused = false;
    if (db && db->clayer() != layerId) {
        // Read and closed before the message, so that nothing stays open in its event loop.
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(layerId, ZrDb::kForRead);
        refused = layer && (layer->isFrozen() || isExternalName(layer->name()));
    }
    if (refused)
        return refuseCurrentLayer();
    postStyle(Entity_Layer, layerId, name);
    return true;
}

void setSelectedProperty(Entity_Property property, const EntityValue& value)
{
    ZrDbDatabase* db = curDatabase();
    long ss[2];
    const int32_t length = pickFirstLength(ss);
    if (!db || length < 1)
        return;
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!service)
        return;
    service->startEdits(db);
    int skipped = 0;
    try {
        for (int32_t i = 0; i < length; ++i) {
            ZrDbObjectPointer<ZrDbEntity> entity(selectionMemberId(ss, i), ZrDb::kForWrite);
            if (!entity)
                continue;
            if (isLocked(entity.object()))
                ++skipped;
            else
                setProperty(entity.object(), property, value);
        }
    } catch (...) {
        service->cancelEdits(db);
        throw;
    }
    service->endEdits(db);
    if (skipped > 0) {
        QString text = zrUiText("IDS_ZRAPP_CMBMGRIMP_PROMPT29",
                                QStringLiteral("在锁定图层上有 %d 个对象未被更新，\n已从选择集中删除。"));
        text.replace(QLatin1String("%d"), QString::number(skipped));
        ZrUiMessageBox(ZrString(), ZrString(text), 0, nullptr);
    }
}

bool setProperty(ZrDbEntity* entity, Entity_Property property, const EntityValue& value)
{
    if (!entity)
        return false;
    const ZrString& name = value.styleName;
    const ZrDbObjectId& id = value.styleId;
    switch (property) {
    case Entity_Color:
        return entity->color() != value.color && entity->setColor(value.color, true) == Zr::eOk;
    case Entity_LineWeight:
        return entity->lineWeight() != value.lineWeight && entity->setLineWeight(value.lineWeight, true) == Zr::eOk;
    case Entity_LineType:
        return entity->linetype().compareNoCase(name) != 0 && entity->setLinetype(name, true) == Zr::eOk;
    case Entity_Layer:
        return entity->layer().compareNoCase(name) != 0 && entity->setLayer(name, true, false) == Zr::eOk;
    case Entity_Material:
        return entity->material().compareNoCase(name) != 0 && entity->setMaterial(name, true) == Zr::eOk;
    case Entity_PlotStyle:
        return entity->plotStyleName().compareNoCase(name) != 0 && entity->setPlotStyleName(name, true) == Zr::eOk;
    case Entity_DimStyle: {
        ZrDbDimension* dimension = ZrDbDimension::cast(entity);
        if (!dimension || dimension->dimensionStyle() == id || dimension->setDimensionStyle(id) != Zr::eOk)
            return false;
        dimension->setDimstyleData(id);
        return true;
    }
    case Entity_TextStyle:
        if (ZrDbText* text = ZrDbText::cast(entity))
            return text->textStyle() != id && text->setTextStyle(id) == Zr::eOk;
        if (ZrDbMText* mtext = ZrDbMText::cast(entity))
            return mtext->textStyle() != id && mtext->setTextStyle(id) == Zr::eOk;
        return false;
    case Entity_TableStyle: {
        ZrDbTable* table = ZrDbTable::cast(entity);
        return table && table->tableStyle() != id && table->setTableStyle(id) == Zr::eOk;
    }
    case Entity_MleaderStyle: {
        ZrDbMLeader* leader = ZrDbMLeader::cast(entity);
        return leader && leader->MLeaderStyle() != id && leader->setMLeaderStyle(id) == Zr::eOk;
    }
    }
    return false;
}

void zrmdGlobalUIUpdateDb()
{
    ZrRxObjectPtr object = zrUISvr(kZrQtCommonUISvrSlot);
    if (!object)
        return;
    ZrSmartPtr<ZrQtCommonUISvr> service(object.get());
    // A copy: a setter may post the next order while it runs.
    const SZrGlobalUIUpdateDbHelp order = service->getUpdateDbHelpInfo();
    using Setter = void (*)(const SZrGlobalUIUpdateDbHelp&);
    static const Setter setters[] = {
        &ZrappUISettingInner::setCeColor,    &ZrappUISettingInner::setCeWeight,
        &ZrappUISettingInner::setCeLType,    &ZrappUISettingInner::setCLayer,
        &ZrappUISettingInner::setCMaterial,  &ZrappUISettingInner::setCDimStyle,
        &ZrappUISettingInner::setCTextStyle, &ZrappUISettingInner::setCTableStyle,
        &ZrappUISettingInner::setCMLeaderStyle, &ZrappUISettingInner::setCPlotStyle,
    };
    const auto kind = static_cast<uint32_t>(order.property);
    if (kind <= 9)
        setters[kind](order);
}

} // namespace zrqthelper

using namespace zrqthelper;

namespace {

using Finder = ZrDbObjectId (*)(const ZrString&, ZrDbDatabase*);

// The style of an order: its id, else the one of its name.
ZrDbObjectId styleOf(const SZrGlobalUIUpdateDbHelp& order, Finder find, ZrDbDatabase* db)
{
    return order.value.styleId.isValid() ? order.value.styleId : find(order.value.styleName, db);
}

// Orders that go by name reach the selected objects only with a name.
void namedToSelection(Entity_Property property, const SZrGlobalUIUpdateDbHelp& order)
{
    if (!order.value.styleName.isEmpty())
        setSelectedProperty(property, order.value);
}

// Typed styles reach the selected objects by id.
void styleToSelection(Entity_Property property, const SZrGlobalUIUpdateDbHelp& order, Finder find, ZrDbDatabase* db)
{
    EntityValue value = order.value;
    value.styleId = styleOf(order, find, db);
    if (value.styleId.isValid())
        setSelectedProperty(property, value);
}

// The styles whose current value is a named variable of the drawing.
void setStyleVariable(ZrDbDatabase* db, const wchar_t* variable, const ZrString& name)
{
    ZrSmartPtr<ZrDbDatabaseService> service = getDatabaseService();
    if (!service || name.isEmpty())
        return;
    ZrResBuf* current = nullptr;
    const bool read = service->getSysVar(db, variable, current) == RTNORM;
    const bool same = read && current && current->restype == RTSTR && current->resval.rstring
        && name.compareNoCase(ZrString(current->resval.rstring)) == 0;
    zrutRelRb(current);
    if (!read || same)
        return;
    ZrResBuf* value = zrutBuildList(RTSTR, name.kwszPtr(), 0);
    service->setSysVar(db, variable, value);
    zrutRelRb(value);
}

} // namespace

void ZrappUISettingInner::setCeColor(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection())
        setSelectedProperty(Entity_Color, order.value);
    else if (db->cecolor() != order.value.color)
        db->setCecolor(order.value.color);
}

void ZrappUISettingInner::setCeWeight(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection())
        setSelectedProperty(Entity_LineWeight, order.value);
    else if (db->celweight() != order.value.lineWeight)
        db->setCelweight(order.value.lineWeight);
}

void ZrappUISettingInner::setCeLType(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        namedToSelection(Entity_LineType, order);
        return;
    }
    const ZrDbObjectId id = styleOf(order, &findLineStyleTableRecordByName, db);
    if (id.isValid() && db->celtype() != id)
        db->setCeltype(id);
}

void ZrappUISettingInner::setCLayer(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        namedToSelection(Entity_Layer, order);
        return;
    }
    const ZrDbObjectId id = styleOf(order, &findLayerTableRecordByName, db);
    if (!id.isValid() || id.isErased() || db->clayer() == id)
        return;
    {
        // Written back as it stands, so that the layer counts as changed in this step.
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForWrite);
        if (layer)
            layer->setIsFrozen(layer->isFrozen());
    }
    db->setClayer(id);
}

void ZrappUISettingInner::setCMaterial(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        namedToSelection(Entity_Material, order);
        return;
    }
    const ZrDbObjectId id = styleOf(order, &findMaterialByName, db);
    if (id.isValid() && db->cmaterial() != id)
        db->setCmaterial(id);
}

void ZrappUISettingInner::setCDimStyle(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        styleToSelection(Entity_DimStyle, order, &findDimStyleTableRecordByName, db);
        return;
    }
    const ZrDbObjectId id = styleOf(order, &findDimStyleTableRecordByName, db);
    if (id.isValid() && db->dimstyle() != id) {
        db->setDimstyle(id);
        db->setDimstyleData(id);
    }
}

void ZrappUISettingInner::setCTextStyle(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        styleToSelection(Entity_TextStyle, order, &findTextStyleTableRecordByName, db);
        return;
    }
    const ZrDbObjectId id = styleOf(order, &findTextStyleTableRecordByName, db);
    if (id.isValid() && db->textstyle() != id)
        db->setTextstyle(id);
}

void ZrappUISettingInner::setCTableStyle(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        styleToSelection(Entity_TableStyle, order, &findTableStyleTableRecordByName, db);
        return;
    }
    const ZrDbObjectId id = styleOf(order, &findTableStyleTableRecordByName, db);
    if (id.isValid())
        setStyleVariable(db, L"CTABLESTYLE", findTableStyleTableRecordById(id, db));
}

void ZrappUISettingInner::setCMLeaderStyle(const SZrGlobalUIUpdateDbHelp& order)
{
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        styleToSelection(Entity_MleaderStyle, order, &findMleaderStyleTableRecordByName, db);
        return;
    }
    const ZrDbObjectId id = styleOf(order, &findMleaderStyleTableRecordByName, db);
    if (id.isValid())
        setStyleVariable(db, L"CMLEADERSTYLE", findMleaderStyleTableRecordById(id, db));
}

void ZrappUISettingInner::setCPlotStyle(const SZrGlobalUIUpdateDbHelp& order)
{
    const ZrString& name = order.value.styleName;
    if (name.isEmpty())
        return;
    ZrDbDatabase* db = curDatabase();
    if (!db)
        return;
    if (hasSelection()) {
        setSelectedProperty(Entity_PlotStyle, order.value);
        return;
    }
    ZrResBuf* current = zrutNewRb(RTSTR);
    const bool differs = zredGetVar(L"CPLOTSTYLE", current) == RTNORM && current->restype == RTSTR
        && name.compareNoCase(ZrString(current->resval.rstring)) != 0;
    zrutRelRb(current);
    if (!differs)
        return;
    ZrResBuf* value = zrutBuildList(RTSTR, name.kwszPtr(), 0);
    zredSetVar(L"CPLOTSTYLE", value);
    zrutRelRb(value);
}

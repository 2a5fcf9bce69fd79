#pragma once
// The contract between the host's reactor and the controls bound to the drawing: the mix-in every
// such control inherits, the records that work out what the selection has in common, and the
// write path through the command GLOBAL_UI_UPDATEDB.

#include "zrqtbaseutils_export.h"

#include "zrarray.h"
#include "zrcmcolor.h"
#include "zrdbobjectid.h"
#include "zrreactor.h"
#include "zrstring.h"

#include <QEvent>
#include <QMetaType>
#include <QtGlobal>
#include <cstdint>
#include <memory>

class QObject;
class ZrDbEntity;

// The items of the drawing-bound controls carry their record's id in Qt::UserRole.
Q_DECLARE_METATYPE(ZrDbObjectId)

namespace ZrGlobalUIReactorHelp {

// What the selection has in common for one property. The host resets the record, walks the
// selection with update() and leaves the answer in `status` (and `value` of the derived record).
struct ZRQTBASEUTILS_EXPORT SPickFirstInfo
{
    enum Status : int32_t {
        kNoDocument = 0,
        kNoSelection = 1,
        kUniform = 2,
        kVaries = 3,
    };

    SPickFirstInfo() = default;
    virtual ~SPickFirstInfo();
    // Takes one step of the walk: two members of the selection, either of which may be null.
    virtual void update(const ZrDbEntity* first, const ZrDbEntity* second) = 0;
    // Status kUniform and nothing seen yet; `value` is left alone.
    virtual void reset() = 0;

    Status status = kNoDocument;

private:
    Q_DISABLE_COPY(SPickFirstInfo)
};

// The accumulated value of a record: kept on the heap so that the records stay small and stable.
template <class T>
struct SHold;

// What every record has: the common value and the accumulated one, both the empty value of `T`
// at first and after reset().
template <class T>
class ZRQTBASEUTILS_EXPORT SPickFirstValueInfo : public SPickFirstInfo
{
public:
    ~SPickFirstValueInfo() override;
    void reset() override;

    T value;

protected:
    SPickFirstValueInfo();
    SHold<T>& held();

private:
    std::unique_ptr<SHold<T>> hold;
};

extern template class SPickFirstValueInfo<ZrCmColor>;
extern template class SPickFirstValueInfo<ZrDb::LineWeight>;
extern template class SPickFirstValueInfo<ZrString>;
extern template class SPickFirstValueInfo<ZrDbObjectId>;

class ZRQTBASEUTILS_EXPORT SColorInfo : public SPickFirstValueInfo<ZrCmColor>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

class ZRQTBASEUTILS_EXPORT SLineWeightInfo : public SPickFirstValueInfo<ZrDb::LineWeight>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

// The line type's name.
class ZRQTBASEUTILS_EXPORT SLineTypeInfo : public SPickFirstValueInfo<ZrString>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

class ZRQTBASEUTILS_EXPORT SLayerInfo : public SPickFirstValueInfo<ZrDbObjectId>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

// The material's name.
class ZRQTBASEUTILS_EXPORT SMaterialInfo : public SPickFirstValueInfo<ZrString>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

// The plot style's name.
class ZRQTBASEUTILS_EXPORT SPlotStyleInfo : public SPickFirstValueInfo<ZrString>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

// Dimensions only: any other object makes the selection vary.
class ZRQTBASEUTILS_EXPORT SDimStyleInfo : public SPickFirstValueInfo<ZrDbObjectId>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

// Tables only.
class ZRQTBASEUTILS_EXPORT STableStyleInfo : public SPickFirstValueInfo<ZrDbObjectId>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

// Multileaders only.
class ZRQTBASEUTILS_EXPORT SMleaderStyleInfo : public SPickFirstValueInfo<ZrDbObjectId>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

// Texts, multiline texts, dimensions and multileaders.
class ZRQTBASEUTILS_EXPORT STextStyleInfo : public SPickFirstValueInfo<ZrDbObjectId>
{
public:
    void update(const ZrDbEntity* first, const ZrDbEntity* second) override;
};

} // namespace ZrGlobalUIReactorHelp

// The mix-in of every control that shows a property of the drawing. It registers nothing itself:
// a drawing-bound control adds itself to the reactor service and removes itself again.
class ZRQTBASEUTILS_EXPORT CZrQtControlHelp
{
public:
    CZrQtControlHelp();
    // `modifySysVar` true binds the control to the drawing; false makes it a plain picker.
    explicit CZrQtControlHelp(bool modifySysVar);
    virtual ~CZrQtControlHelp();

    // Whether the event concerns the control; the base answers false.
    virtual bool needUpdateUI(const CZrGlobalUIReactorHelp& event);
    // Shows what the host left in the record.
    virtual void onUpdateUI();
    virtual bool isEnable(bool& enable);

    void setModifySysVar(bool modify);
    bool getModifySysVar() const;
    // The record the host fills; owned by the control.
    void setPickFirstInfo(ZrGlobalUIReactorHelp::SPickFirstInfo* info);
    ZrGlobalUIReactorHelp::SPickFirstInfo* getPickFirstInfo() const;
    // A counter for the host; true counts one up, false does nothing.
    void setUpdated(bool updated);
    void clearUpdated();
    bool updating() const;
    void setRibbonControlSlotAgent(std::shared_ptr<ZrQtCuiRibbonControlsSlotAgent> agent);

private:
    Q_DISABLE_COPY(CZrQtControlHelp)
    struct Private;
    std::unique_ptr<Private> d;
};

// Blocks an object's signals while it lives. The end always unblocks, whatever the state was
// before, so an inner one ends the blocking of an outer one on the same object.
class ZRQTBASEUTILS_EXPORT ZrQtBlockSignalUtil
{
public:
    explicit ZrQtBlockSignalUtil(QObject* object);
    ~ZrQtBlockSignalUtil();

private:
    Q_DISABLE_COPY(ZrQtBlockSignalUtil)
    struct Private;
    std::unique_ptr<Private> d;
};

// Carries a copy of a host event across to the UI thread.
class ZRQTBASEUTILS_EXPORT ZrUpdateUiEvent : public QEvent
{
public:
    ZrUpdateUiEvent(const CZrGlobalUIReactorHelp& help, QEvent::Type type);
    ~ZrUpdateUiEvent() override;

    const CZrGlobalUIReactorHelp& reactorHelp() const;

private:
    Q_DISABLE_COPY(ZrUpdateUiEvent)
    std::unique_ptr<CZrGlobalUIReactorHelp> m_help;
};

namespace zrqthelper {

enum Entity_Property : int32_t {
    Entity_Color = 0,
    Entity_LineWeight = 1,
    Entity_LineType = 2,
    Entity_Layer = 3,
    Entity_Material = 4,
    Entity_DimStyle = 5,
    Entity_TextStyle = 6,
    Entity_TableStyle = 7,
    Entity_MleaderStyle = 8,
    Entity_PlotStyle = 9,
};

// The new value; only the fields the property needs are filled.
struct EntityValue
{
    ZrCmColor color;
    ZrDb::LineWeight lineWeight = ZrDb::kLnWt000;
    ZrDbObjectId styleId;
    ZrString styleName;
};

// The slot of the reactor service in the host's service dictionary.
constexpr int kZrUiReactorServiceSlot = 14;
// The reactor service; null when the host has none. A service of another class throws
// ZrError_NotThatKindOfClass.
ZRQTBASEUTILS_EXPORT ZrSmartPtr<ZrUiReactorService> getReactorService();
// The database service of the host (number 3); null when there is none. A service of another
// class throws ZrError_NotThatKindOfClass.
ZRQTBASEUTILS_EXPORT ZrSmartPtr<ZrDbDatabaseService> getDatabaseService();

// The selection walk: reads the pick-first selection once for all records. The records must have
// been reset by the caller.
ZRQTBASEUTILS_EXPORT void getPickFirstInfos(const ZrArray<ZrGlobalUIReactorHelp::SPickFirstInfo*>& infos);
ZRQTBASEUTILS_EXPORT bool hasSelection();
// Clears the two-word name, then fills it with the pick-first selection; false without a context.
ZRQTBASEUTILS_EXPORT bool pickFirstSS(long* ss);
// The id of member `i` of a selection; null when it does not resolve.
ZRQTBASEUTILS_EXPORT ZrDbObjectId selectionMemberId(const long* ss, int32_t i);
// True while a command runs in the current document.
ZRQTBASEUTILS_EXPORT bool getCmdActived();

// Post an order for GLOBAL_UI_UPDATEDB: it runs inside the active command, or is queued as a
// command of its own with its own undo step. One order at a time: a second overwrites the first.
ZRQTBASEUTILS_EXPORT void setCeColor(const ZrCmColor& color);
ZRQTBASEUTILS_EXPORT void setCeWeight(ZrDb::LineWeight weight);
ZRQTBASEUTILS_EXPORT void setCeLType(const ZrDbObjectId& id, const ZrString& name);
ZRQTBASEUTILS_EXPORT void setCMaterial(const ZrDbObjectId& id, const ZrString& name);
ZRQTBASEUTILS_EXPORT void setCDimStyle(const ZrDbObjectId& id, const ZrString& name);
ZRQTBASEUTILS_EXPORT void setCTextStyle(const ZrDbObjectId& id, const ZrString& name);
ZRQTBASEUTILS_EXPORT void setCPlotStyle(const ZrDbObjectId& id, const ZrString& name);
ZRQTBASEUTILS_EXPORT void setCTableStyle(const ZrDbObjectId& id, const ZrString& name);
ZRQTBASEUTILS_EXPORT void setCMLeaderStyle(const ZrDbObjectId& id, const ZrString& name);
// Refuses layers of external references and, as the current layer, frozen ones (with a message).
// Answers whether the order was posted.
ZRQTBASEUTILS_EXPORT bool setCLayer(const ZrDbObjectId& id, const ZrString& name);

// Writes to every selected object in one group of edits; objects on locked layers are left out
// and counted in a message.
ZRQTBASEUTILS_EXPORT void setSelectedProperty(Entity_Property property, const EntityValue& value);
// Writes to one object open for write; answers whether it changed it.
ZRQTBASEUTILS_EXPORT bool setProperty(ZrDbEntity* entity, Entity_Property property, const EntityValue& value);

// The body of the command GLOBAL_UI_UPDATEDB: carries out the order kept on the UI service.
ZRQTBASEUTILS_EXPORT void zrmdGlobalUIUpdateDb();

} // namespace zrqthelper

struct SZrGlobalUIUpdateDbHelp
{
    zrqthelper::Entity_Property property = zrqthelper::Entity_Color;
    zrqthelper::EntityValue value;
};

// Carries out one order in the context of the running command: to the selected objects when
// there is a selection, else to the drawing's current value.
class ZRQTBASEUTILS_EXPORT ZrappUISettingInner
{
public:
    static void setCeColor(const SZrGlobalUIUpdateDbHelp& order);
    static void setCeWeight(const SZrGlobalUIUpdateDbHelp& order);
    static void setCeLType(const SZrGlobalUIUpdateDbHelp& order);
    static void setCLayer(const SZrGlobalUIUpdateDbHelp& order);
    static void setCMaterial(const SZrGlobalUIUpdateDbHelp& order);
    static void setCDimStyle(const SZrGlobalUIUpdateDbHelp& order);
    static void setCTextStyle(const SZrGlobalUIUpdateDbHelp& order);
    static void setCTableStyle(const SZrGlobalUIUpdateDbHelp& order);
    static void setCMLeaderStyle(const SZrGlobalUIUpdateDbHelp& order);
    static void setCPlotStyle(const SZrGlobalUIUpdateDbHelp& order);
};

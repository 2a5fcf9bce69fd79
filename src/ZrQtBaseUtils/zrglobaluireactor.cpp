#include "zrglobaluireactor.h"

#include "qt_common_ui.h"

#include "zrarbitdict.h"

namespace zrqthelper {

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

// The substitute host has no drawing database yet, so an order has nothing to write to;
// these setters take their bodies with the database.
void ZrappUISettingInner::setCeColor(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCeWeight(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCeLType(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCLayer(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCMaterial(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCDimStyle(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCTextStyle(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCTableStyle(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCMLeaderStyle(const SZrGlobalUIUpdateDbHelp&) {}
void ZrappUISettingInner::setCPlotStyle(const SZrGlobalUIUpdateDbHelp&) {}

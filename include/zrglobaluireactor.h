#pragma once
// The order of a write to the drawing, and the command that carries it out.

#include "zrqtbaseutils_export.h"

#include "zrcmcolor.h"
#include "zrdbobjectid.h"
#include "zrstring.h"

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

// The body of the command GLOBAL_UI_UPDATEDB: carries out the order kept on the UI service.
ZRQTBASEUTILS_EXPORT void zrmdGlobalUIUpdateDb();

} // namespace zrqthelper

struct SZrGlobalUIUpdateDbHelp
{
    zrqthelper::Entity_Property property = zrqthelper::Entity_Color;
    zrqthelper::EntityValue value;
};

// Carries out one order in the context of the running command.
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

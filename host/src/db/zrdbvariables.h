#pragma once
// The system variables: one list of definitions, the values of each drawing and of the application,
// and their conversion to and from result buffers. Private to the host library.

#include "zrcmcolor.h"
#include "zrgeometry.h"
#include "zrhost_export.h"
#include "zrresbuf.h"
#include "zrstring.h"

#include <cstdint>

class ZrDbDatabase;

// In the order of the definitions.
enum ZrDbVariable : int {
    kVarClayer,
    kVarCecolor,
    kVarCeltype,
    kVarCelweight,
    kVarCeltscale,
    kVarCmaterial,
    kVarTextstyle,
    kVarDimstyle,
    kVarDimtxsty,
    kVarDimscale,
    kVarCtablestyle,
    kVarCmleaderstyle,
    kVarCplotstyle,
    kVarPstylemode,
    kVarTilemode,
    kVarCtab,
    kVarCvport,
    kVarLtscale,
    kVarUcsname,
    kVarUcsorg,
    kVarUcsxdir,
    kVarUcsydir,
    kVarPucsname,
    kVarPucsorg,
    kVarPucsxdir,
    kVarPucsydir,
    kVarUcsorthoview,
    kVarPucsorthoview,
    kVarLwdisplay,
    kVarLwunits,
    kVarLwdispscale,
    kVarInsunits,
    // Variables of the application from here on; they live outside any drawing.
    kVarCmdactive,
    kVarBlockeditor,
    kVarLwdefault,
    kVarWscurrent,
    kVarPickfirst,
    kVariableCount,
};

enum class ZrDbVariableKind : uint8_t {
    kInteger,
    kLineWeight,
    kReal,
    kText,
    kPlotStyleName,
    kPoint,
    kColor,
    kRecord,
    kViewport,
    kCommandActive,
};

// Where the records a kRecord variable names live.
enum class ZrDbRecordKind : uint8_t {
    kNone,
    kLayer,
    kLinetype,
    kTextStyle,
    kDimStyle,
    kUcs,
    kMaterial,
    kTableStyle,
    kMLeaderStyle,
    kLayout,
};

struct ZrDbVariableDefinition
{
    const wchar_t* name;
    ZrDbVariableKind kind;
    ZrDbRecordKind records;
    // Limits of numbers, inclusive; a real must be above `minimum` when `minimumExcluded`.
    double minimum;
    double maximum;
    bool minimumExcluded;
    // The value a new drawing or application starts with, for numbers and texts.
    double number;
    const wchar_t* text;
};

struct ZrDbVariableValue
{
    // Integers, and the handles of records and viewports.
    int64_t integer = 0;
    double real = 0.0;
    ZrGePoint3d point;
    ZrString text;
    ZrCmColor color;

    bool operator==(const ZrDbVariableValue& other) const;
    bool operator!=(const ZrDbVariableValue& other) const { return !(*this == other); }
};

ZRHOST_EXPORT const ZrDbVariableDefinition& zrdbVariableDefinition(int variable);
inline bool zrdbIsApplicationVariable(int variable) { return variable >= kVarCmdactive; }
// The variable of a name, ignoring case; -1 for none.
int zrdbFindVariable(const ZrString& name);
// The value a definition starts with; records are the caller's to fill in.
ZrDbVariableValue zrdbInitialValue(int variable);

// The routes of zredGetVar and the database: the variables of `database` (may be null), then those
// of the application. RTNORM or RTERROR.
ZRHOST_EXPORT int zrdbGetVariable(const ZrDbDatabase* database, const ZrString& name, ZrResBuf* result);
ZRHOST_EXPORT int zrdbSetVariable(ZrDbDatabase* database, const ZrString& name, const ZrResBuf* value);

// The application's store, back to its first values (a new host starts from them).
ZRHOST_EXPORT void zrdbResetApplicationVariables();
int zrdbApplicationInteger(int variable);

// The texts of a colour as CECOLOR has it: "BYLAYER", "BYBLOCK", an index, "RGB:r,g,b".
ZRHOST_EXPORT ZrString zrdbColorText(const ZrCmColor& color);
ZRHOST_EXPORT bool zrdbParseColorText(const ZrString& text, ZrCmColor& color);
// Whether a lineweight is one of the standard weights, or one of the by-rule weights when allowed.
bool zrdbIsLineWeight(int weight, bool byRules);

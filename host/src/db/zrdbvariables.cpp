#include "zrdbvariables.h"

#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbinternal.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrsystem.h"
#include "zruievents.h"

#include <QRegularExpression>
#include <QString>
#include <algorithm>
#include <array>
#include <limits>
#include <unordered_map>
#include <vector>

namespace {

using Kind = ZrDbVariableKind;
using Records = ZrDbRecordKind;
constexpr double kHuge = std::numeric_limits<double>::max();

// Name, kind, records, minimum, maximum, minimum excluded, first number, first text.
const std::array<ZrDbVariableDefinition, kVariableCount> kDefinitions{{
    {L"CLAYER", Kind::kRecord, Records::kLayer, 0, 0, false, 0, nullptr},
    {L"CECOLOR", Kind::kColor, Records::kNone, 0, 0, false, 0, nullptr},
    {L"CELTYPE", Kind::kRecord, Records::kLinetype, 0, 0, false, 0, nullptr},
    {L"CELWEIGHT", Kind::kLineWeight, Records::kNone, -3, 211, false, -1, nullptr},
    {L"CELTSCALE", Kind::kReal, Records::kNone, 0, kHuge, true, 1.0, nullptr},
    {L"CMATERIAL", Kind::kRecord, Records::kMaterial, 0, 0, false, 0, nullptr},
    {L"TEXTSTYLE", Kind::kRecord, Records::kTextStyle, 0, 0, false, 0, nullptr},
    {L"DIMSTYLE", Kind::kRecord, Records::kDimStyle, 0, 0, false, 0, nullptr},
    {L"DIMTXSTY", Kind::kRecord, Records::kTextStyle, 0, 0, false, 0, nullptr},
    {L"DIMSCALE", Kind::kReal, Records::kNone, 0, kHuge, false, 1.0, nullptr},
    {L"CTABLESTYLE", Kind::kRecord, Records::kTableStyle, 0, 0, false, 0, nullptr},
    {L"CMLEADERSTYLE", Kind::kRecord, Records::kMLeaderStyle, 0, 0, false, 0, nullptr},
    {L"CPLOTSTYLE", Kind::kPlotStyleName, Records::kNone, 0, 0, false, 0, L"ByLayer"},
    {L"PSTYLEMODE", Kind::kInteger, Records::kNone, 0, 1, false, 0, nullptr},
    {L"TILEMODE", Kind::kInteger, Records::kNone, 0, 1, false, 1, nullptr},
    {L"CTAB", Kind::kRecord, Records::kLayout, 0, 0, false, 0, nullptr},
    {L"CVPORT", Kind::kViewport, Records::kNone, 0, 0, false, 0, nullptr},
    {L"LTSCALE", Kind::kReal, Records::kNone, 0, kHuge, true, 1.0, nullptr},
    {L"UCSNAME", Kind::kRecord, Records::kUcs, 0, 0, false, 0, nullptr},
    {L"UCSORG", Kind::kPoint, Records::kNone, 0, 0, false, 0, nullptr},
    {L"UCSXDIR", Kind::kPoint, Records::kNone, 0, 0, false, 0, nullptr},
    {L"UCSYDIR", Kind::kPoint, Records::kNone, 0, 0, false, 0, nullptr},
    {L"PUCSNAME", Kind::kRecord, Records::kUcs, 0, 0, false, 0, nullptr},
    {L"PUCSORG", Kind::kPoint, Records::kNone, 0, 0, false, 0, nullptr},
    {L"PUCSXDIR", Kind::kPoint, Records::kNone, 0, 0, false, 0, nullptr},
    {L"PUCSYDIR", Kind::kPoint, Records::kNone, 0, 0, false, 0, nullptr},
    {L"UCSORTHOVIEW", Kind::kInteger, Records::kNone, 0, 6, false, 0, nullptr},
    {L"PUCSORTHOVIEW", Kind::kInteger, Records::kNone, 0, 6, false, 0, nullptr},
    {L"LWDISPLAY", Kind::kInteger, Records::kNone, 0, 1, false, 0, nullptr},
    {L"LWUNITS", Kind::kInteger, Records::kNone, 0, 1, false, 1, nullptr},
    {L"LWDISPSCALE", Kind::kReal, Records::kNone, 0, 1, false, 0.55, nullptr},
    {L"INSUNITS", Kind::kInteger, Records::kNone, 0, 20, false, 4, nullptr},
    {L"CMDACTIVE", Kind::kCommandActive, Records::kNone, 0, 0, false, 0, nullptr},
    {L"BLOCKEDITOR", Kind::kInteger, Records::kNone, 0, 1, false, 0, nullptr},
    {L"LWDEFAULT", Kind::kLineWeight, Records::kNone, 0, 211, false, 25, nullptr},
    {L"WSCURRENT", Kind::kText, Records::kNone, 0, 0, false, 0, L"草图与注释"},
    {L"PICKFIRST", Kind::kInteger, Records::kNone, 0, 1, false, 1, nullptr},
}};

const int kStandardWeights[] = {0,  5,  9,  13, 15, 18, 20,  25,  30,  35,  40,  50,
                                53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

std::vector<ZrDbVariableValue>& applicationValues()
{
    static std::vector<ZrDbVariableValue> values = [] {
        std::vector<ZrDbVariableValue> initial;
        for (int i = 0; i < kVariableCount; ++i)
            initial.push_back(zrdbInitialValue(i));
        return initial;
    }();
    return values;
}

int commandActive()
{
    CXuDocContext* context = CXuSystem::instance()->docContext();
    return context && context->activeCommandCount() > 0 ? 1 : 0;
}

bool isPoint(const ZrResBuf* rb) { return rb->restype == RTPOINT || rb->restype == RT3DPOINT; }
bool isInteger(const ZrResBuf* rb) { return rb->restype == RTSHORT || rb->restype == RTLONG; }
int64_t integerOf(const ZrResBuf* rb) { return rb->restype == RTSHORT ? rb->resval.rint : rb->resval.rlong; }
bool isText(const ZrResBuf* rb) { return rb->restype == RTSTR && rb->resval.rstring; }

int toResBuf(const ZrDbDatabase* database, int id, const ZrDbVariableValue& value, ZrResBuf* out)
{
    const ZrDbVariableDefinition& definition = kDefinitions[static_cast<size_t>(id)];
    switch (definition.kind) {
    case Kind::kInteger:
    case Kind::kLineWeight:
        out->restype = RTSHORT;
        out->resval.rint = static_cast<short>(value.integer);
        return RTNORM;
    case Kind::kCommandActive:
        out->restype = RTSHORT;
        out->resval.rint = static_cast<short>(commandActive());
        return RTNORM;
    case Kind::kReal:
        out->restype = RTREAL;
        out->resval.rreal = value.real;
        return RTNORM;
    case Kind::kText:
    case Kind::kPlotStyleName: zrrbSetString(out, value.text); return RTNORM;
    case Kind::kPoint:
        out->restype = RT3DPOINT;
        out->resval.rpoint[0] = value.point.x;
        out->resval.rpoint[1] = value.point.y;
        out->resval.rpoint[2] = value.point.z;
        return RTNORM;
    case Kind::kColor: zrrbSetString(out, zrdbColorText(value.color)); return RTNORM;
    case Kind::kRecord:
        zrrbSetString(out, database ? zrdbData(database).recordName(definition.records, value.integer) : ZrString());
        return RTNORM;
    case Kind::kViewport: {
        // The model tile counts as viewport 2, as the paper viewport is 1.
        const ZrDbViewport* viewport = zrdbPeek<ZrDbViewport>(value.integer);
        out->restype = RTSHORT;
        out->resval.rint = static_cast<short>(viewport ? viewport->number() : 2);
        return RTNORM;
    }
    }
    return RTERROR;
}

bool withinLimits(const ZrDbVariableDefinition& definition, double number)
{
    if (definition.minimumExcluded ? number <= definition.minimum : number < definition.minimum)
        return false;
    return number <= definition.maximum;
}

// The viewport of the space in use with that number: the model tile is 2 in model space.
bool viewportNumbered(const ZrDbDatabase* database, int number, int64_t& viewport)
{
    const ZrDbData& data = zrdbData(database);
    if (data.variable(kVarTilemode).integer) {
        viewport = 0;
        return number == 2;
    }
    const ZrDbLayout* layout = zrdbPeek<ZrDbLayout>(data.variable(kVarCtab).integer);
    const ZrDbBlockTableRecord* block = layout ? zrdbPeek<ZrDbBlockTableRecord>(layout->getBlockTableRecordId()) : nullptr;
    if (!block)
        return false;
    for (int64_t handle : block->entityHandles()) {
        const ZrDbViewport* candidate = zrdbPeek<ZrDbViewport>(handle);
        if (candidate && candidate->number() == number) {
            viewport = handle;
            return true;
        }
    }
    return false;
}

int fromResBuf(ZrDbDatabase* database, int id, const ZrResBuf* in, ZrDbVariableValue& value)
{
    const ZrDbVariableDefinition& definition = kDefinitions[static_cast<size_t>(id)];
    switch (definition.kind) {
    case Kind::kInteger:
        if (!isInteger(in) || !withinLimits(definition, double(integerOf(in))))
            return RTERROR;
        value.integer = integerOf(in);
        return RTNORM;
    case Kind::kLineWeight:
        if (!isInteger(in) || !zrdbIsLineWeight(int(integerOf(in)), definition.minimum < 0))
            return RTERROR;
        value.integer = integerOf(in);
        return RTNORM;
    case Kind::kReal: {
        if (in->restype != RTREAL && !isInteger(in))
            return RTERROR;
        const double number = in->restype == RTREAL ? in->resval.rreal : double(integerOf(in));
        if (!withinLimits(definition, number))
            return RTERROR;
        value.real = number;
        return RTNORM;
    }
    case Kind::kText:
        if (!isText(in))
            return RTERROR;
        value.text = ZrString(in->resval.rstring);
        return RTNORM;
    case Kind::kPlotStyleName: {
        if (!isText(in) || !database)
            return RTERROR;
        const ZrString name(in->resval.rstring);
        for (const wchar_t* rule : {L"ByLayer", L"ByBlock"}) {
            if (name.compareNoCase(ZrString(rule)) == 0) {
                value.text = ZrString(rule);
                return RTNORM;
            }
        }
        const ZrDbDictionary* styles = zrdbPeek<ZrDbDictionary>(database->plotStyleNameDictionaryId());
        ZrDbObjectId style;
        if (!styles || styles->getAt(name, style) != Zr::eOk)
            return RTERROR;
        styles->nameAt(style, value.text);
        return RTNORM;
    }
    case Kind::kPoint:
        if (!isPoint(in))
            return RTERROR;
        value.point = ZrGePoint3d(in->resval.rpoint[0], in->resval.rpoint[1],
                                  in->restype == RT3DPOINT ? in->resval.rpoint[2] : 0.0);
        return RTNORM;
    case Kind::kColor:
        if (isInteger(in)) {
            const int64_t index = integerOf(in);
            if (index < 0 || index > 256)
                return RTERROR;
            value.color = ZrCmColor();
            value.color.setColorMethod(index == 256 ? ZrCmEntityColor::kByLayer
                                                    : index == 0 ? ZrCmEntityColor::kByBlock : ZrCmEntityColor::kByACI);
            value.color.setColorIndex(static_cast<uint16_t>(index));
            return RTNORM;
        }
        return isText(in) && zrdbParseColorText(ZrString(in->resval.rstring), value.color) ? RTNORM : RTERROR;
    case Kind::kRecord: {
        if (!isText(in) || !database)
            return RTERROR;
        const ZrString name(in->resval.rstring);
        // A UCS may go unnamed.
        if (name.isEmpty() && definition.records == Records::kUcs) {
            value.integer = 0;
            return RTNORM;
        }
        value.integer = zrdbData(database).recordNamed(definition.records, name);
        return value.integer ? RTNORM : RTERROR;
    }
    case Kind::kViewport:
        if (!isInteger(in) || !database)
            return RTERROR;
        return viewportNumbered(database, int(integerOf(in)), value.integer) ? RTNORM : RTERROR;
    case Kind::kCommandActive: return RTERROR;
    }
    return RTERROR;
}

} // namespace

bool ZrDbVariableValue::operator==(const ZrDbVariableValue& other) const
{
    return integer == other.integer && real == other.real && point.isEqualTo(other.point, 0.0)
        && text == other.text && color == other.color;
}

const ZrDbVariableDefinition& zrdbVariableDefinition(int variable)
{
    return kDefinitions[static_cast<size_t>(variable)];
}

int zrdbFindVariable(const ZrString& name)
{
    static const std::unordered_map<std::wstring, int> byName = [] {
        std::unordered_map<std::wstring, int> names;
        for (int i = 0; i < kVariableCount; ++i)
            names.emplace(zrdbFoldCase(ZrString(kDefinitions[static_cast<size_t>(i)].name)), i);
        return names;
    }();
    const auto found = byName.find(zrdbFoldCase(name));
    return found == byName.end() ? -1 : found->second;
}

ZrDbVariableValue zrdbInitialValue(int variable)
{
    const ZrDbVariableDefinition& definition = kDefinitions[static_cast<size_t>(variable)];
    ZrDbVariableValue value;
    value.integer = static_cast<int64_t>(definition.number);
    value.real = definition.number;
    value.text = ZrString(definition.text);
    if (variable == kVarUcsxdir || variable == kVarPucsxdir)
        value.point = ZrGePoint3d(1, 0, 0);
    else if (variable == kVarUcsydir || variable == kVarPucsydir)
        value.point = ZrGePoint3d(0, 1, 0);
    return value;
}

int zrdbGetVariable(const ZrDbDatabase* database, const ZrString& name, ZrResBuf* result)
{
    const int id = zrdbFindVariable(name);
    if (id < 0 || !result)
        return RTERROR;
    if (zrdbIsApplicationVariable(id))
        return toResBuf(database, id, applicationValues()[static_cast<size_t>(id)], result);
    if (!database)
        return RTERROR;
    return toResBuf(database, id, zrdbData(database).variable(id), result);
}

int zrdbSetVariable(ZrDbDatabase* database, const ZrString& name, const ZrResBuf* value)
{
    const int id = zrdbFindVariable(name);
    if (id < 0 || !value)
        return RTERROR;
    if (!zrdbIsApplicationVariable(id) && !database)
        return RTERROR;
    ZrDbVariableValue converted = zrdbIsApplicationVariable(id) ? applicationValues()[static_cast<size_t>(id)]
                                                                 : zrdbData(database).variable(id);
    if (fromResBuf(database, id, value, converted) != RTNORM)
        return RTERROR;
    if (!zrdbIsApplicationVariable(id))
        return zrdbData(database).changeVariable(id, converted) == Zr::eOk ? RTNORM : RTERROR;

    ZrDbVariableValue& stored = applicationValues()[static_cast<size_t>(id)];
    if (stored == converted)
        return RTNORM;
    stored = converted;
    CZrGlobalUIReactorHelp event;
    event.kind = kZrUiEventSysVar;
    event.name = ZrString(kDefinitions[static_cast<size_t>(id)].name);
    event.database = curDatabase();
    event.selectionActive = zrHostSelectionActive();
    zrHostPostUiEvent(event);
    return RTNORM;
}

void zrdbResetApplicationVariables()
{
    std::vector<ZrDbVariableValue>& values = applicationValues();
    for (int i = kVarCmdactive; i < kVariableCount; ++i)
        values[static_cast<size_t>(i)] = zrdbInitialValue(i);
}

int zrdbApplicationInteger(int variable)
{
    return static_cast<int>(applicationValues()[static_cast<size_t>(variable)].integer);
}

ZrString zrdbColorText(const ZrCmColor& color)
{
    if (color.isByLayer())
        return ZrString(L"BYLAYER");
    if (color.isByBlock())
        return ZrString(L"BYBLOCK");
    if (color.isByColor()) {
        ZrCmColor named = color;
        if (named.hasBookName())
            return ZrString(named.colorNameForDisplay());
        return ZrString(QStringLiteral("RGB:%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue()));
    }
    return ZrString(QString::number(color.colorIndex()));
}

bool zrdbParseColorText(const ZrString& text, ZrCmColor& color)
{
    const QString trimmed = text.toQString().trimmed();
    ZrCmColor parsed;
    if (trimmed.compare(QLatin1String("BYLAYER"), Qt::CaseInsensitive) == 0) {
        parsed.setColorMethod(ZrCmEntityColor::kByLayer);
    } else if (trimmed.compare(QLatin1String("BYBLOCK"), Qt::CaseInsensitive) == 0) {
        parsed.setColorMethod(ZrCmEntityColor::kByBlock);
    } else {
        static const QRegularExpression rgb(QStringLiteral("^RGB:\\s*(\\d{1,3})\\s*,\\s*(\\d{1,3})\\s*,\\s*(\\d{1,3})$"),
                                            QRegularExpression::CaseInsensitiveOption);
        const QRegularExpressionMatch match = rgb.match(trimmed);
        bool isIndex = false;
        const int index = trimmed.toInt(&isIndex);
        if (match.hasMatch()) {
            int channels[3];
            for (int i = 0; i < 3; ++i) {
                channels[i] = match.captured(i + 1).toInt();
                if (channels[i] > 255)
                    return false;
            }
            parsed.setRGB(uint8_t(channels[0]), uint8_t(channels[1]), uint8_t(channels[2]));
        } else if (isIndex && index >= 1 && index <= 255) {
            parsed.setColorMethod(ZrCmEntityColor::kByACI);
            parsed.setColorIndex(static_cast<uint16_t>(index));
        } else {
            return false;
        }
    }
    color = parsed;
    return true;
}

bool zrdbIsLineWeight(int weight, bool byRules)
{
    if (weight < 0)
        return byRules && weight >= ZrDb::kLnWtByLwDefault;
    return std::find(std::begin(kStandardWeights), std::end(kStandardWeights), weight) != std::end(kStandardWeights);
}

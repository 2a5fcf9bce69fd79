#include "zrplotsvr.h"

#include "zrconfig.h"
#include "zrplotdialogs.h"

#include <algorithm>
#include <cmath>

ZR_RX_DEFINE_MEMBERS(CXuPlotSvr, ZrRxObject)

namespace {

// Everything lives in the user configuration, so the choices of one export are there for the next
// run as well; nothing is kept in the service.
ZrJsonPtr settings()
{
    return zr_user_config("Publish", 2);
}

bool readBool(const char* key, bool def)
{
    const ZrJsonPtr node = settings();
    return node ? node->GetVarB(key, def) : def;
}

int readInt(const char* key, int def)
{
    const ZrJsonPtr node = settings();
    return node ? node->GetVarI(key, def) : def;
}

void writeBool(const char* key, bool value)
{
    if (const ZrJsonPtr node = settings())
        node->SetDataB(key, value);
}

void writeInt(const char* key, int value)
{
    if (const ZrJsonPtr node = settings())
        node->SetDataI(key, value);
}

const char* rangeKey(bool modelLayout)
{
    return modelLayout ? "range/model" : "range/layout";
}

// Display, extents and window in the model; current and all layouts on paper.
int rangeCount(bool modelLayout)
{
    return modelLayout ? 3 : 2;
}

constexpr int kWindowRange = 2;

} // namespace

bool CXuPlotSvr::showPlotStampDialog(QWidget* parent)
{
    SXuPlotStampFields fields = plotStampFields();
    if (!zrPlotStampDialog(parent, fields))
        return false;
    setPlotStampFields(fields);
    return true;
}

bool CXuPlotSvr::showPublishOptionsDialog(QWidget* parent)
{
    SXuPublishOptions options = publishOptions();
    if (!zrPublishOptionsDialog(parent, options))
        return false;
    setPublishOptions(options);
    return true;
}

SXuPublishOptions CXuPlotSvr::publishOptions() const
{
    SXuPublishOptions options;
    const ZrJsonPtr node = settings();
    if (!node)
        return options;
    options.sheetMode = node->GetVarI("options/sheetMode", options.sheetMode) == 0 ? 0 : 1;
    options.layerInformation = node->GetVarB("options/layerInformation", options.layerInformation);
    options.mergeControl = node->GetVarB("options/mergeControl", options.mergeControl);
    options.passwordProtected = node->GetVarB("options/passwordProtected", options.passwordProtected);
    options.passwordPrompt = node->GetVarB("options/passwordPrompt", options.passwordPrompt);
    options.blockInformation = node->GetVarB("options/blockInformation", options.blockInformation);
    options.password = node->GetVarSW("options/password");
    options.blockTemplate = node->GetVarSW("options/blockTemplate");
    return options;
}

void CXuPlotSvr::setPublishOptions(const SXuPublishOptions& options)
{
    const ZrJsonPtr node = settings();
    if (!node)
        return;
    node->SetDataI("options/sheetMode", options.sheetMode);
    node->SetDataB("options/layerInformation", options.layerInformation);
    node->SetDataB("options/mergeControl", options.mergeControl);
    node->SetDataB("options/passwordProtected", options.passwordProtected);
    node->SetDataB("options/passwordPrompt", options.passwordPrompt);
    node->SetDataB("options/blockInformation", options.blockInformation);
    node->SetDataSW("options/password", options.password);
    node->SetDataSW("options/blockTemplate", options.blockTemplate);
}

void CXuPlotSvr::setPublishType(int kind, int mode)
{
    writeInt("publishKind", std::clamp(kind, 0, 2));
    writeInt("publishMode", mode);
}

int CXuPlotSvr::publishKind() const { return std::clamp(readInt("publishKind", 2), 0, 2); }
int CXuPlotSvr::publishMode() const { return readInt("publishMode", 1); }

void CXuPlotSvr::setOpenInViewer(bool open) { writeBool("openInViewer", open); }
bool CXuPlotSvr::openInViewer() const { return readBool("openInViewer", false); }
void CXuPlotSvr::setPlotStamp(bool on) { writeBool("plotStamp", on); }
bool CXuPlotSvr::plotStamp() const { return readBool("plotStamp", false); }

SXuPlotStampFields CXuPlotSvr::plotStampFields() const
{
    SXuPlotStampFields fields;
    const ZrJsonPtr node = settings();
    if (!node)
        return fields;
    fields.drawingName = node->GetVarB("plotStampFields/drawingName", fields.drawingName);
    fields.layoutName = node->GetVarB("plotStampFields/layoutName", fields.layoutName);
    fields.dateTime = node->GetVarB("plotStampFields/dateTime", fields.dateTime);
    fields.loginName = node->GetVarB("plotStampFields/loginName", fields.loginName);
    fields.deviceName = node->GetVarB("plotStampFields/deviceName", fields.deviceName);
    fields.paperSize = node->GetVarB("plotStampFields/paperSize", fields.paperSize);
    fields.plotScale = node->GetVarB("plotStampFields/plotScale", fields.plotScale);
    return fields;
}

void CXuPlotSvr::setPlotStampFields(const SXuPlotStampFields& fields)
{
    const ZrJsonPtr node = settings();
    if (!node)
        return;
    node->SetDataB("plotStampFields/drawingName", fields.drawingName);
    node->SetDataB("plotStampFields/layoutName", fields.layoutName);
    node->SetDataB("plotStampFields/dateTime", fields.dateTime);
    node->SetDataB("plotStampFields/loginName", fields.loginName);
    node->SetDataB("plotStampFields/deviceName", fields.deviceName);
    node->SetDataB("plotStampFields/paperSize", fields.paperSize);
    node->SetDataB("plotStampFields/plotScale", fields.plotScale);
}

void CXuPlotSvr::preparePlotRanges(bool modelLayout)
{
    const int index = readInt(rangeKey(modelLayout), 0);
    if (index < 0 || index >= rangeCount(modelLayout))
        writeInt(rangeKey(modelLayout), 0);
}

void CXuPlotSvr::setPlotRange(int index, bool modelLayout)
{
    if (index >= 0 && index < rangeCount(modelLayout))
        writeInt(rangeKey(modelLayout), index);
}

int CXuPlotSvr::plotRange(bool modelLayout) const
{
    const int index = readInt(rangeKey(modelLayout), 0);
    return index >= 0 && index < rangeCount(modelLayout) ? index : 0;
}

bool CXuPlotSvr::needsWindowPick() const
{
    double x1, y1, x2, y2;
    return plotRange(true) == kWindowRange && !plotWindow(x1, y1, x2, y2);
}

bool CXuPlotSvr::pickWindow(QWidget* parent)
{
    double corners[4] = {0, 0, 0, 0};
    plotWindow(corners[0], corners[1], corners[2], corners[3]);
    if (!zrPlotWindowDialog(parent, corners))
        return false;
    setPlotWindow(corners[0], corners[1], corners[2], corners[3]);
    return true;
}

bool CXuPlotSvr::plotWindow(double& x1, double& y1, double& x2, double& y2) const
{
    const ZrJsonPtr node = settings();
    const ZrJsonPtr window = node ? node->safeProperty_ptr("window") : ZrJsonPtr();
    if (!window || window->ArrayCount() != 4)
        return false;
    double values[4];
    for (int i = 0; i < 4; ++i) {
        const ZrJsonPtr value = window->at(i);
        if (!value->isNumber() || !std::isfinite(value->safeRealValue()))
            return false;
        values[i] = value->safeRealValue();
    }
    // A window without area plots nothing: it counts as not picked.
    if (values[0] == values[2] || values[1] == values[3])
        return false;
    x1 = values[0];
    y1 = values[1];
    x2 = values[2];
    y2 = values[3];
    return true;
}

void CXuPlotSvr::setPlotWindow(double x1, double y1, double x2, double y2)
{
    const ZrJsonPtr node = settings();
    if (!node)
        return;
    ZrJsonPtr window = ElementValue::createObject(1);
    for (double value : {x1, y1, x2, y2})
        window->append(ElementValue::fromReal(value));
    node->SetDataJ("window", window);
}

bool CXuPlotSvr::editPageSetupOverride(ZrDbObjectId settings, int overrideKind, QWidget* parent)
{
    return zrPageSetupOverrideDialog(parent, settings, overrideKind);
}

void CXuPlotSvr::setUseOverride(bool use) { writeBool("useOverride", use); }
bool CXuPlotSvr::useOverride() const { return readBool("useOverride", false); }

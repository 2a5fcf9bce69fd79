#include "zrdbplotsettings.h"

#include "zrdbdict.h"

ZR_RX_DEFINE_MEMBERS(ZrDbPlotSettings, ZrDbObject)

int ZrDbPlotSettings::copyFrom(const ZrRxObject* other)
{
    if (const ZrDbLayout* layout = ZrDbLayout::cast(other)) {
        if (const int status = prepareWrite())
            return status;
        m_name = layout->getLayoutName();
        m_modelType = layout->modelType();
        return Zr::eOk;
    }
    return zrdbAssign(*this, other);
}

int ZrDbPlotSettings::setPlotSettingsName(const ZrString& name) { return writeField(m_name, name); }
int ZrDbPlotSettings::setCanonicalMediaName(const ZrString& name) { return writeField(m_mediaName, name); }
int ZrDbPlotSettings::setPlotRotation(PlotRotation rotation) { return writeField(m_rotation, rotation); }

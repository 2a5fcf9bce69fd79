#pragma once
// Named page setups of a drawing.

#include "zrdbobject.h"
#include "zrstring.h"

class ZRHOST_EXPORT ZrDbPlotSettings : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbPlotSettings)
public:
    enum PlotRotation : int { k0degrees = 0, k90degrees = 1, k180degrees = 2, k270degrees = 3 };

    explicit ZrDbPlotSettings(bool modelType = true) : m_modelType(modelType) {}
    ZrRxObject* clone() const override { return new ZrDbPlotSettings(*this); }
    // Takes another page setup, or the page setup part of a layout: its name and its space.
    int copyFrom(const ZrRxObject* other) override;

    ZrString getPlotSettingsName() const { return m_name; }
    int setPlotSettingsName(const ZrString& name);
    // True for a page setup of the model, false for one of a paper layout.
    bool modelType() const { return m_modelType; }
    // The paper, by the name the user chose it by ("ISO A4 (210.00 x 297.00 毫米)").
    ZrString getCanonicalMediaName() const { return m_mediaName; }
    int setCanonicalMediaName(const ZrString& name);
    PlotRotation plotRotation() const { return m_rotation; }
    int setPlotRotation(PlotRotation rotation);

private:
    ZrString m_name;
    ZrString m_mediaName = ZrString(L"ISO A4 (210.00 x 297.00 毫米)");
    bool m_modelType = true;
    PlotRotation m_rotation = k0degrees;
};

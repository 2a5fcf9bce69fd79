#include "zrcmcolor.h"

#include "zrcolorpalette.h"

void ZrCmColorToJson(const ZrCmColor& color, ZrJsonPtr param)
{
    if (!param)
        return;
    param->SetDataI("method", int(color.colorMethod()));
    param->SetDataI("index", int(color.colorIndex()));
    param->SetDataI("rgb", int(zrPackRgb(color.red(), color.green(), color.blue())));
    param->SetDataSW("colorName", ZrString(color.colorName()));
    param->SetDataSW("bookName", ZrString(color.bookName()));
}

ZrCmColor JsonToZrCmColor(ZrJsonPtr param)
{
    ZrCmColor color;
    if (!param || !param->isObject())
        return color;
    int method = 0;
    if (param->GetDataI("method", method))
        color.setColorMethod(static_cast<ZrCmEntityColor::ColorMethod>(uint8_t(method)));
    int index = 0;
    if (param->GetDataI("index", index))
        color.setColorIndex(uint16_t(index));
    int rgb = 0;
    if (color.isByColor() && param->GetDataI("rgb", rgb))
        color.setRGB(uint8_t(rgb), uint8_t(rgb >> 8), uint8_t(rgb >> 16));
    const ZrString colorName = param->GetVarSW("colorName");
    const ZrString bookName = param->GetVarSW("bookName");
    color.setNames(colorName.kwszPtr(), bookName.kwszPtr());
    return color;
}

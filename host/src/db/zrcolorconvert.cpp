#include "zrcmcolor.h"

#include <algorithm>
#include <cmath>

namespace {

double clampUnit(double value) { return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0; }

// One channel of an HSL colour: `hue` in sixths of the circle, shifted for the channel.
double channelOfHue(double low, double high, double hue)
{
    hue -= 6.0 * std::floor(hue / 6.0);
    if (hue < 1.0)
        return low + (high - low) * hue;
    if (hue < 3.0)
        return high;
    if (hue < 4.0)
        return low + (high - low) * (4.0 - hue);
    return low;
}

} // namespace

void zrdbConvertRgbToHsl(const ZrGeVector3d& rgb, ZrGeVector3d& hsl)
{
    const double red = clampUnit(rgb.x);
    const double green = clampUnit(rgb.y);
    const double blue = clampUnit(rgb.z);
    const double high = std::max({red, green, blue});
    const double low = std::min({red, green, blue});
    const double luminance = (high + low) / 2.0;
    const double range = high - low;
    if (range <= 0.0) {
        hsl = ZrGeVector3d(0.0, 0.0, luminance);
        return;
    }
    const double saturation = range / (1.0 - std::fabs(2.0 * luminance - 1.0));
    double hue;
    if (high == red)
        hue = (green - blue) / range;
    else if (high == green)
        hue = (blue - red) / range + 2.0;
    else
        hue = (red - green) / range + 4.0;
    hue *= 60.0;
    if (hue < 0.0)
        hue += 360.0;
    hsl = ZrGeVector3d(hue, std::min(saturation, 1.0), luminance);
}

void zrdbConvertHslToRgb(const ZrGeVector3d& hsl, ZrGeVector3d& rgb)
{
    const double hue = std::isfinite(hsl.x) ? hsl.x / 60.0 : 0.0;
    const double saturation = clampUnit(hsl.y);
    const double luminance = clampUnit(hsl.z);
    const double chroma = (1.0 - std::fabs(2.0 * luminance - 1.0)) * saturation;
    const double low = luminance - chroma / 2.0;
    const double high = low + chroma;
    rgb = ZrGeVector3d(channelOfHue(low, high, hue + 2.0), channelOfHue(low, high, hue),
                       channelOfHue(low, high, hue - 2.0));
}

ZrString zrutColorToStr(short index)
{
    if (index == 0)
        return ZrString(L"BYBLOCK");
    if (index == 256)
        return ZrString(L"BYLAYER");
    return ZrString(std::to_wstring(index));
}

#pragma once
// What the lineweight box, the lineweight list and the lineweight dialog share: the standard
// weights, the pen that draws each at a display scale, and the pixmap of a row.

#include "zrdbobjectid.h"

#include <QColor>
#include <QPixmap>
#include <array>

namespace ZrLineWeights {

// Hundredths of a millimetre, ascending.
constexpr std::array<int, 24> kStandard = {0,  5,  9,  13, 15, 18, 20,  25,  30,  35,  40,  50,
                                           53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
constexpr double kFirstScale = 0.5;

bool isStandard(int weight);

// The pen width of `weight` in a row `rowHeight` pixels high at the display scale `scale`.
int thickness(int weight, double scale, int rowHeight);

// A transparent pixmap of `width` by `height` with one horizontal line `penWidth` wide across its
// middle, in device pixels of `pixelRatio` to the pixel.
QPixmap linePixmap(int width, int height, int penWidth, const QColor& color, qreal pixelRatio);

// LWUNITS 0: inches; anything else, or a variable that cannot be read, millimetres.
bool inchesInUse();

} // namespace ZrLineWeights

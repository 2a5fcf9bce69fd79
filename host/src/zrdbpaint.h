#pragma once
// Colours of entities on screen. Private to the host library.

#include "zrcmcolor.h"

#include <QColor>

// The colour a drawing colour shows in: index 7 and the by-rule colours take `foreground`.
QColor zrdbDisplayColor(const ZrCmColor& color, const QColor& foreground);

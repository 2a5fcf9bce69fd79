#pragma once
// The reference host's own small icons, drawn in the palette's colours at the screen's pixel ratio.

#include <QIcon>

class QColor;
class QPalette;

namespace ZrHostIcons {

// A curved arrow to the left; redo is its mirror image.
QIcon undo(const QPalette& palette);
QIcon redo(const QPalette& palette);

// Layer states: a bulb lit or dark, a snowflake or a sun, a padlock shut or open.
QIcon layerOn(bool on, const QPalette& palette);
QIcon layerFrozen(bool frozen);
QIcon layerLocked(bool locked, const QPalette& palette);
// A square of the colour with a thin frame.
QIcon swatch(const QColor& color, const QPalette& palette);

} // namespace ZrHostIcons

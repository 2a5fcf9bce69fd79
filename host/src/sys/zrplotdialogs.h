#pragma once
// The dialogs of the plot service. Private to the host library.

#include "zrdbobjectid.h"
#include "zrplotsvr.h"

class QWidget;

// Each edits its record in place on OK and answers true; Cancel leaves it as it was.
bool zrPlotStampDialog(QWidget* parent, SXuPlotStampFields& fields);
bool zrPublishOptionsDialog(QWidget* parent, SXuPublishOptions& options);
// The window's corners x1, y1, x2, y2 in drawing units.
bool zrPlotWindowDialog(QWidget* parent, double corners[4]);
// Edits the paper and its rotation of a page setup of the drawing.
bool zrPageSetupOverrideDialog(QWidget* parent, ZrDbObjectId settings, int overrideKind);

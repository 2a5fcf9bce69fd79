#pragma once
// What the documents' views and commands tell the host. Private to the host library; exported for
// its control library.

#include "zrhost_export.h"

#include <functional>

struct ZrHostDocuments
{
    // Whether a view paints the drawing: until then the drawing surfaces answer that a redraw would
    // have nothing to do.
    bool drawingSurfaceActive = false;
    // Called whenever a drawing surface is asked to redraw, so that the view repaints.
    std::function<void()> redrawListener;
    // How often a command object was told its state.
    int commandStateCalls = 0;
};

ZRHOST_EXPORT ZrHostDocuments& zrHostDocuments();

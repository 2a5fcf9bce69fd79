#pragma once
// Service 19, the host's line type choice. Private to the host library.

#include "zrrxobject.h"

// A new service object, as the host registers it at its start.
ZrRxObjectPtr zrHostNewLinetypeService();

// The command LINETYPE: the choice over the main window; the line type chosen becomes the drawing's
// current one (CELTYPE).
void zrHostLinetypeCommand();

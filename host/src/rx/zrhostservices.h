#pragma once
// The numbered services and the system registry. Private to the host library; exported for its
// control library.

#include "zrhost_export.h"

// Makes the system registry with its command stack, the database service, the help service and the
// plot service "CXuPlotSvr", as the host has them from its start; a second start begins afresh.
ZRHOST_EXPORT void zrHostStartServices();
// Empties the slots one at a time, so that a service that looks at the others while it dies finds
// them sane, then drops the numbered services and the registry.
ZRHOST_EXPORT void zrHostStopServices();

#pragma once
// Modules of the host loaded by name while it runs.

#include "zrhost_export.h"
#include "zrrxobject.h"
#include "zrstring.h"

// Loads the module `name` (the file NAME.zrx in the host's module folders) once a run, and gives a
// reference to its object; null when there is no such module or it gives no object. `silent` keeps
// the reason to itself, otherwise it goes to the warning channel. The module folders are those of
// $ZR_HOST_MODULE_PATH (':'-separated) when it is set, else lib/ZrHost/modules beside the host's library.
ZRHOST_EXPORT ZrRxObjectPtr zrrxDynamicLinkerLoadAppEx(const ZrString& name, bool silent, int loadReason,
                                                       bool asCommand);

// The entry a module exports: a counted object whose reference goes to the loader.
using ZrRxModuleEntry = ZrRxObject* (*)();
#define ZR_RX_MODULE_ENTRY_NAME "zrrxCreateModuleObject"

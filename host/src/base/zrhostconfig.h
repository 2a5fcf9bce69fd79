#pragma once
// The configuration stores of the host. Private to the host library; exported for its control
// library.

#include "zrhost_export.h"
#include "zrjson.h"

#include <QString>

// Opens the stores: the user's read from "user-config.json" in `folder` (the user's configuration
// folder when empty), the runtime, system and language ones built from the arguments. A damaged
// file is kept aside; one that cannot be read is left alone and the user's store runs on defaults.
ZRHOST_EXPORT void zrHostOpenConfig(const QString& folder, const QString& resourceRoot, const QString& language);
// Closes the stores; the user's is not saved here.
ZRHOST_EXPORT void zrHostCloseConfig();
ZRHOST_EXPORT QString zrHostUserConfigFile();
// "ResRootPath" of the runtime configuration.
ZRHOST_EXPORT void zrHostSetResourceRoot(const QString& root);

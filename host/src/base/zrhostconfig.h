#pragma once
// The configuration stores of the host. Private to the host library; exported for its control
// library.

#include "zrhost_export.h"
#include "zrjson.h"

#include <QString>

// Opens the stores: the user's read from "user-config.json" in `folder` (the user's configuration
// folder when empty), the runtime, system and language ones built from the arguments.
ZRHOST_EXPORT void zrHostOpenConfig(const QString& folder, const QString& resourceRoot, const QString& language);
// Closes the stores; the user's is not saved here.
ZRHOST_EXPORT void zrHostCloseConfig();
ZRHOST_EXPORT QString zrHostUserConfigFile();
// "ResRootPath" of the runtime configuration.
ZRHOST_EXPORT void zrHostSetResourceRoot(const QString& root);

// Reads a file of the user configuration; an unreadable or broken file gives an empty object.
ZrJsonPtr zrHostReadConfigFile(const QString& file);
// Writes atomically: a temporary file beside the target, then a rename.
bool zrHostWriteConfigFile(const QString& file, const ZrJsonPtr& tree);
// Walks "/" separated paths; with `create` missing objects are made on the way.
ZrJsonPtr zrHostConfigNode(const ZrJsonPtr& root, const ZrUtf8String& path, bool create);

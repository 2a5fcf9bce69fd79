#pragma once
// The host's configuration stores. Paths are "/"-separated.

#include "zrhost_export.h"
#include "zrjson.h"
#include "zrstring.h"

// The user configuration, kept in a file of the user's configuration folder.
// Modes 0 and 1 answer the node or a null handle; mode 2 makes missing objects along the path.
ZRHOST_EXPORT ZrJsonPtr zr_user_config(const ZrUtf8String& path, int mode = 0);
// Writes the user configuration to its file, atomically. The section is ignored: the whole tree goes.
ZRHOST_EXPORT bool zr_save_user_config(const ZrUtf8String& section);
// Values of this run: "ResRootPath", "paths/templatePaths".
ZRHOST_EXPORT ZrJsonPtr zr_runtime_config(const ZrUtf8String& path);
// Values of the installation: "Core/AppInfo/version".
ZRHOST_EXPORT ZrJsonPtr zr_sys_config(const ZrUtf8String& path);
// The language settings, with "curLanguage".
ZRHOST_EXPORT ZrJsonPtr zr_language_config();
// The language code of the user interface, "zh-CN" or "en-WW".
ZRHOST_EXPORT ZrUtf8String zr_sys_language();
// The product's own texts by key: "appEnName" gives "ZrCAD"; an unknown key gives an empty text.
ZRHOST_EXPORT void zr_getOEMStringRePlace(ZrString& out, const char* key);

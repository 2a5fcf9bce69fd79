#pragma once
// Walking the entries of a folder.

#include "zrhost_export.h"
#include "zrstring.h"

#include <cstdint>

struct ZrFindDataUtf8
{
    ZrUtf8String name;
    bool isDir = false;
};

// Lists the entries of the folder `pattern` names, by name, "." and ".." left out ("FOLDER/" lists
// all; "FOLDER/*.acb" filters by name, ignoring case); the first goes into `data`. Answers a handle,
// or -1 when there is no entry.
ZRHOST_EXPORT intptr_t findfirstUtf8(const ZrUtf8String& pattern, ZrFindDataUtf8* data);
// 0, or -1 after the last entry.
ZRHOST_EXPORT int findnextUtf8(intptr_t handle, ZrFindDataUtf8* data);
ZRHOST_EXPORT int findcloseUtf8(intptr_t handle);
ZRHOST_EXPORT bool isDir(const ZrUtf8String& path);

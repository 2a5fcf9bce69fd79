#pragma once
// Where the host looks for its files, as the control library may set it. Private to the host library;
// exported for its control library.

#include "zrhost_export.h"

#include <QStringList>

struct ZrHostPaths
{
    // When set, the colour book folders are exactly these, and nothing else is searched.
    bool colorBookFoldersFixed = false;
    QStringList colorBookFolders;
};

ZRHOST_EXPORT ZrHostPaths& zrHostPaths();

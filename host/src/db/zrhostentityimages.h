#pragma once
// What zrsiutCreateEntityImage was last asked to draw. Private to the host library; exported for
// its control library.

#include "zrdbobjectid.h"
#include "zrhost_export.h"
#include "zrjson.h"

#include <vector>

// The line type and line type scale of each entity, and a copy of the parameter object ("width",
// "height", "bfillbackground", "background").
struct ZrHostEntityImageRequest
{
    struct Entity
    {
        ZrDbObjectId linetype;
        double linetypeScale = 1.0;
    };
    std::vector<Entity> entities;
    // Null until the first request, or when it came without one.
    ZrJsonPtr options;
};

ZRHOST_EXPORT ZrHostEntityImageRequest& zrHostLastEntityImageRequest();

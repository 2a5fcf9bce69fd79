#pragma once
// Selection sets by their two-word names.

#include "zrdbobjectid.h"
#include "zrhost_export.h"

#include <cstdint>

// Members of a selection; RTNORM on success.
ZRHOST_EXPORT int zredSSLength(const long ss[2], int32_t* length);
// The entity name of member `i`.
ZRHOST_EXPORT int zredSSName(const long ss[2], int32_t i, long entity[2]);
ZRHOST_EXPORT int zredSSFree(const long ss[2]);
// The id of an entity name; 0 on success.
ZRHOST_EXPORT int zrdbGetObjectId(ZrDbObjectId& id, const long entity[2]);

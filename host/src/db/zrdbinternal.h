#pragma once
// Internals of the drawing database shared by its source files. Private to the host library; what
// the control library needs is exported.

#include "zrdbobject.h"
#include "zrhost_export.h"
#include "zrresbuf.h"
#include "zrstring.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class ZrDbDatabase;

// The process-wide table of objects by handle: handles grow and are never used twice, so a handle
// of a database that is gone finds nothing rather than another object.
namespace ZrDbObjects {
ZRHOST_EXPORT int64_t add(ZrDbObject* object);
ZRHOST_EXPORT ZrDbObject* at(int64_t handle);
void forget(int64_t handle);
ZRHOST_EXPORT void reserve(size_t more);
} // namespace ZrDbObjects

// An object of class T by handle, for reading inside the host without opening it; null when there
// is none, it is erased, or it is of another class.
template <class T>
T* zrdbPeek(int64_t handle)
{
    ZrDbObject* object = ZrDbObjects::at(handle);
    return object && !object->isErased() ? T::cast(object) : nullptr;
}
template <class T>
T* zrdbPeek(ZrDbObjectId id)
{
    return zrdbPeek<T>(id.handle());
}

// The pool of plot style names entities keep an index into; index 0 is "ByLayer".
uint32_t zrdbPlotStyleIndex(const ZrString& name);
ZrString zrdbPlotStyleName(uint32_t index);

// The key names are compared by: each character folded to one case, as ZrString::compareNoCase does.
std::wstring zrdbFoldCase(const ZrString& name);

// What a result buffer's value is, by its type code (RT* codes and group codes alike).
enum class ZrRbValue { kNone, kString, kReal, kPoint, kShort, kLong };
ZRHOST_EXPORT ZrRbValue zrrbValueOf(int type);
// A deep copy of a chain.
ZrResBuf* zrrbCopyChain(const ZrResBuf* chain);
// Gives the buffer a string value of its own.
ZRHOST_EXPORT void zrrbSetString(ZrResBuf* rb, const ZrString& text);

// The viewport a drawing's view works in now, answering ZrDbAbstractViewportData; null without a drawing.
ZrRxObjectPtr zrdbActiveViewport(ZrDbDatabase* database);

// Selection sets by name: the pick-first selections of the documents. A name is never used twice.
long zrHostNewSelection(std::vector<ZrDbObjectId> ids);
void zrHostFreeSelection(long name);
// The members of a set; empty for a name that is not in use.
const std::vector<ZrDbObjectId>& zrHostSelection(long name);
// The two-word name under which the host's selection functions know a set.
void zrHostSelectionName(long name, long words[2]);

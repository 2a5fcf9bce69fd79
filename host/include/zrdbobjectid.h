#pragma once
// Ids of drawing database objects.

#include "zrhost_export.h"

#include <cstdint>
#include <functional>

class ZRHOST_EXPORT ZrDbObjectId
{
public:
    ZrDbObjectId() = default;
    explicit ZrDbObjectId(int64_t handle) : m_handle(handle) {}

    static const ZrDbObjectId kNull;

    int64_t handle() const { return m_handle; }
    bool isNull() const { return m_handle == 0; }
    bool isValid() const { return m_handle != 0; }
    // The null id counts as erased: nothing can be opened through it.
    bool isErased() const;

    friend bool operator==(ZrDbObjectId a, ZrDbObjectId b) { return a.m_handle == b.m_handle; }
    friend bool operator!=(ZrDbObjectId a, ZrDbObjectId b) { return a.m_handle != b.m_handle; }
    friend bool operator<(ZrDbObjectId a, ZrDbObjectId b) { return a.m_handle < b.m_handle; }

private:
    int64_t m_handle = 0;
};

namespace ZrDb {
// Lineweights in hundredths of a millimetre; the negative values are the by-rule weights.
enum LineWeight : int32_t {
    kLnWt000 = 0,
    kLnWtByLayer = -1,
    kLnWtByBlock = -2,
    kLnWtByLwDefault = -3,
};
} // namespace ZrDb

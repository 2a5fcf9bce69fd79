#pragma once
// Reads of the drawing that only the module's own controls make.

#include "zrdbobjectid.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class ZrDbDatabase;

namespace zrqthelper {

// A text kept in a buffer of texts laid one after the other: a list of thousands of records then
// costs one allocation, not one per record.
struct TextSpan
{
    uint32_t offset = 0;
    uint32_t length = 0;

    std::wstring_view in(const std::wstring& texts) const { return std::wstring_view(texts).substr(offset, length); }
};

// What a layer list needs of one layer.
struct LayerListEntry
{
    TextSpan name;
    ZrDbObjectId id;
    bool frozen = false;
    bool hidden = false;
};

struct LayerList
{
    std::wstring names;
    std::vector<LayerListEntry> entries;
};

// The layers of getLayerInfos in its order, without the layers that can't be read or have no
// name, and without reading what a list does not show. A null database means the current one.
LayerList getLayerList(ZrDbDatabase* db = nullptr);

} // namespace zrqthelper

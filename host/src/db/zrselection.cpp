#include "zrselection.h"

#include "zrdbinternal.h"
#include "zrresbuf.h"

#include <unordered_map>

namespace {

// The second word of every name, so that a stray pair of numbers is not taken for one.
constexpr long kSelectionTag = 0x5353;
constexpr long kEntityTag = 0x454e;

struct SelectionSets
{
    std::unordered_map<long, std::vector<ZrDbObjectId>> sets;
    long lastName = 0;
    // Walks ask for the same set over and over: the last one found is kept at hand.
    long cachedName = 0;
    const std::vector<ZrDbObjectId>* cached = nullptr;

    const std::vector<ZrDbObjectId>* find(const long words[2])
    {
        if (!words || words[1] != kSelectionTag)
            return nullptr;
        if (words[0] == cachedName && cached)
            return cached;
        const auto found = sets.find(words[0]);
        if (found == sets.end())
            return nullptr;
        cachedName = words[0];
        cached = &found->second;
        return cached;
    }
};

// Never destroyed: documents that outlive main's scope free their sets into it.
SelectionSets& selectionSets()
{
    static auto* sets = new SelectionSets;
    return *sets;
}

} // namespace

long zrHostNewSelection(std::vector<ZrDbObjectId> ids)
{
    SelectionSets& all = selectionSets();
    const long name = ++all.lastName;
    all.sets.emplace(name, std::move(ids));
    return name;
}

void zrHostFreeSelection(long name)
{
    SelectionSets& all = selectionSets();
    if (all.cachedName == name)
        all.cached = nullptr;
    all.sets.erase(name);
}

const std::vector<ZrDbObjectId>& zrHostSelection(long name)
{
    static const std::vector<ZrDbObjectId> none;
    const long words[2] = {name, kSelectionTag};
    const std::vector<ZrDbObjectId>* set = selectionSets().find(words);
    return set ? *set : none;
}

void zrHostSelectionName(long name, long words[2])
{
    words[0] = name;
    words[1] = kSelectionTag;
}

int zredSSLength(const long ss[2], int32_t* length)
{
    const std::vector<ZrDbObjectId>* set = selectionSets().find(ss);
    if (!set || !length)
        return RTERROR;
    *length = static_cast<int32_t>(set->size());
    return RTNORM;
}

int zredSSName(const long ss[2], int32_t i, long entity[2])
{
    const std::vector<ZrDbObjectId>* set = selectionSets().find(ss);
    if (!set || !entity || i < 0 || static_cast<size_t>(i) >= set->size())
        return RTERROR;
    entity[0] = static_cast<long>((*set)[static_cast<size_t>(i)].handle());
    entity[1] = kEntityTag;
    return RTNORM;
}

int zredSSFree(const long ss[2])
{
    // The pick-first set belongs to its document, which frees it when the selection changes.
    return selectionSets().find(ss) ? RTNORM : RTERROR;
}

int zrdbGetObjectId(ZrDbObjectId& id, const long entity[2])
{
    if (!entity || entity[1] != kEntityTag)
        return Zr::eInvalidInput;
    if (!ZrDbObjects::at(entity[0]))
        return Zr::eKeyNotFound;
    id = ZrDbObjectId(entity[0]);
    return Zr::eOk;
}

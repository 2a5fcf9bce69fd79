#include "zrarbitdict.h"

#include <map>
#include <string>

ZR_RX_DEFINE_MEMBERS(ZrRxDictionary, ZrRxObject)

struct ZrRxDictionary::Data
{
    std::map<std::string, ZrRxObjectPtr> entries;
};

ZrRxDictionary::ZrRxDictionary() : d(new Data) {}
ZrRxDictionary::~ZrRxDictionary() { delete d; }

ZrRxObject* ZrRxDictionary::at(const char* name) const
{
    auto it = d->entries.find(name ? name : "");
    return it == d->entries.end() ? nullptr : it->second.get();
}

void ZrRxDictionary::atPut(const char* name, ZrRxObject* object)
{
    d->entries[name ? name : ""] = ZrRxObjectPtr(object);
}

bool ZrRxDictionary::remove(const char* name) { return d->entries.erase(name ? name : "") > 0; }

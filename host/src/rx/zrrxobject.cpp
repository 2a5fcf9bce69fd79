#include "zrrxobject.h"

ZrRxClass::ZrRxClass(const char* name, const ZrRxClass* parent) : m_name(name), m_parent(parent) {}

bool ZrRxClass::isDerivedFrom(const ZrRxClass* other) const
{
    for (const ZrRxClass* cls = this; cls; cls = cls->m_parent) {
        if (cls == other)
            return true;
    }
    return false;
}

ZrRxObject::~ZrRxObject() = default;

ZrRxClass* ZrRxObject::desc()
{
    static ZrRxClass s_desc("ZrRxObject", nullptr);
    return &s_desc;
}

ZrRxClass* ZrRxObject::isA() const { return desc(); }
ZrRxObject* ZrRxObject::clone() const { return nullptr; }
int ZrRxObject::copyFrom(const ZrRxObject*) { return 1; }
bool ZrRxObject::isEqualTo(const ZrRxObject* other) const { return other == this; }
int ZrRxObject::comparedTo(const ZrRxObject* other) const { return other == this ? 0 : 1; }

ZrRxObject* ZrRxObject::subQueryX(const ZrRxClass* cls) const
{
    // The counting tokens reach here only for objects that keep no count.
    if (!cls || zrrxIsAddRef(cls) || zrrxIsRelease(cls) || zrrxIsNumRefs(cls))
        return nullptr;
    return isKindOf(cls) ? const_cast<ZrRxObject*>(this) : nullptr;
}

ZrRxObject* ZrRxObject::queryX(const ZrRxClass* cls) const
{
    ZrRxObject* result = subQueryX(cls);
    if (!result)
        throw ZrError_NotThatKindOfClass(isA(), cls);
    return result;
}

// Tokens are descriptors no real class derives from, so no query can answer them by accident.
const ZrRxClass* zrrxAddRefClass()
{
    static const ZrRxClass token("<add reference>", nullptr);
    return &token;
}

const ZrRxClass* zrrxReleaseClass()
{
    static const ZrRxClass token("<release>", nullptr);
    return &token;
}

const ZrRxClass* zrrxNumRefsClass()
{
    static const ZrRxClass token("<reference count>", nullptr);
    return &token;
}

void zrrxAddRef(const ZrRxObject* obj)
{
    if (obj)
        obj->subQueryX(zrrxAddRefClass());
}

void zrrxRelease(const ZrRxObject* obj)
{
    if (obj)
        obj->subQueryX(zrrxReleaseClass());
}

int zrrxNumRefs(const ZrRxObject* obj)
{
    if (!obj)
        return 0;
    ZrRxObject* answer = obj->subQueryX(zrrxNumRefsClass());
    return answer ? static_cast<int>(reinterpret_cast<intptr_t>(answer)) : -1;
}

ZrError_NotThatKindOfClass::ZrError_NotThatKindOfClass(const ZrRxClass* objectClass,
                                                       const ZrRxClass* wantedClass)
    : m_objectClass(objectClass), m_wantedClass(wantedClass)
{
    m_what = std::string("object of class ") + (objectClass ? objectClass->name() : "(none)")
        + " is not a " + (wantedClass ? wantedClass->name() : "(none)");
}

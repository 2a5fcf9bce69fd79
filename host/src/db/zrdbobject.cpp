#include "zrdbobject.h"

#include "zrdbdatabasedata.h"
#include "zrdbdict.h"
#include "zrdbinternal.h"

#include <QChar>
#include <algorithm>
#include <limits>
#include <vector>

namespace {

// Slot 0 stays empty: it is the null handle. Never destroyed: documents that outlive main's scope
// take their objects out of it as they go.
std::vector<ZrDbObject*>& objectSlots()
{
    static auto* slots = new std::vector<ZrDbObject*>(1, nullptr);
    return *slots;
}

bool sameApplication(const ZrResBuf* chain, const wchar_t* application)
{
    return chain && chain->resval.rstring && application
        && ZrString(chain->resval.rstring).compareNoCase(ZrString(application)) == 0;
}

} // namespace

namespace ZrDbObjects {

int64_t add(ZrDbObject* object)
{
    std::vector<ZrDbObject*>& slots = objectSlots();
    slots.push_back(object);
    return static_cast<int64_t>(slots.size() - 1);
}

ZrDbObject* at(int64_t handle)
{
    const std::vector<ZrDbObject*>& slots = objectSlots();
    return handle > 0 && static_cast<uint64_t>(handle) < slots.size() ? slots[static_cast<size_t>(handle)] : nullptr;
}

void forget(int64_t handle)
{
    std::vector<ZrDbObject*>& slots = objectSlots();
    if (handle > 0 && static_cast<uint64_t>(handle) < slots.size())
        slots[static_cast<size_t>(handle)] = nullptr;
}

void reserve(size_t more)
{
    std::vector<ZrDbObject*>& slots = objectSlots();
    slots.reserve(slots.size() + more);
}

} // namespace ZrDbObjects

std::wstring zrdbFoldCase(const ZrString& name)
{
    std::wstring folded = name.std();
    for (wchar_t& c : folded)
        c = static_cast<wchar_t>(QChar::toCaseFolded(static_cast<uint>(c)));
    return folded;
}

const ZrDbObjectId ZrDbObjectId::kNull;

bool ZrDbObjectId::isErased() const
{
    const ZrDbObject* object = ZrDbObjects::at(m_handle);
    return !object || object->isErased();
}

// The extended data of each application: a chain that starts with 1001 and the application's name.
struct ZrDbObject::XData
{
    std::vector<ZrResBuf*> chains;

    XData() = default;
    XData(const XData& other)
    {
        for (const ZrResBuf* chain : other.chains)
            chains.push_back(zrrbCopyChain(chain));
    }
    XData& operator=(const XData&) = delete;
    ~XData()
    {
        for (ZrResBuf* chain : chains)
            zrutRelRb(chain);
    }
};

ZR_RX_DEFINE_MEMBERS(ZrDbObject, ZrRxObject)

ZrDbObject::ZrDbObject() = default;

ZrDbObject::ZrDbObject(const ZrDbObject& other)
    : ZrRxObject(other),
      m_extensionDictionary(other.m_extensionDictionary),
      m_xdata(other.m_xdata ? new XData(*other.m_xdata) : nullptr),
      m_flags(other.m_flags & kErased)
{
}

ZrDbObject& ZrDbObject::operator=(const ZrDbObject& other)
{
    if (this == &other)
        return *this;
    m_extensionDictionary = other.m_extensionDictionary;
    delete m_xdata;
    m_xdata = other.m_xdata ? new XData(*other.m_xdata) : nullptr;
    m_flags = static_cast<uint8_t>((m_flags & ~kErased) | (other.m_flags & kErased));
    return *this;
}

ZrDbObject::~ZrDbObject() { delete m_xdata; }

int ZrDbObject::close()
{
    if (!m_database)
        return Zr::eOk;
    if (m_openCount == 0)
        return Zr::eInvalidInput;
    if (--m_openCount > 0)
        return Zr::eOk;
    const bool wrote = m_flags & kOpenForWrite;
    const bool modified = m_flags & kModified;
    m_flags &= static_cast<uint8_t>(~(kOpenForWrite | kModified));
    if (!wrote)
        return Zr::eOk;
    zrdbData(m_database).endOfWrite(m_handle);
    if (modified)
        zrdbData(m_database).postObject(this);
    return Zr::eOk;
}

int ZrDbObject::upgradeOpen()
{
    if (!m_database)
        return Zr::eOk;
    if (m_openCount == 0)
        return Zr::eInvalidInput;
    m_flags |= kOpenForWrite;
    return Zr::eOk;
}

int ZrDbObject::erase(bool erasing)
{
    if (!m_database)
        return Zr::eNoDatabase;
    if (const int status = prepareWrite())
        return status;
    m_flags = static_cast<uint8_t>(erasing ? (m_flags | kErased) : (m_flags & ~kErased));
    return Zr::eOk;
}

int ZrDbObject::createExtensionDictionary()
{
    if (m_extensionDictionary && !extensionDictionary().isErased())
        return Zr::eAlreadyInDb;
    if (!m_database)
        return Zr::eNoDatabase;
    if (const int status = prepareWrite())
        return status;
    m_extensionDictionary = zrdbData(m_database).addClosed(new ZrDbDictionary, m_handle);
    return Zr::eOk;
}

ZrResBuf* ZrDbObject::xData(const wchar_t* application) const
{
    if (!m_xdata)
        return nullptr;
    ZrResBuf* head = nullptr;
    ZrResBuf** tail = &head;
    for (const ZrResBuf* chain : m_xdata->chains) {
        if (application && !sameApplication(chain, application))
            continue;
        *tail = zrrbCopyChain(chain);
        while (*tail)
            tail = &(*tail)->rbnext;
    }
    return head;
}

int ZrDbObject::setXData(const ZrResBuf* chain)
{
    if (!chain || chain->restype != 1001 || !chain->resval.rstring || !*chain->resval.rstring)
        return Zr::eInvalidInput;
    if (const int status = prepareWrite())
        return status;
    if (!m_xdata)
        m_xdata = new XData;
    // Each 1001 begins the data of one application, which replaces what it had; a name alone
    // takes that application's data away.
    while (chain) {
        const ZrResBuf* end = chain->rbnext;
        while (end && end->restype != 1001)
            end = end->rbnext;
        ZrResBuf* group = nullptr;
        ZrResBuf** tail = &group;
        for (const ZrResBuf* rb = chain; rb != end; rb = rb->rbnext) {
            ZrResBuf single = *rb;
            single.rbnext = nullptr;
            *tail = zrrbCopyChain(&single);
            tail = &(*tail)->rbnext;
        }
        std::vector<ZrResBuf*>& chains = m_xdata->chains;
        auto it = std::find_if(chains.begin(), chains.end(),
                               [chain](const ZrResBuf* old) { return sameApplication(old, chain->resval.rstring); });
        if (it != chains.end()) {
            zrutRelRb(*it);
            it = chains.erase(it);
        }
        if (group->rbnext)
            chains.insert(it, group);
        else
            zrutRelRb(group);
        chain = end;
    }
    return Zr::eOk;
}

void ZrDbObject::setOwnership(ZrDbDatabase* database, ZrDbObjectId id, ZrDbObjectId owner)
{
    m_database = database;
    m_handle = id.handle();
    m_owner = owner.handle();
}

void ZrDbObject::restoreFrom(const ZrDbObject& snapshot) { copyFrom(&snapshot); }

void ZrDbObject::assertWriteEnabled() { prepareWrite(); }

int ZrDbObject::prepareWrite()
{
    if (!m_database)
        return Zr::eOk;
    if (!(m_flags & kOpenForWrite))
        return Zr::eNotOpenForWrite;
    m_flags |= kModified;
    zrdbData(m_database).recordBeforeWrite(this);
    return Zr::eOk;
}

int zrdbOpenObject(ZrDbObject*& object, ZrDbObjectId id, ZrDb::OpenMode mode, bool openErased)
{
    object = nullptr;
    if (id.isNull())
        return Zr::eNullObjectId;
    ZrDbObject* found = ZrDbObjects::at(id.handle());
    if (!found)
        return Zr::eKeyNotFound;
    if (found->isErased() && !openErased)
        return Zr::eWasErased;
    if (found->m_openCount == std::numeric_limits<uint16_t>::max())
        return Zr::eInvalidInput;
    ++found->m_openCount;
    if (mode == ZrDb::kForWrite)
        found->m_flags |= ZrDbObject::kOpenForWrite;
    object = found;
    return Zr::eOk;
}

#include "zrdbdict.h"

#include "zrdbdatabase.h"
#include "zrdbinternal.h"

#include <algorithm>

ZR_RX_DEFINE_MEMBERS(ZrDbDictionary, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbMaterial, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbPlaceHolder, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbTableStyle, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbMLeaderStyle, ZrDbObject)
ZR_RX_DEFINE_MEMBERS(ZrDbLayout, ZrDbObject)

namespace {

// Entries stay when their object is erased by an undo; only live objects count.
bool isLive(int64_t handle) { return zrdbPeek<ZrDbObject>(handle) != nullptr; }

} // namespace

int ZrDbDictionary::getAt(const ZrString& name, ZrDbObjectId& id) const
{
    for (const auto& entry : m_entries) {
        if (entry.first.compareNoCase(name) == 0 && isLive(entry.second)) {
            id = ZrDbObjectId(entry.second);
            return Zr::eOk;
        }
    }
    return Zr::eKeyNotFound;
}

bool ZrDbDictionary::has(const ZrString& name) const
{
    ZrDbObjectId id;
    return getAt(name, id) == Zr::eOk;
}

bool ZrDbDictionary::has(ZrDbObjectId id) const
{
    ZrString name;
    return nameAt(id, name);
}

bool ZrDbDictionary::nameAt(ZrDbObjectId id, ZrString& name) const
{
    for (const auto& entry : m_entries) {
        if (entry.second == id.handle() && isLive(entry.second)) {
            name = entry.first;
            return true;
        }
    }
    return false;
}

int ZrDbDictionary::setAt(const ZrString& name, ZrDbObject* object, ZrDbObjectId& id)
{
    if (!object || object->database() || name.isEmpty())
        return Zr::eInvalidInput;
    if (!database())
        return Zr::eNoDatabase;
    if (!isWriteEnabled())
        return Zr::eNotOpenForWrite;
    if (has(name))
        return Zr::eDuplicateKey;
    if (const int status = prepareWrite())
        return status;
    id = database()->addObject(object, objectId());
    m_entries.emplace_back(name, id.handle());
    return Zr::eOk;
}

int ZrDbDictionary::remove(const ZrString& name)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&name](const auto& entry) {
        return entry.first.compareNoCase(name) == 0 && isLive(entry.second);
    });
    if (found == m_entries.end())
        return Zr::eKeyNotFound;
    if (const int status = prepareWrite())
        return status;
    m_entries.erase(found);
    return Zr::eOk;
}

ZrDbDictionaryIterator* ZrDbDictionary::newIterator() const
{
    std::vector<std::pair<ZrString, int64_t>> live;
    std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(live),
                 [](const auto& entry) { return isLive(entry.second); });
    return new ZrDbDictionaryIterator(std::move(live));
}

ZrDbDictionaryIterator::ZrDbDictionaryIterator(std::vector<std::pair<ZrString, int64_t>> entries)
    : m_entries(std::move(entries))
{
}

ZrDbDictionaryIterator::~ZrDbDictionaryIterator() = default;

ZrString ZrDbDictionaryIterator::name() const { return done() ? ZrString() : m_entries[m_index].first; }
ZrDbObjectId ZrDbDictionaryIterator::objectId() const
{
    return done() ? ZrDbObjectId() : ZrDbObjectId(m_entries[m_index].second);
}

int ZrDbDictionaryIterator::getObject(ZrDbObject*& object, ZrDb::OpenMode mode) const
{
    object = nullptr;
    if (done())
        return Zr::eInvalidInput;
    return zrdbOpenObject(object, objectId(), mode);
}

bool ZrDbDictionaryIterator::done() const { return m_index >= m_entries.size(); }

bool ZrDbDictionaryIterator::next()
{
    if (!done())
        ++m_index;
    return !done();
}

int ZrDbMaterial::setName(const ZrString& name) { return name.isEmpty() ? int(Zr::eInvalidInput) : writeField(m_name, name); }

int ZrDbTableStyle::setName(const ZrString& name)
{
    return name.isEmpty() ? int(Zr::eInvalidInput) : writeField(m_name, name);
}

int ZrDbTableStyle::getCellStyles(ZrArray<ZrString>& names) const
{
    names.removeAll();
    for (const ZrString& name : m_cellStyles)
        names.append(name);
    return Zr::eOk;
}

int ZrDbTableStyle::createCellStyle(const ZrString& name)
{
    if (name.isEmpty())
        return Zr::eInvalidInput;
    const bool taken = std::any_of(m_cellStyles.begin(), m_cellStyles.end(),
                                   [&name](const ZrString& style) { return style.compareNoCase(name) == 0; });
    if (taken)
        return Zr::eDuplicateKey;
    if (const int status = prepareWrite())
        return status;
    m_cellStyles.push_back(name);
    return Zr::eOk;
}

int ZrDbMLeaderStyle::setName(const ZrString& name)
{
    return name.isEmpty() ? int(Zr::eInvalidInput) : writeField(m_name, name);
}

int ZrDbMLeaderStyle::setTextStyleId(ZrDbObjectId id) { return writeField(m_textStyle, id.handle()); }

int ZrDbLayout::setLayoutName(const ZrString& name)
{
    return name.isEmpty() ? int(Zr::eInvalidInput) : writeField(m_name, name);
}

int ZrDbLayout::setBlockTableRecordId(ZrDbObjectId id) { return writeField(m_block, id.handle()); }
int ZrDbLayout::setPaperViewportId(ZrDbObjectId id) { return writeField(m_paperViewport, id.handle()); }
int ZrDbLayout::setTabOrder(int order) { return order >= 0 ? writeField(m_tabOrder, order) : int(Zr::eInvalidInput); }

ZrDbObjectId ZrDbLayerState::dictionaryId(ZrDbDatabase* database, bool createIfNonExist)
{
    return database ? database->layerStateDictionaryId(createIfNonExist) : ZrDbObjectId();
}

bool zrdbIsReservedString(const ZrString& name, int kind)
{
    for (const wchar_t* reserved : {L"ByLayer", L"ByBlock"}) {
        if (name.compareNoCase(ZrString(reserved)) == 0)
            return true;
    }
    return kind == 5 && name.compareNoCase(ZrString(L"Normal")) == 0;
}

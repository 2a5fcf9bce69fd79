#pragma once
// Dictionaries of named objects and the objects that live in them.

#include "zrarray.h"
#include "zrdbobject.h"
#include "zrstring.h"

#include <utility>
#include <vector>

class ZrDbDictionaryIterator;

class ZRHOST_EXPORT ZrDbDictionary : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbDictionary)
public:
    ZR_DB_DECLARE_COPY(ZrDbDictionary)
    // By name, ignoring case; Zr::eKeyNotFound when absent.
    int getAt(const ZrString& name, ZrDbObjectId& id) const;
    bool has(const ZrString& name) const;
    bool has(ZrDbObjectId id) const;
    // The name an object stands under; false when it is not here.
    bool nameAt(ZrDbObjectId id, ZrString& name) const;
    // Adds a new object to the database under `name`; the dictionary must be open for write.
    int setAt(const ZrString& name, ZrDbObject* object, ZrDbObjectId& id);
    int remove(const ZrString& name);
    int numEntries() const { return static_cast<int>(m_entries.size()); }
    // Entries in the order they were added.
    ZrDbDictionaryIterator* newIterator() const;

private:
    std::vector<std::pair<ZrString, int64_t>> m_entries;
};

class ZRHOST_EXPORT ZrDbDictionaryIterator
{
public:
    explicit ZrDbDictionaryIterator(std::vector<std::pair<ZrString, int64_t>> entries);
    ~ZrDbDictionaryIterator();
    ZrDbDictionaryIterator(const ZrDbDictionaryIterator&) = delete;
    ZrDbDictionaryIterator& operator=(const ZrDbDictionaryIterator&) = delete;

    ZrString name() const;
    ZrDbObjectId objectId() const;
    int getObject(ZrDbObject*& object, ZrDb::OpenMode mode) const;
    bool done() const;
    bool next();

private:
    std::vector<std::pair<ZrString, int64_t>> m_entries;
    size_t m_index = 0;
};

class ZRHOST_EXPORT ZrDbMaterial : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbMaterial)
public:
    ZR_DB_DECLARE_COPY(ZrDbMaterial)
    ZrString name() const { return m_name; }
    int setName(const ZrString& name);

private:
    ZrString m_name;
};

// A named plot style of a drawing whose plot styles go by name.
class ZRHOST_EXPORT ZrDbPlaceHolder : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbPlaceHolder)
public:
    ZR_DB_DECLARE_COPY(ZrDbPlaceHolder)
};

class ZRHOST_EXPORT ZrDbTableStyle : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbTableStyle)
public:
    ZR_DB_DECLARE_COPY(ZrDbTableStyle)
    ZrString name() const { return m_name; }
    int setName(const ZrString& name);
    int getCellStyles(ZrArray<ZrString>& names) const;
    int createCellStyle(const ZrString& name);

private:
    ZrString m_name;
    std::vector<ZrString> m_cellStyles{ZrString(L"_TITLE"), ZrString(L"_HEADER"), ZrString(L"_DATA")};
};

class ZRHOST_EXPORT ZrDbMLeaderStyle : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbMLeaderStyle)
public:
    ZR_DB_DECLARE_COPY(ZrDbMLeaderStyle)
    ZrString name() const { return m_name; }
    int setName(const ZrString& name);
    ZrDbObjectId textStyleId() const { return ZrDbObjectId(m_textStyle); }
    int setTextStyleId(ZrDbObjectId id);

private:
    ZrString m_name;
    int64_t m_textStyle = 0;
};

class ZRHOST_EXPORT ZrDbLayout : public ZrDbObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbLayout)
public:
    ZR_DB_DECLARE_COPY(ZrDbLayout)
    ZrString getLayoutName() const { return m_name; }
    int setLayoutName(const ZrString& name);
    ZrDbObjectId getBlockTableRecordId() const { return ZrDbObjectId(m_block); }
    int setBlockTableRecordId(ZrDbObjectId id);
    // The viewport that shows the paper itself.
    ZrDbObjectId paperViewportId() const { return ZrDbObjectId(m_paperViewport); }
    int setPaperViewportId(ZrDbObjectId id);
    int getTabOrder() const { return m_tabOrder; }
    int setTabOrder(int order);
    bool modelType() const { return m_tabOrder == 0; }

private:
    ZrString m_name;
    int64_t m_block = 0;
    int64_t m_paperViewport = 0;
    int m_tabOrder = 0;
};

class ZRHOST_EXPORT ZrDbLayerState
{
public:
    // The id of the dictionary of saved layer states; null when absent and not to be made.
    static ZrDbObjectId dictionaryId(ZrDbDatabase* database, bool createIfNonExist = false);
};

// True for the names a plot style may not take: "ByLayer", "ByBlock" and "Normal" for kind 5.
ZRHOST_EXPORT bool zrdbIsReservedString(const ZrString& name, int kind);

#pragma once
// Objects of the drawing database and how they are opened by id.

#include "zrdbobjectid.h"
#include "zrhost_export.h"
#include "zrresbuf.h"
#include "zrrxobject.h"

#include <utility>

class ZrDbDatabase;

namespace ZrDb {
enum OpenMode : int {
    kForRead = 0,
    kForWrite = 1,
    kForNotify = 2,
};
} // namespace ZrDb

// Status codes of the database functions; 0 is success.
namespace Zr {
enum ErrorStatus : int {
    eOk = 0,
    eInvalidInput = 3,
    eNullObjectId = 5,
    eNotThatKindOfClass = 6,
    eWasErased = 12,
    eKeyNotFound = 14,
    eDuplicateKey = 15,
    eNoDatabase = 16,
    eNotOpenForWrite = 30,
    // The extension dictionary asked for exists already.
    eAlreadyInDb = 26,
};
} // namespace Zr

// Assigns `other` to `self` when both are of exactly the class T: the undo history restores objects
// through it, so a base part must never be assigned alone.
template <class T>
int zrdbAssign(T& self, const ZrRxObject* other)
{
    if (!other || other->isA() != T::desc() || self.isA() != T::desc())
        return Zr::eNotThatKindOfClass;
    self = static_cast<const T&>(*other);
    return Zr::eOk;
}

// The copy operations of a class of the database: clone() is a copy by the copy constructor, and
// copyFrom() assigns an object of the same class (the identity of the target stays as it is).
#define ZR_DB_DECLARE_COPY(CLASS)                                                              \
public:                                                                                        \
    ZrRxObject* clone() const override { return new CLASS(*this); }                            \
    int copyFrom(const ZrRxObject* other) override { return zrdbAssign(*this, other); }

class ZRHOST_EXPORT ZrDbObject : public ZrRxObject
{
    ZR_RX_DECLARE_MEMBERS(ZrDbObject)
    ZR_DB_DECLARE_COPY(ZrDbObject)
public:
    ZrDbObject();
    // A copy holds the content (extended data, extension dictionary, erased flag), not the place in
    // a database: it is a new object. Assignment keeps the target's place and open state.
    ZrDbObject(const ZrDbObject& other);
    ZrDbObject& operator=(const ZrDbObject& other);
    ~ZrDbObject() override;

    ZrDbObjectId objectId() const { return ZrDbObjectId(m_handle); }
    ZrDbObjectId ownerId() const { return ZrDbObjectId(m_owner); }
    ZrDbDatabase* database() const { return m_database; }
    bool isErased() const { return m_flags & kErased; }
    bool isReadEnabled() const { return m_openCount > 0; }
    bool isWriteEnabled() const { return m_flags & kOpenForWrite; }

    // Ends one open; the last close of a write sends the object's change to the user interface.
    int close();
    int upgradeOpen();
    int erase(bool erasing = true);

    ZrDbObjectId extensionDictionary() const { return ZrDbObjectId(m_extensionDictionary); }
    // 0 when made, Zr::eAlreadyInDb when the object has one.
    int createExtensionDictionary();

    // A copy of the extended data of one application, or of all without a name; freed with zrutRelRb.
    ZrResBuf* xData(const wchar_t* application = nullptr) const;
    // The chain starts with 1001 and the application's name; it replaces that application's data.
    int setXData(const ZrResBuf* chain);

    // For the database: puts the object in place and takes it out again.
    void setOwnership(ZrDbDatabase* database, ZrDbObjectId id, ZrDbObjectId owner);
    // Takes the content of a clone of this object back; the place and the open state stay.
    void restoreFrom(const ZrDbObject& snapshot);

protected:
    // Setters call this; it records the state for undo the first time in a step.
    void assertWriteEnabled();
    // Zr::eOk when the object may change now (recorded for undo), Zr::eNotOpenForWrite when it is in
    // a database and not open for write. Objects outside a database change freely.
    int prepareWrite();
    template <class Field, class Value>
    int writeField(Field& field, Value&& value)
    {
        if (const int status = prepareWrite())
            return status;
        field = std::forward<Value>(value);
        return Zr::eOk;
    }

private:
    friend class ZrDbDatabase;
    friend int zrdbOpenObject(ZrDbObject*& object, ZrDbObjectId id, ZrDb::OpenMode mode, bool openErased);
    enum Flags : uint8_t { kErased = 1, kOpenForWrite = 2, kModified = 4 };
    struct XData;

    int64_t m_handle = 0;
    int64_t m_owner = 0;
    int64_t m_extensionDictionary = 0;
    ZrDbDatabase* m_database = nullptr;
    XData* m_xdata = nullptr;
    uint16_t m_openCount = 0;
    uint8_t m_flags = 0;
    // The recording of the undo history this object was last recorded in; it fills padding.
    uint32_t m_undoStamp = 0;
};

// Opens an object by id: 0 on success, with `object` set; the caller closes it.
ZRHOST_EXPORT int zrdbOpenObject(ZrDbObject*& object, ZrDbObjectId id, ZrDb::OpenMode mode, bool openErased = false);

// Opens an object of class T or a class derived from it; Zr::eNotThatKindOfClass otherwise.
template <class T>
int zrdbOpenObject(T*& object, ZrDbObjectId id, ZrDb::OpenMode mode, bool openErased = false)
{
    object = nullptr;
    ZrDbObject* opened = nullptr;
    const int status = zrdbOpenObject(opened, id, mode, openErased);
    if (status != Zr::eOk)
        return status;
    object = T::cast(opened);
    if (!object) {
        opened->close();
        return Zr::eNotThatKindOfClass;
    }
    return Zr::eOk;
}

// Closes what it holds when it goes out of scope.
template <class T>
class ZrDbObjectPointer
{
public:
    ZrDbObjectPointer(ZrDbObjectId id, ZrDb::OpenMode mode, bool openErased = false)
    {
        m_status = zrdbOpenObject(m_object, id, mode, openErased);
    }
    ~ZrDbObjectPointer()
    {
        if (m_object)
            m_object->close();
    }
    ZrDbObjectPointer(const ZrDbObjectPointer&) = delete;
    ZrDbObjectPointer& operator=(const ZrDbObjectPointer&) = delete;

    int openStatus() const { return m_status; }
    T* object() const { return m_object; }
    T* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    T* m_object = nullptr;
    int m_status = Zr::eNullObjectId;
};

#pragma once
// The host's object model: class descriptors, counted objects and the query protocol.

#include "zrhost_export.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <string>
#include <utility>

class ZRHOST_EXPORT ZrRxClass
{
public:
    ZrRxClass(const char* name, const ZrRxClass* parent);
    ZrRxClass(const ZrRxClass&) = delete;
    ZrRxClass& operator=(const ZrRxClass&) = delete;

    const char* name() const { return m_name; }
    const ZrRxClass* myParent() const { return m_parent; }
    // True for this class and every class derived from it.
    bool isDerivedFrom(const ZrRxClass* other) const;

private:
    const char* m_name;
    const ZrRxClass* m_parent;
};

// Declares the class descriptor members of a class of the object model.
#define ZR_RX_DECLARE_MEMBERS(CLASS)                                   \
public:                                                                \
    static ZrRxClass* desc();                                          \
    ZrRxClass* isA() const override { return CLASS::desc(); }          \
    static CLASS* cast(const ZrRxObject* obj)                          \
    {                                                                  \
        return (obj && obj->isKindOf(CLASS::desc()))                   \
            ? static_cast<CLASS*>(const_cast<ZrRxObject*>(obj)) : nullptr; \
    }

#define ZR_RX_DEFINE_MEMBERS(CLASS, PARENT)                            \
    ZrRxClass* CLASS::desc()                                           \
    {                                                                  \
        static ZrRxClass s_desc(#CLASS, PARENT::desc());               \
        return &s_desc;                                                \
    }

class ZRHOST_EXPORT ZrRxObject
{
public:
    ZrRxObject() = default;
    ZrRxObject(const ZrRxObject&) = default;
    ZrRxObject& operator=(const ZrRxObject&) = default;
    virtual ~ZrRxObject();

    static ZrRxClass* desc();
    static ZrRxObject* cast(const ZrRxObject* obj) { return const_cast<ZrRxObject*>(obj); }
    virtual ZrRxClass* isA() const;
    virtual ZrRxObject* clone() const;
    virtual int copyFrom(const ZrRxObject* other);
    virtual bool isEqualTo(const ZrRxObject* other) const;
    virtual int comparedTo(const ZrRxObject* other) const;
    // Answers this object when its class is `cls` or derives from it, null otherwise.
    // Counted objects also take the three counting tokens here.
    virtual ZrRxObject* subQueryX(const ZrRxClass* cls) const;

    bool isKindOf(const ZrRxClass* cls) const { return isA()->isDerivedFrom(cls); }
    // Like subQueryX, but a failed query throws ZrError_NotThatKindOfClass.
    ZrRxObject* queryX(const ZrRxClass* cls) const;
};

// The three tokens of the counting protocol, passed to subQueryX in place of a class.
ZRHOST_EXPORT const ZrRxClass* zrrxAddRefClass();
ZRHOST_EXPORT const ZrRxClass* zrrxReleaseClass();
ZRHOST_EXPORT const ZrRxClass* zrrxNumRefsClass();
inline bool zrrxIsAddRef(const ZrRxClass* cls) { return cls == zrrxAddRefClass(); }
inline bool zrrxIsRelease(const ZrRxClass* cls) { return cls == zrrxReleaseClass(); }
inline bool zrrxIsNumRefs(const ZrRxClass* cls) { return cls == zrrxNumRefsClass(); }

ZRHOST_EXPORT void zrrxAddRef(const ZrRxObject* obj);
ZRHOST_EXPORT void zrrxRelease(const ZrRxObject* obj);
// The count of a counted object; -1 for an object that keeps no count.
ZRHOST_EXPORT int zrrxNumRefs(const ZrRxObject* obj);

// Thrown when an object is not of the class a query asked for: a programming error.
class ZRHOST_EXPORT ZrError_NotThatKindOfClass : public std::exception
{
public:
    ZrError_NotThatKindOfClass(const ZrRxClass* objectClass, const ZrRxClass* wantedClass);
    const char* what() const noexcept override { return m_what.c_str(); }
    const ZrRxClass* objectClass() const { return m_objectClass; }
    const ZrRxClass* wantedClass() const { return m_wantedClass; }

private:
    const ZrRxClass* m_objectClass;
    const ZrRxClass* m_wantedClass;
    std::string m_what;
};

// A counted object: X with one atomic count that starts at 1.
template <class X, class Base = X>
class ZrRxObjectImpl : public X
{
public:
    template <class... Args>
    explicit ZrRxObjectImpl(Args&&... args) : X(std::forward<Args>(args)...) {}

    ZrRxObject* subQueryX(const ZrRxClass* cls) const override
    {
        if (zrrxIsAddRef(cls)) {
            m_refs.fetch_add(1, std::memory_order_relaxed);
            return nullptr;
        }
        if (zrrxIsRelease(cls)) {
            if (m_refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
                delete this;
            return nullptr;
        }
        if (zrrxIsNumRefs(cls))
            return reinterpret_cast<ZrRxObject*>(static_cast<intptr_t>(m_refs.load()));
        return Base::subQueryX(cls);
    }

private:
    mutable std::atomic<int32_t> m_refs{1};
};

struct ZrAttachTag {};
constexpr ZrAttachTag kZrAttach{};

// Counted handle. Built from an object it queries for T and adds a reference;
// built with kZrAttach it adopts a reference the caller already holds.
template <class T>
class ZrSmartPtr
{
public:
    ZrSmartPtr() = default;
    ZrSmartPtr(std::nullptr_t) {}
    ZrSmartPtr(const ZrRxObject* obj) : m_obj(query(obj)) { zrrxAddRef(m_obj); }
    ZrSmartPtr(T* obj, ZrAttachTag) : m_obj(obj) {}
    ZrSmartPtr(const ZrSmartPtr& other) : m_obj(other.m_obj) { zrrxAddRef(m_obj); }
    ZrSmartPtr(ZrSmartPtr&& other) noexcept : m_obj(std::exchange(other.m_obj, nullptr)) {}
    template <class U>
    ZrSmartPtr(const ZrSmartPtr<U>& other) : m_obj(query(other.get())) { zrrxAddRef(m_obj); }
    ~ZrSmartPtr() { zrrxRelease(m_obj); }

    ZrSmartPtr& operator=(ZrSmartPtr other) noexcept
    {
        std::swap(m_obj, other.m_obj);
        return *this;
    }

    T* get() const { return m_obj; }
    T* operator->() const { return m_obj; }
    T& operator*() const { return *m_obj; }
    explicit operator bool() const { return m_obj != nullptr; }
    bool isNull() const { return m_obj == nullptr; }
    void release() { zrrxRelease(std::exchange(m_obj, nullptr)); }
    // Hands the reference to the caller.
    T* detach() { return std::exchange(m_obj, nullptr); }

private:
    static T* query(const ZrRxObject* obj)
    {
        if (!obj)
            return nullptr;
        return static_cast<T*>(obj->queryX(T::desc()));
    }

    T* m_obj = nullptr;
};

using ZrRxObjectPtr = ZrSmartPtr<ZrRxObject>;

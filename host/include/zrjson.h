#pragma once
// The host's parameter object: a JSON-like value shared through counted ZrJsonPtr handles.
// Keys of the readers and writers may be paths: "btnText/0" is element 0 of the array "btnText".
// An empty key names the value itself.

#include "zrhost_export.h"
#include "zrstring.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

class IElementValueBase;

class ZRHOST_EXPORT ZrJsonPtr
{
public:
    ZrJsonPtr() = default;
    ZrJsonPtr(std::nullptr_t) {}
    // Adopts a value whose count the caller already holds.
    explicit ZrJsonPtr(IElementValueBase* value) : m_value(value) {}
    ZrJsonPtr(const ZrJsonPtr& other);
    ZrJsonPtr(ZrJsonPtr&& other) noexcept : m_value(std::exchange(other.m_value, nullptr)) {}
    ~ZrJsonPtr();
    ZrJsonPtr& operator=(ZrJsonPtr other) noexcept
    {
        std::swap(m_value, other.m_value);
        return *this;
    }

    IElementValueBase* get() const { return m_value; }
    IElementValueBase* operator->() const { return m_value; }
    IElementValueBase& operator*() const { return *m_value; }
    explicit operator bool() const { return m_value != nullptr; }
    // No value at all, or the JSON null.
    bool isNull() const;
    // No value, the JSON null, or undefined (a missing key).
    bool isNullOrNoDef() const;
    bool sameValue(const ZrJsonPtr& other) const { return m_value == other.m_value; }

private:
    IElementValueBase* m_value = nullptr;
};

// Type codes; arrays are 1 and objects 2, as ElementValue::createObject takes them.
enum ZrJsonType : int {
    kZrJsonNull = 0,
    kZrJsonArray = 1,
    kZrJsonObject = 2,
    kZrJsonString = 3,
    kZrJsonInt = 4,
    kZrJsonReal = 5,
    kZrJsonBool = 6,
    kZrJsonUndefined = 7,
};

class ZRHOST_EXPORT IElementValueBase
{
public:
    IElementValueBase(const IElementValueBase&) = delete;
    IElementValueBase& operator=(const IElementValueBase&) = delete;

    int type() const;
    bool isNull() const;
    bool isNullOrNoDef() const;
    bool isUndefined() const;
    bool isArray() const;
    bool isObject() const;
    bool isString() const;
    bool isNumber() const;
    bool isBool() const;

    bool hasProperty(const char* key) const;
    // Elements of an array; 0 for anything else.
    int ArrayCount() const;
    // Elements of an array or members of an object.
    int size() const;
    // Element i of an array or the value of member i of an object; an undefined value when out of range.
    ZrJsonPtr at(int i) const;
    ZrJsonPtr operator[](int i) const { return at(i); }
    // Name of member i of an object; empty for an array.
    ZrUtf8String keyAt(int i) const;
    bool remove_array_item(int i);
    bool removeProperty(const char* key);
    // Appends to an array; an undefined or null value becomes an array first.
    void append(const ZrJsonPtr& element);

    // Readers with a default, key as char const*.
    int GetVarI(const char* key, int def = 0) const;
    int64_t GetVarL(const char* key, int64_t def = 0) const;
    bool GetVarB(const char* key, bool def = false) const;
    double GetVarD(const char* key, double def = 0.0) const;
    ZrUtf8String GetVarS(const char* key, const char* def = "") const;
    ZrString GetVarSW(const char* key, const wchar_t* def = L"") const;
    // The child itself, shared; for a missing key a fresh undefined value with no elements.
    ZrJsonPtr GetVarJsonPtr(const char* key) const;

    // Readers into an output; false leaves the output as it was.
    bool GetDataI(const char* key, int& out) const;
    bool GetDataS(const char* key, ZrUtf8String& out) const;

    // Readers with a default, key as ZrUtf8String.
    int32_t safePropertyi32(const ZrUtf8String& key, int32_t def = 0) const;
    int64_t safePropertyi(const ZrUtf8String& key, int64_t def = 0) const;
    bool safePropertyb(const ZrUtf8String& key, bool def = false) const;
    ZrUtf8String safePropertys(const ZrUtf8String& key, const ZrUtf8String& def = ZrUtf8String()) const;
    ZrString safePropertysW(const ZrUtf8String& key, const ZrString& def = ZrString()) const;
    // The child, shared; a null handle for a missing key.
    ZrJsonPtr safeProperty_ptr(const ZrUtf8String& key) const;

    // The value itself, for array elements.
    int64_t safeIntValue(int64_t def = 0) const;
    bool safeBoolValue(bool def = false) const;
    double safeRealValue(double def = 0.0) const;
    ZrUtf8String safeStrValue(const ZrUtf8String& def = ZrUtf8String()) const;
    ZrString safeStrValueW(const ZrString& def = ZrString()) const;

    // Writers; missing objects and arrays along a path are made.
    void SetDataI(const char* key, int value);
    void SetDataL(const char* key, int64_t value);
    void SetDataB(const char* key, bool value);
    void SetDataD(const char* key, double value);
    void SetDataS(const char* key, const ZrUtf8String& value);
    void SetDataSW(const char* key, const ZrString& value);
    // Stores the child itself: writes through either handle are seen by both.
    void SetDataJ(const char* key, const ZrJsonPtr& value);
    void SetDataNull(const char* key);

    // Replace the value itself.
    void setNull();
    void setInt(int64_t value);
    void setReal(double value);
    void setBool(bool value);
    void setString(const ZrUtf8String& value);

    // A deep copy.
    ZrJsonPtr clone() const;
    bool equals(const IElementValueBase& other) const;
    // JSON text; 64-bit integers keep every digit.
    ZrUtf8String toJson(bool indented = false) const;

private:
    friend class ZrJsonPtr;
    friend struct ElementValue;
    struct Data;
    explicit IElementValueBase(int type);
    ~IElementValueBase();

    std::atomic<int32_t> m_refs{1};
    Data* d;
};

struct ZrJsonParseError
{
    ZrUtf8String message;
    int offset = -1; // byte offset of the fault
    int line = 0;    // 1-based
    int column = 0;  // 1-based, in bytes
    bool ok() const { return offset < 0; }
};

struct ZRHOST_EXPORT ElementValue
{
    // 2 an empty object, 1 an empty array, otherwise a value of that type code.
    static ZrJsonPtr createObject(int type);
    static ZrJsonPtr fromInt(int64_t value);
    static ZrJsonPtr fromReal(double value);
    static ZrJsonPtr fromBool(bool value);
    static ZrJsonPtr fromString(const ZrUtf8String& value);
    // Reads JSON text (RFC 8259, nesting up to 512 levels); a null handle and the place of the fault on error.
    static ZrJsonPtr parse(const char* text, size_t length, ZrJsonParseError* error = nullptr);
    static ZrJsonPtr parse(const ZrUtf8String& text, ZrJsonParseError* error = nullptr)
    {
        return parse(text.c_str(), static_cast<size_t>(text.length()), error);
    }
};

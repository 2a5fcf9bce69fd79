#pragma once
// The host's strings: ZrString holds 32-bit characters, ZrUtf8String UTF-8 bytes.

#include "zrarray.h"
#include "zrhost_export.h"

#include <QString>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

class ZrUtf8String;

class ZRHOST_EXPORT ZrString
{
public:
    ZrString() = default;
    ZrString(const wchar_t* text) : m_text(text ? text : L"") {}
    ZrString(const wchar_t* text, size_t length) : m_text(text, length) {}
    explicit ZrString(std::wstring text) : m_text(std::move(text)) {}
    explicit ZrString(const QString& text) : m_text(text.toStdWString()) {}
    explicit ZrString(const ZrUtf8String& text);

    static ZrString fromUtf8(const char* text);
    // printf-style formatting of the host's "%d" and "%s" texts; %s takes a const wchar_t*.
    static ZrString format(const wchar_t* fmt, ...);

    const wchar_t* kwszPtr() const { return m_text.c_str(); }
    const wchar_t* c_str() const { return m_text.c_str(); }
    const std::wstring& std() const { return m_text; }
    int length() const { return static_cast<int>(m_text.size()); }
    bool isEmpty() const { return m_text.empty(); }
    wchar_t operator[](int i) const { return m_text[static_cast<size_t>(i)]; }

    QString toQString() const;
    ZrUtf8String toUtf8() const;

    // Below 0 sorts first; case matters. Inline, since sorting a list calls it for every pair; equal
    // runs are skipped two characters at a time, as names of one list often share a long prefix.
    int compare(const ZrString& other) const
    {
        const wchar_t* a = m_text.data();
        const wchar_t* b = other.m_text.data();
        const size_t common = std::min(m_text.size(), other.m_text.size());
        size_t i = 0;
        for (; i + 2 <= common; i += 2) {
            uint64_t x;
            uint64_t y;
            std::memcpy(&x, a + i, sizeof x);
            std::memcpy(&y, b + i, sizeof y);
            if (x != y)
                break;
        }
        for (; i < common; ++i) {
            if (a[i] != b[i])
                return a[i] < b[i] ? -1 : 1;
        }
        if (m_text.size() == other.m_text.size())
            return 0;
        return m_text.size() < other.m_text.size() ? -1 : 1;
    }
    // 0 when equal regardless of case.
    int compareNoCase(const ZrString& other) const;
    // Position of a case-sensitive substring, -1 when absent.
    int find(const ZrString& sub) const;
    // Position of the first character that is one of `chars`, -1 when none.
    int findOneOf(const wchar_t* chars) const;
    ZrString& trim();
    ZrString& makeUpper();

    ZrString& operator+=(const ZrString& other) { m_text += other.m_text; return *this; }
    friend ZrString operator+(ZrString a, const ZrString& b) { return a += b; }
    friend bool operator==(const ZrString& a, const ZrString& b) { return a.m_text == b.m_text; }
    friend bool operator!=(const ZrString& a, const ZrString& b) { return a.m_text != b.m_text; }
    friend bool operator<(const ZrString& a, const ZrString& b) { return a.m_text < b.m_text; }

private:
    std::wstring m_text;
};

class ZRHOST_EXPORT ZrUtf8String
{
public:
    ZrUtf8String() = default;
    ZrUtf8String(const char* text) : m_text(text ? text : "") {}
    ZrUtf8String(std::string text) : m_text(std::move(text)) {}
    explicit ZrUtf8String(const QString& text) : m_text(text.toStdString()) {}

    const char* kszPtr() const { return m_text.c_str(); }
    const char* c_str() const { return m_text.c_str(); }
    const std::string& std() const { return m_text; }
    int length() const { return static_cast<int>(m_text.size()); }
    bool isEmpty() const { return m_text.empty(); }

    QString toQString() const { return QString::fromStdString(m_text); }
    ZrString toWide() const { return ZrString(*this); }

    ZrUtf8String& operator+=(const ZrUtf8String& other) { m_text += other.m_text; return *this; }
    friend ZrUtf8String operator+(ZrUtf8String a, const ZrUtf8String& b) { return a += b; }
    friend bool operator==(const ZrUtf8String& a, const ZrUtf8String& b) { return a.m_text == b.m_text; }
    friend bool operator!=(const ZrUtf8String& a, const ZrUtf8String& b) { return a.m_text != b.m_text; }
    friend bool operator<(const ZrUtf8String& a, const ZrUtf8String& b) { return a.m_text < b.m_text; }

private:
    std::string m_text;
};

// 0 when equal ignoring ASCII case; otherwise below 0 when `a` sorts first.
ZRHOST_EXPORT int Zr_stricmpA(const char* a, const char* b);
// Non-empty and all of '0'..'9'.
ZRHOST_EXPORT bool zrutIsUnsignedDigit(const ZrUtf8String& text);
// Splits at every occurrence of `separator`, keeping empty parts ("A$$B" gives A, "", B; "" gives one
// empty part).
ZRHOST_EXPORT void zrutSplitString(const ZrUtf8String& text, const ZrUtf8String& separator,
                                   ZrArray<ZrUtf8String>& parts);

#include "zrstring.h"

#include "zrutf8.h"

#include <QChar>

#include <algorithm>
#include <cstdarg>
#include <cwchar>
#include <vector>

namespace {

// vswprintf reports a short buffer and a bad format alike, so growth must stop somewhere.
constexpr size_t kMaxFormattedLength = size_t(1) << 20;

// The host's texts come from Windows, where "%s" and "%c" in a wide format take wide arguments;
// glibc's vswprintf wants "%ls" and "%lc" for those.
std::wstring toGlibcFormat(const wchar_t* fmt)
{
    static const std::wstring kFlagsWidthPrecision = L"0123456789$*.-+ #'";
    static const std::wstring kLengthModifiers = L"hlLqjzt";
    std::wstring out;
    for (const wchar_t* p = fmt; *p; ++p) {
        out += *p;
        if (*p != L'%')
            continue;
        ++p;
        while (*p && kFlagsWidthPrecision.find(*p) != std::wstring::npos)
            out += *p++;
        const bool hasLength = *p && kLengthModifiers.find(*p) != std::wstring::npos;
        while (*p && kLengthModifiers.find(*p) != std::wstring::npos)
            out += *p++;
        if (!*p)
            break;
        if (!hasLength && (*p == L's' || *p == L'c'))
            out += L'l';
        out += *p;
    }
    return out;
}

} // namespace

ZrString::ZrString(const ZrUtf8String& text)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.c_str());
    const size_t size = text.std().size();
    m_text.reserve(size);
    for (size_t i = 0; i < size;) {
        char32_t codePoint = 0;
        const int length = ZrUtf8::decode(bytes + i, size - i, codePoint);
        if (length > 0) {
            m_text += static_cast<wchar_t>(codePoint);
            i += static_cast<size_t>(length);
        } else {
            m_text += static_cast<wchar_t>(ZrUtf8::kReplacement);
            i += static_cast<size_t>(-length);
        }
    }
}

ZrString ZrString::fromUtf8(const char* text)
{
    return ZrString(ZrUtf8String(text));
}

ZrString ZrString::format(const wchar_t* fmt, ...)
{
    if (!fmt)
        return ZrString();
    const std::wstring glibcFormat = toGlibcFormat(fmt);
    std::vector<wchar_t> buffer(256);
    va_list args;
    va_start(args, fmt);
    ZrString result;
    for (;;) {
        va_list attempt;
        va_copy(attempt, args);
        const int written = std::vswprintf(buffer.data(), buffer.size(), glibcFormat.c_str(), attempt);
        va_end(attempt);
        if (written >= 0) {
            result = ZrString(buffer.data(), static_cast<size_t>(written));
            break;
        }
        if (buffer.size() >= kMaxFormattedLength)
            break;
        buffer.resize(buffer.size() * 2);
    }
    va_end(args);
    return result;
}

QString ZrString::toQString() const
{
    // Names and messages lie in the basic plane almost always: one pass that stores each character
    // as it is, and Qt's general conversion for text that needs surrogate pairs or replacements.
    QString out(static_cast<int>(m_text.size()), Qt::Uninitialized);
    QChar* to = out.data();
    for (wchar_t c : m_text) {
        const uint32_t code = static_cast<uint32_t>(c);
        if (code > 0xFFFF || (code >= 0xD800 && code <= 0xDFFF))
            return QString::fromStdWString(m_text);
        *to++ = QChar(static_cast<ushort>(c));
    }
    return out;
}

ZrUtf8String ZrString::toUtf8() const
{
    std::string out;
    out.reserve(m_text.size());
    for (wchar_t c : m_text)
        ZrUtf8::append(out, static_cast<char32_t>(c));
    return ZrUtf8String(std::move(out));
}

int ZrString::compareNoCase(const ZrString& other) const
{
    const size_t common = std::min(m_text.size(), other.m_text.size());
    for (size_t i = 0; i < common; ++i) {
        const uint a = QChar::toCaseFolded(static_cast<uint>(m_text[i]));
        const uint b = QChar::toCaseFolded(static_cast<uint>(other.m_text[i]));
        if (a != b)
            return a < b ? -1 : 1;
    }
    if (m_text.size() == other.m_text.size())
        return 0;
    return m_text.size() < other.m_text.size() ? -1 : 1;
}

int ZrString::find(const ZrString& sub) const
{
    const size_t at = m_text.find(sub.m_text);
    return at == std::wstring::npos ? -1 : static_cast<int>(at);
}

int ZrString::findOneOf(const wchar_t* chars) const
{
    if (!chars)
        return -1;
    // One pass over the text, without a library call per character: the sets asked for are a
    // character or two, and names are searched by the thousand.
    for (size_t i = 0; i < m_text.size(); ++i) {
        for (const wchar_t* c = chars; *c; ++c) {
            if (m_text[i] == *c)
                return static_cast<int>(i);
        }
    }
    return -1;
}

ZrString& ZrString::trim()
{
    auto isSpace = [](wchar_t c) { return QChar::isSpace(static_cast<uint>(c)); };
    size_t end = m_text.size();
    while (end > 0 && isSpace(m_text[end - 1]))
        --end;
    size_t begin = 0;
    while (begin < end && isSpace(m_text[begin]))
        ++begin;
    m_text = m_text.substr(begin, end - begin);
    return *this;
}

ZrString& ZrString::makeUpper()
{
    for (wchar_t& c : m_text)
        c = static_cast<wchar_t>(QChar::toUpper(static_cast<uint>(c)));
    return *this;
}

int Zr_stricmpA(const char* a, const char* b)
{
    const auto lower = [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : int(c); };
    const auto* x = reinterpret_cast<const unsigned char*>(a ? a : "");
    const auto* y = reinterpret_cast<const unsigned char*>(b ? b : "");
    for (;; ++x, ++y) {
        const int difference = lower(*x) - lower(*y);
        if (difference != 0 || *x == 0)
            return difference;
    }
}

bool zrutIsUnsignedDigit(const ZrUtf8String& text)
{
    const std::string& bytes = text.std();
    return !bytes.empty() && std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void zrutSplitString(const ZrUtf8String& text, const ZrUtf8String& separator, ZrArray<ZrUtf8String>& parts)
{
    parts.removeAll();
    const std::string& whole = text.std();
    const std::string& cut = separator.std();
    if (cut.empty()) {
        parts.append(text);
        return;
    }
    size_t start = 0;
    for (size_t found; (found = whole.find(cut, start)) != std::string::npos; start = found + cut.size())
        parts.append(whole.substr(start, found - start));
    parts.append(whole.substr(start));
}

#include "zrjson.h"

#include "zrutf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <locale.h>

namespace {

constexpr int kMaxNesting = 512;
// A write may grow an array by this many elements at most, so that a stray index cannot eat the memory.
constexpr size_t kMaxPadding = size_t(1) << 16;

std::vector<std::string_view> splitPath(const char* key)
{
    std::vector<std::string_view> segments;
    if (!key || !*key)
        return segments;
    std::string_view rest(key);
    for (;;) {
        const size_t slash = rest.find('/');
        segments.push_back(rest.substr(0, slash));
        if (slash == std::string_view::npos)
            break;
        rest.remove_prefix(slash + 1);
    }
    return segments;
}

// Array indices are written in plain decimal: "0", "12", never "012" or "+1".
bool parseIndex(std::string_view segment, size_t& index)
{
    if (segment.empty() || segment.size() > 9 || (segment.size() > 1 && segment[0] == '0'))
        return false;
    index = 0;
    for (char c : segment) {
        if (c < '0' || c > '9')
            return false;
        index = index * 10 + static_cast<size_t>(c - '0');
    }
    return true;
}

int clampToInt(int64_t value)
{
    return static_cast<int>(std::clamp<int64_t>(value, std::numeric_limits<int>::min(),
                                                std::numeric_limits<int>::max()));
}

// Casting an out-of-range double to an integer is undefined, so saturate first.
std::optional<int64_t> truncateToInt64(double value)
{
    if (std::isnan(value))
        return std::nullopt;
    constexpr double kTwoTo63 = 9223372036854775808.0;
    if (value >= kTwoTo63)
        return std::numeric_limits<int64_t>::max();
    if (value < -kTwoTo63)
        return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);
}

// strtod follows LC_NUMERIC, which Qt sets from the environment; JSON always uses '.'.
double parseCLocaleDouble(const std::string& text)
{
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return strtod_l(text.c_str(), nullptr, cLocale);
}

void writeEscapedString(std::string& out, const std::string& text)
{
    static const char kHex[] = "0123456789abcdef";
    out += '"';
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    for (size_t i = 0; i < text.size();) {
        const unsigned char c = bytes[i];
        if (c >= 0x80) {
            // Strings set through the API may hold any bytes; the output must stay valid UTF-8.
            char32_t codePoint = 0;
            const int length = ZrUtf8::decode(bytes + i, text.size() - i, codePoint);
            if (length > 0)
                out.append(text, i, static_cast<size_t>(length));
            else
                ZrUtf8::append(out, ZrUtf8::kReplacement);
            i += static_cast<size_t>(std::abs(length));
            continue;
        }
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                out += "\\u00";
                out += kHex[c >> 4];
                out += kHex[c & 0xF];
            } else {
                out += static_cast<char>(c);
            }
        }
        ++i;
    }
    out += '"';
}

// The shortest text that reads back as the same double, always with a '.' or an exponent so that
// it reads back as a real and not as an integer.
void writeReal(std::string& out, double value)
{
    if (!std::isfinite(value)) {
        out += "null";
        return;
    }
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    const std::string_view text(buffer, static_cast<size_t>(result.ptr - buffer));
    out += text;
    if (text.find_first_of(".e") == std::string_view::npos)
        out += ".0";
}

void writeNewline(std::string& out, int depth)
{
    out += '\n';
    out.append(static_cast<size_t>(depth) * 4, ' ');
}

} // namespace

struct IElementValueBase::Data
{
    struct Member
    {
        std::string key;
        ZrJsonPtr value;
    };

    int type = kZrJsonNull;
    bool boolean = false;
    int64_t integer = 0;
    double real = 0.0;
    std::string text;
    std::vector<ZrJsonPtr> elements;
    // Members in insertion order, and where each key sits in that order.
    std::vector<Member> members;
    std::map<std::string, size_t, std::less<>> memberIndex;

    class Parser;

    static ZrJsonPtr make(int type) { return ZrJsonPtr(new IElementValueBase(type)); }

    // A new handle on a value that someone else already holds.
    static ZrJsonPtr share(const IElementValueBase* value)
    {
        auto* shared = const_cast<IElementValueBase*>(value);
        shared->m_refs.fetch_add(1, std::memory_order_relaxed);
        return ZrJsonPtr(shared);
    }

    bool isContainer() const { return type == kZrJsonArray || type == kZrJsonObject; }

    // Becomes an empty value of `newType`; the old children go only after the value is consistent.
    void reset(int newType)
    {
        std::vector<ZrJsonPtr> oldElements = std::move(elements);
        std::vector<Member> oldMembers = std::move(members);
        elements.clear();
        members.clear();
        memberIndex.clear();
        text.clear();
        boolean = false;
        integer = 0;
        real = 0.0;
        type = newType;
    }

    // Takes the type and content of `source`, sharing its children.
    void assignFrom(const Data& source)
    {
        if (this == &source)
            return;
        reset(source.type);
        boolean = source.boolean;
        integer = source.integer;
        real = source.real;
        text = source.text;
        elements = source.elements;
        members = source.members;
        memberIndex = source.memberIndex;
    }

    const Member* findMember(std::string_view key) const
    {
        const auto it = memberIndex.find(key);
        return it == memberIndex.end() ? nullptr : &members[it->second];
    }

    void setMember(std::string_view key, ZrJsonPtr value)
    {
        const auto it = memberIndex.find(key);
        if (it != memberIndex.end()) {
            members[it->second].value = std::move(value);
            return;
        }
        memberIndex.emplace(std::string(key), members.size());
        members.push_back({std::string(key), std::move(value)});
    }

    bool removeMember(std::string_view key)
    {
        const auto it = memberIndex.find(key);
        if (it == memberIndex.end())
            return false;
        const size_t position = it->second;
        memberIndex.erase(it);
        members.erase(members.begin() + static_cast<std::ptrdiff_t>(position));
        for (auto& entry : memberIndex) {
            if (entry.second > position)
                --entry.second;
        }
        return true;
    }

    bool removeElement(size_t index)
    {
        if (type != kZrJsonArray || index >= elements.size())
            return false;
        elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(index));
        return true;
    }

    // The existing child named by one path segment, or null.
    IElementValueBase* child(std::string_view segment) const
    {
        if (type == kZrJsonObject) {
            const Member* member = findMember(segment);
            return member ? member->value.get() : nullptr;
        }
        size_t index = 0;
        if (type == kZrJsonArray && parseIndex(segment, index) && index < elements.size())
            return elements[index].get();
        return nullptr;
    }

    // Whether a write can go through this value (null when it does not exist yet) by `segment`.
    static bool acceptsWrite(const IElementValueBase* node, std::string_view segment)
    {
        if (node && node->d->type == kZrJsonObject)
            return true;
        size_t index = 0;
        const bool isIndex = parseIndex(segment, index);
        if (node && node->d->type == kZrJsonArray)
            return isIndex && index <= node->d->elements.size() + kMaxPadding;
        return !isIndex || index <= kMaxPadding;
    }

    // Puts `value` under `segment`, turning a value that is not a container into one: an array when
    // the segment is an index, an object otherwise. The caller has checked acceptsWrite.
    void place(std::string_view segment, ZrJsonPtr value)
    {
        size_t index = 0;
        const bool isIndex = parseIndex(segment, index);
        if (!isContainer())
            reset(isIndex ? kZrJsonArray : kZrJsonObject);
        if (type == kZrJsonObject) {
            setMember(segment, std::move(value));
        } else if (index < elements.size()) {
            elements[index] = std::move(value);
        } else {
            while (elements.size() < index)
                elements.push_back(make(kZrJsonNull));
            elements.push_back(std::move(value));
        }
    }

    IElementValueBase* childForWrite(std::string_view segment)
    {
        if (IElementValueBase* existing = child(segment))
            return existing;
        ZrJsonPtr fresh = make(kZrJsonUndefined);
        IElementValueBase* raw = fresh.get();
        place(segment, std::move(fresh));
        return raw;
    }

    static const IElementValueBase* find(const IElementValueBase& root, const char* key)
    {
        const IElementValueBase* node = &root;
        for (std::string_view segment : splitPath(key)) {
            node = node->d->child(segment);
            if (!node)
                return nullptr;
        }
        return node;
    }

    static bool reaches(const IElementValueBase* from, const IElementValueBase* target)
    {
        std::vector<const IElementValueBase*> pending{from};
        std::unordered_set<const IElementValueBase*> seen{from};
        while (!pending.empty()) {
            const IElementValueBase* node = pending.back();
            pending.pop_back();
            if (node == target)
                return true;
            auto visit = [&](const ZrJsonPtr& next) {
                if (seen.insert(next.get()).second)
                    pending.push_back(next.get());
            };
            for (const ZrJsonPtr& element : node->d->elements)
                visit(element);
            for (const Member& member : node->d->members)
                visit(member.value);
        }
        return false;
    }

    // The deepest existing value that a write along `segments` keeps and that would hold the new
    // value, or null when the write cannot be done.
    static const IElementValueBase* planWrite(const IElementValueBase& root,
                                              const std::vector<std::string_view>& segments)
    {
        const IElementValueBase* deepest = &root;
        const IElementValueBase* node = &root;
        for (size_t i = 0; i < segments.size(); ++i) {
            if (!acceptsWrite(node, segments[i]))
                return nullptr;
            if (node && i + 1 < segments.size()) {
                node = node->d->child(segments[i]);
                if (node)
                    deepest = node;
            }
        }
        return deepest;
    }

    // Writes `value` at the path `key`. A value may not become its own descendant: such a write is
    // dropped, as is one that cannot follow the path.
    static void store(IElementValueBase& root, const char* key, const ZrJsonPtr& value)
    {
        const ZrJsonPtr stored = value ? value : make(kZrJsonNull);
        const std::vector<std::string_view> segments = splitPath(key);
        const IElementValueBase* holder = planWrite(root, segments);
        if (!holder || reaches(stored.get(), holder))
            return;
        if (segments.empty()) {
            root.d->assignFrom(*stored->d);
            return;
        }
        IElementValueBase* node = &root;
        for (size_t i = 0; i + 1 < segments.size(); ++i)
            node = node->d->childForWrite(segments[i]);
        node->d->place(segments.back(), stored);
    }

    static std::optional<int64_t> integerOf(const IElementValueBase* node)
    {
        if (!node)
            return std::nullopt;
        switch (node->d->type) {
        case kZrJsonInt: return node->d->integer;
        case kZrJsonReal: return truncateToInt64(node->d->real);
        case kZrJsonBool: return node->d->boolean ? 1 : 0;
        default: return std::nullopt;
        }
    }

    static std::optional<double> realOf(const IElementValueBase* node)
    {
        if (!node)
            return std::nullopt;
        switch (node->d->type) {
        case kZrJsonInt: return static_cast<double>(node->d->integer);
        case kZrJsonReal: return node->d->real;
        case kZrJsonBool: return node->d->boolean ? 1.0 : 0.0;
        default: return std::nullopt;
        }
    }

    static std::optional<bool> boolOf(const IElementValueBase* node)
    {
        if (!node)
            return std::nullopt;
        switch (node->d->type) {
        case kZrJsonInt: return node->d->integer != 0;
        case kZrJsonReal: return node->d->real != 0.0;
        case kZrJsonBool: return node->d->boolean;
        default: return std::nullopt;
        }
    }

    static const std::string* textOf(const IElementValueBase* node)
    {
        return node && node->d->type == kZrJsonString ? &node->d->text : nullptr;
    }

    void writeJson(std::string& out, bool indented, int depth) const
    {
        switch (type) {
        case kZrJsonBool: out += boolean ? "true" : "false"; return;
        case kZrJsonInt: {
            char buffer[24];
            const auto result = std::to_chars(buffer, buffer + sizeof buffer, integer);
            out.append(buffer, result.ptr);
            return;
        }
        case kZrJsonReal: writeReal(out, real); return;
        case kZrJsonString: writeEscapedString(out, text); return;
        case kZrJsonArray:
        case kZrJsonObject: writeContainer(out, indented, depth); return;
        default: out += "null"; return;
        }
    }

    void writeContainer(std::string& out, bool indented, int depth) const
    {
        const bool isArray = type == kZrJsonArray;
        out += isArray ? '[' : '{';
        bool first = true;
        auto beginItem = [&] {
            if (!first)
                out += ',';
            first = false;
            if (indented)
                writeNewline(out, depth + 1);
        };
        if (isArray) {
            for (const ZrJsonPtr& element : elements) {
                beginItem();
                element->d->writeJson(out, indented, depth + 1);
            }
        } else {
            for (const Member& member : members) {
                if (member.value->d->type == kZrJsonUndefined)
                    continue;
                beginItem();
                writeEscapedString(out, member.key);
                out += indented ? ": " : ":";
                member.value->d->writeJson(out, indented, depth + 1);
            }
        }
        if (indented && !first)
            writeNewline(out, depth);
        out += isArray ? ']' : '}';
    }
};

// Recursive descent over RFC 8259 text. Stops at the first fault and remembers where it is.
class IElementValueBase::Data::Parser
{
public:
    Parser(const char* text, size_t length) : m_begin(text), m_end(text + length), m_pos(text)
    {
    }

    ZrJsonPtr parseDocument()
    {
        // Editors on Windows start files with a byte order mark, which RFC 8259 lets a reader skip.
        static const char kByteOrderMark[] = "\xEF\xBB\xBF";
        if (remaining() >= 3 && std::memcmp(m_pos, kByteOrderMark, 3) == 0)
            m_pos += 3;
        if (looksLikeUtf16())
            return fail("UTF-16 text, where UTF-8 is expected");
        ZrJsonPtr value = parseValue(0);
        if (!value)
            return value;
        skipWhitespace();
        return atEnd() ? value : fail("unexpected data after the value");
    }

    const char* errorMessage() const { return m_error; }
    size_t errorOffset() const { return static_cast<size_t>(m_errorAt - m_begin); }

private:
    size_t remaining() const { return static_cast<size_t>(m_end - m_pos); }

    // Its byte order mark, or a zero byte beside the first character: JSON in UTF-8 has neither.
    bool looksLikeUtf16() const
    {
        if (remaining() < 2)
            return false;
        const auto first = static_cast<unsigned char>(m_pos[0]);
        const auto second = static_cast<unsigned char>(m_pos[1]);
        return (first == 0xFF && second == 0xFE) || (first == 0xFE && second == 0xFF) || (first == 0) != (second == 0);
    }
    bool atEnd() const { return m_pos == m_end; }

    bool reject(const char* message, const char* at)
    {
        m_error = message;
        m_errorAt = at;
        return false;
    }

    ZrJsonPtr fail(const char* message, const char* at = nullptr)
    {
        reject(message, at ? at : m_pos);
        return ZrJsonPtr();
    }

    // Where the text simply stops, say so rather than naming what was expected.
    ZrJsonPtr failExpecting(const char* message)
    {
        return fail(atEnd() ? "unexpected end of input" : message);
    }

    void skipWhitespace()
    {
        while (m_pos != m_end && (*m_pos == ' ' || *m_pos == '\t' || *m_pos == '\n' || *m_pos == '\r'))
            ++m_pos;
    }

    bool isDigitHere() const { return m_pos != m_end && *m_pos >= '0' && *m_pos <= '9'; }

    ZrJsonPtr parseValue(int depth)
    {
        skipWhitespace();
        if (atEnd())
            return fail("unexpected end of input");
        switch (*m_pos) {
        case '{':
        case '[':
            if (depth == kMaxNesting)
                return fail("nesting deeper than 512 levels");
            return *m_pos == '{' ? parseObject(depth + 1) : parseArray(depth + 1);
        case '"': {
            std::string text;
            if (!parseString(text))
                return ZrJsonPtr();
            ZrJsonPtr value = make(kZrJsonString);
            value->d->text = std::move(text);
            return value;
        }
        case 't': return parseLiteral("true", ElementValue::fromBool(true));
        case 'f': return parseLiteral("false", ElementValue::fromBool(false));
        case 'n': return parseLiteral("null", make(kZrJsonNull));
        default:
            if (*m_pos == '-' || isDigitHere())
                return parseNumber();
            return fail("expected a value");
        }
    }

    ZrJsonPtr parseLiteral(std::string_view word, ZrJsonPtr value)
    {
        if (remaining() < word.size() || std::memcmp(m_pos, word.data(), word.size()) != 0)
            return fail("invalid literal");
        m_pos += word.size();
        return value;
    }

    ZrJsonPtr parseObject(int depth)
    {
        ++m_pos;
        ZrJsonPtr object = make(kZrJsonObject);
        skipWhitespace();
        if (!atEnd() && *m_pos == '}') {
            ++m_pos;
            return object;
        }
        for (;;) {
            skipWhitespace();
            if (atEnd() || *m_pos != '"')
                return failExpecting("expected a string as object key");
            std::string key;
            if (!parseString(key))
                return ZrJsonPtr();
            skipWhitespace();
            if (atEnd() || *m_pos != ':')
                return failExpecting("expected ':' after object key");
            ++m_pos;
            ZrJsonPtr value = parseValue(depth);
            if (!value)
                return value;
            object->d->setMember(key, std::move(value));
            skipWhitespace();
            if (!atEnd() && *m_pos == ',') {
                ++m_pos;
                continue;
            }
            if (!atEnd() && *m_pos == '}') {
                ++m_pos;
                return object;
            }
            return failExpecting("expected ',' or '}' after object member");
        }
    }

    ZrJsonPtr parseArray(int depth)
    {
        ++m_pos;
        ZrJsonPtr array = make(kZrJsonArray);
        skipWhitespace();
        if (!atEnd() && *m_pos == ']') {
            ++m_pos;
            return array;
        }
        for (;;) {
            ZrJsonPtr element = parseValue(depth);
            if (!element)
                return element;
            array->d->elements.push_back(std::move(element));
            skipWhitespace();
            if (!atEnd() && *m_pos == ',') {
                ++m_pos;
                continue;
            }
            if (!atEnd() && *m_pos == ']') {
                ++m_pos;
                return array;
            }
            return failExpecting("expected ',' or ']' after array element");
        }
    }

    ZrJsonPtr parseNumber()
    {
        const char* start = m_pos;
        if (*m_pos == '-')
            ++m_pos;
        if (!isDigitHere())
            return fail("invalid number");
        if (*m_pos == '0') {
            ++m_pos;
        } else {
            while (isDigitHere())
                ++m_pos;
        }
        bool isInteger = true;
        if (!atEnd() && *m_pos == '.') {
            ++m_pos;
            if (!isDigitHere())
                return fail("invalid number");
            while (isDigitHere())
                ++m_pos;
            isInteger = false;
        }
        if (!atEnd() && (*m_pos == 'e' || *m_pos == 'E')) {
            ++m_pos;
            if (!atEnd() && (*m_pos == '+' || *m_pos == '-'))
                ++m_pos;
            if (!isDigitHere())
                return fail("invalid number");
            while (isDigitHere())
                ++m_pos;
            isInteger = false;
        }
        if (isInteger) {
            int64_t integer = 0;
            if (std::from_chars(start, m_pos, integer).ec == std::errc())
                return ElementValue::fromInt(integer);
        }
        // Reals, and integers too big for 64 bits.
        const double real = parseCLocaleDouble(std::string(start, m_pos));
        if (std::isinf(real))
            return fail("number out of range", start);
        return ElementValue::fromReal(real);
    }

    // Four hex digits after "\u" at m_pos; false when they are not there.
    bool parseHex4(char32_t& unit)
    {
        if (remaining() < 4)
            return false;
        unit = 0;
        for (int i = 0; i < 4; ++i) {
            const char c = *m_pos++;
            unit <<= 4;
            if (c >= '0' && c <= '9')
                unit |= static_cast<char32_t>(c - '0');
            else if (c >= 'a' && c <= 'f')
                unit |= static_cast<char32_t>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                unit |= static_cast<char32_t>(c - 'A' + 10);
            else
                return false;
        }
        return true;
    }

    // A "\uXXXX" escape, with its low half when it is a high surrogate. Lone surrogates are faults.
    bool parseUnicodeEscape(const char* escape, std::string& out)
    {
        char32_t unit = 0;
        if (!parseHex4(unit))
            return reject("invalid \\u escape", escape);
        if (unit >= 0xDC00 && unit <= 0xDFFF)
            return reject("lone surrogate in \\u escape", escape);
        if (unit >= 0xD800 && unit <= 0xDBFF) {
            char32_t low = 0;
            if (remaining() < 2 || m_pos[0] != '\\' || m_pos[1] != 'u')
                return reject("lone surrogate in \\u escape", escape);
            const char* lowEscape = m_pos;
            m_pos += 2;
            if (!parseHex4(low))
                return reject("invalid \\u escape", lowEscape);
            if (low < 0xDC00 || low > 0xDFFF)
                return reject("lone surrogate in \\u escape", escape);
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
        ZrUtf8::append(out, unit);
        return true;
    }

    bool parseEscape(const char* opening, std::string& out)
    {
        const char* escape = m_pos++;
        if (atEnd())
            return reject("unterminated string", opening);
        const char c = *m_pos++;
        switch (c) {
        case '"': out += '"'; return true;
        case '\\': out += '\\'; return true;
        case '/': out += '/'; return true;
        case 'b': out += '\b'; return true;
        case 'f': out += '\f'; return true;
        case 'n': out += '\n'; return true;
        case 'r': out += '\r'; return true;
        case 't': out += '\t'; return true;
        case 'u': return parseUnicodeEscape(escape, out);
        default: return reject("invalid escape sequence", escape);
        }
    }

    bool parseString(std::string& out)
    {
        const char* opening = m_pos++;
        for (;;) {
            if (atEnd())
                return reject("unterminated string", opening);
            const auto c = static_cast<unsigned char>(*m_pos);
            if (c == '"') {
                ++m_pos;
                return true;
            }
            if (c == '\\') {
                if (!parseEscape(opening, out))
                    return false;
            } else if (c < 0x20) {
                return reject("control character in string", m_pos);
            } else {
                char32_t codePoint = 0;
                const int length =
                    ZrUtf8::decode(reinterpret_cast<const unsigned char*>(m_pos), remaining(), codePoint);
                if (length < 0)
                    return reject("invalid UTF-8 in string", m_pos);
                out.append(m_pos, static_cast<size_t>(length));
                m_pos += length;
            }
        }
    }

    const char* m_begin;
    const char* m_end;
    const char* m_pos;
    const char* m_error = nullptr;
    const char* m_errorAt = nullptr;
};

ZrJsonPtr::ZrJsonPtr(const ZrJsonPtr& other) : m_value(other.m_value)
{
    if (m_value)
        m_value->m_refs.fetch_add(1, std::memory_order_relaxed);
}

ZrJsonPtr::~ZrJsonPtr()
{
    if (m_value && m_value->m_refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete m_value;
}

bool ZrJsonPtr::isNull() const
{
    return !m_value || m_value->isNull();
}

bool ZrJsonPtr::isNullOrNoDef() const
{
    return !m_value || m_value->isNullOrNoDef();
}

IElementValueBase::IElementValueBase(int type) : d(new Data)
{
    d->type = type;
}

IElementValueBase::~IElementValueBase()
{
    delete d;
}

int IElementValueBase::type() const { return d->type; }
bool IElementValueBase::isNull() const { return d->type == kZrJsonNull; }
bool IElementValueBase::isNullOrNoDef() const { return isNull() || isUndefined(); }
bool IElementValueBase::isUndefined() const { return d->type == kZrJsonUndefined; }
bool IElementValueBase::isArray() const { return d->type == kZrJsonArray; }
bool IElementValueBase::isObject() const { return d->type == kZrJsonObject; }
bool IElementValueBase::isString() const { return d->type == kZrJsonString; }
bool IElementValueBase::isNumber() const { return d->type == kZrJsonInt || d->type == kZrJsonReal; }
bool IElementValueBase::isBool() const { return d->type == kZrJsonBool; }

bool IElementValueBase::hasProperty(const char* key) const
{
    return Data::find(*this, key) != nullptr;
}

int IElementValueBase::ArrayCount() const
{
    return isArray() ? static_cast<int>(d->elements.size()) : 0;
}

int IElementValueBase::size() const
{
    return static_cast<int>(isArray() ? d->elements.size() : d->members.size());
}

ZrJsonPtr IElementValueBase::at(int i) const
{
    if (i >= 0 && i < size())
        return isArray() ? d->elements[static_cast<size_t>(i)] : d->members[static_cast<size_t>(i)].value;
    return Data::make(kZrJsonUndefined);
}

ZrUtf8String IElementValueBase::keyAt(int i) const
{
    if (isObject() && i >= 0 && i < size())
        return ZrUtf8String(d->members[static_cast<size_t>(i)].key);
    return ZrUtf8String();
}

bool IElementValueBase::remove_array_item(int i)
{
    return i >= 0 && d->removeElement(static_cast<size_t>(i));
}

bool IElementValueBase::removeProperty(const char* key)
{
    std::vector<std::string_view> segments = splitPath(key);
    if (segments.empty())
        return false;
    const std::string_view last = segments.back();
    const IElementValueBase* parent = this;
    for (size_t i = 0; parent && i + 1 < segments.size(); ++i)
        parent = parent->d->child(segments[i]);
    if (!parent)
        return false;
    if (parent->d->type == kZrJsonObject)
        return parent->d->removeMember(last);
    size_t index = 0;
    return parseIndex(last, index) && parent->d->removeElement(index);
}

void IElementValueBase::append(const ZrJsonPtr& element)
{
    if (isNullOrNoDef())
        d->reset(kZrJsonArray);
    const ZrJsonPtr stored = element ? element : Data::make(kZrJsonNull);
    if (!isArray() || Data::reaches(stored.get(), this))
        return;
    d->elements.push_back(stored);
}

int IElementValueBase::GetVarI(const char* key, int def) const
{
    return clampToInt(Data::integerOf(Data::find(*this, key)).value_or(def));
}

int64_t IElementValueBase::GetVarL(const char* key, int64_t def) const
{
    return Data::integerOf(Data::find(*this, key)).value_or(def);
}

bool IElementValueBase::GetVarB(const char* key, bool def) const
{
    return Data::boolOf(Data::find(*this, key)).value_or(def);
}

double IElementValueBase::GetVarD(const char* key, double def) const
{
    return Data::realOf(Data::find(*this, key)).value_or(def);
}

ZrUtf8String IElementValueBase::GetVarS(const char* key, const char* def) const
{
    const std::string* text = Data::textOf(Data::find(*this, key));
    return text ? ZrUtf8String(*text) : ZrUtf8String(def);
}

ZrString IElementValueBase::GetVarSW(const char* key, const wchar_t* def) const
{
    const std::string* text = Data::textOf(Data::find(*this, key));
    return text ? ZrString(ZrUtf8String(*text)) : ZrString(def);
}

ZrJsonPtr IElementValueBase::GetVarJsonPtr(const char* key) const
{
    const IElementValueBase* node = Data::find(*this, key);
    return node ? Data::share(node) : Data::make(kZrJsonUndefined);
}

bool IElementValueBase::GetDataI(const char* key, int& out) const
{
    const std::optional<int64_t> value = Data::integerOf(Data::find(*this, key));
    if (value)
        out = clampToInt(*value);
    return value.has_value();
}

bool IElementValueBase::GetDataS(const char* key, ZrUtf8String& out) const
{
    const std::string* text = Data::textOf(Data::find(*this, key));
    if (text)
        out = ZrUtf8String(*text);
    return text != nullptr;
}

int32_t IElementValueBase::safePropertyi32(const ZrUtf8String& key, int32_t def) const
{
    return GetVarI(key.c_str(), def);
}

int64_t IElementValueBase::safePropertyi(const ZrUtf8String& key, int64_t def) const
{
    return GetVarL(key.c_str(), def);
}

bool IElementValueBase::safePropertyb(const ZrUtf8String& key, bool def) const
{
    return GetVarB(key.c_str(), def);
}

ZrUtf8String IElementValueBase::safePropertys(const ZrUtf8String& key, const ZrUtf8String& def) const
{
    const std::string* text = Data::textOf(Data::find(*this, key.c_str()));
    return text ? ZrUtf8String(*text) : def;
}

ZrString IElementValueBase::safePropertysW(const ZrUtf8String& key, const ZrString& def) const
{
    const std::string* text = Data::textOf(Data::find(*this, key.c_str()));
    return text ? ZrString(ZrUtf8String(*text)) : def;
}

ZrJsonPtr IElementValueBase::safeProperty_ptr(const ZrUtf8String& key) const
{
    const IElementValueBase* node = Data::find(*this, key.c_str());
    return node ? Data::share(node) : ZrJsonPtr();
}

int64_t IElementValueBase::safeIntValue(int64_t def) const
{
    return Data::integerOf(this).value_or(def);
}

bool IElementValueBase::safeBoolValue(bool def) const
{
    return Data::boolOf(this).value_or(def);
}

double IElementValueBase::safeRealValue(double def) const
{
    return Data::realOf(this).value_or(def);
}

ZrUtf8String IElementValueBase::safeStrValue(const ZrUtf8String& def) const
{
    return safePropertys(ZrUtf8String(), def);
}

ZrString IElementValueBase::safeStrValueW(const ZrString& def) const
{
    return safePropertysW(ZrUtf8String(), def);
}

void IElementValueBase::SetDataI(const char* key, int value) { Data::store(*this, key, ElementValue::fromInt(value)); }
void IElementValueBase::SetDataL(const char* key, int64_t value) { Data::store(*this, key, ElementValue::fromInt(value)); }
void IElementValueBase::SetDataB(const char* key, bool value) { Data::store(*this, key, ElementValue::fromBool(value)); }
void IElementValueBase::SetDataD(const char* key, double value) { Data::store(*this, key, ElementValue::fromReal(value)); }
void IElementValueBase::SetDataS(const char* key, const ZrUtf8String& value) { Data::store(*this, key, ElementValue::fromString(value)); }
void IElementValueBase::SetDataSW(const char* key, const ZrString& value) { SetDataS(key, value.toUtf8()); }
void IElementValueBase::SetDataJ(const char* key, const ZrJsonPtr& value) { Data::store(*this, key, value); }
void IElementValueBase::SetDataNull(const char* key) { Data::store(*this, key, ZrJsonPtr()); }

void IElementValueBase::setNull()
{
    d->reset(kZrJsonNull);
}

void IElementValueBase::setInt(int64_t value)
{
    d->reset(kZrJsonInt);
    d->integer = value;
}

void IElementValueBase::setReal(double value)
{
    d->reset(kZrJsonReal);
    d->real = value;
}

void IElementValueBase::setBool(bool value)
{
    d->reset(kZrJsonBool);
    d->boolean = value;
}

void IElementValueBase::setString(const ZrUtf8String& value)
{
    d->reset(kZrJsonString);
    d->text = value.std();
}

ZrJsonPtr IElementValueBase::clone() const
{
    ZrJsonPtr copy = Data::make(d->type);
    Data& target = *copy->d;
    target.boolean = d->boolean;
    target.integer = d->integer;
    target.real = d->real;
    target.text = d->text;
    target.elements.reserve(d->elements.size());
    for (const ZrJsonPtr& element : d->elements)
        target.elements.push_back(element->clone());
    target.members.reserve(d->members.size());
    for (const Data::Member& member : d->members)
        target.members.push_back({member.key, member.value->clone()});
    target.memberIndex = d->memberIndex;
    return copy;
}

bool IElementValueBase::equals(const IElementValueBase& other) const
{
    if (this == &other)
        return true;
    if (d->type != other.d->type)
        return false;
    switch (d->type) {
    case kZrJsonBool: return d->boolean == other.d->boolean;
    case kZrJsonInt: return d->integer == other.d->integer;
    case kZrJsonReal: return d->real == other.d->real;
    case kZrJsonString: return d->text == other.d->text;
    case kZrJsonArray:
        return std::equal(d->elements.begin(), d->elements.end(), other.d->elements.begin(),
                          other.d->elements.end(),
                          [](const ZrJsonPtr& a, const ZrJsonPtr& b) { return a->equals(*b); });
    case kZrJsonObject:
        return d->members.size() == other.d->members.size() &&
               std::all_of(d->members.begin(), d->members.end(), [&](const Data::Member& member) {
                   const Data::Member* match = other.d->findMember(member.key);
                   return match && member.value->equals(*match->value);
               });
    default: return true;
    }
}

ZrUtf8String IElementValueBase::toJson(bool indented) const
{
    std::string out;
    d->writeJson(out, indented, 0);
    return ZrUtf8String(std::move(out));
}

ZrJsonPtr ElementValue::createObject(int type)
{
    const bool known = type >= kZrJsonNull && type <= kZrJsonUndefined;
    return IElementValueBase::Data::make(known ? type : kZrJsonNull);
}

ZrJsonPtr ElementValue::fromInt(int64_t value)
{
    ZrJsonPtr result = createObject(kZrJsonInt);
    result->setInt(value);
    return result;
}

ZrJsonPtr ElementValue::fromReal(double value)
{
    ZrJsonPtr result = createObject(kZrJsonReal);
    result->setReal(value);
    return result;
}

ZrJsonPtr ElementValue::fromBool(bool value)
{
    ZrJsonPtr result = createObject(kZrJsonBool);
    result->setBool(value);
    return result;
}

ZrJsonPtr ElementValue::fromString(const ZrUtf8String& value)
{
    ZrJsonPtr result = createObject(kZrJsonString);
    result->setString(value);
    return result;
}

ZrJsonPtr ElementValue::parse(const char* text, size_t length, ZrJsonParseError* error)
{
    if (!text) {
        text = "";
        length = 0;
    }
    IElementValueBase::Data::Parser parser(text, length);
    ZrJsonPtr value = parser.parseDocument();
    if (!error)
        return value;
    *error = ZrJsonParseError();
    if (!value) {
        const size_t offset = parser.errorOffset();
        const char* lineStart = text;
        int line = 1;
        for (const char* p = text; p != text + offset; ++p) {
            if (*p == '\n') {
                ++line;
                lineStart = p + 1;
            }
        }
        error->message = ZrUtf8String(parser.errorMessage());
        error->offset = static_cast<int>(std::min<size_t>(offset, std::numeric_limits<int>::max()));
        error->line = line;
        error->column = static_cast<int>(std::min<ptrdiff_t>(text + offset - lineStart + 1,
                                                             std::numeric_limits<int>::max()));
    }
    return value;
}

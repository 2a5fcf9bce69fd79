#include "uicolorbookmng.h"

#include "zrdbdatabase.h"
#include "zrfindfile.h"
#include "zrsystem.h"
#include "zrxmlfiler.h"

#include <QDebug>
#include <QFileInfo>

#include <algorithm>
#include <climits>
#include <cwctype>

namespace {

// A book is a few hundred kilobytes; anything far beyond that is not a book, and reading it whole
// would only cost memory.
constexpr qint64 maxBookFileSize = 32 * 1024 * 1024;

// The filer of one file, destroyed with the scope.
class XmlFile
{
public:
    explicit XmlFile(const ZrString& path) : m_filer(CXuUtXmlFiler::createInstance())
    {
        if (QFileInfo(path.toQString()).size() > maxBookFileSize) {
            qDebug() << "colour book passed over, too large:" << path.toQString();
            return;
        }
        m_loaded = m_filer && m_filer->loadFile(path);
    }
    ~XmlFile()
    {
        if (m_filer)
            CXuUtXmlFiler::destroyInstance(m_filer);
    }
    CXuUtXmlNode* root() const { return m_loaded ? m_filer->getRootNode() : nullptr; }

private:
    Q_DISABLE_COPY(XmlFile)
    CXuUtXmlFiler* m_filer;
    bool m_loaded = false;
};

QString nodeName(const CXuUtXmlNode* node)
{
    ZrString name;
    node->getName(name);
    return name.toQString();
}

ZrString nodeText(const CXuUtXmlNode* node)
{
    ZrString text;
    node->getText(text);
    return text;
}

// As the C runtime's _wtoi: blanks, a sign, then digits up to the first other character; 0 when
// there are none. Values beyond an int are clamped.
int wtoi(const ZrString& text)
{
    const std::wstring& s = text.std();
    size_t i = 0;
    while (i < s.size() && std::iswspace(static_cast<wint_t>(s[i])))
        ++i;
    bool negative = false;
    if (i < s.size() && (s[i] == L'+' || s[i] == L'-'))
        negative = s[i++] == L'-';
    long long value = 0;
    for (; i < s.size() && s[i] >= L'0' && s[i] <= L'9'; ++i) {
        value = value * 10 + (s[i] - L'0');
        if (value > 1LL << 32)
            break;
    }
    if (negative)
        value = -value;
    return int(std::max<long long>(INT_MIN, std::min<long long>(INT_MAX, value)));
}

// 0, 1 or 2 for the element of red, green or blue, whose names end in `suffix`; -1 for any other.
int channelSlot(const QString& name, QLatin1String suffix)
{
    static const QLatin1String channels[] = {QLatin1String("red"), QLatin1String("green"), QLatin1String("blue")};
    for (int slot = 0; slot < 3; ++slot) {
        if (name.size() == channels[slot].size() + suffix.size() && name.startsWith(channels[slot])
            && name.endsWith(suffix))
            return slot;
    }
    return -1;
}

// Reads the name and channels below a "colorEntry" or "pageColor" and answers how many of them it
// found: a name and three channels make an entry, three channels alone a page colour.
int readColorInfo(CXuUtXmlNode* node, uint32_t& rgbWord, ZrString& colorName)
{
    int count = 0;
    for (int i = 0; i < node->childCount(); ++i) {
        CXuUtXmlNode* child = node->childAt(i);
        const QString name = nodeName(child);
        if (name == QLatin1String("colorName")) {
            colorName = nodeText(child);
            ++count;
        } else if (name == QLatin1String("RGB8")) {
            for (int c = 0; c < child->childCount(); ++c) {
                CXuUtXmlNode* channel = child->childAt(c);
                const int slot = channelSlot(nodeName(channel), QLatin1String());
                if (slot < 0)
                    continue;
                // No range test: a number above 255 runs into the next channel, as books expect.
                rgbWord |= uint32_t(wtoi(nodeText(channel))) << (8 * slot);
                ++count;
            }
        } else if (name == QLatin1String("RGB8Encrypt")) {
            ZrUtf8String masked[3];
            int found = 0;
            for (int c = 0; c < child->childCount(); ++c) {
                CXuUtXmlNode* channel = child->childAt(c);
                const int slot = channelSlot(nodeName(channel), QLatin1String("Encrypt"));
                if (slot < 0)
                    continue;
                const ZrUtf8String text = nodeText(channel).toUtf8();
                // A shorter text holds no two digits; the channel is not counted, so the entry drops.
                if (text.length() < 3)
                    continue;
                masked[slot] = text;
                ++found;
                ++count;
            }
            // The key is the name's as read so far: a name after the channels is not part of it.
            if (found == 3)
                rgbWord = zrutUnmaskBookColor(colorName.toUtf8(), masked[0], masked[1], masked[2]);
        }
    }
    return count;
}

ZrString withoutBlanks(const ZrString& text)
{
    std::wstring s = text.std();
    s.erase(std::remove(s.begin(), s.end(), L' '), s.end());
    return ZrString(std::move(s));
}

bool holdsDigit(const ZrString& text)
{
    const std::wstring& s = text.std();
    return std::any_of(s.begin(), s.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

QString extensionOf(const QString& name)
{
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : name.mid(dot).toLower();
}

// One masked digit: the signed 8-bit distance from the base letter, wrapped into 0..25.
int maskedDigit(char letter, char base)
{
    const int difference = static_cast<signed char>(static_cast<unsigned char>(letter - base));
    return difference < 0 ? difference + 26 : difference;
}

uint32_t maskedByte(char high, char low, char base)
{
    return uint32_t(maskedDigit(high, base) * 16 + maskedDigit(low, base)) & 0xFF;
}

} // namespace

uint32_t zrutBookColorKey(const ZrUtf8String& colorName)
{
    uint32_t key = 0;
    int shift = 0;
    const char* bytes = colorName.c_str();
    // The terminating zero takes part; it changes nothing but the shift of nothing after it.
    for (int i = 0; i <= colorName.length(); ++i) {
        key ^= uint32_t(int32_t(static_cast<signed char>(bytes[i]))) << shift;
        shift = (shift + 8) % 24;
    }
    return key;
}

uint32_t zrutUnmaskBookColor(const ZrUtf8String& colorName, const ZrUtf8String& red, const ZrUtf8String& green,
                             const ZrUtf8String& blue)
{
    if (red.length() < 3 || green.length() < 3 || blue.length() < 3)
        return 0;
    const char* r = red.c_str();
    const char* g = green.c_str();
    const char* b = blue.c_str();
    const uint32_t key = zrutBookColorKey(colorName);
    const uint32_t redValue = maskedByte(r[2], r[0], r[1]) ^ ((key >> 16) & 0xFF);
    const uint32_t greenValue = maskedByte(g[0], g[1], g[2]) ^ ((key >> 8) & 0xFF);
    const uint32_t blueValue = maskedByte(b[1], b[2], b[0]) ^ (key & 0xFF);
    return redValue | greenValue << 8 | blueValue << 16;
}

bool SearchColorBookFileList(const wchar_t* pattern, ZrArray<ZrString>& files)
{
    if (!zrdbHostApplicationServices() || !pattern)
        return false;
    const QString wanted = extensionOf(ZrString(pattern).toQString());
    bool found = false;
    const ZrArray<ZrString> folders = CXuSystem::instance()->pathService()->colorBookFolders();
    for (const ZrString& folder : folders) {
        QString prefix = folder.toQString();
        if (!prefix.endsWith(QLatin1Char('/')))
            prefix += QLatin1Char('/');
        ZrFindDataUtf8 entry;
        const intptr_t handle = findfirstUtf8(ZrUtf8String(prefix), &entry);
        if (handle == -1)
            continue;
        do {
            const QString path = prefix + entry.name.toQString();
            if (entry.isDir || isDir(ZrUtf8String(path)))
                continue;
            if (extensionOf(entry.name.toQString()) == wanted) {
                files.append(ZrString(path));
                found = true;
            }
        } while (findnextUtf8(handle, &entry) == 0);
        findcloseUtf8(handle);
    }
    return found;
}

struct CEdColorBookManager::Private
{
    ZrArray<SXuBookColorData> books{0, 8};
    quint64 generation = 0;

    // The book with its pages read, null when unknown.
    SXuBookColorData* openBook(CEdColorBookManager* manager, const ZrString& name)
    {
        SXuBookColorData* book = manager->findData(name);
        if (book && book->pages.isEmpty())
            manager->loadColorData(book);
        return book;
    }

    // The first entry of that name ignoring case, with its page.
    static const ZrCmColor* findNoCase(const SXuBookColorData& book, const ZrString& colour, int& page)
    {
        for (int p = 0; p < book.pages.length(); ++p) {
            for (const ZrCmColor& color : book.pages[p].colors) {
                if (ZrString(color.colorName()).compareNoCase(colour) == 0) {
                    page = p;
                    return &color;
                }
            }
        }
        return nullptr;
    }
};

CEdColorBookManager::CEdColorBookManager() : d(new Private) {}

CEdColorBookManager::~CEdColorBookManager() = default;

CEdColorBookManager* CEdColorBookManager::getInstance()
{
    static CEdColorBookManager instance;
    return &instance;
}

void CEdColorBookManager::loadData()
{
    d->books.removeAll();
    ZrArray<ZrString> files;
    SearchColorBookFileList(L"*.acb", files);
    for (const ZrString& path : files) {
        const XmlFile file(path);
        CXuUtXmlNode* root = file.root();
        CXuUtXmlNode* bookName = root ? root->child(ZrString(L"bookName")) : nullptr;
        if (!bookName)
            continue;
        SXuBookColorData book;
        book.filePath = path;
        book.bookName = nodeText(bookName);
        d->books.append(book);
    }
}

quint64 CEdColorBookManager::generation() const { return d->generation; }

void CEdColorBookManager::getColorBookNames(ZrArray<ZrString>& names)
{
    if (d->books.isEmpty())
        loadData();
    names.removeAll();
    for (const SXuBookColorData& book : d->books)
        names.append(book.bookName);
}

SXuBookColorData* CEdColorBookManager::findData(const ZrString& name)
{
    if (d->books.isEmpty())
        loadData();
    for (SXuBookColorData& book : d->books) {
        if (book.bookName.compareNoCase(name) == 0)
            return &book;
    }
    // Short names would match inside too many books; from four characters on a part will do.
    if (name.length() < 4)
        return nullptr;
    ZrString wanted = name;
    wanted.makeUpper();
    for (SXuBookColorData& book : d->books) {
        ZrString bookName = book.bookName;
        if (bookName.makeUpper().find(wanted) >= 0)
            return &book;
    }
    return nullptr;
}

bool CEdColorBookManager::loadColorData(SXuBookColorData* book)
{
    if (!book)
        return false;
    ++d->generation;
    book->pages.removeAll();
    const XmlFile file(book->filePath);
    CXuUtXmlNode* root = file.root();
    if (!root)
        return false;
    for (int i = 0; i < root->childCount(); ++i) {
        CXuUtXmlNode* pageNode = root->childAt(i);
        if (nodeName(pageNode) != QLatin1String("colorPage"))
            continue;
        SXuBookColorPage page;
        for (int c = 0; c < pageNode->childCount(); ++c) {
            CXuUtXmlNode* node = pageNode->childAt(c);
            const QString name = nodeName(node);
            uint32_t rgbWord = 0;
            ZrString colorName;
            if (name == QLatin1String("colorEntry")) {
                if (readColorInfo(node, rgbWord, colorName) != 4)
                    continue;
                ZrCmColor color;
                color.setRGB(rgbWord & 0xFF, (rgbWord >> 8) & 0xFF, (rgbWord >> 16) & 0xFF);
                color.setNames(colorName.c_str(), book->bookName.c_str());
                page.colors.append(color);
            } else if (name == QLatin1String("pageColor")) {
                if (readColorInfo(node, rgbWord, colorName) == 3)
                    page.pageColor = rgbWord;
            }
        }
        book->pages.append(page);
    }
    return true;
}

int CEdColorBookManager::getPageNum(const ZrString& book)
{
    const SXuBookColorData* data = d->openBook(this, book);
    return data ? data->pages.length() : 0;
}

SXuBookColorPage* CEdColorBookManager::getColorPage(const ZrString& book, int page)
{
    SXuBookColorData* data = d->openBook(this, book);
    if (!data || page < 0 || page >= data->pages.length())
        return nullptr;
    return &data->pages[page];
}

bool CEdColorBookManager::getColor(const ZrString& book, int page, int entry, ZrCmColor& out)
{
    const SXuBookColorPage* colorPage = getColorPage(book, page);
    if (!colorPage || entry < 0 || entry >= colorPage->colors.length())
        return false;
    out = colorPage->colors[entry];
    return true;
}

bool CEdColorBookManager::getColor(const ZrString& book, const ZrString& colour, ZrCmColor& out)
{
    if (book.isEmpty() || colour.isEmpty())
        return false;
    const SXuBookColorData* data = d->openBook(this, book);
    if (!data)
        return false;
    int page = 0;
    if (const ZrCmColor* color = Private::findNoCase(*data, colour, page)) {
        out = *color;
        return true;
    }
    // Numbered names are often typed with other blanks ("ZR 120 3" as "ZR120 3"), or in part; plain
    // words must match whole.
    if (!holdsDigit(colour))
        return false;
    const ZrString compact = withoutBlanks(colour);
    for (const SXuBookColorPage& colorPage : data->pages) {
        for (const ZrCmColor& color : colorPage.colors) {
            const ZrString name(color.colorName());
            const bool matches = name.find(colour) >= 0
                || (name.find(ZrString(L" ")) >= 0 && withoutBlanks(name).compareNoCase(compact) == 0);
            if (matches) {
                out = color;
                return true;
            }
        }
    }
    return false;
}

bool CEdColorBookManager::getColorPageIndex(const ZrString& book, const ZrString& colour, int& page)
{
    if (book.isEmpty() || colour.isEmpty())
        return false;
    const SXuBookColorData* data = d->openBook(this, book);
    return data && Private::findNoCase(*data, colour, page);
}

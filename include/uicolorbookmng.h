#pragma once
// Colour books: named collections of named true colours, read from the "*.acb" files of the colour
// book folders. Book names are read at the first question, a book's pages when it is first opened.

#include "zrqtbaseutils_export.h"

#include "zrarray.h"
#include "zrcmcolor.h"
#include "zrstring.h"

#include <QtGlobal>
#include <cstdint>
#include <memory>

struct SXuBookColorPage
{
    // Red in bits 0-7, green 8-15, blue 16-23; 0 when the page names no colour.
    uint32_t pageColor = 0;
    ZrArray<ZrCmColor> colors;
};

struct SXuBookColorData
{
    ZrString filePath;
    ZrString bookName;
    // Empty until the book is opened; a book without pages is read again at each question.
    ZrArray<SXuBookColorPage> pages;
};

// The process-wide store of colour books. UI thread only.
class ZRQTBASEUTILS_EXPORT CEdColorBookManager
{
public:
    static CEdColorBookManager* getInstance();

    // Rebuilds the list of books from the folders, names only.
    void loadData();
    void getColorBookNames(ZrArray<ZrString>& names);
    // The first book of that name ignoring case, else, for names of four characters or more, the
    // first whose name contains it ignoring case. Null when none.
    SXuBookColorData* findData(const ZrString& name);
    bool loadColorData(SXuBookColorData* book);

    int getPageNum(const ZrString& book);
    SXuBookColorPage* getColorPage(const ZrString& book, int page);
    bool getColor(const ZrString& book, int page, int entry, ZrCmColor& out);
    // By name ignoring case; a name with digits also matches inside longer names and across blanks.
    bool getColor(const ZrString& book, const ZrString& colour, ZrCmColor& out);
    bool getColorPageIndex(const ZrString& book, const ZrString& colour, int& page);

    // Goes up whenever a book's pages are read, also those of a new record where an old one was: what
    // was painted from a book's pages holds while this stays.
    quint64 generation() const;

private:
    CEdColorBookManager();
    ~CEdColorBookManager();
    Q_DISABLE_COPY(CEdColorBookManager)
    struct Private;
    std::unique_ptr<Private> d;
};

// Appends the files of the colour book folders whose extension matches the pattern's, ignoring
// case. False when none was found.
ZRQTBASEUTILS_EXPORT bool SearchColorBookFileList(const wchar_t* pattern, ZrArray<ZrString>& files);

// The books' light masking of channels. The key is made from the colour's name; each channel is two
// hexadecimal digits written as letters counted from a base letter.
ZRQTBASEUTILS_EXPORT uint32_t zrutBookColorKey(const ZrUtf8String& colorName);
// The channel word (red in bits 0-7, green 8-15, blue 16-23) of three masked texts of at least three
// bytes each.
ZRQTBASEUTILS_EXPORT uint32_t zrutUnmaskBookColor(const ZrUtf8String& colorName, const ZrUtf8String& red,
                                                  const ZrUtf8String& green, const ZrUtf8String& blue);

// Fuzz target for the colour book reader: the bytes are the one book of the only colour book folder.
// Listing, opening and searching it must come back whatever the file holds, and what is read must
// be found again by the searches.

#include "fuzzsupport.h"

#include "uicolorbookmng.h"
#include "zrhostcontrol.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <cstdint>

namespace {

const QTemporaryDir& folder()
{
    static const QTemporaryDir dir;
    require(dir.isValid(), "no temporary folder");
    return dir;
}

void checkBook(CEdColorBookManager* books, const ZrString& book)
{
    const SXuBookColorData* data = books->findData(book);
    require(data && data->bookName == book, "a listed book is not found by its name");
    const int pageCount = books->getPageNum(book);
    require(books->getColorPage(book, pageCount) == nullptr, "a page past the last");
    for (int p = 0; p < pageCount; ++p) {
        const SXuBookColorPage* page = books->getColorPage(book, p);
        require(page != nullptr, "a counted page is missing");
        for (int e = 0; e < page->colors.length(); ++e) {
            const ZrCmColor& color = page->colors[e];
            require(color.isByColor() && ZrString(color.bookName()) == book, "an entry is not a colour of its book");
            const ZrString name(color.colorName());
            ZrCmColor found;
            require(books->getColor(book, p, e, found) && found == color, "an entry is not found by position");
            if (name.isEmpty())
                continue;
            int foundPage = -1;
            require(books->getColor(book, name, found), "an entry is not found by its name");
            require(books->getColorPageIndex(book, name, foundPage) && foundPage <= p, "an entry's page is wrong");
        }
    }
    ZrCmColor color;
    books->getColor(book, ZrString(L"1 2"), color);
    books->findData(ZrString(L"olou"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QFile file(folder().filePath(QStringLiteral("fuzz.acb")));
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate), "cannot write the book");
    require(file.write(reinterpret_cast<const char*>(data), qint64(size)) == qint64(size), "short write");
    file.close();

    ZrHostControl::setColorBookFolders({folder().path()});
    CEdColorBookManager* books = CEdColorBookManager::getInstance();
    books->loadData();
    ZrArray<ZrString> names;
    books->getColorBookNames(names);
    require(names.length() <= 1, "one file gave several books");
    for (const ZrString& book : names)
        checkBook(books, book);
    return 0;
}

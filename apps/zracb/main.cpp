// zracb: makes colour books from palette files, prints what a book holds and writes it back as a
// palette.

#include "acbwriter.h"

#include "uicolorbookmng.h"
#include "zrhostcontrol.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>
#include <functional>

namespace {

constexpr int exitUsage = 2;

const char usage[] =
    "usage: zracb make INPUT OUT.acb [--masked] [--page-size N] [--name BOOK]\n"
    "       zracb dump BOOK.acb\n"
    "       zracb export BOOK.acb OUT.gpl\n"
    "\n"
    "make reads a GIMP palette (.gpl) or lines of \"R G B name\" and writes a colour book; --masked\n"
    "stores the channels masked (RGB8Encrypt) instead of plain (RGB8). The book's name is --name, else\n"
    "the palette's Name:, else the input's file name. Pages hold 8 colours unless --page-size says.\n"
    "dump prints the book's pages and colours, unmasked, as lines that make reads again.\n"
    "export writes the book's colours, unmasked, as a GIMP palette named after the book.\n"
    "Exit codes: 0 done, 2 bad usage or input.\n";

int fail(const QString& message)
{
    std::fprintf(stderr, "zracb: %s\n", message.toUtf8().constData());
    return exitUsage;
}

int usageError(const QString& message)
{
    fail(message);
    std::fputs(usage, stderr);
    return exitUsage;
}

int make(const QStringList& args)
{
    QStringList files;
    zracb::BookOptions options;
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--masked")) {
            options.masked = true;
        } else if (arg == QLatin1String("--page-size") || arg == QLatin1String("--name")) {
            if (i + 1 >= args.size())
                return usageError(QStringLiteral("%1 needs a value").arg(arg));
            const QString value = args[++i];
            if (arg == QLatin1String("--name")) {
                options.bookName = value;
                continue;
            }
            bool ok = false;
            options.pageSize = value.toInt(&ok);
            if (!ok || options.pageSize < 1 || options.pageSize > 1000)
                return usageError(QStringLiteral("--page-size takes a number from 1 to 1000, not \"%1\"").arg(value));
        } else if (arg.startsWith(QLatin1String("--"))) {
            return usageError(QStringLiteral("unknown option %1").arg(arg));
        } else {
            files.append(arg);
        }
    }
    if (files.size() != 2)
        return usageError(QStringLiteral("make takes an input and an output file"));

    QFile input(files[0]);
    if (!input.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("cannot read %1: %2").arg(files[0], input.errorString()));
    zracb::Palette palette;
    QString error;
    if (!zracb::readPalette(input.readAll(), palette, error))
        return fail(QStringLiteral("%1: %2").arg(files[0], error));
    if (options.bookName.isEmpty())
        options.bookName = palette.name.isEmpty() ? QFileInfo(files[0]).completeBaseName() : palette.name;
    if (!zracb::saveFile(files[1], zracb::bookXml(palette.colors, options), error))
        return fail(error);
    return 0;
}

QString channelsText(int red, int green, int blue)
{
    return QStringLiteral("%1 %2 %3").arg(red).arg(green).arg(blue);
}

// Reads the book as the module does, from a folder that holds only this book, and hands its name to
// `read` while the folder is there to read pages from. False when the file holds no book.
bool readBook(const QString& path, const std::function<void(CEdColorBookManager*, const ZrString&)>& read)
{
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("book.acb"));
    if (!folder.isValid() || !QFile::copy(path, copy))
        return false;
    ZrHostControl::setColorBookFolders({folder.path()});
    CEdColorBookManager* books = CEdColorBookManager::getInstance();
    ZrArray<ZrString> names;
    books->getColorBookNames(names);
    if (names.isEmpty())
        return false;
    read(books, names[0]);
    return true;
}

// Prints the book in the form make reads.
int dump(const QStringList& args)
{
    if (args.size() != 1)
        return usageError(QStringLiteral("dump takes one book"));
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    const bool read = readBook(args[0], [&out](CEdColorBookManager* books, const ZrString& book) {
        out << "Name: " << book.toQString() << '\n';
        const int pageCount = books->getPageNum(book);
        for (int p = 0; p < pageCount; ++p) {
            const SXuBookColorPage* page = books->getColorPage(book, p);
            const uint32_t pageColor = page->pageColor;
            out << "# page " << p + 1 << ", page colour "
                << channelsText(pageColor & 0xFF, (pageColor >> 8) & 0xFF, (pageColor >> 16) & 0xFF) << '\n';
            for (const ZrCmColor& color : page->colors) {
                out << channelsText(color.red(), color.green(), color.blue()) << '\t'
                    << QString::fromWCharArray(color.colorName()) << '\n';
            }
        }
    });
    return read ? 0 : fail(QStringLiteral("%1 is not a colour book").arg(args[0]));
}

// A palette line holds one line: any line break or tab in a name becomes a blank.
QString paletteText(const QString& text)
{
    QString flat = text;
    for (QChar& ch : flat) {
        if (ch.category() == QChar::Other_Control || ch == QChar::LineSeparator || ch == QChar::ParagraphSeparator)
            ch = QLatin1Char(' ');
    }
    return flat;
}

// Writes the book as a GIMP palette: the book's name, its page size as the columns, every colour.
int exportPalette(const QStringList& args)
{
    if (args.size() != 2)
        return usageError(QStringLiteral("export takes a book and an output file"));
    QString text;
    const bool read = readBook(args[0], [&text](CEdColorBookManager* books, const ZrString& book) {
        const int pageCount = books->getPageNum(book);
        const SXuBookColorPage* first = pageCount > 0 ? books->getColorPage(book, 0) : nullptr;
        text = QStringLiteral("GIMP Palette\nName: %1\nColumns: %2\n#\n")
                   .arg(paletteText(book.toQString()))
                   .arg(first ? first->colors.length() : 0);
        for (int p = 0; p < pageCount; ++p) {
            for (const ZrCmColor& color : books->getColorPage(book, p)->colors) {
                text += QStringLiteral("%1 %2 %3\t%4\n")
                            .arg(color.red(), 3)
                            .arg(color.green(), 3)
                            .arg(color.blue(), 3)
                            .arg(paletteText(QString::fromWCharArray(color.colorName())));
            }
        }
    });
    if (!read)
        return fail(QStringLiteral("%1 is not a colour book").arg(args[0]));
    QString error;
    if (!zracb::saveFile(args[1], text.toUtf8(), error))
        return fail(error);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    if (args.isEmpty())
        return usageError(QStringLiteral("no command"));
    const QString command = args.takeFirst();
    if (command == QLatin1String("make"))
        return make(args);
    if (command == QLatin1String("dump"))
        return dump(args);
    if (command == QLatin1String("export"))
        return exportPalette(args);
    return usageError(QStringLiteral("unknown command %1").arg(command));
}

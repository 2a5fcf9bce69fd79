// zracb: makes colour books from palette files and prints what a book holds.

#include "acbwriter.h"

#include "uicolorbookmng.h"
#include "zrhostcontrol.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <cstdio>

namespace {

constexpr int exitUsage = 2;

const char usage[] =
    "usage: zracb make INPUT OUT.acb [--masked] [--page-size N] [--name BOOK]\n"
    "       zracb dump BOOK.acb\n"
    "\n"
    "make reads a GIMP palette (.gpl) or lines of \"R G B name\" and writes a colour book; --masked\n"
    "stores the channels masked (RGB8Encrypt) instead of plain (RGB8). The book's name is --name, else\n"
    "the palette's Name:, else the input's file name. Pages hold 8 colours unless --page-size says.\n"
    "dump prints the book's pages and colours, unmasked, as lines that make reads again.\n"
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

// Reads the book as the module does, from a folder that holds only this book, and prints it in the
// form make reads.
int dump(const QStringList& args)
{
    if (args.size() != 1)
        return usageError(QStringLiteral("dump takes one book"));
    const QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("book.acb"));
    if (!folder.isValid() || !QFile::copy(args[0], copy))
        return fail(QStringLiteral("cannot read %1").arg(args[0]));
    ZrHostControl::setColorBookFolders({folder.path()});
    CEdColorBookManager* books = CEdColorBookManager::getInstance();
    ZrArray<ZrString> names;
    books->getColorBookNames(names);
    if (names.isEmpty())
        return fail(QStringLiteral("%1 is not a colour book").arg(args[0]));

    QTextStream out(stdout);
    out.setCodec("UTF-8");
    const ZrString& book = names[0];
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
    return usageError(QStringLiteral("unknown command %1").arg(command));
}

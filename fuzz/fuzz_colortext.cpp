// Fuzz target for the colour texts users type: the bytes, read as UTF-8, go through the parser of
// the colour line, with a small book in place so that book colours and names are looked up too.

#include "fuzzsupport.h"

#include "uicolorwidgets.h"
#include "zrhostcontrol.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <cstdint>

namespace {

void ensureBook()
{
    static const QTemporaryDir dir;
    static bool written = false;
    if (written)
        return;
    QFile file(dir.filePath(QStringLiteral("fuzz.acb")));
    require(file.open(QIODevice::WriteOnly), "cannot write the book");
    const QByteArray book = "<colorBook><bookName>Fuzz</bookName><colorPage><colorEntry><colorName>ZR 1 Blue"
                            "</colorName><RGB8><red>1</red><green>2</green><blue>3</blue></RGB8></colorEntry>"
                            "</colorPage></colorBook>";
    require(file.write(book) == book.size(), "short write");
    file.close();
    ZrHostControl::setColorBookFolders({dir.path()});
    written = true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ensureBook();
    const ZrString text(QString::fromUtf8(reinterpret_cast<const char*>(data), int(size)));
    ColorData out;
    out.text = QStringLiteral("unchanged");
    if (!convertColorStrToColorData(text, out)) {
        require(out.text == QStringLiteral("unchanged"), "a refused text changed the record");
        return 0;
    }
    const int method = out.cmColor.colorMethod();
    require(method == ZrCmEntityColor::kByLayer || method == ZrCmEntityColor::kByBlock
                || method == ZrCmEntityColor::kByColor || method == ZrCmEntityColor::kByACI,
            "a parsed colour has no colour method of a text");
    return 0;
}

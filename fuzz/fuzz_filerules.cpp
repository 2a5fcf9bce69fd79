// Fuzz target for the file dialog's rules on what the user types and what the system says: the
// bytes, read as UTF-8 and cut at 0x01 into a name filter, a typed name and a default filter, go
// through every rule; the whole text also goes through the reader of lsblk's mount point list.

#include "fuzzsupport.h"

#include "qt_filedialog_p.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace ZrFileRules;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const QStringList fields = text.split(QChar(1));
    const QString filter = fields.value(0);
    const QString name = fields.value(1);
    const QString defaultFilter = fields.value(2);

    holdsInvalidChar(name);
    require(filterPatterns(filter, true).size() <= filter.size(), "patterns longer than their filter");
    require(filterPatterns(filter, false).size() <= filter.size(), "patterns longer than their filter");
    const QString extension = saveExtension(filterExtension(filter, name), true, defaultFilter);
    require(nameWithExtension(name, extension).startsWith(name), "a saved name lost what was typed");
    require(shortNameForMessage(name).size() <= 100, "a short name longer than 100 characters");
    nameForChosenFilter(filter, defaultFilter, true, defaultFilter, name);
    require(fillPercentS(filter, {}).size() <= filter.size(), "filling with nothing made the text longer");
    for (const QString& mountPoint : mountPointsOfLsblk(text)) {
        require(!mountPoint.isEmpty() && mountPoint != QLatin1String("/") && mountPoint != QLatin1String("[SWAP]")
                    && !mountPoint.contains(QLatin1String("/boot/efi")),
                "a mount point the side bar leaves out");
    }
    return 0;
}

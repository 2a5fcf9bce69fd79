// Fuzz target for the drawing file reader. Whatever reads must write out and read back to the same
// text; whatever fails must say where and leave the open drawing as it was.

#include "fuzzsupport.h"

#include "zrdbdatabase.h"
#include "zrdrawingcontrol.h"

#include <QByteArray>
#include <QString>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const ZrDbDatabase* before = curDatabase();
    QString error;
    if (!ZrHostControl::openDrawingText(text, QStringLiteral("input"), &error)) {
        require(error.startsWith(QStringLiteral("input: ")) && error.size() > 7, "a fault without a place");
        require(curDatabase() == before, "a failed read replaced the open drawing");
        return 0;
    }
    require(error.isEmpty(), "a success with a fault");
    const QByteArray written = ZrHostControl::drawingText(curDatabase());
    require(ZrHostControl::openDrawingText(written, QStringLiteral("written"), &error), "the written text does not read back");
    require(ZrHostControl::drawingText(curDatabase()) == written, "reading what was written gives another drawing");
    return 0;
}

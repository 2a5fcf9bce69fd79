// Fuzz target for the DXF reader. Whatever reads must make a drawing the host can write and read
// back; whatever fails must name its line and leave the open drawing as it was.

#include "fuzzsupport.h"

#include "zrdbdatabase.h"
#include "zrdrawingcontrol.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const ZrDbDatabase* before = curDatabase();
    QString error, notice;
    if (!ZrHostControl::openDxfText(text, QStringLiteral("input"), &error, &notice)) {
        require(error.startsWith(QStringLiteral("input: line ")) && error.size() > 13, "a fault without its line");
        require(curDatabase() == before, "a failed read replaced the open drawing");
        return 0;
    }
    require(error.isEmpty(), "a success with a fault");
    const QByteArray written = ZrHostControl::drawingText(curDatabase());
    require(ZrHostControl::openDrawingText(written, QStringLiteral("written"), &error), "the drawing read does not write and read back");
    return 0;
}

#include "zrutfile.h"

#include <QStringList>

namespace {

void appendPaths(const ZrUtf8String& list, ZrArray<ZrUtf8String>& paths)
{
    for (const QString& part : list.toQString().split(QLatin1Char(';'))) {
        const QString path = part.trimmed();
        if (!path.isEmpty())
            paths.append(ZrUtf8String(path));
    }
}

} // namespace

void zrutEnumPaths(const ZrJsonPtr& value, ZrArray<ZrUtf8String>& paths)
{
    if (value.isNullOrNoDef())
        return;
    if (value->isString()) {
        appendPaths(value->safeStrValue(), paths);
        return;
    }
    for (int i = 0; i < value->ArrayCount(); ++i) {
        const ZrJsonPtr element = value->at(i);
        if (element && element->isString())
            appendPaths(element->safeStrValue(), paths);
    }
}

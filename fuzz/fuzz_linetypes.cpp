// Fuzz target for the reader of line type definitions: whatever it takes must be a definition the
// drawing can hold, loaded into a drawing and painted as the drawing view paints it; whatever it
// refuses must say on which line.

#include "fuzzsupport.h"

#include "zrlinetypedefs.h"

#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdbpaint.h"
#include "zrdbsymtb.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

QGuiApplication& application()
{
    static int argc = 1;
    static char name[] = "fuzz_linetypes";
    static char* argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication app(argc, argv);
    return app;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    application();
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(std::min<size_t>(size, 1 << 20)));
    std::vector<ZrLinetypeDefinition> definitions;
    QString error;
    if (!zrdbParseLinetypeDefinitions(text, definitions, error)) {
        require(definitions.empty(), "a refused file left definitions");
        require(error.startsWith(QStringLiteral("line ")), "a refusal does not name its line");
        return 0;
    }
    require(error.isEmpty(), "a file taken has an error");
    ZrDbDatabase database;
    QImage image(64, 16, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (const ZrLinetypeDefinition& definition : definitions) {
        require(!definition.name.isEmpty(), "a definition without a name");
        require(definition.dashes.size() <= size_t(kZrMaxLinetypeDashes), "too many dashes taken");
        for (double dash : definition.dashes)
            require(std::isfinite(dash) && std::fabs(dash) <= kZrMaxLinetypeDash, "a dash that cannot be held");
        const ZrDbObjectId id = zrdbLoadLinetype(&database, definition);
        require(id.isValid(), "a definition taken does not load");
        ZrDbLine line(ZrGePoint3d(0, 0, 0), ZrGePoint3d(60, 0, 0));
        line.setLinetype(id);
        zrdbPaintEntity(painter, &line, QTransform::fromTranslate(2, 8), Qt::black);
    }
    return 0;
}

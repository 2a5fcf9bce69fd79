#pragma once
// Line type definitions in files: the host's own shipped set and files users bring. Private to the
// host library; exported for its control library and the fuzz target.
//
// A file is text. Blank lines and lines starting with ";" are passed over. A definition is a header
// line "*NAME,description" followed by its pattern line "A,d1,d2,...": a positive length is a dash,
// a negative one a gap, 0 a dot; "A" alone is a continuous line.

#include "zrdbobjectid.h"
#include "zrhost_export.h"
#include "zrstring.h"

#include <QByteArray>
#include <QString>
#include <vector>

class ZrDbDatabase;

struct ZrLinetypeDefinition
{
    ZrString name;
    ZrString comments;
    std::vector<double> dashes;
};

// Limits of what a definition holds: more dashes, or a dash longer than this, is refused.
constexpr int kZrMaxLinetypeDashes = 12;
constexpr double kZrMaxLinetypeDash = 1e6;

// The definitions of `text`, in file order; of two with one name (ignoring case) the first counts.
// False with `error` naming the line and what is wrong there; `definitions` is then empty.
ZRHOST_EXPORT bool zrdbParseLinetypeDefinitions(const QByteArray& text, std::vector<ZrLinetypeDefinition>& definitions,
                                                QString& error);
// The same from a file; a file that cannot be read, or of more than a megabyte, is refused by name.
ZRHOST_EXPORT bool zrdbReadLinetypeFile(const QString& path, std::vector<ZrLinetypeDefinition>& definitions,
                                        QString& error);
// The definitions the host ships: "share/ZrHost/zrhost.lin" beside the host's library folder.
ZRHOST_EXPORT QString zrdbShippedLinetypeFile();
// The record of the definition's name in the drawing, added first when it is not there.
// Null when it cannot be added.
ZRHOST_EXPORT ZrDbObjectId zrdbLoadLinetype(ZrDbDatabase* database, const ZrLinetypeDefinition& definition);

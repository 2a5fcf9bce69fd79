#pragma once
// The file dialog's rules on names, filters and extensions, apart from the window so that they can
// be tried by tables of cases.

#include "zrqtbaseutils_export.h"

#include <QString>
#include <QStringList>

namespace ZrFileRules {

// True when `name` holds one of the 13 characters no file name may hold: < > / \ " ; : ? * , = ` |
ZRQTBASEUTILS_EXPORT bool holdsInvalidChar(const QString& name);

// The patterns of a name filter such as "图纸 (*.dwg *.dwt)": what stands between the "(" (the
// first with `lastOpen` false, else the last) and the last ")". A ")" at index 1 leaves the filter
// whole; a "(" without ")" gives the rest of the filter after it.
ZRQTBASEUTILS_EXPORT QString filterPatterns(const QString& filter, bool lastOpen);

// The extension, with its dot, that the filter `filter` gives a name that is typed as `currentName`:
// with several patterns the name's own extension when it is one of them, else the first.
ZRQTBASEUTILS_EXPORT QString filterExtension(const QString& filter, const QString& currentName);

// The extension a saved name gets: `extension` unless it is a wildcard and the caller gave a default
// filter, whose extension then counts (the text from its last "." to before its closing bracket).
ZRQTBASEUTILS_EXPORT QString saveExtension(const QString& extension, bool hasDefaultFilter,
                                           const QString& defaultFilter);

// `name` with `extension` appended unless the name already ends in it, ignoring case; a foreign
// extension is kept and the filter's added after it.
ZRQTBASEUTILS_EXPORT QString nameWithExtension(const QString& name, const QString& extension);

// The file name shown in the not-found message: the text behind the last "/", cut to 97 characters
// and "..." when it is longer than 100.
ZRQTBASEUTILS_EXPORT QString shortNameForMessage(const QString& path);

// The name in the edit once the user chose `filter` in the file type list in save mode; `nextRow`
// is the text of the list's next row (empty without one). A null string leaves the name alone.
ZRQTBASEUTILS_EXPORT QString nameForChosenFilter(QString filter, const QString& nextRow, bool hasDefaultFilter,
                                                 const QString& defaultFilter, const QString& name);

// The mount points of the output of "lsblk -l -o MOUNTPOINT": the head line, "/", "[SWAP]", empty
// lines and EFI partitions left out.
ZRQTBASEUTILS_EXPORT QStringList mountPointsOfLsblk(const QString& output);

// Each "%s" of `text` in turn replaced by the next of `args`; what the arguments hold is not
// looked at again.
ZRQTBASEUTILS_EXPORT QString fillPercentS(const QString& text, const QStringList& args);

} // namespace ZrFileRules

#pragma once
// Writing a file whole or not at all. Every file the host and its programs write goes through here.
// Private to the host library; exported for its control library and the programs.

#include "zrhost_export.h"

#include <QByteArray>
#include <QString>

// Writes `data` to `path` through a temporary file beside it, which replaces the file only once
// every byte is written: the old file stays as it was otherwise. On failure answers false and puts
// in `error` what went wrong, naming the file.
ZRHOST_EXPORT bool zrHostSaveFile(const QString& path, const QByteArray& data, QString* error = nullptr);

#pragma once
// Files, folders, paths and shell commands as the host's utilities see them. Paths are UTF-8 or
// wide strings as each function says; nothing here throws.

#include "zrarray.h"
#include "zrhost_export.h"
#include "zrjson.h"
#include "zrstring.h"

// Runs `command` through /bin/sh and gives its whole standard output (at most 64 MB; more is cut).
// Answers 0 when the command ran and ended with 0, -1 when it could not be started, otherwise the
// command's exit status (128 + the signal for one killed by a signal).
ZRHOST_EXPORT int zrutPipeCmd(const ZrUtf8String& command, ZrUtf8String& output);

// Splits a path list of the host's settings into its paths: a string whose paths are separated by
// ";", or an array of such strings. Blanks around each path and empty paths are dropped.
ZRHOST_EXPORT void zrutEnumPaths(const ZrJsonPtr& value, ZrArray<ZrUtf8String>& paths);

// True when `path` may be used as `mode` asks: 0 it exists, 2 it may be written, 4 read, 6 both.
ZRHOST_EXPORT bool zrutAccessFile(const ZrString& path, int mode);
// True when something exists at `path`, a link followed to its end; a dangling link does not count.
ZRHOST_EXPORT bool zrutIsExistFile(const ZrUtf8String& path);
// True when `path` can name a file here: not empty, valid UTF-8 without a NUL, at most 4095 bytes
// and no part between "/" longer than 255 bytes.
ZRHOST_EXPORT bool zrutIsValidFilePathName(const ZrUtf8String& path);
// The name of `path` without its folder and without the extension from its last ".".
ZRHOST_EXPORT ZrString zrutGetFileNoExtName(const ZrString& path);

// The login name of the real user, from the password database, else $USER; empty without either.
ZRHOST_EXPORT ZrString zrutGetUserName();
// The real user's home folder from the password database, else $HOME; empty without either.
ZRHOST_EXPORT ZrString zrutGetHomeDir();

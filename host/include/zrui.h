#pragma once
// User-interface functions of the host.

#include "zrhost_export.h"
#include "zrjson.h"
#include "zrrxobject.h"
#include "zrstring.h"

// Runs the dialog `name` of the UI service in `slot`: createDialog, onInit, doModal.
// Answers the dialog's result object; a null handle when the service or the name is unknown.
ZRHOST_EXPORT ZrJsonPtr zruiShowModelDialogEx(int slot, const ZrString& name, ZrJsonPtr param,
                                              ZrRxObjectPtr helper, void* parent);
// Runs the module's message box. `param` may be null; it is made then. The answer is the
// object the box wrote to, holding "ControlBtn" and "result".
ZRHOST_EXPORT ZrJsonPtr zruiMessageBoxEx(const ZrString& caption, const ZrString& text, ZrJsonPtr param,
                                         int flag, int contentFlag, int dlgtype, void* parent);
// A message box by the classic style codes: 0 OK, 1 OK and Cancel, 3 Yes, No and Cancel,
// 4 Yes and No, plus 16 error, 32 question, 48 warning, 64 information.
// Answers 1 OK, 2 Cancel, 6 Yes, 7 No.
ZRHOST_EXPORT int ZrUiMessageBox(const ZrString& caption, const ZrString& text, int flags, void* parent);

// Windows, as void* holding a QWidget*; any may be null.
ZRHOST_EXPORT void* zruiCurTargetWindow();
ZRHOST_EXPORT void* zruiMainWindow();
ZRHOST_EXPORT void* zruiViewWindow();
// Cursor 0 is the window's normal cursor.
ZRHOST_EXPORT void zruiSetCursor(void* window, int cursor);
ZRHOST_EXPORT void zruiSetFocus(void* window);
// 1 for the light theme, anything else for the dark one.
ZRHOST_EXPORT int zredGetCurrentTheme();
// Queues a command string for the command line; it runs from the event loop.
ZRHOST_EXPORT int zredMenuMacro(const wchar_t* macro, bool echo, bool asCommand);
// Opens the help at a topic.
ZRHOST_EXPORT void zredFunHelp(const ZrString& topic);

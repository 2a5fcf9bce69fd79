#pragma once
// The undo history of a drawing. Private to the host library; exported for its control library.

#include "zrhost_export.h"
#include "zrstring.h"

#include <cstddef>

class ZrDbDatabase;

// Each step holds the state of every object and variable it changed; steps nest, the outermost
// one counts.
ZRHOST_EXPORT void zrdbBeginUndoStep(ZrDbDatabase* database, const ZrString& name);
ZRHOST_EXPORT void zrdbEndUndoStep(ZrDbDatabase* database);
ZRHOST_EXPORT bool zrdbInUndoStep(const ZrDbDatabase* database);
ZRHOST_EXPORT bool zrdbCanUndo(const ZrDbDatabase* database);
ZRHOST_EXPORT bool zrdbCanRedo(const ZrDbDatabase* database);
ZRHOST_EXPORT ZrString zrdbUndoStepName(const ZrDbDatabase* database);
ZRHOST_EXPORT ZrString zrdbRedoStepName(const ZrDbDatabase* database);
ZRHOST_EXPORT bool zrdbUndo(ZrDbDatabase* database);
ZRHOST_EXPORT bool zrdbRedo(ZrDbDatabase* database);
// Rolls back what changed since the last mark; marks nest.
void zrdbSetUndoMark(ZrDbDatabase* database);
void zrdbRollBackToMark(ZrDbDatabase* database);
void zrdbDropMark(ZrDbDatabase* database);

// The undo step of one command, for as long as it lives. At its end it closes the steps and marks
// the command left open; when the command ends by an exception it first takes back what the command
// did, so that no half step stays behind.
class ZrDbCommandStep
{
public:
    ZrDbCommandStep(ZrDbDatabase* database, const ZrString& name);
    ~ZrDbCommandStep();
    ZrDbCommandStep(const ZrDbCommandStep&) = delete;
    ZrDbCommandStep& operator=(const ZrDbCommandStep&) = delete;

private:
    ZrDbDatabase* m_database;
    int m_depth = 0;
    size_t m_marks = 0;
    int m_exceptions = 0;
};

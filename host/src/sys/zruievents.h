#pragma once
// The host's events on their way to the user interface. Private to the host library; exported for
// the host's user-interface layer and the control library.

#include "zrhost_export.h"
#include "zrreactor.h"

#include <functional>

// Announces an event; the listeners hear it from the event loop. An event like one still waiting
// is dropped.
ZRHOST_EXPORT void zrHostPostUiEvent(const CZrGlobalUIReactorHelp& event);
// Whoever refreshes the user interface listens here: `listener` hears each event, and `batchEnd`,
// when given, runs once all the waiting events have been heard, while the objects they name still
// exist. Answers a key for removing the listener.
ZRHOST_EXPORT int zrHostAddUiEventListener(std::function<void(const CZrGlobalUIReactorHelp&)> listener,
                                           std::function<void()> batchEnd = {});
ZRHOST_EXPORT void zrHostRemoveUiEventListener(int key);
// Delivers the waiting events now.
ZRHOST_EXPORT void zrHostFlushUiEvents();
// The events about a database that goes away are dropped with it, since they point into it.
void zrHostDropUiEventsOf(const ZrDbDatabase* database);
// Whether the current document has a pick-first selection, as events tell the controls.
bool zrHostSelectionActive();

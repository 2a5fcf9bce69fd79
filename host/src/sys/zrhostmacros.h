#pragma once
// The state of the host's menu-macro queue. Private to the host library; exported for its control
// library.

#include "zrhost_export.h"

#include <QQueue>
#include <QString>
#include <functional>

struct ZrHostMacroCall
{
    QString text;
    bool echo = false;
    bool asCommand = false;
};

struct ZrHostMacros
{
    QQueue<ZrHostMacroCall> queue;
    bool runScheduled = false;
    // Hears every string as it is queued.
    std::function<void(const ZrHostMacroCall&)> listener;
    // Hears each queued string after it ran; `known` is false when no command had that name.
    std::function<void(const QString& command, bool known)> commandListener;
};

ZRHOST_EXPORT ZrHostMacros& zrHostMacros();
// Runs what waits in the queue, as the event loop does after a string was queued.
ZRHOST_EXPORT void zrHostRunQueuedMacros();

#pragma once
// The state of the host's user-interface functions: windows, theme, the menu-macro queue and what
// the functions were asked. Private to the host library; exported for its control library.

#include "zrhost_export.h"

#include <QPointer>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>
#include <functional>

struct ZrHostMacroCall
{
    QString text;
    bool echo = false;
    bool asCommand = false;
};

struct ZrHostWindowCall
{
    QWidget* window = nullptr;
    int value = 0;
};

struct ZrHostMessageRecord
{
    QString caption;
    QString text;
    int flags = 0;
};

struct ZrHostUi
{
    int theme = 1;
    QPointer<QWidget> mainWindow;
    QPointer<QWidget> targetWindow;
    QPointer<QWidget> viewWindow;

    QQueue<ZrHostMacroCall> macroQueue;
    bool macroRunScheduled = false;
    std::function<void(const ZrHostMacroCall&)> macroListener;
    std::function<void(const QString& command, bool known)> commandListener;

    // ZrUiMessageBox answers from this queue without showing anything while it is not empty.
    QQueue<int> messageAnswers;
    QVector<ZrHostWindowCall> cursorCalls;
    QVector<ZrHostWindowCall> focusCalls;
    QStringList helpTopics;
    QVector<ZrHostMessageRecord> messageLog;
};

ZRHOST_EXPORT ZrHostUi& zrHostUi();
// Runs what waits in the menu-macro queue, as the event loop does after a string was queued.
ZRHOST_EXPORT void zrHostRunQueuedMacros();

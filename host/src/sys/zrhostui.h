#pragma once
// The state of the host's user-interface functions: windows, theme and what the functions were
// asked. Private to the host library; exported for its control library.

#include "zrhost_export.h"

#include <QPointer>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>
#include <functional>

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
    // The background of the drawing view; the current palette's foreground follows it.
    bool drawingBackgroundDark = true;
    QPointer<QWidget> mainWindow;
    QPointer<QWidget> targetWindow;
    QPointer<QWidget> viewWindow;

    // ZrUiMessageBox answers from this queue without showing anything while it is not empty.
    QQueue<int> messageAnswers;
    QVector<ZrHostWindowCall> cursorCalls;
    QVector<ZrHostWindowCall> focusCalls;
    QStringList helpTopics;
    // Told each topic the help is opened at, as it is recorded.
    std::function<void(const QString& topic)> helpListener;
    QVector<ZrHostMessageRecord> messageLog;
};

ZRHOST_EXPORT ZrHostUi& zrHostUi();

#pragma once
// The state of the substitute host, one instance for the process. Private to the host library.

#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrjson.h"
#include "zrrxobject.h"

#include <QHash>
#include <QPointer>
#include <QQueue>
#include <QWidget>
#include <map>

class ZrRxDictionary;

struct ZrHostState
{
    static ZrHostState& get();

    bool initialized = false;
    std::map<int, ZrRxObjectPtr> arbitSlots;
    std::map<int, ZrRxObjectPtr> numberedServices;
    ZrRxDictionary* sysRegistry = nullptr;

    int theme = 1;
    QString language = QStringLiteral("zh-CN");
    QPointer<QWidget> mainWindow;
    QPointer<QWidget> targetWindow;
    QPointer<QWidget> viewWindow;

    ZrJsonPtr userConfig;
    ZrJsonPtr runtimeConfig;
    ZrJsonPtr sysConfig;
    ZrJsonPtr languageConfig;
    QString userConfigFile;

    QQueue<ZrHostControl::MacroCall> macroQueue;
    bool macroRunScheduled = false;
    std::function<void(const ZrHostControl::MacroCall&)> macroListener;
    std::function<void(const QString&, bool)> commandListener;

    QVector<ZrHostControl::WindowCall> cursorCalls;
    QVector<ZrHostControl::WindowCall> focusCalls;
    QStringList helpTopics;
    QQueue<int> messageAnswers;
    // Whether a view paints the drawing, and who repaints it when a surface is asked to redraw.
    bool drawingSurfaceActive = false;
    std::function<void()> redrawListener;
    QVector<ZrHostControl::MessageRecord> messageLog;
    ZrHostControl::EntityImageRequest entityImageRequest;
};

// Reads a file of the user configuration; an unreadable or broken file gives an empty object.
ZrJsonPtr zrHostReadConfigFile(const QString& file);
// Writes atomically: a temporary file beside the target, then a rename.
bool zrHostWriteConfigFile(const QString& file, const ZrJsonPtr& tree);
// Walks "/" separated paths; with `create` missing objects are made on the way.
ZrJsonPtr zrHostConfigNode(const ZrJsonPtr& root, const ZrUtf8String& path, bool create);

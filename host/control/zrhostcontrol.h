#pragma once
// The control API of the substitute host. Apps and tests set the host up through it;
// the module never includes it.

#include "zrhostcontrol_export.h"
#include "zrhostmacros.h"
#include "zrhostui.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>

namespace ZrHostControl {

struct Options
{
    // Folder of the user configuration file; empty takes the user's configuration folder, and without
    // a HOME the run is on defaults.
    QString configDir;
    // "ResRootPath": the folder that holds ImageRes/ and RibbonIcon/.
    QString resourceRoot;
    int theme = 1;
    QString language = QStringLiteral("zh-CN");
    // Texts of the language service by key; without the service every lookup takes its default.
    bool languageService = true;
    QHash<QString, QString> texts;
};

// Builds the host: the command stack in the system registry, the language service,
// one open document, the configuration stores read from their files.
ZRHOSTCONTROL_EXPORT void initialize(const Options& options);
// Saves the user configuration and takes everything down again.
ZRHOSTCONTROL_EXPORT void shutdown();
ZRHOSTCONTROL_EXPORT bool isInitialized();

ZRHOSTCONTROL_EXPORT void setTheme(int theme);
ZRHOSTCONTROL_EXPORT void setResourceRoot(const QString& root);
ZRHOSTCONTROL_EXPORT void setLanguageTexts(const QHash<QString, QString>& texts);
ZRHOSTCONTROL_EXPORT void setLanguageServiceEnabled(bool enabled);
// Empty when the run has no configuration folder.
ZRHOSTCONTROL_EXPORT QString userConfigFile();

ZRHOSTCONTROL_EXPORT void setMainWindow(QWidget* window);
ZRHOSTCONTROL_EXPORT void setTargetWindow(QWidget* window);
ZRHOSTCONTROL_EXPORT void setViewWindow(QWidget* window);
// The drawing view's background, dark from the start; the current palette's foreground follows it.
ZRHOSTCONTROL_EXPORT void setDrawingBackgroundDark(bool dark);

// The colour book folders become exactly `folders`, whatever the configuration and the environment say,
// until the reset below or the host's shutdown.
ZRHOSTCONTROL_EXPORT void setColorBookFolders(const QStringList& folders);
// Back to the folders of the configuration, $ZR_COLORBOOK_PATH and the installation.
ZRHOSTCONTROL_EXPORT void resetColorBookFolders();

using MacroCall = ZrHostMacroCall;
// Called for every string that reaches the menu-macro queue, as it is queued.
ZRHOSTCONTROL_EXPORT void setMacroListener(std::function<void(const MacroCall&)> listener);
// Called after each queued string ran; `known` is false when no command had that name.
ZRHOSTCONTROL_EXPORT void setCommandListener(std::function<void(const QString& command, bool known)> listener);
ZRHOSTCONTROL_EXPORT QVector<MacroCall> queuedMacros();
// Runs what waits in the queue now, instead of from the event loop.
ZRHOSTCONTROL_EXPORT void runQueuedMacros();

using WindowCall = ZrHostWindowCall;
ZRHOSTCONTROL_EXPORT QVector<WindowCall> cursorCalls();
ZRHOSTCONTROL_EXPORT QVector<WindowCall> focusCalls();
ZRHOSTCONTROL_EXPORT QStringList helpTopics();
// Called with each help topic as it is recorded.
ZRHOSTCONTROL_EXPORT void setHelpListener(std::function<void(const QString& topic)> listener);
// How often the command objects were told their state.
ZRHOSTCONTROL_EXPORT int commandStateCalls();

using MessageRecord = ZrHostMessageRecord;
// ZrUiMessageBox answers from this queue without showing anything while it is not empty.
ZRHOSTCONTROL_EXPORT void pushMessageBoxAnswer(int answer);
ZRHOSTCONTROL_EXPORT QVector<MessageRecord> messageLog();

ZRHOSTCONTROL_EXPORT void clearLogs();

} // namespace ZrHostControl

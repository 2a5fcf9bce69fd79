#pragma once
// The control API of the substitute host. Apps and tests set the host up through it;
// the module never includes it.

#include "zrhost_export.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>

class QWidget;

namespace ZrHostControl {

struct Options
{
    // Folder of the user configuration file; empty takes the user's configuration folder.
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
ZRHOST_EXPORT void initialize(const Options& options);
// Saves the user configuration and takes everything down again.
ZRHOST_EXPORT void shutdown();
ZRHOST_EXPORT bool isInitialized();

ZRHOST_EXPORT void setTheme(int theme);
ZRHOST_EXPORT void setResourceRoot(const QString& root);
ZRHOST_EXPORT void setLanguageTexts(const QHash<QString, QString>& texts);
ZRHOST_EXPORT void setLanguageServiceEnabled(bool enabled);
ZRHOST_EXPORT QString userConfigFile();

ZRHOST_EXPORT void setMainWindow(QWidget* window);
ZRHOST_EXPORT void setTargetWindow(QWidget* window);
ZRHOST_EXPORT void setViewWindow(QWidget* window);

struct MacroCall
{
    QString text;
    bool echo = false;
    bool asCommand = false;
};
// Called for every string that reaches the menu-macro queue, as it is queued.
ZRHOST_EXPORT void setMacroListener(std::function<void(const MacroCall&)> listener);
// Called after each queued string ran; `known` is false when no command had that name.
ZRHOST_EXPORT void setCommandListener(std::function<void(const QString& command, bool known)> listener);
ZRHOST_EXPORT QVector<MacroCall> queuedMacros();
// Runs what waits in the queue now, instead of from the event loop.
ZRHOST_EXPORT void runQueuedMacros();

struct WindowCall
{
    QWidget* window = nullptr;
    int value = 0;
};
ZRHOST_EXPORT QVector<WindowCall> cursorCalls();
ZRHOST_EXPORT QVector<WindowCall> focusCalls();
ZRHOST_EXPORT QStringList helpTopics();

struct MessageRecord
{
    QString caption;
    QString text;
    int flags = 0;
};
// ZrUiMessageBox answers from this queue without showing anything while it is not empty.
ZRHOST_EXPORT void pushMessageBoxAnswer(int answer);
ZRHOST_EXPORT QVector<MessageRecord> messageLog();

ZRHOST_EXPORT void clearLogs();

} // namespace ZrHostControl

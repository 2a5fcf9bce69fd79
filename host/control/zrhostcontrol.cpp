#include "zrhostcontrol.h"

#include "zrarbitdict.h"
#include "zrconfig.h"
#include "zrdbvariables.h"
#include "zrdocument.h"
#include "zrhostconfig.h"
#include "zrhostdocuments.h"
#include "zrhostentityimages.h"
#include "zrhostpaths.h"
#include "zrhostservices.h"
#include "zrsystem.h"

namespace {

const wchar_t kLanguageServiceName[] = L"ZrUiLanguageSvr";

class HostLanguageService : public ZrUiLanguageSvr
{
public:
    explicit HostLanguageService(QHash<QString, QString> texts) : m_texts(std::move(texts)) {}

    ZrString getText(const ZrString& key, const ZrString& def) const override
    {
        auto it = m_texts.constFind(key.toQString());
        return it == m_texts.constEnd() ? def : ZrString(*it);
    }

private:
    QHash<QString, QString> m_texts;
};

QHash<QString, QString> g_texts;

void installLanguageService(bool enabled)
{
    CXuServiceManager* services = CXuSystem::instance()->serviceManager();
    services->removeService(ZrString(kLanguageServiceName));
    if (!enabled)
        return;
    ZrRxObjectPtr service(new ZrRxObjectImpl<HostLanguageService>(g_texts), kZrAttach);
    services->registerService(ZrString(kLanguageServiceName), service);
}

bool g_initialized = false;

} // namespace

namespace ZrHostControl {

void initialize(const Options& options)
{
    if (g_initialized)
        shutdown();
    g_initialized = true;
    zrHostUi().theme = options.theme;
    zrHostStartServices();
    zrdbResetApplicationVariables();

    g_texts = options.texts;
    installLanguageService(options.languageService);

    CXuDocManager* documents = CXuSystem::instance()->docManager();
    if (!documents->curDocument())
        documents->addDocument(ZrString(L"Drawing1.dwg"));
    zrHostOpenConfig(options.configDir, options.resourceRoot, options.language);
}

void shutdown()
{
    if (!g_initialized)
        return;
    zr_save_user_config("");
    zrHostStopServices();
    installLanguageService(false);
    CXuDocManager* documents = CXuSystem::instance()->docManager();
    while (documents->curDocument())
        documents->closeDocument(documents->curDocument());
    zrHostCloseConfig();
    ZrHostMacros& macros = zrHostMacros();
    macros.queue.clear();
    macros.listener = nullptr;
    macros.commandListener = nullptr;
    ZrHostUi& ui = zrHostUi();
    ui.messageAnswers.clear();
    ui.mainWindow = ui.targetWindow = ui.viewWindow = nullptr;
    ui.drawingBackgroundDark = true;
    ui.helpListener = nullptr;
    resetColorBookFolders();
    zrHostDocuments().drawingSurfaceActive = false;
    zrHostDocuments().redrawListener = nullptr;
    clearLogs();
    g_initialized = false;
}

bool isInitialized() { return g_initialized; }

void setTheme(int theme) { zrHostUi().theme = theme; }
void setResourceRoot(const QString& root) { zrHostSetResourceRoot(root); }

void setLanguageTexts(const QHash<QString, QString>& texts)
{
    g_texts = texts;
    installLanguageService(true);
}

void setLanguageServiceEnabled(bool enabled) { installLanguageService(enabled); }
QString userConfigFile() { return zrHostUserConfigFile(); }

void setMainWindow(QWidget* window) { zrHostUi().mainWindow = window; }
void setTargetWindow(QWidget* window) { zrHostUi().targetWindow = window; }
void setViewWindow(QWidget* window) { zrHostUi().viewWindow = window; }
void setDrawingBackgroundDark(bool dark) { zrHostUi().drawingBackgroundDark = dark; }

void setColorBookFolders(const QStringList& folders)
{
    zrHostPaths().colorBookFoldersFixed = true;
    zrHostPaths().colorBookFolders = folders;
}

void resetColorBookFolders() { zrHostPaths() = ZrHostPaths(); }

void setMacroListener(std::function<void(const MacroCall&)> listener)
{
    zrHostMacros().listener = std::move(listener);
}

void setCommandListener(std::function<void(const QString&, bool)> listener)
{
    zrHostMacros().commandListener = std::move(listener);
}

QVector<MacroCall> queuedMacros()
{
    const auto& queue = zrHostMacros().queue;
    return QVector<MacroCall>(queue.begin(), queue.end());
}

void runQueuedMacros() { zrHostRunQueuedMacros(); }

QVector<WindowCall> cursorCalls() { return zrHostUi().cursorCalls; }
QVector<WindowCall> focusCalls() { return zrHostUi().focusCalls; }
QStringList helpTopics() { return zrHostUi().helpTopics; }
void setHelpListener(std::function<void(const QString&)> listener) { zrHostUi().helpListener = std::move(listener); }
int commandStateCalls() { return zrHostDocuments().commandStateCalls; }
void pushMessageBoxAnswer(int answer) { zrHostUi().messageAnswers.enqueue(answer); }
QVector<MessageRecord> messageLog() { return zrHostUi().messageLog; }

void clearLogs()
{
    ZrHostUi& ui = zrHostUi();
    ui.cursorCalls.clear();
    ui.focusCalls.clear();
    ui.helpTopics.clear();
    ui.messageLog.clear();
    zrHostDocuments().commandStateCalls = 0;
    zrHostLastEntityImageRequest() = ZrHostEntityImageRequest();
}

} // namespace ZrHostControl

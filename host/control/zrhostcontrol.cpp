#include "zrhostcontrol.h"

#include "../src/hoststate.h"
#include "zrarbitdict.h"
#include "zrconfig.h"
#include "zrdbinternal.h"
#include "zrdbvariables.h"
#include "zrdocument.h"
#include "zrreactor.h"
#include "zrsystem.h"

#include <QDir>
#include <QStandardPaths>

ZrHostState& ZrHostState::get()
{
    static ZrHostState state;
    return state;
}

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

ZrJsonPtr objectWith(const char* key, const ZrUtf8String& value)
{
    ZrJsonPtr object = ElementValue::createObject(kZrJsonObject);
    object->SetDataS(key, value);
    return object;
}

// The leading word of a command string, without the prefixes of the command line.
QString commandWord(QString text)
{
    while (text.startsWith(QLatin1String("^C")))
        text.remove(0, 2);
    text = text.trimmed();
    while (!text.isEmpty() && QStringLiteral("_.-'").contains(text.front()))
        text.remove(0, 1);
    return text.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
}

} // namespace

namespace ZrHostControl {

void initialize(const Options& options)
{
    ZrHostState& host = ZrHostState::get();
    if (host.initialized)
        shutdown();
    host.initialized = true;
    host.theme = options.theme;
    host.language = options.language;

    auto* registry = new ZrRxObjectImpl<ZrRxDictionary>();
    auto* commands = new ZrRxObjectImpl<ZrEdCommandStack>();
    registry->atPut(ACRX_COMMAND_DOCK, commands);
    zrrxRelease(commands);
    host.sysRegistry = registry;
    host.numberedServices[3] = ZrRxObjectPtr(new ZrRxObjectImpl<ZrDbDatabaseService>(), kZrAttach);
    zrdbResetApplicationVariables();

    g_texts = options.texts;
    installLanguageService(options.languageService);

    CXuDocManager* documents = CXuSystem::instance()->docManager();
    if (!documents->curDocument())
        documents->addDocument(ZrString(L"Drawing1.dwg"));

    const QString configDir = options.configDir.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)
        : options.configDir;
    host.userConfigFile = QDir(configDir).filePath(QStringLiteral("user-config.json"));
    host.userConfig = zrHostReadConfigFile(host.userConfigFile);

    host.runtimeConfig = ElementValue::createObject(kZrJsonObject);
    host.runtimeConfig->SetDataS("ResRootPath", ZrUtf8String(options.resourceRoot));
    host.runtimeConfig->SetDataJ("paths", objectWith("templatePaths", ZrUtf8String(configDir + "/Template")));
    host.sysConfig = ElementValue::createObject(kZrJsonObject);
    host.sysConfig->SetDataS("Core/AppInfo/version", "2026");
    host.languageConfig = objectWith("curLanguage", ZrUtf8String(options.language));
}

void shutdown()
{
    ZrHostState& host = ZrHostState::get();
    if (!host.initialized)
        return;
    zr_save_user_config("");
    // Slots go one at a time, so that a service that looks at the others while it dies finds them sane.
    while (!host.arbitSlots.empty())
        zr_arbitDict_clearservice(host.arbitSlots.rbegin()->first);
    host.numberedServices.clear();
    zrrxRelease(std::exchange(host.sysRegistry, nullptr));
    installLanguageService(false);
    CXuDocManager* documents = CXuSystem::instance()->docManager();
    while (documents->curDocument())
        documents->closeDocument(documents->curDocument());
    host.userConfig = host.runtimeConfig = host.sysConfig = host.languageConfig = ZrJsonPtr();
    host.macroQueue.clear();
    host.macroListener = nullptr;
    host.commandListener = nullptr;
    host.messageAnswers.clear();
    host.mainWindow = host.targetWindow = host.viewWindow = nullptr;
    host.drawingSurfaceActive = false;
    host.redrawListener = nullptr;
    clearLogs();
    host.initialized = false;
}

bool isInitialized() { return ZrHostState::get().initialized; }

void setTheme(int theme) { ZrHostState::get().theme = theme; }

void setResourceRoot(const QString& root)
{
    ZrHostState& host = ZrHostState::get();
    if (host.runtimeConfig)
        host.runtimeConfig->SetDataS("ResRootPath", ZrUtf8String(root));
}

void setLanguageTexts(const QHash<QString, QString>& texts)
{
    g_texts = texts;
    installLanguageService(true);
}

void setLanguageServiceEnabled(bool enabled) { installLanguageService(enabled); }
QString userConfigFile() { return ZrHostState::get().userConfigFile; }

void setMainWindow(QWidget* window) { ZrHostState::get().mainWindow = window; }
void setTargetWindow(QWidget* window) { ZrHostState::get().targetWindow = window; }
void setViewWindow(QWidget* window) { ZrHostState::get().viewWindow = window; }

void setMacroListener(std::function<void(const MacroCall&)> listener)
{
    ZrHostState::get().macroListener = std::move(listener);
}

void setCommandListener(std::function<void(const QString&, bool)> listener)
{
    ZrHostState::get().commandListener = std::move(listener);
}

QVector<MacroCall> queuedMacros()
{
    const auto& queue = ZrHostState::get().macroQueue;
    return QVector<MacroCall>(queue.begin(), queue.end());
}

void runQueuedMacros()
{
    ZrHostState& host = ZrHostState::get();
    host.macroRunScheduled = false;
    while (!host.macroQueue.isEmpty()) {
        const QString word = commandWord(host.macroQueue.dequeue().text);
        auto* commands = ZrEdCommandStack::cast(host.sysRegistry ? host.sysRegistry->at(ACRX_COMMAND_DOCK) : nullptr);
        const bool known = commands && !word.isEmpty() && commands->runCommand(ZrString(word));
        if (host.commandListener)
            host.commandListener(word, known);
    }
}

QVector<WindowCall> cursorCalls() { return ZrHostState::get().cursorCalls; }
QVector<WindowCall> focusCalls() { return ZrHostState::get().focusCalls; }
QStringList helpTopics() { return ZrHostState::get().helpTopics; }
void pushMessageBoxAnswer(int answer) { ZrHostState::get().messageAnswers.enqueue(answer); }
QVector<MessageRecord> messageLog() { return ZrHostState::get().messageLog; }

void clearLogs()
{
    ZrHostState& host = ZrHostState::get();
    host.cursorCalls.clear();
    host.focusCalls.clear();
    host.helpTopics.clear();
    host.messageLog.clear();
    host.entityImageRequest = EntityImageRequest();
}

} // namespace ZrHostControl

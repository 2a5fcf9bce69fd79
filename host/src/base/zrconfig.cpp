#include "zrconfig.h"

#include "zrhostconfig.h"
#include "zrsavefile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cstdio>
#include <cstring>
#include <utility>

namespace {

struct ConfigStores
{
    ZrJsonPtr user;
    ZrJsonPtr runtime;
    ZrJsonPtr system;
    ZrJsonPtr language;
    QString userFile;
    // False when the user's file could not be read: it is never written over then.
    bool userWritable = true;
    // The last trouble told, so that a save that keeps failing says so once.
    QString lastWarning;
    QString languageName = QStringLiteral("zh-CN");
};

ConfigStores& stores()
{
    static ConfigStores state;
    return state;
}

void warnOnce(const QString& message)
{
    if (message == std::exchange(stores().lastWarning, message))
        return;
    qWarning("%s", qPrintable(message));
}

ZrJsonPtr objectWith(const char* key, const ZrUtf8String& value)
{
    ZrJsonPtr object = ElementValue::createObject(kZrJsonObject);
    object->SetDataS(key, value);
    return object;
}

QString kindOf(const ZrJsonPtr& tree)
{
    if (tree.isNull())
        return QStringLiteral("null");
    if (tree->isArray())
        return QStringLiteral("an array");
    if (tree->isString())
        return QStringLiteral("a string");
    if (tree->isNumber())
        return QStringLiteral("a number");
    if (tree->isBool())
        return QStringLiteral("a boolean");
    return QStringLiteral("null");
}

// Why a file's text is not a configuration; empty when it is one.
QString faultOf(const QByteArray& text, ZrJsonPtr& tree)
{
    ZrJsonParseError error;
    tree = ElementValue::parse(text.constData(), static_cast<size_t>(text.size()), &error);
    if (!error.ok())
        return QStringLiteral("line %1, column %2: %3")
            .arg(error.line)
            .arg(error.column)
            .arg(error.message.toQString());
    if (tree.isNull() || !tree->isObject())
        return QStringLiteral("the whole file is %1, not an object").arg(kindOf(tree));
    return QString();
}

// A damaged file goes aside under a name of its own, so that nothing of it is lost.
QString keepAside(const QString& file)
{
    const QString stem = file + QStringLiteral(".damaged-")
        + QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString aside = stem;
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = stem + QLatin1Char('-') + QString::number(n);
    // rename() itself: Qt's renames fall back to a copy or a second link, which a failure leaves behind.
    const bool moved = std::rename(QFile::encodeName(file).constData(), QFile::encodeName(aside).constData()) == 0;
    return moved ? aside : QString();
}

// The user's tree from its file: empty when there is none yet, or when it cannot be used, which is
// told once. `writable` is false when the file is there but could not be read or kept aside.
ZrJsonPtr readUserConfig(const QString& file, bool& writable)
{
    writable = true;
    const ZrJsonPtr empty = ElementValue::createObject(kZrJsonObject);
    const QFileInfo info(file);
    if (!info.exists())
        return empty;
    QFile in(file);
    QByteArray text;
    if (!info.isDir() && in.open(QIODevice::ReadOnly))
        text = in.readAll();
    if (info.isDir() || !in.isOpen() || in.error() != QFileDevice::NoError) {
        writable = false;
        warnOnce(QStringLiteral("user configuration %1 cannot be read (%2); running on defaults, the file is left as "
                                "it is")
                     .arg(file, info.isDir() ? QStringLiteral("it is a folder") : in.errorString()));
        return empty;
    }
    ZrJsonPtr tree;
    const QString fault = faultOf(text, tree);
    if (fault.isEmpty())
        return tree;
    const QString aside = keepAside(file);
    if (aside.isEmpty()) {
        writable = false;
        warnOnce(QStringLiteral("user configuration %1 is damaged (%2) and cannot be moved aside; running on "
                                "defaults, the file is left as it is").arg(file, fault));
    } else {
        warnOnce(QStringLiteral("user configuration %1 is damaged (%2); it is kept as %3 and a new one is started")
                     .arg(file, fault, aside));
    }
    return empty;
}

bool writeUserConfig(const QString& file, const ZrJsonPtr& tree)
{
    QString error;
    const QString folder = QFileInfo(file).absolutePath();
    if (!QDir().mkpath(folder)) {
        error = QStringLiteral("%1: the folder %2 cannot be made").arg(file, folder);
    } else {
        const ZrUtf8String text = tree->toJson(true);
        if (zrHostSaveFile(file, QByteArray(text.c_str(), static_cast<int>(text.length())), &error))
            return true;
    }
    warnOnce(QStringLiteral("user configuration not saved: %1").arg(error));
    return false;
}

// Walks "/" separated paths; with `create` missing objects are made on the way.
ZrJsonPtr configNode(const ZrJsonPtr& root, const ZrUtf8String& path, bool create)
{
    if (!root)
        return ZrJsonPtr();
    ZrJsonPtr node = root;
    for (const QString& part : path.toQString().split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        const QByteArray key = part.toUtf8();
        ZrJsonPtr child = node->safeProperty_ptr(ZrUtf8String(key.constData()));
        if (child.isNullOrNoDef()) {
            if (!create || !node->isObject())
                return ZrJsonPtr();
            child = ElementValue::createObject(kZrJsonObject);
            node->SetDataJ(key.constData(), child);
        }
        node = child;
    }
    return node;
}

// The open command's section with its two last folders, empty until a file dialog remembers one.
void addOpenFileSection(const ZrJsonPtr& user)
{
    ZrJsonPtr section = configNode(user, "CmdOpenFile", true);
    if (!section || !section->isObject())
        return;
    for (const char* key : {"CmdOpen-openLastPath", "CmdOpen-newLastPath"}) {
        if (!section->hasProperty(key))
            section->SetDataS(key, "");
    }
}

} // namespace

ZrJsonPtr zr_user_config(const ZrUtf8String& path, int mode)
{
    return configNode(stores().user, path, mode == 2);
}

bool zr_save_user_config(const ZrUtf8String&)
{
    const ConfigStores& state = stores();
    return state.user && state.userWritable && !state.userFile.isEmpty() && writeUserConfig(state.userFile, state.user);
}

ZrJsonPtr zr_runtime_config(const ZrUtf8String& path)
{
    return configNode(stores().runtime, path, false);
}

ZrJsonPtr zr_sys_config(const ZrUtf8String& path)
{
    return configNode(stores().system, path, false);
}

ZrJsonPtr zr_language_config() { return stores().language; }

ZrUtf8String zr_sys_language() { return ZrUtf8String(stores().languageName); }

void zrHostOpenConfig(const QString& folder, const QString& resourceRoot, const QString& language)
{
    ConfigStores& state = stores();
    state.lastWarning.clear();
    // Without a home the configuration folder would fall to the root of the file system.
    const bool homeless = folder.isEmpty() && qEnvironmentVariableIsEmpty("HOME")
        && qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME");
    const QString configDir = !folder.isEmpty() ? folder
        : homeless                              ? QString()
                                                : QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    if (homeless) {
        state.userFile.clear();
        state.userWritable = false;
        state.user = ElementValue::createObject(kZrJsonObject);
        warnOnce(QStringLiteral("no home folder (HOME is not set): the user configuration runs on defaults and is "
                                "not saved"));
    } else {
        state.userFile = QDir(configDir).filePath(QStringLiteral("user-config.json"));
        state.user = readUserConfig(state.userFile, state.userWritable);
    }
    addOpenFileSection(state.user);
    state.runtime = ElementValue::createObject(kZrJsonObject);
    state.runtime->SetDataS("ResRootPath", ZrUtf8String(resourceRoot));
    state.runtime->SetDataJ("paths", objectWith("templatePaths", ZrUtf8String(configDir + "/Template")));
    state.system = ElementValue::createObject(kZrJsonObject);
    state.system->SetDataS("Core/AppInfo/version", "2026");
    state.languageName = language;
    state.language = objectWith("curLanguage", ZrUtf8String(language));
}

void zrHostCloseConfig()
{
    ConfigStores& state = stores();
    state.user = state.runtime = state.system = state.language = ZrJsonPtr();
}

QString zrHostUserConfigFile() { return stores().userFile; }

void zrHostSetResourceRoot(const QString& root)
{
    if (stores().runtime)
        stores().runtime->SetDataS("ResRootPath", ZrUtf8String(root));
}

void zr_getOEMStringRePlace(ZrString& out, const char* key)
{
    // The product's names, as an OEM build would brand them.
    static const struct { const char* key; const wchar_t* text; } texts[] = {
        {"appEnName", L"ZrCAD"},
    };
    out = ZrString();
    for (const auto& entry : texts) {
        if (key && std::strcmp(key, entry.key) == 0)
            out = ZrString(entry.text);
    }
}

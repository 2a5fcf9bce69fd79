#include "zrconfig.h"

#include "zrhostconfig.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace {

struct ConfigStores
{
    ZrJsonPtr user;
    ZrJsonPtr runtime;
    ZrJsonPtr system;
    ZrJsonPtr language;
    QString userFile;
    QString languageName = QStringLiteral("zh-CN");
};

ConfigStores& stores()
{
    static ConfigStores state;
    return state;
}

ZrJsonPtr objectWith(const char* key, const ZrUtf8String& value)
{
    ZrJsonPtr object = ElementValue::createObject(kZrJsonObject);
    object->SetDataS(key, value);
    return object;
}

} // namespace

ZrJsonPtr zrHostReadConfigFile(const QString& file)
{
    QFile in(file);
    if (in.open(QIODevice::ReadOnly)) {
        const QByteArray text = in.readAll();
        ZrJsonParseError error;
        ZrJsonPtr tree = ElementValue::parse(text.constData(), static_cast<size_t>(text.size()), &error);
        if (tree && tree->isObject())
            return tree;
        qWarning("user configuration %s is damaged (line %d, column %d: %s); starting from an empty one",
                 qPrintable(file), error.line, error.column, error.message.c_str());
    }
    return ElementValue::createObject(kZrJsonObject);
}

bool zrHostWriteConfigFile(const QString& file, const ZrJsonPtr& tree)
{
    if (file.isEmpty() || !tree)
        return false;
    QDir().mkpath(QFileInfo(file).absolutePath());
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    const ZrUtf8String text = tree->toJson(true);
    out.write(text.c_str(), text.length());
    return out.commit();
}

ZrJsonPtr zrHostConfigNode(const ZrJsonPtr& root, const ZrUtf8String& path, bool create)
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

ZrJsonPtr zr_user_config(const ZrUtf8String& path, int mode)
{
    return zrHostConfigNode(stores().user, path, mode == 2);
}

bool zr_save_user_config(const ZrUtf8String&)
{
    return zrHostWriteConfigFile(stores().userFile, stores().user);
}

ZrJsonPtr zr_runtime_config(const ZrUtf8String& path)
{
    return zrHostConfigNode(stores().runtime, path, false);
}

ZrJsonPtr zr_sys_config(const ZrUtf8String& path)
{
    return zrHostConfigNode(stores().system, path, false);
}

ZrJsonPtr zr_language_config() { return stores().language; }

ZrUtf8String zr_sys_language() { return ZrUtf8String(stores().languageName); }

void zrHostOpenConfig(const QString& folder, const QString& resourceRoot, const QString& language)
{
    ConfigStores& state = stores();
    const QString configDir = folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)
                                               : folder;
    state.userFile = QDir(configDir).filePath(QStringLiteral("user-config.json"));
    state.user = zrHostReadConfigFile(state.userFile);
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

#include "zrconfig.h"

#include "hoststate.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

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
    return zrHostConfigNode(ZrHostState::get().userConfig, path, mode == 2);
}

bool zr_save_user_config(const ZrUtf8String&)
{
    const ZrHostState& host = ZrHostState::get();
    return zrHostWriteConfigFile(host.userConfigFile, host.userConfig);
}

ZrJsonPtr zr_runtime_config(const ZrUtf8String& path)
{
    return zrHostConfigNode(ZrHostState::get().runtimeConfig, path, false);
}

ZrJsonPtr zr_sys_config(const ZrUtf8String& path)
{
    return zrHostConfigNode(ZrHostState::get().sysConfig, path, false);
}

ZrJsonPtr zr_language_config() { return ZrHostState::get().languageConfig; }

ZrUtf8String zr_sys_language() { return ZrUtf8String(ZrHostState::get().language); }

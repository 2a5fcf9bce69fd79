#include "zrsystem.h"

#include "zrconfig.h"
#include "zrhostconfig.h"

#include <QFileInfo>

namespace {

// The support folders of a fresh installation: "Support" beside the user configuration, then the
// template folders.
ZrJsonPtr defaultSupportPaths()
{
    QStringList folders;
    const QString configFile = zrHostUserConfigFile();
    if (!configFile.isEmpty())
        folders << QFileInfo(configFile).absolutePath() + QStringLiteral("/Support");
    const ZrJsonPtr templates = zr_runtime_config("paths/templatePaths");
    if (!templates.isNullOrNoDef() && templates->isString())
        folders << templates->safeStrValue().toQString();
    return ElementValue::fromString(ZrUtf8String(folders.join(QLatin1Char(';'))));
}

} // namespace

ZrJsonPtr CXuSystem::getProfileValue(const ZrUtf8String& section, const ZrUtf8String& key) const
{
    const ZrJsonPtr stored = zr_user_config(ZrUtf8String("Profile/") + section + ZrUtf8String("/") + key);
    if (!stored.isNullOrNoDef())
        return stored;
    if (section == ZrUtf8String("General") && key == ZrUtf8String("ZRAPP"))
        return defaultSupportPaths();
    return ZrJsonPtr();
}

#include "zrsystem.h"

#include "zrconfig.h"
#include "zrhostpaths.h"

#include <QDir>
#include <QFileInfo>
#include <dlfcn.h>

namespace {

// The folder this library was loaded from: the installed books lie beside it, in ../share.
QString libraryFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&zrHostPaths), &info) == 0 || !info.dli_fname)
        return QString();
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

QStringList configuredFolders()
{
    QStringList folders;
    // An array of folders; a single folder written as a plain string is taken too.
    const ZrJsonPtr list = zr_user_config("ColorBookPaths");
    if (list && list->isString())
        folders << list->safeStrValueW().toQString();
    for (int i = 0; list && i < list->ArrayCount(); ++i) {
        const ZrJsonPtr entry = list->at(i);
        if (entry->isString())
            folders << entry->safeStrValueW().toQString();
    }
    for (const QString& entry : qEnvironmentVariable("ZR_COLORBOOK_PATH").split(QLatin1Char(':')))
        folders << entry;
    const QString folder = libraryFolder();
    if (!folder.isEmpty())
        folders << QDir::cleanPath(folder + QStringLiteral("/../share/ZrHost/colorbooks"));
    folders.removeAll(QString());
    return folders;
}

} // namespace

ZrHostPaths& zrHostPaths()
{
    static ZrHostPaths paths;
    return paths;
}

ZrArray<ZrString> CXuPathService::colorBookFolders() const
{
    const ZrHostPaths& paths = zrHostPaths();
    const QStringList folders = paths.colorBookFoldersFixed ? paths.colorBookFolders : configuredFolders();
    ZrArray<ZrString> result;
    for (const QString& folder : folders)
        result.append(ZrString(folder));
    return result;
}

#include "zrdynlinker.h"

#include "zrrasterservices.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <dlfcn.h>
#include <map>

ZR_RX_DEFINE_MEMBERS(ZrRxRasterServices, ZrRxObject)

namespace {

QStringList moduleFolders()
{
    const QByteArray fromEnvironment = qgetenv("ZR_HOST_MODULE_PATH");
    if (!fromEnvironment.isNull())
        return QString::fromLocal8Bit(fromEnvironment).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&zrrxDynamicLinkerLoadAppEx), &info) == 0 || !info.dli_fname)
        return {};
    return {QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath() + QStringLiteral("/ZrHost/modules")};
}

// Modules stay loaded for the run, keyed by their file, with the object they gave.
std::map<QString, ZrRxObjectPtr>& loadedModules()
{
    static std::map<QString, ZrRxObjectPtr> modules;
    return modules;
}

} // namespace

ZrRxObjectPtr zrrxDynamicLinkerLoadAppEx(const ZrString& name, bool silent, int, bool)
{
    const QString fileName = name.toQString() + QStringLiteral(".zrx");
    // Only a plain name: a path would reach outside the module folders.
    if (name.isEmpty() || fileName.contains(QLatin1Char('/')))
        return nullptr;
    QString file;
    for (const QString& folder : moduleFolders()) {
        if (QFileInfo(QDir(folder).filePath(fileName)).isFile()) {
            file = QDir(folder).filePath(fileName);
            break;
        }
    }
    if (file.isEmpty()) {
        if (!silent)
            qWarning("host: no module %s in %s", qPrintable(fileName), qPrintable(moduleFolders().join(QLatin1Char(':'))));
        return nullptr;
    }
    auto& modules = loadedModules();
    auto it = modules.find(file);
    if (it != modules.end())
        return it->second;

    QLibrary library(file);
    const auto entry = reinterpret_cast<ZrRxModuleEntry>(library.resolve(ZR_RX_MODULE_ENTRY_NAME));
    ZrRxObjectPtr object = entry ? ZrRxObjectPtr(entry(), kZrAttach) : ZrRxObjectPtr();
    if (!object) {
        if (!silent)
            qWarning("host: the module %s gives no object: %s", qPrintable(file), qPrintable(library.errorString()));
        return nullptr;
    }
    // The library is never unloaded: the object's code lives in it.
    modules.emplace(file, object);
    return object;
}

#include "zrhostsession.h"

#include "zrappenv.h"
#include "zrhostreactor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>

#include <cstdint>

namespace {

// Messages of the module's entry point.
constexpr int kLoadMessage = 1;
constexpr int kUnloadMessage = 2;

using EntryPoint = int64_t (*)(int message);

} // namespace

struct ZrHostSession::Data
{
    QLibrary library;
    EntryPoint entryPoint = nullptr;
    QString error;
};

ZrHostSession::ZrHostSession(int theme) : d(std::make_unique<Data>())
{
    ZrHostControl::initialize(ZrApp::hostOptions(theme));
    d->library.setFileName(moduleFile());
    if (d->library.load())
        d->entryPoint = reinterpret_cast<EntryPoint>(d->library.resolve("zrrxEntryPoint"));
    if (!d->entryPoint) {
        d->error = QStringLiteral("cannot load the module %1: %2").arg(d->library.fileName(), d->library.errorString());
        d->library.unload();
        return;
    }
    d->entryPoint(kLoadMessage);
    // The host's user-interface layer tells the module's drawing-bound controls of its events.
    ZrHostReactor::install();
}

ZrHostSession::~ZrHostSession()
{
    unloadModule();
    ZrHostControl::shutdown();
}

QString ZrHostSession::moduleFile()
{
    const QString fromEnvironment = qEnvironmentVariable("ZR_MODULE");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QString besideExecutable = QCoreApplication::applicationDirPath()
        + QStringLiteral("/../lib/libZrQtBaseUtils.so");
    if (QFileInfo::exists(besideExecutable))
        return QDir::cleanPath(besideExecutable);
    return QStringLiteral(ZR_DEFAULT_MODULE_FILE);
}

QString ZrHostSession::error() const
{
    return d->error;
}

void ZrHostSession::unloadModule()
{
    if (!d->entryPoint)
        return;
    ZrHostReactor::uninstall();
    d->entryPoint(kUnloadMessage);
    d->entryPoint = nullptr;
    d->library.unload();
}

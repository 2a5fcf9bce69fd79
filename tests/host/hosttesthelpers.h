#pragma once
// Shared set-up of the host suites: a host of their own, fresh drawings, small builders and an
// event log.

#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrreactor.h"
#include "zrresbuf.h"

#include <QFile>
#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// A host of its own for each suite, with a new empty drawing for each test.
class HostFixture : public QObject
{
protected:
    QTemporaryDir m_config;

    void startHost()
    {
        ZrHostControl::Options options;
        options.configDir = m_config.path();
        ZrHostControl::initialize(options);
    }
    void freshDrawing()
    {
        ZrHostControl::openEmptyDrawing();
        ZrHostControl::flushUiEvents();
    }
};

inline ZrDbObjectId addLine(ZrDbDatabase* db, double x0, double x1)
{
    ZrDbObjectPointer<ZrDbBlockTableRecord> space(db->modelSpaceId(), ZrDb::kForWrite);
    auto* line = new ZrDbLine(ZrGePoint3d(x0, 0, 0), ZrGePoint3d(x1, 0, 0));
    ZrDbObjectId id;
    space->appendZrDbEntity(id, line);
    line->close();
    return id;
}

inline ZrDbObjectId addLayer(ZrDbDatabase* db, const wchar_t* name)
{
    ZrDbObjectPointer<ZrDbLayerTable> table(db->layerTableId(), ZrDb::kForWrite);
    auto* layer = new ZrDbLayerTableRecord;
    layer->setName(ZrString(name));
    ZrDbObjectId id;
    table->add(layer, &id);
    layer->close();
    return id;
}

inline ZrDbObjectId recordOf(ZrDbObjectId tableId, const wchar_t* name)
{
    ZrDbObjectPointer<ZrDbSymbolTable> table(tableId, ZrDb::kForRead);
    ZrDbObjectId id;
    table->getIdAt(ZrString(name), id);
    return id;
}

inline ZrString layerNameOf(ZrDbObjectId entity)
{
    ZrDbObjectPointer<ZrDbEntity> open(entity, ZrDb::kForRead);
    return open ? open->layer() : ZrString();
}

inline QString variableText(const wchar_t* name)
{
    ZrResBuf value;
    if (zredGetVar(name, &value) != RTNORM || value.restype != RTSTR)
        return QStringLiteral("<not a text>");
    const QString text = QString::fromWCharArray(value.resval.rstring);
    delete[] value.resval.rstring;
    return text;
}

// Collects the events the user interface is told of.
class EventLog
{
public:
    EventLog()
    {
        ZrHostControl::flushUiEvents();
        m_key = ZrHostControl::addUiEventListener([this](const CZrGlobalUIReactorHelp& e) { m_events.push_back(e); });
    }
    ~EventLog() { ZrHostControl::removeUiEventListener(m_key); }
    const std::vector<CZrGlobalUIReactorHelp>& flushed()
    {
        ZrHostControl::flushUiEvents();
        return m_events;
    }
    int count(int64_t kind)
    {
        int n = 0;
        for (const CZrGlobalUIReactorHelp& e : flushed())
            n += e.kind == kind;
        return n;
    }
    void clear() { m_events.clear(); }

private:
    int m_key = -1;
    std::vector<CZrGlobalUIReactorHelp> m_events;
};

// Runs `work` in a child process whose files cannot grow past `limit` bytes, as on a full disk.
// SIGXFSZ is ignored there, so a write past the limit comes back short instead of ending the child.
// Answers the child's exit code, which is what `work` answers; -1 when it did not exit.
inline int inChildWithFileLimit(rlim_t limit, const std::function<int()>& work)
{
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit files{limit, limit};
        setrlimit(RLIMIT_FSIZE, &files);
        _exit(work());
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child)
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QStringList& configurationWarnings()
{
    static QStringList warnings;
    return warnings;
}

inline void collectConfigurationWarning(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtWarningMsg && message.contains(QLatin1String("configuration")))
        configurationWarnings() << message;
}

// Collects what the host warns of the user configuration while it lives.
class WarningLog
{
public:
    WarningLog() : m_previous(qInstallMessageHandler(collectConfigurationWarning)) { configurationWarnings().clear(); }
    ~WarningLog() { qInstallMessageHandler(m_previous); }
    const QStringList& warnings() const { return configurationWarnings(); }

private:
    QtMessageHandler m_previous;
};

// Sets or clears the append-only flag of a folder: files can be made in it, none renamed or removed.
// False where the file system or the user's rights do not allow it.
inline bool setAppendOnly(const QString& folder, bool on)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (fd < 0)
        return false;
    int flags = 0;
    bool done = ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    if (done) {
        flags = on ? flags | FS_APPEND_FL : flags & ~FS_APPEND_FL;
        done = ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    }
    ::close(fd);
    return done;
}

// Sets environment variables for one test and puts them back.
class Environment
{
public:
    ~Environment()
    {
        for (auto it = m_saved.cbegin(); it != m_saved.cend(); ++it) {
            if (it.value().isNull())
                qunsetenv(it.key().constData());
            else
                qputenv(it.key().constData(), it.value());
        }
    }
    void set(const char* name, const QByteArray& value)
    {
        remember(name);
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }

private:
    void remember(const char* name)
    {
        if (!m_saved.contains(name))
            m_saved.insert(name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray());
    }
    QHash<QByteArray, QByteArray> m_saved;
};

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

#include "zrlinetypedefs.h"

#include "zrdbdatabase.h"
#include "zrdbsymtb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <cmath>
#include <dlfcn.h>

namespace {

constexpr qint64 kMaxFileSize = 1 << 20;
constexpr int kMaxNameLength = 255;

QString atLine(int line, const QString& what) { return QStringLiteral("line %1: %2").arg(line).arg(what); }

bool validName(const QString& name)
{
    static const QString kForbidden = QStringLiteral("<>/\\\":;?*|,=`");
    if (name.isEmpty() || name.size() > kMaxNameLength)
        return false;
    for (const QChar c : name) {
        if (kForbidden.contains(c) || c.unicode() < 0x20)
            return false;
    }
    return true;
}

bool parsePattern(const QByteArray& line, std::vector<double>& dashes, QString& what)
{
    const QList<QByteArray> fields = line.split(',');
    if (fields.first().trimmed().toUpper() != "A") {
        what = QStringLiteral("a pattern line starts with \"A\"");
        return false;
    }
    for (int i = 1; i < fields.size(); ++i) {
        const QByteArray field = fields[i].trimmed();
        // "A," is a continuous line written with a trailing comma.
        if (field.isEmpty() && i == fields.size() - 1 && i == 1)
            break;
        bool ok = false;
        const double dash = field.toDouble(&ok);
        if (!ok || !std::isfinite(dash)) {
            what = QStringLiteral("\"%1\" is not a length").arg(QString::fromUtf8(field.left(40)));
            return false;
        }
        if (std::fabs(dash) > kZrMaxLinetypeDash) {
            what = QStringLiteral("a dash of %1 is longer than %2").arg(dash).arg(kZrMaxLinetypeDash);
            return false;
        }
        if (static_cast<int>(dashes.size()) == kZrMaxLinetypeDashes) {
            what = QStringLiteral("more than %1 dashes").arg(kZrMaxLinetypeDashes);
            return false;
        }
        dashes.push_back(dash);
    }
    return true;
}

} // namespace

bool zrdbParseLinetypeDefinitions(const QByteArray& text, std::vector<ZrLinetypeDefinition>& definitions,
                                  QString& error)
{
    definitions.clear();
    const QList<QByteArray> lines = text.split('\n');
    ZrLinetypeDefinition pending;
    bool open = false;
    int headerLine = 0;
    QStringList seen;
    const auto fail = [&](int line, const QString& what) {
        definitions.clear();
        error = atLine(line, what);
        return false;
    };
    for (int i = 0; i < lines.size(); ++i) {
        const int number = i + 1;
        const QByteArray line = lines[i].trimmed();
        if (line.isEmpty() || line.startsWith(';'))
            continue;
        if (line.startsWith('*')) {
            if (open)
                return fail(headerLine, QStringLiteral("the definition has no pattern line"));
            const int comma = line.indexOf(',');
            const QString name = QString::fromUtf8(line.mid(1, comma < 0 ? -1 : comma - 1)).trimmed();
            if (!validName(name))
                return fail(number, QStringLiteral("\"%1\" is not a line type name").arg(name.left(40)));
            pending = ZrLinetypeDefinition();
            pending.name = ZrString(name);
            pending.comments = ZrString(comma < 0 ? QString() : QString::fromUtf8(line.mid(comma + 1)).trimmed());
            open = true;
            headerLine = number;
            continue;
        }
        if (!open)
            return fail(number, QStringLiteral("a pattern line without a \"*NAME\" line before it"));
        QString what;
        if (!parsePattern(line, pending.dashes, what))
            return fail(number, what);
        open = false;
        const QString folded = pending.name.toQString().toCaseFolded();
        if (!seen.contains(folded)) {
            seen << folded;
            definitions.push_back(std::move(pending));
        }
    }
    if (open)
        return fail(headerLine, QStringLiteral("the definition has no pattern line"));
    error.clear();
    return true;
}

bool zrdbReadLinetypeFile(const QString& path, std::vector<ZrLinetypeDefinition>& definitions, QString& error)
{
    definitions.clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    if (file.size() > kMaxFileSize) {
        error = QStringLiteral("%1: larger than %2 bytes").arg(path).arg(kMaxFileSize);
        return false;
    }
    const QByteArray text = file.read(kMaxFileSize + 1);
    if (file.error() != QFileDevice::NoError || text.size() > kMaxFileSize) {
        error = QStringLiteral("%1: %2").arg(path, file.error() != QFileDevice::NoError
                                                      ? file.errorString()
                                                      : QStringLiteral("larger than %1 bytes").arg(kMaxFileSize));
        return false;
    }
    if (!zrdbParseLinetypeDefinitions(text, definitions, error)) {
        error = QStringLiteral("%1: %2").arg(path, error);
        return false;
    }
    return true;
}

QString zrdbShippedLinetypeFile()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&zrdbShippedLinetypeFile), &info) == 0 || !info.dli_fname)
        return QString();
    const QString folder = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
    return QDir::cleanPath(folder + QStringLiteral("/../share/ZrHost/zrhost.lin"));
}

ZrDbObjectId zrdbLoadLinetype(ZrDbDatabase* database, const ZrLinetypeDefinition& definition)
{
    if (!database || definition.name.isEmpty())
        return ZrDbObjectId();
    ZrDbLinetypeTable* table = nullptr;
    if (database->getLinetypeTable(table, ZrDb::kForWrite) != Zr::eOk)
        return ZrDbObjectId();
    ZrDbObjectId id;
    if (table->getIdAt(definition.name, id) != Zr::eOk) {
        auto* record = new ZrDbLinetypeTableRecord;
        record->setName(definition.name);
        record->setComments(definition.comments);
        if (record->setDashes(definition.dashes) != Zr::eOk || table->add(record, &id) != Zr::eOk) {
            delete record;
            id = ZrDbObjectId();
        } else {
            record->close();
        }
    }
    table->close();
    return id;
}

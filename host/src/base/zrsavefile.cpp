#include "zrsavefile.h"

#include <QDir>
#include <QSaveFile>

bool zrHostSaveFile(const QString& path, const QByteArray& data, QString* error)
{
    QSaveFile file(path);
    QString fault;
    // Unbuffered: commit() takes a buffer that reached the disk only in part for a success, so every
    // byte goes to the file here, where the count tells.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        fault = file.errorString();
    } else {
        // A full disk or a file size limit gives a short count without an error; the partial file must
        // not replace the good one.
        const qint64 written = file.write(data);
        if (written != data.size()) {
            fault = written < 0 ? file.errorString()
                                : QStringLiteral("only %1 of %2 bytes could be written").arg(written).arg(data.size());
            file.cancelWriting();
        } else if (!file.commit()) {
            fault = file.errorString();
        }
    }
    if (fault.isEmpty())
        return true;
    if (error)
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), fault);
    return false;
}

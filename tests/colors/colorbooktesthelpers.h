#pragma once
// Colour book folders for the colour suites: books written by zracb's writer or by hand into a
// temporary folder that becomes the host's only colour book folder.

#include "acbwriter.h"
#include "uicolorbookmng.h"
#include "zrhostcontrol.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace ColorTest {

inline zracb::BookColor bookColor(const QString& name, int red, int green, int blue)
{
    zracb::BookColor color;
    color.name = name;
    color.red = red;
    color.green = green;
    color.blue = blue;
    return color;
}

inline void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

class BookFolder
{
public:
    QString path() const { return m_dir.path(); }

    void addRaw(const QString& fileName, const QByteArray& bytes) const { writeFile(m_dir.filePath(fileName), bytes); }

    void add(const QString& fileName, const QString& bookName, const QVector<zracb::BookColor>& colors,
             bool masked = true, int pageSize = 8) const
    {
        zracb::BookOptions options;
        options.bookName = bookName;
        options.masked = masked;
        options.pageSize = pageSize;
        addRaw(fileName, zracb::bookXml(colors, options));
    }

    // The manager forgets what it read and looks at `folders` only.
    static void use(const QStringList& folders)
    {
        ZrHostControl::setColorBookFolders(folders);
        CEdColorBookManager::getInstance()->loadData();
    }
    void use() const { use({path()}); }

private:
    QTemporaryDir m_dir;
};

} // namespace ColorTest

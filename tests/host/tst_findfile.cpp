// The folder walk that finds colour books: every entry once, in name order, the name filter, and
// handles that end cleanly.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrfindfile.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

namespace {

// Every entry the walk of `pattern` gives, folders marked with a slash; nothing when the first call
// finds none.
QStringList walk(const QString& pattern)
{
    QStringList entries;
    ZrFindDataUtf8 data;
    const intptr_t handle = findfirstUtf8(ZrUtf8String(pattern), &data);
    if (handle == -1)
        return entries;
    do {
        entries << data.name.toQString() + (data.isDir ? QStringLiteral("/") : QString());
    } while (findnextUtf8(handle, &data) == 0);
    if (findcloseUtf8(handle) != 0)
        qFatal("a handle in use could not be closed");
    return entries;
}

} // namespace

class FindFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QDir dir(m_dir.path());
        for (const char* name : {"b.acb", "a.acb", "色册.acb", "UPPER.ACB", "notes.txt", ".hidden.acb"})
            QVERIFY(writeFile(dir.filePath(QString::fromUtf8(name)), "<a/>"));
        QVERIFY(dir.mkdir(QStringLiteral("folder.acb")));
        QVERIFY(dir.mkdir(QStringLiteral("empty")));
    }

    void listsEveryEntryOnceInNameOrder()
    {
        const QStringList expected{".hidden.acb", "UPPER.ACB", "a.acb",     "b.acb",
                                   "empty/",      "folder.acb/", "notes.txt", "色册.acb"};
        QCOMPARE(walk(m_dir.path() + QStringLiteral("/")), expected);
    }

    void filtersByName()
    {
        // Books copied from other systems often carry their extension in capitals.
        const QStringList expected{".hidden.acb", "UPPER.ACB", "a.acb", "b.acb", "folder.acb/", "色册.acb"};
        QCOMPARE(walk(m_dir.path() + QStringLiteral("/*.acb")), expected);
        QCOMPARE(walk(m_dir.path() + QStringLiteral("/a.acb")), QStringList{"a.acb"});
        QVERIFY(walk(m_dir.path() + QStringLiteral("/*.none")).isEmpty());
    }

    void nothingToWalkInAFileOrAnEmptyFolder()
    {
        ZrFindDataUtf8 data;
        data.name = "kept";
        // A file is no folder to walk.
        for (const char* name : {"empty/", "missing/", "a.acb/"})
            QCOMPARE(findfirstUtf8(ZrUtf8String(m_dir.filePath(QLatin1String(name))), &data), intptr_t(-1));
        QCOMPARE(findfirstUtf8(ZrUtf8String(""), &data), intptr_t(-1));
        QCOMPARE(data.name.toQString(), QStringLiteral("kept"));
        QVERIFY(isDir(ZrUtf8String(m_dir.filePath(QStringLiteral("empty")))));
        QVERIFY(!isDir(ZrUtf8String(m_dir.filePath(QStringLiteral("a.acb")))));
        QVERIFY(!isDir(ZrUtf8String(m_dir.filePath(QStringLiteral("missing")))));
    }

    void handlesEndCleanly()
    {
        ZrFindDataUtf8 data;
        const intptr_t first = findfirstUtf8(ZrUtf8String(m_dir.path() + QStringLiteral("/b.acb")), &data);
        const intptr_t second = findfirstUtf8(ZrUtf8String(m_dir.path() + QStringLiteral("/a.acb")), &data);
        QVERIFY(first != -1 && second != -1 && first != second);
        QCOMPARE(findnextUtf8(first, &data), -1);
        QCOMPARE(findnextUtf8(first, &data), -1);
        QCOMPARE(findcloseUtf8(first), 0);
        QCOMPARE(findcloseUtf8(first), -1);
        QCOMPARE(findnextUtf8(first, &data), -1);
        QCOMPARE(findcloseUtf8(second), 0);
        QCOMPARE(findcloseUtf8(-1), -1);
    }

private:
    QTemporaryDir m_dir;
};

ZR_TEST_SUITE(FindFileTest)
#include "tst_findfile.moc"

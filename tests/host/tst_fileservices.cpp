// What the file dialog asks of the host on the real machine: shell commands, path names, files.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrutfile.h"

#include <QFile>
#include <QTest>

class ZrFileServicesTest : public HostFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void pipeCommandGivesOutputAndStatus()
    {
        ZrUtf8String output("left over");
        QCOMPARE(zrutPipeCmd("printf 'a\\nb'; echo noise >&2", output), 0);
        QCOMPARE(output.toQString(), QStringLiteral("a\nb"));
        QCOMPARE(zrutPipeCmd("echo partial; exit 7", output), 7);
        QCOMPARE(output.toQString(), QStringLiteral("partial\n"));
        QCOMPARE(zrutPipeCmd("no-such-command-here 2>/dev/null", output), 127);
        QVERIFY(output.isEmpty());
    }

    void validPathNames_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("chinese") << QByteArray("/tmp/平面图") << true;
        QTest::newRow("255-byte name") << "/tmp/" + QByteArray(255, 'n') << true;
        QTest::newRow("256-byte name") << "/tmp/" + QByteArray(256, 'n') << false;
        QTest::newRow("4095 bytes") << QByteArray("/a").repeated(2047) + "/" << true;
        QTest::newRow("4096 bytes") << QByteArray("/a").repeated(2048) << false;
        QTest::newRow("cut utf-8") << QByteArray("/tmp/\xe5\xb9") << false;
        QTest::newRow("nul") << QByteArray("/tmp/a\0b", 8) << false;
    }
    void validPathNames()
    {
        QFETCH(QByteArray, path);
        QFETCH(bool, valid);
        QCOMPARE(zrutIsValidFilePathName(ZrUtf8String(path.toStdString())), valid);
    }

    // A dangling link is no file: opening it would fail, and saving over it asks nothing.
    void filesAndAccess()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("plan.dwg"));
        QFile(file).open(QIODevice::WriteOnly);
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("gone")), dir.filePath(QStringLiteral("dangling"))));
        const auto exists = [](const QString& path) {
            return zrutIsExistFile(ZrUtf8String(QFile::encodeName(path).toStdString()));
        };
        QVERIFY(exists(file));
        QVERIFY(!exists(dir.filePath(QStringLiteral("dangling"))));
        QVERIFY(zrutAccessFile(ZrString(dir.path()), 2));
        QVERIFY(!zrutAccessFile(ZrString(dir.filePath(QStringLiteral("missing"))), 0));
    }
};

ZR_TEST_SUITE(ZrFileServicesTest)

#include "tst_fileservices.moc"

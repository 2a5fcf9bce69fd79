// What the file dialog asks of the host, on the real machine: shell commands, path lists, files,
// the user, the host profile and the open command's section of the user configuration.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "zrconfig.h"
#include "zrsystem.h"
#include "zrutfile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <pwd.h>
#include <unistd.h>

namespace {

QStringList paths(const ZrJsonPtr& value)
{
    ZrArray<ZrUtf8String> split;
    zrutEnumPaths(value, split);
    QStringList result;
    for (const ZrUtf8String& path : split)
        result << path.toQString();
    return result;
}

} // namespace

class TstFileDialogHost : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host(ZrTest::Host::Options{false, false})); }
    void cleanup() { m_host.reset(); }

    void pipeCommandGivesOutputAndStatus()
    {
        ZrUtf8String output("left over");
        QCOMPARE(zrutPipeCmd("printf 'a\\nb'; echo noise >&2", output), 0);
        QCOMPARE(output.toQString(), QStringLiteral("a\nb"));
        QCOMPARE(zrutPipeCmd("echo partial; exit 7", output), 7);
        QCOMPARE(output.toQString(), QStringLiteral("partial\n"));
        QCOMPARE(zrutPipeCmd("kill -9 $$", output), 128 + 9);
        QCOMPARE(zrutPipeCmd("no-such-command-here 2>/dev/null", output), 127);
        QVERIFY(output.isEmpty());
    }

    void pathListsAreSplit()
    {
        QCOMPARE(paths(ElementValue::fromString(" /a ;; /b c ;")), QStringList({"/a", "/b c"}));
        const ZrJsonPtr list = ElementValue::parse(ZrUtf8String(R"(["/x;/y", 3, "/z"])"));
        QCOMPARE(paths(list), QStringList({"/x", "/y", "/z"}));
        QVERIFY(paths(ElementValue::fromInt(3)).isEmpty());
        QVERIFY(paths(ZrJsonPtr()).isEmpty());
    }

    void validPathNames_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("plain") << QByteArray("/tmp/plan.dwg") << true;
        QTest::newRow("chinese") << QByteArray("/tmp/平面图") << true;
        QTest::newRow("newline") << QByteArray("/tmp/a\nb") << true;
        QTest::newRow("255 bytes") << "/tmp/" + QByteArray(255, 'n') << true;
        QTest::newRow("256 bytes") << "/tmp/" + QByteArray(256, 'n') << false;
        QTest::newRow("4095 bytes") << QByteArray("/a").repeated(2047) + "/" << true;
        QTest::newRow("4096 bytes") << QByteArray("/a").repeated(2048) << false;
        QTest::newRow("no utf-8") << QByteArray("/tmp/bad\xff") << false;
        QTest::newRow("cut utf-8") << QByteArray("/tmp/\xe5\xb9") << false;
        QTest::newRow("nul") << QByteArray("/tmp/a\0b", 8) << false;
    }
    void validPathNames()
    {
        QFETCH(QByteArray, path);
        QFETCH(bool, valid);
        QCOMPARE(zrutIsValidFilePathName(ZrUtf8String(path.toStdString())), valid);
    }

    void filesAndAccess()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("plan.dwg"));
        QFile(file).open(QIODevice::WriteOnly);
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("gone")), dir.filePath(QStringLiteral("dangling"))));
        const auto exists = [](const QString& path) { return zrutIsExistFile(ZrUtf8String(QFile::encodeName(path).toStdString())); };
        QVERIFY(exists(file));
        QVERIFY(exists(dir.path()));
        QVERIFY(!exists(dir.filePath(QStringLiteral("dangling"))));
        QVERIFY(!exists(QString()));

        for (int mode : {0, 2, 4, 6})
            QVERIFY(zrutAccessFile(ZrString(dir.path()), mode));
        QVERIFY(!zrutAccessFile(ZrString(dir.filePath(QStringLiteral("missing"))), 0));
        QVERIFY(!zrutAccessFile(ZrString(), 0));
        const QString locked = dir.filePath(QStringLiteral("locked"));
        QDir().mkdir(locked);
        QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        // Permissions do not stop every user; the answer follows the system's own.
        QCOMPARE(zrutAccessFile(ZrString(locked), 2), ::access(QFile::encodeName(locked).constData(), W_OK) == 0);
        QVERIFY(zrutAccessFile(ZrString(locked), 4));
    }

    void fileNamesWithoutExtension()
    {
        QCOMPARE(zrutGetFileNoExtName(ZrString(L"/a/b.c/plan.v2.dwg")).toQString(), QStringLiteral("plan.v2"));
        QCOMPARE(zrutGetFileNoExtName(ZrString(L"C:\\x\\y.dwg")).toQString(), QStringLiteral("y"));
        QCOMPARE(zrutGetFileNoExtName(ZrString(L"noext")).toQString(), QStringLiteral("noext"));
        QCOMPARE(zrutGetFileNoExtName(ZrString(L"/a/.hidden")).toQString(), QString());
    }

    void userAndHome()
    {
        const passwd* entry = ::getpwuid(::getuid());
        QVERIFY(entry);
        QCOMPARE(zrutGetUserName().toQString(), QString::fromLocal8Bit(entry->pw_name));
        QCOMPARE(zrutGetHomeDir().toQString(), QString::fromLocal8Bit(entry->pw_dir));
    }

    void profileValues()
    {
        CXuSystem* system = CXuSystem::instance();
        const QStringList support = paths(system->getProfileValue("General", "ZRAPP"));
        QCOMPARE(support, QStringList({QDir(m_host->configDir()).filePath(QStringLiteral("Support")),
                                       zr_runtime_config("paths/templatePaths")->safeStrValue().toQString()}));
        QVERIFY(system->getProfileValue("General", "Other").isNullOrNoDef());
        zr_user_config("Profile/General", 2)->SetDataS("ZRAPP", "/mine");
        QCOMPARE(paths(system->getProfileValue("General", "ZRAPP")), QStringList({"/mine"}));
    }

    void openCommandSectionOnAFreshConfiguration()
    {
        const ZrJsonPtr section = zr_user_config("CmdOpenFile");
        QVERIFY(section && section->isObject());
        QCOMPARE(section->GetVarS("CmdOpen-openLastPath", "unset").toQString(), QString());
        QCOMPARE(section->GetVarS("CmdOpen-newLastPath", "unset").toQString(), QString());
    }
};

ZR_TEST_SUITE(TstFileDialogHost)
#include "tst_filedialoghost.moc"

// The user configuration on file: a first run, saves that replace the file whole, damaged files kept
// aside, and files or folders that cannot be used, each told once.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrconfig.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTest>

#include <sys/stat.h>

namespace {

void startHostIn(const QString& configDir)
{
    ZrHostControl::Options options;
    options.configDir = configDir;
    ZrHostControl::initialize(options);
}

ZrJsonPtr parsedFile(const QString& path)
{
    const QByteArray text = fileBytes(path);
    ZrJsonParseError error;
    ZrJsonPtr tree = ElementValue::parse(text.constData(), static_cast<size_t>(text.size()), &error);
    return error.ok() && tree && tree->isObject() ? tree : ZrJsonPtr();
}

} // namespace

class ZrUserConfigTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ZrHostControl::shutdown(); }

    void aFreshHomeGetsItsFolderAndFile()
    {
        QTemporaryDir home;
        Environment environment;
        environment.set("HOME", QFile::encodeName(home.path()));
        environment.set("XDG_CONFIG_HOME", QByteArray());
        WarningLog log;
        startHostIn(QString());
        const QString file = ZrHostControl::userConfigFile();
        QVERIFY2(file.startsWith(home.path() + QLatin1Char('/')), qPrintable(file));
        QVERIFY(!QFileInfo::exists(QFileInfo(file).path()));
        zr_user_config("CmdOpenFile", 2)->SetDataS("lastPath", "/drawings");
        ZrHostControl::shutdown();

        const ZrJsonPtr saved = parsedFile(file);
        QVERIFY2(saved, qPrintable(file));
        QCOMPARE(saved->GetVarJsonPtr("CmdOpenFile")->GetVarS("lastPath"), ZrUtf8String("/drawings"));
        QCOMPARE(log.warnings(), QStringList());
    }

    void aSaveReplacesTheFileWhole()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("user-config.json"));
        QVERIFY(writeFile(file, "{\"Kept\": {\"value\": 1}}"));
        // A second name for the old file: written in place, it would show the new text too.
        const QString before = dir.filePath(QStringLiteral("before.json"));
        QVERIFY(::link(QFile::encodeName(file).constData(), QFile::encodeName(before).constData()) == 0);
        const QByteArray old = fileBytes(file);

        startHostIn(dir.path());
        QCOMPARE(zr_user_config("Kept/value", 0)->safeIntValue(), 1);
        zr_user_config("Added", 2)->SetDataI("value", 2);
        QVERIFY(zr_save_user_config(""));

        QCOMPARE(fileBytes(before), old);
        const ZrJsonPtr saved = parsedFile(file);
        QVERIFY(saved);
        QCOMPARE(saved->GetVarJsonPtr("Kept")->GetVarI("value"), 1);
        QCOMPARE(saved->GetVarJsonPtr("Added")->GetVarI("value"), 2);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name),
                 (QStringList{QStringLiteral("before.json"), QStringLiteral("user-config.json")}));
    }

    void aDamagedFileIsKeptAsideAndNotOverwritten_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        QTest::newRow("cut short") << QByteArray("{\"FileNameMRU\": {\"file0\": \"/drawings/pl")
                                   << QStringLiteral("line 1, column");
        QTest::newRow("an array") << QByteArray("[]") << QStringLiteral("the whole file is an array, not an object");
        QTest::newRow("null") << QByteArray("null") << QStringLiteral("the whole file is null, not an object");
        QTest::newRow("a number") << QByteArray("42\n") << QStringLiteral("the whole file is a number, not an object");
    }

    void aDamagedFileIsKeptAsideAndNotOverwritten()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, reason);
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("user-config.json"));
        QVERIFY(writeFile(file, text));

        WarningLog log;
        startHostIn(dir.path());
        const QStringList aside =
            QDir(dir.path()).entryList({QStringLiteral("user-config.json.damaged-*")}, QDir::Files);
        QCOMPARE(aside.size(), 1);
        const QString asidePath = dir.filePath(aside.front());
        QCOMPARE(fileBytes(asidePath), text);
        QCOMPARE(log.warnings().size(), 1);
        const QString& warning = log.warnings().front();
        QVERIFY2(warning.contains(file) && warning.contains(reason) && warning.contains(asidePath),
                 qPrintable(warning));
        QVERIFY2(!warning.contains(QLatin1String("line 0")), qPrintable(warning));

        zr_user_config("Fresh", 2)->SetDataI("value", 3);
        ZrHostControl::shutdown();
        QCOMPARE(fileBytes(asidePath), text);
        const ZrJsonPtr saved = parsedFile(file);
        QVERIFY(saved);
        QCOMPARE(saved->GetVarJsonPtr("Fresh")->GetVarI("value"), 3);
        QCOMPARE(log.warnings().size(), 1);
    }

    void aDamagedFileThatCannotBeMovedAsideIsLeftAlone()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("user-config.json"));
        QVERIFY(writeFile(file, "{\"cut\": "));
        if (!setAppendOnly(dir.path(), true))
            QSKIP("this file system or user cannot make a folder append-only");
        WarningLog log;
        startHostIn(dir.path());
        zr_user_config("Probe", 2);
        const bool saved = zr_save_user_config("");
        ZrHostControl::shutdown();
        setAppendOnly(dir.path(), false);
        QVERIFY(!saved);
        QCOMPARE(fileBytes(file), QByteArray("{\"cut\": "));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("user-config.json")});
        QCOMPARE(log.warnings().size(), 1);
        QVERIFY2(log.warnings().front().contains(file), qPrintable(log.warnings().front()));
    }

    void aFileThatCannotBeReadIsLeftAlone()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("user-config.json"));
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("user-config.json")));

        WarningLog log;
        startHostIn(dir.path());
        QCOMPARE(log.warnings().size(), 1);
        QVERIFY2(log.warnings().front().contains(file), qPrintable(log.warnings().front()));
        // The run goes on with defaults.
        zr_user_config("Probe", 2)->SetDataI("value", 4);
        QCOMPARE(zr_user_config("Probe/value", 0)->safeIntValue(), 4);
        QVERIFY(!zr_save_user_config(""));
        ZrHostControl::shutdown();
        QVERIFY(QFileInfo(file).isDir());
        QCOMPARE(log.warnings().size(), 1);
    }
};

ZR_TEST_SUITE(ZrUserConfigTest)

#include "tst_userconfig.moc"

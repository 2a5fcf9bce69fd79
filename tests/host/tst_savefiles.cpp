// Saves that fail partway, as on a full disk: the caller is told, the old file stays as it was.

#include "zrtestmain.h"

#include "hosttesthelpers.h"

#include "zrconfig.h"

#include <QDir>
#include <QTest>

namespace {

// What a child reports back through its exit code.
enum ChildAnswer { kToldWithName = 0, kClaimedSuccess = 1, kToldWithoutName = 2, kToldMoreThanOnce = 3 };

} // namespace

class ZrSaveFileTest : public HostFixture
{
    Q_OBJECT

    // A file with the empty drawing in it, which the failing saves below must leave as it is.
    static QString oldDrawingFile(const QTemporaryDir& dir)
    {
        const QString path = dir.filePath(QStringLiteral("plan.json"));
        ZrHostControl::openEmptyDrawing();
        return ZrHostControl::saveDrawing(path) ? path : QString();
    }

private Q_SLOTS:
    void initTestCase() { startHost(); }
    void cleanupTestCase() { ZrHostControl::shutdown(); }

    void drawingSavedPartwayIsAFailureAndKeepsTheOldFile()
    {
        QTemporaryDir dir;
        const QString path = oldDrawingFile(dir);
        QVERIFY(!path.isEmpty());
        const QByteArray old = fileBytes(path);
        QVERIFY(!old.isEmpty());

        ZrHostControl::openSampleDrawing();
        const QByteArray text = ZrHostControl::drawingText(curDatabase());
        // Larger than a file's write buffer, so that the short count comes back from write() itself.
        QVERIFY(text.size() > 4 * 16384);
        const int answer = inChildWithFileLimit(text.size() / 2, [&path] {
            QString error;
            if (ZrHostControl::saveDrawing(path, &error))
                return kClaimedSuccess;
            return error.contains(QDir::toNativeSeparators(path)) ? kToldWithName : kToldWithoutName;
        });
        QCOMPARE(answer, int(kToldWithName));
        QCOMPARE(fileBytes(path), old);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("plan.json")});

        // Without the limit the same save goes through, and the file reads back as the drawing.
        QString error;
        QVERIFY2(ZrHostControl::saveDrawing(path, &error), qPrintable(error));
        QCOMPARE(fileBytes(path), text);
        QVERIFY2(ZrHostControl::openDrawing(path, &error), qPrintable(error));
        QCOMPARE(ZrHostControl::drawingText(curDatabase()), text);
    }

    void aFileThatCannotBeReplacedIsAFailure()
    {
        QTemporaryDir dir;
        const QString path = oldDrawingFile(dir);
        QVERIFY(!path.isEmpty());
        const QByteArray old = fileBytes(path);
        // The new text is written whole; only putting it in place of the old file fails.
        if (!setAppendOnly(dir.path(), true))
            QSKIP("this file system or user cannot make a folder append-only");
        ZrHostControl::openSampleDrawing();
        QString error;
        const bool saved = ZrHostControl::saveDrawing(path, &error);
        setAppendOnly(dir.path(), false);
        QVERIFY(!saved);
        QVERIFY2(error.contains(QDir::toNativeSeparators(path)), qPrintable(error));
        QCOMPARE(fileBytes(path), old);
    }

    void configurationSavedPartwayIsToldOnceAndKeepsTheOldFile()
    {
        const QString file = ZrHostControl::userConfigFile();
        zr_user_config("Probe", 2);
        QVERIFY(zr_save_user_config(""));
        const QByteArray old = fileBytes(file);
        QVERIFY(old.contains("Probe"));

        // Small enough to sit in the write buffer: the short write shows only when the file is committed.
        ZrJsonPtr recent = zr_user_config("FileNameMRU", 2);
        for (int i = 0; i < 40; ++i)
            recent->SetDataS(QByteArray("file").append(QByteArray::number(i)).constData(), "/drawings/floor-plan.json");
        const int answer = inChildWithFileLimit(old.size() + 64, [&file] {
            const WarningLog log;
            if (zr_save_user_config(""))
                return kClaimedSuccess;
            zr_save_user_config("");
            if (log.warnings().size() != 1)
                return kToldMoreThanOnce;
            return log.warnings().front().contains(file) ? kToldWithName : kToldWithoutName;
        });
        QCOMPARE(answer, int(kToldWithName));
        QCOMPARE(fileBytes(file), old);
        QCOMPARE(QDir(QFileInfo(file).path()).entryList(QDir::Files), QStringList{QFileInfo(file).fileName()});
    }
};

ZR_TEST_SUITE(ZrSaveFileTest)

#include "tst_savefiles.moc"

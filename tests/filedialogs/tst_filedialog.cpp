// The file dialog as a host module meets it: the parameters going in, the four modes, what comes
// back, the last folder remembered, and every rule that accepts or refuses a typed name.

#include "filedialogtesthelpers.h"
#include "zrtestmain.h"

#include "qt_common_ui.h"

#include "zrarbitdict.h"
#include "zrconfig.h"
#include "zrutfile.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <memory>
#include <unistd.h>

using namespace FileDialogTest;

namespace {

const QString kDwg = QStringLiteral("图纸 (*.dwg)");

// A folder this process may not write to: one of its own without write permission, or, for a
// user the permissions do not stop, a folder of a read-only file system. Empty when there is none.
QString unwritableFolder(const QString& base)
{
    const QString own = base + QStringLiteral("/locked");
    QDir().mkpath(own);
    QFile::setPermissions(own, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    if (::access(QFile::encodeName(own).constData(), W_OK) != 0)
        return own;
    if (::access("/proc/sys", W_OK) != 0)
        return QStringLiteral("/proc/sys");
    return QString();
}

} // namespace

class TstFileDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;
    std::unique_ptr<QTemporaryDir> m_dir;

    QString folder() const { return m_dir->path(); }
    QString file(const QString& name) const { return m_dir->filePath(name); }

    ZrJsonPtr saveParam(const QString& extra = QString()) const
    {
        return param(QStringLiteral(R"({"Open":false,"dir":"%1","filter":"%2","defFilter":"%2"%3})")
                         .arg(folder(), kDwg, extra));
    }
    ZrJsonPtr openParam(const QString& extra = QString()) const
    {
        return param(QStringLiteral(R"({"Open":true,"dir":"%1","filter":"%2","defFilter":"%2"%3})")
                         .arg(folder(), kDwg, extra));
    }

    // Saves `typed` answering the boxes with `clicks`; a window still open afterwards is cancelled.
    Run save(const ZrJsonPtr& param, const QString& typed, QStringList clicks, QList<Box>* seen,
             std::function<void(ZrQtFileDialogImpl*)> after = nullptr)
    {
        return run(param, [&](ZrQtFileDialogImpl* dlg) {
            const QList<Box> boxes = typeWatched(dlg, typed, clicks);
            if (seen)
                *seen = boxes;
            if (after && dlg->isVisible())
                after(dlg);
            escape(dlg);
        });
    }

private Q_SLOTS:
    void init()
    {
        m_host.reset(new ZrTest::Host);
        m_dir.reset(new QTemporaryDir);
        QVERIFY(touch(file(QStringLiteral("old.dwg"))));
        QVERIFY(QDir(folder()).mkdir(QStringLiteral("sub")));
    }

    void cleanup()
    {
        QVERIFY(!QApplication::activeModalWidget());
        m_host.reset();
        m_dir.reset();
    }

    // Entry and results

    void bothNamesBuildTheFileDialog()
    {
        auto* service = ZrUiService::cast(zrUISvr(48).get());
        QVERIFY(service);
        for (const wchar_t* name : {L"FileDialogBox", L"filenavdialogbox", L"FILENAVDIALOGBOX"}) {
            ZrSmartPtr<ZrUiDialogBase> dialog = service->createDialog(ZrString(name), nullptr);
            QVERIFY(dialog);
            QVERIFY(qobject_cast<ZrQtFileDialogImpl*>(static_cast<QObject*>(dialog->getDlg())));
        }
    }

    void saveModeAnswers()
    {
        const Run out = save(saveParam(), QStringLiteral("plain"), {}, nullptr);
        QCOMPARE(out.result, 1);
        QCOMPARE(out.answer->GetVarSW("fileName").toQString(), QStringLiteral("plain.dwg"));
        QCOMPARE(out.answer->GetVarSW("filePath").toQString(), file(QStringLiteral("plain.dwg")));
        QCOMPARE(out.answer->GetVarSW("useFilter").toQString(), kDwg);
        QCOMPARE(out.answer->GetVarI("useFilterIdx", -5), 0);
        QVERIFY(!out.answer->hasProperty("filePaths"));
        QVERIFY(!out.answer->hasProperty("path"));
        // The dialog chose a name; writing the file is the caller's.
        QVERIFY(!QFile::exists(file(QStringLiteral("plain.dwg"))));
    }

    void openModeAnswersLeaveFoldersOut()
    {
        const Run out = run(openParam(QStringLiteral(R"(,"MutiFile":true)")), [](ZrQtFileDialogImpl* dlg) {
            typeAndReturn(dlg, QStringLiteral("\"old.dwg\" \"sub\""));
            escape(dlg);
        });
        QCOMPARE(out.result, 1);
        const ZrJsonPtr files = out.answer->GetVarJsonPtr("filePaths");
        QCOMPARE(files->ArrayCount(), 1);
        QCOMPARE(files->at(0)->GetVarSW("name").toQString(), QStringLiteral("old.dwg"));
        QCOMPARE(files->at(0)->GetVarSW("path").toQString(), file(QStringLiteral("old.dwg")));
        QCOMPARE(out.answer->GetVarSW("useFilter").toQString(), kDwg);
        for (const char* key : {"useFilterIdx", "fileName", "filePath", "path"})
            QVERIFY2(!out.answer->hasProperty(key), key);
    }

    void folderModeWinsOverOpen()
    {
        bool foldersOnly = false;
        const Run out = run(param(QStringLiteral(R"({"Open":false,"bSelectDir":true,"dir":"%1"})").arg(folder())),
                            [&](ZrQtFileDialogImpl* dlg) {
                                foldersOnly = dlg->fileMode() == QFileDialog::Directory
                                    && dlg->testOption(QFileDialog::ShowDirsOnly);
                                typeAndReturn(dlg, QStringLiteral("sub"));
                                escape(dlg);
                            });
        QVERIFY(foldersOnly);
        QCOMPARE(out.result, 1);
        QCOMPARE(out.answer->GetVarSW("path").toQString(), file(QStringLiteral("sub")));
        QVERIFY(!out.answer->hasProperty("filePath"));
        QVERIFY(!out.answer->hasProperty("filePaths"));
    }

    void cancelWritesOnlyTheResult()
    {
        const Run out = run(saveParam(), [](ZrQtFileDialogImpl* dlg) {
            QTest::keyClicks(nameEdit(dlg), QStringLiteral("typed"));
            escape(dlg);
        });
        QCOMPARE(out.result, 2);
        QCOMPARE(out.answer->size(), 1);
    }

    void lastFolderRememberedBeforeTheExistenceTest()
    {
        QList<Box> seen;
        Run out = run(openParam(QStringLiteral(R"(,"helpDoc":"openDocument")")), [&](ZrQtFileDialogImpl* dlg) {
            seen = typeWatched(dlg, QStringLiteral("sub/missing.dwg"));
            escape(dlg);
        });
        QCOMPARE(out.result, 2);
        QCOMPARE(seen.size(), 1);
        QCOMPARE(zr_user_config("CmdOpenFile/CmdOpen-openLastPath")->safeStrValue().toQString(),
                 file(QStringLiteral("sub")));
        // Saved at once, not only when the host ends.
        QFile saved(ZrHostControl::userConfigFile());
        QVERIFY(saved.open(QIODevice::ReadOnly));
        const QJsonObject onDisk = QJsonDocument::fromJson(saved.readAll()).object();
        QCOMPARE(onDisk[QStringLiteral("CmdOpenFile")].toObject()[QStringLiteral("CmdOpen-openLastPath")].toString(),
                 file(QStringLiteral("sub")));

        out = run(openParam(QStringLiteral(R"(,"helpDoc":"newDocument")")),
                  [](ZrQtFileDialogImpl* dlg) { typeAndReturn(dlg, QStringLiteral("old.dwg")); });
        QCOMPARE(out.result, 1);
        QCOMPARE(zr_user_config("CmdOpenFile/CmdOpen-newLastPath")->safeStrValue().toQString(),
                 file(QStringLiteral("old.dwg")));
    }

    // Accepting a name to save

    void invalidNameIsRefusedWithItsTitle_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("extra");
        QTest::addColumn<QString>("title");
        QTest::newRow("bar") << "a|b" << "" << "";
        QTest::newRow("caption inherited") << "a?b" << R"(,"caption":"存图","InhCaption":true)" << "存图";
        QTest::newRow("caption not inherited") << "a*b" << R"(,"caption":"存图")" << "";
        QTest::newRow("folder part missing") << "nofolder/x" << "" << "";
    }
    void invalidNameIsRefusedWithItsTitle()
    {
        QFETCH(QString, typed);
        QFETCH(QString, extra);
        QFETCH(QString, title);
        QList<Box> seen;
        const Run out = save(saveParam(extra), typed, {}, &seen);
        QCOMPARE(out.result, 2);
        QCOMPARE(seen.size(), 1);
        QCOMPARE(seen[0].title, title);
        QVERIFY2(seen[0].says(QStringLiteral("\"%1\"\n文件名无效。").arg(typed)), qPrintable(seen[0].labels.join('|')));
    }

    void titleLengthIsMeasuredOnTheTitle()
    {
        QList<Box> seen;
        const QString longCaption(255, QChar(0x56fe));
        Run out = save(saveParam(QStringLiteral(R"(,"caption":"%1")").arg(longCaption)), QStringLiteral("a"), {},
                       &seen);
        QCOMPARE(out.result, 2);
        QCOMPARE(seen.size(), 1);
        QCOMPARE(seen[0].title, QStringLiteral("文件名: - 文字长度"));
        QVERIFY(seen[0].says(QStringLiteral("文件全名 不能多于 255个字符。")));

        out = save(saveParam(QStringLiteral(R"(,"caption":"%1")").arg(QString(254, QChar(0x56fe)))),
                   QStringLiteral("a"), {}, &seen);
        QCOMPARE(out.result, 1);
        QVERIFY(seen.isEmpty());
    }

    void overwriteAsksFirst()
    {
        QList<Box> seen;
        bool stayed = false;
        Run out = save(saveParam(), QStringLiteral("old"), {QStringLiteral("否(&N)")}, &seen,
                       [&](ZrQtFileDialogImpl* dlg) { stayed = dlg->isVisible(); });
        QVERIFY(stayed);
        QCOMPARE(out.result, 2);
        QCOMPARE(seen.size(), 1);
        QCOMPARE(seen[0].title, QStringLiteral("确认另存为"));
        QVERIFY(seen[0].says(QStringLiteral("old.dwg  已存在。\n要替换它吗？")));
        QCOMPARE(seen[0].buttons.size(), 2);

        out = save(saveParam(), QStringLiteral("old"), {QStringLiteral("是(&Y)")}, &seen);
        QCOMPARE(out.result, 1);
        QCOMPARE(seen.size(), 1);
        QCOMPARE(out.answer->GetVarSW("filePath").toQString(), file(QStringLiteral("old.dwg")));

        out = save(saveParam(QStringLiteral(R"(,"BoxHide":true)")), QStringLiteral("old"), {}, &seen);
        QCOMPARE(out.result, 1);
        QVERIFY(seen.isEmpty());
    }

    void noPermissionOffersTheHomeFolder()
    {
        const QString locked = unwritableFolder(folder());
        if (locked.isEmpty())
            QSKIP("every folder here may be written");
        const ZrJsonPtr lockedParam = param(QStringLiteral(R"({"Open":false,"dir":"%1","filter":"%2","defFilter":"%2"})")
                                                .arg(locked, kDwg));
        QList<Box> seen;
        QString folderAfter;
        QString nameAfter;
        const auto keep = [&](ZrQtFileDialogImpl* dlg) {
            folderAfter = dlg->directory().absolutePath();
            nameAfter = nameEdit(dlg)->text();
        };
        Run out = save(lockedParam, QStringLiteral("x"), {QStringLiteral("否(&N)")}, &seen, keep);
        QCOMPARE(out.result, 2);
        QCOMPARE(seen.size(), 1);
        QCOMPARE(folderAfter, locked);
        const QString full = QDir(locked).filePath(QStringLiteral("x.dwg"));
        QVERIFY2(seen[0].labels.join('|').contains(full), qPrintable(seen[0].labels.join('|')));

        out = save(lockedParam, QStringLiteral("x"), {QStringLiteral("是(&Y)")}, &seen, keep);
        QCOMPARE(out.result, 2);
        QCOMPARE(folderAfter, QDir(zrutGetHomeDir().toQString()).absolutePath());
        QCOMPARE(nameAfter, QStringLiteral("x"));
        QFile::setPermissions(folder() + QStringLiteral("/locked"), QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                                                        | QFileDevice::ExeOwner);
    }

    // Accepting files to open

    void notFoundHasOneCloseButton()
    {
        const QString exactly100 = QString(96, QLatin1Char('n')) + QStringLiteral(".dwg");
        const QString longer = QString(97, QLatin1Char('n')) + QStringLiteral(".dwg");
        for (const QString& name : {QStringLiteral("nothere.dwg"), exactly100, longer}) {
            QList<Box> seen;
            const Run out = run(openParam(), [&](ZrQtFileDialogImpl* dlg) {
                seen = typeWatched(dlg, name, {QStringLiteral("关闭(&C)")});
                escape(dlg);
            });
            QCOMPARE(out.result, 2);
            QCOMPARE(seen.size(), 1);
            QCOMPARE(seen[0].buttons, QStringList{QStringLiteral("关闭(&C)")});
            const QString shown = name.size() > 100 ? name.left(97) + QStringLiteral("...") : name;
            QVERIFY2(seen[0].says(shown + QStringLiteral("\n找不到文件。\n请检查文件名是否正确，然后重试。")),
                     qPrintable(seen[0].labels.join('|')));
        }
    }

};

ZR_TEST_SUITE(TstFileDialog)
#include "tst_filedialog.moc"

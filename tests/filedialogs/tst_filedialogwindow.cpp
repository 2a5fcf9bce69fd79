// The file dialog's window: the side bar from the machine's mount points, the right panel in each
// combination of keys, the extra buttons, and what the file type list does to a typed name.

#include "filedialogtesthelpers.h"
#include "zrtestinput.h"
#include "zrtestmain.h"

#include "qt_exportwidget.h"
#include "zrimagepreviewlabel.h"

#include "zrconfig.h"
#include "zrsecurity.h"
#include "zrsystem.h"

#include <QGroupBox>
#include <QListWidget>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTreeView>
#include <memory>

using namespace FileDialogTest;

namespace {

// Puts a "lsblk" of the test's own first on PATH for its lifetime. The script refuses any other
// arguments than the dialog's, so a changed command shows as an empty side bar.
class FakeLsblk
{
public:
    explicit FakeLsblk(const QString& output, int exitCode = 0)
    {
        const QString script = m_dir.filePath(QStringLiteral("lsblk"));
        QFile file(script);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(QStringLiteral("#!/bin/sh\n[ \"$*\" = \"-l -o MOUNTPOINT\" ] || exit 3\nprintf '%1'\nexit %2\n")
                           .arg(output, QString::number(exitCode))
                           .toUtf8());
            file.close();
        }
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        m_oldPath = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(m_dir.path()) + ':' + m_oldPath);
    }
    ~FakeLsblk() { qputenv("PATH", m_oldPath); }

private:
    QTemporaryDir m_dir;
    QByteArray m_oldPath;
};

class FakeSecurity : public CXuSecurity
{
public:
    void show(int from) override { shown << from; }
    QList<int> shown;
};

QStringList texts(const QListWidget* list)
{
    QStringList result;
    for (int i = 0; i < list->count(); ++i)
        result << list->item(i)->text();
    return result;
}

// What a window holds once it is up, read before it is cancelled.
struct Layout
{
    bool sideBar = false;
    bool fixedWidth = false;
    bool qtSideBarHidden = false;
    bool rightPanel = false;
    bool preview = false;
    bool exportPanel = false;
    bool extensionArea = false;
    QString firstButtonParent;
    bool firstButtonVisible = false;
};

Layout layoutOf(const ZrJsonPtr& param)
{
    Layout seen;
    run(param, [&](ZrQtFileDialogImpl* dlg) {
        auto* list = dlg->findChild<QListWidget*>(QStringLiteral("sideBarList"));
        seen.sideBar = list;
        seen.fixedWidth = list && list->minimumWidth() == 200 && list->maximumWidth() == 200;
        auto* qtSideBar = dlg->findChild<QWidget*>(QStringLiteral("sidebar"));
        seen.qtSideBarHidden = qtSideBar && qtSideBar->isHidden();
        seen.rightPanel = dlg->findChild<QWidget*>(QStringLiteral("rightPanel"));
        seen.preview = dlg->findChild<ZrImagePreviewLabel*>();
        seen.exportPanel = dlg->findChild<ZrQtExportWidget*>();
        seen.extensionArea = dlg->extensionArea();
        if (auto* first = dlg->findChild<QPushButton*>(QStringLiteral("btnLocation"))) {
            seen.firstButtonParent = first->parentWidget()->parentWidget() == dlg ? QStringLiteral("dialog")
                                                                                  : QStringLiteral("panel");
            seen.firstButtonVisible = first->isVisible();
        }
        escape(dlg);
    });
    return seen;
}

} // namespace

class TstFileDialogWindow : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;
    std::unique_ptr<QTemporaryDir> m_dir;

    QString folder() const { return m_dir->path(); }

    ZrJsonPtr withKeys(const QString& keys) const
    {
        return param(QStringLiteral(R"x({"dir":"%1","filter":"图纸 (*.dwg)"%2})x").arg(folder(), keys));
    }

private Q_SLOTS:
    void init()
    {
        m_host.reset(new ZrTest::Host);
        m_dir.reset(new QTemporaryDir);
    }

    void cleanup()
    {
        QVERIFY(!QApplication::activeModalWidget());
        m_host.reset();
        m_dir.reset();
    }

    void sideBarFollowsLsblk()
    {
        FakeLsblk lsblk(QStringLiteral("MOUNTPOINT\\n\\n/\\n[SWAP]\\n/boot/efi\\n/boot\\n/backup\\n/data\\n"
                                       "/run/media/u/USB\\n/srv/media-archive/disk\\n/srv\\n"));
        QStringList shown;
        QStringList paths;
        bool computerIcon = false;
        run(withKeys(QString()), [&](ZrQtFileDialogImpl* dlg) {
            auto* list = dlg->findChild<QListWidget*>(QStringLiteral("sideBarList"));
            shown = texts(list);
            for (int i = 0; i < list->count(); ++i)
                paths << list->item(i)->data(Qt::UserRole).toString();
            computerIcon = !list->item(0)->icon().isNull();
            escape(dlg);
        });
        const QStringList mounts = {QStringLiteral("我的电脑"), QStringLiteral("引导分区"), QStringLiteral("备份分区"),
                                    QStringLiteral("数据盘"),   QStringLiteral("USB"),      QStringLiteral("disk"),
                                    QStringLiteral("/srv")};
        QCOMPARE(shown.mid(0, mounts.size()), mounts);
        QCOMPARE(paths.mid(0, mounts.size()),
                 QStringList({QStringLiteral("我的电脑"), QStringLiteral("/boot"), QStringLiteral("/backup"),
                              QStringLiteral("/data"), QStringLiteral("/run/media/u/USB"),
                              QStringLiteral("/srv/media-archive/disk"), QStringLiteral("/srv")}));
        QVERIFY(computerIcon);
        // Then the user's folders that exist, the home first.
        const QString home = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
        QCOMPARE(paths.value(mounts.size()), home);
        for (const QString& path : paths.mid(mounts.size()))
            QVERIFY2(QDir(path).exists(), qPrintable(path));
    }

    void failingLsblkLeavesTheMountPointsOut()
    {
        FakeLsblk lsblk(QStringLiteral("MOUNTPOINT\\n/data\\n"), 32);
        QStringList shown;
        run(withKeys(QString()), [&](ZrQtFileDialogImpl* dlg) {
            shown = texts(dlg->findChild<QListWidget*>(QStringLiteral("sideBarList")));
            escape(dlg);
        });
        // What it printed before failing is not trusted.
        QCOMPARE(shown.value(0), QStringLiteral("我的电脑"));
        QVERIFY(!shown.contains(QStringLiteral("数据盘")));
    }

    void sideBarClicksKeepTheTypedName()
    {
        QVERIFY(QDir(folder()).mkdir(QStringLiteral("mounted")));
        const QString mounted = m_dir->filePath(QStringLiteral("mounted"));
        FakeLsblk lsblk(QStringLiteral("MOUNTPOINT\\n/data\\n%1\\n").arg(mounted));
        QStringList visited;
        QStringList typed;
        run(withKeys(QStringLiteral(R"(,"Open":false)")), [&](ZrQtFileDialogImpl* dlg) {
            auto* list = dlg->findChild<QListWidget*>(QStringLiteral("sideBarList"));
            QTest::keyClicks(nameEdit(dlg), QStringLiteral("plan"));
            ZrTest::clickListItem(list, QStringLiteral("我的电脑"));
            visited << dlg->directory().absolutePath();
            typed << nameEdit(dlg)->text();
            dlg->setDirectory(folder());
            // The current item is pressed again: no change of item, the press alone navigates.
            ZrTest::clickListItem(list, QStringLiteral("我的电脑"));
            visited << dlg->directory().absolutePath();
            ZrTest::clickListItem(list, mounted);
            visited << dlg->directory().absolutePath();
            // Where there is no "/data" Qt stays where it was; the name stays all the same.
            ZrTest::clickListItem(list, QStringLiteral("数据盘"));
            typed << nameEdit(dlg)->text();
            escape(dlg);
        });
        QCOMPARE(visited, QStringList({QStringLiteral("/"), QStringLiteral("/"), mounted}));
        QCOMPARE(typed, QStringList({QStringLiteral("plan"), QStringLiteral("plan")}));
    }

    void folderModeClearsTheName()
    {
        FakeLsblk lsblk(QStringLiteral("MOUNTPOINT\\n"));
        QString typed = QStringLiteral("unset");
        run(withKeys(QStringLiteral(R"(,"bSelectDir":true)")), [&](ZrQtFileDialogImpl* dlg) {
            QTest::keyClicks(nameEdit(dlg), QStringLiteral("plan"));
            ZrTest::clickListItem(dlg->findChild<QListWidget*>(QStringLiteral("sideBarList")), QStringLiteral("我的电脑"));
            typed = nameEdit(dlg)->text();
            escape(dlg);
        });
        QCOMPARE(typed, QString());
    }

    void panelsByKeys()
    {
        // Folder mode: a side bar of free width and nothing on the right, whatever the keys say.
        Layout seen = layoutOf(withKeys(QStringLiteral(R"(,"bSelectDir":true,"bPreview":true,"bExport":true)")));
        QVERIFY(seen.sideBar);
        QVERIFY(!seen.fixedWidth);
        QVERIFY(!seen.rightPanel && !seen.preview && !seen.exportPanel);
        QVERIFY(seen.firstButtonParent.isEmpty());

        // All off: Qt's side bar stays, the buttons go in the row under the dialog.
        seen = layoutOf(withKeys(QStringLiteral(R"(,"Open":true,"bPreview":false,"bShowDefaultDirs":false)")));
        QVERIFY(!seen.sideBar);
        QVERIFY(!seen.qtSideBarHidden);
        QCOMPARE(seen.firstButtonParent, QStringLiteral("dialog"));
        QVERIFY(seen.firstButtonVisible);

        // Preview and export: the preview wins.
        seen = layoutOf(withKeys(QStringLiteral(R"(,"Open":true,"bExport":true)")));
        QVERIFY(seen.sideBar && seen.fixedWidth && seen.qtSideBarHidden);
        QVERIFY(seen.preview && !seen.exportPanel && seen.extensionArea);
        QCOMPARE(seen.firstButtonParent, QStringLiteral("panel"));

        // Export alone.
        seen = layoutOf(withKeys(QStringLiteral(R"(,"bPreview":false,"bExport":true,"bFindFile":false)")));
        QVERIFY(seen.exportPanel && !seen.preview && !seen.extensionArea);
        QVERIFY(seen.firstButtonParent.isEmpty());

        // Save mode hides the first button.
        seen = layoutOf(withKeys(QStringLiteral(R"(,"Open":false)")));
        QCOMPARE(seen.firstButtonParent, QStringLiteral("panel"));
        QVERIFY(!seen.firstButtonVisible);
    }

    void chosenFilterChangesTheExtension()
    {
        const QString filters = QStringLiteral("图纸 (*.dwg);;DXF (*.dxf);;其他;;样板 (*.dwt)");
        QStringList names;
        run(param(QStringLiteral(R"({"Open":false,"dir":"%1","filter":"%2"})").arg(folder(), filters)),
            [&](ZrQtFileDialogImpl* dlg) {
                QComboBox* combo = typeCombo(dlg);
                QTest::keyClicks(nameEdit(dlg), QStringLiteral("plan.dwg"));
                combo->setFocus();
                QTest::keyClick(combo, Qt::Key_Down);
                names << nameEdit(dlg)->text();
                nameEdit(dlg)->setText(QStringLiteral("plan"));
                QTest::keyClick(combo, Qt::Key_Down);
                names << nameEdit(dlg)->text();
                escape(dlg);
            });
        // The row without a dot lends the extension of the next row.
        QCOMPARE(names, QStringList({QStringLiteral("plan.dxf"), QStringLiteral("plan.dwt")}));
    }

    void templateFilterGoesToTheTemplateFolder()
    {
        const QString templates = zr_runtime_config("paths/templatePaths")->safeStrValue().toQString();
        QString shownBefore;
        QString shownAfter;
        const auto chooseTemplate = [&] {
            run(param(QStringLiteral(R"x({"Open":true,"dir":"%1","filter":"图纸 (*.dwg);;样板 (*.dwt)"})x").arg(folder())),
                [&](ZrQtFileDialogImpl* dlg) {
                    shownBefore = dlg->directory().absolutePath();
                    typeCombo(dlg)->setFocus();
                    QTest::keyClick(typeCombo(dlg), Qt::Key_Down);
                    shownAfter = dlg->directory().absolutePath();
                    escape(dlg);
                });
        };
        QDir(templates).removeRecursively();
        chooseTemplate();
        QCOMPARE(shownAfter, shownBefore);
        QVERIFY(QDir().mkpath(templates));
        chooseTemplate();
        QCOMPARE(shownBefore, folder());
        QCOMPARE(shownAfter, QDir(templates).absolutePath());
    }

    void locateListsTheSupportFolders()
    {
        QTemporaryDir support;
        zr_user_config("Profile/General", 2)
            ->SetDataS("ZRAPP", ZrUtf8String(QStringLiteral("%1; /no/such/folder ;%2").arg(support.path(), folder())));
        QList<Box> seen;
        run(withKeys(QStringLiteral(R"(,"Open":true)")), [&](ZrQtFileDialogImpl* dlg) {
            BoxWatch watch;
            auto* locate = dlg->findChild<QPushButton*>(QStringLiteral("btnLocation"));
            QTest::mouseClick(locate, Qt::LeftButton);
            QTest::keyClicks(nameEdit(dlg), QStringLiteral(" plan.dwg "));
            QTest::mouseClick(locate, Qt::LeftButton);
            seen = watch.boxes();
            escape(dlg);
        });
        QCOMPARE(seen.size(), 2);
        QVERIFY(seen[0].says(QStringLiteral("\"\"\n文件名无效。")));
        QVERIFY2(seen[1].says(QStringLiteral("\"plan.dwg\"\n\"%1\"\n\"%2\"\n").arg(support.path(), folder())),
                 qPrintable(seen[1].labels.join('|')));
        QCOMPARE(seen[1].title, QString());
    }

    void findFileWithoutItsDialogChangesNothing()
    {
        QList<Box> seen;
        bool stayed = false;
        QString shown;
        run(withKeys(QStringLiteral(R"(,"Open":true)")), [&](ZrQtFileDialogImpl* dlg) {
            BoxWatch watch;
            QTest::mouseClick(dlg->findChild<QPushButton*>(QStringLiteral("btnFindFile")), Qt::LeftButton);
            seen = watch.boxes();
            stayed = dlg->isVisible();
            shown = dlg->directory().absolutePath();
            escape(dlg);
        });
        QVERIFY(stayed);
        QVERIFY(seen.isEmpty());
        QCOMPARE(shown, folder());
    }

    void securityOptionsInSaveMode()
    {
        ZrSmartPtr<FakeSecurity> security(new ZrRxObjectImpl<FakeSecurity>(), kZrAttach);
        CXuSystem::instance()->serviceManager()->registerService(ZrString(L"CXuSecurity"),
                                                                 ZrRxObjectPtr(security.get()));
        run(withKeys(QStringLiteral(R"(,"Open":false)")), [&](ZrQtFileDialogImpl* dlg) {
            auto* second = dlg->findChild<QPushButton*>(QStringLiteral("btnFindFile"));
            if (second && second->text() == QStringLiteral("安全选项(&E)..."))
                QTest::mouseClick(second, Qt::LeftButton);
            escape(dlg);
        });
        CXuSystem::instance()->serviceManager()->removeService(ZrString(L"CXuSecurity"));
        QCOMPARE(security->shown, QList<int>{1});
    }

    void clickOnEmptySpaceClearsTheSelectionWhenSaving_data()
    {
        QTest::addColumn<bool>("open");
        QTest::newRow("save") << false;
        QTest::newRow("open") << true;
    }
    void clickOnEmptySpaceClearsTheSelectionWhenSaving()
    {
        QFETCH(bool, open);
        QVERIFY(touch(m_dir->filePath(QStringLiteral("a.dwg"))));
        bool selectedBefore = false;
        bool selectedAfter = false;
        run(withKeys(open ? QStringLiteral(R"(,"Open":true)") : QStringLiteral(R"(,"Open":false)")),
            [&](ZrQtFileDialogImpl* dlg) {
                auto* view = dlg->findChild<QTreeView*>();
                if (!QTest::qWaitFor([&] { return view->model()->rowCount(view->rootIndex()) == 1; }, 5000)) {
                    escape(dlg);
                    return;
                }
                const QModelIndex first = view->model()->index(0, 0, view->rootIndex());
                QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(first).center());
                selectedBefore = view->selectionModel()->hasSelection();
                QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(20, view->viewport()->height() - 5));
                selectedAfter = view->selectionModel()->hasSelection();
                escape(dlg);
            });
        QVERIFY(selectedBefore);
        QCOMPARE(selectedAfter, open);
    }
};

ZR_TEST_SUITE(TstFileDialogWindow)
#include "tst_filedialogwindow.moc"

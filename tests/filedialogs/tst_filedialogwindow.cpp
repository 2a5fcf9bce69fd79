// The file dialog's window: the side bar from the mount points, the right panel by keys, the buttons.

#include "filedialogtesthelpers.h"
#include "zrtestinput.h"
#include "zrtestmain.h"

#include "qt_exportwidget.h"
#include "zrimagepreviewlabel.h"

#include "zrconfig.h"


#include <QListWidget>
#include <QTemporaryDir>
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

};

ZR_TEST_SUITE(TstFileDialogWindow)
#include "tst_filedialogwindow.moc"

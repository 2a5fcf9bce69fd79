// The file dialog on folders and names it cannot take for granted: it stays usable, says what it
// could not find, and answers only what is there.

#include "filedialogtesthelpers.h"
#include "zrtestmain.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTreeView>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

using namespace FileDialogTest;

namespace {

QTreeView* fileView(QWidget* dlg) { return dlg->findChild<QTreeView*>(); }

bool waitForRows(QWidget* dlg, int rows, int timeout = 60000)
{
    QTreeView* view = fileView(dlg);
    return view && QTest::qWaitFor([&] { return view->model()->rowCount(view->rootIndex()) == rows; }, timeout);
}

// A click on the row whose name is `name`, as a user picks a file in the list.
bool clickRow(QWidget* dlg, const QString& name)
{
    QTreeView* view = fileView(dlg);
    const QModelIndex root = view->rootIndex();
    for (int row = 0; row < view->model()->rowCount(root); ++row) {
        const QModelIndex index = view->model()->index(row, 0, root);
        if (index.data().toString() != name)
            continue;
        view->scrollTo(index);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(index).center());
        return true;
    }
    return false;
}

} // namespace

class TstFileDialogBadInput : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;
    std::unique_ptr<QTemporaryDir> m_dir;

    QString folder() const { return m_dir->path(); }

    ZrJsonPtr openIn(const QString& dir, const QString& filter = QStringLiteral("图纸 (*.dwg)")) const
    {
        return param(QStringLiteral(R"x({"Open":true,"dir":"%1","filter":"%2"})x").arg(dir, filter));
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

    void twentyThousandFiles()
    {
        for (int i = 0; i < 20000; ++i)
            QVERIFY(touch(m_dir->filePath(QStringLiteral("f%1.dwg").arg(i, 5, 10, QLatin1Char('0')))));
        bool listed = false;
        QString completed;
        const Run out = run(openIn(folder()), [&](ZrQtFileDialogImpl* dlg) {
            listed = waitForRows(dlg, 20000);
            typeAndReturn(dlg, QStringLiteral("f12345"));
            completed = nameEdit(dlg)->text();
            escape(dlg);
        });
        QVERIFY(listed);
        QCOMPARE(out.result, 1);
        QCOMPARE(completed, QStringLiteral("f12345.dwg"));
        QCOMPARE(out.answer->GetVarJsonPtr("filePaths")->ArrayCount(), 1);
    }

    void unreadableFolder()
    {
        const QString locked = m_dir->filePath(QStringLiteral("locked"));
        QVERIFY(QDir().mkdir(locked));
        QVERIFY(touch(locked + QStringLiteral("/inside.dwg")));
        QFile::setPermissions(locked, QFileDevice::Permissions());
        QList<Box> seen;
        const Run out = run(openIn(locked), [&](ZrQtFileDialogImpl* dlg) {
            seen = typeWatched(dlg, QStringLiteral("missing.dwg"));
            escape(dlg);
        });
        QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QCOMPARE(out.result, 2);
        QCOMPARE(seen.size(), 1);
        QVERIFY(seen[0].says(QStringLiteral("missing.dwg\n找不到文件。\n请检查文件名是否正确，然后重试。")));
    }

    void nameWithANewline()
    {
        const QString name = QStringLiteral("first\nsecond.dwg");
        QVERIFY(touch(m_dir->filePath(name)));
        bool clicked = false;
        const Run out = run(openIn(folder()), [&](ZrQtFileDialogImpl* dlg) {
            clicked = waitForRows(dlg, 1) && clickRow(dlg, name);
            QTest::keyClick(fileView(dlg), Qt::Key_Return);
            escape(dlg);
        });
        QVERIFY(clicked);
        QCOMPARE(out.result, 1);
        const ZrJsonPtr chosen = out.answer->GetVarJsonPtr("filePaths")->at(0);
        QCOMPARE(chosen->GetVarSW("name").toQString(), name);
        QVERIFY(QFileInfo::exists(chosen->GetVarSW("path").toQString()));
    }

    // Qt cannot name such a file, so its list leaves it out; what is sound stays listed and can be
    // chosen, and a typed guess at the name is told it was not found.
    void nameThatIsNoUtf8()
    {
        const QByteArray bytes = QFile::encodeName(folder()) + "/bad\xff\xfe.dwg";
        const int fd = ::open(bytes.constData(), O_CREAT | O_WRONLY, 0644);
        QVERIFY(fd >= 0);
        ::close(fd);
        // QTemporaryDir cannot remove what Qt cannot name.
        const std::unique_ptr<const char, void (*)(const char*)> unlinkAfter(bytes.constData(),
                                                                            [](const char* path) { ::unlink(path); });
        QVERIFY(touch(m_dir->filePath(QStringLiteral("good.dwg"))));
        QList<Box> seen;
        bool clicked = false;
        const Run out = run(openIn(folder()), [&](ZrQtFileDialogImpl* dlg) {
            seen = typeWatched(dlg, QStringLiteral("bad\uFFFD\uFFFD.dwg"));
            clicked = waitForRows(dlg, 1) && clickRow(dlg, QStringLiteral("good.dwg"));
            QTest::keyClick(fileView(dlg), Qt::Key_Return);
            escape(dlg);
        });
        QCOMPARE(seen.size(), 1);
        QVERIFY(seen[0].labels.join('|').contains(QStringLiteral("找不到文件。")));
        QVERIFY(clicked);
        QCOMPARE(out.result, 1);
        QCOMPARE(out.answer->GetVarJsonPtr("filePaths")->at(0)->GetVarSW("name").toQString(), QStringLiteral("good.dwg"));
    }

    void danglingLink()
    {
        QVERIFY(QFile::link(m_dir->filePath(QStringLiteral("gone.dwg")), m_dir->filePath(QStringLiteral("link.dwg"))));
        QList<Box> seen;
        const Run out = run(openIn(folder()), [&](ZrQtFileDialogImpl* dlg) {
            seen = typeWatched(dlg, QStringLiteral("link.dwg"));
            escape(dlg);
        });
        QCOMPARE(out.result, 2);
        QCOMPARE(seen.size(), 1);
        QVERIFY(seen[0].says(QStringLiteral("link.dwg\n找不到文件。\n请检查文件名是否正确，然后重试。")));
        // The link is still there, its target still missing.
        QVERIFY(QFileInfo(m_dir->filePath(QStringLiteral("link.dwg"))).isSymLink());
        QVERIFY(!QFile::exists(m_dir->filePath(QStringLiteral("gone.dwg"))));
    }
};

ZR_TEST_SUITE(TstFileDialogBadInput)
#include "tst_filedialogbadinput.moc"

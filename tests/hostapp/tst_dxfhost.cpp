// The reference host's 文件 menu through the module's file dialog, driven as a user would: a DXF
// drawing opened and the folder remembered across runs, a drawing saved, the layout written as PDF
// from the export panel, DWF refused, and a module without the dialog told of.

#include "zrappenv.h"
#include "zrdialogrun.h"
#include "zrconfig.h"
#include "zrdbdatabase.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "drawingtesthelpers.h"
#include "zrdrawingcontrol.h"
#include "zrhostcontrol.h"
#include "zrhostmainwindow.h"
#include "zrhostsession.h"
#include "zrpdfexport.h"
#include "zrplotsvr.h"
#include "zrsystem.h"
#include "zrtesthost.h"
#include "zrtestmain.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QPainter>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <functional>
#include <memory>

namespace {

// A DXF of another program's making, as small as it gets: a wall on its layer and a spline.
const QByteArray kPlan = "0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n0\nLAYER\n2\n墙体\n70\n0\n62\n1\n6\nCONTINUOUS\n"
                         "0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
                         "0\nLINE\n8\n墙体\n10\n0\n20\n0\n11\n4000\n21\n0\n"
                         "0\nSPLINE\n8\n墙体\n70\n8\n71\n3\n72\n0\n73\n0\n"
                         "0\nENDSEC\n0\nEOF\n";

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

CXuPlotSvr* plotService()
{
    return CXuPlotSvr::cast(CXuSystem::instance()->serviceManager()->getService(ZrString(L"CXuPlotSvr")).get());
}

QString lastOpenFolder()
{
    const ZrJsonPtr section = zr_user_config("CmdOpenFile");
    return section ? section->GetVarSW("CmdOpen-openLastPath").toQString() : QString();
}

// Takes what the viewer would be asked to open.
class ViewerProbe : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> opened;
public Q_SLOTS:
    void open(const QUrl& url) { opened << url; }
};

} // namespace

class TstDxfHost : public QObject
{
    Q_OBJECT

private:
    void startHost()
    {
        m_session = std::make_unique<ZrHostSession>(ZrApp::kLightTheme);
        QVERIFY2(m_session->error().isEmpty(), qPrintable(m_session->error()));
    }

    void showWindow()
    {
        m_window = std::make_unique<ZrHostMainWindow>(ZrApp::availableDialogs());
        m_window->show();
        QApplication::setActiveWindow(m_window.get());
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    QAction* action(const char* name) const { return m_window->findChild<QAction*>(QLatin1String(name)); }

    // Answers the next file dialog as a user would: `prepare` looks and acts first, then the name is
    // typed and Return pressed. A dialog that is not the module's file dialog is closed, so that the
    // test fails on what it finds afterwards rather than hanging.
    static void answerFileDialog(const QString& name, std::function<void(QFileDialog*)> prepare = {})
    {
        ZrTest::whenModalShown([name, prepare](QWidget* modal) {
            auto* dialog = qobject_cast<QFileDialog*>(modal);
            auto* edit = dialog ? dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")) : nullptr;
            if (!edit) {
                modal->close();
                return;
            }
            if (prepare)
                prepare(dialog);
            edit->setFocus();
            edit->clear();
            QTest::keyClicks(edit, name);
            QTest::keyClick(edit, Qt::Key_Return);
        });
    }

    std::unique_ptr<ZrHostSession> m_session;
    std::unique_ptr<ZrHostMainWindow> m_window;
    QTemporaryDir m_files;

private Q_SLOTS:
    void init() { startHost(); }

    void cleanup()
    {
        // The export settings live in the user configuration, which outlasts the run.
        if (CXuPlotSvr* plot = plotService()) {
            plot->setOpenInViewer(false);
            plot->setPlotStamp(false);
            plot->setPlotRange(0, true);
        }
        m_window.reset();
        ZrHostControl::clearLogs();
        m_session.reset();
    }

    // The acceptance of the issue: a drawing of another program opens on its layers, what was left out
    // is said, and the next run's dialog starts in the folder.
    void openingADxfRemembersItsFolderAcrossRuns()
    {
        QDir(m_files.path()).mkpath(QStringLiteral("plans"));
        const QString folder = m_files.filePath(QStringLiteral("plans"));
        QVERIFY(writeFile(folder + QStringLiteral("/plan.dxf"), kPlan));
        ZrHostControl::openEmptyDrawing();
        showWindow();

        ZrHostControl::pushMessageBoxAnswer(1);
        answerFileDialog(folder + QStringLiteral("/plan.dxf"));
        action("openDrawingAction")->trigger();

        const std::vector<ZrDbObjectId> ids = ZrHostControl::entitiesOfCurrentSpace();
        QCOMPARE(ids.size(), size_t(1));
        {
            ZrDbObjectPointer<ZrDbLine> wall(ids[0], ZrDb::kForRead);
            QVERIFY(wall);
            QCOMPARE(wall->layer().toQString(), QStringLiteral("墙体"));
        }
        QVERIFY(m_window->windowTitle().startsWith(QStringLiteral("plan.dxf")));
        const QVector<ZrHostControl::MessageRecord> messages = ZrHostControl::messageLog();
        QCOMPARE(messages.size(), 1);
        QCOMPARE(messages[0].caption, QStringLiteral("打开图纸"));
        QVERIFY2(messages[0].text.contains(QStringLiteral("1 SPLINE")), qPrintable(messages[0].text));
        QCOMPARE(lastOpenFolder(), folder);

        // Quit and start again: the dialog opens in the folder.
        m_window.reset();
        m_session.reset();
        startHost();
        showWindow();
        QString shownFolder;
        ZrTest::whenModalShown([&shownFolder](QWidget* modal) {
            if (auto* dialog = qobject_cast<QFileDialog*>(modal))
                shownFolder = dialog->directory().absolutePath();
            QTest::keyClick(modal, Qt::Key_Escape);
        });
        const ZrDbDatabase* before = curDatabase();
        action("openDrawingAction")->trigger();
        QCOMPARE(shownFolder, folder);
        QCOMPARE(curDatabase(), before);
    }

    void savingGoesThroughTheDialogAndTheNextOpenStartsThere()
    {
        QDir(m_files.path()).mkpath(QStringLiteral("saved"));
        const QString folder = m_files.filePath(QStringLiteral("saved"));
        ZrHostControl::openSampleDrawing();
        const size_t count = ZrHostControl::entitiesOfCurrentSpace().size();
        showWindow();

        answerFileDialog(folder + QStringLiteral("/flat.json"));
        action("saveDrawingAction")->trigger();
        const QString saved = folder + QStringLiteral("/flat.json");
        QVERIFY(QFile::exists(saved));
        QVERIFY(m_window->windowTitle().startsWith(QStringLiteral("flat.json")));
        QCOMPARE(lastOpenFolder(), folder);
        QVERIFY(ZrHostControl::messageLog().isEmpty());

        ZrHostControl::openEmptyDrawing();
        QString error;
        QVERIFY2(ZrHostControl::openDrawing(saved, &error), qPrintable(error));
        QCOMPARE(ZrHostControl::entitiesOfCurrentSpace().size(), count);
    }

    // 输出 PDF… with the export panel's "open when done" ticked by the user writes a real PDF and
    // hands it to the viewer; DWF, listed beside it, is refused and nothing is written.
    void exportWritesAPdfAndRefusesDwf()
    {
        QDir(m_files.path()).mkpath(QStringLiteral("out"));
        const QDir out(m_files.filePath(QStringLiteral("out")));
        ZrHostControl::openSampleDrawing();
        showWindow();
        ViewerProbe viewer;
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &viewer, "open");

        bool panelShown = false;
        answerFileDialog(out.filePath(QStringLiteral("flat.pdf")), [&panelShown](QFileDialog* dialog) {
            for (QCheckBox* box : dialog->findChildren<QCheckBox*>()) {
                if (box->text() == QStringLiteral("完成后在查看器中打开(&E)") && box->isVisible()) {
                    panelShown = true;
                    if (!box->isChecked())
                        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
                }
            }
        });
        action("exportPdfAction")->trigger();
        QVERIFY(panelShown);
        QFile pdf(out.filePath(QStringLiteral("flat.pdf")));
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        const QByteArray bytes = pdf.readAll();
        QVERIFY(bytes.startsWith("%PDF-"));
        QVERIFY(bytes.trimmed().endsWith("%%EOF"));
        // The plan's lines are in it, not an empty page.
        QVERIFY2(bytes.size() > 20000, qPrintable(QString::number(bytes.size())));
        QCOMPARE(viewer.opened, QList<QUrl>{QUrl::fromLocalFile(pdf.fileName())});
        QVERIFY(ZrHostControl::messageLog().isEmpty());

        ZrHostControl::pushMessageBoxAnswer(1);
        answerFileDialog(QStringLiteral("flat"), [](QFileDialog* dialog) {
            auto* types = dialog->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
            if (!types)
                return;
            types->setFocus();
            QTest::keyClick(types, Qt::Key_Home);
        });
        action("exportPdfAction")->trigger();
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        const QVector<ZrHostControl::MessageRecord> messages = ZrHostControl::messageLog();
        QCOMPARE(messages.size(), 1);
        QVERIFY2(messages[0].text.contains(QStringLiteral("不能写 DWF 文件")), qPrintable(messages[0].text));
        QCOMPARE(out.entryList(QDir::Files), QStringList{QStringLiteral("flat.pdf")});
        QCOMPARE(viewer.opened.size(), 1);
    }

    void aPdfThatCannotBeWrittenNamesItsFile()
    {
        QVERIFY(writeFile(m_files.filePath(QStringLiteral("plain")), "x"));
        const QString path = m_files.filePath(QStringLiteral("plain/flat.pdf"));
        QString error;
        QVERIFY(!zrWriteLayoutPdf(path, ZrPdfPage(), &error));
        QVERIFY2(error.startsWith(path + QStringLiteral(": ")), qPrintable(error));
    }
};

ZR_TEST_SUITE(TstDxfHost)
#include "tst_dxfhost.moc"

// The export panel: the publish type by extension, the options written through the plot service,
// and the page setup override kept in the layout's extension dictionary.

#include "zrtesthost.h"
#include "zrtestmain.h"

#include "qt_exportwidget.h"
#include "qt_filedialog.h"

#include "zrconfig.h"
#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbplotsettings.h"
#include "zrplotsvr.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {

CXuPlotSvr* plotService()
{
    return CXuPlotSvr::cast(CXuSystem::instance()->serviceManager()->getService(ZrString(L"CXuPlotSvr")).get());
}

ZrDbObjectId paperLayoutId()
{
    ZrDbDictionary* layouts = nullptr;
    if (zrdbOpenObject(layouts, curDatabase()->layoutDictionaryId(), ZrDb::kForRead) != Zr::eOk)
        return ZrDbObjectId();
    ZrDbObjectId found;
    std::unique_ptr<ZrDbDictionaryIterator> it(layouts->newIterator());
    for (; !it->done() && found.isNull(); it->next()) {
        ZrDbObjectPointer<ZrDbLayout> layout(it->objectId(), ZrDb::kForRead);
        if (layout && !layout->modelType())
            found = it->objectId();
    }
    layouts->close();
    return found;
}

// Moves a combo box to `row` with the arrow keys, as a user does.
void selectRow(QComboBox* combo, int row)
{
    combo->setFocus();
    while (combo->currentIndex() < row)
        QTest::keyClick(combo, Qt::Key_Down);
    while (combo->currentIndex() > row)
        QTest::keyClick(combo, Qt::Key_Up);
}

QPushButton* okButton(QWidget* dialog)
{
    for (QPushButton* button : dialog->findChildren<QPushButton*>())
        if (button->text() == QStringLiteral("确定"))
            return button;
    return nullptr;
}

} // namespace

class TestExportPanel : public QObject
{
    Q_OBJECT

    std::unique_ptr<ZrTest::Host> m_host;
    std::unique_ptr<ZrQtExportWidget> m_panel;

    ZrQtExportWidget* makePanel(const QString& extension = QStringLiteral("*.pdf"))
    {
        m_panel.reset(new ZrQtExportWidget(extension));
        m_panel->show();
        if (!QTest::qWaitForWindowExposed(m_panel.get()))
            qWarning("the panel was never shown");
        return m_panel.get();
    }

    template <class T>
    T* child(const char* name)
    {
        T* widget = m_panel->findChild<T*>(QLatin1String(name));
        if (!widget)
            qFatal("no %s in the panel", name);
        return widget;
    }

    QString value(const char* name) { return child<QLabel>(name)->text(); }

private Q_SLOTS:
    void init() { m_host.reset(new ZrTest::Host); }

    void cleanup()
    {
        m_panel.reset();
        m_host.reset();
    }

    void publishTypeByExtension_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<int>("publishKind");
        QTest::addColumn<QString>("overrideTitle");
        QTest::newRow("dwf") << "a.dwf" << 0 << "DWF";
        QTest::newRow("DWFX in capitals") << "*.DWFX" << 1 << "DWFX";
        QTest::newRow("pdf") << "x.Pdf" << 2 << "PDF";
        QTest::newRow("last extension counts") << "a.dwfx.pdf" << 2 << "PDF";
        QTest::newRow("unknown keeps DWF") << "a.svg" << 0 << "DWF";
    }

    void publishTypeByExtension()
    {
        QFETCH(QString, extension);
        QFETCH(int, publishKind);
        QFETCH(QString, overrideTitle);
        makePanel(extension);
        QCOMPARE(plotService()->publishKind(), publishKind);
        QCOMPARE(plotService()->publishMode(), 1);

        selectRow(child<QComboBox>("comboPageSet"), 1);
        QString title;
        ZrTest::whenModalShown([&title](QWidget* dialog) {
            title = dialog->windowTitle();
            dialog->close();
        });
        QTest::mouseClick(child<QPushButton>("btnPageSetupOverride"), Qt::LeftButton);
        QCOMPARE(title, QStringLiteral("页面设置替代 - %1").arg(overrideTitle));
    }

    // The options dialog's OK shows the new options at once; Cancel changes nothing.
    void optionsDialog()
    {
        makePanel();
        QCOMPARE(value("labelSheetMode"), QStringLiteral("多页文件"));
        QCOMPARE(value("labelPasswordProtection"), QStringLiteral("禁用"));
        ZrTest::whenModalShown([](QWidget* dialog) {
            dialog->findChild<QComboBox*>(QStringLiteral("passwordProtection"))->setCurrentIndex(1);
            dialog->findChild<QCheckBox*>(QStringLiteral("blockInformation"))->setChecked(true);
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QTest::mouseClick(child<QPushButton>("btnExportOptions"), Qt::LeftButton);
        QCOMPARE(value("labelPasswordProtection"), QStringLiteral("禁用"));
        QCOMPARE(value("labelBlockInformation"), QStringLiteral("不包含"));

        ZrTest::whenModalShown([](QWidget* dialog) {
            dialog->findChild<QComboBox*>(QStringLiteral("sheetMode"))->setCurrentIndex(0);
            dialog->findChild<QComboBox*>(QStringLiteral("passwordProtection"))->setCurrentIndex(1);
            dialog->findChild<QCheckBox*>(QStringLiteral("blockInformation"))->setChecked(true);
            QTest::mouseClick(okButton(dialog), Qt::LeftButton);
        });
        QTest::mouseClick(child<QPushButton>("btnExportOptions"), Qt::LeftButton);
        QCOMPARE(value("labelSheetMode"), QStringLiteral("单页文件"));
        QCOMPARE(value("labelPasswordProtection"), QStringLiteral("提示输入密码"));
        QCOMPARE(value("labelBlockInformation"), QStringLiteral("包含"));
        // Kept in the user configuration, for the export and the next run.
        QCOMPARE(zr_user_config("Publish/options/passwordPrompt")->safeBoolValue(), true);
        QCOMPARE(zr_user_config("Publish/options/sheetMode")->safeIntValue(), int64_t(0));
    }

    // The override is one ZrDbPlotSettings under "AcPublish_PlotSettingsOverride" in the layout's
    // extension dictionary: made the first time, then reused.
    void overrideEntryMadeOnceAndReused_data()
    {
        QTest::addColumn<bool>("paper");
        QTest::newRow("model") << false;
        QTest::newRow("paper layout") << true;
    }

    void overrideEntryMadeOnceAndReused()
    {
        QFETCH(bool, paper);
        if (paper)
            QCOMPARE(curDatabase()->setCurrentLayoutId(paperLayoutId()), int(Zr::eOk));
        makePanel(QStringLiteral("a.dwfx"));
        ZrDbObjectId first, second;
        QVERIFY(m_panel->getPlotSettingsId(first));
        QVERIFY(m_panel->getPlotSettingsId(second));
        QCOMPARE(first, second);

        ZrDbObjectPointer<ZrDbLayout> layout(curDatabase()->currentLayoutId(), ZrDb::kForRead);
        QVERIFY(layout);
        ZrDbObjectPointer<ZrDbDictionary> extension(layout->extensionDictionary(), ZrDb::kForRead);
        QVERIFY(extension);
        QCOMPARE(extension->numEntries(), 1);
        ZrDbObjectId entry;
        QCOMPARE(extension->getAt(ZrString(L"AcPublish_PlotSettingsOverride"), entry), int(Zr::eOk));
        QCOMPARE(entry, first);
        ZrDbObjectPointer<ZrDbPlotSettings> settings(first, ZrDb::kForRead);
        QVERIFY(settings);
        QCOMPARE(settings->modelType(), !paper);
        QCOMPARE(settings->getPlotSettingsName(), layout->getLayoutName());
    }

    // Inside the file dialog of an export the dialog makes way while the window is picked, and comes
    // back afterwards.
    void windowPickedFromTheFileDialog()
    {
        QTemporaryDir dir;
        const char json[] = R"json({"Open":false,"bExport":true,"bPreview":false,"filter":"PDF (*.pdf)","dir":"%1"})json";
        const ZrJsonPtr param = ElementValue::parse(ZrUtf8String(QString::fromUtf8(json).arg(dir.path())));
        QVERIFY(param);
        bool hiddenWhilePicking = false;
        bool backAfterPicking = false;
        ZrTest::whenModalShown([&](QWidget* dlg) {
            auto* range = dlg->findChild<QComboBox*>(QStringLiteral("comboExport"));
            QVERIFY(range);
            ZrTest::whenModalShown([&, dlg](QWidget* pick) {
                hiddenWhilePicking = !dlg->isVisible();
                pick->findChild<QDoubleSpinBox*>(QStringLiteral("secondX"))->setValue(10);
                pick->findChild<QDoubleSpinBox*>(QStringLiteral("secondY"))->setValue(5);
                QTest::mouseClick(okButton(pick), Qt::LeftButton);
            }, dlg);
            selectRow(range, 2);
            backAfterPicking = dlg->isVisible();
            // The dialog's loop runs again once this one has ended: cancel it there.
            QTimer::singleShot(0, dlg, [dlg] { QTest::keyClick(dlg, Qt::Key_Escape); });
        });
        const ZrJsonPtr answer = zruiShowModelDialogEx(48, ZrString(L"FileDialogBox"), param, ZrRxObjectPtr(), nullptr);
        QVERIFY(answer);
        QCOMPARE(answer->GetVarI("result"), 2);
        QVERIFY(hiddenWhilePicking);
        QVERIFY(backAfterPicking);
        double x1, y1, x2, y2;
        QVERIFY(plotService()->plotWindow(x1, y1, x2, y2));
        QCOMPARE(QRectF(QPointF(x1, y1), QPointF(x2, y2)), QRectF(0, 0, 10, 5));
        QCOMPARE(plotService()->publishKind(), 2);
    }

};

ZR_TEST_SUITE(TestExportPanel)
#include "tst_exportpanel.moc"

// The export panel: the publish type by extension, the settings it shows and writes through the
// host's plot service, the range and page setup lists in model and paper layouts, and the page setup
// override kept in the layout's extension dictionary.

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

QStringList rows(QComboBox* combo)
{
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i)
        texts << combo->itemText(i);
    return texts;
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
        QTest::newRow("DWF in capitals") << "*.DWF" << 0 << "DWF";
        QTest::newRow("DWFX in capitals") << "*.DWFX" << 1 << "DWFX";
        QTest::newRow("dwfx mixed") << "plan.DwFx" << 1 << "DWFX";
        QTest::newRow("pdf") << "x.Pdf" << 2 << "PDF";
        QTest::newRow("last extension counts") << "a.dwfx.pdf" << 2 << "PDF";
        QTest::newRow("no dot") << "dwfx" << 1 << "DWFX";
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

    void currentSettingsShown()
    {
        SXuPublishOptions options;
        options.sheetMode = 0;
        options.layerInformation = true;
        options.mergeControl = true;
        options.passwordProtected = true;
        options.passwordPrompt = false;
        options.blockInformation = false;
        plotService()->setPublishOptions(options);
        makePanel();
        QCOMPARE(value("labelSheetMode"), QStringLiteral("单页文件"));
        QCOMPARE(value("labelPrecision"), QStringLiteral("无"));
        QCOMPARE(value("labelLayerInformation"), QStringLiteral("包含"));
        QCOMPARE(value("labelMergeControl"), QStringLiteral("直线合并"));
        QCOMPARE(value("labelPasswordProtection"), QStringLiteral("指定密码"));
        QCOMPARE(value("labelBlockInformation"), QStringLiteral("不包含"));
        QCOMPARE(child<QPushButton>("btnPlotStamp")->size(), QSize(16, 16));
        QVERIFY(!child<QPushButton>("btnPlotStamp")->autoDefault());
        QVERIFY(!child<QPushButton>("btnWindowPick")->autoDefault());
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

    // The check boxes write the service at once; the settings live in the user configuration, so a
    // new panel and the next run of the host start from them.
    void settingsKeptForTheNextRun()
    {
        m_host.reset();
        QTemporaryDir config;
        ZrHostControl::Options options;
        options.configDir = config.path();
        options.resourceRoot = QStringLiteral(ZR_RESOURCE_ROOT);
        ZrHostControl::initialize(options);
        plotService()->setPlotStamp(true);
        makePanel(QStringLiteral("a.dwfx"));
        auto* viewer = child<QCheckBox>("checkOpenInViewer");
        auto* stamp = child<QCheckBox>("checkPlotStamp");
        QVERIFY(!viewer->isChecked());
        QVERIFY(stamp->isChecked());
        QTest::mouseClick(viewer, Qt::LeftButton);
        QTest::mouseClick(stamp, Qt::LeftButton);
        QVERIFY(plotService()->openInViewer());
        QVERIFY(!plotService()->plotStamp());
        selectRow(child<QComboBox>("comboExport"), 1);
        makePanel(QStringLiteral("a.dwfx"));
        QVERIFY(!child<QCheckBox>("checkPlotStamp")->isChecked());
        m_panel.reset();
        ZrHostControl::shutdown();

        ZrHostControl::initialize(options);
        QVERIFY(plotService()->openInViewer());
        QCOMPARE(plotService()->plotRange(true), 1);
        QCOMPARE(plotService()->publishKind(), 1);
        makePanel();
        QVERIFY(child<QCheckBox>("checkOpenInViewer")->isChecked());
        QCOMPARE(child<QComboBox>("comboExport")->currentIndex(), 1);
        m_panel.reset();
        ZrHostControl::shutdown();
    }

    void plotStampDialog()
    {
        makePanel();
        QVERIFY(plotService()->plotStampFields().dateTime);
        ZrTest::whenModalShown([](QWidget* dialog) {
            // On the box itself: the check box is wider than its text.
            for (const char* name : {"dateTime", "loginName"}) {
                auto* box = dialog->findChild<QCheckBox*>(QLatin1String(name));
                QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(6, box->height() / 2));
            }
            QTest::mouseClick(okButton(dialog), Qt::LeftButton);
        });
        QTest::mouseClick(child<QPushButton>("btnPlotStamp"), Qt::LeftButton);
        QVERIFY(!plotService()->plotStampFields().dateTime);
        QVERIFY(plotService()->plotStampFields().loginName);
        QVERIFY(plotService()->plotStampFields().drawingName);
    }

    // In the model: display, extents, window; the window is picked when it is chosen without one.
    void modelRangesAndTheWindow()
    {
        makePanel();
        auto* range = child<QComboBox>("comboExport");
        auto* pick = child<QPushButton>("btnWindowPick");
        QCOMPARE(rows(range), (QStringList{QStringLiteral("显示"), QStringLiteral("范围"), QStringLiteral("窗口")}));
        QCOMPARE(range->currentIndex(), 0);
        QVERIFY(!pick->isEnabled());
        selectRow(range, 1);
        QCOMPARE(plotService()->plotRange(true), 1);
        QVERIFY(!pick->isEnabled());

        // Cancelled: no window, but the range is the window all the same.
        ZrTest::whenModalShown([](QWidget* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
        selectRow(range, 2);
        QCOMPARE(plotService()->plotRange(true), 2);
        QVERIFY(pick->isEnabled());
        QVERIFY(plotService()->needsWindowPick());

        ZrTest::whenModalShown([](QWidget* dialog) {
            dialog->findChild<QDoubleSpinBox*>(QStringLiteral("secondX"))->setValue(40);
            dialog->findChild<QDoubleSpinBox*>(QStringLiteral("secondY"))->setValue(30);
            QTest::mouseClick(okButton(dialog), Qt::LeftButton);
        });
        QTest::mouseClick(pick, Qt::LeftButton);
        double x1 = -1, y1 = -1, x2 = -1, y2 = -1;
        QVERIFY(plotService()->plotWindow(x1, y1, x2, y2));
        QCOMPARE(QRectF(QPointF(x1, y1), QPointF(x2, y2)), QRectF(0, 0, 40, 30));
        QVERIFY(!plotService()->needsWindowPick());

        // A window is known: choosing the range again asks nothing (a dialog here would block the test).
        selectRow(range, 0);
        QVERIFY(!pick->isEnabled());
        selectRow(range, 2);
        QVERIFY(pick->isEnabled());
        makePanel();
        QCOMPARE(child<QComboBox>("comboExport")->currentIndex(), 2);
        QVERIFY(child<QPushButton>("btnWindowPick")->isEnabled());
    }

    void paperLayoutRanges()
    {
        const ZrDbObjectId paper = paperLayoutId();
        QVERIFY(!paper.isNull());
        QCOMPARE(curDatabase()->setCurrentLayoutId(paper), int(Zr::eOk));
        plotService()->setPlotRange(1, false);
        plotService()->setPlotRange(2, true);
        makePanel();
        QVERIFY(!m_panel->isCurrentLayoutModelType());
        auto* range = child<QComboBox>("comboExport");
        QCOMPARE(rows(range), (QStringList{QStringLiteral("当前布局"), QStringLiteral("所有布局")}));
        QCOMPARE(range->currentIndex(), 1);
        QVERIFY(!child<QPushButton>("btnWindowPick")->isEnabled());
        selectRow(range, 0);
        QCOMPARE(plotService()->plotRange(false), 0);
        QCOMPARE(plotService()->plotRange(true), 2);
        QVERIFY(!child<QPushButton>("btnWindowPick")->isEnabled());
    }

    void pageSetFollowsTheService()
    {
        plotService()->setUseOverride(true);
        makePanel();
        auto* pageSet = child<QComboBox>("comboPageSet");
        auto* button = child<QPushButton>("btnPageSetupOverride");
        QCOMPARE(rows(pageSet), (QStringList{QStringLiteral("当前"), QStringLiteral("替代")}));
        QCOMPARE(pageSet->currentIndex(), 1);
        QVERIFY(button->isEnabled());
        selectRow(pageSet, 0);
        QVERIFY(!plotService()->useOverride());
        QVERIFY(!button->isEnabled());
        selectRow(pageSet, 1);
        QVERIFY(plotService()->useOverride());
        QVERIFY(button->isEnabled());
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

    void overrideEditedThroughTheButton()
    {
        makePanel(QStringLiteral("a.pdf"));
        selectRow(child<QComboBox>("comboPageSet"), 1);
        ZrTest::whenModalShown([](QWidget* dialog) {
            dialog->findChild<QComboBox*>(QStringLiteral("paper"))->setCurrentIndex(1);
            dialog->findChild<QComboBox*>(QStringLiteral("orientation"))->setCurrentIndex(1);
            QTest::mouseClick(okButton(dialog), Qt::LeftButton);
        });
        QTest::mouseClick(child<QPushButton>("btnPageSetupOverride"), Qt::LeftButton);
        ZrDbObjectId id;
        QVERIFY(m_panel->getPlotSettingsId(id));
        ZrDbObjectPointer<ZrDbPlotSettings> settings(id, ZrDb::kForRead);
        QVERIFY(settings);
        QCOMPARE(settings->getCanonicalMediaName().toQString(), QStringLiteral("ISO A3 (297.00 x 420.00 毫米)"));
        QCOMPARE(settings->plotRotation(), ZrDbPlotSettings::k90degrees);
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

    // Without the service the panel keeps its empty values and no control reaches anything.
    void withoutTheService()
    {
        CXuSystem::instance()->serviceManager()->removeService(ZrString(L"CXuPlotSvr"));
        makePanel();
        QVERIFY(value("labelSheetMode").isEmpty());
        QVERIFY(value("labelPasswordProtection").isEmpty());
        QCOMPARE(value("labelPrecision"), QStringLiteral("无"));
        // The lists are filled from the service only.
        QCOMPARE(child<QComboBox>("comboExport")->count(), 0);
        QCOMPARE(child<QComboBox>("comboPageSet")->count(), 0);
        // Any dialog would block here.
        QTest::mouseClick(child<QPushButton>("btnExportOptions"), Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>("btnPlotStamp"), Qt::LeftButton);
        QTest::mouseClick(child<QCheckBox>("checkOpenInViewer"), Qt::LeftButton);
        QVERIFY(!child<QPushButton>("btnWindowPick")->isEnabled());
        QVERIFY(!child<QPushButton>("btnPageSetupOverride")->isEnabled());
        QVERIFY(!zr_user_config("Publish"));
    }
};

ZR_TEST_SUITE(TestExportPanel)
#include "tst_exportpanel.moc"

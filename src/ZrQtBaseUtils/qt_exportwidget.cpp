#include "qt_exportwidget.h"

#include "ZrQtUtilsFunc.h"
#include "qt_filedialog.h"
#include "zrarbitdict.h"
#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbplotsettings.h"
#include "zrglobaluireactor.h"
#include "zrplotsvr.h"
#include "zrreactor.h"
#include "zrsystem.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

namespace {

const wchar_t kOverrideEntry[] = L"AcPublish_PlotSettingsOverride";
constexpr int kWindowRange = 2;
// No row of either range list has this index; the case is kept for the host's lists that do.
constexpr int kPageSetupRange = 4;

CXuPlotSvr* plotService()
{
    return CXuPlotSvr::cast(CXuSystem::instance()->serviceManager()->getService(ZrString(L"CXuPlotSvr")).get());
}

ZrDbObjectId currentLayoutId()
{
    ZrDbDatabase* database = zrdbHostApplicationServices()->workingDatabase();
    auto* service = ZrDbDatabaseService::cast(zrrxGetService(3).get());
    return database && service ? service->currentLayoutId(database) : ZrDbObjectId();
}

void setMargins(QGridLayout* layout) { layout->setContentsMargins(6, 2, 6, 3); }

} // namespace

struct ZrQtExportWidget::Private
{
    int overrideKind = 1;
    int publishKind = 0;
    int publishMode = 1;

    QLabel* sheetMode = nullptr;
    QLabel* precision = nullptr;
    QLabel* layerInformation = nullptr;
    QLabel* mergeControl = nullptr;
    QLabel* passwordProtection = nullptr;
    QLabel* blockInformation = nullptr;
    QPushButton* options = nullptr;
    QCheckBox* openInViewer = nullptr;
    QCheckBox* plotStamp = nullptr;
    QPushButton* plotStampButton = nullptr;
    QComboBox* plotRange = nullptr;
    QPushButton* windowPick = nullptr;
    QComboBox* pageSet = nullptr;
    QPushButton* pageSetupOverride = nullptr;
};

ZrQtExportWidget::ZrQtExportWidget(QString extension, QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), d(new Private)
{
    initWidget();
    initPublishType(extension);
    if (CXuPlotSvr* service = plotService()) {
        ResetPublishType(service);
        UpdateOptions(service);
        initExportControl(service);
        initialPlotRangeCombox(service);
        initialPageSetCombox(service);
    }
    // Connected after the set-up, so that filling the controls writes nothing back.
    connect(d->options, &QPushButton::clicked, this, &ZrQtExportWidget::OnBnClickedButtonOptions);
    connect(d->plotStampButton, &QPushButton::clicked, this, &ZrQtExportWidget::OnBnClickedButtonPlotStamp);
    connect(d->windowPick, &QPushButton::clicked, this, &ZrQtExportWidget::OnBnClickedButtonWindowPick);
    connect(d->pageSetupOverride, &QPushButton::clicked, this, &ZrQtExportWidget::OnBnClickedButtonPageSetupOverride);
    connect(d->plotStamp, &QCheckBox::clicked, this, &ZrQtExportWidget::OnBnClickedCheckPlotStamp);
    connect(d->openInViewer, &QCheckBox::clicked, this, &ZrQtExportWidget::OnBnClickedCheckOpenInViewer);
    connect(d->plotRange, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ZrQtExportWidget::OnComboxExportChange);
    connect(d->pageSet, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ZrQtExportWidget::OnComboxPageSetChange);
}

ZrQtExportWidget::~ZrQtExportWidget() = default;

void ZrQtExportWidget::initWidget()
{
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    auto* current = new QGroupBox(zrUiText("IDS_SUBDIMSTYLE_PROMPT13", QStringLiteral("当前设置")), this);
    current->setObjectName(QStringLiteral("groupCurrentSettings"));
    auto* currentLayout = new QGridLayout(current);
    setMargins(currentLayout);
    const struct
    {
        const char* key;
        const char* text;
        const char* objectName;
        QLabel** value;
    } rows[] = {
        {"IDS_LIST_DIM_STR8", "类型:", "labelSheetMode", &d->sheetMode},
        {"ZRUI_IDD_UNDERLAY_EXPORT_2", "替代精度:", "labelPrecision", &d->precision},
        {"CMDSRES_IDD_DIALOG_PUBLISH_26", "图层信息:", "labelLayerInformation", &d->layerInformation},
        {"CMDSRES_IDD_DIALOG_PUBLISH_27", "合并控制:", "labelMergeControl", &d->mergeControl},
        {"ZRUI_IDD_UNDERLAY_EXPORT_5", "密码保护:", "labelPasswordProtection", &d->passwordProtection},
        {"ZRUI_IDD_UNDERLAY_EXPORT_6", "块信息:", "labelBlockInformation", &d->blockInformation},
    };
    int row = 0;
    for (const auto& entry : rows) {
        currentLayout->addWidget(new QLabel(zrUiText(entry.key, QString::fromUtf8(entry.text)), current), row, 0, 1, 2);
        *entry.value = new QLabel(current);
        (*entry.value)->setObjectName(QLatin1String(entry.objectName));
        currentLayout->addWidget(*entry.value, row, 2, 1, 3);
        ++row;
    }
    d->precision->setText(zrUiText("IDS_EATTEXT_98", QStringLiteral("无")));
    d->options = new QPushButton(zrUiText("ZRUI_IDD_GETFILEDIALOG_3", QStringLiteral("选项(&O)...")), current);
    d->options->setObjectName(QStringLiteral("btnExportOptions"));
    currentLayout->addWidget(d->options, row, 2, 1, 3);
    layout->addWidget(current, 0, 0, 9, 5);

    auto* output = new QGroupBox(zrUiText("ZRUI_IDD_UNDERLAY_EXPORT_14", QStringLiteral("输出控制")), this);
    output->setObjectName(QStringLiteral("groupOutputControl"));
    auto* outputLayout = new QGridLayout(output);
    setMargins(outputLayout);
    d->openInViewer = new QCheckBox(zrUiText("ZRUI_IDD_UNDERLAY_EXPORT_15", QStringLiteral("完成后在查看器中打开(&E)")), output);
    d->openInViewer->setObjectName(QStringLiteral("checkOpenInViewer"));
    outputLayout->addWidget(d->openInViewer, 0, 0, 1, 5);
    d->plotStamp = new QCheckBox(zrUiText("ZRUI_IDD_UNDERLAY_EXPORT_16", QStringLiteral("包含打印戳记(&C)")), output);
    d->plotStamp->setObjectName(QStringLiteral("checkPlotStamp"));
    outputLayout->addWidget(d->plotStamp, 1, 0, 1, 4);
    d->plotStampButton = new QPushButton(output);
    d->plotStampButton->setObjectName(QStringLiteral("btnPlotStamp"));
    d->plotStampButton->setIcon(QIcon(zrutGetImageFullPath(QStringLiteral("qtutils/plotstamp.bmp"))));
    d->plotStampButton->setFixedSize(16, 16);
    d->plotStampButton->setAutoDefault(false);
    outputLayout->addWidget(d->plotStampButton, 1, 4);

    auto* rangeLabel = new QLabel(zrUiText("ZRUI_IDD_UNDERLAY_EXPORT_18", QStringLiteral("输出(&X):")), output);
    d->plotRange = new QComboBox(output);
    d->plotRange->setObjectName(QStringLiteral("comboExport"));
    rangeLabel->setBuddy(d->plotRange);
    d->windowPick = new QPushButton(output);
    d->windowPick->setObjectName(QStringLiteral("btnWindowPick"));
    d->windowPick->setIcon(QIcon(zrutGetImageFullPath(QStringLiteral("qtutils/pickwindow.bmp"))));
    d->windowPick->setAutoDefault(false);
    d->windowPick->setEnabled(false);
    outputLayout->addWidget(rangeLabel, 2, 0);
    outputLayout->addWidget(d->plotRange, 2, 1, 1, 3);
    outputLayout->addWidget(d->windowPick, 2, 4);

    auto* pageSetLabel = new QLabel(zrUiText("ZRUI_IDD_UNDERLAY_EXPORT_19", QStringLiteral("页面设置(&P):")), output);
    d->pageSet = new QComboBox(output);
    d->pageSet->setObjectName(QStringLiteral("comboPageSet"));
    pageSetLabel->setBuddy(d->pageSet);
    outputLayout->addWidget(pageSetLabel, 3, 0);
    outputLayout->addWidget(d->pageSet, 3, 1, 1, 4);
    d->pageSetupOverride = new QPushButton(zrUiText("ZRUI_IDD_UNDERLAY_EXPORT_21", QStringLiteral("页面设置替代(&G)...")), output);
    d->pageSetupOverride->setObjectName(QStringLiteral("btnPageSetupOverride"));
    d->pageSetupOverride->setEnabled(false);
    outputLayout->addWidget(d->pageSetupOverride, 4, 0, 1, 5);
    layout->addWidget(output, 9, 0, 6, 5);
}

void ZrQtExportWidget::initPublishType(QString extension)
{
    const QString suffix = extension.mid(extension.lastIndexOf(QLatin1Char('.')) + 1);
    if (suffix.compare(QLatin1String("DWF"), Qt::CaseInsensitive) == 0) {
        d->overrideKind = 1;
        d->publishKind = 0;
    } else if (suffix.compare(QLatin1String("DWFX"), Qt::CaseInsensitive) == 0) {
        d->overrideKind = 2;
        d->publishKind = 1;
    } else if (suffix.compare(QLatin1String("PDF"), Qt::CaseInsensitive) == 0) {
        d->overrideKind = 0;
        d->publishKind = 2;
    }
}

void ZrQtExportWidget::ResetPublishType(CXuPlotSvr* service)
{
    if (service)
        service->setPublishType(d->publishKind, d->publishMode);
}

void ZrQtExportWidget::UpdateOptions(CXuPlotSvr* service)
{
    if (!service)
        return;
    const SXuPublishOptions options = service->publishOptions();
    d->sheetMode->setText(options.sheetMode == 1
                              ? zrUiText("IDS_UNDERLAYEXPORT_MULTISHEET", QStringLiteral("多页文件"))
                              : zrUiText("IDS_UNDERLAYEXPORT_SINGLESHEET", QStringLiteral("单页文件")));
    const QString included = zrUiText("IDS_UNDERLAYEXPORT_INCLUDE", QStringLiteral("包含"));
    const QString notIncluded = zrUiText("IDS_UNDERLAYEXPORT_NOTINCLUDE", QStringLiteral("不包含"));
    d->layerInformation->setText(options.layerInformation ? included : notIncluded);
    d->blockInformation->setText(options.blockInformation ? included : notIncluded);
    d->mergeControl->setText(options.mergeControl
                                 ? zrUiText("IDS_UNDERLAYEXPORT_LINEMERGE", QStringLiteral("直线合并"))
                                 : zrUiText("IDS_UNDERLAYEXPORT_LINEOVERWRITE", QStringLiteral("直线覆盖")));
    if (!options.passwordProtected)
        d->passwordProtection->setText(zrUiText("IDS_UNDERLAYEXPORT_PASSWORDDISABLE", QStringLiteral("禁用")));
    else if (options.passwordPrompt)
        d->passwordProtection->setText(zrUiText("IDS_UNDERLAYEXPORT_PROMPTPASSWORD", QStringLiteral("提示输入密码")));
    else
        d->passwordProtection->setText(zrUiText("IDS_UNDERLAYEXPORT_PASSWORDSPECIFY", QStringLiteral("指定密码")));
}

void ZrQtExportWidget::initExportControl(CXuPlotSvr* service)
{
    if (!service)
        return;
    d->openInViewer->setChecked(service->openInViewer());
    d->plotStamp->setChecked(service->plotStamp());
}

void ZrQtExportWidget::initialPlotRangeCombox(CXuPlotSvr* service)
{
    ZrQtBlockSignalUtil blocker(d->plotRange);
    d->plotRange->clear();
    const bool model = isCurrentLayoutModelType();
    if (model) {
        d->plotRange->addItem(zrUiText("IDS_PLOTCMD_56", QStringLiteral("显示")));
        d->plotRange->addItem(zrUiText("IDS_PLOTCMD_57", QStringLiteral("范围")));
        d->plotRange->addItem(zrUiText("IDS_PLOTCMD_60", QStringLiteral("窗口")));
    } else {
        d->plotRange->addItem(zrUiText("IDS_LAYVPI_PROMPT3", QStringLiteral("当前布局")));
        d->plotRange->addItem(zrUiText("IDS_UNDERLAYEXPORT_ALLLAYOUTS", QStringLiteral("所有布局")));
    }
    int index = 0;
    if (service) {
        service->preparePlotRanges(model);
        index = service->plotRange(model);
    }
    d->plotRange->setCurrentIndex(index);
    d->windowPick->setEnabled(index == kWindowRange);
}

void ZrQtExportWidget::initialPageSetCombox(CXuPlotSvr* service)
{
    ZrQtBlockSignalUtil blocker(d->pageSet);
    d->pageSet->clear();
    d->pageSet->addItem(zrUiText("IDS_VIEW_PROMPT3", QStringLiteral("当前")));
    d->pageSet->addItem(zrUiText("IDS_ZVBA_PROMPT202", QStringLiteral("替代")));
    const int row = service && service->useOverride() ? 1 : 0;
    d->pageSet->setCurrentIndex(row);
    d->pageSetupOverride->setEnabled(row != 0);
}

bool ZrQtExportWidget::isCurrentLayoutModelType()
{
    ZrDbObjectPointer<ZrDbLayout> layout(currentLayoutId(), ZrDb::kForRead);
    return layout && layout->modelType();
}

bool ZrQtExportWidget::getPlotSettingsId(ZrDbObjectId& id)
{
    ZrDbLayout* layout = nullptr;
    if (zrdbOpenObject(layout, currentLayoutId(), ZrDb::kForWrite) != Zr::eOk)
        return false;
    const int made = layout->createExtensionDictionary();
    if (made != Zr::eOk && made != Zr::eAlreadyInDb) {
        layout->close();
        return false;
    }
    ZrDbDictionary* dictionary = nullptr;
    if (zrdbOpenObject(dictionary, layout->extensionDictionary(), ZrDb::kForWrite) != Zr::eOk) {
        layout->close();
        return false;
    }
    bool found = dictionary->getAt(ZrString(kOverrideEntry), id) == Zr::eOk;
    if (!found) {
        auto* settings = new ZrDbPlotSettings(layout->modelType());
        settings->copyFrom(layout);
        found = dictionary->setAt(ZrString(kOverrideEntry), settings, id) == Zr::eOk;
        if (found)
            settings->close();
        else
            delete settings;
    }
    dictionary->close();
    layout->close();
    return found;
}

void ZrQtExportWidget::OnBnClickedButtonOptions()
{
    if (CXuPlotSvr* service = plotService()) {
        service->showPublishOptionsDialog(this);
        UpdateOptions(service);
    }
}

void ZrQtExportWidget::OnBnClickedButtonPlotStamp()
{
    if (CXuPlotSvr* service = plotService())
        service->showPlotStampDialog(this);
}

void ZrQtExportWidget::OnBnClickedButtonWindowPick()
{
    CXuPlotSvr* service = plotService();
    if (!service)
        return;
    // The panel's window is the file dialog: it makes way while the window is picked.
    auto* dialog = qobject_cast<ZrQtFileDialogImpl*>(window());
    ZrQtFileDialog* owner = dialog ? dialog->getParentWidget() : nullptr;
    if (owner)
        owner->beginEditorCommand();
    service->pickWindow(this);
    if (owner)
        owner->completeEditorCommand(true);
}

void ZrQtExportWidget::OnBnClickedButtonPageSetupOverride()
{
    CXuPlotSvr* service = plotService();
    ZrDbObjectId id;
    if (service && getPlotSettingsId(id))
        service->editPageSetupOverride(id, d->overrideKind, this);
}

void ZrQtExportWidget::OnBnClickedCheckPlotStamp()
{
    if (CXuPlotSvr* service = plotService())
        service->setPlotStamp(d->plotStamp->isChecked());
}

void ZrQtExportWidget::OnBnClickedCheckOpenInViewer()
{
    if (CXuPlotSvr* service = plotService())
        service->setOpenInViewer(d->openInViewer->isChecked());
}

void ZrQtExportWidget::OnComboxExportChange(int)
{
    CXuPlotSvr* service = plotService();
    if (!service)
        return;
    const int index = d->plotRange->currentIndex();
    d->windowPick->setEnabled(index == kWindowRange);
    service->setPlotRange(index, isCurrentLayoutModelType());
    if (index == kPageSetupRange) {
        {
            ZrQtBlockSignalUtil blocker(d->plotRange);
            d->plotRange->setCurrentIndex(0);
        }
        const bool useOverride = d->pageSet->currentIndex() != 0;
        service->setUseOverride(useOverride);
        d->pageSetupOverride->setEnabled(useOverride);
        d->pageSet->setEnabled(false);
        return;
    }
    d->pageSet->setEnabled(true);
    if (index == kWindowRange && service->needsWindowPick())
        OnBnClickedButtonWindowPick();
}

void ZrQtExportWidget::OnComboxPageSetChange(int)
{
    CXuPlotSvr* service = plotService();
    if (!service)
        return;
    const bool useOverride = d->pageSet->currentIndex() != 0;
    service->setUseOverride(useOverride);
    d->pageSetupOverride->setEnabled(useOverride);
}

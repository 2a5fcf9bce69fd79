#include "qt_lweightdialog.h"

#include "ZrQtUtilsFunc.h"
#include "zrglobaluireactor.h"
#include "zrlinewidthcombobox.h"
#include "zrpslineweightlist.h"
#include "zrqthelper.h"

#include "zrarbitdict.h"
#include "zrhostappservices.h"
#include "zrsystem.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStyle>
#include <QStyleFactory>
#include <QVBoxLayout>
#include <cmath>

namespace {

constexpr int kHelpServiceSlot = 1;
constexpr int kSliderMaximum = 18;
constexpr int kMillimetres = 1;
constexpr int kInches = 0;

// The slider runs in twentieths from 0.1 to 1.0.
int sliderValue(double scale) { return static_cast<int>(std::lround(scale * 20.0 - 2.0)); }
double scaleOf(int value) { return (value + 2) / 20.0; }

} // namespace

struct ZrQtLweightDlgImpl::Private
{
    ZrSmartPtr<CXuHostAppServices> host;
    // The working copies, written at OK.
    short lwunits = kMillimetres;
    bool lwdisplay = false;
    int celweight = ZrDb::kLnWtByLayer;
    int lwdefault = 25;
    double lwdispscale = 0.55;

    QRadioButton* millimetre = nullptr;
    QRadioButton* inch = nullptr;
    QCheckBox* display = nullptr;
    ZrQtLweightListWidget* list = nullptr;
    ZrLineWidthComboBox* defaultCombo = nullptr;
    QSlider* slider = nullptr;
    QLabel* current = nullptr;
};

ZrQtLweightDlgImpl::ZrQtLweightDlgImpl(ZrQtUIModalDialogBase* base, QWidget* parent, QFlags<Qt::WindowType> flags)
    : ZrQtModalDialogImpl<ZrQtLweightDlgImpl, QDialog>(base, parent, flags), d(new Private)
{
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowTitle(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_1", QStringLiteral("线宽设置")));
    buildContent();
}

ZrQtLweightDlgImpl::~ZrQtLweightDlgImpl() = default;

void ZrQtLweightDlgImpl::buildContent()
{
    auto* weights = new QGroupBox(zrUiText("IDS_OPM_NAME_STD_05", QStringLiteral("线宽")), this);
    d->list = new ZrQtLweightListWidget(weights);
    d->list->setObjectName(QStringLiteral("lweightList"));
    d->list->setMinimumSize(200, 300);
    (new QVBoxLayout(weights))->addWidget(d->list);

    auto* units = new QGroupBox(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_5", QStringLiteral("列出单位")), this);
    d->millimetre = new QRadioButton(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_2", QStringLiteral("毫米(mm)(&M)")), units);
    d->millimetre->setObjectName(QStringLiteral("millimetreRadio"));
    d->inch = new QRadioButton(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_3", QStringLiteral("英寸(in)(&I)")), units);
    d->inch->setObjectName(QStringLiteral("inchRadio"));
    auto* unitRow = new QHBoxLayout(units);
    unitRow->addWidget(d->millimetre);
    unitRow->addWidget(d->inch);

    d->display = new QCheckBox(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_4", QStringLiteral("显示线宽(&D)")), this);
    d->display->setObjectName(QStringLiteral("displayCheck"));
    d->display->setToolTip(zrUiText(
        "CMDSRES_IDD_DLG_LWEIGHTCMD_11",
        QStringLiteral("控制线宽是否在当前图形中显示。如果选择此选项，线宽将在模型空间和图纸空间中显示。也可以使用系统变量"
                       "LWDISPLAY设置“显示线宽”。当线宽以大于一个像素的宽度显示时重生成时间会加长。当前图形的线宽处于打开"
                       "状态时，如果发现性能下降，请清除“显示线宽”选项此选项不影响对象打印的方式。")));

    auto* defaultRow = new QHBoxLayout;
    defaultRow->addWidget(new QLabel(zrUiText("IDS_LAYTRANS_PROMPT53", QStringLiteral("默认")), this));
    d->defaultCombo = new ZrLineWidthComboBox(false, 0, this);
    d->defaultCombo->setObjectName(QStringLiteral("defaultCombo"));
    defaultRow->addWidget(d->defaultCombo, 1);

    auto* scale = new QGroupBox(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_6", QStringLiteral("调整显示比例")), this);
    d->slider = new QSlider(Qt::Horizontal, scale);
    d->slider->setObjectName(QStringLiteral("scaleSlider"));
    if (QStyle* fusion = QStyleFactory::create(QStringLiteral("Fusion"))) {
        fusion->setParent(d->slider);
        d->slider->setStyle(fusion);
    }
    d->slider->setRange(0, kSliderMaximum);
    d->slider->setSingleStep(1);
    d->slider->setPageStep(2);
    d->slider->setTickInterval(2);
    d->slider->setTickPosition(QSlider::TicksBelow);
    auto* scaleRow = new QHBoxLayout(scale);
    scaleRow->addWidget(new QLabel(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_8", QStringLiteral("最小")), scale));
    scaleRow->addWidget(d->slider, 1);
    scaleRow->addWidget(new QLabel(zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_9", QStringLiteral("最大")), scale));

    auto* settings = new QVBoxLayout;
    settings->addWidget(units);
    settings->addWidget(d->display);
    settings->addLayout(defaultRow);
    settings->addWidget(scale);
    settings->addStretch(1);

    auto* body = new QHBoxLayout;
    body->addWidget(weights, 1);
    body->addLayout(settings);

    d->current = new QLabel(this);
    d->current->setObjectName(QStringLiteral("currentLweightLabel"));
    d->current->setAccessibleName(zrUiText("IDS_QTUTILS_LWEIGHTDIALOG_0", QStringLiteral("当前线宽")));

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(zrUiText("IDS_STRING180", QStringLiteral("确定")), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("okButton"));
    ok->setDefault(true);
    QPushButton* cancel
        = buttons->addButton(zrUiText("IDS_STRING181", QStringLiteral("取消")), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cancelButton"));
    QPushButton* help
        = buttons->addButton(zrUiText("IDS_ZRAPP_CUSTMGR_PROMPT46", QStringLiteral("帮助(&H)")), QDialogButtonBox::HelpRole);
    help->setObjectName(QStringLiteral("helpButton"));

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(d->current, 1);
    bottom->addWidget(buttons);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addLayout(bottom);

    connect(d->millimetre, &QRadioButton::clicked, this, &ZrQtLweightDlgImpl::onMillimetreClicked);
    connect(d->inch, &QRadioButton::clicked, this, &ZrQtLweightDlgImpl::onInchClicked);
    connect(d->display, &QCheckBox::stateChanged, this, &ZrQtLweightDlgImpl::onDisplayStateChanged);
    connect(d->list, &QListWidget::currentItemChanged, this, &ZrQtLweightDlgImpl::onListCurrentItemChanged);
    connect(d->slider, &QSlider::valueChanged, this, &ZrQtLweightDlgImpl::onScaleChanged);
    connect(d->defaultCombo, &ZrLineWidthComboBox::lineWeightItemChanged, this,
            &ZrQtLweightDlgImpl::onDefaultWeightChanged);
    connect(ok, &QPushButton::clicked, this, &ZrQtLweightDlgImpl::onOkClicked);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(help, &QPushButton::clicked, this, &ZrQtLweightDlgImpl::onHelpClicked);
}

bool ZrQtLweightDlgImpl::onInitDialog(ZrJsonPtr param, ZrRxObjectPtr helper)
{
    d->host = ZrSmartPtr<CXuHostAppServices>(CXuHostAppServices::cast(helper.get()));
    if (!d->host)
        d->host = ZrSmartPtr<CXuHostAppServices>(new ZrRxObjectImpl<CXuHostAppServices>(), kZrAttach);

    d->lwunits = d->host->getLWUNITS();
    {
        ZrQtBlockSignalUtil millimetre(d->millimetre);
        ZrQtBlockSignalUtil inch(d->inch);
        if (d->lwunits == kMillimetres)
            d->millimetre->setChecked(true);
        else if (d->lwunits == kInches)
            d->inch->setChecked(true);
    }
    const bool inches = d->lwunits == kInches;
    d->celweight = d->host->getCELWEIGHT();
    updatelweightListWidget(inches);
    updateCurrLweight(inches, d->celweight);
    updatelweightCombo(inches);

    d->lwdisplay = d->host->getLWDISPLAY();
    {
        ZrQtBlockSignalUtil blocker(d->display);
        d->display->setChecked(d->lwdisplay);
    }
    d->lwdispscale = d->host->getLWDISPSCALE();
    {
        ZrQtBlockSignalUtil blocker(d->slider);
        d->slider->setValue(sliderValue(d->lwdispscale));
    }
    applyScale(d->lwdispscale);
    d->lwdefault = d->host->getLWDEFAULT();
    {
        ZrQtBlockSignalUtil blocker(d->defaultCombo);
        d->defaultCombo->setCurrentIndex(d->defaultCombo->getLineWidget(static_cast<ZrDb::LineWeight>(d->lwdefault)));
    }
    return ZrQtModalDialogImpl::onInitDialog(param, helper);
}

void ZrQtLweightDlgImpl::updatelweightListWidget(bool inches)
{
    ZrQtBlockSignalUtil blocker(d->list);
    d->list->clear();
    d->list->initListWidthCurLayout(inches);
    const int row = d->list->getLineWidget(static_cast<ZrDb::LineWeight>(d->celweight));
    d->list->setCurrentRow(row >= 0 ? row : 0);
}

void ZrQtLweightDlgImpl::updatelweightCombo(bool inches)
{
    d->defaultCombo->init(inches);
    ZrQtBlockSignalUtil blocker(d->defaultCombo);
    d->defaultCombo->setCurrentIndex(d->defaultCombo->getLineWidget(static_cast<ZrDb::LineWeight>(d->lwdefault)));
}

void ZrQtLweightDlgImpl::updateCurrLweight(bool, int)
{
    const QListWidgetItem* row = d->list->currentItem();
    const QString name = row ? row->text() : QString();
    QString format = zrUiText("IDS_ZRED_LWEIGHTDLG_PROMPT2", QStringLiteral("当前线宽: %s\""));
    d->current->setText(format.replace(QStringLiteral("%s"), name));
}

void ZrQtLweightDlgImpl::onMillimetreClicked()
{
    d->lwunits = kMillimetres;
    updatelweightListWidget(false);
    updatelweightCombo(false);
    updateCurrLweight(false, d->celweight);
}

void ZrQtLweightDlgImpl::onInchClicked()
{
    d->lwunits = kInches;
    updatelweightListWidget(true);
    updatelweightCombo(true);
    updateCurrLweight(true, d->celweight);
}

void ZrQtLweightDlgImpl::onDisplayStateChanged(int state) { d->lwdisplay = state != Qt::Unchecked; }

void ZrQtLweightDlgImpl::onListCurrentItemChanged(QListWidgetItem* current, QListWidgetItem* previous)
{
    if (!current || !previous)
        return;
    bool isWeight = false;
    const int weight = current->data(Qt::UserRole).toInt(&isWeight);
    if (!isWeight)
        return;
    d->celweight = weight;
    updateCurrLweight(d->lwunits == kInches, weight);
}

void ZrQtLweightDlgImpl::applyScale(double scale)
{
    const bool inches = d->lwunits == kInches;
    d->list->setLineweightScale(scale);
    updatelweightListWidget(inches);
    d->defaultCombo->setLineweightScale(scale);
    d->defaultCombo->updateListWidthCurlayout(inches);
}

void ZrQtLweightDlgImpl::onScaleChanged(int value)
{
    d->lwdispscale = scaleOf(value);
    applyScale(d->lwdispscale);
}

void ZrQtLweightDlgImpl::onDefaultWeightChanged(int index)
{
    const ZrDb::LineWeight weight = d->defaultCombo->GetLineWeight(index);
    // The rows that draw the default weight: the default row, and ByLayer.
    d->list->modifyItemLine(2, weight);
    d->list->modifyItemLine(0, weight);
    d->lwdefault = weight;
}

void ZrQtLweightDlgImpl::onOkClicked()
{
    d->host->setLWDISPLAY(d->lwdisplay);
    d->host->setLWUNITS(d->lwunits);
    d->host->setLWDEFAULT(d->lwdefault);
    d->host->setCELWEIGHT(d->celweight);
    d->host->setLWDISPSCALE(d->lwdispscale);
    // The same answers in the parameter object, for a caller that reads them there.
    if (m_param && m_param->isObject()) {
        m_param->SetDataB("LWDISPLAY", d->lwdisplay);
        m_param->SetDataI("LWUNITS", d->lwunits);
        m_param->SetDataI("LWDEFAULT", d->lwdefault);
        m_param->SetDataI("CELWEIGHT", d->celweight);
        m_param->SetDataD("LWDISPSCALE", d->lwdispscale);
    }
    endDialog(kZrDlgOk);
}

void ZrQtLweightDlgImpl::onHelpClicked()
{
    if (auto* help = CXuSysHelpSvr::cast(zr_arbitDict_getservice(kHelpServiceSlot).get()))
        help->help(ZrString(L"ZRAPP_ZRR/ZRAPP_ZRR/ZRR_LWEIGHT"));
}

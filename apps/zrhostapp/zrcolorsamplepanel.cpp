#include "zrcolorsamplepanel.h"

#include "ZrQtUtilsFunc.h"
#include "zrcolorbutton.h"

#include <QAction>
#include <QActionGroup>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

namespace {

constexpr int kSwapButtonSize = 24;
constexpr int kGradientWidth = 160;
constexpr int kGradientHeight = 72;

ZrCmColor indexColor(uint16_t index)
{
    ZrCmColor color;
    color.setColorMethod(ZrCmEntityColor::kByACI);
    color.setColorIndex(index);
    return color;
}

QColor channelsOf(const ZrCmColor& color) { return QColor(color.red(), color.green(), color.blue()); }

struct GradientStyle
{
    int mode;
    const char* text;
};

const GradientStyle kGradientStyles[] = {
    {ZrGradientColorPushButton::kLinear, "线性"},
    {ZrGradientColorPushButton::kLinearSecondInMiddle, "线性，颜色 2 居中"},
    {ZrGradientColorPushButton::kLinearFirstInMiddle, "线性，颜色 1 居中"},
    {ZrGradientColorPushButton::kRadialSecondCentred, "径向，颜色 2 在中心"},
    {ZrGradientColorPushButton::kRadialSecondNear, "径向，颜色 2 偏近"},
    {ZrGradientColorPushButton::kRadialSecondFar, "径向，颜色 2 偏远"},
    {ZrGradientColorPushButton::kRadialFirstCentred, "径向，颜色 1 在中心"},
    {ZrGradientColorPushButton::kRadialFirstNear, "径向，颜色 1 偏近"},
    {ZrGradientColorPushButton::kRadialFirstFar, "径向，颜色 1 偏远"},
};

const int kAngles[] = {0, 45, 90, 135, 180, 225, 270, 315};

} // namespace

struct ZrColorSamplePanel::Data
{
    ZrColorButtonWidget* first = nullptr;
    ZrColorButtonWidget* second = nullptr;
    ZrGradientColorPushButton* gradient = nullptr;
    ZrIconPushButton* centred = nullptr;
};

ZrColorSamplePanel::ZrColorSamplePanel(QWidget* parent) : QWidget(parent), d(std::make_unique<Data>())
{
    setObjectName(QStringLiteral("colorSamplePanel"));

    d->first = new ZrColorButtonWidget(this);
    d->first->setObjectName(QStringLiteral("sampleColor1"));
    d->first->setColor(indexColor(5));
    d->second = new ZrColorButtonWidget(this);
    d->second->setObjectName(QStringLiteral("sampleColor2"));
    d->second->setColor(indexColor(2));
    connect(d->first, &ZrColorButtonWidget::colorChanged, this, &ZrColorSamplePanel::followColors);
    connect(d->second, &ZrColorButtonWidget::colorChanged, this, &ZrColorSamplePanel::followColors);

    auto* swap = new ZrTransparentHoverButton(
        QIcon(zrutGetImageFullPath(QStringLiteral("colorsample/swap.svg"))), this);
    swap->setObjectName(QStringLiteral("swapColorsButton"));
    swap->setFixedSize(kSwapButtonSize, kSwapButtonSize);
    swap->setIconSize(swap->size());
    swap->setToolTip(QStringLiteral("交换两种颜色"));
    connect(swap, &QPushButton::clicked, this, &ZrColorSamplePanel::swapColors);

    d->gradient = new ZrGradientColorPushButton(this);
    d->gradient->setObjectName(QStringLiteral("sampleGradient"));
    d->gradient->setDoubleColor(true);
    d->gradient->setFixedSize(kGradientWidth, kGradientHeight);

    // The angles are the main menu, the styles the list in the right third.
    auto* style = new ZrMenuPushButton(this);
    style->setObjectName(QStringLiteral("gradientStyleButton"));
    style->setText(QStringLiteral("样式"));
    style->setToolTip(QStringLiteral("左侧：角度；右侧：渐变样式"));
    auto* styles = new QActionGroup(style);
    for (const GradientStyle& entry : kGradientStyles) {
        QAction* action = styles->addAction(QString::fromUtf8(entry.text));
        action->setCheckable(true);
        action->setChecked(entry.mode == d->gradient->getMode());
        connect(action, &QAction::triggered, this, [this, mode = entry.mode] { d->gradient->setMode(mode); });
        style->addMenu(action);
    }
    auto* angles = new QActionGroup(style);
    for (const int angle : kAngles) {
        QAction* action = style->mainMenu()->addAction(QStringLiteral("%1°").arg(angle));
        angles->addAction(action);
        action->setCheckable(true);
        action->setChecked(angle == d->gradient->getDegree());
        connect(action, &QAction::triggered, this, [this, angle] { d->gradient->setDegree(angle); });
    }

    d->centred = new ZrIconPushButton(this);
    d->centred->setObjectName(QStringLiteral("gradientCentredButton"));
    d->centred->setToolTip(QStringLiteral("居中渐变"));
    d->centred->setData(zrutGetImageFullPath(QStringLiteral("colorsample/gradient_shifted.svg")) + QLatin1Char('$')
                            + zrutGetImageFullPath(QStringLiteral("colorsample/gradient_centred.svg")),
                        false, QStringLiteral("normal$centred"), false);
    connect(d->centred, &QPushButton::clicked, this, &ZrColorSamplePanel::toggleCentred);

    auto* colors = new QFormLayout;
    colors->addRow(QStringLiteral("颜色 1"), d->first);
    colors->addRow(QStringLiteral("颜色 2"), d->second);
    auto* colorRow = new QHBoxLayout;
    colorRow->addLayout(colors, 1);
    colorRow->addWidget(swap, 0, Qt::AlignVCenter);
    auto* controls = new QHBoxLayout;
    controls->addWidget(style);
    controls->addWidget(d->centred);
    controls->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(colorRow);
    layout->addWidget(d->gradient, 0, Qt::AlignHCenter);
    layout->addLayout(controls);
    layout->addStretch();

    followColors();
}

ZrColorSamplePanel::~ZrColorSamplePanel() = default;

ZrColorButtonWidget* ZrColorSamplePanel::firstColor() const { return d->first; }

ZrColorButtonWidget* ZrColorSamplePanel::secondColor() const { return d->second; }

ZrGradientColorPushButton* ZrColorSamplePanel::gradient() const { return d->gradient; }

void ZrColorSamplePanel::followColors()
{
    d->gradient->setColor1(channelsOf(d->first->color()));
    d->gradient->setColor2(channelsOf(d->second->color()));
}

void ZrColorSamplePanel::swapColors()
{
    const ZrCmColor first = d->first->color();
    d->first->setColor(d->second->color());
    d->second->setColor(first);
    followColors();
}

void ZrColorSamplePanel::toggleCentred()
{
    const bool centred = !d->gradient->getMid();
    d->gradient->setMid(centred);
    d->centred->updateBtnStatus(centred ? QStringLiteral("centred") : QStringLiteral("normal"));
}

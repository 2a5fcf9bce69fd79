#include "uitruecolortab.h"

#include "ZrQtUtilsFunc.h"
#include "uicolorwidgets_p.h"

#include "zrgeometry.h"
#include "zrui.h"

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>

namespace {

// The mode the tab opens in, kept from one dialog to the next: 0 HSL, 1 RGB.
int colorMode = 0;

// A fraction of a channel as the tab rounds it wherever it converts.
int roundedChannel(double fraction) { return int(fraction * 255 + 0.5001); }

void focusAction(QWidget* owner, Qt::Key key, const std::function<void()>& slot)
{
    auto* action = new QAction(owner);
    action->setShortcuts({QKeySequence(key), QKeySequence(Qt::ALT | key)});
    QObject::connect(action, &QAction::triggered, owner, slot);
    owner->addAction(action);
}

// A label standing over its spin box.
QVBoxLayout* labelledSpinBox(const QString& text, QSpinBox* spin)
{
    auto* box = new QVBoxLayout;
    box->setSpacing(0);
    auto* label = new QLabel(text);
    label->setBuddy(spin);
    box->addWidget(label, 0, Qt::AlignLeft);
    box->addWidget(spin, 0, Qt::AlignLeft);
    return box;
}

QSpinBox* spinBox(const char* name, int maximum)
{
    auto* spin = new QSpinBox;
    spin->setObjectName(QLatin1String(name));
    spin->setRange(0, maximum);
    return spin;
}

// Markers are drawn in the text colour so that they read on the light and the dark look alike.
void drawMarker(QPainter& painter, const QWidget* widget, const QRect& rect)
{
    painter.setPen(widget->palette().color(QPalette::WindowText));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect);
}

} // namespace

struct ZrRGBSlider::Private
{
    short channels[3];
    CUR_COLOR curColor;
    int sliderPos = 2;
    int width;
    int height;
};

ZrRGBSlider::ZrRGBSlider(CUR_COLOR curColor, short red, short green, short blue, int width, int height,
                         QWidget* parent)
    : QWidget(parent), d(new Private{{red, green, blue}, curColor, 2, width, height})
{
    setFixedSize(width, height);
}

ZrRGBSlider::~ZrRGBSlider() = default;

void ZrRGBSlider::setRed(int red)
{
    d->channels[RED] = short(red);
    update();
}

void ZrRGBSlider::setGreen(int green)
{
    d->channels[GREEN] = short(green);
    update();
}

void ZrRGBSlider::setBlue(int blue)
{
    d->channels[BLUE] = short(blue);
    update();
}

void ZrRGBSlider::setPos(int value)
{
    if (value >= 256)
        return;
    d->sliderPos = int(value / 255.0 * (d->width - 4)) + 2;
    update();
}

int ZrRGBSlider::point2Value(QPoint point) const
{
    return std::clamp(int(double(point.x() - 2) / (d->width - 4) * 255), 0, 255);
}

int ZrRGBSlider::sliderPos() const { return d->sliderPos; }

void ZrRGBSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    short channels[3] = {d->channels[0], d->channels[1], d->channels[2]};
    for (int x = 2; x < d->width - 2; x += 3) {
        channels[d->curColor] = short((x - 2) * 255 / (d->width - 4));
        painter.fillRect(QRect(x, 2, 3, d->height - 4), QColor(channels[0], channels[1], channels[2]));
    }
    const int left = std::clamp(d->sliderPos - 1, 0, d->width - 3);
    const int right = std::min(d->sliderPos + 1, d->width - 1);
    drawMarker(painter, this, QRect(QPoint(left, 1), QPoint(right, d->height - 2)));
}

// A click moves the marker as a drag does.
void ZrRGBSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT sliderPosChanged(d->curColor, short(point2Value(event->pos())));
}

void ZrRGBSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        Q_EMIT sliderPosChanged(d->curColor, short(point2Value(event->pos())));
}

struct ZrHSLPallete::Private
{
    QWidget* hslWnd;
    int hue = 0;
    int saturation = 0;
    int crossX = 0;
    int crossY = 169;
    bool pressed = false;
    // The picture at the field's size; painting the field is then one copy of it.
    QPixmap field;
};

ZrHSLPallete::ZrHSLPallete(QWidget* hslWnd, QWidget* parent) : QWidget(parent), d(new Private)
{
    d->hslWnd = hslWnd;
    setFixedSize(186, 170);
}

ZrHSLPallete::~ZrHSLPallete() = default;

QImage ZrHSLPallete::fieldImage(const QSize& size)
{
    const QString hostImage = zrutGetImageFullPath(QStringLiteral("qtutils/TColor.bmp"), true);
    QImage image;
    if (!hostImage.isEmpty() && image.load(hostImage))
        return image;
    // Without the host's picture the field is drawn here: full luminance range at its middle.
    image = QImage(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const double saturation = 1.0 - double(y) / std::max(1, size.height() - 1);
        for (int x = 0; x < size.width(); ++x) {
            ZrGeVector3d rgb;
            zrdbConvertHslToRgb(ZrGeVector3d(x * 360.0 / size.width(), saturation, 0.5), rgb);
            line[x] = qRgb(roundedChannel(rgb.x), roundedChannel(rgb.y), roundedChannel(rgb.z));
        }
    }
    return image;
}

void ZrHSLPallete::setValue(short hue, short saturation)
{
    d->hue = hue;
    d->saturation = saturation;
    QPoint point;
    hsToPoint(hue, saturation, point);
    d->crossX = point.x();
    d->crossY = point.y();
    update();
}

void ZrHSLPallete::hsToPoint(short hue, short saturation, QPoint& point) const
{
    point = QPoint(hue * width() / 360, (100 - saturation) * height() / 100);
}

void ZrHSLPallete::pointToHS(const QPoint& point, int& hue, int& saturation) const
{
    if (point.x() >= width() || point.y() >= height())
        return;
    hue = std::clamp(int(point.x() * 360.0 / width()), 0, 360);
    saturation = std::clamp(int(100 - point.y() * 100.0 / height()), 0, 100);
}

int ZrHSLPallete::hue() const { return d->hue; }
int ZrHSLPallete::saturation() const { return d->saturation; }

void ZrHSLPallete::takePoint(const QPoint& point)
{
    d->crossX = point.x();
    d->crossY = point.y();
    pointToHS(point, d->hue, d->saturation);
    update();
}

void ZrHSLPallete::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    d->pressed = true;
    takePoint(event->pos());
    auto* hslWnd = qobject_cast<ZrHSLWnd*>(d->hslWnd);
    ZrTrueColorWnd* tab = hslWnd ? hslWnd->trueColorWnd() : nullptr;
    if (tab && !tab->pressSeen()) {
        tab->setFirstPress(true);
        tab->setPressSeen(true);
    }
    Q_EMIT hsValueChanged(d->hue, d->saturation);
}

// Dragged off the field, the last hue and saturation stay and are told again.
void ZrHSLPallete::mouseMoveEvent(QMouseEvent* event)
{
    if (!d->pressed)
        return;
    takePoint(event->pos());
    Q_EMIT hsValueChanged(d->hue, d->saturation);
}

void ZrHSLPallete::mouseReleaseEvent(QMouseEvent*) { d->pressed = false; }

void ZrHSLPallete::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The picture is scaled to the field once, smoothly, and copied as it is from then on.
    if (d->field.size() != size()) {
        const QImage picture = fieldImage(size());
        d->field = QPixmap(size());
        QPainter scaler(&d->field);
        drawSmoothPixmap(rect(), QPixmap::fromImage(picture), scaler);
    }
    painter.drawPixmap(0, 0, d->field);
    const int x = std::clamp(d->crossX, 0, width() - 1);
    const int y = std::clamp(d->crossY, 0, height() - 1);
    // The cross's two lines as one-pixel fills, the cheapest thing a painter draws.
    painter.fillRect(QRect(QPoint(std::max(0, x - 10), y), QPoint(std::min(width() - 1, x + 10), y)), Qt::black);
    painter.fillRect(QRect(QPoint(x, std::max(0, y - 10)), QPoint(x, std::min(height() - 1, y + 10))), Qt::black);
}

struct ZrColorLightWnd::Private
{
    int width;
    int height;
    int hue;
    int saturation;
    int sliderY = 2;

    // The height less one, which every position on the bar is measured against.
    int usable() const { return height - 1; }
};

ZrColorLightWnd::ZrColorLightWnd(int width, int height, int hue, int saturation, QWidget* parent)
    : QWidget(parent), d(new Private{width, height, hue, saturation, 2})
{
    setFixedSize(width, height);
}

ZrColorLightWnd::~ZrColorLightWnd() = default;

void ZrColorLightWnd::setValue(int hue, int saturation)
{
    d->hue = hue;
    d->saturation = saturation;
    update();
}

void ZrColorLightWnd::setSliderPos(int value)
{
    d->sliderY = int((1 - value / 100.0) * (d->usable() - 3) + 2);
    update();
}

int ZrColorLightWnd::point2Value(QPoint point) const
{
    const int value = int(100 - double(point.y() - 2) / (d->height - 4) * 100);
    if (value > 99)
        return 100;
    return std::max(value, 0);
}

int ZrColorLightWnd::sliderY() const { return d->sliderY; }

void ZrColorLightWnd::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int H = d->usable();
    for (int y = 2; y + 3 < H - 2; y += 3) {
        const double luminance = int((H - 2 - y) * (100.0 / (H - 4))) / 100.0;
        ZrGeVector3d rgb;
        zrdbConvertHslToRgb(ZrGeVector3d(d->hue, d->saturation / 100.0, luminance), rgb);
        const int r = roundedChannel(rgb.x);
        const int g = roundedChannel(rgb.y);
        const int b = roundedChannel(rgb.z);
        if (r > 255 || g > 255 || b > 255)
            continue;
        painter.fillRect(QRect(QPoint(2, y), QPoint(width() - 3, y + 2)), QColor(r, g, b));
    }
    int top = d->sliderY - 2;
    int bottom = d->sliderY + 2;
    if (top < 1) {
        top = 1;
        bottom = 5;
    } else if (bottom > d->height - 1) {
        top = d->height - 5;
        bottom = d->height - 1;
    }
    drawMarker(painter, this, QRect(QPoint(0, top), QPoint(width() - 1, bottom - 1)));
}

void ZrColorLightWnd::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT sliderPosChanged(point2Value(event->pos()));
}

void ZrColorLightWnd::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        Q_EMIT sliderPosChanged(point2Value(event->pos()));
}

struct ZrHSLWnd::Private
{
    ZrTrueColorWnd* tab;
    ZrHSLPallete* field = nullptr;
    ZrColorLightWnd* bar = nullptr;
    QSpinBox* hue = nullptr;
    QSpinBox* saturation = nullptr;
    QSpinBox* luminance = nullptr;
};

ZrHSLWnd::ZrHSLWnd(ZrTrueColorWnd* trueColorWnd, QWidget* parent) : QWidget(parent), d(new Private)
{
    d->tab = trueColorWnd;
    d->field = new ZrHSLPallete(this);
    d->field->setObjectName(QStringLiteral("ZrHSLPallete"));
    d->bar = new ZrColorLightWnd(30, 180, 0, 0);
    d->bar->setObjectName(QStringLiteral("ZrColorLightWnd"));
    d->hue = spinBox("hueSpinBox", 360);
    d->saturation = spinBox("saturationSpinBox", 100);
    d->luminance = spinBox("luminanceSpinBox", 100);
    // 45 is the narrowest they get; the layout widens them to their widest value in their font, which
    // 45 does not hold at common font sizes.
    for (QSpinBox* spin : {d->hue, d->saturation, d->luminance})
        spin->setMinimumWidth(45);
    d->luminance->setValue(100);
    d->bar->setSliderPos(100);

    auto* hueAndSaturation = new QHBoxLayout;
    hueAndSaturation->addLayout(
        labelledSpinBox(zrUiText("ZRED_IDD_PROPPAGE_COLORTRUE_1", QStringLiteral("色调(&U):")), d->hue));
    hueAndSaturation->addStretch(1);
    hueAndSaturation->addLayout(
        labelledSpinBox(zrUiText("ZRED_IDD_PROPPAGE_COLORTRUE_2", QStringLiteral("饱和度(&S):")), d->saturation));
    hueAndSaturation->addStretch(2);
    auto* pictures = new QHBoxLayout;
    pictures->addWidget(d->field);
    pictures->addWidget(d->bar);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(1, 1, 1, 1);
    grid->setVerticalSpacing(20);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 2);
    grid->addLayout(hueAndSaturation, 0, 0);
    grid->addLayout(
        labelledSpinBox(zrUiText("ZRED_IDD_PROPPAGE_COLORTRUE_3", QStringLiteral("亮度(&L):")), d->luminance), 0, 1);
    grid->addLayout(pictures, 1, 0, 1, 2);

    connect(d->field, &ZrHSLPallete::hsValueChanged, this, &ZrHSLWnd::slot_hsValueChanged);
    connect(d->hue, QOverload<int>::of(&QSpinBox::valueChanged), this, &ZrHSLWnd::slot_hsSpinboxValueChanged);
    connect(d->saturation, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &ZrHSLWnd::slot_hsSpinboxValueChanged);
    connect(d->luminance, QOverload<int>::of(&QSpinBox::valueChanged), this, &ZrHSLWnd::slot_lightChanged);
    connect(d->bar, &ZrColorLightWnd::sliderPosChanged, this, &ZrHSLWnd::slot_lightChanged);

    focusAction(this, Qt::Key_U, [this] { slot_KeyU_clicked(); });
    focusAction(this, Qt::Key_S, [this] { slot_KeyS_clicked(); });
    focusAction(this, Qt::Key_L, [this] { slot_KeyL_clicked(); });
}

ZrHSLWnd::~ZrHSLWnd() = default;

ZrTrueColorWnd* ZrHSLWnd::trueColorWnd() const { return d->tab; }

void ZrHSLWnd::freshData(int h, int s, int l, bool all)
{
    {
        const QSignalBlocker quiet(d->luminance);
        d->luminance->setValue(l);
    }
    d->bar->setValue(h, s);
    d->bar->setSliderPos(l);
    if (!all)
        return;
    h = std::clamp(h, 0, 360);
    s = std::clamp(s, 0, 100);
    const QSignalBlocker quietHue(d->hue);
    const QSignalBlocker quietSaturation(d->saturation);
    d->hue->setValue(h);
    d->saturation->setValue(s);
    d->field->setValue(short(h), short(s));
}

void ZrHSLWnd::emitColor()
{
    short r = 0;
    short g = 0;
    short b = 0;
    HSLtoRGB(short(d->hue->value()), short(d->saturation->value()), short(d->luminance->value()), r, g, b);
    Q_EMIT colorChanged(r, g, b);
}

// A first press on the field from white or black would only show white or black again: the
// luminance goes to the middle, unless the user has set it.
void ZrHSLWnd::slot_hsValueChanged(int hue, int saturation)
{
    {
        const QSignalBlocker quietHue(d->hue);
        const QSignalBlocker quietSaturation(d->saturation);
        d->hue->setValue(hue);
        d->saturation->setValue(saturation);
    }
    d->bar->setValue(hue, saturation);
    const int luminance = d->luminance->value();
    if (d->tab && (luminance == 0 || luminance == 100) && d->tab->firstPress() && !d->tab->lightTouched()) {
        {
            const QSignalBlocker quiet(d->luminance);
            d->luminance->setValue(50);
        }
        d->bar->setSliderPos(50);
        d->tab->setFirstPress(false);
    }
    emitColor();
}

void ZrHSLWnd::slot_hsSpinboxValueChanged(int)
{
    const int hue = d->hue->value();
    const int saturation = d->saturation->value();
    d->bar->setValue(hue, saturation);
    emitColor();
    if (d->field->hue() != hue || d->field->saturation() != saturation)
        d->field->setValue(short(hue), short(saturation));
}

void ZrHSLWnd::slot_lightChanged(int value)
{
    if (d->tab)
        d->tab->setLightTouched(true);
    {
        const QSignalBlocker quiet(d->luminance);
        d->luminance->setValue(value);
    }
    d->bar->setSliderPos(value);
    emitColor();
}

void ZrHSLWnd::slot_KeyU_clicked() { d->hue->setFocus(Qt::ShortcutFocusReason); }
void ZrHSLWnd::slot_KeyS_clicked() { d->saturation->setFocus(Qt::ShortcutFocusReason); }
void ZrHSLWnd::slot_KeyL_clicked() { d->luminance->setFocus(Qt::ShortcutFocusReason); }

struct ZrRGBWnd::Private
{
    QSpinBox* spins[3] = {};
    ZrRGBSlider* sliders[3] = {};
};

ZrRGBWnd::ZrRGBWnd(QWidget* parent) : QWidget(parent), d(new Private)
{
    struct Channel
    {
        const char* key;
        const char* text;
        const char* spinName;
        const char* sliderName;
    };
    static const Channel channels[3] = {
        {"ZRED_IDD_PROPPAGE_COLORTRUE_4", "红(&R):", "redSpinBox", "redSlider"},
        {"ZRED_IDD_PROPPAGE_COLORTRUE_5", "绿(&G):", "greenSpinBox", "greenSlider"},
        {"ZRED_IDD_PROPPAGE_COLORTRUE_6", "蓝(&B):", "blueSpinBox", "blueSlider"},
    };
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 3; ++i) {
        QSpinBox* spin = spinBox(channels[i].spinName, 255);
        spin->setFixedHeight(18);
        auto* slider = new ZrRGBSlider(ZrRGBSlider::CUR_COLOR(i), 50, 23, 56, 210, 23);
        slider->setObjectName(QLatin1String(channels[i].sliderName));
        auto* label = new QLabel(zrUiText(channels[i].key, QString::fromUtf8(channels[i].text)));
        label->setBuddy(spin);
        column->addWidget(label, 0, Qt::AlignLeft);
        column->addWidget(spin, 0, Qt::AlignLeft);
        column->addWidget(slider);
        connect(slider, &ZrRGBSlider::sliderPosChanged, this, &ZrRGBWnd::slot_RGBSliderChanged);
        connect(spin, QOverload<int>::of(&QSpinBox::valueChanged), this,
                [this, i](int value) { onSpinBoxChanged(i, value); });
        d->spins[i] = spin;
        d->sliders[i] = slider;
    }
    focusAction(this, Qt::Key_R, [this] { slot_keyR_triggered(); });
    focusAction(this, Qt::Key_G, [this] { slot_keyG_triggered(); });
    focusAction(this, Qt::Key_B, [this] { slot_keyB_triggered(); });
}

ZrRGBWnd::~ZrRGBWnd() = default;

void ZrRGBWnd::setChannels(int red, int green, int blue)
{
    const int values[3] = {red, green, blue};
    for (int i = 0; i < 3; ++i) {
        const QSignalBlocker quiet(d->spins[i]);
        d->spins[i]->setValue(values[i]);
        d->sliders[i]->setRed(red);
        d->sliders[i]->setGreen(green);
        d->sliders[i]->setBlue(blue);
        d->sliders[i]->setPos(values[i]);
    }
}

// The spin box speaks for its channel, so a slider's value goes through it.
void ZrRGBWnd::slot_RGBSliderChanged(ZrRGBSlider::CUR_COLOR curColor, short value)
{
    d->spins[curColor]->setValue(value);
}

void ZrRGBWnd::onSpinBoxChanged(int channel, int value)
{
    for (ZrRGBSlider* slider : d->sliders) {
        switch (channel) {
        case ZrRGBSlider::RED: slider->setRed(value); break;
        case ZrRGBSlider::GREEN: slider->setGreen(value); break;
        default: slider->setBlue(value); break;
        }
    }
    d->sliders[channel]->setPos(value);
    switch (channel) {
    case ZrRGBSlider::RED: Q_EMIT redColorChanged(value); break;
    case ZrRGBSlider::GREEN: Q_EMIT greenColorChanged(value); break;
    default: Q_EMIT blueColorChanged(value); break;
    }
}

void ZrRGBWnd::slot_keyR_triggered() { d->spins[ZrRGBSlider::RED]->setFocus(Qt::ShortcutFocusReason); }
void ZrRGBWnd::slot_keyG_triggered() { d->spins[ZrRGBSlider::GREEN]->setFocus(Qt::ShortcutFocusReason); }
void ZrRGBWnd::slot_keyB_triggered() { d->spins[ZrRGBSlider::BLUE]->setFocus(Qt::ShortcutFocusReason); }

struct ZrTrueColorWnd::Private
{
    QDialog* dialog;
    ZrHSLWnd* hslWnd = nullptr;
    ZrRGBWnd* rgbWnd = nullptr;
    ZrColorLineEdit* line = nullptr;
    QComboBox* mode = nullptr;
    ZrUiColorResultWidget* result = nullptr;
    QHBoxLayout* outer = nullptr;
    QVBoxLayout* left = nullptr;
    QLabel* channelLabels[3] = {};
    ZrCmColor* newColor = nullptr;
    ZrCmColor* oldColor = nullptr;
    int channels[3] = {255, 255, 255};
    bool firstPress = false;
    bool pressSeen = false;
    bool lightTouched = false;

    void channelsToHsl(int& h, int& s, int& l) const
    {
        short hue = 0;
        short saturation = 0;
        short luminance = 0;
        RGBtoHSL(short(channels[0]), short(channels[1]), short(channels[2]), hue, saturation, luminance);
        h = hue;
        s = saturation;
        l = luminance;
    }
};

ZrTrueColorWnd::ZrTrueColorWnd(QDialog* dialog, QWidget* parent) : ZrColorWidgetBase(parent), d(new Private)
{
    d->dialog = dialog;
    setObjectName(QStringLiteral("ZrTrueColorWnd"));
    init();
}

ZrTrueColorWnd::~ZrTrueColorWnd() = default;

void ZrTrueColorWnd::init()
{
    d->line = new ZrColorLineEdit;
    d->line->setObjectName(QStringLiteral("trueColorLineEdit"));
    d->line->setText(QStringLiteral("255,255,255"));
    auto* lineLabel = new QLabel(zrUiText("CMDSRES_IDD_DIALOG_EATTEDIT3_3", QStringLiteral("颜色(&C):")));
    lineLabel->setBuddy(d->line);

    d->mode = new QComboBox;
    d->mode->setObjectName(QStringLiteral("colorModeCombo"));
    d->mode->addItems({QStringLiteral("HSL"), QStringLiteral("RGB")});
    auto* modeLabel = new QLabel(zrUiText("ZRED_IDD_PROPPAGE_COLORTRUE_7", QStringLiteral("颜色模式(&M):")));
    modeLabel->setBuddy(d->mode);
    auto* savedAs = new QLabel(zrUiText("ZRED_IDD_PROPPAGE_COLORTRUE_8", QStringLiteral("真彩色保存为RGB:")));
    savedAs->setWordWrap(true);

    d->result = new ZrUiColorResultWidget;
    connect(d->result, &ZrUiColorResultWidget::newColorDoubleClicked, this, &ZrTrueColorWnd::onResultDoubleClicked);
    connect(d->result, &ZrUiColorResultWidget::oldColorDoubleClicked, this,
            &ZrTrueColorWnd::onOldColorDoubleClicked);

    d->left = new QVBoxLayout;
    d->left->setSpacing(20);
    if (colorMode == 1) {
        d->rgbWnd = new ZrRGBWnd;
        d->left->addWidget(d->rgbWnd);
    } else {
        d->hslWnd = new ZrHSLWnd(this);
        d->left->addWidget(d->hslWnd);
    }
    auto* lineRow = new QHBoxLayout;
    lineRow->addWidget(lineLabel);
    lineRow->addWidget(d->line);
    lineRow->addStretch();
    d->left->addLayout(lineRow);

    auto* right = new QVBoxLayout;
    right->addWidget(modeLabel);
    right->addWidget(d->mode);
    right->addWidget(savedAs);
    static const char* const labelNames[3] = {"trueRedLabel", "trueGreenLabel", "trueBlueLabel"};
    for (int i = 0; i < 3; ++i) {
        d->channelLabels[i] = new QLabel;
        d->channelLabels[i]->setObjectName(QLatin1String(labelNames[i]));
        right->addWidget(d->channelLabels[i]);
    }
    right->addStretch();
    right->addWidget(d->result, 0, Qt::AlignRight);
    refreshChannelLabels(false);

    d->outer = new QHBoxLayout(this);
    d->outer->addLayout(d->left, 2);
    d->outer->addLayout(right, 3);

    d->mode->setCurrentIndex(colorMode);
    connect(d->mode, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ZrTrueColorWnd::slot_switchColorMode);
    if (d->hslWnd)
        connect(d->hslWnd, &ZrHSLWnd::colorChanged, this, &ZrTrueColorWnd::onColorChanged);
    if (d->rgbWnd) {
        connect(d->rgbWnd, &ZrRGBWnd::redColorChanged, this, &ZrTrueColorWnd::slot_redColorChanged);
        connect(d->rgbWnd, &ZrRGBWnd::greenColorChanged, this, &ZrTrueColorWnd::slot_greenColorChanged);
        connect(d->rgbWnd, &ZrRGBWnd::blueColorChanged, this, &ZrTrueColorWnd::slot_blueColorChanged);
    }

    focusAction(this, Qt::Key_C, [this] { slot_KeyC_clicked(); });
    focusAction(this, Qt::Key_M, [this] { slot_KeyM_clicked(); });
}

void ZrTrueColorWnd::initializeData(ZrCmColor* newColor, ZrCmColor* oldColor)
{
    d->newColor = newColor;
    d->oldColor = oldColor;
    if (newColor)
        getRgb(newColor, d->channels[0], d->channels[1], d->channels[2]);
    d->result->init(newColor, oldColor);
    if (d->hslWnd) {
        int h = 0;
        int s = 0;
        int l = 0;
        d->channelsToHsl(h, s, l);
        d->hslWnd->freshData(h, s, l, true);
    } else {
        d->rgbWnd->setChannels(d->channels[0], d->channels[1], d->channels[2]);
    }
}

ZrColorLineEdit* ZrTrueColorWnd::getColorLineEdit() const { return d->line; }

void ZrTrueColorWnd::updateColor(bool all)
{
    if (d->newColor)
        getRgb(d->newColor, d->channels[0], d->channels[1], d->channels[2]);
    else
        std::fill(std::begin(d->channels), std::end(d->channels), 255);
    int h = 0;
    int s = 0;
    int l = 0;
    d->channelsToHsl(h, s, l);
    if (all && d->rgbWnd)
        d->rgbWnd->setChannels(d->channels[0], d->channels[1], d->channels[2]);
    else if (d->hslWnd)
        d->hslWnd->freshData(h, s, l, all);
    // Whatever the tab was given, it hands back the plain colour it shows.
    if (d->newColor) {
        d->newColor->setRGB(uint8_t(d->channels[0]), uint8_t(d->channels[1]), uint8_t(d->channels[2]));
        d->newColor->setNames(L"", L"");
    }
    d->line->setColor(d->newColor);
    d->result->FreshOldColor();
    d->result->FreshNewColor();
    refreshChannelLabels(true);
}

void ZrTrueColorWnd::refreshChannelLabels(bool afterUpdate)
{
    for (int i = 0; i < 3; ++i)
        d->channelLabels[i]->setText(channelLabelText(i, d->channels[i], !afterUpdate));
}

// Three decimal numbers separated by commas; each is cut to 8 bits, so 300 reads as 44.
bool ZrTrueColorWnd::checkvalue()
{
    if (!d->newColor)
        return true;
    const QString text = d->line->text();
    if (text == ZrColorLineEdit::getColorText(*d->newColor))
        return true;
    const QStringList parts = text.split(QLatin1Char(','), Qt::KeepEmptyParts);
    uint values[3] = {};
    bool valid = parts.size() == 3;
    for (int i = 0; valid && i < 3; ++i)
        values[i] = parts[i].toUInt(&valid, 10);
    if (!valid) {
        const QString message =
            zrUiText("IDS_ZRED_UICOLORTRUETAB_PROMPT1", QStringLiteral("不是有效的真彩色值！"));
        ZrUiMessageBox(ZrString(), ZrString(message), 0, window());
        return false;
    }
    d->newColor->setRGB(uint8_t(values[0]), uint8_t(values[1]), uint8_t(values[2]));
    d->newColor->setNames(L"", L"");
    return true;
}

bool ZrTrueColorWnd::firstPress() const { return d->firstPress; }
void ZrTrueColorWnd::setFirstPress(bool on) { d->firstPress = on; }
bool ZrTrueColorWnd::pressSeen() const { return d->pressSeen; }
void ZrTrueColorWnd::setPressSeen(bool on) { d->pressSeen = on; }
bool ZrTrueColorWnd::lightTouched() const { return d->lightTouched; }
void ZrTrueColorWnd::setLightTouched(bool on) { d->lightTouched = on; }

// Only one mode window exists at a time; the new one shows the channels the old one had.
void ZrTrueColorWnd::slot_switchColorMode(int index)
{
    d->mode->clearFocus();
    QWidget* before = nullptr;
    QWidget* after = nullptr;
    if (index == 0) {
        colorMode = 0;
        if (d->hslWnd)
            return;
        d->hslWnd = new ZrHSLWnd(this);
        int h = 0;
        int s = 0;
        int l = 0;
        d->channelsToHsl(h, s, l);
        d->hslWnd->freshData(h, s, l, true);
        connect(d->hslWnd, &ZrHSLWnd::colorChanged, this, &ZrTrueColorWnd::onColorChanged);
        before = d->rgbWnd;
        after = d->hslWnd;
        d->rgbWnd = nullptr;
    } else {
        colorMode = 1;
        if (d->rgbWnd)
            return;
        d->rgbWnd = new ZrRGBWnd;
        d->rgbWnd->setChannels(d->channels[0], d->channels[1], d->channels[2]);
        connect(d->rgbWnd, &ZrRGBWnd::redColorChanged, this, &ZrTrueColorWnd::slot_redColorChanged);
        connect(d->rgbWnd, &ZrRGBWnd::greenColorChanged, this, &ZrTrueColorWnd::slot_greenColorChanged);
        connect(d->rgbWnd, &ZrRGBWnd::blueColorChanged, this, &ZrTrueColorWnd::slot_blueColorChanged);
        before = d->hslWnd;
        after = d->rgbWnd;
        d->hslWnd = nullptr;
    }
    delete d->left->replaceWidget(before, after);
    delete before;
    // At once, not on the layout's next pass, so that the user can go on into it without a pause.
    after->show();
}

void ZrTrueColorWnd::onColorChanged(int red, int green, int blue)
{
    d->channels[0] = red;
    d->channels[1] = green;
    d->channels[2] = blue;
    if (d->newColor) {
        d->newColor->setRGB(uint8_t(red), uint8_t(green), uint8_t(blue));
        d->newColor->setNames(L"", L"");
    }
    updateColor(false);
}

void ZrTrueColorWnd::takeChannel(int channel, int value)
{
    int channels[3] = {d->channels[0], d->channels[1], d->channels[2]};
    channels[channel] = value;
    onColorChanged(channels[0], channels[1], channels[2]);
}

void ZrTrueColorWnd::slot_redColorChanged(int value) { takeChannel(0, value); }
void ZrTrueColorWnd::slot_greenColorChanged(int value) { takeChannel(1, value); }
void ZrTrueColorWnd::slot_blueColorChanged(int value) { takeChannel(2, value); }

// Only an accepted dialog is closed: one that refused the typed colour stays open for a correction.
void ZrTrueColorWnd::onResultDoubleClicked()
{
    d->dialog->accept();
    if (d->dialog->result() == QDialog::Accepted)
        d->dialog->close();
}

void ZrTrueColorWnd::onOldColorDoubleClicked() { updateColor(true); }

void ZrTrueColorWnd::slot_KeyC_clicked()
{
    d->line->setFocus(Qt::ShortcutFocusReason);
    d->line->selectAll();
}

void ZrTrueColorWnd::slot_KeyM_clicked() { d->mode->setFocus(Qt::ShortcutFocusReason); }

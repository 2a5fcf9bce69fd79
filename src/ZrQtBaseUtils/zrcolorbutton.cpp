#include "zrcolorbutton.h"

#include "qt_colordialog.h"

#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QLinearGradient>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QRadialGradient>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QtMath>

namespace {

constexpr int kColorWidgetHeight = 25;
constexpr int kInnerButtonHeight = 20;
const QColor kFrameHovered(0, 120, 215);
const QColor kFrame(191, 191, 191);
const QColor kActiveFrame(0, 120, 215);
const QColor kActiveFill(229, 241, 251);
// Room around the gradient inside the button.
constexpr int kGradientInset = 4;

QColor channelsOf(const ZrCmColor& color) { return QColor(color.red(), color.green(), color.blue()); }

} // namespace

struct ZrColorButtonWidget::Private
{
    unsigned viewStyle = 0;
    std::shared_ptr<QPushButton> innerButton;
    ZrCmColor color;
    bool hovered = false;
    bool showFrame = true;
};

ZrColorButtonWidget::ZrColorButtonWidget(QWidget* parent) : QWidget(parent), d(std::make_unique<Private>())
{
    setFixedHeight(kColorWidgetHeight);
    initBtn();
}

// The record goes first and with it the inner button, which leaves this widget's children then.
ZrColorButtonWidget::~ZrColorButtonWidget() = default;

void ZrColorButtonWidget::initBtn()
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch();
    d->innerButton = std::make_shared<QPushButton>(QStringLiteral("..."));
    d->innerButton->setObjectName(QStringLiteral("colorButtonMore"));
    d->innerButton->setFixedSize(d->innerButton->fontMetrics().horizontalAdvance(d->innerButton->text()) + 5,
                                 kInnerButtonHeight);
    layout->addWidget(d->innerButton.get(), 0, Qt::AlignVCenter);
    connect(d->innerButton.get(), &QPushButton::clicked, this, &ZrColorButtonWidget::slot_onInnerButtonClicked);
}

void ZrColorButtonWidget::setViewStyle(unsigned style) { d->viewStyle = style; }

unsigned ZrColorButtonWidget::viewStyle() const { return d->viewStyle; }

void ZrColorButtonWidget::setColor(ZrCmColor color)
{
    d->color = color;
    update();
}

ZrCmColor ZrColorButtonWidget::color() const { return d->color; }

void ZrColorButtonWidget::setShowFrame(bool show)
{
    d->showFrame = show;
    update();
}

bool ZrColorButtonWidget::showFrame() const { return d->showFrame; }

QPushButton* ZrColorButtonWidget::innerButton() const { return d->innerButton.get(); }

QPixmap ZrColorButtonWidget::getColorPixmapWithBorder(int w, int h, const QColor& color) const
{
    QPixmap pixmap(w, h);
    pixmap.fill(color);
    QPainter painter(&pixmap);
    painter.setPen(QPen(Qt::black, 0.5));
    painter.drawRect(QRectF(QPointF(0, 0), QPointF(w - 2, h - 2)));
    return pixmap;
}

void ZrColorButtonWidget::slot_onInnerButtonClicked(bool)
{
    const std::optional<ZrCmColor> chosen = ZrQtColorDialog::chooseColor(d->color, this);
    if (!chosen)
        return;
    d->color = *chosen;
    Q_EMIT colorChanged();
    update();
}

void ZrColorButtonWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (d->showFrame)
        painter.setPen(QPen(d->hovered ? kFrameHovered : kFrame, 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    else
        painter.setPen(Qt::NoPen);
    painter.setBrush(channelsOf(d->color));
    painter.drawRect(QRectF(QPointF(0, 0), QPointF(width() - 1, height() - 1)));
}

void ZrColorButtonWidget::enterEvent(QEvent* event)
{
    d->hovered = true;
    update();
    QWidget::enterEvent(event);
}

void ZrColorButtonWidget::leaveEvent(QEvent* event)
{
    d->hovered = false;
    update();
    QWidget::leaveEvent(event);
}

void ZrColorButtonWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) {
        QWidget::mouseDoubleClickEvent(event);
        return;
    }
    slot_onInnerButtonClicked(false);
}

struct ZrTransparentHoverButton::Private
{
    bool hovered = false;
    bool pressed = false;
    QColor hoverColor;
};

ZrTransparentHoverButton::ZrTransparentHoverButton(const QIcon& icon, QWidget* parent)
    : QPushButton(parent), d(std::make_unique<Private>())
{
    setObjectName(QStringLiteral("ZrTransparentHoverButton"));
    setFlat(true);
    setFocusPolicy(Qt::NoFocus);
    setIcon(icon);
    setIconSize(size());
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    d->hoverColor = QApplication::style()->standardPalette().color(QPalette::Highlight);
}

ZrTransparentHoverButton::~ZrTransparentHoverButton() = default;

void ZrTransparentHoverButton::setHoverColor(const QColor& color)
{
    d->hoverColor = color;
    update();
}

QColor ZrTransparentHoverButton::hoverColor() const { return d->hoverColor; }

void ZrTransparentHoverButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = palette().color(QPalette::Light);
    if (d->pressed)
        fill = palette().color(QPalette::Highlight);
    else if (d->hovered)
        fill = d->hoverColor;
    painter.fillRect(rect(), fill);
    const QPixmap pixmap = icon().pixmap(icon().actualSize(iconSize()));
    const QSizeF shown = QSizeF(pixmap.size()) / pixmap.devicePixelRatioF();
    painter.drawPixmap(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), pixmap);
}

void ZrTransparentHoverButton::enterEvent(QEvent* event)
{
    d->hovered = true;
    update();
    QPushButton::enterEvent(event);
}

void ZrTransparentHoverButton::leaveEvent(QEvent* event)
{
    d->hovered = false;
    update();
    QPushButton::leaveEvent(event);
}

void ZrTransparentHoverButton::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        d->pressed = true;
        update();
    }
    QPushButton::mousePressEvent(event);
}

void ZrTransparentHoverButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        d->pressed = false;
        update();
    }
    QPushButton::mouseReleaseEvent(event);
}

struct ZrMenuPushButton::Private
{
    QMenu* actionMenu = nullptr;
    QMenu* mainMenu = nullptr;
    bool onActionArea = false;
    float splitX = 0;
};

ZrMenuPushButton::ZrMenuPushButton(QWidget* parent) : QPushButton(parent), d(std::make_unique<Private>()) {}

ZrMenuPushButton::~ZrMenuPushButton() = default;

void ZrMenuPushButton::addMenu(QAction* action)
{
    if (!d->actionMenu) {
        d->actionMenu = new QMenu(this);
        d->actionMenu->setObjectName(QStringLiteral("actionMenu"));
        d->mainMenu = new QMenu(this);
        d->mainMenu->setObjectName(QStringLiteral("mainMenu"));
        setMenu(d->mainMenu);
    }
    d->actionMenu->addAction(action);
}

QMenu* ZrMenuPushButton::mainMenu() const { return d->mainMenu; }

QMenu* ZrMenuPushButton::actionMenu() const { return d->actionMenu; }

void ZrMenuPushButton::mousePressEvent(QMouseEvent* event)
{
    // The split is fixed at the first press, as the button is laid out by then.
    if (d->splitX == 0)
        d->splitX = 2 * (width() / 3.0f);
    if (d->actionMenu) {
        d->onActionArea = event->pos().x() >= d->splitX;
        QMenu* wanted = d->onActionArea ? d->actionMenu : d->mainMenu;
        if (menu() != wanted)
            setMenu(wanted);
    }
    QPushButton::mousePressEvent(event);
}

struct ZrIconPushButton::Private
{
    bool twoRows = false;
    QString imagePaths;
    QString statusNames;
    QString currentStatus = QStringLiteral("normal");
    bool flag = false;
    QImage image;
};

ZrIconPushButton::ZrIconPushButton(QWidget* parent) : QPushButton(parent), d(std::make_unique<Private>()) {}

ZrIconPushButton::~ZrIconPushButton() = default;

void ZrIconPushButton::setData(const QString& paths, bool twoRows, QString statuses, bool flag)
{
    d->imagePaths = paths;
    d->twoRows = twoRows;
    d->statusNames = std::move(statuses);
    d->flag = flag;
    updateIcon();
}

bool ZrIconPushButton::dataFlag() const { return d->flag; }

void ZrIconPushButton::updateIcon()
{
    const QStringList paths = d->imagePaths.split(QLatin1Char('$'));
    const int position = d->statusNames.split(QLatin1Char('$')).indexOf(d->currentStatus);
    if (position < 0 || position >= paths.size())
        return;
    const QString& path = paths.at(position);
    // A missing or unreadable file reads as a null image.
    const QImage image(path);
    if (image.isNull())
        return;
    d->image = image;
    setIconSize(image.size());
    setIcon(QIcon(path));
    const int height = image.height() + 4;
    setFixedSize(image.width() + 4, d->twoRows ? 2 * height : height);
}

void ZrIconPushButton::updateBtnStatus(QString status)
{
    d->currentStatus = std::move(status);
    updateIcon();
}

QString ZrIconPushButton::currentStatus() const { return d->currentStatus; }

void ZrIconPushButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.state &= ~(QStyle::State_Sunken | QStyle::State_On | QStyle::State_MouseOver);
    painter.drawControl(QStyle::CE_PushButton, option);
}

struct ZrGradientColorPushButton::Private
{
    QColor color1;
    QColor color2;
    bool mid = false;
    bool doubleColor = false;
    qint32 degree = 0;
    qint32 scroll = 0;
    qint32 mode = kLinear;
    bool active = false;
    bool showColor = false;
};

ZrGradientColorPushButton::ZrGradientColorPushButton(QWidget* parent)
    : ZrIconPushButton(parent), d(std::make_unique<Private>())
{
    setData(QStringLiteral("normal"), false, QString(), true);
}

ZrGradientColorPushButton::~ZrGradientColorPushButton() = default;

void ZrGradientColorPushButton::setColor1(const QColor& color)
{
    d->color1 = color;
    update();
}

QColor ZrGradientColorPushButton::getColor1() const { return d->color1; }

void ZrGradientColorPushButton::setColor2(const QColor& color)
{
    d->color2 = color;
    update();
}

QColor ZrGradientColorPushButton::getColor2() const { return d->color2; }

void ZrGradientColorPushButton::setMid(bool mid)
{
    d->mid = mid;
    update();
}

bool ZrGradientColorPushButton::getMid() const { return d->mid; }

void ZrGradientColorPushButton::setDoubleColor(bool doubleColor)
{
    d->doubleColor = doubleColor;
    update();
}

bool ZrGradientColorPushButton::getDoubleColor() const { return d->doubleColor; }

void ZrGradientColorPushButton::setDegree(int degree)
{
    d->degree = degree;
    update();
}

int ZrGradientColorPushButton::getDegree() const { return d->degree; }

void ZrGradientColorPushButton::setScroll(int scroll)
{
    d->scroll = scroll;
    update();
}

int ZrGradientColorPushButton::getScroll() const { return d->scroll; }

void ZrGradientColorPushButton::setMode(int mode)
{
    d->mode = mode;
    update();
}

int ZrGradientColorPushButton::getMode() const { return d->mode; }

void ZrGradientColorPushButton::setActive(bool active)
{
    d->active = active;
    update();
}

bool ZrGradientColorPushButton::getActive() const { return d->active; }

void ZrGradientColorPushButton::setShowColor(bool show) { d->showColor = show; }

bool ZrGradientColorPushButton::getShowColor() const { return d->showColor; }

namespace {

// The ends of a linear gradient across a W by H area inset in a w by h button, turned by `degree`.
QLineF linearEnds(int degree, int w, int h)
{
    const qreal W = w - 2 * kGradientInset;
    const qreal H = h - 2 * kGradientInset;
    const qreal s = qSin(qDegreesToRadians(qreal(degree)));
    const qreal c = qCos(qDegreesToRadians(qreal(degree)));
    const qreal in = kGradientInset;
    if (degree <= 90)
        return QLineF(in - H * s * c, in + H * s * s, in + W - W * s * s, in - W * s * c);
    if (degree <= 180)
        return QLineF(in + W - W * s * s, h - in - W * s * c, in + H * s * c, in + H - H * s * s);
    if (degree <= 270)
        return QLineF(w - in + H * s * c, in + H - H * s * s, in + W * s * s, h - in + W * s * c);
    return QLineF(in + W * s * s, in + W * s * c, in + W - H * s * c, in + H * s * s);
}

QPointF awayFrom(const QPointF& from, qreal distance, qreal direction)
{
    return from + distance * QPointF(qCos(direction), qSin(direction));
}

QRadialGradient radialGradient(int mode, bool mid, int degree, int w, int h)
{
    const qreal W = w - 2 * kGradientInset;
    const qreal H = h - 2 * kGradientInset;
    const qreal side = qMax(w, h);
    const qreal diag = qSqrt(W * W + H * H);
    const qreal turn = qDegreesToRadians(qreal(degree));
    const QPointF middle(w / 2.0, h / 2.0);
    QPointF centre = middle;
    qreal radius = 0;
    qreal focalRadius = side / 2;
    switch (mode) {
    case ZrGradientColorPushButton::kRadialSecondCentred:
    case ZrGradientColorPushButton::kRadialFirstCentred:
        focalRadius = side / 6;
        if (mid) {
            radius = 0.5 * W * 1.4142;
        } else {
            const qreal f = side / 6 + kGradientInset;
            centre = awayFrom(middle, side / 2, -turn - 3 * M_PI / 4);
            radius = qSqrt((W - f) * (W - f) + (H - f) * (H - f));
        }
        break;
    case ZrGradientColorPushButton::kRadialSecondNear:
    case ZrGradientColorPushButton::kRadialFirstNear:
        centre = awayFrom(middle, diag / 2, (mid ? M_PI / 2 : 3 * M_PI / 4) - turn);
        radius = mid ? side : diag;
        break;
    default:
        centre = awayFrom(middle, 0.6 * diag, (mid ? M_PI / 2 : 3 * M_PI / 4) - turn);
        radius = mid ? side + qMax(W / 3, H / 3) : 0.6 * diag;
        break;
    }
    return QRadialGradient(centre, radius, centre, focalRadius);
}

} // namespace

void ZrGradientColorPushButton::paintEvent(QPaintEvent* event)
{
    ZrIconPushButton::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    QColor second = d->color2;
    if (!d->doubleColor) {
        // One colour: the second is a shade of the first, from black to white.
        second = QColor::fromHslF(d->color1.hslHueF(), d->color1.hslSaturationF(), (d->scroll + 99) / 198.0);
    }
    if (d->active) {
        painter.setPen(QPen(kActiveFrame, 3));
        painter.setBrush(kActiveFill);
        painter.drawRect(QRectF(QPointF(0, 0), QPointF(width() - 1, height() - 1)));
    }
    painter.setPen(QPen(QColor(255, 255, 255, 0), 1));

    const QColor& first = d->color1;
    QGradientStops stops;
    if (d->mode >= kLinear && d->mode <= kLinearFirstInMiddle) {
        const QColor& outer = d->mode == kLinearFirstInMiddle ? second : first;
        const QColor& inner = d->mode == kLinearFirstInMiddle ? first : second;
        if (d->mode == kLinear)
            stops = {{0, first}, {d->mid ? 0.3 : 0.1, first}, {1, second}};
        else if (d->mid)
            stops = {{0, outer}, {0.45, inner}, {0.55, inner}, {1, outer}};
        else
            stops = {{0, outer}, {0.3, inner}, {0.4, inner}, {1, outer}};
        const QLineF ends = linearEnds(d->degree, width(), height());
        QLinearGradient gradient(ends.p1(), ends.p2());
        gradient.setStops(stops);
        painter.setBrush(gradient);
    } else {
        const bool secondCentred = d->mode <= kRadialSecondFar;
        QRadialGradient gradient = radialGradient(d->mode, d->mid, d->degree, width(), height());
        gradient.setColorAt(0, secondCentred ? second : first);
        gradient.setColorAt(1, secondCentred ? first : second);
        painter.setBrush(gradient);
    }
    painter.drawRect(QRectF(QPointF(kGradientInset, kGradientInset),
                            QPointF(width() - 1 - kGradientInset, height() - 1 - kGradientInset)));
}

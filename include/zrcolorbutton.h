#pragma once
// The small buttons of the colour family: a swatch whose "..." opens the colour dialog, a flat icon
// button, a button with a second menu in its right third, a button whose icon follows a named status
// and the preview of a gradient fill.

#include "zrqtbaseutils_export.h"

#include "zrcmcolor.h"

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QPushButton>
#include <QString>
#include <QWidget>
#include <memory>

class QAction;
class QMenu;

// A colour swatch with a "..." button at its right that opens the colour dialog.
class ZRQTBASEUTILS_EXPORT ZrColorButtonWidget : public QWidget
{
    Q_OBJECT
public:
    explicit ZrColorButtonWidget(QWidget* parent = nullptr);
    ~ZrColorButtonWidget() override;

    // Kept for the callers that set it; the widget looks the same for every style.
    void setViewStyle(unsigned style);
    unsigned viewStyle() const;
    // Silent: only a choice of the user emits colorChanged.
    void setColor(ZrCmColor color);
    ZrCmColor color() const;
    // The grey frame, blue while the mouse is over the widget; on at first.
    void setShowFrame(bool show);
    bool showFrame() const;

    // A w by h swatch of `color` with a thin black border.
    QPixmap getColorPixmapWithBorder(int w, int h, const QColor& color) const;

    // The "..." button, object name "colorButtonMore".
    QPushButton* innerButton() const;

Q_SIGNALS:
    // The user chose a colour in the dialog.
    void colorChanged();

public Q_SLOTS:
    // Opens the colour dialog on the colour shown; OK takes its answer.
    void slot_onInnerButtonClicked(bool checked);

protected:
    virtual void initBtn();

    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    // Opens the dialog too, except for the right button.
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrColorButtonWidget)
    struct Private;
    std::unique_ptr<Private> d;
};

// A flat button that shows only its icon over a light background, highlighted under the mouse.
class ZRQTBASEUTILS_EXPORT ZrTransparentHoverButton : public QPushButton
{
    Q_OBJECT
public:
    explicit ZrTransparentHoverButton(const QIcon& icon, QWidget* parent = nullptr);
    ~ZrTransparentHoverButton() override;

    void setHoverColor(const QColor& color);
    QColor hoverColor() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrTransparentHoverButton)
    struct Private;
    std::unique_ptr<Private> d;
};

// A button with two menus: a press in its right third opens the list of added actions, a press
// left of that the main menu.
class ZRQTBASEUTILS_EXPORT ZrMenuPushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit ZrMenuPushButton(QWidget* parent = nullptr);
    ~ZrMenuPushButton() override;

    // The first action makes both menus.
    void addMenu(QAction* action);
    // Null until the first addMenu.
    QMenu* mainMenu() const;
    QMenu* actionMenu() const;

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrMenuPushButton)
    struct Private;
    std::unique_ptr<Private> d;
};

// A button whose icon is the image of its current status. Images and statuses are "$"-separated
// lists of the same order; the button takes the size of the image.
class ZRQTBASEUTILS_EXPORT ZrIconPushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit ZrIconPushButton(QWidget* parent = nullptr);
    ~ZrIconPushButton() override;

    // Stores all and shows the image of the current status. `twoRows` doubles the height, for a
    // caption under the image. `flag` is only stored.
    void setData(const QString& paths, bool twoRows, QString statuses, bool flag);
    bool dataFlag() const;
    // Shows the image of the current status; a status without an image, or an image that is not
    // there, leaves icon and size as they are.
    void updateIcon();
    void updateBtnStatus(QString status);
    QString currentStatus() const;

protected:
    // Never drawn pressed or hovered: the image says the state.
    void paintEvent(QPaintEvent* event) override;

private:
    Q_DISABLE_COPY(ZrIconPushButton)
    struct Private;
    std::unique_ptr<Private> d;
};

// The preview of a gradient fill between two colours, linear or radial, at an angle.
class ZRQTBASEUTILS_EXPORT ZrGradientColorPushButton : public ZrIconPushButton
{
    Q_OBJECT
public:
    // Linear from the first colour to the second, the second colour then the first in the middle
    // and back, the first then the second in the middle and back; radial from the second colour at
    // the centre, in three placements; radial from the first colour, in the same three.
    enum Mode : int {
        kLinear = 1,
        kLinearSecondInMiddle = 2,
        kLinearFirstInMiddle = 3,
        kRadialSecondCentred = 4,
        kRadialSecondNear = 5,
        kRadialSecondFar = 6,
        kRadialFirstCentred = 7,
        kRadialFirstNear = 8,
        kRadialFirstFar = 9,
    };

    explicit ZrGradientColorPushButton(QWidget* parent = nullptr);
    ~ZrGradientColorPushButton() override;

    void setColor1(const QColor& color);
    QColor getColor1() const;
    // Used only with doubleColor; otherwise the second colour is a shade of the first.
    void setColor2(const QColor& color);
    QColor getColor2() const;
    // A centred, symmetric gradient rather than a shifted one.
    void setMid(bool mid);
    bool getMid() const;
    void setDoubleColor(bool doubleColor);
    bool getDoubleColor() const;
    // The angle in degrees.
    void setDegree(int degree);
    int getDegree() const;
    // The shade of a one-colour gradient, -99 black to 99 white.
    void setScroll(int scroll);
    int getScroll() const;
    void setMode(int mode);
    int getMode() const;
    // Framed in blue, as the chosen one among several.
    void setActive(bool active);
    bool getActive() const;
    void setShowColor(bool show);
    bool getShowColor() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Q_DISABLE_COPY(ZrGradientColorPushButton)
    struct Private;
    std::unique_ptr<Private> d;
};

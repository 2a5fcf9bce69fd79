#pragma once
// The true colour tab of the colour dialog: a colour picked by hue, saturation and luminance on a
// painted field and bar, or by its red, green and blue channels on painted sliders.

#include "zrqtbaseutils_export.h"

#include "uicolorwidgets.h"

#include "zrcmcolor.h"

#include <QWidget>
#include <memory>

class QDialog;
class ZrTrueColorWnd;

// A bar through the values of one channel, the other two held.
class ZRQTBASEUTILS_EXPORT ZrRGBSlider : public QWidget
{
    Q_OBJECT
public:
    enum CUR_COLOR {
        RED = 0,
        GREEN = 1,
        BLUE = 2,
    };

    ZrRGBSlider(CUR_COLOR curColor, short red, short green, short blue, int width, int height,
                QWidget* parent = nullptr);
    ~ZrRGBSlider() override;

    void setRed(int red);
    void setGreen(int green);
    void setBlue(int blue);
    // Places the marker at `value` of the slider's own channel; values above 255 are ignored.
    void setPos(int value);
    // The channel value at `point`, 0 to 255.
    int point2Value(QPoint point) const;
    int sliderPos() const;

Q_SIGNALS:
    void sliderPosChanged(ZrRGBSlider::CUR_COLOR curColor, short value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrRGBSlider)
    struct Private;
    std::unique_ptr<Private> d;
};

// Hue grows from left to right, saturation falls from top to bottom.
class ZRQTBASEUTILS_EXPORT ZrHSLPallete : public QWidget
{
    Q_OBJECT
public:
    // `hslWnd` is the ZrHSLWnd whose true colour tab keeps the note of the first press.
    ZrHSLPallete(QWidget* hslWnd, QWidget* parent = nullptr);
    ~ZrHSLPallete() override;

    void setValue(short hue, short saturation);
    void hsToPoint(short hue, short saturation, QPoint& point) const;
    // Leaves `hue` and `saturation` as they were for a point right of or below the field.
    void pointToHS(const QPoint& point, int& hue, int& saturation) const;
    int hue() const;
    int saturation() const;

    // The picture of the field: the host's image when there is one, else one drawn here, at `size`.
    static QImage fieldImage(const QSize& size);

Q_SIGNALS:
    void hsValueChanged(int hue, int saturation);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrHSLPallete)
    void takePoint(const QPoint& point);

    struct Private;
    std::unique_ptr<Private> d;
};

// The luminance of the field's hue and saturation, 100 at the top, 0 at the bottom.
class ZRQTBASEUTILS_EXPORT ZrColorLightWnd : public QWidget
{
    Q_OBJECT
public:
    ZrColorLightWnd(int width, int height, int hue, int saturation, QWidget* parent = nullptr);
    ~ZrColorLightWnd() override;

    void setValue(int hue, int saturation);
    void setSliderPos(int value);
    int point2Value(QPoint point) const;
    int sliderY() const;

Q_SIGNALS:
    void sliderPosChanged(int value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrColorLightWnd)
    struct Private;
    std::unique_ptr<Private> d;
};

// The HSL mode: the field, the bar and the spin boxes of hue, saturation and luminance.
class ZRQTBASEUTILS_EXPORT ZrHSLWnd : public QWidget
{
    Q_OBJECT
public:
    explicit ZrHSLWnd(ZrTrueColorWnd* trueColorWnd, QWidget* parent = nullptr);
    ~ZrHSLWnd() override;

    ZrTrueColorWnd* trueColorWnd() const;
    // Shows a colour without telling anyone. With `all` false the hue and saturation the user set
    // stay, so that a colour coming back from its own change does not move them.
    void freshData(int h, int s, int l, bool all);

Q_SIGNALS:
    void colorChanged(int red, int green, int blue);

public Q_SLOTS:
    void slot_hsValueChanged(int hue, int saturation);
    void slot_hsSpinboxValueChanged(int value);
    void slot_lightChanged(int value);
    void slot_KeyU_clicked();
    void slot_KeyS_clicked();
    void slot_KeyL_clicked();

private:
    Q_DISABLE_COPY(ZrHSLWnd)
    void emitColor();

    struct Private;
    std::unique_ptr<Private> d;
};

// The RGB mode: a spin box and a slider for each channel.
class ZRQTBASEUTILS_EXPORT ZrRGBWnd : public QWidget
{
    Q_OBJECT
public:
    explicit ZrRGBWnd(QWidget* parent = nullptr);
    ~ZrRGBWnd() override;

    // Shows a colour without telling anyone.
    void setChannels(int red, int green, int blue);

Q_SIGNALS:
    void redColorChanged(int value);
    void greenColorChanged(int value);
    void blueColorChanged(int value);

public Q_SLOTS:
    void slot_RGBSliderChanged(ZrRGBSlider::CUR_COLOR curColor, short value);
    void slot_keyR_triggered();
    void slot_keyG_triggered();
    void slot_keyB_triggered();

private:
    Q_DISABLE_COPY(ZrRGBWnd)
    void onSpinBoxChanged(int channel, int value);

    struct Private;
    std::unique_ptr<Private> d;
};

class ZRQTBASEUTILS_EXPORT ZrTrueColorWnd : public ZrColorWidgetBase
{
    Q_OBJECT
public:
    // `dialog` is the colour dialog that a double click on the new colour accepts.
    explicit ZrTrueColorWnd(QDialog* dialog, QWidget* parent = nullptr);
    ~ZrTrueColorWnd() override;

    // The colours are the dialog's and are not owned.
    void initializeData(ZrCmColor* newColor, ZrCmColor* oldColor);
    ZrColorLineEdit* getColorLineEdit() const;

    void updateColor(bool all) override;
    bool checkvalue() override;

    // The field was pressed for the first time and the luminance of white or black is still to be
    // turned to a visible one.
    bool firstPress() const;
    void setFirstPress(bool on);
    bool pressSeen() const;
    void setPressSeen(bool on);
    bool lightTouched() const;
    void setLightTouched(bool on);

public Q_SLOTS:
    void slot_switchColorMode(int index);
    void onColorChanged(int red, int green, int blue);
    void slot_redColorChanged(int value);
    void slot_greenColorChanged(int value);
    void slot_blueColorChanged(int value);
    void onResultDoubleClicked();
    void onOldColorDoubleClicked();
    void slot_KeyC_clicked();
    void slot_KeyM_clicked();

private:
    Q_DISABLE_COPY(ZrTrueColorWnd)
    void init();
    void takeChannel(int channel, int value);
    void refreshChannelLabels(bool afterUpdate);

    struct Private;
    std::unique_ptr<Private> d;
};

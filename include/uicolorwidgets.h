#pragma once
// The colour vocabulary every colour control shares: the item record, the colour texts and the
// conversions between indexes, true colours, book colours and HSL.

#include "zrqtbaseutils_export.h"

#include "zrcmcolor.h"
#include "zrdbobjectid.h"
#include "zrstring.h"

#include <QColor>
#include <QMetaType>
#include <QString>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <memory>

// One item of a colour control, carried as a QVariant in Qt::UserRole.
struct ColorData
{
    enum Kind {
        kColor = 0,
        kByBlockItem = 1,
        kByLayerItem = 2,
        // Never matched by a search by index; reserved for subclasses.
        kUnmatchable = 3,
        kDialogCommand = 4,
    };

    QColor color;
    QString text;
    int kind = kColor;
    ZrCmColor cmColor;
};
Q_DECLARE_METATYPE(ColorData)

// The colour a control builds from a bare method before storing it.
class ZRQTBASEUTILS_EXPORT ZrCmColorWarp : public ZrCmColor
{
public:
    explicit ZrCmColorWarp(ZrCmEntityColor::ColorMethod method = ZrCmEntityColor::kByLayer);
    ZrCmColorWarp(const ZrCmColorWarp& other) = default;
    ZrCmColorWarp& operator=(const ZrCmColorWarp& other) = default;
    ~ZrCmColorWarp() override;
};

// The item of a combo box for `color`: its text and swatch. A null palette means the current
// drawing's display palette; with none at all the record stays default.
ZRQTBASEUTILS_EXPORT ColorData formatColor(const ZrCmColor& color, const unsigned int* palette = nullptr,
                                           ZrDbObjectId layerId = ZrDbObjectId::kNull);
// Reads a colour typed by the user: ByLayer, ByBlock, an index, "RGB:r,g,b", "book$colour", the
// localised "颜色 n" or a book colour's name. False leaves `out` as it was.
ZRQTBASEUTILS_EXPORT bool convertColorStrToColorData(const ZrString& text, ColorData& out);
// The channels a swatch of `color` shows; white when the colour cannot be resolved.
ZRQTBASEUTILS_EXPORT void getRgb(ZrCmColor* color, int& r, int& g, int& b);
// The standard palette's channels of the colour's index; the arguments stay as they were for an
// index outside the palette. The first argument is not read.
ZRQTBASEUTILS_EXPORT void aciToRgb(int unused, ZrCmColor* color, int& r, int& g, int& b);
// Hue in degrees, saturation and luminance in percent, all rounded.
ZRQTBASEUTILS_EXPORT void RGBtoHSL(short r, short g, short b, short& h, short& s, short& l);
ZRQTBASEUTILS_EXPORT void HSLtoRGB(short h, short s, short l, short& r, short& g, short& b);

// The small widgets the colour dialog's tabs share.

// A tab of the colour dialog. The dialog calls updateColor when the tab is entered and checkvalue
// before it lets the user leave the tab or accept.
class ZRQTBASEUTILS_EXPORT ZrColorWidgetBase : public QWidget
{
    Q_OBJECT
public:
    explicit ZrColorWidgetBase(QWidget* parent = nullptr);
    ~ZrColorWidgetBase() override;

    // Shows the dialog's new colour again.
    virtual void updateColor(bool refresh) = 0;
    // Whether the colour the tab shows may be taken; a tab that refuses says why itself.
    virtual bool checkvalue() = 0;

private:
    Q_DISABLE_COPY(ZrColorWidgetBase)
};

class ZRQTBASEUTILS_EXPORT ZrColorTabWidget : public QTabWidget
{
    Q_OBJECT
public:
    explicit ZrColorTabWidget(QWidget* parent = nullptr);
    ~ZrColorTabWidget() override;

Q_SIGNALS:
    void Accepted(int code);
    void Rejected();

public Q_SLOTS:
    void slotAccept();
    void slotRejected();

private:
    Q_DISABLE_COPY(ZrColorTabWidget)
};

// A swatch that tells of a double click.
class ZRQTBASEUTILS_EXPORT ZrColorLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ZrColorLabel(QWidget* parent = nullptr);
    ~ZrColorLabel() override;

Q_SIGNALS:
    void doubleClicked();

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrColorLabel)
};

// The line in which a colour is shown and typed. The colour is not owned.
class ZRQTBASEUTILS_EXPORT ZrColorLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    explicit ZrColorLineEdit(QWidget* parent = nullptr);
    ~ZrColorLineEdit() override;

    // Keeps `color` and shows its text.
    void setColor(ZrCmColor* color);
    ZrCmColor* color() const;

    // The colour as a user types it: "BYLAYER", "BYBLOCK", a named colour, a bare index, "r,g,b" or
    // a book colour's name; empty for a colour that cannot be typed.
    static QString getColorText(const ZrCmColor& color);

private:
    Q_DISABLE_COPY(ZrColorLineEdit)
    ZrCmColor* m_color = nullptr;
};

// A push button with an arrow drawn over it, pointing up or down.
class ZRQTBASEUTILS_EXPORT ZrColorPushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit ZrColorPushButton(bool up, QWidget* parent = nullptr);
    ~ZrColorPushButton() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Q_DISABLE_COPY(ZrColorPushButton)
    const bool m_up;
};

// The old colour and the new one as two overlapping squares. Neither colour is owned. A double
// click on the old square puts the old colour back into the new.
class ZRQTBASEUTILS_EXPORT ZrUiColorResultWidget : public QWidget
{
    Q_OBJECT
public:
    explicit ZrUiColorResultWidget(QWidget* parent = nullptr);
    ~ZrUiColorResultWidget() override;

    void init(ZrCmColor* newColor, ZrCmColor* oldColor);
    void SetColor(ZrColorLabel* label, int r, int g, int b);
    void FreshNewColor();
    void FreshOldColor();

    // Object names "newColorLabel" and "oldColorLabel".
    ZrColorLabel* newColorLabel() const;
    ZrColorLabel* oldColorLabel() const;

Q_SIGNALS:
    void newColorDoubleClicked();
    void oldColorDoubleClicked();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    Q_DISABLE_COPY(ZrUiColorResultWidget)
    void restoreOldColor();
    // Paints `label` in `color`; a missing colour leaves it as it is.
    void fresh(ZrColorLabel* label, ZrCmColor* color);

    struct Private;
    std::unique_ptr<Private> d;
};

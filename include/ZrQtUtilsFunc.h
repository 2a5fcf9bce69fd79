#pragma once
// Texts and images shared by the module's widgets.

#include "zrqtbaseutils_export.h"

#include "zrrxobject.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QString>
#include <memory>

class QComboBox;
class QFont;
class QPainter;
class QPixmap;
class QPoint;
class QPointF;
class QRect;
class QRectF;
class ZrCmColor;
class ZrGiRasterImage;

// The text of `key` in the user's language, `def` when the language service has none.
ZRQTBASEUTILS_EXPORT QString zrUiText(const char* key, const QString& def);

// The full path of an image of the current theme, under "<ResRootPath>/ImageRes/<theme>/";
// `raw` looks in "ImageRes/" without the theme folder. Empty when the image is not there.
ZRQTBASEUTILS_EXPORT QString zrutGetImageFullPath(const QString& name, const bool& raw = false);

// Pixmaps drawn with smooth scaling.
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QRectF& target, const QPixmap& pixmap, const QRectF& source, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, const QRect& source, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QRect& target, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, int w, int h, const QPixmap& pixmap, int sx, int sy, int sw,
                                           int sh, QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(int x, int y, const QPixmap& pixmap, int sx, int sy, int sw, int sh,
                                           QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPointF& point, const QPixmap& pixmap, const QRectF& source,
                                           QPainter& painter);
ZRQTBASEUTILS_EXPORT void drawSmoothPixmap(const QPoint& point, const QPixmap& pixmap, const QRect& source,
                                           QPainter& painter);

// Host raster images and QImage. A raster image copies the picture's pixels. A picture reads the
// raster's rows in place where their layout is one of Qt's, holding a reference to the raster, and
// copies them before any change; a raster over memory of its caller (zrutImageWrap) must outlive
// it. A raster that cannot be read (no pixels, rows shorter than their pixels, a layout without a
// match) gives a null image, a null QImage a null raster.
ZRQTBASEUTILS_EXPORT QImage zrutZrGiRasterImage2QImage(ZrSmartPtr<ZrGiRasterImage> image);
ZRQTBASEUTILS_EXPORT ZrSmartPtr<ZrGiRasterImage> zrutQImage2ZrGiRasterImage(const QImage& image);
// The first image of a file; a null image when there is none.
ZRQTBASEUTILS_EXPORT QImage getImage(const QString& file);

// Text that does not fit its widget is elided, the full text going to the tool tip.
// Labels, buttons, check boxes, radio buttons and group boxes, at the widget's maximum width.
ZRQTBASEUTILS_EXPORT void zrutAdjustWidgetTextDisplay(QWidget* widget, Qt::TextElideMode mode = Qt::ElideRight);
// An item of a QListWidget or QTreeWidget (column 0) at `width`.
ZRQTBASEUTILS_EXPORT void zrutAdjustWidgetItemTextDisplay(QWidget* widget, void* item, int width,
                                                          Qt::TextElideMode mode = Qt::ElideRight);
// Items elided at the box's maximum width get the full text as tool tip, unless they have one.
ZRQTBASEUTILS_EXPORT void zrutAdjustComboBoxDisplay(QComboBox* comboBox, Qt::TextElideMode mode = Qt::ElideRight);
ZRQTBASEUTILS_EXPORT void zrutUpdateListViewInComboBox(QComboBox* comboBox);
// Moves `widget` so that the right and bottom edges of `rect` stand no further than those of `bounds`.
ZRQTBASEUTILS_EXPORT void zrutAdjustWidgetPos(QWidget* widget, QRect rect, QRect bounds);
// Column widths of a QTableWidget or QTableView from the header texts; the last column takes the rest.
ZRQTBASEUTILS_EXPORT void zrutAdjustTableWidgetOrViewTitle(QWidget* widget, int margin);
// One column as wide as `text` in `font` plus `margin`, at most `maxWidth`.
ZRQTBASEUTILS_EXPORT void zrutAdjustTableWidgetOrViewItem(QWidget* widget, const QFont& font, QString text, int column,
                                                          int margin, int maxWidth);
// A colour of the widget's palette as "rgb(r, g, b)"; empty without a widget.
ZRQTBASEUTILS_EXPORT QString zrutGetWidgetPaletteColorString(QWidget* widget, QPalette::ColorRole role,
                                                             QPalette::ColorGroup group = QPalette::Active);
// The combo boxes under `widget` take the light style sheet with the theme's arrows; `skip` leaves them.
ZRQTBASEUTILS_EXPORT void zrutUpdateComboBoxStyleCreateByUIFile(QWidget* widget, const bool& skip = false);
// chmod on a folder and all below it; -1 for a folder that is missing or empty, 0 otherwise.
ZRQTBASEUTILS_EXPORT int zrutRecursiveChmod(const QString& dir, int mode);
// A flat tool button 24 by 24, or 32 by 24 with the arrow beside its icon.
ZRQTBASEUTILS_EXPORT QPushButton* zrutInitCheckPushButton(QWidget* parent, const QString& icon, bool checkable = true,
                                                          bool withArrow = false, bool enabled = true);
// Outside Chinese the mnemonic is shown in brackets: "By&Layer" becomes "By&(L)ayer".
ZRQTBASEUTILS_EXPORT QString dealWithTextDisplay(QString text);

// An icon with the theme's down arrow to its right, or after a line with `split`.
class ZRQTBASEUTILS_EXPORT ZrQtPanelLabelWithArrow : public QLabel
{
    Q_OBJECT
public:
    explicit ZrQtPanelLabelWithArrow(QWidget* parent = nullptr, bool split = false);
    void setIcon(const QIcon& icon);
    QIcon icon() const { return m_icon; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_icon;
    bool m_split;
};

// A flat button that shows its icon and arrow through a ZrQtPanelLabelWithArrow.
class ZRQTBASEUTILS_EXPORT ZrQtPanelButtonWithArrow : public QPushButton
{
    Q_OBJECT
public:
    explicit ZrQtPanelButtonWithArrow(QWidget* parent = nullptr, bool split = false);
    ~ZrQtPanelButtonWithArrow() override;
    void setIcon(const QIcon& icon);
    bool isClickLeftArea() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrQtPanelButtonWithArrow)
    struct Private;
    std::unique_ptr<Private> d;
};

// The band above a category of a panel, in the palette's dark colour.
class ZRQTBASEUTILS_EXPORT ZrQtCategeryTitleWidget : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};

// A square of one colour, as high as the application's font.
class ZRQTBASEUTILS_EXPORT ZrQtColorLabel : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;
    void SetColor(const QColor& color);
    void SetColor(unsigned int rgb);
    void SetColor(const ZrCmColor& color);
};

#pragma once
// The index colour tab of the colour dialog: the palette grids of indexes 1 to 255, ByLayer and
// ByBlock, and a line in which a colour can be typed by name or number.

#include "zrqtbaseutils_export.h"

#include "uicolorwidgets.h"

#include "zrcmcolor.h"
#include "zrjson.h"

#include <QWidget>
#include <cstdint>
#include <memory>

class QDialog;

// One grid of index colours. Kinds: 1 the upper grid (even indexes 10 to 248), 2 the lower grid
// (odd indexes 11 to 249), 3 the standard colours 1 to 9, 4 the greys 250 to 255.
class ZRQTBASEUTILS_EXPORT ZrPaleteWnd : public QWidget
{
    Q_OBJECT
public:
    enum Type {
        kUpper = 1,
        kLower = 2,
        kStandard = 3,
        kGrey = 4,
    };

    ZrPaleteWnd(int type, int rows, int columns, int cellSize, QWidget* parent = nullptr);
    ~ZrPaleteWnd() override;

    // The index at a cell of a grid of kind `type`; -1 outside this grid.
    int getAciByPos(int row, int column, int type) const;
    // The cell of `aci` on a grid of kind `type`; false when the index is not on such a grid.
    static bool getPosByAci(int aci, int type, int& row, int& column);

    // The index framed as chosen; -1 for none.
    int selectedAci() const;
    void setSelectedAci(int aci);

Q_SIGNALS:
    // The mouse is over an index.
    void selColorChanged(uint32_t aci);
    void colorSelected(uint32_t aci, int type);
    void leaveWidget();
    // A double click on a cell: the choice is final.
    void closeDialog();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Q_DISABLE_COPY(ZrPaleteWnd)
    struct Private;
    std::unique_ptr<Private> d;
};

class ZRQTBASEUTILS_EXPORT ZrIndexColorWnd : public ZrColorWidgetBase
{
    Q_OBJECT
public:
    // `dialog` is the colour dialog that a double click accepts.
    explicit ZrIndexColorWnd(QDialog* dialog, QWidget* parent = nullptr);
    ~ZrIndexColorWnd() override;

    // The colours are the dialog's and are not owned. Reads "isByLayerEnable" and "isByBLockEnable".
    void initializeData(ZrJsonPtr params, ZrCmColor* newColor, ZrCmColor* oldColor);
    ZrColorLineEdit* getColorLineEdit() const;
    // The raw word of the display palette at `index`; 0 outside the palette.
    static uint32_t aciToRgb(int index);

    void updateColor(bool refresh) override;
    bool checkvalue() override;

public Q_SLOTS:
    void slot_colorChange(uint32_t aci);
    void slot_colorSelected(uint32_t aci);
    void slot_leave_widget();
    void slot_color_label_double_clicked();
    void onResultOldColorDoubleClicked();
    void slot_btnByLayerClicked();
    void slot_btnByBlockClicked();
    void slot_KeyC_clicked();

private:
    Q_DISABLE_COPY(ZrIndexColorWnd)
    void init();
    void onEditingFinished();
    void takeByMethod(ZrCmEntityColor::ColorMethod method);
    bool refuseText();

    struct Private;
    std::unique_ptr<Private> d;
};

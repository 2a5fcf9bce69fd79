#pragma once
// The colour book tab of the colour dialog: one book at a time, its pages as a strip of page colours
// at the left, the colours of the chosen page as a column of named bars, and the RGB equivalent of
// the choice.

#include "zrqtbaseutils_export.h"

#include "uicolorwidgets.h"

#include "zrcmcolor.h"

#include <QLabel>
#include <QWidget>
#include <memory>

class QDialog;
struct SXuBookColorData;
struct SXuBookColorPage;

// The strip of a book's pages, each painted in its page colour; the current page is framed.
class ZRQTBASEUTILS_EXPORT ZrUiColorBookPageLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ZrUiColorBookPageLabel(QWidget* parent = nullptr);
    ~ZrUiColorBookPageLabel() override;

    // Shows `page` of the book of that name; an empty or unknown name shows no pages.
    void setBookName(const QString& name, int page);
    QString bookName() const;
    int pageCount() const;
    int currentPage() const;

    // The previous and the next page, when there is one.
    void lastItem();
    void nextItem();

Q_SIGNALS:
    void selected(int page);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrUiColorBookPageLabel)
    void choose(int page);

    struct Private;
    std::unique_ptr<Private> d;
};

// The page strip between its up and down buttons.
class ZRQTBASEUTILS_EXPORT ZrUiColorBookPageWidget : public QWidget
{
    Q_OBJECT
public:
    explicit ZrUiColorBookPageWidget(QWidget* parent = nullptr);
    ~ZrUiColorBookPageWidget() override;

    // Forwards to the strip and, for a page other than -1, tells of it once more.
    void setBookName(const QString& name, int page);
    ZrUiColorBookPageLabel* pageLabel() const;

Q_SIGNALS:
    void itemClicked(int page);

public Q_SLOTS:
    void onUpBtnClicked();
    void onDownBtnClicked();
    void onColorItemClicked(int page);

private:
    Q_DISABLE_COPY(ZrUiColorBookPageWidget)
    struct Private;
    std::unique_ptr<Private> d;
};

// The colours of one page as bars, each with its name written on it; the chosen one is framed.
class ZRQTBASEUTILS_EXPORT ZrUiColorListLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ZrUiColorListLabel(QWidget* parent = nullptr);
    ~ZrUiColorListLabel() override;

    // Shows `page` of `book` with `entry` framed; -1 frames none.
    void setBookInfo(const QString& book, int page, int entry);
    int GetCurrentBookColorPageIndex() const;
    int entryCount() const;
    int currentEntry() const;

Q_SIGNALS:
    void itemClicked(int entry);
    // A double click: the choice is final.
    void itemDobleClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    Q_DISABLE_COPY(ZrUiColorListLabel)
    struct Private;
    std::unique_ptr<Private> d;
};

class ZRQTBASEUTILS_EXPORT ZrUiColorBookTab : public ZrColorWidgetBase
{
    Q_OBJECT
public:
    // `dialog` is the colour dialog that a double click accepts.
    explicit ZrUiColorBookTab(QDialog* dialog, QWidget* parent = nullptr);
    ~ZrUiColorBookTab() override;

    // The colours are the dialog's and are not owned.
    void initializeData(ZrCmColor* newColor, ZrCmColor* oldColor);
    ZrColorLineEdit* getColorLineEdit() const;
    void freshOldRGB();
    void freshNewRGB();

    void updateColor(bool refresh) override;
    bool checkvalue() override;

public Q_SLOTS:
    void onColorComboBoxSelChanged(int index);
    void onBookPageChanged(int page);
    void onBookColorListItemChanged(int entry);
    void onResultDoubleClicked();
    void onResultOldColorDoubleClicked();

private:
    Q_DISABLE_COPY(ZrUiColorBookTab)
    void init();

    struct Private;
    std::unique_ptr<Private> d;
};

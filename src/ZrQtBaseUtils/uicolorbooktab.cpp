#include "uicolorbooktab.h"
#include "uicolorwidgets_p.h"

#include "ZrQtUtilsFunc.h"
#include "uicolorbookmng.h"

#include "zrsystem.h"
#include "zrui.h"

#include <QCache>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QTextEdit>
#include <algorithm>
#include <map>

namespace {

// Pages and colour bars share one geometry: `count` strips of equal float height down the widget,
// each drawn from the truncated top over the truncated strip height.
QRect stripRect(int index, int count, const QWidget* widget)
{
    const double stripHeight = double(widget->height()) / count;
    const int top = int(index * stripHeight);
    return QRect(QPoint(0, top), QPoint(widget->width() - 1, top + int(stripHeight) - 1));
}

// The strip under `y`; a click below the last strip takes the last one. -1 without strips.
int stripAt(int y, int count, const QWidget* widget)
{
    if (count <= 0)
        return -1;
    const double stripHeight = double(widget->height()) / count;
    return std::min(std::max(int(y / stripHeight), 0), count - 1);
}

void paintStrip(QPainter& painter, const QRect& rect, const QColor& color)
{
    QPen pen(color);
    pen.setWidthF(0.1);
    painter.setPen(pen);
    painter.setBrush(color);
    painter.drawRect(rect);
}

void frameStrip(QPainter& painter, const QRect& rect)
{
    painter.setPen(QPen(Qt::black, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect);
}

ZrString wide(const QString& text) { return ZrString(text); }

// Every grid of the tab keeps 3 pixels between its cells and around them.
QGridLayout* gridOf(QWidget* widget)
{
    auto* grid = new QGridLayout(widget);
    grid->setSpacing(3);
    grid->setContentsMargins(3, 3, 3, 3);
    return grid;
}

} // namespace

struct ZrUiColorBookPageLabel::Private
{
    QString bookName;
    SXuBookColorData* book = nullptr;
    int pageCount = 0;
    int currentPage = 0;
    // The strips of the books shown lately, as painted at a size: a book of a thousand pages is a
    // thousand rectangles the first time and one image after, also when the user comes back to it.
    // Keyed by the manager's generation, not the record's address, which a book read again may reuse.
    QCache<QString, QImage> strips{8};

    const QImage& stripsAt(const QWidget* label)
    {
        const QString key = QStringLiteral("%1|%2|%3|%4x%5")
                                .arg(bookName)
                                .arg(CEdColorBookManager::getInstance()->generation())
                                .arg(pageCount)
                                .arg(label->width())
                                .arg(label->height());
        if (const QImage* cached = strips.object(key))
            return *cached;
        auto* image = new QImage(label->size(), QImage::Format_ARGB32_Premultiplied);
        image->fill(Qt::transparent);
        QPainter painter(image);
        // A book that lost its file since it was opened shows the pages it has.
        const int pages = std::min(pageCount, book->pages.length());
        for (int page = 0; page < pages; ++page)
            paintStrip(painter, stripRect(page, pageCount, label), colorOfWord(book->pages[page].pageColor));
        painter.end();
        strips.insert(key, image);
        return *image;
    }
};

ZrUiColorBookPageLabel::ZrUiColorBookPageLabel(QWidget* parent) : QLabel(parent), d(new Private) {}

ZrUiColorBookPageLabel::~ZrUiColorBookPageLabel() = default;

void ZrUiColorBookPageLabel::setBookName(const QString& name, int page)
{
    d->bookName = name;
    d->currentPage = page;
    d->book = nullptr;
    d->pageCount = 0;
    if (!name.isEmpty()) {
        CEdColorBookManager* books = CEdColorBookManager::getInstance();
        d->pageCount = books->getPageNum(wide(name));
        d->book = books->findData(wide(name));
    }
    Q_EMIT selected(page);
    update();
}

QString ZrUiColorBookPageLabel::bookName() const { return d->bookName; }
int ZrUiColorBookPageLabel::pageCount() const { return d->pageCount; }
int ZrUiColorBookPageLabel::currentPage() const { return d->currentPage; }

void ZrUiColorBookPageLabel::choose(int page)
{
    d->currentPage = page;
    Q_EMIT selected(page);
    update();
}

void ZrUiColorBookPageLabel::lastItem()
{
    if (d->currentPage >= 1)
        choose(d->currentPage - 1);
}

void ZrUiColorBookPageLabel::nextItem()
{
    if (d->currentPage + 1 < d->pageCount)
        choose(d->currentPage + 1);
}

void ZrUiColorBookPageLabel::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (!d->book || d->pageCount <= 0)
        return;
    QPainter painter(this);
    painter.drawImage(0, 0, d->stripsAt(this));
    if (d->currentPage >= 0 && d->currentPage < d->pageCount)
        frameStrip(painter, stripRect(d->currentPage, d->pageCount, this));
}

void ZrUiColorBookPageLabel::mousePressEvent(QMouseEvent* event)
{
    const int page = stripAt(event->pos().y(), d->pageCount, this);
    if (page != -1)
        choose(page);
}

struct ZrUiColorBookPageWidget::Private
{
    ZrColorPushButton* up = nullptr;
    ZrColorPushButton* down = nullptr;
    ZrUiColorBookPageLabel* label = nullptr;
    QString bookName;
};

ZrUiColorBookPageWidget::ZrUiColorBookPageWidget(QWidget* parent) : QWidget(parent), d(new Private)
{
    d->up = new ZrColorPushButton(true, this);
    d->up->setObjectName(QStringLiteral("colorBookPageUp"));
    d->up->setFixedHeight(10);
    d->down = new ZrColorPushButton(false, this);
    d->down->setObjectName(QStringLiteral("colorBookPageDown"));
    d->down->setFixedHeight(10);
    d->label = new ZrUiColorBookPageLabel(this);
    d->label->setObjectName(QStringLiteral("colorBookPageLabel"));
    connect(d->up, &QPushButton::clicked, this, &ZrUiColorBookPageWidget::onUpBtnClicked);
    connect(d->down, &QPushButton::clicked, this, &ZrUiColorBookPageWidget::onDownBtnClicked);
    connect(d->label, &ZrUiColorBookPageLabel::selected, this, &ZrUiColorBookPageWidget::onColorItemClicked);

    auto* grid = new QGridLayout(this);
    grid->setSpacing(0);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(d->up, 0, 0);
    grid->addWidget(d->label, 1, 0, 12, 1);
    grid->addWidget(d->down, 13, 0);
}

ZrUiColorBookPageWidget::~ZrUiColorBookPageWidget() = default;

void ZrUiColorBookPageWidget::setBookName(const QString& name, int page)
{
    d->bookName = name;
    d->label->setBookName(name, page);
    if (page != -1)
        Q_EMIT itemClicked(page);
}

ZrUiColorBookPageLabel* ZrUiColorBookPageWidget::pageLabel() const { return d->label; }

void ZrUiColorBookPageWidget::onUpBtnClicked() { d->label->lastItem(); }
void ZrUiColorBookPageWidget::onDownBtnClicked() { d->label->nextItem(); }
void ZrUiColorBookPageWidget::onColorItemClicked(int page) { Q_EMIT itemClicked(page); }

struct ZrUiColorListLabel::Private
{
    SXuBookColorPage* page = nullptr;
    QString bookName;
    int pageIndex = -1;
    int entryCount = 0;
    int currentEntry = -1;
    // The bars of the pages shown lately with their names written, as painted at a size and in a font:
    // laying out the names costs more than all else the panel paints on a book switch. Keyed by what
    // the bars show, so that a book read again from its file is never shown as it was.
    QCache<QString, QImage> bars{8};

    const QImage& barsAt(const QWidget* label)
    {
        const qreal ratio = label->devicePixelRatioF();
        const int entries = std::min(entryCount, page->colors.length());
        QString key = QStringLiteral("%1x%2@%3|%4|%5")
                          .arg(label->width())
                          .arg(label->height())
                          .arg(ratio)
                          .arg(label->font().key())
                          .arg(entryCount);
        for (int entry = 0; entry < entries; ++entry) {
            const ZrCmColor& color = page->colors[entry];
            const int rgb = (color.red() << 16) | (color.green() << 8) | color.blue();
            key += QLatin1Char('|') + QString::number(rgb, 16) + QLatin1Char(' ') +
                   QString::fromWCharArray(color.colorName());
        }
        if (const QImage* cached = bars.object(key))
            return *cached;
        auto* image = new QImage(label->size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image->setDevicePixelRatio(ratio);
        image->fill(Qt::transparent);
        QPainter painter(image);
        painter.setFont(label->font());
        for (int entry = 0; entry < entries; ++entry) {
            const ZrCmColor& color = page->colors[entry];
            const QRect bar = stripRect(entry, entryCount, label);
            paintStrip(painter, bar, QColor(color.red(), color.green(), color.blue()));
            const bool dark = color.red() + color.green() + color.blue() < 384;
            painter.setPen(dark ? Qt::white : Qt::black);
            painter.drawText(bar, Qt::AlignHCenter | Qt::AlignVCenter, QString::fromWCharArray(color.colorName()));
        }
        painter.end();
        bars.insert(key, image);
        return *image;
    }
};

ZrUiColorListLabel::ZrUiColorListLabel(QWidget* parent) : QLabel(parent), d(new Private) {}

ZrUiColorListLabel::~ZrUiColorListLabel() = default;

void ZrUiColorListLabel::setBookInfo(const QString& book, int page, int entry)
{
    d->bookName = book;
    d->pageIndex = page;
    d->currentEntry = entry;
    d->page = CEdColorBookManager::getInstance()->getColorPage(wide(book), page);
    if (d->page)
        d->entryCount = d->page->colors.length();
    update();
}

int ZrUiColorListLabel::GetCurrentBookColorPageIndex() const { return d->pageIndex; }
int ZrUiColorListLabel::entryCount() const { return d->entryCount; }
int ZrUiColorListLabel::currentEntry() const { return d->currentEntry; }

void ZrUiColorListLabel::paintEvent(QPaintEvent* event)
{
    QLabel::paintEvent(event);
    if (d->bookName.isEmpty() || d->pageIndex == -1 || !d->page)
        return;
    QPainter painter(this);
    painter.drawImage(0, 0, d->barsAt(this));
    if (d->currentEntry >= 0 && d->currentEntry < d->entryCount)
        frameStrip(painter, stripRect(d->currentEntry, d->entryCount, this));
}

void ZrUiColorListLabel::mousePressEvent(QMouseEvent* event)
{
    const int entry = stripAt(event->pos().y(), d->entryCount, this);
    if (entry == -1)
        return;
    d->currentEntry = entry;
    Q_EMIT itemClicked(entry);
    update();
}

void ZrUiColorListLabel::mouseDoubleClickEvent(QMouseEvent*) { Q_EMIT itemDobleClicked(); }

struct ZrUiColorBookTab::Private
{
    QDialog* dialog;
    QLabel* bookLabel = nullptr;
    QComboBox* books = nullptr;
    QWidget* panel = nullptr;
    ZrUiColorBookPageWidget* pages = nullptr;
    ZrUiColorListLabel* colors = nullptr;
    QLabel* colorLabel = nullptr;
    ZrColorLineEdit* line = nullptr;
    QLabel* rgbHeading = nullptr;
    QLabel* channels[3] = {};
    ZrUiColorResultWidget* result = nullptr;
    int bookCount = 0;
    ZrCmColor* newColor = nullptr;
    ZrCmColor* oldColor = nullptr;

    QString currentBook() const { return books->currentText(); }
};

ZrUiColorBookTab::ZrUiColorBookTab(QDialog* dialog, QWidget* parent) : ZrColorWidgetBase(parent), d(new Private)
{
    d->dialog = dialog;
    setObjectName(QStringLiteral("ZrUiColorBookTab"));
    init();
}

ZrUiColorBookTab::~ZrUiColorBookTab() = default;

void ZrUiColorBookTab::init()
{
    ZrArray<ZrString> names;
    CEdColorBookManager::getInstance()->getColorBookNames(names);
    d->bookCount = names.length();
    const bool hasBooks = d->bookCount > 0;

    d->bookLabel = new QLabel(zrUiText("ZRED_IDD_PROPPAGE_COLORBOOK_2", QStringLiteral("配色系统(&B):")));
    d->books = new QComboBox;
    d->books->setObjectName(QStringLiteral("colorBookCombo"));
    d->books->setEditable(false);
    d->bookLabel->setBuddy(d->books);
    d->line = new ZrColorLineEdit;
    d->line->setObjectName(QStringLiteral("bookColorLineEdit"));
    d->colorLabel = new QLabel(zrUiText("CMDSRES_IDD_DIALOG_EATTEDIT3_3", QStringLiteral("颜色(&C):")));
    d->colorLabel->setBuddy(d->line);
    d->result = new ZrUiColorResultWidget;
    connect(d->result, &ZrUiColorResultWidget::newColorDoubleClicked, this, &ZrUiColorBookTab::onResultDoubleClicked);
    connect(d->result, &ZrUiColorResultWidget::oldColorDoubleClicked, this,
            &ZrUiColorBookTab::onResultOldColorDoubleClicked);

    d->panel = new QWidget;
    QGridLayout* panelGrid = gridOf(d->panel);
    auto* right = new QWidget;
    QGridLayout* rightGrid = gridOf(right);

    if (hasBooks) {
        // Sorted as strings compare, each name once.
        std::map<QString, QString> sorted;
        for (const ZrString& name : names)
            sorted.emplace(name.toQString(), name.toQString());
        for (const auto& entry : sorted)
            d->books->addItem(entry.first);
        connect(d->books, QOverload<int>::of(&QComboBox::activated), this,
                &ZrUiColorBookTab::onColorComboBoxSelChanged);

        d->pages = new ZrUiColorBookPageWidget;
        d->pages->setObjectName(QStringLiteral("colorBookPages"));
        d->colors = new ZrUiColorListLabel;
        d->colors->setObjectName(QStringLiteral("colorBookList"));
        connect(d->pages, &ZrUiColorBookPageWidget::itemClicked, this, &ZrUiColorBookTab::onBookPageChanged);
        connect(d->colors, &ZrUiColorListLabel::itemClicked, this, &ZrUiColorBookTab::onBookColorListItemChanged);
        connect(d->colors, &ZrUiColorListLabel::itemDobleClicked, this, &ZrUiColorBookTab::onResultDoubleClicked);
        panelGrid->addWidget(d->pages, 0, 0, 14, 1);
        panelGrid->addWidget(d->colors, 0, 1, 14, 3);

        d->rgbHeading = new QLabel(zrUiText("ZRED_IDD_PROPPAGE_COLORBOOK_3", QStringLiteral("RGB 等效值:")));
        static const char* const channelNames[] = {"bookRedLabel", "bookGreenLabel", "bookBlueLabel"};
        rightGrid->addWidget(new QWidget, 0, 0, 2, 1);
        rightGrid->addWidget(d->rgbHeading, 2, 0);
        for (int i = 0; i < 3; ++i) {
            d->channels[i] = new QLabel;
            d->channels[i]->setObjectName(QLatin1String(channelNames[i]));
            rightGrid->addWidget(d->channels[i], 3 + i, 0);
        }
        rightGrid->addWidget(new QWidget, 6, 0, 10, 1);
        rightGrid->addWidget(d->result, 16, 0, 2, 1);
    } else {
        d->books->addItem(zrUiText("IDS_BCOLOR_NOCO1", QStringLiteral("未安装任何配色系统")));
        d->books->setEnabled(false);
        d->line->setEnabled(false);
        QString folders;
        for (const ZrString& folder : CXuSystem::instance()->pathService()->colorBookFolders())
            folders += folder.toQString() + QStringLiteral("\r\n\r\n");
        const QString text =
            zrUiText("IDS_BCOLOR_NOCO2",
                     QStringLiteral("未安装配色系统。要使用\r\n配色系统，配色系统文件夹中至少必须有一个配色系统文件。\r\n"
                                    "您可以在“选项”对话框的“文件”选项卡上\r\n修改 %s "
                                    "查找配色系统文件的位置。当前的配色系统文件夹有:\r\n\r\n%s"));
        // Filled in one pass, so that a folder named with "%s" stays as it is.
        const int first = text.indexOf(QLatin1String("%s"));
        const int second = first == -1 ? -1 : text.indexOf(QLatin1String("%s"), first + 2);
        QString filled = text;
        if (second != -1)
            filled.replace(second, 2, folders);
        if (first != -1)
            filled.replace(first, 2, zrUiText("IDS_ZRED_EDPATH_PROMPT7", QStringLiteral("配色系统位置")));
        auto* note = new QTextEdit;
        note->setObjectName(QStringLiteral("colorBookNone"));
        note->setReadOnly(true);
        note->setPlainText(filled);
        panelGrid->addWidget(note, 0, 0, 14, 4);
        rightGrid->addWidget(new QWidget, 0, 0, 16, 1);
        rightGrid->addWidget(d->result, 16, 0, 2, 1);
    }

    auto* left = new QWidget;
    QGridLayout* leftGrid = gridOf(left);
    leftGrid->addWidget(d->bookLabel, 0, 0, 1, 4);
    leftGrid->addWidget(d->books, 1, 0, 1, 4);
    leftGrid->addWidget(d->panel, 2, 0, 14, 4);
    leftGrid->addWidget(d->colorLabel, 17, 0);
    leftGrid->addWidget(d->line, 17, 1, 1, 3);

    QGridLayout* outer = gridOf(this);
    outer->addWidget(left, 0, 0, 18, 4);
    outer->addWidget(right, 0, 4, 18, 1);

    d->books->setCurrentIndex(0);
    if (hasBooks)
        d->pages->setBookName(d->currentBook(), 0);
}

void ZrUiColorBookTab::initializeData(ZrCmColor* newColor, ZrCmColor* oldColor)
{
    d->newColor = newColor;
    d->oldColor = oldColor;
    d->result->init(newColor, oldColor);
    updateColor(true);
}

ZrColorLineEdit* ZrUiColorBookTab::getColorLineEdit() const { return d->line; }

void ZrUiColorBookTab::freshOldRGB() { d->result->FreshOldColor(); }

void ZrUiColorBookTab::freshNewRGB()
{
    int rgb[3] = {255, 255, 255};
    if (d->newColor)
        getRgb(d->newColor, rgb[0], rgb[1], rgb[2]);
    for (int i = 0; i < 3; ++i) {
        if (d->channels[i])
            d->channels[i]->setText(channelLabelText(i, rgb[i]));
    }
    d->result->FreshNewColor();
}

void ZrUiColorBookTab::updateColor(bool)
{
    if (!d->newColor)
        return;
    d->line->setColor(d->newColor);
    d->result->FreshOldColor();
    freshNewRGB();
    if (d->bookCount == 0 || !d->newColor->hasBookName())
        return;
    const QString book = QString::fromWCharArray(d->newColor->bookName());
    const int index = d->books->findData(book, Qt::DisplayRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index == -1)
        return;
    d->books->setCurrentIndex(index);
    CEdColorBookManager* manager = CEdColorBookManager::getInstance();
    const ZrString colorName(d->newColor->colorName());
    int page = 0;
    if (!manager->getColorPageIndex(wide(book), colorName, page))
        page = 0;
    d->pages->setBookName(book, page);
    if (SXuBookColorPage* colors = manager->getColorPage(wide(book), page)) {
        for (int entry = 0; entry < colors->colors.length(); ++entry) {
            if (ZrString(colors->colors[entry].colorName()).compare(colorName) == 0) {
                d->colors->setBookInfo(book, page, entry);
                break;
            }
        }
    }
}

// The typed name is looked for in the current book: whole and ignoring case first, then, for a name
// with digits, across differences of blanks, as users type the numbered colours of a book.
bool ZrUiColorBookTab::checkvalue()
{
    if (!d->newColor)
        return true;
    const QString text = d->line->text();
    if (text == ZrColorLineEdit::getColorText(*d->newColor))
        return true;
    const QString book = d->currentBook();
    ZrCmColor found;
    if (d->bookCount > 0 && CEdColorBookManager::getInstance()->getColor(wide(book), wide(text), found)) {
        d->newColor->setColorMethod(ZrCmEntityColor::kByColor);
        d->newColor->setNames(found.colorName(), wide(book).c_str());
        int r = 0, g = 0, b = 0;
        getRgb(&found, r, g, b);
        d->newColor->setRGB(uint8_t(r), uint8_t(g), uint8_t(b));
        return true;
    }
    const QString message = zrUiText("IDS_ZRED_UICOLORBOOKTAB_PROMPT1", QStringLiteral("%s 配色系统中的颜色名无效。"))
                                .replace(QLatin1String("%s"), book);
    ZrUiMessageBox(ZrString(), ZrString(message), 0, window());
    return false;
}

void ZrUiColorBookTab::onColorComboBoxSelChanged(int)
{
    if (d->bookCount > 0)
        d->pages->setBookName(d->currentBook(), 0);
}

void ZrUiColorBookTab::onBookPageChanged(int page) { d->colors->setBookInfo(d->currentBook(), page, -1); }

void ZrUiColorBookTab::onBookColorListItemChanged(int entry)
{
    if (!d->newColor)
        return;
    const QString book = d->currentBook();
    SXuBookColorPage* page =
        CEdColorBookManager::getInstance()->getColorPage(wide(book), d->colors->GetCurrentBookColorPageIndex());
    if (page && entry >= 0 && entry < page->colors.length()) {
        const ZrCmColor& chosen = page->colors[entry];
        d->newColor->setColorMethod(ZrCmEntityColor::kByColor);
        d->newColor->setRGB(chosen.red(), chosen.green(), chosen.blue());
        d->newColor->setNames(chosen.colorName(), wide(book).c_str());
    }
    d->line->setColor(d->newColor);
    freshNewRGB();
}

// Only an accepted dialog is closed: one that refused the typed colour stays open for a correction.
void ZrUiColorBookTab::onResultDoubleClicked()
{
    d->dialog->accept();
    if (d->dialog->result() == QDialog::Accepted)
        d->dialog->close();
}

void ZrUiColorBookTab::onResultOldColorDoubleClicked() { updateColor(true); }

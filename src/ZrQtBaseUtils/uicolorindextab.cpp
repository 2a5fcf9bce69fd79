#include "uicolorindextab.h"
#include "uicolorwidgets_p.h"

#include "ZrQtUtilsFunc.h"

#include "zrconfig.h"
#include "zrui.h"

#include <QAction>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

namespace {

// The palette of the grids and of the hover labels, as the drawing view shows index colours.
const uint32_t kDisplayBackground = 0xFF30281E;

// Whether a click on the cell at `column` holding `aci` chooses it on a grid of kind `type`.
bool gridTakes(int type, int aci, int column)
{
    switch (type) {
    case ZrPaleteWnd::kUpper: return aci % 2 == 0 && aci < 256;
    case ZrPaleteWnd::kLower: return aci % 2 == 1 && aci < 256;
    case ZrPaleteWnd::kStandard: return aci >= 1 && aci <= 9;
    case ZrPaleteWnd::kGrey: return column < 6;
    default: return false;
    }
}

} // namespace

struct ZrPaleteWnd::Private
{
    int hoverX = -1;
    int hoverY = -1;
    int type;
    int rows;
    int columns;
    int selectedAci = 0;
    int cellSize;

    int pitch() const { return cellSize + 2; }
    // The index under `pos`, and its cell; -1 off the cells.
    int aciAt(const ZrPaleteWnd* grid, const QPoint& pos, int& row, int& column) const
    {
        if (pos.x() < 0 || pos.y() < 0)
            return -1;
        row = pos.y() / pitch();
        column = pos.x() / pitch();
        return grid->getAciByPos(row, column, type);
    }
    QRect frameOf(int row, int column) const
    {
        return QRect(column * pitch() + 1, row * pitch() + 1, cellSize + 3, cellSize + 3);
    }
};

ZrPaleteWnd::ZrPaleteWnd(int type, int rows, int columns, int cellSize, QWidget* parent)
    : QWidget(parent), d(new Private{-1, -1, type, rows, columns, 0, cellSize})
{
    setAttribute(Qt::WA_MouseTracking);
    // Room for every cell and for the frame around the last one.
    setFixedSize(columns * d->pitch() + 4, rows * d->pitch() + 4);
}

ZrPaleteWnd::~ZrPaleteWnd() = default;

int ZrPaleteWnd::getAciByPos(int row, int column, int type) const
{
    if (row < 0 || column < 0 || row >= d->rows || column >= d->columns)
        return -1;
    switch (type) {
    case kUpper: return (column * 5 + 5 - row) * 2 + 8;
    case kLower: return (column * 5 + 5 + row) * 2 + 1;
    case kStandard: return column + 1;
    case kGrey: return column + 250;
    default: return -1;
    }
}

bool ZrPaleteWnd::getPosByAci(int aci, int type, int& row, int& column)
{
    switch (type) {
    case kUpper:
        if (aci < 10 || aci > 249 || aci % 2 != 0)
            return false;
        row = ((aci / 10) * 10 - aci + 8) / 2;
        column = aci / 10 - 1;
        return true;
    case kLower:
        if (aci < 10 || aci > 249 || aci % 2 != 1)
            return false;
        row = (aci % 10 - 1) / 2;
        column = aci / 10 - 1;
        return true;
    case kStandard:
        if (aci < 1 || aci > 9)
            return false;
        row = 0;
        column = aci - 1;
        return true;
    case kGrey:
        if (aci < 250 || aci > 255)
            return false;
        row = 0;
        column = aci - 250;
        return true;
    default:
        return false;
    }
}

int ZrPaleteWnd::selectedAci() const { return d->selectedAci; }

void ZrPaleteWnd::setSelectedAci(int aci)
{
    d->selectedAci = aci;
    update();
}

void ZrPaleteWnd::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QPen cellPen;
    cellPen.setWidthF(0.3);
    painter.setPen(cellPen);
    for (int row = 0; row < d->rows; ++row) {
        for (int column = 0; column < d->columns; ++column) {
            const QRect cell(column * d->pitch() + 2, row * d->pitch() + 2, d->cellSize, d->cellSize);
            painter.fillRect(cell, colorOfWord(ZrIndexColorWnd::aciToRgb(getAciByPos(row, column, d->type))));
            painter.drawRect(cell);
        }
    }
    painter.setBrush(Qt::NoBrush);
    int row = 0;
    int column = 0;
    if (d->hoverX > 0 && d->hoverY > 0 && d->aciAt(this, QPoint(d->hoverX, d->hoverY), row, column) != -1) {
        painter.setPen(QPen(QBrush(Qt::black), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
        painter.drawRect(d->frameOf(row, column));
    }
    if (getPosByAci(d->selectedAci, d->type, row, column)) {
        QPen selectionPen;
        selectionPen.setWidth(2);
        painter.setPen(selectionPen);
        painter.drawRect(d->frameOf(row, column));
    }
}

void ZrPaleteWnd::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint pos = event->localPos().toPoint();
    d->hoverX = pos.x();
    d->hoverY = pos.y();
    int row = 0;
    int column = 0;
    const int aci = d->aciAt(this, pos, row, column);
    if (aci >= 1 && aci <= 255)
        Q_EMIT selColorChanged(uint32_t(aci));
    update();
}

void ZrPaleteWnd::mouseReleaseEvent(QMouseEvent* event)
{
    int row = 0;
    int column = 0;
    const int aci = d->aciAt(this, event->localPos().toPoint(), row, column);
    if (event->button() == Qt::LeftButton && aci != -1 && gridTakes(d->type, aci, column)) {
        d->selectedAci = aci;
        Q_EMIT colorSelected(uint32_t(aci), d->type);
    }
    update();
}

// The index chosen by the first click of the double click is the one taken.
void ZrPaleteWnd::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (d->selectedAci == -1 || event->button() != Qt::LeftButton)
        return;
    int row = 0;
    int column = 0;
    const int aci = d->aciAt(this, event->localPos().toPoint(), row, column);
    if (aci == -1 || !gridTakes(d->type, aci, column))
        return;
    Q_EMIT colorSelected(uint32_t(d->selectedAci), d->type);
    Q_EMIT closeDialog();
}

void ZrPaleteWnd::leaveEvent(QEvent*)
{
    d->hoverX = -1;
    d->hoverY = -1;
    update();
    Q_EMIT leaveWidget();
}

struct ZrIndexColorWnd::Private
{
    QDialog* dialog;
    ZrJsonPtr params;
    ZrPaleteWnd* grids[4] = {};
    QLabel* aciLabel = nullptr;
    QLabel* rgbLabel = nullptr;
    ZrUiColorResultWidget* result = nullptr;
    ZrColorLineEdit* line = nullptr;
    QPushButton* byLayer = nullptr;
    QPushButton* byBlock = nullptr;
    QAction* keyL = nullptr;
    QAction* keyK = nullptr;
    QAction* keyC = nullptr;
    int currentAci = -1;
    ZrCmColor* newColor = nullptr;
    ZrCmColor* oldColor = nullptr;

    void selectOnGrids(int aci)
    {
        for (ZrPaleteWnd* grid : grids)
            grid->setSelectedAci(aci);
    }
    bool enabledByKey(const char* key) const { return params && params->GetVarB(key, false); }
};

ZrIndexColorWnd::ZrIndexColorWnd(QDialog* dialog, QWidget* parent) : ZrColorWidgetBase(parent), d(new Private)
{
    d->dialog = dialog;
    init();
}

ZrIndexColorWnd::~ZrIndexColorWnd() = default;

void ZrIndexColorWnd::init()
{
    struct GridShape
    {
        int type, rows, columns, cellSize;
        const char* name;
    };
    static const GridShape shapes[] = {
        {ZrPaleteWnd::kUpper, 5, 24, 12, "ZrPaleteWnd_upper"},
        {ZrPaleteWnd::kLower, 5, 24, 12, "ZrPaleteWnd_lower"},
        {ZrPaleteWnd::kStandard, 1, 9, 17, "ZrPaleteWnd_standard"},
        {ZrPaleteWnd::kGrey, 1, 6, 17, "ZrPaleteWnd_grey"},
    };
    for (int i = 0; i < 4; ++i) {
        const GridShape& shape = shapes[i];
        auto* grid = new ZrPaleteWnd(shape.type, shape.rows, shape.columns, shape.cellSize, this);
        grid->setObjectName(QLatin1String(shape.name));
        connect(grid, &ZrPaleteWnd::selColorChanged, this, &ZrIndexColorWnd::slot_colorChange);
        connect(grid, &ZrPaleteWnd::colorSelected, this, &ZrIndexColorWnd::slot_colorSelected);
        connect(grid, &ZrPaleteWnd::leaveWidget, this, &ZrIndexColorWnd::slot_leave_widget);
        connect(grid, &ZrPaleteWnd::closeDialog, this, &ZrIndexColorWnd::slot_color_label_double_clicked);
        d->grids[i] = grid;
    }

    ZrString appName;
    zr_getOEMStringRePlace(appName, "appEnName");
    auto* title = new QLabel(zrUiText("IDS_ZRED_UICOLORINDEXTAB_STATICTEXT1", QStringLiteral("%s 颜色索引(ACI):"))
                                 .replace(QLatin1String("%s"), appName.toQString()));
    d->aciLabel = new QLabel;
    d->aciLabel->setObjectName(QStringLiteral("aciLabel"));
    d->rgbLabel = new QLabel;
    d->rgbLabel->setObjectName(QStringLiteral("rgbLabel"));

    const bool chinese = zr_sys_language() == ZrUtf8String("zh-CN");
    d->byLayer = new QPushButton(chinese ? tr("ByLayer(&L)") : tr("By&Layer"));
    d->byLayer->setObjectName(QStringLiteral("btnByLayer"));
    d->byBlock = new QPushButton(chinese ? tr("ByBlock(&K)") : tr("ByBloc&k"));
    d->byBlock->setObjectName(QStringLiteral("btnByBlock"));
    connect(d->byLayer, &QPushButton::clicked, this, &ZrIndexColorWnd::slot_btnByLayerClicked);
    connect(d->byBlock, &QPushButton::clicked, this, &ZrIndexColorWnd::slot_btnByBlockClicked);

    auto* palettes = new QWidget;
    auto* palettesGrid = new QGridLayout(palettes);
    palettesGrid->setSpacing(0);
    palettesGrid->setContentsMargins(0, 0, 0, 0);
    palettesGrid->addWidget(title, 0, 0, 1, 2);
    palettesGrid->addWidget(d->grids[0], 1, 0, 6, 5);
    palettesGrid->addWidget(new QWidget, 7, 0);
    palettesGrid->addWidget(d->grids[1], 8, 0, 6, 5);
    palettesGrid->addWidget(d->aciLabel, 14, 0, 1, 3);
    palettesGrid->addWidget(d->rgbLabel, 14, 3, 1, 2);
    palettesGrid->addWidget(d->grids[2], 15, 0, 1, 3);
    palettesGrid->addWidget(d->byLayer, 15, 3);
    palettesGrid->addWidget(d->byBlock, 15, 4);

    d->result = new ZrUiColorResultWidget;
    connect(d->result, &ZrUiColorResultWidget::newColorDoubleClicked, this,
            &ZrIndexColorWnd::slot_color_label_double_clicked);
    connect(d->result, &ZrUiColorResultWidget::oldColorDoubleClicked, this,
            &ZrIndexColorWnd::onResultOldColorDoubleClicked);
    d->line = new ZrColorLineEdit;
    d->line->setObjectName(QStringLiteral("colorLineEdit"));
    connect(d->line, &QLineEdit::editingFinished, this, &ZrIndexColorWnd::onEditingFinished);
    auto* lineLabel = new QLabel(zrUiText("CMDSRES_IDD_DIALOG_EATTEDIT3_3", QStringLiteral("颜色(&C):")));
    lineLabel->setBuddy(d->line);

    auto* choice = new QWidget;
    auto* choiceGrid = new QGridLayout(choice);
    choiceGrid->setSpacing(3);
    choiceGrid->setContentsMargins(3, 3, 3, 3);
    choiceGrid->addWidget(d->grids[3], 0, 0, 1, 2);
    choiceGrid->addWidget(new QWidget, 0, 2, 1, 2);
    choiceGrid->addWidget(d->result, 0, 4, 2, 1);
    choiceGrid->addWidget(lineLabel, 1, 0);
    choiceGrid->addWidget(d->line, 1, 1, 1, 3);

    auto* outer = new QGridLayout(this);
    outer->setSpacing(3);
    outer->setContentsMargins(3, 3, 3, 3);
    outer->addWidget(palettes, 0, 0, 16, 1);
    outer->addWidget(choice, 16, 0, 2, 1);

    const auto makeAction = [this](const QList<QKeySequence>& keys, void (ZrIndexColorWnd::*slot)()) {
        auto* action = new QAction(this);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    d->keyL = makeAction({QKeySequence(Qt::Key_L)}, &ZrIndexColorWnd::slot_btnByLayerClicked);
    d->keyK = makeAction({QKeySequence(Qt::Key_K)}, &ZrIndexColorWnd::slot_btnByBlockClicked);
    d->keyC = makeAction({QKeySequence(Qt::Key_C), QKeySequence(Qt::ALT | Qt::Key_C)},
                         &ZrIndexColorWnd::slot_KeyC_clicked);
    addAction(d->keyK);
    addAction(d->keyL);
    addAction(d->keyC);
}

void ZrIndexColorWnd::initializeData(ZrJsonPtr params, ZrCmColor* newColor, ZrCmColor* oldColor)
{
    d->params = params;
    d->newColor = newColor;
    d->oldColor = oldColor;
    d->result->init(newColor, oldColor);
    // A caller that says anything about a button takes its single-key shortcut away, whatever it says.
    const auto applyKey = [this](const char* key, QPushButton* button, QAction* action,
                                 void (ZrIndexColorWnd::*slot)()) {
        if (!d->params || !d->params->hasProperty(key))
            return;
        button->setEnabled(d->params->GetVarB(key, false));
        disconnect(action, &QAction::triggered, this, slot);
    };
    applyKey("isByLayerEnable", d->byLayer, d->keyL, &ZrIndexColorWnd::slot_btnByLayerClicked);
    applyKey("isByBLockEnable", d->byBlock, d->keyK, &ZrIndexColorWnd::slot_btnByBlockClicked);
    updateColor(true);
}

ZrColorLineEdit* ZrIndexColorWnd::getColorLineEdit() const { return d->line; }

uint32_t ZrIndexColorWnd::aciToRgb(int index)
{
    const uint32_t* palette = zrcmDispPalette(kDisplayBackground);
    if (!palette || index < 0 || index > 255)
        return 0;
    return palette[index];
}

void ZrIndexColorWnd::updateColor(bool)
{
    if (!d->newColor)
        return;
    d->line->setColor(d->newColor);
    d->result->FreshOldColor();
    d->result->FreshNewColor();
    if (d->byLayer->isEnabled() && d->newColor->colorMethod() == ZrCmEntityColor::kNone) {
        d->newColor->setColorMethod(ZrCmEntityColor::kByLayer);
        d->line->setColor(d->newColor);
    }
    const ZrCmEntityColor::ColorMethod method = d->newColor->colorMethod();
    if (method != ZrCmEntityColor::kByLayer && method != ZrCmEntityColor::kByBlock
        && method != ZrCmEntityColor::kByACI) {
        d->selectOnGrids(-1);
        return;
    }
    d->currentAci = d->newColor->colorIndex();
    if (d->currentAci >= 1 && d->currentAci <= 256)
        slot_colorSelected(uint32_t(d->currentAci));
    d->selectOnGrids(d->currentAci);
}

bool ZrIndexColorWnd::checkvalue()
{
    if (!d->newColor)
        return true;
    const QString text = d->line->text();
    if (text == ZrColorLineEdit::getColorText(*d->newColor))
        return true;

    // Named colours in the user's language first, then in English; position 0 stays empty.
    static const char* const englishNames[] = {"", "red", "yellow", "green", "cyan", "blue", "magenta", "white"};
    QStringList localNames{QString()};
    QStringList english;
    for (int index = 1; index <= 7; ++index) {
        ZrCmColor named;
        named.setColorMethod(ZrCmEntityColor::kByACI);
        named.setColorIndex(uint16_t(index));
        localNames << ZrColorLineEdit::getColorText(named);
    }
    for (const char* name : englishNames)
        english << QLatin1String(name);
    const QString lower = text.toLower();
    int named = localNames.indexOf(lower);
    if (named == -1)
        named = english.indexOf(lower);

    const auto takeBy = [this](const char* enableKey, ZrCmEntityColor::ColorMethod method) {
        if (!d->enabledByKey(enableKey)) {
            d->line->setText(ZrColorLineEdit::getColorText(*d->newColor));
            return refuseText();
        }
        d->newColor->setColorMethod(method);
        return true;
    };
    if (text == QLatin1String("BYLAYER"))
        return takeBy("isByLayerEnable", ZrCmEntityColor::kByLayer);
    if (text == QLatin1String("BYBLOCK"))
        return takeBy("isByBLockEnable", ZrCmEntityColor::kByBlock);
    if (named != -1 && !text.isEmpty()) {
        d->newColor->setColorMethod(ZrCmEntityColor::kByACI);
        d->newColor->setColorIndex(uint16_t(named));
        return true;
    }

    bool isNumber = false;
    const uint number = text.toUInt(&isNumber, 10);
    if (!isNumber || number > 256)
        return refuseText();
    if (number == 256) {
        d->newColor->setColorMethod(ZrCmEntityColor::kByLayer);
    } else if (number == 0) {
        d->newColor->setColorMethod(ZrCmEntityColor::kByBlock);
    } else {
        d->newColor->setColorMethod(ZrCmEntityColor::kByACI);
        d->newColor->setColorIndex(uint16_t(number));
    }
    return true;
}

bool ZrIndexColorWnd::refuseText()
{
    const QString message = zrUiText("IDS_ZRED_UICOLORINDEXTAB_PROMPT1", QStringLiteral("不是有效的颜色名或值！"));
    ZrUiMessageBox(ZrString(), ZrString(message), 0, window());
    return false;
}

void ZrIndexColorWnd::slot_colorChange(uint32_t aci)
{
    d->currentAci = int(aci);
    d->aciLabel->setText(zrUiText("IDS_QTUTILS_IMAGE_COLORINDEXTAB_0", QStringLiteral("索引颜色: %d"))
                             .replace(QLatin1String("%d"), QString::number(aci)));
    const uint32_t word = aciToRgb(int(aci));
    d->rgbLabel->setText(
        QStringLiteral("RGB: %1, %2, %3").arg(word & 0xFF).arg((word >> 8) & 0xFF).arg((word >> 16) & 0xFF));
}

void ZrIndexColorWnd::slot_colorSelected(uint32_t aci)
{
    if (!d->newColor)
        return;
    if (d->byLayer->hasFocus())
        d->byLayer->clearFocus();
    else if (d->byBlock->hasFocus())
        d->byBlock->clearFocus();
    d->currentAci = int(aci);
    d->newColor->setColorMethod(ZrCmEntityColor::kByACI);
    d->newColor->setColorIndex(uint16_t(aci));
    d->line->setColor(d->newColor);
    d->result->FreshNewColor();
    d->selectOnGrids(int(aci));
}

void ZrIndexColorWnd::slot_leave_widget()
{
    d->aciLabel->clear();
    d->rgbLabel->clear();
}

// Only an accepted dialog is closed: one that refused the typed colour stays open for a correction.
void ZrIndexColorWnd::slot_color_label_double_clicked()
{
    d->dialog->accept();
    if (d->dialog->result() == QDialog::Accepted)
        d->dialog->close();
}

void ZrIndexColorWnd::onResultOldColorDoubleClicked() { updateColor(true); }

void ZrIndexColorWnd::slot_btnByLayerClicked() { takeByMethod(ZrCmEntityColor::kByLayer); }
void ZrIndexColorWnd::slot_btnByBlockClicked() { takeByMethod(ZrCmEntityColor::kByBlock); }

void ZrIndexColorWnd::takeByMethod(ZrCmEntityColor::ColorMethod method)
{
    if (!d->newColor)
        return;
    const bool byLayer = method == ZrCmEntityColor::kByLayer;
    (byLayer ? d->byLayer : d->byBlock)->setFocus(Qt::OtherFocusReason);
    d->currentAci = byLayer ? 256 : 0;
    d->newColor->setColorMethod(method);
    d->line->setColor(d->newColor);
    d->result->FreshNewColor();
}

void ZrIndexColorWnd::slot_KeyC_clicked()
{
    d->line->setFocus(Qt::OtherFocusReason);
    d->line->selectAll();
}

// ByLayer and ByBlock typed in full are taken at once while their buttons are enabled; every
// other text waits until the dialog is accepted or the tab is left.
void ZrIndexColorWnd::onEditingFinished()
{
    const QString text = d->line->text();
    const auto typed = [&text](QPushButton* button, const char* word) {
        return button->isEnabled() && text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    };
    if (typed(d->byLayer, "BYLAYER")) {
        slot_btnByLayerClicked();
        d->byLayer->clearFocus();
    } else if (typed(d->byBlock, "BYBLOCK")) {
        slot_btnByBlockClicked();
        d->byBlock->clearFocus();
    }
}

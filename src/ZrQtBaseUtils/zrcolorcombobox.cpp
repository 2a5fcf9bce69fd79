#include "zrcolorcombobox.h"

#include "ZrQtUtilsFunc.h"
#include "qt_colordialog.h"
#include "uicolorbookmng.h"
#include "zrdrawingcombobox_p.h"

#include "zrdbdatabase.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrresbuf.h"
#include "zrsystem.h"
#include "zrui.h"

#include <QHash>
#include <QLinearGradient>
#include <QListView>
#include <QMessageBox>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionComboBox>
#include <QStyledItemDelegate>
#include <QStylePainter>
#include <optional>

namespace {

constexpr int kMaximumWidth = 250;
constexpr int kFixedHeight = 23;
constexpr int kSwatchOnlyWidth = 43;
constexpr unsigned kDefaultViewStyle = 7;
constexpr int kDefaultColorTabs = 7;
constexpr int kRecentColors = 10;
constexpr int kCachedSwatches = 256;
// Room between the swatch and the text, and for the arrow at the right.
constexpr int kTextGap = 6;
constexpr int kArrowWidth = 19;

bool holdsColorData(const QVariant& value) { return value.userType() == qMetaTypeId<ColorData>(); }

bool hasBookColor(const ZrCmColor& color)
{
    return color.hasBookName() && color.hasColorName();
}

// The channels the book holds now for a book colour; the stored ones when the book lacks it.
ZrCmColor withBookChannels(const ZrCmColor& color)
{
    ZrCmColor book = color;
    CEdColorBookManager::getInstance()->getColor(ZrString(color.bookName()), ZrString(color.colorName()), book);
    return book;
}

bool commandActive()
{
    ZrResBuf* value = zrutNewRb(RTSHORT);
    const bool active = zredGetVar(L"CMDACTIVE", value) == RTNORM && value->restype == RTSHORT
        && (value->resval.rint & 1) != 0;
    zrutRelRb(value);
    return active;
}

// A swatch with a one-pixel edge: the colour inside, `edge` around it.
QPixmap framedSwatch(int side, const QColor& edge, const QColor& fill)
{
    QPixmap pixmap(side, side);
    pixmap.fill(edge);
    QPainter painter(&pixmap);
    painter.fillRect(1, 1, side - 2, side - 2, fill);
    return pixmap;
}

// The two item texts that have swatches of their own, in the user's language.
struct SwatchWords
{
    QString varies;
    QString none;
};

SwatchWords swatchWords()
{
    return {zrUiText("IDS_PROPERTIES_0", QStringLiteral("*多种*")),
            zrUiText("IDS_HATCHPATTERN_PROMPT34", QStringLiteral("无"))};
}

enum class SwatchShape : uint64_t {
    Empty,
    // White, crossed out.
    None,
    // The dialog item's band of colours.
    Gradient,
    // The colour in a one-pixel black edge.
    Framed,
    // The colour in a one-pixel white edge, for items the user's choices added.
    WhiteFramed,
};

SwatchShape shapeOf(const ColorData& data, const SwatchWords& words)
{
    if (data.text == words.varies)
        return SwatchShape::Empty;
    if (data.text == words.none)
        return SwatchShape::None;
    return data.kind == ColorData::kDialogCommand ? SwatchShape::Gradient : SwatchShape::Framed;
}

QPixmap drawSwatch(SwatchShape shape, const QColor& color, int side)
{
    switch (shape) {
    case SwatchShape::Empty: break;
    case SwatchShape::None: {
        QPixmap pixmap = framedSwatch(side, Qt::black, Qt::white);
        QPainter painter(&pixmap);
        painter.setPen(Qt::black);
        painter.drawLine(side - 1, 0, 0, side - 1);
        return pixmap;
    }
    case SwatchShape::Gradient: {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QLinearGradient gradient(0, 0, side, 0);
        gradient.setColorAt(0.2, Qt::gray);
        gradient.setColorAt(0.4, Qt::green);
        gradient.setColorAt(0.6, Qt::red);
        gradient.setColorAt(0.8, Qt::magenta);
        gradient.setColorAt(1.0, Qt::black);
        QPainter painter(&pixmap);
        painter.setBrush(gradient);
        painter.drawRect(0, 0, side - 1, side - 1);
        return pixmap;
    }
    case SwatchShape::Framed: return framedSwatch(side, Qt::black, color);
    case SwatchShape::WhiteFramed: return framedSwatch(side, Qt::white, color);
    }
    return QPixmap();
}

QString chooseItemText() { return zrUiText("IDS_ZRED_DEFAULT_CLR_NOTICE_CHOOSE", QStringLiteral("选择颜色...")); }

std::optional<ColorData> colorDataAt(const QComboBox* box, int row)
{
    const QVariant value = box->itemData(row, Qt::UserRole);
    if (!holdsColorData(value))
        return std::nullopt;
    return value.value<ColorData>();
}

ZrCmColor colorOfMethod(ZrCmEntityColor::ColorMethod method)
{
    ZrCmColor color;
    color.setColorMethod(method);
    return color;
}

ZrCmColor indexColor(int index)
{
    ZrCmColor color = colorOfMethod(ZrCmEntityColor::kByACI);
    color.setColorIndex(static_cast<uint16_t>(index));
    return color;
}

uint32_t packedRgb(const ZrCmColor& color)
{
    return uint32_t(color.red()) | (uint32_t(color.green()) << 8) | (uint32_t(color.blue()) << 16);
}

} // namespace

struct ZrColorComboBox::Private
{
    // The swatch, and an icon of it, drawn once for each shape, side and colour: a list is rebuilt
    // at every host update.
    const QIcon& swatch(SwatchShape shape, const QColor& color, int side);

    // The last accepted item: the list returns to it when the dialog is cancelled.
    int currentIndex = 0;
    int iconSize = 0;
    // The swatch's inset; 0 until the box is first shown and measured.
    int margin = 0;
    unsigned viewStyle = kDefaultViewStyle;
    uint32_t paletteWord = 0;
    // Colours the user added, oldest first; they survive every rebuild of the list.
    QVector<ColorData> customColors;
    // Set once the dialog item is in the list: later items go in front of it.
    bool hasChooseItem = false;
    bool showText = true;
    QColor lastColor;
    ZrDbObjectId layerId;
    ZrGlobalUIReactorHelp::SColorInfo colorInfo;
    int openColorTabs = kDefaultColorTabs;
    SwatchWords words;
    QHash<uint64_t, QIcon> swatches;
    // While a rebuild gathers its rows: those not yet in the list.
    std::optional<QList<QStandardItem*>> pendingRows;
    // Last, so that the box leaves the reactor's list before the record goes.
    std::optional<ZrDrawingCombo::ReactorRegistration> registration;
};

ZrColorComboBox::ZrColorComboBox(QWidget* parent, bool showText) : QComboBox(parent), d(new Private)
{
    construct(false, ZrCmColor(), false, showText);
}

ZrColorComboBox::ZrColorComboBox(bool modifySysVar, QWidget* parent, bool showText)
    : QComboBox(parent), CZrQtControlHelp(modifySysVar), d(new Private)
{
    construct(true, ZrCmColor(), false, showText);
}

ZrColorComboBox::ZrColorComboBox(bool modifySysVar, const ZrCmColor& color, QWidget* parent, bool showText)
    : QComboBox(parent), CZrQtControlHelp(modifySysVar), d(new Private)
{
    construct(true, color, true, showText);
}

ZrColorComboBox::~ZrColorComboBox() = default;

void ZrColorComboBox::construct(bool reactorBound, const ZrCmColor& color, bool addGiven, bool showText)
{
    d->customColors.reserve(kRecentColors);
    if (reactorBound) {
        setObjectName(tr("ZrColorComboBox"));
        setPickFirstInfo(&d->colorInfo);
        d->registration.emplace(this);
    }
    setMaximumWidth(kMaximumWidth);
    setFixedHeight(kFixedHeight);
    setShowText(showText);
    Initialize();
    init(color, addGiven, d->layerId);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &ZrColorComboBox::on_activated);
}

void ZrColorComboBox::Initialize()
{
    d->currentIndex = 0;
    d->iconSize = fontMetrics().height() + 4;
    setView(new QListView(this));
    setItemDelegate(new QStyledItemDelegate(this));
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ZrColorComboBox::currentColorIndexChanged, Qt::UniqueConnection);
}

void ZrColorComboBox::init(const ZrCmColor& color, bool addGiven, ZrDbObjectId layerId)
{
    d->words = swatchWords();
    {
        ZrDrawingCombo::ModifySysVarPause pause(this);
        ZrQtBlockSignalUtil blocker(this);
        clear();
        CXuDocument* document = zrDocManagerPtr()->curDocument();
        if (document) {
            // The rows go in together, so that the list and its view take them up once.
            if (qobject_cast<QStandardItemModel*>(model()))
                d->pendingRows.emplace();
            const unsigned int* palette = zrsiutCurPalette();
            d->paletteWord = palette ? palette[0] : 0;
            d->hasChooseItem = false;
            if (d->viewStyle & kUseCurrentItem) {
                ZrDbDatabase* db = document->database();
                ColorData current = formatColor(db ? db->cecolor() : ZrCmColor(), palette, ZrDbObjectId::kNull);
                current.text = zrUiText("IDS_HATCHPATTERN_PROMPT33", QStringLiteral("使用当前项"));
                // The swatch stays that of the current colour.
                current.cmColor.setColorMethod(ZrCmEntityColor::kNone);
                insertColorData(count(), current);
            }
            if (d->viewStyle & kNoneItem)
                insertColorData(count(), formatColor(colorOfMethod(ZrCmEntityColor::kNone), palette, ZrDbObjectId::kNull));
            if (d->viewStyle & kByLayerByBlock) {
                insertColorData(count(), formatColor(colorOfMethod(ZrCmEntityColor::kByLayer), palette, layerId));
                insertColorData(count(), formatColor(colorOfMethod(ZrCmEntityColor::kByBlock), palette, ZrDbObjectId::kNull));
            }
            for (int index = 1; index <= 7; ++index)
                insertColorData(count(), formatColor(indexColor(index), palette, ZrDbObjectId::kNull));
            // An override of subInit counts the items listed so far.
            flushRows();
            subInit();
            // The given colour is added even when an item shows it already.
            if (addGiven && CXuSystem::instance()->isActiveViewReady()) {
                insertColorData(count(), formatColor(color, zrsiutCurPalette(), ZrDbObjectId::kNull));
                flushRows();
                setCurrentIndex(count() - 1);
            }
            if (d->viewStyle & kChooseItem)
                AppendFinish();
            flushRows();
            d->pendingRows.reset();
        }
    }
    if (const std::optional<ColorData> current = colorDataAt(this, currentIndex()))
        d->lastColor = current->color;
}

void ZrColorComboBox::subInit()
{
    for (const ColorData& data : qAsConst(d->customColors))
        insertColorData(count(), data);
}

void ZrColorComboBox::appendCustomInfo(const ColorData& data)
{
    if (d->customColors.size() >= kRecentColors)
        d->customColors.removeFirst();
    d->customColors.append(data);
}

void ZrColorComboBox::setViewStyle(unsigned style)
{
    d->viewStyle = style;
    init(ZrCmColor(), false, d->layerId);
}

unsigned ZrColorComboBox::viewStyle() const { return d->viewStyle; }

void ZrColorComboBox::setShowText(const bool& show)
{
    d->showText = show;
    if (show) {
        setMinimumWidth(0);
        setMaximumWidth(kMaximumWidth);
    } else {
        setFixedWidth(kSwatchOnlyWidth);
    }
    update();
}

void ZrColorComboBox::setLayerId(ZrDbObjectId layerId) { d->layerId = layerId; }
void ZrColorComboBox::setOpenColorTabs(int tabs) { d->openColorTabs = tabs; }

void ZrColorComboBox::setCurrentIndex(int index)
{
    if (index < 0 || index >= count())
        return;
    ZrQtBlockSignalUtil blocker(this);
    QComboBox::setCurrentIndex(index);
    d->currentIndex = index;
}

void ZrColorComboBox::SetNullItem() { setCurrentIndex(-1); }

void ZrColorComboBox::SetUseColorNone()
{
    ZrQtBlockSignalUtil blocker(this);
    ZrCmColor none = colorOfMethod(ZrCmEntityColor::kNone);
    none.setColorIndex(257);
    const ColorData data = formatColor(none, nullptr, ZrDbObjectId::kNull);
    insertItem(0, swatchIcon(data), data.text, QVariant::fromValue(data));
}

int ZrColorComboBox::insertColorItem(int index, const QString& text, const ZrCmColor& color)
{
    ColorData data = formatColor(color, nullptr, ZrDbObjectId::kNull);
    data.text = text;
    return AddColorItem(index, data);
}

int ZrColorComboBox::AddColorItem(int index, ColorData data)
{
    insertColorData(index, data);
    flushRows();
    return findData(data.text, Qt::DisplayRole, Qt::MatchCaseSensitive);
}

void ZrColorComboBox::insertColorData(int index, const ColorData& data)
{
    const bool chooseItemListed = d->hasChooseItem;
    if (data.kind == ColorData::kDialogCommand)
        d->hasChooseItem = true;
    const QIcon& icon = swatchIcon(data);
    const int end = count() + (d->pendingRows ? d->pendingRows->size() : 0);
    const int at = chooseItemListed ? index : end;
    if (d->pendingRows && at >= end) {
        // As QComboBox::insertItem makes its rows.
        auto* row = new QStandardItem(data.text);
        if (!icon.isNull())
            row->setData(icon, Qt::DecorationRole);
        row->setData(QVariant::fromValue(data), Qt::UserRole);
        d->pendingRows->append(row);
        return;
    }
    flushRows();
    insertItem(at, icon, data.text, QVariant::fromValue(data));
}

void ZrColorComboBox::flushRows()
{
    if (!d->pendingRows || d->pendingRows->isEmpty())
        return;
    static_cast<QStandardItemModel*>(model())->invisibleRootItem()->appendRows(*d->pendingRows);
    d->pendingRows->clear();
}

int ZrColorComboBox::AppendColorItem(const QColor& color, const QString& text)
{
    ColorData data;
    data.color = color;
    data.text = text;
    data.cmColor.setRGB(static_cast<uint8_t>(color.red()), static_cast<uint8_t>(color.green()),
                        static_cast<uint8_t>(color.blue()));
    return AddColorItem(count() - 1, data);
}

int ZrColorComboBox::AppendColorItem(const ZrCmColor& color)
{
    const ColorData data = formatColor(color, nullptr, ZrDbObjectId::kNull);
    appendCustomInfo(data);
    return AddColorItem(count() - 1, data);
}

int ZrColorComboBox::AppendColorItem(const ColorData& data) { return AddColorItem(count() - 1, data); }

int ZrColorComboBox::AddItemToMRU(const ZrString& text, int index)
{
    const ZrCmColor color = indexColor(index);
    const int listed = FindColor(color);
    if (listed >= 0)
        return listed;
    ColorData data = formatColor(color, nullptr, ZrDbObjectId::kNull);
    data.text = text.toQString();
    return AddColorItem(count() - 1, data);
}

int ZrColorComboBox::AddColorToMRU(int index) { return AddItemToMRU(zrutColorToStr(static_cast<short>(index)), index); }

void ZrColorComboBox::AppendFinish()
{
    ColorData command;
    command.kind = ColorData::kDialogCommand;
    command.color = QColor(0, 0, 255);
    command.text = chooseItemText();
    insertColorData(count(), command);
}

ZrCmColor ZrColorComboBox::GetColor(int index) const
{
    const std::optional<ColorData> data = colorDataAt(this, index);
    return data ? data->cmColor : ZrCmColor();
}

QColor ZrColorComboBox::GetCurrentColor() const
{
    const std::optional<ColorData> data = colorDataAt(this, currentIndex());
    return data ? data->color : QColor();
}

ZrCmColor ZrColorComboBox::GetCurrentColorEx() const { return GetColor(currentIndex()); }

bool ZrColorComboBox::FindColor(int position, QColor& out) const
{
    const std::optional<ColorData> data = colorDataAt(this, position);
    if (!data || data->kind != ColorData::kColor)
        return false;
    out = data->color;
    return true;
}

int ZrColorComboBox::FindColor(const QColor& color) const
{
    for (int row = 0; row < count(); ++row) {
        const std::optional<ColorData> data = colorDataAt(this, row);
        if (data && data->kind == ColorData::kColor && data->color == color)
            return row;
    }
    return -1;
}

int ZrColorComboBox::FindColor(const ZrCmColor& color) const
{
    const ZrCmEntityColor::ColorMethod method = color.entityColor().colorMethod();
    for (int row = 0; row < count(); ++row) {
        const std::optional<ColorData> data = colorDataAt(this, row);
        if (!data)
            continue;
        switch (data->kind) {
        case ColorData::kColor:
        case ColorData::kByBlockItem:
        case ColorData::kByLayerItem:
            if (data->cmColor == color)
                return row;
            break;
        case ColorData::kUnmatchable:
            if (method == ZrCmEntityColor::kByLayer || method == ZrCmEntityColor::kByBlock
                || method == ZrCmEntityColor::kByACI) {
                if (data->cmColor.colorIndex() == color.colorIndex())
                    return row;
            } else if (method == ZrCmEntityColor::kByColor && packedRgb(data->cmColor) == packedRgb(color)) {
                return row;
            }
            break;
        default: break;
        }
    }
    return -1;
}

int ZrColorComboBox::FindColor(int aci, bool add)
{
    for (int row = 0; row < count(); ++row) {
        const std::optional<ColorData> data = colorDataAt(this, row);
        if (data && data->kind != ColorData::kUnmatchable && data->cmColor.colorIndex() == aci)
            return row;
    }
    if (!add)
        return -1;
    // A plain swatch: the item carries the index's channels, not the index.
    const ZrCmColor index = indexColor(aci);
    ColorData data;
    data.color = QColor(index.red(), index.green(), index.blue());
    data.text = QString::asprintf("RGB(%d, %d, %d)", index.red(), index.green(), index.blue());
    return AddColorItem(count() - 1, data);
}

const QIcon& ZrColorComboBox::Private::swatch(SwatchShape shape, const QColor& color, int side)
{
    static const QIcon none;
    if (side <= 2 || shape == SwatchShape::Empty)
        return none;
    const uint64_t key = (uint64_t(shape) << 48) | (uint64_t(side & 0xFFFF) << 32) | color.rgba();
    const auto found = swatches.constFind(key);
    if (found != swatches.constEnd())
        return *found;
    if (swatches.size() >= kCachedSwatches)
        swatches.clear();
    return *swatches.insert(key, QIcon(drawSwatch(shape, color, side)));
}

QPixmap ZrColorComboBox::getColorIcon(const ColorData& data)
{
    return swatchIcon(data).pixmap(d->iconSize);
}

const QIcon& ZrColorComboBox::swatchIcon(const ColorData& data)
{
    return d->swatch(shapeOf(data, d->words), data.color, d->iconSize);
}

void ZrColorComboBox::on_activated(int) { zruiSetFocus(zruiViewWindow()); }

void ZrColorComboBox::currentColorIndexChanged(int index)
{
    if (index == -1)
        return;
    const std::optional<ColorData> picked = colorDataAt(this, index);
    if (!picked) {
        QMessageBox message(QMessageBox::NoIcon, QString(), QString::asprintf("data err: index(%d)", index),
                            QMessageBox::Ok, this);
        message.exec();
        return;
    }
    if (picked->kind != ColorData::kDialogCommand) {
        d->currentIndex = index;
        {
            ZrQtBlockSignalUtil blocker(this);
            setCeColor(picked->cmColor);
        }
        Q_EMIT ColorItemChanged(picked->color);
        return;
    }
    chooseInDialog();
}

void ZrColorComboBox::chooseInDialog()
{
    const ZrCmColor start = GetColor(d->currentIndex);
    // The dialog item never stays current, also while the dialog is up.
    setCurrentIndex(d->currentIndex);
    const std::optional<ZrCmColor> chosen =
        ZrQtColorDialog::chooseColor(start, this, (d->viewStyle & kByLayerByBlock) != 0, d->openColorTabs);
    if (!chosen) {
        setCurrentIndex(d->currentIndex);
        return;
    }
    std::optional<ColorData> shown = listedChoice(*chosen);
    if (!shown)
        shown = addChoice(*chosen);
    {
        ZrQtBlockSignalUtil blocker(this);
        setCurrentText(shown->text);
        setCeColor(shown->cmColor);
    }
    Q_EMIT ColorItemChanged(shown->color);
}

std::optional<ColorData> ZrColorComboBox::listedChoice(const ZrCmColor& chosen)
{
    const ZrCmEntityColor::ColorMethod method = chosen.colorMethod();
    if (method == ZrCmEntityColor::kByLayer || method == ZrCmEntityColor::kByBlock) {
        const bool byLayer = method == ZrCmEntityColor::kByLayer;
        const int wanted = byLayer ? ColorData::kByLayerItem : ColorData::kByBlockItem;
        for (int row = 0; row < count(); ++row) {
            const std::optional<ColorData> data = colorDataAt(this, row);
            if (data && data->kind == wanted) {
                // Fixed positions, whatever stands in front of the item: callers rely on them.
                d->currentIndex = byLayer ? 0 : 1;
                return data;
            }
        }
        return std::nullopt;
    }
    if (method != ZrCmEntityColor::kByColor && method != ZrCmEntityColor::kByACI && method != ZrCmEntityColor::kNone)
        return std::nullopt;
    for (int row = 0; row < count(); ++row) {
        const std::optional<ColorData> data = colorDataAt(this, row);
        if (!data)
            continue;
        const ZrCmColor& item = data->cmColor;
        bool matches = false;
        switch (data->kind) {
        case ColorData::kByBlockItem: matches = chosen.colorIndex() == 0 && method == item.colorMethod(); break;
        case ColorData::kByLayerItem: matches = chosen.colorIndex() == 256; break;
        case ColorData::kColor:
            if (item.colorMethod() == ZrCmEntityColor::kByACI && method == ZrCmEntityColor::kByACI
                && item.colorIndex() == chosen.colorIndex()) {
                d->currentIndex = row;
                return data;
            }
            matches = (item.colorMethod() == ZrCmEntityColor::kByColor && method == ZrCmEntityColor::kByColor
                       && packedRgb(item) == packedRgb(chosen))
                || method == ZrCmEntityColor::kNone;
            break;
        default: break;
        }
        if (matches) {
            // Not the match's position: the list stands on the last accepted item here.
            d->currentIndex = QComboBox::currentIndex();
            return data;
        }
    }
    return std::nullopt;
}

ColorData ZrColorComboBox::addChoice(const ZrCmColor& chosen)
{
    const unsigned int* palette = zrDocManagerPtr()->curDocument() ? zrsiutCurPalette() : zrcmAcadPalette(0);
    const ColorData data = formatColor(chosen, palette, ZrDbObjectId::kNull);
    ZrQtBlockSignalUtil blocker(this);
    const int end = count();
    if ((d->viewStyle & kChooseItem) && end > 0)
        insertItem(end, d->swatch(SwatchShape::WhiteFramed, data.color, d->iconSize), data.text,
                   QVariant::fromValue(data));
    else
        AddColorItem(end, data);
    appendCustomInfo(data);
    d->currentIndex = end;
    return data;
}

void ZrColorComboBox::setCeColor(const ZrCmColor& color)
{
    if (!getModifySysVar())
        return;
    ZrCmColorWarp written(color.colorMethod());
    if (color.colorMethod() == ZrCmEntityColor::kByACI) {
        written.setColorIndex(color.colorIndex());
    } else if (hasBookColor(color)) {
        const ZrCmColor book = withBookChannels(color);
        written.setRGB(book.red(), book.green(), book.blue());
        written.setNames(color.colorName(), color.bookName());
    } else {
        written.setColor(color.color());
    }
    zrqthelper::setCeColor(written);
}

void ZrColorComboBox::updateData()
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    if (!document)
        return;
    ZrQtBlockSignalUtil blocker(this);
    ZrCmColor color = d->colorInfo.value;
    ZrDbDatabase* db = document->database();
    using ZrDrawingCombo::Shows;
    const Shows shows = ZrDrawingCombo::showsFor(d->colorInfo.status);
    if (db && shows == Shows::DrawingValue) {
        color = db->cecolor();
        if (hasBookColor(color)) {
            const ZrCmColor book = withBookChannels(color);
            color.setRGB(book.red(), book.green(), book.blue());
        }
    } else if (!db || shows != Shows::CommonValue) {
        setEnabled(shows == Shows::Blank);
        SetNullItem();
        return;
    }
    const unsigned int* palette = zrcmAcadPalette(0);
    if (CXuSystem::instance()->isActiveViewReady()) {
        palette = zrsiutCurPalette();
        if (palette)
            d->paletteWord = palette[0];
    }
    const ColorData data = formatColor(color, palette, d->layerId);
    setEnabled(true);
    init(ZrCmColor(), false, d->layerId);
    // The rebuild ended the blocking above.
    ZrQtBlockSignalUtil stillBlocked(this);
    int row = findData(data.text, Qt::DisplayRole, Qt::MatchCaseSensitive);
    if (row < 0) {
        row = AddColorItem(count() - 1, data);
        appendCustomInfo(data);
    } else if (data.color != d->lastColor) {
        setItemIcon(row, d->swatch(SwatchShape::WhiteFramed, data.color, d->iconSize));
    }
    setCurrentIndex(row);
    d->lastColor = data.color;
}

void ZrColorComboBox::onUpdateUI() { updateData(); }

bool ZrColorComboBox::needUpdateUI(const CZrGlobalUIReactorHelp& event)
{
    if (!zrDocManagerPtr()->curDocument())
        return false;
    if (event.kind == kZrUiEventSysVar) {
        // No single name is all four, so every variable event is refused; the box follows on the
        // events of other kinds that come with such a change. Callers rely on this.
        for (const wchar_t* name : {L"BLOCKEDITOR", L"CLAYER", L"CECOLOR", L"TILEMODE"}) {
            if (event.name.compareNoCase(ZrString(name)) != 0)
                return false;
        }
        return true;
    }
    if (event.kind == kZrUiEventObject)
        return event.selectionActive || (event.object && event.object->isA() == ZrDbLayerTableRecord::desc());
    return true;
}

void ZrColorComboBox::showPopup()
{
    if (getModifySysVar() && commandActive())
        return;
    {
        ZrQtBlockSignalUtil blocker(this);
        setCurrentText(currentText());
    }
    QComboBox::showPopup();
}

bool ZrColorComboBox::event(QEvent* event)
{
    if (event->type() == QEvent::Show && d->margin == 0) {
        d->margin = static_cast<int>(height() / 10.0 + 1.0);
        d->iconSize = height() - 2 * d->margin;
    }
    return QComboBox::event(event);
}

void ZrColorComboBox::paintEvent(QPaintEvent* event)
{
    if (count() == 0) {
        QComboBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    QStyleOptionComboBox option;
    initStyleOption(&option);
    // The frame and the arrow only: the swatch and the text are drawn below.
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    if (const std::optional<ColorData> current = colorDataAt(this, currentIndex())) {
        const qreal ratio = devicePixelRatioF();
        const int side = static_cast<int>(d->iconSize * ratio);
        QPixmap swatch = d->swatch(shapeOf(*current, d->words), current->color, side).pixmap(side);
        if (!swatch.isNull()) {
            swatch.setDevicePixelRatio(ratio);
            drawSmoothPixmap(QRect(d->margin, d->margin, d->iconSize, d->iconSize), swatch, painter);
        }
    }
    if (!d->showText)
        return;
    const int left = d->margin + d->iconSize + kTextGap;
    const QString text = fontMetrics().elidedText(currentText(), Qt::ElideRight, (width() - 1) - left - kArrowWidth);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRect(left, 0, width() - left, height()), Qt::AlignLeft | Qt::AlignVCenter, text);
}

ZrUiWhiteBlackTrueColorComboBox::ZrUiWhiteBlackTrueColorComboBox() : ZrColorComboBox(nullptr, true) {}

ZrUiWhiteBlackTrueColorComboBox::~ZrUiWhiteBlackTrueColorComboBox() = default;

void ZrUiWhiteBlackTrueColorComboBox::OnAddItems()
{
    ZrQtBlockSignalUtil blocker(this);
    clear();
    const unsigned int* palette = zrcmAcadPalette(0);
    for (int index = 1; index <= 6; ++index)
        AddColorItem(count(), formatColor(indexColor(index), palette, ZrDbObjectId::kNull));
    ZrCmColor white;
    white.setRGB(255, 255, 255);
    insertColorItem(count(), zrUiText("IDS_EATTEXT_97", QStringLiteral("白")), white);
    ZrCmColor black;
    black.setRGB(0, 0, 0);
    insertColorItem(count(), zrUiText("IDS_ZRUI_ZRUICOMBOBOX_PROMPT24", QStringLiteral("黑")), black);
    AppendFinish();
}

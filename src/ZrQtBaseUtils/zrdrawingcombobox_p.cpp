#include "zrdrawingcombobox_p.h"

#include "zrreactor.h"
#include "zrresbuf.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QListView>
#include <QPointer>
#include <QStyle>
#include <algorithm>

namespace ZrDrawingCombo {

namespace {

// Names lie in the basic plane almost always: each character is stored as it is, and Qt's general
// conversion takes the rest. The list's width is measured on every item when it opens.
QString toQString(std::wstring_view text)
{
    QString out(static_cast<int>(text.size()), Qt::Uninitialized);
    QChar* to = out.data();
    for (const wchar_t c : text) {
        const auto code = static_cast<uint32_t>(c);
        if (code > 0xFFFF || (code >= 0xD800 && code <= 0xDFFF))
            return QString::fromWCharArray(text.data(), static_cast<int>(text.size()));
        *to++ = QChar(static_cast<ushort>(code));
    }
    return out;
}

} // namespace

void ItemList::add(std::wstring_view text, const ZrDbObjectId& id, const QIcon& icon)
{
    m_rows.push_back({{static_cast<uint32_t>(m_texts.size()), static_cast<uint32_t>(text.size())}, id, icon, QSize()});
    m_texts.append(text);
}

void ItemModel::setItems(ItemList items)
{
    beginResetModel();
    m_items = std::move(items);
    endResetModel();
}

std::wstring_view ItemModel::textAt(int row) const
{
    return m_items.m_rows[static_cast<size_t>(row)].text.in(m_items.m_texts);
}

int ItemModel::rowOfId(const ZrDbObjectId& id) const
{
    if (id.isNull())
        return -1;
    const auto& rows = m_items.m_rows;
    const auto found = std::find_if(rows.begin(), rows.end(), [&id](const ItemList::Row& row) { return row.id == id; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

int ItemModel::rowOfName(const ZrString& name) const
{
    for (int row = 0; row < rowCount(); ++row) {
        const std::wstring_view text = textAt(row);
        if (ZrString(text.data(), text.size()).compareNoCase(name) == 0)
            return row;
    }
    return -1;
}

ZrDbObjectId ItemModel::idAt(int row) const
{
    return row >= 0 && row < rowCount() ? m_items.m_rows[static_cast<size_t>(row)].id : ZrDbObjectId();
}

int ItemModel::append(const Item& item, const QIcon& icon)
{
    const int row = rowCount();
    beginInsertRows(QModelIndex(), row, row);
    m_items.add(item.name.std(), item.id, icon);
    endInsertRows();
    return row;
}

int ItemModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.m_rows.size());
}

QVariant ItemModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return toQString(textAt(index.row()));
    const ItemList::Row& row = m_items.m_rows[static_cast<size_t>(index.row())];
    // Items that stand for no record have no data.
    if (role == Qt::UserRole)
        return row.id.isNull() ? QVariant() : QVariant::fromValue(row.id);
    if (role == Qt::DecorationRole && !row.icon.isNull())
        return row.icon;
    if (role == Qt::SizeHintRole && row.sizeHint.isValid())
        return row.sizeHint;
    return QVariant();
}

bool ItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid())
        return false;
    ItemList::Row& row = m_items.m_rows[static_cast<size_t>(index.row())];
    if (role == Qt::DisplayRole || role == Qt::EditRole) {
        const std::wstring text = value.toString().toStdWString();
        row.text = {static_cast<uint32_t>(m_items.m_texts.size()), static_cast<uint32_t>(text.size())};
        m_items.m_texts += text;
    } else if (role == Qt::UserRole) {
        row.id = value.value<ZrDbObjectId>();
    } else if (role == Qt::DecorationRole) {
        row.icon = value.value<QIcon>();
    } else if (role == Qt::SizeHintRole) {
        row.sizeHint = value.toSize();
    } else {
        return false;
    }
    Q_EMIT dataChanged(index, index, {role});
    return true;
}

Qt::ItemFlags ItemModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
}

bool ItemModel::insertRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || row < 0 || row > rowCount() || count < 1)
        return false;
    beginInsertRows(parent, row, row + count - 1);
    auto& rows = m_items.m_rows;
    rows.insert(rows.begin() + row, static_cast<size_t>(count), ItemList::Row());
    endInsertRows();
    return true;
}

bool ItemModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row + count > rowCount())
        return false;
    beginRemoveRows(parent, row, row + count - 1);
    auto& rows = m_items.m_rows;
    rows.erase(rows.begin() + row, rows.begin() + row + count);
    endRemoveRows();
    return true;
}

namespace {

// Every call goes to the application's style of the moment, so a style the host installs, before
// or after the box was made, draws the box; only the kind of popup is this style's own. It owns no
// style, so it never takes the application's from it.
class DropDownStyle : public QStyle
{
public:
    void polish(QWidget* widget) override { app()->polish(widget); }
    void unpolish(QWidget* widget) override { app()->unpolish(widget); }
    void polish(QPalette& palette) override { app()->polish(palette); }
    QRect itemTextRect(const QFontMetrics& metrics, const QRect& rect, int flags, bool enabled,
                       const QString& text) const override
    {
        return app()->itemTextRect(metrics, rect, flags, enabled, text);
    }
    QRect itemPixmapRect(const QRect& rect, int flags, const QPixmap& pixmap) const override
    {
        return app()->itemPixmapRect(rect, flags, pixmap);
    }
    void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette, bool enabled,
                      const QString& text, QPalette::ColorRole textRole) const override
    {
        app()->drawItemText(painter, rect, flags, palette, enabled, text, textRole);
    }
    void drawItemPixmap(QPainter* painter, const QRect& rect, int alignment, const QPixmap& pixmap) const override
    {
        app()->drawItemPixmap(painter, rect, alignment, pixmap);
    }
    QPalette standardPalette() const override { return app()->standardPalette(); }
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        app()->drawPrimitive(element, option, painter, widget);
    }
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override
    {
        app()->drawControl(element, option, painter, widget);
    }
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override
    {
        return app()->subElementRect(element, option, widget);
    }
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override
    {
        app()->drawComplexControl(control, option, painter, widget);
    }
    SubControl hitTestComplexControl(ComplexControl control, const QStyleOptionComplex* option, const QPoint& point,
                                     const QWidget* widget) const override
    {
        return app()->hitTestComplexControl(control, option, point, widget);
    }
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl sub,
                         const QWidget* widget) const override
    {
        return app()->subControlRect(control, option, sub, widget);
    }
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        return app()->pixelMetric(metric, option, widget);
    }
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override
    {
        return app()->sizeFromContents(type, option, size, widget);
    }
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override
    {
        if (hint == SH_ComboBox_Popup)
            return 0;
        return app()->styleHint(hint, option, widget, returnData);
    }
    QPixmap standardPixmap(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const override
    {
        return app()->standardPixmap(pixmap, option, widget);
    }
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override
    {
        return app()->standardIcon(icon, option, widget);
    }
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& pixmap, const QStyleOption* option) const override
    {
        return app()->generatedIconPixmap(mode, pixmap, option);
    }
    int layoutSpacing(QSizePolicy::ControlType control1, QSizePolicy::ControlType control2,
                      Qt::Orientation orientation, const QStyleOption* option, const QWidget* widget) const override
    {
        return app()->layoutSpacing(control1, control2, orientation, option, widget);
    }

private:
    static QStyle* app() { return QApplication::style(); }
};

} // namespace

QStyle* dropDownStyle()
{
    // Lives as long as the application; boxes only borrow it.
    static QPointer<QStyle> style;
    if (!style) {
        style = new DropDownStyle;
        style->setParent(qApp);
    }
    return style;
}

void prepare(QComboBox* box, ItemModel* model)
{
    box->setModel(model);
    // All items are one line of the same font: the list lays out thousands of records at once.
    if (auto* list = qobject_cast<QListView*>(box->view()))
        list->setUniformItemSizes(true);
    box->setStyle(dropDownStyle());
}

void showItem(QComboBox* box, ItemModel* model, CZrQtControlHelp* control, const Item& item)
{
    int row = model->rowOfId(item.id);
    if (row < 0)
        row = model->rowOfName(item.name);
    if (row < 0) {
        if (item.name.isEmpty())
            return;
        ModifySysVarPause pause(control);
        row = model->append(item);
    }
    box->setCurrentIndex(row);
}

int listWidth(const QComboBox* box)
{
    constexpr int kMeasured = 32;
    QStringList texts;
    texts.reserve(box->count());
    for (int i = 0; i < box->count(); ++i)
        texts << box->itemText(i);
    const auto longest = texts.begin() + std::min<int>(kMeasured, texts.size());
    std::partial_sort(texts.begin(), longest, texts.end(),
                      [](const QString& a, const QString& b) { return a.size() > b.size(); });
    const QFontMetrics metrics = box->view()->fontMetrics();
    int width = 0;
    for (auto text = texts.begin(); text != longest; ++text)
        width = std::max(width, metrics.horizontalAdvance(*text));
    const int margins = box->view()->style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 4 * metrics.averageCharWidth();
    return width + margins;
}

ModifySysVarPause::ModifySysVarPause(CZrQtControlHelp* control)
    : m_control(control), m_saved(control->getModifySysVar())
{
    control->setModifySysVar(false);
}

ModifySysVarPause::~ModifySysVarPause() { m_control->setModifySysVar(m_saved); }

ReactorRegistration::ReactorRegistration(CZrQtControlHelp* control) : m_control(control)
{
    if (!control->getModifySysVar())
        return;
    if (ZrSmartPtr<ZrUiReactorService> service = zrqthelper::getReactorService())
        service->addReactorControl(control);
}

ReactorRegistration::~ReactorRegistration()
{
    if (!m_control->getModifySysVar())
        return;
    if (ZrSmartPtr<ZrUiReactorService> service = zrqthelper::getReactorService())
        service->removeReactorControl(m_control);
}

Shows showsFor(ZrGlobalUIReactorHelp::SPickFirstInfo::Status status)
{
    using Info = ZrGlobalUIReactorHelp::SPickFirstInfo;
    switch (status) {
    case Info::kNoSelection: return Shows::DrawingValue;
    case Info::kUniform: return Shows::CommonValue;
    case Info::kVaries: return Shows::Blank;
    case Info::kNoDocument: break;
    }
    return Shows::Disabled;
}

void showNoValue(QComboBox* box, Shows shows)
{
    ZrQtBlockSignalUtil blocker(box);
    box->setEnabled(shows == Shows::Blank);
    box->setCurrentIndex(-1);
}

bool commandActive()
{
    ZrResBuf value;
    return zredGetVar(L"CMDACTIVE", &value) == RTNORM && value.restype == RTSHORT && (value.resval.rint & 1) != 0;
}

QSize fittedPreviewSize(const QSize& box, const QSize& preview)
{
    int width = preview.width();
    int height = preview.height();
    if (box.width() >= 1 && box.width() < width)
        width = qRound(box.width() / 2.0);
    if (box.height() > 0)
        height = box.height();
    return QSize(std::max(width, kPreviewWidth), std::max(height, kPreviewHeight));
}

} // namespace ZrDrawingCombo

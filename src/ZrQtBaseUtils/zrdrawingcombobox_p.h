#pragma once
// What every combo box bound to the drawing shares: its items with their records, the drop-down
// list, the pause of writes while items arrive by code, the registration with the host's reactor,
// and what the box shows for each status of its selection record.

#include "zrglobaluireactor.h"
#include "zrqthelper_p.h"

#include "zrdbobjectid.h"
#include "zrstring.h"

#include <QAbstractListModel>
#include <QIcon>
#include <QMetaType>
#include <QSize>
#include <string>
#include <string_view>
#include <vector>

class QComboBox;
class QStyle;

namespace ZrDrawingCombo {

// One item: the text shown and the record it stands for; null for items that stand for none,
// such as "使用当前项".
struct Item
{
    ZrString name;
    ZrDbObjectId id;
};

// The items of one fill, their texts laid one after the other in one buffer.
class ItemList
{
public:
    ItemList() = default;
    // Takes over a buffer of texts that items added by their span refer to.
    explicit ItemList(std::wstring texts) : m_texts(std::move(texts)) {}

    void reserve(size_t count) { m_rows.reserve(count); }
    void add(std::wstring_view text, const ZrDbObjectId& id, const QIcon& icon = QIcon());
    // An item whose text already stands in the buffer.
    void add(zrqthelper::TextSpan text, const ZrDbObjectId& id) { m_rows.push_back({text, id, QIcon(), QSize()}); }

private:
    friend class ItemModel;
    struct Row
    {
        zrqthelper::TextSpan text;
        ZrDbObjectId id;
        // The picture beside the text, and the row's size where it differs from the others'.
        QIcon icon;
        QSize sizeHint;
    };
    std::wstring m_texts;
    std::vector<Row> m_rows;
};

// The items of a box, with the text in the display and edit roles, the id in Qt::UserRole (so
// that a refresh finds a row by its record), and an icon and a size hint where items have them. A
// fill replaces all rows at once; texts are made only when the view asks for them.
class ItemModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void setItems(ItemList items);
    // The first row of the record `id`, -1 when there is none or `id` is null.
    int rowOfId(const ZrDbObjectId& id) const;
    // The first row whose text equals `name` ignoring case, -1 when there is none.
    int rowOfName(const ZrString& name) const;
    ZrDbObjectId idAt(int row) const;
    // Adds an item at the end and answers its row.
    int append(const Item& item, const QIcon& icon = QIcon());

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // The combo box's own insertions name an item through the edit role.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

private:
    std::wstring_view textAt(int row) const;

    // Texts replaced or removed keep their place in the buffer until the next fill.
    ItemList m_items;
};

// Gives `box` its model, a list of uniform rows and the shared drop-down style.
void prepare(QComboBox* box, ItemModel* model);

// Makes the item of a record current: the row of its id, else the first whose text equals its
// name ignoring case (a list filled before the drawing changed). A record the list lacks (hidden,
// left out or new) is added as the last item until the next fill, without a write.
void showItem(QComboBox* box, ItemModel* model, CZrQtControlHelp* control, const Item& item);

// The one style of all drawing-bound boxes: the application's style, whatever the host installed
// (a proxy style included), except that the list opens as a drop-down under the box. A menu-like
// popup, which some styles prefer, first measures the text of every item: tens of milliseconds for
// a drawing with thousands of records, at every opening.
QStyle* dropDownStyle();

// The width the drop-down list needs: the widest of the longest texts, measured without shaping
// every item's text.
int listWidth(const QComboBox* box);

// Clears modifySysVar while items arrive by code, so that none of them is written to the drawing.
class ModifySysVarPause
{
public:
    explicit ModifySysVarPause(CZrQtControlHelp* control);
    ~ModifySysVarPause();
    ModifySysVarPause(const ModifySysVarPause&) = delete;
    ModifySysVarPause& operator=(const ModifySysVarPause&) = delete;

private:
    CZrQtControlHelp* m_control;
    bool m_saved;
};

// A bound control on the reactor service's list for as long as this lives: added when it is bound
// at construction, removed at the end when it is bound then.
class ReactorRegistration
{
public:
    explicit ReactorRegistration(CZrQtControlHelp* control);
    ~ReactorRegistration();
    ReactorRegistration(const ReactorRegistration&) = delete;
    ReactorRegistration& operator=(const ReactorRegistration&) = delete;

private:
    CZrQtControlHelp* m_control;
};

// What a box shows for the status of its record.
enum class Shows {
    Disabled,     // no document
    DrawingValue, // nothing selected: the drawing's current value
    CommonValue,  // the selection's common value
    Blank,        // the selection varies: enabled, no current item
};

Shows showsFor(ZrGlobalUIReactorHelp::SPickFirstInfo::Status status);

// A box without a value to show, with its signals blocked: enabled and blank for a varying
// selection, disabled otherwise.
void showNoValue(QComboBox* box, Shows shows);

// True while a command runs (the low bit of CMDACTIVE): a bound box then keeps its list shut.
bool commandActive();

// The smallest preview of the boxes that draw one beside each item.
constexpr int kPreviewWidth = 80;
constexpr int kPreviewHeight = 25;

// The preview size of a box resized to `box`: half the box's width when the box is narrower than
// `preview`, the box's height, and never below kPreviewWidth by kPreviewHeight.
QSize fittedPreviewSize(const QSize& box, const QSize& preview);

} // namespace ZrDrawingCombo

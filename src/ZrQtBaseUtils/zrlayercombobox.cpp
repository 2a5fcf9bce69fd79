#include "zrlayercombobox.h"

#include "ZrQtUtilsFunc.h"
#include "zrqthelper.h"

#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrui.h"

#include <QAbstractListModel>
#include <QApplication>
#include <QListView>
#include <QProxyStyle>
#include <algorithm>

namespace {

// The first item stands for the current layer, and frozen layers are left out.
constexpr int kUseCurrentMode = 1;

// Clears modifySysVar while items arrive by code, so that none of them is written to the drawing.
class ModifySysVarPause
{
public:
    explicit ModifySysVarPause(CZrQtControlHelp* control) : m_control(control), m_saved(control->getModifySysVar())
    {
        control->setModifySysVar(false);
    }
    ~ModifySysVarPause() { m_control->setModifySysVar(m_saved); }
    ModifySysVarPause(const ModifySysVarPause&) = delete;
    ModifySysVarPause& operator=(const ModifySysVarPause&) = delete;

private:
    CZrQtControlHelp* m_control;
    bool m_saved;
};

// The layer names as the host gives them: a fill moves them in at once, where the standard model
// would build an item object and a converted text per layer. Texts are made as the view asks.
class LayerNameModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    void setNames(std::vector<ZrString> names)
    {
        beginResetModel();
        m_names = std::move(names);
        endResetModel();
    }

    // The first row whose name equals `name` ignoring case, -1 when there is none.
    int rowOfName(const ZrString& name) const
    {
        for (size_t row = 0; row < m_names.size(); ++row) {
            if (m_names[row].compareNoCase(name) == 0)
                return static_cast<int>(row);
        }
        return -1;
    }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_names.size());
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
            return QVariant();
        return m_names[static_cast<size_t>(index.row())].toQString();
    }

    // The combo box's own insertions name an item through the edit role.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override
    {
        if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
            return false;
        m_names[static_cast<size_t>(index.row())] = ZrString(value.toString());
        Q_EMIT dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
        return true;
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::NoItemFlags;
    }

    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override
    {
        if (parent.isValid() || row < 0 || row > rowCount() || count < 1)
            return false;
        beginInsertRows(parent, row, row + count - 1);
        m_names.insert(m_names.begin() + row, static_cast<size_t>(count), ZrString());
        endInsertRows();
        return true;
    }

    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override
    {
        if (parent.isValid() || row < 0 || count < 1 || row + count > rowCount())
            return false;
        beginRemoveRows(parent, row, row + count - 1);
        m_names.erase(m_names.begin() + row, m_names.begin() + row + count);
        endRemoveRows();
        return true;
    }

private:
    std::vector<ZrString> m_names;
};

// Opens the list as a drop-down under the box, as layer lists of drawing programs do. A menu-like
// popup, which some styles prefer, first measures the text of every item: tens of milliseconds for
// a drawing with thousands of layers, at every opening.
class DropDownListStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override
    {
        if (hint == SH_ComboBox_Popup)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
};

// The width the drop-down list needs: the widest of the longest names, measured without shaping
// every item's text.
int listWidthFor(const QComboBox* box)
{
    constexpr int kMeasured = 32;
    QStringList names;
    names.reserve(box->count());
    for (int i = 0; i < box->count(); ++i)
        names << box->itemText(i);
    const auto longest = names.begin() + std::min<int>(kMeasured, names.size());
    std::partial_sort(names.begin(), longest, names.end(),
                      [](const QString& a, const QString& b) { return a.size() > b.size(); });
    const QFontMetrics metrics = box->view()->fontMetrics();
    int width = 0;
    for (auto name = names.begin(); name != longest; ++name)
        width = std::max(width, metrics.horizontalAdvance(*name));
    const int margins = box->view()->style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 4 * metrics.averageCharWidth();
    return width + margins;
}

} // namespace

struct ZrLayerComboBox::Private
{
    int mode = 0;
    // The current index when the list was last opened; the picker returns to it from a frozen layer.
    int previousIndex = 0;
    ZrGlobalUIReactorHelp::SLayerInfo info;

    // Selects the item of `name`, ignoring case; a layer that isn't listed (hidden, frozen or new)
    // is added as the last item until the next fill.
    static void showLayer(ZrLayerComboBox* box, const ZrString& name)
    {
        const int index = static_cast<const LayerNameModel*>(box->model())->rowOfName(name);
        if (index >= 0) {
            box->setCurrentIndex(index);
            return;
        }
        if (name.isEmpty())
            return;
        ModifySysVarPause pause(box);
        box->addItem(name.toQString());
        box->setCurrentIndex(box->count() - 1);
    }

    static void prepare(ZrLayerComboBox* box)
    {
        box->setInsertPolicy(QComboBox::InsertAfterCurrent);
        box->setModel(new LayerNameModel(box));
        // All items are one line of the same font: the list lays out thousands of layers at once.
        if (auto* list = qobject_cast<QListView*>(box->view()))
            list->setUniformItemSizes(true);
        auto* style = new DropDownListStyle(QApplication::style()->objectName());
        style->setParent(box);
        box->setStyle(style);
    }
};

ZrLayerComboBox::ZrLayerComboBox(int mode, QWidget* parent) : QComboBox(parent), d(new Private)
{
    d->mode = mode;
    Private::prepare(this);
    init();
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ZrLayerComboBox::curIndexChanged);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &ZrLayerComboBox::activatedIndexChanged);
}

ZrLayerComboBox::ZrLayerComboBox(bool modifySysVar, int mode, QWidget* parent)
    : QComboBox(parent), CZrQtControlHelp(modifySysVar), d(new Private)
{
    d->mode = mode;
    Private::prepare(this);
    setPickFirstInfo(&d->info);
    if (modifySysVar) {
        if (ZrSmartPtr<ZrUiReactorService> service = zrqthelper::getReactorService())
            service->addReactorControl(this);
    }
    init();
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ZrLayerComboBox::curIndexChanged);
}

ZrLayerComboBox::~ZrLayerComboBox()
{
    if (getModifySysVar()) {
        if (ZrSmartPtr<ZrUiReactorService> service = zrqthelper::getReactorService())
            service->removeReactorControl(this);
    }
}

QString ZrLayerComboBox::getLayerName(int index) const { return itemText(index); }
QString ZrLayerComboBox::getCurrentLayerName() const { return itemText(currentIndex()); }
void ZrLayerComboBox::onInit() { init(); }

void ZrLayerComboBox::init()
{
    ZrArray<zrqthelper::SigleLayerData> layers;
    zrqthelper::getLayerInfos(layers);
    std::vector<ZrString> names;
    names.reserve(static_cast<size_t>(layers.length()) + 1);
    if (d->mode == kUseCurrentMode)
        names.emplace_back(zrUiText("IDS_ZRRX_MAPTYPE_PROMPT2", QStringLiteral("使用当前项")));
    for (zrqthelper::SigleLayerData& layer : layers) {
        if (layer.hidden || (d->mode == kUseCurrentMode && layer.frozen) || layer.name.isEmpty())
            continue;
        names.push_back(std::move(layer.name));
    }
    // One replacement for the whole list; items show no icon. As when items are added to an empty
    // box, the first becomes current.
    ModifySysVarPause pause(this);
    static_cast<LayerNameModel*>(model())->setNames(std::move(names));
    if (count() > 0)
        setCurrentIndex(0);
}

bool ZrLayerComboBox::needUpdateUI(const CZrGlobalUIReactorHelp& event)
{
    if (!zrDocManagerPtr()->curDocument())
        return false;
    if (event.kind == kZrUiEventSysVar) {
        // No single name is all four, so every variable event is refused; the box follows on the
        // events of other kinds that come with such a change. Callers rely on this.
        const ZrString& name = event.name;
        return name.compareNoCase(ZrString(L"CVPORT")) == 0 && name.compareNoCase(ZrString(L"BLOCKEDITOR")) == 0
            && name.compareNoCase(ZrString(L"CLAYER")) == 0 && name.compareNoCase(ZrString(L"TILEMODE")) == 0;
    }
    if (event.kind != kZrUiEventObject)
        return true;
    if (event.selectionActive)
        return true;
    if (!event.object)
        return false;
    const ZrRxClass* objectClass = event.object->isA();
    if (objectClass == ZrDbLayerTableRecord::desc() || objectClass == ZrDbViewport::desc())
        return true;
    if (ZrDbDictionary::cast(event.object))
        return event.object->objectId() == ZrDbLayerState::dictionaryId(event.database, false);
    return false;
}

void ZrLayerComboBox::onUpdateUI()
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    if (!document)
        return;
    using Info = ZrGlobalUIReactorHelp::SPickFirstInfo;
    const Info::Status status = d->info.status;
    ZrDbDatabase* db = document->database();
    if (db && (status == Info::kNoSelection || status == Info::kUniform)) {
        const ZrDbObjectId id = status == Info::kNoSelection ? db->clayer() : d->info.value;
        if (!id.isValid() || count() == 0)
            return;
        ZrString name;
        {
            ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForRead);
            if (!layer)
                return;
            name = layer->name();
        }
        ZrQtBlockSignalUtil blocker(this);
        setEnabled(true);
        Private::showLayer(this, name);
        return;
    }
    ZrQtBlockSignalUtil blocker(this);
    setEnabled(status == Info::kVaries);
    setCurrentIndex(-1);
}

void ZrLayerComboBox::showPopup()
{
    d->previousIndex = currentIndex();
    if (getModifySysVar()) {
        // A fresh list each time it opens, showing what it showed before.
        ZrQtBlockSignalUtil blocker(this);
        const QString text = currentIndex() >= 0 ? currentText() : QString();
        init();
        if (text.isEmpty())
            setCurrentIndex(-1);
        else
            Private::showLayer(this, ZrString(text));
    }
    view()->setMinimumWidth(listWidthFor(this));
    QComboBox::showPopup();
}

void ZrLayerComboBox::curIndexChanged(int index)
{
    if (index < 0)
        return;
    zruiSetFocus(zruiViewWindow());
    {
        ZrQtBlockSignalUtil blocker(this);
        const QString name = itemText(index);
        // By name, so that the layer is screened; a refusal leaves the box on its new text until
        // the next update.
        if (getModifySysVar() && d->mode != kUseCurrentMode && !name.isEmpty())
            zrqthelper::setCLayer(ZrDbObjectId::kNull, ZrString(name));
    }
    Q_EMIT layerItemChanged(index);
}

void ZrLayerComboBox::activatedIndexChanged(int index)
{
    if (index < 0 || zrqthelper::hasSelection())
        return;
    // Not silent: whoever heard layerItemChanged for the frozen layer hears the return as well.
    if (zrqthelper::getLayInfo(ZrString(itemText(index))).frozen)
        setCurrentIndex(d->previousIndex);
}

// Host events reach the box through the reactor service, not as Qt events.
bool ZrLayerComboBox::event(QEvent* event) { return QComboBox::event(event); }

#include "zrlayercombobox.h"

#include "ZrQtUtilsFunc.h"
#include "zrdrawingcombobox_p.h"
#include "zrqthelper.h"
#include "zrqthelper_p.h"

#include "zrdbdatabase.h"
#include "zrdbdict.h"
#include "zrdbentity.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrui.h"

#include <QAbstractItemView>
#include <optional>

namespace {

// The first item stands for the current layer, and frozen layers are left out.
constexpr int kUseCurrentMode = 1;

} // namespace

struct ZrLayerComboBox::Private
{
    explicit Private(ZrLayerComboBox* box) : model(new ZrDrawingCombo::ItemModel(box)) {}

    int mode = 0;
    // The current index when the list was last opened; the picker returns to it from a frozen layer.
    int previousIndex = 0;
    ZrGlobalUIReactorHelp::SLayerInfo info;
    ZrDrawingCombo::ItemModel* model;
    // Last, so that the box leaves the reactor's list before the record goes.
    std::optional<ZrDrawingCombo::ReactorRegistration> registration;
};

ZrLayerComboBox::ZrLayerComboBox(int mode, QWidget* parent) : QComboBox(parent), d(new Private(this))
{
    d->mode = mode;
    setInsertPolicy(QComboBox::InsertAfterCurrent);
    ZrDrawingCombo::prepare(this, d->model);
    d->registration.emplace(this);
    init();
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ZrLayerComboBox::curIndexChanged);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &ZrLayerComboBox::activatedIndexChanged);
}

ZrLayerComboBox::ZrLayerComboBox(bool modifySysVar, int mode, QWidget* parent)
    : QComboBox(parent), CZrQtControlHelp(modifySysVar), d(new Private(this))
{
    d->mode = mode;
    setInsertPolicy(QComboBox::InsertAfterCurrent);
    ZrDrawingCombo::prepare(this, d->model);
    setPickFirstInfo(&d->info);
    d->registration.emplace(this);
    init();
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ZrLayerComboBox::curIndexChanged);
}

ZrLayerComboBox::~ZrLayerComboBox() = default;

QString ZrLayerComboBox::getLayerName(int index) const { return itemText(index); }
QString ZrLayerComboBox::getCurrentLayerName() const { return itemText(currentIndex()); }
void ZrLayerComboBox::onInit() { init(); }

void ZrLayerComboBox::init()
{
    zrqthelper::LayerList layers = zrqthelper::getLayerList();
    ZrDrawingCombo::ItemList items(std::move(layers.names));
    items.reserve(layers.entries.size() + 1);
    if (d->mode == kUseCurrentMode)
        items.add(zrUiText("IDS_ZRRX_MAPTYPE_PROMPT2", QStringLiteral("使用当前项")).toStdWString(), ZrDbObjectId());
    for (const zrqthelper::LayerListEntry& layer : layers.entries) {
        if (layer.hidden || (d->mode == kUseCurrentMode && layer.frozen))
            continue;
        items.add(layer.name, layer.id);
    }
    // One replacement for the whole list; items show no icon. As when items are added to an empty
    // box, the first becomes current.
    ZrDrawingCombo::ModifySysVarPause pause(this);
    d->model->setItems(std::move(items));
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
    using ZrDrawingCombo::Shows;
    const Shows shows = ZrDrawingCombo::showsFor(d->info.status);
    ZrDbDatabase* db = document->database();
    if (!db || (shows != Shows::DrawingValue && shows != Shows::CommonValue)) {
        ZrDrawingCombo::showNoValue(this, shows);
        return;
    }
    const ZrDbObjectId id = shows == Shows::DrawingValue ? db->clayer() : d->info.value;
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
    ZrDrawingCombo::showItem(this, d->model, this, {name, id});
}

void ZrLayerComboBox::showPopup()
{
    d->previousIndex = currentIndex();
    if (getModifySysVar()) {
        // A fresh list each time it opens, showing what it showed before.
        ZrQtBlockSignalUtil blocker(this);
        const int current = currentIndex();
        const ZrDrawingCombo::Item shown{current >= 0 ? ZrString(currentText()) : ZrString(), d->model->idAt(current)};
        init();
        if (shown.name.isEmpty())
            setCurrentIndex(-1);
        else
            ZrDrawingCombo::showItem(this, d->model, this, shown);
    }
    view()->setMinimumWidth(ZrDrawingCombo::listWidth(this));
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

#include "zrlinetypecombobox.h"

#include "ZrQtUtilsFunc.h"
#include "zrdrawingcombobox_p.h"
#include "zrqthelper.h"

#include "zrarbitdict.h"
#include "zrdbdatabase.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrgiraster.h"
#include "zrjson.h"
#include "zrreactor.h"
#include "zrui.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QResizeEvent>
#include <algorithm>
#include <optional>
#include <unordered_set>

namespace {

constexpr int kLinetypeServiceSlot = 19;
constexpr int kMaximumWidth = 250;
constexpr int kFixedHeight = 23;

QString otherItemText() { return zrUiText("IDS_ZRAPP_CMBMGRIMP_PROMPT5", QStringLiteral("其他...")); }

// A preview with its background taken away, on a transparent picture of the box's icon size. The
// background is the colour of the picture's corner, as a heuristic mask takes it, cleared in one pass
// over the pixels.
QIcon previewIcon(const ZrSmartPtr<ZrGiRasterImage>& raster, const QSize& size)
{
    const QImage picture = zrutZrGiRasterImage2QImage(raster);
    if (picture.isNull()) {
        QPixmap empty(size);
        empty.fill(Qt::transparent);
        return QIcon(empty);
    }
    const QRgb background = picture.pixel(0, 0);
    QImage image;
    if (qAlpha(background) == 255) {
        // Premultiplying keeps opaque pixels as they are and makes no other pixel opaque, so the
        // background is found as well after Qt's fast conversion as before it.
        image = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        auto* pixels = reinterpret_cast<QRgb*>(image.bits());
        std::replace(pixels, pixels + image.sizeInBytes() / sizeof(QRgb), background, QRgb(0));
    } else {
        // Translucent pixels of other colours may premultiply to the background's value: compare
        // first, premultiply after.
        image = picture.convertToFormat(QImage::Format_ARGB32);
        const int width = image.width();
        for (int y = 0; y < image.height(); ++y) {
            auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < width; ++x)
                pixels[x] = pixels[x] == background ? 0 : qPremultiply(pixels[x]);
        }
        image.reinterpretAsFormat(QImage::Format_ARGB32_Premultiplied);
    }
    if (image.size() == size)
        return QIcon(QPixmap::fromImage(std::move(image)));
    QPixmap icon(size);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    drawSmoothPixmap(0, 0, QPixmap::fromImage(std::move(image)), painter);
    return QIcon(icon);
}

} // namespace

struct ZrLineTypeComboBox::Private
{
    explicit Private(ZrLineTypeComboBox* box) : model(new ZrDrawingCombo::ItemModel(box)) {}

    // The records listed, each once.
    std::vector<ZrDbObjectId> ids;
    QSize iconSize{ZrDrawingCombo::kPreviewWidth, ZrDrawingCombo::kPreviewHeight};
    // The last line type chosen or shown, the one "其他..." returns to.
    int lastIndex = 0;
    bool noOtherItem = false;
    bool wheelActive = false;
    bool listDirty = false;
    bool restoreText = false;
    bool execLineType = false;
    ZrGlobalUIReactorHelp::SLineTypeInfo info;
    ZrDrawingCombo::ItemModel* model;
    // Last, so that the box leaves the reactor's list before the record goes.
    std::optional<ZrDrawingCombo::ReactorRegistration> registration;
};

ZrLineTypeComboBox::ZrLineTypeComboBox(QWidget* parent, bool noOtherItem, bool execLineType)
    : QComboBox(parent), d(new Private(this))
{
    d->noOtherItem = noOtherItem;
    d->execLineType = execLineType;
    ZrDrawingCombo::prepare(this, d->model);
    setMaximumWidth(kMaximumWidth);
    setFixedHeight(kFixedHeight);
    init();
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ZrLineTypeComboBox::currentLTypeIndexChanged);
}

ZrLineTypeComboBox::ZrLineTypeComboBox(bool modifySysVar, QWidget* parent, bool noOtherItem)
    : QComboBox(parent), CZrQtControlHelp(modifySysVar), d(new Private(this))
{
    d->noOtherItem = noOtherItem;
    d->execLineType = true;
    ZrDrawingCombo::prepare(this, d->model);
    setPickFirstInfo(&d->info);
    d->registration.emplace(this);
    setMaximumWidth(kMaximumWidth);
    setFixedHeight(kFixedHeight);
    init();
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ZrLineTypeComboBox::currentLTypeIndexChanged);
}

ZrLineTypeComboBox::~ZrLineTypeComboBox() = default;

bool ZrLineTypeComboBox::hasOtherItem() const { return !d->noOtherItem && count() > 0; }

void ZrLineTypeComboBox::init()
{
    resetLineTypeInfo();
    if (!d->noOtherItem)
        addPendingItem();
}

void ZrLineTypeComboBox::resetLineTypeInfo()
{
    d->ids.clear();
    ZrDrawingCombo::ModifySysVarPause pause(this);
    const QString kept = currentIndex() >= 0 ? currentText() : QString();
    ZrQtBlockSignalUtil blocker(this);
    d->iconSize = QSize(ZrDrawingCombo::kPreviewWidth, ZrDrawingCombo::kPreviewHeight);
    setIconSize(d->iconSize);

    // One replacement of the whole list, however many line types the drawing has.
    ZrDrawingCombo::ItemList items;
    std::unordered_set<int64_t> listed;
    bool repaint = false;
    zrqthelper::getLineTypeInfo(d->iconSize.width(), d->iconSize.height(),
                                [&](ZrSmartPtr<ZrGiRasterImage>& image, ZrString& name, ZrDbObjectId& id) {
                                    if (!id.isValid()) {
                                        repaint = true;
                                        return;
                                    }
                                    if (listed.insert(id.handle()).second)
                                        d->ids.push_back(id);
                                    items.add(name.std(), id, previewIcon(image, d->iconSize));
                                });
    d->model->setItems(std::move(items));
    if (repaint)
        update();
    // As when items go into an empty box, the first is current, unless the kept text is there.
    const int keptRow = kept.isEmpty() ? -1 : findText(kept);
    QComboBox::setCurrentIndex(keptRow >= 0 ? keptRow : (count() > 0 ? 0 : -1));
}

void ZrLineTypeComboBox::addPendingItem()
{
    const int row = d->model->append({ZrString(otherItemText()), ZrDbObjectId()});
    d->model->setData(d->model->index(row), QSize(ZrDrawingCombo::kPreviewWidth, ZrDrawingCombo::kPreviewHeight),
                      Qt::SizeHintRole);
}

ZrDbObjectId ZrLineTypeComboBox::getLineType(int index) const
{
    const QString name = getLineTypeString(index);
    return name.isEmpty() ? ZrDbObjectId() : zrqthelper::findLineStyleTableRecordByName(ZrString(name));
}

ZrDbObjectId ZrLineTypeComboBox::getCurrentLineType() const { return getLineType(currentIndex()); }

QString ZrLineTypeComboBox::getLineTypeString(int index) const
{
    return index >= 0 && index < count() ? itemText(index) : QString();
}

QString ZrLineTypeComboBox::getCurrentLineTypeString() const { return getLineTypeString(currentIndex()); }

void ZrLineTypeComboBox::setCurrentIndex(int index)
{
    if (index < 0 || index >= count())
        return;
    QComboBox::setCurrentIndex(index);
    d->lastIndex = index;
}

void ZrLineTypeComboBox::setCurrentLineType(const ZrDbObjectId& id)
{
    const int row = d->model->rowOfId(id);
    if (row >= 0)
        setCurrentIndex(row);
}

bool ZrLineTypeComboBox::getCurrentLayerLinetype(ZrString& name) const
{
    ZrDbHostApplicationServices* services = zrdbHostApplicationServices();
    ZrDbDatabase* db = services ? services->workingDatabase() : nullptr;
    if (!db)
        return false;
    ZrDbObjectId lineType;
    {
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(db->clayer(), ZrDb::kForRead);
        if (!layer)
            return false;
        lineType = layer->linetypeObjectId();
    }
    if (lineType.isNull()) {
        name = ZrString(L"BYLAYER");
        return true;
    }
    ZrDbObjectPointer<ZrDbLinetypeTableRecord> record(lineType, ZrDb::kForRead);
    if (!record)
        return false;
    name = record->name();
    return true;
}

void ZrLineTypeComboBox::setExecLineType(bool execLineType) { d->execLineType = execLineType; }
void ZrLineTypeComboBox::SetNullItem() { setCurrentIndex(-1); }
void ZrLineTypeComboBox::OnThemeUpdate(int) { init(); }

void ZrLineTypeComboBox::copyLayerPreviewToByLayer()
{
    ZrString layerLineType;
    if (!getCurrentLayerLinetype(layerLineType))
        return;
    const int source = findData(layerLineType.toQString(), Qt::DisplayRole, Qt::MatchFixedString);
    const int byLayer = findData(QStringLiteral("ByLayer"), Qt::DisplayRole, Qt::MatchFixedString);
    if (source < 0 || byLayer < 0 || source == byLayer)
        return;
    ZrQtBlockSignalUtil blocker(this);
    setItemIcon(byLayer, itemIcon(source));
}

bool ZrLineTypeComboBox::needUpdateUI(const CZrGlobalUIReactorHelp& event)
{
    if (!zrDocManagerPtr()->curDocument())
        return false;
    const ZrString& name = event.name;
    if (event.kind == kZrUiEventSysVar
        && (name.compareNoCase(ZrString(L"CLAYER")) == 0 || name.compareNoCase(ZrString(L"CELTYPE")) == 0)) {
        d->listDirty = true;
        d->restoreText = true;
    }
    if (event.kind == kZrUiEventNotification && name.compareNoCase(ZrString(L"PROPERTIESOFEDITVALUE")) == 0)
        d->listDirty = true;
    else if (name.compareNoCase(ZrString(L"LAYER")) == 0)
        d->listDirty = true;
    if (event.kind != kZrUiEventObject)
        return true;
    if (event.selectionActive)
        return true;
    if (!event.object)
        return false;
    const ZrRxClass* objectClass = event.object->isA();
    return objectClass == ZrDbLayerTableRecord::desc() || objectClass == ZrDbLinetypeTableRecord::desc();
}

void ZrLineTypeComboBox::onUpdateUI()
{
    if (d->listDirty) {
        const QString kept = currentText();
        init();
        if (d->restoreText && kept != otherItemText()) {
            ZrQtBlockSignalUtil blocker(this);
            setCurrentText(kept);
        }
        d->restoreText = false;
        copyLayerPreviewToByLayer();
        d->listDirty = false;
    }
    copyLayerPreviewToByLayer();
    updateData();
}

void ZrLineTypeComboBox::updateData()
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    if (!document)
        return;
    using ZrDrawingCombo::Shows;
    const Shows shows = ZrDrawingCombo::showsFor(d->info.status);
    ZrDbDatabase* db = document->database();
    if (shows != Shows::DrawingValue && shows != Shows::CommonValue) {
        ZrQtBlockSignalUtil blocker(this);
        setEnabled(shows == Shows::Blank);
        // Refused by this class's setCurrentIndex: the box goes on showing its item.
        SetNullItem();
        return;
    }
    if (!db)
        return;
    ZrString name = d->info.value;
    if (shows == Shows::DrawingValue) {
        ZrDbObjectPointer<ZrDbLinetypeTableRecord> current(db->celtype(), ZrDb::kForRead);
        name = current ? current->name() : ZrString();
    }
    ZrQtBlockSignalUtil blocker(this);
    setEnabled(true);
    int row = findText(name.toQString(), Qt::MatchFixedString);
    if (row < 0 && !name.isEmpty()) {
        ZrDrawingCombo::ModifySysVarPause pause(this);
        ZrSmartPtr<ZrGiRasterImage> image;
        const ZrDbObjectId id = zrqthelper::getLineTypeRasterImage(name, d->iconSize.width(), d->iconSize.height(), image);
        if (!image) {
            update();
            return;
        }
        // Before "其他...", which has to stay the last item.
        row = hasOtherItem() ? count() - 1 : count();
        d->model->insertRows(row, 1);
        const QModelIndex index = d->model->index(row);
        d->model->setData(index, name.toQString(), Qt::DisplayRole);
        d->model->setData(index, QVariant::fromValue(id), Qt::UserRole);
        d->model->setData(index, previewIcon(image, d->iconSize), Qt::DecorationRole);
        if (id.isValid() && std::find(d->ids.begin(), d->ids.end(), id) == d->ids.end())
            d->ids.push_back(id);
        row = findText(name.toQString(), Qt::MatchFixedString);
    }
    if (row >= 0)
        setCurrentIndex(row);
}

void ZrLineTypeComboBox::currentLTypeIndexChanged(int index)
{
    if (index < 0)
        return;
    zruiSetFocus(zruiViewWindow());
    if (index == count() - 1 && hasOtherItem()) {
        if (d->wheelActive) {
            // The wheel never opens anything.
            setCurrentIndex(std::max(count() - 2, 0));
            return;
        }
        if (d->execLineType) {
            {
                ZrQtBlockSignalUtil blocker(this);
                QComboBox::setCurrentIndex(d->lastIndex);
            }
            // The command's changes come back through the host's events.
            CXuDocument* document = zrDocManagerPtr()->curDocument();
            if (document && document->database())
                zredMenuMacro(L"_LINETYPE\n", true, true);
            updateData();
            return;
        }
        const ZrRxObjectPtr object = zr_arbitDict_getservice(kLinetypeServiceSlot);
        if (!object)
            return;
        const ZrSmartPtr<ZrEdLinetypeService> service(object);
        ZrJsonPtr param = ElementValue::createObject(kZrJsonObject);
        param->SetDataSW("curSelName", ZrString(itemText(d->lastIndex)));
        CXuDocument* document = zrDocManagerPtr()->curDocument();
        service->chooseLinetype(document ? document->database() : nullptr, param, 0, 0, this);
        const ZrDbObjectId chosen(param->GetVarL("ltypeId"));
        resetLineTypeInfo();
        ZrQtBlockSignalUtil blocker(this);
        if (chosen.isValid() && d->model->rowOfId(chosen) >= 0)
            setCurrentLineType(chosen);
        else
            QComboBox::setCurrentIndex(d->lastIndex);
        addPendingItem();
        return;
    }
    {
        ZrQtBlockSignalUtil blocker(this);
        const QString name = itemText(index);
        if (getModifySysVar() && !name.isEmpty())
            zrqthelper::setCeLType(ZrDbObjectId::kNull, ZrString(name));
    }
    d->lastIndex = index;
    Q_EMIT lineTypeItemChanged(index);
}

void ZrLineTypeComboBox::showPopup()
{
    if (getModifySysVar() && ZrDrawingCombo::commandActive())
        return;
    {
        ZrQtBlockSignalUtil blocker(this);
        init();
    }
    view()->setMinimumWidth(ZrDrawingCombo::listWidth(this) + d->iconSize.width());
    QComboBox::showPopup();
}

void ZrLineTypeComboBox::wheelEvent(QWheelEvent* event)
{
    d->wheelActive = true;
    QComboBox::wheelEvent(event);
    d->wheelActive = false;
}

void ZrLineTypeComboBox::resizeEvent(QResizeEvent* event)
{
    QComboBox::resizeEvent(event);
    if (event->size() == event->oldSize())
        return;
    ZrQtBlockSignalUtil blocker(this);
    d->iconSize = ZrDrawingCombo::fittedPreviewSize(size(), d->iconSize);
    setIconSize(d->iconSize);
}

// Host events reach the box through the reactor service, not as Qt events.
bool ZrLineTypeComboBox::event(QEvent* event) { return QComboBox::event(event); }
void ZrLineTypeComboBox::paintEvent(QPaintEvent* event) { QComboBox::paintEvent(event); }

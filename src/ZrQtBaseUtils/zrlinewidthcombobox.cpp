#include "zrlinewidthcombobox.h"

#include "ZrQtUtilsFunc.h"
#include "zrdrawingcombobox_p.h"
#include "zrlineweight_p.h"
#include "zrqthelper.h"

#include "zrdbdatabase.h"
#include "zrdbsymtb.h"
#include "zrdocument.h"
#include "zrui.h"

#include <QResizeEvent>
#include <optional>

namespace {

constexpr int kMaximumWidth = 250;
constexpr int kFixedHeight = 23;
constexpr int64_t kPlainPickerItems = ZrLineWidthComboBox::kByLayerItem | ZrLineWidthComboBox::kByBlockItem
    | ZrLineWidthComboBox::kDefaultItem;

QString settingsItemText()
{
    return zrUiText("CMDSRES_IDD_DLG_LWEIGHTCMD_1", QStringLiteral("线宽设置")) + QStringLiteral("...");
}

} // namespace

struct ZrLineWidthComboBox::Private
{
    int iconWidth = ZrDrawingCombo::kPreviewWidth;
    int iconHeight = ZrDrawingCombo::kPreviewHeight;
    int64_t itemFlags = kPlainPickerItems;
    double lineweightScale = ZrLineWeights::kFirstScale;
    // The preview is fitted to the box once, at its first real resize.
    bool resizing = false;
    bool inches = false;
    // The item the settings item returns to: the last one shown.
    int lastIndex = 0;
    bool hasOtherItem = false;
    ZrGlobalUIReactorHelp::SLineWeightInfo info;
    // Last, so that the box leaves the reactor's list before the record goes.
    std::optional<ZrDrawingCombo::ReactorRegistration> registration;
};

ZrLineWidthComboBox::ZrLineWidthComboBox(QWidget* parent, bool hasOtherItem) : QComboBox(parent), d(new Private)
{
    d->hasOtherItem = hasOtherItem;
    construct(ZrLineWeights::inchesInUse());
}

ZrLineWidthComboBox::ZrLineWidthComboBox(bool modifySysVar, int itemFlags, QWidget* parent, bool hasOtherItem)
    : QComboBox(parent), CZrQtControlHelp(modifySysVar), d(new Private)
{
    d->itemFlags = itemFlags;
    d->hasOtherItem = hasOtherItem;
    setPickFirstInfo(&d->info);
    d->registration.emplace(this);
    construct(ZrLineWeights::inchesInUse());
}

ZrLineWidthComboBox::~ZrLineWidthComboBox() = default;

void ZrLineWidthComboBox::construct(bool inchesFirst)
{
    setMaximumWidth(kMaximumWidth);
    setFixedHeight(kFixedHeight);
    setStyle(ZrDrawingCombo::dropDownStyle());
    init(inchesFirst);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ZrLineWidthComboBox::currentWeightIndexChanged);
}

ZrDb::LineWeight ZrLineWidthComboBox::GetLineWeight(int index) const
{
    bool isWeight = false;
    const int weight = itemData(index, Qt::UserRole).toInt(&isWeight);
    return isWeight ? static_cast<ZrDb::LineWeight>(weight) : ZrDb::kLnWtByLwDefault;
}

ZrDb::LineWeight ZrLineWidthComboBox::GetCurrentLineWeight() const { return GetLineWeight(currentIndex()); }

int ZrLineWidthComboBox::getLineWidget(ZrDb::LineWeight weight) const
{
    return findData(static_cast<int>(weight), Qt::UserRole, Qt::MatchExactly);
}

int ZrLineWidthComboBox::findItemByLineWeight(ZrDb::LineWeight weight) const { return getLineWidget(weight); }

ZrDb::LineWeight ZrLineWidthComboBox::GetCurrentLayerLineWeight() const
{
    return zrqthelper::zruiGetCurrentLayerLineWeight(nullptr);
}

int ZrLineWidthComboBox::getLineThickness(int weight) const
{
    return ZrLineWeights::thickness(weight, d->lineweightScale, d->iconHeight);
}

void ZrLineWidthComboBox::setLineweightScale(double scale) { d->lineweightScale = scale; }
double ZrLineWidthComboBox::lineweightScale() const { return d->lineweightScale; }
bool ZrLineWidthComboBox::inches() const { return d->inches; }

void ZrLineWidthComboBox::init(bool inches)
{
    ZrDrawingCombo::ModifySysVarPause pause(this);
    ZrQtBlockSignalUtil blocker(this);
    clear();
    d->inches = inches;
    d->iconWidth = ZrDrawingCombo::kPreviewWidth;
    d->iconHeight = ZrDrawingCombo::kPreviewHeight;
    setIconSize(QSize(d->iconWidth, d->iconHeight));
    if (d->itemFlags & kByLayerItem)
        drawLine(zrqthelper::getLineName(inches, ZrDb::kLnWtByLayer), ZrDb::kLnWtByLayer);
    if (d->itemFlags & kByBlockItem)
        drawLine(zrqthelper::getLineName(inches, ZrDb::kLnWtByBlock), ZrDb::kLnWtByBlock);
    if (d->itemFlags & kDefaultItem)
        drawLine(zrqthelper::getLineName(inches, ZrDb::kLnWtByLwDefault), ZrDb::kLnWtByLwDefault);
    if (d->itemFlags & kUseObjectItem)
        addItem(QIcon(), zrUiText("IDS_PLOTSTYLEOPTIONCMD_55", QStringLiteral("使用对象线宽")));
    for (const int weight : ZrLineWeights::kStandard)
        drawLine(zrqthelper::getLineName(inches, static_cast<ZrDb::LineWeight>(weight)), weight);
    if (d->hasOtherItem)
        addPendingItem();
}

void ZrLineWidthComboBox::updateListWidthCurlayout(bool inches)
{
    const int current = currentIndex();
    init(inches);
    ZrQtBlockSignalUtil blocker(this);
    setCurrentIndex(current < count() ? current : -1);
}

void ZrLineWidthComboBox::updateListData() { init(ZrLineWeights::inchesInUse()); }

void ZrLineWidthComboBox::drawLine(const QString& text, int weight)
{
    const QPixmap line = ZrLineWeights::linePixmap(d->iconWidth, d->iconHeight, getLineThickness(weight),
                                                   palette().color(QPalette::WindowText), devicePixelRatioF());
    addItem(QIcon(line), text, weight);
}

void ZrLineWidthComboBox::addPendingItem()
{
    addItem(QIcon(), settingsItemText());
    setItemData(count() - 1, QSize(ZrDrawingCombo::kPreviewWidth, ZrDrawingCombo::kPreviewHeight), Qt::SizeHintRole);
}

void ZrLineWidthComboBox::SetNullItem() { QComboBox::setCurrentIndex(-1); }

void ZrLineWidthComboBox::OnThemeUpdate(int) { updateListWidthCurlayout(d->inches); }

bool ZrLineWidthComboBox::needUpdateUI(const CZrGlobalUIReactorHelp& event)
{
    if (!zrDocManagerPtr()->curDocument())
        return false;
    if (event.kind == kZrUiEventSysVar) {
        const ZrString& name = event.name;
        if (name.compareNoCase(ZrString(L"LWUNITS")) == 0) {
            updateListData();
            return true;
        }
        if (event.selectionActive)
            return false;
        // No single name is both, so other variable events are refused; the box follows on the
        // events of other kinds that come with such a change. Callers rely on this.
        return name.compareNoCase(ZrString(L"CLAYER")) == 0 && name.compareNoCase(ZrString(L"CELWEIGHT")) == 0;
    }
    if (event.kind != kZrUiEventObject)
        return true;
    return event.selectionActive || (event.object && event.object->isA() == ZrDbLayerTableRecord::desc());
}

void ZrLineWidthComboBox::onUpdateUI()
{
    CXuDocument* document = zrDocManagerPtr()->curDocument();
    if (!document)
        return;
    using ZrDrawingCombo::Shows;
    const Shows shows = ZrDrawingCombo::showsFor(d->info.status);
    ZrDbDatabase* db = document->database();
    if (!db || (shows != Shows::DrawingValue && shows != Shows::CommonValue)) {
        ZrDrawingCombo::showNoValue(this, shows);
        d->lastIndex = -1;
        return;
    }
    const ZrDb::LineWeight weight = shows == Shows::DrawingValue ? db->celweight() : d->info.value;
    ZrQtBlockSignalUtil blocker(this);
    setEnabled(true);
    d->inches = ZrLineWeights::inchesInUse();
    const QString text = zrqthelper::getLineName(d->inches, weight);
    const int row = findText(text, Qt::MatchFixedString);
    if (row >= 0) {
        setCurrentIndex(row);
    } else if (!text.isEmpty()) {
        // A weight the list leaves out (a box without ByLayer, say) shows until the next fill.
        ZrDrawingCombo::ModifySysVarPause pause(this);
        addItem(QIcon(), text);
        setCurrentIndex(count() - 1);
    }
    // The settings item gives the box back what it showed, not what the user chose last.
    d->lastIndex = currentIndex();
}

void ZrLineWidthComboBox::currentWeightIndexChanged(int index)
{
    if (index < 0)
        return;
    zruiSetFocus(zruiViewWindow());
    if (d->hasOtherItem && index == count() - 1) {
        // The settings item never stays current; the command's changes come back as host events.
        {
            ZrQtBlockSignalUtil blocker(this);
            setCurrentIndex(d->lastIndex);
        }
        CXuDocument* document = zrDocManagerPtr()->curDocument();
        if (document && document->database())
            zredMenuMacro(L"_LWEIGHT\n", true, true);
        return;
    }
    {
        ZrQtBlockSignalUtil blocker(this);
        bool isWeight = false;
        const int weight = itemData(index, Qt::UserRole).toInt(&isWeight);
        if (getModifySysVar() && isWeight)
            zrqthelper::setCeWeight(static_cast<ZrDb::LineWeight>(weight));
    }
    d->lastIndex = index;
    Q_EMIT lineWeightItemChanged(index);
}

void ZrLineWidthComboBox::showPopup()
{
    if (getModifySysVar()) {
        if (ZrDrawingCombo::commandActive())
            return;
        // A fresh list in the unit of the moment, showing what it showed before.
        ZrQtBlockSignalUtil blocker(this);
        const QString shown = currentIndex() >= 0 ? currentText() : QString();
        updateListData();
        ZrQtBlockSignalUtil stillBlocked(this);
        setCurrentIndex(shown.isEmpty() ? -1 : findText(shown, Qt::MatchFixedString));
    }
    QComboBox::showPopup();
}

void ZrLineWidthComboBox::resizeEvent(QResizeEvent* event)
{
    QComboBox::resizeEvent(event);
    if (d->resizing || event->size() == event->oldSize())
        return;
    d->resizing = true;
    ZrQtBlockSignalUtil blocker(this);
    const QSize preview = ZrDrawingCombo::fittedPreviewSize(size(), QSize(d->iconWidth, d->iconHeight));
    d->iconWidth = preview.width();
    d->iconHeight = preview.height();
    setIconSize(preview);
}

// Host events reach the box through the reactor service, not as Qt events.
bool ZrLineWidthComboBox::event(QEvent* event) { return QComboBox::event(event); }

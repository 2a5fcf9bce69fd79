#include "zrlayerpanel.h"

#include "qt_colordialog.h"
#include "zrappenv.h"
#include "zrdbdatabase.h"
#include "zrdbsymtb.h"
#include "zrdrawingcontrol.h"
#include "zrhostevents.h"
#include "zrhosticons.h"
#include "zrreactor.h"
#include "zrui.h"

#include <QHeaderView>

#include <algorithm>
#include <vector>

namespace {

enum Column { CurrentColumn, NameColumn, OnColumn, FrozenColumn, LockedColumn, ColorColumn, ColumnCount };

// What the panel shows of one layer.
struct LayerRow
{
    int64_t id = 0;
    QString name;
    bool current = false;
    bool on = true;
    bool frozen = false;
    bool locked = false;
    QColor color;
    QString colorText;

    bool operator==(const LayerRow& o) const
    {
        return id == o.id && name == o.name && current == o.current && on == o.on && frozen == o.frozen
            && locked == o.locked && color == o.color && colorText == o.colorText;
    }
    bool operator!=(const LayerRow& o) const { return !(*this == o); }
};

// The classic 256 colour indices: seven named colours, two greys, 24 hues in five shades, each
// full and pale, and six greys. Colour 7 is the drawing's foreground.
QColor indexColor(int index)
{
    static const QColor named[] = {Qt::red, Qt::yellow, Qt::green, Qt::cyan, Qt::blue, Qt::magenta};
    if (index >= 1 && index <= 6)
        return named[index - 1];
    if (index == 7)
        return zredGetCurrentTheme() == ZrApp::kDarkTheme ? Qt::white : Qt::black;
    if (index == 8)
        return QColor(128, 128, 128);
    if (index == 9)
        return QColor(192, 192, 192);
    if (index >= 10 && index <= 249) {
        static const int shades[] = {255, 204, 153, 127, 76};
        const int hue = (index / 10 - 1) * 15;
        const int step = index % 10;
        return QColor::fromHsv(hue, step % 2 ? 85 : 255, shades[step / 2]);
    }
    if (index >= 250 && index <= 255)
        return QColor::fromHsv(0, 0, 51 + (index - 250) * 40);
    return QColor();
}

void describeColor(const ZrCmColor& color, LayerRow* row)
{
    if (color.isByColor()) {
        row->color = QColor(color.red(), color.green(), color.blue());
        row->colorText = QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
        return;
    }
    static const char* const names[] = {"红", "黄", "绿", "青", "蓝", "洋红", "白"};
    const int index = color.colorIndex();
    row->color = indexColor(index);
    row->colorText = index >= 1 && index <= 7 ? QString::fromUtf8(names[index - 1]) : QString::number(index);
}

std::vector<LayerRow> readLayers()
{
    std::vector<LayerRow> rows;
    ZrDbDatabase* database = curDatabase();
    if (!database)
        return rows;
    ZrDbObjectPointer<ZrDbLayerTable> table(database->layerTableId(), ZrDb::kForRead);
    if (!table)
        return rows;
    const ZrDbObjectId current = database->clayer();
    for (int64_t handle : table->recordHandles()) {
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(ZrDbObjectId(handle), ZrDb::kForRead);
        if (!layer || layer->isHidden())
            continue;
        LayerRow row;
        row.id = handle;
        row.name = layer->name().toQString();
        row.current = layer->objectId() == current;
        row.on = !layer->isOff();
        row.frozen = layer->isFrozen();
        row.locked = layer->isLocked();
        describeColor(layer->color(), &row);
        rows.push_back(row);
    }
    return rows;
}

} // namespace

struct ZrLayerPanel::Data
{
    std::vector<LayerRow> rows;
};

ZrLayerPanel::ZrLayerPanel(ZrHostEvents* events, QWidget* parent) : QTreeWidget(parent), d(std::make_unique<Data>())
{
    setObjectName(QStringLiteral("layerPanel"));
    setColumnCount(ColumnCount);
    setHeaderLabels({QString(), QStringLiteral("名称"), QStringLiteral("开"), QStringLiteral("冻结"),
                     QStringLiteral("锁定"), QStringLiteral("颜色")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setFocusPolicy(Qt::NoFocus);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    header()->setDefaultAlignment(Qt::AlignCenter);
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item, int column) {
        if (column == ColorColumn)
            chooseLayerColor(indexOfTopLevelItem(item));
    });
    connect(events, &ZrHostEvents::changed, this, [this](qint64 kinds) {
        if (kinds & (kZrUiEventSysVar | kZrUiEventObject | kZrUiEventDocument | kZrUiEventLayerPanel))
            refresh();
    });
    refresh();
}

ZrLayerPanel::~ZrLayerPanel() = default;

void ZrLayerPanel::refresh()
{
    std::vector<LayerRow> rows = readLayers();
    const bool rebuild = rows.size() != d->rows.size()
        || !std::equal(rows.begin(), rows.end(), d->rows.begin(),
                       [](const LayerRow& a, const LayerRow& b) { return a.id == b.id; });
    if (rebuild) {
        clear();
        for (size_t i = 0; i < rows.size(); ++i) {
            auto* item = new QTreeWidgetItem(this);
            for (int column : {CurrentColumn, OnColumn, FrozenColumn, LockedColumn})
                item->setTextAlignment(column, Qt::AlignCenter);
        }
    }
    const QPalette& pal = palette();
    for (size_t i = 0; i < rows.size(); ++i) {
        const LayerRow& row = rows[i];
        if (!rebuild && row == d->rows[i])
            continue;
        QTreeWidgetItem* item = topLevelItem(static_cast<int>(i));
        item->setText(CurrentColumn, row.current ? QStringLiteral("✓") : QString());
        item->setText(NameColumn, row.name);
        QFont font = item->font(NameColumn);
        font.setBold(row.current);
        item->setFont(NameColumn, font);
        item->setIcon(OnColumn, ZrHostIcons::layerOn(row.on, pal));
        item->setToolTip(OnColumn, row.on ? QStringLiteral("开") : QStringLiteral("关"));
        item->setIcon(FrozenColumn, ZrHostIcons::layerFrozen(row.frozen));
        item->setToolTip(FrozenColumn, row.frozen ? QStringLiteral("冻结") : QStringLiteral("解冻"));
        item->setIcon(LockedColumn, ZrHostIcons::layerLocked(row.locked, pal));
        item->setToolTip(LockedColumn, row.locked ? QStringLiteral("锁定") : QStringLiteral("解锁"));
        item->setIcon(ColorColumn, ZrHostIcons::swatch(row.color, pal));
        item->setText(ColorColumn, row.colorText);
        item->setToolTip(ColorColumn, QStringLiteral("双击更改图层颜色"));
    }
    d->rows = std::move(rows);
}

void ZrLayerPanel::chooseLayerColor(int row)
{
    if (row < 0 || static_cast<size_t>(row) >= d->rows.size())
        return;
    const ZrDbObjectId id(d->rows[static_cast<size_t>(row)].id);
    ZrCmColor before;
    {
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForRead);
        if (!layer)
            return;
        before = layer->color();
    }
    // A layer's own colour can't follow a layer or a block.
    const std::optional<ZrCmColor> chosen = ZrQtColorDialog::chooseColor(before, window());
    if (!chosen || (!chosen->isByACI() && !chosen->isByColor()) || *chosen == before)
        return;
    // The drawing may have changed while the dialog was up; the layer is looked at again.
    ZrHostControl::beginUndoStep(ZrString(L"图层颜色"));
    {
        ZrDbObjectPointer<ZrDbLayerTableRecord> layer(id, ZrDb::kForWrite);
        if (layer)
            layer->setColor(*chosen);
    }
    ZrHostControl::endUndoStep();
}

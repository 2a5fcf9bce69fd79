#include "zrpslineweightlist.h"

#include "zrdrawingcombobox_p.h"
#include "zrlineweight_p.h"
#include "zrqthelper.h"

namespace {

// What a by-rule row draws: the weight it stands for now.
int drawnWeight(ZrDb::LineWeight weight)
{
    switch (weight) {
    case ZrDb::kLnWtByLayer: {
        const int layer = zrqthelper::zruiGetCurrentLayerLineWeight(nullptr);
        return layer >= 0 ? layer : zrqthelper::getLWDefault();
    }
    case ZrDb::kLnWtByBlock: return 0;
    case ZrDb::kLnWtByLwDefault: return zrqthelper::getLWDefault();
    default: return weight;
    }
}

} // namespace

struct ZrQtLweightListWidget::Private
{
    QSize iconSize{ZrDrawingCombo::kPreviewWidth, ZrDrawingCombo::kPreviewHeight};
    double scale = ZrLineWeights::kFirstScale;
    bool neat = false;
};

ZrQtLweightListWidget::ZrQtLweightListWidget(QWidget* parent) : QListWidget(parent), d(new Private)
{
    setIconSize(d->iconSize);
    setUniformItemSizes(true);
}

ZrQtLweightListWidget::~ZrQtLweightListWidget() = default;

void ZrQtLweightListWidget::initListWidthCurLayout(bool inches)
{
    for (const ZrDb::LineWeight rule : {ZrDb::kLnWtByLayer, ZrDb::kLnWtByBlock, ZrDb::kLnWtByLwDefault})
        drawLine(zrqthelper::getLineName(inches, rule), rule);
    for (const int weight : ZrLineWeights::kStandard) {
        const auto lineWeight = static_cast<ZrDb::LineWeight>(weight);
        drawLine(zrqthelper::getLineName(inches, lineWeight), lineWeight);
    }
}

QPixmap ZrQtLweightListWidget::linePixmap(int weight) const
{
    return ZrLineWeights::linePixmap(d->iconSize.width(), d->iconSize.height(), getLineThickness(weight),
                                     palette().color(QPalette::WindowText), devicePixelRatioF());
}

QListWidgetItem* ZrQtLweightListWidget::drawLine(const QString& text, ZrDb::LineWeight weight)
{
    auto* item = new QListWidgetItem(QIcon(linePixmap(drawnWeight(weight))), text, this);
    item->setData(Qt::UserRole, static_cast<int>(weight));
    return item;
}

void ZrQtLweightListWidget::modifyItemLine(int row, ZrDb::LineWeight weight)
{
    if (QListWidgetItem* line = item(row))
        line->setIcon(QIcon(linePixmap(weight)));
}

int ZrQtLweightListWidget::getLineWidget(ZrDb::LineWeight weight) const
{
    for (int row = 0; row < count(); ++row) {
        bool isWeight = false;
        if (item(row)->data(Qt::UserRole).toInt(&isWeight) == weight && isWeight)
            return row;
    }
    return -1;
}

ZrDb::LineWeight ZrQtLweightListWidget::lineWeightAt(int row) const
{
    const QListWidgetItem* line = item(row);
    bool isWeight = false;
    const int weight = line ? line->data(Qt::UserRole).toInt(&isWeight) : 0;
    return isWeight ? static_cast<ZrDb::LineWeight>(weight) : ZrDb::kLnWtByLwDefault;
}

int ZrQtLweightListWidget::getLineThickness(int weight) const
{
    return ZrLineWeights::thickness(weight, d->scale, d->iconSize.height());
}

void ZrQtLweightListWidget::setLineweightScale(double scale) { d->scale = scale; }
double ZrQtLweightListWidget::lineweightScale() const { return d->scale; }
void ZrQtLweightListWidget::setLweightneatType(bool neat) { d->neat = neat; }
bool ZrQtLweightListWidget::lweightneatType() const { return d->neat; }

bool ZrQtLweightListWidget::needUpdateUI(const CZrGlobalUIReactorHelp&) { return false; }
void ZrQtLweightListWidget::onUpdateUI() {}

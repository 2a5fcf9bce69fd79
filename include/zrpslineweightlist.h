#pragma once
// The list of lineweights in the lineweight settings: ByLayer, ByBlock, the default weight and the
// standard weights, each with a line drawn as it would show at the list's display scale. It
// follows no selection; the dialog fills it.

#include "zrqtbaseutils_export.h"

#include "zrglobaluireactor.h"

#include "zrdbobjectid.h"

#include <QListWidget>
#include <memory>

class ZRQTBASEUTILS_EXPORT ZrQtLweightListWidget : public QListWidget, public CZrQtControlHelp
{
    Q_OBJECT
public:
    explicit ZrQtLweightListWidget(QWidget* parent = nullptr);
    ~ZrQtLweightListWidget() override;

    // Fills the list in inches or millimetres.
    void initListWidthCurLayout(bool inches);
    // Appends the row of `weight` under `text`. ByLayer draws the current layer's weight, ByBlock a
    // hairline and the default row the host's default weight.
    QListWidgetItem* drawLine(const QString& text, ZrDb::LineWeight weight);
    // Draws the line of `row` anew with `weight`; the text stays.
    void modifyItemLine(int row, ZrDb::LineWeight weight);
    // The row of `weight`; -1 when there is none.
    int getLineWidget(ZrDb::LineWeight weight) const;
    // The weight of a row; the default weight (-3) for a row that has none.
    ZrDb::LineWeight lineWeightAt(int row) const;
    int getLineThickness(int weight) const;

    void setLineweightScale(double scale);
    double lineweightScale() const;
    // Kept for the host's layouts; the list draws the same either way.
    void setLweightneatType(bool neat);
    bool lweightneatType() const;

    // The list is filled by its dialog, never by the host's events.
    bool needUpdateUI(const CZrGlobalUIReactorHelp& event) override;
    void onUpdateUI() override;

private:
    QPixmap linePixmap(int weight) const;

    Q_DISABLE_COPY(ZrQtLweightListWidget)
    struct Private;
    std::unique_ptr<Private> d;
};

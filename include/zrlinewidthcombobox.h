#pragma once
// The lineweight control: ByLayer, ByBlock and the default weight, the standard weights with a
// line drawn at each, and optionally an item that opens the lineweight settings. Bound to the
// drawing it shows the weight of the selection or the current weight and writes the choice; as a
// plain picker it only reports it.

#include "zrqtbaseutils_export.h"

#include "zrglobaluireactor.h"

#include "zrdbobjectid.h"

#include <QComboBox>
#include <QString>
#include <memory>

class ZRQTBASEUTILS_EXPORT ZrLineWidthComboBox : public QComboBox, public CZrQtControlHelp
{
    Q_OBJECT
public:
    // The special rows, in the order they stand at the top of the list.
    enum ItemFlag : int64_t {
        kByLayerItem = 1,
        kByBlockItem = 2,
        kDefaultItem = 4,
        // "使用对象线宽": a row without a weight.
        kUseObjectItem = 8,
    };

    // A plain picker with ByLayer, ByBlock and the default weight; `hasOtherItem` ends the list in
    // the settings item.
    explicit ZrLineWidthComboBox(QWidget* parent = nullptr, bool hasOtherItem = false);
    // With `modifySysVar` true the box registers with the host's reactor and writes its choice.
    ZrLineWidthComboBox(bool modifySysVar, int itemFlags, QWidget* parent = nullptr, bool hasOtherItem = false);
    ~ZrLineWidthComboBox() override;

    // The weight of an item; the default weight (-3) out of range and for a row without one.
    ZrDb::LineWeight GetLineWeight(int index) const;
    ZrDb::LineWeight GetCurrentLineWeight() const;
    // The first item of `weight`; -1 when there is none.
    int getLineWidget(ZrDb::LineWeight weight) const;
    int findItemByLineWeight(ZrDb::LineWeight weight) const;
    ZrDb::LineWeight GetCurrentLayerLineWeight() const;
    // The pen width the item of `weight` is drawn with, at the box's scale and preview height.
    int getLineThickness(int weight) const;
    void setLineweightScale(double scale);
    double lineweightScale() const;
    bool inches() const;

    // Fills the list in inches or millimetres; the first item becomes current.
    void init(bool inches);
    // Fills the list in that unit and keeps the current row.
    void updateListWidthCurlayout(bool inches);
    // Fills the list in the unit LWUNITS names.
    void updateListData();
    // The settings item at the end of the list.
    void addPendingItem();
    // Blank: no current item.
    void SetNullItem();

    bool needUpdateUI(const CZrGlobalUIReactorHelp& event) override;
    void onUpdateUI() override;
    // Refused while a command runs, on a bound box; a bound box fills its list anew first.
    void showPopup() override;

Q_SIGNALS:
    // After every choice of a weight by the user, written to the drawing or not.
    void lineWeightItemChanged(int index);

public Q_SLOTS:
    void OnThemeUpdate(int theme);
    void currentWeightIndexChanged(int index);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void construct(bool inchesFirst);
    void drawLine(const QString& text, int weight);

    Q_DISABLE_COPY(ZrLineWidthComboBox)
    struct Private;
    std::unique_ptr<Private> d;
};

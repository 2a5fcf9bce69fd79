#pragma once
// The colour control of the property combo boxes: ByLayer, ByBlock, the seven named colours, the
// colours the user added and an item that opens the colour dialog. Bound to the drawing it shows
// the colour of the selection or the current colour and writes the choice; as a plain picker it
// only reports it.

#include "zrqtbaseutils_export.h"

#include "uicolorwidgets.h"
#include "zrglobaluireactor.h"

#include "zrcmcolor.h"
#include "zrdbobjectid.h"
#include "zrstring.h"

#include <QColor>
#include <QComboBox>
#include <QIcon>
#include <QPixmap>
#include <memory>
#include <optional>

class ZRQTBASEUTILS_EXPORT ZrColorComboBox : public QComboBox, public CZrQtControlHelp
{
    Q_OBJECT
public:
    // Which standard items the list has.
    enum ViewStyle : unsigned {
        // ByLayer and ByBlock, in the list and in the colour dialog.
        kByLayerByBlock = 1,
        // The item that opens the colour dialog, last.
        kChooseItem = 2,
        kNoneItem = 8,
        // "使用当前项": the drawing's current colour.
        kUseCurrentItem = 16,
    };

    // A plain picker, not bound to the drawing.
    explicit ZrColorComboBox(QWidget* parent = nullptr, bool showText = true);
    // With `modifySysVar` true the box registers with the host's reactor and writes its choice.
    explicit ZrColorComboBox(bool modifySysVar, QWidget* parent = nullptr, bool showText = true);
    // As above, with `color` added as the last colour and made current.
    ZrColorComboBox(bool modifySysVar, const ZrCmColor& color, QWidget* parent = nullptr, bool showText = true);
    ~ZrColorComboBox() override;

    void Initialize();
    // Rebuilds the list from the view style, the recent colours and, when `addGiven` is set and the
    // drawing's view is ready, `color`. Writes nothing.
    void init(const ZrCmColor& color, bool addGiven, ZrDbObjectId layerId);
    // Stores the bits and rebuilds the list.
    void setViewStyle(unsigned style);
    unsigned viewStyle() const;
    // Without text the box is a bare swatch 43 pixels wide.
    void setShowText(const bool& show);
    // The layer whose colour the ByLayer item shows.
    void setLayerId(ZrDbObjectId layerId);
    // The "tabs" the colour dialog opens with.
    void setOpenColorTabs(int tabs);

    // Silent; an index out of range changes nothing.
    void setCurrentIndex(int index);
    // Keeps the display: there is no blank item to show.
    void SetNullItem();
    // Puts a "无" item first.
    void SetUseColorNone();

    // The item of `color` under `text`; answers the position of the first item with that text.
    int insertColorItem(int index, const QString& text, const ZrCmColor& color);
    // Inserts at `index` once the dialog item exists, at the end before that. Answers the position
    // of the first item with the same text, which need not be the new one.
    int AddColorItem(int index, ColorData data);
    int AppendColorItem(const QColor& color, const QString& text);
    // Also remembered among the recent colours.
    int AppendColorItem(const ZrCmColor& color);
    int AppendColorItem(const ColorData& data);
    // An index colour: its item if listed, else a new one named `text`.
    int AddItemToMRU(const ZrString& text, int index);
    int AddColorToMRU(int index);
    // The dialog item, for lists built by hand.
    void AppendFinish();

    // A default colour out of range.
    ZrCmColor GetColor(int index) const;
    QColor GetCurrentColor() const;
    ZrCmColor GetCurrentColorEx() const;

    // True with the swatch of the ordinary colour item at `position`.
    bool FindColor(int position, QColor& out) const;
    // The first ordinary colour item with that swatch; -1 when none.
    int FindColor(const QColor& color) const;
    // The first item of that colour; -1 when none. The dialog item never matches.
    int FindColor(const ZrCmColor& color) const;
    // The first item of index `aci`. With `add`, a missing one is added as a plain swatch.
    int FindColor(int aci, bool add);

    // The swatch of an item, as wide as the icon size.
    QPixmap getColorIcon(const ColorData& data);

    // Writes the colour to the drawing when the box is bound to it.
    void setCeColor(const ZrCmColor& color);
    // Shows what the host left in the selection record.
    void updateData();

    // Adds the recent colours back to a list being rebuilt.
    virtual void subInit();
    // Remembers a colour among the ten recent ones, dropping the oldest.
    virtual void appendCustomInfo(const ColorData& data);

    bool needUpdateUI(const CZrGlobalUIReactorHelp& event) override;
    void onUpdateUI() override;
    // Refused while a command runs, on a bound box.
    void showPopup() override;

Q_SIGNALS:
    // After a choice of the user, with the swatch of the chosen colour.
    void ColorItemChanged(QColor color);

public Q_SLOTS:
    void on_activated(int index);
    void currentColorIndexChanged(int index);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    // What the constructors share; `reactorBound` for those that take `modifySysVar`.
    void construct(bool reactorBound, const ZrCmColor& color, bool addGiven, bool showText);
    // getColorIcon as the icon of an item.
    const QIcon& swatchIcon(const ColorData& data);
    // AddColorItem without the search for its answer; gathered while the list is rebuilt.
    void insertColorData(int index, const ColorData& data);
    // Puts the gathered rows into the list.
    void flushRows();
    // The dialog item: opens the colour dialog and takes its answer.
    void chooseInDialog();
    // The item that shows a colour chosen in the dialog, if one is listed.
    std::optional<ColorData> listedChoice(const ZrCmColor& chosen);
    // A new item behind the others for a colour chosen in the dialog.
    ColorData addChoice(const ZrCmColor& chosen);

    Q_DISABLE_COPY(ZrColorComboBox)
    struct Private;
    std::unique_ptr<Private> d;
};

// A picker of six index colours, white and black as true colours, and the dialog item.
class ZRQTBASEUTILS_EXPORT ZrUiWhiteBlackTrueColorComboBox : public ZrColorComboBox
{
    Q_OBJECT
public:
    ZrUiWhiteBlackTrueColorComboBox();
    ~ZrUiWhiteBlackTrueColorComboBox() override;

    // Replaces the list with the fixed one.
    void OnAddItems();

private:
    Q_DISABLE_COPY(ZrUiWhiteBlackTrueColorComboBox)
};

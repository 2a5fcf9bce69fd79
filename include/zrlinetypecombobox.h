#pragma once
// The line types of the drawing, each with a drawn preview of its pattern beside the name, and last
// the item "其他..." that runs the line type command or opens the host's line type choice. Bound to
// the drawing it follows the selection and writes the chosen line type; as a plain picker it only
// reports the choice.

#include "zrqtbaseutils_export.h"

#include "zrdbobjectid.h"
#include "zrglobaluireactor.h"
#include "zrstring.h"

#include <QComboBox>
#include <memory>

class ZRQTBASEUTILS_EXPORT ZrLineTypeComboBox : public QComboBox, public CZrQtControlHelp
{
    Q_OBJECT
public:
    // A plain picker; "其他..." opens the choice dialog, or with `execLineType` runs the command.
    explicit ZrLineTypeComboBox(QWidget* parent = nullptr, bool noOtherItem = false, bool execLineType = false);
    // With `modifySysVar` true the box registers with the host's reactor and writes its choice;
    // "其他..." runs the line type command.
    ZrLineTypeComboBox(bool modifySysVar, QWidget* parent, bool noOtherItem = false);
    ~ZrLineTypeComboBox() override;

    // The record of the line type named by the item; null for an empty text.
    ZrDbObjectId getLineType(int index) const;
    ZrDbObjectId getCurrentLineType() const;
    // The item's text; empty outside the list.
    QString getLineTypeString(int index) const;
    QString getCurrentLineTypeString() const;
    // Only an index of the list is taken; -1 and others are refused.
    void setCurrentIndex(int index);
    // The first item of that record; nothing when none is.
    void setCurrentLineType(const ZrDbObjectId& id);
    // The line type of the current layer: its name, or "BYLAYER" when it has none. False when the
    // layer or its line type cannot be read.
    bool getCurrentLayerLinetype(ZrString& name) const;
    void setExecLineType(bool execLineType);
    // Goes through this class's setCurrentIndex, so the box keeps its item.
    void SetNullItem();

    bool needUpdateUI(const CZrGlobalUIReactorHelp& event) override;
    void onUpdateUI() override;
    // A bound box does not open while a command runs; otherwise the list is built afresh.
    void showPopup() override;

Q_SIGNALS:
    // After every choice of a line type by the user, written to the drawing or not.
    void lineTypeItemChanged(int index);

public Q_SLOTS:
    void OnThemeUpdate(int theme);
    void currentLTypeIndexChanged(int index);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    Q_DISABLE_COPY(ZrLineTypeComboBox)
    void init();
    void resetLineTypeInfo();
    void addPendingItem();
    void updateData();
    // The ByLayer item takes the preview of the current layer's line type.
    void copyLayerPreviewToByLayer();
    bool hasOtherItem() const;

    struct Private;
    std::unique_ptr<Private> d;
};

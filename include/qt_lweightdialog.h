#pragma once
// The lineweight settings ("LineWeightDialog"): the current weight, the unit the weights are listed
// in, whether the drawing shows weights, the default weight and the display scale. It works on
// copies and writes them through the host object it is given when the user presses OK.

#include "zrqtbaseutils_export.h"

#include "qt_utils.h"

#include <memory>

class QListWidgetItem;

class ZRQTBASEUTILS_EXPORT ZrQtLweightDlgImpl : public ZrQtModalDialogImpl<ZrQtLweightDlgImpl, QDialog>
{
    Q_OBJECT
public:
    ZrQtLweightDlgImpl(ZrQtUIModalDialogBase* base, QWidget* parent, QFlags<Qt::WindowType> flags);
    ~ZrQtLweightDlgImpl() override;

    // `helper` is the host's system variable object (CXuHostAppServices); with any other object the
    // dialog works on the current drawing's variables.
    bool onInitDialog(ZrJsonPtr param, ZrRxObjectPtr helper) override;

    void updatelweightListWidget(bool inches);
    void updatelweightCombo(bool inches);
    void updateCurrLweight(bool inches, int weight);

public Q_SLOTS:
    void onMillimetreClicked();
    void onInchClicked();
    void onDisplayStateChanged(int state);
    void onListCurrentItemChanged(QListWidgetItem* current, QListWidgetItem* previous);
    void onScaleChanged(int value);
    void onDefaultWeightChanged(int index);
    void onOkClicked();
    void onHelpClicked();

private:
    void buildContent();
    void applyScale(double scale);

    Q_DISABLE_COPY(ZrQtLweightDlgImpl)
    struct Private;
    std::unique_ptr<Private> d;
};

#pragma once
// The plain layer list: one item per layer name. Bound to the drawing it follows the selection and
// writes the chosen layer; as a plain picker it only reports the choice.

#include "zrqtbaseutils_export.h"

#include "zrglobaluireactor.h"

#include <QComboBox>
#include <memory>

class ZRQTBASEUTILS_EXPORT ZrLayerComboBox : public QComboBox, public CZrQtControlHelp
{
    Q_OBJECT
public:
    // A plain picker. Mode 1 puts "使用当前项" first and leaves frozen layers out.
    explicit ZrLayerComboBox(int mode = 0, QWidget* parent = nullptr);
    // With `modifySysVar` true the box registers with the host's reactor and writes its choice.
    ZrLayerComboBox(bool modifySysVar, int mode, QWidget* parent = nullptr);
    ~ZrLayerComboBox() override;

    QString getLayerName(int index) const;
    QString getCurrentLayerName() const;
    // Fills the list with the layers of the current drawing, hidden ones left out.
    void init();

    bool needUpdateUI(const CZrGlobalUIReactorHelp& event) override;
    void onUpdateUI() override;
    // Refreshes the list of a drawing-bound box before it opens.
    void showPopup() override;

Q_SIGNALS:
    // After every change of the current item by the user, written to the drawing or not.
    void layerItemChanged(int index);

public Q_SLOTS:
    void curIndexChanged(int index);
    void activatedIndexChanged(int index);
    void onInit();

protected:
    bool event(QEvent* event) override;

private:
    Q_DISABLE_COPY(ZrLayerComboBox)
    struct Private;
    std::unique_ptr<Private> d;
};

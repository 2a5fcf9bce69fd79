#pragma once
// The colour sample panel: two colour buttons whose "..." opens the colour dialog, and the preview of
// a gradient fill between their colours with its style, its angle and a centred variant.

#include <QWidget>
#include <memory>

class ZrColorButtonWidget;
class ZrGradientColorPushButton;

class ZrColorSamplePanel : public QWidget
{
public:
    explicit ZrColorSamplePanel(QWidget* parent = nullptr);
    ~ZrColorSamplePanel() override;

    ZrColorButtonWidget* firstColor() const;
    ZrColorButtonWidget* secondColor() const;
    ZrGradientColorPushButton* gradient() const;

private:
    // The gradient takes the channels the two buttons show.
    void followColors();
    void swapColors();
    void toggleCentred();

    struct Data;
    std::unique_ptr<Data> d;
};

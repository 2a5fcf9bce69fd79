#pragma once
// The layer panel: the layers of the current drawing with their states. A double click on a layer's
// colour opens the colour dialog for it; the rest is read only.

#include <QTreeWidget>
#include <memory>

class ZrHostEvents;

class ZrLayerPanel : public QTreeWidget
{
public:
    // Follows the host's events; `events` must outlive the panel.
    explicit ZrLayerPanel(ZrHostEvents* events, QWidget* parent = nullptr);
    ~ZrLayerPanel() override;

    // Reads the layers again. Rows are rebuilt only when layers came or went; otherwise only the
    // rows whose layer changed are touched.
    void refresh();

private:
    // Asks the colour dialog for a new colour of the layer on `row` and writes it as one undo step.
    void chooseLayerColor(int row);

    struct Data;
    std::unique_ptr<Data> d;
};
